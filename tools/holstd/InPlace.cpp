#include "InPlace.h"

#include <filesystem>

#include "Failure.h"
#include "MemoryShortage.h"
#include "Signals.h"
#include "VyrFiles.h"

const char* const kBackupNote =
    "What a result replaces is kept beside it as FILE.bak, FILE.bak.1, FILE.bak.2 and so on, the\n"
    "highest number being the newest; holstd restore brings it back. A file that holds the same\n"
    "already is left alone. Of a symbolic link the file is replaced that it leads to, and the\n"
    "backups stand beside the link.";

void AddInPlace(Arguments& command, InPlaceOptions& options, const std::string& description) {
  command.AddFlag("--in-place", options.isWanted, description);
  AddNoBackup(command, options);
}

void AddNoBackup(Arguments& command, InPlaceOptions& options) {
  command.AddFlag("--no-backup", options.hasNoBackup, "Do not keep what a result replaces");
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
  RequireMemory();
  VyrFileChange change = VyrReplaceFile(file, text, replaced);
  if (change.result == Result::Done || change.result == Result::Unchanged) return change;
  throw Failure{kNotWritten, change.file, 0, change.problem + AdviceOnKeeping(change.result)};
}

VyrFileChange WriteResult(const std::string& target, std::string_view text,
                          const InPlaceOptions& options) {
  std::error_code error;
  const auto type = std::filesystem::status(target, error).type();
  if (type != std::filesystem::file_type::fifo && type != std::filesystem::file_type::character) {
    return ReplaceInPlace(target, text, options);
  }
  const SignalsWait wait;
  RequireMemory();
  if (const std::string problem = VyrSaveFile(target, text); !problem.empty()) {
    throw Failure{kNotWritten, target, 0, problem};
  }
  return {VyrFileChange::Result::Done, target, {}, {}, {}};
}

std::string TalkOf(const std::string& file, const VyrFileChange& change, const std::string& done) {
  if (change.result == VyrFileChange::Result::Unchanged) {
    return file + ": left as it is, it would hold the same";
  }
  return file + ": written, " + done +
         (change.kept.empty() ? "" : "; what it held is in " + change.kept);
}
