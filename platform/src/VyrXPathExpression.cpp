#include "VyrXPathExpression.h"

#include <string>

#include "VyrDOMDocument.h"
#include "VyrXMLNameIndex.h"
#include "VyrXPathMirror.h"
#include "VyrXPathNameChain.h"

namespace {

class XPathExpression final : public VyrImplements<VyrIXMLXPathExpression>,
                              VyrCountedInstance<XPathExpression> {
 public:
  static constexpr const char* kClassName = "VyrXPathExpression";

  XPathExpression(VyrDOMDocument& document, VyrUnicodeView expression)
      : document_(VyrDOMDocument_var::Share(&document)), expression_(expression) {}

  HRESULT DeclareNamespace(VyrUnicodeView prefix, VyrUnicodeView uri) override {
    // No text of a document has a zero byte, and a prefix with one would pass for a shorter one.
    constexpr auto isWhole = [](std::string_view text) {
      return text.find('\0') == std::string_view::npos;
    };
    if (prefix.empty() || !isWhole(prefix) || !isWhole(uri)) return E_INVALIDARG;
    namespaces_.emplace_back(prefix, uri);
    return S_OK;
  }

  HRESULT Evaluate(VyrIDOMNodeList_var& nodes) override {
    VyrNameChain chain;
    if (VyrReadNameChain(expression_, namespaces_, chain)) {
      nodes = new VyrDOMNodeList<VyrXMLTree::Index>(*document_, document_->NameIndex().Find(chain));
      return S_OK;
    }
    std::vector<VyrDOMPlace> places;
    if (!document_->Mirror().Evaluate(expression_, namespaces_, places)) return E_FAIL;
    nodes = new VyrDOMNodeList<VyrDOMPlace>(*document_, std::move(places));
    return S_OK;
  }

 private:
  VyrDOMDocument_var document_;
  std::string expression_;
  VyrXPathNamespaces namespaces_;
};

}  // namespace

VyrIXMLXPathExpression_var VyrMakeXPathExpression(VyrDOMDocument& document,
                                                  VyrUnicodeView expression) {
  return VyrIXMLXPathExpression_var(new XPathExpression(document, expression));
}
