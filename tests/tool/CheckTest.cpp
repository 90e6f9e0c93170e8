#include "ToolRun.h"

namespace {

const std::string kUndefined =
    "<std:enumdef name=\"YesNo\"><std:strval>Yes</std:strval></std:enumdef>"
    "<std:node name=\"Dimension\">" +
    Parameter("Blanking", "enumval name=\"YesNo\"", "Maybe") +
    Parameter("Other", "enumval name=\"Missing\"", "Yes") + "</std:node>";

}  // namespace

TEST(Check, AValidStandardIsNamedWithItsVersion) {
  const ToolRun run = RunTool({"check", "-"}, {.input = SampleStandard()});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "-: valid, version 220\n");
  EXPECT_EQ(run.err, "");
}

TEST(Check, EachUndefinedLiteralIsShown) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("a.xml", Document(kUndefined));
  const ToolRun run = RunTool({"check", file});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out,
            file +
                ": not valid: Enum undefined: Root.Root.Dimension.Blanking.Maybe with enum "
                "\"YesNo\"\n" +
                file +
                ": not valid: Enum undefined: Root.Root.Dimension.Other.Yes with enum "
                "\"Missing\"\n");
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
    EXPECT_EQ(run.err, "");
    EXPECT_THAT(run.out, testing::HasSubstr("Root.Version"));
    EXPECT_THAT(run.out, testing::HasSubstr("110, 120, 130, 140, 150, 160, 170, 180, 190, 200, "
                                            "210, 220\n"));
  }
}

TEST(Check, JsonHasAnObjectForEveryFile) {
  const TemporaryFolder folder;
  const std::string good = folder.Write("good.xml", SampleStandard());
  const std::string bad = folder.Write("bad.xml", Document(kUndefined));
  const ToolRun run = RunTool({"check", "--json", good, bad, folder / "missing.xml"});
  EXPECT_EQ(run.status, 3);
  const nlohmann::json list = ParsedJson(run);
  ASSERT_EQ(list.size(), 3u);
  EXPECT_EQ(list[0], nlohmann::json({{"file", good},
                                     {"readable", true},
                                     {"valid", true},
                                     {"version", 220},
                                     {"problems", nlohmann::json::array()}}));
  EXPECT_EQ(list[1]["valid"], false);
  EXPECT_EQ(list[1]["readable"], true);
  EXPECT_EQ(list[1]["problems"].size(), 2u);
  EXPECT_EQ(list[2]["readable"], false);
  EXPECT_EQ(list[2]["valid"], false);
  EXPECT_TRUE(list[2]["version"].is_null());
  EXPECT_EQ(list[2]["problems"].size(), 1u);
}
