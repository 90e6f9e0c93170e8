#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Nearest.h"
#include "StandardItems.h"

/// All that a path may mean, in the order of the standard. A path that begins with the name of a
/// tree leads from level to level, as those of commands do; of any other the names are found at any
/// depth below each other, as queries find them, with definitions and values that nodes hold
/// directly. A name may have brackets after it, see `PathName`; one that is written just so comes
/// first.
std::vector<StandardPlace> FindPlaces(const StandardItems& items, std::string_view path);
/// The one place that a path means to a command: of equal names the first one, unless a place in
/// brackets tells. `path` begins with the name of a tree. Nothing when there is none.
std::optional<StandardPlace> FindPlace(const StandardItems& items, std::string_view path);
/// True when `path` begins with the name of a tree.
bool IsCommandPath(std::string_view path);
/// `path` without the places in brackets that its names have.
std::string WithoutPlaces(std::string_view path);

/// What may have been meant by a path with which a query finds nothing.
PathCorrection CorrectQuery(const StandardItems& items, const std::string& path);
/// Says which name of a path that means nothing is the first that is not there, and what may have
/// been meant.
std::string MissingPlace(const StandardItems& items, const std::string& path);
/// The same of a path for which `FindPlace` finds nothing.
std::string MissingBranch(const StandardItems& items, const std::string& path);
