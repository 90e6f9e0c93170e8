#pragma once

#include <string>
#include <vector>

#include "ItemLines.h"
#include "StandardItems.h"

/// What is wrong in a file, and what would be right.
struct FileProblem {
  int line = 0;  ///< 0 when no line is to blame
  std::string text;
};

/// Why the sheet formats, or the sheet styles, of a standard cannot be used, each that is wrong by
/// its name. For a standard whose formats or styles were refused: there is at least one problem.
std::vector<FileProblem> FormatProblems(const StandardItems& items, const ItemLines& lines);
std::vector<FileProblem> StyleProblems(const StandardItems& items, const ItemLines& lines);
