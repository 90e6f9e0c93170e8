#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "DiagnosticsCapture.h"
#include "SheetStyleReader.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Node = VyrAnnStandardXMLNode;
using Node_var = VyrAnnStandardXMLNode_var;
using Value = VyrAnnStandardXMLValue;
using Fields = std::vector<std::pair<const char*, const char*>>;

constexpr const char* kBadStructure = ": Bad xml structure [VyrAnnStandardServices]";

void AddFormat(Node& formats, std::initializer_list<const char*> values) {
  const Node_var format(new Node(Node::NodeInstance, "Formats"));
  for (const char* text : values) {
    const VyrAnnStandardXMLValue_var value(new Value(Value::ValueString, text, {}, 0));
    format->AddValue(value.Get(), -1);
  }
  formats.AddNode(format.Get(), -1);
}

class StyleReading : public testing::Test {
 protected:
  StyleReading() : formats(new Node(Node::NodePlain, "SheetFormat")) {
    AddFormat(*formats, {"A3", "420", "297", "LandscapeByDefault"});
  }

  HRESULT Read(const Fields& fields) {
    const Node_var node(new Node(Node::NodePlain, "Style"));
    for (const auto& [name, text] : fields) {
      node->AddNodeWithValue(name, Value::ValueString, text, {}, -1);
    }
    return SheetStyleReader(formats.Get()).Read(*node, style);
  }
  std::vector<std::string> TakeReports() { return CheckTexts(std::exchange(log.errors, {})); }
  void TearDown() override { EXPECT_THAT(log.errors, IsEmpty()); }

  DiagnosticsCapture log;
  Node_var formats;
  VyrDrwStdSheetStyle style;
};

// --- Completeness --------------------------------------------------------------------------------

const Fields kAllFields = {
    {"GlobalScale", "2"}, {"ProjectionMethod", "Third angle"}, {"GenViewsPosMode", "FixedAxis"},
    {"Format", "A3"},     {"Orientation", "Portrait"},         {"DisplayFormat", "No"}};

TEST_F(StyleReading, IsCompleteWithAllFieldsMinimalWithTheFirstTwoOrThreeAndBadOtherwise) {
  // Every choice of the six fields.
  for (unsigned choice = 0; choice < 64; ++choice) {
    Fields fields;
    for (unsigned i = 0; i < kAllFields.size(); ++i) {
      if ((choice >> i & 1U) != 0) fields.push_back(kAllFields[i]);
    }
    const HRESULT expected = choice == 63 ? S_OK : choice == 3 || choice == 7 ? S_FALSE : E_FAIL;
    EXPECT_EQ(Read(fields), expected) << choice;
    const std::size_t reports = expected == E_FAIL ? 1 : 0;
    EXPECT_EQ(TakeReports(), std::vector<std::string>(reports, kBadStructure)) << choice;
  }
}

TEST_F(StyleReading, OrientationBesideScaleAndProjectionMethodIsRefused) {
  EXPECT_EQ(Read({{"GlobalScale", "2"}, {"ProjectionMethod", "Third angle"}}), S_FALSE);
  EXPECT_EQ(
      Read(
          {{"GlobalScale", "2"}, {"ProjectionMethod", "Third angle"}, {"Orientation", "Portrait"}}),
      E_FAIL);
  EXPECT_THAT(TakeReports(), ElementsAre(kBadStructure));
}

TEST_F(StyleReading, OrderOfTheFieldsMeansNothing) {
  EXPECT_EQ(Read({kAllFields.rbegin(), kAllFields.rend()}), S_OK);
  EXPECT_EQ(style.scale, 2);
  EXPECT_EQ(style.format.name, "A3");
}

TEST_F(StyleReading, RefusedStyleLeavesThatOfTheCallerAlone) {
  style.name = "mine";
  EXPECT_EQ(Read({{"GlobalScale", "2"}}), E_FAIL);
  EXPECT_EQ(style.name, "mine");
  EXPECT_EQ(style.scale, 1);
  TakeReports();
}

TEST_F(StyleReading, MinimalStyleHasDefaultsAndNoFlags) {
  ASSERT_EQ(Read({{"GlobalScale", "2"}, {"ProjectionMethod", "Third angle"}}), S_FALSE);
  EXPECT_EQ(style.name, "Style");
  EXPECT_EQ(style.scale, 2);
  EXPECT_EQ(style.projectionMethod, 1);
  EXPECT_EQ(style.hasGenViewsPosMode, 0);
  EXPECT_EQ(style.orientation, 1);
  EXPECT_EQ(style.hasOrientation, 0);
  EXPECT_EQ(style.displayFormat, 1);
  EXPECT_EQ(style.hasDisplayFormat, 0);
  EXPECT_EQ(style.hasFormat, 0);
}

// --- Fields --------------------------------------------------------------------------------------

struct BadField {
  const char* name;
  const char* text;
};

class BadFieldOfAStyle : public StyleReading, public testing::WithParamInterface<BadField> {};

TEST_P(BadFieldOfAStyle, CountsAsNotRead) {
  Fields fields = kAllFields;
  for (auto& [name, text] : fields) {
    if (std::string(name) == GetParam().name) text = GetParam().text;
  }
  EXPECT_EQ(Read(fields), E_FAIL);
  EXPECT_THAT(TakeReports(), ElementsAre(kBadStructure));
}

INSTANTIATE_TEST_SUITE_P(
    Fields, BadFieldOfAStyle,
    testing::Values(BadField{"GlobalScale", "one"}, BadField{"GlobalScale", ""},
                    BadField{"Orientation", "portrait"}, BadField{"Orientation", "PortraitOnly"},
                    BadField{"DisplayFormat", "yes"}, BadField{"DisplayFormat", "1"},
                    BadField{"ProjectionMethod", "First Angle"},
                    BadField{"ProjectionMethod", "First angle "},
                    BadField{"GenViewsPosMode", "Fixed"}, BadField{"Format", "A9"},
                    BadField{"Format", "a3"}, BadField{"Format", ""}));

TEST_F(StyleReading, OtherWordsOfAFieldGiveTheOtherCodes) {
  ASSERT_EQ(Read({{"GlobalScale", "2"},
                  {"ProjectionMethod", "First angle"},
                  {"GenViewsPosMode", "FixedCG"},
                  {"Format", "A3"},
                  {"Orientation", "Landscape"},
                  {"DisplayFormat", "Yes"}}),
            S_OK);
  EXPECT_EQ(style.projectionMethod, 0);
  EXPECT_EQ(style.genViewsPosMode, 0);
  EXPECT_EQ(style.hasGenViewsPosMode, 1);
  EXPECT_EQ(style.orientation, 1);
  EXPECT_EQ(style.hasOrientation, 1);
  EXPECT_EQ(style.displayFormat, 1);
  EXPECT_EQ(style.hasDisplayFormat, 1);
}

TEST_F(StyleReading, FirstOfSeveralFieldsOfOneNameCounts) {
  ASSERT_EQ(Read({{"GlobalScale", "2"}, {"GlobalScale", "3"}, {"ProjectionMethod", "First angle"}}),
            S_FALSE);
  EXPECT_EQ(style.scale, 2);
}

TEST_F(StyleReading, FirstValueOfAFieldCountsAndAFieldWithoutOneIsMissing) {
  const Node_var node(new Node(Node::NodePlain, "Style"));
  node->AddNodeWithValue("GlobalScale", Value::ValueFloat, "2", {}, -1);
  const VyrAnnStandardXMLValue_var second(new Value(Value::ValueFloat, "3", {}, 0));
  node->GetNodes().front()->AddValue(second.Get(), -1);
  node->AddNodeWithValue("ProjectionMethod", Value::ValueString, "First angle", {}, -1);
  const Node_var empty(new Node(Node::NodePlain, "Orientation"));
  node->AddNode(empty.Get(), -1);
  EXPECT_EQ(SheetStyleReader(nullptr).Read(*node, style), S_FALSE);
  EXPECT_EQ(style.scale, 2);
}

// --- The format ----------------------------------------------------------------------------------

TEST_F(StyleReading, FirstFormatOfTheNameIsTaken) {
  AddFormat(*formats, {});
  AddFormat(*formats, {"A3", "1", "2", "PortraitOnly"});
  ASSERT_EQ(Read(kAllFields), S_OK);
  EXPECT_EQ(style.format.width, 420);
  EXPECT_EQ(style.hasFormat, 1);
}

TEST_F(StyleReading, FormatThatCannotBeReadIsMissingThoughALaterOneOfTheNameIsGood) {
  formats = Node_var(new Node(Node::NodePlain, "SheetFormat"));
  AddFormat(*formats, {"A3", "abc", "297", "PortraitOnly"});
  AddFormat(*formats, {"A3", "420", "297", "PortraitOnly"});
  EXPECT_EQ(Read(kAllFields), E_FAIL);
  EXPECT_THAT(TakeReports(), ElementsAre(kBadStructure, kBadStructure))
      << "one of the format, one of the style";
}

TEST_F(StyleReading, UnknownFormatLeavesAMinimalStyle) {
  EXPECT_EQ(
      Read({{"GlobalScale", "2"}, {"ProjectionMethod", "First angle"}, {"Format", "unknown"}}),
      S_FALSE);
  EXPECT_EQ(style.hasFormat, 0);
  EXPECT_EQ(style.format.name, "");
}

}  // namespace
