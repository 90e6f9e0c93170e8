#include "StandardNodes.h"

#include <string_view>
#include <utility>

#include "VyrDftXMLNodeIterator.h"
#include "VyrDifTransientStandardUnit.h"

namespace {

constexpr std::string_view kTextName = "#text";
constexpr std::string_view kBlanks = " \t\r\n";

StandardChild Look(VyrIDOMNode_var node) {
  StandardChild child;
  VyrUnicodeString name;
  child.isText = VyrSucceeded(node->GetLocalName(name)) && name.View() == kTextName &&
                 VyrSucceeded(node->GetNodeValue(child.text));
  child.node = std::move(node);
  return child;
}

bool IsIgnorable(const StandardChild& child) {
  const std::string_view text = child.text.View();
  return child.isText && !text.empty() && text.find_first_not_of(kBlanks) == text.npos;
}

}  // namespace

StandardNodes CopyNodes(VyrIDOMNodeList& list) {
  unsigned int length = 0;
  if (!kTransientStandardUnit.Check(VyrSucceeded(list.GetLength(length)),
                                    "number of nodes not readable")) {
    return {};
  }
  StandardNodes nodes;
  nodes.reserve(length);
  for (unsigned int i = 0; i < length; ++i) {
    VyrIDOMNode_var node;
    const HRESULT result = list.Item(i, node);
    if (!kTransientStandardUnit.Check(VyrSucceeded(result) && node, "node cannot be read")) {
      return {};
    }
    StandardChild seen = Look(std::move(node));
    if (!IsIgnorable(seen)) nodes.push_back(std::move(seen.node));
  }
  return nodes;
}

StandardNodes ChildrenOf(VyrIDOMNode& node) {
  VyrIDOMNodeList_var children;
  const HRESULT result = node.GetChildNodes(children);
  if (!kTransientStandardUnit.Check(VyrSucceeded(result) && children, "children cannot be read")) {
    return {};
  }
  return CopyNodes(*children);
}

StandardChild FirstChildOf(VyrIDOMNode& node) {
  VyrDftXMLNodeIterator children(VyrIDOMNode_var::Share(&node), VyrDftXMLNodeIterator::Forward);
  for (; children.IsDone() == 0; children.Next()) {
    VyrIDOMNode_var item = children.CurrentItem();
    if (!item) break;
    StandardChild child = Look(std::move(item));
    if (!IsIgnorable(child)) return child;
  }
  return {};
}

VyrUnicodeString NodeNameOf(VyrIDOMNode& node) {
  VyrUnicodeString name;
  return VyrSucceeded(node.GetNodeName(name)) ? name : VyrUnicodeString();
}

VyrUnicodeString AttributeOf(VyrIDOMNode& node, VyrUnicodeView name) {
  VyrIDOMNamedNodeMap_var attributes;
  VyrIDOMNode_var attribute;
  VyrUnicodeString value;
  if (VyrFailed(node.GetAttributes(attributes)) || !attributes ||
      VyrFailed(attributes->GetNamedItem(name, attribute)) || !attribute ||
      VyrFailed(attribute->GetNodeValue(value))) {
    return {};
  }
  return value;
}
