#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "DiagnosticsCapture.h"
#include "HostDOM.h"
#include "StandardInMemory.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string kUnit = " [VyrDifTransientStandard]";
// Messages of checks are cut at 40 characters.
const std::string kWrongType = "BOOL IS FALSE: Unexpected value type node in standard x" + kUnit;
const std::string kNoNumber = "BOOL IS FALSE: the value is no number of its type" + kUnit;

constexpr auto kValues =
    "<std:node name='int'><std:intval>-12</std:intval></std:node>\n"
    "<std:node name='real'>\n  <std:floatval minval='0'>3.5</std:floatval>\n</std:node>\n"
    "<std:node name='text'><std:strval>a text</std:strval></std:node>\n"
    "<std:node name='enum'><std:enumval name='YesNo'>Yes</std:enumval></std:node>\n"
    "<std:node name='color'><std:colorval>1 2 3</std:colorval></std:node>\n"
    "<std:typeval name='row'><std:intval name='i'>4</std:intval>"
    "<std:floatval name='f'>0.35</std:floatval><std:strval name='s'>x</std:strval></std:typeval>";

TEST(TransientStandardScalar, ValueIsTheElementsOwnOrThatOfItsFirstElement) {
  const DiagnosticsCapture capture;
  const TransientStandard standard = StandardOf(kValues);
  int number = 0;
  EXPECT_EQ(standard->GetValue("int", 1, number), S_OK);
  EXPECT_EQ(number, -12);
  EXPECT_EQ(standard->GetValue("row.i", 1, number), S_OK);
  EXPECT_EQ(number, 4);
  EXPECT_EQ(standard->GetValue("row", 1, number), S_OK);
  EXPECT_EQ(number, 4);
  double real = 0;
  EXPECT_EQ(standard->GetValue("real", 1, real), S_OK);
  EXPECT_EQ(real, 3.5);
  EXPECT_EQ(standard->GetValue("row.f", 1, real), S_OK);
  EXPECT_EQ(real, 0.35);
  VyrUnicodeString text;
  EXPECT_EQ(standard->GetValue("text", 1, text), S_OK);
  EXPECT_EQ(text, "a text");
  EXPECT_EQ(standard->GetValue("row.s", 1, text), S_OK);
  EXPECT_EQ(text, "x");
  EXPECT_EQ(standard->GetValue("enum", 1, text), S_OK);
  EXPECT_EQ(text, "Yes");
  EXPECT_THAT(capture.errors, IsEmpty());
}

template <class Value>
void ExpectFailure(VyrDifTransientStandard& standard, const char* path, const Value& before,
                   HRESULT result, const std::string& report) {
  // A failure is not remembered: it is reported each time.
  for (int pass = 0; pass < 2; ++pass) {
    const DiagnosticsCapture capture;
    Value value = before;
    EXPECT_EQ(standard.GetValue(path, 1, value), result) << path;
    EXPECT_EQ(value, before) << path;
    if (report.empty()) {
      EXPECT_THAT(capture.errors, IsEmpty()) << path;
    } else {
      EXPECT_THAT(CheckTexts(capture.errors), ElementsAre(report)) << path;
    }
  }
}

TEST(TransientStandardScalar, AnotherTypeIsReportedAndUnexpected) {
  const TransientStandard standard = StandardOf(kValues);
  for (const char* path : {"real", "text", "enum", "color"}) {
    ExpectFailure(*standard, path, 77, E_UNEXPECTED, kWrongType);
  }
  for (const char* path : {"int", "text", "enum", "color"}) {
    ExpectFailure(*standard, path, 7.5, E_UNEXPECTED, kWrongType);
  }
  for (const char* path : {"int", "real", "color"}) {
    ExpectFailure(*standard, path, VyrUnicodeString("kept"), E_UNEXPECTED, kWrongType);
  }
}

TEST(TransientStandardScalar, TextsThatAreNoNumbersAreReportedAndUnexpected) {
  for (const char* text : {"abc", "99999999999", "-2147483649", "-", "+-1"}) {
    const TransientStandard standard =
        StandardOf("<std:intval name='v'>" + std::string(text) + "</std:intval>");
    ExpectFailure(*standard, "v", 77, E_UNEXPECTED, kNoNumber);
  }
  for (const char* text : {"abc", "1e999", "nan", "inf", ".", ",5"}) {
    const TransientStandard standard =
        StandardOf("<std:floatval name='v'>" + std::string(text) + "</std:floatval>");
    ExpectFailure(*standard, "v", 7.5, E_UNEXPECTED, kNoNumber);
  }
}

TEST(TransientStandardScalar, ElementWithoutTextFailsWithoutAReport) {
  const TransientStandard standard = StandardOf(
      "<std:intval name='empty'/><std:node name='inner'><std:intval/></std:node>"
      "<std:strval name='blank'> \n\t</std:strval><std:node name='none'> </std:node>"
      "<std:strval name='marked'><![CDATA[text]]></std:strval>"
      "<std:strval name='noted'><!-- note -->text</std:strval>");
  for (const char* path : {"empty", "inner", "blank", "none", "marked", "noted"}) {
    ExpectFailure(*standard, path, 77, E_FAIL, "");
    ExpectFailure(*standard, path, 7.5, E_FAIL, "");
    ExpectFailure(*standard, path, VyrUnicodeString("kept"), E_FAIL, "");
  }
}

TEST(TransientStandardScalar, ElementDeeperThanAValueIsReportedAndUnexpected) {
  const TransientStandard standard = StandardOf(
      "<std:node name='a'><std:node name='b'><std:intval name='c'>1</std:intval></std:node>"
      "</std:node>");
  ExpectFailure(*standard, "a", 77, E_UNEXPECTED, ": The value was not found!" + kUnit);
  ExpectFailure(*standard, "b", VyrUnicodeString("kept"), E_UNEXPECTED, kWrongType);
}

TEST(TransientStandardScalar, PathMayBeTheTextThatTheValueGoesInto) {
  const TransientStandard standard = StandardOf(
      "<std:strval name='a long name of a value'>another long text of a value</std:strval>");
  VyrUnicodeString text = "a long name of a value";
  ASSERT_EQ(standard->GetValue(text.CString(), 1, text), S_OK);
  EXPECT_EQ(text.View(), "another long text of a value");
  EXPECT_EQ(standard->GetValue("another long text of a value", 1, text), E_FAIL);
  EXPECT_EQ(standard->GetValue("a long name of a value", 1, text), S_OK);
}

TEST(TransientStandardScalar, NullPathIsInvalid) {
  const TransientStandard standard = StandardOf(kValues);
  int number = 77;
  double real = 7.5;
  VyrUnicodeString text = "kept";
  EXPECT_EQ(standard->GetValue(nullptr, 1, number), E_INVALIDARG);
  EXPECT_EQ(standard->GetValue(nullptr, 1, real), E_INVALIDARG);
  EXPECT_EQ(standard->GetValue(nullptr, 1, text), E_INVALIDARG);
  EXPECT_EQ(number, 77);
  EXPECT_EQ(real, 7.5);
  EXPECT_EQ(text, "kept");
}

TEST(TransientStandardScalar, PrefixOfTheNamespaceCounts) {
  // Type names are compared as they stand in the file; every writer of standards uses the prefix.
  const TemporaryFolder folder;
  const std::string file =
      folder.Write("d.xml",
                   "<d:node xmlns:d='http://schemas.hol-standard.example/drafting/std'>"
                   "<d:intval name='v'>1</d:intval></d:node>");
  const TransientStandard standard(new VyrDifTransientStandard(file, "d"));
  EXPECT_EQ(standard->HasNode("v"), 1);
  ExpectFailure(*standard, "v", 77, E_UNEXPECTED, kWrongType);
}

TEST(TransientStandardScalar, SecondQueryIsAnsweredFromMemoryEvenIfTheDocumentChanged) {
  HostDOM host(StandardText(kValues));
  const TransientStandard standard(new VyrDifTransientStandard("any.xml", "Any"));
  int number = 0;
  double real = 0;
  VyrUnicodeString text;
  const auto ask = [&] {
    EXPECT_EQ(standard->GetValue("int", 1, number), S_OK);
    EXPECT_EQ(standard->GetValue("real", 1, real), S_OK);
    EXPECT_EQ(standard->GetValue("text", 1, text), S_OK);
    EXPECT_EQ(number, -12);
    EXPECT_EQ(real, 3.5);
    EXPECT_EQ(text, "a text");
  };
  ask();
  // So many others that no search is remembered any more.
  for (int i = 0; i < 20; ++i) standard->HasNode(std::to_string(i).c_str());
  host.SetContent(StandardText("<std:node name='int'><std:intval>5</std:intval></std:node>"));
  EXPECT_EQ(standard->HasNode("real"), 0);
  const std::size_t searches = host.expressions.size();
  number = 0;
  real = 0;
  text = "";
  ask();
  EXPECT_EQ(host.expressions.size(), searches);
}

TEST(TransientStandardScalar, PathAndIndexTogetherMakeTheAnswer) {
  // A path whose last character is the code of another index must not be taken for it.
  const TransientStandard standard = StandardOf(
      "<std:intval name='a'>1</std:intval><std:intval name='a'>2</std:intval>"
      "<std:floatval name='f'>1</std:floatval><std:intval name='aa'>3</std:intval>");
  int value = 0;
  for (int pass = 0; pass < 2; ++pass) {
    EXPECT_EQ(standard->GetValue("a", 1, value), S_OK);
    EXPECT_EQ(value, 1);
    EXPECT_EQ(standard->GetValue("a", 2, value), S_OK);
    EXPECT_EQ(value, 2);
    EXPECT_EQ(standard->GetValue("aa", 1, value), S_OK);
    EXPECT_EQ(value, 3);
    EXPECT_EQ(standard->GetValue("a", 'a', value), E_FAIL);
  }
  const DiagnosticsCapture capture;
  double real = 0;
  EXPECT_EQ(standard->GetValue("f", 1, real), S_OK);
  EXPECT_EQ(standard->GetValue("f", 1, value), E_UNEXPECTED);
  EXPECT_EQ(standard->GetValue("a", 1, real), E_UNEXPECTED);
}

TEST(TransientStandardScalar, TracesWhatItReads) {
  const TransientStandard standard = StandardOf(
      std::string(kValues) + "<std:node name='none'/><std:intval name='own'>9</std:intval>");
  const TraceOn trace("DifCptWithStd");
  const auto tracesOf = [&](auto query) {
    const DiagnosticsCapture capture;
    query();
    return capture.traces;
  };
  int number = 0;
  double real = 0;
  VyrUnicodeString text;
  auto traces = tracesOf([&] { standard->GetValue("int", 1, number); });
  EXPECT_THAT(traces, Contains("  NodeName is: 'std:intval'\n"));
  EXPECT_THAT(traces, Contains("  Value '-12' has been converted in -12\n"));
  EXPECT_THAT(tracesOf([&] { standard->GetValue("real", 1, real); }),
              Contains("  Value '3.5' has been converted in 3.500000\n"));
  traces = tracesOf([&] { standard->GetValue("enum", 1, text); });
  EXPECT_THAT(traces, Contains("  Type is: 'std:enumval'\n"));
  EXPECT_THAT(traces, Contains("  Value 'Yes' has been converted in 'Yes'\n"));
  traces = tracesOf([&] { standard->GetValue("none", 1, text); });
  EXPECT_THAT(traces, Contains("  No value definition\n"));
  EXPECT_THAT(traces, Contains("  No text node found!\n"));
  EXPECT_THAT(tracesOf([&] { standard->GetValue("none", 1, number); }),
              testing::Not(Contains("  No text node found!\n")));
}

TEST(TransientStandardScalar, ShippedStandardsSayWhatTheirFilesHold) {
  struct {
    const char* file;
    const char* parent;
  } const cases[] = {{"ISO", "ISO"}, {"JIS", "JIS"}, {"ANSI-ASME", "ANSI"}};
  for (const auto& test : cases) {
    const TransientStandard standard = ShippedStandard(test.file);
    VyrUnicodeString text;
    EXPECT_EQ(standard->GetValue("Dimension.ParentStandard", 1, text), S_OK);
    EXPECT_EQ(text, test.parent);
  }
  // The largest sheet of the series A.
  const TransientStandard iso = ShippedStandard("ISO");
  VyrUnicodeString name;
  double width = 0;
  double height = 0;
  EXPECT_EQ(iso->GetValue("SheetFormat.Name", 1, name), S_OK);
  EXPECT_EQ(iso->GetValue("SheetFormat.Width", 1, width), S_OK);
  EXPECT_EQ(iso->GetValue("SheetFormat.Height", 1, height), S_OK);
  EXPECT_EQ(name, "A0 ISO");
  EXPECT_EQ(width, 1189);
  EXPECT_EQ(height, 841);
}

}  // namespace
