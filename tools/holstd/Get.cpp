#include <limits>
#include <memory>
#include <set>

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
  long index = 1;
  bool all = false;
  bool type = false;
  bool json = false;
};

/// What a path leads to, in document order; borrowed from the document.
struct Matches {
  std::vector<const Node*> nodes;
  std::vector<const Value*> values;
};

void AddChildren(const Node& holder, std::string_view name, std::vector<const Node*>& found) {
  for (const auto& child : holder.GetNodes()) {
    if (child->GetNodeName().View() == name) found.push_back(child.Get());
  }
}

/// Where a plain node wraps a literal or a bounded float, the name of the value is that of the
/// enumeration or the bound.
bool IsCalled(const Value& value, std::string_view name, const Node& holder) {
  const bool isLiteral =
      value.GetType() == Value::ValueEnum && holder.GetNodeType() == Node::NodePlain;
  return !isLiteral && value.GetRangeVal() != 1 && value.GetValueName().View() == name;
}

/// The last name of a path: as with the path commands, a node goes before a value of its name.
void AddMatches(const Node& holder, std::string_view name, Matches& matches) {
  const std::size_t before = matches.nodes.size();
  AddChildren(holder, name, matches.nodes);
  for (std::size_t i = before; i < matches.nodes.size(); ++i) {
    for (const auto& value : matches.nodes[i]->GetValues()) matches.values.push_back(value.Get());
  }
  if (matches.nodes.size() > before) return;
  for (const auto& value : holder.GetValues()) {
    if (IsCalled(*value, name, holder)) matches.values.push_back(value.Get());
  }
}

/// Follows every name of the path to all children of that name.
Matches FindAll(const Node& root, std::string_view path) {
  if (path.empty()) return {{&root}, {}};
  std::vector<const Node*> holders = {&root};
  for (std::size_t dot = path.find('.'); dot != std::string_view::npos; dot = path.find('.')) {
    std::vector<const Node*> next;
    for (const Node* holder : holders) AddChildren(*holder, path.substr(0, dot), next);
    holders = std::move(next);
    path.remove_prefix(dot + 1);
  }
  Matches matches;
  for (const Node* holder : holders) AddMatches(*holder, path, matches);
  return matches;
}

std::string NotFound(VyrAnnStandardXMLParser& document, const Options& options) {
  if (options.path.starts_with("Root.")) {
    return "there is no " + Quoted(options.path) + "; a path to get begins below Root, as in " +
           Quoted(options.path.substr(5));
  }
  return MissingName(document, "Root." + options.path);
}

/// At least one value. Throws `Failure` when there is none.
std::vector<const Value*> FindValues(Standard& standard, const Options& options) {
  const VyrAnnStandardXMLNode_var root(standard.document.GetNodeWithPath("Root"));
  const Matches matches = FindAll(*root, options.path);
  if (!matches.values.empty()) return matches.values;
  const std::string problem = matches.nodes.empty()
                                  ? NotFound(standard.document, options)
                                  : Quoted(options.path) + " has no value of its own but " +
                                        Counted(matches.nodes.front()->GetNumOfNode(), "node") +
                                        "; name one of them, see " +
                                        Quoted("holstd tree " + options.file + " " + options.path);
  throw Failure{kNegativeAnswer, options.file, 0, problem};
}

void PrintOne(const Options& options, const std::vector<const Value*>& values, Session& session) {
  const auto count = static_cast<long>(values.size());
  if (options.index > count) {
    throw Failure{kNegativeAnswer, options.file, 0,
                  Quoted(options.path) + " has " + Counted(count, "value") + "; there is no " +
                      std::to_string(options.index) + " among them"};
  }
  const Value& value = *values[static_cast<std::size_t>(options.index - 1)];
  if (!options.json) return session.Print(std::string(value.GetValue().View()) + "\n");
  Json object = {{"file", options.file}, {"path", options.path}};
  AddValueTo(object, value);
  session.Print(JsonText(object));
}

void PrintAll(const Options& options, const std::vector<const Value*>& values, Session& session) {
  Json list = Json::array();
  for (const Value* value : values) {
    if (options.json) {
      AddValueTo(list.emplace_back(Json::object()), *value);
    } else {
      session.Print(Printable(value->GetValue().View()) + "\n");
    }
  }
  if (options.json) session.Print(JsonText(list));
}

void PrintType(const Options& options, const std::vector<const Value*>& values, Session& session) {
  std::set<std::string> types;
  for (const Value* value : values) types.insert(TypeText(*value));
  if (types.size() > 1) {
    throw Failure{kNegativeAnswer, options.file, 0,
                  "the values of " + Quoted(options.path) +
                      " are of mixed types: " + Joined({types.begin(), types.end()})};
  }
  if (!options.json) {
    return session.Print(*types.begin() + " " + std::to_string(values.size()) + "\n");
  }
  Json object = {{"file", options.file}, {"path", options.path}};
  AddTypeTo(object, *values.front());
  object["count"] = values.size();
  session.Print(JsonText(object));
}

ExitStatus PrintValues(const Options& options, Session& session) {
  Standard standard = ReadStandard(options.file);
  const std::vector<const Value*> values = FindValues(standard, options);
  const auto print = options.type ? PrintType : options.all ? PrintAll : PrintOne;
  print(options, values, session);
  return kDone;
}

}  // namespace

Action Get::Register(CLI::App& command) {
  auto options = std::make_shared<Options>();
  AddFile(command, options->file);
  command.add_option("PATH", options->path, "Names joined by dots, below the document element")
      ->required()
      ->type_name("");
  CLI::Option* index =
      command.add_option("--index", options->index, "Print the N-th value instead of the first")
          ->type_name("N")
          ->check(CLI::Range(1L, std::numeric_limits<long>::max(), "N, from 1"));
  CLI::Option* all = command.add_flag("--all", options->all, "Print all values, one a line");
  CLI::Option* type =
      command.add_flag("--type", options->type, "Print the type of the values and their number");
  index->excludes(all)->excludes(type);
  all->excludes(type);
  AddJson(command, options->json);
  AddExamples(command,
              {"holstd get ISO.xml Dimension.ParentStandard",
               "holstd get ISO.xml General.AllowedTextFontSizes --all",
               "holstd get ISO.xml ToleranceFormats.ToleranceDisplay.Name --index 3",
               "holstd get --json - General.DefaultTextFontSize < ISO.xml"},
              "A name stands for all nodes of that name; the values come in the order of the "
              "file.\nWith --all a line break inside a value is shown as \\n; --json has the "
              "text as it is.");
  return [options](Session& session) { return PrintValues(*options, session); };
}
