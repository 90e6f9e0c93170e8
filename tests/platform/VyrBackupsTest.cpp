#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <functional>
#include <iostream>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "TemporaryFolder.h"
#include "VyrBackups.h"
#include "VyrFiles.h"

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;
using Result = VyrFileChange::Result;
using Contents = std::map<std::string, std::string>;

constexpr std::int64_t kSecond = 1'000'000'000;
constexpr std::chrono::milliseconds kNoPatience{0};

/// Names and contents of the regular files of a folder.
Contents ContentsOf(const TemporaryFolder& folder) {
  Contents contents;
  for (const auto& entry : fs::directory_iterator(folder.Path())) {
    if (!entry.is_regular_file() || entry.is_symlink()) continue;
    contents[entry.path().filename()] = ReadWholeFile(entry.path());
  }
  return contents;
}

std::multiset<std::string> TextsOf(const TemporaryFolder& folder) {
  std::multiset<std::string> texts;
  for (const auto& [name, text] : ContentsOf(folder)) texts.insert(text);
  return texts;
}

struct stat StatusOf(const std::string& path) {
  struct stat status {};
  EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
  return status;
}

VyrFileChange Replace(const std::string& path, const std::string& content) {
  return VyrReplaceFile(path, content, VyrReplaced::Kept);
}

VyrFileChange Restore(const std::string& path) {
  return VyrRestoreFile(path, VyrReplaced::Kept);
}

/// Runs `work` in a process of its own, which exits with what it returns.
pid_t Start(const std::function<int()>& work) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(work());
  return child;
}

int End(pid_t child) {
  int status = 0;
  EXPECT_EQ(::waitpid(child, &status, 0), child);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// What `work` returns where no file may grow beyond `most` bytes.
int RunWithLimit(rlim_t most, const std::function<int()>& work) {
  return End(Start([&] {
    const rlimit limit = {most, most};
    std::signal(SIGXFSZ, SIG_IGN);
    return ::setrlimit(RLIMIT_FSIZE, &limit) == 0 ? work() : 126;
  }));
}

}  // namespace

// --- Replace -------------------------------------------------------------------------------------

TEST(Backups, EveryReplacementKeepsWhatTheFileHeldUnderTheNextNumber) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("a.xml", "first");
  EXPECT_EQ(Replace(file, "second").kept, file + ".bak");
  EXPECT_EQ(Replace(file, "third").kept, file + ".bak.1");
  const VyrFileChange change = Replace(file, "fourth");
  EXPECT_EQ(change.result, Result::Done);
  EXPECT_EQ(change.problem, "");
  EXPECT_EQ(change.kept, file + ".bak.2");
  EXPECT_THAT(ContentsOf(folder),
              ElementsAre(Pair("a.xml", "fourth"), Pair("a.xml.bak", "first"),
                          Pair("a.xml.bak.1", "second"), Pair("a.xml.bak.2", "third")));
}

TEST(Backups, NewestHasTheHighestNumberWhateverIsMissingBelowIt) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("a.xml", "now");
  folder.Write("a.xml.bak.7", "seven");
  EXPECT_EQ(Replace(file, "new").kept, file + ".bak.8");
  EXPECT_THAT(ContentsOf(folder), ElementsAre(Pair("a.xml", "new"), Pair("a.xml.bak.7", "seven"),
                                              Pair("a.xml.bak.8", "now")));
}

TEST(Backups, NumbersCountByValueAndNotAsText) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("a.xml", "now");
  for (const char* number : {"9", "10", "2"}) folder.Write(std::string("a.xml.bak.") + number, "");
  EXPECT_EQ(Replace(file, "new").kept, file + ".bak.11");
}

TEST(Backups, OtherNamesAreNoBackups) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("a.xml", "now");
  for (const char* name :
       {"a.xml.bak.", "a.xml.bak.0", "a.xml.bak.01", "a.xml.bak.-1", "a.xml.bak.+1", "a.xml.bak.1x",
        "a.xml.bak.1.2", "a.xml.bak.9999999999", "a.xml.bak.99999999999999999999", "a.xml.bak2",
        "a.xml.bak.bak", "b.xml.bak", "xa.xml.bak", "a.bak", "a.xml.undone", "A.XML.BAK"}) {
    folder.Write(name, "another's");
  }
  EXPECT_EQ(Restore(file).result, Result::NoBackup);
  EXPECT_EQ(Replace(file, "new").kept, file + ".bak");
  EXPECT_EQ(Restore(file).result, Result::Done);
  EXPECT_EQ(ReadWholeFile(file), "now");
}

TEST(Backups, WhateverHasANameOfABackupIsLeftAlone) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("a.xml", "now");
  fs::create_directory(folder / "a.xml.bak");
  fs::create_symlink("nowhere", folder / "a.xml.bak.1");
  ASSERT_EQ(::mkfifo((folder / "a.xml.bak.2").c_str(), 0600), 0);
  EXPECT_EQ(Replace(file, "new").kept, file + ".bak.3");
  EXPECT_TRUE(fs::is_directory(folder / "a.xml.bak"));
  EXPECT_TRUE(fs::is_symlink(folder / "a.xml.bak.1"));
  EXPECT_FALSE(fs::exists(folder / "nowhere"));
  EXPECT_TRUE(fs::is_fifo(folder / "a.xml.bak.2"));
  EXPECT_THAT(ContentsOf(folder), ElementsAre(Pair("a.xml", "new"), Pair("a.xml.bak.3", "now")));
}

TEST(Backups, BackupHasPermissionsOwnerAndTimesOfTheFile) {
  for (const mode_t mode : {0600, 0640, 0664, 0755, 04750}) {
    const TemporaryFolder folder;
    const std::string file = folder.Write("a.xml", "now");
    if (::getuid() == 0) {
      ASSERT_EQ(::chown(file.c_str(), 12, 34), 0);
    }
    ASSERT_EQ(::chmod(file.c_str(), mode), 0);
    const timespec times[2] = {{1'000'000'123, 5}, {900'000'000, 123'000'000}};
    ASSERT_EQ(::utimensat(AT_FDCWD, file.c_str(), times, 0), 0);
    const struct stat before = StatusOf(file);
    ASSERT_EQ(Replace(file, "new").result, Result::Done);
    const struct stat kept = StatusOf(file + ".bak");
    EXPECT_EQ(kept.st_mode, before.st_mode) << mode;
    EXPECT_EQ(kept.st_uid, before.st_uid);
    EXPECT_EQ(kept.st_gid, before.st_gid);
    EXPECT_EQ(kept.st_atim.tv_sec, before.st_atim.tv_sec);
    EXPECT_EQ(kept.st_mtim.tv_sec, before.st_mtim.tv_sec);
    EXPECT_EQ(kept.st_mtim.tv_nsec, before.st_mtim.tv_nsec);
    EXPECT_EQ(StatusOf(file).st_mode & 0777, mode & 0777);
  }
}

TEST(Backups, EveryByteIsKept) {
  const TemporaryFolder folder;
  std::string bytes;
  for (int i = 0; i < 1'000'000; ++i) bytes += static_cast<char>(i * 7 % 256);
  for (const std::string& content : {std::string(), std::string(1, '\0'), bytes}) {
    const std::string file = folder.Write("a.xml", content);
    const VyrFileChange change = Replace(file, "new");
    ASSERT_EQ(change.result, Result::Done);
    EXPECT_EQ(ReadWholeFile(change.kept), content);
    EXPECT_EQ(Restore(file).result, Result::Done);
    EXPECT_EQ(ReadWholeFile(file), content);
  }
}

TEST(Backups, SameContentIsNotWrittenAndNotKept) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("a.xml", "same");
  ASSERT_EQ(VyrSetModificationTime(file, 5 * kSecond), "");
  const struct stat before = StatusOf(file);
  for (const VyrReplaced replaced : {VyrReplaced::Kept, VyrReplaced::Dropped}) {
    EXPECT_EQ(VyrReplaceFile(file, "same", replaced).result, Result::Unchanged);
  }
  EXPECT_EQ(StatusOf(file).st_ino, before.st_ino);
  EXPECT_EQ(VyrModificationTime(file), 5 * kSecond);
  EXPECT_THAT(ContentsOf(folder), ElementsAre(Pair("a.xml", "same")));
}

TEST(Backups, NothingIsKeptOnRequestOrWhenThereWasNothing) {
  const TemporaryFolder folder;
  const std::string file = folder / "a.xml";
  EXPECT_EQ(Replace(file, "made").kept, "");
  EXPECT_EQ(VyrReplaceFile(file, "new", VyrReplaced::Dropped).kept, "");
  EXPECT_THAT(ContentsOf(folder), ElementsAre(Pair("a.xml", "new")));
}

TEST(Backups, OfASymbolicLinkTheFileIsReplacedAndTheBackupsStandBesideTheLink) {
  const TemporaryFolder folder;
  fs::create_directory(folder / "there");
  const std::string file = folder.Write("there/a.xml", "first");
  fs::create_symlink("there/a.xml", folder / "link.xml");
  const std::string link = folder / "link.xml";
  EXPECT_EQ(Replace(link, "second").kept, link + ".bak");
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(ReadWholeFile(file), "second");
  EXPECT_FALSE(fs::is_symlink(link + ".bak"));
  EXPECT_FALSE(fs::exists(file + ".bak"));

  EXPECT_EQ(Restore(link).kept, link + ".undone");
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(ReadWholeFile(file), "first");
  EXPECT_THAT(ContentsOf(folder), ElementsAre(Pair("link.xml.undone", "second")));

  ASSERT_EQ(Replace(link, "third").result, Result::Done);
  fs::remove(file);
  EXPECT_EQ(Restore(link).result, Result::Done);
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(ReadWholeFile(file), "first");
}

TEST(Backups, NamesAreReadWithBackslashesToo) {
  const TemporaryFolder folder;
  folder.Write("a.xml", "first");
  const std::string path = folder.Path().string() + "\\a.xml";
  EXPECT_EQ(Replace(path, "second").kept, folder / "a.xml.bak");
  EXPECT_EQ(Restore(path).backup, folder / "a.xml.bak");
}

TEST(Backups, FileWithoutAFolderIsOneOfTheWorkingFolder) {
  const TemporaryFolder folder;
  folder.Write("a.xml", "first");
  EXPECT_EQ(End(Start([&] {
              if (::chdir(folder.Path().c_str()) != 0) return 1;
              return Replace("a.xml", "second").kept == "a.xml.bak" ? 0 : 2;
            })),
            0);
  EXPECT_EQ(ReadWholeFile(folder / "a.xml.bak"), "first");
}

TEST(Backups, ANameWithoutRoomForMoreLeavesEverythingAlone) {
  const TemporaryFolder folder;
  // Of 255 bytes ".bak" takes 4 and ".bak.1" takes 6.
  const struct {
    std::size_t length;
    int fit;
  } cases[] = {{249, 3}, {251, 1}, {252, 0}, {255, 0}};
  for (const auto& test : cases) {
    SCOPED_TRACE(test.length);
    const std::string file = folder.Write(std::string(test.length, 'n'), "0");
    for (int i = 1; i <= test.fit; ++i) {
      EXPECT_EQ(Replace(file, std::to_string(i)).result, Result::Done);
    }
    if (test.fit == 3) continue;
    const Contents before = ContentsOf(folder);
    const VyrFileChange change = Replace(file, "new");
    EXPECT_EQ(change.result, Result::NoName);
    EXPECT_EQ(change.file, file);
    EXPECT_THAT(change.problem, HasSubstr("too long; choose a shorter name"));
    EXPECT_EQ(change.kept, "");
    EXPECT_EQ(ContentsOf(folder), before);
    EXPECT_EQ(VyrReplaceFile(file, "new", VyrReplaced::Dropped).result, Result::Done);
  }
}

TEST(Backups, HighestNumberOfAllHasNoNext) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("a.xml", "now");
  folder.Write("a.xml.bak.999999999", "last");
  EXPECT_EQ(Replace(file, "new").result, Result::NoName);
  EXPECT_THAT(ContentsOf(folder),
              ElementsAre(Pair("a.xml", "now"), Pair("a.xml.bak.999999999", "last")));
}

TEST(Backups, BackupThatFindsNoRoomLeavesEverythingAlone) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("a.xml", std::string(2000, 'o'));
  const Contents before = ContentsOf(folder);
  const int result =
      RunWithLimit(1000, [&] { return static_cast<int>(Replace(file, "new").result); });
  EXPECT_EQ(result, static_cast<int>(Result::NotKept));
  EXPECT_EQ(ContentsOf(folder), before);
}

TEST(Backups, SaveThatFailsTakesItsBackupAway) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("a.xml", "small");
  folder.Write("a.xml.bak", "older");
  const Contents before = ContentsOf(folder);
  const int result = RunWithLimit(1000, [&] {
    const VyrFileChange change = Replace(file, std::string(2000, 'n'));
    return change.kept.empty() ? static_cast<int>(change.result) : 99;
  });
  EXPECT_EQ(result, static_cast<int>(Result::Failed));
  EXPECT_EQ(ContentsOf(folder), before);
}

TEST(Backups, OnlyRegularFilesAreReplacedAndNobodyIsKeptWaiting) {
  const TemporaryFolder folder;
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  for (const std::string& path :
       {folder.Path().string(), folder / "pipe", std::string("/dev/full")}) {
    EXPECT_EQ(Replace(path, "new").result, Result::Failed) << path;
    EXPECT_EQ(Restore(path).result, Result::Failed) << path;
  }
  EXPECT_EQ(Replace(folder / "missing/a.xml", "new").result, Result::Failed);
  EXPECT_TRUE(ContentsOf(folder).empty());
}

// --- Restore -------------------------------------------------------------------------------------

TEST(Backups, RestoringGoesBackOneByOneAndLosesNothing) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("a.xml", "first");
  ASSERT_EQ(VyrSetModificationTime(file, 100 * kSecond + 1), "");
  ASSERT_EQ(Replace(file, "second").result, Result::Done);
  ASSERT_EQ(VyrSetModificationTime(file, 200 * kSecond + 2), "");
  ASSERT_EQ(Replace(file, "third").result, Result::Done);

  const VyrFileChange change = Restore(file);
  EXPECT_EQ(change.result, Result::Done);
  EXPECT_EQ(change.backup, file + ".bak.1");
  EXPECT_EQ(change.kept, file + ".undone");
  EXPECT_EQ(ReadWholeFile(file), "second");
  EXPECT_EQ(VyrModificationTime(file), 200 * kSecond + 2);

  EXPECT_EQ(Restore(file).kept, file + ".undone.1");
  EXPECT_EQ(VyrModificationTime(file), 100 * kSecond + 1);
  EXPECT_EQ(VyrModificationTime(file + ".undone.1"), 200 * kSecond + 2);
  EXPECT_EQ(Restore(file).result, Result::NoBackup);
  EXPECT_THAT(ContentsOf(folder), ElementsAre(Pair("a.xml", "first"), Pair("a.xml.undone", "third"),
                                              Pair("a.xml.undone.1", "second")));
}

TEST(Backups, RestoringTakesTheHighestNumberOfThoseThatAreLeft) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("a.xml", "now");
  folder.Write("a.xml.bak", "0");
  folder.Write("a.xml.bak.9", "9");
  folder.Write("a.xml.bak.10", "10");
  for (const char* expected : {"10", "9", "0"}) {
    EXPECT_EQ(VyrRestoreFile(file, VyrReplaced::Dropped).result, Result::Done);
    EXPECT_EQ(ReadWholeFile(file), expected);
  }
  EXPECT_THAT(ContentsOf(folder), ElementsAre(Pair("a.xml", "0")));
}

TEST(Backups, DeletedFileIsRestoredWithPermissionsAndTimesOfItsBackup) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("a.xml", "first");
  ASSERT_EQ(::chmod(file.c_str(), 0600), 0);
  ASSERT_EQ(VyrSetModificationTime(file, 100 * kSecond + 1), "");
  ASSERT_EQ(Replace(file, "second").result, Result::Done);
  fs::remove(file);
  const VyrFileChange change = Restore(file);
  EXPECT_EQ(change.result, Result::Done) << change.problem;
  EXPECT_EQ(change.kept, "");
  EXPECT_THAT(ContentsOf(folder), ElementsAre(Pair("a.xml", "first")));
  EXPECT_EQ(StatusOf(file).st_mode & 07777, 0600u);
  EXPECT_EQ(VyrModificationTime(file), 100 * kSecond + 1);
}

TEST(Backups, RestoredFileKeepsItsPermissions) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("a.xml", "first");
  ASSERT_EQ(Replace(file, "second").result, Result::Done);
  ASSERT_EQ(::chmod(file.c_str(), 0640), 0);
  ASSERT_EQ(Restore(file).result, Result::Done);
  EXPECT_EQ(StatusOf(file).st_mode & 07777, 0640u);
}

TEST(Backups, BackupThatIsNoRegularFileIsRefused) {
  const std::function<void(const std::string&)> makers[] = {
      [](const std::string& path) { fs::create_directory(path); },
      [](const std::string& path) { fs::create_symlink("a.xml.bak", path); },
      [](const std::string& path) { fs::create_symlink("nowhere", path); },
      [](const std::string& path) { ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0); },
  };
  for (const auto& make : makers) {
    const TemporaryFolder folder;
    const std::string file = folder.Write("a.xml", "now");
    folder.Write("a.xml.bak", "older");
    make(file + ".bak.1");
    const VyrFileChange change = Restore(file);
    EXPECT_EQ(change.result, Result::BadBackup);
    EXPECT_EQ(change.file, file + ".bak.1");
    EXPECT_NE(change.problem, "");
    EXPECT_THAT(ContentsOf(folder), ElementsAre(Pair("a.xml", "now"), Pair("a.xml.bak", "older")));
  }
}

TEST(Backups, WithoutABackupNothingIsRestored) {
  const TemporaryFolder folder;
  folder.Write("a.xml", "now");
  for (const char* path : {"a.xml", "missing.xml", "missing/a.xml"}) {
    const VyrFileChange change = Restore(folder / path);
    EXPECT_EQ(change.result, Result::NoBackup) << path;
    EXPECT_NE(change.problem, "");
  }
  EXPECT_THAT(ContentsOf(folder), ElementsAre(Pair("a.xml", "now")));
}

TEST(Backups, RestoreThatFailsLeavesEverythingAlone) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("a.xml", "small");
  folder.Write("a.xml.bak", std::string(2000, 'o'));
  const Contents before = ContentsOf(folder);
  EXPECT_EQ(RunWithLimit(1000, [&] { return static_cast<int>(Restore(file).result); }),
            static_cast<int>(Result::Failed));
  EXPECT_EQ(ContentsOf(folder), before);
  folder.Write("a.xml", std::string(2000, 'n'));
  folder.Write("a.xml.bak", "small");
  EXPECT_EQ(RunWithLimit(1000, [&] { return static_cast<int>(Restore(file).result); }),
            static_cast<int>(Result::NotKept));
  EXPECT_THAT(ContentsOf(folder),
              ElementsAre(Pair("a.xml", std::string(2000, 'n')), Pair("a.xml.bak", "small")));
}

// --- Several processes ---------------------------------------------------------------------------

TEST(Backups, ProcessesThatReplaceAFileAtOnceKeepEveryContent) {
  constexpr int processes = 12;
  const TemporaryFolder folder;
  const std::string file = folder.Write("a.xml", "first");
  std::multiset<std::string> expected = {"first"};
  std::vector<pid_t> children;
  for (int i = 0; i < processes; ++i) {
    const std::string content = "content of process " + std::to_string(i);
    expected.insert(content);
    children.push_back(Start([=] { return static_cast<int>(Replace(file, content).result); }));
  }
  for (const pid_t child : children) EXPECT_EQ(End(child), static_cast<int>(Result::Done));
  EXPECT_EQ(TextsOf(folder), expected);
  EXPECT_TRUE(fs::exists(file + ".bak." + std::to_string(processes - 1)));
}

TEST(Backups, ProcessesThatRestoreAFileAtOnceUseUpABackupEach) {
  constexpr int processes = 8;
  for (const bool isDeleted : {false, true}) {
    const TemporaryFolder folder;
    const std::string file = folder.Write("a.xml", "0");
    for (int i = 1; i <= processes; ++i) {
      ASSERT_EQ(Replace(file, std::to_string(i)).result, Result::Done);
    }
    if (isDeleted) fs::remove(file);
    std::vector<pid_t> children;
    for (int i = 0; i < processes; ++i) {
      children.push_back(Start([=] { return static_cast<int>(Restore(file).result); }));
    }
    for (const pid_t child : children) EXPECT_EQ(End(child), static_cast<int>(Result::Done));
    EXPECT_EQ(ReadWholeFile(file), "0");
    std::multiset<std::string> expected;
    for (int i = 0; i < processes + (isDeleted ? 0 : 1); ++i) expected.insert(std::to_string(i));
    EXPECT_EQ(TextsOf(folder), expected);
    EXPECT_EQ(Restore(file).result, Result::NoBackup);
  }
}

TEST(Backups, FileThatAnotherKeepsIsNotWaitedForForever) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("a.xml", "now");
  folder.Write("a.xml.bak", "older");
  const Contents before = ContentsOf(folder);
  const int held = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(::flock(held, LOCK_EX), 0);
  for (const VyrFileChange& change : {VyrReplaceFile(file, "new", VyrReplaced::Kept, kNoPatience),
                                      VyrRestoreFile(file, VyrReplaced::Kept, kNoPatience)}) {
    EXPECT_EQ(change.result, Result::Failed);
    EXPECT_THAT(change.problem, HasSubstr("another process"));
  }
  EXPECT_EQ(ContentsOf(folder), before);
  ::close(held);
  EXPECT_EQ(Replace(file, "new").result, Result::Done);
}

TEST(Backups, BackupThatAnotherKeepsIsNoBadBackup) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("a.xml", "now");
  const std::string backup = folder.Write("a.xml.bak", "older");
  const Contents before = ContentsOf(folder);
  const int held = ::open(backup.c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(::flock(held, LOCK_EX), 0);
  const VyrFileChange change = VyrRestoreFile(file, VyrReplaced::Kept, kNoPatience);
  EXPECT_EQ(change.result, Result::Failed);
  EXPECT_EQ(change.file, backup);
  EXPECT_THAT(change.problem, HasSubstr("another process; wait"));
  EXPECT_EQ(ContentsOf(folder), before);
  ::close(held);
  EXPECT_EQ(Restore(file).result, Result::Done);
}

TEST(Backups, RefusalsSayWhatWouldBeRight) {
  const TemporaryFolder folder;
  fs::create_symlink("loop", folder / "loop");
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  const std::string file = folder.Write("file", "now");
  const struct {
    std::string path;
    const char* problem;
  } cases[] = {
      {folder.Path(), "is a folder, not a file; name a file in it"},
      {folder / "pipe", "is not a regular file; name one that is"},
      {folder / "loop",
       "cannot be opened: Too many levels of symbolic links; its symbolic links lead to each "
       "other, name the file itself"},
      {file + "/inside", "cannot be opened: Not a directory; look at the spelling of its folder"},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(Replace(test.path, "new").problem, test.problem);
    EXPECT_EQ(Restore(test.path).problem, test.problem);
  }
  EXPECT_EQ(Replace(folder / "missing/a.xml", "new").problem,
            "cannot be written: no file can be made in its folder: No such file or directory; make "
            "its folder or look at the spelling of that");
  folder.Write("old", std::string(2000, 'o'));
  EXPECT_EQ(RunWithLimit(1000,
                         [&] {
                           const bool isRight =
                               Replace(folder / "old", "new").problem ==
                               "what it holds cannot be kept as old.bak: File too large; raise the "
                               "limit on the size of files or choose another place";
                           return isRight ? 0 : 1;
                         }),
            0);
}

// --- Processes that are killed or meet others ----------------------------------------------------

namespace {

using Work = std::function<void(const TemporaryFolder&)>;

enum class Traced { ToTheStop, ToTheEnd, Not };

/// Stops of a process, which has one before and one after every call of the operating system.
struct Stops {
  int first;
  int second = 0;  ///< 0: there is none
};

/// Starts a process that does `work`, does `then` with it at its `stops`, and waits for its end.
Traced RunToStops(const Stops& stops, const std::function<void()>& work,
                  const std::function<void(pid_t)>& then) {
  const pid_t child = Start([&] {
    if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) return 1;
    ::raise(SIGSTOP);
    work();
    return 0;
  });
  int status = 0;
  ::waitpid(child, &status, 0);
  if (!WIFSTOPPED(status)) return Traced::Not;
  const int last = std::max(stops.first, stops.second);
  for (int stop = 1; stop <= last; ++stop) {
    if (::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr) != 0) return Traced::Not;
    ::waitpid(child, &status, 0);
    if (WIFEXITED(status)) return stop > stops.first ? Traced::ToTheStop : Traced::ToTheEnd;
    if (stop == stops.first || stop == stops.second) then(child);
  }
  ::ptrace(PTRACE_DETACH, child, nullptr, nullptr);
  ::waitpid(child, &status, 0);
  return Traced::ToTheStop;
}

/// Does `then` at every moment at which `work` could leave something different behind, each time in
/// a new folder, and has `check` look at what is there in the end. With a `distance` it is done
/// once more so many stops later.
void AtEveryStop(const Work& prepare, const Work& work,
                 const std::function<void(const TemporaryFolder&, pid_t)>& then,
                 const std::function<void(const Contents&)>& check, int distance = 0) {
  constexpr int most = 2000;
  int stop = 1;
  for (; stop < most && !testing::Test::HasFailure(); ++stop) {
    SCOPED_TRACE(stop);
    const TemporaryFolder folder;
    prepare(folder);
    const Stops stops = {stop, distance == 0 ? 0 : stop + distance};
    const Traced traced = RunToStops(
        stops, [&] { work(folder); }, [&](pid_t process) { then(folder, process); });
    if (traced == Traced::Not) GTEST_SKIP() << "processes cannot be traced here";
    if (traced == Traced::ToTheEnd) break;
    Contents contents = ContentsOf(folder);
    // What is being written has no name that anybody would look at.
    std::erase_if(contents, [](const auto& entry) { return entry.first.ends_with(".tmp"); });
    check(contents);
  }
  EXPECT_GT(stop, 30);
  EXPECT_LT(stop, most);
  std::cout << "backups: " << stop - 1 << " stops tried" << std::endl;
}

void Kill(const TemporaryFolder& /*folder*/, pid_t process) {
  ::kill(process, SIGKILL);
}

void ReplaceByNew(const TemporaryFolder& folder) {
  Replace(folder / "a.xml", "new");
}

void RestoreIt(const TemporaryFolder& folder) {
  Restore(folder / "a.xml");
}

}  // namespace

TEST(Backups, ProcessThatIsKilledWhileItReplacesLeavesTheFileWholeAndNothingLost) {
  AtEveryStop(
      [](const TemporaryFolder& folder) {
        folder.Write("a.xml", "old");
        folder.Write("a.xml.bak", "older");
      },
      ReplaceByNew, Kill,
      [](const Contents& contents) {
        const Contents states[] = {
            {{"a.xml", "old"}, {"a.xml.bak", "older"}},
            {{"a.xml", "old"}, {"a.xml.bak", "older"}, {"a.xml.bak.1", "old"}},
            {{"a.xml", "new"}, {"a.xml.bak", "older"}, {"a.xml.bak.1", "old"}},
        };
        EXPECT_THAT(states, testing::Contains(contents));
      });
}

TEST(Backups, ProcessThatIsKilledWhileItRestoresLeavesTheFileWholeAndNothingLost) {
  AtEveryStop(
      [](const TemporaryFolder& folder) {
        folder.Write("a.xml", "now");
        folder.Write("a.xml.bak", "backup");
      },
      RestoreIt, Kill,
      [](const Contents& contents) {
        const Contents states[] = {
            {{"a.xml", "now"}, {"a.xml.bak", "backup"}},
            {{"a.xml", "now"}, {"a.xml.bak", "backup"}, {"a.xml.undone", "now"}},
            {{"a.xml", "backup"}, {"a.xml.bak", "backup"}, {"a.xml.undone", "now"}},
            {{"a.xml", "backup"}, {"a.xml.undone", "now"}},
        };
        EXPECT_THAT(states, testing::Contains(contents));
      });
}

TEST(Backups, ProcessThatIsKilledWhileItRestoresADeletedFileLosesNothing) {
  AtEveryStop([](const TemporaryFolder& folder) { folder.Write("a.xml.bak", "backup"); }, RestoreIt,
              Kill,
              [](const Contents& contents) {
                const Contents states[] = {
                    {{"a.xml.bak", "backup"}},
                    {{"a.xml", "backup"}, {"a.xml.bak", "backup"}},
                    {{"a.xml", "backup"}},
                };
                EXPECT_THAT(states, testing::Contains(contents));
              });
}

TEST(Backups, FileThatTakesTheNameOfTheBackupAtAnyMomentIsNotReplaced) {
  bool isFirst = false;
  AtEveryStop([](const TemporaryFolder& folder) { folder.Write("a.xml", "old"); }, ReplaceByNew,
              [&](const TemporaryFolder& folder, pid_t) {
                isFirst = !fs::exists(folder / "a.xml.bak");
                if (isFirst) folder.Write("a.xml.bak", "another's");
              },
              [&](const Contents& contents) {
                const Contents second = {
                    {"a.xml", "new"}, {"a.xml.bak", "another's"}, {"a.xml.bak.1", "old"}};
                const Contents first = {{"a.xml", "new"}, {"a.xml.bak", "old"}};
                EXPECT_EQ(contents, isFirst ? second : first);
              });
}

TEST(Backups, ThoseThatReplaceAFileKeepEveryContentWhereverTheyMeet) {
  // At the later stop the process has read what it is going to replace.
  for (const int distance : {0, 30}) {
    std::multiset<std::string> expected;
    AtEveryStop(
        [&](const TemporaryFolder& folder) {
          folder.Write("a.xml", "old");
          expected = {"old", "new"};
        },
        ReplaceByNew,
        [&](const TemporaryFolder& folder, pid_t) {
          const std::string content = "another's " + std::to_string(expected.size());
          const VyrFileChange change =
              VyrReplaceFile(folder / "a.xml", content, VyrReplaced::Kept, kNoPatience);
          if (change.result == Result::Done) expected.insert(content);
        },
        [&](const Contents& contents) {
          std::multiset<std::string> texts;
          for (const auto& [name, text] : contents) texts.insert(text);
          EXPECT_EQ(texts, expected);
        },
        distance);
  }
}

TEST(Backups, TwoThatRestoreADeletedFileUseUpABackupEachWhereverTheyMeet) {
  bool isDone = false;  // the second did not wait for the first
  AtEveryStop(
      [](const TemporaryFolder& folder) {
        folder.Write("a.xml.bak", "older");
        folder.Write("a.xml.bak.1", "newer");
      },
      RestoreIt,
      [&](const TemporaryFolder& folder, pid_t) {
        const VyrFileChange change =
            VyrRestoreFile(folder / "a.xml", VyrReplaced::Kept, kNoPatience);
        isDone = change.result == Result::Done;
      },
      [&](const Contents& contents) {
        const Contents both = {{"a.xml", "older"}, {"a.xml.undone", "newer"}};
        const Contents one = {{"a.xml", "newer"}, {"a.xml.bak", "older"}};
        EXPECT_EQ(contents, isDone ? both : one);
      });
}
