#include <gtest/gtest.h>

#include <string>

#include "../conversion/ExpectedKeywords.h"
#include "VyrDftStandardServices.h"

namespace {

using Services = VyrDftStandardServices;

TEST(StandardServicesNames, PathIsCutAtItsLastDot) {
  struct {
    const char* path;
    const char* father;
    const char* name;
  } const cases[] = {
      {"Dimension.ParentStandard", "Dimension", "ParentStandard"},
      {"a.b.c", "a.b", "c"},
      {"Dimension", "", ""},
      {"", "", ""},
      {".a", "", "a"},
      {"a..b", "a.", "b"},
      // A dot at the end ends no name, and is the last one only when there is no other.
      {"a.b.", "a", ""},
      {"a.b..", "a.b", ""},
      {"a..", "a", ""},
      {"a.", "a", ""},
      {"..", "", ""},
      {".", "", ""},
      {"\u5BF8\u6CD5.\u5024", "\u5BF8\u6CD5", "\u5024"},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(Services::GetFatherNode(test.path), test.father) << test.path;
    EXPECT_EQ(Services::GetAttributeSingleName(test.path), test.name) << test.path;
  }
}

TEST(StandardServicesNames, EveryKeywordAndParameterHasItsRow) {
  for (int row = 0; row < 177; ++row) {
    const ExpectedKeyword& expected = ExpectedKeywords()[row];
    const std::string& keyword = expected.keyword;
    const std::string& parameter = expected.legacyName;
    EXPECT_EQ(Services::GetIndexFromKeyword(keyword), row) << keyword;
    EXPECT_EQ(Services::GetParamFromKeyword(keyword), VyrUnicodeString(parameter)) << keyword;
    if (parameter.empty()) continue;
    EXPECT_EQ(Services::GetIndexFromParam(parameter), row) << parameter;
    EXPECT_EQ(Services::GetKeywordFromParam(parameter), VyrUnicodeString(keyword)) << parameter;
  }
}

TEST(StandardServicesNames, FirstRowsAreTheCommentMarkersAndTheParentStandard) {
  EXPECT_EQ(Services::GetIndexFromKeyword("BEGIN_COMMENT_BLOCK"), 0);
  EXPECT_EQ(Services::GetIndexFromKeyword("END_COMMENT_BLOCK"), 1);
  EXPECT_EQ(Services::GetIndexFromKeyword("ParentStandard"), 2);
}

TEST(StandardServicesNames, EmptyAndUnknownNamesHaveNoRow) {
  for (const char* name : {"", " ", "dimlunderline", "DIMLUnderlin", "DIMLUnderline ", "xxx"}) {
    EXPECT_EQ(Services::GetIndexFromKeyword(name), -1) << name;
    EXPECT_EQ(Services::GetIndexFromParam(name), -1) << name;
    EXPECT_EQ(Services::GetKeywordFromParam(name), "") << name;
    EXPECT_EQ(Services::GetParamFromKeyword(name), "") << name;
  }
}

TEST(StandardServicesNames, ColumnsAreKeptApart) {
  EXPECT_EQ(Services::GetIndexFromKeyword("STDTxThickText"), -1);
  EXPECT_EQ(Services::GetIndexFromParam("TXTThickness"), -1);
  EXPECT_EQ(Services::GetKeywordFromParam("STDTxThickText"), "TXTThickness");
  EXPECT_EQ(Services::GetParamFromKeyword("TXTThickness"), "STDTxThickText");
  EXPECT_EQ(Services::GetIndexFromParam("ParentStandard"), -1);
}

}  // namespace
