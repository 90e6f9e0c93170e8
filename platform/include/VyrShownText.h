#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "HolStandardInfraExport.h"

// How names and values of files, file names and arguments are shown to people. Whatever they hold,
// a terminal, a log and an editor show it on one line, in the order in which it stands, and obey
// nothing of it. Characters that would be obeyed, or that nobody would see, show as escapes:
//
// - "\n", "\t", "\xHH" for U+0000 to U+001F, U+007F and each byte that is not UTF-8;
// - "\uHHHH", and "\UHHHHHHHH" above U+FFFF, for the control characters U+0080 to U+009F, the ends
//   of lines and paragraphs, what changes the order of the letters around it, and what is
//   invisible.
//
// Joiners and variation selectors are spelling where they follow a letter beyond ASCII, and are
// shown then as they are. A backslash is shown as it is as well, so that names of files stay
// legible: the escapes are for eyes, not for programs.

/// Bytes of a name or value that a message shows: what a reader needs to find it again.
inline constexpr std::size_t kMostShownInMessage = 160;
/// The same for a line of a trace, which shows whole paths.
inline constexpr std::size_t kMostShownInTrace = 4096;

/// What is not shown as it is.
struct VyrUnshown {
  std::size_t at = std::string_view::npos;  ///< its first byte; `npos`: all is shown as it is
  std::size_t size = 0;                     ///< in bytes
  char32_t code = 0;                        ///< the code point, or the byte that is not UTF-8
  bool isUtf8 = true;                       ///< false of such a byte
};

/// The first code point or byte of `text` from `from` on, a beginning of a code point, that is not
/// shown as it is.
HOLSTANDARDINFRA_EXPORT VyrUnshown VyrFindUnshown(std::string_view text, std::size_t from = 0);

/// `text` as it is shown, up to `most` bytes; where more would follow, "..." does.
HOLSTANDARDINFRA_EXPORT std::string VyrShownText(std::string_view text,
                                                 std::size_t most = kMostShownInMessage);

/// The same of its end, for a text that is about what stands there, as a path.
HOLSTANDARDINFRA_EXPORT std::string VyrShownEnd(std::string_view text,
                                                std::size_t most = kMostShownInMessage);

/// The same, but what is left out is left out of the middle: the end of a path or of a file's name
/// says as much as its beginning.
HOLSTANDARDINFRA_EXPORT std::string VyrShownEnds(std::string_view text,
                                                 std::size_t most = kMostShownInMessage);

/// Beginning and end of `text` between apostrophes, as messages quote.
HOLSTANDARDINFRA_EXPORT std::string VyrQuoted(std::string_view text);
