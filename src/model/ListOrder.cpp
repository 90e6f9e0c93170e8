#include "ListOrder.h"

#include <algorithm>

#include "VyrSteps.h"

namespace {

constexpr std::uint64_t kWayOfRoot = std::uint64_t{1} << 63;

}  // namespace

void ListOrder::Build(std::size_t count) {
  entries_.assign(count, Entry{kNone, kNone, kNone, 1, 0});
  for (std::size_t i = 0; i + 1 < count; ++i) entries_[i].right = static_cast<Id>(i + 1);
  free_ = kNone;
  Id chain = count == 0 ? kNone : 0;
  root_ = BuildFromChain(count, chain, kWayOfRoot);
}

void ListOrder::Reserve() {
  if (free_ == kNone && entries_.size() == entries_.capacity()) {
    entries_.reserve(std::max<std::size_t>(64, entries_.capacity() * 2));
  }
}

ListOrder::Id ListOrder::Insert(std::size_t place) {
  Id id = free_;
  if (id == kNone) {
    id = static_cast<Id>(entries_.size());
    entries_.emplace_back();
  } else {
    free_ = entries_[id].parent;
  }
  entries_[id] = {kNone, kNone, kNone, 1, kWayOfRoot};
  if (root_ == kNone) return root_ = id;
  bool isRight = place >= GetCount();
  Id parent = root_;
  if (isRight) {
    while (entries_[parent].right != kNone) parent = entries_[parent].right;
  } else {
    parent = GetAt(place);
    if (entries_[parent].left != kNone) {
      isRight = true;
      parent = entries_[parent].left;
      while (entries_[parent].right != kNone) parent = entries_[parent].right;
    }
  }
  Place(id, parent, isRight);
  ChangeSizes(parent, 1);
  return id;
}

void ListOrder::Remove(Id id) {
  if (entries_[id].left != kNone && entries_[id].right != kNone) PassOn(id);
  const Id parent = entries_[id].parent;
  const Id child = entries_[id].left != kNone ? entries_[id].left : entries_[id].right;
  if (parent == kNone) {
    root_ = child;
    if (child != kNone) entries_[child].parent = kNone;
  } else {
    LinkTo(id) = child;
    if (child != kNone) entries_[child].parent = parent;
  }
  // An only child has hardly anything below it, or its parent would have been uneven.
  if (child != kNone) BuildAnew(child);
  if (parent != kNone) ChangeSizes(parent, -1);
  entries_[id].parent = free_;
  free_ = id;
}

ListOrder::Id ListOrder::GetAt(std::size_t place) const {
  Id id = root_;
  for (;;) {
    VyrSteps::Count();
    const std::size_t before = SizeOf(entries_[id].left);
    if (place == before) return id;
    id = place < before ? entries_[id].left : entries_[id].right;
    if (place > before) place -= before + 1;
  }
}

std::size_t ListOrder::GetPlace(Id id) const {
  std::size_t place = SizeOf(entries_[id].left);
  for (Id up = entries_[id].parent; up != kNone; id = up, up = entries_[id].parent) {
    VyrSteps::Count();
    if (entries_[up].right == id) place += SizeOf(entries_[up].left) + 1;
  }
  return place;
}

ListOrder::Id ListOrder::GetNext(Id id) const {
  if (entries_[id].right != kNone) return Leftmost(entries_[id].right);
  Id up = entries_[id].parent;
  for (; up != kNone && entries_[up].right == id; up = entries_[up].parent) {
    VyrSteps::Count();
    id = up;
  }
  return up;
}

bool ListOrder::IsUneven(Id id) const {
  const Entry& entry = entries_[id];
  const std::size_t greater = std::max(SizeOf(entry.left), SizeOf(entry.right));
  return greater * 3 > std::size_t{entry.size} * 2;
}

ListOrder::Id ListOrder::Leftmost(Id id) const {
  for (; entries_[id].left != kNone; id = entries_[id].left) VyrSteps::Count();
  return id;
}

/// Where the parent of an item, or the tree, tells that the item is there.
ListOrder::Id& ListOrder::LinkTo(Id id) {
  const Id parent = entries_[id].parent;
  if (parent == kNone) return root_;
  return entries_[parent].left == id ? entries_[parent].left : entries_[parent].right;
}

std::uint64_t ListOrder::WayOf(Id parent, bool isRight) const {
  const std::uint64_t way = entries_[parent].way;
  const std::uint64_t half = LastBit(way) / 2;
  return isRight ? way + half : way - half;
}

void ListOrder::Place(Id id, Id parent, bool isRight) {
  entries_[id].parent = parent;
  entries_[id].way = WayOf(parent, isRight);
  (isRight ? entries_[parent].right : entries_[parent].left) = id;
}

/// An item with two branches changes its place in the tree, not that in the list, with the item
/// behind it, which has one branch at most.
void ListOrder::PassOn(Id id) {
  const Id next = Leftmost(entries_[id].right);
  Entry& above = entries_[id];
  Entry& below = entries_[next];
  LinkTo(id) = next;
  if (below.parent == id) {
    // `next` takes the place of `id`, which becomes its right child.
    const Id right = below.right;
    std::swap(above.way, below.way);
    std::swap(above.size, below.size);
    below.parent = above.parent;
    below.left = above.left;
    below.right = id;
    above.parent = next;
    above.left = kNone;
    above.right = right;
  } else {
    LinkTo(next) = id;
    std::swap(above, below);
  }
  entries_[entries_[next].left].parent = next;
  entries_[entries_[next].right].parent = next;
  if (entries_[id].right != kNone) entries_[entries_[id].right].parent = id;
}

/// Tells an item and all above it that there are more or fewer below them.
void ListOrder::ChangeSizes(Id from, int by) {
  Id uneven = kNone;
  for (Id id = from; id != kNone; id = entries_[id].parent) {
    VyrSteps::Count();
    entries_[id].size += static_cast<std::uint32_t>(by);
    if (IsUneven(id)) uneven = id;
  }
  if (uneven != kNone) BuildAnew(uneven);
}

void ListOrder::BuildAnew(Id id) {
  const Id parent = entries_[id].parent;
  Id& link = LinkTo(id);
  const bool isRight = parent != kNone && &link == &entries_[parent].right;
  const std::size_t count = entries_[id].size;
  Id chain = Chain(id, kNone);
  link = BuildFromChain(count, chain, parent == kNone ? kWayOfRoot : WayOf(parent, isRight));
  entries_[link].parent = parent;
}

/// Links the items of a subtree by `right`, in order, the last one to the item `behind`. Neither
/// this nor its opposite goes deeper than the tree.
ListOrder::Id ListOrder::Chain(Id id, Id behind) {
  if (id == kNone) return behind;
  entries_[id].right = Chain(entries_[id].right, behind);
  return Chain(entries_[id].left, id);
}

/// Makes the next `count` items of a chain an even subtree; its root is returned.
ListOrder::Id ListOrder::BuildFromChain(std::size_t count, Id& chain, std::uint64_t way) {
  if (count == 0) return kNone;
  const std::uint64_t half = LastBit(way) / 2;
  const Id left = BuildFromChain(count / 2, chain, way - half);
  const Id id = chain;
  chain = entries_[id].right;
  const Id right = BuildFromChain(count - count / 2 - 1, chain, way + half);
  VyrSteps::Count();
  entries_[id] = {kNone, left, right, static_cast<std::uint32_t>(count), way};
  if (left != kNone) entries_[left].parent = id;
  if (right != kNone) entries_[right].parent = id;
  return id;
}
