#pragma once

#include <gtest/gtest.h>

#include "VyrBaseUnknown.h"
#include "VyrXMLDOM.h"

// Nodes, elements and lists of nodes whose calls answer what a test says.

/// What a call of a fake gives back: its result, and the text that it hands out when it succeeds.
struct FakeText {
  HRESULT result = S_OK;
  const char* text = "";
};

/// An element that is also good as a node.
class FakeElement final : public VyrImplements<VyrIDOMElement> {
 public:
  static VyrVar<FakeElement> Make() { return VyrVar<FakeElement>(new FakeElement); }

  FakeText localName;
  FakeText namespaceURI;
  FakeText tagName;
  HRESULT childrenResult = S_OK;
  VyrIDOMNodeList_var children;

  HRESULT GetLocalName(VyrUnicodeString& name) override { return Answer(localName, name); }
  HRESULT GetNamespaceURI(VyrUnicodeString& uri) override { return Answer(namespaceURI, uri); }
  HRESULT GetTagName(VyrUnicodeString& name) override { return Answer(tagName, name); }
  HRESULT GetChildNodes(VyrIDOMNodeList_var& list) override {
    list = children;
    return childrenResult;
  }

  HRESULT GetNodeType(VyrDOMNodeType&) override { return E_NOTIMPL; }
  HRESULT GetNodeName(VyrUnicodeString&) override { return E_NOTIMPL; }
  HRESULT GetNodeValue(VyrUnicodeString&) override { return E_NOTIMPL; }
  HRESULT GetParentNode(VyrIDOMNode_var&) override { return E_NOTIMPL; }
  HRESULT GetAttributes(VyrIDOMNamedNodeMap_var&) override { return E_NOTIMPL; }
  HRESULT GetOwnerDocument(VyrIDOMDocument_var&) override { return E_NOTIMPL; }
  HRESULT GetAttribute(VyrUnicodeView, VyrUnicodeString&) override { return E_NOTIMPL; }

 private:
  FakeElement() = default;
  ~FakeElement() override = default;

  static HRESULT Answer(const FakeText& answer, VyrUnicodeString& text) {
    if (VyrSucceeded(answer.result)) text = answer.text;
    return answer.result;
  }
};

/// A list that hands out the same node at every place.
class FakeNodeList final : public VyrImplements<VyrIDOMNodeList> {
 public:
  static VyrVar<FakeNodeList> Make() { return VyrVar<FakeNodeList>(new FakeNodeList); }

  HRESULT lengthResult = S_OK;
  unsigned int length = 2;
  HRESULT itemResult = S_OK;
  VyrIDOMNode_var item;

  HRESULT GetLength(unsigned int& out) override {
    out = length;
    return lengthResult;
  }
  HRESULT Item(unsigned int, VyrIDOMNode_var& node) override {
    node = item;
    return itemResult;
  }

 private:
  FakeNodeList() = default;
  ~FakeNodeList() override = default;
};

/// The document element of an XML text.
inline VyrIDOMElement_var DocumentElementOf(const char* xml) {
  VyrIXMLDOMDocumentBuilder_var builder;
  VyrIDOMDocument_var document;
  VyrIDOMElement_var element;
  EXPECT_EQ(CreateVyrIXMLDOMDocumentBuilder(builder), S_OK);
  EXPECT_EQ(builder->SetOption(kVyrEnableNameSpaces, "true"), S_OK);
  EXPECT_EQ(builder->BuildFromString(xml, document), S_OK);
  EXPECT_EQ(document->GetDocumentElement(element), S_OK);
  return element;
}
