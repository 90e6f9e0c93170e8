#pragma once

#include <string_view>

/// Cuts a text at a separator, one token per call. Text and tokens are borrowed, and nothing is
/// copied.
class VyrToken {
 public:
  /// `text` must outlive the tokens.
  constexpr VyrToken(std::string_view text, char separator) : rest_(text), separator_(separator) {}

  /// Puts the next component into `token` and returns true. The call that signals the end by
  /// returning false delivers a token too, always the empty one, so that a caller who keeps every
  /// token ends with an empty component. A separator at the very end of the text adds no component
  /// of its own.
  constexpr bool Next(std::string_view& token) {
    if (rest_.empty()) {
      token = {};
      return false;
    }
    const std::size_t end = rest_.find(separator_);
    token = rest_.substr(0, end);
    rest_ = end == std::string_view::npos ? std::string_view() : rest_.substr(end + 1);
    return true;
  }

 private:
  std::string_view rest_;
  char separator_;
};
