#include "Counterparts.h"

#include <functional>

using Items = StandardItems;
using Index = StandardItems::Index;

std::size_t Counterparts::KeyHash::operator()(const Key& key) const {
  const std::hash<std::string_view> hash;
  return (hash(key.name) * 31 + hash(key.entryName)) * 31 + key.ordinal +
         static_cast<std::size_t>(key.kind);
}

std::optional<StandardPlace> Counterparts::Of(const Items& items, const StandardPlace& place) {
  std::vector<Index> chain;
  Index item = place.item;
  for (; item >= Items::kTops; item = items[item].parent) chain.push_back(item);
  Index answer = item;  // the trees are the same
  for (auto at = chain.rbegin(); at != chain.rend(); ++at) {
    answer = Child(items, *at, answer);
    if (answer == Items::kNone) return std::nullopt;
  }
  if (!place.value) return StandardPlace{answer, {}};
  const auto value = Value(items, place, answer);
  if (!value) return std::nullopt;
  return StandardPlace{answer, value};
}

const Counterparts::Children& Counterparts::ChildrenOf(Index parent) {
  const auto [found, isNew] = children_.try_emplace(parent);
  Children& children = found->second;
  for (Index i = 0; isNew && i < others_.ChildCount(parent); ++i) {
    const Index child = others_[parent].firstChild + i;
    const Items::Item& item = others_[child];
    const int kind = item.node->GetNodeType();
    const std::string_view name = item.node->GetNodeName().View();
    children.try_emplace({kind, name, {}, item.ordinal}, child);
    if (item.entryName == nullptr) continue;
    children.try_emplace({kind, name, item.entryName->GetValue().View(), 0}, child);
  }
  return children;
}

Index Counterparts::Child(const Items& items, Index item, Index parent) {
  const Children& children = ChildrenOf(parent);
  const Items::Item& wanted = items[item];
  const int kind = wanted.node->GetNodeType();
  const std::string_view name = wanted.node->GetNodeName().View();
  const auto find = [&](const Key& key) {
    const auto found = children.find(key);
    return found == children.end() ? Items::kNone : found->second;
  };
  const Index first = find({kind, name, {}, 1});
  const bool isEntry = items.IsEntry(item) || (first != Items::kNone && others_.IsEntry(first));
  if (!isEntry || wanted.entryName == nullptr) return find({kind, name, {}, wanted.ordinal});
  return find({kind, name, wanted.entryName->GetValue().View(), 0});
}

std::optional<std::uint32_t> Counterparts::Value(const Items& items, const StandardPlace& value,
                                                 Index holder) {
  if (holder_ != holder) {
    holder_ = holder;
    values_.clear();
    const Items::Node& node = *others_[holder].node;
    for (std::uint32_t i = 0; i < node.GetValues().size(); ++i) {
      values_[KeyOfValue(node, *node.GetValues()[i])].push_back(i);
    }
  }
  const Items::Node& node = *items[value.item].node;
  const auto found = values_.find(KeyOfValue(node, *node.GetValues()[*value.value]));
  const std::uint32_t ordinal = items.OrdinalOfValue(value.item, *value.value);
  if (found == values_.end() || found->second.size() < ordinal) return std::nullopt;
  return found->second[ordinal - 1];
}
