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

TEST(Get, PrintsTheFirstValueOfTheNodeElseTheValueOfThatNameInTheNodeBefore) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"Dimension.ParentStandard", "ANSI"},
      {"Dimension.DIMLTail", "2.0"},
      {"Dimension.Blanking", "Yes"},
      {"Sizes", "2.5"},
      {"Ink", "255 0 0"},
      {"Frames.FrameDef", "Box"},
      {"Frames.FrameDef.Type", "21"},
      {"Version", "220"},
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
      {"dimension.DIMLTail", "the nearest name is 'Dimension'"},
      {"Dimension.DIMLTale", "the nearest name is 'DIMLTail'"},
      {"Dimension.Nothing.Below", "'Nothing'"},
      {"Frames.FrameDef.Typ", "the nearest name is 'Type'"},
      {"Dimension", "has no value of its own but 4 nodes"},
      {"Root.Dimension.DIMLTail", "'Dimension.DIMLTail'"},
      {"Dimension.DIMLTail.2.0", "'2'"},
      {"YesNo.Yes", "'YesNo'"},
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

TEST(Get, TheTextOfAValueComesAsItIs) {
  const std::string text = Document(Parameter("Note", "strval", " \xC3\xA4 &lt;a&gt;\n b\t"));
  EXPECT_EQ(RunTool({"get", "-", "Note"}, {.input = text}).out, " \xC3\xA4 <a>\n b\t\n");
  EXPECT_EQ(ParsedJson(RunTool({"get", "-", "Note", "--json"}, {.input = text}))["value"],
            " \xC3\xA4 <a>\n b\t");
}

TEST(Get, TheMatchesAreThoseOfAllNodesOfEveryNameInTheOrderOfTheFile) {
  const ToolRun all = GetOf(RepeatedNames(), "Group.Entry.X", {"--all"});
  EXPECT_EQ(all.status, 0) << all.err;
  EXPECT_EQ(all.out, "a\nb\nc\nd\\ne\nf\n");
  const std::vector<std::string> values = {"a", "b", "c", "d\ne", "f"};
  for (std::size_t i = 0; i < values.size(); ++i) {
    const ToolRun one = GetOf(RepeatedNames(), "Group.Entry.X", {"--index", std::to_string(i + 1)});
    EXPECT_EQ(one.status, 0) << one.err;
    EXPECT_EQ(one.out, values[i] + "\n");
  }
  EXPECT_EQ(GetOf(RepeatedNames(), "Group.Entry.X", {}).out, "a\n");
  EXPECT_EQ(GetOf(RepeatedNames(), "Group.Entry.X", {"--type"}).out, "string 5\n");
  // The values of a node whose name stands last.
  EXPECT_EQ(GetOf(RepeatedNames(), "Group.Entry", {"--all"}).out, "a\nb\nc\nf\n");
  EXPECT_EQ(GetOf(SampleStandard(), "Sizes", {"--all"}).out, "2.5\n3.5\n");
  EXPECT_EQ(GetOf(SampleStandard(), "Frames.FrameDef.Type", {"--all"}).out, "21\n3\n");
}

TEST(Get, ANodeGoesBeforeAValueOfItsName) {
  const std::string text =
      Document("<std:node name=\"A\"><std:strval name=\"X\">value</std:strval>" +
               Parameter("X", "strval", "node") + "</std:node>");
  EXPECT_EQ(GetOf(text, "A.X", {"--all"}).out, "node\n");
}

TEST(Get, AnEnumerationOrABoundIsNoNameInAPath) {
  for (const char* path : {"Dimension.Blanking.YesNo", "A.b"}) {
    const std::string bounded = Parameter("A", "floatval minval=\"b\"", "1.0");
    const std::string text = path[0] == 'A' ? Document(bounded) : SampleStandard();
    for (const char* option : {"--all", "--type", "--json"}) {
      ExpectFailure(GetOf(text, path, {option}), 1, {"there is no"});
    }
  }
}

TEST(Get, AnIndexBeyondTheLastIsANegativeAnswerThatSaysHowManyThereAre) {
  for (const char* json : {"--json", "-q"}) {
    const ToolRun run = GetOf(SampleStandard(), "Sizes", {"--index", "3", json});
    ExpectFailure(run, 1, {"'Sizes' has 2 values", "no 3"});
    EXPECT_EQ(run.out, "");
  }
  ExpectFailure(GetOf(SampleStandard(), "Ink", {"--index", "2"}), 1, {"'Ink' has 1 value;"});
  for (const std::vector<std::string>& option :
       std::vector<std::vector<std::string>>{{"--index", "2"}, {"--all"}, {"--type"}}) {
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
  const std::string text = Document(Parameter("A", "enumval name=\"One\"", "x") +
                                    Parameter("A", "enumval name=\"Two\"", "x"));
  ExpectFailure(GetOf(text, "A", {"--type"}), 1, {"enum One, enum Two"});
}

TEST(Get, JsonOfAllIsAnArrayAndOfTheTypeAnObject) {
  using nlohmann::json;
  EXPECT_EQ(
      ParsedJson(GetOf(SampleStandard(), "Sizes", {"--all", "--json"})),
      json::array({{{"type", "float"}, {"value", "2.5"}}, {{"type", "float"}, {"value", "3.5"}}}));
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
