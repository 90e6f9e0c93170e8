#include "ModelTest.h"
#include "VyrAnnStandardScript.h"

namespace modeltest {
namespace {

using Script = VyrAnnStandardScript;
using Verb = Script::Verb;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// The commands of a script that must be valid, each as "line|verb|parents|path|text".
std::vector<std::string> Parse(std::string_view text) {
  const Script script(text);
  EXPECT_TRUE(script.GetProblem().IsEmpty()) << script.GetProblem().text.CString();
  EXPECT_EQ(script.GetProblem().line, 0);
  constexpr const char* verbs[] = {"node",   "instance", "value",     "field",      "change",
                                   "delete", "each",     "each-node", "each-change"};
  std::vector<std::string> commands;
  for (const Script::Command& command : script.GetCommands()) {
    commands.push_back(std::to_string(command.line) + "|" + verbs[static_cast<int>(command.verb)] +
                       "|" + std::string(command.parents) + "|" + std::string(command.path) + "|" +
                       std::string(command.text));
  }
  return commands;
}

TEST(Script, EachLineIsAVerbAndACommand) {
  EXPECT_THAT(Parse("node       Root:Frames:8\n"
                    "instance   Root.Frames:FrameDef:0\n"
                    "field      Root.Frames.FrameDef:Name:string:Rectangle:0\n"
                    "value      Root.Dimension:DIMTolMultiAuto:int:1:20\n"
                    "change     Root.Dimension.CUMLTxtDecalY:0.5\n"
                    "delete     Root.General.DefaultTextFont\n"
                    "each       Root.Styles.Table .Text:Blanking:enum.YesNo:Yes:0\n"
                    "each-node  Root.Styles.Table :Leader:0\n"),
              ElementsAre("1|node|||Root:Frames:8", "2|instance|||Root.Frames:FrameDef:0",
                          "3|field|||Root.Frames.FrameDef:Name:string:Rectangle:0",
                          "4|value|||Root.Dimension:DIMTolMultiAuto:int:1:20",
                          "5|change|||Root.Dimension.CUMLTxtDecalY:0.5",
                          "6|delete|||Root.General.DefaultTextFont",
                          "7|each||Root.Styles.Table|.Text:Blanking:enum.YesNo:Yes:0",
                          "8|each-node||Root.Styles.Table|:Leader:0"));
}

TEST(Script, EmptyLinesAndCommentsMeanNothingButCount) {
  EXPECT_THAT(Parse(""), IsEmpty());
  EXPECT_THAT(Parse("\n \t \n# node x\n  # more\n\r\n"), IsEmpty());
  EXPECT_THAT(Parse("# Frames\n\n\tnode\tRoot:A\n\n  node Root:B # no comment"),
              ElementsAre("3|node|||Root:A", "5|node|||Root:B # no comment"));
}

TEST(Script, BlanksInsideACommandCountAndLineEndsDoNot) {
  EXPECT_THAT(Parse("value   Root.S:A0 ISO:string: two  blanks  \r\nnode Root:A\r\n"),
              ElementsAre("1|value|||Root.S:A0 ISO:string: two  blanks  ", "2|node|||Root:A"));
  EXPECT_THAT(Parse("node 寸法"), ElementsAre("1|node|||寸法"));
}

TEST(Script, ParentsLimitTheCommandsBelowThem) {
  EXPECT_THAT(Parse("node A\n[ISO JIS]\nnode B\n# c\nnode C\n [ANSI]  \nnode D\n[any]\nnode E\n"
                    "[ ASME\tISO ]\neach P :x"),
              ElementsAre("1|node|||A", "3|node|ISO JIS||B", "5|node|ISO JIS||C", "7|node|ANSI||D",
                          "9|node|||E", "11|each| ASME\tISO |P|:x"));
}

TEST(Script, ACommandAppliesToItsParentsOnly) {
  struct Row {
    const char* limit;
    const char* applies;  // one letter each of ISO, JIS, ANSI, aSme
  };
  constexpr Row rows[] = {{"[any]", "IJAS"},     {"[ISO JIS]", "IJ"},
                          {"[ANSI ASME]", "AS"}, {"[JIS]", "J"},
                          {"[ASME  ISO]", "IS"}, {"[ISO JIS ANSI ASME]", "IJAS"}};
  for (const Row& row : rows) {
    const std::string text = std::string(row.limit) + "\nnode A";
    const Script script(text);
    ASSERT_EQ(script.GetCommands().size(), 1u);
    const Script::Command& command = script.GetCommands()[0];
    std::string applies;
    if (command.AppliesTo("ISO")) applies += 'I';
    if (command.AppliesTo("JIS")) applies += 'J';
    if (command.AppliesTo("ANSI")) applies += 'A';
    if (command.AppliesTo("ASME")) applies += 'S';
    EXPECT_EQ(applies, row.applies) << row.limit;
    EXPECT_EQ(command.AppliesTo("IS"), command.parents.empty()) << "names are compared whole";
  }
}

TEST(Script, ALineThatIsNotValidLeavesNoCommandsAndIsNamed) {
  struct Row {
    const char* script;
    int line;
    const char* says;
  };
  constexpr Row rows[] = {
      {"node A\nnodes B\nnode C", 2, "'nodes'"},
      {"Node A", 1, "'Node'"},
      {"nodeA:B", 1, "'nodeA:B'"},
      {"node A\n\n# c\nnode", 4, "'node'"},
      {"node  \t", 1, "'node'"},
      {"delete\r\n", 1, "'delete'"},
      {"each Root.Styles", 1, "'each'"},
      {"each Root.Styles.Table:x", 1, "'each'"},
      {"each Root.Styles x:int:1", 1, "'each'"},
      {"each :x", 1, "'each'"},
      {"each-node Root.A B", 1, "'each-node'"},
      {"[ISO", 1, "[ISO"},
      {"[ISO] node A", 1, "[ISO] node A"},
      {"[]", 1, "[]"},
      {"[ ]", 1, "[ ]"},
      {"[iso]", 1, "[iso]"},
      {"[ISO DIN]", 1, "[ISO DIN]"},
      {"[any ISO]", 1, "[any ISO]"},
      {"[ISO,JIS]", 1, "[ISO,JIS]"},
  };
  for (const Row& row : rows) {
    const Script script(row.script);
    EXPECT_THAT(script.GetCommands(), IsEmpty()) << row.script;
    EXPECT_EQ(script.GetProblem().line, row.line) << row.script;
    EXPECT_THAT(script.GetProblem().text.CString(), HasSubstr(row.says)) << row.script;
  }
}

TEST(Script, PathsOfTheEachVerbsMayHoldBlanks) {
  EXPECT_THAT(Parse("each Root.Styles.A0 ISO .Text:B:int:1\n"
                    "each Root.Styles.A 0  ISO   :B:string:a :b\n"
                    "each-node Root.Styles \t:Leader\n"
                    "each Root.A : x y\n"),
              ElementsAre("1|each||Root.Styles.A0 ISO|.Text:B:int:1",
                          "2|each||Root.Styles.A 0  ISO|:B:string:a :b",
                          "3|each-node||Root.Styles|:Leader", "4|each||Root.A|: x y"));
}

class ScriptRun : public ModelTest {
 protected:
  ScriptRun() {
    for (const char* command : {"Root:S", "Root.S:A0 ISO", "Root.S:B", "Root:Empty"}) {
      EXPECT_EQ(document.AddNodeWithPath(command, 0), 0);
    }
  }
  /// Runs a script and returns the result of its last command.
  int Run(const std::string& text) {
    const Script script(text);
    EXPECT_TRUE(script.GetProblem().IsEmpty()) << text;
    int result = -1;
    for (const Script::Command& command : script.GetCommands()) result = command.Run(document);
    return result;
  }

  Document document;
};

TEST_F(ScriptRun, NodeAddsAPlainNodeAndInstanceAnInstance) {
  EXPECT_EQ(Run("node Root:N:1"), 0);
  EXPECT_EQ(Run("instance Root.N:I:0"), 0);
  EXPECT_EQ(DescribeAt(document, "Root.N"), "plain N{instance I}");
  EXPECT_EQ(NamesOf(Node_var(document.GetNodeWithPath("Root"))->GetNodes()), "N S Empty");
}

TEST_F(ScriptRun, ValueAddsByNameAndFieldToTheEntryLastAdded) {
  EXPECT_EQ(Run("value Root.S:X:int:1:1"), 0);
  EXPECT_EQ(DescribeAt(document, "Root.S"), "plain S{plain X(int =1), plain A0 ISO, plain B}");
  EXPECT_EQ(Run("instance Root.S:F:0\ninstance Root.S:F:0\nfield Root.S.F:W:float:2:0"), 0);
  EXPECT_EQ(DescribeAt(document, "Root.S"),
            "plain S{plain X(int =1), plain A0 ISO, plain B, instance F, instance F(float W=2)}");
}

TEST_F(ScriptRun, ChangeAndDeleteDoWhatTheirCommandsDo) {
  EXPECT_EQ(Run("value Root.S.B:X:int:1\nchange Root.S.B.X:2"), 0);
  EXPECT_EQ(DescribeAt(document, "Root.S.B"), "plain B{plain X(int =2)}");
  EXPECT_EQ(Run("delete Root.S.B"), 0);
  EXPECT_EQ(DescribeAt(document, "Root.S"), "plain S{plain A0 ISO}");
}

TEST_F(ScriptRun, ResultsAreThoseOfTheCommands) {
  EXPECT_EQ(Run("node Root.Missing:N"), 1);
  EXPECT_EQ(Run("instance root:N"), 1);
  EXPECT_EQ(Run("node Root:N:x"), 2);
  EXPECT_EQ(Run("value Root.S:N:int:1:x"), 2);
  EXPECT_EQ(Run("field Root.Missing.N:N:int:1"), 1);
  EXPECT_EQ(Run("change Root.Missing:1"), 1);
  EXPECT_EQ(Run("delete Root.Missing"), 1);
}

TEST_F(ScriptRun, EachAddsAValueBelowEveryChild) {
  EXPECT_EQ(Run("node Root.S.A0 ISO:Text\nnode Root.S.B:Text\n"
                "each Root.S .Text:Bold:enum.YesNo:Yes:0\neach Root.S :Gap:float:1.0:1"),
            0);
  EXPECT_EQ(DescribeAt(document, "Root.S"),
            "plain S{plain A0 ISO{plain Gap(float =1.0), plain Text{plain Bold(enum YesNo=Yes)}}, "
            "plain B{plain Gap(float =1.0), plain Text{plain Bold(enum YesNo=Yes)}}}");
}

TEST_F(ScriptRun, EachNodeAddsANodeBelowEveryChild) {
  EXPECT_EQ(Run("each-node Root.S :Leader:0\neach-node Root.S.A0 ISO :Deep one:0"), 0);
  EXPECT_EQ(DescribeAt(document, "Root.S"),
            "plain S{plain A0 ISO{plain Leader{plain Deep one}}, plain B{plain Leader}}");
}

TEST_F(ScriptRun, EachChangeChangesAValueBelowEveryChildThatHasIt) {
  EXPECT_EQ(Run("value Root.S.A0 ISO:Gap:float:1.0\neach-change Root.S .Gap:2.5"), 0);
  EXPECT_EQ(DescribeAt(document, "Root.S"),
            "plain S{plain A0 ISO{plain Gap(float =2.5)}, plain B}");
  EXPECT_EQ(Run("each-change Root.S .Gpa:3"), 1);
  EXPECT_EQ(Run("each-change Root.Missing .Gap:3"), 1);
}

TEST_F(ScriptRun, EachOfAMissingNodeOrOneWithoutChildrenIsNotFoundAndChangesNothing) {
  const std::string before = Describe(document);
  for (const char* path : {"Root.Missing", "Root.Empty", "Root.S.B", "root.S", "Missing"}) {
    EXPECT_EQ(Run(std::string("each ") + path + " :X:int:1"), 1) << path;
    EXPECT_EQ(Run(std::string("each-node ") + path + " :X"), 1) << path;
  }
  EXPECT_EQ(Describe(document), before);
}

TEST_F(ScriptRun, EachAddsNothingWhenItsTextComesToMoreThanACommandMayAdd) {
  const Node_var node(document.GetNodeWithPath("Root"));
  constexpr std::size_t children = 1000;
  const Node_var wide = AddChild(*node, "Wide");
  for (std::size_t i = 0; i < children; ++i) AddChild(*wide, "n" + std::to_string(i));
  constexpr std::size_t most = VyrAnnStandardScript::kMostAdded / children;
  for (const std::string verb : {"each", "each-node"}) {
    const std::string begin = verb == "each" ? ":V:string:" : ":";
    const std::string text = verb + " Root.Wide " + begin + std::string(most, 'x');
    const VyrAnnStandardScript script(text);
    ASSERT_EQ(script.GetCommands().size(), 1u) << verb;
    EXPECT_EQ(script.GetCommands()[0].Run(document), 3) << verb;
    for (const Node_var& child : wide->GetNodes()) EXPECT_EQ(child->GetNumOfNode(), 0) << verb;
  }
}

TEST_F(ScriptRun, EachIsDoneWhenAChildWasServedThoughSomeLackTheSubpath) {
  EXPECT_EQ(Run("node Root.S.B:Text\neach Root.S .Text:X:int:1"), 0);
  EXPECT_EQ(DescribeAt(document, "Root.S"),
            "plain S{plain A0 ISO, plain B{plain Text{plain X(int =1)}}}");
}

TEST_F(ScriptRun, EachAddressesChildrenByNameSoTheFirstOfEqualNamesIsServedForEach) {
  EXPECT_EQ(Run("node Root.Empty:N\nnode Root.Empty:N\neach Root.Empty :X:int:1"), 0);
  EXPECT_EQ(DescribeAt(document, "Root.Empty"),
            "plain Empty{plain N{plain X(int =1), plain X(int =1)}, plain N}");
}

}  // namespace
}  // namespace modeltest
