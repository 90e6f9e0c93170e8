#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "DiagnosticsCapture.h"
#include "StandardInMemory.h"
#include "VyrIUnknownList.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;

const std::string kNullPointer = "ON POINTER : NULL handler [VyrDifTransientStandard]";

constexpr auto kStyles =
    "<std:node name='Styles'>"
    "<std:node name='Text'><std:node name='Default'><std:node name='Size'>"
    "<std:floatval>3.5</std:floatval></std:node></std:node><std:node name='Bold'/></std:node>"
    "<std:node name='Table'><std:node name='Default'/></std:node>"
    "<std:node name='Balloon'/>"
    "<std:node name='Sheet'><std:node name='Wide'/><std:node name='Default'/></std:node>"
    "<std:node name='Stamp'><std:node name='Default'/></std:node>"
    "</std:node>";

std::vector<std::string> StylesNames(VyrDifTransientStandard& standard, const char* type) {
  VyrListValVyrUnicodeString names = {"old"};
  EXPECT_EQ(standard.GetStylesNames(type, &names), S_OK) << type;
  std::vector<std::string> texts;
  for (const VyrUnicodeString& name : names) texts.emplace_back(name.View());
  return texts;
}

/// The styles of a list as "type.name".
std::vector<std::string> NamesIn(VyrIUnknownList& list) {
  std::vector<std::string> names;
  unsigned int count = 0;
  EXPECT_EQ(list.Count(&count), S_OK);
  for (unsigned int i = 0; i < count; ++i) {
    IUnknown* object = nullptr;
    EXPECT_EQ(list.Item(i, &object), S_OK);
    const auto style = VyrQuery<VyrIDftStyle>(VyrVar<IUnknown>(object).Get());
    unsigned short* type = nullptr;
    unsigned short* name = nullptr;
    EXPECT_EQ(style->GetType(&type), S_OK);
    EXPECT_EQ(style->GetName(&name), S_OK);
    const std::string typeText = Taken(type);
    names.push_back(typeText + "." + Taken(name));
  }
  return names;
}

std::vector<std::string> AvailableStyles(VyrDifTransientStandard& standard,
                                         const unsigned short* type) {
  VyrIUnknownList* list = nullptr;
  EXPECT_EQ(standard.GetAvailableStyles(type, &list, nullptr), S_OK);
  return NamesIn(*VyrIUnknownList_var(list));
}

TEST(StyleNames, AreThoseOfTheNodesOfTheTypeInDocumentOrder) {
  const DiagnosticsCapture capture;
  const TransientStandard standard = StandardOf(kStyles);
  EXPECT_THAT(StylesNames(*standard, "Text"), ElementsAre("Default", "Bold"));
  EXPECT_THAT(StylesNames(*standard, "Sheet"), ElementsAre("Wide", "Default"));
  EXPECT_THAT(StylesNames(*standard, "Balloon"), IsEmpty());
  EXPECT_THAT(StylesNames(*standard, "Stamp"), ElementsAre("Default"));
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST(StyleNames, OtherElementsAndNodesWithoutANameAreSkipped) {
  const DiagnosticsCapture capture;
  const TransientStandard standard = StandardOf(
      "<std:node name='Styles'><std:node name='Text'>\n text <!-- a note -->"
      "<std:intval name='value'>1</std:intval><std:node/><std:node name=''/>"
      "<std:typeval name='instance'/><node name='foreign'/><std:node name='kept'/>"
      "</std:node></std:node>");
  EXPECT_THAT(StylesNames(*standard, "Text"), ElementsAre("kept"));
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST(StyleNames, TypeThatTheStandardLacksIsUnexpectedAndEmptiesTheList) {
  const DiagnosticsCapture capture;
  const TransientStandard standard = StandardOf(kStyles);
  VyrListValVyrUnicodeString names = {"old"};
  EXPECT_EQ(standard->GetStylesNames("Arrow", &names), E_UNEXPECTED);
  EXPECT_THAT(names, IsEmpty());
  names = {"old"};
  EXPECT_EQ(standard->GetStylesNames(nullptr, &names), E_INVALIDARG);
  EXPECT_THAT(names, IsEmpty());
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST(StyleNames, NullListIsReportedAndInvalid) {
  const TransientStandard standard = StandardOf(kStyles);
  const DiagnosticsCapture capture;
  EXPECT_EQ(standard->GetStylesNames("Text", nullptr), E_INVALIDARG);
  EXPECT_THAT(CheckTexts(capture.errors), ElementsAre(kNullPointer));
}

TEST(StyleNames, TypeMayBeOneOfTheNamesThatGo) {
  const TransientStandard standard = StandardOf(
      "<std:node name='Styles'><std:node name='A type with a long name'>"
      "<std:node name='Default'/></std:node></std:node>");
  VyrListValVyrUnicodeString names = {"A type with a long name"};
  ASSERT_EQ(standard->GetStylesNames(names[0].CString(), &names), S_OK);
  EXPECT_EQ(names, VyrListValVyrUnicodeString{"Default"});
}

TEST(StyleNames, AreTraced) {
  const TransientStandard standard = StandardOf(kStyles);
  const TraceOn trace("DifCptWithStd");
  const DiagnosticsCapture capture;
  StylesNames(*standard, "Text");
  EXPECT_THAT(capture.traces, IsSupersetOf({"{ VyrDifTransientStandard::GetStylesNames\n",
                                            "  Styles are:\n", "  \t'Default'\n", "  \t'Bold'\n"}));
}

TEST(StylePath, IsNothingTwiceAndTheNameOfTheStandard) {
  const TransientStandard standard = StandardOf(kStyles, "Norme d\u00E9taill\u00E9e");
  char before = 'x';
  char* first = &before;
  char* second = &before;
  char* name = &before;
  EXPECT_EQ(standard->GetStylePath(&first, &second, &name), S_OK);
  EXPECT_EQ(first, nullptr);
  EXPECT_EQ(second, nullptr);
  EXPECT_STREQ(std::unique_ptr<char[]>(name).get(), "Norme d\u00E9taill\u00E9e");
}

TEST(StylePath, NullArgumentIsReportedAndInvalid) {
  const TransientStandard standard = StandardOf(kStyles);
  for (int null = 0; null < 3; ++null) {
    char before = 'x';
    char* outputs[] = {&before, &before, &before};
    const DiagnosticsCapture capture;
    EXPECT_EQ(
        standard->GetStylePath(null == 0 ? nullptr : &outputs[0], null == 1 ? nullptr : &outputs[1],
                               null == 2 ? nullptr : &outputs[2]),
        E_INVALIDARG);
    EXPECT_THAT(outputs, testing::Each(&before));
    EXPECT_THAT(CheckTexts(capture.errors), ElementsAre(kNullPointer));
  }
}

TEST(StyleManager, MakesAStyleWithOneReferenceForTheCaller) {
  const TransientStandard standard = StandardOf(kStyles);
  VyrIDftStyle* made = nullptr;
  ASSERT_EQ(standard->GetStyle(Utf16("Default"), Utf16("Text"), &made), S_OK);
  const VyrIDftStyle_var style(made);
  EXPECT_EQ(CountOf(*style), 1u);
  EXPECT_EQ(CountOf(*standard), 2u);
  double size = 0;
  EXPECT_EQ(style->GetValue("Size", 1, size), S_OK);
  EXPECT_EQ(size, 3.5);
}

TEST(StyleManager, StyleKeepsItsStandardAlive) {
  TransientStandard standard = StandardOf(kStyles);
  VyrIDftStyle* made = nullptr;
  ASSERT_EQ(standard->GetStyle(Utf16("Default"), Utf16("Text"), &made), S_OK);
  const VyrIDftStyle_var style(made);
  standard = nullptr;
  EXPECT_EQ(style->HasNode("Styles.Text"), 1);
}

TEST(StyleManager, MakesStylesThatTheStandardDoesNotHold) {
  const TransientStandard standard = StandardOf(kStyles);
  VyrIDftStyle* made = nullptr;
  ASSERT_EQ(standard->GetStyle(Utf16("None"), Utf16("Nothing"), &made), S_OK);
  double size = 0;
  EXPECT_EQ(VyrIDftStyle_var(made)->GetValue("Size", 1, size), E_FAIL);
}

TEST(StyleManager, StyleNeedsANameATypeAndAnEmptyOutput) {
  const TransientStandard standard = StandardOf(kStyles);
  const Utf16 text("Text");
  const Utf16 empty("");
  VyrIDftStyle* none = nullptr;
  EXPECT_EQ(standard->GetStyle(empty, text, &none), E_INVALIDARG);
  EXPECT_EQ(standard->GetStyle(text, empty, &none), E_INVALIDARG);
  EXPECT_EQ(standard->GetStyle(nullptr, text, &none), E_INVALIDARG);
  EXPECT_EQ(standard->GetStyle(text, nullptr, &none), E_INVALIDARG);
  EXPECT_EQ(standard->GetStyle(text, text, nullptr), E_INVALIDARG);
  EXPECT_EQ(none, nullptr);
  VyrIDftStyle* made = nullptr;
  ASSERT_EQ(standard->GetStyle(text, text, &made), S_OK);
  const VyrIDftStyle_var owner(made);
  EXPECT_EQ(standard->GetStyle(text, text, &made), E_INVALIDARG);
  EXPECT_EQ(made, owner.Get());
}

TEST(AvailableStyles, OfEveryTypeBeginWithSheetsAndEndWithTexts) {
  const DiagnosticsCapture capture;
  const TransientStandard standard = StandardOf(kStyles);
  const auto all =
      ElementsAre("Sheet.Wide", "Sheet.Default", "Table.Default", "Text.Default", "Text.Bold");
  EXPECT_THAT(AvailableStyles(*standard, nullptr), all);
  EXPECT_THAT(AvailableStyles(*standard, Utf16("")), all);
  EXPECT_THAT(capture.errors, IsEmpty());
  EXPECT_EQ(CountOf(*standard), 1u);
}

TEST(AvailableStyles, OfOneTypeAreThoseOfThatTypeAlone) {
  const TransientStandard standard = StandardOf(kStyles);
  EXPECT_THAT(AvailableStyles(*standard, Utf16("Text")), ElementsAre("Text.Default", "Text.Bold"));
  // Only the five types of objects have styles, whatever the standard holds.
  for (const char* type : {"Arrow", "Balloon", "Stamp", "text"}) {
    EXPECT_THAT(AvailableStyles(*standard, Utf16(type)), IsEmpty()) << type;
  }
}

TEST(AvailableStyles, AreTheListsAloneOnceHandedOut) {
  TransientStandard standard = StandardOf(kStyles);
  VyrIUnknownList* made = nullptr;
  const Utf16 unused("extra");
  EXPECT_EQ(standard->GetAvailableStyles(Utf16("Table"), &made, unused), S_OK);
  const VyrIUnknownList_var list(made);
  EXPECT_EQ(CountOf(*list), 1u);
  EXPECT_EQ(CountOf(*standard), 2u);
  EXPECT_EQ(list->RemoveAll(), S_OK);
  EXPECT_EQ(CountOf(*standard), 1u);
  EXPECT_EQ(standard->GetAvailableStyles(Utf16("Table"), nullptr, nullptr), E_INVALIDARG);
}

TEST(AvailableStyles, AreAddedBehindWhatAListHolds) {
  const TransientStandard standard = StandardOf(kStyles);
  const VyrIUnknownList_var list = VyrMakeUnknownList();
  EXPECT_EQ(standard->FillAvailableStyles("Table", list.Get()), S_OK);
  EXPECT_EQ(standard->FillAvailableStyles("Text", list.Get()), S_OK);
  EXPECT_THAT(NamesIn(*list), ElementsAre("Table.Default", "Text.Default", "Text.Bold"));
  const DiagnosticsCapture capture;
  EXPECT_EQ(standard->FillAvailableStyles("Text", nullptr), E_INVALIDARG);
  EXPECT_THAT(CheckTexts(capture.errors), ElementsAre(kNullPointer));
}

TEST(AvailableStyles, ShippedStandardsHaveSomeOfEveryTypeThatTheyName) {
  for (const char* file : {"ISO", "JIS", "ANSI-ASME"}) {
    const TransientStandard standard = ShippedStandard(file);
    const std::vector<std::string> all = AvailableStyles(*standard, nullptr);
    ASSERT_FALSE(all.empty());
    EXPECT_EQ(all.front(), "Sheet.Default");
    EXPECT_EQ(all.back().rfind("Text.", 0), 0u) << all.back();
  }
}

std::string CurrentStyle(VyrDifTransientStandard& standard, const char* type) {
  unsigned short* name = nullptr;
  EXPECT_EQ(standard.GetCurrentStyle(Utf16(type), &name, nullptr), S_OK);
  return Taken(name);
}

TEST(CurrentStyle, IsDefaultUntilAnotherIsSetForTheType) {
  const TransientStandard standard = StandardOf(kStyles);
  EXPECT_EQ(CurrentStyle(*standard, "Text"), "Default");
  EXPECT_EQ(standard->SetCurrentStyle(Utf16("Text"), Utf16("Bold"), Utf16("extra")), S_OK);
  EXPECT_EQ(CurrentStyle(*standard, "Text"), "Bold");
  EXPECT_EQ(CurrentStyle(*standard, "Table"), "Default");
  EXPECT_EQ(standard->SetCurrentStyle(Utf16("Text"), Utf16("no such style"), nullptr), S_OK);
  EXPECT_EQ(CurrentStyle(*standard, "Text"), "no such style");
}

TEST(CurrentStyle, NeedsATypeANameAndAnEmptyOutput) {
  const TransientStandard standard = StandardOf(kStyles);
  const Utf16 text("Text");
  const Utf16 empty("");
  unsigned short* name = nullptr;
  EXPECT_EQ(standard->GetCurrentStyle(empty, &name, nullptr), E_INVALIDARG);
  EXPECT_EQ(standard->GetCurrentStyle(nullptr, &name, nullptr), E_INVALIDARG);
  EXPECT_EQ(standard->GetCurrentStyle(text, nullptr, nullptr), E_INVALIDARG);
  EXPECT_EQ(name, nullptr);
  unsigned short zero = 0;
  name = &zero;
  EXPECT_EQ(standard->GetCurrentStyle(text, &name, nullptr), E_INVALIDARG);
  EXPECT_EQ(name, &zero);
  EXPECT_EQ(standard->SetCurrentStyle(empty, text, nullptr), E_INVALIDARG);
  EXPECT_EQ(standard->SetCurrentStyle(text, empty, nullptr), E_INVALIDARG);
  EXPECT_EQ(standard->SetCurrentStyle(nullptr, text, nullptr), E_INVALIDARG);
  EXPECT_EQ(standard->SetCurrentStyle(text, nullptr, nullptr), E_INVALIDARG);
  EXPECT_EQ(CurrentStyle(*standard, "Text"), "Default");
}

TEST(CurrentStyle, TableRefusesAnEmptyTypeAndReportsAnEmptyName) {
  const TransientStandard standard = StandardOf(kStyles);
  EXPECT_EQ(standard->StoreCurrentStyle("", "Bold"), E_UNEXPECTED);
  EXPECT_EQ(standard->StoreCurrentStyle("Text", ""), S_OK);
  const DiagnosticsCapture capture;
  VyrUnicodeString name = "kept";
  EXPECT_EQ(standard->FindCurrentStyle("Text", name), E_UNEXPECTED);
  EXPECT_EQ(name, "kept");
  EXPECT_THAT(CheckTexts(capture.errors),
              ElementsAre("BOOL IS FALSE: the current style has no name "
                          "[VyrDifTransientStandard]"));
  unsigned short* copy = nullptr;
  EXPECT_EQ(standard->GetCurrentStyle(Utf16("Text"), &copy, nullptr), E_UNEXPECTED);
  EXPECT_EQ(copy, nullptr);
}

}  // namespace
