#include <algorithm>
#include <deque>
#include <filesystem>
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
#include "StandardFiles.h"
#include "Subcommands.h"
#include "UpgradeInputs.h"
#include "VyrAnnStandardScript.h"
#include "VyrFiles.h"
#include "VyrUtf8.h"

namespace {

using Command = VyrAnnStandardScript::Command;
using Verb = VyrAnnStandardScript::Verb;

struct Options {
  std::vector<std::string> files;
  std::vector<std::string> commands;
  std::string script;
  std::string output;
  std::string folder;
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
                "cannot be done (result " + std::to_string(result) +
                    "); -v shows what the library reports of it"};
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

/// What an each-command that adds does for one child.
Verb VerbOfEach(Verb verb) {
  return verb == Verb::EachNode ? Verb::Node : Verb::Value;
}

/// What an each-command comes to for a child.
std::string TextFor(const std::string& child, const Command& each) {
  return std::string(each.path) + "." + child + std::string(each.text);
}

/// How many children a command has changed, and why not the first one that it has not.
struct Changes {
  long done = 0;
  long leftOut = 0;
  std::string objection;
};

/// Changes the value in every child that has it.
Changes ChangeEach(CommandPaths& paths, const Step& step, const std::vector<std::string>& children,
                   Literals& literals) {
  Changes changes;
  for (const std::string& child : children) {
    const std::string text = TextFor(child, step.command);
    // To say why not takes a walk through the standard, which is made once.
    const bool isTold = !changes.objection.empty() && !ChangesSomething(paths, text);
    const std::string objection =
        isTold ? changes.objection : ObjectionTo(paths, Verb::Change, text);
    if (!objection.empty()) {
      if (changes.leftOut++ == 0) changes.objection = objection;
      continue;
    }
    Command command = step.command;
    command.verb = Verb::Change;
    command.text = text;
    RunOne(paths, step, command, literals);
    ++changes.done;
  }
  if (changes.done > 0) return changes;
  throw Failure{kInvalidInput, step.place, step.line, "changes nothing: " + changes.objection};
}

/// Does an each-command child by child: additions are done for every one of them, or not at all.
/// Returns what is to be said of it.
std::string RunEach(CommandPaths& paths, const Step& step, Literals& literals) {
  const VyrAnnStandardXMLNode_var parent = paths.NodeAt(step.command.path);
  if (!parent || parent->GetNodes().empty()) {
    throw Failure{kInvalidInput, step.place, step.line,
                  parent ? Quoted(step.command.path) + " has no child nodes"
                         : paths.Missing(step.command.path)};
  }
  // The names first: a command may add to the very list that is walked.
  const std::vector<std::string> children = NamesOfChildren(*parent);
  if (step.command.text.size() > VyrAnnStandardScript::kMostAdded / children.size()) {
    throw Failure{kInvalidInput, step.place, step.line,
                  "would add " + std::to_string(step.command.text.size()) + " bytes to each of " +
                      std::to_string(children.size()) + " children, and one command adds " +
                      std::to_string(VyrAnnStandardScript::kMostAdded >> 20) +
                      " MB at most; serve them by several commands"};
  }
  if (step.command.verb == Verb::EachChange) {
    const Changes changes = ChangeEach(paths, step, children, literals);
    return Counted(changes.done, "value") + " changed" +
           (changes.leftOut == 0
                ? ""
                : ", " + std::to_string(changes.leftOut) + " left out: " + changes.objection);
  }
  Command command = step.command;
  command.verb = VerbOfEach(step.command.verb);
  command.path = {};
  for (const std::string& child : children) {
    const std::string text = TextFor(child, step.command);
    command.text = text;
    RunOne(paths, step, command, literals);
  }
  return {};
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
    if (step.command.IsForEach()) {
      const std::string said = RunEach(paths, step, literals);
      if (!said.empty()) session.Say(standard.file + ": " + place + ": " + said);
    } else {
      RunOne(paths, step, step.command, literals);
    }
    session.SayInDetail(place + ": done: " + std::string(step.source));
    ++done;
  }
  CheckLiterals(standard.document, literals);
  return done;
}

/// The standard as XML, once it is sure that this can be read again. The document is then the one
/// that was: there is room for one of them only.
VyrUnicodeString Saved(Standard& standard) {
  VyrUnicodeString text;
  standard.document.SaveInString(text);
  VyrProblem problem = standard.document.GetProblem();
  if (problem.IsEmpty()) {
    standard.document = VyrAnnStandardXMLParser();
    if (standard.document.DecodeXML(text, 0) != 0) problem = standard.document.GetProblem();
  }
  if (!problem.IsEmpty()) {
    throw Failure{kInvalidInput, standard.file, 0,
                  "the commands leave what cannot be saved: " + std::string(problem.text.View())};
  }
  if (standard.version >= 0 && standard.document.GetVersion() < 0) {
    throw Failure{kInvalidInput, standard.file, 0,
                  "after the commands " + VersionProblem(standard.document)};
  }
  return text;
}

void CheckUsage(const Options& options) {
  const auto refuse = [](const char* text) { throw Failure{kUsage, "", 0, text}; };
  if (options.commands.empty() == options.script.empty()) {
    refuse(
        "edit takes commands with -c or a script with -f, one of the two; see holstd edit "
        "--help");
  }
  const int targets = (options.output.empty() ? 0 : 1) + (options.folder.empty() ? 0 : 1) +
                      (options.inPlace.isWanted ? 1 : 0);
  if (targets != 1) {
    refuse(
        "edit writes to -o FILE, -d FOLDER or --in-place, one of the three; see holstd edit "
        "--help");
  }
  if (!options.output.empty() && NamesMany(options.files)) {
    refuse("several standards cannot go into one file; give -d FOLDER or --in-place");
  }
  const bool readsInput =
      std::find(options.files.begin(), options.files.end(), "-") != options.files.end();
  if (readsInput && options.output.empty()) {
    refuse("standard input has no name to be saved under; give -o FILE");
  }
  if (readsInput && options.script == "-") {
    refuse("standard input cannot be both the standard and the script; give a file for one");
  }
}

std::string TargetOf(const Options& options, const std::string& file) {
  if (options.inPlace.isWanted) return file;
  return options.folder.empty() ? options.output : TargetIn(options.folder, file);
}

void CheckTarget(const Options& options, const std::string& file, const std::string& target) {
  if (options.inPlace.isWanted) return RefuseNameInPlace(file);
  if (file != "-" && IsSameFile(FileOrStandard(file).file, target)) {
    throw Failure{kUndecided, target, 0,
                  "is the standard itself; to replace it give --in-place instead"};
  }
  if (!options.script.empty() && IsSameFile(options.script, target)) {
    throw Failure{kUndecided, target, 0,
                  "is the script itself, which would be destroyed; name another target"};
  }
}

/// The folder of the results is made where there is none.
void MakeFolder(const Options& options) {
  std::error_code error;
  if (!options.folder.empty()) std::filesystem::create_directories(options.folder, error);
}

ExitStatus EditFile(const Options& options, const std::string& file, const Steps& steps,
                    const Session& session) {
  const std::string target = TargetOf(options, file);
  CheckTarget(options, file, target);
  Standard standard = ReadStandard(file);
  const auto newerBefore = FindNewerContent(standard);
  const long done = RunAll(standard, steps, session);
  if (done == 0 && options.inPlace.isWanted) {
    session.Say(target + ": left as it is, no command is for it");
    return kDone;
  }
  const VyrUnicodeString text = Saved(standard);
  if (const auto said = DatedBackByCommands(newerBefore, FindNewerContent(standard))) {
    session.Warn(target, *said);
  }
  const std::string talk = Counted(done, "command") + " done";
  MakeFolder(options);
  const VyrFileChange change = options.inPlace.isWanted
                                   ? ReplaceInPlace(target, text.View(), options.inPlace)
                                   : WriteResult(target, text.View(), options.inPlace);
  session.Say(TalkOf(target, change, talk));
  return kDone;
}

/// Of several standards what is wrong with a command says also which one it was for.
Failure FailureOf(const std::string& file, const Steps& steps, const Failure& failure) {
  const bool isOfCommand =
      std::any_of(steps.All().begin(), steps.All().end(),
                  [&](const Step& step) { return step.place == failure.place; });
  if (!isOfCommand) return failure;
  const std::string line = failure.line > 0 ? ":" + std::to_string(failure.line) : "";
  return {failure.status, file, 0, failure.place + line + ": " + failure.text};
}

/// Each file is edited whole or not at all, whatever becomes of the others.
ExitStatus EditFiles(const Options& options, Session& session) {
  CheckUsage(options);
  const Steps steps(options);
  ExitStatus worst = kDone;
  const std::vector<std::string> files = FilesOf(options.files, session, worst);
  std::vector<UpgradeInput> inputs;
  for (const std::string& file : files) inputs.push_back({file, TargetOf(options, file)});
  RefuseSameTargets(inputs);
  const bool areMany = NamesMany(options.files);
  const ExitStatus status = ForEachFile(session, files, [&](const std::string& file) {
    try {
      return EditFile(options, file, steps, session);
    } catch (const Failure& failure) {
      if (!areMany) throw;
      throw FailureOf(file, steps, failure);
    }
  });
  return std::max(status, worst);
}

}  // namespace

Action Edit::Register(Arguments& command) {
  auto options = std::make_shared<Options>();
  command.AddFiles(options->files);
  command.AddOptions("-c,--command", options->commands, "\"VERB COMMAND\"",
                     "A command, as a script has it; may be repeated");
  command
      .AddOption("-f,--file", options->script, "SCRIPT",
                 "Script with a command a line, - for standard input")
      .TakesPath();
  command.AddOutput(options->output);
  command.AddOption("-d,--directory", options->folder, "FOLDER", "Folder for the results")
      .TakesPath();
  AddInPlace(command, options->inPlace, "Replace each FILE by the result");
  command.AddExamples(
      {"holstd edit ISO.xml -o site.xml -c 'change Root.Dimension.DIMLTail:12.5'",
       "holstd edit site.xml --in-place -c 'node Root:Site' \\",
       "    -c 'value Root.Site:Owner:string:Design office'",
       "holstd edit ISO.xml -o site.xml -f site.txt -v", "holstd edit sites --in-place -f site.txt",
       "holstd edit sites/*.xml -d edited -c 'each-change Root.Styles.Text .Font.Size:3.5'"},
      std::string("Commands are needed, and a target.\n"
                  "Verbs: node, instance, value, field, change, delete, each, each-node,\n"
                  "each-change.\n"
                  "A target is written when every command could be done, else not at all. Of\n"
                  "several standards one that fails stops no other.\n\n") +
          kBackupNote);
  return [options](Session& session) { return EditFiles(*options, session); };
}
