#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "HostSettings.h"
#include "StandardInMemory.h"
#include "VyrDftStandardServices.h"
#include "VyrIHolStandard.h"

// The shipped standards as an application gets them: by name, with no set-up but a folder to work
// in, through each interface.

namespace {

struct Shipped {
  const char* name;
  const char* parent;  // as the file says it
};

class ShippedByName : public testing::TestWithParam<Shipped> {
 protected:
  ~ShippedByName() override { VyrDftStandardServices::ReleaseOOTBStandards(); }

  VyrIDrwStandard_var Open() { return VyrDftStandardServices::GetOOTBStandard(GetParam().name); }

  const TemporaryFolder work_;
  const EnvironmentVariable site_{"VYR_STANDARD_PATH", ""};
  const EnvironmentVariable output_{"WOB_ODT_OUT", work_.Path().string()};
};

std::string NameOf(const testing::TestParamInfo<Shipped>& tested) {
  return tested.param.name;
}

template <class Interface>
void ExpectAnswers(Interface& standard, const Shipped& expected) {
  unsigned short* text = nullptr;
  ASSERT_EQ(standard.GetName(&text), S_OK);
  EXPECT_EQ(Taken(text), expected.name);
  ASSERT_EQ(standard.GetParentStandard(&text), S_OK);
  EXPECT_EQ(Taken(text), expected.parent);
  int version = 0;
  EXPECT_EQ(standard.GetValue("Version", 1, version), S_OK);
  EXPECT_EQ(version, 220);
  double width = 0;
  EXPECT_EQ(standard.GetValue("SheetFormat.Width", 1, width), S_OK);
  EXPECT_GT(width, 0);
  VyrUnicodeString format;
  EXPECT_EQ(standard.GetValue("SheetFormat.Name", 1, format), S_OK);
  EXPECT_FALSE(format.IsEmpty());
}

TEST_P(ShippedByName, AnswersThroughTheInterfaceOfDimensions) {
  const auto standard = VyrQuery<VyrIDftStandard>(Open().Get());
  ASSERT_TRUE(standard);
  ExpectAnswers(*standard, GetParam());
  VyrDrwStdSheetFormat* found = nullptr;
  int count = 0;
  ASSERT_EQ(VyrDftStandardServices::GetSheetFormats(standard.Get(), &found, count), S_OK);
  const std::unique_ptr<VyrDrwStdSheetFormat[]> formats(found);
  EXPECT_GT(count, 0);
}

TEST_P(ShippedByName, AnswersThroughTheEarlierInterface) {
  const auto standard = VyrQuery<VyrIHolStandard>(Open().Get());
  ASSERT_TRUE(standard);
  ExpectAnswers(*standard, GetParam());
}

TEST_P(ShippedByName, AnswersThroughTheInterfaceOfDrawings) {
  const VyrIDrwStandard_var standard = Open();
  ASSERT_TRUE(standard);
  ExpectAnswers(*standard, GetParam());
  EXPECT_EQ(standard->GetVersion(), 220);
  EXPECT_EQ(standard->HasNode("Dimension"), 1);
  int index = 0;
  EXPECT_EQ(standard->GetLineThicknessIndex(0.13, &index), S_OK);
  EXPECT_GE(index, 1);
}

TEST_P(ShippedByName, AnswersThroughTheInterfaceOfStylesAndTheStyles) {
  const auto manager = VyrQuery<VyrIDftStyleManager>(Open().Get());
  ASSERT_TRUE(manager);
  int version = 0;
  EXPECT_EQ(manager->GetVersion(&version), S_OK);
  EXPECT_EQ(version, 220);
  unsigned short* current = nullptr;
  ASSERT_EQ(manager->GetCurrentStyle(Utf16("Text"), &current, nullptr), S_OK);
  EXPECT_EQ(Taken(current), "Default");
  VyrIDftStyle* found = nullptr;
  ASSERT_EQ(manager->GetStyle(Utf16("Default"), Utf16("Text"), &found), S_OK);
  const VyrIDftStyle_var style(found);
  EXPECT_EQ(style->GetStdVersion(), 220);
  double size = 0;
  EXPECT_EQ(style->GetValue("Font.Size", 1, size), S_OK);
  EXPECT_GT(size, 0);
}

INSTANTIATE_TEST_SUITE_P(All, ShippedByName,
                         testing::Values(Shipped{"ISO", "ISO"}, Shipped{"JIS", "JIS"},
                                         Shipped{"ASME", "ANSI"}),
                         NameOf);

}  // namespace
