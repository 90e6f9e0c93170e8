#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "VyrNameChain.h"
#include "VyrXMLNameWalk.h"
#include "VyrXMLTree.h"

/// The named elements of a document by namespace and name, so that a chain of names is followed by
/// looking at what matches and not at the document. Borrows the tree, which must stay as it is.
class VyrXMLNameIndex {
 public:
  using Index = VyrXMLTree::Index;

  explicit VyrXMLNameIndex(const VyrXMLTree& tree);
  VyrXMLNameIndex(const VyrXMLNameIndex&) = delete;
  VyrXMLNameIndex& operator=(const VyrXMLNameIndex&) = delete;

  /// The elements at the end of the chain, in document order, each once. A chain without steps
  /// leads to the document element.
  std::vector<Index> Find(const VyrNameChain& chain) const;

 private:
  using Items = std::span<const Index>;

  /// What the index needs to know of a name of the tree.
  struct NameTraits {
    std::uint32_t namespaceId;
    /// "name" in no namespace, the attribute that the index is about.
    bool isNameAttribute;
  };

  /// The elements of one namespace and one name: a part of `items_`.
  struct Group {
    std::string_view name;
    std::uint32_t hash;
    std::uint32_t namespaceId;
    std::uint32_t begin;
    std::uint32_t count;
    /// Where in `itemsByParent_` the same elements are sorted by their parents; `kSameOrder` when
    /// document order is that order already, as it nearly always is.
    std::uint32_t byParent;
  };
  static constexpr std::uint32_t kSameOrder = ~std::uint32_t{0};

  /// A step, prepared to be taken.
  struct Leg : VyrXMLNameWalk::Step {
    const Group* group;
  };

  /// Sorts the elements into groups.
  class Builder;

  const VyrXMLTree::Attribute* NameAttribute(Index element) const;
  /// Place in `slots_` of a group or, when there is no such group, where it would be.
  std::size_t Slot(std::uint32_t hash, std::uint32_t namespaceId, std::string_view name) const;
  const Group* FindGroup(std::uint32_t namespaceId, std::string_view name) const;

  Items InDocumentOrder(const Group& group) const;
  Items ByParent(const Group& group) const;
  Items Below(Index element, const Group& group) const;

  bool Prepare(std::span<const VyrNameChain::Step> steps, std::vector<Leg>& legs) const;
  std::size_t FarthestLegToTake(Index from, std::span<const Leg> legs) const;
  void AddDescendants(Items contexts, const Leg& leg, std::vector<Index>& found) const;
  void AddDescendantsThrough(Index context, std::span<const Leg> legs,
                             std::vector<Index>& found) const;
  void AddChildren(Items contexts, const Leg& leg, std::vector<Index>& found) const;
  bool IsReachedThrough(std::span<const Leg> legs, Index context, Index item) const;

  const VyrXMLTree& tree_;
  std::vector<NameTraits> names_;  // by name identifier of the tree
  std::unordered_map<std::string_view, std::uint32_t> namespaces_;
  std::vector<Group> groups_;
  std::vector<std::uint32_t> groupOf_;  // by item, where it is an element with a name
  std::vector<std::uint32_t> slots_;    // hash table of groups by namespace and name
  std::vector<Index> items_;
  std::vector<Index> itemsByParent_;
  std::uint32_t deepest_ = 0;  // levels of elements below the document element
};
