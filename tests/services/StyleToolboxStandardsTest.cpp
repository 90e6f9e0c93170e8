#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "StyleFakes.h"
#include "TemporaryFolder.h"
#include "VyrDftStandardServices.h"
#include "VyrDftStyleToolbox.h"

// The style toolbox on standards as they are: read from files.

namespace {

/// An element with lines and points that follows the standard of a file.
class StyledElement : public testing::Test {
 protected:
  void Follow(const std::string& file) {
    const VyrIDrwStandard_var standard = VyrDftStandardServices::GetStandardFromFile(file, "Site");
    element->standard = VyrQuery<VyrIDftStandard>(standard.Get());
    element->shown = {{VyrVisLines, {}}, {VyrVisPoints, {}}};
  }
  /// Follows a standard whose style "Default" of the type "Line" holds `values`.
  void FollowSite(const std::string& values, int version = 220) {
    Follow(folder.Write(
        "site.xml",
        "<std:node xmlns:std='http://schemas.hol-standard.example/drafting/std' name='drafting'>"
        "<std:node name='Version'><std:intval>" +
            std::to_string(version) +
            "</std:intval></std:node><std:node name='Styles'><std:node name='Line'>"
            "<std:node name='Default'>" +
            values + "</std:node></std:node></std:node></std:node>"));
  }
  VyrIDftStyle_var Style(const char* type, const char* name) {
    VyrIDftStyle* found = nullptr;
    VyrDftStyleToolbox::GetStyle(static_cast<VyrIDftElementWithStandard*>(element.Get()), type,
                                 &found, name, "");
    return VyrIDftStyle_var(found);
  }
  HRESULT SetGraphicProperties(const char* type, const char* path = "") {
    return VyrDftStyleToolbox::SetGraphicProperties(Style(type, "Default").Get(), path,
                                                    element.Get(), 0, 0, DftStyleOnCreation, 0);
  }
  VyrVisPropertiesValues& Lines() { return element->shown[VyrVisLines]; }
  VyrVisPropertiesValues& Points() { return element->shown[VyrVisPoints]; }

  TemporaryFolder folder;
  VyrVar<FakeDraftingElement> element{new FakeDraftingElement};
};

TEST_F(StyledElement, HasTheGraphicsOfItsShippedStandard) {
  Follow(HOL_STANDARDS "/ISO.xml");
  EXPECT_EQ(SetGraphicProperties("ConstructionCurve"), S_OK);
  EXPECT_EQ(Lines(), (VyrVisPropertiesValues{1, 1, {}, VyrVisColor{140, 140, 140}}));
  EXPECT_EQ(SetGraphicProperties("ConstructionPoint"), S_OK);
  EXPECT_EQ(Points(), (VyrVisPropertiesValues{{}, {}, 1, VyrVisColor{140, 140, 140}}));
  EXPECT_EQ(SetGraphicProperties("Text", "Graphic"), S_OK);
  EXPECT_EQ(Lines(), (VyrVisPropertiesValues{1, 1, {}, VyrVisColor{0, 0, 0}}));
}

TEST_F(StyledElement, TakesTheCurrentStyleOfItsStandardWithoutAName) {
  Follow(HOL_STANDARDS "/ISO.xml");
  const VyrIDftStyle_var style = Style("Text", "");
  ASSERT_TRUE(style);
  unsigned short* name = nullptr;
  ASSERT_EQ(style->GetName(&name), S_OK);
  const std::unique_ptr<unsigned short[]> owned(name);
  EXPECT_EQ(VyrUnicodeString(name).View(), "Default");
}

TEST_F(StyledElement, GetsNoStyleFromAStandardOfVersionZero) {
  FollowSite("", 0);
  EXPECT_FALSE(Style("Line", "Default"));
  FollowSite("", 1);
  EXPECT_TRUE(Style("Line", "Default"));
}

TEST_F(StyledElement, IsBlackWhereAStandardHoldsColorsThatAreNone) {
  const auto color = [](const std::string& components) {
    return "<std:node name='Color'><std:colorval>" + components + "</std:colorval></std:node>";
  };
  std::string manyColors;
  std::string manyComponents;
  for (int i = 0; i < 1000; ++i) {
    manyColors += color("9 9 9");
    manyComponents += "9 ";
  }
  FollowSite(color("1 2 3"));
  EXPECT_EQ(SetGraphicProperties("Line"), S_OK);
  EXPECT_EQ(Lines().color, (VyrVisColor{1, 2, 3}));
  for (const std::string& hostile : {color("9 9"), color(manyComponents), manyColors}) {
    FollowSite(hostile);
    EXPECT_EQ(SetGraphicProperties("Line"), S_OK);
    EXPECT_EQ(Lines().color, VyrVisColor());
    EXPECT_EQ(Points().color, VyrVisColor());
  }
}

TEST_F(StyledElement, HasItsThicknessAndLineTypeMapped) {
  FollowSite(
      "<std:node name='Thickness'><std:intval>0</std:intval></std:node>"
      "<std:node name='Linetype'><std:intval>8</std:intval></std:node>");
  EXPECT_EQ(SetGraphicProperties("Line"), S_OK);
  EXPECT_EQ(Lines().width, 2U);
  EXPECT_EQ(Lines().lineType, 0U);
}

}  // namespace
