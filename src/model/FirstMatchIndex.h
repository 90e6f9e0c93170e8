#pragma once

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstdint>
#include <functional>
#include <string_view>
#include <utility>
#include <vector>

#include "VyrAnnStandardXMLNode.h"

/// What the index may ask of the items of the tree.
struct VyrFirstMatchAccess {
  static void MarkIndexed(VyrAnnStandardXMLNode& node) { node.isIndexed_ = true; }
  static void MarkIndexed(VyrAnnStandardXMLValue& value) { value.isIndexed_ = true; }
};

/// Counts the changes of keys that an index may hold. An item does not know its lists, so a key
/// that changes inside an item makes every index start anew; keys change far less often than
/// lists grow.
class IndexedKeyChanges {
 public:
  static void Count() { changes_.fetch_add(1, std::memory_order_relaxed); }
  static std::uint64_t Get() { return changes_.load(std::memory_order_relaxed); }

 private:
  static inline std::atomic<std::uint64_t> changes_{0};
};

/// Finds the first item of a list that has a given key, without a scan once the list is wide. Kept
/// along with the list by `Added`, `Removed` and `RemovedFirst`, none of which takes longer than
/// the edit of the list itself; built at the first search. The list may hold null elements, which
/// are no items.
///
/// `keyMayChange` tells whether an item may change its key while the list holds it.
template <class Item, std::string_view (*KeyOf)(const Item&), bool keyMayChange>
class FirstMatchIndex {
 public:
  using List = std::vector<VyrVar<Item>>;

  /// The first item of `list` with that key, borrowed; null when there is none.
  Item* Find(const List& list, std::string_view key) {
    if (!IsCurrent()) Build(list);
    if (Item* item = FindInOrder(list, key)) return item;
    return FindSlot(key, Hash(key)).item;
  }

  /// `list[place]` was just inserted.
  void Added(const List& list, std::size_t place) {
    if (!IsCurrent()) return;
    Item& item = *list[place].Get();
    Slot* slot = Enter(item);
    if (slot == nullptr) return;
    const Neighbours neighbours = NeighboursOf(*slot, list, place + 1);
    if (neighbours.isFirstBehind) {
      Link(*slot, *std::exchange(slot->item, &item), kNone);
    } else {
      Link(*slot, item, neighbours.lastBefore);
    }
  }

  /// `item`, still alive, was just removed from `list`, where it stood at `place`.
  void Removed(const List& list, const Item& item, std::size_t place) {
    if (!IsCurrent()) return;
    Slot& slot = FindSlot(KeyOf(item), Hash(KeyOf(item)));
    const FollowerId removed = NeighboursOf(slot, list, place).lastBefore;
    if (removed == kNone) return RemoveFirst(slot);
    Unlink(slot, removed);
  }

  /// `item`, still alive, was just removed from the list, where no item before it had its key.
  void RemovedFirst(const Item& item) {
    if (IsCurrent()) RemoveFirst(FindSlot(KeyOf(item), Hash(KeyOf(item))));
  }

  /// The first item of that key by a plain scan: for lists that are not worth an index.
  static Item* Scan(const List& list, std::string_view key) {
    for (const VyrVar<Item>& item : list) {
      if (item && KeyOf(*item) == key) return item.Get();
    }
    return nullptr;
  }

 private:
  using FollowerId = std::uint32_t;
  static constexpr FollowerId kNone = ~FollowerId{0};
  static constexpr FollowerId kRemoved = kNone - 1;

  /// One key: its first item, and the ring of those that follow it.
  struct Slot {
    Item* item = nullptr;
    std::uint32_t hash = 0;
    FollowerId followers = kNone;  // the first; kRemoved: used once, so that a probe goes on

    bool IsNew() const { return item == nullptr && followers != kRemoved; }
  };

  /// An item whose key an item before it has; linked in the order of the list.
  struct Follower {
    Item* item;
    FollowerId next;
    FollowerId previous;
  };

  /// Where a place of the list is among the items of one key.
  struct Neighbours {
    FollowerId lastBefore;  // kNone: no follower stands before the place
    bool isFirstBehind;
  };

  static std::uint32_t Hash(std::string_view key) {
    return static_cast<std::uint32_t>(std::hash<std::string_view>()(key));
  }

  /// Whoever goes through a wide list by name asks for its items in their order, and is spared the
  /// memory access of a hash: while no two keys are equal, the item after the one found last in
  /// this way, or the first of the list, is the answer if it has the key.
  Item* FindInOrder(const List& list, std::string_view key) {
    if (duplicates_ != 0) return nullptr;
    for (const std::size_t place : {nextInOrder_, std::size_t{0}}) {
      if (place >= list.size() || !list[place] || KeyOf(*list[place]) != key) continue;
      nextInOrder_ = place + 1;
      return list[place].Get();
    }
    return nullptr;
  }

  bool IsCurrent() const {
    if constexpr (keyMayChange) {
      if (changes_ != IndexedKeyChanges::Get()) return false;
    }
    return !slots_.empty();
  }

  void Build(const List& list) {
    changes_ = IndexedKeyChanges::Get();
    used_ = 0;
    followers_.clear();
    firstFree_ = kNone;
    duplicates_ = 0;
    slots_.assign(std::bit_ceil(list.size() * 2 + 1), Slot());
    for (const VyrVar<Item>& item : list) {
      if (!item) continue;
      if (Slot* slot = Enter(*item)) Link(*slot, *item, LastOf(*slot));
    }
  }

  /// The slot of an item's key when other items have it; a new key is counted in with its item.
  Slot* Enter(Item& item) {
    if (used_ * 2 >= slots_.size()) Grow();
    if constexpr (keyMayChange) VyrFirstMatchAccess::MarkIndexed(item);
    const std::uint32_t hash = Hash(KeyOf(item));
    Slot& slot = FindSlot(KeyOf(item), hash);
    if (slot.item != nullptr) return &slot;
    used_ += slot.IsNew() ? 1 : 0;
    slot = {&item, hash, kNone};
    return nullptr;
  }

  /// Looks from the end, as the list itself moves what stands behind an edit.
  Neighbours NeighboursOf(const Slot& slot, const List& list, std::size_t behind) const {
    FollowerId follower = LastOf(slot);
    for (std::size_t place = list.size(); place > behind;) {
      const Item* item = list[--place].Get();
      if (follower == kNone) {
        if (item == slot.item) return {kNone, true};
      } else if (item == followers_[follower].item) {
        follower = follower == slot.followers ? kNone : followers_[follower].previous;
      }
    }
    return {follower, false};
  }

  FollowerId LastOf(const Slot& slot) const {
    return slot.followers == kNone ? kNone : followers_[slot.followers].previous;
  }

  /// Makes an item follow behind another follower, or behind the first item.
  void Link(Slot& slot, Item& item, FollowerId behind) {
    const FollowerId id = NewFollower();
    Follower& added = followers_[id];
    added = {&item, id, id};
    if (slot.followers != kNone) {
      added.next = behind == kNone ? slot.followers : followers_[behind].next;
      added.previous = followers_[added.next].previous;
      followers_[added.previous].next = id;
      followers_[added.next].previous = id;
    }
    if (behind == kNone) slot.followers = id;
    ++duplicates_;
  }

  void Unlink(Slot& slot, FollowerId id) {
    Follower& removed = followers_[id];
    if (slot.followers == id) slot.followers = removed.next == id ? kNone : removed.next;
    followers_[removed.previous].next = removed.next;
    followers_[removed.next].previous = removed.previous;
    removed.next = std::exchange(firstFree_, id);
    --duplicates_;
  }

  FollowerId NewFollower() {
    if (firstFree_ != kNone) return std::exchange(firstFree_, followers_[firstFree_].next);
    followers_.emplace_back();
    return static_cast<FollowerId>(followers_.size() - 1);
  }

  void RemoveFirst(Slot& slot) {
    if (slot.followers == kNone) {
      slot = {nullptr, 0, kRemoved};
      return;
    }
    slot.item = followers_[slot.followers].item;
    Unlink(slot, slot.followers);
  }

  /// The slot of a key, or the empty slot where it belongs: a used one if there is one on the way,
  /// else a key that comes and goes would leave a trail that it has to follow each time.
  Slot& FindSlot(std::string_view key, std::uint32_t hash) {
    const std::size_t mask = slots_.size() - 1;
    Slot* used = nullptr;
    for (std::size_t i = hash & mask;; i = (i + 1) & mask) {
      Slot& slot = slots_[i];
      if (slot.IsNew()) return used == nullptr ? slot : *used;
      if (slot.item == nullptr) {
        if (used == nullptr) used = &slot;
      } else if (slot.hash == hash && KeyOf(*slot.item) == key) {
        return slot;
      }
    }
  }

  /// Makes room for as many keys again as are alive, so that keys that come and go leave nothing.
  void Grow() {
    const auto isAlive = [](const Slot& slot) { return slot.item != nullptr; };
    const auto alive =
        static_cast<std::size_t>(std::count_if(slots_.begin(), slots_.end(), isAlive));
    std::vector<Slot> old(std::bit_ceil(alive * 4 + 1));
    old.swap(slots_);
    used_ = 0;
    const std::size_t mask = slots_.size() - 1;
    for (const Slot& slot : old) {
      if (slot.item == nullptr) continue;
      std::size_t i = slot.hash & mask;
      while (!slots_[i].IsNew()) i = (i + 1) & mask;
      slots_[i] = slot;
      ++used_;
    }
  }

  std::vector<Slot> slots_;
  std::size_t used_ = 0;  // slots that hold a key or held one
  std::vector<Follower> followers_;
  FollowerId firstFree_ = kNone;
  std::size_t duplicates_ = 0;  // followers in use
  std::size_t nextInOrder_ = 0;
  std::uint64_t changes_ = 0;
};
