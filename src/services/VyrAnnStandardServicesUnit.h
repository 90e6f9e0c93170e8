#pragma once

#include "VyrDftStdPersistence.h"
#include "VyrDiagnostics.h"

/// The source unit that the failed checks of the cached services name.
inline constexpr VyrSourceUnit kStandardServicesUnit("VyrAnnStandardServices");

/// Sheet styles exist from the first on, sheet formats from the second.
inline const int kVersionOfRelease11 = VyrDftStdPersistence::GetVersionFromRelease(11);
inline const int kVersionOfRelease14 = VyrDftStdPersistence::GetVersionFromRelease(14);
