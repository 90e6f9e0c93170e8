#include "InPlace.h"

#include "Failure.h"
#include "Signals.h"

const char* const kBackupNote =
    "With --in-place what FILE held is kept beside it as FILE.bak, FILE.bak.1, FILE.bak.2 and so\n"
    "on, the highest number being the newest; holstd restore brings it back. Of a symbolic link\n"
    "the file is replaced that it leads to, and the backups stand beside the link.";

void AddInPlace(Arguments& command, InPlaceOptions& options, const std::string& description) {
  const Argument inPlace = command.AddFlag("--in-place", options.isWanted, description);
  command.AddFlag("--no-backup", options.hasNoBackup, "With --in-place: do not keep what FILE held")
      .Needs(inPlace);
}

std::string AdviceOnKeeping(VyrFileChange::Result result) {
  using Result = VyrFileChange::Result;
  if (result == Result::NotKept) return "; nothing was changed";
  if (result == Result::NoName) return "; nothing was changed, and --no-backup would go without";
  return {};
}

VyrFileChange ReplaceInPlace(const std::string& file, std::string_view text,
                             const InPlaceOptions& options) {
  using Result = VyrFileChange::Result;
  const VyrReplaced replaced = options.hasNoBackup ? VyrReplaced::Dropped : VyrReplaced::Kept;
  const SignalsWait wait;
  VyrFileChange change = VyrReplaceFile(file, text, replaced);
  if (change.result == Result::Done || change.result == Result::Unchanged) return change;
  throw Failure{kNotWritten, change.file, 0, change.problem + AdviceOnKeeping(change.result)};
}

std::string TalkOf(const std::string& file, const VyrFileChange& change, const std::string& done) {
  if (change.result == VyrFileChange::Result::Unchanged) {
    return file + ": left as it is, it would hold the same";
  }
  return file + ": written, " + done +
         (change.kept.empty() ? "" : "; what it held is in " + change.kept);
}
