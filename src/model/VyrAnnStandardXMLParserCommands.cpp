#include <algorithm>

#include "NodeEdits.h"
#include "PathCommand.h"
#include "VyrAnnStandardXMLParser.h"

// The path commands that edit a document.

namespace {

using Node = VyrAnnStandardXMLNode;

Node::Type TypeOfNewNode(std::string_view path, int instance) {
  if (path == "Enum") return Node::NodeEnum;
  if (path == "TypeDef") return Node::NodeTypeDef;
  return instance != 0 ? Node::NodeInstance : Node::NodePlain;
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
  return PutNode(*target, fields, TypeOfNewNode(fields.path, instance));
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
  return PutValue(*target, fields, ParseValueType(fields), top == root_.Get() && occurrence != -1);
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
  const ValueTypeField type = ParseValueType(fields);
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
  Node* top = GetStartNodeWithPath(path, rest);
  if (top == nullptr) return kNotFound;
  if (!rest.empty()) return ChangeBelow(*top, rest, text);
  top->ChangeValue(text);
  return kDone;
}

int VyrAnnStandardXMLParser::DeleteNodeWithPath(VyrUnicodeView path) {
  std::string_view rest;
  Node* top = GetStartNodeWithPath(path, rest);
  return top == nullptr ? static_cast<int>(kNotFound) : top->DeleteNodeWithPath(rest);
}
