#include <utility>

#include "StandardXMLFormat.h"
#include "VyrDifTransientStandard.h"
#include "VyrXPath.h"
#include "XPath.h"

// Finding the nodes of a path.

unsigned char VyrDifTransientStandard::HasNode(const char* path) {
  TracedOperation traced = Traced("VyrDifTransientStandard::HasNode");
  traced.KeepObject();
  return path != nullptr && FindNode(path, 1) ? 1 : 0;
}

VyrIDOMNode_var VyrDifTransientStandard::FindNode(std::string_view path, int index) {
  if (index < 1) return {};
  const MatchedNodes nodes = FindNodes(path);
  if (nodes == nullptr || nodes->empty()) return {};
  TraceLine(transientStandardTrace, "%sIndex is: %d\n", index);
  if (static_cast<std::size_t>(index) <= nodes->size()) {
    return (*nodes)[static_cast<std::size_t>(index) - 1];
  }
  TraceLine(transientStandardTrace, "%sThere is not enough nodes matching the given XPath\n");
  return {};
}

MatchedNodes VyrDifTransientStandard::FindNodes(std::string_view path) {
  if (!document_) return nullptr;
  if (transientStandardTrace.IsOn()) {
    TraceLine(transientStandardTrace, "%sStdPath is: '%s'\n", std::string(path).c_str());
    TraceLine(transientStandardTrace, "%sXPath is: '%s'\n", XPath(StdPath(path)).Path().CString());
  }
  MatchedNodes nodes = recentMatches_.Find(path);
  if (nodes == nullptr) {
    StandardNodes found;
    if (!Search(path, found)) return nullptr;
    nodes = recentMatches_.Store(path, std::move(found));
  }
  if (nodes->empty()) {
    TraceLine(transientStandardTrace, "%sThere is no node matching the given XPath\n");
  }
  return nodes;
}

bool VyrDifTransientStandard::Search(std::string_view path, StandardNodes& nodes) {
  constexpr const VyrSourceUnit& unit = kTransientStandardUnit;
  const auto factory = VyrQuery<VyrIXMLXPathFactory>(document_.Get());
  if (!unit.CheckPointer(factory.Get(), "no XPath factory")) return false;
  VyrIXMLXPathExpression_var expression;
  const VyrUnicodeString text = XPath(StdPath(path)).Path();
  const HRESULT created = factory->CreateExpression(text, expression);
  if (!unit.Check(VyrSucceeded(created) && expression, "no XPath expression")) return false;
  if (!unit.Check(VyrSucceeded(expression->DeclareNamespace("std", kStandardNamespace)),
                  "namespace cannot be declared")) {
    return false;
  }
  VyrIDOMNodeList_var list;
  const HRESULT evaluated = expression->Evaluate(list);
  if (!unit.Check(VyrSucceeded(evaluated) && list, "XPath cannot be evaluated")) return false;
  nodes = CopyNodes(*list);
  return true;
}
