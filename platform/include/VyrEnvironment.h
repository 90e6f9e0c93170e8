#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "HolStandardInfraExport.h"

/// Value of a variable of the host's environment; empty when it has none. "VyrTemp" always has one
/// unless no folder can be made: where the environment does not set it, or to nothing, it is a
/// folder of the user's own among the temporary ones, which nobody else can write to.
HOLSTANDARDINFRA_EXPORT std::string VyrGetEnv(std::string_view name);

/// Names of the entries of a folder, "." and ".." left out, in ascending order of their bytes.
/// False when the folder cannot be read, then `errno` says why and `names` is left alone. The path
/// is read as `VyrNativePath` does.
HOLSTANDARDINFRA_EXPORT bool VyrListDirectory(std::string_view directory,
                                              std::vector<std::string>& names);
