#include "PseudoTerminal.h"
#include "ToolRun.h"

using testing::HasSubstr;
using testing::Not;

// What all subcommands have in common.

TEST(CommandLine, WhatItDoesNotUnderstandIsUsage) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("a.xml", SampleStandard());
  const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
      {{}, "subcommand"},
      {{"fold"},
       "'fold' is no command; there are convert, upgrade, info, get, tree, edit, restore, diff, "
       "explain, sheets, styles, check, symbols, standards"},
      {{"info"}, "FILE"},
      {{"info", ""}, "file name"},
      {{"get", file}, "PATH"},
      {{"get", file, "", "A"}, "file name"},
      {{"get", "-", "-", "A"}, "standard input"},
      {{"get", file, "A", "--index", "0"}, "--index"},
      {{"get", file, "A", "--index", "-1"}, "--index"},
      {{"get", file, "A", "--index", "one"}, "--index"},
      {{"get", file, "A", "--index", "1", "--all"}, "--all"},
      {{"get", file, "A", "--index", "1", "--type"}, "--type"},
      {{"get", file, "A", "--all", "--type"}, "--type"},
      {{"info", file, "--frobnicate"}, "--frobnicate"},
      {{"info", file, "--color", "red"}, "auto"},
      {{"info", "-", "-"}, "standard input"},
      {{"check", "-", "-"}, "standard input"},
      {{"convert", LegacyText("ISO")}, "--output"},
      {{"convert", LegacyText("ISO"), "-o", "-"}, "standard output"},
      {{"diff", file}, "B"},
      {{"diff", file, file, "C"}, "C"},
      {{"diff", "-", "-"}, "standard input"},
      {{"explain", file}, "PATH"},
      {{"explain", file, "A", "B"}, "B"},
      {{"sheets"}, "FILE"},
      {{"sheets", file, file}, file},
      {{"styles"}, "FILE"},
      {{"styles", file, "Text", "B"}, "B"},
      {{"symbols", "A", "B"}, "B"},
      {{"standards", "ISO"}, "ISO"},
      {{"standards", "--frobnicate"}, "--frobnicate"},
      {{"edit", file, "-o", folder / "b.xml"}, "-c"},
      {{"edit", file, "-c", "node Root:A"}, "--in-place"},
      {{"edit", file, "-c", "node Root:A", "-o", folder / "b.xml", "--in-place"}, "--in-place"},
      {{"edit", file, "-c", "node Root:A", "-f", file, "-o", folder / "b.xml"}, "one of the two"},
      {{"edit", "-", "-c", "node Root:A", "--in-place"}, "standard input"},
      {{"restore"}, "FILE"},
      {{"restore", ""}, "file name"},
      {{"restore", "-"}, "standard input"},
      {{"edit", "-", "-f", "-", "-o", folder / "b.xml"}, "standard input"},
  };
  for (const auto& [arguments, part] : cases) {
    SCOPED_TRACE(testing::PrintToString(arguments));
    const ToolRun run = RunTool(arguments);
    ExpectFailure(run, 2, {part});
    EXPECT_EQ(run.out, "");
  }
  EXPECT_FALSE(std::filesystem::exists(folder / "b.xml"));
}

TEST(CommandLine, AMistakeInACommandIsAnsweredWithTheHelpOfThatCommand) {
  ExpectFailure(RunTool({"explain", "a.xml"}), 2, {"; see holstd explain --help\n"});
  ExpectFailure(RunTool({"-v", "info", "--frobnicate", "a.xml"}), 2,
                {"; see holstd info --help\n"});
  ExpectFailure(RunTool({"fold"}), 2, {"; see holstd --help\n"});
}

TEST(CommandLine, ArgumentsThatAreNotUtf8AreRefused) {
  for (const char* argument : {"\xFF", "a\xC3", "\xC0\xAF", "\xED\xA0\x80"}) {
    ExpectFailure(RunTool({"info", argument}), 2, {"argument 2", "UTF-8"});
  }
}

TEST(CommandLine, HelpIsDataAndHasExamples) {
  const ToolRun run = RunTool({"--help"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  for (const char* command :
       {"convert", "upgrade", "info", "get", "tree", "edit", "restore", "diff", "explain", "sheets",
        "styles", "check", "symbols", "standards"}) {
    EXPECT_THAT(run.out, HasSubstr("\n  " + std::string(command) + " "));
    const ToolRun help = RunTool({command, "--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.err, "");
    EXPECT_THAT(help.out, HasSubstr("Examples:\n  holstd " + std::string(command) + " "));
  }
}

TEST(CommandLine, VersionTellsTheFormatItWrites) {
  const ToolRun run = RunTool({"--version"});
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.out, testing::MatchesRegex("holstd [0-9.]+, standard format 220\n"));
}

TEST(CommandLine, OptionsOfAllCommandsStandBeforeOrAfterTheCommand) {
  const TemporaryFolder folder;
  const std::string text = LegacyText("ISO");
  for (const auto& arguments :
       std::vector<std::vector<std::string>>{{"-q", "convert", text, "-o", folder / "a.xml"},
                                             {"convert", text, "-o", folder / "a.xml", "-q"}}) {
    const ToolRun run = RunTool(arguments);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
  }
}

TEST(CommandLine, AnUnknownTraceIsUsageAndListsTheKnownOnes) {
  const ToolRun run = RunTool({"--trace", "Nothing", "info", "-"}, {.input = SampleStandard()});
  ExpectFailure(run, 2, {"'Nothing'", "DftStdDOMCodec", "VyrDftStandardOutput"});
}

TEST(CommandLine, ATraceGoesToStandardErrorAndMayBeRepeated) {
  const ToolRun run = RunTool(
      {"get", "-", "Version", "--trace", "DftStdDOMCodec", "--trace", "VyrDftStandardOutput"},
      {.input = SampleStandard()});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "220\n");
  EXPECT_THAT(run.err, HasSubstr("VyrAnnStandardXMLParserDOMCodec::DecodeXMLFile"));
}

TEST(CommandLine, FailedChecksOfTheLibraryAreShownOnRequestOnly) {
  const ToolSurroundings with = {.input = "<notAStandard/>"};
  EXPECT_THAT(RunTool({"info", "-"}, with).err, Not(HasSubstr("ASSERTION")));
  for (const auto& option :
       std::vector<std::vector<std::string>>{{"-v"}, {"--trace", "DftStdDOMCodec"}}) {
    std::vector<std::string> arguments = {"info", "-"};
    arguments.insert(arguments.end(), option.begin(), option.end());
    const ToolRun run = RunTool(arguments, with);
    EXPECT_EQ(run.status, 3);
    EXPECT_THAT(run.err, HasSubstr("ASSERTION FAILED"));
  }
}

TEST(CommandLine, ColoursAreSparseAndNeverWithoutATerminalUnlessAskedFor) {
  const auto isColored = [](const std::vector<std::string>& options, const ToolSurroundings& with) {
    std::vector<std::string> arguments = {"check", "-"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return RunTool(arguments, with).out.find('\033') != std::string::npos;
  };
  ToolSurroundings with = {.input = WithSheets(SampleStandard())};
  EXPECT_FALSE(isColored({}, with));
  EXPECT_FALSE(isColored({"--color", "never"}, with));
  EXPECT_TRUE(isColored({"--color", "always"}, with));
  EXPECT_FALSE(isColored({"--color", "always", "--json"}, with));
  with.environment = {{"NO_COLOR", "1"}};
  EXPECT_FALSE(isColored({"--color", "auto"}, with));
}

TEST(CommandLine, OnATerminalThereAreColoursUnlessTheEnvironmentSaysNo) {
  using Environment = std::vector<std::pair<std::string, std::string>>;
  const std::vector<std::pair<Environment, bool>> cases = {
      {{{"TERM", "xterm"}}, true},
      {{{"TERM", "xterm"}, {"NO_COLOR", ""}}, true},
      {{{"TERM", "xterm"}, {"NO_COLOR", "1"}}, false},
      {{{"TERM", "dumb"}}, false},
  };
  for (const auto& [environment, isColored] : cases) {
    SCOPED_TRACE(testing::PrintToString(environment));
    const PseudoTerminal terminal;
    ASSERT_TRUE(terminal.IsOpen());
    const ToolRun run = RunTool({"check", "-"}, {.input = WithSheets(SampleStandard()),
                                                 .outputFile = terminal.Path(),
                                                 .environment = environment});
    EXPECT_EQ(run.status, 0);
    const std::string shown = terminal.Read();
    EXPECT_THAT(shown, HasSubstr("valid"));
    EXPECT_EQ(shown.find('\033') != std::string::npos, isColored) << shown;
  }
}

TEST(CommandLine, OutputThatCannotBeWrittenIsStatus4AndAReaderThatIsGoneIsSilence) {
  const std::vector<std::vector<std::string>> cases = {{"info", "-"},
                                                       {"info", "-", "--json"},
                                                       {"get", "-", "Version"},
                                                       {"tree", "-"},
                                                       {"diff", "ISO", "-"},
                                                       {"diff", "ISO", "-", "--json"},
                                                       {"explain", "-", "Version"},
                                                       {"check", "-"},
                                                       {"sheets", "-"},
                                                       {"styles", "-", "Sheet"},
                                                       {"symbols"},
                                                       {"--help"},
                                                       {"--version"}};
  const std::string standard = WithSheets(SampleStandard());
  for (const auto& arguments : cases) {
    SCOPED_TRACE(testing::PrintToString(arguments));
    ExpectFailure(RunTool(arguments, {.input = standard, .outputFile = "/dev/full"}), 4,
                  {"standard output", "space"});
    // As of any filter.
    const ToolRun piped = RunTool(arguments, {.input = standard, .isReaderGone = true});
    EXPECT_EQ(piped.status, -SIGPIPE);
    EXPECT_EQ(piped.err, "");
  }
}

TEST(CommandLine, AReaderThatIsGoneIsToldWhereTheSignalIsIgnored) {
  ExpectFailure(RunTool({"symbols"}, {.isReaderGone = true, .isPipeIgnored = true}), 4,
                {"standard output", "pipe"});
}

// A file that is opened must not take the place of a stream that is closed.
TEST(CommandLine, AClosedStreamTakesNothingOfAFile) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("a.xml", WithSheets(SampleStandard()));
  const auto status = [](const std::string& line) {
    const int ended = std::system((BuiltProgram("holstd") + " " + line).c_str());
    return WIFEXITED(ended) ? WEXITSTATUS(ended) : -1;
  };
  for (const std::string closed : {" >&-", " 2>&-", " <&-", " <&- >&- 2>&-"}) {
    const std::string out = folder / ("out" + closed + ".xml");
    EXPECT_EQ(status("edit -v " + file + " -o '" + out + "' -c 'node Root:New'" + closed), 0);
    EXPECT_EQ(RunTool({"check", out}).status, 0) << closed;
    EXPECT_EQ(status("upgrade --json -v " + file + " -o '" + out + ".2'" + closed),
              closed.find(" >&-") == std::string::npos ? 0 : 4);
    EXPECT_EQ(RunTool({"check", out + ".2"}).status, 0) << closed;
  }
  EXPECT_EQ(status("info - <&- 2>/dev/null"), 3);
  EXPECT_EQ(ReadWholeFile(file), WithSheets(SampleStandard()));
}

TEST(CommandLine, ATextOfTheOldGenerationIsSentToTheConversion) {
  for (const char* command : {"info", "check", "upgrade"}) {
    std::vector<std::string> arguments = {command, LegacyText("ISO")};
    if (arguments[0] == "upgrade") arguments.push_back("--dry-run");
    EXPECT_THAT(RunTool(arguments).err, HasSubstr("'holstd convert' makes one of it"));
  }
  EXPECT_EQ(RunTool({"info", "-"}, {.input = "<a>"}).err.find("holstd convert"), std::string::npos);
}

TEST(CommandLine, WhatCannotBeReadIsStatus3WithFileAndLine) {
  const TemporaryFolder folder;
  const std::string broken = folder.Write("broken.xml", Document("<std:node>\n"));
  const std::string foreign = folder.Write("foreign.xml", "<node name=\"drafting\"/>");
  const std::string misplaced =
      folder.Write("misplaced.xml", Document("<std:strval>x</std:strval>\n"));
  const std::vector<std::pair<std::string, std::string>> cases = {
      {folder / "missing.xml", "missing.xml: "},
      {folder.Path().string(), "folder"},
      {broken, "broken.xml:"},
      {foreign, "foreign.xml:1: "},
      {misplaced, "misplaced.xml:3: "},
  };
  for (const auto& [file, part] : cases) {
    for (const auto& arguments : std::vector<std::vector<std::string>>{
             {"info", file},
             {"get", file, "Version"},
             {"tree", file},
             {"diff", "ISO", file},
             {"diff", file, "ISO"},
             {"explain", file, "Version"},
             {"check", file},
             {"sheets", file},
             {"styles", file},
             {"edit", file, "-c", "node Root:A", "-o", folder / "out.xml"}}) {
      // These take all standards of a folder.
      const bool takesFolders = arguments[0] == "info" || arguments[0] == "get" ||
                                arguments[0] == "check" || arguments[0] == "edit";
      if (takesFolders && part == "folder") continue;
      SCOPED_TRACE(testing::PrintToString(arguments));
      const ToolRun run = RunTool(arguments);
      ExpectFailure(run, 3, {part});
      EXPECT_EQ(run.out, "");
    }
  }
  EXPECT_FALSE(std::filesystem::exists(folder / "out.xml"));
}

TEST(CommandLine, AStandardNewerThanTheToolIsStatus6) {
  const TemporaryFolder folder;
  const std::string element = "<std:future/>\n";
  for (const std::string& content :
       {Parameter("Version", "intval", "230"), Parameter("Version", "intval", "221"),
        Parameter("Version", "intval", "99999999999999999999"),
        Parameter("Version", "intval", "230") + element}) {
    const std::string file = folder.Write("new.xml", Document(content));
    for (const auto& arguments :
         std::vector<std::vector<std::string>>{{"info", file},
                                               {"get", file, "Version"},
                                               {"tree", file},
                                               {"diff", "ISO", file},
                                               {"explain", file, "Version"},
                                               {"check", file},
                                               {"sheets", file},
                                               {"styles", file},
                                               {"edit", file, "-c", "node Root:A", "--in-place"},
                                               {"upgrade", file, "--in-place"}}) {
      SCOPED_TRACE(testing::PrintToString(arguments));
      ExpectFailure(RunTool(arguments), 6, {"new.xml", "220", "newer"});
    }
    EXPECT_EQ(ReadWholeFile(file), Document(content));
  }
}

TEST(CommandLine, WhatCanBeReadOnceOnlyIsRefusedLikeAFile) {
  const TemporaryFolder folder;
  struct {
    std::string text;
    int status;
    const char* part;
  } const cases[] = {
      {Document(Parameter("Version", "intval", "230")), 6, "version 230"},
      {"<bad", 3, ":1: "},
      {"", 3, "empty"},
  };
  const std::vector<std::pair<std::string, std::string>> inputs = {
      {"-", "holstd: standard input:"},
      {"/dev/stdin", "holstd: /dev/stdin:"},
      {folder / "in.xml", "holstd: " + (folder / "in.xml") + ":"}};
  for (const auto& test : cases) {
    folder.Write("in.xml", test.text);
    for (const auto& [file, place] : inputs) {
      for (const auto& arguments : std::vector<std::vector<std::string>>{
               {"info", file},
               {"check", file},
               {"edit", file, "-c", "node Root:A", "-o", folder / "out.xml"},
               {"upgrade", file, "--dry-run"},
               {"upgrade", file, "-o", folder / "out.xml"}}) {
        SCOPED_TRACE(testing::PrintToString(arguments) + test.part);
        const ToolRun run = RunTool(arguments, {.input = test.text, .isInputPipe = true});
        ExpectFailure(run, test.status, {place, test.part});
      }
    }
  }
  EXPECT_FALSE(std::filesystem::exists(folder / "out.xml"));
}

TEST(CommandLine, AVersionUpToTheToolsOwnIsNotNewer) {
  for (const char* version : {"220", "110", "0", "-5", "abc", ""}) {
    const ToolRun run =
        RunTool({"tree", "-"}, {.input = Document(Parameter("Version", "intval", version))});
    EXPECT_EQ(run.status, 0) << version << run.err;
  }
}

TEST(CommandLine, OfSeveralFilesEachIsServedAndTheWorstStatusReturned) {
  const TemporaryFolder folder;
  const std::string good = folder.Write("good.xml", WithSheets(SampleStandard()));
  const std::string undated =
      folder.Write("undated.xml", Document(Parameter("Version", "intval", "abc")));
  const std::string newer =
      folder.Write("newer.xml", Document(Parameter("Version", "intval", "230")));
  const std::string missing = folder / "missing.xml";
  const std::vector<std::pair<std::vector<std::string>, int>> cases = {
      {{good, good}, 0},       {{undated, good}, 1},        {{undated, missing, good}, 3},
      {{missing, undated}, 3}, {{missing, newer, good}, 6},
  };
  for (const auto& [files, status] : cases) {
    std::vector<std::string> arguments = {"check"};
    arguments.insert(arguments.end(), files.begin(), files.end());
    SCOPED_TRACE(testing::PrintToString(arguments));
    const ToolRun run = RunTool(arguments);
    EXPECT_EQ(run.status, status);
    const bool isSaid = run.out.find(good + ": valid, version 220\n") != std::string::npos;
    EXPECT_EQ(isSaid, files.back() == good);
  }
}

TEST(CommandLine, APathIsReadWithBackslashesToo) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("a.xml", SampleStandard());
  const ToolRun run = RunTool({"info", folder.Path().string() + "\\a.xml", "--json"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(ParsedJson(run)[0]["file"], file);
}

TEST(CommandLine, AFileMayBeCalledLikeASubcommand) {
  const ToolRun run = RunTool({"get", "-", "get"}, {.input = SampleStandard()});
  ExpectFailure(run, 1, {"'get'"});
}

TEST(CommandLine, WhatOnlyReadsLeavesFilesAndFoldersAsTheyAre) {
  const TemporaryFolder folder;
  const std::string text = WithSheets(SampleStandard());
  const std::string file = folder.Write("a.xml", text);
  const std::string broken = folder.Write("b.xml", Document("<std:node>\n"));
  const auto time = std::filesystem::last_write_time(file);
  for (const auto& arguments : std::vector<std::vector<std::string>>{{"info", file},
                                                                     {"get", file, "Version"},
                                                                     {"tree", file},
                                                                     {"diff", file, "ISO"},
                                                                     {"explain", file, "Version"},
                                                                     {"check", file, broken},
                                                                     {"sheets", file},
                                                                     {"styles", file},
                                                                     {"sheets", broken},
                                                                     {"styles", broken},
                                                                     {"standards"}}) {
    RunTool(arguments, {.environment = {{"VYR_STANDARD_PATH", folder.Path().string()},
                                        {"VyrTemp", folder.Path().string()},
                                        {"WOB_ODT_OUT", folder.Path().string()}}});
    EXPECT_EQ(ReadWholeFile(file), text);
    EXPECT_EQ(ReadWholeFile(broken), Document("<std:node>\n"));
    EXPECT_EQ(std::filesystem::last_write_time(file), time);
    const auto files = std::filesystem::directory_iterator(folder.Path());
    EXPECT_EQ(std::distance(begin(files), end(files)), 2) << arguments.front();
  }
}

TEST(CommandLine, HostileArgumentsAreAnsweredLikeAnyOther) {
  const std::string standard = WithSheets(SampleStandard());
  std::vector<std::string> names = {"'",    "\"",       "']|//*[@name='Ink",     "..", ".", "a..b",
                                    "%s%n", "\x1B[31m", std::string(100000, 'x')};
  std::string longPath = "Dimension";
  for (int i = 0; i < 5000; ++i) longPath += ".Dimension";
  names.push_back(longPath);
  for (const std::string& name : names) {
    for (const auto& arguments : std::vector<std::vector<std::string>>{{"get", "-", name},
                                                                       {"get", "-", name, "--all"},
                                                                       {"get", "-", name, "--type"},
                                                                       {"explain", "-", name},
                                                                       {"styles", "-", name},
                                                                       {"symbols", name}}) {
      SCOPED_TRACE(arguments.front() + " " + name.substr(0, 40));
      const ToolRun run = RunTool(arguments, {.input = standard});
      ExpectFailure(run, 1, {});
      EXPECT_EQ(run.out, "");
      EXPECT_THAT(run.err, Not(HasSubstr("\x1B")));
    }
  }
}
