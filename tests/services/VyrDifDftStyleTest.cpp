#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "DiagnosticsCapture.h"
#include "StandardInMemory.h"
#include "VirtualTable.h"
#include "VyrDifDftStyle.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

using Style = VyrVar<VyrDifDftStyle>;

constexpr auto kStyles =
    "<std:node name='Version'><std:intval>210</std:intval></std:node>"
    "<std:node name='Styles'><std:node name='Text'><std:node name='Default'>"
    "<std:node name='Font'><std:node name='Size'><std:floatval>3.5</std:floatval></std:node>"
    "<std:node name='Name'><std:strval>SICH</std:strval></std:node></std:node>"
    "<std:node name='Weight'><std:intval>1</std:intval><std:intval>2</std:intval></std:node>"
    "<std:colorval name='Color'>10 20 30</std:colorval></std:node>"
    "<std:node name='Bold'><std:node name='Weight'><std:intval>7</std:intval></std:node>"
    "</std:node></std:node></std:node>";

Style StyleOf(const TransientStandard& standard, const char* name = "Default",
              const char* type = "Text") {
  Style style(new VyrDifDftStyle);
  VyrIDrwStandard_var owner = standard;
  EXPECT_EQ(style->Initialize(owner, name, type), S_OK);
  return style;
}

class BaseProbe : public VyrBaseUnknown {
 public:
  virtual void First() {}
};

template <class Class>
std::vector<std::size_t> SlotsOf() {
  return {SlotOf(&Class::GetName),
          SlotOf(&Class::GetType),
          SlotOf<HRESULT(const char*, int, int&)>(&Class::GetValue),
          SlotOf<HRESULT(const char*, int, double&)>(&Class::GetValue),
          SlotOf<HRESULT(const char*, int, VyrUnicodeString&)>(&Class::GetValue),
          SlotOf<HRESULT(const char*, int*, int*)>(&Class::GetValue),
          SlotOf<HRESULT(const char*, double*, int*)>(&Class::GetValue),
          SlotOf<HRESULT(const char*, VyrUnicodeString**, int*)>(&Class::GetValue),
          SlotOf(&Class::GetValueType),
          SlotOf(&Class::HasNode),
          SlotOf(&Class::GetStdVersion),
          SlotOf(&Class::GetStyleManager)};
}

TEST(StyleTable, OperationsStandInTheirOrder) {
  EXPECT_EQ(SlotsOf<VyrIDftStyle>(), SlotsFrom(3, 12));
  std::vector<std::size_t> slots = SlotsOf<VyrDifDftStyle>();
  slots.push_back(SlotOf(&VyrDifDftStyle::Initialize));
  EXPECT_EQ(slots, SlotsFrom(SlotOf(&BaseProbe::First), 13));
}

TEST(Style, IsMadeByTheObjectFramework) {
  const VyrVar<VyrBaseUnknown> made(VyrDifDftStyle::CreateItself());
  ASSERT_TRUE(made);
  EXPECT_STREQ(made->IsA(), "VyrDifDftStyle");
  EXPECT_STREQ(made->GetMetaObject().GetLateType(), "VyrNull");
  EXPECT_STREQ(made->GetMetaObject().GetLibrary(), "HolStandardInfra");
  EXPECT_TRUE(made->IsOnlyReference());
  void* found = nullptr;
  EXPECT_EQ(made->QueryInterface(VyrIDftStyle::kIid, &found), S_OK);
  EXPECT_TRUE(VyrIDftStyle_var(static_cast<VyrIDftStyle*>(found)));
}

#ifdef HOL_DEVELOPMENT_BUILD
TEST(Style, IsCountedWhileItLives) {
  const auto live = [] {
    long count = 0;
    VyrInstanceCounter::ForEach([&](const VyrInstanceCounter& counter) {
      if (counter.GetName() == std::string("VyrDifDftStyle")) count += counter.GetLive();
    });
    return count;
  };
  const Style first(new VyrDifDftStyle);
  {
    const Style second(new VyrDifDftStyle);
    EXPECT_EQ(live(), 2);
  }
  EXPECT_EQ(live(), 1);
}
#endif

TEST(Style, TellsItsNameAndType) {
  const TransientStandard standard = StandardOf(kStyles);
  const Style style = StyleOf(standard, "Cot\u00E9", "Sheet");
  unsigned short* text = nullptr;
  EXPECT_EQ(style->GetName(&text), S_OK);
  EXPECT_EQ(Taken(text), "Cot\u00E9");
  EXPECT_EQ(style->GetType(&text), S_OK);
  EXPECT_EQ(Taken(text), "Sheet");
  EXPECT_EQ(style->GetName(nullptr), E_INVALIDARG);
  EXPECT_EQ(style->GetType(nullptr), E_INVALIDARG);
}

TEST(Style, IsInitializedOnce) {
  const TransientStandard standard = StandardOf(kStyles);
  const Style style(new VyrDifDftStyle);
  VyrIDrwStandard_var none;
  EXPECT_EQ(style->Initialize(none, "Default", "Text"), E_INVALIDARG);
  VyrIDrwStandard_var owner = standard;
  EXPECT_EQ(style->Initialize(owner, "Default", "Text"), S_OK);
  EXPECT_EQ(CountOf(*standard), 3u);
  EXPECT_EQ(style->Initialize(owner, "Bold", "Sheet"), E_FAIL);
  EXPECT_EQ(style->Initialize(none, "Bold", "Sheet"), E_FAIL);
  unsigned short* name = nullptr;
  EXPECT_EQ(style->GetName(&name), S_OK);
  EXPECT_EQ(Taken(name), "Default");
  EXPECT_EQ(CountOf(*standard), 3u);
}

TEST(Style, QueriesAreAskedOfTheStandardBelowTypeAndName) {
  const DiagnosticsCapture capture;
  const TransientStandard standard = StandardOf(kStyles);
  const Style style = StyleOf(standard);
  int number = 0;
  double real = 0;
  VyrUnicodeString text;
  EXPECT_EQ(style->GetValue("Weight", 1, number), S_OK);
  EXPECT_EQ(number, 1);
  EXPECT_EQ(style->GetValue("Weight", 2, number), E_FAIL);
  EXPECT_EQ(style->GetValue("Font.Size", 1, real), S_OK);
  EXPECT_EQ(real, 3.5);
  EXPECT_EQ(style->GetValue("Font.Name", 1, text), S_OK);
  EXPECT_EQ(text, "SICH");
  EXPECT_THAT(NumbersOf<int>(*style, "Color"), ElementsAre(10, 20, 30));
  EXPECT_THAT(NumbersOf<double>(*style, "Font.Size"), ElementsAre(3.5));
  EXPECT_THAT(TextsOf(*style, "Font.Name"), ElementsAre("SICH"));
  auto type = VyrDftUnknownValue;
  int count = 0;
  EXPECT_EQ(style->GetValueType("Weight", &type, &count), S_OK);
  EXPECT_EQ(type, VyrDftIntValue);
  EXPECT_EQ(count, 2);
  EXPECT_EQ(style->GetValue("Nothing", 1, number), E_FAIL);
  EXPECT_EQ(style->GetValue(nullptr, 1, number), E_INVALIDARG);
  const Style bold = StyleOf(standard, "Bold");
  EXPECT_EQ(bold->GetValue("Weight", 1, number), S_OK);
  EXPECT_EQ(number, 7);
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST(Style, PathIsTypeNameAndThePathOfTheQuery) {
  const TransientStandard standard = StandardOf(kStyles);
  const Style style = StyleOf(standard, "My style", "Sheet");
  const TraceOn trace("DifCptWithStd");
  for (const char* path : {"Font.Size", "A", "Font.Size.Very.Long"}) {
    const DiagnosticsCapture capture;
    int number = 0;
    EXPECT_EQ(style->GetValue(path, 1, number), E_FAIL);
    EXPECT_THAT(capture.traces,
                testing::Contains("  StdPath is: 'Sheet.My style." + std::string(path) + "'\n"));
  }
}

TEST(Style, HasNodeLooksInTheWholeStandard) {
  // Unlike the queries: callers ask a style for nodes that lie outside it.
  const TransientStandard standard = StandardOf(kStyles);
  const Style style = StyleOf(standard);
  EXPECT_EQ(style->HasNode("Version"), 1);
  EXPECT_EQ(style->HasNode("Styles.Text.Bold"), 1);
  EXPECT_EQ(style->HasNode("Text.Default.Font"), 1);
  EXPECT_EQ(style->HasNode("Nothing"), 0);
  EXPECT_EQ(style->HasNode(nullptr), 0);
}

TEST(Style, TellsTheVersionOfItsStandard) {
  EXPECT_EQ(StyleOf(StandardOf(kStyles))->GetStdVersion(), 210);
}

TEST(Style, HandsOutItsStyleManagerWithAReference) {
  const TransientStandard standard = StandardOf(kStyles);
  const Style style = StyleOf(standard);
  VyrIDftStyleManager* found = nullptr;
  EXPECT_EQ(style->GetStyleManager(&found), S_OK);
  const VyrIDftStyleManager_var manager(found);
  EXPECT_EQ(manager.Get(), static_cast<VyrIDftStyleManager*>(standard.Get()));
  EXPECT_EQ(CountOf(*standard), 3u);
  EXPECT_EQ(style->GetStyleManager(&found), E_INVALIDARG);
  EXPECT_EQ(style->GetStyleManager(nullptr), E_INVALIDARG);
}

TEST(Style, WithoutAStandardAnswersNothing) {
  const Style style(new VyrDifDftStyle);
  DiagnosticsCapture capture;
  int number = 77;
  double real = 7.5;
  VyrUnicodeString text = "kept";
  VyrUnicodeString* texts = nullptr;
  int count = 77;
  VyrDftStandardValueType type;
  EXPECT_EQ(style->GetValue("a", 1, number), E_FAIL);
  EXPECT_EQ(style->GetValue("a", 1, real), E_FAIL);
  EXPECT_EQ(style->GetValue("a", 1, text), E_FAIL);
  EXPECT_EQ(style->GetValue("a", &number, &count), E_FAIL);
  EXPECT_EQ(style->GetValue("a", &real, &count), E_FAIL);
  EXPECT_EQ(style->GetValue("a", &texts, &count), E_FAIL);
  EXPECT_EQ(style->GetValueType("a", &type, &count), E_FAIL);
  EXPECT_EQ(number + count, 154);
  EXPECT_EQ(style->HasNode("a"), 0);
  EXPECT_EQ(style->GetStdVersion(), -1);
  unsigned short* name = nullptr;
  EXPECT_EQ(style->GetName(&name), S_OK);
  EXPECT_EQ(Taken(name), "");
  EXPECT_THAT(capture.errors, IsEmpty());
  VyrIDftStyleManager* manager = nullptr;
  EXPECT_EQ(style->GetStyleManager(&manager), E_UNEXPECTED);
  EXPECT_EQ(manager, nullptr);
  EXPECT_THAT(CheckTexts(capture.errors),
              ElementsAre("ON POINTER : NULL handler [VyrDifDftStyle]"));
}

TEST(Style, TracesItsOperations) {
  const TransientStandard standard = StandardOf(kStyles);
  const Style style = StyleOf(standard);
  const TraceOn trace("DifFeatContStd");
  ASSERT_TRUE(trace.IsFound());
  EXPECT_STREQ(VyrTrace::Find("DifFeatContStd")->GetTitle(), "VyrDifDftStyle traces");
  const DiagnosticsCapture capture;
  EXPECT_EQ(style->HasNode("Version"), 1);
  EXPECT_THAT(capture.traces, ElementsAre("{ VyrDifDftStyle::HasNode\n",
                                          StartsWith("  Alias: 'Default'\tAddress:(0x"),
                                          "} VyrDifDftStyle::HasNode\n"));
}

}  // namespace
