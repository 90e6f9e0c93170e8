#include "PathSearch.h"

#include <algorithm>
#include <utility>

#include "Format.h"
#include "Nearest.h"
#include "PathNames.h"

namespace {

using Items = StandardItems;
using Index = StandardItems::Index;
using Node = VyrAnnStandardXMLNode;

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

/// Below a node, unless at any depth, brackets tell entries apart only where nothing is called just
/// so.
PathName MeantBelow(const Node& node, const PathName& wanted, Rule rule) {
  const bool isLiteral = !IsAnyDepth(rule) && wanted.HasBrackets() &&
                         VyrAnnStandardXMLNode_var(node.GetNodeByName(wanted.text));
  return isLiteral ? PathName::Literal(wanted.text) : wanted;
}

std::string_view EntryNameOf(const Items::Item& item) {
  return item.entryName == nullptr ? std::string_view() : item.entryName->GetValue().View();
}

/// Calls `visit` with the number of each direct value of a node that `wanted` means.
template <class Visit>
void ForEachValueMeant(const Node& node, const PathName& wanted, Rule rule, Visit visit) {
  if (!HasNamedValues(node, rule)) return;
  std::uint32_t ordinal = 0;
  for (std::uint32_t i = 0; i < node.GetValues().size(); ++i) {
    const std::string_view key = KeyOfValue(node, *node.GetValues()[i]);
    if (key == wanted.name) ++ordinal;
    const bool isCounted = !key.empty() || wanted.HasPlace();
    if (isCounted && wanted.Means(key, ordinal, {}, rule == Rule::FirstOnly)) visit(i);
  }
}

class Search {
 public:
  Search(const Items& items, std::vector<PathName> names, Rule rule)
      : items_(items),
        names_(std::move(names)),
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
      if (at.found == names_.size()) continue;
      const Node& node = *items_[at.item].node;
      const PathName wanted = MeantBelow(node, names_[at.found], rule_);
      SearchValues(at, node, wanted);
      for (Index i = items_.ChildCount(at.item); i-- > 0;) {
        PushChild(at, items_[at.item].firstChild + i, wanted, work);
      }
    }
  }

 private:
  struct Work {
    Index item;
    std::size_t found;  ///< number of names found so far
    bool isWanted = false;
  };

  void PushChild(const Work& parent, Index child, const PathName& wanted,
                 std::vector<Work>& work) const {
    const Items::Item& item = items_[child];
    const bool isNext = wanted.Means(item.node->GetNodeName().View(), item.ordinal,
                                     EntryNameOf(item), isFirstMeant_);
    const bool isLast = parent.found + 1 == names_.size();
    if (isStrict_) {
      if (isNext) work.push_back({child, parent.found + 1, isLast});
    } else {
      // Below what is wanted the same name may be wanted again.
      work.push_back({child, parent.found + (isNext && !isLast ? 1 : 0), isNext && isLast});
    }
  }

  void SearchValues(const Work& at, const Node& node, const PathName& wanted) {
    if (at.found + 1 != names_.size()) return;
    ForEachValueMeant(node, wanted, rule_, [&](std::uint32_t value) {
      places_.push_back({at.item, value});
    });
  }

  const Items& items_;
  std::vector<PathName> names_;
  Rule rule_;
  bool isStrict_;
  bool isFirstMeant_;
  std::vector<StandardPlace> places_;
};

/// Of a path that begins with the name of a tree.
std::vector<StandardPlace> FindBelowTree(const Items& items, std::vector<PathName> names,
                                         Rule rule) {
  Index top = 0;
  while (Items::kTopNames[top] != names.front().text) ++top;
  if (names.size() == 1) return {{top, {}}};
  Search search(items, std::move(names), rule);
  search.SearchBelow(top, 1);
  return search.TakePlaces();
}

/// What `find` finds with names that are written just so, else with brackets that tell entries
/// apart.
template <class Find>
std::vector<StandardPlace> FindLiteralsFirst(std::string_view path, Find find) {
  std::vector<StandardPlace> places = find(NamesOf(path, Cut::AtEachDot));
  if (!places.empty() || path.find('[') == std::string_view::npos) return places;
  return find(NamesOf(path, Cut::AroundBrackets));
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
    return Advance(rule_ == Rule::Element ? PathName::Literal(name) : PathName(name));
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
  bool Advance(const PathName& name) {
    std::vector<StandardPlace> found;
    ForEachItem([&](Index item, std::vector<Index>& further) {
      const PathName wanted = MeantBelow(*items_[item].node, name, rule_);
      ForEachValueMeant(*items_[item].node, wanted, rule_, [&](std::uint32_t value) {
        found.push_back({item, value});
      });
      ForEachChild(item, [&](Index child, const Items::Item& below) {
        const bool isMeant = wanted.Means(below.node->GetNodeName().View(), below.ordinal,
                                          EntryNameOf(below), rule_ == Rule::FirstOnly);
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

/// Whose "Name" is near that of the entry that brackets mean; empty when none is.
std::string NearestEntry(const Items& items, const PathName& wanted, const std::string& below) {
  NearestName nearest(wanted.entry);
  const std::string path = below.empty() ? "" : below + ".";
  for (const StandardPlace& place : FindPlaces(items, path + std::string(wanted.name))) {
    if (!place.value) nearest.Consider(EntryNameOf(items[place.item]));
  }
  return nearest.Get();
}

/// What to say of a name whose brackets mean none of the entries; empty when there are no brackets,
/// or nothing of that name.
std::string HowMany(const Items& items, const PathCorrection& correction,
                    const std::optional<StandardPlace>& holder) {
  const PathName wanted(correction.name);
  if (!wanted.HasBrackets()) return {};
  const std::uint32_t most = MostOf(items, wanted.name, correction.below, holder);
  if (most == 0) return {};
  const std::string nearest =
      wanted.HasPlace() ? "" : NearestEntry(items, wanted, correction.below);
  if (!nearest.empty()) {
    return "did you mean " + Quoted(std::string(wanted.name) + "[" + nearest + "]") + "?";
  }
  return "of " + (wanted.name.empty() ? "values without a name" : Quoted(wanted.name)) + " there " +
         (most == 1 ? "is " : "are ") + std::to_string(most) +
         (wanted.HasPlace() ? "" : ", none of that Name");
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
  bool hasBrackets = false;
  for (const PathName& name : NamesOf(path, Cut::AroundBrackets)) {
    plain.append(plain.empty() ? "" : ".").append(name.name);
    hasBrackets = hasBrackets || name.HasBrackets();
  }
  return hasBrackets ? plain : std::string(path);
}

std::vector<StandardPlace> FindPlaces(const Items& items, std::string_view path) {
  if (path.empty()) return {};
  return FindLiteralsFirst(path, [&](std::vector<PathName> names) {
    if (IsCommandPath(path)) return FindBelowTree(items, std::move(names), Rule::EachLevel);
    const bool isOfRoot = IsOfRoot(path);
    Search search(items, std::move(names), isOfRoot ? Rule::EachLevel : Rule::AnyDepth);
    for (Index top = isOfRoot ? Items::kRoot : Items::kEnum; top < Items::kTops; ++top) {
      search.SearchBelow(top, 0);
    }
    return search.TakePlaces();
  });
}

std::optional<StandardPlace> FindPlace(const Items& items, std::string_view path) {
  if (!IsCommandPath(path)) return std::nullopt;
  const std::vector<StandardPlace> places =
      FindLiteralsFirst(path, [&](std::vector<PathName> names) {
        return FindBelowTree(items, std::move(names), Rule::FirstOnly);
      });
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
