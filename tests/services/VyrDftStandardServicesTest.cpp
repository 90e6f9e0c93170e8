#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "DiagnosticsCapture.h"
#include "HostSettings.h"
#include "TemporaryFolder.h"
#include "VyrDftStandardServices.h"
#include "VyrFiles.h"

namespace {

namespace fs = std::filesystem;
using Services = VyrDftStandardServices;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

const char* const kNoFile = "BOOL IS FALSE: standard file not found [VyrDftStandardServices]";

/// A working directory and folders of standards, with the shipped ones behind those of a site.
class Discovery : public testing::Test {
 protected:
  ~Discovery() override { Services::ReleaseOOTBStandards(); }

  /// Path of the copy, or the result where there is none.
  static std::string Find(const std::string& name) {
    char* found = nullptr;
    const int result = Services::FindStandardFileInEnv(name.c_str(), &found);
    const std::unique_ptr<char[]> path(found);
    EXPECT_EQ(result == 0, path != nullptr);
    return result == 0 ? path.get() : std::to_string(result);
  }
  std::vector<std::string> FilesIn(const TemporaryFolder& folder) const {
    std::vector<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(folder.Path())) {
      names.push_back(entry.path().lexically_relative(folder.Path()));
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  const TemporaryFolder site_;
  const TemporaryFolder work_;
  const TemporaryFolder temp_;
  const EnvironmentVariable output_{"WOB_ODT_OUT", work_.Path().string()};
  const EnvironmentVariable vyrTemp_{"VyrTemp", temp_.Path().string()};
  const StandardFolders folders_{{site_.Path(), HOL_STANDARDS}};
};

// --- Finding a standard --------------------------------------------------------------------------

TEST_F(Discovery, StandardIsCopiedIntoTheWorkingDirectory) {
  site_.Write("Site 1.xml", "<a/>");
  EXPECT_EQ(Find("Site 1"), work_.Path().string() + "\\Site 1.xml");
  EXPECT_EQ(ReadWholeFile(work_ / "Site 1.xml"), "<a/>");
  EXPECT_THAT(FilesIn(work_), ElementsAre("Site 1.xml"));
  EXPECT_THAT(FilesIn(temp_), IsEmpty());
}

TEST_F(Discovery, TemporaryDirectoryServesWithoutAWorkingDirectory) {
  site_.Write("S.xml", "<a/>");
  for (const auto& value : {std::optional<std::string>(), std::optional<std::string>("")}) {
    output_.Set(value);
    fs::remove(temp_ / "S.xml");
    EXPECT_EQ(Find("S"), temp_.Path().string() + "\\S.xml");
    EXPECT_THAT(FilesIn(temp_), ElementsAre("S.xml"));
  }
}

TEST_F(Discovery, FolderOfTheUserServesWhereTheEnvironmentNamesNone) {
  site_.Write("S.xml", "<a/>");
  const EnvironmentVariable temporary("TMPDIR", temp_.Path().string());
  output_.Set(std::nullopt);
  vyrTemp_.Set(std::nullopt);
  const std::string path = Find("S");
  EXPECT_THAT(path, AllOf(StartsWith(temp_.Path().string()), testing::EndsWith("\\S.xml")));
  EXPECT_EQ(ReadWholeFile(VyrNativePath(path)), "<a/>");
}

TEST_F(Discovery, UnchangedStandardKeepsTheTimeOfItsCopy) {
  const std::string source = site_.Write("S.xml", "<a/>");
  ASSERT_EQ(VyrSetModificationTime(source, 123'456'789'012), "");
  const std::string path = Find("S");
  EXPECT_EQ(VyrModificationTime(path), 123'456'789'012);
  EXPECT_EQ(Find("S"), path);
  EXPECT_EQ(VyrModificationTime(path), 123'456'789'012);
  site_.Write("S.xml", "<b/>");
  Find("S");
  EXPECT_EQ(VyrModificationTime(path), VyrModificationTime(source));
  EXPECT_EQ(ReadWholeFile(work_ / "S.xml"), "<b/>");
}

TEST_F(Discovery, NullArgumentsAreToldApart) {
  char* path = nullptr;
  EXPECT_EQ(Services::FindStandardFileInEnv(nullptr, &path), 1);
  EXPECT_EQ(Services::FindStandardFileInEnv("ISO", nullptr), 1);
  EXPECT_EQ(Services::FindStandardFileInEnv(nullptr, nullptr), 1);
  char text[] = "there";
  path = text;
  const DiagnosticsCapture capture;
  EXPECT_EQ(Services::FindStandardFileInEnv(nullptr, &path), 1) << "a null name comes first";
  EXPECT_THAT(capture.abends, IsEmpty());
}

TEST_F(Discovery, PathThatIsThereIsFatal) {
  char text[] = "there";
  char* path = text;
  const DiagnosticsCapture capture;
  EXPECT_EQ(Services::FindStandardFileInEnv("ISO", &path), 1) << "where the host lives on";
  EXPECT_EQ(path, text);
  EXPECT_STREQ(text, "there");
  EXPECT_THAT(capture.abends, ElementsAre("AssertionFailed:!*pathname"));
  EXPECT_THAT(FilesIn(work_), IsEmpty());
}

TEST_F(Discovery, PathThatIsThereEndsTheProcess) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  char text[] = "there";
  char* path = text;
  EXPECT_EXIT(Services::FindStandardFileInEnv("ISO", &path), testing::KilledBySignal(SIGABRT),
              "AssertionFailed:!\\*pathname");
}

TEST_F(Discovery, MissingStandardIsReportedOnce) {
  const DiagnosticsCapture capture;
  EXPECT_EQ(Find("none"), "69");
  EXPECT_THAT(capture.errors, ElementsAre(HasSubstr("none is in none of the standard folders")));
  EXPECT_THAT(FilesIn(work_), IsEmpty());
}

TEST_F(Discovery, StandardThatDisappearsLeavesItsLastCopy) {
  const std::string source = site_.Write("S.xml", "<a/>");
  const std::string path = Find("S");
  fs::remove(source);
  const DiagnosticsCapture capture;
  EXPECT_EQ(Find("S"), path);
  EXPECT_THAT(capture.errors, SizeIs(1));
  fs::remove(work_ / "S.xml");
  EXPECT_EQ(Find("S"), "69");
  EXPECT_THAT(capture.errors, SizeIs(2));
}

TEST_F(Discovery, HostileNameReachesNothingOutsideTheWorkingDirectory) {
  const TemporaryFolder outer;
  fs::create_directories(outer / "work/sub");
  fs::create_directory(outer / "standards");
  const EnvironmentVariable output("WOB_ODT_OUT", outer / "work");
  const StandardFolders folders({outer / "standards"});
  // What such names would lead to is there, so that only their refusal keeps them off.
  for (const char* file : {"x.xml", "standards/x.xml", "standards/.xml", "work/.xml", "work/..xml",
                           "work/sub/x.xml", "standards/..xml"}) {
    outer.Write(file, "secret");
  }
  const auto before = FilesIn(outer);
  const std::string names[] = {
      "",      ".",      "..",   "../x",      "..\\x",       "/x",        "\\x",
      "sub/x", "sub\\x", "a\nb", "x/../../x", "../../etc/x", outer / "x", outer / "standards/x"};
  for (const std::string& name : names) {
    const DiagnosticsCapture capture;
    EXPECT_EQ(Find(name), "69") << name;
    EXPECT_THAT(capture.errors, SizeIs(1)) << name;
    EXPECT_EQ(FilesIn(outer), before) << name;
  }
}

TEST_F(Discovery, WorkingDirectoryThatDoesNotExistIsReportedAndNothingIsWritten) {
  output_.Set(work_ / "missing");
  const DiagnosticsCapture capture;
  EXPECT_EQ(Find("ISO"), "69");
  EXPECT_THAT(capture.errors, ElementsAre(HasSubstr(work_ / "missing\\ISO.xml")));
  EXPECT_THAT(FilesIn(work_), IsEmpty()) << "it became part of a file's name";
}

TEST_F(Discovery, WithoutAnyFolderThereIsNoWorkingDirectory) {
  output_.Set(std::nullopt);
  vyrTemp_.Set(std::nullopt);
  const TemporaryFolder here;
  const EnvironmentVariable temporary("TMPDIR", work_ / "missing");
  const fs::path before = fs::current_path();
  fs::current_path(here.Path());
  const DiagnosticsCapture capture;
  EXPECT_EQ(Find("ISO"), "69");
  fs::current_path(before);
  EXPECT_THAT(capture.errors, SizeIs(1));
  EXPECT_THAT(FilesIn(here), IsEmpty());
}

TEST_F(Discovery, FileBesideTheWorkingDirectoryDoesNotStandForOneInIt) {
  const TemporaryFolder outer;
  fs::create_directory(outer / "work");
  const std::string beside = outer.Write("work\\ISO.xml", "planted");
  output_.Set(outer / "work");
  const DiagnosticsCapture capture;
  EXPECT_EQ(Find("ISO"), "69");
  EXPECT_THAT(capture.errors, SizeIs(1));
  EXPECT_EQ(ReadWholeFile(beside), "planted");
}

TEST_F(Discovery, LinkInPlaceOfTheCopyIsNoStandard) {
  site_.Write("Site.xml", "<a/>");
  temp_.Write("planted.xml", "<b/>");
  fs::create_symlink(temp_ / "planted.xml", work_ / "Site.xml");
  const DiagnosticsCapture capture;
  EXPECT_EQ(Find("Site"), "69");
  EXPECT_EQ(ReadWholeFile(temp_ / "planted.xml"), "<b/>");
  EXPECT_THAT(capture.errors, SizeIs(1));
}

TEST_F(Discovery, PipeInPlaceOfTheCopyKeepsNobodyWaiting) {
  site_.Write("Site.xml", "<a/>");
  ASSERT_EQ(::mkfifo((work_ / "Site.xml").c_str(), 0600), 0);
  const DiagnosticsCapture capture;
  EXPECT_EQ(Find("Site"), "69");
}

TEST_F(Discovery, FolderInPlaceOfTheCopyIsNoStandard) {
  fs::create_directory(work_ / "ISO.xml");
  const DiagnosticsCapture capture;
  EXPECT_EQ(Find("ISO"), "69");
  EXPECT_THAT(capture.errors, ElementsAre(HasSubstr("is a folder")));
}

// --- Listing -------------------------------------------------------------------------------------

TEST_F(Discovery, StandardsAreListedWithoutTheirExtension) {
  site_.Write("ISO.xml", "");
  site_.Write("Site.xml", "");
  const std::string site = site_.Path();
  const std::string shipped = HOL_STANDARDS;
  VyrListValVyrUnicodeString names = {"old"};
  Services::ListStandards(names);
  EXPECT_THAT(names, ElementsAre(VyrUnicodeString(site + "/ISO"), VyrUnicodeString(site + "/Site"),
                                 VyrUnicodeString(shipped + "/ANSI-ASME"),
                                 VyrUnicodeString(shipped + "/JIS")));
}

TEST_F(Discovery, ExtensionIsRemovedWhereverItStandsAndNamesAreUnique) {
  fs::create_directory(site_ / "old.xml.d");
  for (const char* name : {"a.xml.xml", "a.xml", "b.xml1.xml", "c.x.xmlml.xml"}) {
    site_.Write(std::string("old.xml.d/") + name, "");
  }
  const StandardFolders folders({site_ / "old.xml.d"});
  VyrListValVyrUnicodeString names;
  Services::ListStandards(names, 1);
  EXPECT_THAT(names,
              ElementsAre(VyrUnicodeString(site_ / "old.d/a"), VyrUnicodeString(site_ / "old.d/b1"),
                          VyrUnicodeString(site_ / "old.d/c.xml")));
}

TEST_F(Discovery, ListIsEmptyWithoutStandards) {
  const StandardFolders folders({site_ / "missing"});
  VyrListValVyrUnicodeString names = {"old"};
  const DiagnosticsCapture capture;
  Services::ListStandards(names);
  EXPECT_THAT(names, IsEmpty());
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST_F(Discovery, ShippedStandardsAreThree) {
  VyrListValVyrUnicodeString names = {"old"};
  Services::ListOOTBStandards(names);
  EXPECT_THAT(names, ElementsAre("ANSI-ASME", "ISO", "JIS"));
  for (const VyrUnicodeString& name : names) EXPECT_NE(Find(name.CString()), "69");
}

// --- Opening -------------------------------------------------------------------------------------

std::string ParentOf(VyrIDrwStandard& standard) {
  VyrUnicodeString parent;
  return standard.GetParentStandard(parent) == S_OK ? parent.CString() : "none";
}

std::string NameOf(VyrIDrwStandard& standard) {
  VyrUnicodeString name;
  EXPECT_EQ(standard.GetName(name), S_OK);
  return name.CString();
}

TEST_F(Discovery, HandleOfAnOpenedFileIsItsOnlyOwner) {
  const auto standard = Services::GetStandardFromFile(HOL_STANDARDS "/JIS.xml", "my name");
  ASSERT_TRUE(standard);
  EXPECT_EQ(NameOf(*standard), "my name");
  EXPECT_EQ(ParentOf(*standard), "JIS");
  EXPECT_EQ(standard->AddRef(), 2u);
  EXPECT_EQ(standard->Release(), 1u);
}

TEST_F(Discovery, FileThatCannotBeReadGivesAStandardThatFindsNothing) {
  const std::string paths[] = {site_ / "missing.xml", site_.Write("bad.xml", "<a>"), site_.Path(),
                               ""};
  for (const std::string& path : paths) {
    const DiagnosticsCapture capture;
    const auto standard = Services::GetStandardFromFile(path, "name");
    ASSERT_TRUE(standard) << path;
    EXPECT_FALSE(capture.errors.empty()) << path;
    EXPECT_EQ(NameOf(*standard), "name");
    EXPECT_EQ(standard->HasNode("Dimension"), 0);
    EXPECT_EQ(ParentOf(*standard), "none");
  }
}

TEST_F(Discovery, ShippedStandardIsOpenedOnceAndKept) {
  const std::pair<const char*, const char*> shipped[] = {
      {"ISO", "ISO"}, {"JIS", "JIS"}, {"ASME", "ANSI"}};
  for (const auto& [name, parent] : shipped) {
    const auto standard = Services::GetOOTBStandard(name);
    ASSERT_TRUE(standard) << name;
    EXPECT_EQ(NameOf(*standard), name);
    EXPECT_EQ(ParentOf(*standard), parent);
    EXPECT_EQ(standard->AddRef(), 3u) << "the caller's reference, the kept one and this";
    standard->Release();
  }
  for (const auto& entry : fs::directory_iterator(work_.Path())) fs::remove(entry);
  const StandardFolders none({site_ / "missing"});
  const DiagnosticsCapture capture;
  for (const auto& [name, parent] : shipped) {
    EXPECT_EQ(Services::GetOOTBStandard(name), Services::GetOOTBStandard(name, 5));
    EXPECT_TRUE(Services::GetOOTBStandard(name));
  }
  EXPECT_THAT(capture.errors, IsEmpty());
  EXPECT_THAT(FilesIn(work_), IsEmpty());
}

TEST_F(Discovery, AsmeIsTheFileAnsiAsme) {
  ASSERT_TRUE(Services::GetOOTBStandard("ASME"));
  EXPECT_THAT(FilesIn(work_), ElementsAre("ANSI-ASME.xml"));
}

TEST_F(Discovery, OtherStandardsAreNotShippedEvenWhenTheirFileExists) {
  for (const char* name : {"ANSI", "Site", "iso", ""}) {
    site_.Write(std::string(name) + ".xml", "<a/>");
  }
  const DiagnosticsCapture capture;
  for (const char* name : {"ANSI", "ANSI-ASME", "Site", "iso", "", "ISO "}) {
    EXPECT_FALSE(Services::GetOOTBStandard(name)) << name;
  }
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST_F(Discovery, ShippedStandardThatIsMissingIsReportedAndAskedForAgain) {
  {
    const StandardFolders none({site_ / "missing"});
    const DiagnosticsCapture capture;
    EXPECT_FALSE(Services::GetOOTBStandard("ASME"));
    EXPECT_THAT(capture.errors, SizeIs(2));
    EXPECT_THAT(capture.errors.front(), HasSubstr("ANSI-ASME is in none of the standard folders"));
    EXPECT_EQ(CheckText(capture.errors.back()), kNoFile);
  }
  EXPECT_TRUE(Services::GetOOTBStandard("ASME"));
}

TEST_F(Discovery, ReleasedStandardsAreReadAnew) {
  const auto first = Services::GetOOTBStandard("ISO");
  ASSERT_TRUE(first);
  Services::ReleaseOOTBStandards();
  EXPECT_EQ(first->AddRef(), 2u) << "somebody else still holds it";
  first->Release();
  const auto second = Services::GetOOTBStandard("ISO");
  EXPECT_TRUE(second);
  EXPECT_NE(first, second);
  Services::ReleaseOOTBStandards();
  Services::ReleaseOOTBStandards();
}

TEST_F(Discovery, ThreadsMayAskForShippedStandardsAtTheSameTime) {
  constexpr int kThreads = 4;
  VyrIDrwStandard_var handles[kThreads];
  {
    std::vector<std::jthread> threads;
    for (VyrIDrwStandard_var& handle : handles) {
      threads.emplace_back([&handle] { handle = Services::GetOOTBStandard("ISO"); });
    }
  }
  EXPECT_TRUE(handles[0]);
  for (const VyrIDrwStandard_var& handle : handles) EXPECT_EQ(handle, handles[0]);
}

}  // namespace
