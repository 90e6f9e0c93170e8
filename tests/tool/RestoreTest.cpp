#include <sys/stat.h>

#include <chrono>

#include "ToolRun.h"

using testing::HasSubstr;

namespace {

/// A standard in a folder of its own that is edited in place.
class Restore : public testing::Test {
 protected:
  static ToolRun EditInPlace(const std::string& path, const std::string& node,
                             const std::vector<std::string>& more = {}) {
    std::vector<std::string> arguments = {"edit", path, "--in-place", "-c", "node Root:" + node};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return RunTool(arguments);
  }
  bool Exists(const std::string& name) const { return std::filesystem::exists(folder / name); }
  long CountOfFiles() const {
    return std::distance(std::filesystem::directory_iterator(folder.Path()), {});
  }

  const TemporaryFolder folder;
  const std::string original = SampleStandard();
  const std::string file = folder.Write("a.xml", original);
};

}  // namespace

// What upgrade and edit keep with --in-place, and how it comes back.

TEST_F(Restore, EditInPlaceKeepsEveryVersionAndSaysWhere) {
  const ToolRun run = EditInPlace(file, "A");
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.err, HasSubstr("; what it held is in " + file + ".bak\n"));
  EXPECT_EQ(ReadWholeFile(file + ".bak"), original);
  const std::string second = ReadWholeFile(file);
  EXPECT_EQ(EditInPlace(file, "B").status, 0);
  EXPECT_EQ(ReadWholeFile(file + ".bak"), original);
  EXPECT_EQ(ReadWholeFile(file + ".bak.1"), second);
}

TEST_F(Restore, GoesBackOneByOneAndKeepsWhatWasUndone) {
  ASSERT_EQ(EditInPlace(file, "A").status, 0);
  const std::string second = ReadWholeFile(file);
  ASSERT_EQ(EditInPlace(file, "B").status, 0);
  const std::string third = ReadWholeFile(file);
  const ToolRun run = RunTool({"restore", file});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err,
            file + ": restored from " + file + ".bak.1; what it held is in " + file + ".undone\n");
  EXPECT_EQ(ReadWholeFile(file), second);
  EXPECT_EQ(RunTool({"restore", file, "-q"}).err, "");
  EXPECT_EQ(ReadWholeFile(file), original);
  EXPECT_EQ(ReadWholeFile(file + ".undone"), third);
  EXPECT_EQ(ReadWholeFile(file + ".undone.1"), second);
  ExpectFailure(RunTool({"restore", file}), 1, {file, "no backup"});
  EXPECT_EQ(CountOfFiles(), 3);
}

TEST_F(Restore, BringsBackADeletedFile) {
  ASSERT_EQ(EditInPlace(file, "A").status, 0);
  std::filesystem::remove(file);
  EXPECT_EQ(RunTool({"restore", file}).status, 0);
  EXPECT_EQ(ReadWholeFile(file), original);
  EXPECT_EQ(CountOfFiles(), 1);
}

TEST_F(Restore, ServesSeveralFilesAndReturnsTheWorstStatus) {
  const std::string other = folder.Write("b.xml", original);
  const std::string without = folder.Write("c.xml", original);
  for (const std::string& each : {file, other}) ASSERT_EQ(EditInPlace(each, "A").status, 0);
  ExpectFailure(RunTool({"restore", file, without, other, "-q"}), 1, {without});
  for (const std::string& each : {file, other}) EXPECT_EQ(ReadWholeFile(each), original);
}

TEST_F(Restore, WithoutABackupOnRequestOnly) {
  ASSERT_EQ(EditInPlace(file, "A", {"--no-backup"}).status, 0);
  EXPECT_NE(ReadWholeFile(file), original);
  EXPECT_EQ(CountOfFiles(), 1);
  ASSERT_EQ(EditInPlace(file, "B").status, 0);
  EXPECT_EQ(RunTool({"restore", file, "--no-backup"}).status, 0);
  EXPECT_EQ(CountOfFiles(), 1);
}

TEST_F(Restore, NothingIsKeptWhenNothingChanges) {
  const std::string change = "change Root.Dimension.DIMLTail:12.5";
  ASSERT_EQ(RunTool({"edit", file, "--in-place", "-c", change}).status, 0);
  const std::string changed = ReadWholeFile(file);
  const ToolRun run = RunTool({"edit", file, "--in-place", "-c", change});
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.err, HasSubstr("left as it is"));
  EXPECT_EQ(ReadWholeFile(file), changed);
  EXPECT_EQ(CountOfFiles(), 2);

  const std::string current = folder.Write("current.xml", ReadWholeFile(HOL_STANDARDS "/ISO.xml"));
  EXPECT_EQ(RunTool({"upgrade", current, "--in-place"}).status, 0);
  EXPECT_FALSE(Exists("current.xml.bak"));
}

TEST_F(Restore, NothingIsChangedOrKeptWhenACommandFails) {
  ExpectFailure(EditInPlace(file, "A", {"-c", "node Root.Missing:B"}), 3, {"Missing"});
  EXPECT_EQ(ReadWholeFile(file), original);
  EXPECT_EQ(CountOfFiles(), 1);
}

TEST_F(Restore, UpgradeInPlaceIsTakenBackByteForByteWithItsTime) {
  const std::string old = folder / "old.xml";
  ASSERT_EQ(RunTool({"convert", LegacyText("ISO"), "-o", old, "--to", "60"}).status, 0);
  const std::string before = ReadWholeFile(old);
  const auto time = std::filesystem::last_write_time(old) - std::chrono::hours(1000);
  std::filesystem::last_write_time(old, time);
  ASSERT_EQ(RunTool({"upgrade", old, "--in-place"}).status, 0);
  EXPECT_EQ(ReadWholeFile(old + ".bak"), before);
  ASSERT_EQ(RunTool({"restore", old}).status, 0);
  EXPECT_EQ(ReadWholeFile(old), before);
  EXPECT_EQ(std::filesystem::last_write_time(old), time);
}

TEST_F(Restore, ABackupThatCannotBeMadeIsStatus4AndNothingIsChanged) {
  const std::string name = std::string(251, 'n') + ".xml";
  const std::string longest = folder.Write(name, original);
  ExpectFailure(EditInPlace(longest, "A"), 4, {longest, "too long", "--no-backup"});
  EXPECT_EQ(ReadWholeFile(longest), original);
  EXPECT_EQ(CountOfFiles(), 2);
  EXPECT_EQ(EditInPlace(longest, "A", {"--no-backup"}).status, 0);
}

TEST_F(Restore, ASaveThatFailsLeavesNoBackup) {
  const std::vector<std::string> arguments = {"edit", file, "--in-place", "-c",
                                              "value Root:Note:string:" + std::string(8000, 'n')};
  // Room for what the standard holds, not for what it becomes.
  ExpectFailure(RunTool(arguments, {.mostFileBytes = original.size() + 4000}), 4, {file});
  EXPECT_EQ(ReadWholeFile(file), original);
  EXPECT_EQ(CountOfFiles(), 1);
}

TEST_F(Restore, ABackupThatIsNoRegularFileIsRefused) {
  folder.Write("a.xml.bak", "older");
  std::filesystem::create_directory(folder / "a.xml.bak.1");
  ExpectFailure(RunTool({"restore", file}), 3,
                {file + ".bak.1: is a folder", "nothing was changed"});
  std::filesystem::remove(folder / "a.xml.bak.1");
  std::filesystem::create_symlink("a.xml.bak", folder / "a.xml.bak.1");
  ExpectFailure(RunTool({"restore", file}), 3, {file + ".bak.1: is not a regular file"});
  EXPECT_EQ(ReadWholeFile(file), original);
  EXPECT_EQ(ReadWholeFile(folder / "a.xml.bak"), "older");
}

TEST_F(Restore, AFolderInTheBackupsPlaceIsPassedBy) {
  std::filesystem::create_directory(folder / "a.xml.bak");
  ASSERT_EQ(EditInPlace(file, "A").status, 0);
  EXPECT_EQ(ReadWholeFile(file + ".bak.1"), original);
}

TEST_F(Restore, OfASymbolicLinkTheTargetIsReplacedAndTheBackupStandsBesideTheLink) {
  std::filesystem::create_directory(folder / "links");
  std::filesystem::create_symlink("../a.xml", folder / "links/a.xml");
  ASSERT_EQ(EditInPlace(folder / "links/a.xml", "A").status, 0);
  EXPECT_NE(ReadWholeFile(file), original);
  EXPECT_EQ(ReadWholeFile(folder / "links/a.xml.bak"), original);
  EXPECT_FALSE(Exists("a.xml.bak"));
  ASSERT_EQ(RunTool({"restore", folder / "links/a.xml"}).status, 0);
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "links/a.xml"));
  EXPECT_EQ(ReadWholeFile(file), original);
}

TEST_F(Restore, APipeIsNotReplaced) {
  ASSERT_EQ(::mkfifo((folder / "pipe.xml").c_str(), 0600), 0);
  ExpectFailure(RunTool({"restore", folder / "pipe.xml"}), 4, {"regular file"});
}
