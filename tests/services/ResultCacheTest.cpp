#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "ResultCache.h"

namespace {

TEST(ResultCache, ScalarIsFoundByPathAndIndexAlone) {
  ScalarCache<int> cache;
  cache.Store("a", 1, 11);
  cache.Store("a", 2, 12);
  cache.Store("ab", 1, 21);
  cache.Store("", 'a', 31);
  const auto value = [&](std::string_view path, int index) {
    const int* const found = cache.Find(path, index);
    return found == nullptr ? -1 : *found;
  };
  EXPECT_EQ(value("a", 1), 11);
  EXPECT_EQ(value("a", 2), 12);
  EXPECT_EQ(value("ab", 1), 21);
  EXPECT_EQ(value("", 'a'), 31);
  EXPECT_EQ(value("a", 'b'), -1);
  EXPECT_EQ(value("a", 1 + (1 << 16)), -1);
  EXPECT_EQ(value("a", 1 + (1 << 8)), -1);
  EXPECT_EQ(value("b", 1), -1);
  EXPECT_EQ(value("a", 0), -1);
}

TEST(ResultCache, LaterValueReplacesTheEarlier) {
  ResultCache<std::string> cache;
  cache.scalars.Store("a", 1, "old");
  cache.scalars.Store("a", 1, "new");
  EXPECT_EQ(*cache.scalars.Find("a", 1), "new");
  EXPECT_EQ(cache.arrays.Find("a"), nullptr);
  cache.arrays.Store("a", {"old"});
  EXPECT_THAT(cache.arrays.Store("a", {"x", "y"}), testing::ElementsAre("x", "y"));
  EXPECT_THAT(*cache.arrays.Find("a"), testing::ElementsAre("x", "y"));
}

TEST(ResultCache, HoldsMany) {
  ScalarCache<int> cache;
  for (int path = 0; path < 100; ++path) {
    for (int index = 1; index <= 100; ++index) {
      cache.Store("path" + std::to_string(path), index, path * 1000 + index);
    }
  }
  for (int path = 0; path < 100; ++path) {
    for (int index = 1; index <= 100; ++index) {
      const int* const found = cache.Find("path" + std::to_string(path), index);
      ASSERT_NE(found, nullptr);
      ASSERT_EQ(*found, path * 1000 + index);
    }
  }
}

}  // namespace
