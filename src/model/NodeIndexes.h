#pragma once

#include "ListIndex.h"

/// @{
/// What items are found by. `kMayChange`: an item may change its key while a list holds it.
struct NodeNameKey {
  static constexpr bool kMayChange = true;
  static std::string_view Of(const VyrAnnStandardXMLNode& node) {
    return node.GetNodeName().View();
  }
};
struct ValueNameKey {
  static constexpr bool kMayChange = false;
  static std::string_view Of(const VyrAnnStandardXMLValue& value) {
    return value.GetValueName().View();
  }
};
struct ValueTextKey {
  static constexpr bool kMayChange = true;
  static std::string_view Of(const VyrAnnStandardXMLValue& value) {
    return value.GetValue().View();
  }
};
/// @}

/// What a node keeps of its lists once one of them is wide and is searched or edited.
struct VyrAnnStandardXMLNode::Indexes {
  /// Below this a scan is as fast as a hash and costs no memory.
  static constexpr int kWide = 64;

  Indexes(Nodes& nodesOfNode, Values& valuesOfNode) : nodes(nodesOfNode), values(valuesOfNode) {}

  /// The place of the first item of that key in a list that is not wide.
  template <class Key, class List>
  static std::optional<std::size_t> Scan(const List& list, std::string_view key) {
    for (std::size_t place = 0; place < list.size(); ++place) {
      if (Key::Of(*list[place]) == key) return place;
    }
    return std::nullopt;
  }

  ListIndex<VyrAnnStandardXMLNode, NodeNameKey> nodes;
  ListIndex<VyrAnnStandardXMLValue, ValueNameKey, ValueTextKey> values;
};

// Inline, or the library would show a symbol for each key.

template <class Key>
inline VyrAnnStandardXMLValue* VyrAnnStandardXMLNode::FindValue(std::string_view key) const {
  if (GetNumOfValue() >= Indexes::kWide) return WideIndexes().values.Find<Key>(key);
  const std::optional<std::size_t> place = FindValuePlace<Key>(key);
  return place ? values_[*place].Get() : nullptr;
}

template <class Key>
inline std::optional<std::size_t> VyrAnnStandardXMLNode::FindValuePlace(
    std::string_view key) const {
  if (GetNumOfValue() >= Indexes::kWide) return WideIndexes().values.FindPlace<Key>(key);
  return Indexes::Scan<Key>(GetValues(), key);
}
