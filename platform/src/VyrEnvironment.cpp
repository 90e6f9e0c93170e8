#include "VyrEnvironment.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <utility>

#include "VyrFiles.h"

namespace {

std::string ValueOf(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

/// Makes the folder unless it is there. False when others could decide what it holds: among the
/// temporary folders anybody may have put something of that name.
bool HavePrivateFolder(const std::string& path) {
  if (::mkdir(path.c_str(), S_IRWXU) != 0 && errno != EEXIST) return false;
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
         status.st_uid == ::geteuid() && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

std::string PrivateTemporaryFolder() {
  std::string folder = ValueOf("TMPDIR");
  if (folder.empty()) folder = "/tmp";
  folder += "/vyr-" + std::to_string(::geteuid());
  // What stands beside a folder must be private too: a path "folder\file" means the file of that
  // whole name when there is one.
  const std::string inner = folder + "/work";
  return HavePrivateFolder(folder) && HavePrivateFolder(inner) ? inner : std::string();
}

struct CloseDirectory {
  void operator()(DIR* directory) const {
    const int error = errno;
    ::closedir(directory);
    errno = error;
  }
};

}  // namespace

std::string VyrGetEnv(std::string_view name) {
  std::string value = ValueOf(std::string(name).c_str());
  return value.empty() && name == "VyrTemp" ? PrivateTemporaryFolder() : value;
}

bool VyrListDirectory(std::string_view directory, std::vector<std::string>& names) {
  const std::unique_ptr<DIR, CloseDirectory> opened(::opendir(VyrNativePath(directory).c_str()));
  if (opened == nullptr) return false;
  std::vector<std::string> found;
  // The end and a failure are told apart by the error number, which other calls may set, too.
  while (const dirent* entry = (errno = 0, ::readdir(opened.get()))) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") found.emplace_back(name);
  }
  if (errno != 0) return false;
  std::sort(found.begin(), found.end());
  names = std::move(found);
  return true;
}
