#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "FirstMatchIndex.h"
#include "IndexedPlaces.h"
#include "ListOrder.h"
#include "VyrSteps.h"

/// Edits a wide list of references and finds its items by their keys, each in a time that grows
/// with the logarithm of the list only. Borrows the list, which nobody else edits.
///
/// As long as edits are few the list is edited as it is. When they would move its items again and
/// again, they are kept in the order alone: the list is then empty, with room for all its items,
/// until somebody asks for it.
template <class Item, class... Keys>
class ListIndex final : public VyrKeyListener {
 public:
  using List = std::vector<VyrVar<Item>>;

  explicit ListIndex(List& list) : list_(list) {}
  ListIndex(const ListIndex&) = delete;
  ListIndex& operator=(const ListIndex&) = delete;
  ~ListIndex() override {
    BringUpToDate();
    if (hasNumbers_) ForgetNumbers();
  }

  std::size_t GetCount() const { return isAhead_ ? order_.GetCount() : list_.size(); }

  /// Makes the list itself what it should be; asks for no memory.
  void BringUpToDate() {
    moves_ = 0;
    if (!isAhead_) return;
    isAhead_ = false;
    for (Id id = order_.GetFirst(); id != ListOrder::kNone; id = order_.GetNext(id)) {
      list_.push_back(VyrVar<Item>(items_[id]));
    }
  }

  /// Borrowed. `place` is below the count.
  Item* GetAt(std::size_t place) const {
    return isAhead_ ? items_[order_.GetAt(place)] : list_[place].Get();
  }

  /// Inserts before the item at `place`, or at the end when `place` is the count.
  void Insert(std::size_t place, VyrVar<Item> item) {
    const std::size_t count = GetCount();
    if (list_.capacity() <= count) list_.reserve(count * 2 + 1);
    CountMoves(count - place);
    if (hasNumbers_) AddNumber(place, *item.Get());
    if (isAhead_) {
      item.Detach();
    } else {
      list_.insert(list_.begin() + static_cast<std::ptrdiff_t>(place), std::move(item));
    }
  }

  /// Removes the item at `place`, which is below the count.
  VyrVar<Item> Remove(std::size_t place) {
    CountMoves(GetCount() - place - 1);
    VyrVar<Item> removed(isAhead_ ? items_[order_.GetAt(place)] : list_[place].Detach());
    if (hasNumbers_) RemoveNumber(order_.GetAt(place));
    if (!isAhead_) list_.erase(list_.begin() + static_cast<std::ptrdiff_t>(place));
    return removed;
  }

  /// The place of the first item of a key.
  template <class Key>
  std::optional<std::size_t> FindPlace(std::string_view key) {
    auto& index = IndexOf<Key>();
    if (const std::optional<std::size_t> place = FindInOrder(index, key)) return place;
    const Id id = index.Find(key);
    if (id == ListOrder::kNone) return std::nullopt;
    return order_.GetPlace(id);
  }

  /// The first item of a key, borrowed; null when there is none.
  template <class Key>
  Item* Find(std::string_view key) {
    auto& index = IndexOf<Key>();
    if (const std::optional<std::size_t> place = FindInOrder(index, key))
      return list_[*place].Get();
    const Id id = index.Find(key);
    return id == ListOrder::kNone ? nullptr : items_[id];
  }

  void KeyChanges(std::uint32_t item) override {
    ForEachIndex([=]<class Key>(FirstMatchIndex<Item, Key>& index) {
      if (Key::kMayChange) index.Remove(item);
    });
  }
  void KeyChanged(std::uint32_t item) override {
    ForEachIndex([=]<class Key>(FirstMatchIndex<Item, Key>& index) {
      if (Key::kMayChange) index.Add(item);
    });
  }

 private:
  using Id = ListOrder::Id;

  /// So often each item of a list may be moved, on an average, until edits cease to move them.
  static constexpr std::size_t kMovesOfItem = 4;

  template <class Visit>
  void ForEachIndex(Visit visit) {
    std::apply([&](auto&... index) { (..., (index ? visit(*index) : void())); }, indexes_);
  }

  void CountMoves(std::size_t moves) {
    if (isAhead_) return;
    VyrSteps::Count(moves);
    moves_ += moves;
    if (moves_ <= kMovesOfItem * list_.size()) return;
    if (!hasNumbers_) GiveNumbers();
    for (VyrVar<Item>& item : list_) item.Detach();
    list_.clear();
    isAhead_ = true;
  }

  void GiveNumbers() {
    order_.Build(list_.size());
    items_.clear();
    items_.reserve(list_.size());
    hasNumbers_ = true;
    try {
      for (const VyrVar<Item>& item : list_) {
        VyrIndexedPlaces::Add(*item, *this, static_cast<Id>(items_.size()));
        items_.push_back(item.Get());
      }
    } catch (...) {
      ForgetNumbers();
      throw;
    }
  }

  void ForgetNumbers() {
    hasNumbers_ = false;
    for (Id id = 0; id < items_.size(); ++id) {
      if (items_[id] != nullptr) VyrIndexedPlaces::Remove(*items_[id], *this, id);
    }
  }

  /// Changes nothing when there is not enough memory.
  void AddNumber(std::size_t place, Item& item) {
    order_.Reserve();
    const std::size_t end = order_.GetEndOfIds() + 1;
    if (items_.capacity() < end) items_.reserve(end * 2);
    ForEachIndex([=](auto& index) { index.Reserve(end); });
    const Id id = order_.Insert(place);
    if (items_.size() <= id) items_.resize(id + std::size_t{1});
    try {
      VyrIndexedPlaces::Add(item, *this, id);
    } catch (...) {
      order_.Remove(id);
      throw;
    }
    items_[id] = &item;
    ForEachIndex([=](auto& index) { index.Add(id); });
  }

  void RemoveNumber(Id id) {
    ForEachIndex([=](auto& index) { index.Remove(id); });
    VyrIndexedPlaces::Remove(*std::exchange(items_[id], nullptr), *this, id);
    order_.Remove(id);
  }

  /// Whoever goes through a wide list by key asks for its items in their order, and is spared the
  /// memory access of a hash: while no two keys are equal, the item after the one found last in
  /// this way, or the first of the list, is the answer if it has the key.
  template <class Key>
  std::optional<std::size_t> FindInOrder(const FirstMatchIndex<Item, Key>& index,
                                         std::string_view key) {
    if (isAhead_ || !index.AreKeysUnique()) return std::nullopt;
    for (const std::size_t place : {nextInOrder_, std::size_t{0}}) {
      if (place >= list_.size() || Key::Of(*list_[place]) != key) continue;
      nextInOrder_ = place + 1;
      return place;
    }
    return std::nullopt;
  }

  template <class Key>
  FirstMatchIndex<Item, Key>& IndexOf() {
    auto& index = std::get<std::optional<FirstMatchIndex<Item, Key>>>(indexes_);
    if (!index) MakeIndex(index);
    return *index;
  }

  template <class Key>
  void MakeIndex(std::optional<FirstMatchIndex<Item, Key>>& index) {
    if (!hasNumbers_) GiveNumbers();
    FirstMatchIndex<Item, Key> made(order_, items_);
    made.Reserve(order_.GetEndOfIds());
    for (Id id = order_.GetFirst(); id != ListOrder::kNone; id = order_.GetNext(id)) made.Add(id);
    index.emplace(std::move(made));
  }

  List& list_;
  std::size_t moves_ = 0;    // of items since somebody asked for the list
  bool isAhead_ = false;     // the order holds edits, and the references, that the list does not
  bool hasNumbers_ = false;  // the order and the items by their numbers are kept
  std::size_t nextInOrder_ = 0;
  ListOrder order_;
  std::vector<Item*> items_;
  std::tuple<std::optional<FirstMatchIndex<Item, Keys>>...> indexes_;
};
