#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include "XPath.h"

namespace {

std::string ExpressionOf(const char* path) {
  return XPath(StdPath(path)).Path().CString();
}

TEST(XPath, EachComponentIsSearchedAtAnyDepthBelowTheOneBefore) {
  EXPECT_EQ(ExpressionOf("Dimension.ParentStandard"),
            "std:node//std:*[@name='Dimension']//std:*[@name='ParentStandard']");
  EXPECT_EQ(ExpressionOf("Styles.Text.Default.Font"),
            "std:node//std:*[@name='Styles']//std:*[@name='Text']//std:*[@name='Default']"
            "//std:*[@name='Font']");
  EXPECT_EQ(ExpressionOf("General"), "std:node//std:*[@name='General']");
}

TEST(XPath, ThicknessTableAloneIsADirectChildOfTheRoot) {
  EXPECT_EQ(ExpressionOf("LineThickness"), "std:node/std:*[@name='LineThickness']");
  EXPECT_EQ(ExpressionOf("LineThickness."), "std:node/std:*[@name='LineThickness']");
}

TEST(XPath, ThicknessTableInALongerPathIsAnOrdinaryComponent) {
  EXPECT_EQ(ExpressionOf("LineThickness.mm"),
            "std:node//std:*[@name='LineThickness']//std:*[@name='mm']");
  EXPECT_EQ(ExpressionOf("Styles.LineThickness"),
            "std:node//std:*[@name='Styles']//std:*[@name='LineThickness']");
  EXPECT_EQ(ExpressionOf("LineThickness..mm"),
            "std:node//std:*[@name='LineThickness']//std:*[@name='']//std:*[@name='mm']");
  EXPECT_EQ(ExpressionOf("lineThickness"), "std:node//std:*[@name='lineThickness']");
}

TEST(XPath, EmptyPathIsTheRoot) {
  EXPECT_EQ(ExpressionOf(""), "std:node");
}

TEST(XPath, SeparatorAtTheEndChangesNothing) {
  EXPECT_EQ(ExpressionOf("A.B."), ExpressionOf("A.B"));
}

TEST(XPath, EmptyComponentBetweenTwoSeparatorsIsKept) {
  EXPECT_EQ(ExpressionOf("A..B"), "std:node//std:*[@name='A']//std:*[@name='']//std:*[@name='B']");
}

TEST(XPath, QuoteInAComponentIsNotEscaped) {
  EXPECT_EQ(ExpressionOf("it's"), "std:node//std:*[@name='it's']");
}

TEST(XPath, CopyKeepsTheExpression) {
  const XPath source{StdPath("A")};
  const XPath copy(source);
  XPath assigned{StdPath("B")};
  assigned = source;
  EXPECT_EQ(copy.Path(), source.Path());
  EXPECT_EQ(assigned.Path(), source.Path());
  static_assert(std::has_virtual_destructor_v<XPath>);
}

}  // namespace
