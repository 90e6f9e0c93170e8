#include <cctype>
#include <functional>
#include <set>

#include "ModelTest.h"

// A wide node closes the places of deleted children later. Whatever comes first sees none of them.

namespace modeltest {
namespace {

using testing::ElementsAre;

constexpr int kChildren = 200;

/// The children that each case deletes, of those named "c0" to "c199".
struct Deleted {
  const char* where;
  std::set<int> children;
};

std::set<int> Every(int step) {
  std::set<int> children;
  for (int i = 0; i < kChildren / 2; i += step) children.insert(i);
  return children;
}

const Deleted kDeleted[] = {
    {"the first", {0}},
    {"several at the beginning", {2, 0, 1}},
    {"the last", {199}},
    {"several at the end, the last of all at last", {197, 198, 199}},
    {"in the middle", {100, 101, 90}},
    {"everywhere", {0, 1, 50, 51, 120, 198, 199}},
    {"every second of the first half", Every(2)},
};

std::string NameOf(int child) {
  return "c" + std::to_string(child);
}

class NodeWithHoles : public ModelTest, public testing::WithParamInterface<int> {
 protected:
  using Fill = std::function<void(Node& child)>;

  static const std::set<int>& DeletedChildren() { return kDeleted[GetParam()].children; }

  /// Fills a node and deletes children, with nothing else in between that would close their places.
  static void FillAndDelete(Node& node, const Fill& fill = nullptr) {
    for (int i = 0; i < kChildren; ++i) {
      const Node_var child = AddChild(node, NameOf(i));
      if (fill) fill(*child);
    }
    for (const int child : DeletedChildren()) EXPECT_EQ(node.DeleteNodeWithPath(NameOf(child)), 0);
  }
  static Node_var WithHoles(const Fill& fill = nullptr) {
    Node_var node = NewNode("Wide");
    FillAndDelete(*node, fill);
    return node;
  }
  /// The same children, of which none was ever deleted.
  static void FillPlainly(Node& node, const Fill& fill = nullptr) {
    for (int i = 0; i < kChildren; ++i) {
      if (DeletedChildren().contains(i)) continue;
      const Node_var child = AddChild(node, NameOf(i));
      if (fill) fill(*child);
    }
  }
  static Node_var Plain(const Fill& fill = nullptr) {
    Node_var node = NewNode("Wide");
    FillPlainly(*node, fill);
    return node;
  }
};

std::string TestName(const testing::TestParamInfo<int>& deleted) {
  std::string name = kDeleted[deleted.param].where;
  std::erase_if(name, [](char c) { return !std::isalpha(static_cast<unsigned char>(c)); });
  return name;
}
INSTANTIATE_TEST_SUITE_P(Deleted, NodeWithHoles,
                         testing::Range(0, static_cast<int>(std::size(kDeleted))), TestName);

TEST_P(NodeWithHoles, GivesTheChildAtEachIndex) {
  const Node_var plain = Plain();
  const int count = plain->GetNumOfNode();
  for (int index = -2; index < count; ++index) {
    const Node_var node = WithHoles();
    const Node_var child(node->GetNode(index));
    ASSERT_TRUE(child) << index;
    EXPECT_EQ(child->GetNodeName(), Node_var(plain->GetNode(index))->GetNodeName()) << index;
  }
}

TEST_P(NodeWithHoles, RefusesTheCountAsAnIndex) {
  const Node_var node = WithHoles();
  const int count = node->GetNumOfNode();
  EXPECT_EQ(count, Plain()->GetNumOfNode());
  EXPECT_EQ(node->GetNode(count), nullptr);
  EXPECT_THAT(TakeReports(), ElementsAre(RefusedBy(kClassUnitName)));
  EXPECT_EQ(node->AddNodeWithValue("x", Value::ValueInt, "1", {}, count + 1), 0);
  EXPECT_THAT(TakeReports(), ElementsAre(RefusedBy(kClassUnitName)));
  EXPECT_EQ(node->AddNodeWithValue("x", Value::ValueInt, "1", {}, count), 1);
  EXPECT_THAT(TakeReports(), ElementsAre(RefusedBy(kClassUnitName))) << "by the list";
  EXPECT_EQ(NamesOf(node->GetNodes()), NamesOf(Plain()->GetNodes()));
}

TEST_P(NodeWithHoles, GivesTheChildAtEachIndexOneAfterTheOther) {
  const Node_var plain = Plain();
  const Node_var node = WithHoles();
  for (const int index : {0, -1, 100, 0, -1}) {
    const Node_var child(node->GetNode(index));
    EXPECT_EQ(child->GetNodeName(), Node_var(plain->GetNode(index))->GetNodeName()) << index;
  }
}

TEST_P(NodeWithHoles, HasItsFirstChildAsDefaultWhenNoneIsNamedSo) {
  const Node_var node = WithHoles();
  EXPECT_EQ(Node_var(node->GetDefaultNode())->GetNodeName(), Plain()->GetNodes()[0]->GetNodeName());
}

TEST_P(NodeWithHoles, HasTheNextOfTwoDefaultsWhenTheFirstIsDeleted) {
  const Node_var node = WithHoles();
  const Node_var first = AddChild(*node, "Default");
  const Node_var second = AddChild(*node, "Default");
  EXPECT_EQ(Node_var(node->GetDefaultNode()).Get(), first.Get());
  EXPECT_EQ(node->DeleteNodeWithPath("Default"), 0);
  EXPECT_EQ(Node_var(node->GetDefaultNode()).Get(), second.Get());
  EXPECT_EQ(node->DeleteNodeWithPath("Default"), 0);
  EXPECT_EQ(Node_var(node->GetDefaultNode())->GetNodeName(), Plain()->GetNodes()[0]->GetNodeName());
}

TEST_P(NodeWithHoles, TakesAParameterAtEachIndex) {
  for (const int index : {-1, 0, 1, 2, 49, 99, 100}) {
    const Node_var node = WithHoles();
    const Node_var plain = Plain();
    for (Node* either : {node.Get(), plain.Get()}) {
      EXPECT_EQ(either->AddNodeWithValue("x", Value::ValueInt, "1", {}, index), 1);
      EXPECT_EQ(Node_var(either->GetNodeByName("x"))->GetNumOfValue(), 1);
    }
    EXPECT_EQ(NamesOf(node->GetNodes()), NamesOf(plain->GetNodes())) << index;
  }
}

TEST_P(NodeWithHoles, TakesAParameterBeforeItsLastChild) {
  const Node_var node = WithHoles();
  const Node_var plain = Plain();
  const int last = plain->GetNumOfNode() - 1;
  for (Node* either : {node.Get(), plain.Get()}) {
    EXPECT_EQ(either->AddNodeWithValue("x", Value::ValueInt, "1", {}, last), 1);
  }
  EXPECT_EQ(NamesOf(node->GetNodes()), NamesOf(plain->GetNodes()));
}

TEST_P(NodeWithHoles, IsCheckedChildByChild) {
  const Node_var enums = NewNode("Enum");
  const auto addUndefined = [](Node& child) {
    child.AddValue(NewValue(Value::ValueEnum, "Maybe", "YesNo").Get(), -1);
  };
  const int expected = Plain(addUndefined)->Check(enums.Get(), "Root");
  const std::vector<std::string> traces = TakeTraces();
  EXPECT_EQ(expected, kChildren - static_cast<int>(DeletedChildren().size()));
  EXPECT_EQ(WithHoles(addUndefined)->Check(enums.Get(), "Root"), expected);
  EXPECT_EQ(TakeTraces(), traces);
}

TEST_P(NodeWithHoles, IsSavedAsOneWithoutThem) {
  const auto fill = [](Node& child) { AddString(child, "", "text"); };
  Document document;
  Document expected;
  AddChild(*Node_var(document.GetNodeWithPath("Root")), "Wide");
  AddChild(*Node_var(expected.GetNodeWithPath("Root")), "Wide");
  FillAndDelete(*Node_var(document.GetNodeWithPath("Root.Wide")), fill);
  FillPlainly(*Node_var(expected.GetNodeWithPath("Root.Wide")), fill);
  VyrUnicodeString text;
  VyrUnicodeString expectedText;
  document.SaveInString(text);
  expected.SaveInString(expectedText);
  EXPECT_FALSE(text.IsEmpty());
  EXPECT_EQ(text, expectedText);
}

TEST_P(NodeWithHoles, IsClonedAsOneWithoutThem) {
  const Node_var node = WithHoles();
  EXPECT_EQ(FindDifference(*Node_var(node->Clone()), *Plain()), "");
}

TEST_P(NodeWithHoles, GivesItsChildrenUpWhenItIsDestroyed) {
  // Counted at the end of the program, all the others must have gone too.
  Node_var node = WithHoles([](Node& child) { AddChild(child, "below"); });
  const Node_var held(node->GetNode(60));
  EXPECT_EQ(CountReferences(*held), 2u);
  EXPECT_EQ(node->DeleteNodeWithPath("c150"), 0);
  node = nullptr;
  EXPECT_EQ(CountReferences(*held), 1u);
  EXPECT_EQ(held->GetNumOfNode(), 1);
}

TEST_P(NodeWithHoles, IsDestroyedBelowAnother) {
  const Node_var top = NewNode("Top");
  for (int i = 0; i < 3; ++i) FillAndDelete(*AddChild(*top, "Wide"));
  EXPECT_EQ(top->DeleteNodeWithPath("Wide"), 0);
  EXPECT_EQ(top->GetNumOfNode(), 2);
}

}  // namespace
}  // namespace modeltest
