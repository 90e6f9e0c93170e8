#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

/// What decides which elements of two lists are the same one.
struct ListElement {
  int kind = 0;  ///< of another kind is another element
  std::string_view name;
  /// What tells it from others of its name; used when `hasEntryName`.
  std::string_view entryName;
  bool hasEntryName = false;
  bool isRepeated = false;  ///< others of its list have the name
  bool isEntry = false;     ///< of a list whose order says something, whatever is repeated
  std::uint64_t content = 0;
  std::uint64_t unnamed = 0;  ///< content without the entry name
};

/// Two lists set against each other. Elements are matched by kind, name and, in lists of entries,
/// by entry name; those of which several are alike by their content from both ends, then by their
/// place. An entry that has only its entry name changed is the one that stood there before.
/// Exchanging the lists exchanges the answer and changes nothing else.
class ListMatch {
 public:
  using Index = std::uint32_t;
  static constexpr Index kNone = ~Index{0};

  ListMatch(const std::vector<ListElement>& before, const std::vector<ListElement>& after);

  /// Of each element its partner in the other list, or `kNone`.
  const std::vector<Index>& PartnersOfBefore() const { return partnersOfBefore_; }
  const std::vector<Index>& PartnersOfAfter() const { return partnersOfAfter_; }
  /// True for an element of `after` among the fewest that were moved: all other entries that are
  /// in both lists follow each other as they did.
  bool IsMoved(Index after) const { return !moved_.empty() && moved_[after]; }

 private:
  void Pair(Index before, Index after);
  void PairEnds();
  void PairAlike();
  void PairRenamed();
  void FindMoved();
  void PairRun(const std::vector<Index>& before, const std::vector<Index>& after);

  const std::vector<ListElement>& before_;
  const std::vector<ListElement>& after_;
  // What is left between the ends that are equal.
  Index begin_ = 0;
  Index endOfBefore_;
  Index endOfAfter_;
  std::vector<Index> partnersOfBefore_;
  std::vector<Index> partnersOfAfter_;
  std::vector<bool> moved_;
};
