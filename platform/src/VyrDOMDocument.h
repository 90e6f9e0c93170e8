#pragma once

#include <memory>

#include "VyrBaseUnknown.h"
#include "VyrDOMNodes.h"
#include "VyrInstanceCounter.h"
#include "VyrXMLDOM.h"
#include "VyrXPath.h"

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
  /// The document in the form that expressions are evaluated on, made when first asked for.
  const VyrXPathMirror& Mirror();

 protected:
  ~VyrDOMDocument() override;

 private:
  VyrXMLTree tree_;
  std::unique_ptr<VyrXPathMirror> mirror_;
};
