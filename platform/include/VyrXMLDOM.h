#pragma once

#include <span>
#include <string_view>

#include "HolStandardInfraExport.h"
#include "VyrProblem.h"
#include "VyrUnicodeString.h"
#include "VyrUnknown.h"
#include "VyrVar.h"
#include "VyrXMLTree.h"

/// @file
/// Document object model of a parsed XML document, read only. Operations return `S_OK`, or
/// `E_INVALIDARG` for an index or a name that does not exist; handles they fill hold a reference of
/// their own. A node keeps its document alive. A document and its nodes are used from one thread at
/// a time.

class VyrIDOMAttr;
class VyrIDOMDocument;
class VyrIDOMElement;
class VyrIDOMNamedNodeMap;
class VyrIDOMNode;
class VyrIDOMNodeList;
using VyrIDOMAttr_var = VyrVar<VyrIDOMAttr>;                  ///< counted reference
using VyrIDOMDocument_var = VyrVar<VyrIDOMDocument>;          ///< counted reference
using VyrIDOMElement_var = VyrVar<VyrIDOMElement>;            ///< counted reference
using VyrIDOMNamedNodeMap_var = VyrVar<VyrIDOMNamedNodeMap>;  ///< counted reference
using VyrIDOMNode_var = VyrVar<VyrIDOMNode>;                  ///< counted reference
using VyrIDOMNodeList_var = VyrVar<VyrIDOMNodeList>;          ///< counted reference

/// Kinds of nodes, with the numbers that the DOM recommendation gives them.
enum class VyrDOMNodeType : unsigned short {
  Element = 1,                ///< an element
  Attribute = 2,              ///< an attribute of an element
  Text = 3,                   ///< a run of text, blanks between elements included
  CData = 4,                  ///< a CDATA section
  ProcessingInstruction = 7,  ///< a processing instruction
  Comment = 8,                ///< a comment
  Document = 9,               ///< the document itself
};

/// A node of a document, of any kind. Asked for its own interface it tells more: an element is a
/// `VyrIDOMElement`, and so on.
class VyrIDOMNode : public IUnknown {
 public:
  /// Identifier of the interface.
  static constexpr IID kIid = {0x6a1f0001, 0x21d4, 0x4b0e, {0x9c, 0x55, 1, 2, 3, 4, 5, 1}};

  /// What kind of node it is.
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
  /// The children in document order; an empty list for a node that has none.
  virtual HRESULT GetChildNodes(VyrIDOMNodeList_var& children) = 0;
  /// Attributes of an element; null for other nodes.
  virtual HRESULT GetAttributes(VyrIDOMNamedNodeMap_var& attributes) = 0;
  /// The document that the node belongs to; a document is its own.
  virtual HRESULT GetOwnerDocument(VyrIDOMDocument_var& document) = 0;

 protected:
  ~VyrIDOMNode() = default;
};

/// An element of a document.
class VyrIDOMElement : public VyrIDOMNode {
 public:
  /// Identifier of the interface.
  static constexpr IID kIid = {0x6a1f0001, 0x21d4, 0x4b0e, {0x9c, 0x55, 1, 2, 3, 4, 5, 2}};

  /// The qualified name, as it is written ("std:node").
  virtual HRESULT GetTagName(VyrUnicodeString& name) = 0;
  /// Value of the attribute with that qualified name; empty, with `S_OK`, when there is none.
  virtual HRESULT GetAttribute(VyrUnicodeView name, VyrUnicodeString& value) = 0;

 protected:
  ~VyrIDOMElement() = default;
};

/// An attribute of an element.
class VyrIDOMAttr : public VyrIDOMNode {
 public:
  /// Identifier of the interface.
  static constexpr IID kIid = {0x6a1f0001, 0x21d4, 0x4b0e, {0x9c, 0x55, 1, 2, 3, 4, 5, 3}};

  /// The qualified name, as it is written.
  virtual HRESULT GetName(VyrUnicodeString& name) = 0;
  /// The value, references to characters and entities resolved.
  virtual HRESULT GetValue(VyrUnicodeString& value) = 0;

 protected:
  ~VyrIDOMAttr() = default;
};

/// Nodes in an order of their own: the children of a node, or what an expression found.
class VyrIDOMNodeList : public IUnknown {
 public:
  /// Identifier of the interface.
  static constexpr IID kIid = {0x6a1f0001, 0x21d4, 0x4b0e, {0x9c, 0x55, 1, 2, 3, 4, 5, 4}};

  /// Number of nodes.
  virtual HRESULT GetLength(unsigned int& length) = 0;
  /// The node at a 0-based index. `E_INVALIDARG` past the last one; `node` is then left alone.
  virtual HRESULT Item(unsigned int index, VyrIDOMNode_var& node) = 0;

 protected:
  ~VyrIDOMNodeList() = default;
};

/// The attributes of an element, by name and in document order.
class VyrIDOMNamedNodeMap : public IUnknown {
 public:
  /// Identifier of the interface.
  static constexpr IID kIid = {0x6a1f0001, 0x21d4, 0x4b0e, {0x9c, 0x55, 1, 2, 3, 4, 5, 5}};

  /// Number of attributes, namespace declarations left out.
  virtual HRESULT GetLength(unsigned int& length) = 0;
  /// The attribute at a 0-based index. `E_INVALIDARG` past the last one; `node` is then left alone.
  virtual HRESULT Item(unsigned int index, VyrIDOMNode_var& node) = 0;
  /// The attribute of that qualified name. `E_INVALIDARG` when there is none; `node` is then left
  /// alone.
  virtual HRESULT GetNamedItem(VyrUnicodeView name, VyrIDOMNode_var& node) = 0;

 protected:
  ~VyrIDOMNamedNodeMap() = default;
};

/// A parsed document: the node above all others.
class VyrIDOMDocument : public VyrIDOMNode {
 public:
  /// Identifier of the interface.
  static constexpr IID kIid = {0x6a1f0001, 0x21d4, 0x4b0e, {0x9c, 0x55, 1, 2, 3, 4, 5, 6}};

  /// The outermost element.
  virtual HRESULT GetDocumentElement(VyrIDOMElement_var& element) = 0;
  /// The document as flat arrays, for whoever walks all of it; borrowed from the document.
  virtual const VyrXMLTree& GetTree() = 0;

 protected:
  ~VyrIDOMDocument() = default;
};

/// Builds documents. Names of the options that a builder supports come with `GetOptions`. Parsing
/// fetches nothing from elsewhere. Used from one thread at a time.
class VyrIXMLDOMDocumentBuilder : public IUnknown {
 public:
  /// Identifier of the interface.
  static constexpr IID kIid = {0x6a1f0001, 0x21d4, 0x4b0e, {0x9c, 0x55, 1, 2, 3, 4, 5, 7}};

  /// The options that `SetOption` knows, borrowed for as long as the process lives.
  virtual std::span<const std::string_view> GetOptions() = 0;
  /// `E_FAIL` for an option or a value that the builder does not support.
  virtual HRESULT SetOption(std::string_view option, std::string_view value) = 0;
  /// `E_FAIL` when the file cannot be read or is not well formed; `GetProblem` then says why.
  virtual HRESULT BuildFromFile(VyrUnicodeView path, VyrIDOMDocument_var& document) = 0;
  /// The same from UTF-8 text, whatever encoding the text declares.
  virtual HRESULT BuildFromString(VyrUnicodeView text, VyrIDOMDocument_var& document) = 0;
  /// Why the last build failed; borrowed until the next one.
  virtual const VyrProblem& GetProblem() = 0;

 protected:
  ~VyrIXMLDOMDocumentBuilder() = default;
};
/// Counted reference to the interface.
using VyrIXMLDOMDocumentBuilder_var = VyrVar<VyrIXMLDOMDocumentBuilder>;

/// Option "true" or "false": check a document against its type declaration. Only "false" here.
inline constexpr std::string_view kVyrDoValidation = "VyrDoValidation";
/// Option "true" or "false": resolve namespace prefixes. Only "true" here.
inline constexpr std::string_view kVyrEnableNameSpaces = "VyrEnableNameSpaces";

/// Makes a document builder: that of the host's factory, or the platform's. Negative when the
/// host's fails.
HOLSTANDARDINFRA_EXPORT HRESULT
CreateVyrIXMLDOMDocumentBuilder(VyrIXMLDOMDocumentBuilder_var& builder);
/// A host's way to make a document builder; fills `builder` with a reference of its own.
using VyrDOMDocumentBuilderFactory = HRESULT (*)(VyrIXMLDOMDocumentBuilder_var& builder);
/// Installs the host's factory for the whole process; null restores the platform's. From any
/// thread.
HOLSTANDARDINFRA_EXPORT void VyrSetDOMDocumentBuilderFactory(VyrDOMDocumentBuilderFactory factory);
