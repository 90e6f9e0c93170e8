#include "ToolRun.h"

using testing::HasSubstr;

TEST(Symbols, HaveALineEachUnderTheHeadings) {
  const ToolRun run = RunTool({"symbols"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_THAT(run.out, testing::StartsWith("TAG "));
  // 64 of the OpenType fonts, and the one that the stroke fonts have instead of two.
  EXPECT_EQ(std::count(run.out.begin(), run.out.end(), '\n'), 1 + 64 + 1);
  EXPECT_THAT(run.out, testing::ContainsRegex("\n<STRAIGHT> +QNISO1.otf 9188 +SYM2.font 9472 +"
                                              "SYM1.font 9472\n"));
  EXPECT_THAT(run.out, testing::ContainsRegex("\n<CHECKMARK> +QNISO1.otf 10003 +QNISO1.otf 10003 "
                                              "+-\n"));
}

TEST(Symbols, OfOneAllIsTold) {
  const ToolRun run = RunTool({"symbols", "<DEGREE>"});
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.out, testing::StartsWith("<DEGREE>\n"));
  EXPECT_THAT(run.out, HasSubstr("OpenType fonts, ISO and JIS\n    font         QNISO1.otf\n    "
                                 "code         176\n    small image  "));
  EXPECT_THAT(run.out, HasSubstr("stroke fonts, ISO and JIS (as with the other fonts)\n"));
  EXPECT_EQ(RunTool({"symbols", "DEGREE"}).out, run.out);
  EXPECT_THAT(RunTool({"symbols", "CHECKMARK"}).out, HasSubstr("ANSI and ASME: none\n"));
}

TEST(Symbols, JsonOfAllIsAListAndOfOneAnObjectWithImages) {
  const nlohmann::json list = ParsedJson(RunTool({"symbols", "--json"}));
  ASSERT_EQ(list.size(), 65u);
  EXPECT_EQ(list[0]["tag"], "<SUBSTITUTION>");
  EXPECT_EQ(list[0]["symbols"].size(), 3u);
  EXPECT_FALSE(list[0]["symbols"][0].contains("smallImage"));
  const nlohmann::json one = ParsedJson(RunTool({"symbols", "<DEGREE>", "--json"}));
  EXPECT_EQ(one["tag"], "<DEGREE>");
  const nlohmann::json& symbol = one["symbols"][0];
  EXPECT_EQ(symbol["fonts"], "OpenType");
  EXPECT_EQ(symbol["parents"], nlohmann::json({"ISO", "JIS"}));
  EXPECT_EQ(symbol["font"], "QNISO1.otf");
  EXPECT_EQ(symbol["code"], "176");
  EXPECT_EQ(symbol["borrowed"], false);
  EXPECT_EQ(symbol["smallImage"].get<std::string>().size(), 44u);
  EXPECT_EQ(symbol["largeImage"].get<std::string>().size(), 88u);
  EXPECT_EQ(one["symbols"][1]["borrowed"], true);
}

// The row that the stroke fonts have for two tags is a symbol of its own.
TEST(Symbols, TheTagOfTwoIsOneOfItsOwn) {
  const nlohmann::json one = ParsedJson(RunTool({"symbols", "<DEGREE><MICRO>", "--json"}));
  EXPECT_EQ(one["symbols"][1]["font"], "SYM2.fontSYM2.font");
  EXPECT_EQ(one["symbols"][1]["code"], "176181");
}

TEST(Symbols, AnUnknownTagIsANegativeAnswerWithTheNearest) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"<DIAMETRE>", "'<DIAMETER>'"},
      {"DIAMETR", "'<DIAMETER>'"},
      {"<Diameter>", "'<Diameter>'"},
      {"", "engineering symbol ''"},
      {"<>", "'<>'"},
      {"zzzzzzzzzzzz", "lists all"},
  };
  for (const auto& [tag, part] : cases) {
    const ToolRun run = RunTool({"symbols", tag, "--json"});
    ExpectFailure(run, 1, {"there is no engineering symbol", part});
    EXPECT_EQ(run.out, "");
  }
}
