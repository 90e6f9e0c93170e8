#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>
#include <string_view>

#include "VyrFileTimes.h"
#include "VyrOpenFile.h"

/// A new file beside `target` that disappears with its object unless it got another name. Unless it
/// `IsOpen` it could not be made; `errno` then says why.
class VyrTemporaryFile {
 public:
  VyrTemporaryFile(const std::string& target, mode_t permissions);
  VyrTemporaryFile(const VyrTemporaryFile&) = delete;
  VyrTemporaryFile& operator=(const VyrTemporaryFile&) = delete;
  ~VyrTemporaryFile();

  /// A file whose owner, permissions and attributes another one takes over.
  struct Original {
    std::string path;
    struct stat status;
  };

  bool IsOpen() const { return file_.IsOpen(); }
  /// Writes the content, takes over what the original has and sets the times, as far as they are
  /// given, and closes the file when all of it is on the disk. False with `errno` set.
  bool Fill(std::string_view content, const std::optional<Original>& original,
            const std::optional<VyrFileTimes>& times);
  /// Takes the place of `target`, where there may be a file. False with `errno` set.
  bool RenameTo(const std::string& target);
  /// The same where there must be none: `EEXIST` when there is.
  bool RenameToNew(const std::string& target);

 private:
  std::string path_;
  VyrDescriptor file_;
  bool exists_ = false;
};
