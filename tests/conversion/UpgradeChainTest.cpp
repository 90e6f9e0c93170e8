#include <map>
#include <set>
#include <string>
#include <vector>

#include "TemporaryFolder.h"
#include "UpgradeRun.h"

// What holds for the whole chain, for every parent standard and both states of the option bit.

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class UpgradeChain : public testing::TestWithParam<Origin> {};

INSTANTIATE_TEST_SUITE_P(Standards, UpgradeChain, testing::ValuesIn(AllOrigins()), OriginName);

int CountChildren(VyrAnnStandardXMLParser& document, const char* path) {
  const VyrAnnStandardXMLNode_var node(document.GetNodeWithPath(path));
  return node ? node->GetNumOfNode() : -1;
}

int CountLineTypes(VyrAnnStandardXMLParser& document) {
  const VyrAnnStandardXMLNode_var node(document.GetNodeWithPath("Root.LineTypes"));
  int count = 0;
  for (int i = 0; node && i < node->GetNumOfNode(); ++i) {
    const VyrAnnStandardXMLNode_var child(node->GetNode(i));
    if (child->GetNodeName().View().starts_with("LineType")) ++count;
  }
  return count;
}

TEST_P(UpgradeChain, AStandardSavedAtAnyVersionIsDatedWithThatVersion) {
  const TemporaryFolder folder;
  for (const int version : kVersions) {
    UpgradeRun run(GetParam(), version);
    const std::string path = folder / ("at-" + std::to_string(version) + ".xml");
    ASSERT_GE(run.Standard().SaveToFile(path.c_str()), 0);
    VyrAnnStandardXMLParser document;
    ASSERT_EQ(document.DecodeXML(path, 1), 0);
    EXPECT_EQ(document.GetVersion(), version);
    VyrDrwParseStandard read(path);
    read.Decode();
    EXPECT_EQ(read.GetVersion(), version);
    EXPECT_EQ(read.GetParentStandard(), VyrUnicodeString(GetParam().parent)) << version;
  }
}

TEST_P(UpgradeChain, AStopAtAnyVersionMakesNoDifferenceInTheEnd) {
  const TemporaryFolder folder;
  UpgradeRun straight(GetParam(), kCurrentVersion);
  for (const int version : kVersions) {
    UpgradeRun run(GetParam(), version);
    const std::string path = folder / ("at-" + std::to_string(version) + ".xml");
    ASSERT_GE(run.Standard().SaveToFile(path.c_str()), 0);
    VyrDrwParseStandard read(path);
    read.Decode();
    auto options = OptionsOf(GetParam().isShipped);
    ASSERT_GE(read.Upgrade(kCurrentVersion, options), 0);
    VyrAnnStandardXMLParser& document = *VyrDrwParseStandardAccess::Document(read);
    EXPECT_THAT(ChangeLines(straight.Document(), document), IsEmpty()) << version;
    EXPECT_EQ(SavedText(document), SavedText(straight.Document())) << version;
  }
}

TEST_P(UpgradeChain, EveryStepLeavesAConsistentDocumentAndFailsNoCheck) {
  const DiagnosticsCapture capture;
  VyrDrwParseStandard standard(std::string(HOL_STANDARDS "/legacy/") + GetParam().parent + ".txt");
  ASSERT_GE(standard.DecodeText(), 0);
  auto options = OptionsOf(GetParam().isShipped);
  std::vector<int> versions;
  const auto check = [&](const char* step, int version, VyrAnnStandardXMLParser& document) {
    versions.push_back(version);
    if (version >= 30) {
      EXPECT_EQ(document.Check(), 1) << step << testing::PrintToString(capture.traces);
    }
    EXPECT_EQ(document.GetVersion(), version) << step;
  };
  ASSERT_GE(standard.Upgrade(-1, options, check), 0);
  EXPECT_THAT(versions, testing::ElementsAreArray(kVersions));
  EXPECT_THAT(CheckTexts(capture.errors), IsEmpty());
  EXPECT_THAT(capture.abends, IsEmpty());
}

TEST_P(UpgradeChain, AStandardOfTheCurrentVersionIsLeftAsItIs) {
  const TemporaryFolder folder;
  UpgradeRun run(GetParam(), kCurrentVersion);
  const std::string first = folder / "first.xml";
  const std::string second = folder / "second.xml";
  ASSERT_GE(run.Standard().SaveToFile(first.c_str()), 0);
  VyrDrwParseStandard read(first);
  read.Decode();
  auto options = OptionsOf(GetParam().isShipped);
  int steps = 0;
  const DiagnosticsCapture capture;
  ASSERT_GE(read.Upgrade(-1, options, [&](auto...) { ++steps; }), 0);
  ASSERT_GE(read.SaveToFile(second.c_str()), 0);
  EXPECT_EQ(steps, 0);
  EXPECT_THAT(capture.errors, IsEmpty());
  EXPECT_THAT(ChangeLines(run.Document(), *VyrDrwParseStandardAccess::Document(read)), IsEmpty());
  EXPECT_EQ(ReadWholeFile(second), ReadWholeFile(first));
}

TEST_P(UpgradeChain, ListsHaveTheirCountsAtEveryVersion) {
  // What a list counts from a version on, until its next row.
  struct Count {
    const char* path;
    int version;
    int forIsoAndJis;
    int forAnsiAndAsme;
  };
  const bool isShipped = GetParam().isShipped;
  const std::vector<Count> counts = {
      {"Root.Frames", 2, 20, 20},
      {"Root.Frames", 40, 21, 21},
      {"Enum", 30, 47, 47},
      {"Root.SheetFormat", 60, 8, 9},
      {"Root.Patterns.AngleList", 30, 4, 4},
      {"Root.Patterns.hatching", 30, 15, 15},
      {"Root.Patterns.dotting", 30, 8, 8},
      {"Root.Patterns.dotting", 170, 2, 2},
      {"Root.Patterns.coloring", 30, 11, 11},
      {"Root.Patterns.coloring", 170, 14, 14},
      {"Root.Patterns.motif", 30, 7, 7},
      {"Root.Patterns.vector", 220, 3, 3},
      {"Root.EngineeringSymbols", 90, 41, 41},
      {"Root.EngineeringSymbols", 130, 48, 47},
      {"Root.EngineeringSymbols", 140, 62, 61},
      {"Root.EngineeringSymbols", 170, 64, 61},
  };
  const DiagnosticsCapture capture;
  VyrDrwParseStandard standard(std::string(HOL_STANDARDS "/legacy/") + GetParam().parent + ".txt");
  ASSERT_GE(standard.DecodeText(), 0);
  auto options = OptionsOf(isShipped);
  std::map<std::string, int> expected;
  std::map<int, int> symbols;
  const auto check = [&](const char* step, int version, VyrAnnStandardXMLParser& document) {
    if (version == 40) expected.erase("Enum");
    // A shipped standard gets further symbols from here on.
    if (version == 180) expected.erase("Root.EngineeringSymbols");
    for (const Count& count : counts) {
      if (count.version != version) continue;
      expected[count.path] = GetParam().IsIsoOrJis() ? count.forIsoAndJis : count.forAnsiAndAsme;
    }
    for (const auto& [path, count] : expected) {
      EXPECT_EQ(CountChildren(document, path.c_str()), count) << path << " after " << step;
    }
    if (version >= 30) {
      EXPECT_EQ(CountLineTypes(document), 63) << step;
    }
    symbols[version] = CountChildren(document, "Root.EngineeringSymbols");
  };
  ASSERT_GE(standard.Upgrade(-1, options, check), 0);
  EXPECT_EQ(symbols[190] - symbols[180], isShipped && GetParam().IsIsoOrJis() ? 4 : 0);
  EXPECT_EQ(symbols[210], symbols[190]);
  EXPECT_EQ(symbols[220] - symbols[210], isShipped ? 17 : 0);
  if (!isShipped) {
    EXPECT_EQ(symbols[180], symbols[170]);
  }
}

TEST_P(UpgradeChain, SymbolsCountTheirPositionsFromOne) {
  UpgradeRun run(GetParam(), kCurrentVersion);
  const std::vector<std::string> positions = run.Fields("Root.EngineeringSymbols", "Position");
  ASSERT_FALSE(positions.empty());
  for (std::size_t i = 0; i < positions.size(); ++i) {
    EXPECT_EQ(positions[i], std::to_string(i + 1));
  }
  const std::vector<std::string> names = run.Fields("Root.EngineeringSymbols", "Name");
  EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), names.size())
      << "a symbol stands twice";
}

TEST_P(UpgradeChain, AStandardCanBeUpgradedFromEveryVersionToTheNextOne) {
  UpgradeRun run(GetParam(), 1);
  for (std::size_t i = 1; i < std::size(kVersions); ++i) {
    EXPECT_THAT(run.Step(kVersions[i]), IsEmpty()) << kVersions[i];
    UpgradeRun straight(GetParam(), kVersions[i]);
    EXPECT_EQ(SavedText(run.Document()), SavedText(straight.Document())) << kVersions[i];
  }
}

TEST_P(UpgradeChain, ATargetBetweenTwoVersionsRunsTheStepsUpToIt) {
  struct Target {
    int target;
    int reached;
  };
  for (const Target& target : {Target{25, 2}, Target{29, 2}, Target{59, 50}, Target{215, 210}}) {
    UpgradeRun run(GetParam(), target.target);
    EXPECT_EQ(run.Document().GetVersion(), target.reached) << target.target;
  }
}

TEST_P(UpgradeChain, AStandardOfVersion3Till29HasNoStyles) {
  // None was ever released: such a standard counts as past the step that adds the styles.
  for (const int version : {3, 29, 30}) {
    UpgradeRun run(GetParam(), 2);
    VyrDrwParseStandardAccess::Version(run.Standard()) = version;
    auto options = OptionsOf(GetParam().isShipped);
    std::vector<std::string> steps;
    const DiagnosticsCapture capture;
    run.Standard().Upgrade(50, options,
                           [&](const char* step, int, auto&) { steps.emplace_back(step); });
    EXPECT_THAT(steps, ElementsAre("UpgradeTo40", "UpgradeTo50")) << version;
  }
}

}  // namespace
