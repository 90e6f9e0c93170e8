#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "VyrAnnStandardXMLParser.h"

struct StandardPlace;

/// The nodes of a standard as one flat list, level after level, so that the children of a node are
/// neighbours and no depth of a standard is too much for who walks them. Borrows the document,
/// which must not change.
class StandardItems {
 public:
  using Node = VyrAnnStandardXMLNode;
  using Value = VyrAnnStandardXMLValue;
  using Index = std::uint32_t;
  static constexpr Index kNone = ~Index{0};

  /// The trees, which are the first items.
  enum Top : Index { kEnum = 0, kTypeDef = 1, kRoot = 2, kTops = 3 };
  static constexpr std::array<const char*, kTops> kTopNames = {"Enum", "TypeDef", "Root"};

  struct Item {
    const Node* node;
    Index parent;
    Index firstChild;        ///< the others follow it
    std::uint32_t ordinal;   ///< from 1 among the children of that name before it
    bool isRepeated;         ///< another child of the same parent has the name
    const Value* entryName;  ///< its parameter "Name", which tells entries of a list apart; or null
    Index entry;             ///< the innermost entry of a list with a "Name" that holds it or is it
    std::uint64_t content;   ///< differs where name, kind or content do, but for rare accidents
    std::uint64_t unnamed;   ///< the same without the parameter "Name"
    std::uint32_t values;    ///< number of all values of the subtree
  };

  explicit StandardItems(VyrAnnStandardXMLParser& document) : StandardItems(TopsOf(document)) {}
  /// Of trees as `TopsOf` has them.
  explicit StandardItems(std::vector<VyrAnnStandardXMLNode_var> tops);

  /// The trees of a document, in the order of `Top`.
  static std::vector<VyrAnnStandardXMLNode_var> TopsOf(VyrAnnStandardXMLParser& document);

  Index Count() const { return static_cast<Index>(items_.size()); }
  const Item& operator[](Index item) const { return items_[item]; }
  Index ChildCount(Index item) const {
    return static_cast<Index>(items_[item].node->GetNodes().size());
  }

  /// True for an entry of a list: an instance, or a node of whose name there are several.
  bool IsEntry(Index item) const {
    return items_[item].isRepeated || items_[item].node->GetNodeType() == Node::NodeInstance;
  }

  /// The value of a place, or the only one of a parameter's node; null for other nodes.
  const Value* ValueAt(const StandardPlace& place) const;
  /// The path of a node or of a value, as `ShownPath` has it.
  std::string PathOf(const StandardPlace& place) const;
  /// The path of a node as the commands have it, from the name of a tree on. A name that is not
  /// the first of its kind below its parent has its place in brackets after it, from 2 on.
  std::string PathOf(Index item) const;
  /// The path of a value: its node's own when that has no other, else that and the value's name, a
  /// literal's text, or for a value without a name only the place in brackets.
  std::string PathOfValue(Index item, std::size_t value) const;
  /// From 1, among the values of the node that are called the same.
  std::uint32_t OrdinalOfValue(Index item, std::size_t value) const;
  /// "Name" of the innermost entry of a list that holds the item or is it, as `ShownName` has it;
  /// empty without.
  std::string EntryOf(Index item) const;

 private:
  void AddChildren(Index parent);
  void Number(Index begin, Index end);
  void NumberMany(Index begin, Index end);
  void Summarize(Index item);
  std::string PathTo(Index item, const std::string& last) const;

  std::vector<VyrAnnStandardXMLNode_var> tops_;
  std::deque<Item> items_;  // grows without a second copy of itself
  // Of the values that were asked for last, since those of one node follow each other.
  mutable Index numberedItem_ = kNone;
  mutable std::vector<std::uint32_t> valueOrdinals_;
};

/// A node of a standard, or one of its values.
struct StandardPlace {
  StandardItems::Index item = StandardItems::kNone;
  std::optional<std::uint32_t> value;  ///< none: the node with all that it holds

  bool IsNone() const { return item == StandardItems::kNone; }
  bool operator==(const StandardPlace&) const = default;
};

/// What a value is called in its node: its own name, the text of a literal, nothing.
std::string_view KeyOfValue(const VyrAnnStandardXMLNode& node, const VyrAnnStandardXMLValue& value);
/// True for the only value of a node that is a parameter.
bool IsParameter(const VyrAnnStandardXMLNode& node);
/// The same for equal values of equal names.
std::uint64_t ContentOf(const VyrAnnStandardXMLNode& node, const VyrAnnStandardXMLValue& value);
/// The parameter "Name" of an entry of a list, a text; null without one.
const VyrAnnStandardXMLValue* NameOfEntry(const VyrAnnStandardXMLNode& node);
