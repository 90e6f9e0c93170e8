#include "VyrHeldFile.h"

#include <fcntl.h>
#include <sys/file.h>

#include <thread>

#include "VyrFileProblem.h"
#include "VyrSystemText.h"

namespace {

/// Between two tries to get what another process has.
constexpr std::chrono::milliseconds kPause{5};

VyrDescriptor OpenFile(const std::string& path, int flags) {
  const auto open = [&](int access) {
    return VyrDescriptor(VyrUninterrupted([&] { return ::open(path.c_str(), access | flags); }));
  };
  // Network file systems lock only what is open for writing.
  VyrDescriptor file = open(O_RDWR);
  const bool isReadOnly =
      !file.IsOpen() && (errno == EACCES || errno == EPERM || errno == EROFS || errno == ETXTBSY);
  return isReadOnly ? open(O_RDONLY) : std::move(file);
}

/// What may be done about a lock that is not given; empty when that is not known.
std::string RemedyOfLocking(int error) {
  if (error == EBADF) return "; it takes the right to write it";
  if (error == ENOLCK) return "; let its server start its lock service, or work on a copy";
  return {};
}

}  // namespace

std::string VyrHeldFile::Hold(const std::string& path, Links links, Clock::time_point deadline) {
  path_ = path;
  links_ = links;
  for (;;) {
    if (std::string problem = Open(); !problem.empty() || !Exists()) return problem;
    if (std::string problem = Lock(deadline); !problem.empty()) return problem;
    if (::fstat(file_.Get(), &status_) == 0 && IsThere()) return {};
    // Whoever held it put another file into its place; or the file system gives no file the same
    // number twice.
    if (Clock::now() >= deadline) return "is another file at each look; wait and try again";
    std::this_thread::sleep_for(kPause);
  }
}

bool VyrHeldFile::IsThere() const {
  struct stat there {};
  return Look(there) == 0 && there.st_dev == status_.st_dev && there.st_ino == status_.st_ino;
}

int VyrHeldFile::Look(struct stat& status) const {
  return links_ == Links::Followed ? ::stat(path_.c_str(), &status)
                                   : ::lstat(path_.c_str(), &status);
}

std::string VyrHeldFile::Open() {
  file_ = VyrDescriptor();
  // Looked at first: to open a device or a pipe may have effects of its own.
  if (Look(status_) != 0) return errno == ENOENT ? "" : VyrNotOpened();
  // Nobody has named a file of which links are refused: another name is no advice.
  const bool isNamed = links_ == Links::Followed;
  if (!S_ISREG(status_.st_mode)) return VyrNoRegularFile(S_ISDIR(status_.st_mode), isNamed);
  const int flags = O_NONBLOCK | O_CLOEXEC | (links_ == Links::Refused ? O_NOFOLLOW : 0);
  file_ = OpenFile(path_, flags);
  return file_.IsOpen() || errno == ENOENT ? "" : VyrNotOpened();
}

/// What went wrong, or nothing. Without locks files are taken as they come.
std::string VyrHeldFile::Lock(Clock::time_point deadline) {
  while (::flock(file_.Get(), LOCK_EX | LOCK_NB) != 0) {
    const int error = errno;
    if (error == EINTR) continue;
    if (error == ENOSYS || error == EOPNOTSUPP) break;
    isLocked_ = true;
    // Some servers say that access is denied when another has the lock.
    const bool isAnothers = error == EWOULDBLOCK || error == EACCES;
    if (!isAnothers) return "cannot be locked: " + VyrSystemText(error) + RemedyOfLocking(error);
    if (Clock::now() >= deadline) {
      return "is being saved by another process; wait until it has ended and try again";
    }
    std::this_thread::sleep_for(kPause);
  }
  isLocked_ = false;
  return {};
}
