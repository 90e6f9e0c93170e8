#include "ModelTest.h"
#include "RandomTree.h"

namespace modeltest {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NodeCheck : public ModelTest {
 protected:
  NodeCheck() : enums(NewNode("Enum", Node::NodeTop)), root(NewNode("Root", Node::NodeTop)) {
    AddString(*AddChild(*enums, "YesNo", Node::NodeEnum), "", "Yes");
  }
  static void AddEnum(Node& node, const char* literal, const char* enumeration) {
    node.AddValue(NewValue(Value::ValueEnum, literal, enumeration).Get(), -1);
  }

  Node_var enums;
  Node_var root;
};

TEST_F(NodeCheck, AnUndefinedLiteralIsNamedWithTheTopTwice) {
  AddEnum(*AddChild(*AddChild(*root, "Dimension"), "Blanking"), "Maybe", "YesNo");
  EXPECT_EQ(root->Check(enums.Get(), "Enum undefined: Root"), 1);
  EXPECT_THAT(
      TakeTraces(),
      ElementsAre("Enum undefined: Root.Root.Dimension.Blanking.Maybe with enum \"YesNo\"\n"));
}

TEST_F(NodeCheck, ADefinedLiteralIsClean) {
  AddEnum(*AddChild(*root, "Blanking"), "Yes", "YesNo");
  EXPECT_EQ(root->Check(enums.Get(), "context"), 0);
}

TEST_F(NodeCheck, ATreeWithoutEnumerationValuesIsClean) {
  const Node_var node = AddChild(*root, "N");
  for (const auto type :
       {Value::ValueInt, Value::ValueFloat, Value::ValueString, Value::ValueColor}) {
    node->AddValue(NewValue(type, "Maybe", "YesNo").Get(), -1);
  }
  // The lower bound of a float is not enforced either.
  node->AddValue(NewValue(Value::ValueFloat, "-1.0", "0.0", 1).Get(), -1);
  EXPECT_EQ(root->Check(enums.Get(), "context"), 0);
}

TEST_F(NodeCheck, WithoutEnumerationsNothingIsChecked) {
  AddEnum(*root, "Maybe", "YesNo");
  EXPECT_EQ(root->Check(nullptr, "context"), 0);
  EXPECT_EQ(root->GetValues()[0]->Check(nullptr, "context"), 0);
}

TEST_F(NodeCheck, OfAValueAloneBeginsWithItsContext) {
  const Value_var value = NewValue(Value::ValueEnum, "No", "YesNo");
  EXPECT_EQ(value->Check(enums.Get(), "here"), 1);
  EXPECT_THAT(TakeTraces(), ElementsAre("here.No with enum \"YesNo\"\n"));
}

TEST_F(NodeCheck, AMissingEnumerationCountsAsOneError) {
  AddEnum(*AddChild(*root, "A"), "Yes", "Missing");
  EXPECT_EQ(root->Check(enums.Get(), "c"), 1);
  EXPECT_THAT(TakeTraces(), ElementsAre("c.Root.A.Yes with enum \"Missing\"\n"));
}

TEST_F(NodeCheck, ChildrenComeBeforeTheNodesOwnValuesAndErrorsAreSummed) {
  const Node_var a = AddChild(*root, "a");
  AddEnum(*a, "1", "E");
  AddEnum(*a, "2", "E");
  AddEnum(*AddChild(*a, "a1"), "3", "E");
  AddEnum(*AddChild(*a, "a2"), "4", "E");
  AddEnum(*AddChild(*root, "b"), "5", "E");
  AddEnum(*root, "6", "E");
  EXPECT_EQ(root->Check(enums.Get(), "c"), 6);
  EXPECT_THAT(TakeTraces(),
              ElementsAre("c.Root.a.a1.3 with enum \"E\"\n", "c.Root.a.a2.4 with enum \"E\"\n",
                          "c.Root.a.1 with enum \"E\"\n", "c.Root.a.2 with enum \"E\"\n",
                          "c.Root.b.5 with enum \"E\"\n", "c.Root.6 with enum \"E\"\n"));
}

TEST_F(NodeCheck, TheLiteralIsLookedUpByPathSoADotInItGoesOneLevelDown) {
  AddString(*AddChild(*enums, "Scale", Node::NodeEnum), "", "1.5");
  AddEnum(*root, "1.5", "Scale");
  EXPECT_EQ(root->Check(enums.Get(), "c"), 1);
  EXPECT_THAT(TakeTraces(), ElementsAre("c.Root.1.5 with enum \"Scale\"\n"));
}

TEST_F(NodeCheck, OfALongPathTheOuterNamesGoAndTheNodeThatHoldsTheValueEndsIt) {
  // "Enum undefined: Root.Root.oooo.Blanking.Maybe with enum", with 4096 bytes of path or one more.
  for (const std::size_t excess : {0u, 1u, 4096u}) {
    const std::string begin = "Root.Root.";
    const std::string end = ".Gr\u00F6\u00DFe.Blanking";
    const std::string outer(4096 - begin.size() - end.size() + excess, 'o');
    root = NewNode("Root", Node::NodeTop);
    const Node_var holder =
        AddChild(*AddChild(*AddChild(*root, outer), "Gr\u00F6\u00DFe"), "Blanking");
    AddEnum(*holder, "Maybe", "YesNo");
    EXPECT_EQ(root->Check(enums.Get(), "Enum undefined: Root"), 1);
    const std::string path = begin + outer + end;
    const std::string shown = excess == 0 ? path : "..." + path.substr(path.size() - 4096);
    EXPECT_THAT(TakeTraces(),
                ElementsAre("Enum undefined: " + shown + ".Maybe with enum \"YesNo\"\n"));
  }
}

TEST_F(NodeCheck, IsNeverReportedAsAFailedCheck) {
  AddEnum(*root, "", "");
  EXPECT_EQ(root->Check(enums.Get(), ""), 1);
  EXPECT_THAT(TakeReports(), IsEmpty());
  EXPECT_THAT(TakeTraces(), ElementsAre(".Root. with enum \"\"\n"));
}

class NodeClone : public ModelTest {};

TEST_F(NodeClone, OfThreeLevelsSharesNothing) {
  const Node_var top = NewNode("Top", Node::NodeTop);
  const Node_var middle = AddChild(*top, "Middle");
  const Node_var low = AddChild(*middle, "Low", Node::NodeInstance);
  AddString(*low, "Width", "1");
  low->AddValue(NewValue(Value::ValueFloat, "2.0", "0.5", 1).Get(), -1);
  const std::string before = Describe(*top);

  const Node_var copy(top->Clone());
  EXPECT_EQ(Describe(*copy), before);
  const Node_var copiedLow(copy->GetNodeWithPath("Middle.Low", 1));
  copiedLow->ChangeValue("Width:9");
  copiedLow->GetValues()[1]->SetRangeVal(0);
  copiedLow->SetNodeName("Renamed");
  AddChild(*copy, "Added");
  EXPECT_EQ(Describe(*top), before);
  EXPECT_EQ(CountReferences(*middle), 2u) << "the copy holds nothing of its source";
}

TEST_F(NodeClone, OfRandomTreesIsEqualAndHasItsOwnNodesAndValues) {
  for (std::uint32_t seed = 1; seed <= 50; ++seed) {
    Choices choices(seed);
    Document document;
    FillRandomly(choices, document);
    const Node_var root(document.GetNodeWithPath("Root"));
    Node_var copy(root->Clone());
    EXPECT_EQ(FindDifference(*root, *copy), "") << "seed " << seed;
    EXPECT_EQ(CountReferences(*copy), 1u);
    for (const Node_var& child : copy->GetNodes()) {
      EXPECT_EQ(CountReferences(*child), 1u);
      for (const Value_var& value : child->GetValues()) EXPECT_EQ(CountReferences(*value), 1u);
    }
    const std::string before = Describe(*root);
    for (const Node_var& child : copy->GetNodes()) child->SetNodeName("changed");
    copy = nullptr;
    EXPECT_EQ(Describe(*root), before);
  }
}

TEST_F(NodeClone, OfASharedNodeMakesOneCopyForEachPlace) {
  const Node_var top = NewNode("Top");
  const Node_var shared = AddChild(*top, "Shared");
  top->AddNode(shared.Get(), -1);
  const Node_var copy(top->Clone());
  EXPECT_EQ(FindDifference(*top, *copy), "");
  EXPECT_NE(copy->GetNodes()[0].Get(), copy->GetNodes()[1].Get());
}

class LargeTrees : public ModelTest {
 protected:
  static constexpr int kDepth = 200'000;
  static constexpr int kWidth = 1'000'000;
};

TEST_F(LargeTrees, DeeperThanTheStackAreCheckedClonedFoundAndDestroyed) {
  const Node_var enums = NewNode("Enum", Node::NodeTop);
  Node_var top = NewNode("d");
  Node_var lowest = top;
  std::string path;
  for (int level = 1; level < kDepth; ++level) {
    lowest = AddChild(*lowest, "d");
    path.append(level == 1 ? "d" : ".d");
  }
  lowest->AddValue(NewValue(Value::ValueEnum, "Maybe", "YesNo").Get(), -1);

  EXPECT_EQ(Node_var(top->GetNodeWithPath(path, 1)).Get(), lowest.Get());
  EXPECT_EQ(Value_var(top->GetValueWithPath(path + ".Maybe")).Get(), lowest->GetValues()[0].Get());
  EXPECT_EQ(top->Check(enums.Get(), "c"), 1);
  // A line of each value with the whole path would come to the square of the depth.
  const std::string shown = "..." + path.substr(path.size() - 4096);
  EXPECT_THAT(TakeTraces(), ElementsAre(shown + ".Maybe with enum \"YesNo\"\n"));
  Node_var copy(top->Clone());
  EXPECT_EQ(FindDifference(*top, *copy), "");
  EXPECT_EQ(copy->DeleteNodeWithPath(path), 0);
  EXPECT_EQ(copy->GetNodeWithPath(path, 1), nullptr);
  copy = nullptr;
  top = nullptr;
  EXPECT_EQ(CountReferences(*lowest), 1u) << "the tree above it is gone";
}

TEST_F(LargeTrees, PartsThatSomebodyHoldsOutliveADeepTree) {
  Node_var top = NewNode("d");
  Node_var middle;
  Node_var lowest = top;
  for (int level = 1; level < kDepth; ++level) {
    lowest = AddChild(*lowest, "d");
    if (level == kDepth / 2) middle = lowest;
  }
  top = nullptr;
  int levels = 1;
  for (const Node* node = middle.Get(); node != lowest.Get(); node = node->GetNodes()[0].Get()) {
    ++levels;
  }
  EXPECT_EQ(levels, kDepth / 2);
}

TEST_F(LargeTrees, OfAMillionChildrenAreCheckedClonedFoundAndDestroyed) {
  const Node_var top = NewNode("Top");
  const Node_var enums = NewNode("Enum", Node::NodeTop);
  for (int i = 0; i < kWidth; ++i) AddChild(*top, "n" + std::to_string(i));
  EXPECT_EQ(top->GetNumOfNode(), kWidth);
  EXPECT_EQ(Node_var(top->GetNodeByName("n999999")).Get(), top->GetNodes().back().Get());
  EXPECT_EQ(Node_var(top->GetNodeByName("n77")).Get(), top->GetNodes()[77].Get());
  EXPECT_EQ(top->GetNodeByName("n1000000"), nullptr);
  EXPECT_EQ(top->Check(enums.Get(), "c"), 0);
  const Node_var copy(top->Clone());
  EXPECT_EQ(FindDifference(*top, *copy), "");
}

}  // namespace
}  // namespace modeltest
