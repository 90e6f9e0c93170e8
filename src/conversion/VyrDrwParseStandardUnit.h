#pragma once

#include "VyrDiagnostics.h"

/// The source unit that the converter's failed checks name.
inline constexpr VyrSourceUnit kParseStandardUnit("VyrDrwParseStandard");
