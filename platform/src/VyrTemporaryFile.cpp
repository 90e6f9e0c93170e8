#include "VyrTemporaryFile.h"

#include <fcntl.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>

#include "VyrFileAttributes.h"
#include "VyrFilePlace.h"
#include "VyrUtf8.h"

namespace {

constexpr int kMostTries = 100;

std::string NewPath(const std::string& target) {
  // In a container every process may have the same number. Were they all to count from one, the
  // files that killed processes left would in the end be in the way.
  static std::atomic<unsigned> serial{
      static_cast<unsigned>(std::chrono::system_clock::now().time_since_epoch().count())};
  // A name may fill all that the file system allows; what is added must still fit.
  constexpr std::size_t mostOfName = 200;
  std::string name = VyrNameOf(target);
  const std::string folder = target.substr(0, target.size() - name.size());
  // Whoever lists a folder by extension must not take it for a file of that kind.
  std::replace(name.begin(), name.end(), '.', '_');
  return folder + std::string(VyrCutUtf8(name, mostOfName)) + "." + std::to_string(::getpid()) +
         "-" + std::to_string(++serial) + ".tmp";
}

VyrDescriptor OpenNew(const std::string& path, mode_t permissions) {
  constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;
  return VyrDescriptor(VyrUninterrupted([&] { return ::open(path.c_str(), flags, permissions); }));
}

}  // namespace

VyrTemporaryFile::VyrTemporaryFile(const std::string& target, mode_t permissions) {
  for (int i = 0; i <= kMostTries; ++i) {
    path_ = NewPath(target);
    file_ = OpenNew(path_, permissions);
    exists_ = file_.IsOpen();
    if (exists_ || errno != EEXIST) return;
  }
}

VyrTemporaryFile::~VyrTemporaryFile() {
  if (exists_) ::unlink(path_.c_str());
}

bool VyrTemporaryFile::Fill(std::string_view content, const std::optional<Original>& original,
                            const std::optional<VyrFileTimes>& times) {
  const int file = file_.Get();
  return file_.IsOpen() && VyrWriteAll(file, content) &&
         (!original || VyrTakeOverAttributes(file, original->path, original->status)) &&
         (!times || ::futimens(file, times->data()) == 0) &&
         VyrUninterrupted([=] { return ::fsync(file); }) == 0 && file_.Close();
}

bool VyrTemporaryFile::RenameTo(const std::string& target) {
  exists_ = ::rename(path_.c_str(), target.c_str()) != 0;
  return !exists_;
}

bool VyrTemporaryFile::RenameToNew(const std::string& target) {
  const char* const from = path_.c_str();
  exists_ = ::renameat2(AT_FDCWD, from, AT_FDCWD, target.c_str(), RENAME_NOREPLACE) != 0;
  if (!exists_) return true;
  if (errno != EINVAL && errno != ENOSYS) return false;
  // Network file systems may know nothing of it, but they have hard links. The name that is left is
  // taken away with this object.
  return ::link(from, target.c_str()) == 0;
}
