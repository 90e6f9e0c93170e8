#include "VyrXPathMirror.h"

#include <libxml/tree.h>
#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <map>

#include "VyrQuietXML.h"
#include "VyrWithinMemory.h"

namespace {

using Tree = VyrXMLTree;

// A path of a standard takes a few operations for each element. One that needs more than this has
// got an expression of somebody's own into a name, and must not keep the application waiting.
constexpr unsigned long kFreeOperations = 1'000'000;
constexpr unsigned long kOperationsOfItem = 1'000;

// While it evaluates, the library goes on with what a request that failed should have given. So
// what the sets of nodes can take, as many of them at a time as an expression has use for, is asked
// for beforehand.
constexpr std::size_t kMemoryOfEvaluation = std::size_t{1} << 20;
constexpr std::size_t kMemoryOfItem = 128;

void RequireMemoryFor(const VyrXMLTree& tree) {
  void* const room = std::malloc(kMemoryOfEvaluation + kMemoryOfItem * tree.GetCount());
  if (room == nullptr) VyrThrowOutOfMemory();
  std::free(room);
}

/// What the library has made; it gives null when memory runs out.
template <class Made>
Made* Required(Made* made) {
  if (made == nullptr) VyrThrowOutOfMemory();
  return made;
}

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
    // Numbers the elements, so that evaluation compares their order without a walk up the tree.
    xmlXPathOrderDocElems(document);
  }

 private:
  void Add(Tree::Index item) {
    xmlNode* node = Required(NewNode(item));
    node->_private = AsUserData(item);
    nodes_[item] = node;
    xmlNode* parent = nodes_[tree_.GetParent(item)];
    // Linked by hand: the library's own call would merge text into its neighbour.
    node->parent = parent;
    node->prev = parent->last;
    (parent->last == nullptr ? parent->children : parent->last->next) = node;
    parent->last = node;
    // A copy of a name or text that fails is left out without a word. A CDATA section has no name.
    if (node->type != XML_CDATA_SECTION_NODE) Required(node->name);
    if (node->type == XML_ELEMENT_NODE) return FinishElement(item, node);
    if (!tree_.GetText(item).empty()) Required(node->content);
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
      xmlAttr* added =
          Required(xmlNewNsProp(node, Namespace(attribute.name), Xml(name.localName), nullptr));
      xmlNode* content = Required(xmlNewDocText(document_, Xml(value)));
      content->parent = reinterpret_cast<xmlNode*>(added);
      added->children = added->last = content;
      Required(added->name);
      if (!value.empty()) Required(content->content);
      added->_private = AsUserData(place++);
    }
  }

  /// Namespaces are all held by the document element, each under the prefixes that the document
  /// writes: matching by namespace asks for no more, and `name()` answers as the document does.
  xmlNs* Namespace(std::uint32_t nameId) {
    const Tree::Name& name = tree_.GetName(nameId);
    if (name.namespaceURI.empty()) return nullptr;
    const std::size_t prefixSize = name.qualifiedName.size() - name.localName.size();
    const std::string prefix(name.qualifiedName, 0, prefixSize == 0 ? 0 : prefixSize - 1);
    const std::string uri(name.namespaceURI);
    xmlNs*& known = namespaces_[{prefix, uri}];
    if (known == nullptr) known = AddNamespace(prefix, uri);
    return known;
  }

  xmlNs* AddNamespace(const std::string& prefix, const std::string& uri) {
    xmlNode* root = xmlDocGetRootElement(document_);
    if (prefix == "xml") return Required(xmlSearchNs(document_, root, Xml(prefix)));
    // Linked by hand: the library's own call would refuse a prefix that is used twice.
    xmlNs* added = Required(xmlNewNs(nullptr, Xml(uri), prefix.empty() ? nullptr : Xml(prefix)));
    added->next = std::exchange(root->nsDef, added);
    return added;
  }

  const Tree& tree_;
  xmlDoc* document_;
  std::vector<xmlNode*> nodes_;
  std::map<std::pair<std::string, std::string>, xmlNs*> namespaces_;
};

struct DocumentDeleter {
  void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
};
struct ContextDeleter {
  void operator()(xmlXPathContext* context) const { xmlXPathFreeContext(context); }
};
struct ExpressionDeleter {
  void operator()(xmlXPathCompExpr* expression) const { xmlXPathFreeCompExpr(expression); }
};
struct ObjectDeleter {
  void operator()(xmlXPathObject* object) const { xmlXPathFreeObject(object); }
};

VyrDOMPlace PlaceOf(const xmlNode* node) {
  if (node->type != XML_ATTRIBUTE_NODE) {
    return {static_cast<Tree::Index>(FromUserData(node->_private))};
  }
  return {static_cast<Tree::Index>(FromUserData(node->parent->_private)),
          static_cast<std::uint32_t>(FromUserData(node->_private))};
}

/// Document order: items are numbered in it, and an element comes before its attributes.
bool ComesBefore(const VyrDOMPlace& a, const VyrDOMPlace& b) {
  constexpr std::uint32_t element = VyrDOMPlace::kNoAttribute;
  if (a.item != b.item) return a.item < b.item;
  return b.attribute != element && (a.attribute == element || a.attribute < b.attribute);
}

}  // namespace

struct VyrXPathMirror::Document {
  explicit Document(const Tree& tree) : xml(Required(xmlNewDoc(nullptr))) {
    MirrorBuilder(tree, xml.get());
  }

  std::unique_ptr<xmlDoc, DocumentDeleter> xml;
};

VyrXPathMirror::VyrXPathMirror(const Tree& tree) : tree_(tree) {}

VyrXPathMirror::~VyrXPathMirror() = default;

bool VyrXPathMirror::Evaluate(const std::string& expression, const VyrXPathNamespaces& namespaces,
                              std::vector<VyrDOMPlace>& places) {
  const VyrQuietXML quiet;
  RequireMemoryFor(tree_);
  const std::unique_ptr<xmlXPathContext, ContextDeleter> context(
      Required(xmlXPathNewContext(nullptr)));
  for (const auto& [prefix, uri] : namespaces) {
    xmlXPathRegisterNs(context.get(), Xml(prefix), Xml(uri));
  }
  const std::unique_ptr<xmlXPathCompExpr, ExpressionDeleter> compiled(
      xmlXPathCtxtCompile(context.get(), Xml(expression)));
  if (context->lastError.code == XML_ERR_NO_MEMORY) VyrThrowOutOfMemory();
  if (!compiled) return false;
  if (!document_) document_ = std::make_unique<Document>(tree_);
  RequireMemoryFor(tree_);
  context->doc = document_->xml.get();
  context->opLimit = kFreeOperations + kOperationsOfItem * tree_.GetCount();
  context->node = reinterpret_cast<xmlNode*>(document_->xml.get());
  // A bare path would be matched by a walk that leaves out what lies deeper than 10,000 levels; in
  // parentheses it means the same and is evaluated like any other expression.
  const std::unique_ptr<xmlXPathObject, ObjectDeleter> result(
      xmlXPathEval(Xml("(" + expression + ")"), context.get()));
  if (context->lastError.code == XML_ERR_NO_MEMORY) VyrThrowOutOfMemory();
  if (!result || result->type != XPATH_NODESET) return false;
  if (result->nodesetval == nullptr) return true;
  for (int i = 0; i < result->nodesetval->nodeNr; ++i) {
    // Namespace nodes belong to this mirror alone; no document shows them.
    const xmlNode* node = result->nodesetval->nodeTab[i];
    if (node->type != XML_NAMESPACE_DECL) places.push_back(PlaceOf(node));
  }
  std::sort(places.begin(), places.end(), ComesBefore);
  return true;
}
