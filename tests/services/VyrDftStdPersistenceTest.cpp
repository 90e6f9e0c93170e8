#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <type_traits>
#include <vector>

#include "DiagnosticsCapture.h"
#include "ReleaseTable.h"
#include "VyrDftStdPersistence.h"

namespace {

using Persistence = VyrDftStdPersistence;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(Persistence, NamesAreTheAgreedOnes) {
  EXPECT_STREQ(Persistence::VyrDftStdType, "drafting");
  EXPECT_STREQ(Persistence::VyrDftStdExtension, "xml");
  EXPECT_STREQ(Persistence::VyrDftStdNodeSeparator, ".");
  EXPECT_STREQ(Persistence::VyrDftStdNodeGeneral, "General");
  EXPECT_STREQ(Persistence::VyrDftStdNodeDress, "DressUp");
  EXPECT_STREQ(Persistence::VyrDftStdNodeDimension, "Dimension");
  EXPECT_STREQ(Persistence::VyrDftStdNodeTolerance, "ToleranceFormats");
  EXPECT_STREQ(Persistence::VyrDftStdNodeValue, "ValueFormats");
  EXPECT_STREQ(Persistence::VyrDftStdNodeThickness, "LineThickness");
  EXPECT_STREQ(Persistence::VyrDftStdNodeLinetypes, "LineTypes");
  EXPECT_STREQ(Persistence::VyrDftStdNodeStyles, "Styles");
  static_assert(std::is_same_v<decltype(Persistence::VyrDftStdType), const char* const>);
}

TEST(Persistence, CurrentVersionIs220) {
  EXPECT_EQ(Persistence::GetCurrentVersion(), 220);
}

TEST(Persistence, ReleasesHaveTheirVersionsAndEveryOtherNumberHasNone) {
  std::map<int, int> versions = {
      {9, 1},     {10, 2},    {11, 30},   {12, 40},   {13, 50},   {14, 60},
      {15, 70},   {16, 80},   {17, 90},   {18, 100},  {20, 110},  {21, 120},
      {210, 130}, {211, 140}, {212, 140}, {213, 150}, {214, 160}, {215, 170},
      {216, 180}, {417, 190}, {418, 190}, {419, 200}, {420, 210}, {421, 220},
  };
  for (int release = 1; release <= 8; ++release) versions[release] = 0;
  const DiagnosticsCapture capture;
  for (int release = -5; release <= 1000; ++release) {
    const auto known = versions.find(release);
    EXPECT_EQ(Persistence::GetVersionFromRelease(release),
              known == versions.end() ? -1 : known->second)
        << release;
  }
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST(Persistence, SecondArgumentOfAReleaseMeansNothing) {
  for (const int ignored : {-1, 0, 19, 421}) {
    EXPECT_EQ(Persistence::GetVersionFromRelease(14, ignored), 60);
    EXPECT_EQ(Persistence::GetVersionFromRelease(19, ignored), -1);
  }
}

TEST(Persistence, OnlyTheTwelveExplicitVersionsAreValid) {
  const DiagnosticsCapture capture;
  for (int version = -10; version <= 1000; ++version) {
    const bool isExplicit = version >= 110 && version <= 220 && version % 10 == 0;
    EXPECT_EQ(Persistence::CheckExplicitVersionNumberIsValid(version), isExplicit ? 1 : 0)
        << version;
  }
  EXPECT_THAT(capture.errors, IsEmpty()) << "the shipped table passes its own check";
}

TEST(ReleaseTable, ExplicitVersionsStandInRisingOrder) {
  EXPECT_THAT(kExplicitVersions,
              ElementsAre(110, 120, 130, 140, 150, 160, 170, 180, 190, 200, 210, 220));
}

TEST(ReleaseTable, SelfCheckReportsEveryBadVersionInOrder) {
  const std::string tooLow = ": Accepted version is < R20 version?! [Unit]";
  const std::string tooHigh = ": Accepted version is > current version?! [Unit]";
  const std::string notFound = "BOOL IS FALSE: Current version not found?! [Unit]";
  struct {
    std::vector<int> versions;
    std::vector<std::string> reports;
  } const cases[] = {
      {{110, 220}, {}},
      {{220}, {}},
      {{220, 115}, {}},
      {{109, 220}, {tooLow}},
      {{220, 221}, {tooHigh}},
      {{230, 100, 220, 0}, {tooHigh, tooLow, tooLow}},
      {{110, 210}, {notFound}},
      {{}, {notFound}},
      {{-1, 1000}, {tooLow, tooHigh, notFound}},
  };
  for (const auto& test : cases) {
    for (const bool development : {false, true}) {
      const DiagnosticsCapture capture(development);
      CheckExplicitVersions(test.versions, VyrSourceUnit("Unit"));
      EXPECT_EQ(CheckTexts(development ? capture.abends : capture.errors), test.reports);
      EXPECT_EQ(capture.printed, capture.abends);
    }
  }
}

TEST(Persistence, ReferenceNodeOfEachReleaseFrom10To18) {
  struct {
    int release;
    const char* path;
    int status;
  } const cases[] = {
      {10, "Annotation", 0},
      {11, "Styles", 0},
      {12, "Dimension.CurvilinearLengthSymbol", 0},
      {13, "General.DefaultToleranceFormat", 1},
      {14, "Styles.DimensionsSystem", 0},
      {15, "ViewsSet", 0},
      {16, "Annotation.Roughness.ExtensionLine.GapToSurf", 0},
      {17, "EngineeringSymbols", 0},
      {18, "Annotation.BlankBackground", 0},
  };
  const DiagnosticsCapture capture;
  for (const auto& test : cases) {
    VyrUnicodeString path;
    auto status = test.status == 0 ? Persistence::NodeRemoved : Persistence::NodeAdded;
    EXPECT_EQ(Persistence::GetReferenceNodeForRelease(test.release, path, status), S_OK);
    EXPECT_EQ(path, test.path);
    EXPECT_EQ(static_cast<int>(status), test.status) << test.path;
  }
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST(Persistence, ReleaseWithoutAReferenceNodeIsReportedAndLeavesTheOutputs) {
  for (const bool development : {false, true}) {
    for (const int release : {-1, 0, 1, 9, 19, 20, 21, 210, 421}) {
      const DiagnosticsCapture capture(development);
      VyrUnicodeString path = "as before";
      auto status = Persistence::NodeRemoved;
      EXPECT_EQ(Persistence::GetReferenceNodeForRelease(release, path, status), E_FAIL);
      EXPECT_EQ(path, "as before");
      EXPECT_EQ(status, Persistence::NodeRemoved);
      EXPECT_THAT(CheckTexts(development ? capture.abends : capture.errors),
                  ElementsAre(": Invalid input value! [VyrDftStdPersistence]"));
    }
  }
}

TEST(Persistence, VersionNodeIsRelativeToTheRoot) {
  EXPECT_EQ(Persistence::GetVersionNodePath(), "Version");
}

}  // namespace
