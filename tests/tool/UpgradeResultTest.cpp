#include <filesystem>
#include <string>
#include <vector>

#include "ToolRun.h"

// What an upgrade would leave half done is asked, and nothing is written.

using testing::HasSubstr;

namespace {

/// What a site has put into a standard of a version, by commands.
struct Hindrance {
  const char* version;
  std::vector<std::string> commands;
  const char* said;
};

std::vector<Hindrance> Hindrances() {
  return {
      {"60",
       {"node Enum:BlankProp", "value Enum.BlankProp::string:Own"},
       "has 'Enum.BlankProp' already, which the upgrade would add"},
      {"80",
       {"node TypeDef:EngineeringSymbol", "value TypeDef.EngineeringSymbol:Name:string:X"},
       "has 'TypeDef.EngineeringSymbol' already"},
      {"30",
       {"value Root.General:Contact:enum.RoughnessContact:With specifications"},
       "after the upgrade, of Root.General.Contact there is no enumeration 'RoughnessContact'"},
  };
}

ToolRun EditInPlace(const std::string& file, const std::vector<std::string>& commands) {
  std::vector<std::string> arguments = {"edit", file, "--in-place", "--no-backup"};
  for (const std::string& command : commands) arguments.insert(arguments.end(), {"-c", command});
  return RunTool(arguments);
}

}  // namespace

TEST(UpgradeResult, WhatTheStepsCannotFinishIsAskedAndNothingIsWritten) {
  const TemporaryFolder folder;
  for (const Hindrance& hindrance : Hindrances()) {
    SCOPED_TRACE(hindrance.said);
    const std::string file = folder / "in.xml";
    ASSERT_EQ(
        RunTool({"convert", "-q", LegacyText("ISO"), "-o", file, "--to", hindrance.version}).status,
        0);
    const ToolRun edit = EditInPlace(file, hindrance.commands);
    ASSERT_EQ(edit.status, 0) << edit.err;
    const std::string before = ReadWholeFile(file);
    ExpectFailure(RunTool({"upgrade", file, "--dry-run"}), 5, {file + ": " + hindrance.said});
    ExpectFailure(RunTool({"upgrade", file, "-o", folder / "out.xml"}), 5, {hindrance.said});
    ExpectFailure(RunTool({"upgrade", file, "--in-place"}), 5, {hindrance.said});
    const auto report =
        ParsedJson(RunTool({"upgrade", file, file, "-d", folder / "new", "--json", "--dry-run"}));
    EXPECT_EQ(report[1]["result"], "failed");
    EXPECT_EQ(report[1]["status"], 5);
    EXPECT_FALSE(std::filesystem::exists(folder / "out.xml"));
    EXPECT_EQ(ReadWholeFile(file), before);
  }
}

TEST(UpgradeResult, AVersionThatIsStatedTwiceIsAsked) {
  const TemporaryFolder folder;
  const std::string good = folder / "good.xml";
  ASSERT_EQ(RunTool({"convert", "-q", LegacyText("ISO"), "-o", good, "--to", "110"}).status, 0);
  const std::string text = ReadWholeFile(good);
  const std::string end = "</std:node>";
  const std::size_t begin = text.find("<std:node name=\"Version\">");
  const std::string node = text.substr(begin, text.find(end, begin) + end.size() - begin);
  const std::string file = folder.Write("in.xml", Replaced(text, node, node + node));
  const std::string said = file + ": has 'Root.Version' 2 times";
  ExpectFailure(RunTool({"upgrade", file, "--dry-run"}), 5, {said});
  ExpectFailure(RunTool({"upgrade", file, "-o", folder / "out.xml"}), 5, {said});
  EXPECT_FALSE(std::filesystem::exists(folder / "out.xml"));
}

TEST(UpgradeResult, AStandardWithValuesOfNoEnumerationIsWarnedOf) {
  const TemporaryFolder folder;
  const std::string file = folder / "in.xml";
  ASSERT_EQ(RunTool({"convert", "-q", LegacyText("ISO"), "-o", file, "--to", "150"}).status, 0);
  ASSERT_EQ(EditInPlace(file, {"delete Enum.UpDown"}).status, 0);
  const ToolRun run = RunTool({"upgrade", file, "-o", folder / "out.xml"});
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.err, HasSubstr(file + ": warning: holds values that no enumeration has"));
}
