#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "StandardNodes.h"

/// The nodes that the last few paths matched. Tables are read by asking for index 1, 2, ... of each
/// of their columns in turn, which would otherwise search the document for every cell.
class RecentMatches {
 public:
  /// Borrowed until the next `Store`; null for a path that is not remembered.
  const StandardNodes* Find(std::string_view path) const {
    const auto found = std::find_if(matches_.begin(), matches_.end(),
                                    [=](const Match& match) { return match.path == path; });
    return found == matches_.end() ? nullptr : &found->nodes;
  }
  /// Remembers the nodes of a path in place of the oldest ones.
  const StandardNodes& Store(std::string_view path, StandardNodes nodes) {
    if (matches_.size() < kMostPaths) {
      return matches_.emplace_back(Match{std::string(path), std::move(nodes)}).nodes;
    }
    Match& oldest = matches_[oldest_];
    oldest_ = (oldest_ + 1) % kMostPaths;
    oldest = {std::string(path), std::move(nodes)};
    return oldest.nodes;
  }

 private:
  struct Match {
    std::string path;
    StandardNodes nodes;
  };
  // The widest table that is read cell by cell, the sheet formats, has four columns.
  static constexpr std::size_t kMostPaths = 8;

  std::vector<Match> matches_;
  std::size_t oldest_ = 0;
};
