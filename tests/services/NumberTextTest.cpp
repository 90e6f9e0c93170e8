#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string_view>

#include "CommaLocale.h"
#include "NumberText.h"

namespace {

struct Good {
  const char* text;
  double number;
};

class GoodNumber : public testing::TestWithParam<Good> {};

TEST_P(GoodNumber, IsReadFromTheStartOfTheText) {
  const auto number = ReadReal(GetParam().text);
  ASSERT_TRUE(number.has_value()) << GetParam().text;
  EXPECT_EQ(*number, GetParam().number) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(Numbers, GoodNumber,
                         testing::Values(Good{"297", 297}, Good{"297.5", 297.5},
                                         Good{"-0.25", -0.25}, Good{"+1.5", 1.5}, Good{".5", 0.5},
                                         Good{"-.5", -0.5}, Good{"5.", 5}, Good{"1e3", 1000},
                                         Good{"1E+3", 1000}, Good{"25e-2", 0.25}, Good{"007", 7},
                                         Good{" \t\n\v\f\r42", 42}));
INSTANTIATE_TEST_SUITE_P(WhatFollowsIsIgnored, GoodNumber,
                         testing::Values(Good{"297 mm", 297}, Good{"1.5.7", 1.5},
                                         Good{"297,5", 297}, Good{"1 2 3", 1}, Good{"2e", 2},
                                         Good{"2e+", 2}, Good{"2x", 2}, Good{"1-1", 1}));

class BadNumber : public testing::TestWithParam<const char*> {};

TEST_P(BadNumber, IsNotRead) {
  EXPECT_FALSE(ReadReal(GetParam()).has_value()) << GetParam();
}

INSTANTIATE_TEST_SUITE_P(NoNumber, BadNumber,
                         testing::Values("", " ", "abc", ".", "-", "+", "e5", "+-1", "-+1", "--1",
                                         "++1", "- 1", ",5", "mm 297"));
INSTANTIATE_TEST_SUITE_P(NoDrawingCanUseIt, BadNumber,
                         testing::Values("inf", "-inf", "Infinity", "nan", "NAN(1)", "0x10",
                                         "-0X1p3", "1e400", "-1e400", "1e-400"));

TEST(NumberText, ViewWithoutATerminatingZeroIsReadToItsEndOnly) {
  EXPECT_EQ(ReadReal(std::string_view("123456").substr(0, 3)), 123.0);
}

TEST(NumberText, MinusZeroKeepsItsSign) {
  const auto number = ReadReal("-0.0");
  ASSERT_TRUE(number.has_value());
  EXPECT_TRUE(std::signbit(*number));
}

TEST(NumberText, EveryDigitOfADoubleCounts) {
  EXPECT_EQ(ReadReal("1.7976931348623157e308"), std::numeric_limits<double>::max());
  EXPECT_EQ(ReadReal("2.2250738585072014e-308"), std::numeric_limits<double>::min());
  EXPECT_EQ(ReadReal("0.1000000000000000055511151231257827"), 0.1);
}

TEST(NumberText, TheLocaleOfTheProcessMeansNothing) {
  const CommaLocale comma;
  ASSERT_TRUE(comma.IsSet()) << "the C library takes no locale made by a test";
  EXPECT_EQ(ReadReal("297.5"), 297.5);
  EXPECT_EQ(ReadReal("297,5"), 297.0);
}

}  // namespace
