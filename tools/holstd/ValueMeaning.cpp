#include "ValueMeaning.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>

#include "Format.h"

namespace {

using Value = VyrAnnStandardXMLValue;

constexpr std::string_view kBlanks = " \t\r\n";

std::string_view Trimmed(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

template <class Number>
std::optional<Number> NumberOf(std::string_view text) {
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

std::string IntMeaning(std::string_view text) {
  const auto number = NumberOf<std::int64_t>(text);
  return number ? std::to_string(*number) : std::string(text);
}

std::string FloatMeaning(std::string_view text) {
  const auto number = NumberOf<double>(text);
  if (!number || !std::isfinite(*number)) return std::string(text);
  return NumberText(*number == 0 ? 0.0 : *number);  // there is no negative zero to draw
}

std::string ColorMeaning(std::string_view text) {
  std::string meaning;
  while (!(text = Trimmed(text)).empty()) {
    const std::string_view component = text.substr(0, text.find_first_of(kBlanks));
    meaning += (meaning.empty() ? "" : " ") + IntMeaning(component);
    text.remove_prefix(component.size());
  }
  return meaning;
}

}  // namespace

std::string MeaningOf(Value::Type type, std::string_view text) {
  switch (type) {
    case Value::ValueInt:
      return IntMeaning(Trimmed(text));
    case Value::ValueFloat:
      return FloatMeaning(Trimmed(text));
    case Value::ValueColor:
      return ColorMeaning(text);
    case Value::ValueString:
    case Value::ValueEnum:
      break;
  }
  return std::string(text);
}

std::string_view OwnName(const Value& value) {
  return value.GetRangeVal() == 1 ? std::string_view() : value.GetValueName().View();
}

bool IsSameType(const Value& a, const Value& b) {
  if (a.GetType() != b.GetType() || a.GetRangeVal() != b.GetRangeVal()) return false;
  const std::string_view labelOfA = a.GetValueName().View();
  const std::string_view labelOfB = b.GetValueName().View();
  if (a.GetRangeVal() == 1) {
    return MeaningOf(Value::ValueFloat, labelOfA) == MeaningOf(Value::ValueFloat, labelOfB);
  }
  return labelOfA == labelOfB;
}

bool IsSameValue(const Value& a, const Value& b) {
  if (!IsSameType(a, b)) return false;
  const std::string_view textOfA = a.GetValue().View();
  const std::string_view textOfB = b.GetValue().View();
  return textOfA == textOfB || MeaningOf(a.GetType(), textOfA) == MeaningOf(b.GetType(), textOfB);
}
