#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "DiagnosticsCapture.h"
#include "HostDOM.h"
#include "StandardInMemory.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string kUnit = " [VyrDifTransientStandard]";
const std::string kWrongType = "BOOL IS FALSE: Unexpected value type node in standard x" + kUnit;
const std::string kNoNumber = "BOOL IS FALSE: the value is no number of its type" + kUnit;

constexpr auto kTable =
    "<std:node name='T'>"
    "<std:typeval name='Row'><std:intval name='i'>3</std:intval><std:floatval name='f'>0.5"
    "</std:floatval><std:strval name='s'>first</std:strval></std:typeval>\n"
    "<std:typeval name='Row'><std:intval name='i'>1</std:intval><std:floatval name='f'>-2"
    "</std:floatval><std:enumval name='s'>second</std:enumval></std:typeval>\n"
    "<std:typeval name='Row'><std:intval name='i'>2</std:intval><std:floatval name='f'>1e3"
    "</std:floatval><std:strval name='s'>third</std:strval></std:typeval></std:node>";

TEST(TransientStandardArray, HoldsEveryMatchInDocumentOrder) {
  const DiagnosticsCapture capture;
  const TransientStandard standard = StandardOf(kTable);
  for (int pass = 0; pass < 2; ++pass) {
    EXPECT_THAT(NumbersOf<int>(*standard, "T.i"), ElementsAre(3, 1, 2));
    EXPECT_THAT(NumbersOf<double>(*standard, "T.f"), ElementsAre(0.5, -2, 1000));
    EXPECT_THAT(TextsOf(*standard, "T.s"), ElementsAre("first", "second", "third"));
  }
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST(TransientStandardArray, ColorIsOneIntegerForEachComponent) {
  struct {
    const char* text;
    std::vector<int> components;
  } const cases[] = {
      {"140 0 255", {140, 0, 255}}, {"  1   2 3  ", {1, 2, 3}},
      {"1\t2\n3", {1, 2, 3}},       {"7", {7}},
      {"-1 +2", {-1, 2}},           {"1 2 3 4 5", {1, 2, 3, 4, 5}},
  };
  for (const auto& test : cases) {
    const TransientStandard standard =
        StandardOf("<std:colorval name='c'>" + std::string(test.text) +
                   "</std:colorval>"
                   "<std:node name='n'><std:colorval>" +
                   std::string(test.text) + "</std:colorval></std:node>");
    EXPECT_EQ(NumbersOf<int>(*standard, "c"), test.components) << test.text;
    EXPECT_EQ(NumbersOf<int>(*standard, "n"), test.components) << test.text;
  }
}

TEST(TransientStandardArray, ColorsAndIntegersStandSideBySide) {
  const TransientStandard standard = StandardOf(
      "<std:intval name='c'>1</std:intval><std:colorval name='c'>2 3 4</std:colorval>"
      "<std:intval name='c'>5</std:intval>");
  EXPECT_THAT(NumbersOf<int>(*standard, "c"), ElementsAre(1, 2, 3, 4, 5));
}

template <class Number>
void ExpectFailure(VyrDifTransientStandard& standard, const char* path, HRESULT result,
                   const std::string& report) {
  for (int pass = 0; pass < 2; ++pass) {
    const DiagnosticsCapture capture;
    Number numbers[8] = {};
    int count = 77;
    EXPECT_EQ(standard.GetValue(path, numbers, &count), result) << path;
    EXPECT_EQ(count, 77) << path;
    EXPECT_THAT(CheckTexts(capture.errors),
                report.empty() ? testing::Matcher<std::vector<std::string>>(IsEmpty())
                               : ElementsAre(report))
        << path;
  }
}

void ExpectTextFailure(VyrDifTransientStandard& standard, const char* path, HRESULT result,
                       const std::string& report) {
  const DiagnosticsCapture capture;
  VyrUnicodeString* texts = nullptr;
  int count = 77;
  EXPECT_EQ(standard.GetValue(path, &texts, &count), result) << path;
  EXPECT_EQ(texts, nullptr);
  EXPECT_EQ(count, 77);
  EXPECT_THAT(
      CheckTexts(capture.errors),
      report.empty() ? testing::Matcher<std::vector<std::string>>(IsEmpty()) : ElementsAre(report));
}

TEST(TransientStandardArray, NothingThatMatchesFails) {
  const TransientStandard standard = StandardOf(kTable);
  ExpectFailure<int>(*standard, "T.x", E_FAIL, "");
  ExpectFailure<double>(*standard, "T.x", E_FAIL, "");
  ExpectTextFailure(*standard, "T.x", E_FAIL, "");
  ExpectFailure<int>(*standard, "it's", E_FAIL, "BOOL IS FALSE: XPath cannot be evaluated" + kUnit);
}

TEST(TransientStandardArray, MatchOfAnotherTypeAnywhereIsReportedAndUnexpected) {
  const TransientStandard standard = StandardOf(
      "<std:intval name='a'>1</std:intval><std:floatval name='a'>2</std:floatval>"
      "<std:floatval name='b'>1</std:floatval><std:intval name='b'>2</std:intval>"
      "<std:strval name='c'>1</std:strval><std:colorval name='c'>2</std:colorval>"
      "<std:colorval name='d'>1 2 3</std:colorval>");
  ExpectFailure<int>(*standard, "a", E_UNEXPECTED, kWrongType);
  ExpectFailure<int>(*standard, "c", E_UNEXPECTED, kWrongType);
  ExpectFailure<double>(*standard, "b", E_UNEXPECTED, kWrongType);
  ExpectFailure<double>(*standard, "d", E_UNEXPECTED, kWrongType);
  ExpectTextFailure(*standard, "c", E_UNEXPECTED, kWrongType);
  ExpectTextFailure(*standard, "d", E_UNEXPECTED, kWrongType);
}

TEST(TransientStandardArray, NumberThatCannotBeReadIsReportedAndUnexpected) {
  const TransientStandard standard = StandardOf(
      "<std:intval name='i'>1</std:intval><std:intval name='i'>abc</std:intval>"
      "<std:floatval name='f'>1</std:floatval><std:floatval name='f'>1e999</std:floatval>"
      "<std:colorval name='c'>1 two 3</std:colorval>"
      "<std:colorval name='o'>1 99999999999</std:colorval>");
  ExpectFailure<int>(*standard, "i", E_UNEXPECTED, kNoNumber);
  ExpectFailure<double>(*standard, "f", E_UNEXPECTED, kNoNumber);
  ExpectFailure<int>(*standard, "c", E_UNEXPECTED, kNoNumber);
  ExpectFailure<int>(*standard, "o", E_UNEXPECTED, kNoNumber);
}

TEST(TransientStandardArray, MatchWithoutTextFails) {
  const TransientStandard standard = StandardOf(
      "<std:intval name='i'>1</std:intval><std:intval name='i'/>"
      "<std:strval name='s'>1</std:strval><std:strval name='s'> </std:strval>"
      "<std:colorval name='c'>  </std:colorval>"
      "<std:node name='n'><std:node name='inner'><std:intval>1</std:intval></std:node></std:node>");
  ExpectFailure<int>(*standard, "i", E_FAIL, "");
  ExpectFailure<int>(*standard, "c", E_FAIL, "");
  ExpectTextFailure(*standard, "s", E_FAIL, "");
  ExpectFailure<int>(*standard, "n", E_UNEXPECTED, ": The value was not found!" + kUnit);
}

TEST(TransientStandardArray, NullArgumentsAreInvalid) {
  const TransientStandard standard = StandardOf(kTable);
  int numbers[8] = {};
  double reals[8] = {};
  VyrUnicodeString* texts = nullptr;
  int count = 77;
  VyrUnicodeString** const noTexts = nullptr;
  EXPECT_EQ(standard->GetValue(nullptr, numbers, &count), E_INVALIDARG);
  EXPECT_EQ(standard->GetValue("T.i", numbers, nullptr), E_INVALIDARG);
  EXPECT_EQ(standard->GetValue(nullptr, reals, &count), E_INVALIDARG);
  EXPECT_EQ(standard->GetValue("T.f", reals, nullptr), E_INVALIDARG);
  EXPECT_EQ(standard->GetValue(nullptr, &texts, &count), E_INVALIDARG);
  EXPECT_EQ(standard->GetValue("T.s", noTexts, &count), E_INVALIDARG);
  EXPECT_EQ(standard->GetValue("T.s", &texts, nullptr), E_INVALIDARG);
  EXPECT_EQ(texts, nullptr);
  EXPECT_EQ(count, 77);
}

TEST(TransientStandardArray, WithoutAnArrayOnlyTheNumberOfValuesIsTold) {
  const TransientStandard standard = StandardOf(kTable);
  int count = 0;
  EXPECT_EQ(standard->GetValue("T.i", static_cast<int*>(nullptr), &count), S_OK);
  EXPECT_EQ(count, 3);
  count = 0;
  EXPECT_EQ(standard->GetValue("T.f", static_cast<double*>(nullptr), &count), S_OK);
  EXPECT_EQ(count, 3);
}

TEST(TransientStandardArray, SecondQueryIsAnsweredFromMemoryEvenIfTheDocumentChanged) {
  HostDOM host(StandardText(kTable));
  const TransientStandard standard(new VyrDifTransientStandard("any.xml", "Any"));
  const auto ask = [&] {
    EXPECT_THAT(NumbersOf<int>(*standard, "T.i"), ElementsAre(3, 1, 2));
    EXPECT_THAT(NumbersOf<double>(*standard, "T.f"), ElementsAre(0.5, -2, 1000));
    EXPECT_THAT(TextsOf(*standard, "T.s"), ElementsAre("first", "second", "third"));
  };
  ask();
  // So many others that no search is remembered any more.
  for (int i = 0; i < 20; ++i) standard->HasNode(std::to_string(i).c_str());
  host.SetContent(StandardText(""));
  EXPECT_EQ(standard->HasNode("T"), 0);
  const std::size_t searches = host.expressions.size();
  ask();
  EXPECT_EQ(host.expressions.size(), searches);
}

TEST(TransientStandardArray, EachCallerGetsStringsOfItsOwn) {
  const TransientStandard standard = StandardOf(kTable);
  VyrUnicodeString* first = nullptr;
  VyrUnicodeString* second = nullptr;
  int count = 0;
  ASSERT_EQ(standard->GetValue("T.s", &first, &count), S_OK);
  first[0] = "changed";
  ASSERT_EQ(standard->GetValue("T.s", &second, &count), S_OK);
  EXPECT_EQ(second[0], "first");
  delete[] first;
  delete[] second;
}

TEST(TransientStandardArray, SheetFormatsOfAShippedStandardAreReadByColumn) {
  const TransientStandard iso = ShippedStandard("ISO");
  const std::vector<double> widths = NumbersOf<double>(*iso, "SheetFormat.Width");
  const std::vector<double> heights = NumbersOf<double>(*iso, "SheetFormat.Height");
  ASSERT_GE(widths.size(), 5u);
  EXPECT_EQ(heights.size(), widths.size());
  EXPECT_EQ(TextsOf(*iso, "SheetFormat.Name").size(), widths.size());
  // Each sheet of the series A is the one before, halved along its width.
  for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(widths[i + 1], heights[i]);
}

}  // namespace
