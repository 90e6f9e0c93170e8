#include "ListMatch.h"

#include <algorithm>
#include <functional>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace {

using Index = ListMatch::Index;

struct Key {
  int kind;
  std::string_view name;
  std::string_view entryName;
  bool hasEntryName;

  bool operator==(const Key&) const = default;
};

struct KeyHash {
  std::size_t operator()(const Key& key) const {
    const std::hash<std::string_view> hash;
    return (hash(key.name) * 31 + hash(key.entryName)) * 31 + static_cast<std::size_t>(key.kind);
  }
};

/// An element that is in both lists, for the search of those that were moved.
struct Kept {
  Index before;
  Index after;
  std::string_view firstName;  ///< of its two entry names, in the order of the alphabet
  std::string_view lastName;
  const ListElement* element;
  std::uint32_t occurrence;  ///< among those of its key
  std::size_t toHere = 0;    ///< length of the longest unmoved sequence that ends here
  std::size_t fromHere = 0;  ///< ... that begins here
};

bool IsSame(const ListElement& a, const ListElement& b) {
  return a.content == b.content && a.kind == b.kind && a.name == b.name &&
         a.hasEntryName == b.hasEntryName && a.entryName == b.entryName;
}

bool IsRenamed(const ListElement& a, const ListElement& b) {
  return a.kind == b.kind && a.name == b.name && a.unnamed == b.unnamed &&
         (a.hasEntryName || b.hasEntryName);
}

/// Of several longest sequences the same one is taken whichever list comes first.
bool IsPreferred(const Kept& a, const Kept& b) {
  const auto words = [](const Kept& kept) {
    return std::tuple(kept.firstName, kept.lastName, kept.element->name, kept.element->kind,
                      kept.occurrence);
  };
  return words(a) < words(b);
}

/// Lengths of the longest increasing sequences that end at each of `places`.
std::vector<std::size_t> LengthsTo(const std::vector<Index>& places) {
  std::vector<std::size_t> lengths;
  std::vector<Index> smallestEnds;
  for (const Index place : places) {
    const auto at = std::lower_bound(smallestEnds.begin(), smallestEnds.end(), place);
    lengths.push_back(static_cast<std::size_t>(at - smallestEnds.begin()) + 1);
    if (at == smallestEnds.end()) {
      smallestEnds.push_back(place);
    } else {
      *at = place;
    }
  }
  return lengths;
}

/// Tells of each, in the order of the first list, how long a sequence passes through it. Returns
/// the length of the longest.
std::size_t Measure(std::vector<Kept>& kept) {
  std::vector<Index> places;
  for (const Kept& each : kept) places.push_back(each.after);
  const std::vector<std::size_t> to = LengthsTo(places);
  // Backwards, and with the places turned over, the sequences that begin here end here.
  std::reverse(places.begin(), places.end());
  for (Index& place : places) place = ~place;
  const std::vector<std::size_t> from = LengthsTo(places);
  std::size_t longest = 0;
  for (std::size_t i = 0; i < kept.size(); ++i) {
    kept[i].toHere = to[i];
    kept[i].fromHere = from[kept.size() - 1 - i];
    longest = std::max(longest, to[i]);
  }
  return longest;
}

/// One longest sequence that keeps its order, a step of it at each level of lengths.
std::vector<const Kept*> LongestUnmoved(std::vector<Kept>& kept) {
  const std::size_t longest = Measure(kept);
  std::vector<std::vector<const Kept*>> levels(longest);
  for (const Kept& each : kept) {
    if (each.toHere + each.fromHere - 1 == longest) levels[each.toHere - 1].push_back(&each);
  }
  std::vector<const Kept*> chosen;
  for (const std::vector<const Kept*>& level : levels) {
    const Kept* best = nullptr;
    for (const Kept* each : level) {
      const bool follows = chosen.empty() || (each->before > chosen.back()->before &&
                                              each->after > chosen.back()->after);
      if (follows && (best == nullptr || IsPreferred(*each, *best))) best = each;
    }
    chosen.push_back(best);
  }
  return chosen;
}

}  // namespace

ListMatch::ListMatch(const std::vector<ListElement>& before, const std::vector<ListElement>& after)
    : before_(before),
      after_(after),
      endOfBefore_(static_cast<Index>(before.size())),
      endOfAfter_(static_cast<Index>(after.size())),
      partnersOfBefore_(before.size(), kNone),
      partnersOfAfter_(after.size(), kNone) {
  PairEnds();
  if (begin_ == endOfBefore_ || begin_ == endOfAfter_) return;
  PairAlike();
  PairRenamed();
  FindMoved();
}

void ListMatch::Pair(Index before, Index after) {
  partnersOfBefore_[before] = after;
  partnersOfAfter_[after] = before;
}

void ListMatch::PairEnds() {
  while (begin_ < endOfBefore_ && begin_ < endOfAfter_ && IsSame(before_[begin_], after_[begin_])) {
    Pair(begin_, begin_);
    ++begin_;
  }
  while (begin_ < endOfBefore_ && begin_ < endOfAfter_ &&
         IsSame(before_[endOfBefore_ - 1], after_[endOfAfter_ - 1])) {
    Pair(--endOfBefore_, --endOfAfter_);
  }
}

void ListMatch::PairAlike() {
  std::unordered_set<Key, KeyHash> repeated;
  const auto note = [&](const ListElement& element) {
    if (element.isRepeated) repeated.insert({element.kind, element.name, {}, false});
  };
  std::for_each(before_.begin() + begin_, before_.begin() + endOfBefore_, note);
  std::for_each(after_.begin() + begin_, after_.begin() + endOfAfter_, note);
  const auto keyOf = [&](const ListElement& element) {
    const Key key = {element.kind, element.name, {}, false};
    if (!element.hasEntryName || !(element.isEntry || repeated.contains(key))) return key;
    return Key{element.kind, element.name, element.entryName, true};
  };
  struct Alike {
    std::vector<Index> before;
    std::vector<Index> after;
  };
  std::unordered_map<Key, Alike, KeyHash> groups;
  for (Index i = begin_; i < endOfBefore_; ++i) groups[keyOf(before_[i])].before.push_back(i);
  for (Index i = begin_; i < endOfAfter_; ++i) groups[keyOf(after_[i])].after.push_back(i);
  for (const auto& [key, alike] : groups) PairRun(alike.before, alike.after);
}

void ListMatch::PairRun(const std::vector<Index>& before, const std::vector<Index>& after) {
  std::size_t begin = 0;
  std::size_t endOfBefore = before.size();
  std::size_t endOfAfter = after.size();
  const auto isLeft = [&] { return begin < endOfBefore && begin < endOfAfter; };
  for (; isLeft() && IsSame(before_[before[begin]], after_[after[begin]]); ++begin) {
    Pair(before[begin], after[begin]);
  }
  while (isLeft() && IsSame(before_[before[endOfBefore - 1]], after_[after[endOfAfter - 1]])) {
    Pair(before[--endOfBefore], after[--endOfAfter]);
  }
  for (; isLeft(); ++begin) Pair(before[begin], after[begin]);
}

/// Elements that are left over at the same place between the same partners.
void ListMatch::PairRenamed() {
  struct Place {
    Index partner;  ///< in `after`, of the partners before the place
    Index offset;

    bool operator==(const Place&) const = default;
  };
  const auto hash = [](const Place& place) {
    return std::hash<std::uint64_t>()((std::uint64_t{place.partner} << 32) + place.offset);
  };
  std::unordered_map<Place, Index, decltype(hash)> left(16, hash);
  Place place = {kNone, 0};
  for (Index i = begin_; i < endOfBefore_; ++i) {
    if (partnersOfBefore_[i] != kNone) {
      place = {partnersOfBefore_[i], 0};
    } else {
      left[place] = i;
      ++place.offset;
    }
  }
  std::vector<std::pair<Index, Index>> renamed;
  place = {kNone, 0};
  for (Index i = begin_; i < endOfAfter_; ++i) {
    if (partnersOfAfter_[i] != kNone) {
      place = {i, 0};
      continue;
    }
    const auto found = left.find(place);
    ++place.offset;
    if (found == left.end()) continue;
    if (IsRenamed(before_[found->second], after_[i])) renamed.emplace_back(found->second, i);
  }
  for (const auto& [before, after] : renamed) Pair(before, after);
}

void ListMatch::FindMoved() {
  std::vector<Kept> kept;
  std::unordered_map<Key, std::uint32_t, KeyHash> occurrences;
  for (Index i = begin_; i < endOfBefore_; ++i) {
    const Index after = partnersOfBefore_[i];
    if (after == kNone) continue;
    const ListElement& a = before_[i];
    const ListElement& b = after_[after];
    if (!a.isEntry && !a.isRepeated && !b.isRepeated) continue;
    const auto [first, last] = std::minmax(a.entryName, b.entryName);
    kept.push_back({i, after, first, last, &a,
                    occurrences[{a.kind, a.name, first, a.hasEntryName || b.hasEntryName}]++});
  }
  const std::vector<const Kept*> unmoved = LongestUnmoved(kept);
  if (unmoved.size() == kept.size()) return;
  moved_.resize(after_.size(), false);
  for (const Kept& each : kept) moved_[each.after] = true;
  for (const Kept* each : unmoved) moved_[each->after] = false;
}
