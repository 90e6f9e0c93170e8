#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>

/// The integer at the start of `text` as `scanf` reads "%d": leading blanks and a sign are
/// accepted and what follows the digits is ignored. Nothing when there are no digits, or when the
/// number does not fit 32 bits. With a number `text` becomes what follows it, and is of no use
/// without one.
inline std::optional<std::int32_t> TakeDecimalInteger(std::string_view& text) {
  const std::size_t first = text.find_first_not_of(" \t\n\v\f\r");
  if (first == std::string_view::npos) return std::nullopt;
  text.remove_prefix(first);
  // The conversion knows "-" but not "+".
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;
  }
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc()) return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return number;
}

/// The same of a text of which nothing else is wanted.
inline std::optional<std::int32_t> ReadDecimalInteger(std::string_view text) {
  return TakeDecimalInteger(text);
}
