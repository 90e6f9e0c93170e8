#include "Objections.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <vector>

#include "Format.h"

namespace {

using Node = VyrAnnStandardXMLNode;
using Verb = VyrAnnStandardScript::Verb;
using Document = VyrAnnStandardXMLParser;

/// Cuts the field before the next ":" off `rest`; false when there is no further ":".
bool CutField(std::string_view& rest, std::string_view& field) {
  const std::size_t end = rest.find(':');
  field = rest.substr(0, end);
  rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
  return end != std::string_view::npos;
}

std::string ObjectionToName(std::string_view name, const char* form) {
  if (name.empty()) return std::string("the new node has no name; expected is ") + form;
  if (name.find('.') == std::string_view::npos) return {};
  return "the name " + Quoted(name) + " holds a '.', which separates names in paths";
}

std::string ObjectionToType(std::string_view type) {
  constexpr std::array<std::string_view, 4> plain = {"int", "float", "string", "color"};
  if (std::find(plain.begin(), plain.end(), type) != plain.end()) return {};
  if (type.starts_with("enum.") && type.size() > 5) return {};
  const std::size_t bound = type.starts_with("float.") ? type.find('.', 6) : type.npos;
  if (bound != type.npos && bound + 1 < type.size()) return {};
  return Quoted(type) +
         " is no type; expected is int, float, string, color, enum.NAME or "
         "float.UNIT.BOUND";
}

/// `count` is the number of elements that are there now.
std::string ObjectionToPosition(std::string_view position, long count) {
  if (position.empty()) return {};
  std::string_view digits = position;
  digits.remove_prefix(std::min(digits.find_first_not_of(" \t"), digits.size()));
  if (digits.starts_with('+')) digits.remove_prefix(1);
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (error != std::errc()) {
    return "the position " + Quoted(position) +
           " is no number; expected is a place counted from 1, or 0 for the end";
  }
  if (number <= count) return {};
  return "the position " + std::to_string(number) + " lies past the end, there are " +
         Counted(count, "element") + "; 0 adds at the end";
}

std::string AlreadyThere(std::string_view path, std::string_view name, const std::string& advice) {
  return "there is a " + Quoted(name) + " in " + Quoted(path) +
         " already, and of equal names the first alone counts; " + advice;
}

/// Entries of a list may have one name: instances, and nodes of which there are several already.
bool IsEntryOfList(CommandPaths& paths, Node& holder, const Node& first, Verb verb) {
  if (verb == Verb::Instance) return first.GetNodeType() == Node::NodeInstance;
  return first.GetNodeType() != Node::NodeInstance && holder.GetNodeType() != Node::NodeTop &&
         paths.HasSeveral(holder, first.GetNodeName().View());
}

std::string ObjectionToSecondNode(CommandPaths& paths, Node& holder, std::string_view path,
                                  std::string_view name, Verb verb) {
  const VyrAnnStandardXMLNode_var first(holder.GetNodeByName(name));
  if (!first || IsEntryOfList(paths, holder, *first, verb)) return {};
  const std::string there = std::string(path) + "." + std::string(name);
  return AlreadyThere(path, name,
                      "leave the command out, or put " + Quoted("delete " + there) + " before it");
}

/// `isWrapped` tells whether the value is to have a node of its name.
std::string ObjectionToSecondValue(const Node& holder, std::string_view path, std::string_view name,
                                   bool isWrapped) {
  const bool isThere = isWrapped ? bool(VyrAnnStandardXMLNode_var(holder.GetNodeByName(name)))
                                 : bool(VyrAnnStandardXMLValue_var(holder.GetValueByName(name)));
  // Literals are told by their text, and values without a name by their place.
  if (!isThere || name.empty() || holder.GetNodeType() == Node::NodeEnum) return {};
  const std::string there = std::string(path) + "." + std::string(name);
  return AlreadyThere(path, name, Quoted("change " + there + ":TEXT") + " gives it another value");
}

std::string ObjectionToNode(CommandPaths& paths, Verb verb, std::string_view text) {
  std::string_view path;
  std::string_view name;
  paths.CutPath(text, path);
  CutField(text, name);
  const VyrAnnStandardXMLNode_var target = paths.NodeAt(path);
  if (!target) return paths.Missing(path);
  if (std::string objection = ObjectionToName(name, "PATH:NAME, or PATH:NAME:POSITION");
      !objection.empty()) {
    return objection;
  }
  if (std::string objection = ObjectionToPosition(text, target->GetNumOfNode());
      !objection.empty()) {
    return objection;
  }
  return ObjectionToSecondNode(paths, *target, path, name, verb);
}

std::string ObjectionToEntry(CommandPaths& paths, std::string_view path) {
  const std::size_t dot = path.rfind('.');
  if (dot == std::string_view::npos) {
    return Quoted(path) + " names no entry; expected is the path of the entry last added";
  }
  const std::string_view holder = path.substr(0, dot);
  const VyrAnnStandardXMLNode_var list = paths.NodeAt(holder);
  if (list && list->GetNumOfNode() == 0) {
    return Quoted(holder) + " has no entries yet; add one first, with 'instance' or 'node'";
  }
  return paths.Missing(list ? path : holder);
}

std::string ObjectionToValue(CommandPaths& paths, Verb verb, std::string_view text) {
  constexpr const char* form = "PATH:NAME:TYPE:VALUE, or PATH:NAME:TYPE:VALUE:POSITION";
  std::string_view path;
  std::string_view name;
  std::string_view type;
  std::string_view value;
  const bool hasType = paths.CutPath(text, path) && CutField(text, name);
  CutField(text, type);
  CutField(text, value);
  if (!hasType) return std::string("fields are missing; expected is ") + form;

  const bool isField = verb == Verb::Field;
  const VyrAnnStandardXMLNode_var target = isField ? paths.EntryToFill(path) : paths.NodeAt(path);
  if (!target) return isField ? ObjectionToEntry(paths, path) : paths.Missing(path);

  const bool isWrapped = !isField && path.substr(0, path.find('.')) == "Root" &&
                         target->GetNodeType() != Node::NodeInstance;
  if (!isWrapped && target->GetNodeType() == Node::NodeTop) {
    return Quoted(path) + " holds nodes only; add the value to one of them";
  }
  std::string objection;
  if (isWrapped) objection = ObjectionToName(name, form);
  if (objection.empty()) objection = ObjectionToType(type);
  if (!objection.empty()) return objection;
  objection =
      ObjectionToPosition(text, isWrapped ? target->GetNumOfNode() : target->GetNumOfValue());
  return objection.empty() ? ObjectionToSecondValue(*target, path, name, isWrapped) : objection;
}

std::string ObjectionToFieldName(const Node& node, std::string_view path, std::string_view text) {
  const bool namesField = text.find(':') != std::string_view::npos;
  const std::string_view field = text.substr(0, text.find(':'));
  if (namesField && VyrAnnStandardXMLValue_var(node.GetValueByName(field))) return {};
  if (node.GetValues().empty()) return Quoted(path) + " has no value; add one with 'value'";
  return Quoted(path) + " has " + Counted(node.GetNumOfValue(), "value") +
         (namesField ? ", none of them called " + Quoted(field) : std::string()) +
         "; expected is PATH:FIELD:TEXT with the name of one of them";
}

using Find = VyrAnnStandardXMLValue* (Node::*)(VyrUnicodeView) const;

/// The value that the language finds by the last name of a path, which leads to no node.
VyrAnnStandardXMLValue_var FindValue(CommandPaths& paths, std::string_view path, Find find) {
  const std::size_t dot = path.rfind('.');
  if (dot == std::string_view::npos) return {};
  const VyrAnnStandardXMLNode_var holder = paths.NodeAt(path.substr(0, dot));
  return holder ? VyrAnnStandardXMLValue_var(((*holder).*find)(path.substr(dot + 1)))
                : VyrAnnStandardXMLValue_var();
}

/// By its present text.
VyrAnnStandardXMLValue_var ValueOfText(CommandPaths& paths, std::string_view path) {
  return FindValue(paths, path, &Node::GetValueWithPath);
}

std::string ObjectionToChange(CommandPaths& paths, std::string_view text) {
  std::string_view path;
  if (!paths.CutPath(text, path)) {
    return "the new text is missing; expected is PATH:TEXT, or PATH:FIELD:TEXT for one of several";
  }
  if (const VyrAnnStandardXMLNode_var node = paths.NodeAt(path)) {
    if (node->GetNumOfNode() != 0) {
      return Quoted(path) + " has " + Counted(node->GetNumOfNode(), "child node") +
             " and so no value to change; name one of them";
    }
    return node->GetNumOfValue() == 1 ? std::string() : ObjectionToFieldName(*node, path, text);
  }
  const bool isValue = ValueOfText(paths, path) || paths.ValueAt(path);
  return isValue ? std::string() : paths.Missing(path);
}

std::string ObjectionToDelete(CommandPaths& paths, std::string_view path) {
  if (paths.NodeAt(path)) {
    return path.find('.') != std::string_view::npos
               ? std::string()
               : Quoted(path) + " is a tree of the standard; delete what it holds";
  }
  const bool isValue = FindValue(paths, path, &Node::GetValueByName) || ValueOfText(paths, path) ||
                       paths.ValueAt(path);
  return isValue ? std::string() : paths.Missing(path);
}

/// The value that `change` is about to change, with what is left of `text` once it is named.
VyrAnnStandardXMLValue_var ValueToChange(CommandPaths& paths, std::string_view path,
                                         std::string_view& text) {
  const VyrAnnStandardXMLNode_var node = paths.NodeAt(path);
  if (!node) {
    const VyrAnnStandardXMLValue_var value = ValueOfText(paths, path);
    return value ? value : paths.ValueAt(path);
  }
  if (node->GetNumOfValue() == 1) return node->GetValues().front();
  std::string_view field;
  CutField(text, field);
  return VyrAnnStandardXMLValue_var(node->GetValueByName(field));
}

std::optional<WrittenLiteral> LiteralChanged(CommandPaths& paths, std::string_view text) {
  std::string_view path;
  paths.CutPath(text, path);
  const VyrAnnStandardXMLValue_var value = ValueToChange(paths, path, text);
  if (!value || value->GetType() != VyrAnnStandardXMLValue::ValueEnum) return std::nullopt;
  return WrittenLiteral{std::string(value->GetValueName().View()), std::string(text), false};
}

std::optional<WrittenLiteral> LiteralAdded(CommandPaths& paths, Verb verb, std::string_view text) {
  std::string_view path;
  std::string_view name;
  std::string_view type;
  std::string_view value;
  paths.CutPath(text, path);
  CutField(text, name);
  CutField(text, type);
  CutField(text, value);
  if (!type.starts_with("enum.")) return std::nullopt;
  const VyrAnnStandardXMLNode_var node = paths.NodeAt(path);
  const bool isField = verb == Verb::Field || (node && node->GetNodeType() == Node::NodeInstance);
  // A field takes its literals from the enumeration of its own name.
  return WrittenLiteral{std::string(isField ? name : type.substr(5)), std::string(value), true};
}

}  // namespace

bool ChangesSomething(CommandPaths& paths, std::string_view text) {
  std::string_view path;
  paths.CutPath(text, path);
  return paths.NodeAt(path) || ValueOfText(paths, path) || paths.ValueAt(path);
}

std::optional<WrittenLiteral> LiteralWritten(CommandPaths& paths, Verb verb,
                                             std::string_view text) {
  if (text.substr(0, text.find_first_of(".:")) != "Root") return std::nullopt;
  if (verb == Verb::Change) return LiteralChanged(paths, text);
  if (verb == Verb::Value || verb == Verb::Field) return LiteralAdded(paths, verb, text);
  return std::nullopt;
}

std::string ObjectionTo(CommandPaths& paths, Verb verb, std::string_view text) {
  switch (verb) {
    case Verb::Node:
    case Verb::Instance:
      return ObjectionToNode(paths, verb, text);
    case Verb::Value:
    case Verb::Field:
      return ObjectionToValue(paths, verb, text);
    case Verb::Change:
      return ObjectionToChange(paths, text);
    case Verb::Delete:
      return ObjectionToDelete(paths, text);
    case Verb::Each:
    case Verb::EachNode:
    case Verb::EachChange:
      break;
  }
  return {};
}
