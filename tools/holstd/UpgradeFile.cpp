#include "UpgradeFile.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <optional>
#include <vector>

#include "InputFile.h"
#include "Reports.h"
#include "Signals.h"
#include "Standard.h"
#include "StandardSnapshot.h"

namespace {

using Change = VyrAnnStandardChange;

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

/// Reads the standard; throws `Failure` for what no upgrade can begin with.
void Decode(VyrDrwParseStandard& converter, const std::string& file) {
  converter.Decode();
  const VyrProblem problem = converter.GetProblem();
  if (!problem.IsEmpty() || converter.GetVersion() < 0) {
    Standard standard = ReadStandard(file);  // says what is wrong, of a newer file above all
    // A device may fail once only.
    if (!problem.IsEmpty()) {
      throw Failure{kInvalidInput, file, problem.line, std::string(problem.text.View())};
    }
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
std::vector<Step> RunChain(VyrDrwParseStandard& converter, const UpgradeManner& manner,
                           const std::string& file, const Session& session) {
  std::vector<Step> steps;
  std::optional<StandardSnapshot> before;
  const bool wantsChanges = manner.isDryRun || session.isVerbose;
  if (wantsChanges) before.emplace(converter.GetDocument());
  const ReportRecorder recorder;
  std::size_t reported = 0;
  VyrDrwParseStandardUpgradeOptions upgrade = manner.chain.ForLibrary();
  const HRESULT result =
      converter.Upgrade(manner.chain.target, upgrade,
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

/// The result as XML.
std::string TextOf(VyrDrwParseStandard& converter, const std::string& file) {
  VyrUnicodeString text;
  const ReportRecorder recorder;
  converter.GetDocument().SaveInString(text);
  const VyrProblem problem = converter.GetDocument().GetProblem();
  if (problem.IsEmpty()) return std::string(text.View());
  throw Failure{kNotWritten, file, 0, std::string(problem.text.View())};
}

void Save(VyrDrwParseStandard& converter, const std::string& target) {
  std::error_code error;
  const auto folder = std::filesystem::path(target).parent_path();
  if (!folder.empty()) std::filesystem::create_directories(folder, error);
  const ReportRecorder recorder;
  const SignalsWait wait;
  if (VyrSucceeded(converter.SaveToFile(target.c_str()))) return;
  throw Failure{kNotWritten, target, 0, std::string(converter.GetProblem().text.View())};
}

/// Refuses what cannot be written to before it is read.
void CheckTarget(const UpgradeInput& input, const UpgradeManner& manner) {
  if (input.target.empty() || input.file == "-") return;
  std::error_code error;
  const auto status = std::filesystem::status(input.file, error);
  if (manner.inPlace.isWanted && exists(status) && !is_regular_file(status)) {
    throw Failure{kNotWritten, input.file, 0,
                  "is not a regular file and cannot be replaced; give -o FILE"};
  }
  if (!manner.inPlace.isWanted && IsSameFile(input.file, input.target)) {
    throw Failure{kUndecided, input.target, 0,
                  "is the standard itself; to replace it give --in-place instead"};
  }
}

/// Writes the result to where it belongs, and says so.
void Write(VyrDrwParseStandard& converter, const UpgradeInput& input, const UpgradeManner& manner,
           const Session& session, std::size_t steps, Json& report) {
  const auto say = [&](const std::string& talk) {
    manner.isBatch ? session.SayInDetail(talk) : session.Say(talk);
  };
  report["result"] = "unchanged";
  if (steps == 0 && manner.inPlace.isWanted) {
    return say(input.file + ": left as it is, nothing to do");
  }
  const std::string done = Counted(static_cast<long>(steps), "step") + " from version " +
                           std::to_string(converter.GetVersion());
  if (!manner.inPlace.isWanted) {
    Save(converter, input.target);
    report["result"] = "written";
    report["output"] = input.target;
    return say(input.target + ": written, " + done);
  }
  const VyrFileChange change =
      ReplaceInPlace(input.file, TextOf(converter, input.file), manner.inPlace);
  if (change.result == VyrFileChange::Result::Done) {
    report["result"] = "written";
    report["output"] = input.target;
  }
  if (!change.kept.empty()) report["backup"] = change.kept;
  say(TalkOf(input.file, change, done));
}

/// Throws `Failure`; the report then holds what was found out before.
ExitStatus Upgrade(const UpgradeInput& input, const UpgradeManner& manner, Session& session,
                   Json& report) {
  CheckTarget(input, manner);
  const InputFile file(input.file);
  VyrDrwParseStandard converter(file.Path());
  Decode(converter, input.file == "-" ? file.Path() : input.file);
  report["from"] = converter.GetVersion();
  const std::vector<Step> steps = RunChain(converter, manner, input.file, session);
  report["to"] = steps.empty() ? converter.GetVersion() : steps.back().version;
  if (manner.json) {
    report["steps"] = Json::array();
    for (const Step& step : steps) report["steps"].push_back(AsJson(step));
  } else if (manner.isDryRun || session.isVerbose) {
    PrintSteps(input.file, steps, session);
  }
  if (!manner.isDryRun) {
    Write(converter, input, manner, session, steps.size(), report);
    return kDone;
  }
  report["result"] = steps.empty() ? "current" : "pending";
  return steps.empty() ? kDone : kNegativeAnswer;
}

/// The members that every entry has, in the order in which people read them.
Json NewReport(const std::string& file) {
  Json report;
  report["file"] = file;
  report["result"] = "failed";
  report["status"] = kDone;
  return report;
}

void Fail(Upgraded& upgraded, const Failure& failure, const Session& session) {
  session.Complain(failure);
  upgraded.status = failure.status;
  upgraded.report["result"] = "failed";
  Json error;
  error["file"] = failure.place;
  if (failure.line > 0) error["line"] = failure.line;
  error["text"] = failure.text;
  upgraded.report["error"] = std::move(error);
}

}  // namespace

Upgraded UpgradeFile(const UpgradeInput& input, const UpgradeManner& manner, Session& session) {
  Upgraded upgraded = {kDone, NewReport(input.file)};
  try {
    upgraded.status = Upgrade(input, manner, session, upgraded.report);
  } catch (const Failure& failure) {
    Fail(upgraded, failure, session);
  } catch (const std::exception& exception) {
    Fail(upgraded,
         {kInvalidInput, input.file, 0, std::string("internal error: ") + exception.what()},
         session);
  }
  upgraded.report["status"] = upgraded.status;
  return upgraded;
}

Upgraded NotUpgraded(const std::string& file, const Failure& failure, const Session& session) {
  Upgraded upgraded = {kDone, NewReport(file)};
  Fail(upgraded, failure, session);
  upgraded.report["status"] = upgraded.status;
  return upgraded;
}
