#include <filesystem>
#include <string>
#include <vector>

#include "ToolRun.h"

// Standards that count as older than what they hold.

using testing::HasSubstr;

namespace {

struct Deletion {
  const char* version;  ///< that the standard is of
  const char* node;     ///< by which that is told
  const char* dated;    ///< without it
};

constexpr Deletion kDeletions[] = {
    {"100", "Root.Annotation", "1"},
    {"100", "Root.Styles", "2"},
    {"100", "Root.Dimension.CurvilinearLengthSymbol", "30"},
    {"100", "Root.Styles.DimensionsSystem", "50"},
    {"100", "Root.ViewsSet", "60"},
    {"100", "Root.Annotation.Roughness.ExtensionLine.GapToSurf", "70"},
    {"100", "Root.EngineeringSymbols", "80"},
    {"100", "Root.Annotation.BlankBackground", "90"},
    {"30", "Root.Styles", "2"},
    {"70", "Root.ViewsSet", "60"},
    {"110", "Root.Version", "100"},
    {"150", "Root.Version", "100"},
    {"220", "Root.Version", "100"},
};

std::string Converted(const TemporaryFolder& folder, const std::string& version) {
  const std::string file = folder / ("site-" + version + ".xml");
  EXPECT_EQ(RunTool({"convert", LegacyText("JIS"), "-o", file, "--to", version}).status, 0);
  return file;
}

/// A standard that has lost a node; what `edit` said of that.
ToolRun Delete(const std::string& from, const std::string& node, const std::string& to) {
  return RunTool({"edit", from, "-o", to, "-c", "delete " + node});
}

/// The arguments of the command that a message proposes, with its FILE.
std::vector<std::string> Proposed(const std::string& message, const std::string& file) {
  std::vector<std::string> arguments = {"edit", file, "--in-place", "--no-backup"};
  const std::string option = " -c '";
  for (std::size_t at = message.find("holstd edit FILE --in-place"); at != std::string::npos;) {
    at = message.find(option, at);
    if (at == std::string::npos) break;
    const std::size_t begin = at + option.size();
    at = message.find('\'', begin);
    arguments.insert(arguments.end(), {"-c", message.substr(begin, at - begin)});
  }
  return arguments;
}

}  // namespace

TEST(DatedBack, EditWarnsCheckTellsAndUpgradeAsksUntilTheProposedCommandsAreRun) {
  const TemporaryFolder folder;
  for (const auto& [version, node, dated] : kDeletions) {
    SCOPED_TRACE(std::string(version) + " without " + node);
    const std::string file = folder / "deleted.xml";
    const ToolRun edit = Delete(Converted(folder, version), node, file);
    EXPECT_EQ(edit.status, 0);
    const std::string said =
        "counts as version " + std::string(dated) + " because '" + node + "' is missing, but has '";
    EXPECT_THAT(edit.err, HasSubstr("warning: after the commands it " + said));

    const ToolRun check = RunTool({"check", file});
    ExpectFailure(check, 1, {file + ": " + said, "of version " + std::string(version) + ";"});
    EXPECT_EQ(check.out, file + ": not valid: 1 problem of content\n");

    const std::string before = ReadWholeFile(file);
    ExpectFailure(RunTool({"upgrade", file, "--dry-run"}), 5, {file + ": " + said});
    ExpectFailure(RunTool({"upgrade", file, "-o", folder / "new.xml"}), 5, {said});
    ExpectFailure(RunTool({"upgrade", file, "--in-place", "--to", "220"}), 5, {said});
    EXPECT_FALSE(std::filesystem::exists(folder / "new.xml"));
    EXPECT_EQ(ReadWholeFile(file), before);

    const ToolRun mended = RunTool(Proposed(check.err, file));
    EXPECT_EQ(mended.status, 0) << mended.err;
    EXPECT_EQ(mended.err.find("warning"), std::string::npos) << mended.err;
    const ToolRun valid = RunTool({"check", file});
    EXPECT_EQ(valid.out, file + ": valid, version " + version + "\n") << valid.err;
    EXPECT_EQ(RunTool({"upgrade", file, "-o", folder / "new.xml"}).status, 0);
    EXPECT_EQ(RunTool({"check", folder / "new.xml"}).status, 0);
    std::filesystem::remove(folder / "new.xml");
  }
}

TEST(DatedBack, InABatchItIsAskedOfThatStandardOnlyAndIsInTheReport) {
  const TemporaryFolder folder;
  const std::string good = Converted(folder, "100");
  const std::string bad = folder / "bad.xml";
  Delete(good, "Root.Annotation", bad);
  const ToolRun run = RunTool({"upgrade", good, bad, "-d", folder / "new", "--json"});
  EXPECT_EQ(run.status, 5);
  const auto report = ParsedJson(run);
  EXPECT_EQ(report[0]["result"], "written");
  EXPECT_EQ(report[1]["result"], "failed");
  EXPECT_EQ(report[1]["status"], 5);
  const std::string text = report[1]["error"]["text"];
  EXPECT_THAT(text, HasSubstr("because 'Root.Annotation' is missing"));
  EXPECT_FALSE(std::filesystem::exists(folder / "new/bad.xml"));
  const ToolRun dry = RunTool({"upgrade", good, bad, "--dry-run"});
  EXPECT_EQ(dry.status, 5);
  EXPECT_THAT(dry.out, HasSubstr("pending"));
}

TEST(DatedBack, ItIsToldOfNodesThatAreBackAndOfVersionsThatAreStated) {
  const TemporaryFolder folder;
  const struct {
    const char* version;
    const char* command;
    const char* said;
  } cases[] = {
      {"60", "value Root.General:DefaultToleranceFormat:string:A",
       "counts as version 40 because 'Root.General.DefaultToleranceFormat' is there"},
      {"220", "change Root.Version:130", "counts as version 130 because 'Root.Version' says so"},
  };
  for (const auto& test : cases) {
    const std::string file = Converted(folder, test.version);
    const ToolRun edit = RunTool({"edit", file, "--in-place", "-c", test.command});
    EXPECT_EQ(edit.status, 0);
    EXPECT_THAT(edit.err, HasSubstr(test.said));
    const ToolRun check = RunTool({"check", file});
    ExpectFailure(check, 1, {test.said});
    EXPECT_EQ(RunTool(Proposed(check.err, file)).status, 0);
    EXPECT_EQ(RunTool({"check", file}).status, 0);
  }
}

TEST(DatedBack, ItIsToldBeforeAParentStandardThatIsGoneWithTheNode) {
  const TemporaryFolder folder;
  const std::string file = folder / "deleted.xml";
  Delete(Converted(folder, "100"), "Root.Dimension", file);
  const ToolRun upgrade = RunTool({"upgrade", file, "--dry-run"});
  ExpectFailure(upgrade, 5, {"because 'Root.Dimension.CurvilinearLengthSymbol' is missing"});
  EXPECT_EQ(RunTool(Proposed(upgrade.err, file)).status, 0);
  ExpectFailure(RunTool({"upgrade", file, "--dry-run"}), 5,
                {"does not say which of ISO, JIS, ANSI, ASME it was derived from"});
  EXPECT_EQ(
      RunTool({"edit", file, "--in-place", "-c", "value Root.Dimension:ParentStandard:string:JIS"})
          .status,
      0);
  EXPECT_EQ(RunTool({"upgrade", file, "-o", folder / "new.xml"}).status, 0);
}

TEST(DatedBack, EditSaysNothingOfWhatWasSoBefore) {
  const TemporaryFolder folder;
  const std::string file = folder / "deleted.xml";
  Delete(Converted(folder, "100"), "Root.Annotation", file);
  const ToolRun run = RunTool({"edit", file, "--in-place", "-c", "node Root:Site"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err.find("warning"), std::string::npos) << run.err;
}

TEST(DatedBack, EnumerationsAndTypesOfASiteSayNothingOfTheVersion) {
  const TemporaryFolder folder;
  const std::string file = Converted(folder, "60");
  const ToolRun own =
      RunTool({"edit", file, "--in-place", "-c", "node Enum:SiteBlanking", "-c",
               "value Enum.SiteBlanking::string:Own", "-c", "node TypeDef:SiteFrame", "-c",
               "value TypeDef.SiteFrame:Name:string:X"});
  EXPECT_EQ(own.err.find("warning"), std::string::npos) << own.err;
  EXPECT_EQ(RunTool({"check", file}).status, 0);
  EXPECT_EQ(RunTool({"upgrade", file, "-o", folder / "new.xml"}).status, 0);
  // Not even by the names that later versions have.
  const ToolRun later =
      RunTool({"edit", file, "--in-place", "-c", "node Enum:BlankProp", "-c",
               "value Enum.BlankProp::string:No", "-c", "node TypeDef:EngineeringSymbol", "-c",
               "value TypeDef.EngineeringSymbol:Name:string:X"});
  EXPECT_EQ(later.err.find("warning"), std::string::npos) << later.err;
  EXPECT_EQ(RunTool({"check", file}).status, 0);
}
