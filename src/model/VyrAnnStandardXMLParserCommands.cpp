#include <algorithm>

#include "PathCommand.h"
#include "VyrAnnStandardXMLParser.h"
#include "VyrAnnStandardXMLParserUnit.h"

// The path commands that edit a document.

namespace {

using Node = VyrAnnStandardXMLNode;
using Value = VyrAnnStandardXMLValue;

enum CommandResult : int { kDone = 0, kNotFound = 1, kBadPosition = 2 };

Node::Type TypeOfNewNode(std::string_view path, int instance) {
  if (path == "Enum") return Node::NodeEnum;
  if (path == "TypeDef") return Node::NodeTypeDef;
  return instance != 0 ? Node::NodeInstance : Node::NodePlain;
}

ValueTypeField ParseType(std::string_view field) {
  const ValueTypeField type = ValueTypeField::Parse(field);
  if (!type.isKnown) {
    kXMLParserUnit.Raise("Failed to find value type, str has been set but it's wrong!");
  }
  return type;
}

/// The path of the parent of all the nodes called like the last name of `path` (which stands below
/// "Root"). One character too few per "." before the last one: migration tables count on where
/// that leads. Positions are characters, so the cut never splits one.
VyrUnicodeString ParentOfAllOccurrences(std::string_view path, std::size_t lastDot) {
  if (lastDot == std::string_view::npos) return {};
  const std::string_view parent = path.substr(0, lastDot);
  const auto dots = static_cast<int>(std::count(parent.begin(), parent.end(), '.'));
  if (dots == 0) return parent;
  const VyrUnicodeString text(parent);
  return text.Substring(0, std::max(text.GetLength() - dots, 0));
}

/// Adds the value of a command to its target, wrapped in a node where that is wanted and possible.
int PutValue(Node& target, const ValueCommand& command, const ValueTypeField& type, bool mayWrap) {
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

}  // namespace

VyrAnnStandardXMLNode* VyrAnnStandardXMLParser::GetStartNodeWithPath(std::string_view path,
                                                                     std::string_view& rest) const {
  const std::size_t dot = path.find('.');
  const std::string_view head = path.substr(0, dot);
  rest = dot == std::string_view::npos ? std::string_view() : path.substr(dot + 1);
  if (head == "Root") return root_.Get();
  if (head == "Enum") return enumTop_.Get();
  if (head == "TypeDef") return typeDefTop_.Get();
  return nullptr;
}

int VyrAnnStandardXMLParser::AddNodeWithPath(VyrUnicodeView command, int instance) {
  const NodeCommand fields = NodeCommand::Parse(command);
  const VyrAnnStandardXMLNode_var target(GetNodeWithPath(fields.path));
  if (!target) return kNotFound;
  const std::optional<int> index = ParsePosition(fields.position);
  if (!index) return kBadPosition;
  const VyrAnnStandardXMLNode_var node(new Node(TypeOfNewNode(fields.path, instance), fields.name));
  target->AddNode(node.Get(), *index);
  return kDone;
}

int VyrAnnStandardXMLParser::AddValueWithPath(VyrUnicodeView command, int occurrence) {
  const ValueCommand fields = ValueCommand::Parse(command);
  std::string_view rest;
  Node* top = GetStartNodeWithPath(fields.path, rest);
  if (top == nullptr) return kNotFound;
  const bool isTopItself = fields.path.find('.') == std::string_view::npos;
  const auto target = isTopItself
                          ? VyrAnnStandardXMLNode_var::Share(top)
                          : VyrAnnStandardXMLNode_var(top->GetNodeWithPath(rest, occurrence));
  if (!target) return kNotFound;
  const ValueTypeField type = ParseType(fields.type);
  return PutValue(*target, fields, type, top == root_.Get() && occurrence != -1);
}

int VyrAnnStandardXMLParser::AddValueWithPathForAllOccurence(VyrUnicodeView command,
                                                             int occurrence) {
  const ValueCommand fields = ValueCommand::Parse(command);
  std::string_view path;
  const Node* top = GetStartNodeWithPath(fields.path, path);
  if (top != root_.Get() || fields.path.find('.') == std::string_view::npos) return kNotFound;
  const std::size_t lastDot = path.rfind('.');
  const std::string_view name = path.substr(lastDot + 1);
  const VyrAnnStandardXMLNode_var parent(
      root_->GetNodeWithPath(ParentOfAllOccurrences(path, lastDot), occurrence));
  if (!parent) return kNotFound;
  const ValueTypeField type = ParseType(fields.type);
  int result = kNotFound;
  for (const VyrAnnStandardXMLNode_var& child : parent->GetNodes()) {
    if (child->GetNodeName().View() != name) continue;
    result = PutValue(*child, fields, type, occurrence != -1);
  }
  return result;
}

int VyrAnnStandardXMLParser::ChangeValueWithPath(VyrUnicodeView command) {
  const std::size_t separator = command.find(':');
  if (separator == std::string_view::npos) return kNotFound;
  const std::string_view path = command.substr(0, separator);
  const std::string_view text = command.substr(separator + 1);
  std::string_view rest;
  const Node* top = GetStartNodeWithPath(path, rest);
  if (top == nullptr) return kNotFound;
  if (const VyrAnnStandardXMLNode_var node(GetNodeWithPath(path)); node) {
    node->ChangeValue(text);
    return kDone;
  }
  const VyrAnnStandardXMLValue_var value(top->GetValueWithPath(rest));
  if (!value) return kNotFound;
  value->SetValue(text);
  return kDone;
}

int VyrAnnStandardXMLParser::DeleteNodeWithPath(VyrUnicodeView path) {
  std::string_view rest;
  Node* top = GetStartNodeWithPath(path, rest);
  return top == nullptr ? static_cast<int>(kNotFound) : top->DeleteNodeWithPath(rest);
}
