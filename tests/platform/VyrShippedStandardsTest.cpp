#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "TemporaryFolder.h"
#include "VyrShippedStandards.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* kBelowPrefix = "share/HolStandardInfra/standards";

std::string Made(const fs::path& path) {
  fs::create_directories(path);
  return path;
}

TEST(ShippedStandards, AreBesideTheModuleOrUpToThreeFoldersAbove) {
  for (const char* module : {"", "lib", "lib/x86_64-linux-gnu", "usr/lib/x86_64-linux-gnu"}) {
    const TemporaryFolder prefix;
    const std::string standards = Made(prefix.Path() / kBelowPrefix);
    EXPECT_EQ(fs::path(VyrShippedStandardsFolderFrom(Made(prefix.Path() / module))), standards)
        << module;
  }
}

TEST(ShippedStandards, AreNotLookedForFurtherUp) {
  const TemporaryFolder prefix;
  Made(prefix.Path() / kBelowPrefix);
  EXPECT_EQ(VyrShippedStandardsFolderFrom(Made(prefix.Path() / "a/b/c/d")), "");
}

TEST(ShippedStandards, NearestFolderIsTaken) {
  const TemporaryFolder prefix;
  Made(prefix.Path() / kBelowPrefix);
  const std::string near = Made(prefix.Path() / "lib" / kBelowPrefix);
  EXPECT_EQ(VyrShippedStandardsFolderFrom(Made(prefix.Path() / "lib/triplet")), near);
}

TEST(ShippedStandards, FileInPlaceOfTheFolderIsPassedBy) {
  const TemporaryFolder prefix;
  const std::string standards = Made(prefix.Path() / kBelowPrefix);
  Made(prefix.Path() / "lib/share/HolStandardInfra");
  prefix.Write("lib/share/HolStandardInfra/standards", "");
  EXPECT_EQ(VyrShippedStandardsFolderFrom(prefix / "lib"), standards);
}

TEST(ShippedStandards, ModuleIsTheOneThatHoldsTheCode) {
  // The objects are linked into this program.
  const fs::path folder = fs::read_symlink("/proc/self/exe").parent_path();
  EXPECT_EQ(VyrShippedStandardsFolder(), VyrShippedStandardsFolderFrom(folder));
}

}  // namespace
