#include "VyrAnnStandardNumbers.h"

#include "DecimalInteger.h"
#include "NumberText.h"

namespace {

bool IsBlank(std::string_view text) {
  return text.find_first_not_of(" \t\n\v\f\r") == std::string_view::npos;
}

bool IsInteger(std::string_view text) {
  return TakeDecimalInteger(text).has_value() && IsBlank(text);
}

bool IsReal(std::string_view text) {
  return TakeReal(text).has_value() && IsBlank(text);
}

bool IsColor(std::string_view text) {
  bool hasAny = false;
  for (;;) {
    const std::string_view component = TakeColorComponent(text);
    if (component.empty()) return hasAny;
    if (!IsInteger(component)) return false;
    hasAny = true;
  }
}

}  // namespace

bool VyrIsNumberOfType(VyrAnnStandardXMLValue::Type type, VyrUnicodeView text) {
  switch (type) {
    case VyrAnnStandardXMLValue::ValueInt:
      return IsInteger(text);
    case VyrAnnStandardXMLValue::ValueFloat:
      return IsReal(text);
    case VyrAnnStandardXMLValue::ValueColor:
      return IsColor(text);
    case VyrAnnStandardXMLValue::ValueString:
    case VyrAnnStandardXMLValue::ValueEnum:
      break;
  }
  return true;
}
