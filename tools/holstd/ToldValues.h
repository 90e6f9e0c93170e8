#pragma once

#include <optional>
#include <string>
#include <vector>

#include "PathMatches.h"
#include "VyrIDrwStandard.h"

/// The values at a path as a standard tells them to the application.
class ToldValues {
 public:
  ToldValues(VyrIDrwStandard& standard, const PathMatches& matches, std::string path);

  /// The value of the element at an index from 0, as text: that of a string or an enumeration, a
  /// number in its shortest form, the components of a color. Nothing when the standard does not
  /// tell it.
  std::optional<std::string> At(std::size_t index);

 private:
  std::optional<std::string> ColorAt(std::size_t index);
  void AskForColors();

  VyrIDrwStandard& standard_;
  const PathMatches& matches_;
  std::string path_;
  bool hasAskedForColors_ = false;
  std::vector<int> numbers_;         ///< of all elements; a color is several
  std::vector<std::size_t> begins_;  ///< of each element's numbers, and of their end
};
