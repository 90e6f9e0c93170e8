#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "ExpectedKeywords.h"
#include "VyrDrwParseKeywordTable.h"

namespace {

using Type = VyrDrwParseKeyword::Type;

bool IsOfKind(Type type, char kind) {
  switch (kind) {
    case '-':
      return type == Type::Marker;
    case 'w':
      return type == Type::Word;
    case 'i':
      return type == Type::Int;
    case 'f':
      return type == Type::Float;
    case 's':
      return type == Type::String;
    default:
      return type == Type::Int || type == Type::Float;
  }
}

TEST(KeywordTable, RowsAreTheAgreedOnesInOrder) {
  ASSERT_EQ(ExpectedKeywords().size(), 177u);
  ASSERT_EQ(VyrDrwParseKeywordTable().size(), 177u);
  for (std::size_t row = 0; row < 177; ++row) {
    const ExpectedKeyword& expected = ExpectedKeywords()[row];
    const VyrDrwParseKeyword& keyword = VyrDrwParseKeywordTable()[row];
    EXPECT_EQ(keyword.keyword, expected.keyword) << row;
    EXPECT_EQ(keyword.legacyName, expected.legacyName) << row;
    EXPECT_EQ(keyword.required, expected.required) << row;
    EXPECT_TRUE(IsOfKind(keyword.type, expected.kind)) << expected.keyword;
  }
}

TEST(KeywordTable, SectionsBeginAtTheirMarkers) {
  const auto at = [](int row) { return VyrDrwParseKeywordTable()[row].keyword; };
  EXPECT_STREQ(at(kParentStandardRow), "ParentStandard");
  EXPECT_STREQ(at(kLastGeneralRow), "STDDimMaxLengthArcSymbol");
  EXPECT_STREQ(at(kFirstToleranceRow), "BEGIN_TOLERANCE");
  EXPECT_STREQ(at(kFirstDisplayRow), "BEGIN_NUMERICAL_DISPLAY");
}

TEST(KeywordTable, EighteenRowsAreOptionalAnd105GeneralParametersRequired) {
  const auto isRequired = [](const VyrDrwParseKeyword& row) { return row.required == 1; };
  const auto table = VyrDrwParseKeywordTable();
  EXPECT_EQ(std::count_if(table.begin(), table.end(), isRequired), 177 - 18);
  EXPECT_EQ(std::count_if(table.begin() + 2, table.begin() + 119, isRequired), 105);
}

TEST(KeywordTable, NoNameMeansTwoRows) {
  for (int row = 0; row < kKeywordCount; ++row) {
    const VyrDrwParseKeyword& keyword = VyrDrwParseKeywordTable()[row];
    for (int other = 0; other < kKeywordCount; ++other) {
      if (other == row) continue;
      const VyrDrwParseKeyword& second = VyrDrwParseKeywordTable()[other];
      EXPECT_STRNE(keyword.keyword, second.keyword);
      EXPECT_STRNE(keyword.keyword, second.legacyName);
      if (*keyword.legacyName != '\0') {
        EXPECT_STRNE(keyword.legacyName, second.legacyName);
      }
    }
  }
}

TEST(KeywordTable, RowsAreFoundByEitherName) {
  for (int row = 0; row < kKeywordCount; ++row) {
    const ExpectedKeyword& expected = ExpectedKeywords()[static_cast<std::size_t>(row)];
    EXPECT_EQ(FindKeywordRow(expected.keyword), row);
    EXPECT_EQ(FindLegacyNameRow(expected.legacyName), expected.legacyName.empty() ? -1 : row);
  }
}

TEST(KeywordTable, EmptyAndUnknownNamesHaveNoRow) {
  for (const char* name : {"", "Nonsense", "parentstandard", "DIMLTail ", "DIMLTai"}) {
    EXPECT_EQ(FindKeywordRow(name), -1) << name;
    EXPECT_EQ(FindLegacyNameRow(name), -1) << name;
  }
  EXPECT_EQ(FindKeywordRow("FNMVAL"), -1) << "a legacy name is no keyword";
  EXPECT_EQ(FindLegacyNameRow("NDName"), -1) << "a keyword is no legacy name";
}

}  // namespace
