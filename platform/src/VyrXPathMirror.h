#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "VyrDOMNodes.h"
#include "VyrXPath.h"

/// A document in the form of the library that evaluates expressions. Expressions are rare beside
/// plain walks, so it is made only for a document that one is evaluated on.
class VyrXPathMirror {
 public:
  using Namespaces = std::vector<std::pair<std::string, std::string>>;

  explicit VyrXPathMirror(const VyrXMLTree& tree);
  VyrXPathMirror(const VyrXPathMirror&) = delete;
  VyrXPathMirror& operator=(const VyrXPathMirror&) = delete;
  ~VyrXPathMirror();

  /// The nodes selected, in document order. False when the expression is not valid or selects no
  /// node set.
  bool Evaluate(const std::string& expression, const Namespaces& namespaces,
                std::vector<VyrDOMNodeList::Place>& places) const;

 private:
  struct Document;
  std::unique_ptr<Document> document_;
};

VyrIXMLXPathExpression_var VyrMakeXPathExpression(VyrDOMDocument_var document,
                                                  VyrUnicodeView expression);
