#include "EachChild.h"

#include <string>

#include "VyrAnnStandardScript.h"
#include "VyrAnnStandardXMLParser.h"

namespace {

using Command = int (VyrAnnStandardXMLParser::*)(VyrUnicodeView, int);

HRESULT SendToEachChild(VyrAnnStandardXMLParser& document, Command command,
                        VyrUnicodeView parentPath, VyrUnicodeView suffix, int position) {
  const VyrAnnStandardXMLNode_var parent(document.GetNodeWithPath(parentPath));
  if (!parent || parent->GetNumOfNode() == 0) return E_FAIL;
  const auto count = static_cast<std::size_t>(parent->GetNumOfNode());
  if (suffix.size() > VyrAnnStandardScript::kMostAdded / count) return E_INVALIDARG;
  // The names first: a command may add to the very list that is walked.
  const VyrAnnStandardXMLNode::Nodes children = parent->GetNodes();
  for (const VyrAnnStandardXMLNode_var& child : children) {
    std::string line(parentPath);
    line.append(".").append(child->GetNodeName().View()).append(suffix);
    (document.*command)(line, position);
  }
  return S_OK;
}

}  // namespace

HRESULT AddValueToEachChild(VyrAnnStandardXMLParser& document, VyrUnicodeView parentPath,
                            VyrUnicodeView suffix, int position) {
  return SendToEachChild(document, &VyrAnnStandardXMLParser::AddValueWithPath, parentPath, suffix,
                         position);
}

HRESULT AddNodeToEachChild(VyrAnnStandardXMLParser& document, VyrUnicodeView parentPath,
                           VyrUnicodeView suffix, int position) {
  return SendToEachChild(document, &VyrAnnStandardXMLParser::AddNodeWithPath, parentPath, suffix,
                         position);
}

HRESULT ChangeValueOfEachChild(VyrAnnStandardXMLParser& document, VyrUnicodeView parentPath,
                               VyrUnicodeView suffix) {
  const VyrAnnStandardXMLNode_var parent(document.GetNodeWithPath(parentPath));
  if (!parent || parent->GetNumOfNode() == 0) return E_FAIL;
  const auto count = static_cast<std::size_t>(parent->GetNumOfNode());
  if (suffix.size() > VyrAnnStandardScript::kMostAdded / count) return E_INVALIDARG;
  HRESULT result = E_FAIL;
  for (const VyrAnnStandardXMLNode_var& child : parent->GetNodes()) {
    std::string line(parentPath);
    line.append(".").append(child->GetNodeName().View()).append(suffix);
    if (document.ChangeValueWithPath(line) == 0) result = S_OK;
  }
  return result;
}
