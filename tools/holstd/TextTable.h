#pragma once

#include <string>
#include <vector>

/// A table as text: a line for the headings and one for each row, columns below each other. An
/// empty cell is shown as "-".
class TextTable {
 public:
  explicit TextTable(std::vector<std::string> headings);

  /// As many cells as there are headings.
  void Add(const std::vector<std::string>& cells);
  std::string Text() const;

 private:
  std::vector<std::vector<std::string>> rows_;
};
