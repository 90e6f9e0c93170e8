#include "VyrAnnStandardXMLNode.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

#include "NodeIndexes.h"
#include "VyrAnnStandardXMLUnit.h"

namespace {

/// Where the index rule of the lists inserts an item into a list of `count`; nothing when item or
/// index was refused.
template <class Item>
std::optional<std::size_t> InsertionPlace(const Item* item, int index, int count) {
  if (!kXMLClassUnit.CheckPointer(item)) return std::nullopt;
  if (index < 0) return static_cast<std::size_t>(count);
  if (!kXMLClassUnit.Check(index < count, "insertion index past the last element")) {
    return std::nullopt;
  }
  return static_cast<std::size_t>(index);
}

/// The element that an index of a list of `count` means; nothing, reported, past the end.
std::optional<std::size_t> ElementIndex(int index, int count) {
  const int element = index < 0 ? count - 1 : index;
  if (!kXMLClassUnit.Check(element >= 0 && element < count, "index past the last element")) {
    return std::nullopt;
  }
  return static_cast<std::size_t>(element);
}

}  // namespace

VyrAnnStandardXMLNode::VyrAnnStandardXMLNode(Type type, VyrUnicodeView name)
    : type_(type), name_(name) {}

VyrAnnStandardXMLNode::~VyrAnnStandardXMLNode() {
  // Children that die with this node give their own children up first: a chain of destructors
  // would need one stack frame per level of the tree.
  Nodes dying;
  GiveChildrenUp(dying);
  while (!dying.empty()) {
    const VyrAnnStandardXMLNode_var node = std::move(dying.back());
    dying.pop_back();
    if (node->IsOnlyReference()) node->GiveChildrenUp(dying);
  }
}

/// Adds the children of a node that dies to those that may.
void VyrAnnStandardXMLNode::GiveChildrenUp(Nodes& dying) {
  indexes_.reset();
  if (dying.empty()) {
    dying.swap(nodes_);
    return;
  }
  std::move(nodes_.begin(), nodes_.end(), std::back_inserter(dying));
  nodes_.clear();
}

void VyrAnnStandardXMLNode::SetNodeName(VyrUnicodeView name) {
  VyrIndexedPlaces::Change(*this, name_, name);
}

VyrAnnStandardXMLNode::Indexes& VyrAnnStandardXMLNode::WideIndexes() const {
  if (!indexes_) indexes_ = std::make_unique<Indexes>(nodes_, values_);
  return *indexes_;
}

void VyrAnnStandardXMLNode::BringNodesUpToDate() const {
  indexes_->nodes.BringUpToDate();
}

void VyrAnnStandardXMLNode::BringValuesUpToDate() const {
  indexes_->values.BringUpToDate();
}

int VyrAnnStandardXMLNode::CountNodes() const {
  return static_cast<int>(indexes_->nodes.GetCount());
}

int VyrAnnStandardXMLNode::CountValues() const {
  return static_cast<int>(indexes_->values.GetCount());
}

void VyrAnnStandardXMLNode::AddNode(VyrAnnStandardXMLNode* child, int index) {
  const int count = GetNumOfNode();
  const std::optional<std::size_t> place = InsertionPlace(child, index, count);
  if (!place) return;
  VyrAnnStandardXMLNode_var added = VyrAnnStandardXMLNode_var::Share(child);
  if (indexes_ || (index >= 0 && count >= Indexes::kWide)) {
    WideIndexes().nodes.Insert(*place, std::move(added));
  } else {
    nodes_.insert(nodes_.begin() + static_cast<std::ptrdiff_t>(*place), std::move(added));
  }
}

void VyrAnnStandardXMLNode::AddValue(VyrAnnStandardXMLValue* value, int index) {
  const int count = GetNumOfValue();
  const std::optional<std::size_t> place = InsertionPlace(value, index, count);
  if (!place) return;
  VyrAnnStandardXMLValue_var added = VyrAnnStandardXMLValue_var::Share(value);
  if (indexes_ || (index >= 0 && count >= Indexes::kWide)) {
    WideIndexes().values.Insert(*place, std::move(added));
  } else {
    values_.insert(values_.begin() + static_cast<std::ptrdiff_t>(*place), std::move(added));
  }
}

VyrAnnStandardXMLNode* VyrAnnStandardXMLNode::GetNode(int index) const {
  const std::optional<std::size_t> element = ElementIndex(index, GetNumOfNode());
  if (!element) return nullptr;
  if (!indexes_) return nodes_[*element].NewReference();
  return VyrAnnStandardXMLNode_var::Share(indexes_->nodes.GetAt(*element)).Detach();
}

VyrAnnStandardXMLValue* VyrAnnStandardXMLNode::GetValue(int index) const {
  const std::optional<std::size_t> element = ElementIndex(index, GetNumOfValue());
  if (!element) return nullptr;
  if (!indexes_) return values_[*element].NewReference();
  return VyrAnnStandardXMLValue_var::Share(indexes_->values.GetAt(*element)).Detach();
}

VyrAnnStandardXMLNode* VyrAnnStandardXMLNode::FindNode(std::string_view name) const {
  if (GetNumOfNode() >= Indexes::kWide) return WideIndexes().nodes.Find<NodeNameKey>(name);
  const std::optional<std::size_t> place = FindNodePlace(name);
  return place ? nodes_[*place].Get() : nullptr;
}

std::optional<std::size_t> VyrAnnStandardXMLNode::FindNodePlace(std::string_view name) const {
  if (GetNumOfNode() >= Indexes::kWide) return WideIndexes().nodes.FindPlace<NodeNameKey>(name);
  return Indexes::Scan<NodeNameKey>(GetNodes(), name);
}

VyrAnnStandardXMLNode* VyrAnnStandardXMLNode::GetNodeByName(VyrUnicodeView name) const {
  return VyrAnnStandardXMLNode_var::Share(FindNode(name)).Detach();
}

VyrAnnStandardXMLValue* VyrAnnStandardXMLNode::GetValueByName(VyrUnicodeView name) const {
  return VyrAnnStandardXMLValue_var::Share(FindValue<ValueNameKey>(name)).Detach();
}

VyrAnnStandardXMLNode* VyrAnnStandardXMLNode::GetDefaultNode() const {
  if (VyrAnnStandardXMLNode* named = GetNodeByName("Default")) return named;
  if (!kXMLClassUnit.Check(GetNumOfNode() != 0, "no child to be the default")) return nullptr;
  return GetNode(0);
}

void VyrAnnStandardXMLNode::RemoveNode(std::size_t place) {
  if (indexes_ || GetNumOfNode() >= Indexes::kWide) {
    WideIndexes().nodes.Remove(place);
  } else {
    nodes_.erase(nodes_.begin() + static_cast<std::ptrdiff_t>(place));
  }
}

void VyrAnnStandardXMLNode::RemoveValue(std::size_t place) {
  if (indexes_ || GetNumOfValue() >= Indexes::kWide) {
    WideIndexes().values.Remove(place);
  } else {
    values_.erase(values_.begin() + static_cast<std::ptrdiff_t>(place));
  }
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
  if (!kXMLClassUnit.Check(GetNumOfNode() == 0, "a node with children has no value")) return;
  if (GetNumOfValue() == 1) {
    GetValues().front()->SetValue(text);
    return;
  }
  const std::size_t separator = text.find(':');
  if (separator == std::string_view::npos) return;
  VyrAnnStandardXMLValue* value = FindValue<ValueNameKey>(text.substr(0, separator));
  if (kXMLClassUnit.CheckPointer(value)) value->SetValue(text.substr(separator + 1));
}
