#pragma once

#include "TracedOperation.h"
#include "VyrDiagnostics.h"

/// The source unit that the failed checks of standards in memory name.
inline constexpr VyrSourceUnit kTransientStandardUnit("VyrDifTransientStandard");
/// The trace channel of standards in memory.
extern VyrTrace transientStandardTrace;
