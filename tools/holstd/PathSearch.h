#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "StandardDifferences.h"
#include "StandardItems.h"

/// All that a path may mean, in the order of the standard. A path that begins with the name of a
/// tree leads from level to level, as those of commands do; of any other the names are found at any
/// depth below each other, as queries find them, with definitions and values that nodes hold
/// directly. A name may have its place in brackets after it, as `StandardItems::PathOf` writes it.
std::vector<StandardPlace> FindPlaces(const StandardItems& items, std::string_view path);
/// Says which name of a path that means nothing is the first that is not there, and which one is
/// near.
std::string MissingPlace(const StandardItems& items, const std::string& path);
