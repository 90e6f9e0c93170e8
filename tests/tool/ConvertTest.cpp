#include "ToolRun.h"

using testing::HasSubstr;

TEST(Convert, EveryOldTextThatIsShippedBecomesAStandardOfItsParent) {
  const TemporaryFolder folder;
  for (const std::string name : {"ISO", "JIS", "ANSI", "ASME"}) {
    SCOPED_TRACE(name);
    const std::string file = folder / (name + ".xml");
    const ToolRun run = RunTool({"convert", LegacyText(name), "-o", file});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err, HasSubstr(file + ": written"));
    EXPECT_EQ(ParsedJson(RunTool({"info", file, "--json"}))[0]["parentStandard"], name);
    EXPECT_EQ(RunTool({"check", file}).status, 0);
    // An ASME standard calls itself ANSI.
    EXPECT_EQ(RunTool({"get", file, "Dimension.ParentStandard"}).out,
              (name == "ASME" ? "ANSI" : name) + "\n");
  }
}

TEST(Convert, StandardInputGivesTheSameAsTheFile) {
  const TemporaryFolder folder;
  const std::string text = ReadWholeFile(LegacyText("ISO"));
  ASSERT_EQ(RunTool({"convert", LegacyText("ISO"), "-o", folder / "a.xml"}).status, 0);
  ASSERT_EQ(RunTool({"convert", "-", "-o", folder / "b.xml"}, {.input = text}).status, 0);
  EXPECT_EQ(ReadWholeFile(folder / "a.xml"), ReadWholeFile(folder / "b.xml"));
}

TEST(Convert, ATextThatIsNotValidIsRefusedWithItsLineAndNothingIsWritten) {
  const TemporaryFolder folder;
  const std::string output = folder.Write("out.xml", "as it was");
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"ParentStandard ISO\nNoSuchName 1\n", ":2: "},
      {"ParentStandard ISO\nParentStandard ISO\n", ":2: "},
      {"ParentStandard DIN\n", ":1: "},
      {"ParentStandard ISO\nDIMLTail two\n", ":2: "},
      {"\nBEGIN_TOLERANCE\n", ":2: "},
      {"ParentStandard ISO\n", "missing"},
      {"ParentStandard \xFF\n", ":1: "},
  };
  for (const auto& [text, part] : cases) {
    SCOPED_TRACE(text);
    const std::string input = folder.Write("in.txt", text);
    ExpectFailure(RunTool({"convert", input, "-o", output}), 3, {"in.txt", part});
    ExpectFailure(RunTool({"convert", "-", "-o", output}, {.input = text}), 3,
                  {"standard input", part});
    EXPECT_EQ(ReadWholeFile(output), "as it was");
  }
  ExpectFailure(RunTool({"convert", folder / "missing.txt", "-o", output}), 3, {"missing.txt"});
  EXPECT_EQ(ReadWholeFile(output), "as it was");
}

TEST(Convert, ItsOwnInputAsOutputNeedsADecision) {
  const TemporaryFolder folder;
  const std::string text = ReadWholeFile(LegacyText("ISO"));
  const std::string input = folder.Write("in.txt", text);
  std::filesystem::create_symlink(input, folder / "link.txt");
  for (const std::string& output : {input, folder / "./in.txt", folder / "link.txt"}) {
    ExpectFailure(RunTool({"convert", input, "-o", output}), 5, {"another file"});
    EXPECT_EQ(ReadWholeFile(input), text);
  }
}

TEST(Convert, AnOutputThatCannotBeWrittenIsStatus4) {
  const TemporaryFolder folder;
  for (const std::string& output : {folder / "missing/out.xml", folder.Path().string()}) {
    ExpectFailure(RunTool({"convert", LegacyText("ISO"), "-o", output}), 4, {output});
  }
}

TEST(Convert, EveryOldTextThatIsShippedBecomesAnyVersionFrom1) {
  const TemporaryFolder folder;
  for (const std::string name : {"ISO", "JIS", "ANSI", "ASME"}) {
    const std::string file = folder / (name + ".xml");
    ASSERT_EQ(RunTool({"convert", LegacyText(name), "-o", file, "--to", "1"}).status, 0) << name;
    EXPECT_THAT(RunTool({"info", file}).out, HasSubstr("\nversion          1\n")) << name;
    ASSERT_EQ(RunTool({"convert", LegacyText(name), "-o", file}).status, 0) << name;
    EXPECT_THAT(RunTool({"info", file}).out, HasSubstr("\nversion          220\n")) << name;
  }
}

TEST(Convert, AnAnsiTextOfNoKnownDatumModeIsTakenAsAnsiWithAWarning) {
  const TemporaryFolder folder;
  const std::string text = ReadWholeFile(LegacyText("ANSI"));
  const std::size_t begin = text.find("TXTDatumMode");
  const std::size_t end = text.find('\n', begin);
  ASSERT_NE(begin, std::string::npos);
  const std::string warning =
      "warning: TXTDatumMode is neither 1 (ASME) nor 2 (ANSI); taken as ANSI\n";
  const std::vector<std::pair<std::string, bool>> cases = {
      {"0", true}, {"3", true}, {"1", false}, {"2", false}};
  for (const auto& [mode, isWarned] : cases) {
    SCOPED_TRACE(mode);
    const std::string changed = text.substr(0, begin) + "TXTDatumMode " + mode + text.substr(end);
    const std::string file = folder.Write("in.txt", changed);
    const ToolRun run = RunTool({"convert", file, "-o", folder / "a.xml", "-q"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, isWarned ? "holstd: " + file + ": " + warning : "");
    const ToolRun piped =
        RunTool({"convert", "-", "-o", folder / "b.xml", "-q"}, {.input = changed});
    EXPECT_EQ(piped.status, 0);
    EXPECT_EQ(piped.err, isWarned ? "holstd: standard input: " + warning : "");
  }
}
