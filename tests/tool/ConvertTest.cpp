#include <algorithm>

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
    for (const std::string& file : {input, std::string("-")}) {
      const ToolRun run = RunTool({"convert", file, "-o", output}, {.input = text});
      EXPECT_EQ(run.status, 3);
      EXPECT_EQ(run.out, "");
      const std::string name = file == "-" ? "standard input" : input;
      EXPECT_THAT(run.err, testing::StartsWith("holstd: " + name + ":"));
      EXPECT_THAT(run.err, HasSubstr(part));
    }
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
  const auto line = std::count(text.begin(), text.begin() + static_cast<long>(begin), '\n') + 1;
  const std::vector<std::pair<std::string, bool>> cases = {
      {"0", true}, {"3", true}, {"01", true}, {"1", false}, {"2", false}};
  for (const auto& [mode, isWarned] : cases) {
    SCOPED_TRACE(mode);
    const std::string warning = ":" + std::to_string(line) + ": warning: TXTDatumMode '" + mode +
                                "' is neither '1' (ASME) nor '2' (ANSI); taken as ANSI\n";
    const std::string changed = text.substr(0, begin) + "TXTDatumMode " + mode + text.substr(end);
    const std::string file = folder.Write("in.txt", changed);
    const ToolRun run = RunTool({"convert", file, "-o", folder / "a.xml", "-q"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, isWarned ? "holstd: " + file + warning : "");
    const ToolRun piped =
        RunTool({"convert", "-", "-o", folder / "b.xml", "-q"}, {.input = changed});
    EXPECT_EQ(piped.status, 0);
    EXPECT_EQ(piped.err, isWarned ? "holstd: standard input" + warning : "");
  }
}

TEST(Convert, EachFaultOfATextIsALineAndTheOthersAreCounted) {
  const TemporaryFolder folder;
  std::string text = ReadWholeFile(LegacyText("ISO"));
  const auto lines = std::count(text.begin(), text.end(), '\n');
  const std::string out = folder / "out.xml";
  const auto fault = [&](long line) {
    return "holstd: " + (folder / "in.txt") + ":" + std::to_string(line) +
           ": 'Nonsense' is no parameter of a drafting standard; correct the name, or take the "
           "line out\n";
  };
  std::string expected;
  for (long count = 1; count <= 20; ++count) {
    text += "Nonsense 1\n";
    expected += fault(lines + count);
    const ToolRun run = RunTool({"convert", folder.Write("in.txt", text), "-o", out});
    EXPECT_EQ(run.status, 3);
    EXPECT_EQ(run.err, expected);
  }
  for (const std::string further : {"1 further fault", "2 further faults"}) {
    text += "Nonsense 1\n";
    const ToolRun run = RunTool({"convert", folder.Write("in.txt", text), "-o", out});
    EXPECT_EQ(run.err, expected + "holstd: " + (folder / "in.txt") + ": has " + further +
                           "; mend these first\n");
  }
  EXPECT_FALSE(std::filesystem::exists(out));
}

TEST(Convert, AnXMLStandardIsSaidToBeOneAndWhatBringsItUpToDate) {
  const TemporaryFolder folder;
  const std::string out = folder / "out.xml";
  const std::string standard = ReadWholeFile(HOL_STANDARDS "/ISO.xml");
  const std::string name = folder.Write("ISO.txt", standard);
  for (const std::string& file : {name, std::string("-")}) {
    ExpectFailure(RunTool({"convert", file, "-o", out}, {.input = standard}), 3,
                  {file == "-" ? "standard input" : name, "is an XML standard", "holstd upgrade"});
  }
  const std::string half = standard.substr(0, standard.size() / 2);
  ExpectFailure(RunTool({"convert", "-", "-o", out}, {.input = half}), 3, {"is XML"});
  EXPECT_FALSE(std::filesystem::exists(out));
}

TEST(Convert, WhatDoesNotArriveIsALineOfTheTextUnlessTheToolIsToBeQuiet) {
  const TemporaryFolder folder;
  const std::string out = folder / "out.xml";
  const std::string text = "\n" + ReadWholeFile(LegacyText("ANSI"));
  const auto lineOf = [&](const std::string& name) {
    const auto place = static_cast<long>(text.find("\n" + name + " ")) + 1;
    return std::to_string(std::count(text.begin(), text.begin() + place, '\n') + 1);
  };
  const ToolRun run = RunTool({"convert", "-", "-o", out}, {.input = text});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err,
            "holstd: standard input:" + lineOf("DIMLConstantLength") +
                ": DIMLConstantLength '0' becomes '7.62', which the format sets itself; change it "
                "in the standard if it is to stay\n"
                "holstd: standard input:" +
                lineOf("SYMBCrossSide") +
                ": SYMBCrossSide '6.35' becomes '9.8995', which the format sets itself; change it "
                "in the standard if it is to stay\n"
                "holstd: standard input:" +
                lineOf("CUMLDimLinTail") +
                ": CUMLDimLinTail '3.175' is left out; the format has no place for it\n" + out +
                ": written, parent standard ANSI\n");
  EXPECT_EQ(RunTool({"convert", "-q", "-", "-o", out}, {.input = text}).err, "");
}

TEST(Convert, AGroupThatTakesTheNameOfAReadyMadeOneIsWarnedOf) {
  const TemporaryFolder folder;
  std::string text = ReadWholeFile(LegacyText("ISO"));
  const std::size_t begin = text.find("TolName");
  text.replace(begin, text.find('\n', begin) - begin, "TolName TOL_RES1");
  const auto line = std::count(text.begin(), text.begin() + static_cast<long>(begin), '\n') + 1;
  const ToolRun run = RunTool({"convert", "-q", "-", "-o", folder / "out.xml"}, {.input = text});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err,
            "holstd: standard input:" + std::to_string(line) +
                ": warning: TolName 'TOL_RES1' is the name of one that every standard has, "
                "which is found instead of this one; give this one another name\n");
}
