#include "VyrDOMNodes.h"

#include "VyrDOMDocument.h"

namespace {

using Tree = VyrXMLTree;

/// Keeps the document of a node that is not the document itself.
class NodePlace {
 public:
  NodePlace(VyrDOMDocument& document, Tree::Index item)
      : document_(VyrDOMDocument_var::Share(&document)), item_(item) {}

  VyrDOMDocument& Document() { return *document_; }
  Tree::Index Item() const { return item_; }
  const Tree& TreeOf() const { return document_->Tree(); }

 private:
  VyrDOMDocument_var document_;
  Tree::Index item_;
};

class DOMElement final : public VyrDOMNodeOf<DOMElement, VyrIDOMElement>,
                         public NodePlace,
                         VyrCountedInstance<DOMElement> {
 public:
  static constexpr const char* kClassName = "VyrDOMElement";
  using NodePlace::NodePlace;

  HRESULT GetTagName(VyrUnicodeString& name) override { return GetNodeName(name); }
  HRESULT GetAttribute(VyrUnicodeView name, VyrUnicodeString& value) override {
    value = VyrUnicodeString();
    for (const Tree::Attribute& attribute : TreeOf().GetAttributes(Item())) {
      if (TreeOf().GetName(attribute.name).qualifiedName == name) {
        value = TreeOf().GetValue(attribute);
        break;
      }
    }
    return S_OK;
  }
};

/// Text, CDATA, comment or processing instruction.
class DOMLeaf final : public VyrDOMNodeOf<DOMLeaf, VyrIDOMNode>,
                      public NodePlace,
                      VyrCountedInstance<DOMLeaf> {
 public:
  static constexpr const char* kClassName = "VyrDOMLeaf";
  using NodePlace::NodePlace;
};

class DOMAttribute final : public VyrImplements<VyrIDOMAttr>,
                           NodePlace,
                           VyrCountedInstance<DOMAttribute> {
 public:
  static constexpr const char* kClassName = "VyrDOMAttribute";

  DOMAttribute(VyrDOMDocument& document, const VyrDOMPlace& place)
      : NodePlace(document, place.item),
        attribute_(TreeOf().GetAttributes(place.item)[place.attribute]) {}

  HRESULT QueryInterface(const IID& iid, void** object) override {
    return VyrImplements::QueryInterface(iid == VyrIDOMNode::kIid ? VyrIDOMAttr::kIid : iid,
                                         object);
  }
  HRESULT GetName(VyrUnicodeString& name) override {
    name = Name().qualifiedName;
    return S_OK;
  }
  HRESULT GetValue(VyrUnicodeString& value) override {
    value = TreeOf().GetValue(attribute_);
    return S_OK;
  }
  HRESULT GetNodeType(VyrDOMNodeType& type) override {
    type = VyrDOMNodeType::Attribute;
    return S_OK;
  }
  HRESULT GetNodeName(VyrUnicodeString& name) override { return GetName(name); }
  HRESULT GetLocalName(VyrUnicodeString& name) override {
    name = Name().localName;
    return S_OK;
  }
  HRESULT GetNamespaceURI(VyrUnicodeString& uri) override {
    uri = Name().namespaceURI;
    return S_OK;
  }
  HRESULT GetNodeValue(VyrUnicodeString& value) override { return GetValue(value); }
  HRESULT GetParentNode(VyrIDOMNode_var& parent) override {
    parent = nullptr;
    return S_OK;
  }
  HRESULT GetChildNodes(VyrIDOMNodeList_var& children) override {
    children = new VyrDOMNodeList<Tree::Index>(Document(), {});
    return S_OK;
  }
  HRESULT GetAttributes(VyrIDOMNamedNodeMap_var& attributes) override {
    attributes = nullptr;
    return S_OK;
  }
  HRESULT GetOwnerDocument(VyrIDOMDocument_var& document) override {
    document = VyrIDOMDocument_var::Share(&Document());
    return S_OK;
  }

 private:
  const Tree::Name& Name() const { return TreeOf().GetName(attribute_.name); }

  Tree::Attribute attribute_;
};

class DOMAttributeMap final : public VyrImplements<VyrIDOMNamedNodeMap>,
                              NodePlace,
                              VyrCountedInstance<DOMAttributeMap> {
 public:
  static constexpr const char* kClassName = "VyrDOMAttributeMap";
  using NodePlace::NodePlace;

  HRESULT GetLength(unsigned int& length) override {
    length = static_cast<unsigned int>(TreeOf().GetAttributes(NodePlace::Item()).size());
    return S_OK;
  }
  HRESULT Item(unsigned int index, VyrIDOMNode_var& node) override {
    if (index >= TreeOf().GetAttributes(NodePlace::Item()).size()) return E_INVALIDARG;
    node = VyrMakeDOMNode(Document(), VyrDOMPlace{NodePlace::Item(), index});
    return S_OK;
  }
  HRESULT GetNamedItem(VyrUnicodeView name, VyrIDOMNode_var& node) override {
    const auto attributes = TreeOf().GetAttributes(NodePlace::Item());
    for (unsigned int i = 0; i < attributes.size(); ++i) {
      if (TreeOf().GetName(attributes[i].name).qualifiedName == name) return Item(i, node);
    }
    return E_INVALIDARG;
  }
};

/// Children of a node, found as they are asked for: most often the first, or one after the other.
class DOMChildList final : public VyrImplements<VyrIDOMNodeList>,
                           NodePlace,
                           VyrCountedInstance<DOMChildList> {
 public:
  static constexpr const char* kClassName = "VyrDOMChildList";

  DOMChildList(VyrDOMDocument& document, Tree::Index parent)
      : NodePlace(document, parent), child_(TreeOf().GetFirstChild(parent)) {}

  HRESULT GetLength(unsigned int& length) override {
    if (length_ == kUnknown) length_ = Count();
    length = length_;
    return S_OK;
  }

  HRESULT Item(unsigned int index, VyrIDOMNode_var& node) override {
    // A child does not know the one before it, so a walk backwards needs them all.
    if (index < index_ && children_.empty()) List();
    const Tree::Index child = children_.empty()          ? WalkTo(index)
                              : index < children_.size() ? children_[index]
                                                         : Tree::kNone;
    if (child == Tree::kNone) return E_INVALIDARG;
    node = VyrMakeDOMNode(Document(), child);
    return S_OK;
  }

 private:
  static constexpr unsigned int kUnknown = ~0u;

  unsigned int Count() const {
    unsigned int count = 0;
    Tree::Index child = TreeOf().GetFirstChild(NodePlace::Item());
    for (; child != Tree::kNone; child = TreeOf().GetNextSibling(child)) ++count;
    return count;
  }

  void List() {
    Tree::Index child = TreeOf().GetFirstChild(NodePlace::Item());
    for (; child != Tree::kNone; child = TreeOf().GetNextSibling(child)) children_.push_back(child);
  }

  Tree::Index WalkTo(unsigned int index) {
    for (; index_ < index && child_ != Tree::kNone; ++index_) {
      child_ = TreeOf().GetNextSibling(child_);
    }
    return child_;
  }

  Tree::Index child_;  // the child asked for last
  unsigned int index_ = 0;
  unsigned int length_ = kUnknown;
  std::vector<Tree::Index> children_;
};

}  // namespace

VyrIDOMNode_var VyrMakeDOMNode(VyrDOMDocument& document, Tree::Index item) {
  switch (document.Tree().GetKind(item)) {
    case Tree::Kind::Document:
      return VyrIDOMNode_var::Share(&document);
    case Tree::Kind::Element:
      return VyrIDOMNode_var(new DOMElement(document, item));
    default:
      return VyrIDOMNode_var(new DOMLeaf(document, item));
  }
}

VyrIDOMNode_var VyrMakeDOMNode(VyrDOMDocument& document, const VyrDOMPlace& place) {
  if (place.attribute == VyrDOMPlace::kNoAttribute) return VyrMakeDOMNode(document, place.item);
  return VyrIDOMNode_var(new DOMAttribute(document, place));
}

VyrDOMNodeType VyrDOMNodeAnswers::Type() const {
  switch (document_.Tree().GetKind(item_)) {
    case Tree::Kind::Document:
      return VyrDOMNodeType::Document;
    case Tree::Kind::Element:
      return VyrDOMNodeType::Element;
    case Tree::Kind::Text:
      return VyrDOMNodeType::Text;
    case Tree::Kind::CData:
      return VyrDOMNodeType::CData;
    case Tree::Kind::Comment:
      return VyrDOMNodeType::Comment;
    case Tree::Kind::ProcessingInstruction:
      break;
  }
  return VyrDOMNodeType::ProcessingInstruction;
}

std::string_view VyrDOMNodeAnswers::NodeName() const {
  const Tree& tree = document_.Tree();
  switch (tree.GetKind(item_)) {
    case Tree::Kind::Document:
      return "#document";
    case Tree::Kind::Text:
      return "#text";
    case Tree::Kind::CData:
      return "#cdata-section";
    case Tree::Kind::Comment:
      return "#comment";
    default:
      return tree.GetName(tree.GetNameId(item_)).qualifiedName;
  }
}

std::string_view VyrDOMNodeAnswers::LocalName() const {
  if (Type() != VyrDOMNodeType::Element) return NodeName();
  return document_.Tree().GetName(document_.Tree().GetNameId(item_)).localName;
}

std::string_view VyrDOMNodeAnswers::NamespaceURI() const {
  if (Type() != VyrDOMNodeType::Element) return {};
  return document_.Tree().GetName(document_.Tree().GetNameId(item_)).namespaceURI;
}

std::string_view VyrDOMNodeAnswers::NodeValue() const {
  const bool hasText = Type() != VyrDOMNodeType::Element && Type() != VyrDOMNodeType::Document;
  return hasText ? document_.Tree().GetText(item_) : std::string_view();
}

VyrIDOMNode_var VyrDOMNodeAnswers::ParentNode() const {
  if (item_ == Tree::kDocument) return {};
  return VyrMakeDOMNode(document_, document_.Tree().GetParent(item_));
}

VyrIDOMNodeList_var VyrDOMNodeAnswers::ChildNodes() const {
  return VyrIDOMNodeList_var(new DOMChildList(document_, item_));
}

VyrIDOMNamedNodeMap_var VyrDOMNodeAnswers::Attributes() const {
  if (Type() != VyrDOMNodeType::Element) return {};
  return VyrIDOMNamedNodeMap_var(new DOMAttributeMap(document_, item_));
}

VyrIDOMDocument_var VyrDOMNodeAnswers::OwnerDocument() const {
  return VyrIDOMDocument_var::Share(&document_);
}

template <class Place>
VyrDOMNodeList<Place>::VyrDOMNodeList(VyrDOMDocument& document, std::vector<Place> places)
    : document_(VyrDOMDocument_var::Share(&document)), places_(std::move(places)) {}

template <class Place>
VyrDOMNodeList<Place>::~VyrDOMNodeList() = default;

template <class Place>
HRESULT VyrDOMNodeList<Place>::GetLength(unsigned int& length) {
  length = static_cast<unsigned int>(places_.size());
  return S_OK;
}

template <class Place>
HRESULT VyrDOMNodeList<Place>::Item(unsigned int index, VyrIDOMNode_var& node) {
  if (index >= places_.size()) return E_INVALIDARG;
  node = VyrMakeDOMNode(*document_, places_[index]);
  return S_OK;
}

template class VyrDOMNodeList<Tree::Index>;
template class VyrDOMNodeList<VyrDOMPlace>;
