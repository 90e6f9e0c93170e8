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

TEST(Sheets, ATextThatIsNoNumberIsReadAsTheApplicationDoesAndWarnedOf) {
  std::string text = Replaced(WithSheets(SampleStandard()), ">1189<", ">1189,5<");
  text = Replaced(text, ">210.0<", ">210 mm<");
  text = Replaced(text, ">0.5<", ">0.5:1<");
  const std::string warning = "holstd: standard input: warning: ";
  const std::string lines =
      warning +
      "'SheetFormat.Width' of 'A0 ISO' is '1189,5' in the file, no number of its type float; the "
      "application reads 1189; write 1189.5 if that is meant\n" +
      warning +
      "'SheetFormat.Height' of 'Strip' is '210 mm' in the file, no number of its type float; the "
      "application reads 210; write 210 if that is meant\n" +
      warning +
      "'Root.Styles.Sheet.Large.GlobalScale' is '0.5:1' in the file, no number of its type float; "
      "the application reads 0.5; write 0.5 if that is meant\n";
  const ToolRun table = RunTool({"sheets", "-"}, {.input = text});
  EXPECT_EQ(table.status, 0);
  EXPECT_THAT(table.out, HasSubstr("1189 x 841"));
  EXPECT_EQ(table.err, lines);

  const ToolRun json = RunTool({"sheets", "-", "--json"}, {.input = text});
  EXPECT_EQ(json.status, 0);
  EXPECT_EQ(json.err, lines);
  const auto sheets = ParsedJson(json);
  EXPECT_EQ(sheets["formats"][0]["width"], 1189);
  EXPECT_EQ(sheets["formats"][0]["widthInFile"], "1189,5");
  EXPECT_FALSE(sheets["formats"][0].contains("heightInFile"));
  EXPECT_EQ(sheets["formats"][1]["heightInFile"], "210 mm");
  EXPECT_FALSE(sheets["styles"][0].contains("scaleInFile"));
  EXPECT_EQ(sheets["styles"][1]["scaleInFile"], "0.5:1");
}

TEST(Sheets, AWholeNumberHoweverWrittenIsNoWarning) {
  for (const std::string number : {" 5 ", "+5", "1e3", ".5", "5.", "12.5"}) {
    std::string text = Replaced(WithSheets(SampleStandard()), ">1189<", ">" + number + "<");
    text = Replaced(text, ">841<", ">" + number + "<");
    text = Replaced(text, ">0.5<", ">" + number + "<");
    const ToolRun run = RunTool({"sheets", "-", "--json"}, {.input = text});
    EXPECT_EQ(run.status, 0) << number;
    EXPECT_EQ(run.err, "") << number;
    EXPECT_THAT(run.out, testing::Not(HasSubstr("InFile"))) << number;
  }
}

TEST(Sheets, OfManyTextsThatAreNoNumbersAHundredAreToldAndTheOthersCounted) {
  const std::string text = WithSheets(SampleStandard());
  std::string formats;
  for (int i = 0; i < 60; ++i) {
    formats +=
        "<std:typeval name=\"Formats\"><std:strval name=\"Name\">F</std:strval><std:floatval "
        "name=\"Width\">1,5</std:floatval><std:floatval name=\"Height\">2,5</std:floatval>"
        "<std:enumval name=\"FormatOrientationType\">PortraitOnly</std:enumval></std:typeval>\n";
  }
  const std::string head = "<std:node name=\"SheetFormat\">\n";
  const ToolRun run = RunTool({"sheets", "-"}, {.input = Replaced(text, head, head + formats)});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 101);
  EXPECT_THAT(run.err, testing::EndsWith("warning: and 20 values more like these\n"));
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
