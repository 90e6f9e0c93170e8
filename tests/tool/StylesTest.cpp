#include "ToolRun.h"

namespace {

std::string Styles(const std::string& content) {
  return Document("<std:node name=\"Styles\">" + content + "</std:node>\n");
}
std::string Type(const std::string& name, const std::string& content) {
  return "<std:node name=\"" + name + "\">" + content + "</std:node>\n";
}

const std::string kTwoTypes =
    Styles(Type("Text", "<std:node name=\"Default\"/><std:node name=\"ViewText\"/>") +
           Type("Arrow", "<std:node name=\"Default\"/>"));

}  // namespace

TEST(Styles, AreListedByObjectTypeInTheOrderOfTheFile) {
  const ToolRun run = RunTool({"styles", "-"}, {.input = kTwoTypes});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out,
            "TYPE   STYLES\n"
            "Text   Default, ViewText\n"
            "Arrow  Default\n");
}

TEST(Styles, OfOneTypeAreOneALine) {
  EXPECT_EQ(RunTool({"styles", "-", "Text"}, {.input = kTwoTypes}).out, "Default\nViewText\n");
}

TEST(Styles, JsonIsAListOfTypes) {
  using nlohmann::json;
  const json text = {{"type", "Text"}, {"styles", {"Default", "ViewText"}}};
  const json arrow = {{"type", "Arrow"}, {"styles", json::array({"Default"})}};
  EXPECT_EQ(ParsedJson(RunTool({"styles", "-", "--json"}, {.input = kTwoTypes})),
            json::array({text, arrow}));
  EXPECT_EQ(ParsedJson(RunTool({"styles", "-", "Arrow", "--json"}, {.input = kTwoTypes})),
            json::array({arrow}));
}

TEST(Styles, AnUnknownTypeIsANegativeAnswerThatNamesThoseThereAre) {
  for (const std::string type : {"text", "Sheet", "Default", "Text.Default", ""}) {
    const ToolRun run = RunTool({"styles", "-", type, "--json"}, {.input = kTwoTypes});
    ExpectFailure(run, 1, {"'" + type + "'", "Text, Arrow"});
    EXPECT_EQ(run.out, "");
  }
}

TEST(Styles, ATypeOrAStandardWithoutAnyIsANegativeAnswer) {
  ExpectFailure(RunTool({"styles", "-"}, {.input = SampleStandard()}), 1, {"has no styles"});
  ExpectFailure(RunTool({"styles", "-"}, {.input = Styles("")}), 1, {"has no styles"});
  ExpectFailure(RunTool({"styles", "-", "Text"}, {.input = Styles(Type("Text", ""))}), 1,
                {"'Text' has no style"});
}

// The application searches the type at any depth below the styles.
TEST(Styles, AnEarlierNodeOfTheTypesNameIsWhatTheApplicationIsToldAndIsWarnedOf) {
  const std::string text =
      Styles(Type("Arrow", Type("Default", Type("Text", "<std:node name=\"Size\"/>"))) +
             Type("Text", "<std:node name=\"Default\"/>"));
  const ToolRun run = RunTool({"styles", "-", "Text"}, {.input = text});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "Size\n");
  EXPECT_THAT(run.err, testing::HasSubstr("warning: of the type 'Text'"));
  EXPECT_THAT(run.err, testing::HasSubstr("its own styles are Default\n"));
}

TEST(Styles, TheShippedStandardsHaveStylesOfSheetsAndTexts) {
  for (const std::string name : {"ISO", "JIS", "ANSI-ASME"}) {
    const std::string file = HOL_STANDARDS "/" + name + ".xml";
    EXPECT_EQ(RunTool({"styles", file, "Sheet"}).out, "Default\n");
    EXPECT_EQ(RunTool({"styles", file, "Text"}).out, "Default\nViewText\n");
  }
}
