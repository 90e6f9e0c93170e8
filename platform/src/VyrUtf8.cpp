#include "VyrUtf8.h"

#include <cstdint>
#include <cstring>

namespace {

bool IsContinuation(unsigned char byte) {
  return (byte & 0xC0) == 0x80;
}

/// Length of the well-formed sequence at the start of `text`, 0 when it is ill formed. The second
/// byte carries the bounds that exclude overlong forms, surrogates and code points past U+10FFFF.
std::size_t SequenceLength(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  if (lead < 0x80) return 1;
  if (lead < 0xC2 || lead > 0xF4) return 0;
  const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  if (text.size() < length) return 0;
  const auto second = static_cast<unsigned char>(text[1]);
  const unsigned char lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  const unsigned char highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  if (second < lowest || second > highest) return 0;
  for (std::size_t i = 2; i < length; ++i) {
    if (!IsContinuation(static_cast<unsigned char>(text[i]))) return 0;
  }
  return length;
}

bool StartsWithEightAsciiBytes(const char* bytes) {
  std::uint64_t block = 0;
  std::memcpy(&block, bytes, sizeof block);
  return (block & 0x8080808080808080u) == 0;
}

}  // namespace

std::size_t VyrFindInvalidUtf8(std::string_view text) {
  std::size_t i = 0;
  while (i < text.size()) {
    if (text.size() - i >= 8 && StartsWithEightAsciiBytes(text.data() + i)) {
      i += 8;
      continue;
    }
    const std::size_t length = SequenceLength(text.substr(i));
    if (length == 0) return i;
    i += length;
  }
  return std::string_view::npos;
}

std::string_view VyrCutUtf8(std::string_view text, std::size_t size) {
  if (text.size() <= size) return text;
  while (size > 0 && IsContinuation(static_cast<unsigned char>(text[size]))) --size;
  return text.substr(0, size);
}
