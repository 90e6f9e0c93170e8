#pragma once

#include <vector>

#include "VyrXMLDOM.h"

/// The value that an element of a standard holds, as it stands in the file.
struct ElementValue {
  VyrUnicodeString text;
  VyrUnicodeString typeName;  ///< qualified name of the value element, as "std:intval"
};

/// The value of an element that a query found: its own text, or that of the value element which is
/// its first child. `S_FALSE` when there is no text; `E_UNEXPECTED`, reported, when there is an
/// element in its place. `value` is set with `S_OK` only.
HRESULT ReadElementValue(VyrIDOMNode& element, ElementValue& value);

// The value in the type that was asked for. `E_UNEXPECTED`, reported, when it is of another one or
// its text cannot be read; the output is then left alone.
HRESULT ReadAs(const ElementValue& value, int& number);
HRESULT ReadAs(const ElementValue& value, double& number);
HRESULT ReadAs(const ElementValue& value, VyrUnicodeString& text);

// The same, appended to what is there. As integers a colour is one for each of its components.
HRESULT AppendAs(const ElementValue& value, std::vector<int>& numbers);
HRESULT AppendAs(const ElementValue& value, std::vector<double>& numbers);
HRESULT AppendAs(const ElementValue& value, std::vector<VyrUnicodeString>& texts);
