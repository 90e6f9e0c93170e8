#include "VyrXMLWriter.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include "VyrUtf8.h"

namespace {

/// What a byte needs in each place: nothing, an escape, or it cannot be written at all.
enum class ByteUse : std::uint8_t { Plain, EscapeInAttribute, EscapeAnywhere, Unwritable };

constexpr std::array<ByteUse, 256> kByteUse = [] {
  std::array<ByteUse, 256> use{};
  for (int byte = 0; byte < 0x20; ++byte) use[byte] = ByteUse::Unwritable;
  // A parser turns these blanks into plain ones in attributes, and every line end into "\n".
  use['\t'] = use['\n'] = use['"'] = ByteUse::EscapeInAttribute;
  use['\r'] = use['&'] = use['<'] = use['>'] = ByteUse::EscapeAnywhere;
  return use;
}();

std::string_view EscapeOf(char byte) {
  switch (byte) {
    case '\t':
      return "&#9;";
    case '\n':
      return "&#10;";
    case '\r':
      return "&#13;";
    case '"':
      return "&quot;";
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    default:
      return "&gt;";
  }
}

ByteUse UseOf(char byte) {
  return kByteUse[static_cast<unsigned char>(byte)];
}

/// Characters that cannot be written at all are the caller's to refuse, and stay as they are.
void AppendEscaped(std::string& out, std::string_view text, ByteUse leastEscaped) {
  std::size_t plainFrom = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const ByteUse use = UseOf(text[i]);
    if (use < leastEscaped || use == ByteUse::Unwritable) continue;
    out.append(text, plainFrom, i - plainFrom);
    out.append(EscapeOf(text[i]));
    plainFrom = i + 1;
  }
  out.append(text, plainFrom);
}

}  // namespace

VyrXMLWriter::VyrXMLWriter() : text_("<?xml version=\"1.0\" encoding=\"UTF-8\"?>") {}

void VyrXMLWriter::CloseStartTag() {
  if (inStartTag_) text_ += '>';
  inStartTag_ = false;
}

void VyrXMLWriter::BreakLine(std::size_t level) {
  text_ += '\n';
  text_.append(2 * std::min(level, kIndentedLevels), ' ');
}

void VyrXMLWriter::StartElement(std::string_view qualifiedName) {
  CloseStartTag();
  BreakLine(open_.size());
  text_ += '<';
  text_ += qualifiedName;
  open_.push_back(qualifiedName);
  inStartTag_ = true;
  hasText_ = false;
}

bool VyrXMLWriter::AddAttribute(std::string_view name, std::string_view value) {
  if (FindUnwritable(value) != std::string_view::npos) return false;
  text_ += ' ';
  text_ += name;
  text_ += "=\"";
  AppendEscaped(text_, value, ByteUse::EscapeInAttribute);
  text_ += '"';
  return true;
}

bool VyrXMLWriter::AddText(std::string_view text) {
  if (text.empty()) return true;
  if (FindUnwritable(text) != std::string_view::npos) return false;
  CloseStartTag();
  AppendEscaped(text_, text, ByteUse::EscapeAnywhere);
  hasText_ = true;
  return true;
}

void VyrXMLWriter::EndElement() {
  const std::string_view name = open_.back();
  open_.pop_back();
  if (inStartTag_) {
    text_ += "/>";
  } else {
    if (!hasText_) BreakLine(open_.size());
    text_ += "</";
    text_ += name;
    text_ += '>';
  }
  inStartTag_ = false;
  hasText_ = false;
}

std::string VyrXMLWriter::TakeText() {
  text_ += '\n';
  return std::exchange(text_, std::string());
}

std::size_t VyrXMLWriter::FindUnwritable(std::string_view text) {
  bool isAscii = true;
  std::size_t control = 0;
  for (; control < text.size() && UseOf(text[control]) != ByteUse::Unwritable; ++control) {
    isAscii = isAscii && (text[control] & 0x80) == 0;
  }
  const std::size_t first = control < text.size() ? control : std::string_view::npos;
  if (isAscii) return first;
  // U+FFFE and U+FFFF are well-formed UTF-8 but no XML characters.
  return std::min(
      {first, VyrFindInvalidUtf8(text), text.find("\xEF\xBF\xBE"), text.find("\xEF\xBF\xBF")});
}

std::string VyrXMLWriter::Escape(std::string_view text) {
  std::string escaped;
  AppendEscaped(escaped, text, ByteUse::EscapeAnywhere);
  return escaped;
}

std::string VyrXMLWriter::EscapeAttribute(std::string_view text) {
  std::string escaped;
  AppendEscaped(escaped, text, ByteUse::EscapeInAttribute);
  return escaped;
}
