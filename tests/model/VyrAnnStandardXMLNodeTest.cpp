#include <climits>

#include "ModelTest.h"

namespace modeltest {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NodeLists : public ModelTest {
 protected:
  /// A node with children and values of these one-letter names.
  static Node_var With(std::string_view letters) {
    Node_var node = NewNode("N");
    for (const char& letter : letters) {
      AddChild(*node, {&letter, 1});
      AddString(*node, {&letter, 1}, std::string("text of ") + letter);
    }
    return node;
  }
  static std::string Children(const Node& node) {
    std::string names;
    for (const Node_var& child : node.GetNodes()) names += child->GetNodeName().View();
    return names;
  }
  static std::string Values(const Node& node) {
    std::string names;
    for (const Value_var& value : node.GetValues()) names += value->GetValueName().View();
    return names;
  }
};

struct Insertion {
  const char* before;
  int index;
  const char* after;
};
constexpr Insertion kInsertions[] = {
    {"", -1, "x"},
    {"", -7, "x"},
    {"", 0, ""},
    {"", 1, ""},
    {"abc", -1, "abcx"},
    {"abc", -7, "abcx"},
    {"abc", INT_MIN, "abcx"},
    {"abc", 0, "xabc"},
    {"abc", 1, "axbc"},
    {"abc", 2, "abxc"},
    {"abc", 3, "abc"},
    {"abc", 4, "abc"},
    {"abc", INT_MAX, "abc"},
};

TEST_F(NodeLists, NegativeIndexAppendsAndTheCountIsRefused) {
  for (const Insertion& row : kInsertions) {
    SCOPED_TRACE(std::string(row.before) + " at " + std::to_string(row.index));
    const Node_var node = With(row.before);
    const bool isRefused = std::string(row.before) == row.after;
    node->AddNode(NewNode("x").Get(), row.index);
    EXPECT_EQ(Children(*node), row.after);
    EXPECT_EQ(node->GetNumOfNode(), static_cast<int>(std::string(row.after).size()));
    EXPECT_EQ(Values(*node), row.before);
    node->AddValue(NewValue(Value::ValueInt, "1", "x").Get(), row.index);
    EXPECT_EQ(Values(*node), row.after);
    EXPECT_EQ(node->GetNumOfValue(), static_cast<int>(std::string(row.after).size()));
    if (isRefused) {
      EXPECT_THAT(TakeReports(), ElementsAre(RefusedBy(kClassUnitName), RefusedBy(kClassUnitName)));
    }
  }
}

TEST_F(NodeLists, NullIsRefusedAsAPointer) {
  const Node_var node = With("a");
  for (const int index : {-1, 0, 9}) {
    node->AddNode(nullptr, index);
    node->AddValue(nullptr, index);
    EXPECT_THAT(TakeReports(),
                ElementsAre(NullPointer(kClassUnitName), NullPointer(kClassUnitName)));
  }
  EXPECT_EQ(Describe(*node), Describe(*With("a")));
}

TEST_F(NodeLists, ReportsOfADevelopmentStageRunArePrintedAndGoToTheAbendLog) {
  const Node_var node = With("");
  VyrSetDevelopmentStage(true);
  node->AddNode(nullptr, -1);
  EXPECT_EQ(node->GetNode(0), nullptr);
  EXPECT_THAT(CheckTexts(log.printed),
              ElementsAre(NullPointer(kClassUnitName), RefusedBy(kClassUnitName)));
  EXPECT_EQ(log.abends, log.printed);
  EXPECT_THAT(log.errors, IsEmpty());
  log.Clear();
}

TEST_F(NodeLists, ListsHoldReferencesOfTheirOwn) {
  const Node_var node = NewNode("N");
  const Node_var child = NewNode("child");
  const Value_var value = NewValue(Value::ValueInt, "1");
  node->AddNode(child.Get(), -1);
  node->AddValue(value.Get(), -1);
  EXPECT_EQ(CountReferences(*child), 2u);
  EXPECT_EQ(CountReferences(*value), 2u);
  node->AddNode(child.Get(), 5);
  EXPECT_EQ(CountReferences(*child), 2u) << "a refused node is not held";
  EXPECT_THAT(TakeReports(), ElementsAre(RefusedBy(kClassUnitName)));
  EXPECT_EQ(node->DeleteNodeWithPath("child"), 0);
  EXPECT_EQ(node->DeleteValue(0), 1);
  EXPECT_EQ(CountReferences(*child), 1u);
  EXPECT_EQ(CountReferences(*value), 1u);
}

TEST_F(NodeLists, NegativeIndexReadsTheLastElement) {
  const Node_var node = With("abc");
  constexpr std::pair<int, const char*> rows[] = {{-1, "c"}, {-7, "c"}, {INT_MIN, "c"},
                                                  {0, "a"},  {1, "b"},  {2, "c"}};
  for (const auto& [index, name] : rows) {
    const Node_var child(node->GetNode(index));
    const Value_var value(node->GetValue(index));
    ASSERT_TRUE(child && value) << index;
    EXPECT_EQ(child->GetNodeName(), name);
    EXPECT_EQ(value->GetValueName(), name);
    EXPECT_EQ(CountReferences(*child), 2u) << "the caller owns a reference";
    EXPECT_EQ(CountReferences(*value), 2u);
  }
}

TEST_F(NodeLists, ReadingPastTheEndGivesNullAndAReport) {
  for (const auto& [letters, index] : std::initializer_list<std::pair<const char*, int>>{
           {"abc", 3}, {"abc", INT_MAX}, {"", 0}, {"", -1}, {"", -7}, {"", 1}}) {
    const Node_var node = With(letters);
    EXPECT_EQ(node->GetNode(index), nullptr) << letters << index;
    EXPECT_EQ(node->GetValue(index), nullptr) << letters << index;
    EXPECT_THAT(TakeReports(), ElementsAre(RefusedBy(kClassUnitName), RefusedBy(kClassUnitName)));
  }
}

TEST_F(NodeLists, LookupByNameIsExactAndTakesTheFirst) {
  const Node_var node = NewNode("N");
  for (const char* name : {"Formats", "formats", "Formats", "A0 ISO", "寸法"}) {
    AddChild(*node, name);
    AddString(*node, name, "text");
  }
  constexpr std::pair<const char*, int> rows[] = {
      {"Formats", 0}, {"formats", 1},  {"A0 ISO", 3}, {"寸法", 4},  {"FORMATS", -1},
      {"A0", -1},     {"A0 ISO ", -1}, {"", -1},      {"text", -1}, {"寸", -1}};
  for (const auto& [name, place] : rows) {
    const Node_var child(node->GetNodeByName(name));
    const Value_var value(node->GetValueByName(name));
    EXPECT_EQ(child.Get(), place < 0 ? nullptr : node->GetNodes()[place].Get()) << name;
    EXPECT_EQ(value.Get(), place < 0 ? nullptr : node->GetValues()[place].Get()) << name;
    if (child) {
      EXPECT_EQ(CountReferences(*child), 2u);
    }
  }
}

TEST_F(NodeLists, AnEmptyNameIsANameLikeAnyOther) {
  const Node_var node = With("a");
  const Node_var unnamed = AddChild(*node, "");
  AddString(*node, "", "unnamed");
  EXPECT_EQ(Node_var(node->GetNodeByName("")).Get(), unnamed.Get());
  EXPECT_EQ(Value_var(node->GetValueByName(""))->GetValue(), "unnamed");
}

TEST_F(NodeLists, DefaultNodeIsTheOneNamedSoElseTheFirst) {
  const Node_var node = With("ab");
  EXPECT_EQ(Node_var(node->GetDefaultNode())->GetNodeName(), "a");
  const Node_var named = AddChild(*node, "Default");
  EXPECT_EQ(Node_var(node->GetDefaultNode()).Get(), named.Get());
  EXPECT_EQ(CountReferences(*named), 2u);
  EXPECT_EQ(NewNode("empty")->GetDefaultNode(), nullptr);
  EXPECT_THAT(TakeReports(), ElementsAre(RefusedBy(kClassUnitName)));
}

TEST_F(NodeLists, ValuesAreDeletedByIndexFromZero) {
  constexpr Insertion rows[] = {
      {"abc", 0, "bc"},  {"abc", 1, "ac"},   {"abc", 2, "ab"},        {"a", 0, ""},
      {"abc", 3, "abc"}, {"abc", -1, "abc"}, {"abc", INT_MIN, "abc"}, {"", 0, ""},
      {"", -1, ""}};
  for (const Insertion& row : rows) {
    SCOPED_TRACE(std::string(row.before) + " at " + std::to_string(row.index));
    const Node_var node = With(row.before);
    const bool isRefused = std::string(row.before) == row.after;
    EXPECT_EQ(node->DeleteValue(row.index), isRefused ? 0 : 1);
    EXPECT_EQ(Values(*node), row.after);
    EXPECT_EQ(Children(*node), row.before);
    if (isRefused) {
      EXPECT_THAT(TakeReports(), ElementsAre(RefusedBy(kClassUnitName)));
    }
  }
}

struct NodeWithValue {
  const char* name;
  Value::Type type;
  const char* value;
  const char* typeName;
  int index;
  int result;
  const char* children;  // of a node with the children a and b
  int reports;
};
constexpr NodeWithValue kNodesWithValue[] = {
    {"X", Value::ValueInt, "5", "", -1, 1, "abX", 0},
    {"X", Value::ValueInt, "5", "", 0, 1, "Xab", 0},
    {"X", Value::ValueInt, "5", "", 1, 1, "aXb", 0},
    {"X", Value::ValueInt, "", "", -1, 1, "abX", 0},
    {"X", Value::ValueFloat, "2.0", "", -1, 1, "abX", 0},
    {"X", Value::ValueString, "", "", -1, 1, "abX", 0},
    {"X", Value::ValueColor, "255 0 0", "", -1, 1, "abX", 0},
    {"X", Value::ValueEnum, "Yes", "YesNo", -1, 1, "abX", 0},
    // The count passes here and is refused by the list.
    {"X", Value::ValueInt, "5", "", 2, 1, "ab", 1},
    {"X", Value::ValueInt, "5", "", 3, 0, "ab", 1},
    {"X", Value::ValueInt, "5", "", -2, 0, "ab", 1},
    {"X", Value::ValueInt, "5", "", INT_MIN, 0, "ab", 1},
    {"", Value::ValueInt, "5", "", -1, 0, "ab", 1},
    {"X", Value::ValueEnum, "", "YesNo", -1, 0, "ab", 1},
    {"X", Value::ValueEnum, "Yes", "", -1, 0, "ab", 1},
    {"X", Value::ValueInt, "5", "YesNo", -1, 0, "ab", 1},
    {"X", Value::ValueFloat, "5", "0.0", -1, 0, "ab", 1},
    {"X", Value::ValueString, "5", "t", -1, 0, "ab", 1},
    {"X", Value::ValueColor, "0 0 0", "t", -1, 0, "ab", 1},
};

TEST_F(NodeLists, NodeWithValueWrapsTheValueInAPlainNode) {
  for (const NodeWithValue& row : kNodesWithValue) {
    SCOPED_TRACE(testing::Message() << row.name << " " << row.type << " '" << row.value << "' '"
                                    << row.typeName << "' at " << row.index);
    const Node_var node = With("ab");
    EXPECT_EQ(node->AddNodeWithValue(row.name, row.type, row.value, row.typeName, row.index),
              row.result);
    EXPECT_EQ(Children(*node), row.children);
    EXPECT_EQ(Values(*node), "ab");
    if (const Node_var wrapper(node->GetNodeByName("X")); wrapper) {
      const Value_var expected = NewValue(row.type, row.value, row.typeName);
      EXPECT_EQ(Describe(*wrapper), "plain X(" + Describe(*expected) + ")");
    }
    EXPECT_THAT(TakeReports(), row.reports == 0
                                   ? testing::Matcher<std::vector<std::string>>(IsEmpty())
                                   : ElementsAre(RefusedBy(kClassUnitName)));
  }
}

class ChangeValue : public ModelTest {
 protected:
  static Node_var TwoFields() {
    Node_var node = NewNode("N", Node::NodeInstance);
    AddString(*node, "Width", "1");
    AddString(*node, "Height", "2");
    return node;
  }
};

TEST_F(ChangeValue, OnANodeWithChildrenIsRefused) {
  const Node_var node = NewNode("N");
  AddString(*node, "", "old");
  AddChild(*node, "child");
  node->ChangeValue("new");
  EXPECT_EQ(Describe(*node), "plain N(string =old){plain child}");
  EXPECT_THAT(TakeReports(), ElementsAre(RefusedBy(kClassUnitName)));
}

TEST_F(ChangeValue, TheOnlyValueTakesTheTextWhole) {
  for (const char* text : {"0", "", "Width:12:5", ":", "A name:text", "寸法"}) {
    const Node_var node = NewNode("N");
    AddString(*node, "Width", "old");
    node->ChangeValue(text);
    EXPECT_EQ(Value_var(node->GetValue(0))->GetValue(), text);
  }
}

TEST_F(ChangeValue, OfSeveralValuesTheNamedOneTakesWhatFollowsTheFirstColon) {
  constexpr std::pair<const char*, const char*> rows[] = {
      {"Width:12:5", "instance N(string Width=12:5, string Height=2)"},
      {"Height:", "instance N(string Width=1, string Height=)"},
      {"Height: 7 ", "instance N(string Width=1, string Height= 7 )"},
      {"Width::", "instance N(string Width=:, string Height=2)"},
      {"no colon", "instance N(string Width=1, string Height=2)"},
      {"Width", "instance N(string Width=1, string Height=2)"},
      {"", "instance N(string Width=1, string Height=2)"},
  };
  for (const auto& [text, expected] : rows) {
    const Node_var node = TwoFields();
    node->ChangeValue(text);
    EXPECT_EQ(Describe(*node), expected) << text;
  }
}

TEST_F(ChangeValue, OfANameThatNoValueHasIsReportedAsAPointer) {
  for (const char* text : {"width:3", "Depth:3", ":3", "Width :3"}) {
    const Node_var node = TwoFields();
    node->ChangeValue(text);
    EXPECT_EQ(Describe(*node), Describe(*TwoFields())) << text;
    EXPECT_THAT(TakeReports(), ElementsAre(NullPointer(kClassUnitName)));
  }
}

TEST_F(ChangeValue, OnANodeWithoutValuesIsSilentWithoutAColonAndReportedWithOne) {
  const Node_var node = NewNode("N");
  node->ChangeValue("text");
  EXPECT_THAT(TakeReports(), IsEmpty());
  node->ChangeValue("Name:text");
  EXPECT_THAT(TakeReports(), ElementsAre(NullPointer(kClassUnitName)));
  EXPECT_EQ(Describe(*node), "plain N");
}

TEST_F(ChangeValue, OfEqualNamesTheFirstIsTaken) {
  const Node_var node = TwoFields();
  AddString(*node, "Width", "3");
  node->ChangeValue("Width:9");
  EXPECT_EQ(Describe(*node), "instance N(string Width=9, string Height=2, string Width=3)");
}

}  // namespace
}  // namespace modeltest
