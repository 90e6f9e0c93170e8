#pragma once

#include "VyrUnicodeString.h"

/// Why an input was refused, for the one who has to mend it.
struct VyrProblem {
  int line = 0;           ///< 1-based line of the input, 0 when no line is to blame
  VyrUnicodeString text;  ///< what is wrong and what would be right; empty: nothing is wrong
  /// Whether the same input will be refused as long as nobody changes it: false when memory ran out
  /// or the input could not be read, so that it may be well the next time.
  bool isLasting = true;

  /// True when nothing is wrong.
  bool IsEmpty() const { return text.IsEmpty(); }
};
