#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "VyrAnnStandardXMLNode.h"

/// The children of one node that have one name, in order, found by their place or by their
/// parameter "Name". Each operation takes a time that grows with the logarithm of their count.
class EntryList {
 public:
  using Node = VyrAnnStandardXMLNode;
  using Node_var = VyrAnnStandardXMLNode_var;

  EntryList();

  std::size_t Count() const { return static_cast<std::size_t>(entries_->GetNumOfNode()); }
  /// `place` counts from 0 and is below the count.
  Node_var At(std::size_t place) const;
  /// Those of that "Name", two at most.
  std::vector<Node_var> Called(std::string_view name);
  /// Places, from 0, of the first two of that "Name".
  std::vector<std::size_t> PlacesOfCalled(std::string_view name) const;

  /// Inserts an entry before that at `place`, or at the end when `place` is the count.
  void Insert(Node& entry, std::size_t place);
  /// Removes the first entry of which the node's name, which may be another one by now, is `name`.
  void Remove(std::string_view name);
  /// The entry's "Name" may be another one than before.
  void NoteName(Node& entry);

 private:
  void ForgetName(const Node& entry);

  Node_var entries_;  // holds them as its children: a node finds and edits those quickly
  // Once somebody has asked for a "Name".
  bool hasNames_ = false;
  std::unordered_map<const Node*, std::string> names_;
  std::set<std::pair<std::string, Node*>> byName_;
};

/// The lists of equal names among the children of one node.
class EntryLists {
 public:
  using Node = VyrAnnStandardXMLNode;
  using Node_var = VyrAnnStandardXMLNode_var;

  explicit EntryLists(Node& holder);

  /// Null when fewer than two children were ever called so.
  EntryList* Find(std::string_view name);
  /// A child called `name` has come, maybe where `place`, from 1, says; before it the first of that
  /// name was `first`, and the last of all was `last`. False when the lists do not hold any more.
  bool Added(std::string_view name, const Node_var& first, const Node_var& last,
             std::optional<std::size_t> place);

 private:
  Node_var holder_;  // keeps its address from being another node's
  std::map<std::string, EntryList, std::less<>> lists_;
};

/// "Name" of an entry; empty without.
std::string_view NameOfEntryIn(const VyrAnnStandardXMLNode& entry);
