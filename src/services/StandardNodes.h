#pragma once

#include <vector>

#include "VyrXMLDOM.h"

// Walking the nodes of a standard's document. Text of nothing but blanks only lays the file out:
// nobody here sees it.

using StandardNodes = std::vector<VyrIDOMNode_var>;

/// The nodes of a list, in order. Nothing, reported, when the list cannot be read.
StandardNodes CopyNodes(VyrIDOMNodeList& list);
StandardNodes ChildrenOf(VyrIDOMNode& node);

/// A child of a node, and its text if it is one.
struct StandardChild {
  VyrIDOMNode_var node;  ///< null: there is no child
  bool isText = false;   ///< character data that is marked as such in the file is no text here
  VyrUnicodeString text;
};
StandardChild FirstChildOf(VyrIDOMNode& node);

/// Qualified name of a node; empty for one that cannot tell.
VyrUnicodeString NodeNameOf(VyrIDOMNode& node);
/// Value of an attribute; empty when there is none.
VyrUnicodeString AttributeOf(VyrIDOMNode& node, VyrUnicodeView name);
