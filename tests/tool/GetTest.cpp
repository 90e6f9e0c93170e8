#include "ToolRun.h"

namespace {

/// Two groups and an empty one between them, with values of the name X in all places.
std::string RepeatedNames() {
  const auto group = [](const std::string& content) {
    return "<std:node name=\"Group\">" + content + "</std:node>\n";
  };
  const std::string entry = "<std:typeval name=\"Entry\"><std:strval name=\"X\">";
  return Document(group(entry + "a</std:strval></std:typeval>" + entry +
                        "b</std:strval><std:strval name=\"X\">c</std:strval></std:typeval>") +
                  group("") + Parameter("Between", "strval", "other") +
                  group("<std:node name=\"Entry\">" + Parameter("X", "strval", "d\ne") +
                        "</std:node>" + entry + "f</std:strval></std:typeval>"));
}

ToolRun GetOf(const std::string& text, const std::string& path,
              const std::vector<std::string>& more) {
  std::vector<std::string> arguments = {"get", "-", path};
  arguments.insert(arguments.end(), more.begin(), more.end());
  return RunTool(arguments, {.input = text});
}

}  // namespace

TEST(Get, PrintsTheFirstValueOfTheFirstElementThatThePathFinds) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"Dimension.ParentStandard", "ANSI"},
      {"Dimension.DIMLTail", "2.0"},
      {"Dimension.Blanking", "Yes"},
      {"Sizes", "2.5"},
      {"Ink", "255 0 0"},
      {"Frames.FrameDef", "Box"},
      {"Frames.FrameDef.Type", "21"},
      {"Version", "220"},
      // A name is found at any depth, in definitions too, and may be that of an enumeration.
      {"DIMLTail", "2.0"},
      {"Frames.Type", "21"},
      {"FrameDef.Name", "XXX"},
      {"YesNo", "Yes"},
      {"Dimension.Blanking.YesNo", "Yes"},
      // A dot at the end is nothing.
      {"Version.", "220"},
  };
  for (const auto& [path, value] : cases) {
    const ToolRun run = RunTool({"get", "-", path}, {.input = SampleStandard()});
    EXPECT_EQ(run.status, 0) << path << run.err;
    EXPECT_EQ(run.out, value + "\n");
    EXPECT_EQ(run.err, "");
  }
}

TEST(Get, WhatIsNotThereIsANegativeAnswer) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"dimension.DIMLTail", "no 'dimension' in the standard; did you mean"},
      {"Dimension.DIMLTale", "no 'DIMLTale' below 'Dimension'; did you mean"},
      {"dimension.dimltale", "did you mean 'Dimension.DIMLTail'?"},
      {"Dimension.Nothing.Below", "'Nothing'"},
      {"Frames.FrameDef.Typ", "did you mean 'Frames.FrameDef.Type'?"},
      {"Dimension", "has no value of its own but 4 nodes"},
      {"Root.Dimension.DIMLTail", "'Dimension.DIMLTail'"},
      {"Dimension.DIMLTail.2.0", "'2'"},
      {"YesNo.Yes", "there is no 'Yes' below 'YesNo'"},
      {"drafting", "there is no 'drafting' in the standard"},
      {"Dimension..DIMLTail",
       "input: two dots follow each other; did you mean 'Dimension.DIMLTail'?"},
      {".Dimension", "input: the path begins with a dot; did you mean 'Dimension'?"},
      {"Root..Dimension", "input: two dots follow each other; "},
      {"Frames.FrameDef[3].Name", "of 'FrameDef' there are 2"},
      {"Root.Frames.FrameDef[3].Name", "of 'FrameDef' there are 2"},
      {"Frames[2].FrameDef", "of 'Frames' there is 1"},
      {"Frames.FrameDef[Bix].Name", "did you mean 'FrameDef[Box]'?"},
      {"Dimension[1]", "has no value of its own but 4 nodes"},
      {"Dimension.'A'", "no query finds a name with an apostrophe"},
      {"x']|//*[@name='Ink", "no query finds a name with an apostrophe"},
      {"", "no value"},
  };
  for (const auto& [path, part] : cases) {
    SCOPED_TRACE(path);
    for (const bool json : {false, true}) {
      std::vector<std::string> arguments = {"get", "-", path};
      if (json) arguments.push_back("--json");
      const ToolRun run = RunTool(arguments, {.input = SampleStandard()});
      ExpectFailure(run, 1, {"holstd: standard input: ", part});
      EXPECT_EQ(run.out, "");
    }
  }
}

TEST(Get, JsonTellsTypeAndQualifier) {
  using nlohmann::json;
  const TemporaryFolder folder;
  const std::string file = folder.Write("a.xml", SampleStandard());
  const std::vector<std::pair<std::string, json>> cases = {
      {"Dimension.DIMLTail", {{"type", "float"}, {"value", "2.0"}, {"minimum", "0.0"}}},
      {"Dimension.Blanking", {{"type", "enum"}, {"value", "Yes"}, {"enumeration", "YesNo"}}},
      {"Frames.FrameDef.Name", {{"type", "string"}, {"value", "Box"}}},
      {"Ink", {{"type", "color"}, {"value", "255 0 0"}}},
      {"Version", {{"type", "int"}, {"value", "220"}}},
  };
  for (auto [path, expected] : cases) {
    expected["file"] = file;
    expected["path"] = path;
    EXPECT_EQ(ParsedJson(RunTool({"get", file, path, "--json"})), expected);
  }
}

TEST(Get, TheTextOfAValueComesOnOneLineAndInJsonAsItIs) {
  const std::string text = Document(Parameter("Note", "strval", " \xC3\xA4 &lt;a&gt;\n b\t"));
  EXPECT_EQ(RunTool({"get", "-", "Note"}, {.input = text}).out, " \xC3\xA4 <a>\\n b\\t\n");
  EXPECT_EQ(ParsedJson(RunTool({"get", "-", "Note", "--json"}, {.input = text}))["value"],
            " \xC3\xA4 <a>\n b\t");
}

TEST(Get, TheMatchesAreThoseOfAllNodesOfEveryNameInTheOrderOfTheFile) {
  const ToolRun all = GetOf(RepeatedNames(), "Group.Entry.X", {"--all"});
  EXPECT_EQ(all.status, 0) << all.err;
  EXPECT_EQ(all.out, "a\nb\nc\nd\\ne\nf\n");
  const std::vector<std::string> values = {"a", "b", "c", "d\\ne", "f"};
  for (std::size_t i = 0; i < values.size(); ++i) {
    const ToolRun one = GetOf(RepeatedNames(), "Group.Entry.X", {"--index", std::to_string(i + 1)});
    EXPECT_EQ(one.status, 0) << one.err;
    EXPECT_EQ(one.out, values[i] + "\n");
  }
  EXPECT_EQ(GetOf(RepeatedNames(), "Group.Entry.X", {}).out, "a\n");
  EXPECT_EQ(GetOf(RepeatedNames(), "Group.Entry.X", {"--type"}).out, "string 5\n");
  // Of a node the first value is told, and nothing of one that holds none.
  EXPECT_EQ(GetOf(RepeatedNames(), "Group.Entry", {"--all"}).out, "a\nb\nf\n");
  EXPECT_EQ(GetOf(SampleStandard(), "Sizes", {"--all"}).out, "2.5\n");
  EXPECT_EQ(GetOf(SampleStandard(), "Frames.FrameDef.Type", {"--all"}).out, "21\n3\n");
}

TEST(Get, APlaceInBracketsIsToldAsTheFileHoldsIt) {
  struct Case {
    std::string path;
    std::vector<std::string> more;
    std::string out;
  };
  const std::vector<Case> cases = {
      {"Frames.FrameDef[2].Type", {}, "3\n"},
      {"FrameDef[2].Type", {}, "3\n"},
      {"Root.Frames.FrameDef[2].Type", {}, "3\n"},
      {"Frames.FrameDef[Box].Type", {}, "21\n"},
      {"Frames.FrameDef[Box].Type", {"--all"}, "21\n"},
      {"Frames.FrameDef[Box]", {}, "Box\n"},
      {"Sizes[1]", {"--type"}, "float 2\n"},
      {"Dimension[1].Blanking", {"--type"}, "enum YesNo 1\n"},
      {"Dimension[1].DIMLTail", {}, "2.0\n"},
  };
  for (const auto& [path, more, out] : cases) {
    SCOPED_TRACE(path);
    const ToolRun run = GetOf(SampleStandard(), path, more);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, out);
    EXPECT_EQ(run.err, "");
  }
  const std::string repeated = RepeatedNames();
  EXPECT_EQ(GetOf(repeated, "Group[3].Entry.X", {"--all"}).out, "d\\ne\nf\n");
  EXPECT_EQ(GetOf(repeated, "Group[3].Entry[2].X", {}).out, "f\n");
  EXPECT_EQ(GetOf(repeated, "Group[1].Entry.X", {"--index", "3"}).out, "c\n");
  EXPECT_EQ(GetOf(repeated, "Group[1].Entry.X", {"--type"}).out, "string 3\n");
  ExpectFailure(GetOf(repeated, "Group[1].Entry.X", {"--index", "4"}), 1, {"finds 3 elements"});
  ExpectFailure(GetOf(SampleStandard(), "Frames.FrameDef[2]", {"--type"}), 1,
                {"mixed types: int, string"});
  // What the application would read as 12.0.
  const std::string comma =
      Document(Parameter("A", "floatval minval=\"0\"", "12,5") + Parameter("A", "strval", ""));
  EXPECT_EQ(GetOf(comma, "A[1]", {}).out, "12,5\n");
  EXPECT_EQ(ParsedJson(GetOf(comma, "A[1]", {"--json"})), nlohmann::json({{"file", "-"},
                                                                          {"path", "A[1]"},
                                                                          {"type", "float"},
                                                                          {"value", "12,5"},
                                                                          {"minimum", "0"}}));
  ExpectFailure(GetOf(comma, "A[2]", {}), 1, {"'A[2]' is empty"});
}

TEST(Get, ANameThatIsWrittenWithItsBracketsComesFirst) {
  const std::string text =
      Document(Parameter("A", "floatval", "1") + Parameter("A", "floatval", "2") +
               Parameter("A[2]", "floatval", "3"));
  EXPECT_EQ(GetOf(text, "A[2]", {}).out, "3.0\n");
  EXPECT_EQ(GetOf(text, "A[1]", {}).out, "1\n");
}

TEST(Get, ANodeAndTheValueOfItsNameInsideBothMatch) {
  const std::string text = Document(Parameter("Fill", "enumval name=\"Fill\"", "Yes"));
  EXPECT_EQ(GetOf(text, "Fill", {"--all"}).out, "Yes\nYes\n");
  const std::string both =
      Document("<std:node name=\"A\"><std:strval name=\"X\">value</std:strval>" +
               Parameter("X", "strval", "node") + "</std:node>");
  EXPECT_EQ(GetOf(both, "A.X", {"--all"}).out, "value\nnode\n");
}

TEST(Get, ALineThicknessAloneIsTheTableOfTheStandardOnly) {
  const std::string text = Document("<std:node name=\"Style\">" +
                                    Parameter("LineThickness", "intval", "1") + "</std:node>");
  ExpectFailure(GetOf(text, "LineThickness", {}), 1, {"'LineThickness'"});
  EXPECT_EQ(GetOf(text, "Style.LineThickness", {}).out, "1\n");
}

TEST(Get, ABoundIsNoNameInAPath) {
  const std::string text = Document(Parameter("A", "floatval minval=\"b\"", "1.0"));
  for (const char* option : {"--all", "--type", "--json"}) {
    ExpectFailure(GetOf(text, "A.b", {option}), 1, {"there is no 'b' below 'A'"});
  }
}

TEST(Get, ANumberIsShownAsTheShortestTextOfItsType) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"1189", "1189.0"},  {"0.10", "0.1"},  {"-0.5e1", "-5.0"},
      {"1e300", "1e+300"}, {" 2.5 ", "2.5"}, {"0.1000000000000000055", "0.1"},
  };
  for (const auto& [text, shown] : cases) {
    EXPECT_EQ(GetOf(Document(Parameter("A", "floatval", text)), "A", {}).out, shown + "\n");
  }
  EXPECT_EQ(GetOf(Document(Parameter("A", "intval", " +007")), "A", {}).out, "7\n");
}

TEST(Get, AColorIsItsComponentsWhereverItStandsAmongColorsAndInts) {
  const std::string text =
      Document(Parameter("C", "colorval", "1 2  3") + Parameter("C", "intval", "7") +
               Parameter("C", "colorval", "4 5 6"));
  EXPECT_EQ(GetOf(text, "C", {}).out, "1 2 3\n");
  EXPECT_EQ(GetOf(text, "C", {"--index", "2"}).out, "7\n");
  EXPECT_EQ(GetOf(text, "C", {"--index", "3"}).out, "4 5 6\n");
  EXPECT_EQ(GetOf(text, "C", {"--all"}).out, "1 2 3\n7\n4 5 6\n");
  EXPECT_EQ(GetOf(text, "C", {"--type"}).out, "color 1\n");
}

TEST(Get, AColorAmongOtherTypesIsNotTold) {
  const std::string text =
      Document(Parameter("C", "colorval", "1 2 3") + Parameter("C", "strval", "red"));
  ExpectFailure(GetOf(text, "C", {}), 1, {"'1 2 3'", "would be colors or ints"});
  EXPECT_EQ(GetOf(text, "C", {"--all"}).out, "red\n");
}

TEST(Get, AWholeNumberOfItsTypeIsNoWarning) {
  const std::vector<std::pair<std::string, std::vector<std::string>>> cases = {
      {"intval", {"2", " 5 ", "+5", "-5", "007", "\n5\n"}},
      {"floatval", {"2", " 5 ", "+5", "-5", "1e3", ".5", "5.", "12.5", "25e-2"}},
      {"colorval", {"255 0 0", " 255  0\n0 "}},
      {"strval", {"12,5", "abc"}},
      {"enumval name=\"E\"", {"12,5"}},
  };
  for (const auto& [element, texts] : cases) {
    for (const std::string& text : texts) {
      SCOPED_TRACE(element + " '" + text + "'");
      for (const char* option : {"--all", "--index=1", "--json"}) {
        const ToolRun run = GetOf(Document(Parameter("A", element, text)), "A", {option});
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.err, "");
        EXPECT_THAT(run.out, testing::Not(testing::HasSubstr("inFile")));
      }
    }
  }
}

TEST(Get, ATextThatIsNoNumberOfItsTypeIsToldAsTheApplicationReadsItAndWarnedOf) {
  struct Misread {
    const char* element;
    const char* text;
    const char* told;
    const char* right;
  };
  const std::vector<Misread> cases = {
      {"floatval", "12,5", "12.0", "12.5"},  {"floatval", " 12,5 ", "12.0", "12.5"},
      {"floatval", "5 mm", "5.0", "5.0"},    {"floatval", "1.5.7", "1.5", "1.5"},
      {"floatval", "1,5,7", "1.0", "1.0"},   {"floatval", "2e", "2.0", "2.0"},
      {"intval", "2.0", "2", "2"},           {"intval", "2,5", "2", "2"},
      {"intval", "1e3", "1", "1"},           {"colorval", "255 0x 0", "255 0 0", "255 0 0"},
      {"colorval", "255,0,0", "255", "255"},
  };
  for (const auto& [element, text, told, right] : cases) {
    const std::string file = Document(Parameter("A", element, text));
    const std::string type = std::string(element).substr(0, std::string(element).find("val"));
    const std::string line = "holstd: standard input: warning: 'A' is '" + std::string(text) +
                             "' in the file, no number of its type " + type +
                             "; the application reads " + told + "; write " + right +
                             " if that is meant\n";
    for (const char* option : {"--all", "--index=1"}) {
      const ToolRun run = GetOf(file, "A", {option});
      EXPECT_EQ(run.status, 0);
      EXPECT_EQ(run.out, std::string(told) + "\n");
      EXPECT_EQ(run.err, line);
    }
    const ToolRun json = GetOf(file, "A", {"--json"});
    EXPECT_EQ(json.err, line);
    EXPECT_EQ(ParsedJson(json)["value"], told);
    EXPECT_EQ(ParsedJson(json)["inFile"], text);
    EXPECT_EQ(ParsedJson(GetOf(file, "A", {"--json", "--all"}))[0]["inFile"], text);
  }
}

TEST(Get, OfManyTextsThatAreNoNumbersEachHasItsLineUpToAHundred) {
  std::string content;
  for (int i = 1; i <= 103; ++i) content += Parameter("A", "floatval", std::to_string(i) + ",5");
  const ToolRun run = GetOf(Document(Parameter("A", "floatval", "7") + content), "A", {"--all"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(std::count(run.out.begin(), run.out.end(), '\n'), 104);
  EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 101);
  EXPECT_THAT(run.err, testing::HasSubstr(": warning: value 2 of 'A' is '1,5' in the file"));
  EXPECT_THAT(run.err, testing::HasSubstr(": warning: value 101 of 'A' is '100,5' in the file"));
  EXPECT_THAT(run.err, testing::EndsWith(": warning: and 3 values more like these\n"));

  const ToolRun one = GetOf(Document(content), "A", {"--index", "103"});
  EXPECT_EQ(one.out, "103.0\n");
  EXPECT_THAT(one.err, testing::HasSubstr("value 103 of 'A' is '103,5' in the file"));
}

TEST(Get, EveryValueThatCannotBeToldHasItsLineWithWhatItWouldBe) {
  const std::string text =
      Document(Parameter("A", "intval", "abc") + Parameter("A", "floatval", "12,5") +
               Parameter("A", "floatval", "wide"));
  const ToolRun run = GetOf(text, "A", {"--all"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "12.0\n");
  EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 3);
  for (const char* part :
       {": value 1 of 'A' holds 'abc', which cannot be told as the int it is meant to be; it "
        "would be an integer of 32 bits, such as 12\n",
        ": warning: value 2 of 'A' is '12,5' in the file",
        ": value 3 of 'A' holds 'wide', which cannot be told as the float it is meant to be; it "
        "would be a number, such as 12.5\n"}) {
    EXPECT_THAT(run.err, testing::HasSubstr(part));
  }
}

TEST(Get, AllOfThemAreNotToldWhenOneCannotBe) {
  const std::string text =
      Document(Parameter("A", "intval", "1") + Parameter("A", "intval", "abc") +
               Parameter("A", "intval", "3"));
  const ToolRun run = GetOf(text, "A", {"--all"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "1\n3\n");
  EXPECT_THAT(run.err, testing::HasSubstr("'abc', which cannot be told as the int"));
}

TEST(Get, AValueThatCannotBeReadAsItsTypeIsANegativeAnswer) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {Parameter("A", "intval", "abc"), "'abc', which cannot be told as the int"},
      {Parameter("A", "intval", "99999999999"), "cannot be told as the int"},
      {Parameter("A", "floatval", "wide"), "'wide', which cannot be told as the float"},
      {Parameter("A", "colorval", "red"), "'red'"},
      {Parameter("A", "strval", ""), "'A' is empty"},
      {"<std:node name=\"A\"/>", "no value of its own"},
  };
  for (const auto& [content, part] : cases) {
    for (const char* option : {"--all", "--index=1", "--json"}) {
      const ToolRun run = GetOf(Document(content), "A", {option});
      ExpectFailure(run, 1, {part});
      EXPECT_EQ(run.out, "");
    }
  }
}

TEST(Get, WhatIsAskedInVainAlongTheWayIsNoReport) {
  for (const auto& more : std::vector<std::vector<std::string>>{
           {}, {"--all"}, {"--type"}, {"--json"}, {"--type", "--json"}}) {
    for (const char* path : {"Ink", "Frames.FrameDef.Name", "Sizes", "Dimension.Blanking"}) {
      std::vector<std::string> options = {"-v"};
      options.insert(options.end(), more.begin(), more.end());
      const ToolRun run = GetOf(SampleStandard(), path, options);
      EXPECT_EQ(run.status, 0);
      EXPECT_EQ(run.err, "");
    }
  }
}

TEST(Get, AnIndexBeyondTheLastIsANegativeAnswerThatSaysHowManyThereAre) {
  for (const char* json : {"--json", "-q"}) {
    const ToolRun run = GetOf(SampleStandard(), "Sizes", {"--index", "2", json});
    ExpectFailure(run, 1, {"'Sizes' finds 1 element;", "no 2"});
    EXPECT_EQ(run.out, "");
  }
  ExpectFailure(GetOf(SampleStandard(), "Frames.FrameDef.Type", {"--index", "3"}), 1,
                {"finds 2 elements", "no 3"});
  ExpectFailure(GetOf(SampleStandard(), "Ink", {"--index", "9223372036854775807"}), 1,
                {"finds 1 element;"});
  for (const std::vector<std::string>& option :
       std::vector<std::vector<std::string>>{{"--index", "1"}, {"--all"}, {"--type"}}) {
    ExpectFailure(GetOf(SampleStandard(), "Nothing", option), 1, {"'Nothing'"});
    ExpectFailure(GetOf(SampleStandard(), "Dimension", option), 1, {"4 nodes"});
  }
}

TEST(Get, TheTypeComesWithTheNumberOfValues) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"Version", "int 1"},
      {"Sizes", "float 2"},
      {"Frames.FrameDef.Name", "string 2"},
      {"Dimension.Blanking", "enum YesNo 1"},
      {"Ink", "color 1"},
      {"Frames", "compound 2"},
      {"YesNo", "string 2"},
      {"Blanking.YesNo", "enum YesNo 1"},
  };
  for (const auto& [path, line] : cases) {
    const ToolRun run = GetOf(SampleStandard(), path, {"--type"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, line + "\n");
  }
}

TEST(Get, MixedTypesAreANegativeAnswerThatNamesThem) {
  const ToolRun run = GetOf(SampleStandard(), "Frames.FrameDef", {"--type"});
  ExpectFailure(run, 1, {"mixed types: int, string\n"});
  EXPECT_EQ(run.out, "");
  const std::string text = Document(
      "<std:node name=\"List\">"
      "<std:typeval name=\"T\"><std:strval name=\"X\">a</std:strval></std:typeval>"
      "<std:typeval name=\"T\"><std:intval name=\"X\">1</std:intval></std:typeval></std:node>");
  ExpectFailure(GetOf(text, "T.X", {"--type"}), 1, {"mixed types: int, string"});
}

TEST(Get, TheTypeOfANodeIsThatOfTheFirst) {
  const std::string text =
      Document(Parameter("A", "enumval name=\"One\"", "x") + Parameter("A", "intval", "1"));
  EXPECT_EQ(GetOf(text, "A", {"--type"}).out, "enum One 1\n");
}

TEST(Get, JsonOfAllIsAnArrayAndOfTheTypeAnObject) {
  using nlohmann::json;
  EXPECT_EQ(ParsedJson(GetOf(SampleStandard(), "Frames.FrameDef.Type", {"--all", "--json"})),
            json::array({{{"type", "int"}, {"value", "21"}}, {{"type", "int"}, {"value", "3"}}}));
  EXPECT_EQ(ParsedJson(GetOf(SampleStandard(), "Ink", {"--all", "--json"})),
            json::array({{{"type", "color"}, {"value", "255 0 0"}}}));
  EXPECT_EQ(ParsedJson(GetOf(SampleStandard(), "Dimension.Blanking", {"--type", "--json"})),
            json({{"file", "-"},
                  {"path", "Dimension.Blanking"},
                  {"type", "enum"},
                  {"enumeration", "YesNo"},
                  {"count", 1}}));
  EXPECT_EQ(
      ParsedJson(GetOf(RepeatedNames(), "Group.Entry.X", {"--index", "4", "--json"}))["value"],
      "d\ne");
}

TEST(Get, TheListsOfAConvertedStandardAreWhole) {
  const TemporaryFolder folder;
  const std::string file = folder / "ISO.xml";
  ASSERT_EQ(RunTool({"convert", LegacyText("ISO"), "-o", file}).status, 0);
  EXPECT_EQ(RunTool({"get", file, "General.AllowedTextFontSizes", "--type"}).out, "float 107\n");
  const std::string path = "ToleranceFormats.ToleranceDisplay.TolScale";
  const std::string xml = ReadWholeFile(file);
  const std::string entry = "<std:typeval name=\"ToleranceDisplay\">";
  int count = 0;
  for (auto at = xml.find(entry); at != std::string::npos; at = xml.find(entry, at + 1)) ++count;
  EXPECT_GT(count, 1);
  const std::string all = RunTool({"get", file, path, "--all"}).out;
  EXPECT_EQ(std::count(all.begin(), all.end(), '\n'), count);
}
