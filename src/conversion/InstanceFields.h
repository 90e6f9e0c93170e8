#pragma once

#include <string_view>

#include "VyrAnnStandardXMLNode.h"

/// Adds a value to a node directly, as the fields of an instance are held.
inline void AddField(VyrAnnStandardXMLNode& instance, VyrAnnStandardXMLValue::Type type,
                     std::string_view name, std::string_view text) {
  const VyrAnnStandardXMLValue_var value(new VyrAnnStandardXMLValue(type, text, name, 0));
  instance.AddValue(value.Get(), -1);
}
