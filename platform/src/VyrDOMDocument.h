#pragma once

#include <memory>

#include "VyrBaseUnknown.h"
#include "VyrDOMNodes.h"
#include "VyrInstanceCounter.h"
#include "VyrXMLDOM.h"
#include "VyrXPath.h"

class VyrXMLNameIndex;
class VyrXPathMirror;

/// A parsed document: owns the flat tree that every node is a view of.
class VyrDOMDocument final
    : public VyrDOMNodeOf<VyrDOMDocument, VyrIDOMDocument, VyrIXMLXPathFactory>,
      VyrCountedInstance<VyrDOMDocument> {
 public:
  static constexpr const char* kClassName = "VyrDOMDocument";

  explicit VyrDOMDocument(VyrXMLTree tree);

  HRESULT GetDocumentElement(VyrIDOMElement_var& element) override;
  const VyrXMLTree& GetTree() override { return tree_; }
  HRESULT CreateExpression(VyrUnicodeView expression, VyrIXMLXPathExpression_var& created) override;

  const VyrXMLTree& Tree() const { return tree_; }
  VyrDOMDocument& Document() { return *this; }
  static constexpr VyrXMLTree::Index Item() { return VyrXMLTree::kDocument; }
  /// What answers the usual expressions, made when first asked for.
  const VyrXMLNameIndex& NameIndex();
  /// What answers all others, made when first asked for.
  VyrXPathMirror& Mirror();

 protected:
  ~VyrDOMDocument() override;

 private:
  VyrXMLTree tree_;
  std::unique_ptr<VyrXMLNameIndex> nameIndex_;
  std::unique_ptr<VyrXPathMirror> mirror_;
};
