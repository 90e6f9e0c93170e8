#include "TextTable.h"

#include <algorithm>
#include <utility>

#include "Format.h"

namespace {

/// Number of characters of a UTF-8 text.
std::size_t Width(const std::string& text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char byte) { return (byte & 0xC0) != 0x80; }));
}

}  // namespace

TextTable::TextTable(std::vector<std::string> headings) {
  rows_.push_back(std::move(headings));
}

void TextTable::Add(const std::vector<std::string>& cells) {
  std::vector<std::string>& row = rows_.emplace_back();
  for (const std::string& cell : cells) row.push_back(cell.empty() ? "-" : Printable(cell));
}

std::string TextTable::Text() const {
  std::vector<std::size_t> widths(rows_.front().size(), 0);
  for (const auto& row : rows_) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], Width(row[i]));
  }
  std::string text;
  for (const auto& row : rows_) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      const bool isLast = i + 1 == row.size();
      text += row[i] + (isLast ? "\n" : std::string(widths[i] - Width(row[i]) + 2, ' '));
    }
  }
  return text;
}
