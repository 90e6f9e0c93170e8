#pragma once

#include "FirstMatchIndex.h"

inline std::string_view NodeNameOf(const VyrAnnStandardXMLNode& node) {
  return node.GetNodeName().View();
}
inline std::string_view ValueNameOf(const VyrAnnStandardXMLValue& value) {
  return value.GetValueName().View();
}
inline std::string_view ValueTextOf(const VyrAnnStandardXMLValue& value) {
  return value.GetValue().View();
}

/// The lookups of a wide node. A node makes them when it is first searched while it is wide.
struct VyrAnnStandardXMLNode::Indexes {
  /// Below this a scan is as fast as a hash and costs no memory.
  static constexpr std::size_t kWide = 64;

  std::size_t leadingHoles = 0;  // null elements before the first child
  std::size_t firstHole = 0;     // no null element stands before it
  std::size_t searched = 0;      // places looked at since every child last knew its own
  FirstMatchIndex<VyrAnnStandardXMLNode, NodeNameOf, true> nodesByName;
  FirstMatchIndex<VyrAnnStandardXMLValue, ValueNameOf, false> valuesByName;
  FirstMatchIndex<VyrAnnStandardXMLValue, ValueTextOf, true> valuesByText;
};
