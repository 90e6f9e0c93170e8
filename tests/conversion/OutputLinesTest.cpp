#include <gtest/gtest.h>

#include <string>

#include "VyrDrwParseStandard.h"

namespace {

using Standard = VyrDrwParseStandard;

TEST(AddOutputLine, AppendsTheLineAndTheSeparatorWhenAsked) {
  for (const int newLine : {0, 1, 2, -1}) {
    const std::string end = newLine == 0 ? "" : "\n";
    VyrUnicodeString text = "a\n";
    Standard::AddOutputLine(text, VyrUnicodeString("bc"), newLine);
    EXPECT_EQ(text, VyrUnicodeString("a\nbc" + end));
    text = "a\n";
    Standard::AddOutputLine(text, "bc", newLine);
    EXPECT_EQ(text, VyrUnicodeString("a\nbc" + end));
    text = "a\n";
    Standard::AddOutputLine(text, "b", "c", "d", newLine);
    EXPECT_EQ(text, VyrUnicodeString("a\nbcd" + end));
  }
}

TEST(AddOutputLine, EmptyLineAppendsTheSeparatorOnly) {
  for (const int newLine : {0, 1}) {
    const VyrUnicodeString expected = newLine == 0 ? "a" : "a\n";
    VyrUnicodeString text = "a";
    Standard::AddOutputLine(text, VyrUnicodeString(), newLine);
    EXPECT_EQ(text, expected);
    text = "a";
    Standard::AddOutputLine(text, static_cast<const char*>(nullptr), newLine);
    EXPECT_EQ(text, expected);
    text = "a";
    Standard::AddOutputLine(text, nullptr, nullptr, nullptr, newLine);
    EXPECT_EQ(text, expected);
  }
}

TEST(AddOutputLine, NullPiecesAreLeftOut) {
  struct {
    const char* a;
    const char* b;
    const char* c;
    const char* expected;
  } const cases[] = {
      {"a", nullptr, "c", "ac\n"},
      {nullptr, "b", nullptr, "b\n"},
      {nullptr, nullptr, "c", "c\n"},
      {"", "b", "", "b\n"},
  };
  for (const auto& test : cases) {
    VyrUnicodeString text;
    Standard::AddOutputLine(text, test.a, test.b, test.c, 1);
    EXPECT_EQ(text, test.expected);
  }
}

TEST(InsertOutputLine, InsertsBeforeTheCharacterAtThePosition) {
  struct {
    int position;
    const char* expected;
  } const cases[] = {{0, "XY\nÄbc"}, {1, "ÄXY\nbc"}, {2, "ÄbXY\nc"}, {3, "ÄbcXY\n"}};
  for (const auto& test : cases) {
    VyrUnicodeString text = "Äbc";
    Standard::InsertOutputLine(text, test.position, VyrUnicodeString("XY"), 1);
    EXPECT_EQ(text, test.expected);
    text = "Äbc";
    Standard::InsertOutputLine(text, test.position, "X", nullptr, "Y", 1);
    EXPECT_EQ(text, test.expected);
    text = "Äbc";
    Standard::InsertOutputLine(text, test.position, "XY", 1);
    EXPECT_EQ(text, test.expected);
  }
}

TEST(InsertOutputLine, EmptyLineInsertsTheSeparatorOrNothing) {
  for (const int newLine : {0, 1}) {
    const VyrUnicodeString expected = newLine == 0 ? "ab" : "a\nb";
    VyrUnicodeString text = "ab";
    Standard::InsertOutputLine(text, 1, VyrUnicodeString(), newLine);
    EXPECT_EQ(text, expected);
    text = "ab";
    Standard::InsertOutputLine(text, 1, nullptr, nullptr, nullptr, newLine);
    EXPECT_EQ(text, expected);
    text = "ab";
    Standard::InsertOutputLine(text, 1, static_cast<const char*>(nullptr), newLine);
    EXPECT_EQ(text, expected);
  }
}

TEST(InsertOutputLine, OnlyTheSingleNarrowFormRefusesAPositionOutside) {
  struct {
    int position;
    const char* expected;
  } const cases[] = {{-1, "Xab"}, {-1000, "Xab"}, {3, "abX"}, {1000, "abX"}};
  for (const auto& test : cases) {
    VyrUnicodeString text = "ab";
    Standard::InsertOutputLine(text, test.position, VyrUnicodeString("X"), 0);
    EXPECT_EQ(text, test.expected);
    text = "ab";
    Standard::InsertOutputLine(text, test.position, "X", nullptr, nullptr, 0);
    EXPECT_EQ(text, test.expected);
    text = "ab";
    Standard::InsertOutputLine(text, test.position, "X", 0);
    EXPECT_EQ(text, "ab") << test.position;
  }
}

}  // namespace
