#include "StandardItems.h"

#include <functional>
#include <unordered_map>
#include <utility>

#include "Format.h"
#include "ValueMeaning.h"

namespace {

using Node = VyrAnnStandardXMLNode;
using Value = VyrAnnStandardXMLValue;
using Index = StandardItems::Index;

constexpr Index kFewChildren = 16;

std::uint64_t Mixed(std::uint64_t number) {
  number ^= number >> 30;
  number *= 0xbf58476d1ce4e5b9u;
  number ^= number >> 27;
  number *= 0x94d049bb133111ebu;
  return number ^ (number >> 31);
}

std::uint64_t Hash(std::string_view text, std::uint64_t seed) {
  return Mixed(std::hash<std::string_view>()(text) + Mixed(seed + 1));
}

const Value* TextOf(const Value* value) {
  return value != nullptr && value->GetType() == Value::ValueString ? value : nullptr;
}

std::string Numbered(std::string_view name, std::uint32_t ordinal) {
  std::string text(name);
  if (ordinal > 1 || name.empty()) text += "[" + std::to_string(ordinal) + "]";
  return text;
}

}  // namespace

std::string_view KeyOfValue(const Node& node, const Value& value) {
  return node.GetNodeType() == Node::NodeEnum ? value.GetValue().View() : OwnName(value);
}

bool IsParameter(const Node& node) {
  return node.GetNodeType() == Node::NodePlain && node.GetValues().size() == 1;
}

const Value* NameOfEntry(const Node& node) {
  for (const VyrAnnStandardXMLValue_var& value : node.GetValues()) {
    if (OwnName(*value) == "Name" && TextOf(value.Get()) != nullptr) return value.Get();
  }
  for (const VyrAnnStandardXMLNode_var& child : node.GetNodes()) {
    if (child->GetNodeName().View() != "Name" || !IsParameter(*child)) continue;
    const Value* name = TextOf(child->GetValues().front().Get());
    if (name != nullptr) return name;
  }
  return nullptr;
}

std::uint64_t ContentOf(const Node& node, const Value& value) {
  const std::string meaning = MeaningOf(value.GetType(), value.GetValue().View());
  const std::string_view label =
      node.GetNodeType() == Node::NodeEnum ? std::string_view() : value.GetValueName().View();
  const bool hasBound = value.GetRangeVal() == 1;
  const auto kind = static_cast<std::uint64_t>(value.GetType()) * 2 + (hasBound ? 1 : 0);
  const std::uint64_t labels =
      hasBound ? Hash(MeaningOf(Value::ValueFloat, label), kind) : Hash(label, kind);
  return Hash(meaning, labels);
}

std::vector<VyrAnnStandardXMLNode_var> StandardItems::TopsOf(VyrAnnStandardXMLParser& document) {
  std::vector<VyrAnnStandardXMLNode_var> tops;
  for (const char* name : kTopNames) {
    tops.emplace_back(document.GetNodeWithPath(name));
  }
  return tops;
}

StandardItems::StandardItems(std::vector<VyrAnnStandardXMLNode_var> tops) : tops_(std::move(tops)) {
  for (const VyrAnnStandardXMLNode_var& top : tops_) {
    items_.push_back({top.Get(), kNone, 0, 1, false, nullptr, kNone, 0, 0, 0});
  }
  for (Index item = 0; item < Count(); ++item) AddChildren(item);
  for (Index item = Count(); item-- > 0;) Summarize(item);
  for (Index item = kTops; item < Count(); ++item) {
    const bool isNamed = IsEntry(item) && items_[item].entryName != nullptr;
    items_[item].entry = isNamed ? item : items_[items_[item].parent].entry;
  }
}

void StandardItems::AddChildren(Index parent) {
  const Index begin = Count();
  items_[parent].firstChild = begin;
  const Node::Nodes& children = items_[parent].node->GetNodes();
  for (const VyrAnnStandardXMLNode_var& child : children) {
    items_.push_back({child.Get(), parent, 0, 1, false, nullptr, kNone, 0, 0, 0});
  }
  if (children.size() <= kFewChildren) {
    Number(begin, Count());
  } else {
    NumberMany(begin, Count());
  }
}

void StandardItems::Number(Index begin, Index end) {
  for (Index item = begin; item < end; ++item) {
    for (Index before = begin; before < item; ++before) {
      if (!(items_[before].node->GetNodeName() == items_[item].node->GetNodeName())) continue;
      ++items_[item].ordinal;
      items_[item].isRepeated = items_[before].isRepeated = true;
    }
  }
}

void StandardItems::NumberMany(Index begin, Index end) {
  struct Seen {
    Index first;
    std::uint32_t count;
  };
  std::unordered_map<std::string_view, Seen> seen;
  for (Index item = begin; item < end; ++item) {
    Seen& name =
        seen.try_emplace(items_[item].node->GetNodeName().View(), Seen{item, 0}).first->second;
    items_[item].ordinal = ++name.count;
    if (name.count > 1) items_[item].isRepeated = items_[name.first].isRepeated = true;
  }
}

/// Children come after their parents: taken backwards, they are complete before these.
void StandardItems::Summarize(Index index) {
  Item& item = items_[index];
  const Node& node = *item.node;
  const auto kind = static_cast<std::uint64_t>(node.GetNodeType());
  const std::uint64_t name = Hash(node.GetNodeName().View(), kind);
  // A sum, since the order of parameters says nothing.
  std::uint64_t content = name;
  std::uint64_t ofEntryName = 0;
  item.entryName = NameOfEntry(node);
  for (const VyrAnnStandardXMLValue_var& value : node.GetValues()) {
    const std::uint64_t part = Mixed(ContentOf(node, *value));
    content += part;
    if (value.Get() == item.entryName) ofEntryName = part;
  }
  item.values = static_cast<std::uint32_t>(node.GetValues().size());
  for (Index child = 0; child < ChildCount(index); ++child) {
    const Item& below = items_[item.firstChild + child];
    content += below.content;
    item.values += below.values;
    const bool isEntryName = item.entryName != nullptr && IsParameter(*below.node) &&
                             below.node->GetValues().front().Get() == item.entryName;
    if (isEntryName) ofEntryName = below.content;
  }
  item.content = Mixed(content);
  item.unnamed = Mixed(content - ofEntryName);
}

const Value* StandardItems::ValueAt(const StandardPlace& place) const {
  const Node& node = *items_[place.item].node;
  return place.value ? node.GetValues()[*place.value].Get() : WrappedValue(node);
}

std::string StandardItems::PathOf(const StandardPlace& place) const {
  return place.value ? PathOfValue(place.item, *place.value) : PathOf(place.item);
}

std::string StandardItems::PathOf(Index item) const {
  return PathTo(items_[item].parent,
                Numbered(items_[item].node->GetNodeName().View(), items_[item].ordinal));
}

std::string StandardItems::PathOfValue(Index item, std::size_t value) const {
  const Node& node = *items_[item].node;
  if (IsParameter(node)) return PathOf(item);
  return PathTo(item,
                Numbered(KeyOfValue(node, *node.GetValues()[value]), OrdinalOfValue(item, value)));
}

/// Looks no further out than what is shown.
std::string StandardItems::PathTo(Index item, const std::string& last) const {
  std::vector<std::string> names = {last};
  std::size_t size = last.size();
  for (; item != kNone && size <= kMostOfPath; item = items_[item].parent) {
    names.push_back(Numbered(items_[item].node->GetNodeName().View(), items_[item].ordinal));
    size += 1 + names.back().size();
  }
  std::string path;
  for (auto name = names.rbegin(); name != names.rend(); ++name) {
    if (name != names.rbegin()) path += '.';
    path += *name;
  }
  return ShownPath(std::move(path), item == kNone);
}

std::uint32_t StandardItems::OrdinalOfValue(Index item, std::size_t value) const {
  if (numberedItem_ != item) {
    const Node& node = *items_[item].node;
    numberedItem_ = item;
    valueOrdinals_.clear();
    std::unordered_map<std::string_view, std::uint32_t> seen;
    for (const VyrAnnStandardXMLValue_var& each : node.GetValues()) {
      valueOrdinals_.push_back(++seen[KeyOfValue(node, *each)]);
    }
  }
  return valueOrdinals_[value];
}

std::string StandardItems::EntryOf(Index item) const {
  const Index entry = items_[item].entry;
  return entry == kNone ? std::string() : ShownName(items_[entry].entryName->GetValue().View());
}
