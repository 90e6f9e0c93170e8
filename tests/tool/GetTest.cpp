#include "ToolRun.h"

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
