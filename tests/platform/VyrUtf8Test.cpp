#include <gtest/gtest.h>

#include <string>

#include "VyrUtf8.h"

namespace {

constexpr std::size_t kNone = std::string_view::npos;

TEST(Utf8, WellFormedSequencesAreAccepted) {
  const char* const texts[] = {
      "",
      "plain",
      "\x7F",
      "\xC2\x80",
      "\xDF\xBF",
      "\xE0\xA0\x80",
      "\xED\x9F\xBF",
      "\xEE\x80\x80",
      "\xEF\xBF\xBF",
      "\xF0\x90\x80\x80",
      "\xF4\x8F\xBF\xBF",
      "12345678\xC3\xA9"
      "12345678",
  };
  for (const char* text : texts) EXPECT_EQ(VyrFindInvalidUtf8(text), kNone) << text;
  EXPECT_EQ(VyrFindInvalidUtf8(std::string_view("a\0b", 3)), kNone);
}

TEST(Utf8, IllFormedSequenceIsFoundWhereItBeginsWhateverStandsAroundIt) {
  const char* const sequences[] = {
      "\x80",
      "\xBF",
      "\xC0\x80",
      "\xC1\xBF",
      "\xC2",
      "\xC2\x41",
      "\xE0\x80\x80",
      "\xE0\x9F\xBF",
      "\xE1\x80",
      "\xE1\x80\x41",
      "\xED\xA0\x80",
      "\xED\xBF\xBF",
      "\xF0\x80\x80\x80",
      "\xF0\x8F\xBF\xBF",
      "\xF0\x90\x80",
      "\xF1\x80\x80\x41",
      "\xF4\x90\x80\x80",
      "\xF5\x80\x80\x80",
      "\xFE",
      "\xFF",
  };
  for (const std::string sequence : sequences) {
    // The offsets reach past and around the blocks that a fast scan may take at once.
    for (std::size_t offset = 0; offset < 20; ++offset) {
      const std::string before(offset, 'x');
      EXPECT_EQ(VyrFindInvalidUtf8(before + sequence), offset) << sequence;
      EXPECT_EQ(VyrFindInvalidUtf8(before + sequence + "tail of more than eight bytes"), offset);
    }
    EXPECT_EQ(VyrFindInvalidUtf8("\xC3\xA9" + sequence), 2u);
  }
}

TEST(Utf8, CutKeepsWhatFitsAndNeverSplitsACodePoint) {
  const std::string text = "a\u00E9\u5BF8\U0001F600";  // code points begin at 0, 1, 3, 6, end 10
  const std::size_t kept[] = {0, 1, 1, 3, 3, 3, 6, 6, 6, 6, 10, 10};
  for (std::size_t size = 0; size < std::size(kept); ++size) {
    EXPECT_EQ(VyrCutUtf8(text, size), text.substr(0, kept[size])) << size;
  }
  EXPECT_EQ(VyrCutUtf8("", 5), "");
  EXPECT_EQ(VyrCutUtf8("abc", 2), "ab");
}

}  // namespace
