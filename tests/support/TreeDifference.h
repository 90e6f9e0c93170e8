#pragma once

#include <string>
#include <utility>
#include <vector>

#include "VyrAnnStandardXMLNode.h"
#include "VyrAnnStandardXMLValue.h"

/// A value on one line, as "int X=5"; its name stands before the "=", which is ">=" when its range
/// flag is set.
inline std::string Describe(const VyrAnnStandardXMLValue& value) {
  constexpr const char* types[] = {"?", "int", "float", "string", "enum", "color"};
  return std::string(types[value.GetType()]) + " " + value.GetValueName().CString() +
         (value.GetRangeVal() != 0 ? ">=" : "=") + value.GetValue().CString();
}

inline std::string DescribeDifference(const VyrAnnStandardXMLNode& a,
                                      const VyrAnnStandardXMLNode& b) {
  const bool isSame = a.GetNodeType() == b.GetNodeType() && a.GetNodeName() == b.GetNodeName() &&
                      a.GetNumOfNode() == b.GetNumOfNode() &&
                      a.GetNumOfValue() == b.GetNumOfValue();
  if (!isSame) {
    return std::string("nodes '") + a.GetNodeName().CString() + "' and '" +
           b.GetNodeName().CString() + "' differ";
  }
  for (std::size_t i = 0; i < a.GetValues().size(); ++i) {
    const VyrAnnStandardXMLValue& x = *a.GetValues()[i];
    const VyrAnnStandardXMLValue& y = *b.GetValues()[i];
    if (x.GetType() != y.GetType() || !(x.GetValueName() == y.GetValueName()) ||
        !(x.GetValue() == y.GetValue()) || x.GetRangeVal() != y.GetRangeVal()) {
      return "values '" + Describe(x) + "' and '" + Describe(y) + "' differ";
    }
  }
  return {};
}

/// Empty when two trees, of any depth, are equal in every field; else the first difference.
inline std::string FindDifference(const VyrAnnStandardXMLNode& first,
                                  const VyrAnnStandardXMLNode& second) {
  std::vector<std::pair<const VyrAnnStandardXMLNode*, const VyrAnnStandardXMLNode*>> work = {
      {&first, &second}};
  while (!work.empty()) {
    const auto [a, b] = work.back();
    work.pop_back();
    if (std::string difference = DescribeDifference(*a, *b); !difference.empty()) return difference;
    for (std::size_t i = 0; i < a->GetNodes().size(); ++i) {
      work.emplace_back(a->GetNodes()[i].Get(), b->GetNodes()[i].Get());
    }
  }
  return {};
}
