#include "NodeIndexes.h"
#include "VyrAnnStandardXMLNode.h"
#include "VyrAnnStandardXMLUnit.h"
#include "VyrSteps.h"

// Lookups and deletion by dotted path. Only the first "." counts at each level, so a name never
// holds a "." but may hold blanks.

int VyrAnnStandardXMLNode::SplitPath(std::string_view path, std::string_view& head,
                                     std::string_view& tail) {
  const std::size_t dot = path.find('.');
  head = path.substr(0, dot);
  if (dot == std::string_view::npos) return 1;
  tail = path.substr(dot + 1);
  return 0;
}

/// The node that holds the last segment, found by name; null when a segment before it is missing.
const VyrAnnStandardXMLNode* VyrAnnStandardXMLNode::FindParentOfLast(std::string_view path,
                                                                     std::string_view& last) const {
  const VyrAnnStandardXMLNode* node = this;
  std::string_view tail;
  while (node != nullptr && SplitPath(path, last, tail) == 0) {
    VyrSteps::Count();
    node = node->FindNode(last);
    path = tail;
  }
  return node;
}

VyrAnnStandardXMLNode* VyrAnnStandardXMLNode::GetNodeWithPath(VyrUnicodeView path,
                                                              int occurrence) const {
  std::string_view last;
  const VyrAnnStandardXMLNode* parent = FindParentOfLast(path, last);
  if (parent == nullptr) return nullptr;
  // By place, whatever the name says: how a caller fills the list entry it has just appended.
  if (occurrence != 1) return parent->GetNode(occurrence < 1 ? -1 : occurrence - 1);
  return parent->GetNodeByName(last);
}

VyrAnnStandardXMLValue* VyrAnnStandardXMLNode::GetValueWithPath(VyrUnicodeView path) const {
  std::string_view last;
  const VyrAnnStandardXMLNode* parent = FindParentOfLast(path, last);
  if (parent == nullptr) return nullptr;
  return VyrAnnStandardXMLValue_var::Share(parent->FindValue<ValueTextKey>(last)).Detach();
}

int VyrAnnStandardXMLNode::DeleteNodeWithPath(VyrUnicodeView path) {
  std::string_view last;
  // The parent is this node or below it, and this call may edit both.
  auto* parent = const_cast<VyrAnnStandardXMLNode*>(FindParentOfLast(path, last));
  if (parent == nullptr) return 1;
  if (const std::optional<std::size_t> node = parent->FindNodePlace(last)) {
    parent->RemoveNode(*node);
    return 0;
  }
  std::optional<std::size_t> value = parent->FindValuePlace<ValueNameKey>(last);
  if (!value) value = parent->FindValuePlace<ValueTextKey>(last);
  if (!value) return 1;
  parent->RemoveValue(*value);
  return 0;
}
