#pragma once

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <string_view>

/// The number at the start of `text` as `scanf` reads "%le" in the C locale: leading white space
/// and a sign are accepted, what follows the longest decimal number is ignored, and the decimal
/// separator is "." under every locale. Nothing when there is no number, or one that no drawing can
/// use: an infinity, a NaN, a hexadecimal number, or one beyond the range of a double. With a
/// number `text` becomes what follows it, and is of no use without one.
inline std::optional<double> TakeReal(std::string_view& text) {
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
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return negative ? -number : number;
}

/// The same of a text of which nothing else is wanted.
inline std::optional<double> ReadReal(std::string_view text) {
  return TakeReal(text);
}

/// Takes the text of the next component off that of a colour; empty when there are no more.
inline std::string_view TakeColorComponent(std::string_view& text) {
  constexpr std::string_view blanks = " \t\r\n";
  text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
  const std::string_view component = text.substr(0, text.find_first_of(blanks));
  text.remove_prefix(component.size());
  return component;
}
