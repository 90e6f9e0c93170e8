#include <gtest/gtest.h>

#include <string>

#include "HostileText.h"
#include "VyrShownText.h"
#include "VyrUtf8.h"

namespace {

TEST(ShownText, IsOneShortLineOfWholeCharacters) {
  EXPECT_EQ(VyrShownText(""), "");
  EXPECT_EQ(VyrShownText("Dimension \u5BF8"), "Dimension \u5BF8");
  EXPECT_EQ(VyrShownText("a\nb\tc\x1B[0m\x7F"), "a b c [0m ");
  // Ends of lines and paragraphs beyond ASCII, and more control characters.
  EXPECT_EQ(VyrShownText("a\u0085b\u2028c\u2029d\u009Be"), "a b c d e");
  // What would show the letters after it in another order.
  EXPECT_EQ(VyrShownText("a\u200Eb\u200Fc\u061Cd"), "a?b?c?d");
  EXPECT_EQ(VyrShownText("\u202A\u202B\u202C\u202D\u202E|\u2066\u2067\u2068\u2069"), "?????|????");
  // Their neighbours are letters and signs like others.
  EXPECT_EQ(VyrShownText("\u00A0\u200D\u2010\u2027\u202F\u2065\u206A\u061B"),
            "\u00A0\u200D\u2010\u2027\u202F\u2065\u206A\u061B");
  const std::string cut = VyrShownText(Repeated("\u5BF8", 1000));
  EXPECT_TRUE(cut.ends_with("..."));
  EXPECT_LT(cut.size(), 200u);
  EXPECT_EQ(VyrFindInvalidUtf8(cut), std::string_view::npos);
}

TEST(ShownText, IsAsLongAsItsReaderHasRoomFor) {
  EXPECT_EQ(VyrShownText("abcdef", 6), "abcdef");
  EXPECT_EQ(VyrShownText("abcdef", 5), "abcde...");
  EXPECT_EQ(VyrShownText("a\u5BF8b", 3), "a...") << "no part of a character";
  EXPECT_EQ(VyrShownText("a\n\u2028\u200E", 8), "a  ?");
}

TEST(ShownText, ShowsItsEndWhereThatIsWhatItIsAbout) {
  EXPECT_EQ(VyrShownEnd("", 6), "");
  EXPECT_EQ(VyrShownEnd("abcdef", 6), "abcdef");
  EXPECT_EQ(VyrShownEnd("abcdef", 5), "...bcdef");
  EXPECT_EQ(VyrShownEnd("abcdef", 0), "...");
  EXPECT_EQ(VyrShownEnd("ab\u5BF8c", 2), "...\u5BF8c") << "no part of a character";
  EXPECT_EQ(VyrShownEnd("a\n\u2028\u200E", 7), "...  ?");
  EXPECT_EQ(VyrFindInvalidUtf8(VyrShownEnd(Repeated("\u5BF8", 1000))), std::string_view::npos);
}

TEST(ShownText, IsQuotedBetweenApostrophes) {
  EXPECT_EQ(VyrQuoted(""), "''");
  EXPECT_EQ(VyrQuoted("a\nb"), "'a b'");
  EXPECT_TRUE(VyrQuoted(std::string(1000, 'x')).ends_with("x...'"));
}

}  // namespace
