#pragma once

#include <string>
#include <string_view>

#include "VyrAnnStandardXMLValue.h"

// What a value says, whatever way it is written: "1", "1.0" and "1e0" are the same float to a
// drawing, and " 7" and "07" the same int. Texts and literals are taken as they are.

/// One spelling for all the ways to write the same text of a value of that type. A number that is
/// none is left as it stands.
std::string MeaningOf(VyrAnnStandardXMLValue::Type type, std::string_view text);

/// The name that a value itself has, as fields of an instance have one; empty for one that carries
/// a lower bound in its place.
std::string_view OwnName(const VyrAnnStandardXMLValue& value);

/// True when both have the same type: for a literal the same enumeration too, for a float the same
/// lower bound.
bool IsSameType(const VyrAnnStandardXMLValue& a, const VyrAnnStandardXMLValue& b);
bool IsSameValue(const VyrAnnStandardXMLValue& a, const VyrAnnStandardXMLValue& b);
