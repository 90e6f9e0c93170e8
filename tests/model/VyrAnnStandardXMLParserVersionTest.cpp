#include <functional>

#include "ModelTest.h"

namespace modeltest {
namespace {

using testing::ElementsAre;
using testing::EndsWith;

class Version : public ModelTest {
 protected:
  Document document;
};

TEST_F(Version, AnAcceptedExplicitVersionIsTheResult) {
  for (int version = 110; version <= 220; version += 10) {
    Document fresh;
    fresh.AddValueWithPath("Root:Version:int:" + std::to_string(version), 1);
    EXPECT_EQ(fresh.GetVersion(), version);
  }
}

TEST_F(Version, IsReadLikeAScanfInteger) {
  constexpr std::pair<const char*, int> rows[] = {
      {" 120", 120}, {"+130", 130}, {"140 beta", 140}, {"0150", 150}, {"\t160.9", 160}};
  for (const auto& [text, version] : rows) {
    Document fresh;
    fresh.AddValueWithPath(std::string("Root:Version:int:") + text, 1);
    EXPECT_EQ(fresh.GetVersion(), version) << text;
  }
}

TEST_F(Version, ATextThatIsNoAcceptedVersionMakesItMinusOne) {
  // The last is 110 more than 32 bits hold.
  for (const char* text :
       {"abc", "", "0", "-110", "1", "60", "100", "115", "225", "230", "4294967406"}) {
    Document fresh;
    fresh.AddValueWithPath(std::string("Root:Version:int:") + text, 1);
    EXPECT_EQ(fresh.GetVersion(), -1) << text;
    EXPECT_THAT(TakeReports(),
                ElementsAre(RefusedBy(kParserUnitName), EndsWith("[VyrAnnStandardXMLParser]")))
        << text;
  }
}

TEST_F(Version, ANodeThatIsNoWrapperOfOneIntMakesItMinusOne) {
  const std::function<void(Document&)> builds[] = {
      [](Document& d) { d.AddValueWithPath("Root:Version:string:110", 1); },
      [](Document& d) { d.AddValueWithPath("Root:Version:float:110", 1); },
      [](Document& d) { d.AddNodeWithPath("Root:Version", 0); },
      [](Document& d) {
        d.AddNodeWithPath("Root:Version", 1);
        d.AddValueWithPath("Root.Version::int:110", 1);
      },
      [](Document& d) {
        d.AddValueWithPath("Root:Version:int:110", 1);
        d.AddValueWithPath("Root.Version::int:110", -1);
      },
      [](Document& d) {
        d.AddValueWithPath("Root:Version:int:110", 1);
        d.AddNodeWithPath("Root.Version:Child", 0);
      },
  };
  for (const auto& build : builds) {
    Document fresh;
    build(fresh);
    EXPECT_EQ(fresh.GetVersion(), -1) << DescribeAt(fresh, "Root");
    EXPECT_THAT(TakeReports(),
                ElementsAre(RefusedBy(kParserUnitName), EndsWith("[VyrAnnStandardXMLParser]")));
  }
}

TEST_F(Version, TheFirstVersionNodeCounts) {
  document.AddValueWithPath("Root:Version:int:130", 1);
  document.AddValueWithPath("Root:Version:int:abc", 1);
  document.AddNodeWithPath("Root:General", 0);
  document.AddValueWithPath("Root.General:Version:int:abc", 1);
  EXPECT_EQ(document.GetVersion(), 130);
}

TEST_F(Version, OfADocumentWithoutOneIsTheReleaseBeforeTheFirstThatItIsOlderThan) {
  struct Step {
    const char* add;     // path of a node that the release brought, each level added as needed
    const char* remove;  // path of a node that the release took away
    int version;
  };
  constexpr Step steps[] = {
      {"General.DefaultToleranceFormat", nullptr, 1},
      {"Annotation", nullptr, 2},
      {"Styles", nullptr, 30},
      {"Dimension.CurvilinearLengthSymbol", nullptr, 40},
      {nullptr, "General.DefaultToleranceFormat", 50},
      {"Styles.DimensionsSystem", nullptr, 60},
      {"ViewsSet", nullptr, 70},
      {"Annotation.Roughness.ExtensionLine.GapToSurf", nullptr, 80},
      {"EngineeringSymbols", nullptr, 90},
      {"Annotation.BlankBackground", nullptr, 100},
  };
  EXPECT_EQ(document.GetVersion(), 1);
  for (const Step& step : steps) {
    if (step.remove != nullptr) {
      EXPECT_EQ(document.DeleteNodeWithPath(std::string("Root.") + step.remove), 0);
    }
    Node_var node(document.GetNodeWithPath("Root"));
    std::string rest = step.add == nullptr ? "" : step.add;
    while (!rest.empty()) {
      const std::string name = rest.substr(0, rest.find('.'));
      rest = rest.size() == name.size() ? "" : rest.substr(name.size() + 1);
      const Node_var found(node->GetNodeByName(name));
      node = found ? found : AddChild(*node, name);
    }
    EXPECT_EQ(document.GetVersion(), step.version) << (step.add ? step.add : step.remove);
  }
}

TEST_F(Version, LaterReferenceNodesDoNotMakeUpForAMissingEarlierOne) {
  for (const char* command : {"Root:Annotation", "Root.Annotation:BlankBackground", "Root:ViewsSet",
                              "Root:EngineeringSymbols"}) {
    document.AddNodeWithPath(command, 0);
  }
  EXPECT_EQ(document.GetVersion(), 2) << "Styles is missing";
}

}  // namespace
}  // namespace modeltest
