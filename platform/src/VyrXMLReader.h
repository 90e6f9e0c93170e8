#pragma once

#include <string_view>

#include "VyrProblem.h"
#include "VyrXMLTree.h"

/// Parses an XML document: namespace-aware, not validating, from memory alone (no other file and
/// no network is ever read), without a limit on depth or length. Entities declared in the document
/// itself are replaced as long as what they expand to stays in proportion to the document. Time
/// and memory are in proportion to the document too: one that would need more is refused.
///
/// `encoding` overrides what the document declares; null: as declared. Returns false and fills
/// `problem` when the document is not well formed; `tree` is then not to be used.
bool VyrReadXML(std::string_view document, const char* encoding, VyrXMLTree& tree,
                VyrProblem& problem);
