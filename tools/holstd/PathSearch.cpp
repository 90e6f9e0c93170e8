#include "PathSearch.h"

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
  std::uint32_t ordinal = 0;  ///< the place; 0: none is given

  bool Means(std::string_view other, std::uint32_t place) const {
    return other == text || (ordinal != 0 && other == name && place == ordinal);
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

class Search {
 public:
  Search(const Items& items, std::vector<Segment> segments, bool isStrict)
      : items_(items), segments_(std::move(segments)), isStrict_(isStrict) {}

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
        segments_[parent.found].Means(item.node->GetNodeName().View(), item.ordinal);
    const bool isLast = parent.found + 1 == segments_.size();
    if (isStrict_) {
      if (isNext) work.push_back({child, parent.found + 1, isLast});
    } else {
      // Below what is wanted the same name may be wanted again.
      work.push_back({child, parent.found + (isNext && !isLast ? 1 : 0), isNext && isLast});
    }
  }

  void SearchValues(const Work& at) {
    const Node& node = *items_[at.item].node;
    if (at.found + 1 != segments_.size() || IsParameter(node)) return;
    if (!isStrict_ && node.GetNodeType() == Node::NodeEnum) return;  // literals have no names
    const Segment& wanted = segments_.back();
    std::uint32_t ordinal = 0;
    for (std::uint32_t i = 0; i < node.GetValues().size(); ++i) {
      const std::string_view key = KeyOfValue(node, *node.GetValues()[i]);
      if (key == wanted.name) ++ordinal;
      const bool isCounted = !key.empty() || wanted.ordinal != 0;
      if (isCounted && wanted.Means(key, ordinal)) places_.push_back({at.item, i});
    }
  }

  const Items& items_;
  std::vector<Segment> segments_;
  bool isStrict_;
  std::vector<StandardPlace> places_;
};

bool IsTree(std::string_view name) {
  return name == "Root" || name == "Enum" || name == "TypeDef";
}

/// Offers the names that may follow in a path that has led to `places`.
class Followers {
 public:
  Followers(const Items& items, bool areChildren, NearestName& nearest)
      : items_(items), areChildren_(areChildren), nearest_(nearest), seen_(items.Count(), false) {}

  void Consider(Index top) {
    std::vector<Index> work = {top};
    while (!work.empty()) {
      const Index item = work.back();
      work.pop_back();
      if (seen_[item]) continue;
      seen_[item] = true;
      ConsiderValues(*items_[item].node);
      for (Index i = 0; i < items_.ChildCount(item); ++i) {
        const Index child = items_[item].firstChild + i;
        nearest_.Consider(items_[child].node->GetNodeName().View());
        if (!areChildren_) work.push_back(child);
      }
    }
  }

 private:
  void ConsiderValues(const Node& node) {
    const bool hasNames =
        !IsParameter(node) && (areChildren_ || node.GetNodeType() != Node::NodeEnum);
    for (std::size_t i = 0; hasNames && i < node.GetValues().size(); ++i) {
      nearest_.Consider(KeyOfValue(node, *node.GetValues()[i]));
    }
  }

  const Items& items_;
  bool areChildren_;
  NearestName& nearest_;
  std::vector<bool> seen_;
};

}  // namespace

std::vector<StandardPlace> FindPlaces(const Items& items, std::string_view path) {
  std::vector<Segment> segments = SegmentsOf(path);
  if (segments.empty()) return {};
  for (Index top = 0; top < Items::kTops; ++top) {
    if (items[top].node->GetNodeName().View() != segments.front().text) continue;
    if (segments.size() == 1) return {{top, {}}};
    Search search(items, std::move(segments), true);
    search.SearchBelow(top, 1);
    return search.TakePlaces();
  }
  // Queries take the thickness table alone as a child of the root: styles have fields of that name.
  const bool isOfRoot = path == "LineThickness";
  Search search(items, std::move(segments), isOfRoot);
  for (Index top = isOfRoot ? Items::kRoot : Items::kEnum; top < Items::kTops; ++top) {
    search.SearchBelow(top, 0);
  }
  return search.TakePlaces();
}

std::string MissingPlace(const Items& items, const std::string& path) {
  const bool isStrict = IsTree(std::string_view(path).substr(0, path.find('.')));
  const auto isThere = [&](const std::string& longer) {
    return !FindPlaces(items, longer).empty();
  };
  const PathCorrection correction =
      CorrectPath(path, isThere, [&](const std::string& found, NearestName& nearest) {
        Followers followers(items, isStrict, nearest);
        for (Index top = 0; found.empty() && top < Items::kTops; ++top) followers.Consider(top);
        for (const StandardPlace& place : FindPlaces(items, found)) {
          if (!place.value) followers.Consider(place.item);
        }
      });
  if (!correction.isNeeded) return "there is no " + Quoted(path);
  const std::string place = correction.below.empty()
                                ? "in the standard"
                                : (isStrict ? "in " : "below ") + Quoted(correction.below);
  return "there is no " + Quoted(correction.name) + " " + place + "; " +
         correction.Said("'holstd tree' shows what there is");
}
