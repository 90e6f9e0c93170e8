#pragma once

#include <string>
#include <string_view>

#include "VyrDrwParseKeywordTable.h"

// Values of a text standard.

/// Why `text` is no value of the type, and what would be one; empty when it is one.
std::string ObjectionTo(VyrDrwParseKeyword::Type type, std::string_view text);

/// Whether two texts are the same value of the type: of numbers, the same number.
bool IsSameValue(VyrDrwParseKeyword::Type type, std::string_view a, std::string_view b);
