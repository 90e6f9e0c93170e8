#include "VyrFilePlace.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <string_view>

#include "VyrOpenFile.h"

// Paths are taken apart by hand: parts of the file system library of C++ end the process when
// memory runs out.

namespace {

/// How much of a path stands before its last name.
std::size_t LengthBeforeName(const std::string& path) {
  return path.rfind('/') + 1;  // 0 without a separator
}

}  // namespace

bool VyrFollowLinks(std::string& path) {
  constexpr int mostLinks = 40;  // as many as the kernel follows
  std::array<char, PATH_MAX> link;
  for (int i = 0; i <= mostLinks; ++i) {
    const ssize_t length = ::readlink(path.c_str(), link.data(), link.size());
    const bool isNoLink = length < 0 && (errno == EINVAL || errno == ENOENT);
    if (length < 0) return isNoLink;
    const std::string_view next(link.data(), static_cast<std::size_t>(length));
    path.resize(next.starts_with('/') ? 0 : LengthBeforeName(path));
    path += next;
  }
  errno = ELOOP;
  return false;
}

std::string VyrFolderOf(const std::string& path) {
  const std::size_t length = LengthBeforeName(path);
  if (length == 0) return ".";
  return path.substr(0, length == 1 ? 1 : length - 1);
}

std::string VyrNameOf(const std::string& path) {
  return path.substr(LengthBeforeName(path));
}

void VyrSyncFolder(const std::string& folder) {
  constexpr int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
  const VyrDescriptor open(VyrUninterrupted([&] { return ::open(folder.c_str(), flags); }));
  if (open.IsOpen()) VyrUninterrupted([&] { return ::fsync(open.Get()); });
}
