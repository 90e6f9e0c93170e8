#include <gtest/gtest.h>

#include "VyrDrwStdSheetStyle.h"

namespace {

VyrDrwStdSheetStyle Style(const char* name, double scale = 1) {
  VyrDrwStdSheetStyle style;
  style.name = name;
  style.scale = scale;
  return style;
}

TEST(SheetFormat, DefaultIsWithoutNameAndZero) {
  const VyrDrwStdSheetFormat format;
  EXPECT_EQ(format.name, "");
  EXPECT_EQ(format.width, 0);
  EXPECT_EQ(format.height, 0);
  EXPECT_EQ(format.orientation, 0);
  EXPECT_EQ(format.reserved, 0);
}

TEST(SheetStyle, DefaultIsFirstAngleLandscapeAtScale1WithItsFormatShown) {
  const VyrDrwStdSheetStyle style;
  EXPECT_EQ(style.name, "");
  EXPECT_EQ(style.scale, 1);
  EXPECT_EQ(style.projectionMethod, 0);
  EXPECT_EQ(style.genViewsPosMode, 0);
  EXPECT_EQ(style.hasGenViewsPosMode, 0);
  EXPECT_EQ(style.orientation, 1);
  EXPECT_EQ(style.hasOrientation, 0);
  EXPECT_EQ(style.displayFormat, 1);
  EXPECT_EQ(style.hasDisplayFormat, 0);
  EXPECT_EQ(style.format.name, "");
  EXPECT_EQ(style.hasFormat, 0);
}

TEST(SheetStyle, NameAloneMakesStylesEqual) {
  VyrDrwStdSheetStyle other = Style("A0 ISO", 2);
  other.hasFormat = 1;
  other.orientation = 0;
  EXPECT_TRUE(Style("A0 ISO") == other);
  EXPECT_FALSE(Style("A0 ISO") != other);
  EXPECT_FALSE(Style("A0 ISO") == Style("a0 ISO"));
  EXPECT_TRUE(Style("A0 ISO") != Style("a0 ISO"));
}

}  // namespace
