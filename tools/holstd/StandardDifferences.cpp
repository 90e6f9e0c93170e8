#include "StandardDifferences.h"

#include <utility>

#include "ListMatch.h"
#include "ValueMeaning.h"

namespace {

using Items = StandardItems;
using Index = StandardItems::Index;
using Node = VyrAnnStandardXMLNode;
using Value = VyrAnnStandardXMLValue;
using Kind = StandardDifference::Kind;

std::vector<ListElement> ElementsOf(const Items& items, Index parent) {
  std::vector<ListElement> elements;
  elements.reserve(items.ChildCount(parent));
  for (Index i = 0; i < items.ChildCount(parent); ++i) {
    const Items::Item& item = items[items[parent].firstChild + i];
    ListElement& element = elements.emplace_back();
    element.kind = item.node->GetNodeType();
    element.name = item.node->GetNodeName().View();
    element.hasEntryName = item.entryName != nullptr;
    if (element.hasEntryName) element.entryName = item.entryName->GetValue().View();
    element.isRepeated = item.isRepeated;
    element.isEntry = item.node->GetNodeType() == Node::NodeInstance;
    element.content = item.content;
    element.unnamed = item.unnamed;
  }
  return elements;
}

/// The values that a node holds directly: fields are found by name but some of them by their place
/// too, and so the order of all counts. A literal is known by its text.
std::vector<ListElement> ElementsOf(const Node& node) {
  std::vector<ListElement> elements;
  elements.reserve(node.GetValues().size());
  for (const VyrAnnStandardXMLValue_var& value : node.GetValues()) {
    ListElement& element = elements.emplace_back();
    element.hasEntryName = node.GetNodeType() == Node::NodeEnum;
    (element.hasEntryName ? element.entryName : element.name) = KeyOfValue(node, *value);
    element.isEntry = true;
    element.content = ContentOf(node, *value);
  }
  return elements;
}

class Comparison {
 public:
  Comparison(const Items& before, const Items& after) : before_(before), after_(after) {}

  void Compare(Index before, Index after) {
    std::vector<Pair> work = {{{before, {}}, {after, {}}, false}};
    while (!work.empty()) {
      const Pair pair = work.back();
      work.pop_back();
      Report(pair);
      if (pair.before.IsNone() || pair.after.IsNone()) continue;
      CompareValues(pair.before.item, pair.after.item);
      PushChildren(pair.before.item, pair.after.item, work);
    }
  }
  std::vector<StandardDifference> TakeDifferences() { return std::move(differences_); }

 private:
  struct Pair {
    StandardPlace before;
    StandardPlace after;
    bool isMoved;
  };

  void Report(const Pair& pair) {
    if (pair.before.IsNone()) {
      differences_.push_back({Kind::Added, {}, pair.after});
    } else if (pair.after.IsNone()) {
      differences_.push_back({Kind::Removed, pair.before, {}});
    } else if (pair.isMoved) {
      differences_.push_back({Kind::Moved, pair.before, pair.after});
    }
  }

  /// Calls `visit` for every pair of the match, what was removed first.
  template <class Visit>
  static void ForEachPair(const ListMatch& match, Visit visit) {
    const auto& before = match.PartnersOfBefore();
    const auto& after = match.PartnersOfAfter();
    for (Index i = 0; i < before.size(); ++i) {
      if (before[i] == ListMatch::kNone) visit(i, ListMatch::kNone, false);
    }
    for (Index i = 0; i < after.size(); ++i) visit(after[i], i, match.IsMoved(i));
  }

  static StandardPlace PlaceOfValue(Index item, Index value) {
    if (value == ListMatch::kNone) return {};
    return {item, value};
  }

  void CompareValues(Index before, Index after) {
    const Node& a = *before_[before].node;
    const Node& b = *after_[after].node;
    if (IsParameter(a) && IsParameter(b)) return CompareValue({{before, 0}, {after, 0}, false});
    if (a.GetValues().empty() && b.GetValues().empty()) return;
    const std::vector<ListElement> ofBefore = ElementsOf(a);
    const std::vector<ListElement> ofAfter = ElementsOf(b);
    ForEachPair(ListMatch(ofBefore, ofAfter), [&](Index i, Index j, bool isMoved) {
      CompareValue({PlaceOfValue(before, i), PlaceOfValue(after, j), isMoved});
    });
  }

  void CompareValue(const Pair& pair) {
    Report(pair);
    if (pair.before.IsNone() || pair.after.IsNone()) return;
    const Node& node = *before_[pair.before.item].node;
    const Value& a = *node.GetValues()[*pair.before.value];
    const Value& b = *after_[pair.after.item].node->GetValues()[*pair.after.value];
    const bool isSame =
        node.GetNodeType() == Node::NodeEnum ? a.GetValue() == b.GetValue() : IsSameValue(a, b);
    if (!isSame) differences_.push_back({Kind::Changed, pair.before, pair.after});
  }

  /// To be taken off the end of the list.
  void PushChildren(Index before, Index after, std::vector<Pair>& work) {
    if (before_.ChildCount(before) == 0 && after_.ChildCount(after) == 0) return;
    const std::vector<ListElement> ofBefore = ElementsOf(before_, before);
    const std::vector<ListElement> ofAfter = ElementsOf(after_, after);
    std::vector<Pair> pairs;
    const auto placeOf = [](const Items& items, Index parent, Index child) {
      if (child == ListMatch::kNone) return StandardPlace();
      return StandardPlace{items[parent].firstChild + child, {}};
    };
    ForEachPair(ListMatch(ofBefore, ofAfter), [&](Index i, Index j, bool isMoved) {
      pairs.push_back({placeOf(before_, before, i), placeOf(after_, after, j), isMoved});
    });
    work.insert(work.end(), pairs.rbegin(), pairs.rend());
  }

  const Items& before_;
  const Items& after_;
  std::vector<StandardDifference> differences_;
};

}  // namespace

std::vector<StandardDifference> FindDifferences(const Items& before, Index itemOfBefore,
                                                const Items& after, Index itemOfAfter) {
  Comparison comparison(before, after);
  comparison.Compare(itemOfBefore, itemOfAfter);
  return comparison.TakeDifferences();
}

std::vector<StandardDifference> FindDifferences(const Items& before, const Items& after) {
  Comparison comparison(before, after);
  for (Index top = 0; top < Items::kTops; ++top) comparison.Compare(top, top);
  return comparison.TakeDifferences();
}
