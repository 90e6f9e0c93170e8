#include <algorithm>
#include <deque>
#include <memory>
#include <optional>
#include <unordered_map>
#include <utility>

#include "Arguments.h"
#include "DatedBack.h"
#include "DefinedLiterals.h"
#include "Format.h"
#include "InPlace.h"
#include "InputFile.h"
#include "Objections.h"
#include "Reports.h"
#include "Standard.h"
#include "Subcommands.h"
#include "VyrAnnStandardScript.h"
#include "VyrFiles.h"
#include "VyrUtf8.h"

namespace {

using Command = VyrAnnStandardScript::Command;
using Verb = VyrAnnStandardScript::Verb;

struct Options {
  std::string file;
  std::vector<std::string> commands;
  std::string script;
  std::string output;
  InPlaceOptions inPlace;
};

/// A command and where the user wrote it.
struct Step {
  std::string place;
  int line;
  std::string_view source;  ///< the whole line
  Command command;
};

/// The line of `text` that a command borrowed.
std::string_view LineOf(std::string_view text, const Command& command) {
  const auto at = static_cast<std::size_t>(command.text.data() - text.data());
  const std::size_t begin = text.rfind('\n', at) + 1;  // 0 when there is none
  const std::string_view line = text.substr(begin, text.find_first_of("\r\n", at) - begin);
  return line.substr(line.find_first_not_of(" \t"));
}

/// The commands of the arguments or of the script, and the texts that they borrow.
class Steps {
 public:
  explicit Steps(const Options& options) {
    for (const std::string& command : options.commands) AddArgument(command);
    if (!options.script.empty()) AddScript(options.script);
  }
  Steps(const Steps&) = delete;
  Steps& operator=(const Steps&) = delete;

  const std::vector<Step>& All() const { return steps_; }

 private:
  void AddArgument(const std::string& text) {
    const std::string place = "command " + std::to_string(++arguments_);
    const std::size_t before = steps_.size();
    if (text.find('\n') == std::string::npos) Add(place, text, false);
    if (steps_.size() == before + 1) return;
    throw Failure{kInvalidInput, place, 0,
                  "is not one command; each -c takes one, as in 'change Root.Version:220'"};
  }

  void AddScript(const std::string& file) {
    const InputFile input(file);
    std::string text;
    if (const std::string problem = VyrReadFile(input.Path(), text); !problem.empty()) {
      throw Failure{kInvalidInput, file, 0, problem};
    }
    if (const std::size_t at = VyrFindInvalidUtf8(text); at != std::string::npos) {
      const auto line = std::count(text.begin(), text.begin() + static_cast<long>(at), '\n') + 1;
      throw Failure{kInvalidInput, file, static_cast<int>(line),
                    "is not UTF-8 text; convert the script to UTF-8 first"};
    }
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(byteOrderMark)) text.erase(0, byteOrderMark.size());
    Add(file, std::move(text), true);
  }

  void Add(const std::string& place, std::string text, bool hasLines) {
    const std::string& kept = texts_.emplace_back(std::move(text));
    const VyrAnnStandardScript script(kept);
    const VyrProblem& problem = script.GetProblem();
    if (!problem.IsEmpty()) {
      throw Failure{kInvalidInput, place, hasLines ? problem.line : 0,
                    std::string(problem.text.View())};
    }
    for (const Command& command : script.GetCommands()) {
      steps_.push_back({place, hasLines ? command.line : 0, LineOf(kept, command), command});
    }
  }

  int arguments_ = 0;
  std::deque<std::string> texts_;
  std::vector<Step> steps_;
};

/// Literals that commands wrote. Whether they are defined is asked when all is done: a script may
/// define them later.
using Literals = std::vector<std::pair<const Step*, WrittenLiteral>>;

void CheckLiterals(VyrAnnStandardXMLParser& document, const Literals& literals) {
  DefinedLiterals defined(document);
  for (const auto& [step, written] : literals) {
    const std::string objection = defined.ObjectionTo(written);
    if (!objection.empty()) throw Failure{kInvalidInput, step->place, step->line, objection};
  }
}

/// Does a command that serves one place only. Throws `Failure` when it cannot be done.
void RunOne(CommandPaths& paths, const Step& step, const Command& command, Literals& literals) {
  const std::string objection = ObjectionTo(paths, command.verb, command.text);
  if (!objection.empty()) throw Failure{kInvalidInput, step.place, step.line, objection};
  if (auto written = LiteralWritten(paths, command.verb, command.text)) {
    literals.emplace_back(&step, std::move(*written));
  }
  const ReportRecorder recorder;
  const int result = paths.Run(command.verb, command.text);
  if (result == 0 && recorder.failedChecks.empty()) return;
  throw Failure{kInvalidInput, step.place, step.line,
                "cannot be done (result " + std::to_string(result) + ")" +
                    (recorder.failedChecks.empty() ? "" : ": " + recorder.failedChecks.front())};
}

/// The name of every child, with its place where it is not the first of that name.
std::vector<std::string> NamesOfChildren(const VyrAnnStandardXMLNode& parent) {
  std::vector<std::string> names;
  std::unordered_map<std::string_view, std::size_t> seen;
  for (const VyrAnnStandardXMLNode_var& child : parent.GetNodes()) {
    const std::string_view name = child->GetNodeName().View();
    const std::size_t place = ++seen[name];
    names.emplace_back(name);
    if (place > 1) names.back() += "[" + std::to_string(place) + "]";
  }
  return names;
}

/// Does an each-command child by child: it is done for every one of them, or not at all.
void RunEach(CommandPaths& paths, const Step& step, Literals& literals) {
  const VyrAnnStandardXMLNode_var parent = paths.NodeAt(step.command.path);
  if (!parent || parent->GetNodes().empty()) {
    throw Failure{kInvalidInput, step.place, step.line,
                  parent ? Quoted(step.command.path) + " has no child nodes to add to"
                         : paths.Missing(step.command.path)};
  }
  Command command = step.command;
  command.verb = step.command.verb == Verb::Each ? Verb::Value : Verb::Node;
  command.path = {};
  // The names first: a command may add to the very list that is walked.
  const std::vector<std::string> children = NamesOfChildren(*parent);
  if (step.command.text.size() > VyrAnnStandardScript::kMostAdded / children.size()) {
    throw Failure{kInvalidInput, step.place, step.line,
                  "would add " + std::to_string(step.command.text.size()) + " bytes to each of " +
                      std::to_string(children.size()) + " children, and one command adds " +
                      std::to_string(VyrAnnStandardScript::kMostAdded >> 20) +
                      " MB at most; serve them by several commands"};
  }
  for (const std::string& child : children) {
    std::string text(step.command.path);
    text.append(".").append(child).append(step.command.text);
    command.text = text;
    RunOne(paths, step, command, literals);
  }
}

/// Returns the number of commands done; the others are not for standards of this parent.
long RunAll(Standard& standard, const Steps& steps, const Session& session) {
  long done = 0;
  Literals literals;
  CommandPaths paths(standard.document);
  for (const Step& step : steps.All()) {
    const std::string place =
        step.line > 0 ? step.place + ":" + std::to_string(step.line) : step.place;
    if (!step.command.AppliesTo(standard.parent)) {
      session.SayInDetail(place + ": left out, not for the parent standard " +
                          Quoted(standard.parent) + ": " + std::string(step.source));
      continue;
    }
    const bool isEach = step.command.verb == Verb::Each || step.command.verb == Verb::EachNode;
    if (isEach) {
      RunEach(paths, step, literals);
    } else {
      RunOne(paths, step, step.command, literals);
    }
    session.SayInDetail(place + ": done: " + std::string(step.source));
    ++done;
  }
  CheckLiterals(standard.document, literals);
  return done;
}

/// The standard as XML, once it is sure that this can be read again.
std::string Saved(Standard& standard) {
  VyrUnicodeString text;
  standard.document.SaveInString(text);
  VyrProblem problem = standard.document.GetProblem();
  VyrAnnStandardXMLParser again;
  if (problem.IsEmpty() && again.DecodeXML(text, 0) != 0) problem = again.GetProblem();
  if (!problem.IsEmpty()) {
    throw Failure{kInvalidInput, standard.file, 0,
                  "the commands leave what cannot be saved: " + std::string(problem.text.View())};
  }
  if (standard.version >= 0 && again.GetVersion() < 0) {
    throw Failure{kInvalidInput, standard.file, 0,
                  "after the commands " + VersionProblem(standard.document)};
  }
  return std::string(text.View());
}

void CheckUsage(const Options& options) {
  const auto refuse = [](const char* text) { throw Failure{kUsage, "", 0, text}; };
  if (options.commands.empty() == options.script.empty()) {
    refuse(
        "edit takes commands with -c or a script with -f, one of the two; see holstd edit "
        "--help");
  }
  if (options.output.empty() != options.inPlace.isWanted) {
    refuse("edit writes to -o FILE or --in-place, one of the two; see holstd edit --help");
  }
  if (options.inPlace.isWanted && options.file == "-") {
    refuse("standard input cannot be edited in place; give -o FILE");
  }
  if (options.file == "-" && options.script == "-") {
    refuse("standard input cannot be both the standard and the script; give a file for one");
  }
}

void CheckOutput(const Options& options) {
  if (options.inPlace.isWanted) return;
  if (options.file != "-" && IsSameFile(options.file, options.output)) {
    throw Failure{kUndecided, options.output, 0,
                  "is the standard itself; to replace it give --in-place instead of -o"};
  }
  if (!options.script.empty() && IsSameFile(options.script, options.output)) {
    throw Failure{kUndecided, options.output, 0,
                  "is the script itself, which would be destroyed; give another file after -o"};
  }
}

ExitStatus EditFile(const Options& options, const Session& session) {
  CheckUsage(options);
  CheckOutput(options);
  const Steps steps(options);
  Standard standard = ReadStandard(options.file);
  const auto newerBefore = FindNewerContent(standard);
  const long done = RunAll(standard, steps, session);
  const std::string& target = options.inPlace.isWanted ? options.file : options.output;
  if (done == 0 && options.inPlace.isWanted) {
    session.Say(target + ": left as it is, no command is for it");
    return kDone;
  }
  const std::string text = Saved(standard);
  if (const auto said = DatedBackByCommands(newerBefore, FindNewerContent(standard))) {
    session.Warn(target, *said);
  }
  const std::string talk = Counted(done, "command") + " done";
  const VyrFileChange change = options.inPlace.isWanted
                                   ? ReplaceInPlace(target, text, options.inPlace)
                                   : WriteResult(target, text, options.inPlace);
  session.Say(TalkOf(target, change, talk));
  return kDone;
}

}  // namespace

Action Edit::Register(Arguments& command) {
  auto options = std::make_shared<Options>();
  command.AddFile(options->file);
  command.AddOptions("-c,--command", options->commands, "\"VERB COMMAND\"",
                     "A command, as a script has it; may be repeated");
  command
      .AddOption("-f,--file", options->script, "SCRIPT",
                 "Script with a command a line, - for standard input")
      .TakesPath();
  command.AddOutput(options->output);
  AddInPlace(command, options->inPlace, "Replace FILE by the result");
  command.AddExamples(
      {"holstd edit ISO.xml -o site.xml -c 'change Root.Dimension.DIMLTail:12.5'",
       "holstd edit site.xml --in-place -c 'node Root:Site' \\",
       "    -c 'value Root.Site:Owner:string:Design office'",
       "holstd edit ISO.xml -o site.xml -f site.txt -v"},
      std::string("Commands are needed, and a target.\n"
                  "Verbs: node, instance, value, field, change, delete, each, each-node.\n"
                  "The target is written when every command could be done, else not at "
                  "all.\n\n") +
          kBackupNote);
  return [options](Session& session) { return EditFile(*options, session); };
}
