#pragma once

#include <string>
#include <vector>

#include "ExpectedKeywords.h"

// Makes text standards of the old generation.

using Lines = std::vector<std::string>;

inline Lines operator+(Lines a, const Lines& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

inline std::string Joined(const Lines& lines, const char* lineEnd = "\n") {
  std::string text;
  for (const std::string& line : lines) text += line + lineEnd;
  return text;
}

/// A line for each required row of the keyword table from `first` to `last`; "1" does for a number
/// of either kind.
inline Lines RequiredLines(int first, int last) {
  Lines lines;
  for (int row = first; row <= last; ++row) {
    const ExpectedKeyword& keyword = ExpectedKeywords()[static_cast<std::size_t>(row)];
    if (keyword.required == 0) continue;
    lines.push_back(keyword.keyword + (keyword.kind == 'w' ? " ISO" : " 1"));
  }
  return lines;
}

/// What every text standard must hold, 105 lines of which the first names the parent standard.
inline Lines General() {
  return RequiredLines(2, 118);
}

/// A whole group; its first line begins it, its second names it.
inline Lines Group(const std::string& section, const std::string& name) {
  const bool isTolerance = section == "TOLERANCE";
  Lines lines = {"BEGIN_" + section};
  lines = lines + (isTolerance ? RequiredLines(121, 139) : RequiredLines(142, 176));
  lines[1] = (isTolerance ? "TolName " : "NDName ") + name;
  lines.push_back("END_" + section);
  return lines;
}
inline Lines Tolerance(const std::string& name) {
  return Group("TOLERANCE", name);
}
inline Lines Display(const std::string& name) {
  return Group("NUMERICAL_DISPLAY", name);
}

/// `lines` with the line of a parameter replaced, or without it.
inline Lines Replaced(Lines lines, const std::string& keyword, const std::string& line) {
  for (std::string& old : lines) {
    if (old.starts_with(keyword + " ")) old = line;
  }
  return lines;
}
inline Lines Without(Lines lines, const std::string& keyword) {
  std::erase_if(lines, [&](const std::string& line) { return line.starts_with(keyword + " "); });
  return lines;
}
