#pragma once

#include <cstddef>
#include <string_view>

#include "HolStandardInfraExport.h"

/// Byte offset of the first byte that is not part of well-formed UTF-8, or `npos` when the whole
/// text is well formed. Overlong forms, surrogates and code points above U+10FFFF are ill formed.
HOLSTANDARDINFRA_EXPORT std::size_t VyrFindInvalidUtf8(std::string_view text);

/// The first `size` bytes of `text` less a code point that the cut would split.
HOLSTANDARDINFRA_EXPORT std::string_view VyrCutUtf8(std::string_view text, std::size_t size);
