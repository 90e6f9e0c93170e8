#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "AttributesFolder.h"
#include "FolderSnapshot.h"
#include "ProcessRun.h"
#include "SaveScene.h"
#include "TemporaryFolder.h"

// What a saved file takes over from the one that it replaces.

namespace {

void SaveIso(const std::string& path, const std::vector<std::string>& options = {}) {
  const ProcessRun run =
      RunProcess(SaveCommand("document", ShippedStandard("ISO.xml"), path, options));
  EXPECT_EQ(run.status, kSaved) << run.message;
  EXPECT_EQ(ContentOf(path), kNewContent);
}

TEST(SavedAttributes, PermissionsAreKeptWhateverTheyAre) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("file.xml", "old");
  for (const mode_t permissions :
       {0600u, 0644u, 0640u, 0604u, 0664u, 0666u, 0777u, 0200u, 01644u, 04755u, 02755u, 06751u}) {
    ASSERT_EQ(::chmod(path.c_str(), permissions), 0);
    const ProcessRun run = RunProcess(SaveCommand("document", ShippedStandard("ISO.xml"), path));
    EXPECT_EQ(run.status, kSaved) << run.message;
    EXPECT_EQ(SnapshotOfFile(path).mode & 07777, permissions) << std::oct << permissions;
  }
}

// --- Owner and group, which only root can set up
// --------------------------------------------------

struct OwnerCase {
  const char* what;
  uid_t owner;
  gid_t group;
  mode_t permissions;
  uid_t ownerAfter;
  gid_t groupAfter;
  mode_t permissionsAfter;
};

TEST(SavedAttributes, OwnerAndGroupAreKeptAsFarAsTheyMayBe) {
  if (::geteuid() != 0) {
    GTEST_SKIP() << "only root can make files of other owners; a save of one's own files keeps "
                    "owner and group, which all other tests of this program show";
  }
  constexpr uid_t user = 4001;
  constexpr gid_t member = 4002;
  constexpr gid_t stranger = 4003;
  const OwnerCase cases[] = {
      {"own file", user, user, 0640, user, user, 0640},
      {"own file, set-id", user, user, 06750, user, user, 06750},
      {"group of the user", user, member, 0660, user, member, 0660},
      {"group of the user, set-id", user, member, 02750, user, member, 02750},
      {"another's file of the user's group", 0, member, 0664, user, member, 0664},
      {"another's file, set-id", 0, member, 06775, user, member, 02775},
      {"another group: it gets what others have", user, stranger, 0660, user, user, 0600},
      {"another group, set-id", user, stranger, 06754, user, user, 04744},
      {"another's file that all may write", 0, stranger, 0666, user, user, 0666},
      {"another's file that all but its group may write", 0, stranger, 0606, user, user, 0666},
  };
  for (const OwnerCase& test : cases) {
    const TemporaryFolder folder;
    ASSERT_EQ(::chmod(folder.Path().c_str(), 0777), 0);
    const std::string path = folder.Write("file.xml", "old");
    ASSERT_EQ(::chown(path.c_str(), test.owner, test.group), 0);
    ASSERT_EQ(::chmod(path.c_str(), test.permissions), 0);
    SaveIso(path, {"--user", std::to_string(user), "--group", std::to_string(member)});
    const FileSnapshot saved = SnapshotOfFile(path);
    EXPECT_EQ(saved.owner, test.ownerAfter) << test.what;
    EXPECT_EQ(saved.group, test.groupAfter) << test.what;
    EXPECT_EQ(saved.mode & 07777, test.permissionsAfter) << test.what << std::oct << saved.mode;
  }
}

// --- Extended attributes
// --------------------------------------------------------------------------

class SavedAttributesOfFileSystem : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(folder_.HasAttributes())
        << "set TMPDIR to a folder on a file system with access control lists and attributes";
  }
  AttributesFolder folder_;
};

TEST_F(SavedAttributesOfFileSystem, AreKept) {
  const std::string path = folder_.Write("file.xml", "old");
  ASSERT_TRUE(SetAttribute(path, kListName, AccessControlList()));
  ASSERT_TRUE(SetAttribute(path, "user.approved", "by the design office"));
  ASSERT_TRUE(SetAttribute(path, "user.empty", ""));
  const FileSnapshot before = SnapshotOfFile(path);
  ASSERT_EQ(before.attributes.size(), 3u);
  SaveIso(path);
  const FileSnapshot after = SnapshotOfFile(path);
  EXPECT_EQ(after.attributes, before.attributes);
  EXPECT_EQ(after.mode, before.mode);
}

TEST_F(SavedAttributesOfFileSystem, ListThatAFolderGivesToNewFilesIsNotForReplacedOnes) {
  ASSERT_TRUE(SetAttribute(folder_.Path(), kDefaultListName, AccessControlList()));
  SaveIso(folder_ / "new.xml");
  EXPECT_TRUE(SnapshotOfFile(folder_ / "new.xml").attributes.contains(std::string(kListName)));

  const std::string path = folder_.Write("file.xml", "old");
  ASSERT_EQ(::removexattr(path.c_str(), kListName.data()), 0);
  ASSERT_EQ(::chmod(path.c_str(), 0640), 0);
  SaveIso(path);
  const FileSnapshot after = SnapshotOfFile(path);
  EXPECT_EQ(after.attributes.size(), 0u);
  EXPECT_EQ(after.mode & 07777, 0640u);
}

// --- Access control lists of NFS version 4; see FaultyFiles.cpp ----------------------------------

constexpr const char* kServersList = "user.an.nfs4acl";

class SavedListOfAServer : public SavedAttributesOfFileSystem {
 protected:
  void SetUp() override {
    SavedAttributesOfFileSystem::SetUp();
    path_ = folder_.Write("file.xml", "old");
    ASSERT_TRUE(SetAttribute(path_, kServersList, "A::OWNER@:rwaDxtTnNcCy"));
    ASSERT_EQ(::chmod(path_.c_str(), 0640), 0);
  }
  ProcessRun Save(const std::string& faults = {}) const {
    return RunProcess(SaveCommand("document", ShippedStandard("ISO.xml"), path_),
                      {folder_.Path(), faults});
  }
  std::string path_;
};

TEST_F(SavedListOfAServer, IsKept) {
  const FileSnapshot before = SnapshotOfFile(path_);
  const ProcessRun run = Save();
  EXPECT_EQ(run.status, kSaved) << run.message;
  EXPECT_THAT(run.calls, testing::Contains("getxattr-list"));
  EXPECT_THAT(run.calls, testing::Contains("fsetxattr-list"));
  const FileSnapshot after = SnapshotOfFile(path_);
  EXPECT_EQ(after.content, kNewContent);
  EXPECT_EQ(after.attributes, before.attributes);
  EXPECT_EQ(after.mode, before.mode);
}

TEST_F(SavedListOfAServer, IsNotSpoiledByPermissionsThatItHasSetAlready) {
  ASSERT_EQ(::chmod(path_.c_str(), 0600), 0);  // those of a new file here
  const ProcessRun run = Save();
  EXPECT_EQ(run.status, kSaved) << run.message;
  EXPECT_THAT(run.calls, testing::Not(testing::Contains("fchmod")));
  EXPECT_EQ(SnapshotOfFile(path_).mode & 07777, 0600u);
}

TEST_F(SavedListOfAServer, OrNothingIsSaved) {
  const FileSnapshot before = SnapshotOfFile(path_);
  for (const char* operation : {"getxattr-list", "fsetxattr-list"}) {
    for (const int error : {EACCES, EPERM, EINVAL, EOPNOTSUPP, EIO}) {
      const ProcessRun run = Save(std::string(operation) + ":1:" + std::to_string(error));
      EXPECT_EQ(run.status, kNotSaved) << operation << error;
      EXPECT_THAT(run.message, testing::EndsWith(ReasonOf(error) + "\n"));
      EXPECT_EQ(SnapshotOfFile(path_), before);
    }
  }
}

TEST_F(SavedListOfAServer, ThatIsGoneByNowIsNotMissed) {
  const ProcessRun run = Save("getxattr-list:1:" + std::to_string(ENODATA));
  EXPECT_EQ(run.status, kSaved) << run.message;
  EXPECT_EQ(SnapshotOfFile(path_).attributes.size(), 0u);
}

}  // namespace
