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
/// characters; for ASCII text they equal bytes, which is told by one quick look at it.
class HOLSTANDARDINFRA_EXPORT VyrUnicodeString {
 public:
  VyrUnicodeString() = default;
  /// `text` is UTF-8; null reads as empty.
  VyrUnicodeString(const char* text)  // NOLINT(google-explicit-constructor)
      : text_(text == nullptr ? std::string_view() : std::string_view(text)) {}
  VyrUnicodeString(std::string_view text) : text_(text) {}        // NOLINT
  VyrUnicodeString(VyrUnicodeView text) : text_(text) {}          // NOLINT
  VyrUnicodeString(std::string text) : text_(std::move(text)) {}  // NOLINT
  /// `text` is zero-terminated UTF-16; null reads as empty. An unpaired surrogate becomes U+FFFD.
  VyrUnicodeString(const unsigned short* text);  // NOLINT(google-explicit-constructor)

  /// The text, borrowed until this string changes.
  std::string_view View() const { return text_; }
  const char* CString() const { return text_.c_str(); }
  operator VyrUnicodeView() const { return VyrUnicodeView(text_); }  // NOLINT

  bool IsEmpty() const { return text_.empty(); }
  /// Number of UTF-16 code units.
  int GetLength() const;

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

  friend bool operator==(const VyrUnicodeString& a, const VyrUnicodeString& b) {
    return a.text_ == b.text_;
  }
  friend bool operator<(const VyrUnicodeString& a, const VyrUnicodeString& b) {
    return a.text_ < b.text_;
  }
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

/// The narrow twin of `VyrUnicodeString`: file paths and other byte texts of the host.
class HOLSTANDARDINFRA_EXPORT VyrString {
 public:
  VyrString() = default;
  VyrString(const char* text)  // NOLINT(google-explicit-constructor)
      : text_(text == nullptr ? std::string_view() : std::string_view(text)) {}
  VyrString(std::string_view text) : text_(text) {}        // NOLINT
  VyrString(std::string text) : text_(std::move(text)) {}  // NOLINT

  std::string_view View() const { return text_; }
  const char* CString() const { return text_.c_str(); }
  bool IsEmpty() const { return text_.empty(); }
  int GetLength() const { return static_cast<int>(text_.size()); }
  void Append(VyrUnicodeView text) { text_.append(text); }

  friend bool operator==(const VyrString& a, const VyrString& b) { return a.text_ == b.text_; }
  friend bool operator<(const VyrString& a, const VyrString& b) { return a.text_ < b.text_; }

 private:
  std::string text_;
};

template <>
struct std::hash<VyrUnicodeString> {
  std::size_t operator()(const VyrUnicodeString& text) const noexcept {
    return std::hash<std::string_view>()(text.View());
  }
};
