#include "VyrBackups.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <filesystem>
#include <optional>
#include <thread>

#include "VyrFileAttributes.h"
#include "VyrFiles.h"
#include "VyrSystemText.h"
#include "VyrTemporaryFile.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using Result = VyrFileChange::Result;

constexpr std::string_view kBackup = ".bak";
constexpr std::string_view kUndone = ".undone";

// --- A file that other processes leave alone -----------------------------------------------------

enum class Links { Followed, Refused };

/// A regular file, locked as long as this object lives, where the file system has locks.
class HeldFile {
 public:
  /// What went wrong, or nothing. A file that does not exist is nothing wrong.
  std::string Hold(const std::string& path, Links links, Clock::time_point deadline) {
    do {
      if (std::string problem = Open(path, links); !problem.empty() || !Exists()) return problem;
      if (!Lock(deadline)) return "is being saved by another process";
      // Whoever held it may have put another file into its place.
    } while (!IsStillAt(path, links));
    return {};
  }

  bool Exists() const { return file_.IsOpen(); }
  const std::string& Path() const { return path_; }
  const struct stat& Status() const { return status_; }

 private:
  std::string Open(const std::string& path, Links links) {
    path_ = path;
    file_ = VyrDescriptor();
    // Looked at first: to open a device or a pipe may have effects of its own.
    const int found =
        links == Links::Followed ? ::stat(path.c_str(), &status_) : ::lstat(path.c_str(), &status_);
    if (found != 0) return errno == ENOENT ? "" : "cannot be opened: " + VyrSystemText(errno);
    if (S_ISDIR(status_.st_mode)) return "is a folder, not a file";
    if (!S_ISREG(status_.st_mode)) return "is not a regular file";
    const int flags =
        O_RDONLY | O_NONBLOCK | O_CLOEXEC | (links == Links::Refused ? O_NOFOLLOW : 0);
    file_ = VyrDescriptor(::open(path.c_str(), flags));
    if (!file_.IsOpen()) return errno == ENOENT ? "" : "cannot be opened: " + VyrSystemText(errno);
    return {};
  }

  /// False when another process keeps it for too long. Without locks files are taken as they come.
  bool Lock(Clock::time_point deadline) const {
    constexpr std::chrono::milliseconds pause{5};
    while (::flock(file_.Get(), LOCK_EX | LOCK_NB) != 0) {
      if (errno == EINTR) continue;
      if (errno != EWOULDBLOCK) return true;
      if (Clock::now() >= deadline) return false;
      std::this_thread::sleep_for(pause);
    }
    return true;
  }

  bool IsStillAt(const std::string& path, Links links) {
    struct stat there {};
    const int found =
        links == Links::Followed ? ::stat(path.c_str(), &there) : ::lstat(path.c_str(), &there);
    if (::fstat(file_.Get(), &status_) != 0 || found != 0) return false;
    return there.st_dev == status_.st_dev && there.st_ino == status_.st_ino;
  }

  VyrDescriptor file_;
  std::string path_;
  struct stat status_ {};
};

// --- Copies --------------------------------------------------------------------------------------

/// Gives a new file that content and all that the original has, its times too; on the disk then.
/// What went wrong, or nothing.
std::string Fill(VyrTemporaryFile& copy, const HeldFile& original, std::string_view content) {
  const int file = copy.File().Get();
  const std::array<timespec, 2> times = {original.Status().st_atim, original.Status().st_mtim};
  const bool isDone = copy.File().IsOpen() && VyrWriteAll(file, content) &&
                      VyrTakeOverAttributes(file, original.Path(), original.Status()) &&
                      ::futimens(file, times.data()) == 0 &&
                      VyrUninterrupted([=] { return ::fsync(file); }) == 0 && copy.File().Close();
  return isDone ? std::string() : VyrSystemText(errno);
}

/// For nobody but this process until it has the permissions of the original.
constexpr mode_t kForItsWriterOnly = 0600;

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
  const std::string start = fs::path(path).filename().string() + std::string(suffix);
  std::error_code error;
  fs::directory_iterator entry(VyrFolderOf(path), error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    if (!name.starts_with(start)) continue;
    const std::optional<int> number = NumberOf(std::string_view(name).substr(start.size()));
    if (number) highest = std::max(highest, *number);
  }
  const bool isNoFolder = error == std::errc::no_such_file_or_directory;
  return !error || isNoFolder ? "" : "its folder cannot be listed: " + VyrSystemText(error.value());
}

/// Keeps the content of a file beside it under a name that nothing has. Returns what went wrong, or
/// nothing.
std::string Keep(const std::string& path, std::string_view suffix, const HeldFile& file,
                 std::string_view content, std::string& kept) {
  VyrTemporaryFile copy(path, kForItsWriterOnly);
  if (std::string problem = Fill(copy, file, content); !problem.empty()) return problem;
  for (;;) {
    int highest = -1;
    if (std::string problem = FindHighest(path, suffix, highest); !problem.empty()) return problem;
    if (highest == kMostNumber) return "there is no higher number than the last one's";
    const std::string name = NumberedName(path, suffix, highest + 1);
    if (copy.RenameToNew(name)) {
      VyrSyncFolder(VyrFolderOf(name));
      kept = name;
      return {};
    }
    if (errno != EEXIST) return VyrSystemText(errno);  // else another process was first
  }
}

// --- Replace and restore -------------------------------------------------------------------------

VyrFileChange Trouble(Result result, const std::string& file, const std::string& problem) {
  return {result, file, problem, {}, {}};
}

VyrFileChange NotKept(const std::string& path, std::string_view suffix,
                      const std::string& problem) {
  return Trouble(Result::NotKept, path,
                 "what it holds cannot be kept as " + fs::path(path).filename().string() +
                     std::string(suffix) + ": " + problem);
}

/// The save failed: what was kept is still in its place.
VyrFileChange TakeBack(const std::string& kept, const std::string& path,
                       const std::string& problem) {
  if (!kept.empty()) ::unlink(kept.c_str());
  return Trouble(Result::Failed, path, problem);
}

std::string MakeFile(const std::string& path, const HeldFile& backup, std::string_view content) {
  std::string target = path;
  if (!VyrFollowLinks(target)) return "cannot be written: " + VyrSystemText(errno);
  VyrTemporaryFile copy(target, kForItsWriterOnly);
  if (std::string problem = Fill(copy, backup, content); !problem.empty()) {
    return "cannot be written: " + problem;
  }
  if (!copy.RenameToNew(target)) return "cannot be written: " + VyrSystemText(errno);
  VyrSyncFolder(VyrFolderOf(target));
  return {};
}

/// Restores a file from a backup, both held.
VyrFileChange RestoreFrom(const std::string& path, const HeldFile& file, const std::string& name,
                          const HeldFile& backup, VyrReplaced replaced) {
  std::string content;
  if (const std::string problem = VyrReadFile(name, content); !problem.empty()) {
    return Trouble(Result::BadBackup, name, problem);
  }
  std::string kept;
  if (file.Exists() && replaced == VyrReplaced::Kept) {
    std::string present;
    std::string problem = VyrReadFile(path, present);
    if (problem.empty()) problem = Keep(path, kUndone, file, present, kept);
    if (!problem.empty()) return NotKept(path, kUndone, problem);
  }
  const std::string problem = file.Exists() ? VyrSaveFile(path, content, VyrModificationTime(name))
                                            : MakeFile(path, backup, content);
  if (!problem.empty()) return TakeBack(kept, path, problem);
  if (::unlink(name.c_str()) != 0) {
    const std::string reason = VyrSystemText(errno);
    return {Result::NotUsedUp, name, "is restored, but cannot be removed: " + reason, kept, name};
  }
  VyrSyncFolder(VyrFolderOf(name));
  return {Result::Done, path, {}, kept, name};
}

}  // namespace

VyrFileChange VyrReplaceFile(VyrUnicodeView path, std::string_view content, VyrReplaced replaced,
                             std::chrono::milliseconds patience) {
  const std::string native = VyrNativePath(path);
  HeldFile file;
  std::string problem = file.Hold(native, Links::Followed, Clock::now() + patience);
  if (!problem.empty()) return Trouble(Result::Failed, native, problem);
  std::string kept;
  if (file.Exists()) {
    std::string present;
    problem = VyrReadFile(native, present);
    if (!problem.empty()) return Trouble(Result::Failed, native, problem);
    if (present == content) return {Result::Unchanged, native, {}, {}, {}};
    if (replaced == VyrReplaced::Kept) problem = Keep(native, kBackup, file, present, kept);
    if (!problem.empty()) return NotKept(native, kBackup, problem);
  }
  problem = VyrSaveFile(native, content);
  if (!problem.empty()) return TakeBack(kept, native, problem);
  return {Result::Done, native, {}, kept, {}};
}

VyrFileChange VyrRestoreFile(VyrUnicodeView path, VyrReplaced replaced,
                             std::chrono::milliseconds patience) {
  const std::string native = VyrNativePath(path);
  const Clock::time_point deadline = Clock::now() + patience;
  for (;;) {
    HeldFile file;
    std::string problem = file.Hold(native, Links::Followed, deadline);
    int newest = -1;
    if (problem.empty()) problem = FindHighest(native, kBackup, newest);
    if (!problem.empty()) return Trouble(Result::Failed, native, problem);
    if (newest < 0) return Trouble(Result::NoBackup, native, "there is no backup of it");
    const std::string name = NumberedName(native, kBackup, newest);
    HeldFile backup;
    problem = backup.Hold(name, Links::Refused, deadline);
    if (!problem.empty()) return Trouble(Result::BadBackup, name, problem);
    // Without a file to hold, another process may have made it of this very backup meanwhile.
    struct stat status {};
    const bool isMadeMeanwhile = !file.Exists() && ::stat(native.c_str(), &status) == 0;
    if (!backup.Exists() || isMadeMeanwhile) continue;
    return RestoreFrom(native, file, name, backup, replaced);
  }
}
