#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "DiagnosticsCapture.h"
#include "HostSettings.h"
#include "TemporaryFolder.h"
#include "VyrFiles.h"
#include "VyrShippedStandards.h"
#include "VyrStdServices.h"

namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr std::int64_t kSomeTime = 1'234'567'890'123'456'789;

std::vector<std::string> FilesOf(const char* type) {
  const std::unique_ptr<VyrListValVyrUnicodeString> files(VyrStdServices::GetStandardFiles(type));
  std::vector<std::string> paths;
  for (const VyrUnicodeString& file : *files) paths.emplace_back(file.View());
  return paths;
}

struct stat StatusOf(const std::string& path) {
  struct stat status {};
  EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
  return status;
}

/// Everything below a folder with its content, for showing that nothing has changed.
std::vector<std::string> Everything(const fs::path& folder) {
  std::vector<std::string> all;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    const bool isFile = !entry.is_symlink() && entry.is_regular_file();
    all.push_back(entry.path().string() + (isFile ? "=" + ReadWholeFile(entry.path()) : ""));
  }
  std::sort(all.begin(), all.end());
  return all;
}

// --- Names ---------------------------------------------------------------------------------------

const std::string kHostileNames[] = {"",      ".",    "..",  "../x", "x/..",  "a..b", "/etc/x",
                                     "a/b",   "/",    "\\",  "a\\b", "..\\x", "a\nb", "\x01",
                                     "a\x7F", "a\tb", "./x", "\xFF", "a\xC3", "x/",   "\\\\h\\s"};
const std::string kStandardNames[] = {
    "ISO", "ANSI-ASME", "My standard 2", ".x", "a.b", "x.", "\u5BF8\u6CD5",
    "C:",  "~",         "$HOME",         "*"};

TEST(StdServices, NameThatCouldLeadOutOfAFolderIsNone) {
  for (const std::string& name : kHostileNames) {
    EXPECT_FALSE(VyrStdServices::IsStandardName(name)) << name;
  }
  EXPECT_FALSE(VyrStdServices::IsStandardName(std::string_view("a\0b", 3)));
  for (const std::string& name : kStandardNames) {
    EXPECT_TRUE(VyrStdServices::IsStandardName(name)) << name;
  }
}

// --- Folders -------------------------------------------------------------------------------------

TEST(StdServices, FoldersAreThoseOfTheEnvironmentBeforeTheShippedOne) {
  const EnvironmentVariable path("VYR_STANDARD_PATH", ":/site one::/site2:");
  std::vector<std::string> expected = {"/site one", "/site2"};
  if (!VyrShippedStandardsFolder().empty()) expected.push_back(VyrShippedStandardsFolder());
  EXPECT_EQ(VyrStdServices::GetFolders(), expected);
  path.Set(std::nullopt);
  expected.erase(expected.begin(), expected.begin() + 2);
  EXPECT_EQ(VyrStdServices::GetFolders(), expected);
  path.Set("::");
  EXPECT_EQ(VyrStdServices::GetFolders(), expected);
}

TEST(StdServices, FoldersOfTheHostReplaceTheDefaultUntilItSetsNone) {
  const EnvironmentVariable path("VYR_STANDARD_PATH", "/site");
  const auto byDefault = VyrStdServices::GetFolders();
  {
    const StandardFolders folders({"/a", "", "/b"});
    EXPECT_THAT(VyrStdServices::GetFolders(), ElementsAre("/a", "/b"));
  }
  EXPECT_EQ(VyrStdServices::GetFolders(), byDefault);
}

// --- Listing -------------------------------------------------------------------------------------

TEST(StdServices, FilesAreListedFolderAfterFolderWithoutHiddenOnes) {
  const TemporaryFolder first;
  const TemporaryFolder second;
  for (const char* name : {"b.xml", "a.xml"}) first.Write(name, "");
  for (const char* name : {"c.xml", "b.xml", "A.xml"}) second.Write(name, "");
  const StandardFolders folders({first.Path(), second / "missing", second.Path()});
  const DiagnosticsCapture capture;
  EXPECT_THAT(FilesOf("drafting"),
              ElementsAre(first / "a.xml", first / "b.xml", second / "A.xml", second / "c.xml"));
  EXPECT_THAT(capture.errors, IsEmpty()) << "a folder that does not exist counts as empty";
}

TEST(StdServices, OnlyFilesOfStandardsAreListed) {
  const TemporaryFolder folder;
  for (const char* name : {"ISO.xml", "notes.txt", "OLD.XML", "x.xml.bak", ".xml", "..xml",
                           "a..b.xml", "a\\b.xml", "a\nb.xml", "a\xFF.xml", "xml"}) {
    folder.Write(name, "");
  }
  fs::create_directory(folder / "folder.xml");
  fs::create_symlink("nowhere", folder / "dangling.xml");
  fs::create_symlink("ISO.xml", folder / "link.xml");
  const StandardFolders folders({folder.Path()});
  EXPECT_THAT(FilesOf("drafting"), ElementsAre(folder / "ISO.xml", folder / "link.xml"));
}

TEST(StdServices, PathsAreFullForARelativeFolder) {
  const TemporaryFolder folder;
  folder.Write("ISO.xml", "");
  const fs::path before = fs::current_path();
  fs::current_path(folder.Path().parent_path());
  const StandardFolders folders({folder.Path().filename()});
  const auto files = FilesOf("drafting");
  fs::current_path(before);
  EXPECT_THAT(files, ElementsAre(folder / "ISO.xml"));
}

TEST(StdServices, FolderThatCannotBeReadIsReportedOnceAndTheOthersAreListed) {
  const TemporaryFolder folder;
  folder.Write("ISO.xml", "");
  fs::create_symlink("loop", folder / "loop");
  const StandardFolders folders({folder / "loop", folder.Path()});
  const DiagnosticsCapture capture;
  EXPECT_THAT(FilesOf("drafting"), ElementsAre(folder / "ISO.xml"));
  EXPECT_THAT(capture.errors, ElementsAre(AllOf(StartsWith("VyrStdServices: " + folder / "loop"),
                                                HasSubstr("cannot be read: "))));
}

TEST(StdServices, OtherTypesHaveNoStandards) {
  const StandardFolders folders({HOL_STANDARDS});
  EXPECT_EQ(VyrStdServices::GetStandardFiles(nullptr), nullptr);
  for (const char* type : {"", "Drafting", "drafting ", "tolerancing"}) {
    EXPECT_THAT(FilesOf(type), IsEmpty()) << type;
  }
  EXPECT_EQ(FilesOf("drafting").size(), 3u);
}

// --- Copying -------------------------------------------------------------------------------------

/// A folder with the standard "S", and a place for its copy.
class CopyOfAStandard : public testing::Test {
 protected:
  CopyOfAStandard() { EXPECT_EQ(VyrSetModificationTime(source_, kSomeTime), ""); }

  HRESULT Copy(const std::string& name = "S") const { return CopyTo(target_, name); }
  static HRESULT CopyTo(const std::string& target, const std::string& name = "S") {
    return VyrStdServices::CopyStandard(name.c_str(), "drafting", target.c_str());
  }
  /// Expects a failure that says why in one line about `file`, and changes nothing.
  void ExpectFailure(const std::string& target, const std::string& file, const std::string& why) {
    capture_.Clear();
    const auto work = Everything(work_.Path());
    EXPECT_EQ(CopyTo(target), E_FAIL) << target;
    EXPECT_THAT(capture_.errors, ElementsAre(AllOf(StartsWith("VyrStdServices: " + file),
                                                   HasSubstr(why), testing::EndsWith("\n"))));
    EXPECT_EQ(Everything(work_.Path()), work);
  }

  const TemporaryFolder standards_;
  const TemporaryFolder work_;
  const std::string source_ = standards_.Write("S.xml", "content");
  const std::string target_ = work_ / "copy.xml";
  const StandardFolders folders_{{standards_.Path()}};
  DiagnosticsCapture capture_;
};

TEST_F(CopyOfAStandard, HasContentAndTimeOfItsSource) {
  EXPECT_EQ(Copy(), S_OK);
  EXPECT_EQ(ReadWholeFile(target_), "content");
  EXPECT_EQ(VyrModificationTime(target_), kSomeTime);
  EXPECT_THAT(Everything(work_.Path()), ElementsAre(target_ + "=content"));
  EXPECT_THAT(capture_.errors, IsEmpty());
}

TEST_F(CopyOfAStandard, IsLeftAloneWhenItIsTheSame) {
  ASSERT_EQ(Copy(), S_OK);
  const struct stat before = StatusOf(target_);
  EXPECT_EQ(Copy(), S_OK);
  const struct stat after = StatusOf(target_);
  EXPECT_EQ(after.st_ino, before.st_ino);
  EXPECT_EQ(after.st_ctim.tv_sec, before.st_ctim.tv_sec);
  EXPECT_EQ(after.st_ctim.tv_nsec, before.st_ctim.tv_nsec) << "it was touched";
}

TEST_F(CopyOfAStandard, OfTheSameContentOnlyGetsTheTimeOfItsSource) {
  for (const std::int64_t time : {kSomeTime - 1, kSomeTime + 1, std::int64_t{0}}) {
    work_.Write("copy.xml", "content");
    ASSERT_EQ(VyrSetModificationTime(target_, time), "");
    const struct stat before = StatusOf(target_);
    EXPECT_EQ(Copy(), S_OK);
    EXPECT_EQ(VyrModificationTime(target_), kSomeTime);
    EXPECT_EQ(StatusOf(target_).st_ino, before.st_ino) << "it was written anew";
  }
}

TEST_F(CopyOfAStandard, OfOtherContentIsReplacedWhateverItsTime) {
  for (const std::int64_t time : {kSomeTime - 1, kSomeTime, kSomeTime + 1}) {
    work_.Write("copy.xml", "CONTENT");
    ASSERT_EQ(VyrSetModificationTime(target_, time), "");
    EXPECT_EQ(Copy(), S_OK);
    EXPECT_EQ(ReadWholeFile(target_), "content");
    EXPECT_EQ(VyrModificationTime(target_), kSomeTime);
  }
}

TEST_F(CopyOfAStandard, TargetMayBeWrittenWithABackslash) {
  EXPECT_EQ(CopyTo(work_.Path().string() + "\\copy.xml"), S_OK);
  EXPECT_THAT(Everything(work_.Path()), ElementsAre(target_ + "=content"));
}

TEST_F(CopyOfAStandard, OntoItselfChangesNothing) {
  const auto before = Everything(standards_.Path());
  EXPECT_EQ(CopyTo(source_), S_OK);
  EXPECT_EQ(Everything(standards_.Path()), before);
}

TEST_F(CopyOfAStandard, FirstFolderThatHasItDecides) {
  const TemporaryFolder other;
  other.Write("S.xml", "other");
  for (const bool otherFirst : {true, false}) {
    std::vector<std::string> both = {other.Path(), standards_.Path()};
    if (!otherFirst) std::swap(both[0], both[1]);
    const StandardFolders folders({work_ / "missing", both[0], both[1]});
    EXPECT_EQ(Copy(), S_OK);
    EXPECT_EQ(ReadWholeFile(target_), otherFirst ? "other" : "content");
  }
  EXPECT_THAT(capture_.errors, IsEmpty());
}

TEST_F(CopyOfAStandard, StandardThatCannotBeReadDoesNotGiveWayToALaterFolder) {
  const TemporaryFolder broken;
  const StandardFolders folders({broken.Path(), standards_.Path()});
  const std::string file = broken / "S.xml";
  fs::create_directory(file);
  ExpectFailure(target_, file, "is a folder, not a file");
  fs::remove(file);
  fs::create_symlink("nowhere", file);
  ExpectFailure(target_, file, "cannot be opened: ");
  fs::remove(file);
  ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
  ExpectFailure(target_, file, "is not a regular file");
}

TEST_F(CopyOfAStandard, UnreadableFolderIsPassedByAndReported) {
  fs::create_symlink("loop", work_ / "loop");
  const StandardFolders folders({work_ / "loop", standards_.Path()});
  EXPECT_EQ(Copy(), S_OK);
  EXPECT_EQ(ReadWholeFile(target_), "content");
  EXPECT_THAT(capture_.errors,
              ElementsAre(AllOf(StartsWith("VyrStdServices: S "), HasSubstr(work_ / "loop"),
                                HasSubstr("cannot be searched: "))));
  capture_.Clear();
  EXPECT_EQ(Copy("T"), E_FAIL);
  EXPECT_THAT(capture_.errors, ElementsAre(AllOf(HasSubstr("T is in none of the standard folders"),
                                                 HasSubstr(work_ / "loop"))));
}

TEST_F(CopyOfAStandard, MissingStandardIsReportedAndAnOldCopyStays) {
  work_.Write("copy.xml", "old");
  for (const std::string& name : {std::string("T"), std::string("s"), std::string(300, 'n')}) {
    capture_.Clear();
    EXPECT_EQ(Copy(name), E_FAIL);
    EXPECT_THAT(capture_.errors,
                ElementsAre("VyrStdServices: " + name + " is in none of the standard folders\n"));
  }
  fs::remove(source_);
  ExpectFailure(target_, "S", "is in none of the standard folders");
  EXPECT_EQ(ReadWholeFile(target_), "old");
}

TEST_F(CopyOfAStandard, HostileNameIsRefusedAndNothingIsWritten) {
  fs::create_directory(standards_ / "sub");
  standards_.Write("sub/x.xml", "inside");
  standards_.Write(".xml", "nameless");
  const auto before = Everything(work_.Path());
  std::vector<std::string> names(std::begin(kHostileNames), std::end(kHostileNames));
  names.insert(names.end(), {"sub/x", "sub\\x", standards_ / "S", "../" + standards_ / "S"});
  for (const std::string& name : names) {
    capture_.Clear();
    EXPECT_EQ(Copy(name), E_INVALIDARG) << name;
    EXPECT_EQ(capture_.errors.size(), 1u) << name;
    EXPECT_EQ(Everything(work_.Path()), before) << name;
  }
}

TEST_F(CopyOfAStandard, HostileNameForgesNoLineOfTheLog) {
  EXPECT_EQ(Copy("a\nVyrStdServices: all is well\x1B[2J"), E_INVALIDARG);
  EXPECT_THAT(capture_.errors,
              ElementsAre("VyrStdServices: \"a?VyrStdServices: all is well?[2J\" is no name of a "
                          "standard\n"));
}

TEST_F(CopyOfAStandard, NullArgumentsAreRefused) {
  EXPECT_EQ(VyrStdServices::CopyStandard(nullptr, "drafting", target_.c_str()), E_INVALIDARG);
  EXPECT_EQ(VyrStdServices::CopyStandard("S", nullptr, target_.c_str()), E_INVALIDARG);
  EXPECT_EQ(VyrStdServices::CopyStandard("S", "drafting", nullptr), E_INVALIDARG);
  EXPECT_EQ(VyrStdServices::CopyStandard("S", "drafting", ""), E_INVALIDARG);
  EXPECT_THAT(Everything(work_.Path()), IsEmpty());
}

TEST_F(CopyOfAStandard, OtherTypesHaveNoStandards) {
  EXPECT_EQ(VyrStdServices::CopyStandard("S", "tolerancing", target_.c_str()), E_FAIL);
  EXPECT_THAT(capture_.errors, ElementsAre(HasSubstr("no standards of the type tolerancing")));
  EXPECT_THAT(Everything(work_.Path()), IsEmpty());
}

TEST_F(CopyOfAStandard, TargetThatCannotBeWrittenIsReportedAndStays) {
  fs::create_directory(work_ / "folder.xml");
  ExpectFailure(work_ / "folder.xml", work_ / "folder.xml", "is a folder, not a file");
  ExpectFailure(work_ / "missing/S.xml", work_ / "missing/S.xml", "cannot be written: ");
  ASSERT_EQ(::mkfifo((work_ / "pipe.xml").c_str(), 0600), 0);
  ExpectFailure(work_ / "pipe.xml", work_ / "pipe.xml", "is not a regular file");
}

TEST_F(CopyOfAStandard, LinkIsNoWayToWriteElsewhere) {
  const TemporaryFolder elsewhere;
  const std::string file = elsewhere.Write("file", "precious");
  for (const std::string& leadsTo : {file, elsewhere / "new"}) {
    fs::remove(target_);
    fs::create_symlink(leadsTo, target_);
    ExpectFailure(target_, target_, "is a symbolic link");
  }
  elsewhere.Write("file", "content");
  fs::remove(target_);
  fs::create_symlink(file, target_);
  ASSERT_EQ(VyrSetModificationTime(file, 1), "");
  ExpectFailure(target_, target_, "is a symbolic link");
  EXPECT_EQ(VyrModificationTime(file), 1);
  EXPECT_THAT(Everything(elsewhere.Path()), ElementsAre(file + "=content"));
  ASSERT_EQ(VyrSetModificationTime(file, kSomeTime), "");
  EXPECT_EQ(Copy(), S_OK) << "what it leads to is the same already";
}

}  // namespace
