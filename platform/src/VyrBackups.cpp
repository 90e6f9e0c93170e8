#include "VyrBackups.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <optional>
#include <utility>
#include <vector>

#include "VyrEnvironment.h"
#include "VyrFilePlace.h"
#include "VyrFileProblem.h"
#include "VyrFileTimes.h"
#include "VyrFiles.h"
#include "VyrHeldFile.h"
#include "VyrSystemText.h"
#include "VyrTemporaryFile.h"
#include "VyrWithinMemory.h"

namespace {

using Clock = VyrHeldFile::Clock;
using Links = VyrHeldFile::Links;
using Result = VyrFileChange::Result;

constexpr std::string_view kBackup = ".bak";
constexpr std::string_view kUndone = ".undone";

// --- Numbered names ------------------------------------------------------------------------------

constexpr int kMostNumber = 999'999'999;

/// `path` + `suffix`, then the same with ".1", ".2" and so on.
std::string NumberedName(const std::string& path, std::string_view suffix, int number) {
  return path + std::string(suffix) + (number == 0 ? "" : "." + std::to_string(number));
}

/// The number of such a name; nothing for any other text after `path` + `suffix`.
std::optional<int> NumberOf(std::string_view end) {
  if (end.empty()) return 0;
  if (end.size() < 2 || end[0] != '.' || end[1] == '0') return std::nullopt;
  int number = 0;
  const auto [rest, error] = std::from_chars(end.data() + 1, end.data() + end.size(), number);
  const bool isNumber = error == std::errc() && rest == end.data() + end.size();
  return isNumber && number > 0 && number <= kMostNumber ? std::optional(number) : std::nullopt;
}

/// The highest number in use, -1 when none is. Returns what went wrong, or nothing.
std::string FindHighest(const std::string& path, std::string_view suffix, int& highest) {
  highest = -1;
  const std::string start = VyrNameOf(path) + std::string(suffix);
  std::vector<std::string> names;
  if (!VyrListDirectory(VyrFolderOf(path), names) && errno != ENOENT) {
    return VyrNotOpened("its folder cannot be listed: ");
  }
  for (const std::string& name : names) {
    if (!name.starts_with(start)) continue;
    const std::optional<int> number = NumberOf(std::string_view(name).substr(start.size()));
    if (number) highest = std::max(highest, *number);
  }
  return {};
}

// --- Copies --------------------------------------------------------------------------------------

/// For nobody but this process until it has the permissions of the original.
constexpr mode_t kForItsWriterOnly = 0600;

/// Gives a new file that content and all that the original has, its times too; on the disk then.
bool FillLike(VyrTemporaryFile& copy, const VyrHeldFile& original, std::string_view content) {
  const struct stat& status = original.Status();
  return copy.Fill(content, VyrTemporaryFile::Original{original.Path(), status},
                   VyrFileTimes{status.st_atim, status.st_mtim});
}

/// What a file held, kept under a name of its own. It goes with its object unless it `Stays`.
class Kept {
 public:
  Kept() = default;
  Kept(const Kept&) = delete;
  Kept& operator=(const Kept&) = delete;
  ~Kept() {
    if (goes_ && !name_.empty()) ::unlink(name_.c_str());
  }
  /// Asks for no memory: else the name could be lost of a file that is there.
  void Is(std::string&& name) noexcept { name_ = std::move(name); }
  void Stays() noexcept { goes_ = false; }
  const std::string& Name() const { return name_; }

 private:
  std::string name_;
  bool goes_ = true;
};

VyrFileChange Trouble(Result result, const std::string& file, const std::string& problem) {
  return {result, file, problem, {}, {}};
}

VyrFileChange NotKept(Result result, const std::string& path, std::string_view suffix,
                      const std::string& problem) {
  return Trouble(
      result, path,
      "what it holds cannot be kept as " + VyrNameOf(path) + std::string(suffix) + ": " + problem);
}

/// Keeps the content of a file beside it under a name that nothing has. Returns what went wrong, or
/// nothing.
std::optional<VyrFileChange> Keep(const std::string& path, std::string_view suffix,
                                  const VyrHeldFile& file, std::string_view content, Kept& kept) {
  VyrTemporaryFile copy(path, kForItsWriterOnly);
  if (!FillLike(copy, file, content)) {
    return NotKept(Result::NotKept, path, suffix, VyrNotWritten(""));
  }
  const std::string folder = VyrFolderOf(path);
  for (int tried = -1;;) {
    int highest = -1;
    const std::string problem = FindHighest(path, suffix, highest);
    if (!problem.empty()) return NotKept(Result::NotKept, path, suffix, problem);
    // A folder that knows no case has names that are taken though they are not listed.
    tried = std::max(tried, highest);
    if (tried == kMostNumber) {
      return NotKept(Result::NoName, path, suffix,
                     "there is no higher number than the last one's; move older ones elsewhere");
    }
    std::string name = NumberedName(path, suffix, ++tried);
    if (copy.RenameToNew(name)) {
      kept.Is(std::move(name));
      VyrSyncFolder(folder);
      return std::nullopt;
    }
    if (errno == EEXIST) continue;
    const Result result = errno == ENAMETOOLONG ? Result::NoName : Result::NotKept;
    return NotKept(result, path, suffix, VyrNotWritten(""));
  }
}

// --- Replace and restore -------------------------------------------------------------------------

/// What a save came to that failed. `prepared` is what it would have come to.
VyrFileChange NotSaved(VyrFileChange&& prepared, const VyrHeldFile& file, Kept& kept,
                       std::string&& problem) {
  VyrFileChange change = std::move(prepared);
  change.result = Result::Failed;
  change.problem = std::move(problem);
  change.backup.clear();
  if (file.Exists() && file.IsThere()) {
    change.kept.clear();
  } else if (!kept.Name().empty()) {
    // A network file system may have done what it reports as failed: this is all that is left then.
    kept.Stays();
    VyrWithinMemory(
        [&] {
          // At once: a message that ends before the name would be worse than none.
          change.problem +=
              "; it may have been written all the same, what it held is in " + kept.Name();
        },
        [] {});
  }
  return change;
}

std::string MakeFile(const std::string& path, const VyrHeldFile& backup, std::string_view content) {
  std::string target = path;
  if (!VyrFollowLinks(target)) return VyrNotWritten();
  const std::string folder = VyrFolderOf(target);
  VyrTemporaryFile copy(target, kForItsWriterOnly);
  if (!FillLike(copy, backup, content) || !copy.RenameToNew(target)) return VyrNotWritten();
  VyrSyncFolder(folder);
  return {};
}

VyrFileChange Replace(const std::string& path, std::string_view content, VyrReplaced replaced,
                      Clock::time_point deadline) {
  VyrHeldFile file;
  std::string problem = file.Hold(path, Links::Followed, deadline);
  if (!problem.empty()) return Trouble(Result::Failed, path, problem);
  Kept kept;
  if (file.Exists()) {
    std::string present;
    problem = file.Read(present);
    if (!problem.empty()) return Trouble(Result::Failed, path, problem);
    if (present == content) return Trouble(Result::Unchanged, path, {});
    if (replaced == VyrReplaced::Kept) {
      if (const auto trouble = Keep(path, kBackup, file, present, kept)) return *trouble;
    }
  }
  // Before the file is replaced: afterwards nothing may fail, not even a request for memory.
  VyrFileChange change{Result::Done, path, {}, kept.Name(), {}};
  problem = VyrSaveFile(path, content);
  if (!problem.empty()) return NotSaved(std::move(change), file, kept, std::move(problem));
  kept.Stays();
  return change;
}

/// Removes a backup that is restored. `notUsedUp` is what is told when it cannot be.
bool UseUp(const std::string& name, const std::string& folder, VyrFileChange& notUsedUp) {
  if (::unlink(name.c_str()) == 0 || errno == ENOENT) {
    VyrSyncFolder(folder);
    return true;
  }
  const int error = errno;
  VyrWithinMemory(
      [&] { notUsedUp.problem = "is restored, but cannot be removed: " + VyrSystemText(error); },
      [&] { notUsedUp.problem = "is not removed"; });  // so short that it needs no memory
  return false;
}

/// Restores a file from a backup, both held.
VyrFileChange RestoreFrom(const std::string& path, const VyrHeldFile& file,
                          const VyrHeldFile& backup, VyrReplaced replaced) {
  const std::string& name = backup.Path();
  std::string content;
  std::string problem = backup.Read(content);
  if (!problem.empty()) return Trouble(Result::BadBackup, name, problem);
  Kept kept;
  if (file.Exists() && replaced == VyrReplaced::Kept) {
    std::string present;
    problem = file.Read(present);
    if (!problem.empty()) return NotKept(Result::NotKept, path, kUndone, problem);
    if (const auto trouble = Keep(path, kUndone, file, present, kept)) return *trouble;
  }
  // Before the file is replaced: afterwards nothing may fail, not even a request for memory.
  VyrFileChange change{Result::Done, path, {}, kept.Name(), name};
  VyrFileChange notUsedUp{Result::NotUsedUp, name, {}, kept.Name(), name};
  const std::string folder = VyrFolderOf(name);
  problem = file.Exists() ? VyrSaveFile(path, content, VyrModificationTimeOf(backup.Status()))
                          : MakeFile(path, backup, content);
  if (!problem.empty()) return NotSaved(std::move(change), file, kept, std::move(problem));
  kept.Stays();
  if (!UseUp(name, folder, notUsedUp)) return notUsedUp;
  return change;
}

VyrFileChange Restore(const std::string& path, VyrReplaced replaced, Clock::time_point deadline) {
  for (;;) {
    VyrHeldFile file;
    std::string problem = file.Hold(path, Links::Followed, deadline);
    int newest = -1;
    if (problem.empty()) problem = FindHighest(path, kBackup, newest);
    if (!problem.empty()) return Trouble(Result::Failed, path, problem);
    if (newest < 0) return Trouble(Result::NoBackup, path, "there is no backup of it");
    const std::string name = NumberedName(path, kBackup, newest);
    VyrHeldFile backup;
    problem = backup.Hold(name, Links::Refused, deadline);
    if (!problem.empty()) {
      return Trouble(backup.IsLocked() ? Result::Failed : Result::BadBackup, name, problem);
    }
    // Without a file to hold, another process may have made it of this very backup meanwhile.
    struct stat status {};
    const bool isMadeMeanwhile = !file.Exists() && ::stat(path.c_str(), &status) == 0;
    if (backup.Exists() && !isMadeMeanwhile) return RestoreFrom(path, file, backup, replaced);
  }
}

/// Does `work` on a native path; refused when memory runs out.
template <class Work>
VyrFileChange Change(VyrUnicodeView path, Work work) {
  return VyrWithinMemory([&] { return work(VyrNativePath(path)); },
                         [&] {
                           VyrFileChange change;
                           change.result = Result::Failed;
                           VyrSayOutOfMemory(change.problem);
                           VyrWithinMemory([&] { change.file = path; }, [] {});
                           return change;
                         });
}

}  // namespace

VyrFileChange VyrReplaceFile(VyrUnicodeView path, std::string_view content, VyrReplaced replaced,
                             std::chrono::milliseconds patience) {
  const Clock::time_point deadline = Clock::now() + patience;
  return Change(path, [&](const std::string& native) {
    return Replace(native, content, replaced, deadline);
  });
}

VyrFileChange VyrRestoreFile(VyrUnicodeView path, VyrReplaced replaced,
                             std::chrono::milliseconds patience) {
  const Clock::time_point deadline = Clock::now() + patience;
  return Change(path,
                [&](const std::string& native) { return Restore(native, replaced, deadline); });
}
