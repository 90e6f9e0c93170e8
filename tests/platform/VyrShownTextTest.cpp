#include <gtest/gtest.h>

#include <string>

#include "HostileText.h"
#include "VyrShownText.h"
#include "VyrUtf8.h"

namespace {

constexpr std::size_t kAll = std::string_view::npos;

TEST(ShownText, ShowsWhatWouldBeObeyedOrNotBeSeenAsAnEscape) {
  EXPECT_EQ(VyrShownText(""), "");
  EXPECT_EQ(VyrShownText("Dimension \u5BF8 \\n"), "Dimension \u5BF8 \\n");
  EXPECT_EQ(VyrShownText("a\nb\tc\x1B[0m\x7F"), "a\\nb\\tc\\x1B[0m\\x7F");
  // Ends of lines and paragraphs beyond ASCII, and more control characters.
  EXPECT_EQ(VyrShownText("a\u0085b\u2028c\u2029d\u009Be"), "a\\u0085b\\u2028c\\u2029d\\u009Be");
  // What would show the letters after it in another order.
  EXPECT_EQ(VyrShownText("\u200E\u200F\u061C"), "\\u200E\\u200F\\u061C");
  EXPECT_EQ(VyrShownText("\u202A\u202E|\u2066\u2069"), "\\u202A\\u202E|\\u2066\\u2069");
  // What shows as nothing.
  EXPECT_EQ(VyrShownText("\u00AD\u200B\uFEFF\U000E0041"), "\\u00AD\\u200B\\uFEFF\\U000E0041");
  // Their neighbours are letters and signs like others.
  const std::string neighbours =
      "\u00A0\u00AC\u00AE\u2010\u2027\u202F\u205F\u2070\u061B\uFFFC\uFFFD";
  EXPECT_EQ(VyrShownText(neighbours), neighbours);
}

TEST(ShownText, ShowsWhatIsNotUtf8ByteByByte) {
  EXPECT_EQ(VyrShownText("a\x9B"
                         "b\xC3"),
            "a\\x9Bb\\xC3");
  EXPECT_EQ(VyrShownText("\xF0\x9F\x98"), "\\xF0\\x9F\\x98");
  EXPECT_EQ(VyrShownText(std::string(100, '\x80'), 40), Repeated("\\x80", 10) + "...");
}

// A kanji and its variant, a Persian word and an emoji are spelled with them.
TEST(ShownText, TakesJoinersForSpellingBehindLettersBeyondAsciiOnly) {
  for (const std::string text : {"\u845B\U000E0100", "\u0645\u06CC\u200C\u0634", "\u2764\uFE0F"}) {
    EXPECT_EQ(VyrShownText(text), text);
  }
  EXPECT_EQ(VyrShownText("Default\u200D"), "Default\\u200D");
  EXPECT_EQ(VyrShownText("\uFE0F"), "\\uFE0F");
}

TEST(ShownText, IsAsLongAsItsReaderHasRoomFor) {
  EXPECT_EQ(VyrShownText("abcdef", 6), "abcdef");
  EXPECT_EQ(VyrShownText("abcdef", 5), "abcde...");
  EXPECT_EQ(VyrShownText("a\u5BF8b", 3), "a...") << "no part of a character";
  EXPECT_EQ(VyrShownText("a\nb", 3), "a\\n...");
  EXPECT_EQ(VyrShownText("a\nb", 2), "a...") << "no part of an escape";
  EXPECT_EQ(VyrShownText("\u2028\u2028", 12), "\\u2028\\u2028");
  EXPECT_EQ(VyrShownText("\u2028\u2028", 11), "\\u2028...");
  EXPECT_EQ(VyrShownText("", 0), "");
  EXPECT_EQ(VyrShownText("a", 0), "...");
}

TEST(ShownText, KeepsBothEndsOfWhatIsLeftOutOfTheMiddle) {
  EXPECT_EQ(VyrShownEnds("abcdef", 6), "abcdef");
  EXPECT_EQ(VyrShownEnds("abcdefg", 6), "abc...efg");
  EXPECT_EQ(VyrShownEnds("abcdefg", 5), "abc...fg");
  EXPECT_EQ(VyrShownEnds("\n\n\n\n\n\n\n", 10), "\\n\\n...\\n\\n");
  EXPECT_EQ(VyrShownEnds("\u5BF8\u5BF8\u5BF8\u5BF8", 8), "\u5BF8...\u5BF8");
  EXPECT_EQ(VyrShownEnds(std::string(100, '\x80'), 16),
            Repeated("\\x80", 2) + "..." + Repeated("\\x80", 2));
}

TEST(ShownText, IsNeverLongerThanAskedForAndNeverBroken) {
  const std::string text = "a\u5BF8\n\u2028\U000E0041\x9Bz\u845B\U000E0100 ";
  for (std::size_t times = 0; times < 4; ++times) {
    const std::string whole = Repeated(text, times);
    const std::string shown = VyrShownText(whole, kAll);
    EXPECT_EQ(VyrFindUnshown(shown).at, kAll);
    for (std::size_t most = 0; most < shown.size() + 2; ++most) {
      const std::string begin = VyrShownText(whole, most);
      const std::string ends = VyrShownEnds(whole, most);
      EXPECT_EQ(VyrFindUnshown(begin).at, kAll) << most;
      EXPECT_EQ(VyrFindUnshown(ends).at, kAll) << most;
      if (shown.size() <= most) {
        EXPECT_EQ(begin, shown);
        EXPECT_EQ(ends, shown);
        continue;
      }
      EXPECT_LE(begin.size(), most + 3);
      EXPECT_LE(ends.size(), most + 3);
      EXPECT_TRUE(begin.ends_with("..."));
      EXPECT_TRUE(shown.starts_with(begin.substr(0, begin.size() - 3))) << most;
    }
  }
}

TEST(ShownText, ShowsItsEndWhereThatIsWhatItIsAbout) {
  EXPECT_EQ(VyrShownEnd("", 6), "");
  EXPECT_EQ(VyrShownEnd("abcdef", 6), "abcdef");
  EXPECT_EQ(VyrShownEnd("abcdef", 5), "...bcdef");
  EXPECT_EQ(VyrShownEnd("abcdef", 0), "...");
  EXPECT_EQ(VyrShownEnd("ab\u5BF8c", 2), "...c") << "no part of a character";
  EXPECT_EQ(VyrShownEnd("a\n\u2028\u200E", 7), "...\\u200E");
  EXPECT_EQ(VyrFindInvalidUtf8(VyrShownEnd(Repeated("\u5BF8", 1000))), std::string_view::npos);
}

TEST(ShownText, IsQuotedBetweenApostrophes) {
  EXPECT_EQ(VyrQuoted(""), "''");
  EXPECT_EQ(VyrQuoted("a\nb"), "'a\\nb'");
  EXPECT_EQ(VyrQuoted(std::string(100000, 'x') + "y"),
            "'" + std::string(80, 'x') + "..." + std::string(79, 'x') + "y'");
}

}  // namespace
