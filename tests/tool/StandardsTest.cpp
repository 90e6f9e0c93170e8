#include "ToolRun.h"

using testing::HasSubstr;

namespace {

ToolRun StandardsIn(const std::string& path, const std::vector<std::string>& more = {}) {
  std::vector<std::string> arguments = {"standards"};
  arguments.insert(arguments.end(), more.begin(), more.end());
  return RunTool(arguments, {.environment = {{"VYR_STANDARD_PATH", path}}});
}

std::string Dated(const std::string& version) {
  return Document(Parameter("Version", "intval", version));
}

}  // namespace

TEST(Standards, TheShippedOnesAreListedWithoutAnyFolderOfTheSite) {
  const nlohmann::json list = ParsedJson(StandardsIn("", {"--json"}));
  ASSERT_EQ(list.size(), 3u);
  const std::vector<std::pair<std::string, std::string>> shipped = {
      {"ANSI-ASME", "ASME"}, {"ISO", "ISO"}, {"JIS", "JIS"}};
  for (std::size_t i = 0; i < shipped.size(); ++i) {
    EXPECT_EQ(list[i]["name"], shipped[i].first);
    EXPECT_EQ(list[i]["parentStandard"], shipped[i].second);
    EXPECT_EQ(list[i]["version"], 220);
    EXPECT_EQ(list[i]["readable"], true);
    EXPECT_TRUE(list[i]["problem"].is_null());
    EXPECT_TRUE(std::filesystem::exists(list[i]["file"].get<std::string>()));
  }
}

TEST(Standards, ThoseOfTheSiteComeFirstFolderAfterFolderAndHideOthersOfTheirName) {
  const TemporaryFolder first;
  const TemporaryFolder second;
  first.Write("site.xml", SampleStandard());
  first.Write("notes.txt", "no standard");
  second.Write("Gearbox.xml", Dated("110"));
  second.Write("site.xml", Dated("120"));
  second.Write("ISO.xml", Dated("130"));
  const std::string path = first.Path().string() + ":/nonexistent:" + second.Path().string();
  const ToolRun run = StandardsIn(path, {"--json"});
  EXPECT_EQ(run.status, 0) << run.err;
  const nlohmann::json list = ParsedJson(run);
  const std::vector<std::pair<std::string, int>> expected = {
      {"site", 220}, {"Gearbox", 110}, {"ISO", 130}, {"ANSI-ASME", 220}, {"JIS", 220}};
  ASSERT_EQ(list.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(list[i]["name"], expected[i].first);
    EXPECT_EQ(list[i]["version"], expected[i].second);
  }
  EXPECT_EQ(list[0]["file"], first / "site.xml");
  EXPECT_EQ(list[0]["parentStandard"], "ASME");
  EXPECT_TRUE(list[1]["parentStandard"].is_null());
}

TEST(Standards, AreATableWithALineEach) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("site.xml", SampleStandard());
  const ToolRun run = StandardsIn(folder.Path().string());
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_THAT(run.out, testing::ContainsRegex("^NAME +PARENT +VERSION +FILE\n"));
  EXPECT_THAT(run.out, testing::ContainsRegex("\nsite +ASME +220 +" + file + "\n"));
  EXPECT_THAT(run.out, testing::ContainsRegex("\nJIS +JIS +220 +"));
}

TEST(Standards, OneThatCannotBeReadIsShownAsSuchAndDoesNotStopTheOthers) {
  const TemporaryFolder folder;
  const std::string broken = folder.Write("a.xml", Document("<std:node>\n"));
  folder.Write("b.xml", SampleStandard());
  const ToolRun run = StandardsIn(folder.Path().string());
  ExpectFailure(run, 3, {broken + ":"});
  EXPECT_THAT(run.out, testing::ContainsRegex("\na +- +not readable +" + broken + "\nb +ASME"));
  const nlohmann::json list = ParsedJson(StandardsIn(folder.Path().string(), {"--json"}));
  EXPECT_EQ(list[0]["readable"], false);
  EXPECT_TRUE(list[0]["version"].is_null());
  EXPECT_FALSE(list[0]["problem"].get<std::string>().empty());
  EXPECT_EQ(list[1]["readable"], true);
}

TEST(Standards, AFolderThatCannotBeSearchedIsToldOf) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("file", "");
  const ToolRun run = StandardsIn(file);
  ExpectFailure(run, 3, {file + ": cannot be searched"});
  EXPECT_THAT(run.out, HasSubstr("ISO.xml"));
}
