#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "StandardItems.h"

/// A node of a standard, or one of its values.
struct StandardPlace {
  StandardItems::Index item = StandardItems::kNone;
  std::optional<std::uint32_t> value;  ///< none: the node with all that it holds

  bool IsNone() const { return item == StandardItems::kNone; }
  bool operator==(const StandardPlace&) const = default;
};

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

/// The item below `parent` that answers to `item` of another standard, whose parent answers to
/// `parent`: by name, an entry of a list by its entry name or else by its place. `kNone` when there
/// is none.
StandardItems::Index FindCounterpart(const StandardItems& items, StandardItems::Index item,
                                     const StandardItems& others, StandardItems::Index parent);
/// The value of a node that answers in the same way to a value of `items`.
std::optional<std::uint32_t> FindCounterpartOfValue(const StandardItems& items,
                                                    const StandardPlace& value,
                                                    const StandardItems& others,
                                                    StandardItems::Index holder);
