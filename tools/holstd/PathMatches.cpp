#include "PathMatches.h"

#include <array>
#include <utility>

#include "Failure.h"
#include "VyrBaseUnknown.h"
#include "VyrXPath.h"
#include "XPath.h"

namespace {

std::string_view TypeWord(std::string_view element) {
  constexpr std::array<std::pair<std::string_view, std::string_view>, 5> words = {{
      {"std:intval", "int"},
      {"std:floatval", "float"},
      {"std:strval", "string"},
      {"std:enumval", "enum"},
      {"std:colorval", "color"},
  }};
  for (const auto& [name, word] : words) {
    if (name == element) return word;
  }
  return {};
}

std::vector<VyrIDOMNode_var> NodesOf(VyrIDOMNodeList& list) {
  std::vector<VyrIDOMNode_var> nodes;
  unsigned int count = 0;
  list.GetLength(count);
  for (unsigned int i = 0; i < count; ++i) {
    VyrIDOMNode_var node;
    if (VyrSucceeded(list.Item(i, node)) && node) nodes.push_back(std::move(node));
  }
  return nodes;
}

std::string NameOf(VyrIDOMNode& node) {
  VyrUnicodeString name;
  node.GetNodeName(name);
  return std::string(name.View());
}

std::string AttributeOf(VyrIDOMNode& node, const char* name) {
  const auto element = VyrQuery<VyrIDOMElement>(&node);
  VyrUnicodeString value;
  if (element) element->GetAttribute(name, value);
  return std::string(value.View());
}

bool IsText(VyrIDOMNode& node, std::string& text) {
  if (NameOf(node) != "#text") return false;
  VyrUnicodeString value;
  node.GetNodeValue(value);
  text = value.View();
  return true;
}

/// What an element holds, less the blanks that only lay the file out.
std::vector<VyrIDOMNode_var> ContentOf(VyrIDOMNode& element) {
  VyrIDOMNodeList_var list;
  if (VyrFailed(element.GetChildNodes(list)) || !list) return {};
  std::vector<VyrIDOMNode_var> content = NodesOf(*list);
  std::erase_if(content, [](const VyrIDOMNode_var& node) {
    std::string text;
    return IsText(*node, text) && text.find_first_not_of(" \t\r\n") == std::string::npos;
  });
  return content;
}

FileValue ValueOf(VyrIDOMNode& element) {
  FileValue value;
  value.type = TypeWord(NameOf(element));
  if (value.type.empty()) return value;
  const std::vector<VyrIDOMNode_var> content = ContentOf(element);
  if (!content.empty()) IsText(*content.front(), value.text);
  if (value.type == "enum") value.label = AttributeOf(element, "name");
  if (value.type == "float") value.label = AttributeOf(element, "minval");
  return value;
}

}  // namespace

PathMatches::PathMatches(const InputFile& file, const std::string& path) {
  VyrIXMLDOMDocumentBuilder_var builder;
  if (VyrFailed(CreateVyrIXMLDOMDocumentBuilder(builder)) ||
      VyrFailed(builder->BuildFromFile(file.Path(), document_))) {
    throw Failure{kInvalidInput, file.Name(), 0, "cannot be read a second time"};
  }
  // That of standards, or the file could not have been read as one.
  VyrIDOMElement_var top;
  document_->GetDocumentElement(top);
  top->GetNamespaceURI(namespace_);
  elements_ = Find(path);
}

PathMatches::PathMatches(const PathMatches& other, const std::string& path)
    : document_(other.document_), namespace_(other.namespace_), elements_(Find(path)) {}

std::vector<VyrIDOMNode_var> PathMatches::Find(const std::string& path) const {
  // An apostrophe would end the name and begin something else.
  if (path.find('\'') != std::string::npos) return {};
  const std::string expression(XPath(StdPath(path)).Path().View());
  const auto factory = VyrQuery<VyrIXMLXPathFactory>(document_.Get());
  VyrIXMLXPathExpression_var evaluated;
  VyrIDOMNodeList_var list;
  const bool isFound = factory && VyrSucceeded(factory->CreateExpression(expression, evaluated)) &&
                       VyrSucceeded(evaluated->DeclareNamespace("std", namespace_)) &&
                       VyrSucceeded(evaluated->Evaluate(list));
  return isFound ? NodesOf(*list) : std::vector<VyrIDOMNode_var>();
}

FileValue PathMatches::ValueAt(std::size_t index) const {
  VyrIDOMNode& element = *elements_[index];
  FileValue value = ValueOf(element);
  value.isDirect = !value.type.empty();
  if (value.isDirect) return value;
  const std::vector<VyrIDOMNode_var> content = ContentOf(element);
  return content.empty() ? value : ValueOf(*content.front());
}

std::vector<std::string> PathMatches::ContentTypes(std::size_t index) const {
  std::vector<std::string> types;
  for (const VyrIDOMNode_var& node : ContentOf(*elements_[index])) {
    const std::string name = NameOf(*node);
    if (name.starts_with('#')) continue;
    const std::string_view word = TypeWord(name);
    types.emplace_back(word.empty() ? "node" : word);
  }
  return types;
}
