#include <gtest/gtest.h>

#include <string>

#include "RecentMatches.h"

namespace {

StandardNodes Nulls(std::size_t count) {
  return StandardNodes(count);
}

TEST(RecentMatches, RemembersThePathsAskedForLast) {
  RecentMatches matches;
  EXPECT_EQ(matches.Find(""), nullptr);
  constexpr int count = 30;
  constexpr int remembered = 8;
  for (int i = 0; i < count; ++i) {
    EXPECT_EQ(matches.Store(std::to_string(i), Nulls(static_cast<std::size_t>(i)))->size(),
              static_cast<std::size_t>(i));
    for (int j = 0; j < count; ++j) {
      const MatchedNodes found = matches.Find(std::to_string(j));
      EXPECT_EQ(found != nullptr, j <= i && j > i - remembered) << i << ' ' << j;
      if (found == nullptr) continue;
      EXPECT_EQ(found->size(), static_cast<std::size_t>(j));
    }
  }
}

TEST(RecentMatches, PathThatMatchesNothingIsRememberedToo) {
  RecentMatches matches;
  matches.Store("a", {});
  ASSERT_NE(matches.Find("a"), nullptr);
  EXPECT_TRUE(matches.Find("a")->empty());
}

}  // namespace
