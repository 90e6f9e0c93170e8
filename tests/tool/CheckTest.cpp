#include "ToolRun.h"

namespace {

const std::string kUndefined =
    "<std:enumdef name=\"YesNo\"><std:strval>Yes</std:strval></std:enumdef>"
    "<std:node name=\"Dimension\">" +
    Parameter("Blanking", "enumval name=\"YesNo\"", "Maybe") +
    Parameter("Other", "enumval name=\"Missing\"", "Yes") + "</std:node>";

}  // namespace

TEST(Check, AValidStandardIsNamedWithItsVersion) {
  const ToolRun run = RunTool({"check", "-"}, {.input = WithSheets(SampleStandard())});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "-: valid, version 220\n");
  EXPECT_EQ(run.err, "");
}

TEST(Check, EachUndefinedLiteralIsAMessageWithLineAndPath) {
  const TemporaryFolder folder;
  const std::string text = Document(kUndefined);
  const std::string file = folder.Write("a.xml", text);
  const int line = LineOf(text, ">Maybe<");
  const ToolRun run = RunTool({"check", file});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, file + ": not valid: 2 problems of content\n");
  EXPECT_EQ(run.err, "holstd: " + file + ":" + std::to_string(line) +
                         ": Root.Dimension.Blanking: 'Maybe' is no literal of the enumeration "
                         "'YesNo'; it has 'Yes'\n"
                         "holstd: " +
                         file + ":" + std::to_string(LineOf(text, "\"Other\"")) +
                         ": Root.Dimension.Other: there is no enumeration 'Missing' to take 'Yes' "
                         "from; 'holstd tree FILE Enum' shows what there is\n");
  const nlohmann::json report = ParsedJson(RunTool({"check", file, "--json"}))[0];
  EXPECT_EQ(report["lines"], nlohmann::json({line, LineOf(text, "\"Other\"")}));
}

TEST(Check, AMisspeltLiteralIsAnsweredWithTheNearest) {
  const std::string text = Replaced(SampleStandard(), ">Yes</std:enumval>", ">yes</std:enumval>");
  ExpectFailure(RunTool({"check", "-"}, {.input = text}), 1, {"near is 'Yes'"});
}

TEST(Check, AnElementThatHasLostItsPrefixIsTold) {
  const std::string good = WithSheets(SampleStandard());
  const std::string text =
      Replaced(good, "<std:node name=\"Sizes\">",
               "<node name=\"A\"><node name=\"B\"/></node>\n<intval/>\n<std:node name=\"Sizes\">");
  const int line = LineOf(text, "<node name=\"A\">");
  const ToolRun run = RunTool({"check", "-"}, {.input = text});
  ExpectFailure(run, 1,
                {"standard input:" + std::to_string(line) + ": the element 'node' and 1 more",
                 "passed over"});
  EXPECT_EQ(run.out, "-: not valid: 1 problem of content\n");
  // It comes before what it is the cause of.
  const std::string type = Replaced(
      Replaced(good, "<std:enumdef name=\"YesNo\">", "<enumdef name=\"YesNo\">"),
      "<std:strval>No</std:strval></std:enumdef>", "<std:strval>No</std:strval></enumdef>");
  const ToolRun caused = RunTool({"check", "-"}, {.input = type});
  EXPECT_EQ(caused.status, 1);
  EXPECT_LT(caused.err.find("the element 'enumdef'"), caused.err.find("no enumeration 'YesNo'"));
  EXPECT_THAT(caused.err, testing::HasSubstr("no enumeration 'YesNo'"));
  // What others have put into the file for themselves is no business of a standard.
  const std::string foreign =
      Replaced(good, "<std:node name=\"Sizes\">",
               "<note xmlns=\"http://other.example\">x</note><std:node name=\"Sizes\">");
  EXPECT_EQ(RunTool({"check", "-"}, {.input = foreign}).status, 0);
}

TEST(Check, AVersionThatCannotBeToldIsNotValidAndTheKnownOnesAreNamed) {
  const std::vector<std::string> cases = {
      Parameter("Version", "intval", "abc"),
      Parameter("Version", "intval", "115"),
      Parameter("Version", "strval", "220"),
      "<std:node name=\"Version\"/>",
      "<std:node name=\"Version\"><std:intval>220</std:intval><std:intval>220</std:intval>"
      "</std:node>",
  };
  for (const std::string& content : cases) {
    const ToolRun run = RunTool({"check", "-"}, {.input = Document(content)});
    EXPECT_EQ(run.status, 1) << content;
    EXPECT_EQ(run.out, "-: not valid: 1 problem of content\n");
    EXPECT_THAT(run.err, testing::HasSubstr("standard input:3: the format version cannot be told"));
    EXPECT_THAT(run.err, testing::HasSubstr("Root.Version"));
    EXPECT_THAT(run.err, testing::HasSubstr("110, 120, 130, 140, 150, 160, 170, 180, 190, 200, "
                                            "210, 220\n"));
  }
}

TEST(Check, JsonHasAnObjectForEveryFile) {
  const TemporaryFolder folder;
  const std::string good = folder.Write("good.xml", WithSheets(SampleStandard()));
  const std::string bad = folder.Write("bad.xml", Document(kUndefined));
  const ToolRun run = RunTool({"check", "--json", good, bad, folder / "missing.xml"});
  EXPECT_EQ(run.status, 3);
  const nlohmann::json list = ParsedJson(run);
  ASSERT_EQ(list.size(), 3u);
  EXPECT_EQ(list[0], nlohmann::json({{"file", good},
                                     {"readable", true},
                                     {"valid", true},
                                     {"version", 220},
                                     {"problems", nlohmann::json::array()},
                                     {"lines", nlohmann::json::array()}}));
  EXPECT_EQ(list[1]["valid"], false);
  EXPECT_EQ(list[1]["readable"], true);
  EXPECT_EQ(list[1]["problems"].size(), 2u);
  EXPECT_EQ(list[2]["readable"], false);
  EXPECT_EQ(list[2]["valid"], false);
  EXPECT_TRUE(list[2]["version"].is_null());
  EXPECT_EQ(list[2]["problems"].size(), 1u);
}

namespace {

constexpr const char* kLarge = "<std:node name=\"Large\">";
constexpr const char* kDefault = "<std:node name=\"Default\">";

/// A change that makes a standard unusable, what is said of it, and its line by what that holds.
struct Damage {
  std::string part;
  std::string by;
  std::string text;
  std::string line;
};

const std::vector<Damage>& Damages() {
  static const std::vector<Damage> damages = {
      {"1189", "wide", "the sheet format 'A0 ISO' has the Width 'wide'; it would be a number",
       "wide"},
      {"1189", "nan", "the sheet format 'A0 ISO' has the Width 'nan'; it would be a number", "nan"},
      {"841", "inf", "the sheet format 'A0 ISO' has the Height 'inf'; it would be a number", "inf"},
      {">0.5<", ">-Infinity<", "the sheet style 'Large' has the GlobalScale '-Infinity'", kLarge},
      {"<std:floatval name=\"Height\">210.0</std:floatval>", "",
       "the sheet format 'Strip' has 3 values; it would have 4", "Strip"},
      {"enumval name=\"FormatOrientationType\">PortraitOnly</std:enumval>",
       "strval name=\"FormatOrientationType\">Upright</std:strval>",
       "the sheet format 'Strip' has a FormatOrientationType that is no enum", "Upright"},
      {">0.5<", ">half<", "the sheet style 'Large' has the GlobalScale 'half'", kLarge},
      {Parameter("GlobalScale", "floatval", "1.0"), "",
       "the sheet style 'Default' has no GlobalScale", kDefault},
      {Parameter("Format", "strval", "A0 ISO"), Parameter("Format", "strval", "A9"),
       "the sheet style 'Large' has the Format 'A9', which is none of the sheet formats; there are "
       "'A0 ISO', 'Strip'",
       kLarge},
      {Parameter("Format", "strval", "A0 ISO"), "", "the sheet style 'Large' has no Format",
       kLarge},
      {Parameter("GenViewsPosMode", "enumval name=\"GenViewsPosMode\"", "FixedAxis"), "",
       "the sheet style 'Large' has no GenViewsPosMode; it would be 'FixedCG' or 'FixedAxis'",
       kLarge},
      {Parameter("ProjectionMethod", "enumval name=\"ProjectionMethod\"", "First angle"),
       Parameter("ProjectionMethod", "strval", "Second"),
       "the sheet style 'Default' has the ProjectionMethod 'Second'; it would be 'First angle' or "
       "'Third angle'",
       kDefault},
      {kDefault,
       "<std:node name=\"Odd\">" + Parameter("GlobalScale", "floatval", "1") +
           Parameter("ProjectionMethod", "strval", "First angle") +
           Parameter("GenViewsPosMode", "strval", "FixedCG") +
           Parameter("Orientation", "strval", "Portrait") + "</std:node>\n" + kDefault,
       "the sheet style 'Odd' has no DisplayFormat", "\"Odd\""},
  };
  return damages;
}

}  // namespace

TEST(Check, EachFaultOfSheetsIsAMessageWithFileLineAndName) {
  const TemporaryFolder folder;
  for (const Damage& damage : Damages()) {
    SCOPED_TRACE(damage.text);
    const std::string text = Replaced(WithSheets(SampleStandard()), damage.part, damage.by);
    const std::string file = folder.Write("a.xml", text);
    const ToolRun run = RunTool({"check", file});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, testing::StartsWith(file + ": not valid: "));
    EXPECT_EQ(std::count(run.out.begin(), run.out.end(), '\n'), 1);
    const int line = LineOf(text, damage.line);
    EXPECT_THAT(run.err, testing::HasSubstr("holstd: " + file + ":" + std::to_string(line) + ": " +
                                            damage.text));
    EXPECT_THAT(run.err, testing::Not(testing::HasSubstr("ASSERTION")));
    const nlohmann::json report = ParsedJson(RunTool({"check", file, "--json"}))[0];
    EXPECT_EQ(report["valid"], false);
    EXPECT_EQ(report["lines"].size(), report["problems"].size());
    EXPECT_EQ(report["lines"][0], line);
    EXPECT_THAT(report["problems"].dump(), testing::HasSubstr(damage.text));
  }
}

TEST(Check, AStandardWithoutSheetsIsNotValidFromVersion60On) {
  const ToolRun run = RunTool({"check", "-"}, {.input = SampleStandard()});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "-: not valid: 2 problems of structure\n");
  EXPECT_THAT(run.err, testing::HasSubstr("holstd: standard input: there is no node Sheet"));
  EXPECT_THAT(run.err, testing::HasSubstr("holstd: standard input: there is no node SheetFormat"));
  const std::string empty =
      "<std:node name=\"SheetFormat\"/>\n<std:node name=\"Styles\">\n"
      "<std:node name=\"Sheet\"/></std:node>\n" +
      Parameter("Version", "intval", "220");
  const ToolRun ofEmpty = RunTool({"check", "-"}, {.input = Document(empty)});
  EXPECT_EQ(ofEmpty.status, 1);
  EXPECT_THAT(ofEmpty.err, testing::HasSubstr("standard input:3: SheetFormat holds no sheet"));
  EXPECT_THAT(ofEmpty.err, testing::HasSubstr("standard input:5: Styles.Sheet holds no sheet"));
}

TEST(Check, OlderStandardsNeedNoSheets) {
  const TemporaryFolder folder;
  for (const std::string version : {"2", "50", "60"}) {
    const std::string file = folder / ("v" + version + ".xml");
    ASSERT_EQ(RunTool({"convert", LegacyText("ISO"), "-o", file, "--to", version}).status, 0);
    const ToolRun run = RunTool({"check", file});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, file + ": valid, version " + version + "\n");
  }
}

TEST(Check, AHundredProblemsAreToldAndTheOthersCounted) {
  std::string values;
  for (int i = 0; i < 103; ++i) {
    values += Parameter("P" + std::to_string(i), "enumval name=\"Missing\"", "Yes");
  }
  const std::string text = Document(values);
  const ToolRun run = RunTool({"check", "-"}, {.input = text});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "-: not valid: 103 problems of content\n");
  EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 101);
  EXPECT_THAT(run.err, testing::HasSubstr(":" + std::to_string(LineOf(text, "\"P99\"")) + ": "));
  EXPECT_THAT(run.err, testing::Not(testing::HasSubstr("P100")));
  EXPECT_THAT(run.err, testing::EndsWith("standard input: and 3 problems more like these\n"));
  const nlohmann::json json = ParsedJson(RunTool({"check", "--json", "-"}, {.input = text}))[0];
  EXPECT_EQ(json["problems"].size(), 100u);
  EXPECT_EQ(json["lines"].size(), 100u);
  EXPECT_EQ(json["more"], 3);
}
