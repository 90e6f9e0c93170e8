#pragma once

#include "FileProblem.h"
#include "ItemLines.h"
#include "StandardItems.h"

/// Why the sheet formats, or the sheet styles, of a standard cannot be used, each that is wrong by
/// its name. For a standard whose formats or styles were refused: there is at least one problem.
FileProblems FormatProblems(const StandardItems& items, const ItemLines& lines);
FileProblems StyleProblems(const StandardItems& items, const ItemLines& lines);
