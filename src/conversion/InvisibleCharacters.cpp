#include "InvisibleCharacters.h"

#include <algorithm>

namespace {

constexpr InvisibleCharacter kInvisible[] = {
    {"\xC2\xA0", "a no-break space (U+00A0)", true},
    {"\xC2\x85", "a next line (U+0085)", true},
    {"\xC2\xAD", "a soft hyphen (U+00AD)", false},
    {"\xE2\x80\x80", "a wide space (U+2000)", true},
    {"\xE2\x80\x81", "a wide space (U+2001)", true},
    {"\xE2\x80\x82", "an en space (U+2002)", true},
    {"\xE2\x80\x83", "an em space (U+2003)", true},
    {"\xE2\x80\x84", "a narrow space (U+2004)", true},
    {"\xE2\x80\x85", "a narrow space (U+2005)", true},
    {"\xE2\x80\x86", "a narrow space (U+2006)", true},
    {"\xE2\x80\x87", "a figure space (U+2007)", true},
    {"\xE2\x80\x88", "a punctuation space (U+2008)", true},
    {"\xE2\x80\x89", "a thin space (U+2009)", true},
    {"\xE2\x80\x8A", "a hair space (U+200A)", true},
    {"\xE2\x80\x8B", "a zero width space (U+200B)", false},
    {"\xE2\x80\x8C", "a zero width non-joiner (U+200C)", false},
    {"\xE2\x80\x8D", "a zero width joiner (U+200D)", false},
    {"\xE2\x80\x8E", "a left-to-right mark (U+200E)", false},
    {"\xE2\x80\x8F", "a right-to-left mark (U+200F)", false},
    {"\xE2\x80\xA8", "a line separator (U+2028)", true},
    {"\xE2\x80\xA9", "a paragraph separator (U+2029)", true},
    {"\xE2\x80\xAF", "a narrow no-break space (U+202F)", true},
    {"\xE2\x81\xA0", "a word joiner (U+2060)", false},
    {"\xE3\x80\x80", "an ideographic space (U+3000)", true},
    {"\xEF\xBB\xBF", "a byte order mark (U+FEFF)", false},
};

const InvisibleCharacter* BeginOf(std::string_view text) {
  // No other character begins so, and these are rare.
  if (text[0] != '\xC2' && text[0] != '\xE2' && text[0] != '\xE3' && text[0] != '\xEF') {
    return nullptr;
  }
  const auto* const found =
      std::find_if(std::begin(kInvisible), std::end(kInvisible),
                   [=](const InvisibleCharacter& each) { return text.starts_with(each.utf8); });
  return found == std::end(kInvisible) ? nullptr : found;
}

}  // namespace

const InvisibleCharacter* FindInvisible(std::string_view text) {
  for (; !text.empty(); text.remove_prefix(1)) {
    if (const InvisibleCharacter* found = BeginOf(text); found != nullptr) return found;
  }
  return nullptr;
}

std::string WithoutInvisible(std::string_view text) {
  std::string meant;
  while (!text.empty()) {
    const InvisibleCharacter* found = BeginOf(text);
    if (found == nullptr) {
      meant += text[0];
    } else if (found->isLikeABlank) {
      meant += ' ';
    }
    text.remove_prefix(found == nullptr ? 1 : found->utf8.size());
  }
  return meant;
}
