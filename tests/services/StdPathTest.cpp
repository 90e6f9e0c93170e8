#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

#include "StdPath.h"

namespace {

using Components = std::vector<std::string>;

Components ComponentsOf(const StdPath& path) {
  Components components;
  for (int i = 1; i <= static_cast<int>(path.GetLength()); ++i) {
    components.emplace_back(path[i].View());
  }
  return components;
}

TEST(StdPath, ComponentsAreFollowedByAnEmptyOne) {
  struct {
    const char* path;
    Components expected;
  } const cases[] = {
      {"Dimension.ParentStandard", {"Dimension", "ParentStandard", ""}},
      {"LineThickness", {"LineThickness", ""}},
      {"Styles.Text.Default.Font", {"Styles", "Text", "Default", "Font", ""}},
      {"Äußere.Größe", {"Äußere", "Größe", ""}},
      {" a . b ", {" a ", " b ", ""}},
      {"a:b", {"a:b", ""}},
  };
  for (const auto& test : cases) EXPECT_EQ(ComponentsOf(StdPath(test.path)), test.expected);
}

TEST(StdPath, EmptyPathIsTheSingleEmptyComponent) {
  EXPECT_EQ(ComponentsOf(StdPath("")), Components{""});
  EXPECT_EQ(ComponentsOf(StdPath(nullptr)), Components{""});
}

TEST(StdPath, SeparatorAtTheEndAddsNoComponent) {
  EXPECT_EQ(ComponentsOf(StdPath("A.")), ComponentsOf(StdPath("A")));
  EXPECT_EQ(ComponentsOf(StdPath("A.B.")), ComponentsOf(StdPath("A.B")));
}

TEST(StdPath, SeparatorsInARowLeaveAnEmptyComponentBetween) {
  EXPECT_EQ(ComponentsOf(StdPath("A..B")), (Components{"A", "", "B", ""}));
  EXPECT_EQ(ComponentsOf(StdPath("A...B")), (Components{"A", "", "", "B", ""}));
  EXPECT_EQ(ComponentsOf(StdPath(".A")), (Components{"", "A", ""}));
}

TEST(StdPath, NumberOfComponentsIsUnsigned) {
  EXPECT_EQ(StdPath("Dimension.ParentStandard").GetLength(), 3u);
  EXPECT_EQ(StdPath("LineThickness").GetLength(), 2u);
  static_assert(std::is_same_v<decltype(StdPath("").GetLength()), unsigned int>);
}

TEST(StdPath, ComponentOutsideTheListIsEmpty) {
  const StdPath path("A.B");
  for (const int place : {-1, 0, 4, 1000}) EXPECT_TRUE(path[place].IsEmpty()) << place;
}

TEST(StdPath, CopyKeepsTheComponents) {
  const StdPath source("A.B");
  const StdPath copy(source);
  StdPath assigned("C");
  assigned = source;
  EXPECT_EQ(ComponentsOf(copy), ComponentsOf(source));
  EXPECT_EQ(ComponentsOf(assigned), ComponentsOf(source));
}

TEST(StdPath, IsPolymorphic) {
  static_assert(std::has_virtual_destructor_v<StdPath>);
}

}  // namespace
