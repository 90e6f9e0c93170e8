#include "ToolRun.h"

using testing::HasSubstr;

TEST(Sheets, FormatsAndStylesAreTablesInTheOrderOfTheFile) {
  const ToolRun run = RunTool({"sheets", "-"}, {.input = WithSheets(SampleStandard())});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out,
            "FORMAT  SIZE         ORIENTATION\n"
            "A0 ISO  1189 x 841   LandscapeByDefault\n"
            "Strip   297.5 x 210  PortraitOnly\n"
            "\n"
            "STYLE    SCALE  PROJECTION   POSITIONING  FORMAT  ORIENTATION  DISPLAY\n"
            "Default  1      First angle  -            -       -            -\n"
            "Large    0.5    Third angle  FixedAxis    A0 ISO  Landscape    No\n");
}

TEST(Sheets, JsonHasNumbersAndNullForWhatIsNotSaid) {
  using nlohmann::json;
  const json sheets =
      ParsedJson(RunTool({"sheets", "-", "--json"}, {.input = WithSheets(SampleStandard())}));
  EXPECT_EQ(sheets["file"], "-");
  EXPECT_EQ(sheets["formats"].size(), 2u);
  EXPECT_EQ(
      sheets["formats"][1],
      json(
          {{"name", "Strip"}, {"width", 297.5}, {"height", 210}, {"orientation", "PortraitOnly"}}));
  EXPECT_EQ(sheets["styles"].size(), 2u);
  EXPECT_EQ(sheets["styles"][0], json({{"name", "Default"},
                                       {"scale", 1.0},
                                       {"projection", "First angle"},
                                       {"positioning", nullptr},
                                       {"format", nullptr},
                                       {"orientation", nullptr},
                                       {"display", nullptr}}));
  EXPECT_EQ(sheets["styles"][1]["display"], "No");
  EXPECT_EQ(sheets["styles"][1]["format"], "A0 ISO");
}

TEST(Sheets, OfFormatsAndStylesTheOnesThatCanBeReadArePrinted) {
  const TemporaryFolder folder;
  const std::string whole = WithSheets(SampleStandard());
  const std::string wide = Replaced(whole, ">1189<", ">wide<");
  const std::string badFormat = folder.Write("format.xml", wide);
  const ToolRun ofFormat = RunTool({"sheets", badFormat});
  EXPECT_EQ(ofFormat.status, 1);
  EXPECT_THAT(ofFormat.out, testing::Not(HasSubstr("Strip")));
  EXPECT_THAT(ofFormat.err,
              HasSubstr("holstd: " + badFormat + ":" + std::to_string(LineOf(wide, "wide")) +
                        ": the sheet format 'A0 ISO' has the Width 'wide'"));

  const std::string badStyle = folder.Write("style.xml", Replaced(whole, ">0.5<", "><"));
  const ToolRun ofStyle = RunTool({"sheets", badStyle, "--json"});
  ExpectFailure(ofStyle, 1, {"the sheet style 'Large' has"});
  EXPECT_EQ(ParsedJson(ofStyle)["formats"].size(), 2u);
  EXPECT_TRUE(ParsedJson(ofStyle)["styles"].empty());
}

TEST(Sheets, AFieldOfAnotherTypeIsNamed) {
  const std::string text =
      Replaced(WithSheets(SampleStandard()), "<std:floatval name=\"Width\">1189</std:floatval>",
               "<std:intval name=\"Width\">1189</std:intval>");
  ExpectFailure(RunTool({"sheets", "-", "--json"}, {.input = text}), 1,
                {"'A0 ISO' has a Width that is no float", "standard input:"});
}

TEST(Sheets, UndefinedEnumerationValuesHideTheStyles) {
  const std::string text = WithSheets(
      Replaced(SampleStandard(), "\"YesNo\">Yes</std:enumval>", "\"YesNo\">Perhaps</std:enumval>"));
  const ToolRun run = RunTool({"sheets", "-"}, {.input = text});
  ExpectFailure(run, 1, {"undefined enumeration values", "holstd check"});
  EXPECT_THAT(run.out, HasSubstr("Strip"));
}

TEST(Sheets, AnUnknownVersionIsTheReasonThatIsTold) {
  const std::string standard =
      Document(Parameter("Version", "strval", "abc") +
               "<std:node name=\"Styles\"><std:node name=\"Sheet\"><std:node name=\"Default\">" +
               Parameter("GlobalScale", "floatval", "1") + "</std:node></std:node></std:node>");
  const ToolRun run = RunTool({"sheets", "-"}, {.input = standard});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.err, HasSubstr("ersion"));
  EXPECT_THAT(run.err, testing::Not(HasSubstr("the sheet styles cannot be read")));
}

TEST(Sheets, AStandardWithoutAnyIsANegativeAnswer) {
  const ToolRun run = RunTool({"sheets", "-"}, {.input = SampleStandard()});
  ExpectFailure(run, 1, {"neither sheet formats nor sheet styles"});
  EXPECT_EQ(run.out, "");
}

TEST(Sheets, TheShippedStandardsHaveThem) {
  for (const std::string name : {"ISO", "JIS", "ANSI-ASME"}) {
    const ToolRun run = RunTool({"sheets", HOL_STANDARDS "/" + name + ".xml", "--json"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_FALSE(ParsedJson(run)["formats"].empty());
    EXPECT_EQ(ParsedJson(run)["styles"][0]["name"], "Default");
  }
}
