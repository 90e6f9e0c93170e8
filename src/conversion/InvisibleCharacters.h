#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// A character that does not show, or shows as a blank and is none: what word processors and web
/// pages leave in a text that is copied from them.
struct InvisibleCharacter {
  std::string_view utf8;
  const char* name;   // with its article
  bool isLikeABlank;  // what was meant is a blank; else nothing
};

/// The first of them in `text`; null when there is none.
const InvisibleCharacter* FindInvisible(std::string_view text);

/// `text` as it was meant: with blanks for those that look like one, and without the others.
std::string WithoutInvisible(std::string_view text);
