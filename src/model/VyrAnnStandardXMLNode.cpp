#include "VyrAnnStandardXMLNode.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "NodeIndexes.h"
#include "VyrAnnStandardXMLUnit.h"

namespace {

/// Inserts by the index rule of the lists; false when the index was refused.
template <class Item>
bool Insert(std::vector<VyrVar<Item>>& list, Item* item, int index) {
  if (!kXMLClassUnit.CheckPointer(item)) return false;
  if (index < 0) {
    list.push_back(VyrVar<Item>::Share(item));
    return true;
  }
  const auto place = static_cast<std::size_t>(index);
  if (!kXMLClassUnit.Check(place < list.size(), "insertion index past the last element")) {
    return false;
  }
  list.insert(list.begin() + index, VyrVar<Item>::Share(item));
  return true;
}

/// The place that was filled by `Insert`.
template <class Item>
std::size_t PlaceOf(const std::vector<VyrVar<Item>>& list, int index) {
  return index < 0 ? list.size() - 1 : static_cast<std::size_t>(index);
}

template <class Item>
Item* ElementAt(const std::vector<VyrVar<Item>>& list, int index) {
  const std::size_t place = index < 0 ? list.size() - 1 : static_cast<std::size_t>(index);
  if (!kXMLClassUnit.Check(place < list.size(), "index past the last element")) return nullptr;
  return list[place].NewReference();
}

}  // namespace

VyrAnnStandardXMLNode::VyrAnnStandardXMLNode(Type type, VyrUnicodeView name)
    : type_(type), name_(name) {}

VyrAnnStandardXMLNode::~VyrAnnStandardXMLNode() {
  // Children that die with this node give their own children up first: a chain of destructors
  // would need one stack frame per level of the tree.
  Nodes dying = std::move(nodes_);
  while (!dying.empty()) {
    const VyrAnnStandardXMLNode_var node = std::move(dying.back());
    dying.pop_back();
    if (!node->IsOnlyReference()) continue;
    std::move(node->nodes_.begin(), node->nodes_.end(), std::back_inserter(dying));
    node->nodes_.clear();
  }
}

void VyrAnnStandardXMLNode::SetNodeName(VyrUnicodeView name) {
  if (isIndexed_) IndexedKeyChanges::Count();
  name_ = name;
}

VyrAnnStandardXMLNode::Indexes& VyrAnnStandardXMLNode::WideIndexes() const {
  if (!indexes_) indexes_ = std::make_unique<Indexes>();
  return *indexes_;
}

void VyrAnnStandardXMLNode::AddNode(VyrAnnStandardXMLNode* child, int index) {
  if (!Insert(nodes_, child, index)) return;
  if (indexes_) indexes_->nodesByName.Added(nodes_, PlaceOf(nodes_, index));
}

void VyrAnnStandardXMLNode::AddValue(VyrAnnStandardXMLValue* value, int index) {
  if (!Insert(values_, value, index)) return;
  if (!indexes_) return;
  indexes_->valuesByName.Added(values_, PlaceOf(values_, index));
  indexes_->valuesByText.Added(values_, PlaceOf(values_, index));
}

VyrAnnStandardXMLNode* VyrAnnStandardXMLNode::GetNode(int index) const {
  return ElementAt(nodes_, index);
}

VyrAnnStandardXMLValue* VyrAnnStandardXMLNode::GetValue(int index) const {
  return ElementAt(values_, index);
}

VyrAnnStandardXMLNode* VyrAnnStandardXMLNode::FindNode(std::string_view name) const {
  if (nodes_.size() >= Indexes::kWide) return WideIndexes().nodesByName.Find(nodes_, name);
  return decltype(Indexes::nodesByName)::Scan(nodes_, name);
}

VyrAnnStandardXMLValue* VyrAnnStandardXMLNode::FindValue(std::string_view name) const {
  if (values_.size() >= Indexes::kWide) return WideIndexes().valuesByName.Find(values_, name);
  return decltype(Indexes::valuesByName)::Scan(values_, name);
}

VyrAnnStandardXMLValue* VyrAnnStandardXMLNode::FindValueByText(std::string_view text) const {
  if (values_.size() >= Indexes::kWide) return WideIndexes().valuesByText.Find(values_, text);
  return decltype(Indexes::valuesByText)::Scan(values_, text);
}

VyrAnnStandardXMLNode* VyrAnnStandardXMLNode::GetNodeByName(VyrUnicodeView name) const {
  return VyrAnnStandardXMLNode_var::Share(FindNode(name)).Detach();
}

VyrAnnStandardXMLValue* VyrAnnStandardXMLNode::GetValueByName(VyrUnicodeView name) const {
  return VyrAnnStandardXMLValue_var::Share(FindValue(name)).Detach();
}

VyrAnnStandardXMLNode* VyrAnnStandardXMLNode::GetDefaultNode() const {
  if (VyrAnnStandardXMLNode* named = GetNodeByName("Default")) return named;
  if (!kXMLClassUnit.Check(!nodes_.empty(), "no child to be the default")) return nullptr;
  return nodes_.front().NewReference();
}

void VyrAnnStandardXMLNode::RemoveNode(const VyrAnnStandardXMLNode* child) {
  const auto place = std::find_if(nodes_.begin(), nodes_.end(),
                                  [&](const auto& node) { return node.Get() == child; });
  const VyrAnnStandardXMLNode_var removed = std::move(*place);
  nodes_.erase(place);
  if (indexes_) indexes_->nodesByName.Removed(nodes_, *removed);
}

void VyrAnnStandardXMLNode::RemoveValue(std::size_t index) {
  const auto place = values_.begin() + static_cast<std::ptrdiff_t>(index);
  const VyrAnnStandardXMLValue_var removed = std::move(*place);
  values_.erase(place);
  if (!indexes_) return;
  indexes_->valuesByName.Removed(values_, *removed);
  indexes_->valuesByText.Removed(values_, *removed);
}

int VyrAnnStandardXMLNode::DeleteValue(int index) {
  const bool isInside = index >= 0 && index < GetNumOfValue();
  if (!kXMLClassUnit.Check(isInside, "index outside the list of values")) return 0;
  RemoveValue(static_cast<std::size_t>(index));
  return 1;
}

int VyrAnnStandardXMLNode::AddNodeWithValue(VyrUnicodeView name, VyrAnnStandardXMLValue::Type type,
                                            VyrUnicodeView value, VyrUnicodeView typeName,
                                            int index) {
  const bool isEnum = type == VyrAnnStandardXMLValue::ValueEnum;
  if (!kXMLClassUnit.Check(isEnum ? !typeName.empty() && !value.empty() : typeName.empty(),
                           "type name does not go with the type")) {
    return 0;
  }
  if (!kXMLClassUnit.Check(!name.empty(), "a parameter needs a name")) return 0;
  if (!kXMLClassUnit.Check(index >= -1 && index <= GetNumOfNode(), "index outside the children")) {
    return 0;
  }
  const VyrAnnStandardXMLNode_var wrapper(new VyrAnnStandardXMLNode(NodePlain, name));
  const VyrAnnStandardXMLValue_var wrapped(new VyrAnnStandardXMLValue(type, value, typeName, 0));
  wrapper->AddValue(wrapped.Get(), -1);
  AddNode(wrapper.Get(), index);
  return 1;
}

void VyrAnnStandardXMLNode::ChangeValue(VyrUnicodeView text) {
  if (!kXMLClassUnit.Check(nodes_.empty(), "a node with children has no value")) return;
  if (values_.size() == 1) {
    values_.front()->SetValue(text);
    return;
  }
  const std::size_t separator = text.find(':');
  if (separator == std::string_view::npos) return;
  VyrAnnStandardXMLValue* value = FindValue(text.substr(0, separator));
  if (kXMLClassUnit.CheckPointer(value)) value->SetValue(text.substr(separator + 1));
}
