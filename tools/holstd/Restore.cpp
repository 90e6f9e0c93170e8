#include <algorithm>
#include <memory>

#include "Arguments.h"
#include "InPlace.h"
#include "Signals.h"
#include "Subcommands.h"
#include "UpgradeInputs.h"
#include "VyrBackups.h"

namespace {

using Result = VyrFileChange::Result;

struct Options {
  std::vector<std::string> files;
  bool hasNoBackup = false;
};

ExitStatus StatusOf(Result result) {
  switch (result) {
    case Result::Done:
    case Result::Unchanged:
      return kDone;
    case Result::NoBackup:
      return kNegativeAnswer;
    case Result::BadBackup:
      return kInvalidInput;
    case Result::NotKept:
    case Result::NoName:
    case Result::Failed:
    case Result::NotUsedUp:
      return kNotWritten;
  }
  return kNotWritten;
}

/// What a user can do about it.
std::string Advice(Result result) {
  switch (result) {
    case Result::NoBackup:
      return "; convert, edit and upgrade make one of what they replace";
    case Result::BadBackup:
      return "; nothing was changed, and with it out of the way an older backup would be restored";
    case Result::NotUsedUp:
      return "; restoring again would bring back the same";
    default:
      return AdviceOnKeeping(result);
  }
}

bool IsNamed(const Options& options, const std::string& file) {
  return std::find(options.files.begin(), options.files.end(), file) != options.files.end();
}

/// Returns false when a standard of a folder has no backup.
bool RestoreFile(const Options& options, const std::string& file, const Session& session) {
  const VyrReplaced replaced = options.hasNoBackup ? VyrReplaced::Dropped : VyrReplaced::Kept;
  const SignalsWait wait;
  const VyrFileChange change = VyrRestoreFile(file, replaced);
  if (change.result == Result::NoBackup && !IsNamed(options, file)) return false;
  if (change.result != Result::Done) {
    throw Failure{StatusOf(change.result), change.file, 0, change.problem + Advice(change.result)};
  }
  session.Say(file + ": restored from " + change.backup +
              (change.kept.empty() ? "" : "; what it held is in " + change.kept));
  return true;
}

/// Of a folder what has a backup is restored.
ExitStatus RestoreFiles(const Options& options, Session& session) {
  if (IsNamed(options, "-")) {
    throw Failure{kUsage, "", 0, "standard input has no backup; name a file"};
  }
  bool isAnyRestored = false;
  const ExitStatus worst = ForEachStandard(session, options.files, [&](const std::string& file) {
    if (RestoreFile(options, file, session)) isAnyRestored = true;
    return kDone;
  });
  if (isAnyRestored || worst != kDone) return worst;
  throw Failure{kNegativeAnswer, options.files.front(), 0,
                "no standard in it has a backup" + Advice(Result::NoBackup)};
}

}  // namespace

Action Restore::Register(Arguments& command) {
  auto options = std::make_shared<Options>();
  command.AddWords("FILE", options->files, "Standards that were replaced, or folders of such")
      .Required()
      .TakesPath();
  command.AddFlag("--no-backup", options->hasNoBackup, "Do not keep what FILE holds now");
  command.AddExamples(
      {"holstd restore site.xml", "holstd restore sites/*.xml"},
      std::string(kBackupNote) +
          "\n\n"
          "FILE gets the content and the time of its newest backup, which is used up by it;\n"
          "restoring again goes one further back. What FILE held before is kept as\n"
          "FILE.undone, FILE.undone.1 and so on. A FILE that was deleted is restored, too.\n"
          "The status is 1 when there is no backup.");
  return [options](Session& session) { return RestoreFiles(*options, session); };
}
