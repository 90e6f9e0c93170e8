#pragma once

#include <cstddef>
#include <functional>
#include <string_view>

#include "Format.h"

/// A node or a value of a branch, as a tree has a line for it. Borrows what it speaks of.
struct BranchLine {
  std::size_t level;
  const char* kind;
  std::string_view name;
  const VyrAnnStandardXMLValue* value;  ///< null for a node that holds more, or less, than one
};

/// Calls `visit` for everything in the branch of `top`, of any depth, in the order of the standard.
void ForEachLine(const VyrAnnStandardXMLNode& top,
                 const std::function<void(const BranchLine& line)>& visit);
/// The line of a value that a node holds directly.
BranchLine LineOfValue(const VyrAnnStandardXMLValue& value, std::size_t level);

/// Members "level", "kind", "name" and those of the value.
Json AsJson(const BranchLine& line);
