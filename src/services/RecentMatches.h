#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "StandardNodes.h"

/// Nodes that a path matched, kept by whoever looks at them: a later search may take their place.
using MatchedNodes = std::shared_ptr<const StandardNodes>;

/// The nodes that the last few paths matched. Tables are read by asking for index 1, 2, ... of each
/// of their columns in turn, which would otherwise search the document for every cell.
class RecentMatches {
 public:
  /// Null for a path that is not remembered.
  MatchedNodes Find(std::string_view path) const {
    const auto found = std::find_if(matches_.begin(), matches_.end(),
                                    [=](const Match& match) { return match.path == path; });
    return found == matches_.end() ? nullptr : found->nodes;
  }
  /// Remembers the nodes of a path in place of the oldest ones.
  MatchedNodes Store(std::string_view path, StandardNodes nodes) {
    auto matched = std::make_shared<const StandardNodes>(std::move(nodes));
    if (matches_.size() < kMostPaths) {
      matches_.push_back({std::string(path), matched});
    } else {
      // Swapped out, so that the oldest nodes go when all is in its place.
      Match match{std::string(path), matched};
      std::swap(matches_[oldest_], match);
      oldest_ = (oldest_ + 1) % kMostPaths;
    }
    return matched;
  }

 private:
  struct Match {
    std::string path;
    MatchedNodes nodes;
  };
  // The widest table that is read cell by cell, the sheet formats, has four columns.
  static constexpr std::size_t kMostPaths = 8;

  std::vector<Match> matches_;
  std::size_t oldest_ = 0;
};
