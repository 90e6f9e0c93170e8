#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "VyrUnicodeString.h"

namespace {

using Units = std::vector<unsigned short>;

// "aé寸😀z": 1, 2, 3, 4 and 1 bytes of UTF-8; the fourth takes two UTF-16 units.
constexpr const char* kMixed = "a\u00E9\u5BF8\U0001F600z";
constexpr int kMixedLength = 6;

Units Utf16Of(const VyrUnicodeString& text) {
  const std::unique_ptr<unsigned short[]> copy(text.NewUtf16Copy());
  Units units;
  for (const unsigned short* unit = copy.get(); *unit != 0; ++unit) units.push_back(*unit);
  return units;
}

VyrUnicodeString FromUtf16(Units units) {
  units.push_back(0);
  return VyrUnicodeString(units.data());
}

TEST(UnicodeString, NullReadsAsEmptyInEveryForm) {
  EXPECT_TRUE(VyrUnicodeString(static_cast<const char*>(nullptr)).IsEmpty());
  EXPECT_TRUE(VyrUnicodeString(static_cast<const unsigned short*>(nullptr)).IsEmpty());
  EXPECT_TRUE(VyrString(static_cast<const char*>(nullptr)).IsEmpty());
  EXPECT_TRUE(VyrUnicodeView(static_cast<const char*>(nullptr)).empty());
  VyrUnicodeString text = "x";
  text.Append(static_cast<const char*>(nullptr));
  EXPECT_EQ(text, "x");
  EXPECT_STREQ(VyrUnicodeString().CString(), "");
}

TEST(UnicodeString, EveryTextFormGivesTheSameString) {
  const std::string text = "Root.\u5BF8";
  EXPECT_EQ(VyrUnicodeString(text), VyrUnicodeString(text.c_str()));
  EXPECT_EQ(VyrUnicodeString(std::string_view(text)), VyrUnicodeString(text));
  EXPECT_EQ(VyrUnicodeString(VyrUnicodeView(text)), VyrUnicodeString(text));
  EXPECT_EQ(FromUtf16({'R', 'o', 'o', 't', '.', 0x5BF8}), VyrUnicodeString(text));
}

TEST(UnicodeString, LengthCountsUtf16Units) {
  struct {
    const char* text;
    int length;
  } const cases[] = {{"", 0},           {"a", 1},      {"\u00E9", 1},     {"\u5BF8", 1},
                     {"\U0001F600", 2}, {"\uFFFF", 1}, {"\U00010000", 2}, {"\U0010FFFF", 2},
                     {kMixed, 6},       {"\u07FF", 1}, {"e\u0301", 2}};
  for (const auto& test : cases) EXPECT_EQ(VyrUnicodeString(test.text).GetLength(), test.length);
  EXPECT_EQ(VyrString("\u00E9").GetLength(), 2) << "the narrow twin counts bytes";
}

TEST(UnicodeString, Utf16RoundTripHoldsAtTheEndsOfEveryRange) {
  const Units cases[] = {{},
                         {1},
                         {0x7F, 0x80},
                         {0x7FF, 0x800},
                         {0xD7FF, 0xE000},
                         {0xFFFF},
                         {0xD800, 0xDC00},
                         {0xDBFF, 0xDFFF},
                         {'a', 0xD83D, 0xDE00, 'z'}};
  for (const Units& units : cases) {
    const VyrUnicodeString text = FromUtf16(units);
    EXPECT_EQ(Utf16Of(text), units);
    EXPECT_EQ(text.GetLength(), static_cast<int>(units.size()));
  }
  EXPECT_EQ(FromUtf16({0xD83D, 0xDE00}), "\U0001F600");
}

TEST(UnicodeString, UnpairedSurrogateBecomesTheReplacementCharacter) {
  struct {
    Units units;
    const char* text;
  } const cases[] = {
      {{0xD83D}, "\uFFFD"},
      {{0xDE00}, "\uFFFD"},
      {{0xD83D, 'a'}, "\uFFFDa"},
      {{0xDE00, 0xD83D}, "\uFFFD\uFFFD"},
      {{0xD83D, 0xD83D, 0xDE00}, "\uFFFD\U0001F600"},
      {{0xD83D, 0xDE00, 0xDE00}, "\U0001F600\uFFFD"},
  };
  for (const auto& test : cases) EXPECT_EQ(FromUtf16(test.units), test.text);
}

TEST(UnicodeString, NarrowCopyIsTheUtf8Text) {
  const std::unique_ptr<char[]> copy(VyrUnicodeString(kMixed).NewNarrowCopy());
  EXPECT_STREQ(copy.get(), kMixed);
  const std::unique_ptr<char[]> empty(VyrUnicodeString().NewNarrowCopy());
  EXPECT_STREQ(empty.get(), "");
}

TEST(UnicodeString, IllFormedTextNeverWritesPastItsCopy) {
  for (const char* text :
       {"\x80", "\x80\x80\x80", "\xF0", "a\xF0\x9F", "\xFF\xFF\xFF\xFF", "\xE5"}) {
    const std::unique_ptr<unsigned short[]> copy(VyrUnicodeString(text).NewUtf16Copy());
    EXPECT_NE(copy, nullptr);
  }
}

TEST(UnicodeString, FindCountsPositionsInUtf16Units) {
  struct {
    const char* text;
    const char* sought;
    int from;
    int found;
  } const cases[] = {
      {"Root.Version", ".", 0, 4},
      {"Root.Version", "o", 0, 1},
      {"Root.Version", "o", 2, 2},
      {"Root.Version", "o", 3, 10},
      {"Root.Version", "o", 11, -1},
      {"Root.Version", "R", -7, 0},
      {"Root.Version", "r", INT_MIN, 7},
      {"Root.Version", "Root.Version2", 0, -1},
      {"Root", "t", 3, 3},
      {"Root", "t", 4, -1},
      {"Root", "t", INT_MAX, -1},
      {"Root", "", 0, 0},
      {"Root", "", 2, 2},
      {"Root", "", 4, 4},
      {"Root", "", 5, -1},
      {"", "x", 0, -1},
      {"", "", 0, 0},
      {kMixed, "\U0001F600", 0, 3},
      {kMixed, "\U0001F600", 3, 3},
      {kMixed, "\U0001F600", 4, -1},
      {kMixed, "z", 0, 5},
      {kMixed, "\u5BF8", 2, 2},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(VyrUnicodeString(test.text).Find(test.sought, test.from), test.found)
        << test.text << ' ' << test.sought << ' ' << test.from;
  }
}

TEST(UnicodeString, SubstringIsCutAtTheEndsOfTheText) {
  struct {
    const char* text;
    int position;
    int length;
    const char* expected;
  } const cases[] = {
      {"Root", 0, 4, "Root"},
      {"Root", 0, -1, "Root"},
      {"Root", 1, 2, "oo"},
      {"Root", 2, 99, "ot"},
      {"Root", 2, INT_MAX, "ot"},
      {"Root", 3, INT_MIN, "t"},
      {"Root", 4, 1, ""},
      {"Root", 5, 1, ""},
      {"Root", INT_MAX, INT_MAX, ""},
      {"Root", -1, 2, ""},
      {"Root", INT_MIN, -1, ""},
      {"Root", 2, 0, ""},
      {"", 0, 1, ""},
      {kMixed, 1, 1, "\u00E9"},
      {kMixed, 2, 1, "\u5BF8"},
      {kMixed, 5, 1, "z"},
      {kMixed, 3, 2, "\U0001F600"},
      {kMixed, 5, -1, "z"},
      {kMixed, 0, 3, "a\u00E9\u5BF8"},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(VyrUnicodeString(test.text).Substring(test.position, test.length), test.expected)
        << test.text << ' ' << test.position << ' ' << test.length;
  }
}

TEST(UnicodeString, CutAtAnyPositionNeitherLosesNorSplitsACharacter) {
  const VyrUnicodeString text = kMixed;
  for (int position = 0; position <= kMixedLength; ++position) {
    const VyrUnicodeString head = text.Substring(0, position);
    const VyrUnicodeString tail = text.Substring(position);
    EXPECT_EQ(head + tail, text) << position;
    for (const unsigned short unit : Utf16Of(head)) EXPECT_NE(unit, 0xFFFD);
    EXPECT_EQ(head.GetLength() + tail.GetLength(), kMixedLength);
  }
}

TEST(UnicodeString, InsertTakesTheNearestPlaceOfThePosition) {
  struct {
    const char* text;
    int position;
    const char* expected;
  } const cases[] = {
      {"Root", 0, "+Root"},
      {"Root", -1, "+Root"},
      {"Root", INT_MIN, "+Root"},
      {"Root", 1, "R+oot"},
      {"Root", 4, "Root+"},
      {"Root", 5, "Root+"},
      {"Root", INT_MAX, "Root+"},
      {"", 0, "+"},
      {"", 3, "+"},
      {"\U0001F600", 2, "\U0001F600+"},
      {"\u5BF8\u00E9", 1, "\u5BF8+\u00E9"},
  };
  for (const auto& test : cases) {
    VyrUnicodeString text = test.text;
    text.Insert(test.position, "+");
    EXPECT_EQ(text, test.expected);
  }
}

TEST(UnicodeString, AppendedAndInsertedTextMayBeTheStringItself) {
  VyrUnicodeString text = "a-string-too-long-for-the-object-itself";
  const std::string once(text.View());
  text.Append(text);
  EXPECT_EQ(text.View(), once + once);
  text.Insert(1, text);
  EXPECT_EQ(text.View(), "a" + once + once + once.substr(1) + once);
}

TEST(UnicodeString, ComparisonIsExactAndEqualStringsHashAlike) {
  EXPECT_FALSE(VyrUnicodeString("Root") == VyrUnicodeString("root"));
  EXPECT_FALSE(VyrUnicodeString("Root") == VyrUnicodeString("Root "));
  EXPECT_TRUE(VyrUnicodeString("A") < VyrUnicodeString("a"));
  EXPECT_TRUE(VyrUnicodeString("") < VyrUnicodeString("a"));
  EXPECT_TRUE(VyrUnicodeString("a") < VyrUnicodeString("a\u00E9"));
  EXPECT_FALSE(VyrUnicodeString("a") < VyrUnicodeString("a"));
  EXPECT_TRUE(VyrString("A") < VyrString("a"));
  const std::unordered_set<VyrUnicodeString> names = {"Root", std::string("Root"), "root"};
  EXPECT_EQ(names.size(), 2u);
  EXPECT_EQ(names.count(FromUtf16({'R', 'o', 'o', 't'})), 1u);
}

}  // namespace
