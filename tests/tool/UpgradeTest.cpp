#include <algorithm>
#include <utility>

#include "ToolRun.h"

using testing::HasSubstr;

namespace {

/// A standard of a site at an older version, made of the shipped text and changed.
std::string SiteStandard(const TemporaryFolder& folder, const std::string& version) {
  const std::string file = folder / ("site-" + version + ".xml");
  EXPECT_EQ(RunTool({"convert", LegacyText("ISO"), "-o", file, "--to", version}).status, 0);
  EXPECT_EQ(RunTool({"edit", file, "--in-place", "--no-backup", "-c",
                     "change Root.Dimension.DIMLTail:12.5", "-c", "node Root:Site", "-c",
                     "value Root.Site:Owner:string:設計部"})
                .status,
            0);
  return file;
}

}  // namespace

TEST(Upgrade, BringsEveryVersionToTheCurrentOneAndKeepsTheSitesValues) {
  const TemporaryFolder folder;
  for (const std::string version : {"1", "2", "30", "60", "100", "110", "150", "210"}) {
    SCOPED_TRACE(version);
    const std::string output = folder / "new.xml";
    const ToolRun run = RunTool({"upgrade", SiteStandard(folder, version), "-o", output});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(ParsedJson(RunTool({"info", output, "--json"}))[0]["version"], 220);
    EXPECT_EQ(RunTool({"get", output, "Dimension.DIMLTail"}).out, "12.5\n");
    EXPECT_EQ(RunTool({"get", output, "Site.Owner"}).out, "設計部\n");
    EXPECT_EQ(RunTool({"check", output}).status, 0);
  }
}

TEST(Upgrade, StopsAtTheVersionThatIsAskedFor) {
  const TemporaryFolder folder;
  const std::string file = SiteStandard(folder, "60");
  const std::vector<std::pair<std::string, int>> cases = {{"60", 60},   {"70", 70},   {"79", 70},
                                                          {"110", 110}, {"215", 210}, {"220", 220}};
  for (const auto& [target, version] : cases) {
    const std::string output = folder / ("to-" + target + ".xml");
    const ToolRun run = RunTool({"upgrade", file, "-o", output, "--to", target});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_THAT(run.err, HasSubstr("from version 60 to " + std::to_string(version) + "\n"));
    EXPECT_EQ(ParsedJson(RunTool({"info", output, "--json"}))[0]["version"], version);
  }
}

TEST(Upgrade, NoStandardIsTakenBackToAnEarlierVersion) {
  const TemporaryFolder folder;
  const std::string text = ReadWholeFile(HOL_STANDARDS "/ISO.xml");
  const std::string file = folder.Write("ISO.xml", text);
  for (const char* target : {"1", "100", "219"}) {
    for (const auto& where : std::vector<std::vector<std::string>>{
             {"-o", folder / "new.xml"}, {"--in-place"}, {"--dry-run"}}) {
      std::vector<std::string> arguments = {"upgrade", file, "--to", target};
      arguments.insert(arguments.end(), where.begin(), where.end());
      SCOPED_TRACE(testing::PrintToString(arguments));
      const ToolRun run = RunTool(arguments);
      ExpectFailure(run, 5, {file + ": is of version 220; no upgrade leads back to ", target});
      EXPECT_EQ(run.out, "");
    }
  }
  EXPECT_EQ(RunTool({"upgrade", file, "--in-place", "--to", "220"}).status, 0);
  EXPECT_EQ(ReadWholeFile(file), text);
  EXPECT_FALSE(std::filesystem::exists(folder / "new.xml"));
  const auto json = ParsedJson(RunTool({"upgrade", file, "--dry-run", "--json", "--to", "70"}))[0];
  EXPECT_EQ(json["result"], "failed");
  EXPECT_EQ(json["status"], 5);
  EXPECT_EQ(json["from"], 220);
  EXPECT_FALSE(json.contains("to"));
}

TEST(Upgrade, StepsAreTalkUnlessTheyAreWhatADryRunIsAskedFor) {
  const TemporaryFolder folder;
  const std::string file = SiteStandard(folder, "200");
  const std::string output = folder / "new.xml";
  const ToolRun run = RunTool({"upgrade", file, "-o", output, "-v", "--color", "always"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.err, HasSubstr("\n  ~ Root.Version  int 200 -> int 210\n"));
  EXPECT_EQ(run.err.find('\033'), std::string::npos);

  std::filesystem::remove(output);
  EXPECT_EQ(RunTool({"upgrade", file, "-o", output, "-v"}, {.isReaderGone = true}).status, 0);
  EXPECT_EQ(RunTool({"check", output}).status, 0);

  const ToolRun quiet = RunTool({"upgrade", file, "--dry-run", "-q"});
  EXPECT_EQ(quiet.out, RunTool({"upgrade", file, "--dry-run"}).out);
  EXPECT_EQ(quiet.err, "");
}

TEST(Upgrade, ADryRunTellsThePathsOfDiffAndEveryValueOfWhatIsAddedOrDeleted) {
  const TemporaryFolder folder;
  const std::string file = SiteStandard(folder, "160");
  const std::string output = folder / "new.xml";
  ASSERT_EQ(RunTool({"upgrade", file, "-o", output, "--to", "170"}).status, 0);
  const auto changes = ParsedJson(
      RunTool({"upgrade", file, "--dry-run", "--json", "--to", "170"}))[0]["steps"][0]["changes"];
  std::vector<std::pair<std::string, std::string>> told;
  for (const auto& change : changes) {
    told.emplace_back(change["change"], change["path"]);
  }
  const auto differences = ParsedJson(RunTool({"diff", file, output, "--json"}))["differences"];
  ASSERT_FALSE(differences.empty());
  for (const auto& difference : differences) {
    const std::string word =
        difference["difference"] == "removed" ? "deleted" : difference["difference"];
    const std::string path = difference["path"];
    SCOPED_TRACE(word + " " + path);
    EXPECT_EQ(std::count(told.begin(), told.end(), std::pair(word, path)), 1);
    if (!difference.contains("content")) continue;
    // The node itself, and a line for everything in it.
    const auto isWithin = [&](const auto& each) {
      return each.first == word && (each.second == path || each.second.starts_with(path + "."));
    };
    EXPECT_EQ(std::count_if(told.begin(), told.end(), isWithin),
              static_cast<long>(difference["content"].size()));
  }
}

TEST(Upgrade, ChangesAreInTheReportWhereSomebodyHasLooked) {
  const TemporaryFolder folder;
  const std::string file = SiteStandard(folder, "200");
  const std::vector<std::pair<std::vector<std::string>, bool>> cases = {
      {{"-o", folder / "new.xml"}, false},
      {{"-o", folder / "new.xml", "-v"}, true},
      {{"--dry-run"}, true},
  };
  for (const auto& [options, hasChanges] : cases) {
    std::vector<std::string> arguments = {"upgrade", file, "--json"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    SCOPED_TRACE(testing::PrintToString(arguments));
    const auto json = ParsedJson(RunTool(arguments))[0];
    ASSERT_EQ(json["steps"].size(), 2u);
    for (const auto& step : json["steps"]) {
      EXPECT_EQ(step.contains("changes"), hasChanges);
      EXPECT_EQ(step.value("changes", nlohmann::json::array()).empty(), !hasChanges);
    }
  }
}

TEST(Upgrade, DryRunTellsEveryChangeWritesNothingAndAnswersWhetherThereIsSomethingToDo) {
  const TemporaryFolder folder;
  const std::string file = SiteStandard(folder, "200");
  const std::string before = ReadWholeFile(file);
  const ToolRun run = RunTool({"upgrade", file, "--dry-run", "--to", "210"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, HasSubstr("to 210 (Migrate419To28n420): "));
  EXPECT_THAT(run.out, HasSubstr("  + Root.Styles.Table.Default.Mirroring  enum.Mirroring "
                                 "\"Auto flip\"\n"));
  EXPECT_THAT(run.out, HasSubstr("  ~ Root.Version  int 200 -> int 210\n"));
  EXPECT_EQ(ReadWholeFile(file), before);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 1);

  const auto json = ParsedJson(RunTool({"upgrade", file, "--dry-run", "--to", "210", "--json"}))[0];
  EXPECT_EQ(json["from"], 200);
  EXPECT_EQ(json["to"], 210);
  ASSERT_EQ(json["steps"].size(), 1u);
  EXPECT_EQ(json["steps"][0]["changes"].back()["path"], "Root.Version");
  EXPECT_EQ(json["steps"][0]["changes"].back()["before"], "int 200");

  ASSERT_EQ(RunTool({"upgrade", file, "--in-place"}).status, 0);
  const ToolRun again = RunTool({"upgrade", file, "--dry-run"});
  EXPECT_EQ(again.status, 0);
  EXPECT_THAT(again.out, HasSubstr("nothing to do"));
}

TEST(Upgrade, InPlaceOfACurrentStandardLeavesEveryByte) {
  const TemporaryFolder folder;
  const std::string text = ReadWholeFile(HOL_STANDARDS "/ISO.xml") + "<!-- site note -->\n";
  const std::string file = folder.Write("ISO.xml", text);
  EXPECT_EQ(RunTool({"upgrade", file, "--in-place"}).status, 0);
  EXPECT_EQ(ReadWholeFile(file), text);
}

TEST(Upgrade, SeveralStandardsGoIntoAFolderAndABadOneStopsNoOther) {
  const TemporaryFolder folder;
  const std::string good = SiteStandard(folder, "60");
  const std::string bad = folder.Write("bad.xml", "<std:node");
  const std::string other = SiteStandard(folder, "150");
  const ToolRun run = RunTool({"upgrade", good, bad, other, "-d", folder / "new"});
  EXPECT_EQ(run.status, 3);
  EXPECT_THAT(run.err, HasSubstr("bad.xml:1: "));
  for (const char* name : {"new/site-60.xml", "new/site-150.xml"}) {
    EXPECT_EQ(ParsedJson(RunTool({"info", folder / name, "--json"}))[0]["version"], 220) << name;
  }
  EXPECT_FALSE(std::filesystem::exists(folder / "new/bad.xml"));
}

TEST(Upgrade, WhatItCannotBeginWithIsRefusedAndNothingIsWritten) {
  const TemporaryFolder folder;
  const std::string current = ReadWholeFile(HOL_STANDARDS "/ISO.xml");
  const auto with = [&](const std::string& from, const std::string& to) {
    std::string text = current;
    text.replace(text.find(from), from.size(), to);
    return text;
  };
  struct {
    std::string text;
    int status;
    const char* part;
  } const cases[] = {
      {with("<std:intval>220</std:intval>", "<std:intval>230</std:intval>"), 6, "version 230"},
      {with("<std:intval>220</std:intval>", "<std:intval>125</std:intval>"), 3, "ersion"},
      {with("<std:strval>ISO</std:strval>", "<std:strval>DIN</std:strval>"), 5, "'DIN'"},
      {ReadWholeFile(LegacyText("ISO")), 3, "XML"},
      {"", 3, "empty"},
  };
  for (const auto& test : cases) {
    const std::string file = folder.Write("in.xml", test.text);
    ExpectFailure(RunTool({"upgrade", file, "-o", folder / "out.xml"}), test.status,
                  {"in.xml", test.part});
    ExpectFailure(RunTool({"upgrade", file, "--in-place"}), test.status, {"in.xml", test.part});
    EXPECT_EQ(ReadWholeFile(file), test.text);
    EXPECT_FALSE(std::filesystem::exists(folder / "out.xml"));
  }
}

TEST(Upgrade, TargetsMustBeOneAndMustNotBeTheStandardItself) {
  const TemporaryFolder folder;
  const std::string file = SiteStandard(folder, "60");
  const std::vector<std::pair<std::vector<std::string>, int>> cases = {
      {{"upgrade", file}, 2},
      {{"upgrade", file, "-o", "a.xml", "--in-place"}, 2},
      {{"upgrade", file, "-o", "a.xml", "-d", "b"}, 2},
      {{"upgrade", file, file, "-o", "a.xml"}, 2},
      {{"upgrade", "-", "--in-place"}, 2},
      {{"upgrade", file, "-o", "a.xml", "--to", "0"}, 2},
      {{"upgrade", file, "-o", "a.xml", "--to", "221"}, 2},
      {{"upgrade", file, "-o", "a.xml", "--to", "new"}, 2},
      {{"upgrade", file, "-o", file}, 5},
      {{"upgrade", file, "-d", folder.Path().string()}, 5},
      {{"upgrade", file, "-o", "/dev/full"}, 4},
  };
  for (const auto& [arguments, status] : cases) {
    EXPECT_EQ(RunTool(arguments).status, status) << testing::PrintToString(arguments);
  }
}

TEST(Upgrade, StandardInputGivesTheSameAsTheFile) {
  const TemporaryFolder folder;
  const std::string file = SiteStandard(folder, "60");
  ASSERT_EQ(RunTool({"upgrade", file, "-o", folder / "a.xml"}).status, 0);
  ASSERT_EQ(
      RunTool({"upgrade", "-", "-o", folder / "b.xml"}, {.input = ReadWholeFile(file)}).status, 0);
  EXPECT_EQ(ReadWholeFile(folder / "a.xml"), ReadWholeFile(folder / "b.xml"));
}

TEST(Upgrade, AFailureOfStandardInputNamesItAndNoCopy) {
  const auto json =
      ParsedJson(RunTool({"upgrade", "-", "--dry-run", "--json"}, {.input = "<bad"}))[0];
  EXPECT_EQ(json["file"], "-");
  EXPECT_EQ(json["error"]["file"], "-");
  EXPECT_EQ(json["error"]["line"], 1);
}

TEST(Upgrade, WhatTheLibraryHadToGuessIsWarnedOf) {
  const TemporaryFolder folder;
  const std::string file = SiteStandard(folder, "90");
  ASSERT_EQ(RunTool({"edit", file, "--in-place", "-c",
                     "change Root.Styles.Text.Default.Text.Blanking:Sometimes", "-c",
                     "value Enum.YesNo::string:Sometimes"})
                .status,
            0);
  const ToolRun run = RunTool({"upgrade", file, "-o", folder / "new.xml"});
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.err, HasSubstr("'Text.Blanking' of Text 'Default' is 'Sometimes'"));
}

TEST(Convert, StopsAtTheVersionThatIsAskedForAndMakesAShippedStandard) {
  const TemporaryFolder folder;
  const std::string file = folder / "out.xml";
  for (const int version : {1, 2, 30, 60, 110, 220}) {
    ASSERT_EQ(
        RunTool({"convert", LegacyText("ISO"), "-o", file, "--to", std::to_string(version)}).status,
        0);
    EXPECT_EQ(ParsedJson(RunTool({"info", file, "--json"}))[0]["version"], version);
  }
  ASSERT_EQ(RunTool({"convert", LegacyText("ISO"), "-o", file}).status, 0);
  EXPECT_EQ(RunTool({"get", file, "View.ViewName.TextStyleName"}).out, "Default\n");
  ASSERT_EQ(RunTool({"convert", LegacyText("ISO"), "-o", file, "--shipped"}).status, 0);
  EXPECT_EQ(RunTool({"get", file, "View.ViewName.TextStyleName"}).out, "ViewText\n");
}
