#pragma once

#include "VyrDiagnostics.h"
#include "VyrTrace.h"

/// The source unit that the codec's failed checks name.
inline constexpr VyrSourceUnit kXMLCodecUnit("VyrAnnStandardXMLParserDOMCodec");
/// The trace channel of the codec.
VyrTrace& XMLCodecTrace();
