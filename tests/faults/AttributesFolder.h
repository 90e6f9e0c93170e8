#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "FolderSnapshot.h"
#include "PrivateMounts.h"
#include "TemporaryFolder.h"

/// A new folder on a file system with extended attributes and access control lists: where the
/// temporary files are, or else one in memory.
class AttributesFolder {
 public:
  AttributesFolder() {
    if (HasAttributes()) return;
    mount_ = std::make_unique<const Mount>(folder_.Path(), "size=8m");
  }
  bool HasAttributes() const {
    const std::string probe = folder_.Write("probe", "");
    const bool has = SetAttribute(probe, kListName, AccessControlList()) &&
                     SetAttribute(probe, "user.probe", "x");
    std::filesystem::remove(probe);
    return has;
  }
  const std::filesystem::path& Path() const { return folder_.Path(); }
  std::string Write(const std::string& name, const std::string& content) const {
    return folder_.Write(name, content);
  }
  std::string operator/(const std::string& name) const { return folder_ / name; }

 private:
  TemporaryFolder folder_;
  std::unique_ptr<const Mount> mount_;
};
