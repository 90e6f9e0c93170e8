#include <algorithm>

#include "ModelTest.h"
#include "RandomTree.h"

// Lookups in wide nodes, which keep an index, against a plain scan of a list of the test's own.

namespace modeltest {
namespace {

/// How many names there are to choose from: few make duplicates, many make none.
class WideNodes : public ModelTest, public testing::WithParamInterface<int> {};
INSTANTIATE_TEST_SUITE_P(NamesInUse, WideNodes, testing::Values(2, 30, 150, 1'000'000),
                         testing::PrintToStringParamName());

std::string RandomName(Choices& choices, int names) {
  return "n" + std::to_string(choices.Below(names));
}

/// The list that two parents should have, kept by plain means.
struct Parent {
  Node_var node = NewNode("Parent");
  std::vector<Node_var> expected;

  void Insert(const Node_var& child, int index) {
    node->AddNode(child.Get(), index);
    expected.insert(index < 0 ? expected.end() : expected.begin() + index, child);
  }
  Node* FirstNamed(const std::string& name) const {
    for (const Node_var& child : expected) {
      if (child->GetNodeName() == name) return child.Get();
    }
    return nullptr;
  }
  void DeleteFirstNamed(const std::string& name) {
    Node* first = FirstNamed(name);
    EXPECT_EQ(node->DeleteNodeWithPath(name), first == nullptr ? 1 : 0);
    const auto isFirst = [first](const Node_var& child) { return child.Get() == first; };
    const auto place = std::find_if(expected.begin(), expected.end(), isFirst);
    if (place != expected.end()) expected.erase(place);
  }
  bool IsAsExpected(const std::string& name) const {
    return Node_var(node->GetNodeByName(name)).Get() == FirstNamed(name);
  }
};

void EditNodes(Choices& choices, int names, Parent& parent, const Parent& other) {
  const std::string name = RandomName(choices, names);
  const auto randomPlace = [&] {
    return parent.expected.empty() || choices.OneIn(2)
               ? -1
               : choices.Below(static_cast<int>(parent.expected.size()));
  };
  switch (choices.Below(8)) {
    case 0:
    case 1:
      if (parent.expected.size() > 200) {
        parent.DeleteFirstNamed(choices.Of(parent.expected)->GetNodeName().CString());
      } else {
        parent.Insert(NewNode(name), randomPlace());
      }
      break;
    case 2:  // one node in two lists, or twice in one
      if (!other.expected.empty()) parent.Insert(choices.Of(other.expected), randomPlace());
      break;
    case 3:
      if (!parent.expected.empty()) choices.Of(parent.expected)->SetNodeName(name);
      break;
    case 4:
      parent.DeleteFirstNamed(name);
      break;
    case 5:
    case 6:
      if (parent.expected.size() < 60) break;
      parent.DeleteFirstNamed(choices.Of(parent.expected)->GetNodeName().CString());
      break;
    default:
      break;  // nothing between two lookups
  }
}

TEST_P(WideNodes, FindTheFirstChildOfANameAfterAnyMixOfEdits) {
  for (std::uint32_t seed = 1; seed <= 4; ++seed) {
    Choices choices(seed);
    Parent parents[2];
    for (int i = 0; i < 90; ++i) {
      for (Parent& parent : parents) parent.Insert(NewNode(RandomName(choices, GetParam())), -1);
    }
    for (int step = 0; step < 2500; ++step) {
      const int which = choices.Below(2);
      EditNodes(choices, GetParam(), parents[which], parents[choices.Below(2)]);
      for (const Parent& parent : parents) {
        ASSERT_TRUE(parent.IsAsExpected(RandomName(choices, GetParam()))) << seed << " " << step;
        ASSERT_TRUE(parent.IsAsExpected(choices.Of(parent.expected)->GetNodeName().CString()))
            << seed << " " << step;
      }
    }
    for (const Parent& parent : parents) EXPECT_EQ(parent.node->GetNodes(), parent.expected);
  }
}

/// The values of a node, kept by plain means; names and texts come from one set.
struct Holder {
  Node_var node = NewNode("Holder");
  std::vector<Value_var> expected;

  Value* First(const VyrUnicodeString& (Value::*field)() const, const std::string& text) const {
    for (const Value_var& value : expected) {
      if ((value.Get()->*field)() == text) return value.Get();
    }
    return nullptr;
  }
  void Delete(const std::string& word) {
    Value* first = First(&Value::GetValueName, word);
    if (first == nullptr) first = First(&Value::GetValue, word);
    EXPECT_EQ(node->DeleteNodeWithPath(word), first == nullptr ? 1 : 0);
    std::erase_if(expected, [first](const Value_var& value) { return value.Get() == first; });
  }
  bool IsAsExpected(const std::string& word) const {
    return Value_var(node->GetValueByName(word)).Get() == First(&Value::GetValueName, word) &&
           Value_var(node->GetValueWithPath(word)).Get() == First(&Value::GetValue, word);
  }
};

void EditValues(Choices& choices, int names, Holder& holder) {
  const std::string name = RandomName(choices, names);
  const std::string text = RandomName(choices, names);
  const int count = static_cast<int>(holder.expected.size());
  switch (choices.Below(8)) {
    case 0:
    case 1:
    case 2: {
      if (count > 200) return holder.Delete(holder.expected[0]->GetValueName().CString());
      const int place = choices.OneIn(2) ? -1 : choices.Below(count);
      const Value_var value = NewValue(Value::ValueString, text, name);
      holder.node->AddValue(value.Get(), place);
      holder.expected.insert(place < 0 ? holder.expected.end() : holder.expected.begin() + place,
                             value);
      break;
    }
    case 3:
      choices.Of(holder.expected)->SetValue(text);
      break;
    case 4:
      if (Value* named = holder.First(&Value::GetValueName, name)) {
        holder.node->ChangeValue(name + ":" + text);
        EXPECT_EQ(named->GetValue(), text);
      }
      break;
    case 5: {
      if (count < 60) break;
      const int place = choices.Below(count);
      EXPECT_EQ(holder.node->DeleteValue(place), 1);
      holder.expected.erase(holder.expected.begin() + place);
      break;
    }
    case 6:
      if (count >= 60) holder.Delete(name);
      break;
    default:
      break;
  }
}

TEST_P(WideNodes, FindTheFirstValueOfANameOrTextAfterAnyMixOfEdits) {
  for (std::uint32_t seed = 1; seed <= 2; ++seed) {
    Choices choices(seed);
    Holder holder;
    for (int i = 0; i < 90; ++i) {
      const Value_var value = NewValue(Value::ValueString, RandomName(choices, GetParam()),
                                       RandomName(choices, GetParam()));
      holder.node->AddValue(value.Get(), -1);
      holder.expected.push_back(value);
    }
    for (int step = 0; step < 2500; ++step) {
      EditValues(choices, GetParam(), holder);
      const Value& any = *choices.Of(holder.expected);
      ASSERT_TRUE(holder.IsAsExpected(RandomName(choices, GetParam()))) << seed << " " << step;
      ASSERT_TRUE(holder.IsAsExpected(any.GetValueName().CString())) << seed << " " << step;
      ASSERT_TRUE(holder.IsAsExpected(any.GetValue().CString())) << seed << " " << step;
    }
    EXPECT_EQ(holder.node->GetValues(), holder.expected);
  }
}

class WideNode : public ModelTest {
 protected:
  /// A node as wide as its index needs, of children that all have other names.
  static Node_var Wide() {
    Node_var node = NewNode("W");
    for (int i = 0; i < 100; ++i) AddChild(*node, "n" + std::to_string(i));
    EXPECT_EQ(Node_var(node->GetNodeByName("n50")).Get(), node->GetNodes()[50].Get());
    return node;
  }
};

TEST_F(WideNode, FindsADuplicateInsertedBeforeTheFirst) {
  const Node_var node = Wide();
  const Node_var before = NewNode("n50");
  node->AddNode(before.Get(), 0);
  EXPECT_EQ(Node_var(node->GetNodeByName("n50")).Get(), before.Get());
  AddChild(*node, "n50");
  EXPECT_EQ(Node_var(node->GetNodeByName("n50")).Get(), before.Get());
  EXPECT_EQ(node->DeleteNodeWithPath("n50"), 0);
  EXPECT_EQ(Node_var(node->GetNodeByName("n50")).Get(), node->GetNodes()[50].Get());
  EXPECT_EQ(node->DeleteNodeWithPath("n50"), 0);
  EXPECT_EQ(Node_var(node->GetNodeByName("n50")).Get(), node->GetNodes().back().Get());
  EXPECT_EQ(node->DeleteNodeWithPath("n50"), 0);
  EXPECT_EQ(node->GetNodeByName("n50"), nullptr);
}

TEST_F(WideNode, FindsChildrenThatWereRenamedThroughAnotherParent) {
  const Node_var node = Wide();
  const Node_var other = NewNode("Other");
  other->AddNode(node->GetNodes()[70].Get(), -1);
  Node_var(other->GetNode(0))->SetNodeName("n10");
  EXPECT_EQ(Node_var(node->GetNodeByName("n10")).Get(), node->GetNodes()[10].Get());
  EXPECT_EQ(node->GetNodeByName("n70"), nullptr);
  Node_var(node->GetNode(10))->SetNodeName("n70");
  EXPECT_EQ(Node_var(node->GetNodeByName("n10")).Get(), node->GetNodes()[70].Get());
  EXPECT_EQ(Node_var(node->GetNodeByName("n70")).Get(), node->GetNodes()[10].Get());
}

TEST_F(WideNode, IsRightWhileItShrinksAndGrowsAcrossTheLimit) {
  const Node_var node = Wide();
  for (int round = 0; round < 3; ++round) {
    for (int i = 0; i < 60; ++i) {
      const std::string name = node->GetNodes()[0]->GetNodeName().CString();
      EXPECT_EQ(node->DeleteNodeWithPath(name), 0);
      EXPECT_EQ(node->GetNodeByName(name), nullptr);
    }
    const Node_var renamed = node->GetNodes()[0];
    renamed->SetNodeName("renamed " + std::to_string(round));
    for (int i = 0; i < 60; ++i) AddChild(*node, "r" + std::to_string(round * 60 + i));
    EXPECT_EQ(Node_var(node->GetNodeByName(renamed->GetNodeName())).Get(), renamed.Get());
    EXPECT_EQ(Node_var(node->GetNodeByName("r" + std::to_string(round * 60))).Get(),
              node->GetNodes()[40].Get());
  }
}

TEST_F(WideNode, FindsChildrenAskedForInOrderBackwardsAndTwice) {
  const Node_var node = Wide();
  for (int pass = 0; pass < 2; ++pass) {
    for (int i = 0; i < 100; ++i) {
      const int asked = pass == 0 ? i : 99 - i;
      for (int twice = 0; twice < 2; ++twice) {
        EXPECT_EQ(Node_var(node->GetNodeByName("n" + std::to_string(asked))).Get(),
                  node->GetNodes()[asked].Get());
      }
    }
    EXPECT_EQ(node->GetNodeByName("n100"), nullptr);
  }
}

}  // namespace
}  // namespace modeltest
