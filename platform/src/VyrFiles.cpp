#include "VyrFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstring>
#include <filesystem>
#include <limits>
#include <utility>

#include "VyrFileAttributes.h"
#include "VyrSystemText.h"
#include "VyrUtf8.h"
#include "VyrWithinMemory.h"

namespace {

namespace fs = std::filesystem;

// More is no standard; an endless file must not take all memory before it is refused.
constexpr std::size_t kMostBytesOfFile = (std::size_t{1} << 31) - 1;
constexpr const char* kTooLarge = "is larger than 2 GB; no standard is, name the right file";

std::string LastError() {
  return VyrSystemText(errno);
}

/// What whoever saves may do about an error.
struct Remedy {
  int error;
  const char* advice;
};
constexpr const char* kAskForPermission =
    "ask for permission to write there or choose another place";
constexpr const char* kMakeRoom = "make room there or choose another place";
constexpr std::array kRemedies = {
    Remedy{EACCES, kAskForPermission},
    Remedy{EPERM, kAskForPermission},
    Remedy{EROFS, kAskForPermission},
    Remedy{ENOSPC, kMakeRoom},
    Remedy{EDQUOT, kMakeRoom},
    Remedy{EFBIG, "raise the limit on the size of files or choose another place"},
};

/// Why the last operation of a save failed, and what would be right where that is known.
std::string NotWritten(const char* what = "cannot be written: ") {
  const int error = errno;
  std::string problem = what + LastError();
  for (const Remedy& remedy : kRemedies) {
    if (remedy.error == error) problem.append("; ").append(remedy.advice);
  }
  return problem;
}

/// Repeats a call of the operating system as long as signals break it off.
template <class Call>
auto Uninterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

/// An open file descriptor.
class Descriptor {
 public:
  explicit Descriptor(int value) : value_(value) {}
  Descriptor(Descriptor&& other) noexcept : value_(std::exchange(other.value_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }
  ~Descriptor() {
    if (value_ >= 0) ::close(value_);
  }
  int Get() const { return value_; }
  bool IsOpen() const { return value_ >= 0; }
  /// Closing may be the moment at which a file system reports a failed write. A signal does not
  /// keep it from being done.
  bool Close() { return ::close(std::exchange(value_, -1)) == 0 || errno == EINTR; }

 private:
  int value_;
};

/// A new file beside `target` that disappears with its object unless it took the target's place.
class TemporaryFile {
 public:
  TemporaryFile(const std::string& target, mode_t permissions)
      : path_(NewPath(target)), file_(Open(path_, permissions)) {
    for (int i = 0; i < kMostTries && !file_.IsOpen() && errno == EEXIST; ++i) {
      path_ = NewPath(target);
      file_ = Open(path_, permissions);
    }
    exists_ = file_.IsOpen();
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    if (exists_) ::unlink(path_.c_str());
  }
  Descriptor& File() { return file_; }
  bool RenameTo(const std::string& target) {
    exists_ = ::rename(path_.c_str(), target.c_str()) != 0;
    return !exists_;
  }

 private:
  static constexpr int kMostTries = 100;

  static std::string NewPath(const std::string& target) {
    // In a container every process may have the same number. Were they all to count from one, the
    // files that killed processes left would in the end be in the way.
    static std::atomic<unsigned> serial{
        static_cast<unsigned>(std::chrono::system_clock::now().time_since_epoch().count())};
    const fs::path path = target;
    // A name may fill all that the file system allows; what is added must still fit.
    constexpr std::size_t mostOfName = 200;
    std::string name = path.filename().string();
    // Whoever lists a folder by extension must not take it for a file of that kind.
    std::replace(name.begin(), name.end(), '.', '_');
    return (path.parent_path() / VyrCutUtf8(name, mostOfName)).string() + "." +
           std::to_string(::getpid()) + "-" + std::to_string(++serial) + ".tmp";
  }
  static Descriptor Open(const std::string& path, mode_t permissions) {
    constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;
    return Descriptor(Uninterrupted([&] { return ::open(path.c_str(), flags, permissions); }));
  }

  std::string path_;
  Descriptor file_;
  bool exists_ = false;
};

bool WriteAll(int file, std::string_view content) {
  while (!content.empty()) {
    const ssize_t written =
        Uninterrupted([&] { return ::write(file, content.data(), content.size()); });
    if (written == 0) errno = EIO;  // else this would go on for ever
    if (written <= 0) return false;
    content.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

/// Reads to the end; what went wrong, or nothing.
std::string ReadAll(int file, std::size_t sizeHint, std::string& content) {
  constexpr std::size_t leastBlock = 65536;
  std::size_t size = 0;
  content.resize(sizeHint + 1);
  for (;;) {
    if (size > kMostBytesOfFile) return kTooLarge;
    if (size == content.size()) content.resize(size + std::max(size, leastBlock));
    const ssize_t got =
        Uninterrupted([&] { return ::read(file, content.data() + size, content.size() - size); });
    if (got < 0) return "cannot be read: " + LastError();
    if (got == 0) break;
    size += static_cast<std::size_t>(got);
  }
  content.resize(size);
  return {};
}

Descriptor OpenForReading(const std::string& path, int flags) {
  return Descriptor(
      Uninterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC | flags); }));
}

/// Why a file could not be opened, and what would be right where that can be told.
std::string OpeningProblem(int error) {
  struct Advice {
    int error;
    const char* text;
  };
  constexpr std::array<Advice, 4> advices = {{
      {ENOENT, "; look at the spelling of its name and folder"},
      {ENOTDIR, "; look at the spelling of its folder"},
      {EACCES, "; it takes the right to read it"},
      {ELOOP, "; its symbolic links lead to each other"},
  }};
  const auto advice = std::find_if(advices.begin(), advices.end(),
                                   [=](const Advice& entry) { return entry.error == error; });
  return std::string("cannot be opened: ") + VyrSystemText(error) +
         (advice == advices.end() ? "" : advice->text);
}

std::string ReadFile(VyrUnicodeView path, std::string& content) {
  const std::string native = VyrNativePath(path);
  const Descriptor file = OpenForReading(native, 0);
  if (!file.IsOpen()) return OpeningProblem(errno);
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

/// Goes from a path along its symbolic links to the file that they lead to, whether it exists yet
/// or not. False with `errno` set when a link cannot be read or they go round in a circle.
bool FollowLinks(std::string& path) {
  constexpr int mostLinks = 40;
  std::array<char, PATH_MAX> link;
  for (int i = 0; i < mostLinks; ++i) {
    const ssize_t length = ::readlink(path.c_str(), link.data(), link.size());
    const bool isNoLink = length < 0 && (errno == EINVAL || errno == ENOENT);
    if (length < 0) return isNoLink;
    const std::string_view next(link.data(), static_cast<std::size_t>(length));
    path = (fs::path(path).parent_path() / next).string();
  }
  errno = ELOOP;
  return false;
}

/// A device or a pipe is written to; only a regular file can be replaced by another one.
std::string WriteThrough(const std::string& target, std::string_view content) {
  Descriptor file(Uninterrupted([&] { return ::open(target.c_str(), O_WRONLY | O_CLOEXEC); }));
  if (!file.IsOpen() || !WriteAll(file.Get(), content) || !file.Close()) {
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
  TemporaryFile temporary(target, replaced == nullptr ? 0666 : 0600);
  Descriptor& file = temporary.File();
  if (!file.IsOpen()) return NotWritten("cannot be written: no file can be made in its folder: ");
  if (!WriteAll(file.Get(), content) ||
      (replaced != nullptr && !VyrTakeOverAttributes(file.Get(), target, *replaced)) ||
      !SetTime(file.Get(), modificationTime) ||
      Uninterrupted([&] { return ::fsync(file.Get()); }) != 0 || !file.Close() ||
      !temporary.RenameTo(target)) {
    return NotWritten();
  }
  return {};
}

/// Makes a rename survive a power failure. Not every file system can; the content is safe anyway.
void SyncDirectory(const std::string& directory) {
  constexpr int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
  const Descriptor folder(Uninterrupted([&] { return ::open(directory.c_str(), flags); }));
  if (folder.IsOpen()) Uninterrupted([&] { return ::fsync(folder.Get()); });
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
  if (!FollowLinks(target)) return NotWritten();
  if (exists && ::access(target.c_str(), W_OK) != 0) return NotWritten();
  // Before the file is replaced: afterwards nothing may fail, not even a request for memory.
  std::string folder = fs::path(target).parent_path();
  if (folder.empty()) folder = ".";
  const std::string problem =
      ReplaceFile(target, exists ? &status : nullptr, content, modificationTime);
  if (!problem.empty()) return problem;
  SyncDirectory(folder);
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
  const Descriptor file = OpenForReading(VyrNativePath(path), O_NONBLOCK);
  struct stat status {};
  return file.IsOpen() && ::fstat(file.Get(), &status) == 0 && S_ISREG(status.st_mode);
}
