#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Bytes of a name or value that a message shows: what a reader needs to find it again.
inline constexpr std::size_t kMostShownInMessage = 160;
/// The same for a line of a trace, which shows whole paths.
inline constexpr std::size_t kMostShownInTrace = 4096;

/// A name or value of a file as a message shows it: on one line, and its first `most` bytes; what
/// is cut off shows as "...". Control characters and whatever breaks a line show as blanks, what
/// reorders the letters around it as "?".
std::string VyrShownText(std::string_view text, std::size_t most = kMostShownInMessage);

/// The same of its last `most` bytes, for a text that is about what stands at its end, as a path.
std::string VyrShownEnd(std::string_view text, std::size_t most = kMostShownInMessage);

/// The first between apostrophes.
std::string VyrQuoted(std::string_view text);
