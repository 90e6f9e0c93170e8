#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "HostileText.h"
#include "ModelTest.h"
#include "ProcessApart.h"
#include "VyrAnnStandardChanges.h"
#include "VyrAnnStandardXMLParser.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using namespace modeltest;

using Change = VyrAnnStandardChange;

/// "+ path after", "- path before", "~ path before > after".
std::vector<std::string> Lines(const std::vector<Change>& changes) {
  std::vector<std::string> lines;
  for (const Change& change : changes) {
    const std::string path = change.path.CString();
    const std::string before = change.before.CString();
    const std::string after = change.after.CString();
    switch (change.kind) {
      case Change::Kind::Added:
        lines.push_back("+ " + path + " " + after);
        break;
      case Change::Kind::Deleted:
        lines.push_back("- " + path + " " + before);
        break;
      case Change::Kind::Changed:
        lines.push_back("~ " + path + " " + before + " > " + after);
        break;
    }
  }
  return lines;
}

class Changes : public testing::Test {
 protected:
  Changes() {
    document_.AddNodeWithPath("Root:A", 0);
    document_.AddValueWithPath("Root.A:Length:float.m.0.0:2.0", 1);
    document_.AddValueWithPath("Root.A:Bold:enum.YesNo:No", 1);
    document_.AddNodeWithPath("Root:List", 0);
    for (const char* name : {"one", "two"}) {
      document_.AddNodeWithPath("Root.List:Entry", 1);
      document_.AddValueWithPath(std::string("Root.List.Entry:Name:string:") + name, -1);
    }
    before_ = VyrAnnStandardXMLNode_var(Root()->Clone());
  }

  VyrAnnStandardXMLNode_var Root() {
    return VyrAnnStandardXMLNode_var(document_.GetNodeWithPath("Root"));
  }
  std::vector<std::string> Found() { return Lines(VyrCompareStandards(*before_, *Root())); }

  VyrAnnStandardXMLParser document_;
  VyrAnnStandardXMLNode_var before_;
};

TEST_F(Changes, EqualTreesHaveNone) {
  EXPECT_THAT(Found(), IsEmpty());
}

TEST_F(Changes, TextTypeAndQualifierOfAWrappedValueCount) {
  document_.ChangeValueWithPath("Root.A.Length:3.0");
  document_.DeleteNodeWithPath("Root.A.Bold");
  document_.AddValueWithPath("Root.A:Bold:enum.BlankProp:AreaFill", 1);
  EXPECT_THAT(Found(), ElementsAre("~ Root.A.Length float from 0.0 '2.0' > float from 0.0 '3.0'",
                                   "~ Root.A.Bold enum YesNo 'No' > enum BlankProp 'AreaFill'"));
}

TEST_F(Changes, WhatWasAddedOrDeletedIsListedWhole) {
  document_.DeleteNodeWithPath("Root.A");
  document_.AddNodeWithPath("Root:B", 0);
  document_.AddNodeWithPath("Root.B:C", 0);
  document_.AddValueWithPath("Root.B.C:N:int:1", 1);
  EXPECT_THAT(Found(), ElementsAre("- Root.A node", "- Root.A.Length float from 0.0 '2.0'",
                                   "- Root.A.Bold enum YesNo 'No'", "+ Root.B node",
                                   "+ Root.B.C node", "+ Root.B.C.N int '1'"));
}

TEST_F(Changes, EntriesOfOneNameAreToldApartByTheirOrder) {
  document_.AddNodeWithPath("Root.List:Entry", 1);
  document_.AddValueWithPath("Root.List.Entry:Name:string:three", -1);
  document_.AddValueWithPath("Root.List.Entry:Name:string:again", 2);
  EXPECT_THAT(Found(), ElementsAre("+ Root.List.Entry[2].Name[2] string 'again'",
                                   "+ Root.List.Entry[3] instance",
                                   "+ Root.List.Entry[3].Name string 'three'"));
}

TEST_F(Changes, LiteralThatIsInsertedMovesNoOther) {
  document_.AddNodeWithPath("Root:E", 1);
  for (const char* literal : {"Root.E::string:a", "Root.E::string:b"}) {
    document_.AddValueWithPath(literal, 1);
  }
  before_ = VyrAnnStandardXMLNode_var(Root()->Clone());
  document_.AddValueWithPath("Root.E::string:new:1", 1);
  EXPECT_THAT(Found(), ElementsAre("+ Root.E.'new' string 'new'"));
}

TEST_F(Changes, TreesOfAnyDepthAreCompared) {
  VyrAnnStandardXMLNode_var deepest = Root();
  for (int i = 0; i < 5000; ++i) {
    const VyrAnnStandardXMLNode_var child(
        new VyrAnnStandardXMLNode(VyrAnnStandardXMLNode::NodePlain, "D"));
    deepest->AddNode(child.Get(), -1);
    deepest = child;
  }
  EXPECT_EQ(Found().size(), 5000u);
}

TEST_F(Changes, OfADeepTreeHaveThePathsThatLeadFromItsOuterNamesOnlyAsFarAsIsTold) {
  VyrAnnStandardXMLNode_var lowest = Root();
  std::size_t told = 0;
  constexpr int levels = 4000;
  for (int i = 0; i < levels; ++i) lowest = AddChild(*lowest, "D");
  const std::vector<Change> changes = VyrCompareStandards(*before_, *Root());
  ASSERT_EQ(changes.size(), std::size_t{levels});
  for (const Change& change : changes) told += change.path.View().size();
  EXPECT_LE(told, levels * (Change::kMostOfPath + std::string("...").size()));
  // "Root" and two bytes a level.
  constexpr std::size_t lastWhole = (Change::kMostOfPath - 4) / 2;
  EXPECT_EQ(changes[lastWhole - 1].path.View().size(), Change::kMostOfPath);
  EXPECT_THAT(changes[lastWhole - 1].path.CString(), testing::StartsWith("Root.D.D"));
  EXPECT_THAT(changes[lastWhole].path.CString(), testing::StartsWith("...ot.D.D"));
  EXPECT_THAT(changes.back().path.CString(), testing::EndsWith(".D.D.D"));
}

TEST_F(Changes, PathThatIsToldFromItsEndBeginsWithAWholeCharacter) {
  const std::string wide = std::string("\xE2\x82\xAC") + std::string(Change::kMostOfPath - 2, 'n');
  const VyrAnnStandardXMLNode_var added = AddChild(*Root(), wide);
  AddString(*added, "field", "a");
  AddString(*added, "other", "b");
  EXPECT_THAT(Found(), ElementsAre("+ ..." + wide + " node", "+ ..." + wide + ".field string 'a'",
                                   "+ ..." + wide + ".other string 'b'"));
}

TEST(StandardChanges, OfATreeAsDeepAsItsFileIsLongAreTold) {
  const auto deep = [](const char* text) {
    Node_var top = NewNode("Root");
    Node_var lowest = top;
    for (std::size_t i = 0; i < kMillion; ++i) lowest = AddChild(*lowest, "n");
    AddString(*AddChild(*lowest, "last"), "", text);
    return top;
  };
  const ApartRun run = RunApart([&] {
    const auto changes = VyrCompareStandards(*deep("old"), *deep("new"));
    if (changes.size() != 1) return std::string("another number");
    return std::to_string(changes[0].path.View().size()) + " " + changes[0].before.CString() +
           changes[0].after.CString();
  });
  const std::size_t size = std::string("...").size() + Change::kMostOfPath;
  EXPECT_EQ(run.answer, std::to_string(size) + " string 'old'string 'new'") << run.end;
}

}  // namespace
