#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <vector>

#include "HostSettings.h"
#include "TemporaryFolder.h"
#include "VyrEnvironment.h"

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::StartsWith;

TEST(Environment, VariableHasItsValueAndAMissingOneIsEmpty) {
  const EnvironmentVariable variable("VYR_TEST_VARIABLE", " a b ");
  EXPECT_EQ(VyrGetEnv("VYR_TEST_VARIABLE"), " a b ");
  EXPECT_EQ(VyrGetEnv(std::string_view("VYR_TEST_VARIABLE_AND_MORE", 17)), " a b ");
  variable.Set(std::nullopt);
  EXPECT_EQ(VyrGetEnv("VYR_TEST_VARIABLE"), "");
}

TEST(Environment, TemporaryFolderIsTheOneThatTheEnvironmentNames) {
  const EnvironmentVariable variable("VyrTemp", "/any where");
  EXPECT_EQ(VyrGetEnv("VyrTemp"), "/any where");
}

/// A folder of temporary files without a temporary folder of the environment's own.
class PrivateTemporaryFolder : public testing::Test {
 protected:
  std::string Outer() const { return folder_ / ("vyr-" + std::to_string(::geteuid())); }

  const TemporaryFolder folder_;
  const EnvironmentVariable none_{"VyrTemp", std::nullopt};
  const EnvironmentVariable temporary_{"TMPDIR", folder_.Path().string()};
};

TEST_F(PrivateTemporaryFolder, IsMadeForTheUserAloneWhenTheEnvironmentNamesNone) {
  const mode_t mask = ::umask(0);
  const std::string made = VyrGetEnv("VyrTemp");
  ::umask(mask);
  EXPECT_THAT(made, StartsWith(Outer() + "/"));
  for (fs::path path = made; path != folder_.Path(); path = path.parent_path()) {
    struct stat status {};
    ASSERT_EQ(::lstat(path.c_str(), &status), 0) << path;
    EXPECT_EQ(status.st_mode, mode_t{S_IFDIR | 0700}) << path;
    EXPECT_EQ(status.st_uid, ::geteuid());
  }
  EXPECT_EQ(VyrGetEnv("VyrTemp"), made) << "the second time it is there";
  const EnvironmentVariable empty("VyrTemp", "");
  EXPECT_EQ(VyrGetEnv("VyrTemp"), made) << "an empty variable names none";
}

TEST_F(PrivateTemporaryFolder, IsBelowTmpWithoutATemporaryFolderOfTheUser) {
  for (const auto& value : {std::optional<std::string>(), std::optional<std::string>("")}) {
    const EnvironmentVariable temporary("TMPDIR", value);
    EXPECT_THAT(VyrGetEnv("VyrTemp"), StartsWith("/tmp/vyr-"));
  }
}

TEST_F(PrivateTemporaryFolder, IsRefusedWhenItIsALink) {
  fs::create_directory(folder_ / "elsewhere");
  fs::create_directory_symlink("elsewhere", Outer());
  EXPECT_EQ(VyrGetEnv("VyrTemp"), "");
  EXPECT_TRUE(fs::is_empty(folder_ / "elsewhere"));
}

TEST_F(PrivateTemporaryFolder, IsRefusedWhenItIsNoFolder) {
  folder_.Write(fs::path(Outer()).filename(), "");
  EXPECT_EQ(VyrGetEnv("VyrTemp"), "");
}

TEST_F(PrivateTemporaryFolder, IsRefusedWhenOthersMayWrite) {
  fs::create_directory(Outer());
  for (const mode_t mode : {0720u, 0702u, 0777u, 01777u}) {
    ASSERT_EQ(::chmod(Outer().c_str(), mode), 0);
    EXPECT_EQ(VyrGetEnv("VyrTemp"), "") << mode;
  }
  ASSERT_EQ(::chmod(Outer().c_str(), 0755), 0);
  EXPECT_NE(VyrGetEnv("VyrTemp"), "") << "reading is no danger";
}

TEST_F(PrivateTemporaryFolder, IsRefusedWhenItIsSomebodyElses) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can give a folder away";
  fs::create_directory(Outer());
  ASSERT_EQ(::chown(Outer().c_str(), 12345, 12345), 0);
  EXPECT_EQ(VyrGetEnv("VyrTemp"), "");
}

TEST_F(PrivateTemporaryFolder, IsEmptyWhenItCannotBeMade) {
  const EnvironmentVariable temporary("TMPDIR", folder_ / "missing");
  EXPECT_EQ(VyrGetEnv("VyrTemp"), "");
  EXPECT_TRUE(fs::is_empty(folder_.Path()));
}

TEST(ListDirectory, NamesAreInTheOrderOfTheirBytes) {
  const TemporaryFolder folder;
  for (const char* name : {"b", "\u00E4", "a", "B", ".hidden", "a.xml", "10", "9"}) {
    folder.Write(name, "");
  }
  fs::create_directory(folder / "c");
  std::vector<std::string> names = {"old"};
  EXPECT_TRUE(VyrListDirectory(folder.Path().string(), names));
  EXPECT_THAT(names, ElementsAre(".hidden", "10", "9", "B", "a", "a.xml", "b", "c", "\u00E4"));
  EXPECT_TRUE(VyrListDirectory(folder / "c", names));
  EXPECT_THAT(names, ElementsAre());
}

TEST(ListDirectory, FolderMayBeWrittenWithBackslashes) {
  const TemporaryFolder folder;
  fs::create_directory(folder / "sub");
  folder.Write("sub/file", "");
  std::vector<std::string> names;
  EXPECT_TRUE(VyrListDirectory(folder.Path().string() + "\\sub", names));
  EXPECT_THAT(names, ElementsAre("file"));
}

TEST(ListDirectory, WhatCannotBeReadIsToldAndLeavesTheNames) {
  const TemporaryFolder folder;
  fs::create_symlink("loop", folder / "loop");
  struct {
    std::string path;
    int reason;
  } const cases[] = {{folder / "missing", ENOENT},
                     {folder.Write("file", ""), ENOTDIR},
                     {folder / "loop", ELOOP},
                     {"", ENOENT}};
  for (const auto& test : cases) {
    std::vector<std::string> names = {"old"};
    errno = 0;
    EXPECT_FALSE(VyrListDirectory(test.path, names)) << test.path;
    EXPECT_EQ(errno, test.reason) << test.path;
    EXPECT_THAT(names, ElementsAre("old"));
  }
}

}  // namespace
