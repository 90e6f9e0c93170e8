#include <random>

#include "ModelTest.h"
#include "RandomTree.h"
#include "VyrAnnStandardScript.h"
#include "VyrSteps.h"

// How the work of the tree grows with a list: twice the items take little more than twice the
// steps, whatever is done to them one by one.

namespace modeltest {
namespace {

/// In which order the items of a list are gone through.
enum class Order { Forwards, Backwards, Shuffled };

std::vector<int> Numbers(int count, Order order) {
  std::vector<int> numbers(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) numbers[static_cast<std::size_t>(i)] = i;
  if (order == Order::Backwards) std::reverse(numbers.begin(), numbers.end());
  if (order == Order::Shuffled) std::shuffle(numbers.begin(), numbers.end(), std::mt19937(1));
  return numbers;
}

std::string Name(int number) {
  return "n" + std::to_string(number);
}

Node_var Wide(int count, const char* name = nullptr) {
  Node_var node = NewNode("Wide");
  for (int i = 0; i < count; ++i) AddChild(*node, name != nullptr ? name : Name(i));
  return node;
}

Node_var Enumeration(int count, const char* text = nullptr) {
  Node_var node = NewNode("E", Node::NodeEnum);
  for (int i = 0; i < count; ++i) AddString(*node, "", text != nullptr ? text : Name(i));
  return node;
}

Node_var Instance(int count) {
  Node_var node = NewNode("I", Node::NodeInstance);
  for (int i = 0; i < count; ++i) AddString(*node, Name(i), "text");
  return node;
}

/// Work on `count` items; false when something went wrong.
struct Work {
  const char* name;
  bool (*run)(int count, Order order);
};

bool ChangeLiteralsByText(int count, Order order) {
  Document document;
  Node_var(document.GetNodeWithPath("Enum"))->AddNode(Enumeration(count).Get(), -1);
  for (const int i : Numbers(count, order)) {
    const std::string command = "Enum.E." + Name(i) + ":changed " + std::to_string(i);
    if (document.ChangeValueWithPath(command) != 0) return false;
    if (document.ChangeValueWithPath(command) != 1) return false;
  }
  return true;
}

bool RenameChildrenAndFindBoth(int count, Order order) {
  const Node_var node = Wide(count);
  for (const int i : Numbers(count, order)) {
    const Node_var child(node->GetNodeByName(Name(i)));
    if (!child) return false;
    child->SetNodeName("renamed " + std::to_string(i));
    if (Node_var(node->GetNodeByName(Name(i)))) return false;
    if (Node_var(node->GetNodeByName(child->GetNodeName())).Get() != child.Get()) return false;
  }
  return true;
}

bool GiveAllChildrenOneNameAndBack(int count, Order order) {
  const Node_var node = Wide(count);
  const Node::Nodes children = node->GetNodes();
  for (const int i : Numbers(count, order)) {
    children[static_cast<std::size_t>(i)]->SetNodeName("same");
    const Node_var first(node->GetNodeByName("same"));
    if (!first || first->GetNodeName() != "same") return false;
  }
  if (Node_var(node->GetNodeByName("same")).Get() != children[0].Get()) return false;
  for (const int i : Numbers(count, order)) {
    children[static_cast<std::size_t>(i)]->SetNodeName(Name(i));
    Node_var(node->GetNodeByName("same"));
  }
  return !Node_var(node->GetNodeByName("same")) && Node_var(node->GetNodeByName(Name(count - 1)));
}

bool RenameChildrenOfTwoParents(int count, Order order) {
  const Node_var node = Wide(count);
  const Node_var other = NewNode("Other");
  for (const Node_var& child : node->GetNodes()) other->AddNode(child.Get(), -1);
  for (const int i : Numbers(count, order)) {
    const Node_var child(node->GetNodeByName(Name(i)));
    if (!child || Node_var(other->GetNodeByName(Name(i))).Get() != child.Get()) return false;
    child->SetNodeName("renamed " + std::to_string(i));
  }
  return true;
}

bool DeleteChildrenByName(int count, Order order) {
  const Node_var node = Wide(count);
  for (const int i : Numbers(count, order)) {
    if (node->DeleteNodeWithPath(Name(i)) != 0) return false;
  }
  return node->GetNumOfNode() == 0;
}

bool DeleteChildrenOfOneName(int count, Order) {
  const Node_var node = Wide(count, "same");
  const Node::Nodes children = node->GetNodes();
  for (const Node_var& child : children) {
    if (Node_var(node->GetNodeByName("same")).Get() != child.Get()) return false;
    if (node->DeleteNodeWithPath("same") != 0) return false;
  }
  return node->GetNumOfNode() == 0;
}

bool DeleteValuesByIndex(int count, Order order) {
  const Node_var node = Instance(count);
  std::mt19937 random(1);
  for (int left = count; left > 0; --left) {
    const int chosen = static_cast<int>(random() % static_cast<unsigned>(left));
    const int index = order == Order::Forwards ? 0 : order == Order::Backwards ? left - 1 : chosen;
    if (node->DeleteValue(index) != 1) return false;
  }
  return node->GetNumOfValue() == 0;
}

bool DeleteFieldsByName(int count, Order order) {
  const Node_var node = Instance(count);
  for (const int i : Numbers(count, order)) {
    if (node->DeleteNodeWithPath(Name(i)) != 0) return false;
  }
  return node->GetNumOfValue() == 0;
}

bool DeleteLiteralsByText(int count, Order order) {
  const Node_var node = Enumeration(count);
  for (const int i : Numbers(count, order)) {
    if (node->DeleteNodeWithPath(Name(i)) != 0) return false;
  }
  return node->GetNumOfValue() == 0;
}

/// Where an edit of a list of `count` happens.
int PlaceIn(int count, Order order, std::mt19937& random) {
  if (order == Order::Forwards) return count - 1;
  return order == Order::Backwards ? 0 : static_cast<int>(random() % static_cast<unsigned>(count));
}

bool InsertChildren(int count, Order order) {
  const Node_var node = Wide(100);
  std::mt19937 random(1);
  while (node->GetNumOfNode() < count) {
    const int place = PlaceIn(node->GetNumOfNode(), order, random);
    const Node_var child = NewNode("added");
    node->AddNode(child.Get(), place);
    if (Node_var(node->GetNode(place)).Get() != child.Get()) return false;
  }
  return static_cast<int>(node->GetNodes().size()) == count;
}

bool InsertValues(int count, Order order) {
  const Node_var node = Instance(100);
  std::mt19937 random(1);
  while (node->GetNumOfValue() < count) {
    const int place = PlaceIn(node->GetNumOfValue(), order, random);
    const Value_var value = NewValue(Value::ValueString, "added");
    node->AddValue(value.Get(), place);
    if (Value_var(node->GetValue(place)).Get() != value.Get()) return false;
  }
  return static_cast<int>(node->GetValues().size()) == count;
}

bool InsertChildrenOfOneNameAndFindTheFirst(int count, Order order) {
  const Node_var node = Wide(100, "same");
  std::mt19937 random(1);
  while (node->GetNumOfNode() < count) {
    node->AddNode(NewNode("same").Get(), PlaceIn(node->GetNumOfNode(), order, random));
    if (Node_var(node->GetNodeByName("same")).Get() != Node_var(node->GetNode(0)).Get()) {
      return false;
    }
  }
  return true;
}

bool HoldOneChildAtManyPlaces(int count, Order order) {
  const Node_var node = Wide(100);
  const Node_var child = NewNode("again");
  std::mt19937 random(1);
  while (node->GetNumOfNode() < count) {
    node->AddNode(child.Get(), PlaceIn(node->GetNumOfNode(), order, random));
    if (Node_var(node->GetNodeByName("again")).Get() != child.Get()) return false;
  }
  while (node->GetNumOfNode() > 100) {
    if (node->DeleteNodeWithPath("again") != 0) return false;
  }
  return node->DeleteNodeWithPath("again") == 1;
}

bool LookAtAListWithItsEndEdited(int count, Order) {
  const Node_var node = Wide(count);
  for (int left = count; left > 100; --left) {
    if (node->DeleteNodeWithPath(Name(left - 2)) != 0) return false;
    node->AddNode(NewNode(Name(left - 2)).Get(), left - 2);
    if (node->DeleteNodeWithPath(Name(left - 1)) != 0) return false;
    if (static_cast<int>(node->GetNodes().size()) != left - 1) return false;
  }
  return true;
}

bool AddToEachChildOfADeepNode(int count, Order) {
  Document document;
  Node_var lowest(document.GetNodeWithPath("Root"));
  std::string path = "Root";
  for (int i = 0; i < count; ++i) {
    lowest = AddChild(*lowest, "d");
    path += ".d";
  }
  for (int i = 0; i < count; ++i) AddChild(*lowest, Name(i));
  const std::string text =
      "each " + path + " :V:int:1\neach-node " + path + " :N\neach-change " + path + " .V:2";
  const VyrAnnStandardScript script(text);
  for (const auto& command : script.GetCommands()) {
    if (command.Run(document) != 0) return false;
  }
  return Node_var(lowest->GetNode(-1))->GetNumOfNode() == 2;
}

const Work kWorks[] = {
    {"ChangeLiteralsByText", ChangeLiteralsByText},
    {"RenameChildrenAndFindBoth", RenameChildrenAndFindBoth},
    {"GiveAllChildrenOneNameAndBack", GiveAllChildrenOneNameAndBack},
    {"RenameChildrenOfTwoParents", RenameChildrenOfTwoParents},
    {"DeleteChildrenByName", DeleteChildrenByName},
    {"DeleteChildrenOfOneName", DeleteChildrenOfOneName},
    {"DeleteValuesByIndex", DeleteValuesByIndex},
    {"DeleteFieldsByName", DeleteFieldsByName},
    {"DeleteLiteralsByText", DeleteLiteralsByText},
    {"InsertChildren", InsertChildren},
    {"InsertValues", InsertValues},
    {"InsertChildrenOfOneNameAndFindTheFirst", InsertChildrenOfOneNameAndFindTheFirst},
    {"HoldOneChildAtManyPlaces", HoldOneChildAtManyPlaces},
    {"LookAtAListWithItsEndEdited", LookAtAListWithItsEndEdited},
    {"AddToEachChildOfADeepNode", AddToEachChildOfADeepNode},
};

class Growth : public ModelTest, public testing::WithParamInterface<std::tuple<Work, Order>> {};

std::string GrowthName(const testing::TestParamInfo<std::tuple<Work, Order>>& info) {
  constexpr const char* orders[] = {"Forwards", "Backwards", "Shuffled"};
  return std::string(std::get<0>(info.param).name) +
         orders[static_cast<int>(std::get<1>(info.param))];
}
INSTANTIATE_TEST_SUITE_P(Of, Growth,
                         testing::Combine(testing::ValuesIn(kWorks),
                                          testing::Values(Order::Forwards, Order::Backwards,
                                                          Order::Shuffled)),
                         GrowthName);

TEST_P(Growth, OfStepsIsLittleMoreThanThatOfItems) {
  const auto& [work, order] = GetParam();
  std::uint64_t before = 0;
  for (const int count : {2'000, 4'000, 8'000, 16'000}) {
    const std::uint64_t start = VyrSteps::GetCount();
    ASSERT_TRUE(work.run(count, order)) << count;
    const std::uint64_t steps = VyrSteps::GetCount() - start;
    // Of N log N steps a little more than twice as many; rebuilding comes in leaps.
    if (before != 0) {
      EXPECT_LT(static_cast<double>(steps), 2.5 * static_cast<double>(before)) << count;
    }
    EXPECT_LT(steps, static_cast<std::uint64_t>(count) * 400) << count;
    before = steps;
  }
}

}  // namespace
}  // namespace modeltest
