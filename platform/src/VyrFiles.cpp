#include "VyrFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <limits>
#include <span>
#include <utility>

#include "VyrFileAttributes.h"
#include "VyrOpenFile.h"
#include "VyrSystemText.h"
#include "VyrTemporaryFile.h"
#include "VyrWithinMemory.h"

namespace {

namespace fs = std::filesystem;

// More is no standard; an endless file must not take all memory before it is refused.
constexpr std::size_t kMostBytesOfFile = (std::size_t{1} << 31) - 1;
constexpr const char* kTooLarge = "is larger than 2 GB; no standard is, name the right file";

std::string LastError() {
  return VyrSystemText(errno);
}

/// What may be done about an error.
struct Remedy {
  int error;
  const char* advice;
};

/// What an operation says that failed with `error`, and what would be right where that is known.
std::string WithRemedy(const std::string& what, int error, std::span<const Remedy> remedies) {
  std::string problem = what + VyrSystemText(error);
  for (const Remedy& remedy : remedies) {
    if (remedy.error == error) problem.append("; ").append(remedy.advice);
  }
  return problem;
}

constexpr const char* kAskForPermission =
    "ask for permission to write there or choose another place";
constexpr const char* kMakeRoom = "make room there or choose another place";
constexpr std::array kRemediesOfSaving = {
    Remedy{EACCES, kAskForPermission},
    Remedy{EPERM, kAskForPermission},
    Remedy{EROFS, kAskForPermission},
    Remedy{ENOSPC, kMakeRoom},
    Remedy{EDQUOT, kMakeRoom},
    Remedy{EFBIG, "raise the limit on the size of files or choose another place"},
};

constexpr std::array kRemediesOfOpening = {
    Remedy{ENOENT, "look at the spelling of its name and folder"},
    Remedy{ENOTDIR, "look at the spelling of its folder"},
    Remedy{EACCES, "it takes the right to read it"},
    Remedy{ELOOP, "its symbolic links lead to each other"},
};

/// Why the last operation of a save failed.
std::string NotWritten(const char* what = "cannot be written: ") {
  return WithRemedy(what, errno, kRemediesOfSaving);
}

/// Reads to the end; what went wrong, or nothing.
std::string ReadAll(int file, std::size_t sizeHint, std::string& content) {
  constexpr std::size_t leastBlock = 65536;
  std::size_t size = 0;
  content.resize(sizeHint + 1);
  for (;;) {
    if (size > kMostBytesOfFile) return kTooLarge;
    if (size == content.size()) content.resize(size + std::max(size, leastBlock));
    const ssize_t got = VyrUninterrupted(
        [&] { return ::read(file, content.data() + size, content.size() - size); });
    if (got < 0) return "cannot be read: " + LastError();
    if (got == 0) break;
    size += static_cast<std::size_t>(got);
  }
  content.resize(size);
  return {};
}

VyrDescriptor OpenForReading(const std::string& path, int flags) {
  return VyrDescriptor(
      VyrUninterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC | flags); }));
}

std::string ReadFile(VyrUnicodeView path, std::string& content) {
  const std::string native = VyrNativePath(path);
  const VyrDescriptor file = OpenForReading(native, 0);
  if (!file.IsOpen()) return WithRemedy("cannot be opened: ", errno, kRemediesOfOpening);
  struct stat status {};
  if (::fstat(file.Get(), &status) != 0) return "cannot be read: " + LastError();
  if (S_ISDIR(status.st_mode)) return "is a folder, not a file; name a file in it";
  if (status.st_size > static_cast<off_t>(kMostBytesOfFile)) return kTooLarge;
  std::string read;
  const auto sizeHint = static_cast<std::size_t>(std::max<off_t>(status.st_size, 0));
  std::string problem = ReadAll(file.Get(), sizeHint, read);
  if (problem.empty()) content = std::move(read);
  return problem;
}

/// A device or a pipe is written to; only a regular file can be replaced by another one.
std::string WriteThrough(const std::string& target, std::string_view content) {
  VyrDescriptor file(
      VyrUninterrupted([&] { return ::open(target.c_str(), O_WRONLY | O_CLOEXEC); }));
  if (!file.IsOpen() || !VyrWriteAll(file.Get(), content) || !file.Close()) {
    return NotWritten();
  }
  return {};
}

constexpr std::int64_t kNanosecondsOfSecond = 1'000'000'000;

/// The two times of a file as the operating system takes them: that of access is left alone.
std::array<timespec, 2> FileTimes(std::int64_t nanoseconds) {
  std::int64_t seconds = nanoseconds / kNanosecondsOfSecond;
  std::int64_t rest = nanoseconds % kNanosecondsOfSecond;
  if (rest < 0) {
    rest += kNanosecondsOfSecond;
    --seconds;
  }
  return {{{0, UTIME_OMIT}, {static_cast<time_t>(seconds), static_cast<long>(rest)}}};
}

bool SetTime(int file, std::optional<std::int64_t> nanoseconds) {
  return !nanoseconds || ::futimens(file, FileTimes(*nanoseconds).data()) == 0;
}

/// `replaced` is the status of the file there, null when there is none.
std::string ReplaceFile(const std::string& target, const struct stat* replaced,
                        std::string_view content, std::optional<std::int64_t> modificationTime) {
  // The content is for nobody but its writer until the file has the permissions of the old one.
  VyrTemporaryFile temporary(target, replaced == nullptr ? 0666 : 0600);
  VyrDescriptor& file = temporary.File();
  if (!file.IsOpen()) return NotWritten("cannot be written: no file can be made in its folder: ");
  if (!VyrWriteAll(file.Get(), content) ||
      (replaced != nullptr && !VyrTakeOverAttributes(file.Get(), target, *replaced)) ||
      !SetTime(file.Get(), modificationTime) ||
      VyrUninterrupted([&] { return ::fsync(file.Get()); }) != 0 || !file.Close() ||
      !temporary.RenameTo(target)) {
    return NotWritten();
  }
  return {};
}

}  // namespace

std::string VyrNativePath(VyrUnicodeView path) {
  std::string literal(path);
  std::error_code error;
  if (literal.find('\\') == std::string::npos || fs::exists(literal, error)) return literal;
  std::string native = literal;
  std::replace(native.begin(), native.end(), '\\', '/');
  const std::string folder = fs::path(native).parent_path();
  return fs::is_directory(folder.empty() ? "." : folder, error) ? native : literal;
}

void VyrSplitPath(VyrUnicodeView path, std::string& directory, std::string& fileName) {
  const std::size_t separator = path.find_last_of("/\\");
  const bool hasDirectory = separator != std::string_view::npos;
  const std::string whole(path);
  directory = hasDirectory ? whole.substr(0, separator) : std::string();
  fileName = hasDirectory ? whole.substr(separator + 1) : whole;
}

std::string VyrReadFile(VyrUnicodeView path, std::string& content) {
  return VyrWithinMemory([&] { return ReadFile(path, content); },
                         [] {
                           std::string problem;
                           VyrSayOutOfMemory(problem);
                           return problem;
                         });
}

std::string VyrSaveFile(VyrUnicodeView path, std::string_view content,
                        std::optional<std::int64_t> modificationTime) {
  if (path.empty()) return "no file name is given";
  const std::string native = VyrNativePath(path);
  struct stat status {};
  const bool exists = ::stat(native.c_str(), &status) == 0;
  // What is there but cannot be looked at must not be taken for a new file.
  if (!exists && errno != ENOENT) return NotWritten();
  if (exists && S_ISDIR(status.st_mode)) return "is a folder, not a file";
  // Before links are followed by hand: those of /dev lead to names that only the kernel knows.
  if (exists && !S_ISREG(status.st_mode)) return WriteThrough(native, content);
  std::string target = native;
  if (!VyrFollowLinks(target)) return NotWritten();
  if (exists && ::access(target.c_str(), W_OK) != 0) return NotWritten();
  // Before the file is replaced: afterwards nothing may fail, not even a request for memory.
  const std::string folder = VyrFolderOf(target);
  const std::string problem =
      ReplaceFile(target, exists ? &status : nullptr, content, modificationTime);
  if (!problem.empty()) return problem;
  VyrSyncFolder(folder);
  return {};
}

std::optional<std::int64_t> VyrModificationTime(VyrUnicodeView path) {
  struct stat status {};
  if (::stat(VyrNativePath(path).c_str(), &status) != 0) return std::nullopt;
  // Some file systems keep any 64 bits; what nanoseconds cannot count is the last that they can.
  constexpr std::int64_t mostSeconds =
      std::numeric_limits<std::int64_t>::max() / kNanosecondsOfSecond - 1;
  const auto seconds = std::clamp<std::int64_t>(status.st_mtim.tv_sec, -mostSeconds, mostSeconds);
  return seconds * kNanosecondsOfSecond + status.st_mtim.tv_nsec;
}

std::string VyrSetModificationTime(VyrUnicodeView path, std::int64_t nanoseconds) {
  const std::string native = VyrNativePath(path);
  const bool done = ::utimensat(AT_FDCWD, native.c_str(), FileTimes(nanoseconds).data(), 0) == 0;
  return done ? std::string() : "cannot be given its time: " + LastError();
}

bool VyrIsReadableFile(VyrUnicodeView path) {
  // A pipe without a writer must not keep its caller waiting.
  const VyrDescriptor file = OpenForReading(VyrNativePath(path), O_NONBLOCK);
  struct stat status {};
  return file.IsOpen() && ::fstat(file.Get(), &status) == 0 && S_ISREG(status.st_mode);
}
