#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "DiagnosticsCapture.h"
#include "HostDOM.h"
#include "StandardInMemory.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;

const std::string kUnit = " [VyrDifTransientStandard]";
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(TransientStandardValueType, IsThatOfTheChildrenWithTheirNumber) {
  const DiagnosticsCapture capture;
  struct {
    const char* element;
    int type;
  } const cases[] = {
      {"std:intval", 3},  {"std:floatval", 4}, {"std:strval", 6},
      {"std:enumval", 7}, {"std:typeval", 8},
  };
  for (const auto& test : cases) {
    for (int count = 1; count <= 3; ++count) {
      std::string content = "<std:node name='n'>\n";
      for (int i = 0; i < count; ++i) content += "<" + std::string(test.element) + "/>\n ";
      const TransientStandard standard = StandardOf(content + "</std:node>");
      VyrDftStandardValueType type = VyrDftUnknownValue;
      int found = 77;
      EXPECT_EQ(standard->GetValueType("n", &type, &found), S_OK) << test.element;
      EXPECT_EQ(static_cast<int>(type), test.type);
      EXPECT_EQ(found, count);
      EXPECT_EQ(standard->GetValueType("n", &type, nullptr), S_OK);
    }
  }
  EXPECT_THAT(capture.errors, IsEmpty());
}

void ExpectUnexpected(const std::string& children, int typeAfter, const std::string& report) {
  SCOPED_TRACE(children);
  const TransientStandard standard = StandardOf("<std:node name='n'>" + children + "</std:node>");
  const DiagnosticsCapture capture;
  auto type = VyrDftFloatValue;
  int count = 77;
  EXPECT_EQ(standard->GetValueType("n", &type, &count), E_UNEXPECTED);
  EXPECT_EQ(static_cast<int>(type), typeAfter);
  EXPECT_EQ(count, 0);
  EXPECT_THAT(CheckTexts(capture.errors), ElementsAre(report));
}

TEST(TransientStandardValueType, ChildrenOfSeveralTypesAreReportedAndUnexpected) {
  const std::string mixed = ": All Nodes have not the same type" + kUnit;
  ExpectUnexpected("<std:intval>1</std:intval><std:strval>a</std:strval>", 4, mixed);
  ExpectUnexpected("<std:strval/><std:strval/><std:intval/>", 4, mixed);
  ExpectUnexpected("<std:intval/><!-- a note -->", 4, mixed);
  ExpectUnexpected("text<std:intval/>", 4, mixed);
}

TEST(TransientStandardValueType, TypesWithoutANumberAreReportedAndUnexpected) {
  const std::string unknown = ": Unknown standard value type!" + kUnit;
  for (const char* children :
       {"<std:colorval>1 2 3</std:colorval>", "<std:node/>", "<other/>", "text", "", " \n "}) {
    ExpectUnexpected(children, 0, unknown);
  }
}

TEST(TransientStandardValueType, NothingThatMatchesFailsAndLeavesTheType) {
  const TransientStandard standard = StandardOf("<std:node name='n'><std:intval/></std:node>");
  const DiagnosticsCapture capture;
  auto type = VyrDftFloatValue;
  int count = 77;
  EXPECT_EQ(standard->GetValueType("x", &type, &count), E_FAIL);
  EXPECT_EQ(type, VyrDftFloatValue);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(standard->GetValueType(nullptr, &type, &count), E_INVALIDARG);
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST(TransientStandardValueType, NullTypeIsReportedAndInvalid) {
  const TransientStandard standard = StandardOf("<std:node name='n'><std:intval/></std:node>");
  const DiagnosticsCapture capture;
  int count = 77;
  EXPECT_EQ(standard->GetValueType("n", nullptr, &count), E_INVALIDARG);
  EXPECT_EQ(count, 77);
  EXPECT_THAT(CheckTexts(capture.errors), ElementsAre("ON POINTER : NULL handler" + kUnit));
}

TEST(TransientStandardValueType, FormWithoutACountNeverAnswers) {
  const TransientStandard standard = StandardOf("<std:node name='n'><std:intval/></std:node>");
  auto type = VyrDftFloatValue;
  for (VyrDftStandardValueType* out : {&type, static_cast<VyrDftStandardValueType*>(nullptr)}) {
    const DiagnosticsCapture capture;
    EXPECT_EQ(standard->GetValueType("n", out), E_INVALIDARG);
    EXPECT_EQ(type, VyrDftFloatValue);
    EXPECT_THAT(CheckTexts(capture.errors), ElementsAre("ON POINTER : NULL handler" + kUnit));
  }
}

TEST(TransientStandardValueType, TracesTheNamesOfTheChildren) {
  const TransientStandard standard =
      StandardOf("<std:node name='n'><std:intval/><std:strval/></std:node>");
  const TraceOn trace("DifCptWithStd");
  const DiagnosticsCapture capture;
  VyrDftStandardValueType type;
  standard->GetValueType("n", &type, nullptr);
  standard->GetValueType("x", &type, nullptr);
  EXPECT_THAT(capture.traces, IsSupersetOf({"{ VyrDifTransientStandard::GetValueType\n",
                                            "  Types are:\n", "  \t'std:intval'\n",
                                            "  \t'std:strval'\n", "  No matching node found!\n"}));
}

TEST(TransientStandardValueType, SheetFormatsOfShippedStandardsAreCompound) {
  for (const char* name : {"ISO", "JIS", "ANSI-ASME"}) {
    const TransientStandard standard = ShippedStandard(name);
    auto type = VyrDftUnknownValue;
    int count = 0;
    EXPECT_EQ(standard->GetValueType("SheetFormat", &type, &count), S_OK);
    EXPECT_EQ(type, VyrDftCompoundValue);
    EXPECT_EQ(static_cast<std::size_t>(count), TextsOf(*standard, "SheetFormat.Name").size());
  }
}

std::string Thicknesses(const std::vector<std::string>& texts) {
  std::string rows;
  for (const std::string& text : texts) {
    rows += "<std:typeval name='T'><std:floatval name='mm'>" + text +
            "</std:floatval>"
            "</std:typeval>";
  }
  return "<std:node name='LineThickness'>" + rows + "</std:node>";
}

TEST(TransientStandardThickness, IsTheNearestRowAndTheFirstOfTwo) {
  const DiagnosticsCapture capture;
  const TransientStandard standard = StandardOf(Thicknesses({"0.5", "1", "3", "1", "0.5"}));
  const double farAway = static_cast<double>(1e25F);
  struct {
    double thickness;
    int index;
  } const cases[] = {
      {0, 1},    {0.5, 1},  {0.74, 1},        {0.75, 1},    {0.76, 2}, {1, 2},         {2, 2},
      {2.01, 3}, {1000, 3}, {farAway * 2, 0}, {farAway, 0}, {1e24, 1}, {kInfinity, 0}, {-0.0, 1},
  };
  for (int pass = 0; pass < 2; ++pass) {
    for (const auto& test : cases) {
      int index = 77;
      EXPECT_EQ(standard->GetLineThicknessIndex(test.thickness, &index), S_OK);
      EXPECT_EQ(index, test.index) << test.thickness;
    }
  }
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST(TransientStandardThickness, RowsAsFarAwayAsTheLimitOfSinglePrecisionDoNotCount) {
  const TransientStandard standard = StandardOf(Thicknesses({"0"}));
  const double limit = static_cast<double>(1e25F);
  int index = 77;
  EXPECT_EQ(standard->GetLineThicknessIndex(limit, &index), S_OK);
  EXPECT_EQ(index, 0);
  EXPECT_EQ(standard->GetLineThicknessIndex(std::nextafter(limit, 0), &index), S_OK);
  EXPECT_EQ(index, 1);
}

TEST(TransientStandardThickness, EmptyTableHasIndexZero) {
  for (const char* content : {"", "<std:node name='LineThickness'/>"}) {
    const TransientStandard standard = StandardOf(content);
    int index = 77;
    EXPECT_EQ(standard->GetLineThicknessIndex(0.5, &index), S_OK);
    EXPECT_EQ(index, 0);
  }
}

TEST(TransientStandardThickness, NegativeOrNoNumberIsInvalid) {
  const TransientStandard standard = StandardOf(Thicknesses({"0.5"}));
  int index = 77;
  for (const double thickness : {-0.1, -kInfinity, std::nan("")}) {
    EXPECT_EQ(standard->GetLineThicknessIndex(thickness, &index), E_INVALIDARG);
    EXPECT_EQ(index, 77);
  }
  EXPECT_EQ(standard->GetLineThicknessIndex(0.5, nullptr), E_INVALIDARG);
}

TEST(TransientStandardThickness, TableEndsAtTheFirstRowThatFailsWhichIsReportedEachTime) {
  const TransientStandard standard = StandardOf(Thicknesses({"0.5", "wide", "3"}));
  for (int pass = 0; pass < 2; ++pass) {
    const DiagnosticsCapture capture;
    int index = 0;
    EXPECT_EQ(standard->GetLineThicknessIndex(3, &index), S_OK);
    EXPECT_EQ(index, 1);
    EXPECT_EQ(capture.errors.size(), 1u);
  }
}

TEST(TransientStandardThickness, TableThatCouldNotBeSearchedIsSearchedAgain) {
  HostDOM host(StandardText(Thicknesses({"0.5"})));
  const TransientStandard standard(new VyrDifTransientStandard("any.xml", "Any"));
  const DiagnosticsCapture capture;
  int index = 77;
  host.evaluateResult = E_FAIL;
  EXPECT_EQ(standard->GetLineThicknessIndex(0.5, &index), S_OK);
  EXPECT_EQ(index, 0);
  EXPECT_FALSE(capture.errors.empty());
  host.evaluateResult = S_OK;
  EXPECT_EQ(standard->GetLineThicknessIndex(0.5, &index), S_OK);
  EXPECT_EQ(index, 1);
}

TEST(TransientStandardThickness, TableIsSearchedOnce) {
  HostDOM host(StandardText(Thicknesses(std::vector<std::string>(300, "0.5"))));
  const TransientStandard standard(new VyrDifTransientStandard("any.xml", "Any"));
  int index = 0;
  EXPECT_EQ(standard->GetLineThicknessIndex(3, &index), S_OK);
  // So many others that no search is remembered any more.
  for (int i = 0; i < 20; ++i) standard->HasNode(std::to_string(i).c_str());
  EXPECT_EQ(host.expressions.size(), 21u);
  EXPECT_EQ(standard->GetLineThicknessIndex(3, &index), S_OK);
  EXPECT_EQ(host.expressions.size(), 21u);
  // What was read on the way is remembered as any value is.
  double thickness = 0;
  EXPECT_EQ(standard->GetValue("LineThickness.mm", 300, thickness), S_OK);
  EXPECT_EQ(host.expressions.size(), 21u);
}

/// The thicknesses in the text of a shipped file.
std::vector<double> ThicknessesInFile(const std::string& file) {
  const std::string text = ReadWholeFile(std::string(HOL_STANDARDS "/") + file + ".xml");
  const std::size_t begin = text.find("\n  <std:node name=\"LineThickness\">");
  const std::size_t end = text.find("\n  </std:node>", begin);
  const std::string field = "<std:floatval name=\"mm\">";
  std::vector<double> thicknesses;
  for (std::size_t at = text.find(field, begin); at < end; at = text.find(field, at + 1)) {
    double thickness = 0;
    std::from_chars(text.data() + at + field.size(), text.data() + text.size(), thickness);
    thicknesses.push_back(thickness);
  }
  return thicknesses;
}

TEST(TransientStandardThickness, RowsOfShippedStandardsAreFoundByTheirOwnThickness) {
  for (const char* name : {"ISO", "JIS", "ANSI-ASME"}) {
    const TransientStandard standard = ShippedStandard(name);
    const std::vector<double> thicknesses = ThicknessesInFile(name);
    ASSERT_GE(thicknesses.size(), 8u);
    for (const double asked : thicknesses) {
      const auto first = std::find(thicknesses.begin(), thicknesses.end(), asked);
      int index = 0;
      EXPECT_EQ(standard->GetLineThicknessIndex(asked, &index), S_OK);
      EXPECT_EQ(index, first - thicknesses.begin() + 1) << name << ' ' << asked;
    }
    const auto widest = std::max_element(thicknesses.begin(), thicknesses.end());
    int index = 0;
    EXPECT_EQ(standard->GetLineThicknessIndex(1000, &index), S_OK);
    EXPECT_EQ(index, widest - thicknesses.begin() + 1) << name;
  }
}

}  // namespace
