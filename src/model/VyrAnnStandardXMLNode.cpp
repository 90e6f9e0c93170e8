#include "VyrAnnStandardXMLNode.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <limits>
#include <optional>
#include <utility>

#include "NodeIndexes.h"
#include "VyrAnnStandardXMLUnit.h"

namespace {

/// Of a node that lists hold so many times, or more, the number is not kept.
constexpr std::uint16_t kListedOften = std::numeric_limits<std::uint16_t>::max();

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

/// The element that an index of a list of `count` means; nothing, reported, past the end.
std::optional<std::size_t> ElementIndex(int index, std::size_t count) {
  const std::size_t element = index < 0 ? count - 1 : static_cast<std::size_t>(index);
  if (!kXMLClassUnit.Check(element < count, "index past the last element")) return std::nullopt;
  return element;
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
    if (!node || !node->IsOnlyReference()) continue;
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

/// A child that a list has already held may be held by this one.
void VyrAnnStandardXMLNode::CountListing(VyrAnnStandardXMLNode& child) {
  if (child.timesListed_ != 0 && repeats_ == Repeats::None) repeats_ = Repeats::Possible;
  if (child.timesListed_ != kListedOften) ++child.timesListed_;
}

void VyrAnnStandardXMLNode::Append(VyrAnnStandardXMLNode_var child) {
  CountListing(*child);
  child->place_ = static_cast<std::uint32_t>(nodes_.size());
  nodes_.push_back(std::move(child));
}

void VyrAnnStandardXMLNode::AddNode(VyrAnnStandardXMLNode* child, int index) {
  if (index >= 0) CloseHoles();
  if (!Insert(nodes_, child, index)) return;
  CountListing(*child);
  const std::size_t place = PlaceOf(nodes_, index);
  child->place_ = static_cast<std::uint32_t>(place);
  if (indexes_) indexes_->nodesByName.Added(nodes_, place);
}

void VyrAnnStandardXMLNode::AddValue(VyrAnnStandardXMLValue* value, int index) {
  if (!Insert(values_, value, index)) return;
  if (!indexes_) return;
  indexes_->valuesByName.Added(values_, PlaceOf(values_, index));
  indexes_->valuesByText.Added(values_, PlaceOf(values_, index));
}

VyrAnnStandardXMLNode* VyrAnnStandardXMLNode::GetNode(int index) const {
  const std::size_t count = nodes_.size() - holes_;
  const std::optional<std::size_t> element = ElementIndex(index, count);
  if (!element) return nullptr;
  // Whoever deletes and looks in turn would else have the holes closed each time.
  if (*element == 0) return nodes_[FirstPlace()].NewReference();
  if (*element == count - 1) return nodes_.back().NewReference();
  return GetNodes()[*element].NewReference();
}

VyrAnnStandardXMLValue* VyrAnnStandardXMLNode::GetValue(int index) const {
  const std::optional<std::size_t> element = ElementIndex(index, values_.size());
  return element ? values_[*element].NewReference() : nullptr;
}

VyrAnnStandardXMLNode* VyrAnnStandardXMLNode::FindNode(std::string_view name) const {
  const bool isWide = nodes_.size() - holes_ >= Indexes::kWide;
  if (isWide) return WideIndexes().nodesByName.Find(nodes_, name);
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
  if (!kXMLClassUnit.Check(GetNumOfNode() != 0, "no child to be the default")) return nullptr;
  return nodes_[FirstPlace()].NewReference();
}

/// Where the first child stands, if there is one.
std::size_t VyrAnnStandardXMLNode::FirstPlace() const {
  return holes_ == 0 ? 0 : indexes_->leadingHoles;
}

/// Whether some child stands in the list twice.
bool VyrAnnStandardXMLNode::HasRepeats() {
  if (repeats_ == Repeats::Possible) {
    std::vector<const VyrAnnStandardXMLNode*> children;
    children.reserve(nodes_.size());
    for (const VyrAnnStandardXMLNode_var& node : nodes_) {
      if (node) children.push_back(node.Get());
    }
    std::sort(children.begin(), children.end(), std::less<>());
    const bool has = std::adjacent_find(children.begin(), children.end()) != children.end();
    repeats_ = has ? Repeats::Certain : Repeats::None;
  }
  return repeats_ == Repeats::Certain;
}

/// The first place of a child.
std::size_t VyrAnnStandardXMLNode::FindPlace(const VyrAnnStandardXMLNode& child) {
  if (child.timesListed_ > 1 && HasRepeats()) {
    std::size_t place = FirstPlace();
    while (nodes_[place].Get() != &child) ++place;
    return place;
  }
  const std::size_t start = std::min<std::size_t>(child.place_, nodes_.size() - 1);
  const std::size_t place = FindNear(start, child);
  if (!indexes_) return place;
  // Insertions and closed holes move children without telling them.
  indexes_->searched += place < start ? start - place : place - start;
  if (indexes_->searched > nodes_.size()) {
    indexes_->searched = 0;
    for (std::size_t i = 0; i < nodes_.size(); ++i) {
      if (nodes_[i]) nodes_[i]->place_ = static_cast<std::uint32_t>(i);
    }
  }
  return place;
}

/// A place of a child, looked for to both sides.
std::size_t VyrAnnStandardXMLNode::FindNear(std::size_t start,
                                            const VyrAnnStandardXMLNode& child) const {
  for (std::size_t distance = 0;; ++distance) {
    const std::size_t behind = start + distance;
    if (behind < nodes_.size() && nodes_[behind].Get() == &child) return behind;
    if (distance <= start && nodes_[start - distance].Get() == &child) return start - distance;
  }
}

void VyrAnnStandardXMLNode::CloseHoles() const {
  if (holes_ == 0) return;
  const auto first = nodes_.begin() + static_cast<std::ptrdiff_t>(indexes_->firstHole);
  nodes_.erase(std::remove(first, nodes_.end(), nullptr), nodes_.end());
  holes_ = 0;
  indexes_->leadingHoles = 0;
}

/// Empties the place of a child instead of closing it: whoever deletes many children one by one
/// would else move all the others each time.
void VyrAnnStandardXMLNode::MakeHole(std::size_t place) {
  Indexes& indexes = WideIndexes();
  indexes.firstHole = holes_ == 0 ? place : std::min(indexes.firstHole, place);
  nodes_[place] = nullptr;
  ++holes_;
  for (; !nodes_.empty() && !nodes_.back(); nodes_.pop_back()) --holes_;
  while (indexes.leadingHoles < nodes_.size() && !nodes_[indexes.leadingHoles]) {
    ++indexes.leadingHoles;
  }
}

void VyrAnnStandardXMLNode::RemoveNode(VyrAnnStandardXMLNode* child) {
  const bool isWide = nodes_.size() - holes_ >= Indexes::kWide;
  if (!isWide) CloseHoles();
  const std::size_t place = FindPlace(*child);
  const VyrAnnStandardXMLNode_var removed = nodes_[place];
  if (removed->timesListed_ != kListedOften) --removed->timesListed_;
  if (isWide) {
    MakeHole(place);
  } else {
    nodes_.erase(nodes_.begin() + static_cast<std::ptrdiff_t>(place));
  }
  if (indexes_) indexes_->nodesByName.RemovedFirst(*removed);
  if (holes_ > nodes_.size() / 2) CloseHoles();
}

void VyrAnnStandardXMLNode::RemoveValue(std::size_t index) {
  const auto place = values_.begin() + static_cast<std::ptrdiff_t>(index);
  const VyrAnnStandardXMLValue_var removed = std::move(*place);
  values_.erase(place);
  if (!indexes_) return;
  indexes_->valuesByName.Removed(values_, *removed, index);
  indexes_->valuesByText.Removed(values_, *removed, index);
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
  if (values_.size() == 1) {
    values_.front()->SetValue(text);
    return;
  }
  const std::size_t separator = text.find(':');
  if (separator == std::string_view::npos) return;
  VyrAnnStandardXMLValue* value = FindValue(text.substr(0, separator));
  if (kXMLClassUnit.CheckPointer(value)) value->SetValue(text.substr(separator + 1));
}
