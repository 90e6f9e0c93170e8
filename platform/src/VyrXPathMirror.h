#pragma once

#include <memory>
#include <string>
#include <vector>

#include "VyrDOMNodes.h"
#include "VyrXPathNameChain.h"

/// A document in the form of the library that evaluates expressions of any kind. Few need it, so
/// the form is made for the first valid expression that is evaluated.
class VyrXPathMirror {
 public:
  explicit VyrXPathMirror(const VyrXMLTree& tree);
  VyrXPathMirror(const VyrXPathMirror&) = delete;
  VyrXPathMirror& operator=(const VyrXPathMirror&) = delete;
  ~VyrXPathMirror();

  /// The nodes selected, in document order. False when the expression is not valid or selects no
  /// node set.
  bool Evaluate(const std::string& expression, const VyrXPathNamespaces& namespaces,
                std::vector<VyrDOMPlace>& places);

 private:
  struct Document;
  const VyrXMLTree& tree_;
  std::unique_ptr<Document> document_;
};
