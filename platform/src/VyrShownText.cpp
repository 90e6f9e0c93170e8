#include "VyrShownText.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

#include "VyrUtf8.h"

namespace {

/// Code points from `first` to `last`.
struct Range {
  char32_t first;
  char32_t last;
  bool isSpelling = false;  ///< behind a letter beyond ASCII
};

// Sorted. Besides what controls a terminal, what Unicode calls default ignorable, which shows as
// nothing, and the marks around interlinear annotations.
constexpr std::array kUnshown = {
    Range{0x00, 0x1F},           Range{0x7F, 0x9F},           Range{0xAD, 0xAD},
    Range{0x34F, 0x34F, true},   Range{0x61C, 0x61C},         Range{0x115F, 0x1160},
    Range{0x17B4, 0x17B5},       Range{0x180B, 0x180D, true}, Range{0x180E, 0x180E},
    Range{0x180F, 0x180F, true}, Range{0x200B, 0x200B},       Range{0x200C, 0x200D, true},
    Range{0x200E, 0x200F},       Range{0x2028, 0x202E},       Range{0x2060, 0x206F},
    Range{0x3164, 0x3164},       Range{0xFE00, 0xFE0F, true}, Range{0xFEFF, 0xFEFF},
    Range{0xFFA0, 0xFFA0},       Range{0xFFF0, 0xFFFB},       Range{0x1BCA0, 0x1BCA3},
    Range{0x1D173, 0x1D17A},     Range{0xE0000, 0xE00FF},     Range{0xE0100, 0xE01EF, true},
    Range{0xE01F0, 0xE0FFF},
};

constexpr std::size_t kLongestCharacter = 4;  // of UTF-8, in bytes

constexpr std::string_view kLeftOut = "...";

/// True for most of what is shown, which needs no search then.
bool IsPrintable(char c) {
  return c >= ' ' && c <= '~';
}

bool IsAscii(char c) {
  return static_cast<unsigned char>(c) < 0x80;
}

/// What stands at `at`, shown as it is or not.
VyrUnshown CharacterAt(std::string_view text, std::size_t at) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[at + i]); };
  const std::size_t size = byte(0) < 0x80 ? 1 : byte(0) < 0xE0 ? 2 : byte(0) < 0xF0 ? 3 : 4;
  if (VyrFindInvalidUtf8(text.substr(at, size)) != std::string_view::npos) {
    return {at, 1, byte(0), false};
  }
  char32_t code = size == 1 ? byte(0) : byte(0) & (0xFFU >> (size + 1));
  for (std::size_t i = 1; i < size; ++i) code = code << 6 | (byte(i) & 0x3F);
  return {at, size, code, true};
}

bool IsUnshown(std::string_view text, const VyrUnshown& character) {
  if (!character.isUtf8) return true;
  const auto range = std::find_if(kUnshown.begin(), kUnshown.end(), [&](const Range& candidate) {
    return character.code <= candidate.last;
  });
  if (range == kUnshown.end() || character.code < range->first) return false;
  return !range->isSpelling || character.at == 0 || IsAscii(text[character.at - 1]);
}

void AppendEscape(std::string& shown, const VyrUnshown& unshown) {
  const auto code = static_cast<unsigned int>(unshown.code);
  if (code == '\n' || code == '\t') {
    shown += code == '\n' ? "\\n" : "\\t";
    return;
  }
  const bool isByte = !unshown.isUtf8 || code < 0x80;
  std::array<char, 16> escape{};
  std::snprintf(escape.data(), escape.size(),
                isByte           ? "\\x%02X"
                : code < 0x10000 ? "\\u%04X"
                                 : "\\U%08X",
                code);
  shown += escape.data();
}

/// As much of the beginning of `text` as shows in `most` bytes.
struct Beginning {
  std::string shown;
  std::size_t size = 0;  ///< of what is shown, in `text`
};

Beginning BeginningOf(std::string_view text, std::size_t most) {
  Beginning beginning;
  std::string& shown = beginning.shown;
  while (beginning.size < text.size()) {
    // No more of a long text is looked at than there is room for.
    const std::size_t room = most - shown.size();
    const std::string_view rest = text.substr(beginning.size);
    const std::size_t near = std::min(rest.size(), room) + kLongestCharacter;
    const VyrUnshown unshown =
        VyrFindUnshown(text.substr(0, beginning.size + near), beginning.size);
    const std::size_t end = std::min(unshown.at, std::min(text.size(), beginning.size + near));
    const std::string_view run = VyrCutUtf8(rest.substr(0, end - beginning.size), room);
    shown += run;
    beginning.size += run.size();
    if (beginning.size < end) break;
    if (unshown.at != end) continue;
    const std::size_t before = shown.size();
    AppendEscape(shown, unshown);
    if (shown.size() > most) {
      shown.resize(before);
      break;
    }
    beginning.size += unshown.size;
  }
  return beginning;
}

/// `at`, or the end of the character that it is in the middle of.
std::size_t EndOfCharacter(std::string_view text, std::size_t at) {
  for (std::size_t before = 1; before <= std::min(at, kLongestCharacter - 1); ++before) {
    const VyrUnshown character = CharacterAt(text, at - before);
    if (character.at + character.size > at) return character.at + character.size;
  }
  return at;
}

/// As much of the end of `text` as shows in `most` bytes.
std::string EndOf(std::string_view text, std::size_t most) {
  for (std::size_t begin = text.size() - std::min(text.size(), most);; ++begin) {
    begin = EndOfCharacter(text, begin);
    std::string shown = VyrShownText(text.substr(begin), std::string_view::npos);
    if (shown.size() <= most) return shown;
  }
}

}  // namespace

VyrUnshown VyrFindUnshown(std::string_view text, std::size_t from) {
  while (from < text.size()) {
    if (IsPrintable(text[from])) {
      ++from;
      continue;
    }
    const VyrUnshown character = CharacterAt(text, from);
    if (IsUnshown(text, character)) return character;
    from += character.size;
  }
  return {};
}

std::string VyrShownText(std::string_view text, std::size_t most) {
  Beginning beginning = BeginningOf(text, most);
  if (beginning.size < text.size()) beginning.shown += kLeftOut;
  return std::move(beginning.shown);
}

std::string VyrShownEnd(std::string_view text, std::size_t most) {
  Beginning whole = BeginningOf(text, most);
  if (whole.size == text.size()) return std::move(whole.shown);
  return std::string(kLeftOut).append(EndOf(text, most));
}

std::string VyrShownEnds(std::string_view text, std::size_t most) {
  Beginning whole = BeginningOf(text, most);
  if (whole.size == text.size()) return std::move(whole.shown);
  std::string ends = BeginningOf(text, most - most / 2).shown;
  return ends.append(kLeftOut).append(EndOf(text, most / 2));
}

std::string VyrQuoted(std::string_view text) {
  return "'" + VyrShownEnds(text) + "'";
}
