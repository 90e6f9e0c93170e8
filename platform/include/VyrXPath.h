#pragma once

#include "HolStandardInfraExport.h"
#include "VyrProblem.h"
#include "VyrXMLDOM.h"

/// An XPath 1.0 expression. Made by a factory, declared prefixes first, then evaluated.
class VyrIXMLXPathExpression : public IUnknown {
 public:
  static constexpr IID kIid = {0x6a1f0001, 0x21d4, 0x4b0e, {0x9c, 0x55, 1, 2, 3, 4, 5, 8}};

  virtual HRESULT DeclareNamespace(VyrUnicodeView prefix, VyrUnicodeView uri) = 0;
  /// The nodes that the expression selects, in document order. `E_FAIL` when it is not a valid
  /// expression or its result is no node set; `nodes` is then left alone.
  virtual HRESULT Evaluate(VyrIDOMNodeList_var& nodes) = 0;

 protected:
  ~VyrIXMLXPathExpression() = default;
};
using VyrIXMLXPathExpression_var = VyrVar<VyrIXMLXPathExpression>;

/// Makes expressions that are evaluated on one document. The document object answers for it.
class VyrIXMLXPathFactory : public IUnknown {
 public:
  static constexpr IID kIid = {0x6a1f0001, 0x21d4, 0x4b0e, {0x9c, 0x55, 1, 2, 3, 4, 5, 9}};

  virtual HRESULT CreateExpression(VyrUnicodeView expression,
                                   VyrIXMLXPathExpression_var& created) = 0;

 protected:
  ~VyrIXMLXPathFactory() = default;
};
using VyrIXMLXPathFactory_var = VyrVar<VyrIXMLXPathFactory>;
