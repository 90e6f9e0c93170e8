#pragma once

#include <sys/stat.h>

#include <chrono>
#include <string>

#include "VyrOpenFile.h"

/// A regular file that other processes which hold it, too, leave alone as long as this object
/// lives, where the file system has locks.
class VyrHeldFile {
 public:
  using Clock = std::chrono::steady_clock;
  enum class Links { Followed, Refused };

  /// What went wrong, or nothing. A file that does not exist is nothing wrong. To be called once.
  std::string Hold(const std::string& path, Links links, Clock::time_point deadline);

  /// Whether there is a file, and it is held.
  bool Exists() const { return file_.IsOpen(); }
  /// Whether `Hold` failed because the lock was not given; the file itself is as it should be.
  bool IsLocked() const { return isLocked_; }
  /// Whether the path leads to the file that is held; false, too, when that cannot be found out.
  bool IsThere() const;
  const std::string& Path() const { return path_; }
  const struct stat& Status() const { return status_; }
  /// The content. To be called once; what went wrong, or nothing.
  std::string Read(std::string& content) const { return VyrReadAll(file_.Get(), content); }

 private:
  int Look(struct stat& status) const;
  std::string Open();
  std::string Lock(Clock::time_point deadline);

  VyrDescriptor file_;
  std::string path_;
  Links links_ = Links::Followed;
  bool isLocked_ = false;
  struct stat status_ {};
};
