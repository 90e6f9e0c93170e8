#include "NumberTexts.h"

#include <algorithm>
#include <array>

#include "Format.h"
#include "VyrAnnStandardNumbers.h"

namespace {

using Value = VyrAnnStandardXMLValue;

struct NumberType {
  std::string_view word;
  Value::Type type;
  const char* form;
};
constexpr std::array<NumberType, 3> kNumberTypes = {{
    {"int", Value::ValueInt, "an integer of 32 bits, such as 12"},
    {"float", Value::ValueFloat, "a number, such as 12.5"},
    {"color", Value::ValueColor, "three integers, such as 255 0 0"},
}};

/// Null for what is no number.
const NumberType* NumberTypeOf(std::string_view word) {
  const auto found = std::find_if(kNumberTypes.begin(), kNumberTypes.end(),
                                  [word](const NumberType& each) { return each.word == word; });
  return found == kNumberTypes.end() ? nullptr : &*found;
}

/// The text with a point where it has a comma, if that makes a number of it; else what is told.
std::string LikelyText(std::string_view type, std::string_view text, const std::string& told) {
  constexpr std::size_t most = 40;  // of a number that somebody has written
  text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
  text = text.substr(0, text.find_last_not_of(" \t\r\n") + 1);
  const std::size_t comma = text.find(',');
  if (comma == text.npos || text.size() > most) return told;
  std::string pointed(text);
  pointed[comma] = '.';
  return IsNoNumber(type, pointed) ? told : pointed;
}

}  // namespace

bool IsNoNumber(std::string_view type, std::string_view text) {
  const NumberType* number = NumberTypeOf(type);
  return number != nullptr && !VyrIsNumberOfType(number->type, text);
}

std::string NoNumberWarning(const std::string& subject, std::string_view type,
                            std::string_view text, const std::string& told) {
  return subject + " is " + Quoted(text) + " in the file, no number of its type " +
         std::string(type) + "; the application reads " + told + "; write " +
         LikelyText(type, text, told) + " if that is meant";
}

const char* NumberForm(std::string_view type) {
  const NumberType* number = NumberTypeOf(type);
  return number == nullptr ? "" : number->form;
}
