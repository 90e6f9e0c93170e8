#pragma once

#include <string>
#include <vector>

#include "InputFile.h"
#include "Standard.h"

/// What is wrong in a file, and what would be right.
struct FileProblem {
  int line = 0;  ///< 0 when no line is to blame
  std::string text;
};

/// Why the sheet formats, or the sheet styles, of a standard cannot be used, each that is wrong by
/// its name. For a standard whose formats or styles were refused: there is at least one problem.
std::vector<FileProblem> FormatProblems(Standard& standard, const InputFile& file);
std::vector<FileProblem> StyleProblems(Standard& standard, const InputFile& file);
