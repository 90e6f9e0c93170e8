#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "DiagnosticsCapture.h"
#include "StyleFakes.h"
#include "VyrDftStyleToolbox.h"
#include "VyrHolVisuEventsToolbox.h"

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

IUnknown* AsUnknown(FakeDraftingElement& element) {
  return static_cast<VyrIDftElementWithStandard*>(&element);
}

class StyleOfElement : public testing::Test {
 protected:
  HRESULT GetStyle(const char* type, const char* name, const char* extra = "") {
    VyrIDftStyle* found = nullptr;
    const HRESULT result =
        VyrDftStyleToolbox::GetStyle(AsUnknown(*element), type, &found, name, extra);
    style = VyrIDftStyle_var(found);
    return result;
  }

  DiagnosticsCapture diagnostics;
  VyrVar<FakeStandard> standard{new FakeStandard};
  VyrVar<FakeDraftingElement> element{new FakeDraftingElement(
      VyrIDftStandard_var::Share(static_cast<VyrIDftStandard*>(standard.Get())))};
  VyrIDftStyle_var style;
};

TEST_F(StyleOfElement, IsTheOneOfThatNameInTheElementsStandard) {
  EXPECT_EQ(GetStyle("Text", "ViewText"), S_OK);
  EXPECT_EQ(style, standard->style);
  EXPECT_EQ(standard->askedType, "Text");
  EXPECT_EQ(standard->askedName, "ViewText");
  EXPECT_EQ(standard->askedCurrentType, "") << "the current style was asked for";
  EXPECT_THAT(diagnostics.errors, IsEmpty());
}

TEST_F(StyleOfElement, IsTheCurrentOneOfTheTypeWithoutAName) {
  standard->currentStyle = "Größe Ω";
  EXPECT_EQ(GetStyle("Balloon", "", "more"), S_OK);
  EXPECT_EQ(standard->askedCurrentType, "Balloon");
  EXPECT_EQ(standard->askedExtra, "more");
  EXPECT_EQ(standard->askedType, "Balloon");
  EXPECT_EQ(standard->askedName, "Größe Ω");
}

TEST_F(StyleOfElement, FailsWithoutACurrentOne) {
  standard->currentStyleResult = E_UNEXPECTED;
  EXPECT_EQ(GetStyle("Text", ""), E_FAIL);
  EXPECT_EQ(standard->askedName, "");
}

TEST_F(StyleOfElement, FailsWithoutElementOrType) {
  VyrIDftStyle* found = nullptr;
  EXPECT_EQ(VyrDftStyleToolbox::GetStyle(nullptr, "Text", &found, "Default", ""), E_FAIL);
  EXPECT_EQ(GetStyle("", "Default"), E_FAIL);
  EXPECT_EQ(found, nullptr);
  EXPECT_THAT(diagnostics.errors, IsEmpty());
}

TEST_F(StyleOfElement, FailsReportedWithoutAStandard) {
  element->standard = nullptr;
  EXPECT_EQ(GetStyle("Text", "Default"), E_FAIL);
  EXPECT_THAT(CheckTexts(diagnostics.errors),
              ElementsAre("ON POINTER : KO: No Standard Found [VyrDftStyleToolbox]"));
}

TEST_F(StyleOfElement, FailsReportedWhenTheElementRefusesItsStandard) {
  element->standardResult = E_FAIL;
  EXPECT_EQ(GetStyle("Text", "Default"), E_FAIL);
  EXPECT_THAT(CheckTexts(diagnostics.errors),
              ElementsAre("ON POINTER : KO: No Standard Found [VyrDftStyleToolbox]"));
}

TEST_F(StyleOfElement, FailsReportedForAnElementThatFollowsNoStandard) {
  VyrIDftStyle* found = nullptr;
  EXPECT_EQ(VyrDftStyleToolbox::GetStyle(standard->style.Get(), "Text", &found, "Default", ""),
            E_FAIL);
  EXPECT_THAT(CheckTexts(diagnostics.errors),
              ElementsAre("ON POINTER : KO: No Standard Found [VyrDftStyleToolbox]"));
}

TEST_F(StyleOfElement, FailsReportedForAStandardWithoutStyles) {
  element->standard = VyrIDftStandard_var(new FakePlainStandard);
  EXPECT_EQ(GetStyle("Text", "Default"), E_FAIL);
  EXPECT_THAT(
      CheckTexts(diagnostics.errors),
      ElementsAre("ON POINTER : KO: Standard is not VyrIDftStyleManager [VyrDftStyleToolbox]"));
}

TEST_F(StyleOfElement, IsThereFromVersionOneOn) {
  for (const int version : {-1, 0}) {
    standard->version = version;
    EXPECT_EQ(GetStyle("Text", "Default"), E_FAIL) << version;
    EXPECT_EQ(style, nullptr);
  }
  standard->version = 1;
  EXPECT_EQ(GetStyle("Text", "Default"), S_OK);
}

TEST_F(StyleOfElement, FailsWhenTheVersionCannotBeRead) {
  standard->versionResult = E_UNEXPECTED;
  EXPECT_EQ(GetStyle("Text", "Default"), E_FAIL);
}

TEST_F(StyleOfElement, IsWhatTheStyleManagerAnswers) {
  for (const HRESULT result : {E_INVALIDARG, E_UNEXPECTED, S_FALSE}) {
    standard->styleResult = result;
    EXPECT_EQ(GetStyle("Text", "Default"), result);
  }
}

class ApplyStyle : public StyleOfElement {
 protected:
  HRESULT Apply(const char* type = "Text", const char* name = "Default") {
    return VyrDftStyleToolbox::ApplyStyle(AsUnknown(*element), type, name, DftStyleApplyUnsetOnly,
                                          DftStyleOnStandardChange, "more");
  }
};

TEST_F(ApplyStyle, GivesTheElementTheStyleModeAndContext) {
  EXPECT_EQ(Apply(), S_OK);
  EXPECT_THAT(element->applied, ElementsAre(standard->style.Get()));
  EXPECT_EQ(element->mode, DftStyleApplyUnsetOnly);
  EXPECT_EQ(element->context, DftStyleOnStandardChange);
}

TEST_F(ApplyStyle, GivesTheCurrentStyleWithoutAName) {
  standard->currentStyle = "Bold";
  EXPECT_EQ(Apply("Text", ""), S_OK);
  EXPECT_EQ(standard->askedName, "Bold");
  EXPECT_EQ(standard->askedExtra, "more");
}

TEST_F(ApplyStyle, AnswersWhatTheElementAnswers) {
  for (const HRESULT result : {S_FALSE, E_NOTIMPL}) {
    element->applyResult = result;
    EXPECT_EQ(Apply(), result);
  }
}

TEST_F(ApplyStyle, FailsWithoutElementTypeOrStyle) {
  EXPECT_EQ(VyrDftStyleToolbox::ApplyStyle(nullptr, "Text", "Default", DftStyleApplyAll,
                                           DftStyleOnCreation, ""),
            E_FAIL);
  EXPECT_EQ(Apply(""), E_FAIL);
  standard->styleResult = E_UNEXPECTED;
  EXPECT_EQ(Apply(), E_FAIL);
  standard->styleResult = S_OK;
  standard->style = nullptr;
  EXPECT_EQ(Apply(), E_FAIL);
  EXPECT_THAT(element->applied, IsEmpty());
}

TEST_F(ApplyStyle, FailsForAnElementThatTakesNoStyles) {
  const VyrVar<FakePlainElement> plain(new FakePlainElement(element->standard));
  EXPECT_EQ(
      VyrDftStyleToolbox::ApplyStyle(static_cast<VyrIDftElementWithStandard*>(plain.Get()), "Text",
                                     "Default", DftStyleApplyAll, DftStyleOnCreation, ""),
      E_FAIL);
  EXPECT_EQ(standard->askedName, "");
}

/// Values that no style holds, to see what is set and what is left.
VyrVisPropertiesValues Marked() {
  return {71, 72, 73, VyrVisColor{74, 75, 76}};
}

class StyleGraphics : public testing::Test {
 protected:
  HRESULT Read(int geometry, int useDefaults = 0, const char* path = "Graphic") {
    return VyrDftStyleToolbox::GetPropertiesValueFromStyle(style.Get(), path, geometry, useDefaults,
                                                           values);
  }

  VyrVar<FakeStyle> style{new FakeStyle};
  VyrVisPropertiesValues values = Marked();
};

TEST_F(StyleGraphics, OfLinesAreThicknessLineTypeAndColor) {
  style->ints = {{"Graphic.Thickness", 5}, {"Graphic.LineType", 4}};
  style->arrays = {{"Graphic.Color", {1, 2, 3}}};
  EXPECT_EQ(Read(VyrVisLines), S_OK);
  EXPECT_EQ(values, (VyrVisPropertiesValues{5, 4, 73, VyrVisColor{1, 2, 3}}));
}

TEST_F(StyleGraphics, AreThoseOfTheStyleItselfWithoutAPath) {
  style->ints = {{"Thickness", 5}, {"LineType", 4}};
  style->texts = {{"PointType", "Star"}};
  style->arrays = {{"Color", {1, 2, 3}}};
  for (const char* const path : {"", static_cast<const char*>(nullptr)}) {
    values = {};
    EXPECT_EQ(Read(VyrVisLines, 0, path), S_OK);
    EXPECT_EQ(Read(VyrVisPoints, 0, path), S_OK);
    EXPECT_EQ(values, (VyrVisPropertiesValues{5, 4, 7, VyrVisColor{1, 2, 3}}));
  }
}

TEST_F(StyleGraphics, WidthIsTwoForThicknessesBelowOne) {
  const std::vector<std::pair<int, unsigned int>> widths = {{-3, 2}, {0, 2}, {1, 1},
                                                            {2, 2},  {8, 8}, {16, 16}};
  for (const auto& [thickness, width] : widths) {
    style->ints["Graphic.Thickness"] = thickness;
    EXPECT_EQ(Read(VyrVisLines), S_OK);
    EXPECT_EQ(values.width, width) << thickness;
  }
}

TEST_F(StyleGraphics, WidthIsLeftAloneWithoutAThickness) {
  EXPECT_EQ(Read(VyrVisLines), S_OK);
  EXPECT_EQ(values.width, 71U);
}

TEST_F(StyleGraphics, LineTypeEightIsZeroAndWhatIsBelowOneIsOne) {
  const std::vector<std::pair<int, unsigned int>> lineTypes = {{-1, 1}, {0, 1}, {1, 1}, {2, 2},
                                                               {7, 7},  {8, 0}, {9, 9}};
  for (const auto& [held, lineType] : lineTypes) {
    style->ints["Graphic.LineType"] = held;
    EXPECT_EQ(Read(VyrVisLines), S_OK);
    EXPECT_EQ(values.lineType, lineType) << held;
  }
}

TEST_F(StyleGraphics, LineTypeIsReadUnderItsOtherNameIfNeedBe) {
  style->ints = {{"Graphic.Linetype", 8}};
  EXPECT_EQ(Read(VyrVisLines), S_OK);
  EXPECT_EQ(values.lineType, 0U);
  style->ints = {{"Graphic.Linetype", 3}, {"Graphic.LineType", 5}};
  EXPECT_EQ(Read(VyrVisLines), S_OK);
  EXPECT_EQ(values.lineType, 5U);
}

TEST_F(StyleGraphics, LineTypeIsLeftAloneUnderNeitherName) {
  EXPECT_EQ(Read(VyrVisLines), S_OK);
  EXPECT_EQ(values.lineType, 72U);
}

TEST_F(StyleGraphics, ColorIsBlackForAllButThreeComponentsOfZeroOrMore) {
  const VyrVisColor black;
  const std::vector<std::pair<std::vector<int>, VyrVisColor>> colors = {
      {{0, 0, 0}, black},
      {{140, 141, 142}, {140, 141, 142}},
      {{255, 255, 255}, {255, 255, 255}},
      {{7, 0, 0}, {7, 0, 0}},
      {{}, black},
      {{9}, black},
      {{9, 9}, black},
      {{9, 9, 9, 9}, black},
      {{-1, 9, 9}, black},
      {{9, -1, 9}, black},
      {{9, 9, -1}, black},
  };
  for (const int geometry : {VyrVisLines, VyrVisPoints}) {
    for (const auto& [held, color] : colors) {
      style->arrays["Graphic.Color"] = held;
      values = Marked();
      EXPECT_EQ(Read(geometry), S_OK);
      EXPECT_EQ(values.color, color) << testing::PrintToString(held);
    }
    style->arrays.clear();
    values = Marked();
    EXPECT_EQ(Read(geometry), S_OK);
    EXPECT_EQ(values.color, black) << "no colour";
  }
}

TEST_F(StyleGraphics, ColorOfAnyLengthOverrunsNothing) {
  style->arrays["Graphic.Color"] = std::vector<int>(1'000'000, 9);
  EXPECT_EQ(Read(VyrVisLines), S_OK);
  EXPECT_EQ(values.color, VyrVisColor());
}

TEST_F(StyleGraphics, OfPointsAreSymbolAndColor) {
  style->texts = {{"Graphic.PointType", "Cross"}};
  style->arrays = {{"Graphic.Color", {1, 2, 3}}};
  EXPECT_EQ(Read(VyrVisPoints), S_OK);
  EXPECT_EQ(values, (VyrVisPropertiesValues{71, 72, 1, VyrVisColor{1, 2, 3}}));
}

TEST_F(StyleGraphics, PointSymbolsAreNumberedFromOne) {
  const std::vector<std::pair<std::string, unsigned int>> symbols = {
      {"Cross", 1},      {"Plus", 2}, {"Concentric", 3}, {"Coincident", 4}, {"Fullcircle", 5},
      {"Fullsquare", 6}, {"Star", 7}, {"Dot", 8},        {"Smalldot", 9}};
  for (const auto& [name, number] : symbols) {
    style->texts["Graphic.PointType"] = name;
    EXPECT_EQ(Read(VyrVisPoints), S_OK);
    EXPECT_EQ(values.symbolType, number) << name;
  }
}

TEST_F(StyleGraphics, OtherPointSymbolsFailAndChangeNothing) {
  style->arrays = {{"Graphic.Color", {1, 2, 3}}};
  for (const char* const name : {"Square", "", "dot", "Dot ", "SmallDot", "Crosses"}) {
    style->texts["Graphic.PointType"] = name;
    EXPECT_EQ(Read(VyrVisPoints), E_FAIL) << name;
    EXPECT_EQ(values, Marked()) << name;
  }
}

TEST_F(StyleGraphics, PointSymbolIsLeftAloneWithoutAPointType) {
  EXPECT_EQ(Read(VyrVisPoints), S_OK);
  EXPECT_EQ(values.symbolType, 73U);
}

TEST_F(StyleGraphics, DefaultsAreSetWithoutAskingTheStyle) {
  style->ints = {{"Graphic.Thickness", 5}, {"Graphic.LineType", 4}};
  style->texts = {{"Graphic.PointType", "Square"}};
  style->arrays = {{"Graphic.Color", {1, 2, 3}}};
  EXPECT_EQ(Read(VyrVisLines, 1), S_OK);
  EXPECT_EQ(values, (VyrVisPropertiesValues{2, 1, 73, VyrVisColor{}}));
  values = Marked();
  EXPECT_EQ(Read(VyrVisPoints, 1), S_OK);
  EXPECT_EQ(values, (VyrVisPropertiesValues{71, 72, 73, VyrVisColor{}}));
  EXPECT_THAT(style->asked, IsEmpty());
}

TEST_F(StyleGraphics, OfOtherGeometryFail) {
  for (const int geometry : {-1, 0, 1, 2, 5, 12}) {
    EXPECT_EQ(Read(geometry), E_FAIL) << geometry;
    EXPECT_EQ(Read(geometry, 1), E_FAIL) << geometry;
  }
  EXPECT_EQ(values, Marked());
}

TEST_F(StyleGraphics, OfNoStyleFail) {
  style = nullptr;
  for (const int geometry : {VyrVisLines, VyrVisPoints}) EXPECT_EQ(Read(geometry), E_FAIL);
  EXPECT_EQ(values, Marked());
}

TEST_F(StyleGraphics, DefaultsNeedNoStyle) {
  style = nullptr;
  EXPECT_EQ(Read(VyrVisLines, 1), S_OK);
  EXPECT_EQ(values, (VyrVisPropertiesValues{2, 1, 73, VyrVisColor{}}));
  values = Marked();
  EXPECT_EQ(Read(VyrVisPoints, 1), S_OK);
  EXPECT_EQ(values, (VyrVisPropertiesValues{71, 72, 73, VyrVisColor{}}));
  values = Marked();
  EXPECT_EQ(Read(5, 1), E_FAIL);
  EXPECT_EQ(values, Marked());
}

class SetGraphicProperties : public testing::Test {
 protected:
  struct Event {
    VyrIVisProperties* element;
    VyrVisPropertyType property;
    VyrVisGeometryType geometry;
    VyrVisPropertiesValues values;
  };

  SetGraphicProperties()
      : previous_(VyrHolVisuEventsToolbox::SetModifyListener(
            [this](VyrIVisProperties* changed, VyrVisPropertyType property,
                   VyrVisGeometryType geometry, const VyrVisPropertiesValues& values) {
              events.push_back({changed, property, geometry, values});
              return untold.contains(geometry) ? E_UNEXPECTED : S_OK;
            })) {
    style->ints = {{"Graphic.Thickness", 5}, {"Graphic.LineType", 8}};
    style->texts = {{"Graphic.PointType", "Star"}};
    style->arrays = {{"Graphic.Color", {1, 2, 3}}};
    element->shown = {{VyrVisLines, Marked()}, {VyrVisPoints, Marked()}};
  }
  ~SetGraphicProperties() override {
    VyrHolVisuEventsToolbox::SetModifyListener(std::move(previous_));
  }

  HRESULT Set(unsigned char useDefaults = 0) {
    return VyrDftStyleToolbox::SetGraphicProperties(style.Get(), "Graphic", element.Get(), 0, 0,
                                                    DftStyleOnCreation, useDefaults);
  }
  std::vector<VyrVisGeometryType> EventGeometries() const {
    std::vector<VyrVisGeometryType> geometries;
    for (const Event& event : events) geometries.push_back(event.geometry);
    return geometries;
  }
  void ExpectFailureReports(std::vector<std::string> more = {}) {
    more.emplace_back("BOOL IS FALSE: Failed to set graphic properties! [VyrDftStyleToolbox]");
    EXPECT_EQ(CheckTexts(diagnostics.errors), more);
    diagnostics.Clear();
  }

  DiagnosticsCapture diagnostics;
  VyrVar<FakeStyle> style{new FakeStyle};
  VyrVar<FakeDraftingElement> element{new FakeDraftingElement};
  std::set<VyrVisGeometryType> untold;  ///< geometry whose changes the host refuses
  std::vector<Event> events;

 private:
  VyrHolVisuEventsToolbox::ModifyListener previous_;
};

TEST_F(SetGraphicProperties, GivesTheElementItsLinesAndPoints) {
  EXPECT_EQ(Set(), S_OK);
  EXPECT_EQ(element->shown[VyrVisLines], (VyrVisPropertiesValues{5, 0, 73, VyrVisColor{1, 2, 3}}));
  EXPECT_EQ(element->shown[VyrVisPoints],
            (VyrVisPropertiesValues{71, 72, 7, VyrVisColor{1, 2, 3}}));
  EXPECT_THAT(element->written, ElementsAre(VyrVisLines, VyrVisPoints));
  EXPECT_THAT(element->kinds, Each(VyrVisAllProperties));
  EXPECT_THAT(diagnostics.errors, IsEmpty());
}

TEST_F(SetGraphicProperties, KeepsWhatTheStyleDoesNotHold) {
  style->ints.clear();
  style->texts.clear();
  EXPECT_EQ(Set(), S_OK);
  EXPECT_EQ(element->shown[VyrVisLines],
            (VyrVisPropertiesValues{71, 72, 73, VyrVisColor{1, 2, 3}}));
  EXPECT_EQ(element->shown[VyrVisPoints],
            (VyrVisPropertiesValues{71, 72, 73, VyrVisColor{1, 2, 3}}));
}

TEST_F(SetGraphicProperties, GivesDefaultsWhenAskedTo) {
  EXPECT_EQ(Set(1), S_OK);
  EXPECT_EQ(element->shown[VyrVisLines], (VyrVisPropertiesValues{2, 1, 73, VyrVisColor{}}));
  EXPECT_EQ(element->shown[VyrVisPoints], (VyrVisPropertiesValues{71, 72, 73, VyrVisColor{}}));
}

TEST_F(SetGraphicProperties, AnnouncesWhatTheElementThenHas) {
  element->onWrite = [](VyrVisPropertiesValues& kept) { kept.width = 3; };
  EXPECT_EQ(Set(), S_OK);
  ASSERT_THAT(EventGeometries(), ElementsAre(VyrVisLines, VyrVisPoints));
  for (const Event& event : events) {
    EXPECT_EQ(event.element, element.Get());
    EXPECT_EQ(event.property, VyrVisAllProperties);
    EXPECT_EQ(event.values.width, 3U);
    EXPECT_EQ(event.values, element->shown[event.geometry]);
  }
}

TEST_F(SetGraphicProperties, TouchesOnlyWhatTheElementShows) {
  element->shown.erase(VyrVisLines);
  EXPECT_EQ(Set(), S_OK);
  EXPECT_THAT(EventGeometries(), ElementsAre(VyrVisPoints));
  element->shown = {{VyrVisLines, Marked()}};
  events.clear();
  EXPECT_EQ(Set(), S_OK);
  EXPECT_THAT(EventGeometries(), ElementsAre(VyrVisLines));
  element->shown.clear();
  events.clear();
  EXPECT_EQ(Set(), S_OK);
  EXPECT_THAT(events, IsEmpty());
}

TEST_F(SetGraphicProperties, FailsWithoutStyleOrElement) {
  EXPECT_EQ(VyrDftStyleToolbox::SetGraphicProperties(nullptr, "", element.Get(), 0, 0,
                                                     DftStyleOnCreation, 0),
            E_FAIL);
  EXPECT_EQ(VyrDftStyleToolbox::SetGraphicProperties(style.Get(), "", nullptr, 0, 0,
                                                     DftStyleOnCreation, 0),
            E_FAIL);
  EXPECT_THAT(element->written, IsEmpty());
}

TEST_F(SetGraphicProperties, FailsReportedButServesLinesWhenPointsFail) {
  style->texts = {{"Graphic.PointType", "Square"}};
  EXPECT_EQ(Set(), E_FAIL);
  EXPECT_THAT(EventGeometries(), ElementsAre(VyrVisLines));
  EXPECT_EQ(element->shown[VyrVisPoints], Marked());
  ExpectFailureReports();
}

TEST_F(SetGraphicProperties, FailsReportedWhenTheElementRefuses) {
  for (HRESULT FakeDraftingElement::*const refusal :
       {&FakeDraftingElement::presenceResult, &FakeDraftingElement::readResult,
        &FakeDraftingElement::writeResult, &FakeDraftingElement::readBackResult}) {
    element->written.clear();
    (element.Get()->*refusal) = E_FAIL;
    EXPECT_EQ(Set(), E_FAIL);
    (element.Get()->*refusal) = S_OK;
    EXPECT_THAT(events, IsEmpty());
    ExpectFailureReports();
  }
}

// Reports have room for 40 characters of the message.
const std::string kNotDispatched =
    "BOOL IS FALSE: " + std::string("Failed to dispatch the visualization event").substr(0, 40) +
    " [VyrDftStyleToolbox]";

TEST_F(SetGraphicProperties, FailsReportedButServesPointsWhenLinesFail) {
  untold = {VyrVisLines};
  EXPECT_EQ(Set(), E_FAIL);
  EXPECT_THAT(EventGeometries(), ElementsAre(VyrVisLines, VyrVisPoints));
  EXPECT_EQ(element->shown[VyrVisPoints].symbolType, 7U);
  ExpectFailureReports({kNotDispatched});
}

TEST_F(SetGraphicProperties, ReportsEachChangeThatNobodyCanBeTold) {
  untold = {VyrVisLines, VyrVisPoints};
  EXPECT_EQ(Set(), E_FAIL);
  ExpectFailureReports({kNotDispatched, kNotDispatched});
}

}  // namespace
