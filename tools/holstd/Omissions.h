#pragma once

#include <cstddef>
#include <string>

#include "Session.h"
#include "VyrDrwParseStandard.h"

/// Warns of what a step to `version` did not do, as its user reads it: of the omissions from the
/// `from`-th on. Returns how many there are now.
std::size_t WarnOfOmissions(const VyrDrwParseStandard& converter, std::size_t from, int version,
                            const std::string& file, const Session& session);

/// Warns of how many more there are than the converter keeps.
void WarnOfFurtherOmissions(const VyrDrwParseStandard& converter, const std::string& file,
                            const Session& session);
