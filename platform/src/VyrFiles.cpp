#include "VyrFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>

#include "VyrFilePlace.h"
#include "VyrFileProblem.h"
#include "VyrFileTimes.h"
#include "VyrOpenFile.h"
#include "VyrTemporaryFile.h"
#include "VyrWithinMemory.h"

namespace {

namespace fs = std::filesystem;

VyrDescriptor OpenForReading(const std::string& path, int flags) {
  return VyrDescriptor(
      VyrUninterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC | flags); }));
}

std::string ReadFile(VyrUnicodeView path, std::string& content) {
  const std::string native = VyrNativePath(path);
  const VyrDescriptor file = OpenForReading(native, 0);
  return file.IsOpen() ? VyrReadAll(file.Get(), content) : VyrNotOpened();
}

/// A device or a pipe is written to; only a regular file can be replaced by another one.
std::string WriteThrough(const std::string& target, std::string_view content) {
  VyrDescriptor file(
      VyrUninterrupted([&] { return ::open(target.c_str(), O_WRONLY | O_CLOEXEC); }));
  if (!file.IsOpen() || !VyrWriteAll(file.Get(), content) || !file.Close()) {
    return VyrNotWritten();
  }
  return {};
}

/// `replaced` is the status of the file there, null when there is none.
std::string ReplaceFile(const std::string& target, const struct stat* replaced,
                        std::string_view content, std::optional<std::int64_t> modificationTime) {
  // The content is for nobody but its writer until the file has the permissions of the old one.
  VyrTemporaryFile temporary(target, replaced == nullptr ? 0666 : 0600);
  if (!temporary.IsOpen()) {
    return VyrNotWritten("cannot be written: no file can be made in its folder: ");
  }
  std::optional<VyrTemporaryFile::Original> original;
  if (replaced != nullptr) original = {target, *replaced};
  std::optional<VyrFileTimes> times;
  if (modificationTime) times = VyrTimesOf(*modificationTime);
  const bool isSaved = temporary.Fill(content, original, times) && temporary.RenameTo(target);
  return isSaved ? std::string() : VyrNotWritten();
}

std::string SaveFile(VyrUnicodeView path, std::string_view content,
                     std::optional<std::int64_t> modificationTime) {
  if (path.empty()) return "no file name is given";
  const std::string native = VyrNativePath(path);
  struct stat status {};
  const bool exists = ::stat(native.c_str(), &status) == 0;
  // What is there but cannot be looked at must not be taken for a new file.
  if (!exists && errno != ENOENT) return VyrNotWritten();
  if (exists && S_ISDIR(status.st_mode)) return VyrNoRegularFile(true);
  // Before links are followed by hand: those of /dev lead to names that only the kernel knows.
  if (exists && !S_ISREG(status.st_mode)) return WriteThrough(native, content);
  std::string target = native;
  if (!VyrFollowLinks(target)) return VyrNotWritten();
  if (exists && ::access(target.c_str(), W_OK) != 0) return VyrNotWritten();
  // Before the file is replaced: afterwards nothing may fail, not even a request for memory.
  const std::string folder = VyrFolderOf(target);
  const std::string problem =
      ReplaceFile(target, exists ? &status : nullptr, content, modificationTime);
  if (!problem.empty()) return problem;
  VyrSyncFolder(folder);
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
  return VyrWithinMemory([&] { return ReadFile(path, content); });
}

std::string VyrSaveFile(VyrUnicodeView path, std::string_view content,
                        std::optional<std::int64_t> modificationTime) {
  return VyrWithinMemory([&] { return SaveFile(path, content, modificationTime); });
}

std::optional<std::int64_t> VyrModificationTime(VyrUnicodeView path) {
  struct stat status {};
  if (::stat(VyrNativePath(path).c_str(), &status) != 0) return std::nullopt;
  return VyrModificationTimeOf(status);
}

std::string VyrSetModificationTime(VyrUnicodeView path, std::int64_t nanoseconds) {
  return VyrWithinMemory([&] {
    const std::string native = VyrNativePath(path);
    const VyrFileTimes times = VyrTimesOf(nanoseconds);
    const bool done = ::utimensat(AT_FDCWD, native.c_str(), times.data(), 0) == 0;
    return done ? std::string() : VyrNotWritten("cannot be given its time: ");
  });
}

bool VyrIsReadableFile(VyrUnicodeView path) {
  // A pipe without a writer must not keep its caller waiting.
  const VyrDescriptor file = OpenForReading(VyrNativePath(path), O_NONBLOCK);
  struct stat status {};
  return file.IsOpen() && ::fstat(file.Get(), &status) == 0 && S_ISREG(status.st_mode);
}
