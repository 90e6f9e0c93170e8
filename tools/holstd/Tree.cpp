#include <algorithm>
#include <memory>

#include "Arguments.h"
#include "BranchLines.h"
#include "Format.h"
#include "PathSearch.h"
#include "Standard.h"
#include "StandardFiles.h"
#include "StandardItems.h"
#include "Subcommands.h"

namespace {

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

  void Print(const BranchLine& line) {
    if (json_) return PrintJson(line);
    std::string text(2 * std::min(line.level, kIndentedLevels), ' ');
    text += session_.Painted(Session::Paint::Faint, line.kind);
    if (!line.name.empty()) text += " " + Printable(line.name);
    if (line.value != nullptr) text += ": " + ValueText(*line.value);
    session_.Print(text + "\n");
  }

  void End() {
    if (json_) session_.Print(isFirst_ ? "]\n" : "\n]\n");
  }

 private:
  // Deeper lines begin there too: the output stays in proportion to the tree.
  static constexpr std::size_t kIndentedLevels = 100;

  void PrintJson(const BranchLine& line) {
    session_.Print((isFirst_ ? "\n  " : ",\n  ") + JsonLine(AsJson(line)));
    isFirst_ = false;
  }

  Session& session_;
  bool json_;
  bool isFirst_ = true;
};

/// A path as the commands have it, or one below the document element, as `get` has it.
StandardPlace FindBranch(const Standard& standard, const StandardItems& items,
                         const std::string& path) {
  if (const auto found = FindPlace(items, path)) return *found;
  if (const auto found = FindPlace(items, "Root." + path)) return *found;
  throw Failure{kNegativeAnswer, standard.file, 0,
                path.starts_with('.') ? MissingPlace(items, path)
                : IsCommandPath(path) ? MissingBranch(items, path)
                                      : MissingBranch(items, "Root." + path)};
}

ExitStatus PrintTree(const Options& options, Session& session) {
  Standard standard = ReadStandard(options.file);
  const StandardItems items(standard.document);
  std::vector<StandardPlace> branches;
  if (options.path.empty()) {
    for (const char* top : StandardItems::kTopNames) {
      branches.push_back(FindBranch(standard, items, top));
    }
  } else {
    branches.push_back(FindBranch(standard, items, options.path));
  }
  TreePrinter printer(session, options.json);
  for (const StandardPlace& branch : branches) {
    if (branch.value) {
      printer.Print(LineOfValue(*items.ValueAt(branch), 0));
    } else {
      ForEachLine(*items[branch.item].node, [&](const BranchLine& line) { printer.Print(line); });
    }
  }
  printer.End();
  return kDone;
}

}  // namespace

Action Tree::Register(Arguments& command) {
  auto options = std::make_shared<Options>();
  command.AddFile(options->file);
  command.AddWord("PATH", options->path,
                  "What to print: a path below the document element, or one that begins with "
                  "Root, Enum or TypeDef");
  command.AddJson(options->json);
  command.AddExamples(
      {"holstd tree ISO.xml", "holstd tree ISO.xml Dimension",
       "holstd tree ISO.xml TypeDef.ToleranceDisplay", "holstd tree ISO.xml 'Frames.FrameDef[2]'"},
      "Of several nodes of one name the first is meant; a place in brackets means "
      "another one.");
  return [options](Session& session) {
    options->file = FileOrStandard(options->file).file;
    return PrintTree(*options, session);
  };
}
