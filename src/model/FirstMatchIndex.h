#pragma once

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstdint>
#include <functional>
#include <string_view>
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
/// along with the list by `Added` and `Removed`; built at the first search.
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
    Enter(*list[place].Get(), place + 1 == list.size() ? nullptr : &list);
  }

  /// `item`, still alive, was just removed from `list`.
  void Removed(const List& list, const Item& item) {
    if (!IsCurrent()) return;
    Slot& slot = FindSlot(KeyOf(item), Hash(KeyOf(item)));
    if (--slot.count == 0) {
      slot = {nullptr, 0, kRemoved};
      return;
    }
    --duplicates_;
    if (slot.item == &item) slot.item = Scan(list, KeyOf(item));
  }

  /// The first item by a plain scan: for lists that are not worth an index.
  static Item* Scan(const List& list, std::string_view key) {
    for (const VyrVar<Item>& item : list) {
      if (KeyOf(*item) == key) return item.Get();
    }
    return nullptr;
  }

 private:
  static constexpr std::uint32_t kRemoved = ~std::uint32_t{0};

  /// One key: its first item and how many items have it.
  struct Slot {
    Item* item = nullptr;
    std::uint32_t hash = 0;
    std::uint32_t count = 0;  // 0: never used; kRemoved: used once, so that a probe goes on
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
      if (place >= list.size() || KeyOf(*list[place]) != key) continue;
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
    duplicates_ = 0;
    slots_.assign(std::bit_ceil(list.size() * 2 + 1), Slot());
    for (const VyrVar<Item>& item : list) Enter(*item, nullptr);
  }

  /// Counts an item in. `list` is given when the item may stand before the first of its key.
  void Enter(Item& item, const List* list) {
    if (used_ * 2 >= slots_.size()) Grow();
    if constexpr (keyMayChange) VyrFirstMatchAccess::MarkIndexed(item);
    const std::uint32_t hash = Hash(KeyOf(item));
    Slot& slot = FindSlot(KeyOf(item), hash);
    if (slot.item == nullptr) {
      used_ += slot.count == 0 ? 1 : 0;
      slot = {&item, hash, 1};
      return;
    }
    ++slot.count;
    ++duplicates_;
    if (list != nullptr) slot.item = FirstOf(*list, slot.item, &item);
  }

  static Item* FirstOf(const List& list, Item* a, Item* b) {
    for (const VyrVar<Item>& item : list) {
      if (item.Get() == a || item.Get() == b) return item.Get();
    }
    return a;
  }

  /// The slot of a key, or the empty slot where it belongs.
  Slot& FindSlot(std::string_view key, std::uint32_t hash) {
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t i = hash & mask;; i = (i + 1) & mask) {
      Slot& slot = slots_[i];
      if (slot.count == 0) return slot;
      if (slot.hash == hash && slot.item != nullptr && KeyOf(*slot.item) == key) return slot;
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
      while (slots_[i].count != 0) i = (i + 1) & mask;
      slots_[i] = slot;
      ++used_;
    }
  }

  std::vector<Slot> slots_;
  std::size_t used_ = 0;        // slots that hold a key or held one
  std::size_t duplicates_ = 0;  // items whose key an item before them has
  std::size_t nextInOrder_ = 0;
  std::uint64_t changes_ = 0;
};
