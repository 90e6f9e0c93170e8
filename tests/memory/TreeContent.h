#pragma once

#include <string>

#include "VyrXMLTree.h"

/// All that a tree holds.
inline std::string ContentOf(const VyrXMLTree& tree) {
  std::string content;
  for (VyrXMLTree::Index item = 1; item < tree.GetCount(); ++item) {
    content += "|" + std::to_string(tree.GetParent(item)) + " ";
    const bool isElement = tree.GetKind(item) == VyrXMLTree::Kind::Element;
    content += isElement ? tree.GetName(tree.GetNameId(item)).qualifiedName
                         : std::string(tree.GetText(item));
    if (!isElement) continue;
    content += tree.GetName(tree.GetNameId(item)).namespaceURI;
    for (const VyrXMLTree::Attribute& attribute : tree.GetAttributes(item)) {
      content += " " + tree.GetName(attribute.name).qualifiedName + "=";
      content += tree.GetValue(attribute);
    }
  }
  return content;
}
