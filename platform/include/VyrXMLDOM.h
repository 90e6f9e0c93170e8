#pragma once

#include <span>
#include <string_view>

#include "HolStandardInfraExport.h"
#include "VyrProblem.h"
#include "VyrUnicodeString.h"
#include "VyrUnknown.h"
#include "VyrVar.h"
#include "VyrXMLTree.h"

// Document object model of a parsed XML document, read only. Operations return `S_OK`, or
// `E_INVALIDARG` for an index or a name that does not exist; handles they fill hold a reference of
// their own. A node keeps its document alive.

class VyrIDOMAttr;
class VyrIDOMDocument;
class VyrIDOMElement;
class VyrIDOMNamedNodeMap;
class VyrIDOMNode;
class VyrIDOMNodeList;
using VyrIDOMAttr_var = VyrVar<VyrIDOMAttr>;
using VyrIDOMDocument_var = VyrVar<VyrIDOMDocument>;
using VyrIDOMElement_var = VyrVar<VyrIDOMElement>;
using VyrIDOMNamedNodeMap_var = VyrVar<VyrIDOMNamedNodeMap>;
using VyrIDOMNode_var = VyrVar<VyrIDOMNode>;
using VyrIDOMNodeList_var = VyrVar<VyrIDOMNodeList>;

enum class VyrDOMNodeType : unsigned short {
  Element = 1,
  Attribute = 2,
  Text = 3,
  CData = 4,
  ProcessingInstruction = 7,
  Comment = 8,
  Document = 9,
};

class VyrIDOMNode : public IUnknown {
 public:
  static constexpr IID kIid = {0x6a1f0001, 0x21d4, 0x4b0e, {0x9c, 0x55, 1, 2, 3, 4, 5, 1}};

  virtual HRESULT GetNodeType(VyrDOMNodeType& type) = 0;
  /// Qualified name of an element or attribute, "#text", "#cdata-section", "#comment", "#document",
  /// or a processing instruction's target.
  virtual HRESULT GetNodeName(VyrUnicodeString& name) = 0;
  /// Name without its prefix; for nodes that have no namespace the node name.
  virtual HRESULT GetLocalName(VyrUnicodeString& name) = 0;
  /// Empty for a node without a namespace.
  virtual HRESULT GetNamespaceURI(VyrUnicodeString& uri) = 0;
  /// Text of an attribute, text, CDATA, comment or processing instruction; empty for others.
  virtual HRESULT GetNodeValue(VyrUnicodeString& value) = 0;
  /// Null for the document, and for an attribute, which is no child of its element.
  virtual HRESULT GetParentNode(VyrIDOMNode_var& parent) = 0;
  virtual HRESULT GetChildNodes(VyrIDOMNodeList_var& children) = 0;
  /// Attributes of an element; null for other nodes.
  virtual HRESULT GetAttributes(VyrIDOMNamedNodeMap_var& attributes) = 0;
  virtual HRESULT GetOwnerDocument(VyrIDOMDocument_var& document) = 0;

 protected:
  ~VyrIDOMNode() = default;
};

class VyrIDOMElement : public VyrIDOMNode {
 public:
  static constexpr IID kIid = {0x6a1f0001, 0x21d4, 0x4b0e, {0x9c, 0x55, 1, 2, 3, 4, 5, 2}};

  virtual HRESULT GetTagName(VyrUnicodeString& name) = 0;
  /// Value of the attribute with that qualified name; empty, with `S_OK`, when there is none.
  virtual HRESULT GetAttribute(VyrUnicodeView name, VyrUnicodeString& value) = 0;

 protected:
  ~VyrIDOMElement() = default;
};

class VyrIDOMAttr : public VyrIDOMNode {
 public:
  static constexpr IID kIid = {0x6a1f0001, 0x21d4, 0x4b0e, {0x9c, 0x55, 1, 2, 3, 4, 5, 3}};

  virtual HRESULT GetName(VyrUnicodeString& name) = 0;
  virtual HRESULT GetValue(VyrUnicodeString& value) = 0;

 protected:
  ~VyrIDOMAttr() = default;
};

class VyrIDOMNodeList : public IUnknown {
 public:
  static constexpr IID kIid = {0x6a1f0001, 0x21d4, 0x4b0e, {0x9c, 0x55, 1, 2, 3, 4, 5, 4}};

  virtual HRESULT GetLength(unsigned int& length) = 0;
  /// The node at a 0-based index.
  virtual HRESULT Item(unsigned int index, VyrIDOMNode_var& node) = 0;

 protected:
  ~VyrIDOMNodeList() = default;
};

class VyrIDOMNamedNodeMap : public IUnknown {
 public:
  static constexpr IID kIid = {0x6a1f0001, 0x21d4, 0x4b0e, {0x9c, 0x55, 1, 2, 3, 4, 5, 5}};

  virtual HRESULT GetLength(unsigned int& length) = 0;
  virtual HRESULT Item(unsigned int index, VyrIDOMNode_var& node) = 0;
  /// The node of that qualified name.
  virtual HRESULT GetNamedItem(VyrUnicodeView name, VyrIDOMNode_var& node) = 0;

 protected:
  ~VyrIDOMNamedNodeMap() = default;
};

class VyrIDOMDocument : public VyrIDOMNode {
 public:
  static constexpr IID kIid = {0x6a1f0001, 0x21d4, 0x4b0e, {0x9c, 0x55, 1, 2, 3, 4, 5, 6}};

  virtual HRESULT GetDocumentElement(VyrIDOMElement_var& element) = 0;
  /// The document as flat arrays, for whoever walks all of it; borrowed from the document.
  virtual const VyrXMLTree& GetTree() = 0;

 protected:
  ~VyrIDOMDocument() = default;
};

/// Builds documents. Names of the options that a builder supports come with `GetOptions`.
class VyrIXMLDOMDocumentBuilder : public IUnknown {
 public:
  static constexpr IID kIid = {0x6a1f0001, 0x21d4, 0x4b0e, {0x9c, 0x55, 1, 2, 3, 4, 5, 7}};

  virtual std::span<const std::string_view> GetOptions() = 0;
  /// `E_FAIL` for an option or a value that the builder does not support.
  virtual HRESULT SetOption(std::string_view option, std::string_view value) = 0;
  /// `E_FAIL` when the file cannot be read or is not well formed; `GetProblem` then says why.
  virtual HRESULT BuildFromFile(VyrUnicodeView path, VyrIDOMDocument_var& document) = 0;
  /// The same from UTF-8 text, whatever encoding the text declares.
  virtual HRESULT BuildFromString(VyrUnicodeView text, VyrIDOMDocument_var& document) = 0;
  virtual const VyrProblem& GetProblem() = 0;

 protected:
  ~VyrIXMLDOMDocumentBuilder() = default;
};
using VyrIXMLDOMDocumentBuilder_var = VyrVar<VyrIXMLDOMDocumentBuilder>;

/// Option "true" or "false": check a document against its type declaration. Only "false" here.
inline constexpr std::string_view kVyrDoValidation = "VyrDoValidation";
/// Option "true" or "false": resolve namespace prefixes. Only "true" here.
inline constexpr std::string_view kVyrEnableNameSpaces = "VyrEnableNameSpaces";

/// Makes a document builder. The host may install one of its own by `factory`; null restores the
/// platform's.
HOLSTANDARDINFRA_EXPORT HRESULT
CreateVyrIXMLDOMDocumentBuilder(VyrIXMLDOMDocumentBuilder_var& builder);
using VyrDOMDocumentBuilderFactory = HRESULT (*)(VyrIXMLDOMDocumentBuilder_var& builder);
HOLSTANDARDINFRA_EXPORT void VyrSetDOMDocumentBuilderFactory(VyrDOMDocumentBuilderFactory factory);
