#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "StandardItems.h"

/// What of one standard answers to places of another: by name, an entry of a list by its entry name
/// or else by its place. Each list is read once, however many of its entries are asked for.
class Counterparts {
 public:
  using Index = StandardItems::Index;

  /// `others` is where the answers come from, and must live as long as this object.
  explicit Counterparts(const StandardItems& others) : others_(others) {}

  /// What answers to a place of `items`; nothing when nothing does.
  std::optional<StandardPlace> Of(const StandardItems& items, const StandardPlace& place);

 private:
  struct Key {
    int kind;
    std::string_view name;
    std::string_view entryName;
    std::uint32_t ordinal;  ///< 0: the entry name tells

    bool operator==(const Key&) const = default;
  };
  struct KeyHash {
    std::size_t operator()(const Key& key) const;
  };
  using Children = std::unordered_map<Key, Index, KeyHash>;

  const Children& ChildrenOf(Index parent);
  Index Child(const StandardItems& items, Index item, Index parent);
  std::optional<std::uint32_t> Value(const StandardItems& items, const StandardPlace& value,
                                     Index holder);

  const StandardItems& others_;
  std::unordered_map<Index, Children> children_;
  // Of the node that was asked for last, since the values of one node follow each other.
  Index holder_ = StandardItems::kNone;
  std::unordered_map<std::string_view, std::vector<std::uint32_t>> values_;
};
