#pragma once

#include <vector>

#include "StandardItems.h"

/// One difference between two standards.
struct StandardDifference {
  enum class Kind { Added, Removed, Changed, Moved };

  Kind kind;
  StandardPlace before;  ///< none of what was added
  StandardPlace after;   ///< none of what was removed
};

/// What tells `after` from `before`, below the two items given, in the order of `after`. Only a
/// value is changed, of a node what it holds; only an entry of a list is moved.
std::vector<StandardDifference> FindDifferences(const StandardItems& before,
                                                StandardItems::Index itemOfBefore,
                                                const StandardItems& after,
                                                StandardItems::Index itemOfAfter);
/// Of the whole standards, the enumerations and types first.
std::vector<StandardDifference> FindDifferences(const StandardItems& before,
                                                const StandardItems& after);
