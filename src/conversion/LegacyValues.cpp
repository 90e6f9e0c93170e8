#include "LegacyValues.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "DecimalInteger.h"
#include "InvisibleCharacters.h"
#include "VyrShownText.h"

namespace {

using Type = VyrDrwParseKeyword::Type;

constexpr std::array<std::string_view, 4> kParentStandards = {"ISO", "JIS", "ANSI", "ASME"};

bool IsDigits(std::string_view text) {
  if (text.starts_with('+') || text.starts_with('-')) text.remove_prefix(1);
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

/// What a whole text is as a decimal number: no error, no number, or none that can be held.
std::errc ReadNumber(std::string_view text, double& number) {
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  if (text.find_first_not_of("0123456789.eE+-") != std::string_view::npos) {
    return std::errc::invalid_argument;
  }
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return end == text.data() + text.size() ? error : std::errc::invalid_argument;
}

std::string NotValid(std::string_view text, const char* expected) {
  return VyrQuoted(text) + " is not valid; expected is " + expected;
}

std::string ObjectionToInteger(std::string_view text) {
  if (!IsDigits(text)) return NotValid(text, "a whole number, such as 1");
  if (ReadDecimalInteger(text)) return {};
  return VyrQuoted(text) + (text.starts_with('-') ? " is too small" : " is too large") +
         "; a whole number is one from -2147483648 to 2147483647";
}

std::string ObjectionToNumber(std::string_view text) {
  double number = 0.0;
  const std::errc error = ReadNumber(text, number);
  if (error == std::errc()) return {};
  if (error != std::errc::result_out_of_range) {
    return NotValid(text, "a decimal number, such as 2.0");
  }
  return VyrQuoted(text) +
         " is too large, or too near to 0, for a decimal number; expected is one such as 2.0";
}

}  // namespace

std::string ObjectionTo(Type type, std::string_view text) {
  if (type == Type::String || type == Type::Marker) return {};
  if (const InvisibleCharacter* found = FindInvisible(text); found != nullptr) {
    return "the value has " + std::string(found->name) +
           " in it, which does not show; take that out";
  }
  if (type == Type::Int) return ObjectionToInteger(text);
  if (type == Type::Float) return ObjectionToNumber(text);
  const bool isKnown =
      std::find(kParentStandards.begin(), kParentStandards.end(), text) != kParentStandards.end();
  return isKnown ? "" : NotValid(text, "one of ISO, JIS, ANSI, ASME");
}

bool IsSameValue(Type type, std::string_view a, std::string_view b) {
  if (a == b) return true;
  if (type != Type::Int && type != Type::Float) return false;
  double first = 0.0;
  double second = 0.0;
  return ReadNumber(a, first) == std::errc() && ReadNumber(b, second) == std::errc() &&
         first == second;
}
