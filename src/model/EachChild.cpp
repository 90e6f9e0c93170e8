#include "EachChild.h"

#include <string>

#include "NodeEdits.h"
#include "VyrAnnStandardScript.h"
#include "VyrAnnStandardXMLParser.h"

namespace {

using Node = VyrAnnStandardXMLNode;

/// Whether a command for a child of that node is done at the child: it ends its path at the first
/// ":", and takes the path to a tree's child without a name for that of the tree.
bool LeadsToChildren(VyrUnicodeView parentPath) {
  return parentPath.find(':') == std::string_view::npos &&
         parentPath.find('.') != std::string_view::npos;
}

/// Has a command done for every child. `send` does one as it is, `doBelow` does at the node what
/// follows the path of the node: that may be as long as the file and is followed only once.
template <class Send, class DoBelow>
HRESULT ForEachChild(VyrAnnStandardXMLParser& document, VyrUnicodeView parentPath,
                     VyrUnicodeView suffix, Send send, DoBelow doBelow) {
  const VyrAnnStandardXMLNode_var parent(document.GetNodeWithPath(parentPath));
  if (!parent || parent->GetNumOfNode() == 0) return E_FAIL;
  const auto count = static_cast<std::size_t>(parent->GetNumOfNode());
  if (suffix.size() > VyrAnnStandardScript::kMostAdded / count) return E_INVALIDARG;
  const bool leadsToChildren = LeadsToChildren(parentPath);
  // The children first: a command may add to the very list that is walked.
  const Node::Nodes children = parent->GetNodes();
  for (const VyrAnnStandardXMLNode_var& child : children) {
    std::string command(child->GetNodeName().View());
    command.append(suffix);
    if (leadsToChildren) {
      doBelow(*parent, command);
    } else {
      send(std::string(parentPath) + "." + command);
    }
  }
  return S_OK;
}

}  // namespace

HRESULT AddValueToEachChild(VyrAnnStandardXMLParser& document, VyrUnicodeView parentPath,
                            VyrUnicodeView suffix, int position) {
  const bool mayWrap = parentPath.starts_with("Root.") && position != -1;
  return ForEachChild(
      document, parentPath, suffix,
      [&](const std::string& command) { document.AddValueWithPath(command, position); },
      [&](const Node& parent, std::string_view command) {
        const ValueCommand fields = ValueCommand::Parse(command);
        const VyrAnnStandardXMLNode_var target(parent.GetNodeWithPath(fields.path, position));
        if (target) PutValue(*target, fields, ParseValueType(fields), mayWrap);
      });
}

HRESULT AddNodeToEachChild(VyrAnnStandardXMLParser& document, VyrUnicodeView parentPath,
                           VyrUnicodeView suffix, int position) {
  const Node::Type type = position != 0 ? Node::NodeInstance : Node::NodePlain;
  return ForEachChild(
      document, parentPath, suffix,
      [&](const std::string& command) { document.AddNodeWithPath(command, position); },
      [&](const Node& parent, std::string_view command) {
        const NodeCommand fields = NodeCommand::Parse(command);
        const VyrAnnStandardXMLNode_var target(parent.GetNodeWithPath(fields.path, 1));
        if (target) PutNode(*target, fields, type);
      });
}

HRESULT ChangeValueOfEachChild(VyrAnnStandardXMLParser& document, VyrUnicodeView parentPath,
                               VyrUnicodeView suffix) {
  bool isOneChanged = false;
  const HRESULT result = ForEachChild(
      document, parentPath, suffix,
      [&](const std::string& command) {
        if (document.ChangeValueWithPath(command) == kDone) isOneChanged = true;
      },
      [&](const Node& parent, std::string_view command) {
        const std::size_t separator = command.find(':');
        if (separator == std::string_view::npos) return;
        const std::string_view path = command.substr(0, separator);
        if (ChangeBelow(parent, path, command.substr(separator + 1)) == kDone) isOneChanged = true;
      });
  return result == S_OK && !isOneChanged ? E_FAIL : result;
}
