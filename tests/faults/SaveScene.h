#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <string>

#include "FolderSnapshot.h"
#include "ProcessRun.h"
#include "TemporaryFolder.h"

/// Of the file there, and of the standard that is saved over it.
inline const std::string kOldContent = ContentOf(ShippedStandard("JIS.xml"));
inline const std::string kNewContent = ContentOf(ShippedStandard("ISO.xml"));

/// A folder with a target in one of the states that a save may meet.
class SaveScene {
 public:
  enum Kind { NewFile, OldFile, LinkToFile, LinkToNothing, Kinds };

  explicit SaveScene(Kind kind) {
    folder_.Write("neighbour.xml", "not to be touched");
    if (kind == LinkToFile) {
      std::filesystem::create_directory(folder_ / "sub");
      std::filesystem::create_symlink("sub/target.xml", folder_ / "link.xml");
      path_ = folder_ / "link.xml";
      target_ = "sub/target.xml";
      WriteOld(06754);
    } else if (kind == LinkToNothing) {
      std::filesystem::create_symlink("target.xml", folder_ / "link.xml");
      path_ = folder_ / "link.xml";
    } else if (kind == OldFile) {
      WriteOld(0640);
      SetAttribute(folder_ / target_, kListName, AccessControlList());
      SetAttribute(folder_ / target_, "user.approved", "by the design office");
    }
    before_ = Now();
  }

  const std::filesystem::path& Folder() const { return folder_.Path(); }
  const std::string& Path() const { return path_; }
  const std::string& Target() const { return target_; }
  const FolderSnapshot& Before() const { return before_; }
  FolderSnapshot Now() const { return SnapshotOf(folder_.Path()); }

  /// How the folder is after a save.
  FolderSnapshot Saved() const {
    FolderSnapshot saved = before_;
    FileSnapshot& file = saved[target_];
    if (!before_.contains(target_)) file = {S_IFREG | 0644, ::geteuid(), ::getegid(), {}, {}};
    file.content = kNewContent;
    return saved;
  }

 private:
  void WriteOld(mode_t permissions) {
    const std::string target = folder_.Write(target_, kOldContent);
    if (::geteuid() == 0) {
      EXPECT_EQ(::chown(target.c_str(), 12345, 54321), 0);
    }
    EXPECT_EQ(::chmod(target.c_str(), permissions), 0);
  }

  TemporaryFolder folder_;
  std::string target_ = "target.xml";
  std::string path_ = folder_ / "target.xml";
  FolderSnapshot before_;
};

inline const char* Name(SaveScene::Kind kind) {
  constexpr std::array<const char*, SaveScene::Kinds> names = {"new file", "old file",
                                                               "link to a file", "link to nothing"};
  return names[kind];
}
