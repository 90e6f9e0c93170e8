#pragma once

#include "VyrResult.h"
#include "VyrUnicodeString.h"

class VyrAnnStandardXMLParser;

/// Sends `AddValueWithPath(parentPath + "." + child + suffix, position)` for every child of the
/// node at `parentPath`, in order. `suffix` begins with "." or ":". `S_OK` when at least one child
/// was served; `E_FAIL` when the node is missing or has no children; `E_INVALIDARG`, with nothing
/// added, when all the suffixes would come to more than `VyrAnnStandardScript::kMostAdded`.
HRESULT AddValueToEachChild(VyrAnnStandardXMLParser& document, VyrUnicodeView parentPath,
                            VyrUnicodeView suffix, int position);
/// The same with `AddNodeWithPath`.
HRESULT AddNodeToEachChild(VyrAnnStandardXMLParser& document, VyrUnicodeView parentPath,
                           VyrUnicodeView suffix, int position);
/// Sends `ChangeValueWithPath(parentPath + "." + child + suffix)` for every child; `S_OK` when one
/// of them had something to change, else `E_FAIL`.
HRESULT ChangeValueOfEachChild(VyrAnnStandardXMLParser& document, VyrUnicodeView parentPath,
                               VyrUnicodeView suffix);
