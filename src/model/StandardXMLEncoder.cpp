#include "StandardXMLEncoder.h"

#include <algorithm>

#include "ShownPath.h"
#include "StandardXMLFormat.h"
#include "VyrAnnStandardXMLParserDOMCodecUnit.h"
#include "VyrShownText.h"

namespace {

using Node = VyrAnnStandardXMLNode;
using Value = VyrAnnStandardXMLValue;

template <class Element, std::size_t count, class Type>
const Element* ElementFor(const std::array<Element, count>& elements, Type type) {
  const auto found = std::find_if(elements.begin(), elements.end(),
                                  [=](const Element& element) { return element.type == type; });
  return found == elements.end() ? nullptr : &*found;
}

}  // namespace

HRESULT StandardXMLEncoder::Encode(const StandardTops& tops, const VyrUnicodeString& documentName,
                                   const VyrUnicodeString& documentType, std::string& out) {
  problem_ = {};
  open_.clear();
  writer_ = VyrXMLWriter();
  writer_.StartElement(ElementFor(kNodeElements, Node::NodePlain)->qualifiedName);
  const bool isWritten = writer_.AddAttribute("xmlns:std", kStandardNamespace) &&
                         WriteDocumentAttribute(kNameAttribute, documentName) &&
                         WriteDocumentAttribute(kTypeAttribute, documentType) &&
                         WriteTop(tops.enumTop, Node::NodeEnum) &&
                         WriteTop(tops.typeDefTop, Node::NodeTypeDef) &&
                         WriteTop(tops.rootTop, Node::NodePlain);
  if (!isWritten) return E_UNEXPECTED;
  writer_.EndElement();
  out = writer_.TakeText();
  return S_OK;
}

bool StandardXMLEncoder::WriteDocumentAttribute(std::string_view name,
                                                const VyrUnicodeString& value) {
  if (value.IsEmpty() || writer_.AddAttribute(name, value.View())) return true;
  return Refuse("Failed to create node!", "the document element's attribute '" + std::string(name) +
                                              "' holds what XML cannot hold");
}

bool StandardXMLEncoder::WriteTop(const Node& top, Node::Type contentType) {
  open_.push_back({&top, 0});
  for (const VyrAnnStandardXMLNode_var& child : top.GetNodes()) {
    if (child->GetNodeType() != contentType && MayHoldNode(Node::NodeTop, child->GetNodeType())) {
      return Refuse("Invalid node", "node " + VyrQuoted(child->GetNodeName().View()) +
                                        " cannot stand in " +
                                        std::string(top.GetNodeName().View()));
    }
    if (!WriteTree(*child)) return false;
  }
  open_.pop_back();
  return true;
}

bool StandardXMLEncoder::WriteTree(const Node& node) {
  const std::size_t outside = open_.size();
  if (!StartNode(node, Node::NodeTop)) return false;
  while (open_.size() > outside) {
    OpenNode& current = open_.back();
    if (current.nextChild < current.node->GetNodes().size()) {
      const Node& child = *current.node->GetNodes()[current.nextChild++];
      if (!StartNode(child, current.node->GetNodeType())) return false;
    } else {
      writer_.EndElement();
      open_.pop_back();
    }
  }
  return true;
}

/// Opens the node's element and writes its values into it.
bool StandardXMLEncoder::StartNode(const Node& node, Node::Type parent) {
  open_.push_back({&node, 0});
  const NodeElement* element = ElementFor(kNodeElements, node.GetNodeType());
  if (element == nullptr) return Refuse("Invalid type of node!", Path() + " is no writable node");
  if (!MayHoldNode(parent, node.GetNodeType())) {
    return Refuse("Invalid node",
                  Path() + ": a " + std::string(element->qualifiedName) + " cannot stand there");
  }
  const bool needsValues =
      node.GetNodeType() == Node::NodeEnum || node.GetNodeType() == Node::NodeTypeDef;
  if (needsValues && node.GetValues().empty()) {
    return Refuse("Invalid node", Path() + " is empty; it needs at least one value");
  }
  writer_.StartElement(element->qualifiedName);
  if (!writer_.AddAttribute(kNameAttribute, node.GetNodeName().View())) {
    return Refuse("Failed to create node!", Path() + ": the name holds what XML cannot hold");
  }
  return std::all_of(node.GetValues().begin(), node.GetValues().end(),
                     [&](const auto& value) { return WriteValue(node, *value); });
}

bool StandardXMLEncoder::WriteValue(const Node& node, const Value& value) {
  const auto refuse = [&](const char* message, const char* what) {
    return Refuse(message,
                  Path() + ": value " + VyrQuoted(value.GetValueName().View()) + " " + what);
  };
  const ValueElement* element = ElementFor(kValueElements, value.GetType());
  if (element == nullptr) return refuse("unknown type of value!", "has no writable type");
  if (!MayHoldValue(node.GetNodeType(), value.GetType())) {
    return refuse("Invalid node", "has a type that cannot stand there");
  }
  writer_.StartElement(element->qualifiedName);
  const std::string_view attribute = value.GetRangeVal() == 1 ? kBoundAttribute : kNameAttribute;
  if (!value.GetValueName().IsEmpty() &&
      !writer_.AddAttribute(attribute, value.GetValueName().View())) {
    return refuse("Failed to create element", "has a name that XML cannot hold");
  }
  if (!writer_.AddText(value.GetValue().View())) {
    return refuse("Failed to create text",
                  "holds a control character or a byte that is not UTF-8; XML cannot hold it");
  }
  writer_.EndElement();
  return true;
}

bool StandardXMLEncoder::Refuse(const char* message, const std::string& problem) {
  kXMLCodecUnit.Raise(message);
  problem_ = {0, problem};
  return false;
}

/// Names of the open nodes from the outermost down to the one at fault.
std::string StandardXMLEncoder::Path() const {
  ShownPath path(kMostShownInMessage);
  auto open = open_.rbegin();
  for (; open != open_.rend() && path.HasRoom(); ++open) {
    path.AddOuter("", open->node->GetNodeName().View(), open == open_.rbegin() ? "" : ".");
  }
  return path.Text(open == open_.rend());
}
