#pragma once

#include <sys/stat.h>

#include <string>

#include "VyrOpenFile.h"

/// A new file beside `target` that disappears with its object unless it got another name. It is
/// open for writing unless `File` is not; `errno` then says why.
class VyrTemporaryFile {
 public:
  VyrTemporaryFile(const std::string& target, mode_t permissions);
  VyrTemporaryFile(const VyrTemporaryFile&) = delete;
  VyrTemporaryFile& operator=(const VyrTemporaryFile&) = delete;
  ~VyrTemporaryFile();

  VyrDescriptor& File() { return file_; }
  /// Takes the place of `target`, where there may be a file. False with `errno` set.
  bool RenameTo(const std::string& target);
  /// The same where there must be none: `EEXIST` when there is.
  bool RenameToNew(const std::string& target);

 private:
  std::string path_;
  VyrDescriptor file_;
  bool exists_ = false;
};
