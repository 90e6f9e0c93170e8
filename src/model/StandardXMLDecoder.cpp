#include "StandardXMLDecoder.h"

#include <utility>

#include "ShownPath.h"
#include "StandardXMLFormat.h"
#include "VyrAnnStandardXMLParserDOMCodecUnit.h"
#include "VyrDftXMLNodeID.h"
#include "VyrShownText.h"

namespace {

using Tree = VyrXMLTree;
using Node = VyrAnnStandardXMLNode;
using Value = VyrAnnStandardXMLValue;

constexpr std::uint32_t kNoName = ~std::uint32_t{0};

/// How a message to the user calls an element.
std::string Described(const Tree& tree, Tree::Index element) {
  return "<" + VyrShownText(tree.GetName(tree.GetNameId(element)).qualifiedName) + ">";
}

/// What may stand in the element of a node, for messages.
const char* ContentOf(Node::Type type) {
  switch (type) {
    case Node::NodeTop:
      return "std:enumdef, std:typedef or std:node";
    case Node::NodeEnum:
      return "std:strval";
    case Node::NodeTypeDef:
      return "std:strval, std:intval, std:floatval or std:enumval";
    default:
      return "std:node, std:typeval, std:typedef or a value";
  }
}

}  // namespace

StandardXMLDecoder::StandardXMLDecoder(const Tree& tree, std::string source)
    : tree_(tree),
      source_(std::move(source)),
      nameAttribute_(AttributeId(kNameAttribute)),
      boundAttribute_(AttributeId(kBoundAttribute)) {
  meanings_.reserve(tree.GetNameCount());
  for (std::uint32_t id = 0; id < tree.GetNameCount(); ++id) {
    meanings_.push_back(MeaningOf(tree.GetName(id)));
  }
}

StandardXMLDecoder::Meaning StandardXMLDecoder::MeaningOf(const Tree::Name& name) {
  Meaning meaning;
  if (name.namespaceURI != kStandardNamespace) return meaning;
  meaning.kind = Meaning::Unknown;
  for (const NodeElement& element : kNodeElements) {
    if (element.localName != name.localName) continue;
    meaning.kind = Meaning::Node;
    meaning.nodeType = element.type;
  }
  for (const ValueElement& element : kValueElements) {
    if (element.localName != name.localName) continue;
    meaning.kind = Meaning::Value;
    meaning.valueType = element.type;
  }
  return meaning;
}

HRESULT StandardXMLDecoder::Decode(const StandardTops& tops) {
  const Index root = tree_.GetDocumentElement();
  if (!kXMLCodecUnit.Check(root != Tree::kNone, "a document without an element")) {
    problem_ = {1, "holds no element; a standard begins with a std:node element"};
    return E_UNEXPECTED;
  }
  if (!CheckDocumentElement(root)) return E_FAIL;
  documentName_ = AttributeOf(root, nameAttribute_);
  documentType_ = AttributeOf(root, AttributeId(kTypeAttribute));
  for (Index child = tree_.GetFirstChild(root); child != Tree::kNone;
       child = tree_.GetNextSibling(child)) {
    if (!IsStandardElement(child)) continue;
    if (const HRESULT result = DecodeTopElement(child, root, tops); VyrFailed(result)) {
      return result;
    }
  }
  return S_OK;
}

bool StandardXMLDecoder::CheckDocumentElement(Index root) {
  VyrTrace& trace = XMLCodecTrace();
  const Meaning& meaning = MeaningOf(root);
  const bool isStandard = meaning.kind == Meaning::Node && meaning.nodeType == Node::NodePlain;
  if (trace.IsOn()) {
    trace.Print(
        isStandard ? "%sRoot node is OK, it's %s\n" : "%sRoot node is not correct, it's %s\n",
        VyrTrace::Indentation().c_str(), Identifier(root).c_str());
  }
  if (isStandard) return true;
  kXMLCodecUnit.Raise("Invalid standard");
  problem_ = {tree_.GetLine(root),
              "not a drafting standard: the document element is " + Described(tree_, root) +
                  ", and would be <std:node> in the namespace " + kStandardNamespace};
  return false;
}

/// True for an element of the standard namespace; warns of other elements.
bool StandardXMLDecoder::IsStandardElement(Index child) {
  if (tree_.GetKind(child) != Tree::Kind::Element) return false;
  if (MeaningOf(child).kind != Meaning::OtherNamespace) return true;
  VyrTrace& trace = XMLCodecTrace();
  if (trace.IsOn()) {
    trace.Print(
        "%sWarning! The element %s is not in standard namespace. It will be ignored. "
        "(file %s:%d)\n",
        VyrTrace::Indentation().c_str(), Identifier(child).c_str(), source_.c_str(),
        tree_.GetLine(child));
  }
  return false;
}

HRESULT StandardXMLDecoder::DecodeTopElement(Index element, Index root, const StandardTops& tops) {
  const Meaning& meaning = MeaningOf(element);
  if (meaning.kind != Meaning::Node || !MayHoldNode(Node::NodeTop, meaning.nodeType)) {
    RefuseElement("%sERROR: invalid node %s under root %s\n", element, root);
    return E_FAIL;
  }
  const VyrAnnStandardXMLNode_var built = BuildTop(element);
  if (!built) return E_FAIL;
  Node& top = meaning.nodeType == Node::NodeEnum      ? tops.enumTop
              : meaning.nodeType == Node::NodeTypeDef ? tops.typeDefTop
                                                      : tops.rootTop;
  top.AddNode(built.Get(), -1);
  return S_OK;
}

VyrAnnStandardXMLNode_var StandardXMLDecoder::BuildTop(Index element) {
  switch (MeaningOf(element).nodeType) {
    case Node::NodeEnum:
      return BuildEnum(element);
    case Node::NodeTypeDef:
      return BuildTypeDef(element);
    default:
      return BuildNodeTree(element);
  }
}

VyrAnnStandardXMLNode_var StandardXMLDecoder::BuildNodeTree(Index top) {
  struct Work {
    Index element;
    Node* node;
  };
  const auto newNode = [this](Index element) {
    return new Node(MeaningOf(element).nodeType, AttributeOf(element, nameAttribute_));
  };
  VyrAnnStandardXMLNode_var built(newNode(top));
  // First in, first out, without recursion: files may be deeper than the stack.
  std::vector<Work> work = {{top, built.Get()}};
  for (std::size_t next = 0; next < work.size(); ++next) {
    const Work item = work[next];
    for (Index child = tree_.GetFirstChild(item.element); child != Tree::kNone;
         child = tree_.GetNextSibling(child)) {
      if (!IsStandardElement(child)) continue;
      const Meaning& meaning = MeaningOf(child);
      if (meaning.kind == Meaning::Value) {
        const VyrAnnStandardXMLValue_var value = BuildValue(child, meaning.valueType);
        item.node->AddValue(value.Get(), -1);
      } else if (meaning.kind == Meaning::Node && meaning.nodeType == Node::NodeTypeDef) {
        const VyrAnnStandardXMLNode_var typeDef = BuildTypeDef(child);
        if (!typeDef) return {};
        item.node->AddNode(typeDef.Get(), -1);
      } else if (meaning.kind == Meaning::Node &&
                 MayHoldNode(item.node->GetNodeType(), meaning.nodeType)) {
        const VyrAnnStandardXMLNode_var node(newNode(child));
        item.node->AddNode(node.Get(), -1);
        work.push_back({child, node.Get()});
      } else {
        RefuseElement("%sERROR: invalid node %s under %s\n", child, item.element);
        return {};
      }
    }
    TraceBuilt("%sBuilding node %s (%d value, %d subnodes)\n", item.element, *item.node);
  }
  return built;
}

/// Adds the children of an element that holds nothing but values; false when one was refused.
bool StandardXMLDecoder::AddValuesOnly(Index element, Node& node) {
  for (Index child = tree_.GetFirstChild(element); child != Tree::kNone;
       child = tree_.GetNextSibling(child)) {
    if (!IsStandardElement(child)) continue;
    const Meaning& meaning = MeaningOf(child);
    if (meaning.kind != Meaning::Value || !MayHoldValue(node.GetNodeType(), meaning.valueType)) {
      RefuseElement("%sERROR: invalid node %s under %s\n", child, element);
      return false;
    }
    const VyrAnnStandardXMLValue_var value = BuildValue(child, meaning.valueType);
    const auto name = FindAttribute(child, nameAttribute_);
    if (node.GetNodeType() == Node::NodeEnum && name && *name != node.GetNodeName().View()) {
      kXMLCodecUnit.Raise("Strval in enum have a name but it's not the name of the enum");
    }
    node.AddValue(value.Get(), -1);
  }
  return true;
}

VyrAnnStandardXMLNode_var StandardXMLDecoder::BuildEnum(Index element) {
  VyrAnnStandardXMLNode_var node(new Node(Node::NodeEnum, AttributeOf(element, nameAttribute_)));
  if (!AddValuesOnly(element, *node)) return {};
  if (node->GetNumOfValue() == 0) {
    kXMLCodecUnit.Raise("Enumdef node empty!");
    problem_ = {tree_.GetLine(element), "enumeration " + VyrQuoted(node->GetNodeName().View()) +
                                            " is empty; it needs at least one std:strval"};
    return {};
  }
  TraceBuilt("%sBuilding enumdef %s (%d values)\n", element, *node);
  return node;
}

VyrAnnStandardXMLNode_var StandardXMLDecoder::BuildTypeDef(Index element) {
  VyrAnnStandardXMLNode_var node(new Node(Node::NodeTypeDef, AttributeOf(element, nameAttribute_)));
  if (!AddValuesOnly(element, *node)) return {};
  if (node->GetNumOfValue() == 0) {
    kXMLCodecUnit.Raise("Typedef node empty!");
    problem_ = {tree_.GetLine(element), "type " + VyrQuoted(node->GetNodeName().View()) +
                                            " is empty; it needs at least one field"};
    return {};
  }
  TraceBuilt("%sBuilding typedef %s (%d values)\n", element, *node);
  return node;
}

/// The text children of a value element: borrowed when there is one, else put together in `joined`.
std::string_view StandardXMLDecoder::TextOf(Index element, std::string& joined) {
  std::string_view text;
  int pieces = 0;
  for (Index child = tree_.GetFirstChild(element); child != Tree::kNone;
       child = tree_.GetNextSibling(child)) {
    const Tree::Kind kind = tree_.GetKind(child);
    if (kind == Tree::Kind::Text || kind == Tree::Kind::CData) {
      if (++pieces == 2) joined = text;
      text = tree_.GetText(child);
      if (pieces >= 2) joined.append(text);
    } else if (kind == Tree::Kind::Comment) {
      kXMLCodecUnit.Raise("Unknown node type!");
    } else if (kind != Tree::Kind::Element || IsStandardElement(child)) {
      kXMLCodecUnit.Raise("Invalid node where there should be only text");
    }
  }
  return pieces >= 2 ? std::string_view(joined) : text;
}

VyrAnnStandardXMLValue_var StandardXMLDecoder::BuildValue(Index element, Value::Type type) {
  std::string joined;
  const std::string_view text = TextOf(element, joined);
  const auto bound = FindAttribute(element, boundAttribute_);
  const std::string_view name = bound ? *bound : AttributeOf(element, nameAttribute_);
  return VyrAnnStandardXMLValue_var(new Value(type, text, name, bound ? 1 : 0));
}

std::uint32_t StandardXMLDecoder::AttributeId(std::string_view localName) const {
  for (std::uint32_t id = 0; id < tree_.GetNameCount(); ++id) {
    if (tree_.GetName(id).qualifiedName == localName && tree_.GetName(id).namespaceURI.empty()) {
      return id;
    }
  }
  return kNoName;
}

std::optional<std::string_view> StandardXMLDecoder::FindAttribute(Index element,
                                                                  std::uint32_t nameId) const {
  for (const Tree::Attribute& attribute : tree_.GetAttributes(element)) {
    if (attribute.name == nameId) return tree_.GetValue(attribute);
  }
  return std::nullopt;
}

std::string_view StandardXMLDecoder::AttributeOf(Index element, std::uint32_t nameId) const {
  return FindAttribute(element, nameId).value_or(std::string_view());
}

void StandardXMLDecoder::RefuseElement(const char* format, Index element, Index parent) {
  VyrTrace& trace = XMLCodecTrace();
  if (trace.IsOn()) {
    trace.Print(format, VyrTrace::Indentation().c_str(), Location(element).c_str(),
                Location(parent).c_str());
  }
  kXMLCodecUnit.Raise("Invalid node");
  const bool isTop = tree_.GetParent(parent) == Tree::kDocument;
  problem_ = {tree_.GetLine(element),
              Described(tree_, element) + " cannot stand in " + Described(tree_, parent) + " " +
                  VyrQuoted(AttributeOf(parent, nameAttribute_)) + "; expected is " +
                  ContentOf(isTop ? Node::NodeTop : MeaningOf(parent).nodeType)};
}

void StandardXMLDecoder::TraceBuilt(const char* format, Index element, const Node& node) {
  VyrTrace& trace = XMLCodecTrace();
  if (!trace.IsOn()) return;
  trace.Print(format, VyrTrace::Indentation().c_str(), Location(element).c_str(),
              node.GetNumOfValue(), node.GetNumOfNode());
}

std::string StandardXMLDecoder::Identifier(Index element) const {
  const Tree::Name& name = tree_.GetName(tree_.GetNameId(element));
  return VyrDftXMLNodeID(name.namespaceURI, name.localName).ToString().CString();
}

/// Where an element stands: identifier and name of each element from the outermost down to it.
std::string StandardXMLDecoder::Location(Index element) const {
  ShownPath path(kMostShownInTrace);
  for (; element != Tree::kDocument && path.HasRoom(); element = tree_.GetParent(element)) {
    path.AddOuter("/" + Identifier(element) + " ", AttributeOf(element, nameAttribute_), "");
  }
  return path.Text(element == Tree::kDocument);
}
