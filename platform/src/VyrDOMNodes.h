#pragma once

#include <vector>

#include "VyrBaseUnknown.h"
#include "VyrInstanceCounter.h"
#include "VyrXMLDOM.h"

class VyrDOMDocument;
using VyrDOMDocument_var = VyrVar<VyrDOMDocument>;

/// A node of the tree as an object.
VyrIDOMNode_var VyrMakeDOMNode(VyrDOMDocument& document, VyrXMLTree::Index item);
/// An attribute of an element as an object; `attribute` is its place among the element's.
VyrIDOMNode_var VyrMakeDOMAttribute(VyrDOMDocument& document, VyrXMLTree::Index element,
                                    std::size_t attribute);

/// What every node answers from the tree alone, by the item that it views.
class VyrDOMNodeAnswers {
 public:
  VyrDOMNodeAnswers(VyrDOMDocument& document, VyrXMLTree::Index item)
      : document_(document), item_(item) {}

  VyrDOMNodeType Type() const;
  std::string_view NodeName() const;
  std::string_view LocalName() const;
  std::string_view NamespaceURI() const;
  std::string_view NodeValue() const;
  VyrIDOMNode_var ParentNode() const;
  VyrIDOMNodeList_var ChildNodes() const;
  VyrIDOMNamedNodeMap_var Attributes() const;
  VyrIDOMDocument_var OwnerDocument() const;

 private:
  VyrDOMDocument& document_;
  VyrXMLTree::Index item_;
};

/// Implements the node interface for a class that knows its `Document()` and its `Item()`.
template <class Node, class... Interfaces>
class VyrDOMNodeOf : public VyrImplements<Interfaces...> {
 public:
  HRESULT QueryInterface(const IID& iid, void** object) override {
    if (iid != VyrIDOMNode::kIid) return VyrImplements<Interfaces...>::QueryInterface(iid, object);
    if (object == nullptr) return E_INVALIDARG;
    *object = static_cast<VyrIDOMNode*>(this);
    this->AddRef();
    return S_OK;
  }
  HRESULT GetNodeType(VyrDOMNodeType& type) override {
    type = Answers().Type();
    return S_OK;
  }
  HRESULT GetNodeName(VyrUnicodeString& name) override {
    name = Answers().NodeName();
    return S_OK;
  }
  HRESULT GetLocalName(VyrUnicodeString& name) override {
    name = Answers().LocalName();
    return S_OK;
  }
  HRESULT GetNamespaceURI(VyrUnicodeString& uri) override {
    uri = Answers().NamespaceURI();
    return S_OK;
  }
  HRESULT GetNodeValue(VyrUnicodeString& value) override {
    value = Answers().NodeValue();
    return S_OK;
  }
  HRESULT GetParentNode(VyrIDOMNode_var& parent) override {
    parent = Answers().ParentNode();
    return S_OK;
  }
  HRESULT GetChildNodes(VyrIDOMNodeList_var& children) override {
    children = Answers().ChildNodes();
    return S_OK;
  }
  HRESULT GetAttributes(VyrIDOMNamedNodeMap_var& attributes) override {
    attributes = Answers().Attributes();
    return S_OK;
  }
  HRESULT GetOwnerDocument(VyrIDOMDocument_var& document) override {
    document = Answers().OwnerDocument();
    return S_OK;
  }

 private:
  VyrDOMNodeAnswers Answers() {
    Node& node = static_cast<Node&>(*this);
    return {node.Document(), node.Item()};
  }
};

/// Nodes of a document in a fixed order, made as objects one by one when asked for.
class VyrDOMNodeList final : public VyrImplements<VyrIDOMNodeList>,
                             VyrCountedInstance<VyrDOMNodeList> {
 public:
  static constexpr const char* kClassName = "VyrDOMNodeList";

  /// A tree item, or an attribute of one.
  struct Place {
    static constexpr std::size_t kNoAttribute = ~std::size_t{0};
    VyrXMLTree::Index item;
    std::size_t attribute = kNoAttribute;
  };

  VyrDOMNodeList(VyrDOMDocument_var document, std::vector<Place> places);

  HRESULT GetLength(unsigned int& length) override;
  HRESULT Item(unsigned int index, VyrIDOMNode_var& node) override;

 protected:
  ~VyrDOMNodeList() override;

 private:
  VyrDOMDocument_var document_;
  std::vector<Place> places_;
};
