#pragma once

#include <string>

#include "VyrAnnStandardXMLParser.h"

// Styles as nodes: a site may give two styles one name, and put into a name what commands take for
// a separator.

/// The styles of a family, in list order.
inline VyrAnnStandardXMLNode::Nodes StylesOf(VyrAnnStandardXMLParser& document,
                                             const std::string& family) {
  const VyrAnnStandardXMLNode_var node(document.GetNodeWithPath("Root.Styles." + family));
  return node ? node->GetNodes() : VyrAnnStandardXMLNode::Nodes();
}

/// The path of a style whose family stands at the path `family`.
inline std::string PathOfStyle(const std::string& family, const VyrAnnStandardXMLNode& style) {
  return family + "." + style.GetNodeName().CString();
}

/// Text of the first value of the node at a path below `node`; empty when there is none.
inline VyrUnicodeString ValueBelow(const VyrAnnStandardXMLNode& node, VyrUnicodeView path) {
  const VyrAnnStandardXMLNode_var found(node.GetNodeWithPath(path, 1));
  if (!found || found->GetValues().empty()) return {};
  return found->GetValues().front()->GetValue();
}
