#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <functional>
#include <string_view>
#include <utility>
#include <vector>

#include "ListOrder.h"
#include "VyrSteps.h"

/// Finds the first item of a list that has a given key. `Key::Of` gives the key of an item.
///
/// A hash table of the items that are the first of their keys. Those that follow a first one are
/// below it in a pairing heap by their order, from which any can be taken out and which asks for no
/// memory: a key may change where nobody expects an error.
template <class Item, class Key>
class FirstMatchIndex {
 public:
  using Id = ListOrder::Id;

  /// Borrows the order of a list and its items by their numbers, which hold an item before it is
  /// added here and until it is removed.
  FirstMatchIndex(const ListOrder& order, const std::vector<Item*>& items)
      : order_(order), items_(items) {}

  /// Makes room for the numbers below `end`; items that are added then need no memory.
  void Reserve(std::size_t end) {
    if (end > entries_.size()) entries_.resize(end);
    if (end > buckets_.size()) Spread(std::bit_ceil(std::max<std::size_t>(end, 64)));
  }

  void Add(Id id) {
    entries_[id] = {HashOf(KeyOf(id)), ListOrder::kNone, ListOrder::kNone, ListOrder::kNone};
    Id& link = LinkTo(KeyOf(id), entries_[id].hash);
    if (link == ListOrder::kNone) {
      link = id;
      return;
    }
    ++followers_;
    const Id next = entries_[link].next;
    link = Merge(link, id);
    entries_[link].next = next;
  }

  /// Asks for no key: it may have changed.
  void Remove(Id id) {
    const Id below = MergeAll(entries_[id].child);
    if (entries_[id].above != ListOrder::kNone) {
      --followers_;
      return ReplaceFollower(id, below);
    }
    Id* link = &buckets_[entries_[id].hash & (buckets_.size() - 1)];
    for (; *link != id; link = &entries_[*link].next) VyrSteps::Count();
    const Id next = entries_[id].next;
    *link = below == ListOrder::kNone ? next : below;
    if (below == ListOrder::kNone) return;
    --followers_;
    entries_[below].next = next;
    entries_[below].above = ListOrder::kNone;
  }

  /// The number of the first item of a key; `ListOrder::kNone` when there is none.
  Id Find(std::string_view key) { return LinkTo(key, HashOf(key)); }

  /// Whether no two items have one key.
  bool AreKeysUnique() const { return followers_ == 0; }

 private:
  struct Entry {
    std::uint32_t hash;
    Id next;   // of a first item the next one of its bucket, of a follower the next beside it
    Id child;  // the first of those below it
    Id above;  // `kNone` for a first item, else the one before it beside it, or the one above
  };

  static std::uint32_t HashOf(std::string_view key) {
    return static_cast<std::uint32_t>(std::hash<std::string_view>()(key));
  }
  std::string_view KeyOf(Id id) const { return Key::Of(*items_[id]); }

  /// What links to the first item of a key, or where it would be linked.
  Id& LinkTo(std::string_view key, std::uint32_t hash) {
    Id* link = &buckets_[hash & (buckets_.size() - 1)];
    for (; *link != ListOrder::kNone; link = &entries_[*link].next) {
      VyrSteps::Count();
      if (entries_[*link].hash == hash && KeyOf(*link) == key) break;
    }
    return *link;
  }

  void Spread(std::size_t count) {
    std::vector<Id> old(count, ListOrder::kNone);
    old.swap(buckets_);
    for (Id id : old) {
      while (id != ListOrder::kNone) {
        Id& bucket = buckets_[entries_[id].hash & (count - 1)];
        id = std::exchange(entries_[id].next, std::exchange(bucket, id));
      }
    }
  }

  /// Puts one of two that stand alone below the other, which is returned.
  Id Merge(Id a, Id b) {
    VyrSteps::Count();
    if (order_.ComesBefore(b, a)) std::swap(a, b);
    entries_[b].next = entries_[a].child;
    entries_[b].above = a;
    if (entries_[a].child != ListOrder::kNone) entries_[entries_[a].child].above = b;
    entries_[a].child = b;
    return a;
  }

  /// Makes one of those that stand beside each other: first in pairs, then the last pair with the
  /// one before it and so on, which keeps the heap from growing wide.
  Id MergeAll(Id first) {
    Id pairs = ListOrder::kNone;
    while (first != ListOrder::kNone) {
      Id pair = first;
      const Id second = entries_[first].next;
      first = second == ListOrder::kNone ? second : entries_[second].next;
      if (second != ListOrder::kNone) pair = Merge(pair, second);
      entries_[pair].next = std::exchange(pairs, pair);
    }
    Id merged = pairs;
    if (pairs == ListOrder::kNone) return merged;
    pairs = entries_[merged].next;
    while (pairs != ListOrder::kNone) {
      const Id next = entries_[pairs].next;
      merged = Merge(merged, pairs);
      pairs = next;
    }
    return merged;
  }

  void ReplaceFollower(Id id, Id by) {
    const auto [hash, next, child, above] = entries_[id];
    const Id follows = by == ListOrder::kNone ? next : by;
    (entries_[above].child == id ? entries_[above].child : entries_[above].next) = follows;
    if (by != ListOrder::kNone) {
      entries_[by].above = above;
      entries_[by].next = next;
    }
    if (next != ListOrder::kNone) entries_[next].above = by == ListOrder::kNone ? above : by;
  }

  const ListOrder& order_;
  const std::vector<Item*>& items_;
  std::vector<Entry> entries_;  // by number
  std::vector<Id> buckets_;     // the first items, linked by `next`; their count is a power of two
  std::size_t followers_ = 0;
};
