#include "ToolRun.h"

TEST(Info, TellsNameParentVersionAndCounts) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("site.v2.xml", SampleStandard());
  const ToolRun run = RunTool({"info", file});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, "file             " + file +
                         "\n"
                         "name             site.v2\n"
                         "parent standard  ASME\n"
                         "version          220\n"
                         "enumerations     1\n"
                         "types            1\n"
                         "nodes            11\n"
                         "values           12\n");
}

TEST(Info, JsonIsAListWithAnObjectForEachFileThatCouldBeRead) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("a.xml", SampleStandard());
  const ToolRun run = RunTool({"info", "--json", file, folder / "missing.xml", file});
  EXPECT_EQ(run.status, 3);
  const nlohmann::json expected = {
      {"file", file},   {"name", "a"},       {"parentStandard", "ASME"},
      {"version", 220}, {"enumerations", 1}, {"types", 1},
      {"nodes", 11},    {"values", 12}};
  EXPECT_EQ(ParsedJson(run), nlohmann::json::array({expected, expected}));
}

TEST(Info, WhatAStandardDoesNotSayIsUnknown) {
  const std::string text = Document(Parameter("Version", "intval", "abc"));
  const ToolRun run = RunTool({"info", "-"}, {.input = text});
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.out, testing::HasSubstr("parent standard  unknown\nversion          unknown\n"));
  const nlohmann::json info = ParsedJson(RunTool({"info", "-", "--json"}, {.input = text}))[0];
  EXPECT_TRUE(info["parentStandard"].is_null());
  EXPECT_TRUE(info["version"].is_null());
  EXPECT_EQ(info["nodes"], 1);
}

TEST(Info, TheParentIsAsmeForAnAnsiStandardOfDatumMode1Only) {
  const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
      {{"ANSI", "1"}, "ASME"}, {{"ANSI", "2"}, "ANSI"}, {{"ANSI", "0"}, "ANSI"},
      {{"ISO", "1"}, "ISO"},   {{"ASME", "2"}, "ASME"}, {{"iso", "1"}, "iso"},
  };
  for (const auto& [values, parent] : cases) {
    const std::string text = Document(
        "<std:node name=\"Dimension\">" + Parameter("ParentStandard", "strval", values[0]) +
        Parameter("TXTDatumMode", "intval", values[1]) + "</std:node>");
    EXPECT_EQ(ParsedJson(RunTool({"info", "-", "--json"}, {.input = text}))[0]["parentStandard"],
              parent);
  }
}
