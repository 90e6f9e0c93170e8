#include "VyrOpenFile.h"

#include <fcntl.h>

#include <array>
#include <climits>
#include <filesystem>

namespace fs = std::filesystem;

bool VyrWriteAll(int file, std::string_view content) {
  while (!content.empty()) {
    const ssize_t written =
        VyrUninterrupted([&] { return ::write(file, content.data(), content.size()); });
    if (written == 0) errno = EIO;  // else this would go on for ever
    if (written <= 0) return false;
    content.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

bool VyrFollowLinks(std::string& path) {
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

std::string VyrFolderOf(const std::string& path) {
  const std::string folder = fs::path(path).parent_path();
  return folder.empty() ? "." : folder;
}

void VyrSyncFolder(const std::string& folder) {
  constexpr int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
  const VyrDescriptor open(VyrUninterrupted([&] { return ::open(folder.c_str(), flags); }));
  if (open.IsOpen()) VyrUninterrupted([&] { return ::fsync(open.Get()); });
}
