#include "VyrXPathMirror.h"

#include <libxml/tree.h>
#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>

#include <cstdint>
#include <map>

#include "VyrDOMDocument.h"

namespace {

using Tree = VyrXMLTree;

const xmlChar* Xml(const std::string& text) {
  return reinterpret_cast<const xmlChar*>(text.c_str());
}
const xmlChar* Xml(std::string_view text) {
  return reinterpret_cast<const xmlChar*>(text.data());
}

// A mirrored node remembers its tree item, an attribute its place among its element's.
void* AsUserData(std::size_t number) {
  return reinterpret_cast<void*>(number);
}
std::size_t FromUserData(const void* data) {
  return reinterpret_cast<std::uintptr_t>(data);
}

/// Builds the mirror of a tree, one item after the other.
class MirrorBuilder {
 public:
  MirrorBuilder(const Tree& tree, xmlDoc* document)
      : tree_(tree), document_(document), nodes_(tree.GetCount(), nullptr) {
    nodes_[Tree::kDocument] = reinterpret_cast<xmlNode*>(document);
    for (Tree::Index item = 1; item < tree.GetCount(); ++item) Add(item);
  }

 private:
  void Add(Tree::Index item) {
    xmlNode* node = NewNode(item);
    node->_private = AsUserData(item);
    nodes_[item] = node;
    xmlNode* parent = nodes_[tree_.GetParent(item)];
    // Linked by hand: the library's own call would merge text into its neighbour.
    node->parent = parent;
    node->prev = parent->last;
    (parent->last == nullptr ? parent->children : parent->last->next) = node;
    parent->last = node;
    if (node->type == XML_ELEMENT_NODE) FinishElement(item, node);
  }

  xmlNode* NewNode(Tree::Index item) {
    const std::string_view text =
        tree_.GetKind(item) == Tree::Kind::Element ? std::string_view() : tree_.GetText(item);
    const int size = static_cast<int>(text.size());
    const Tree::Name& name = tree_.GetName(tree_.GetNameId(item));
    switch (tree_.GetKind(item)) {
      case Tree::Kind::Element:
        return xmlNewDocNode(document_, nullptr, Xml(name.localName), nullptr);
      case Tree::Kind::Comment:
        return xmlNewDocComment(document_, Xml(std::string(text)));
      case Tree::Kind::ProcessingInstruction:
        return xmlNewDocPI(document_, Xml(name.localName), Xml(std::string(text)));
      case Tree::Kind::CData:
        return xmlNewCDataBlock(document_, Xml(text), size);
      default:
        return xmlNewDocTextLen(document_, Xml(text), size);
    }
  }

  void FinishElement(Tree::Index item, xmlNode* node) {
    node->ns = Namespace(tree_.GetNameId(item));
    std::size_t place = 0;
    for (const Tree::Attribute& attribute : tree_.GetAttributes(item)) {
      const Tree::Name& name = tree_.GetName(attribute.name);
      const std::string value(tree_.GetValue(attribute));
      // Characters were unescaped by the parser, so the value is set as plain text.
      xmlAttr* added = xmlNewNsProp(node, Namespace(attribute.name), Xml(name.localName), nullptr);
      xmlNode* content = xmlNewDocText(document_, Xml(value));
      content->parent = reinterpret_cast<xmlNode*>(added);
      added->children = added->last = content;
      added->_private = AsUserData(place++);
    }
  }

  /// Namespaces are declared once, on the document element, which is all that matching by
  /// namespace needs.
  xmlNs* Namespace(std::uint32_t nameId) {
    const std::string& uri = tree_.GetName(nameId).namespaceURI;
    if (uri.empty()) return nullptr;
    xmlNs*& known = namespaces_[uri];
    if (known == nullptr) {
      const std::string prefix = "n" + std::to_string(namespaces_.size());
      known = xmlNewNs(xmlDocGetRootElement(document_), Xml(uri), Xml(prefix));
    }
    return known;
  }

  const Tree& tree_;
  xmlDoc* document_;
  std::vector<xmlNode*> nodes_;
  std::map<std::string, xmlNs*> namespaces_;
};

struct ContextDeleter {
  void operator()(xmlXPathContext* context) const { xmlXPathFreeContext(context); }
};
struct ObjectDeleter {
  void operator()(xmlXPathObject* object) const { xmlXPathFreeObject(object); }
};

VyrDOMNodeList::Place PlaceOf(const xmlNode* node) {
  if (node->type != XML_ATTRIBUTE_NODE) {
    return {static_cast<Tree::Index>(FromUserData(node->_private))};
  }
  return {static_cast<Tree::Index>(FromUserData(node->parent->_private)),
          FromUserData(node->_private)};
}

class XPathExpression final : public VyrImplements<VyrIXMLXPathExpression>,
                              VyrCountedInstance<XPathExpression> {
 public:
  static constexpr const char* kClassName = "VyrXPathExpression";

  XPathExpression(VyrDOMDocument_var document, VyrUnicodeView expression)
      : document_(std::move(document)), expression_(expression) {}

  HRESULT DeclareNamespace(VyrUnicodeView prefix, VyrUnicodeView uri) override {
    if (prefix.empty()) return E_INVALIDARG;
    namespaces_.emplace_back(prefix, uri);
    return S_OK;
  }

  HRESULT Evaluate(VyrIDOMNodeList_var& nodes) override {
    std::vector<VyrDOMNodeList::Place> places;
    if (!document_->Mirror().Evaluate(expression_, namespaces_, places)) return E_FAIL;
    nodes = new VyrDOMNodeList(document_, std::move(places));
    return S_OK;
  }

 private:
  VyrDOMDocument_var document_;
  std::string expression_;
  VyrXPathMirror::Namespaces namespaces_;
};

}  // namespace

struct VyrXPathMirror::Document {
  explicit Document(const Tree& tree) : xml(xmlNewDoc(nullptr)) { MirrorBuilder(tree, xml); }
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;
  ~Document() { xmlFreeDoc(xml); }

  xmlDoc* xml;
};

VyrXPathMirror::VyrXPathMirror(const Tree& tree) : document_(std::make_unique<Document>(tree)) {}

VyrXPathMirror::~VyrXPathMirror() = default;

bool VyrXPathMirror::Evaluate(const std::string& expression, const Namespaces& namespaces,
                              std::vector<VyrDOMNodeList::Place>& places) const {
  const std::unique_ptr<xmlXPathContext, ContextDeleter> context(
      xmlXPathNewContext(document_->xml));
  // A wrong expression is the caller's to report; the library must not print it.
  context->error = [](void*, xmlError*) {};
  context->node = reinterpret_cast<xmlNode*>(document_->xml);
  for (const auto& [prefix, uri] : namespaces) {
    xmlXPathRegisterNs(context.get(), Xml(prefix), Xml(uri));
  }
  const std::unique_ptr<xmlXPathObject, ObjectDeleter> result(
      xmlXPathEval(Xml(expression), context.get()));
  if (!result || result->type != XPATH_NODESET) return false;
  if (result->nodesetval == nullptr) return true;
  xmlXPathNodeSetSort(result->nodesetval);
  for (int i = 0; i < result->nodesetval->nodeNr; ++i) {
    // Namespace nodes belong to this mirror alone; no document shows them.
    const xmlNode* node = result->nodesetval->nodeTab[i];
    if (node->type != XML_NAMESPACE_DECL) places.push_back(PlaceOf(node));
  }
  return true;
}

VyrIXMLXPathExpression_var VyrMakeXPathExpression(VyrDOMDocument_var document,
                                                  VyrUnicodeView expression) {
  return VyrIXMLXPathExpression_var(new XPathExpression(std::move(document), expression));
}
