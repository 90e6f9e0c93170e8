#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <iostream>

#include "FolderSnapshot.h"
#include "PrivateMounts.h"
#include "ProcessRun.h"
#include "SaveScene.h"

// Disks that are full and folders that cannot be written, in earnest. Where the machine allows no
// mounts, the test is skipped; limits and permissions, which are tested anyway, show the same.

namespace {

namespace fs = std::filesystem;

const std::string kIso = ShippedStandard("ISO.xml");
constexpr const char* kNobody = "65534";

void Say(const std::string& text) {
  std::cout << "saving: " << text << std::endl;
}

/// The save fails for this reason, says so in one line, and leaves the folder as it was.
void ExpectRefused(const std::string& path, int error,
                   const std::vector<std::string>& options = {}) {
  const fs::path folder = fs::path(path).parent_path();
  const FolderSnapshot before = SnapshotOf(folder);
  const ProcessRun run = RunProcess(SaveCommand("document", kIso, path, options));
  EXPECT_EQ(run.status, kNotSaved);
  EXPECT_THAT(run.message, testing::StartsWith(path + ": cannot be written: "));
  EXPECT_THAT(run.message, testing::EndsWith(": " + ReasonOf(error) + "\n"));
  EXPECT_EQ(std::count(run.message.begin(), run.message.end(), '\n'), 1) << run.message;
  EXPECT_EQ(SnapshotOf(folder), before);
}

void ExpectSaved(const std::string& path, const std::vector<std::string>& options = {}) {
  const ProcessRun run = RunProcess(SaveCommand("document", kIso, path, options));
  EXPECT_EQ(run.status, kSaved) << run.message;
  EXPECT_EQ(ContentOf(path), kNewContent);
}

// --- Full disks

/// Whether a file system with `options` could be mounted; on it an old file is saved, and a new
/// one.
bool TryFullFileSystem(const std::string& options, bool isLargeEnough) {
  const TemporaryFolder folder;
  const Mount mount(folder.Path(), options);
  if (!mount) return false;
  folder.Write("old.xml", "an old standard");
  for (const char* name : {"old.xml", "new.xml"}) {
    if (isLargeEnough) {
      ExpectSaved(folder / name);
    } else {
      ExpectRefused(folder / name, ENOSPC);
    }
  }
  return true;
}

TEST(FullDisk, SmallFileSystemKeepsTheOldFile) {
  // Without room for the content, without room for one more file, and with both.
  const bool isTried = TryFullFileSystem("size=64k", false);
  if (!isTried) {
    GTEST_SKIP() << "no file system can be mounted here; full disks are shown by limits and by "
                    "/dev/full";
  }
  EXPECT_TRUE(TryFullFileSystem("nr_inodes=2", false));
  EXPECT_TRUE(TryFullFileSystem("size=4m", true));
  Say("full disks shown on file systems of 64 KB and of two files");
}

TEST(FullDisk, LimitOnFileSizesKeepsTheOldFile) {
  const TemporaryFolder folder;
  folder.Write("old.xml", "an old standard");
  for (const char* name : {"old.xml", "new.xml"}) {
    ExpectRefused(folder / name, EFBIG, {"--most-bytes", "65536"});
    ExpectRefused(folder / name, EFBIG, {"--most-bytes", std::to_string(kNewContent.size() - 1)});
  }
  ExpectSaved(folder / "old.xml", {"--most-bytes", std::to_string(kNewContent.size())});
}

TEST(FullDisk, FullDeviceIsToldThroughALinkThatStays) {
  const TemporaryFolder folder;
  fs::create_symlink("/dev/full", folder / "link.xml");
  ExpectRefused(folder / "link.xml", ENOSPC);
}

// --- Folders that cannot be written
// ---------------------------------------------------------------

TEST(ReadOnlyFolder, ReadOnlyFileSystemKeepsTheOldFile) {
  const TemporaryFolder folder;
  folder.Write("old.xml", "an old standard");
  const Mount mount = Mount::ReadOnly(folder.Path());
  if (!mount) {
    GTEST_SKIP() << "no folder can be mounted read-only here; it is shown by permissions";
  }
  ExpectRefused(folder / "old.xml", EROFS);
  ExpectRefused(folder / "new.xml", EROFS);
  Say("a read-only file system shown by a mount");
}

/// A folder in which an ordinary user may do what its permissions say.
class UnprivilegedFolder {
 public:
  UnprivilegedFolder() { Set(0777); }
  ~UnprivilegedFolder() { Set(0700); }
  void Set(mode_t permissions) const { EXPECT_EQ(::chmod(folder_.Path().c_str(), permissions), 0); }
  std::string Write(const std::string& name, mode_t permissions) const {
    const std::string path = folder_.Write(name, "an old standard");
    EXPECT_EQ(::chmod(path.c_str(), permissions), 0);
    return path;
  }
  std::string operator/(const std::string& name) const { return folder_ / name; }
  /// The options of a save by such a user: another one when this is root.
  static std::vector<std::string> User() {
    if (::geteuid() == 0) return {"--user", kNobody};
    return {};
  }

 private:
  TemporaryFolder folder_;
};

TEST(ReadOnlyFolder, FolderThatTheUserCannotWriteKeepsTheOldFile) {
  const UnprivilegedFolder folder;
  const std::string old = folder.Write("old.xml", 0666);
  folder.Set(0555);
  ExpectRefused(old, EACCES, UnprivilegedFolder::User());
  ExpectRefused(folder / "new.xml", EACCES, UnprivilegedFolder::User());
}

TEST(ReadOnlyFolder, FileThatTheUserCannotWriteIsKeptThoughItsFolderCanBeWritten) {
  const UnprivilegedFolder folder;
  ExpectRefused(folder.Write("old.xml", 0444), EACCES, UnprivilegedFolder::User());
  folder.Set(0777);
  ExpectSaved(folder / "new.xml", UnprivilegedFolder::User());
}

}  // namespace
