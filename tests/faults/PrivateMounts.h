#pragma once

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <string>

#include "TemporaryFolder.h"

/// Whether this process may mount file systems that nobody else sees; from the first question on it
/// has mounts of its own. Its user and group stay what they are.
inline bool HasPrivateMounts() {
  static const bool has = [] {
    const uid_t user = ::geteuid();
    const gid_t group = ::getegid();
    const auto write = [](const char* path, const std::string& text) {
      const int file = ::open(path, O_WRONLY | O_CLOEXEC);
      const bool done =
          file >= 0 && ::write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
      if (file >= 0) ::close(file);
      return done;
    };
    const auto same = [](unsigned id) {
      return std::to_string(id) + " " + std::to_string(id) + " 1";
    };
    const bool isUnshared = user == 0 ? ::unshare(CLONE_NEWNS) == 0
                                      : ::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 &&
                                            write("/proc/self/setgroups", "deny") &&
                                            write("/proc/self/uid_map", same(user)) &&
                                            write("/proc/self/gid_map", same(group));
    return isUnshared && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
  }();
  return has;
}

/// Something mounted on a folder while this object lives.
class Mount {
 public:
  /// A file system in memory, with options such as "size=64k".
  Mount(const std::string& folder, const std::string& options)
      : folder_(folder), isMounted_(HasPrivateMounts()) {
    isMounted_ = isMounted_ && ::mount("tmpfs", folder.c_str(), "tmpfs", MS_NOSUID | MS_NODEV,
                                       options.c_str()) == 0;
    isReady_ = isMounted_;
  }
  /// The folder itself, but nothing in it can be changed.
  static Mount ReadOnly(const std::string& folder) { return Mount(folder); }
  Mount(const Mount&) = delete;
  Mount& operator=(const Mount&) = delete;
  ~Mount() {
    if (isMounted_) ::umount2(folder_.c_str(), MNT_DETACH);
  }

  /// False where the machine does not allow it.
  explicit operator bool() const { return isReady_; }

 private:
  explicit Mount(const std::string& folder) : folder_(folder), isMounted_(HasPrivateMounts()) {
    const char* path = folder_.c_str();
    isMounted_ = isMounted_ && ::mount(path, path, nullptr, MS_BIND, nullptr) == 0;
    // The kernel takes this flag at a second call only.
    constexpr unsigned long flags = MS_REMOUNT | MS_BIND | MS_RDONLY;
    isReady_ = isMounted_ && ::mount("none", path, nullptr, flags, nullptr) == 0;
  }

  std::string folder_;
  bool isMounted_;
  bool isReady_;
};
