#include "NodeEdits.h"

#include "VyrAnnStandardXMLParserUnit.h"

namespace {

using Node = VyrAnnStandardXMLNode;
using Value = VyrAnnStandardXMLValue;

}  // namespace

CommandResult PutNode(Node& target, const NodeCommand& command, Node::Type type) {
  const std::optional<int> index = ParsePosition(command.position);
  if (!index) return kBadPosition;
  const VyrAnnStandardXMLNode_var node(new Node(type, command.name));
  target.AddNode(node.Get(), *index);
  return kDone;
}

ValueTypeField ParseValueType(const ValueCommand& command) {
  const ValueTypeField type = ValueTypeField::Parse(command.type);
  if (!type.isKnown) {
    kXMLParserUnit.Raise("Failed to find value type, str has been set but it's wrong!");
  }
  return type;
}

CommandResult PutValue(Node& target, const ValueCommand& command, const ValueTypeField& type,
                       bool mayWrap) {
  const std::optional<int> index = ParsePosition(command.position);
  if (!index) return kBadPosition;
  if (mayWrap && target.GetNodeType() != Node::NodeInstance) {
    const VyrAnnStandardXMLNode_var wrapper(new Node(Node::NodePlain, command.name));
    const VyrAnnStandardXMLValue_var value(
        new Value(type.type, command.value, type.qualifier, type.rangeVal));
    wrapper->AddValue(value.Get(), -1);
    target.AddNode(wrapper.Get(), *index);
  } else {
    // The qualifier has no place here: an enumeration value is checked against the enumeration
    // that has the field's own name, and type definitions name their fields so.
    const VyrAnnStandardXMLValue_var value(
        new Value(type.type, command.value, command.name, type.rangeVal));
    target.AddValue(value.Get(), *index);
  }
  return kDone;
}

CommandResult ChangeBelow(const Node& holder, std::string_view path, std::string_view text) {
  if (const VyrAnnStandardXMLNode_var node(holder.GetNodeWithPath(path, 1)); node) {
    node->ChangeValue(text);
    return kDone;
  }
  const VyrAnnStandardXMLValue_var value(holder.GetValueWithPath(path));
  if (!value) return kNotFound;
  value->SetValue(text);
  return kDone;
}
