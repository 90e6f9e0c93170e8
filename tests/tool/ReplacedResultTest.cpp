#include <sys/stat.h>

#include "ToolRun.h"

using testing::HasSubstr;

// What a result replaces that goes to a file of its own, with -o and -d, is kept as with
// --in-place.

namespace {

class ReplacedResult : public testing::Test {
 protected:
  long CountOfFiles() const {
    return std::distance(std::filesystem::directory_iterator(folder.Path()), {});
  }

  const TemporaryFolder folder;
  const std::string file = folder.Write("in.xml", SampleStandard());
  const std::string target = folder.Write("out.xml", "corrected by hand");
  // One of each command; all write to `target`.
  const std::vector<std::vector<std::string>> commands = {
      {"convert", LegacyText("ISO"), "-o", target},
      {"edit", file, "-o", target, "-c", "node Root:A"},
      {"upgrade", file, "-o", target}};
};

}  // namespace

TEST_F(ReplacedResult, IsKeptBesideTheNewOneAndRestored) {
  for (const std::vector<std::string>& command : commands) {
    SCOPED_TRACE(command.front());
    folder.Write("out.xml", "corrected by hand");
    const ToolRun run = RunTool(command);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_THAT(run.err, HasSubstr(target + ": written, "));
    EXPECT_THAT(run.err, HasSubstr("; what it held is in " + target + ".bak\n"));
    EXPECT_EQ(ReadWholeFile(target + ".bak"), "corrected by hand");
    EXPECT_EQ(RunTool({"restore", target, "--no-backup"}).status, 0);
    EXPECT_EQ(ReadWholeFile(target), "corrected by hand");
    EXPECT_EQ(CountOfFiles(), 2);
  }
}

TEST_F(ReplacedResult, IsNumberedAsInPlace) {
  folder.Write("out.xml.bak", "older");
  EXPECT_THAT(RunTool(commands[1]).err, HasSubstr("; what it held is in " + target + ".bak.1\n"));
  EXPECT_EQ(ReadWholeFile(target + ".bak"), "older");
}

TEST_F(ReplacedResult, IsLeftAloneWhereItHoldsTheSame) {
  for (std::vector<std::string> command : commands) {
    SCOPED_TRACE(command.front());
    command.push_back("--no-backup");
    EXPECT_EQ(RunTool(command).status, 0);
    struct stat before {};
    struct stat after {};
    ASSERT_EQ(::stat(target.c_str(), &before), 0);
    command.pop_back();
    const ToolRun run = RunTool(command);
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.err, testing::EndsWith(target + ": left as it is, it would hold the same\n"));
    ASSERT_EQ(::stat(target.c_str(), &after), 0);
    EXPECT_EQ(before.st_ino, after.st_ino);
    EXPECT_EQ(CountOfFiles(), 2);
  }
}

TEST_F(ReplacedResult, IsGivenUpOnRequestOnly) {
  for (std::vector<std::string> command : commands) {
    SCOPED_TRACE(command.front());
    folder.Write("out.xml", "corrected by hand");
    command.push_back("--no-backup");
    const ToolRun run = RunTool(command);
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.err, testing::Not(HasSubstr("what it held")));
    EXPECT_EQ(CountOfFiles(), 2);
  }
}

TEST_F(ReplacedResult, IsNotWantedOfADeviceOrAPipe) {
  for (std::vector<std::string> command : commands) {
    SCOPED_TRACE(command.front());
    *std::find(command.begin(), command.end(), target) = "/dev/stdout";
    const ToolRun run = RunTool(command, {.outputFile = "/dev/null"});
    EXPECT_EQ(run.status, 0) << run.err;
  }
}

TEST_F(ReplacedResult, OfABatchIsToldWithoutBeingAskedFor) {
  const std::string other = folder.Write("other.xml", SampleStandard());
  const std::string results = folder / "results";
  std::filesystem::create_directory(results);
  std::ofstream(results + "/in.xml") << "corrected by hand";
  const std::vector<std::string> upgrade = {"upgrade", file, other, "-d", results};
  const ToolRun run = RunTool(upgrade);
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, HasSubstr("written; what it held is in " + results + "/in.xml.bak\n"));
  EXPECT_EQ(ReadWholeFile(results + "/in.xml.bak"), "corrected by hand");
  EXPECT_EQ(RunTool({"diff", file, results + "/in.xml"}).status, 0);

  const ToolRun again = RunTool(upgrade);
  EXPECT_THAT(again.err, HasSubstr("2 standards: 2 unchanged\n"));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(results), {}), 3);

  std::ofstream(results + "/other.xml") << "corrected, too";
  const nlohmann::json report =
      ParsedJson(RunTool({"upgrade", file, other, "-d", results, "--json"}));
  EXPECT_EQ(report[0]["result"], "unchanged");
  EXPECT_FALSE(report[0].contains("output"));
  EXPECT_EQ(report[1]["result"], "written");
  EXPECT_EQ(report[1]["backup"], results + "/other.xml.bak");
}

TEST_F(ReplacedResult, ThatCannotBeKeptIsNotReplaced) {
  const std::string name = std::string(248, 'n') + ".xml";  // no room for more
  const std::string full = folder.Write(name, "corrected by hand");
  for (std::vector<std::string> command : commands) {
    SCOPED_TRACE(command.front());
    *std::find(command.begin(), command.end(), target) = full;
    ExpectFailure(RunTool(command), 4, {full, "nothing was changed", "--no-backup"});
    EXPECT_EQ(ReadWholeFile(full), "corrected by hand");
  }
}
