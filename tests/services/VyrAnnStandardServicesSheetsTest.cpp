#include <algorithm>
#include <memory>

#include "CommaLocale.h"
#include "StandardFiles.h"
#include "VyrAnnStandardServices.h"

namespace {

using namespace standardfile;
using testing::ElementsAre;
using testing::IsEmpty;

using Services = VyrAnnStandardServices;

constexpr const char* kBadStructure = "Bad xml structure";

/// The records that a query hands out.
template <class Record>
struct Answer {
  HRESULT result = E_FAIL;
  int count = -1;
  std::unique_ptr<Record[]> records;
};

Answer<VyrDrwStdSheetFormat> FormatsOf(Services& services) {
  VyrDrwStdSheetFormat* formats = nullptr;
  Answer<VyrDrwStdSheetFormat> answer;
  answer.result = services.GetAvailableSheetFormats(&formats, answer.count);
  answer.records.reset(formats);
  return answer;
}

Answer<VyrDrwStdSheetStyle> StylesOf(Services& services) {
  VyrDrwStdSheetStyle* styles = nullptr;
  Answer<VyrDrwStdSheetStyle> answer;
  answer.result = services.GetAvailableSheetStyles(&styles, answer.count);
  answer.records.reset(styles);
  return answer;
}

class AnnStandardServicesSheets : public StandardFilesTest {
 protected:
  /// A standard of the current version, opened.
  Services& Open(const std::string& content) { return OpenAny(Version("220") + content); }
  Services& OpenAny(const std::string& content) {
    Write("SITE", content, ++openings_);
    opened_ = std::make_unique<Services>("SITE");
    return *opened_;
  }

  const std::string a3 = Format("A3", "420", "297", "LandscapeByDefault");

 private:
  long long openings_ = 0;
  std::unique_ptr<Services> opened_;
};

// --- Sheet formats -------------------------------------------------------------------------------

TEST_F(AnnStandardServicesSheets, FormatsComeInTheOrderOfTheStandard) {
  const auto formats = FormatsOf(Open(Formats(Format("A0", "1189", "841", "LandscapeByDefault") +
                                              Format("A4", "210.5", "297.25", "PortraitByDefault") +
                                              Format("P", "1", "2", "PortraitOnly") +
                                              Format("L", "3", "4", "LandscapeOnly"))));
  ASSERT_EQ(formats.result, S_OK);
  ASSERT_EQ(formats.count, 4);
  const VyrDrwStdSheetFormat* const format = formats.records.get();
  EXPECT_EQ(format[0].name, "A0");
  EXPECT_EQ(format[0].width, 1189);
  EXPECT_EQ(format[0].height, 841);
  EXPECT_EQ(format[0].orientation, 0);
  EXPECT_EQ(format[0].reserved, 0);
  EXPECT_EQ(format[1].name, "A4");
  EXPECT_EQ(format[1].width, 210.5);
  EXPECT_EQ(format[1].height, 297.25);
  EXPECT_EQ(format[1].orientation, 1);
  EXPECT_EQ(format[2].orientation, 2);
  EXPECT_EQ(format[3].orientation, 3);
}

TEST_F(AnnStandardServicesSheets, FieldsOfAFormatAreTakenByPosition) {
  const auto formats = FormatsOf(Open(Formats(
      Format({{"Height", "A3"}, {"Name", "420"}, {"", "297"}, {"Width", "LandscapeByDefault"}}))));
  ASSERT_EQ(formats.result, S_OK);
  EXPECT_EQ(formats.records[0].name, "A3");
  EXPECT_EQ(formats.records[0].width, 420);
  EXPECT_EQ(formats.records[0].height, 297);
}

TEST_F(AnnStandardServicesSheets, DecimalSeparatorOfTheLocaleMeansNothing) {
  Services& services =
      Open(Formats(Format("F", "297.5", "210.5", "PortraitOnly")) +
           Styles(Style("Default", {{"GlobalScale", "0.5"}, {"ProjectionMethod", "First angle"}})));
  const CommaLocale comma;
  ASSERT_TRUE(comma.IsSet()) << "the C library takes no locale made by a test";
  const auto formats = FormatsOf(services);
  ASSERT_EQ(formats.result, S_OK);
  EXPECT_EQ(formats.records[0].width, 297.5);
  EXPECT_EQ(formats.records[0].height, 210.5);
  double scale = 0;
  EXPECT_EQ(services.GetSheetScale(scale), S_OK);
  EXPECT_EQ(scale, 0.5);
  VyrDrwStdSheetStyle style;
  EXPECT_EQ(services.GetDefaultSheetStyle(style), S_FALSE);
  EXPECT_EQ(style.scale, 0.5);
}

struct BadFormat {
  const char* what;
  std::string format;
  int reportsOfItsOwn;
};

class BadFormatAmongGoodOnes : public AnnStandardServicesSheets,
                               public testing::WithParamInterface<BadFormat> {};

TEST_P(BadFormatAmongGoodOnes, MakesTheQueryFailAsAWhole) {
  const BadFormat& bad = GetParam();
  const auto formats = FormatsOf(Open(Formats(a3 + bad.format + a3)));
  EXPECT_EQ(formats.result, E_FAIL);
  EXPECT_EQ(formats.records, nullptr);
  EXPECT_EQ(formats.count, 3);
  EXPECT_EQ(TakeReports(),
            std::vector<std::string>(bad.reportsOfItsOwn + 1, Raised(kBadStructure)));
}

INSTANTIATE_TEST_SUITE_P(
    Formats, BadFormatAmongGoodOnes,
    testing::Values(
        BadFormat{"no value", Format({}), 0},
        BadFormat{"3 values", Format({{"Name", "A"}, {"Width", "1"}, {"Height", "2"}}), 0},
        BadFormat{"5 values",
                  Format({{"Name", "A"},
                          {"Width", "1"},
                          {"Height", "2"},
                          {"FormatOrientationType", "PortraitOnly"},
                          {"Color", "red"}}),
                  0},
        BadFormat{"width abc", Format("A", "abc", "297", "PortraitOnly"), 1},
        BadFormat{"height empty", Format("A", "420", "", "PortraitOnly"), 1},
        BadFormat{"width inf", Format("A", "inf", "297", "PortraitOnly"), 1},
        BadFormat{"orientation unknown", Format("A", "420", "297", "Portrait"), 1},
        BadFormat{"orientation in lower case", Format("A", "420", "297", "portraitonly"), 1}),
    [](const auto& test) {
      std::string name = test.param.what;
      std::replace(name.begin(), name.end(), ' ', '_');
      return name;
    });

TEST_F(AnnStandardServicesSheets, EveryBadFormatIsReported) {
  const std::string bad = Format("A", "abc", "297", "PortraitOnly");
  EXPECT_EQ(FormatsOf(Open(Formats(bad + bad))).result, E_FAIL);
  EXPECT_EQ(TakeReports(), std::vector<std::string>(3, Raised(kBadStructure)));
}

TEST_F(AnnStandardServicesSheets, FormatsFailWithoutTheirNode) {
  const auto formats = FormatsOf(Open(""));
  EXPECT_EQ(formats.result, E_FAIL);
  EXPECT_EQ(formats.count, -1);
}

TEST_F(AnnStandardServicesSheets, NoFormatIsAFailureWithTheCount0) {
  const auto formats = FormatsOf(Open(Formats("")));
  EXPECT_EQ(formats.result, E_FAIL);
  EXPECT_EQ(formats.count, 0);
  EXPECT_EQ(formats.records, nullptr);
}

TEST_F(AnnStandardServicesSheets, NullArgumentsFail) {
  Services& services = Open(Formats(a3) + Styles(Style("Default", {})));
  int count = 7;
  EXPECT_EQ(services.GetAvailableSheetFormats(nullptr, count), E_FAIL);
  EXPECT_EQ(services.GetAvailableSheetStyles(nullptr, count), E_FAIL);
  EXPECT_EQ(count, 7);
}

// --- The releases that brought sheets ------------------------------------------------------------

/// A standard without explicit version that is of release 10, 11, 12, 13 or 14 by its content, and
/// holds a format and a minimal style.
std::string OfRelease(int release) {
  std::string styles =
      Style("Default", {{"GlobalScale", "2"}, {"ProjectionMethod", "Third angle"}});
  std::string text = Node("Annotation", "") + Formats(Format("A3", "420", "297", "PortraitOnly"));
  // A node called otherwise is none of the styles, which release 11 brought.
  std::string content = Node("Sheet", styles);
  if (release >= 14) content += Node("DimensionsSystem", "");
  text += Node(release >= 11 ? "Styles" : "NoStyles", content);
  if (release >= 12) text += Node("Dimension", Node("CurvilinearLengthSymbol", ""));
  if (release < 13) text += Node("General", Node("DefaultToleranceFormat", ""));
  return text;
}

TEST_F(AnnStandardServicesSheets, FormatsBeginWithRelease14AndStylesWithRelease11) {
  const std::pair<int, int> versions[] = {{10, 2}, {11, 30}, {12, 40}, {13, 50}, {14, 60}};
  for (const auto& [release, expected] : versions) {
    Services& services = OpenAny(OfRelease(release));
    int version = 0;
    ASSERT_EQ(services.GetVersion(version), S_OK);
    ASSERT_EQ(version, expected);
    EXPECT_EQ(FormatsOf(services).result, release >= 14 ? S_OK : E_FAIL) << release;
    EXPECT_EQ(StylesOf(services).result, release >= 11 ? S_FALSE : E_FAIL) << release;
    VyrDrwStdSheetStyle style;
    EXPECT_EQ(services.GetDefaultSheetStyle(style), release >= 11 ? S_FALSE : E_FAIL) << release;
  }
}

TEST_F(AnnStandardServicesSheets, VersionThatCannotBeReadIsBelowAnyRelease) {
  const std::string sheets =
      Formats(a3) +
      Styles(Style("Default", {{"GlobalScale", "2"}, {"ProjectionMethod", "Third angle"}}));
  Services& services = OpenAny(Version("abc") + sheets);
  EXPECT_EQ(FormatsOf(services).result, E_FAIL);
  EXPECT_EQ(StylesOf(services).result, E_FAIL);
  VyrDrwStdSheetStyle style;
  EXPECT_EQ(services.GetDefaultSheetStyle(style), E_FAIL);
  TakeReports();
  double scale = 0;
  EXPECT_EQ(services.GetSheetScale(scale), S_OK) << "no threshold applies to the scale";
  EXPECT_EQ(scale, 2);
}

// --- Sheet styles --------------------------------------------------------------------------------

TEST_F(AnnStandardServicesSheets, CompleteStyleHasAllThatTheStandardSays) {
  Services& services =
      Open(Formats(a3) + Styles(Style("A3 ISO", {{"GlobalScale", "0.5"},
                                                 {"Format", "A3"},
                                                 {"Orientation", "Portrait"},
                                                 {"DisplayFormat", "No"},
                                                 {"ProjectionMethod", "Third angle"},
                                                 {"GenViewsPosMode", "FixedAxis"}})));
  const auto styles = StylesOf(services);
  ASSERT_EQ(styles.result, S_OK);
  ASSERT_EQ(styles.count, 1);
  const VyrDrwStdSheetStyle& style = styles.records[0];
  EXPECT_EQ(style.name, "A3 ISO");
  EXPECT_EQ(style.scale, 0.5);
  EXPECT_EQ(style.projectionMethod, 1);
  EXPECT_EQ(style.genViewsPosMode, 1);
  EXPECT_EQ(style.hasGenViewsPosMode, 1);
  EXPECT_EQ(style.orientation, 0);
  EXPECT_EQ(style.hasOrientation, 1);
  EXPECT_EQ(style.displayFormat, 0);
  EXPECT_EQ(style.hasDisplayFormat, 1);
  EXPECT_EQ(style.hasFormat, 1);
  EXPECT_EQ(style.format.name, "A3");
  EXPECT_EQ(style.format.width, 420);
}

TEST_F(AnnStandardServicesSheets, StylesComeInOrderWithTheResultOfTheLast) {
  const std::string complete = Style("Complete", {{"GlobalScale", "1"},
                                                  {"Format", "A3"},
                                                  {"Orientation", "Landscape"},
                                                  {"DisplayFormat", "Yes"},
                                                  {"ProjectionMethod", "First angle"},
                                                  {"GenViewsPosMode", "FixedCG"}});
  const std::string minimal =
      Style("Minimal", {{"GlobalScale", "1"}, {"ProjectionMethod", "First angle"}});
  EXPECT_EQ(StylesOf(Open(Formats(a3) + Styles(complete + minimal))).result, S_FALSE);
  const auto styles = StylesOf(Open(Formats(a3) + Styles(minimal + complete)));
  EXPECT_EQ(styles.result, S_OK);
  ASSERT_EQ(styles.count, 2);
  EXPECT_EQ(styles.records[0].name, "Minimal");
  EXPECT_EQ(styles.records[1].name, "Complete");
}

TEST_F(AnnStandardServicesSheets, OneBadStyleMakesTheQueryFailAsAWhole) {
  const auto styles =
      StylesOf(Open(Styles(Style("A", {{"GlobalScale", "1"}, {"ProjectionMethod", "First angle"}}) +
                           Style("B", {{"GlobalScale", "1"}}))));
  EXPECT_EQ(styles.result, E_FAIL);
  EXPECT_EQ(styles.records, nullptr);
  EXPECT_EQ(TakeReports(), std::vector<std::string>(2, Raised(kBadStructure)));
}

TEST_F(AnnStandardServicesSheets, StylesFailWithoutTheirNodeOrWithoutAny) {
  EXPECT_EQ(StylesOf(Open("")).count, -1);
  const auto none = StylesOf(Open(Styles("")));
  EXPECT_EQ(none.result, E_FAIL);
  EXPECT_EQ(none.count, 0);
  EXPECT_EQ(none.records, nullptr);
}

// --- The default style and its scale -------------------------------------------------------------

TEST_F(AnnStandardServicesSheets, DefaultStyleIsTheOneOfThatNameElseTheFirst) {
  const auto style = [](const char* name, const char* scale) {
    return Style(name, {{"GlobalScale", scale}, {"ProjectionMethod", "First angle"}});
  };
  VyrDrwStdSheetStyle found;
  double scale = 0;
  Services& named = Open(Styles(style("A", "2") + style("Default", "3")));
  EXPECT_EQ(named.GetDefaultSheetStyle(found), S_FALSE);
  EXPECT_EQ(found.name, "Default");
  EXPECT_EQ(named.GetSheetScale(scale), S_OK);
  EXPECT_EQ(scale, 3);
  Services& first = Open(Styles(style("A", "2") + style("B", "3")));
  EXPECT_EQ(first.GetDefaultSheetStyle(found), S_FALSE);
  EXPECT_EQ(found.name, "A");
  EXPECT_EQ(first.GetSheetScale(scale), S_OK);
  EXPECT_EQ(scale, 2);
}

TEST_F(AnnStandardServicesSheets, DefaultStyleLeavesNothingOfWhatTheCallerHad) {
  VyrDrwStdSheetStyle style;
  style.hasFormat = 1;
  style.format.name = "old";
  style.orientation = 0;
  style.hasOrientation = 1;
  EXPECT_EQ(
      Open(Styles(Style("Default", {{"GlobalScale", "1"}, {"ProjectionMethod", "First angle"}})))
          .GetDefaultSheetStyle(style),
      S_FALSE);
  EXPECT_EQ(style.hasFormat, 0);
  EXPECT_EQ(style.format.name, "");
  EXPECT_EQ(style.orientation, 1);
  EXPECT_EQ(style.hasOrientation, 0);
}

TEST_F(AnnStandardServicesSheets, DefaultStyleAndScaleFailWithoutAStyle) {
  VyrDrwStdSheetStyle style;
  double scale = 7;
  Services& none = Open("");
  EXPECT_EQ(none.GetDefaultSheetStyle(style), E_FAIL);
  EXPECT_EQ(none.GetSheetScale(scale), E_FAIL);
  EXPECT_THAT(TakeReports(), IsEmpty());
  Services& empty = Open(Styles(""));
  EXPECT_EQ(empty.GetDefaultSheetStyle(style), E_FAIL);
  EXPECT_EQ(empty.GetSheetScale(scale), E_FAIL);
  EXPECT_EQ(TakeReports().size(), 2u) << "the tree reports that there is no default node";
  EXPECT_EQ(scale, 7);
}

TEST_F(AnnStandardServicesSheets, ScaleIsReadWhateverElseTheStyleHolds) {
  double scale = 0;
  EXPECT_EQ(Open(Styles(Style("Default", {{"GlobalScale", "0.25"}}))).GetSheetScale(scale), S_OK);
  EXPECT_EQ(scale, 0.25);
}

TEST_F(AnnStandardServicesSheets, ScaleThatIsNoNumberKeepsTheOldOne) {
  double scale = 7;
  EXPECT_EQ(Open(Styles(Style("Default", {{"GlobalScale", "one"}}))).GetSheetScale(scale), S_OK);
  EXPECT_EQ(scale, 7);
}

TEST_F(AnnStandardServicesSheets, ScaleFailsWithoutItsValue) {
  double scale = 7;
  EXPECT_EQ(Open(Styles(Style("Default", {}))).GetSheetScale(scale), E_FAIL);
  EXPECT_EQ(Open(Styles(Node("Default", Node("GlobalScale", "")))).GetSheetScale(scale), E_FAIL);
  EXPECT_EQ(scale, 7);
}

// --- A shipped standard --------------------------------------------------------------------------

TEST_F(AnnStandardServicesSheets, ShippedISOStandardHasTheFormatsOfISO216) {
  VyrStdServices::SetFolders({HOL_STANDARDS});
  Services services("ISO");
  const auto formats = FormatsOf(services);
  ASSERT_EQ(formats.result, S_OK);
  ASSERT_GE(formats.count, 5);
  constexpr int sides[] = {1189, 841, 594, 420, 297, 210};
  for (int i = 0; i < 5; ++i) {
    const VyrDrwStdSheetFormat& format = formats.records[static_cast<std::size_t>(i)];
    EXPECT_EQ(format.name, "A" + std::to_string(i) + " ISO");
    EXPECT_EQ(format.width, sides[i]);
    EXPECT_EQ(format.height, sides[i + 1]);
    EXPECT_EQ(format.orientation, LandscapeByDefault);
  }
}

}  // namespace
