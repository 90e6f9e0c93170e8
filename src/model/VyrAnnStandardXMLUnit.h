#pragma once

#include "VyrDiagnostics.h"

/// The source unit that the failed checks of nodes and values name.
inline constexpr VyrSourceUnit kXMLClassUnit("VyrAnnStandardXMLClass");
