#pragma once

#include "VyrDiagnostics.h"

/// The source unit that the failed checks of standard discovery name.
inline constexpr VyrSourceUnit kDftStandardServicesUnit("VyrDftStandardServices");
