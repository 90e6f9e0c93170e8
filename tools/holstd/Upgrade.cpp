#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>

#include "Arguments.h"
#include "Format.h"
#include "InputFile.h"
#include "Standard.h"
#include "StandardSnapshot.h"
#include "Subcommands.h"
#include "UpgradeOptions.h"

namespace {

using Change = VyrAnnStandardChange;

struct Options {
  std::vector<std::string> files;
  std::string output;
  std::string folder;
  bool isInPlace = false;
  bool isDryRun = false;
  bool json = false;
  UpgradeOptions upgrade;
};

/// What one step did.
struct Step {
  std::string name;
  int version;
  std::vector<Change> changes;

  long Count(Change::Kind kind) const {
    return std::count_if(changes.begin(), changes.end(),
                         [=](const Change& change) { return change.kind == kind; });
  }
};

const char* KindName(Change::Kind kind) {
  switch (kind) {
    case Change::Kind::Added:
      return "added";
    case Change::Kind::Changed:
      return "changed";
    case Change::Kind::Deleted:
      return "deleted";
  }
  return "";
}

std::string LineOf(const Session& session, const Change& change) {
  const std::string path = Printable(change.path.View());
  const std::string before = Printable(change.before.View());
  const std::string after = Printable(change.after.View());
  switch (change.kind) {
    case Change::Kind::Added:
      return session.Painted(Session::Paint::Good, "  + " + path) + "  " + after + "\n";
    case Change::Kind::Changed:
      return "  ~ " + path + "  " + before + " -> " + after + "\n";
    case Change::Kind::Deleted:
      return session.Painted(Session::Paint::Bad, "  - " + path) + "  " + before + "\n";
  }
  return "";
}

std::string Summary(const Step& step) {
  return "to " + std::to_string(step.version) + " (" + step.name +
         "): " + std::to_string(step.Count(Change::Kind::Added)) + " added, " +
         std::to_string(step.Count(Change::Kind::Changed)) + " changed, " +
         std::to_string(step.Count(Change::Kind::Deleted)) + " deleted";
}

Json AsJson(const Step& step) {
  Json json;
  json["step"] = step.name;
  json["version"] = step.version;
  Json changes = Json::array();
  for (const Change& change : step.changes) {
    Json entry;
    entry["change"] = KindName(change.kind);
    entry["path"] = std::string(change.path.View());
    if (change.kind != Change::Kind::Added) entry["before"] = std::string(change.before.View());
    if (change.kind != Change::Kind::Deleted) entry["after"] = std::string(change.after.View());
    changes.push_back(std::move(entry));
  }
  json["changes"] = std::move(changes);
  return json;
}

/// Where the result goes; empty for a dry run.
std::string TargetOf(const Options& options, const std::string& file) {
  if (options.isDryRun) return {};
  if (options.isInPlace) return file;
  if (!options.output.empty()) return options.output;
  return std::filesystem::path(options.folder) / std::filesystem::path(file).filename();
}

void CheckUsage(const Options& options) {
  const auto refuse = [](const char* text) { throw Failure{kUsage, "", 0, text}; };
  const int targets = (options.output.empty() ? 0 : 1) + (options.folder.empty() ? 0 : 1) +
                      (options.isInPlace ? 1 : 0);
  if (targets > 1 || (targets == 0 && !options.isDryRun)) {
    refuse(
        "upgrade writes to -o FILE, -d FOLDER or --in-place, one of the three; see holstd "
        "upgrade --help");
  }
  if (!options.output.empty() && options.files.size() > 1) {
    refuse("several standards cannot go into one file; give -d FOLDER or --in-place");
  }
  const bool readsInput =
      std::find(options.files.begin(), options.files.end(), "-") != options.files.end();
  if (readsInput && !options.isDryRun && options.output.empty()) {
    refuse("standard input has no name to be saved under; give -o FILE");
  }
}

/// Reads the standard; throws `Failure` for what no upgrade can begin with.
void Decode(VyrDrwParseStandard& converter, const std::string& file) {
  converter.Decode();
  if (!converter.GetProblem().IsEmpty() || converter.GetVersion() < 0) {
    Standard standard = ReadStandard(file);  // says what is wrong, of a newer file above all
    throw Failure{kInvalidInput, file, 0, VersionProblem(standard.document)};
  }
  const ReportRecorder recorder;
  if (converter.GetParentStandardId() != 0) return;
  throw Failure{kUndecided, file, 0,
                "the parent standard " + Quoted(converter.GetParentStandard().View()) +
                    " is none of ISO, JIS, ANSI, ASME; set Root.Dimension.ParentStandard to the "
                    "one it was derived from"};
}

/// Runs the chain and returns its steps, with their changes when these are wanted.
std::vector<Step> RunChain(VyrDrwParseStandard& converter, const Options& options,
                           const std::string& file, const Session& session) {
  std::vector<Step> steps;
  std::optional<StandardSnapshot> before;
  const bool wantsChanges = options.isDryRun || session.isVerbose;
  if (wantsChanges) before.emplace(converter.GetDocument());
  const ReportRecorder recorder;
  std::size_t reported = 0;
  VyrDrwParseStandardUpgradeOptions upgrade = options.upgrade.ForLibrary();
  const HRESULT result =
      converter.Upgrade(options.upgrade.target, upgrade,
                        [&](const char* name, int version, VyrAnnStandardXMLParser& document) {
                          steps.push_back({name, version, {}});
                          if (wantsChanges) {
                            steps.back().changes = before->ChangesIn(document);
                            before.emplace(document);
                          }
                          WarnOfReports(session, file, name, recorder, reported);
                          reported = recorder.failedChecks.size();
                        });
  if (VyrSucceeded(result)) return steps;
  throw Failure{kInvalidInput, file, 0, "cannot be upgraded"};
}

void PrintSteps(const std::string& file, const std::vector<Step>& steps, Session& session) {
  session.Print(
      Printable(file) + ": " +
      (steps.empty() ? "nothing to do" : Counted(static_cast<long>(steps.size()), "step")) + "\n");
  for (const Step& step : steps) {
    session.Print(Summary(step) + "\n");
    for (const Change& change : step.changes) session.Print(LineOf(session, change));
  }
}

void Save(VyrDrwParseStandard& converter, const std::string& target) {
  std::error_code error;
  const auto folder = std::filesystem::path(target).parent_path();
  if (!folder.empty()) std::filesystem::create_directories(folder, error);
  const ReportRecorder recorder;
  if (VyrSucceeded(converter.SaveToFile(target.c_str()))) return;
  throw Failure{kNotWritten, target, 0, std::string(converter.GetProblem().text.View())};
}

ExitStatus UpgradeFile(const Options& options, const std::string& file, Session& session,
                       Json& report) {
  const std::string target = TargetOf(options, file);
  if (!target.empty() && !options.isInPlace && file != "-" && IsSameFile(file, target)) {
    throw Failure{kUndecided, target, 0,
                  "is the standard itself; to replace it give --in-place instead"};
  }
  const InputFile input(file);
  VyrDrwParseStandard converter(input.Path());
  Decode(converter, file == "-" ? input.Path() : file);
  const std::vector<Step> steps = RunChain(converter, options, file, session);
  if (options.json) {
    Json entry;
    entry["file"] = file;
    entry["from"] = converter.GetVersion();
    entry["to"] = steps.empty() ? converter.GetVersion() : steps.back().version;
    entry["steps"] = Json::array();
    for (const Step& step : steps) entry["steps"].push_back(AsJson(step));
    report.push_back(std::move(entry));
  } else if (options.isDryRun || session.isVerbose) {
    PrintSteps(file, steps, session);
  }
  if (options.isDryRun) return steps.empty() ? kDone : kNegativeAnswer;
  if (steps.empty() && options.isInPlace) {
    session.Say(file + ": left as it is, nothing to do");
    return kDone;
  }
  Save(converter, target);
  session.Say(target + ": written, " + Counted(static_cast<long>(steps.size()), "step") +
              " from version " + std::to_string(converter.GetVersion()));
  return kDone;
}

ExitStatus UpgradeFiles(const Options& options, Session& session) {
  CheckUsage(options);
  Json report = Json::array();
  const ExitStatus status = ForEachFile(session, options.files, [&](const std::string& file) {
    return UpgradeFile(options, file, session, report);
  });
  if (options.json) session.Print(JsonText(report));
  return status;
}

}  // namespace

Action Upgrade::Register(CLI::App& command) {
  auto options = std::make_shared<Options>();
  AddFiles(command, options->files);
  AddOutput(command, options->output);
  TakesPath(command.add_option("-d,--directory", options->folder, "Folder for the results")
                ->type_name("FOLDER"));
  command.add_flag("--in-place", options->isInPlace, "Replace each FILE by the result");
  AddUpgradeOptions(command, options->upgrade);
  command.add_flag("--dry-run", options->isDryRun,
                   "Write nothing; print what each step would add, change and delete");
  AddJson(command, options->json);
  AddExamples(command,
              {"holstd upgrade old.xml -o new.xml", "holstd upgrade sites/*.xml -d upgraded",
               "holstd upgrade old.xml --dry-run", "holstd upgrade old.xml -o new.xml --to 150"},
              "With --dry-run the status is 1 when there is something to do.");
  return [options](Session& session) { return UpgradeFiles(*options, session); };
}
