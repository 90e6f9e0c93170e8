#pragma once

#include <charconv>
#include <cmath>
#include <optional>
#include <string_view>

/// The number at the start of `text` as `scanf` reads "%le" in the C locale: leading white space
/// and a sign are accepted, what follows the longest decimal number is ignored, and the decimal
/// separator is "." under every locale. Nothing when there is no number, or one that no drawing can
/// use: an infinity, a NaN, a hexadecimal number, or one beyond the range of a double.
inline std::optional<double> ReadReal(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\n\v\f\r");
  if (first == std::string_view::npos) return std::nullopt;
  text.remove_prefix(first);
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  // A second sign, which the conversion would take for the first.
  if (text.starts_with('-')) return std::nullopt;
  if (text.starts_with("0x") || text.starts_with("0X")) return std::nullopt;
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || !std::isfinite(number)) return std::nullopt;
  return negative ? -number : number;
}
