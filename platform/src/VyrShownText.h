#pragma once

#include <string>
#include <string_view>

/// A name or value of a file as a message shows it: on one line, and no longer than a reader needs
/// to find it again; what is cut off shows as "...". Control characters and whatever breaks a line
/// show as blanks, what reorders the letters around it as "?".
std::string VyrShownText(std::string_view text);
