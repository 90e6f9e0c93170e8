#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "DiagnosticsCapture.h"
#include "FakeDOM.h"
#include "VyrDftXMLNodeIterator.h"

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::StartsWith;

using Iterator = VyrDftXMLNodeIterator;

const auto kNextWhenDone = StartsWith("BOOL IS FALSE: ");
const auto kFromIterator = EndsWith("[VyrDftXMLNodeIterator]");

VyrIDOMNode_var NodeOf(const char* xml) {
  return DocumentElementOf(xml);
}

std::string NameOf(const VyrIDOMNode_var& node) {
  VyrUnicodeString name;
  if (!node) return "null";
  EXPECT_EQ(node->GetNodeName(name), S_OK);
  return name.CString();
}

/// An iterator over a fake list of a fake node.
struct FakeWalk {
  VyrVar<FakeElement> node = FakeElement::Make();
  VyrVar<FakeNodeList> list = FakeNodeList::Make();

  FakeWalk() {
    node->children = list;
    list->item = FakeElement::Make();
  }
  Iterator Start(Iterator::Direction direction) const { return Iterator(node, direction); }
};

TEST(NodeIterator, DirectionsHaveFixedValues) {
  EXPECT_EQ(static_cast<int>(Iterator::Forward), 0);
  EXPECT_EQ(static_cast<int>(Iterator::Backward), 1);
}

TEST(NodeIterator, ForwardVisitsEveryChildInOrder) {
  const DiagnosticsCapture capture;
  std::vector<std::string> names;
  Iterator iterator(NodeOf("<r><a/>text<b/><!--c--><d/></r>"), Iterator::Forward);
  for (; iterator.IsDone() == 0; iterator.Next()) names.push_back(NameOf(iterator.CurrentItem()));
  EXPECT_THAT(names, ElementsAre("a", "#text", "b", "#comment", "d"));
  EXPECT_FALSE(iterator.CurrentItem());
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST(NodeIterator, NextWhenDoneIsReportedAndDoesNothing) {
  Iterator iterator(NodeOf("<r><a/></r>"), Iterator::Forward);
  iterator.Next();
  for (const bool development : {false, true}) {
    const DiagnosticsCapture capture(development);
    iterator.Next();
    EXPECT_EQ(iterator.IsDone(), 1);
    const auto& reports = development ? capture.abends : capture.errors;
    EXPECT_THAT(CheckTexts(reports), ElementsAre(testing::AllOf(kNextWhenDone, kFromIterator)));
  }
}

TEST(NodeIterator, ForwardOverNoChildrenIsDoneAtOnce) {
  const DiagnosticsCapture capture;
  const Iterator iterator(NodeOf("<r/>"), Iterator::Forward);
  EXPECT_EQ(iterator.IsDone(), 1);
  EXPECT_FALSE(iterator.CurrentItem());
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST(NodeIterator, BackwardStartsAtTheLastChildAndIsNeverDone) {
  DiagnosticsCapture capture;
  Iterator iterator(NodeOf("<r><a/><b/><c/></r>"), Iterator::Backward);
  std::vector<std::string> names;
  for (int i = 0; i < 3; ++i, iterator.Next()) {
    EXPECT_EQ(iterator.IsDone(), 0);
    names.push_back(NameOf(iterator.CurrentItem()));
  }
  EXPECT_THAT(names, ElementsAre("c", "b", "a"));
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST(NodeIterator, BackwardPastTheFirstChildIsReportedAndGivesNull) {
  Iterator iterator(NodeOf("<r><a/></r>"), Iterator::Backward);
  for (int steps = 1; steps <= 3; ++steps) {
    iterator.Next();
    const DiagnosticsCapture capture;
    EXPECT_EQ(iterator.IsDone(), 0);
    EXPECT_FALSE(iterator.CurrentItem());
    EXPECT_THAT(CheckTexts(capture.errors), ElementsAre(kFromIterator));
  }
}

TEST(NodeIterator, BackwardOverNoChildrenIsNeverDone) {
  const DiagnosticsCapture capture;
  Iterator iterator(NodeOf("<r/>"), Iterator::Backward);
  EXPECT_EQ(iterator.IsDone(), 0);
  iterator.Next();
  EXPECT_EQ(iterator.IsDone(), 0);
  EXPECT_THAT(capture.errors, IsEmpty());
  EXPECT_FALSE(iterator.CurrentItem());
  EXPECT_THAT(CheckTexts(capture.errors), ElementsAre(kFromIterator));
}

TEST(NodeIterator, ChildrenThatCannotBeReadAreReportedAndCountAsNone) {
  struct {
    const char* what;
    void (*spoil)(FakeWalk&);
  } const cases[] = {
      {"the list cannot be read", [](FakeWalk& walk) { walk.node->childrenResult = E_FAIL; }},
      {"the list is null", [](FakeWalk& walk) { walk.node->children = {}; }},
      {"the length cannot be read", [](FakeWalk& walk) { walk.list->lengthResult = E_FAIL; }},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.what);
    FakeWalk walk;
    test.spoil(walk);
    const DiagnosticsCapture capture;
    const Iterator iterator = walk.Start(Iterator::Forward);
    EXPECT_THAT(CheckTexts(capture.errors), ElementsAre(kFromIterator));
    EXPECT_EQ(iterator.IsDone(), 1);
    EXPECT_FALSE(iterator.CurrentItem());
  }
}

TEST(NodeIterator, NullListIsReportedAgainByEachItem) {
  FakeWalk walk;
  walk.node->children = {};
  const DiagnosticsCapture capture;
  const Iterator iterator = walk.Start(Iterator::Forward);
  EXPECT_FALSE(iterator.CurrentItem());
  const auto report = "ON POINTER : NULL handler [VyrDftXMLNodeIterator]";
  EXPECT_THAT(CheckTexts(capture.errors), ElementsAre(report, report));
}

TEST(NodeIterator, NullNodeIsReportedAndHasNoChildren) {
  const DiagnosticsCapture capture;
  const Iterator iterator({}, Iterator::Forward);
  EXPECT_EQ(iterator.IsDone(), 1);
  EXPECT_THAT(CheckTexts(capture.errors),
              ElementsAre("ON POINTER : NULL handler [VyrDftXMLNodeIterator]"));
}

TEST(NodeIterator, ItemThatCannotBeReadIsReportedAndNull) {
  for (const auto direction : {Iterator::Forward, Iterator::Backward}) {
    FakeWalk failing;
    failing.list->itemResult = E_FAIL;
    FakeWalk empty;
    empty.list->item = {};
    for (const FakeWalk* walk : {&failing, &empty}) {
      const DiagnosticsCapture capture;
      EXPECT_FALSE(walk->Start(direction).CurrentItem());
      EXPECT_THAT(CheckTexts(capture.errors), ElementsAre(kFromIterator));
    }
    const DiagnosticsCapture capture;
    EXPECT_TRUE(FakeWalk().Start(direction).CurrentItem());
    EXPECT_THAT(capture.errors, IsEmpty());
  }
}

}  // namespace
