#include <algorithm>
#include <memory>

#include "Arguments.h"
#include "Format.h"
#include "Standard.h"
#include "Subcommands.h"

namespace {

using Node = VyrAnnStandardXMLNode;
using Value = VyrAnnStandardXMLValue;

struct Options {
  std::string file;
  std::string path;
  bool json = false;
};

/// Writes the tree line by line. In JSON too it is a flat list: a reader follows "level", and no
/// depth of a standard is too much for it.
class TreePrinter {
 public:
  TreePrinter(Session& session, bool json) : session_(session), json_(json) {
    if (json_) session_.Print("[");
  }

  void PrintBranch(const Node& top) {
    struct Work {
      const Node* node;
      std::size_t level;
    };
    std::vector<Work> work = {{&top, 0}};
    while (!work.empty()) {
      const auto [node, level] = work.back();
      work.pop_back();
      const Value* wrapped = WrappedValue(*node);
      PrintLine(level, KindWord(node->GetNodeType()), node->GetNodeName().View(), wrapped);
      if (wrapped != nullptr) continue;
      for (const auto& value : node->GetValues()) PrintValue(*value, level + 1);
      const Node::Nodes& children = node->GetNodes();
      for (auto child = children.rbegin(); child != children.rend(); ++child) {
        work.push_back({child->Get(), level + 1});
      }
    }
  }

  void PrintValue(const Value& value, std::size_t level) {
    // The bound of a float stands where other values have their name.
    const std::string_view name = value.GetRangeVal() == 1 ? "" : value.GetValueName().View();
    PrintLine(level, "value", name, &value);
  }

  void End() {
    if (json_) session_.Print(isFirst_ ? "]\n" : "\n]\n");
  }

 private:
  // Deeper lines begin there too: the output stays in proportion to the tree.
  static constexpr std::size_t kIndentedLevels = 100;

  void PrintLine(std::size_t level, const char* kind, std::string_view name, const Value* value) {
    if (json_) return PrintJson(level, kind, name, value);
    std::string line(2 * std::min(level, kIndentedLevels), ' ');
    line += session_.Painted(Session::Paint::Faint, kind);
    if (!name.empty()) line += " " + Printable(name);
    if (value != nullptr) line += ": " + ValueText(*value);
    session_.Print(line + "\n");
  }

  void PrintJson(std::size_t level, const char* kind, std::string_view name, const Value* value) {
    Json object = {{"level", level}, {"kind", kind}, {"name", name}};
    if (value != nullptr) AddValueTo(object, *value);
    session_.Print((isFirst_ ? "\n  " : ",\n  ") + JsonLine(object));
    isFirst_ = false;
  }

  Session& session_;
  bool json_;
  bool isFirst_ = true;
};

/// A path as the commands have it, or one below the document element, as `get` has it.
Found FindBranch(Standard& standard, const std::string& path) {
  if (auto found = FindAt(standard.document, path)) return *found;
  if (auto found = FindAt(standard.document, "Root." + path)) return *found;
  const std::string_view top = std::string_view(path).substr(0, path.find('.'));
  const bool isCommandPath = top == "Root" || top == "Enum" || top == "TypeDef";
  throw Failure{kNegativeAnswer, standard.file, 0,
                MissingName(standard.document, isCommandPath ? path : "Root." + path)};
}

ExitStatus PrintTree(const Options& options, Session& session) {
  Standard standard = ReadStandard(options.file);
  std::vector<Found> branches;
  if (options.path.empty()) {
    for (const char* top : {"Enum", "TypeDef", "Root"}) {
      branches.push_back(FindBranch(standard, top));
    }
  } else {
    branches.push_back(FindBranch(standard, options.path));
  }
  TreePrinter printer(session, options.json);
  for (const Found& branch : branches) {
    if (branch.node) {
      printer.PrintBranch(*branch.node);
    } else {
      printer.PrintValue(*branch.value, 0);
    }
  }
  printer.End();
  return kDone;
}

}  // namespace

Action Tree::Register(CLI::App& command) {
  auto options = std::make_shared<Options>();
  AddFile(command, options->file);
  command
      .add_option("PATH", options->path,
                  "What to print: a path below the document element, or one that begins with "
                  "Root, Enum or TypeDef")
      ->type_name("");
  AddJson(command, options->json);
  AddExamples(command, {"holstd tree ISO.xml", "holstd tree ISO.xml Dimension",
                        "holstd tree ISO.xml TypeDef.ToleranceDisplay"});
  return [options](Session& session) { return PrintTree(*options, session); };
}
