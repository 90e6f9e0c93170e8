#include "StandardSnapshot.h"

#include "Format.h"

namespace {

using Items = StandardItems;
using Index = StandardItems::Index;
using Kind = StandardDifference::Kind;
using Value = VyrAnnStandardXMLValue;

std::vector<VyrAnnStandardXMLNode_var> CopiesOfTops(VyrAnnStandardXMLParser& document) {
  std::vector<VyrAnnStandardXMLNode_var> copies;
  for (const VyrAnnStandardXMLNode_var& top : Items::TopsOf(document)) {
    copies.emplace_back(top->Clone());
  }
  return copies;
}

std::string TextAt(const Items& items, const StandardPlace& place) {
  const Value* value = items.ValueAt(place);
  return value != nullptr ? ValueText(*value) : KindWord(items[place.item].node->GetNodeType());
}

/// From 1, where it stands among its parent's nodes or values.
std::string PositionOf(const Items& items, const StandardPlace& place) {
  const Items::Item& item = items[place.item];
  return std::to_string(1 +
                        (place.value ? *place.value : place.item - items[item.parent].firstChild));
}

SnapshotChange ChangeOf(Kind kind, const Items& items, const StandardPlace& place) {
  return {kind, items.PathOf(place), items.EntryOf(place.item), {}, {}};
}

/// What was added or removed, with all that it holds, in the order of the standard.
void AddWhole(Kind kind, const Items& items, const StandardPlace& top,
              std::vector<SnapshotChange>& changes) {
  std::vector<StandardPlace> work = {top};
  while (!work.empty()) {
    const StandardPlace place = work.back();
    work.pop_back();
    SnapshotChange& change = changes.emplace_back(ChangeOf(kind, items, place));
    (kind == Kind::Added ? change.after : change.before) = TextAt(items, place);
    const VyrAnnStandardXMLNode& node = *items[place.item].node;
    if (place.value || WrappedValue(node) != nullptr) continue;
    // To be taken off the end of the list: the values first.
    for (Index i = items.ChildCount(place.item); i-- > 0;) {
      work.push_back({items[place.item].firstChild + i, {}});
    }
    for (auto i = static_cast<std::uint32_t>(node.GetValues().size()); i-- > 0;) {
      work.push_back({place.item, i});
    }
  }
}

}  // namespace

StandardSnapshot::StandardSnapshot(VyrAnnStandardXMLParser& document)
    : items_(CopiesOfTops(document)) {}

std::vector<SnapshotChange> StandardSnapshot::ChangesTo(const StandardSnapshot& later) const {
  std::vector<SnapshotChange> changes;
  for (const StandardDifference& difference : FindDifferences(items_, later.items_)) {
    switch (difference.kind) {
      case Kind::Added:
        AddWhole(difference.kind, later.items_, difference.after, changes);
        break;
      case Kind::Removed:
        AddWhole(difference.kind, items_, difference.before, changes);
        break;
      case Kind::Changed:
      case Kind::Moved:
        const auto tell = difference.kind == Kind::Changed ? &TextAt : &PositionOf;
        SnapshotChange& change =
            changes.emplace_back(ChangeOf(difference.kind, items_, difference.before));
        change.before = tell(items_, difference.before);
        change.after = tell(later.items_, difference.after);
        break;
    }
  }
  return changes;
}
