#include "ToolRun.h"

namespace {

constexpr const char* kFrames =
    "node Frames\n"
    "  instance FrameDef\n"
    "    value Name: string \"Box\"\n"
    "    value Type: int 21\n"
    "  instance FrameDef\n"
    "    value Name: string \"Circle\"\n"
    "    value Type: int 3\n";

std::string TreeOf(const std::string& text, const std::vector<std::string>& more = {}) {
  std::vector<std::string> arguments = {"tree", "-"};
  arguments.insert(arguments.end(), more.begin(), more.end());
  const ToolRun run = RunTool(arguments, {.input = text});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  return run.out;
}

}  // namespace

TEST(Tree, HasALineForEachNodeAndValueInTheOrderOfTheStandard) {
  EXPECT_EQ(TreeOf(SampleStandard()),
            "top Enum\n"
            "  enum YesNo\n"
            "    value: string \"Yes\"\n"
            "    value: string \"No\"\n"
            "top TypeDef\n"
            "  typedef FrameDef\n"
            "    value Name: string \"XXX\"\n"
            "    value Type: int 1\n"
            "top Root\n"
            "  node Dimension\n"
            "    node ParentStandard: string \"ANSI\"\n"
            "    node TXTDatumMode: int 1\n"
            "    node DIMLTail: float 2.0, at least 0.0\n"
            "    node Blanking: enum.YesNo \"Yes\"\n"
            "  node Frames\n"
            "    instance FrameDef\n"
            "      value Name: string \"Box\"\n"
            "      value Type: int 21\n"
            "    instance FrameDef\n"
            "      value Name: string \"Circle\"\n"
            "      value Type: int 3\n"
            "  node Sizes\n"
            "    value: float 2.5\n"
            "    value: float 3.5\n"
            "  node Ink: color 255 0 0\n"
            "  node Version: int 220\n");
}

TEST(Tree, APathIsOneOfTheCommandsOrOneBelowTheDocumentElement) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"Frames", kFrames},
      {"Root.Frames", kFrames},
      {"Enum.YesNo", "enum YesNo\n  value: string \"Yes\"\n  value: string \"No\"\n"},
      {"Enum.YesNo.No", "value: string \"No\"\n"},
      {"Dimension.DIMLTail", "node DIMLTail: float 2.0, at least 0.0\n"},
      {"Frames.FrameDef.Type", "value Type: int 21\n"},
      {"Frames.FrameDef[1].Type", "value Type: int 21\n"},
      {"Root.Frames.FrameDef[2].Type", "value Type: int 3\n"},
      {"Frames.FrameDef[2]",
       "instance FrameDef\n  value Name: string \"Circle\"\n  value Type: int 3\n"},
      {"Sizes.[2]", "value: float 3.5\n"},
      {"TypeDef.FrameDef.Name", "value Name: string \"XXX\"\n"},
  };
  for (const auto& [path, expected] : cases) {
    EXPECT_EQ(TreeOf(SampleStandard(), {path}), expected) << path;
  }
}

TEST(Tree, AMissingPathIsANegativeAnswer) {
  for (const char* path : {"Nothing", "Root.Nothing", "Enum.Nothing", "Dimension.Nothing.Below"}) {
    for (const char* json : {"--json", "-q"}) {
      const ToolRun run = RunTool({"tree", "-", path, json}, {.input = SampleStandard()});
      ExpectFailure(run, 1, {"'Nothing'"});
      EXPECT_EQ(run.out, "");
    }
  }
}

TEST(Tree, AMistypedPathIsAnsweredWithTheNearestOne) {
  const std::vector<std::vector<std::string>> cases = {
      {"Dimension.DIMLTale",
       "no 'DIMLTale' in 'Root.Dimension'; did you mean 'Root.Dimension.DIMLTail'?\n"},
      {"Root.Frame.FrameDf.typ", "no 'Frame' in 'Root'",
       "did you mean 'Root.Frames.FrameDef.Type'?"},
      {".Dimension", "the path begins with a dot; did you mean 'Dimension'?"},
      {"Root..Dimension", "two dots follow each other; did you mean 'Root.Dimension'?"},
      {"Root...X", "two dots follow each other; one joins two names"},
      {"Frames.FrameDef[3].Name", "no 'FrameDef[3]' in 'Root.Frames'; of 'FrameDef' there are 2\n"},
      {"Frames.FrameDef.Type[2]", "no 'Type[2]' in 'Root.Frames.FrameDef'; of 'Type' there is 1\n"},
      {"Frames.FrameDef[x]", "of 'FrameDef' there are 2, none of that Name\n"},
      {"Frames.FrameDef[cirlce]", "did you mean 'FrameDef[Circle]'?"},
      {"Enum.yesno", "did you mean 'Enum.YesNo'?"},
      {"TypeDef.FrameDef.Nam", "did you mean 'TypeDef.FrameDef.Name'?"},
  };
  for (const auto& each : cases) {
    ExpectFailure(RunTool({"tree", "-", each[0]}, {.input = SampleStandard()}), 1,
                  {each.begin() + 1, each.end()});
  }
}

TEST(Tree, JsonIsAFlatListWithLevels) {
  using nlohmann::json;
  EXPECT_EQ(
      json::parse(TreeOf(SampleStandard(), {"Frames.FrameDef", "--json"})),
      json::array(
          {{{"level", 0}, {"kind", "instance"}, {"name", "FrameDef"}},
           {{"level", 1},
            {"kind", "value"},
            {"name", "Name"},
            {"type", "string"},
            {"value", "Box"}},
           {{"level", 1}, {"kind", "value"}, {"name", "Type"}, {"type", "int"}, {"value", "21"}}}));
  // 3 tops, 1 enumeration and 1 type with 2 values each, 11 nodes, 12 values less the 6 of which
  // each stands in its node's own line.
  EXPECT_EQ(json::parse(TreeOf(SampleStandard(), {"--json"})).size(), 3u + 3 + 3 + 11 + 6);
}

TEST(Tree, EveryLineIsOneLineAndHarmlessToATerminal) {
  const std::string text = Document(Parameter("A", "strval",
                                              "1\n2\xC2\x9B"
                                              "3\t4&#127;"));
  EXPECT_EQ(TreeOf(text, {"A"}), "node A: string \"1\\n2\\u009B3\\t4\\x7F\"\n");
}

TEST(Tree, ADeepStandardIsPrintedInProportionToItsSize) {
  constexpr int depth = 100000;
  std::string text;
  for (int i = 0; i < depth; ++i) text += "<std:node name=\"n\">";
  for (int i = 0; i < depth; ++i) text += "</std:node>";
  const std::string tree = TreeOf(Document(text));
  EXPECT_EQ(std::count(tree.begin(), tree.end(), '\n'), depth + 3);
  EXPECT_LT(tree.size(), depth * 250u);
  EXPECT_EQ(nlohmann::json::parse(TreeOf(Document(text), {"--json"})).back()["level"], depth);
}
