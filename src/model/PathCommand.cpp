#include "PathCommand.h"

#include <algorithm>
#include <utility>

#include "DecimalInteger.h"

namespace {

/// Cuts the field before the next ":" off `rest`; the last field takes what is left.
std::string_view TakeField(std::string_view& rest) {
  const std::size_t end = rest.find(':');
  const std::string_view field = rest.substr(0, end);
  rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
  return field;
}

constexpr std::pair<std::string_view, VyrAnnStandardXMLValue::Type> kPlainTypes[] = {
    {"int", VyrAnnStandardXMLValue::ValueInt},
    {"float", VyrAnnStandardXMLValue::ValueFloat},
    {"string", VyrAnnStandardXMLValue::ValueString},
    {"color", VyrAnnStandardXMLValue::ValueColor},
};

}  // namespace

NodeCommand NodeCommand::Parse(std::string_view command) {
  NodeCommand parsed;
  parsed.path = TakeField(command);
  parsed.name = TakeField(command);
  parsed.position = command;
  return parsed;
}

ValueCommand ValueCommand::Parse(std::string_view command) {
  ValueCommand parsed;
  parsed.path = TakeField(command);
  parsed.name = TakeField(command);
  parsed.type = TakeField(command);
  parsed.value = TakeField(command);
  parsed.position = command;
  return parsed;
}

ValueTypeField ValueTypeField::Parse(std::string_view field) {
  for (const auto& [word, type] : kPlainTypes) {
    if (field == word) return {type, {}, 0, true};
  }
  constexpr std::string_view enumPrefix = "enum.";
  if (field.starts_with(enumPrefix)) {
    return {VyrAnnStandardXMLValue::ValueEnum, field.substr(enumPrefix.size()), 0, true};
  }
  constexpr std::string_view floatPrefix = "float.";
  const std::size_t secondDot = field.find('.', floatPrefix.size());
  if (field.starts_with(floatPrefix) && secondDot != std::string_view::npos) {
    // The word between the dots names a unit; it says nothing to the document and is dropped.
    return {VyrAnnStandardXMLValue::ValueFloat, field.substr(secondDot + 1), 1, true};
  }
  return {VyrAnnStandardXMLValue::ValueString, {}, 0, field.find('.') != std::string_view::npos};
}

std::optional<int> ParsePosition(std::string_view field) {
  if (field.empty()) return -1;
  const std::optional<std::int32_t> number = ReadDecimalInteger(field);
  if (!number) return std::nullopt;
  return std::max(*number, 0) - 1;
}
