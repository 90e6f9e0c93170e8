#pragma once

#include <string>
#include <string_view>

#include "VyrProblem.h"

/// Gives the text of an XML document as UTF-8 without a byte order mark and without zero bytes.
///
/// `encoding` tells what `document` is written in; null: what its byte order mark says, else the
/// pattern of its first characters, else its declaration, else UTF-8. `utf8` is a view of
/// `document` or of `converted`. False, with `problem` filled, when a byte is not of the encoding
/// or the encoding is not known.
bool VyrDecodeXMLText(std::string_view document, const char* encoding, std::string& converted,
                      std::string_view& utf8, VyrProblem& problem);
