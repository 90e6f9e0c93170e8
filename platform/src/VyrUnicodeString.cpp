#include "VyrUnicodeString.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace {

/// UTF-16 code units that the UTF-8 byte begins: 2 for the lead of a four-byte sequence, 0 for a
/// continuation byte.
int UnitsBegunBy(char byte) {
  const auto value = static_cast<unsigned char>(byte);
  if ((value & 0xC0) == 0x80) return 0;
  return value >= 0xF0 ? 2 : 1;
}

/// Looks at eight bytes at a time: nearly all names and values of a standard are ASCII.
bool IsAscii(std::string_view text) {
  while (text.size() >= sizeof(std::uint64_t)) {
    std::uint64_t block = 0;
    std::memcpy(&block, text.data(), sizeof block);
    if ((block & 0x8080808080808080u) != 0) return false;
    text.remove_prefix(sizeof block);
  }
  return std::none_of(text.begin(), text.end(), [](char c) { return (c & 0x80) != 0; });
}

int CountUnits(std::string_view text) {
  if (IsAscii(text)) return static_cast<int>(text.size());
  int units = 0;
  for (char byte : text) units += UnitsBegunBy(byte);
  return units;
}

void AppendCodePoint(std::string& text, std::uint32_t code) {
  if (code < 0x80) {
    text += static_cast<char>(code);
  } else if (code < 0x800) {
    text += static_cast<char>(0xC0 | (code >> 6));
    text += static_cast<char>(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    text += static_cast<char>(0xE0 | (code >> 12));
    text += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    text += static_cast<char>(0x80 | (code & 0x3F));
  } else {
    text += static_cast<char>(0xF0 | (code >> 18));
    text += static_cast<char>(0x80 | ((code >> 12) & 0x3F));
    text += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    text += static_cast<char>(0x80 | (code & 0x3F));
  }
}

/// Decodes the code point at `position` of well-formed UTF-8 and moves past it.
std::uint32_t NextCodePoint(std::string_view text, std::size_t& position) {
  const auto lead = static_cast<unsigned char>(text[position++]);
  if (lead < 0x80) return lead;
  const int following = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
  std::uint32_t code = lead & (0x3Fu >> following);
  for (int i = 0; i < following && position < text.size(); ++i) {
    code = (code << 6) | (static_cast<unsigned char>(text[position++]) & 0x3Fu);
  }
  return code;
}

constexpr std::uint32_t kReplacementCharacter = 0xFFFD;

}  // namespace

VyrUnicodeString::VyrUnicodeString(const unsigned short* text) {
  if (text == nullptr) return;
  for (std::size_t i = 0; text[i] != 0; ++i) {
    std::uint32_t code = text[i];
    const bool isHigh = code >= 0xD800 && code < 0xDC00;
    const bool isLow = code >= 0xDC00 && code < 0xE000;
    if (isHigh && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000) {
      code = 0x10000 + ((code - 0xD800) << 10) + (text[++i] - 0xDC00u);
    } else if (isHigh || isLow) {
      code = kReplacementCharacter;
    }
    AppendCodePoint(text_, code);
  }
}

int VyrUnicodeString::GetLength() const {
  return CountUnits(text_);
}

std::size_t VyrUnicodeString::ByteOffset(int position) const {
  if (position <= 0) return 0;
  if (IsAscii(text_)) return std::min(static_cast<std::size_t>(position), text_.size());
  std::size_t offset = 0;
  while (offset < text_.size() && position > 0) {
    position -= UnitsBegunBy(text_[offset]);
    ++offset;
    while (offset < text_.size() && UnitsBegunBy(text_[offset]) == 0) ++offset;
  }
  return offset;
}

int VyrUnicodeString::Find(VyrUnicodeView text, int from) const {
  if (from > GetLength()) return -1;
  const std::size_t found = text_.find(text, ByteOffset(from));
  if (found == std::string::npos) return -1;
  return CountUnits(std::string_view(text_).substr(0, found));
}

VyrUnicodeString VyrUnicodeString::Substring(int position, int length) const {
  if (position < 0) return {};
  const std::size_t begin = ByteOffset(position);
  if (length < 0) return std::string_view(text_).substr(begin);
  const std::size_t end = ByteOffset(position + std::min(length, GetLength() - position));
  return end <= begin ? std::string_view() : std::string_view(text_).substr(begin, end - begin);
}

void VyrUnicodeString::Insert(int position, VyrUnicodeView text) {
  text_.insert(ByteOffset(position), text);
}

unsigned short* VyrUnicodeString::NewUtf16Copy() const {
  // No character takes more units than bytes, which holds for ill-formed text too.
  auto* copy = new unsigned short[text_.size() + 1];
  std::size_t unit = 0;
  for (std::size_t i = 0; i < text_.size();) {
    const std::uint32_t code = NextCodePoint(text_, i);
    if (code >= 0x10000) {
      copy[unit++] = static_cast<unsigned short>(0xD800 + ((code - 0x10000) >> 10));
      copy[unit++] = static_cast<unsigned short>(0xDC00 + ((code - 0x10000) & 0x3FF));
    } else {
      copy[unit++] = static_cast<unsigned short>(code);
    }
  }
  copy[unit] = 0;
  return copy;
}

char* VyrUnicodeString::NewNarrowCopy() const {
  auto* copy = new char[text_.size() + 1];
  std::memcpy(copy, text_.c_str(), text_.size() + 1);
  return copy;
}
