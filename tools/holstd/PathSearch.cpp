#include "PathSearch.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "Format.h"
#include "Nearest.h"

namespace {

using Items = StandardItems;
using Index = StandardItems::Index;
using Node = VyrAnnStandardXMLNode;

/// A name of a path.
struct Segment {
  std::string_view text;
  std::string_view name;      ///< the text without a place
  std::uint32_t ordinal = 0;  ///< the place, if there is one

  bool HasPlace() const { return name.size() != text.size(); }
  bool Means(std::string_view other, std::uint32_t place, bool isFirstMeant) const {
    if (HasPlace() && other == name && place == ordinal) return true;
    return other == text && (!isFirstMeant || place <= 1);
  }
};

Segment SegmentOf(std::string_view text) {
  Segment segment = {text, text};
  const std::size_t bracket = text.rfind('[');
  if (bracket == std::string_view::npos || !text.ends_with(']')) return segment;
  const char* const end = text.data() + text.size() - 1;
  const auto [stop, error] = std::from_chars(text.data() + bracket + 1, end, segment.ordinal);
  if (error != std::errc() || stop != end) return {text, text};
  segment.name = text.substr(0, bracket);
  return segment;
}

std::vector<Segment> SegmentsOf(std::string_view path) {
  std::vector<Segment> segments;
  while (!path.empty()) {
    const std::size_t dot = path.find('.');
    segments.push_back(SegmentOf(path.substr(0, dot)));
    path = dot == std::string_view::npos ? std::string_view() : path.substr(dot + 1);
  }
  return segments;
}

/// Queries take the thickness table alone as a child of the root: styles have fields of that name.
bool IsOfRoot(std::string_view path) {
  return path == "LineThickness";
}

/// What the names of a path may skip and leave open.
enum class Rule {
  AnyDepth,   ///< each stands at any depth below the one before it
  Element,    ///< the same; a parameter's value counts beside its node, and names have no places
  EachLevel,  ///< each stands directly below
  FirstOnly   ///< the same, and of several of its name it is the first
};

constexpr bool IsAnyDepth(Rule rule) {
  return rule == Rule::AnyDepth || rule == Rule::Element;
}

/// True when a node has values that paths name beside it. The only one of a parameter goes by the
/// name of the parameter, and literals have no names in queries.
bool HasNamedValues(const Node& node, Rule rule) {
  if (IsAnyDepth(rule) && node.GetNodeType() == Node::NodeEnum) return false;
  return rule == Rule::Element || !IsParameter(node);
}

/// Calls `visit` with the number of each direct value of a node that `wanted` means.
template <class Visit>
void ForEachValueMeant(const Node& node, const Segment& wanted, Rule rule, Visit visit) {
  if (!HasNamedValues(node, rule)) return;
  std::uint32_t ordinal = 0;
  for (std::uint32_t i = 0; i < node.GetValues().size(); ++i) {
    const std::string_view key = KeyOfValue(node, *node.GetValues()[i]);
    if (key == wanted.name) ++ordinal;
    const bool isCounted = !key.empty() || wanted.HasPlace();
    if (isCounted && wanted.Means(key, ordinal, rule == Rule::FirstOnly)) visit(i);
  }
}

class Search {
 public:
  Search(const Items& items, std::vector<Segment> segments, Rule rule)
      : items_(items),
        segments_(std::move(segments)),
        rule_(rule),
        isStrict_(!IsAnyDepth(rule)),
        isFirstMeant_(rule == Rule::FirstOnly) {}

  std::vector<StandardPlace> TakePlaces() { return std::move(places_); }

  /// Below a node that `found` names have led to.
  void SearchBelow(Index top, std::size_t found) {
    std::vector<Work> work = {{top, found}};
    while (!work.empty()) {
      const Work at = work.back();
      work.pop_back();
      if (at.isWanted) places_.push_back({at.item, {}});
      if (at.found == segments_.size()) continue;
      SearchValues(at);
      for (Index i = items_.ChildCount(at.item); i-- > 0;) {
        PushChild(at, items_[at.item].firstChild + i, work);
      }
    }
  }

 private:
  struct Work {
    Index item;
    std::size_t found;  ///< number of names found so far
    bool isWanted = false;
  };

  void PushChild(const Work& parent, Index child, std::vector<Work>& work) const {
    const Items::Item& item = items_[child];
    const bool isNext =
        segments_[parent.found].Means(item.node->GetNodeName().View(), item.ordinal, isFirstMeant_);
    const bool isLast = parent.found + 1 == segments_.size();
    if (isStrict_) {
      if (isNext) work.push_back({child, parent.found + 1, isLast});
    } else {
      // Below what is wanted the same name may be wanted again.
      work.push_back({child, parent.found + (isNext && !isLast ? 1 : 0), isNext && isLast});
    }
  }

  void SearchValues(const Work& at) {
    if (at.found + 1 != segments_.size()) return;
    ForEachValueMeant(*items_[at.item].node, segments_.back(), rule_, [&](std::uint32_t value) {
      places_.push_back({at.item, value});
    });
  }

  const Items& items_;
  std::vector<Segment> segments_;
  Rule rule_;
  bool isStrict_;
  bool isFirstMeant_;
  std::vector<StandardPlace> places_;
};

/// Of a path that begins with the name of a tree.
std::vector<StandardPlace> FindBelowTree(const Items& items, std::string_view path, Rule rule) {
  std::vector<Segment> segments = SegmentsOf(path);
  Index top = 0;
  while (Items::kTopNames[top] != segments.front().text) ++top;
  if (segments.size() == 1) return {{top, {}}};
  Search search(items, std::move(segments), rule);
  search.SearchBelow(top, 1);
  return search.TakePlaces();
}

/// Follows a path name by name, to tell the first one that leads nowhere. Of nodes below each other
/// it keeps the outermost, below which all of the next name is: no node is looked at twice.
class Walk {
 public:
  Walk(const Items& items, std::string_view path, Rule rule) : items_(items), rule_(rule) {
    beginsWithTree_ = IsCommandPath(path) && rule != Rule::Element;
    for (Index top = IsOfRoot(path) ? Items::kRoot : Items::kEnum; top < Items::kTops; ++top) {
      places_.push_back({top, {}});
    }
  }

  /// Goes on to what the name means; stays when that is nothing.
  bool Advance(std::string_view name) {
    if (std::exchange(beginsWithTree_, false)) {
      std::erase_if(places_, [&](const StandardPlace& place) {
        return Items::kTopNames[place.item] != name;
      });
      return true;
    }
    return Advance(rule_ == Rule::Element ? Segment{name, name} : SegmentOf(name));
  }

  /// Offers the names that may follow.
  void ConsiderNext(NearestName& nearest) const {
    ForEachItem([&](Index item, std::vector<Index>& further) {
      ConsiderValues(*items_[item].node, nearest);
      ForEachChild(item, [&](Index child, const Items::Item& below) {
        nearest.Consider(below.node->GetNodeName().View());
        if (IsAnyDepth(rule_)) further.push_back(child);
      });
    });
  }

 private:
  bool Advance(const Segment& wanted) {
    std::vector<StandardPlace> found;
    ForEachItem([&](Index item, std::vector<Index>& further) {
      ForEachValueMeant(*items_[item].node, wanted, rule_, [&](std::uint32_t value) {
        found.push_back({item, value});
      });
      ForEachChild(item, [&](Index child, const Items::Item& below) {
        const bool isMeant =
            wanted.Means(below.node->GetNodeName().View(), below.ordinal, rule_ == Rule::FirstOnly);
        if (isMeant) {
          found.push_back({child, {}});
        } else if (IsAnyDepth(rule_)) {
          further.push_back(child);
        }
      });
    });
    if (found.empty()) return false;
    places_ = std::move(found);
    return true;
  }

  /// Calls `visit` with each node that the names have led to, and with those that it adds.
  template <class Visit>
  void ForEachItem(Visit visit) const {
    std::vector<Index> further;
    for (const StandardPlace& place : places_) {
      if (place.value) continue;
      further.push_back(place.item);
      while (!further.empty()) {
        const Index item = further.back();
        further.pop_back();
        visit(item, further);
      }
    }
  }

  template <class Visit>
  void ForEachChild(Index item, Visit visit) const {
    const Index end = items_[item].firstChild + items_.ChildCount(item);
    for (Index child = items_[item].firstChild; child < end; ++child) visit(child, items_[child]);
  }

  void ConsiderValues(const Node& node, NearestName& nearest) const {
    if (!HasNamedValues(node, rule_)) return;
    for (const auto& value : node.GetValues()) nearest.Consider(KeyOfValue(node, *value));
  }

  const Items& items_;
  Rule rule_;
  bool beginsWithTree_;
  std::vector<StandardPlace> places_;
};

PathCorrection CorrectBy(const Items& items, std::string_view path, Rule rule) {
  Walk walk(items, path, rule);
  return CorrectPath(
      path, [&](std::string_view name) { return walk.Advance(name); },
      [&](NearestName& nearest) { walk.ConsiderNext(nearest); });
}

/// Number of the values of a node that have no name.
std::uint32_t CountUnnamed(const Node& node) {
  const auto isUnnamed = [&](const auto& value) { return KeyOfValue(node, *value).empty(); };
  return static_cast<std::uint32_t>(
      std::count_if(node.GetValues().begin(), node.GetValues().end(), isUnnamed));
}

/// How many of a name there are in one node: in `holder`, or at most in any that `below` finds.
std::uint32_t MostOf(const Items& items, std::string_view name, const std::string& below,
                     const std::optional<StandardPlace>& holder) {
  std::uint32_t most = 0;
  const std::string path = name.empty() || below.empty() ? below : below + ".";
  for (const StandardPlace& place : FindPlaces(items, path + std::string(name))) {
    const bool isHolder = name.empty();
    const Index parent = place.value || isHolder ? place.item : items[place.item].parent;
    if (holder && parent != holder->item) continue;
    most = std::max(most, isHolder      ? CountUnnamed(*items[place.item].node)
                          : place.value ? items.OrdinalOfValue(place.item, *place.value)
                                        : items[place.item].ordinal);
  }
  return most;
}

/// What to say of a name whose place in brackets is beyond the last one; empty when there is no
/// place, or nothing of that name.
std::string HowMany(const Items& items, const PathCorrection& correction,
                    const std::optional<StandardPlace>& holder) {
  const Segment wanted = SegmentOf(correction.name);
  if (!wanted.HasPlace()) return {};
  const std::uint32_t most = MostOf(items, wanted.name, correction.below, holder);
  if (most == 0) return {};
  return "of " + (wanted.name.empty() ? "values without a name" : Quoted(wanted.name)) + " there " +
         (most == 1 ? "is " : "are ") + std::to_string(most);
}

std::string ContentOf(const Items& items, const std::optional<StandardPlace>& holder) {
  if (!holder || holder->value) return "that is a value, which holds nothing";
  const Node& node = *items[holder->item].node;
  return "it holds " + Counted(node.GetNumOfNode(), "node") + " and " +
         Counted(node.GetNumOfValue(), "value") + ", none of that name";
}

}  // namespace

bool IsCommandPath(std::string_view path) {
  const std::string_view first = path.substr(0, path.find('.'));
  return std::find(Items::kTopNames.begin(), Items::kTopNames.end(), first) !=
         Items::kTopNames.end();
}

std::string WithoutPlaces(std::string_view path) {
  std::string plain;
  bool hasPlaces = false;
  for (const Segment& segment : SegmentsOf(path)) {
    plain.append(plain.empty() ? "" : ".").append(segment.name);
    hasPlaces = hasPlaces || segment.HasPlace();
  }
  return hasPlaces ? plain : std::string(path);
}

std::vector<StandardPlace> FindPlaces(const Items& items, std::string_view path) {
  std::vector<Segment> segments = SegmentsOf(path);
  if (segments.empty()) return {};
  if (IsCommandPath(path)) return FindBelowTree(items, path, Rule::EachLevel);
  const bool isOfRoot = IsOfRoot(path);
  Search search(items, std::move(segments), isOfRoot ? Rule::EachLevel : Rule::AnyDepth);
  for (Index top = isOfRoot ? Items::kRoot : Items::kEnum; top < Items::kTops; ++top) {
    search.SearchBelow(top, 0);
  }
  return search.TakePlaces();
}

std::optional<StandardPlace> FindPlace(const Items& items, std::string_view path) {
  if (!IsCommandPath(path)) return std::nullopt;
  const std::vector<StandardPlace> places = FindBelowTree(items, path, Rule::FirstOnly);
  if (places.empty()) return std::nullopt;
  // A node comes before a value of its name.
  const auto node = std::find_if(places.begin(), places.end(),
                                 [](const StandardPlace& place) { return !place.value; });
  return node == places.end() ? places.front() : *node;
}

PathCorrection CorrectQuery(const Items& items, const std::string& path) {
  return CorrectBy(items, path, IsOfRoot(path) ? Rule::EachLevel : Rule::Element);
}

std::string MissingPlace(const Items& items, const std::string& path) {
  const bool isStrict = IsCommandPath(path);
  PathCorrection correction =
      CorrectBy(items, path, isStrict || IsOfRoot(path) ? Rule::EachLevel : Rule::AnyDepth);
  if (!correction.isNeeded) return "there is no " + Quoted(path);
  const std::string howMany = HowMany(items, correction, {});
  if (!howMany.empty()) correction.path = correction.nearest = {};
  return correction.Message(isStrict ? "in" : "below",
                            howMany.empty() ? "'holstd tree' shows what there is" : howMany);
}

std::string MissingBranch(const Items& items, const std::string& path) {
  if (!IsCommandPath(path)) {
    return Quoted(path.substr(0, path.find('.'))) +
           " is no tree of a standard; a path begins with Root, Enum or TypeDef";
  }
  PathCorrection correction = CorrectBy(items, path, Rule::FirstOnly);
  if (!correction.isNeeded) {
    const std::size_t dot = path.rfind('.');
    return Quoted(path) + " is a value, not a node; a command names it " +
           Quoted(path.substr(0, dot) + ":" + path.substr(dot + 1));
  }
  const auto holder = FindPlace(items, correction.below);
  const std::string howMany = HowMany(items, correction, holder);
  if (!howMany.empty()) correction.path = correction.nearest = {};
  return correction.Message("in", howMany.empty() ? ContentOf(items, holder) : howMany);
}

std::string MissingName(VyrAnnStandardXMLParser& document, std::string_view path) {
  for (const Segment& segment : SegmentsOf(path)) {
    if (!segment.HasPlace()) continue;
    return Quoted(segment.text) + " has a place in brackets, which commands do not take; a path " +
           "means the first " + Quoted(segment.name) + " there";
  }
  return MissingBranch(StandardItems(document), std::string(path));
}
