#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "DiagnosticsCapture.h"
#include "FakeDOM.h"
#include "HostDOM.h"
#include "StandardInMemory.h"

namespace {

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr auto kThree =
    "<std:node name='Table'><std:intval name='v'>1</std:intval><std:intval name='v'>2</std:intval>"
    "<std:intval name='v'>3</std:intval></std:node>";
const std::string kUnit = " [VyrDifTransientStandard]";

TEST(TransientStandardSearch, NamesAreFoundAtAnyDepthAndComparedExactly) {
  const DiagnosticsCapture capture;
  const TransientStandard standard = StandardOf(
      "<std:node name='a'><std:node name='b'><std:typeval name='c'><std:intval name='d'>1"
      "</std:intval></std:typeval></std:node></std:node><other name='o'/>");
  for (const char* found : {"a", "a.b", "a.c", "a.b.c.d", "d", "", "."}) {
    EXPECT_EQ(standard->HasNode(found), found == std::string(".") ? 0 : 1) << found;
  }
  for (const char* missing : {"b.a", "A", "a.x", "a..b", "o", "drafting", " a", "a "}) {
    EXPECT_EQ(standard->HasNode(missing), 0) << missing;
  }
  EXPECT_EQ(standard->HasNode(nullptr), 0);
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST(TransientStandardSearch, EmptyPathIsTheDocumentElement) {
  const TransientStandard standard = StandardOf("<std:typeval name='a'/><std:typeval name='b'/>");
  VyrDftStandardValueType type = VyrDftUnknownValue;
  int count = 0;
  EXPECT_EQ(standard->GetValueType("", &type, &count), S_OK);
  EXPECT_EQ(type, VyrDftCompoundValue);
  EXPECT_EQ(count, 2);
}

TEST(TransientStandardSearch, ThicknessTableAloneIsTakenBelowTheDocumentElement) {
  const TransientStandard standard = StandardOf(
      "<std:node name='Style'><std:node name='LineThickness'><std:intval>1</std:intval></std:node>"
      "</std:node><std:node name='LineThickness'><std:intval>2</std:intval></std:node>");
  int value = 0;
  EXPECT_EQ(standard->GetValue("LineThickness", 1, value), S_OK);
  EXPECT_EQ(value, 2);
  EXPECT_EQ(standard->GetValue("LineThickness", 2, value), E_FAIL);
}

TEST(TransientStandardSearch, IndexCountsFromOneAndNothingStandsOutside) {
  const DiagnosticsCapture capture;
  const TransientStandard standard = StandardOf(kThree);
  for (int pass = 0; pass < 2; ++pass) {
    for (int index = 1; index <= 3; ++index) {
      int value = 0;
      EXPECT_EQ(standard->GetValue("Table.v", index, value), S_OK);
      EXPECT_EQ(value, index);
    }
    for (const int index : {0, -1, 4, INT_MIN, INT_MAX, 65537, 256 + 1}) {
      int value = 77;
      EXPECT_EQ(standard->GetValue("Table.v", index, value), E_FAIL) << index;
      EXPECT_EQ(value, 77);
    }
  }
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST(TransientStandardSearch, TracesTheSearch) {
  const TransientStandard standard = StandardOf(kThree, "Site");
  const TraceOn trace("DifCptWithStd");
  int value = 0;
  for (int pass = 0; pass < 2; ++pass) {
    const DiagnosticsCapture capture;
    EXPECT_EQ(standard->GetValue("Table.v", 4, value), E_FAIL);
    EXPECT_THAT(
        capture.traces,
        ElementsAre("{ VyrDifTransientStandard::GetValue\n", HasSubstr("Alias: 'Site'\tAddress:("),
                    "  StdPath is: 'Table.v'\n",
                    "  XPath is: 'std:node//std:*[@name='Table']//std:*[@name='v']'\n",
                    "  Index is: 4\n", "  There is not enough nodes matching the given XPath\n",
                    "  No matching node found!\n", "} VyrDifTransientStandard::GetValue\n"));
  }
  {
    const DiagnosticsCapture capture;
    EXPECT_EQ(standard->GetValue("Nothing", 1, value), E_FAIL);
    EXPECT_THAT(capture.traces, Contains("  There is no node matching the given XPath\n"));
    EXPECT_THAT(capture.traces, Each(Not(HasSubstr("Index is"))));
  }
  const DiagnosticsCapture capture;
  EXPECT_EQ(standard->GetValue("Table.v", 0, value), E_FAIL);
  EXPECT_THAT(capture.traces, Each(Not(HasSubstr("Path is"))));
  EXPECT_THAT(capture.traces, Contains("  No matching node found!\n"));
}

TEST(TransientStandardSearch, PathThatMakesNoExpressionIsReportedAndFindsNothing) {
  const TransientStandard standard = StandardOf(kThree);
  for (const char* path : {"it's", "'", "a.b'", "Table.v'"}) {
    for (int pass = 0; pass < 2; ++pass) {
      DiagnosticsCapture capture;
      int value = 77;
      EXPECT_EQ(standard->GetValue(path, 1, value), E_FAIL) << path;
      EXPECT_EQ(value, 77);
      EXPECT_THAT(CheckTexts(capture.errors),
                  ElementsAre("BOOL IS FALSE: XPath cannot be evaluated" + kUnit));
    }
  }
}

TEST(TransientStandardSearch, VeryLongPathsFindNothing) {
  const DiagnosticsCapture capture;
  const TransientStandard standard = StandardOf(kThree);
  std::string deep;
  for (int i = 0; i < 50000; ++i) deep += "a.";
  for (const std::string& path : {std::string(100000, 'a'), deep, std::string(100000, '.')}) {
    VyrUnicodeString value;
    EXPECT_EQ(standard->GetValue(path.c_str(), 1, value), E_FAIL);
    EXPECT_EQ(standard->HasNode(path.c_str()), 0);
  }
}

TEST(TransientStandardSearch, AsksTheDocumentOfTheHost) {
  HostDOM host(StandardText(kThree));
  const TransientStandard standard(new VyrDifTransientStandard("any.xml", "Any"));
  EXPECT_EQ(standard->HasNode("Table.v"), 1);
  EXPECT_THAT(host.expressions, ElementsAre("std:node//std:*[@name='Table']//std:*[@name='v']"));
  EXPECT_THAT(host.namespaces, ElementsAre("std=http://schemas.hol-standard.example/drafting/std"));
}

TEST(TransientStandardSearch, EveryFailureOfTheHostIsReportedEachTimeAndFindsNothing) {
  struct {
    void (*spoil)(HostDOM&);
    const char* report;
  } const cases[] = {
      {[](HostDOM& host) { host.hasFactory = false; }, "ON POINTER : no XPath factory"},
      {[](HostDOM& host) { host.createResult = E_FAIL; }, "BOOL IS FALSE: no XPath expression"},
      {[](HostDOM& host) { host.declareResult = E_FAIL; },
       "BOOL IS FALSE: namespace cannot be declared"},
      {[](HostDOM& host) { host.evaluateResult = E_FAIL; },
       "BOOL IS FALSE: XPath cannot be evaluated"},
      {[](HostDOM& host) { host.hasList = false; }, "BOOL IS FALSE: XPath cannot be evaluated"},
  };
  for (const auto& test : cases) {
    HostDOM host(StandardText(kThree));
    const TransientStandard standard(new VyrDifTransientStandard("any.xml", "Any"));
    test.spoil(host);
    for (int pass = 0; pass < 2; ++pass) {
      const DiagnosticsCapture capture;
      int value = 77;
      EXPECT_EQ(standard->GetValue("Table.v", 1, value), E_FAIL);
      EXPECT_EQ(value, 77);
      EXPECT_THAT(CheckTexts(capture.errors), ElementsAre(test.report + kUnit));
    }
  }
}

TEST(TransientStandardSearch, BlankTextsOfTheHostsListDoNotCount) {
  const VyrIDOMElement_var parent = DocumentElementOf(
      "<r xmlns:std='u'>\n <std:intval>1</std:intval>\t\r\n"
      " <std:intval>2</std:intval>\n</r>");
  HostDOM host(StandardText(kThree));
  ASSERT_EQ(parent->GetChildNodes(host.list), S_OK);
  const TransientStandard standard(new VyrDifTransientStandard("any.xml", "Any"));
  int value = 0;
  EXPECT_EQ(standard->GetValue("Table.v", 2, value), S_OK);
  EXPECT_EQ(value, 2);
  EXPECT_EQ(standard->GetValue("Table.v", 3, value), E_FAIL);
}

TEST(TransientStandardSearch, TableReadCellByCellIsSearchedOncePerColumn) {
  std::string rows;
  for (int i = 1; i <= 500; ++i) {
    const std::string value = ">" + std::to_string(i) + "</std:intval>";
    rows += "<std:typeval name='Row'>";
    for (const char* column : {"a", "b", "c", "d"}) {
      rows += "<std:intval name='" + std::string(column) + "'" + value;
    }
    rows += "</std:typeval>";
  }
  HostDOM host(StandardText("<std:node name='T'>" + rows + "</std:node>"));
  const TransientStandard standard(new VyrDifTransientStandard("any.xml", "Any"));
  for (int row = 1; row <= 500; ++row) {
    for (const char* column : {"T.a", "T.b", "T.c", "T.d"}) {
      int value = 0;
      ASSERT_EQ(standard->GetValue(column, row, value), S_OK);
      ASSERT_EQ(value, row);
    }
  }
  EXPECT_EQ(host.expressions.size(), 4u);
}

}  // namespace
