#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "VyrShownText.h"

/// The names that lead to a place in a tree, as a line shows them. They are given from the place
/// outwards, and of a path that is longer than the line the outer part is left out, which shows as
/// "...": what the line is about stands at the inner end, and a tree may be as deep as its file is
/// long.
class ShownPath {
 public:
  explicit ShownPath(std::size_t most) : most_(most) {}

  /// Whether a level further out would be shown.
  bool HasRoom() const { return size_ < most_; }

  /// Adds the next level outwards: a name of the file with what stands before and behind it.
  void AddOuter(std::string before, std::string_view name, std::string_view behind) {
    levels_.push_back(std::move(before));
    levels_.back().append(VyrShownText(name, most_)).append(behind);
    size_ += levels_.back().size();
  }

  /// `isWhole` tells whether the outermost level was added.
  std::string Text(bool isWhole) const {
    std::string text = isWhole ? "" : "...";
    for (auto level = levels_.rbegin(); level != levels_.rend(); ++level) text.append(*level);
    return text;
  }

 private:
  std::size_t most_;
  std::size_t size_ = 0;
  std::vector<std::string> levels_;
};
