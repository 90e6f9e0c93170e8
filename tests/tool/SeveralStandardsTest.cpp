#include "ToolRun.h"

using testing::HasSubstr;

// Commands that take several standards, folders of them, and names of standards.

namespace {

class SeveralStandards : public testing::Test {
 protected:
  SeveralStandards() {
    std::filesystem::create_directory(sites);
    for (const char* name : {"/a.xml", "/b.xml"}) std::ofstream(sites + name) << SampleStandard();
  }

  const TemporaryFolder folder;
  const std::string sites = folder / "sites";
  const std::string results = folder / "results";
  const std::string change = "change Root.Dimension.DIMLTail:7";
  const ToolSurroundings shipped = {.environment = {{"VYR_STANDARD_PATH", HOL_STANDARDS}}};
};

}  // namespace

TEST_F(SeveralStandards, AreEditedInPlaceAndRestored) {
  const ToolRun run = RunTool({"edit", sites, "--in-place", "-c", change});
  EXPECT_EQ(run.status, 0) << run.err;
  for (const char* name : {"/a.xml", "/b.xml"}) {
    EXPECT_THAT(run.err, HasSubstr(sites + name + ": written, 1 command done"));
    EXPECT_EQ(RunTool({"get", sites + name, "Dimension.DIMLTail"}).out, "7.0\n");
  }
  std::ofstream(sites + "/c.xml") << SampleStandard();  // without a backup
  EXPECT_EQ(RunTool({"restore", sites}).status, 0);
  EXPECT_EQ(ReadWholeFile(sites + "/a.xml"), SampleStandard());
  ExpectFailure(RunTool({"restore", sites}), 1, {sites, "no standard in it has a backup"});
}

TEST_F(SeveralStandards, AreEditedIntoAFolder) {
  EXPECT_EQ(
      RunTool({"edit", sites + "/a.xml", sites + "/b.xml", "-d", results, "-c", change}).status, 0);
  EXPECT_EQ(RunTool({"get", results + "/b.xml", "Dimension.DIMLTail"}).out, "7.0\n");
  EXPECT_EQ(ReadWholeFile(sites + "/b.xml"), SampleStandard());
}

TEST_F(SeveralStandards, OneThatFailsStopsNoOtherAndIsWrittenNotAtAll) {
  std::ofstream(sites + "/a.xml") << Document(Parameter("Version", "intval", "220"));
  const std::string before = ReadWholeFile(sites + "/a.xml");
  const ToolRun run =
      RunTool({"edit", sites, "--in-place", "-c", "node Root:First", "-c", change, "-q"});
  ExpectFailure(run, 3, {sites + "/a.xml: command 2: there is no 'Dimension'"});
  EXPECT_EQ(ReadWholeFile(sites + "/a.xml"), before);
  EXPECT_EQ(RunTool({"get", sites + "/b.xml", "Dimension.DIMLTail"}).out, "7.0\n");
  ExpectFailure(RunTool({"edit", sites, "-o", folder / "x.xml", "-c", change}), 2, {"-d FOLDER"});
}

TEST_F(SeveralStandards, OfAFolderAreCheckedAndTold) {
  EXPECT_EQ(RunTool({"check", sites}).out,
            RunTool({"check", sites + "/a.xml", sites + "/b.xml"}).out);
  EXPECT_EQ(ParsedJson(RunTool({"info", sites, "--json"})).size(), 2u);
}

TEST_F(SeveralStandards, AreAskedForAPathEachForItself) {
  const std::string a = sites + "/a.xml";
  const std::string b = sites + "/b.xml";
  EXPECT_EQ(RunTool({"get", a, "Sizes"}).out, "2.5\n");
  for (const auto& files : std::vector<std::vector<std::string>>{{a, b}, {sites}}) {
    std::vector<std::string> command = {"get"};
    command.insert(command.end(), files.begin(), files.end());
    command.emplace_back("Frames.FrameDef.Type");
    EXPECT_EQ(RunTool(command).out, a + ":21\n" + b + ":21\n");
    command.emplace_back("--all");
    EXPECT_EQ(RunTool(command).out, a + ":21\n" + a + ":3\n" + b + ":21\n" + b + ":3\n");
    command.back() = "--type";
    EXPECT_EQ(RunTool(command).out, a + ":int 2\n" + b + ":int 2\n");
  }
  EXPECT_EQ(RunTool({"get", "-", a, "Version"}, {.input = SampleStandard()}).out,
            "standard input:220\n" + a + ":220\n");
  EXPECT_EQ(RunTool({"get", a, b, "Frames.FrameDef[2].Type"}).out, a + ":3\n" + b + ":3\n");
}

TEST_F(SeveralStandards, OneThatHasNoAnswerTakesItFromNoOther) {
  const std::string a = sites + "/a.xml";
  const std::string b = sites + "/b.xml";
  const std::string bare = folder.Write("bare.xml", Document(""));
  const std::string broken = folder.Write("broken.xml", "<");
  const ToolRun none = RunTool({"get", bare, a, "Version"});
  EXPECT_EQ(none.status, 1);
  EXPECT_EQ(none.out, a + ":220\n");
  EXPECT_THAT(none.err, HasSubstr(bare + ": "));
  const ToolRun worst = RunTool({"get", broken, bare, a, "nosuch", b, "Version"});
  EXPECT_EQ(worst.status, 3);
  EXPECT_EQ(worst.out, a + ":220\n" + b + ":220\n");
  EXPECT_THAT(worst.err, HasSubstr("nosuch: there is no such file"));
}

TEST_F(SeveralStandards, AreAskedInJsonWithAnObjectForEachThatHasAnAnswer) {
  using nlohmann::json;
  const std::string a = sites + "/a.xml";
  const std::string bare = folder.Write("bare.xml", Document(""));
  const json type = {{"type", "int"}, {"value", "21"}};
  json one = type;
  one.update({{"file", a}, {"path", "Frames.FrameDef.Type"}});
  const auto answer = [&](const std::string& option) {
    return ParsedJson(RunTool({"get", a, bare, "Frames.FrameDef.Type", "--json", option}));
  };
  EXPECT_EQ(answer("-v"), json::array({one}));
  EXPECT_EQ(answer("--all"),
            json::array({{{"file", a},
                          {"path", "Frames.FrameDef.Type"},
                          {"values", {type, {{"type", "int"}, {"value", "3"}}}}}}));
  EXPECT_EQ(answer("--type")[0]["count"], 2);
  EXPECT_EQ(ParsedJson(RunTool({"get", bare, bare, "A", "--json"})), json::array());
}

TEST_F(SeveralStandards, ANameIsAskedAlsoWhereAFolderIsCalledSo) {
  const std::string named = folder.Write("Mine.xml", SampleStandard());
  std::filesystem::create_directory(folder / "Mine");
  const ToolSurroundings own = {.environment = {{"VYR_STANDARD_PATH", folder.Path().string()}}};
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(folder.Path());
  const ToolRun run = RunTool({"get", "Mine", "Version"}, own);
  std::filesystem::current_path(before);
  EXPECT_EQ(run.out, "220\n") << run.err;
}

TEST_F(SeveralStandards, AreReadByTheirNames) {
  const std::string file = HOL_STANDARDS "/ISO.xml";
  const std::vector<std::vector<std::string>> commands = {{"get", "ISO", "Dimension.DIMLTail"},
                                                          {"tree", "ISO", "LineTypes"},
                                                          {"explain", "ISO", "Dimension.DIMLTail"},
                                                          {"sheets", "ISO"},
                                                          {"styles", "ISO"},
                                                          {"check", "ISO"},
                                                          {"info", "ISO"}};
  for (std::vector<std::string> command : commands) {
    SCOPED_TRACE(command.front());
    const ToolRun run = RunTool(command, shipped);
    command[1] = file;
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, RunTool(command, shipped).out);
  }
  EXPECT_EQ(RunTool({"edit", "ISO", "-d", results, "-c", change}, shipped).status, 0);
  EXPECT_EQ(RunTool({"get", results + "/ISO.xml", "Dimension.DIMLTail"}).out, "7.0\n");
  EXPECT_EQ(RunTool({"upgrade", "JIS", "-d", results}, shipped).status, 0);
  EXPECT_TRUE(std::filesystem::exists(results + "/JIS.xml"));
  ExpectFailure(RunTool({"info", "nosuch"}, shipped), 3, {"no standard of that name", "ISO, JIS"});
}

TEST_F(SeveralStandards, ANameIsNotReplacedInPlace) {
  const std::string named = folder.Write("Mine.xml", SampleStandard());
  const ToolSurroundings own = {.environment = {{"VYR_STANDARD_PATH", folder.Path().string()}}};
  ExpectFailure(RunTool({"edit", "Mine", "--in-place", "-c", change}, own), 5, {named});
  ExpectFailure(RunTool({"upgrade", "Mine", "--in-place"}, own), 5, {named});
  EXPECT_EQ(ReadWholeFile(named), SampleStandard());
}

TEST_F(SeveralStandards, AValueIsChangedInEveryChildThatHasIt) {
  const std::string file = sites + "/a.xml";
  const auto run = [&](const std::string& command) {
    return RunTool({"edit", file, "-o", folder / "out.xml", "--no-backup", "-c", command});
  };
  const ToolRun all = run("each-change Root.Frames :Type:5");
  EXPECT_EQ(all.status, 0) << all.err;
  EXPECT_THAT(all.err, HasSubstr(file + ": command 1: 2 values changed\n"));
  EXPECT_EQ(RunTool({"get", folder / "out.xml", "Frames.Type", "--all"}).out, "5\n5\n");
  const ToolRun one = run("each-change Root .DIMLTail:5");
  EXPECT_EQ(one.status, 0) << one.err;
  EXPECT_THAT(one.err, HasSubstr("1 value changed, 4 left out: there is no 'DIMLTail'"));
  ExpectFailure(run("each-change Root.Frames :Tpye:5"), 3, {"command 1: changes nothing: "});
  ExpectFailure(run("each-change Root.Dimension.DIMLTail :5"), 3, {"no child nodes"});
}
