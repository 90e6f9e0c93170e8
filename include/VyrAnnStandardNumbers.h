#pragma once

#include "HolStandardInfraExport.h"
#include "VyrAnnStandardXMLValue.h"
#include "VyrUnicodeView.h"

/// True when the whole of `text` is the number that `type` asks for, but for white space around it:
/// a decimal integer of 32 bits, a decimal number, or for a colour integers with blanks between
/// them. Queries and readers of sheets take the number at the start of a text and pass over what
/// follows it; this tells whether that leaves anything out. False when they find no number at all,
/// true for a text or a literal. "1e3", ".5" and "5." are numbers; "12,5", "5 mm" and, as an
/// integer, "2.0" are not.
HOLSTANDARDINFRA_EXPORT bool VyrIsNumberOfType(VyrAnnStandardXMLValue::Type type,
                                               VyrUnicodeView text);
