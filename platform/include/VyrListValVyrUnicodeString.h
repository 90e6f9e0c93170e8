#pragma once

#include <vector>

#include "VyrUnicodeString.h"

/// An ordered list of texts.
using VyrListValVyrUnicodeString = std::vector<VyrUnicodeString>;
