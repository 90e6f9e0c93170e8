#include "UpgradeFile.h"

#include <exception>
#include <filesystem>
#include <new>
#include <optional>
#include <vector>

#include "DatedBack.h"
#include "InputFile.h"
#include "MemoryShortage.h"
#include "Omissions.h"
#include "Reports.h"
#include "Standard.h"
#include "StandardFiles.h"
#include "StandardSnapshot.h"
#include "UpgradeResult.h"
#include "UpgradeSteps.h"

namespace {

/// Refuses a standard for which nobody can say which values the steps should give it.
void CheckParent(const std::string& file, const VyrDrwParseStandard& converter) {
  const ReportRecorder recorder;
  if (converter.GetParentStandardId() != 0) return;
  const std::string parent(converter.GetParentStandard().View());
  if (parent.empty()) {
    throw Failure{kUndecided, file, 0,
                  "does not say which of ISO, JIS, ANSI, ASME it was derived from; "
                  "'Root.Dimension.ParentStandard' says so"};
  }
  throw Failure{kUndecided, file, 0,
                "the parent standard " + Quoted(parent) +
                    " is none of ISO, JIS, ANSI, ASME; set Root.Dimension.ParentStandard to the "
                    "one it was derived from"};
}

/// Reads the standard; throws `Failure` for what no upgrade can begin with.
void Decode(VyrDrwParseStandard& converter, const InputFile& input) {
  const std::string& file = input.Name();
  converter.Decode();
  const VyrProblem problem = converter.GetProblem();
  if (!problem.IsEmpty() || converter.GetVersion() < 0) {
    Standard standard = ReadStandard(input);  // says what is wrong, of a newer file above all
    // A device may fail once only.
    if (!problem.IsEmpty()) {
      throw Failure{kInvalidInput, file, problem.line, std::string(problem.text.View())};
    }
    throw Failure{kInvalidInput, file, 0, VersionProblem(standard.document)};
  }
  // Steps that it has been through would do to their own results what they do to an older standard.
  // Told first: what tells the parent standard may have gone with what tells the version.
  if (const auto newer = VyrFindNewerContent(converter.GetDocument())) {
    throw Failure{kUndecided, file, 0, DatedBackText(*newer)};
  }
  CheckParent(file, converter);
}

/// Refuses a standard that is above the version asked for.
void CheckVersion(const std::string& file, int version, int target) {
  if (target < 0 || version <= target) return;
  throw Failure{kUndecided, file, 0,
                "is of version " + std::to_string(version) + "; no upgrade leads back to " +
                    std::to_string(target) + "; give no --to, or one of at least " +
                    std::to_string(version)};
}

/// Whether anybody looks at what each step changes.
bool WantsChanges(const UpgradeManner& manner, const Session& session) {
  return manner.isDryRun || session.isVerbose;
}

/// Runs the chain and returns its steps, with their changes when these are wanted.
std::vector<UpgradeStep> RunChain(VyrDrwParseStandard& converter, const UpgradeManner& manner,
                                  const std::string& file, const Session& session) {
  std::vector<UpgradeStep> steps;
  std::optional<StandardSnapshot> before;
  const bool wantsChanges = WantsChanges(manner, session);
  if (wantsChanges) before.emplace(converter.GetDocument());
  std::size_t told = 0;
  VyrDrwParseStandardUpgradeOptions upgrade = manner.chain.ForLibrary();
  const HRESULT result =
      converter.Upgrade(manner.chain.target, upgrade,
                        [&](const char* name, int version, VyrAnnStandardXMLParser& document) {
                          steps.push_back({name, version, {}});
                          if (wantsChanges) {
                            StandardSnapshot now(document);
                            steps.back().changes = before->ChangesTo(now);
                            before = std::move(now);
                          }
                          told = WarnOfOmissions(converter, told, version, file, session);
                        });
  WarnOfFurtherOmissions(converter, file, session);
  if (VyrSucceeded(result)) return steps;
  throw Failure{kInvalidInput, file, 0, "cannot be upgraded"};
}

/// Writes the result; the folder is made where there is none.
VyrFileChange Save(VyrDrwParseStandard& converter, const UpgradeInput& input,
                   const InPlaceOptions& inPlace) {
  const VyrUnicodeString text = TextOf(converter, input.file);
  if (inPlace.isWanted) return ReplaceInPlace(input.file, text.View(), inPlace);
  std::error_code error;
  const auto folder = std::filesystem::path(input.target).parent_path();
  if (!folder.empty()) std::filesystem::create_directories(folder, error);
  return WriteResult(input.target, text.View(), inPlace);
}

/// Refuses what cannot be written to before it is read.
void CheckTarget(const UpgradeInput& input, const UpgradeManner& manner) {
  if (input.target.empty() || input.file == "-") return;
  if (manner.inPlace.isWanted) RefuseNameInPlace(input.file);
  std::error_code error;
  const auto status = std::filesystem::status(input.file, error);
  if (manner.inPlace.isWanted && exists(status) && !is_regular_file(status)) {
    throw Failure{kNotWritten, input.file, 0,
                  "is not a regular file and cannot be replaced; give -o FILE"};
  }
  if (!manner.inPlace.isWanted && IsSameFile(FileOrStandard(input.file).file, input.target)) {
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
  // The version asked for may lie between two versions, and the chain ends below it.
  const std::string done = Counted(static_cast<long>(steps), "step") + " from version " +
                           report["from"].dump() + " to " + report["to"].dump();
  const VyrFileChange change = Save(converter, input, manner.inPlace);
  if (change.result == VyrFileChange::Result::Done) {
    report["result"] = "written";
    report["output"] = input.target;
  }
  if (!change.kept.empty()) report["backup"] = change.kept;
  say(TalkOf(input.target, change, done));
}

/// Throws `Failure`; `upgraded` then holds what was found out before.
void Upgrade(const UpgradeInput& input, const UpgradeManner& manner, Session& session,
             Upgraded& upgraded) {
  Json& report = upgraded.report;
  CheckTarget(input, manner);
  const InputFile file(FileOrStandard(input.file).file);
  VyrDrwParseStandard converter(file.Path());
  Decode(converter, file);
  const int version = converter.GetVersion();
  report["from"] = version;
  CheckVersion(input.file, version, manner.chain.target);
  if (version < VyrDrwParseStandard::GetCurrentVersion()) {
    CheckStatedOnce(input.file, converter.GetDocument());
  }
  const bool wasDefined = HasDefinedLiterals(converter.GetDocument());
  const std::vector<UpgradeStep> steps = RunChain(converter, manner, input.file, session);
  const int reached = steps.empty() ? version : steps.back().version;
  if (!steps.empty()) CheckResult(input.file, converter.GetDocument(), reached, wasDefined);
  if (!wasDefined) {
    session.Warn(input.file,
                 "holds values that no enumeration has, so that no application opens it, now or "
                 "after the upgrade; 'holstd check' names them");
  }
  report["to"] = reached;
  const bool wantsChanges = WantsChanges(manner, session);
  if (manner.json) {
    report["steps"] = Json::array();
    for (const UpgradeStep& step : steps) report["steps"].push_back(AsJson(step, wantsChanges));
  } else if (wantsChanges) {
    TellSteps(input.file, steps, manner.isDryRun, session);
  }
  if (!manner.isDryRun) {
    upgraded.untilTold = std::make_unique<SignalsWait>();
    return Write(converter, input, manner, session, steps.size(), report);
  }
  RequireMemory();
  report["result"] = steps.empty() ? "current" : "pending";
  upgraded.status = steps.empty() ? kDone : kNegativeAnswer;
}

/// The members that every entry has, in the order in which people read them.
Json NewReport(const std::string& file) {
  Json report;
  report["file"] = file;
  report["result"] = "failed";
  report["status"] = kDone;
  return report;
}

Failure OutOfMemory(const std::string& file) {
  ForgetMemoryShortage();
  return {kInvalidInput, file, 0, kNeedsMoreMemory};
}

void Report(Upgraded& upgraded, const Failure& failure) {
  upgraded.status = failure.status;
  upgraded.report["result"] = "failed";
  Json error;
  error["file"] = failure.place;
  if (failure.line > 0) error["line"] = failure.line;
  error["text"] = failure.text;
  upgraded.report["error"] = std::move(error);
}

void Fail(Upgraded& upgraded, const Failure& failure, const Session& session) {
  Report(upgraded, failure);
  session.Complain(failure);
}

}  // namespace

Upgraded UpgradeFile(const UpgradeInput& input, const UpgradeManner& manner, Session& session) {
  Upgraded upgraded = {kDone, NewReport(input.file)};
  try {
    Upgrade(input, manner, session, upgraded);
  } catch (const Failure& failure) {
    Fail(upgraded, AsTold(failure), session);
  } catch (const std::bad_alloc&) {
    Fail(upgraded, OutOfMemory(input.file), session);
  } catch (const std::exception& exception) {
    Fail(upgraded,
         {kInvalidInput, input.file, 0, std::string("internal error: ") + exception.what()},
         session);
  }
  upgraded.report["status"] = upgraded.status;
  return upgraded;
}

Upgraded NotUpgradedForMemory(const std::string& file) {
  Upgraded upgraded = {kDone, NewReport(file)};
  Report(upgraded, OutOfMemory(file));
  upgraded.report["status"] = upgraded.status;
  return upgraded;
}

Upgraded NotUpgraded(const std::string& file, const Failure& failure, const Session& session) {
  Upgraded upgraded = {kDone, NewReport(file)};
  Fail(upgraded, failure, session);
  upgraded.report["status"] = upgraded.status;
  return upgraded;
}

Upgraded NotBegun(const std::string& file) {
  Upgraded upgraded = {kNotWritten, NewReport(file)};
  upgraded.report["result"] = "not begun";
  upgraded.report["status"] = upgraded.status;
  return upgraded;
}
