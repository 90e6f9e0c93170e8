#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/// The order of the items of a list, for edits anywhere in it: each item has a number that it keeps
/// while others come and go, and each operation takes a time that grows with the logarithm of their
/// count only. Knows nothing else of the items.
///
/// A binary tree in which no branch holds much more than two thirds of what is below its parent; a
/// subtree that an edit leaves worse is built anew. So an item's way from the root fits into one
/// word, and two such words tell which of two items comes first.
class ListOrder {
 public:
  /// Number of an item. Numbers of removed items are used again.
  using Id = std::uint32_t;
  /// No item.
  static constexpr Id kNone = ~Id{0};

  std::size_t GetCount() const { return root_ == kNone ? 0 : entries_[root_].size; }
  /// One more than the highest number ever given.
  std::size_t GetEndOfIds() const { return entries_.size(); }

  /// Numbers the items of a list of `count` from 0, in order.
  void Build(std::size_t count);
  /// Makes room for one item more, which is then inserted without asking for memory.
  void Reserve();
  /// Inserts an item before that at `place`, or at the end when `place` is the count.
  Id Insert(std::size_t place);
  void Remove(Id id);

  Id GetAt(std::size_t place) const;
  std::size_t GetPlace(Id id) const;
  /// `a` and `b` are two items.
  bool ComesBefore(Id a, Id b) const { return entries_[a].way < entries_[b].way; }
  /// The first item; `kNone` of an empty list.
  Id GetFirst() const { return root_ == kNone ? kNone : Leftmost(root_); }
  /// The item behind another; `kNone` behind the last.
  Id GetNext(Id id) const;

 private:
  struct Entry {
    Id parent;
    Id left;
    Id right;
    std::uint32_t size;  // of the subtree
    // The way from the root: at each level a bit, 1 to the right, and behind the last one a 1.
    std::uint64_t way;
  };

  static std::uint64_t LastBit(std::uint64_t way) { return way & (~way + 1); }
  std::size_t SizeOf(Id id) const { return id == kNone ? 0 : entries_[id].size; }
  bool IsUneven(Id id) const;
  Id Leftmost(Id id) const;
  Id& LinkTo(Id id);
  std::uint64_t WayOf(Id parent, bool isRight) const;
  void Place(Id id, Id parent, bool isRight);
  void PassOn(Id id);
  void ChangeSizes(Id from, int by);
  void BuildAnew(Id id);
  Id Chain(Id id, Id behind);
  Id BuildFromChain(std::size_t count, Id& chain, std::uint64_t way);

  std::vector<Entry> entries_;  // by number
  Id root_ = kNone;
  Id free_ = kNone;  // the numbers to be used again, linked by `parent`
};
