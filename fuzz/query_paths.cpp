// Any path asked of any document: the index of names and the full evaluation of the expression
// find the same elements in the same order. The first line of the input is the path, the rest the
// document.

#include <string>
#include <vector>

#include "FuzzTarget.h"
#include "StandardXMLFormat.h"
#include "VyrNameChain.h"
#include "VyrXMLNameIndex.h"
#include "VyrXMLReader.h"
#include "VyrXPathMirror.h"
#include "VyrXPathNameChain.h"
#include "XPath.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  SilenceDiagnostics();
  std::string_view text = InputText(data, size);
  const std::string_view path = CutLine(text);
  if (path.find('\0') != std::string_view::npos) return 0;  // callers pass zero-terminated paths
  VyrXMLTree tree;
  VyrProblem problem;
  if (!VyrReadXML(text, nullptr, tree, problem)) {
    Require(!problem.IsEmpty(), "a refusal says why");
    return 0;
  }
  const std::string expression = XPath(StdPath(path)).Path().CString();
  const VyrXPathNamespaces namespaces = {{"std", kStandardNamespace}};
  VyrNameChain chain;
  if (!VyrReadNameChain(expression, namespaces, chain)) return 0;
  const std::vector<VyrXMLTree::Index> found = VyrXMLNameIndex(tree).Find(chain);
  std::vector<VyrDOMPlace> selected;
  const bool isValid = VyrXPathMirror(tree).Evaluate(expression, namespaces, selected);
  Require(isValid, "what the index answers is a valid expression");
  Require(found.size() == selected.size(), "both find as many elements");
  for (std::size_t i = 0; i < found.size(); ++i) {
    Require(selected[i].attribute == VyrDOMPlace::kNoAttribute, "elements only");
    Require(found[i] == selected[i].item, "both find the same elements in the same order");
  }
  return 0;
}
