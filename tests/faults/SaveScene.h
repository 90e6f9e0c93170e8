#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <string>
#include <vector>

#include "AttributesFolder.h"
#include "FolderSnapshot.h"
#include "ProcessRun.h"

/// Of the file there, and of the standard that is saved over it.
inline const std::string kOldContent = ContentOf(ShippedStandard("JIS.xml"));
inline const std::string kNewContent = ContentOf(ShippedStandard("ISO.xml"));

/// A folder with a target in one of the states that a save may meet. New files are made with the
/// permissions 0644 from then on.
class SaveScene {
 public:
  enum Kind {
    NewFile,
    OldFile,
    LinkToFile,
    LinkToNothing,
    ReplacedFile,  ///< what it holds is to be kept beside an older backup
    RestoredFile,  ///< has a backup
    DeletedFile,   ///< of which there is only a backup
    Kinds
  };

  explicit SaveScene(Kind kind) : kind_(kind) {
    ::umask(022);
    folder_.Write("neighbour.xml", "not to be touched");
    if (kind == LinkToFile) {
      std::filesystem::create_directory(folder_ / "sub");
      std::filesystem::create_symlink("sub/target.xml", folder_ / "link.xml");
      path_ = folder_ / "link.xml";
      target_ = "sub/target.xml";
      WriteOld(target_, kOldContent, 06754);
    } else if (kind == LinkToNothing) {
      std::filesystem::create_symlink("target.xml", folder_ / "link.xml");
      path_ = folder_ / "link.xml";
    } else if (kind != NewFile && kind != DeletedFile) {
      WriteOld(target_, kOldContent, 0640);
      Describe(target_);
    }
    if (kind == ReplacedFile) WriteOld(kBackup, "an older standard", 0600);
    if (kind == RestoredFile) WriteOld(kBackup, kNewContent, 0600);
    if (kind == DeletedFile) {
      WriteOld(kBackup, kNewContent, 0640);
      Describe(kBackup);
    }
    before_ = Now();
  }

  const std::filesystem::path& Folder() const { return folder_.Path(); }
  const std::string& Path() const { return path_; }
  const std::string& Target() const { return target_; }
  const FolderSnapshot& Before() const { return before_; }
  FolderSnapshot Now() const { return SnapshotOf(folder_.Path()); }
  /// Whether backups are made or used up.
  bool HasBackups() const { return kind_ >= ReplacedFile; }
  /// The file that the old content is kept in; empty when it is not kept.
  std::string KeptAs() const {
    if (kind_ == ReplacedFile) return "target.xml.bak.1";
    return kind_ == RestoredFile ? "target.xml.undone" : "";
  }

  /// How the folder is after a save.
  FolderSnapshot Saved() const {
    FolderSnapshot saved = SavedButNotUsedUp();
    if (kind_ == RestoredFile || kind_ == DeletedFile) saved.erase(kBackup);
    return saved;
  }
  /// The same when a backup that is restored could not be removed.
  FolderSnapshot SavedButNotUsedUp() const {
    FolderSnapshot saved = KeptOnly();
    const bool isNew = kind_ == NewFile || kind_ == LinkToNothing;
    FileSnapshot& file = saved[target_];
    if (isNew) file = {S_IFREG | 0644, ::geteuid(), ::getegid(), {}, {}};
    if (kind_ == DeletedFile) file = before_.at(kBackup);
    file.content = kNewContent;
    return saved;
  }
  /// Each state that a save may leave which ends too early, the first and the last ones.
  std::vector<FolderSnapshot> States() const {
    return {before_, KeptOnly(), SavedButNotUsedUp(), Saved()};
  }

 private:
  static constexpr const char* kBackup = "target.xml.bak";

  void WriteOld(const std::string& name, const std::string& content, mode_t permissions) {
    const std::string target = folder_.Write(name, content);
    if (::geteuid() == 0) {
      EXPECT_EQ(::chown(target.c_str(), 12345, 54321), 0);
    }
    EXPECT_EQ(::chmod(target.c_str(), permissions), 0);
  }

  void Describe(const std::string& name) {
    EXPECT_TRUE(SetAttribute(folder_ / name, kListName, AccessControlList()) &&
                SetAttribute(folder_ / name, "user.approved", "by the design office"))
        << "set TMPDIR to a folder on a file system with access control lists and attributes";
  }

  /// The old content is kept, but nothing is saved yet.
  FolderSnapshot KeptOnly() const {
    FolderSnapshot kept = before_;
    if (!KeptAs().empty()) kept[KeptAs()] = before_.at(target_);
    return kept;
  }

  Kind kind_;
  AttributesFolder folder_;
  std::string target_ = "target.xml";
  std::string path_ = folder_ / "target.xml";
  FolderSnapshot before_;
};

inline const char* Name(SaveScene::Kind kind) {
  constexpr std::array<const char*, SaveScene::Kinds> names = {
      "new file",      "old file",      "link to a file", "link to nothing",
      "replaced file", "restored file", "deleted file"};
  return names[kind];
}
