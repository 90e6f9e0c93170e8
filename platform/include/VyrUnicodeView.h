#pragma once

#include <string>
#include <string_view>

/// A borrowed UTF-8 text: what operations take when they only read a text. Converts from every
/// text form a caller may hold, without copying it; a null `const char*` reads as the empty text.
/// Valid as long as the text it was made from.
class VyrUnicodeView : public std::string_view {
 public:
  /// The empty text.
  constexpr VyrUnicodeView() = default;
  /// Borrows a zero-terminated text; null reads as empty.
  constexpr VyrUnicodeView(const char* text)  // NOLINT(google-explicit-constructor)
      : std::string_view(text == nullptr ? std::string_view() : std::string_view(text)) {}
  /// @{
  /// Borrows `text`.
  constexpr VyrUnicodeView(std::string_view text)  // NOLINT(google-explicit-constructor)
      : std::string_view(text) {}
  VyrUnicodeView(const std::string& text)  // NOLINT(google-explicit-constructor)
      : std::string_view(text) {}
  /// @}
};
