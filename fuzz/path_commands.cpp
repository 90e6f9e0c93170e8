// Any path commands, run on a small standard: the document stays one that can be saved and read,
// and a name leads to the first child of that name however the commands came there.

#include <algorithm>
#include <string>
#include <unordered_map>
#include <vector>

#include "FuzzTarget.h"
#include "RoundTrip.h"
#include "VyrAnnStandardScript.h"

namespace {

constexpr std::string_view kStandard =
    "node Root:Dimension\n"
    "value Root.Dimension:ParentStandard:string:ISO\n"
    "value Root.Dimension:Color:color:0 0 0\n"
    "node Enum:YesNo\n"
    "value Enum.YesNo:Yes:string:Yes\n"
    "value Enum.YesNo:No:string:No\n"
    "node TypeDef:Formats\n"
    "value TypeDef.Formats:Name:string:\n"
    "value TypeDef.Formats:Width:float.mm.0:1\n"
    "node Root:SheetFormat\n"
    "instance Root.SheetFormat:Formats\n"
    "field Root.SheetFormat.Formats:Name:string:A0:0\n"
    "field Root.SheetFormat.Formats:Width:float:1189:0\n";

using Node_var = VyrAnnStandardXMLNode_var;

/// The standard, with a node so wide that its children are found by an index; some of their names
/// are there twice.
std::string BaseStandard() {
  std::string standard(kStandard);
  standard += "node Root:Wide\n";
  for (int i = 0; i < 100; ++i) standard += "node Root.Wide:w" + std::to_string(i % 70) + "\n";
  return standard;
}

/// Deletes children of one node, and finds others by name, as a list of its own would. The children
/// are counted before the first deletion only: to look at them would tidy up the node.
class Deletions {
 public:
  explicit Deletions(VyrAnnStandardXMLParser& document) : document_(document) {}

  void Delete(std::string_view path) {
    const std::size_t dot = path.rfind('.');
    // To the document "Root." is the top, and "Root..A" is no child of it.
    if (dot == std::string_view::npos || path.substr(0, dot).ends_with('.')) {
      Forget();
      document_.DeleteNodeWithPath(path);
      return;
    }
    const Node_var parent(document_.GetNodeWithPath(path.substr(0, dot)));
    if (!(parent == parent_)) {
      parent_ = parent;
      children_ = parent ? parent->GetNodes() : VyrAnnStandardXMLNode::Nodes();
    }
    const std::string_view name = path.substr(dot + 1);
    const auto found = First(name);
    const bool isFound = found != children_.end();
    if (isFound) children_.erase(found);
    const int result = document_.DeleteNodeWithPath(path);
    Require(result == 0 || !isFound, "a child that is there can be deleted");
    if (!parent) return;
    Look(name);
    if (!children_.empty()) Look(children_[path.size() % children_.size()]->GetNodeName());
  }
  /// Something else may have been changed.
  void Forget() {
    parent_ = nullptr;
    children_.clear();
  }

 private:
  VyrAnnStandardXMLNode::Nodes::iterator First(std::string_view name) {
    return std::find_if(children_.begin(), children_.end(), [name](const Node_var& child) {
      return child->GetNodeName().View() == name;
    });
  }
  void Look(VyrUnicodeView name) {
    const auto first = First(name);
    const Node_var found(parent_->GetNodeByName(name));
    Require(found.Get() == (first == children_.end() ? nullptr : first->Get()),
            "a name leads to the first child that is left");
    Require(parent_->GetNumOfNode() == static_cast<int>(children_.size()),
            "deleted children are not counted");
  }

  VyrAnnStandardXMLParser& document_;
  Node_var parent_;
  VyrAnnStandardXMLNode::Nodes children_;
};

void RequireNamesLeadToFirst(const VyrAnnStandardXMLNode& top) {
  std::vector<const VyrAnnStandardXMLNode*> work = {&top};
  while (!work.empty()) {
    const VyrAnnStandardXMLNode& node = *work.back();
    work.pop_back();
    std::unordered_map<std::string_view, const VyrAnnStandardXMLNode*> firsts;
    for (const Node_var& child : node.GetNodes()) {
      Require(static_cast<bool>(child), "a list of children has no gaps");
      firsts.emplace(child->GetNodeName().View(), child.Get());
      work.push_back(child.Get());
    }
    for (const auto& [name, first] : firsts) {
      Require(Node_var(node.GetNodeByName(name)).Get() == first,
              "a name leads to the first child of that name");
    }
  }
}

void RunAll(std::string_view script, VyrAnnStandardXMLParser& document) {
  const VyrAnnStandardScript commands(script);
  for (const auto& command : commands.GetCommands()) {
    const int result = command.Run(document);
    Require(result >= 0 && result <= 2, "a command is done, finds nothing or has no position");
  }
}

/// The commands as the library's callers give them: the first byte of a line chooses the operation,
/// the second the occurrence.
void RunRaw(std::string_view lines, VyrAnnStandardXMLParser& document) {
  Deletions deletions(document);
  while (!lines.empty()) {
    std::string_view line = CutLine(lines);
    if (line.size() < 2) continue;
    const int occurrence = line[1] - '0';
    const VyrUnicodeView command(line.substr(2));
    const int operation = line[0] % 8;
    if (operation < 5) deletions.Forget();
    switch (operation) {
      case 0:
        document.AddNodeWithPath(command, 0);
        break;
      case 1:
        document.AddNodeWithPath(command, 1);
        break;
      case 2:
        document.AddValueWithPath(command, occurrence);
        break;
      case 3:
        document.AddValueWithPathForAllOccurence(command, occurrence);
        break;
      case 4:
        document.ChangeValueWithPath(command);
        break;
      case 5:
        deletions.Delete(line.substr(2));
        break;
      case 6:
        Node_var(document.GetNodeWithPath(command));
        break;
      default:
        document.GetValueWithPath(command);
        break;
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  SilenceDiagnostics();
  VyrAnnStandardXMLParser document;
  static const std::string standard = BaseStandard();
  RunAll(standard, document);
  RunAll(InputText(data, size), document);
  RunRaw(InputText(data, size), document);
  for (const char* top : {"Root", "Enum", "TypeDef"}) {
    RequireNamesLeadToFirst(*Node_var(document.GetNodeWithPath(top)));
  }
  document.Check();
  document.GetVersion();
  const VyrUnicodeString saved = Saved(document);
  if (saved.IsEmpty()) return 0;
  RequireSameAgain(document, saved);
  return 0;
}
