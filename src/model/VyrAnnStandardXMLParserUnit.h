#pragma once

#include "VyrDiagnostics.h"

/// The source unit that the failed checks of a document name.
inline constexpr VyrSourceUnit kXMLParserUnit("VyrAnnStandardXMLParser");
