#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "HolStandardInfraExport.h"
#include "VyrUnicodeView.h"

/// The application's text value: every name, path and value text. Holds UTF-8.
///
/// Lengths and positions are counted in UTF-16 code units, as drafting applications count
/// characters; for ASCII text they equal bytes, which is told by one quick look at it. What is no
/// valid UTF-8 is refused where texts come from outside, not here. A value: threads may read one
/// together.
class HOLSTANDARDINFRA_EXPORT VyrUnicodeString {
 public:
  /// The empty text.
  VyrUnicodeString() = default;
  /// `text` is UTF-8; null reads as empty.
  VyrUnicodeString(const char* text)  // NOLINT(google-explicit-constructor)
      : text_(text == nullptr ? std::string_view() : std::string_view(text)) {}
  /// @{
  /// Copies `text`, or takes it over; it is UTF-8.
  VyrUnicodeString(std::string_view text) : text_(text) {}        // NOLINT
  VyrUnicodeString(VyrUnicodeView text) : text_(text) {}          // NOLINT
  VyrUnicodeString(std::string text) : text_(std::move(text)) {}  // NOLINT
  /// @}

  /// `text` is zero-terminated UTF-16; null reads as empty. An unpaired surrogate becomes U+FFFD.
  VyrUnicodeString(const unsigned short* text);  // NOLINT(google-explicit-constructor)

  /// The text as UTF-8, borrowed until this string changes.
  std::string_view View() const { return text_; }
  /// The same, zero-terminated; never null.
  const char* CString() const { return text_.c_str(); }
  /// The same, for operations that take a text.
  operator VyrUnicodeView() const { return VyrUnicodeView(text_); }  // NOLINT

  /// True for the empty text.
  bool IsEmpty() const { return text_.empty(); }
  /// Number of UTF-16 code units.
  int GetLength() const;

  /// Adds `text` at the end.
  void Append(VyrUnicodeView text) { text_.append(text); }
  /// Position of the first occurrence of `text` at or after `from`, or -1. Positions are 0-based.
  int Find(VyrUnicodeView text, int from = 0) const;
  /// `length` characters from `position`; cut at the end of the text. A position outside the text
  /// gives the empty string, a negative length everything that follows.
  VyrUnicodeString Substring(int position, int length = -1) const;
  /// Inserts before the character at `position`. A position below 0 inserts at the start, one
  /// above the length at the end.
  void Insert(int position, VyrUnicodeView text);

  /// A newly allocated, zero-terminated UTF-16 copy; the caller frees it with `delete[]`.
  unsigned short* NewUtf16Copy() const;
  /// A newly allocated, zero-terminated UTF-8 copy; the caller frees it with `delete[]`.
  char* NewNarrowCopy() const;

  /// Equal to the byte, case included: how names in standards are compared.
  friend bool operator==(const VyrUnicodeString& a, const VyrUnicodeString& b) {
    return a.text_ == b.text_;
  }
  /// The order of the bytes, which is that of code points.
  friend bool operator<(const VyrUnicodeString& a, const VyrUnicodeString& b) {
    return a.text_ < b.text_;
  }
  /// A new text: `a`, then `b`.
  friend VyrUnicodeString operator+(const VyrUnicodeString& a, VyrUnicodeView b) {
    VyrUnicodeString joined;
    joined.text_.reserve(a.text_.size() + b.size());
    joined.text_.append(a.text_).append(b);
    return joined;
  }

 private:
  std::size_t ByteOffset(int position) const;

  std::string text_;
};

/// The narrow twin of `VyrUnicodeString`: file paths and other byte texts of the host. Lengths are
/// bytes.
class HOLSTANDARDINFRA_EXPORT VyrString {
 public:
  /// The empty text.
  VyrString() = default;
  /// Copies `text`; null reads as empty.
  VyrString(const char* text)  // NOLINT(google-explicit-constructor)
      : text_(text == nullptr ? std::string_view() : std::string_view(text)) {}
  /// @{
  /// Copies `text`, or takes it over.
  VyrString(std::string_view text) : text_(text) {}        // NOLINT
  VyrString(std::string text) : text_(std::move(text)) {}  // NOLINT
  /// @}

  /// The text, borrowed until this string changes.
  std::string_view View() const { return text_; }
  /// The same, zero-terminated; never null.
  const char* CString() const { return text_.c_str(); }
  /// True for the empty text.
  bool IsEmpty() const { return text_.empty(); }
  /// Number of bytes.
  int GetLength() const { return static_cast<int>(text_.size()); }
  /// Adds `text` at the end.
  void Append(VyrUnicodeView text) { text_.append(text); }

  /// Equal to the byte.
  friend bool operator==(const VyrString& a, const VyrString& b) { return a.text_ == b.text_; }
  /// The order of the bytes.
  friend bool operator<(const VyrString& a, const VyrString& b) { return a.text_ < b.text_; }

 private:
  std::string text_;
};

/// Makes a text a key of the standard library's hash tables.
template <>
struct std::hash<VyrUnicodeString> {
  /// The same for equal texts.
  std::size_t operator()(const VyrUnicodeString& text) const noexcept {
    return std::hash<std::string_view>()(text.View());
  }
};
