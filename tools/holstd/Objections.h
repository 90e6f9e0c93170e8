#pragma once

#include <string>
#include <string_view>

#include "VyrAnnStandardScript.h"
#include "VyrAnnStandardXMLParser.h"

/// Why a command cannot be done, and what would be right; empty when nothing speaks against it.
/// Objects also to what the command language lets pass and nobody means: a misspelt type that
/// makes a string, a node without a name, a change without effect. Not for the each-verbs.
std::string ObjectionTo(VyrAnnStandardXMLParser& document, VyrAnnStandardScript::Verb verb,
                        std::string_view text);
