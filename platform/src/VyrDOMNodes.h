#pragma once

#include <cstdint>
#include <vector>

#include "VyrBaseUnknown.h"
#include "VyrInstanceCounter.h"
#include "VyrXMLDOM.h"

class VyrDOMDocument;
using VyrDOMDocument_var = VyrVar<VyrDOMDocument>;

/// A tree item, or an attribute of one.
struct VyrDOMPlace {
  static constexpr std::uint32_t kNoAttribute = ~std::uint32_t{0};
  VyrXMLTree::Index item;
  /// Place among the element's attributes.
  std::uint32_t attribute = kNoAttribute;
};

/// A node of the tree, or an attribute, as an object.
VyrIDOMNode_var VyrMakeDOMNode(VyrDOMDocument& document, VyrXMLTree::Index item);
VyrIDOMNode_var VyrMakeDOMNode(VyrDOMDocument& document, const VyrDOMPlace& place);

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

/// Nodes of a document in a fixed order, made as objects one by one when asked for. `Place` tells
/// where a node is: a tree item, or a `VyrDOMPlace` where attributes may be among them.
template <class Place>
class VyrDOMNodeList final : public VyrImplements<VyrIDOMNodeList>,
                             VyrCountedInstance<VyrDOMNodeList<Place>> {
 public:
  static constexpr const char* kClassName = "VyrDOMNodeList";

  VyrDOMNodeList(VyrDOMDocument& document, std::vector<Place> places);

  HRESULT GetLength(unsigned int& length) override;
  HRESULT Item(unsigned int index, VyrIDOMNode_var& node) override;

 protected:
  ~VyrDOMNodeList() override;

 private:
  VyrDOMDocument_var document_;
  std::vector<Place> places_;
};
