#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <map>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

/// All that a save must keep or change of a file.
struct FileSnapshot {
  mode_t mode = 0;  ///< type and permissions
  uid_t owner = 0;
  gid_t group = 0;
  std::string content;  ///< of a symbolic link: where it leads
  std::map<std::string, std::string> attributes;

  bool operator==(const FileSnapshot&) const = default;
};

/// By path below the folder.
using FolderSnapshot = std::map<std::string, FileSnapshot>;

/// Shown by failing tests: contents are long.
inline void PrintTo(const FolderSnapshot& folder, std::ostream* out) {
  for (const auto& [name, file] : folder) {
    *out << "\n    " << name << ": mode " << std::oct << file.mode << std::dec << " owner "
         << file.owner << ":" << file.group << ", " << file.content.size() << " bytes, hash "
         << std::hash<std::string>{}(file.content) % 10000 << ", " << file.attributes.size()
         << " attributes";
  }
}

inline std::map<std::string, std::string> AttributesOf(const std::string& path) {
  std::map<std::string, std::string> attributes;
  std::array<char, 4096> names{};
  std::array<char, 4096> value{};
  const ssize_t size = ::llistxattr(path.c_str(), names.data(), names.size());
  for (ssize_t at = 0; at < size;) {
    const std::string name = names.data() + at;
    const ssize_t length = ::lgetxattr(path.c_str(), name.c_str(), value.data(), value.size());
    attributes[name] =
        std::string(value.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
    at += static_cast<ssize_t>(name.size()) + 1;
  }
  return attributes;
}

/// The whole content of a regular file; quicker than by characters, for many large ones are read.
inline std::string ContentOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream content;
  content << file.rdbuf();
  return std::move(content).str();
}

inline FileSnapshot SnapshotOfFile(const std::filesystem::path& path) {
  struct stat status {};
  EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
  FileSnapshot file{status.st_mode, status.st_uid, status.st_gid, {}, AttributesOf(path)};
  if (S_ISREG(status.st_mode)) file.content = ContentOf(path);
  if (S_ISLNK(status.st_mode)) file.content = std::filesystem::read_symlink(path);
  return file;
}

inline FolderSnapshot SnapshotOf(const std::filesystem::path& folder) {
  FolderSnapshot snapshot;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    snapshot[entry.path().lexically_relative(folder)] = SnapshotOfFile(entry.path());
  }
  return snapshot;
}

/// An access control list as Linux stores it: read and write for the owner, read for the user
/// 1002, the group and no one else; its permissions read 0640.
inline constexpr std::string_view kListName = "system.posix_acl_access";
inline constexpr std::string_view kDefaultListName = "system.posix_acl_default";
inline std::string AccessControlList() {
  return std::string(
      "\x02\0\0\0"
      "\x01\0\x06\0\xff\xff\xff\xff"
      "\x02\0\x04\0\xea\x03\0\0"
      "\x04\0\x04\0\xff\xff\xff\xff"
      "\x10\0\x04\0\xff\xff\xff\xff"
      "\x20\0\0\0\xff\xff\xff\xff",
      44);
}

/// False where the file system has no such attribute.
inline bool SetAttribute(const std::string& path, std::string_view name, const std::string& value) {
  return ::setxattr(path.c_str(), std::string(name).c_str(), value.data(), value.size(), 0) == 0;
}
