#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "HolStandardInfraExport.h"
#include "VyrAnnStandardXMLValue.h"
#include "VyrBaseUnknown.h"
#include "VyrInstanceCounter.h"
#include "VyrUnicodeString.h"

class VyrAnnStandardXMLNode;
/// Counted reference to a node.
using VyrAnnStandardXMLNode_var = VyrVar<VyrAnnStandardXMLNode>;

/// A named node of a drafting standard's tree, with child nodes and typed values.
///
/// Reference-counted: lists hold references, and every lookup hands out a counted reference that
/// the caller releases. Names need not be unique among siblings (lists of instances repeat one
/// name); every lookup by name is exact, case-sensitive and takes the first match in list order.
/// Indices are 0-based. A refused call reports a failed check, returns its failure value and
/// changes nothing. Used from one thread at a time.
class HOLSTANDARDINFRA_EXPORT VyrAnnStandardXMLNode final
    : public VyrFrameworkClass<VyrAnnStandardXMLNode>,
      private VyrCountedInstance<VyrAnnStandardXMLClass> {
 public:
  static constexpr const char* kClassName = "VyrAnnStandardXMLNode";  ///< of the meta-class
  static constexpr const char* kLibrary = "HolStandardInfra";         ///< of the meta-class

  /// What a node is in its document. The numbers are fixed: callers compare with them.
  enum Type : int {
    NodeTop = 0,       ///< one of the three top nodes of a document
    NodePlain = 1,     ///< a group of parameters, or the node that carries one value under its name
    NodeTypeDef = 2,   ///< definition of a compound type; its values are the fields
    NodeEnum = 3,      ///< definition of an enumeration; its values are the literals
    NodeInstance = 4,  ///< instance of a compound type; its values are held directly
  };

  /// The children of a node, in order, a reference to each.
  using Nodes = std::vector<VyrAnnStandardXMLNode_var>;
  /// The values that a node holds directly, in order, a reference to each.
  using Values = std::vector<VyrAnnStandardXMLValue_var>;

  /// A node without children and values, with one reference for its creator. `name` may hold
  /// blanks, as "A0 ISO" does; one with a "." is never found by a path.
  VyrAnnStandardXMLNode(Type type, VyrUnicodeView name);
  /// A plain node without a name, as the object framework makes it.
  VyrAnnStandardXMLNode() : VyrAnnStandardXMLNode(NodePlain, {}) {}

  /// What the node is; as it was made.
  Type GetNodeType() const { return type_; }
  /// The name, borrowed until it is set.
  const VyrUnicodeString& GetNodeName() const { return name_; }
  /// Replaces the name, wherever the node is held. Nothing is refused.
  void SetNodeName(VyrUnicodeView name);

  /// The list of children itself, borrowed until it is edited.
  const Nodes& GetNodes() const {
    if (indexes_) BringNodesUpToDate();
    return nodes_;
  }
  /// The list of values itself, borrowed until it is edited.
  const Values& GetValues() const {
    if (indexes_) BringValuesUpToDate();
    return values_;
  }
  /// Number of children.
  int GetNumOfNode() const { return indexes_ ? CountNodes() : static_cast<int>(nodes_.size()); }
  /// Number of values held directly; those wrapped in children do not count.
  int GetNumOfValue() const { return indexes_ ? CountValues() : static_cast<int>(values_.size()); }

  /// Adds a child, of which the list takes a reference of its own. A negative index appends; an
  /// index from 0 to the count less 1 inserts before that element. The count itself is refused:
  /// insertion at the end is asked for by a negative index only. Null is refused. A node must not
  /// be added below itself, which is not checked.
  void AddNode(VyrAnnStandardXMLNode* child, int index);
  /// Adds a value by the same rules.
  void AddValue(VyrAnnStandardXMLValue* value, int index);

  /// The child at an index; a negative one means the last. Null, reported, past the end and without
  /// children.
  VyrAnnStandardXMLNode* GetNode(int index) const;
  /// The value at an index, by the same rules.
  VyrAnnStandardXMLValue* GetValue(int index) const;
  /// The first child of that name; null, without a report, when there is none.
  VyrAnnStandardXMLNode* GetNodeByName(VyrUnicodeView name) const;
  /// The first value of that name; null, without a report, when there is none.
  VyrAnnStandardXMLValue* GetValueByName(VyrUnicodeView name) const;
  /// The child named "Default", else the first child; null, reported, without children.
  VyrAnnStandardXMLNode* GetDefaultNode() const;
  /// Removes the value at an index from 0; 1 when done, 0 when refused.
  int DeleteValue(int index);

  /// Adds a plain node `name` that wraps one value, as the parameters of a standard are held.
  /// `typeName` names the enumeration of a `ValueEnum` and must be empty for every other type; a
  /// `ValueEnum` also needs a value. `index` is -1 to append, or from 0 to the child count. Result
  /// 1 once the node is handed to `AddNode` (which refuses the count itself), 0 when refused.
  int AddNodeWithValue(VyrUnicodeView name, VyrAnnStandardXMLValue::Type type, VyrUnicodeView value,
                       VyrUnicodeView typeName, int index);
  /// Sets the text of the only value; of several values the one named before the first ":" of
  /// `text` takes what follows that ":". Does nothing for several values and no ":". Refused for a
  /// node with children, and when no value has that name.
  void ChangeValue(VyrUnicodeView text);

  /// The node at the end of a path of names joined by ".", below this node. With an occurrence
  /// other than 1 the last name is not looked at: the child is taken by its place, k >= 2 the k-th
  /// and anything below 1 the last one, so that a caller addresses the instance just appended. Null
  /// when there is none; reported only where the place lies past the end.
  VyrAnnStandardXMLNode* GetNodeWithPath(VyrUnicodeView path, int occurrence) const;
  /// The first value whose text (not its name) is the last segment of the path: how a literal of
  /// an enumeration is found. Null, without a report, when there is none.
  VyrAnnStandardXMLValue* GetValueWithPath(VyrUnicodeView path) const;
  /// Removes the first child of the last name, else the first value of that name, else the first
  /// value of that text. 0 when removed, 1 when nothing was found. What is removed lives on as long
  /// as somebody else holds a reference to it.
  int DeleteNodeWithPath(VyrUnicodeView path);

  /// Number of enumeration values in this tree whose literal is not defined under `enumTop`; each
  /// is reported as one line of trace output. A null `enumTop` checks nothing. `context` begins
  /// every line; each level appends its own name to it.
  int Check(VyrAnnStandardXMLNode* enumTop, VyrUnicodeView context) const;
  /// An independent copy of the whole tree; the caller owns its reference.
  VyrAnnStandardXMLNode* Clone() const;

 private:
  friend struct VyrIndexedPlaces;
  struct Indexes;

  ~VyrAnnStandardXMLNode() override;

  static int SplitPath(std::string_view path, std::string_view& head, std::string_view& tail);
  const VyrAnnStandardXMLNode* FindParentOfLast(std::string_view path,
                                                std::string_view& last) const;
  VyrAnnStandardXMLNode* FindNode(std::string_view name) const;
  std::optional<std::size_t> FindNodePlace(std::string_view name) const;
  template <class Key>
  VyrAnnStandardXMLValue* FindValue(std::string_view key) const;
  template <class Key>
  std::optional<std::size_t> FindValuePlace(std::string_view key) const;
  Indexes& WideIndexes() const;
  void BringNodesUpToDate() const;
  void BringValuesUpToDate() const;
  int CountNodes() const;
  int CountValues() const;
  void GiveChildrenUp(Nodes& dying);
  void RemoveNode(std::size_t place);
  void RemoveValue(std::size_t place);

  Type type_;
  std::uint32_t listenedAs_ = 0;        // the number by which the listener knows this node
  VyrKeyListener* listener_ = nullptr;  // to be told of another name; borrowed
  VyrUnicodeString name_;
  mutable Nodes nodes_;
  mutable Values values_;
  mutable std::unique_ptr<Indexes> indexes_;
};
