#include "VyrBackups.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "VyrFiles.h"
#include "VyrSystemText.h"
#include "VyrUtf8.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using Result = VyrFileChange::Result;

constexpr std::string_view kBackup = ".bak";
constexpr std::string_view kUndone = ".undone";

std::string ErrorText(int error) {
  return VyrSystemText(error);
}

std::string FolderOf(const std::string& path) {
  const std::string folder = fs::path(path).parent_path();
  return folder.empty() ? "." : folder;
}

/// An open file, closed with its object.
class OpenFile {
 public:
  OpenFile() = default;
  explicit OpenFile(int descriptor) : descriptor_(descriptor) {}
  OpenFile(OpenFile&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  OpenFile& operator=(OpenFile&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  ~OpenFile() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }
  bool IsOpen() const { return descriptor_ >= 0; }
  int Get() const { return descriptor_; }

 private:
  int descriptor_ = -1;
};

/// Makes new names and vanished ones survive a power failure, where the file system can.
void SyncFolderOf(const std::string& path) {
  const OpenFile folder(::open(FolderOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder.IsOpen()) ::fsync(folder.Get());
}

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
  int Get() const { return file_.Get(); }
  const struct stat& Status() const { return status_; }

 private:
  std::string Open(const std::string& path, Links links) {
    file_ = OpenFile();
    // Looked at first: to open a device or a pipe may have effects of its own.
    const int found =
        links == Links::Followed ? ::stat(path.c_str(), &status_) : ::lstat(path.c_str(), &status_);
    if (found != 0) return errno == ENOENT ? "" : "cannot be opened: " + ErrorText(errno);
    if (S_ISDIR(status_.st_mode)) return "is a folder, not a file";
    if (!S_ISREG(status_.st_mode)) return "is not a regular file";
    const int flags =
        O_RDONLY | O_NONBLOCK | O_CLOEXEC | (links == Links::Refused ? O_NOFOLLOW : 0);
    file_ = OpenFile(::open(path.c_str(), flags));
    if (!file_.IsOpen()) return errno == ENOENT ? "" : "cannot be opened: " + ErrorText(errno);
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

  OpenFile file_;
  struct stat status_ {};
};

// --- Copies --------------------------------------------------------------------------------------

enum class Copied { Yes, NothingThere, No };

Copied CopyAttribute(int from, int to, const char* name) {
  std::vector<char> value(65536);  // the most that a file system keeps
  const ssize_t size = ::fgetxattr(from, name, value.data(), value.size());
  if (size < 0) return errno == ENODATA || errno == ENOTSUP ? Copied::NothingThere : Copied::No;
  const bool isSet = ::fsetxattr(to, name, value.data(), static_cast<std::size_t>(size), 0) == 0;
  return isSet ? Copied::Yes : Copied::No;
}

/// Attributes that users gave the file. They are no content: what cannot be copied stays away.
void CopyUserAttributes(int from, int to) {
  std::vector<char> names(65536);
  const ssize_t size = ::flistxattr(from, names.data(), names.size());
  const char* const end = names.data() + std::max<ssize_t>(size, 0);
  for (const char* name = names.data(); name < end; name += std::strlen(name) + 1) {
    if (std::string_view(name).starts_with("user.")) {
      static_cast<void>(CopyAttribute(from, to, name));
    }
  }
}

/// Gives a copy the owner, the permissions and the times of what it is a copy of. Only root may
/// give a file away; a group that is another one may do what everybody may.
bool TakeOver(int copy, int original, const struct stat& status) {
  mode_t permissions = status.st_mode & 07777;
  const bool isOwnerKept = ::fchown(copy, status.st_uid, status.st_gid) == 0;
  const auto sameOwner = static_cast<uid_t>(-1);
  const bool isGroupKept = isOwnerKept || ::fchown(copy, sameOwner, status.st_gid) == 0;
  if (!isOwnerKept) permissions &= 0777;
  // Where there is an access list the bits of the group say what any of the list may do at most;
  // without it they would open the copy to the whole group.
  const bool hasSameGroup =
      isGroupKept && CopyAttribute(original, copy, "system.posix_acl_access") != Copied::No;
  if (!hasSameGroup) permissions = (permissions & 07707) | ((permissions & 0007) << 3);
  CopyUserAttributes(original, copy);
  const std::array<timespec, 2> times = {status.st_atim, status.st_mtim};
  return ::fchmod(copy, permissions) == 0 && ::futimens(copy, times.data()) == 0 &&
         ::fsync(copy) == 0;
}

/// Zero, or the error number. An existing `to` is never replaced.
int MoveToNewName(const std::string& from, const std::string& to) {
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
  if (errno != EINVAL && errno != ENOSYS) return errno;
  // Network file systems may know nothing of it, but they have hard links.
  if (::link(from.c_str(), to.c_str()) != 0) return errno;
  ::unlink(from.c_str());
  return 0;
}

/// A copy of a file that has no name of its own yet and disappears unless it gets one.
class UnnamedCopy {
 public:
  /// Beside `target`; for nobody but this process until it has the attributes of the original.
  explicit UnnamedCopy(const std::string& target) {
    // A name may fill all that the file system allows; what is added must still fit.
    constexpr std::size_t mostOfName = 180;
    const fs::path path = target;
    std::string name = path.filename().string();
    // Whoever lists a folder by extension must not take it for a file of that kind.
    std::replace(name.begin(), name.end(), '.', '_');
    path_ = (path.parent_path() / VyrCutUtf8(name, mostOfName)).string() + ".XXXXXX.tmp";
    constexpr int lengthOfExtension = 4;
    const OpenFile file(::mkostemps(path_.data(), lengthOfExtension, O_CLOEXEC));
    if (file.IsOpen()) return;
    problem_ = ErrorText(errno);
    path_.clear();
  }
  UnnamedCopy(const UnnamedCopy&) = delete;
  UnnamedCopy& operator=(const UnnamedCopy&) = delete;
  ~UnnamedCopy() {
    if (!path_.empty()) ::unlink(path_.c_str());
  }

  /// What went wrong, or nothing. The copy is on the disk then.
  std::string Fill(const HeldFile& original, std::string_view content) {
    if (!problem_.empty()) return problem_;
    if (std::string problem = VyrSaveFile(path_, content); !problem.empty()) return problem;
    const OpenFile file(::open(path_.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
    const bool isDone = file.IsOpen() && TakeOver(file.Get(), original.Get(), original.Status());
    return isDone ? std::string() : ErrorText(errno);
  }

  /// Zero, or the error number.
  int MoveTo(const std::string& name) {
    const int error = MoveToNewName(path_, name);
    if (error == 0) path_.clear();
    return error;
  }

 private:
  std::string path_;
  std::string problem_;
};

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
  fs::directory_iterator entry(FolderOf(path), error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    if (!name.starts_with(start)) continue;
    const std::optional<int> number = NumberOf(std::string_view(name).substr(start.size()));
    if (number) highest = std::max(highest, *number);
  }
  const bool isNoFolder = error == std::errc::no_such_file_or_directory;
  return !error || isNoFolder ? "" : "its folder cannot be listed: " + error.message();
}

/// Keeps the content of a file beside it under a name that nothing has. Returns what went wrong, or
/// nothing.
std::string Keep(const std::string& path, std::string_view suffix, const HeldFile& file,
                 std::string_view content, std::string& kept) {
  UnnamedCopy copy(path);
  if (std::string problem = copy.Fill(file, content); !problem.empty()) return problem;
  for (;;) {
    int highest = -1;
    if (std::string problem = FindHighest(path, suffix, highest); !problem.empty()) return problem;
    if (highest == kMostNumber) return "there is no higher number than the last one's";
    const std::string name = NumberedName(path, suffix, highest + 1);
    const int error = copy.MoveTo(name);
    if (error == EEXIST) continue;  // another process was first
    if (error != 0) return ErrorText(error);
    SyncFolderOf(name);
    kept = name;
    return {};
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

/// Where a file has to be made so that `path` leads to it: of a symbolic link, what it names.
std::string MissingFile(const std::string& path) {
  constexpr int mostLinks = 40;
  fs::path target = path;
  std::error_code error;
  for (int i = 0; i < mostLinks && fs::is_symlink(target, error); ++i) {
    target = target.parent_path() / fs::read_symlink(target, error);
  }
  return target;
}

std::string MakeFile(const std::string& path, const HeldFile& backup, std::string_view content) {
  const std::string target = MissingFile(path);
  UnnamedCopy copy(target);
  if (std::string problem = copy.Fill(backup, content); !problem.empty()) {
    return "cannot be written: " + problem;
  }
  if (const int error = copy.MoveTo(target); error != 0) {
    return "cannot be written: " + ErrorText(error);
  }
  SyncFolderOf(target);
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
    const std::string reason = ErrorText(errno);
    return {Result::NotUsedUp, name, "is restored, but cannot be removed: " + reason, kept, name};
  }
  SyncFolderOf(name);
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
