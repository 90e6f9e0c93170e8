#include <filesystem>
#include <fstream>

#include "ToolRun.h"

using nlohmann::json;
using testing::HasSubstr;

namespace {

/// The library in a folder of its own, with a shipped standard beside it.
class Installation {
 public:
  explicit Installation(const std::string& standard) {
    namespace fs = std::filesystem;
    const char* const library = "libHolStandardInfra.so.0";
    const fs::path built =
        fs::path(BuiltProgram("holstd")).parent_path().parent_path() / "lib" / library;
    const fs::path copy = folder_ / library;
    std::error_code error;
    fs::create_hard_link(fs::canonical(built), copy, error);
    if (error) fs::copy_file(built, copy);
    fs::create_directories(Standards());
    std::ofstream(Shipped()) << standard;
  }
  std::string Standards() const { return folder_ / "share/HolStandardInfra/standards"; }
  std::string Shipped() const { return Standards() + "/ANSI-ASME.xml"; }
  /// What makes the tool use it.
  std::pair<std::string, std::string> Variable() const {
    return {"LD_LIBRARY_PATH", folder_.Path().string()};
  }

 private:
  const TemporaryFolder folder_;
};

/// A site's standard, and a shipped one of its parent.
class Explain : public testing::Test {
 protected:
  ToolRun Run(const std::string& text, const std::string& path,
              const std::vector<std::string>& more = {}) {
    std::vector<std::string> arguments = {"explain", "-", path};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return RunTool(arguments, {.input = text,
                               .environment = {installed.Variable(),
                                               {"VYR_STANDARD_PATH", folder.Path().string()}}});
  }
  json Answers(const std::string& text, const std::string& path) {
    const ToolRun run = Run(text, path, {"--json"});
    EXPECT_EQ(run.status, 0) << run.err;
    return ParsedJson(run);
  }
  std::vector<std::string> Paths(const std::string& text, const std::string& path) {
    std::vector<std::string> paths;
    for (const json& each : Answers(text, path)) paths.push_back(each["path"]);
    return paths;
  }

  const TemporaryFolder folder;
  const Installation installed{SampleStandard()};
  const std::string shipped = installed.Shipped();
};

}  // namespace

TEST_F(Explain, AParameterIsToldWithTypeValueDefaultAndLine) {
  const std::string site = Replaced(SampleStandard(), ">2.0<", ">2.5<");
  const int line = LineOf(site, "DIMLTail");
  EXPECT_EQ(Run(site, "Dimension.DIMLTail").out,
            "Root.Dimension.DIMLTail\n"
            "  type         float\n"
            "  value        2.5\n"
            "  at least     0.0\n"
            "  default      float 2.0, at least 0.0 in ANSI-ASME; this one differs\n"
            "  stands in    standard input:" +
                std::to_string(line) + "\n");
  const json answer = Answers(site, "Dimension.DIMLTail");
  EXPECT_EQ(answer, json::array({{{"file", "-"},
                                  {"path", "Root.Dimension.DIMLTail"},
                                  {"kind", "node"},
                                  {"type", "float"},
                                  {"value", "2.5"},
                                  {"minimum", "0.0"},
                                  {"line", line},
                                  {"default",
                                   {{"standard", "ANSI-ASME"},
                                    {"type", "float"},
                                    {"value", "2.0"},
                                    {"minimum", "0.0"},
                                    {"differs", true}}}}}));
}

TEST_F(Explain, AnotherWayToWriteTheDefaultIsTheDefault) {
  const json answer =
      Answers(Replaced(SampleStandard(), ">2.0<", ">2<"), "Root.Dimension.DIMLTail")[0];
  EXPECT_EQ(answer["default"]["differs"], false);
}

TEST_F(Explain, TheDefaultIsThatOfTheShippedStandardWhateverASiteHasUnderItsName) {
  const std::string site = Replaced(SampleStandard(), ">2.0<", ">12.5<");
  folder.Write("ANSI-ASME.xml", site);
  const json answer = Answers(site, "Dimension.DIMLTail")[0];
  EXPECT_EQ(answer["default"]["value"], "2.0");
  EXPECT_EQ(answer["default"]["differs"], true);
  folder.Write("ANSI-ASME.xml", "<nothing");
  EXPECT_EQ(Answers(site, "Dimension.DIMLTail")[0]["default"]["value"], "2.0");
}

TEST_F(Explain, AnEntryOfAListHasTheDefaultOfTheOneThatIsAlone) {
  const auto node = [](const std::string& name, const std::string& value) {
    return "<std:node name=\"N\">" + Parameter("Name", "strval", name) +
           Parameter("V", "intval", value) + "</std:node>\n";
  };
  const auto with = [](const std::string& nodes) {
    std::string text = SampleStandard();
    return text.insert(text.rfind("</std:node>"), nodes);
  };
  std::ofstream(shipped) << with(node("b", "7"));
  const json answers = Answers(with(node("a", "1") + node("b", "2")), "Root.N.V");
  ASSERT_EQ(answers.size(), 2u);
  EXPECT_TRUE(answers[0]["default"].is_null());
  EXPECT_EQ(answers[1]["default"]["value"], "7");
}

TEST_F(Explain, ALiteralIsToldWithItsEnumeration) {
  const json answer = Answers(SampleStandard(), "Dimension.Blanking")[0];
  EXPECT_EQ(answer["enumeration"], "YesNo");
  EXPECT_EQ(answer["literals"], json({"Yes", "No"}));
  EXPECT_EQ(answer["defined"], true);
  EXPECT_THAT(Run(SampleStandard(), "Blanking").out, HasSubstr("  enumeration  YesNo: Yes, No\n"));
  const std::string bad = Replaced(SampleStandard(), ">Yes</std:enumval>", ">Ja</std:enumval>");
  EXPECT_EQ(Answers(bad, "Blanking")[0]["defined"], false);
  EXPECT_THAT(Run(bad, "Blanking").out, HasSubstr("none of them"));
  const std::string lost =
      Replaced(SampleStandard(), "enumval name=\"YesNo\"", "enumval name=\"No\"");
  EXPECT_TRUE(Answers(lost, "Blanking")[0]["literals"].is_null());
  EXPECT_THAT(Run(lost, "Blanking").out, HasSubstr("not defined"));
}

TEST_F(Explain, ADefaultIsThatOfTheEntryOfTheSameName) {
  const std::string turned = Replaced(
      Replaced(Replaced(SampleStandard(), ">Box<", ">X<"), ">Circle<", ">Box<"), ">X<", ">Circle<");
  const json types = Answers(turned, "FrameDef.Type");
  // The definition has a field of the name too.
  ASSERT_EQ(types.size(), 3u);
  EXPECT_EQ(types[1]["entry"], "Circle");
  EXPECT_EQ(types[1]["value"], "21");
  EXPECT_EQ(types[1]["default"]["value"], "3");
  EXPECT_EQ(types[2]["entry"], "Box");
  EXPECT_EQ(types[2]["default"]["value"], "21");
}

TEST_F(Explain, NoDefaultIsSaidToBeNone) {
  const std::string site = Replaced(SampleStandard(), "\"Ink\"", "\"Pen\"");
  EXPECT_THAT(Run(site, "Pen").out,
              HasSubstr("  default      none; ANSI-ASME has nothing there\n"));
  EXPECT_TRUE(Answers(site, "Pen")[0]["default"].is_null());
  EXPECT_THAT(Run(Document(Parameter("P", "intval", "1")), "P").out,
              HasSubstr("default      none; the standard does not say its parent"));
  EXPECT_THAT(Run(Replaced(SampleStandard(), ">ANSI<", ">DIN<"), "Ink").out,
              HasSubstr("no shipped standard of the parent standard 'DIN'"));
}

TEST_F(Explain, EveryShippedStandardIsItsOwnDefault) {
  for (const char* name : {"ISO", "JIS", "ANSI-ASME"}) {
    const ToolRun run = RunTool({"explain", std::string(HOL_STANDARDS) + "/" + name + ".xml",
                                 "Dimension.DIMLTail", "--json"});
    const json answer = ParsedJson(run);
    ASSERT_EQ(answer.size(), 1u) << run.err;
    EXPECT_EQ(answer[0]["default"]["standard"], name);
    EXPECT_EQ(answer[0]["default"]["differs"], false);
  }
}

TEST_F(Explain, APathIsOneOfTheCommandsOrNamesAtAnyDepth) {
  using Paths_ = std::vector<std::string>;
  const std::vector<std::pair<std::string, Paths_>> cases = {
      {"DIMLTail", {"Root.Dimension.DIMLTail"}},
      {"Root.Dimension.DIMLTail", {"Root.Dimension.DIMLTail"}},
      {"Frames.Type", {"Root.Frames.FrameDef.Type", "Root.Frames.FrameDef[2].Type"}},
      {"Root.Frames.FrameDef.Type", {"Root.Frames.FrameDef.Type", "Root.Frames.FrameDef[2].Type"}},
      {"Root.Frames.FrameDef[2].Type", {"Root.Frames.FrameDef[2].Type"}},
      {"FrameDef", {"TypeDef.FrameDef", "Root.Frames.FrameDef", "Root.Frames.FrameDef[2]"}},
      {"Enum.YesNo.No", {"Enum.YesNo.No"}},
      {"YesNo", {"Enum.YesNo"}},
      {"Root.Sizes.[2]", {"Root.Sizes.[2]"}},
      {"Root", {"Root"}},
  };
  for (const auto& [path, expected] : cases) EXPECT_EQ(Paths(SampleStandard(), path), expected);
}

TEST_F(Explain, ASecondMatchFollowsAnEmptyLine) {
  const std::string out = Run(SampleStandard(), "Frames.Type").out;
  EXPECT_THAT(out, testing::StartsWith("Root.Frames.FrameDef.Type (Box)\n"));
  EXPECT_THAT(out, HasSubstr("\n\nRoot.Frames.FrameDef[2].Type (Circle)\n"));
}

TEST_F(Explain, EveryLineIsThatOfTheElement) {
  const std::string text = SampleStandard();
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"Enum.YesNo", "<std:enumdef"},
      {"TypeDef.FrameDef", "<std:typedef"},
      {"Root.Frames", "\"Frames\""},
      {"Root.Frames.FrameDef[2]", "Circle"},
      {"Root.Frames.FrameDef[2].Type", "Circle"},
      {"Ink", "\"Ink\""},
      {"Dimension.Blanking", "\"Blanking\""},
  };
  for (const auto& [path, part] : cases) {
    EXPECT_EQ(Answers(text, path)[0]["line"], LineOf(text, part)) << path;
  }
  EXPECT_TRUE(Answers(text, "Root")[0]["line"].is_null());
  // Elements of other namespaces, comments and definitions between the nodes do not count.
  const std::string mixed = Document(
      "<other/>\n<std:node name=\"A\">\n<!-- -->\n<std:typedef name=\"T\"><std:intval "
      "name=\"F\">1</std:intval></std:typedef>\n<std:node name=\"B\">\n<std:intval>1</std:intval>"
      "</std:node></std:node>\n<std:enumdef name=\"E\"><std:strval>x</std:strval></std:enumdef>\n");
  EXPECT_EQ(Answers(mixed, "B")[0]["line"], LineOf(mixed, "\"B\""));
  EXPECT_EQ(Answers(mixed, "Enum.E")[0]["line"], LineOf(mixed, "\"E\""));
}

TEST_F(Explain, ANodeIsToldByWhatItHolds) {
  EXPECT_THAT(Run(SampleStandard(), "Root.Frames.FrameDef[2]").out,
              testing::AllOf(HasSubstr("  type         instance\n"),
                             HasSubstr("  holds        0 nodes, 2 values\n"),
                             HasSubstr("  values       Name string \"Circle\", Type int 3\n"),
                             HasSubstr("  default      in ANSI-ASME; the same\n")));
  EXPECT_THAT(Run(SampleStandard(), "Enum.YesNo").out, HasSubstr("  literals     Yes, No\n"));
}

TEST_F(Explain, AMissingPathIsANegativeAnswerThatSaysWhatIsNear) {
  const std::vector<std::vector<std::string>> cases = {
      {"Dimension.DIMLTale", "no 'DIMLTale' below 'Dimension'; did you mean 'Dimension.DIMLTail'?"},
      {"DIMLTale", "did you mean 'DIMLTail'?"},
      {"Dimension.DIMLTale.Nothing", "the nearest name is 'DIMLTail'\n"},
      {"Dimension..DIMLTail",
       "standard input: two dots follow each other; did you mean 'Dimension.DIMLTail'?"},
      {"Frames.FrameDef[3].Type", "no 'FrameDef[3]' below 'Frames'; of 'FrameDef' there are 2\n"},
      {"Root.Frames.FrameDef[0]", "no 'FrameDef[0]' in 'Root.Frames'; of 'FrameDef' there are 2\n"},
      {"Root.Sizes.[3]", "no '[3]' in 'Root.Sizes'; of values without a name there are 2\n"},
      {"dimension.dimltail", "'dimension'", "did you mean 'Dimension.DIMLTail'?"},
      {"Root.Frame.FrameDef.Typ", "'Frame' in 'Root'", "did you mean 'Root.Frames.FrameDef.Type'?"},
      {"Enum.YesNo.Yess", "did you mean 'Enum.YesNo.Yes'?"},
      {"Nothing.At.All", "'Nothing'", "holstd tree"},
  };
  for (const auto& each : cases) {
    const ToolRun run = Run(SampleStandard(), each[0]);
    ExpectFailure(run, 1, {each.begin() + 1, each.end()});
    EXPECT_EQ(run.out, "");
  }
}

TEST_F(Explain, WhatCannotBeReadIsStatus3) {
  ExpectFailure(Run("<nothing", "A"), 3, {"standard input"});
  ExpectFailure(RunTool({"explain", folder / "missing.xml", "A"}), 3, {"missing.xml"});
  ExpectFailure(RunTool({"explain", shipped}), 2, {"PATH"});
}

TEST_F(Explain, OfManyOfOneNameAHundredHaveALineAndADefaultAndTheOthersAreCounted) {
  constexpr int count = 20000;
  std::string values;
  for (int i = 0; i < count; ++i) {
    values += "<std:intval name=\"F\">" + std::to_string(i) + "</std:intval>\n";
  }
  std::string text = SampleStandard();
  text.insert(text.rfind("</std:node>"), "<std:node name=\"M\"><std:typeval name=\"T\">\n" +
                                             values + "</std:typeval></std:node>\n");
  std::ofstream(shipped) << text;
  const json answers = Answers(text, "T.F");
  ASSERT_EQ(answers.size(), 101u);
  const int line = LineOf(text, ">0</std:intval>");
  for (int i = 0; i < 100; i += 33) {
    EXPECT_EQ(answers[i]["line"], line + i);
    EXPECT_EQ(answers[i]["default"]["value"], std::to_string(i));
  }
  EXPECT_EQ(answers[100], json({{"more", count - 100}}));
  EXPECT_THAT(Run(text, "T.F").out,
              testing::EndsWith("\nand 19900 places more; a longer path finds fewer\n"));
}

TEST_F(Explain, OfAHugeEnumerationAHundredLiteralsAreTold) {
  const auto standard = [](int count) {
    std::string text = "<std:enumdef name=\"Huge\">";
    for (int i = 0; i < count; ++i) text += "<std:strval>L" + std::to_string(i) + "</std:strval>";
    return Document(text + "</std:enumdef>" + Parameter("P", "enumval name=\"Huge\"", "L0"));
  };
  const json all = Answers(standard(100), "P")[0];
  EXPECT_EQ(all["literals"].size(), 100u);
  EXPECT_FALSE(all.contains("moreLiterals"));
  const json some = Answers(standard(103), "P")[0];
  EXPECT_EQ(some["literals"].size(), 100u);
  EXPECT_EQ(some["moreLiterals"], 3);
  EXPECT_THAT(Run(standard(103), "P").out, testing::HasSubstr(", L99, and 3 more\n"));
  EXPECT_THAT(Run(standard(103), "Enum.Huge").out, testing::HasSubstr(", L102\n"));
}

TEST_F(Explain, ADeepStandardIsExplained) {
  constexpr int depth = 100000;
  std::string text;
  for (int i = 0; i < depth; ++i) text += "<std:node name=\"n\">";
  text += Parameter("P", "intval", "1");
  for (int i = 0; i < depth; ++i) text += "</std:node>";
  const json answer = Answers(Document(text), "P");
  ASSERT_EQ(answer.size(), 1u);
  // 500 bytes at most, and whole names: "n." 249 times, and "P".
  std::string path = "...";
  for (int i = 0; i < 249; ++i) path += "n.";
  EXPECT_EQ(answer[0]["path"], path + "P");
}
