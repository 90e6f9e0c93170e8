#include "VyrShownText.h"

#include <algorithm>
#include <array>

#include "VyrUtf8.h"

namespace {

using namespace std::string_view_literals;

/// Characters whose UTF-8 begins with the same bytes, up to the last byte, and how they are shown.
struct Unshown {
  std::string_view lead;
  unsigned char first;
  unsigned char last;
  char shownAs;
};

constexpr std::array<Unshown, 8> kUnshown = {{
    {""sv, 0x00, 0x1F, ' '},          // control characters, U+0000 and up
    {""sv, 0x7F, 0x7F, ' '},          // U+007F
    {"\xC2"sv, 0x80, 0x9F, ' '},      // more of them, U+0080 and up, U+0085 ends a line
    {"\xE2\x80"sv, 0xA8, 0xA9, ' '},  // end of line and paragraph, U+2028 and U+2029
    {"\xE2\x80"sv, 0x8E, 0x8F, '?'},  // what changes the order of letters: U+200E and U+200F,
    {"\xE2\x80"sv, 0xAA, 0xAE, '?'},  // U+202A to U+202E,
    {"\xE2\x81"sv, 0xA6, 0xA9, '?'},  // U+2066 to U+2069,
    {"\xD8"sv, 0x9C, 0x9C, '?'},      // U+061C
}};

/// True for most of what is shown, which needs no search then.
bool IsPrintable(char c) {
  return c >= ' ' && c <= '~';
}

/// The entry of the character that `text` begins with, null when it is shown as it is.
const Unshown* FindUnshown(std::string_view text) {
  const auto found = std::find_if(kUnshown.begin(), kUnshown.end(), [=](const Unshown& entry) {
    if (text.size() <= entry.lead.size() || !text.starts_with(entry.lead)) return false;
    const auto byte = static_cast<unsigned char>(text[entry.lead.size()]);
    return byte >= entry.first && byte <= entry.last;
  });
  return found == kUnshown.end() ? nullptr : &*found;
}

/// What stands for the part of a text that is not shown.
constexpr const char* kCutOff = "...";

std::string Shown(std::string_view text) {
  std::string shown;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const Unshown* const unshown = IsPrintable(text[i]) ? nullptr : FindUnshown(text.substr(i));
    shown += unshown == nullptr ? text[i] : unshown->shownAs;
    if (unshown != nullptr) i += unshown->lead.size();
  }
  return shown;
}

}  // namespace

std::string VyrShownText(std::string_view text, std::size_t most) {
  const std::string_view begin = VyrCutUtf8(text, most);
  return Shown(begin) + (begin.size() < text.size() ? kCutOff : "");
}

std::string VyrShownEnd(std::string_view text, std::size_t most) {
  // A character that the cut would split stays whole.
  const std::size_t outside = VyrCutUtf8(text, text.size() - std::min(most, text.size())).size();
  return (outside > 0 ? kCutOff : "") + Shown(text.substr(outside));
}

std::string VyrQuoted(std::string_view text) {
  return "'" + VyrShownText(text) + "'";
}
