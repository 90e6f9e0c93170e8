#pragma once

#include "HolStandardInfraExport.h"
#include "VyrProblem.h"
#include "VyrXMLDOM.h"

/// An XPath 1.0 expression. Made by a factory, declared prefixes first, then evaluated. Keeps its
/// document alive, and is used from one thread at a time together with it.
class VyrIXMLXPathExpression : public IUnknown {
 public:
  /// Identifier of the interface.
  static constexpr IID kIid = {0x6a1f0001, 0x21d4, 0x4b0e, {0x9c, 0x55, 1, 2, 3, 4, 5, 8}};

  /// Declares a prefix of the expression. `E_INVALIDARG` for an empty prefix, and for a text with a
  /// zero byte.
  virtual HRESULT DeclareNamespace(VyrUnicodeView prefix, VyrUnicodeView uri) = 0;
  /// The nodes that the expression selects, in document order. `E_FAIL` when it is not a valid
  /// expression or its result is no node set; `nodes` is then left alone.
  virtual HRESULT Evaluate(VyrIDOMNodeList_var& nodes) = 0;

 protected:
  ~VyrIXMLXPathExpression() = default;
};
/// Counted reference to the interface.
using VyrIXMLXPathExpression_var = VyrVar<VyrIXMLXPathExpression>;

/// Makes expressions that are evaluated on one document. The document object answers for it.
class VyrIXMLXPathFactory : public IUnknown {
 public:
  /// Identifier of the interface.
  static constexpr IID kIid = {0x6a1f0001, 0x21d4, 0x4b0e, {0x9c, 0x55, 1, 2, 3, 4, 5, 9}};

  /// Makes an expression of `expression`, which is copied. Whether it is a valid one is told when
  /// it is evaluated.
  virtual HRESULT CreateExpression(VyrUnicodeView expression,
                                   VyrIXMLXPathExpression_var& created) = 0;

 protected:
  ~VyrIXMLXPathFactory() = default;
};
/// Counted reference to the interface.
using VyrIXMLXPathFactory_var = VyrVar<VyrIXMLXPathFactory>;
