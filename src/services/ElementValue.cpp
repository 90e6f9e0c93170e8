#include "ElementValue.h"

#include <string_view>
#include <utility>

#include "DecimalInteger.h"
#include "NumberText.h"
#include "StandardNodes.h"
#include "VyrDifTransientStandardUnit.h"

namespace {

// With their prefix, which standard files always write.
constexpr std::string_view kInteger = "std:intval";
constexpr std::string_view kReal = "std:floatval";
constexpr std::string_view kString = "std:strval";
constexpr std::string_view kEnumeration = "std:enumval";
constexpr std::string_view kColor = "std:colorval";

bool IsType(bool isOneOfThem) {
  return kTransientStandardUnit.Check(isOneOfThem, "Unexpected value type node in standard xml");
}

bool IsNumber(bool isOne) {
  return kTransientStandardUnit.Check(isOne, "the value is no number of its type");
}

HRESULT AppendColor(std::string_view text, std::vector<int>& numbers) {
  const std::size_t before = numbers.size();
  for (;;) {
    const std::string_view token = TakeColorComponent(text);
    if (token.empty()) break;
    const auto component = ReadDecimalInteger(token);
    if (!IsNumber(component.has_value())) {
      numbers.resize(before);
      return E_UNEXPECTED;
    }
    numbers.push_back(*component);
  }
  return IsNumber(numbers.size() > before) ? S_OK : E_UNEXPECTED;
}

template <class Value>
HRESULT AppendOne(const ElementValue& value, std::vector<Value>& values) {
  Value read{};
  const HRESULT result = ReadAs(value, read);
  if (result == S_OK) values.push_back(std::move(read));
  return result;
}

}  // namespace

HRESULT ReadElementValue(VyrIDOMNode& element, ElementValue& value) {
  StandardChild child = FirstChildOf(element);
  if (child.isText) {
    value = {std::move(child.text), NodeNameOf(element)};
    return S_OK;
  }
  const VyrIDOMNode_var holder = std::move(child.node);
  if (holder) child = FirstChildOf(*holder);
  if (!child.node) {
    TraceLine(transientStandardTrace, "%sNo value definition\n");
    return S_FALSE;
  }
  if (!child.isText) {
    kTransientStandardUnit.Raise("The value was not found!");
    return E_UNEXPECTED;
  }
  value = {std::move(child.text), NodeNameOf(*holder)};
  TraceLine(transientStandardTrace, "%sNodeName is: '%s'\n", value.typeName.CString());
  return S_OK;
}

HRESULT ReadAs(const ElementValue& value, int& number) {
  if (!IsType(value.typeName.View() == kInteger)) return E_UNEXPECTED;
  const auto read = ReadDecimalInteger(value.text.View());
  if (!IsNumber(read.has_value())) return E_UNEXPECTED;
  number = *read;
  TraceLine(transientStandardTrace, "%sValue '%s' has been converted in %d\n", value.text.CString(),
            number);
  return S_OK;
}

HRESULT ReadAs(const ElementValue& value, double& number) {
  if (!IsType(value.typeName.View() == kReal)) return E_UNEXPECTED;
  const auto read = ReadReal(value.text.View());
  if (!IsNumber(read.has_value())) return E_UNEXPECTED;
  number = *read;
  TraceLine(transientStandardTrace, "%sValue '%s' has been converted in %f\n", value.text.CString(),
            number);
  return S_OK;
}

HRESULT ReadAs(const ElementValue& value, VyrUnicodeString& text) {
  const std::string_view type = value.typeName.View();
  TraceLine(transientStandardTrace, "%sType is: '%s'\n", value.typeName.CString());
  if (!IsType(type == kString || type == kEnumeration)) return E_UNEXPECTED;
  text = value.text;
  TraceLine(transientStandardTrace, "%sValue '%s' has been converted in '%s'\n",
            value.text.CString(), text.CString());
  return S_OK;
}

HRESULT AppendAs(const ElementValue& value, std::vector<int>& numbers) {
  return value.typeName.View() == kColor ? AppendColor(value.text.View(), numbers)
                                         : AppendOne(value, numbers);
}

HRESULT AppendAs(const ElementValue& value, std::vector<double>& numbers) {
  return AppendOne(value, numbers);
}

HRESULT AppendAs(const ElementValue& value, std::vector<VyrUnicodeString>& texts) {
  return AppendOne(value, texts);
}
