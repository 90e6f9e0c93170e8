#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "HostileText.h"
#include "ModelTest.h"
#include "ProcessApart.h"

// Deletion from nodes wider than any that was drafted.

namespace {

using namespace modeltest;

Node_var WideNode(std::size_t count) {
  Node_var node = NewNode("Wide");
  for (std::size_t i = 0; i < count; ++i) AddChild(*node, "n" + std::to_string(i));
  return node;
}

/// Deletes the children `first`, `first + step`, ... (modulo the number of names, which has no
/// common divisor with the step) and tells how many are left.
std::string DeleteEach(Node& node, std::size_t names, std::size_t first, std::size_t step) {
  for (std::size_t i = 0, child = first; i < names; ++i, child = (child + step) % names) {
    if (node.DeleteNodeWithPath("n" + std::to_string(child)) != 0) return "not found";
  }
  return std::to_string(node.GetNumOfNode());
}

std::string DeleteAll(Node& node, std::size_t first, std::size_t step) {
  return DeleteEach(node, static_cast<std::size_t>(node.GetNumOfNode()), first, step);
}

TEST(WideNodeDeletion, TakesTheSameForEachChildInAnyOrder) {
  for (const std::size_t step : {std::size_t{1}, kMillion - 1, std::size_t{314'159}}) {
    const ApartRun run = RunApart([&] {
      const Node_var node = WideNode(kMillion);
      return DeleteAll(*node, step == 1 ? 0 : kMillion - 1, step);
    });
    EXPECT_EQ(run.answer, "0") << "step " << step << ": " << run.end;
  }
}

TEST(WideNodeDeletion, OfChildrenOfOneNameTakesTheFirstEachTime) {
  const ApartRun run = RunApart([&] {
    const Node_var node = NewNode("Wide");
    for (std::size_t i = 0; i < kMillion; ++i)
      AddString(*AddChild(*node, "n"), "Place", std::to_string(i));
    for (std::size_t i = 0; i < kMillion; ++i) {
      const Node_var first(node->GetNodeByName("n"));
      if (!first || first->GetValues()[0]->GetValue() != std::to_string(i)) return "not the first";
      if (node->DeleteNodeWithPath("n") != 0) return "not found";
    }
    return "done";
  });
  EXPECT_EQ(run.answer, "done") << run.end;
}

TEST(WideNodeDeletion, OfTheFirstOfTwoOfANameIsAsFastAndFindsTheSecond) {
  const std::size_t names = kMillion / 2;
  for (const std::size_t step : {std::size_t{1}, names - 1, std::size_t{314'159}}) {
    const ApartRun run = RunApart([&] {
      const Node_var node = WideNode(names);
      const Node_var second = WideNode(names);
      for (const Node_var& child : second->GetNodes()) node->AddNode(child.Get(), -1);
      std::string left = DeleteEach(*node, names, names - 1, step);
      for (std::size_t i = 0; i < names; ++i) {
        const Node_var found(node->GetNodeByName("n" + std::to_string(i)));
        if (found.Get() != second->GetNodes()[i].Get()) return std::string("not the second");
      }
      return left + " " + DeleteAll(*node, 0, step);
    });
    EXPECT_EQ(run.answer, std::to_string(names) + " 0") << "step " << step << ": " << run.end;
  }
}

TEST(WideNodeDeletion, OfChildrenThatSomebodyHoldsIsAsFast) {
  const ApartRun run = RunApart([&] {
    const Node_var node = WideNode(kMillion);
    const Node::Nodes held = node->GetNodes();
    return DeleteAll(*node, kMillion - 1, kMillion - 1) + " " + std::to_string(held.size());
  });
  EXPECT_EQ(run.answer, "0 " + std::to_string(kMillion)) << run.end;
}

TEST(WideNodeDeletion, OfChildrenThatAnotherNodeHoldsInAnotherOrderIsAsFast) {
  const ApartRun run = RunApart([&] {
    const Node_var node = WideNode(kMillion);
    const Node_var other = NewNode("Other");
    for (std::size_t i = kMillion; i-- > 0;) other->AddNode(node->GetNodes()[i].Get(), -1);
    const std::string left = DeleteAll(*node, 0, 1);
    return left + " " + DeleteAll(*other, 0, 1);
  });
  EXPECT_EQ(run.answer, "0 0") << run.end;
}

TEST(WideNodeDeletion, AndAddingTheSameChildAgainIsAsFast) {
  const ApartRun run = RunApart([&] {
    const Node_var node = WideNode(kMillion);
    for (std::size_t i = 0; i < kMillion; ++i) {
      const std::string name = "n" + std::to_string(i);
      const Node_var child(node->GetNodeByName(name));
      if (node->DeleteNodeWithPath(name) != 0) return "not found";
      node->AddNode(child.Get(), -1);
    }
    return node->GetNodes().front()->GetNodeName() == "n0" ? "as before" : "in another order";
  });
  EXPECT_EQ(run.answer, "as before") << run.end;
}

TEST(WideNodeDeletion, AndAskingForTheFirstAndTheLastInTurnIsAsFast) {
  const ApartRun run = RunApart([&] {
    const Node_var node = WideNode(kMillion);
    const std::string last = "n" + std::to_string(kMillion - 1);
    for (std::size_t i = 0; i + 1 < kMillion; ++i) {
      if (node->DeleteNodeWithPath("n" + std::to_string(i)) != 0) return "not found";
      const Node_var first(node->GetNode(0));
      if (first->GetNodeName() != "n" + std::to_string(i + 1)) return "not the first";
      if (Node_var(node->GetDefaultNode()).Get() != first.Get()) return "not the default";
      if (Node_var(node->GetNode(-1))->GetNodeName() != last) return "not the last";
    }
    return "done";
  });
  EXPECT_EQ(run.answer, "done") << run.end;
}

TEST(WideNodeDeletion, NearTheEndAndLookingAtTheListInTurnIsAsFast) {
  const ApartRun run = RunApart([&] {
    const Node_var node = WideNode(kMillion);
    const std::string last = "n" + std::to_string(kMillion - 1);
    for (std::size_t left = kMillion - 1; left > 0; --left) {
      if (node->DeleteNodeWithPath("n" + std::to_string(left - 1)) != 0) return "not found";
      if (node->GetNodes().size() != left) return "a hole is seen";
      if (left % 2 == 0) continue;
      const Node_var added = NewNode("added");
      node->AddNode(added.Get(), static_cast<int>(left) - 1);
      if (Node_var(node->GetNode(-1))->GetNodeName() != last) return "not before the last";
      if (node->DeleteNodeWithPath("added") != 0) return "not added";
    }
    return "done";
  });
  EXPECT_EQ(run.answer, "done") << run.end;
}

TEST(WideNodeDeletion, OfACloneIsAsFast) {
  const ApartRun run = RunApart([&] {
    const Node_var copy(WideNode(kMillion)->Clone());
    return DeleteAll(*copy, 0, 1);
  });
  EXPECT_EQ(run.answer, "0") << run.end;
}

TEST(WideNodeDeletion, TakesTheFirstPlaceOfAChildThatStandsThereTwice) {
  const Node_var node = WideNode(100);
  const Node_var twice = NewNode("twice");
  node->AddNode(twice.Get(), 10);
  node->AddNode(twice.Get(), -1);
  EXPECT_EQ(node->DeleteNodeWithPath("twice"), 0);
  EXPECT_EQ(node->GetNodes()[10]->GetNodeName(), "n10");
  EXPECT_EQ(node->GetNodes().back().Get(), twice.Get());
}

TEST(WideNodeDeletion, TakesTheFirstPlaceHoweverTheChildCameThereTwice) {
  const Node_var node = WideNode(100);
  const Node_var other = WideNode(100);
  // Last seen in another list, borrowed from this one, and after other deletions.
  const Node_var child(node->GetNode(20));
  other->AddNode(child.Get(), 90);
  node->AddNode(node->GetNodes()[20].Get(), -1);
  EXPECT_EQ(node->DeleteNodeWithPath("n70"), 0);
  EXPECT_EQ(other->DeleteNodeWithPath("n20"), 0);
  EXPECT_EQ(node->DeleteNodeWithPath("n20"), 0);
  EXPECT_EQ(node->GetNodes()[20]->GetNodeName(), "n21");
  EXPECT_EQ(node->GetNodes().back().Get(), child.Get());
  // Taken out, it comes again once only, and then a second time.
  EXPECT_EQ(node->DeleteNodeWithPath("n20"), 0);
  EXPECT_EQ(node->GetNodes().back()->GetNodeName(), "n99");
  node->AddNode(child.Get(), -1);
  node->AddNode(child.Get(), 5);
  EXPECT_EQ(node->DeleteNodeWithPath("n20"), 0);
  EXPECT_EQ(node->GetNodes()[5]->GetNodeName(), "n5");
  EXPECT_EQ(node->GetNodes().back().Get(), child.Get());
}

/// The names of the children by every way to ask for them.
void ExpectNames(const Node& node, const std::vector<std::string>& names) {
  ASSERT_EQ(node.GetNumOfNode(), static_cast<int>(names.size()));
  ASSERT_EQ(node.GetNodes().size(), names.size());
  for (std::size_t i = 0; i < names.size(); ++i) {
    ASSERT_EQ(node.GetNodes()[i]->GetNodeName(), names[i].c_str()) << i;
  }
}

/// Edits and asks at random; `nameOf` gives the names of new children, of which `names` are there.
template <class NameOf>
void ExpectAsPlainLists(NameOf nameOf) {
  std::mt19937 random(1);
  const auto below = [&](std::size_t bound) { return random() % bound; };
  const Node_var node = NewNode("Wide");
  std::vector<std::string> names;
  std::size_t next = 0;  // whoever goes through the list in order has come here
  for (int i = 0; i < 20000; ++i) {
    const std::string name = nameOf(names, below);
    const std::string known = names.empty() ? name : names[below(names.size())];
    const auto found = std::find(names.begin(), names.end(), known);
    const std::size_t action = below(names.size() < 150 ? 10 : 18);
    if (action == 0) {
      const std::size_t place = below(names.size() + 1);
      const bool isInside = place < names.size();
      node->AddNode(NewNode(name).Get(), isInside ? static_cast<int>(place) : -1);
      names.insert(names.begin() + static_cast<std::ptrdiff_t>(place), name);
    } else if (action < 6) {
      AddChild(*node, name);
      names.push_back(name);
    } else if (action == 6) {
      const bool isThere = std::find(names.begin(), names.end(), name) != names.end();
      ASSERT_EQ(static_cast<bool>(Node_var(node->GetNodeByName(name))), isThere);
    } else if (action < 9 && !names.empty()) {
      next = next + 1 < names.size() ? next + 1 : 0;
      const Node_var first(node->GetNodeByName(names[next]));
      ASSERT_TRUE(first);
      EXPECT_EQ(first->GetNodeName(), names[next].c_str());
    } else if (action == 9 && i % 50 == 0) {
      ExpectNames(*Node_var(node->Clone()), names);
      ExpectNames(*node, names);
    } else {
      ASSERT_EQ(node->DeleteNodeWithPath(known), found == names.end() ? 1 : 0);
      if (found != names.end()) names.erase(found);
    }
    ASSERT_EQ(node->GetNumOfNode(), static_cast<int>(names.size()));
  }
  ExpectNames(*node, names);
}

TEST(WideNodeDeletion, MixedWithEverythingElseLeavesTheListAsPlainOnesWould) {
  ExpectAsPlainLists(
      [](const auto&, const auto& below) { return "n" + std::to_string(below(120)); });
}

TEST(WideNodeDeletion, MixedWithEverythingElseDoesSoForNamesOfWhichHardlyAnyIsThereTwice) {
  int count = 0;
  ExpectAsPlainLists([&](const auto& names, const auto& below) {
    const bool isRepeated = below(300) == 0 && !names.empty();
    return isRepeated ? names[below(names.size())] : "n" + std::to_string(count++);
  });
}

}  // namespace
