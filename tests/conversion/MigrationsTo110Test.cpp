#include <string>
#include <vector>

#include "UpgradeRun.h"

// The steps from version 60 to 110.

namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char* kTarget = "Root.Styles.DatumTarget.Default.Leader.Symbol";
constexpr const char* kCoordinate = "Root.Styles.CoordinateDimension.Default.Leader.Symbol";
constexpr const char* kSegment = "Root.LineTypes.LineType16.Segment";
constexpr const char* kNullHandler = "ON POINTER : NULL handler [VyrDrwParseStandard]";

bool IsIso(const std::string& parent) {
  return parent == "ISO" || parent == "JIS";
}

std::string Raised(const std::string& message) {
  return ": " + message + " [VyrDrwParseStandard]";
}

void SetViewColor(UpgradeRun& run, const char* color) {
  run.Change(std::string("Root.General.SheetColors.View.Color:") + color);
}

TEST(MigrationTo70, LeadersWithAWhiteSquareBecomeAutomaticForIsoAndJisOnly) {
  for (const char* parent : kParents) {
    UpgradeRun run(parent, 60);
    for (const char* path : {kTarget, kCoordinate}) {
      run.Change(std::string(path) + ":WhiteFilledSquare");
    }
    EXPECT_THAT(run.Step(70), IsEmpty());
    const char* expected = IsIso(parent) ? "Automatic" : "WhiteFilledSquare";
    EXPECT_EQ(run.Value(kTarget), expected) << parent;
    EXPECT_EQ(run.Value(kCoordinate), expected) << parent;
  }
}

TEST(MigrationTo70, ALeaderThatASiteHasChosenStays) {
  UpgradeRun run("ISO", 60);
  run.Change(std::string(kTarget) + ":FilledCircle");
  run.Step(70);
  EXPECT_EQ(run.Value(kTarget), "FilledCircle");
  EXPECT_EQ(run.Value(kCoordinate), "Automatic");
}

TEST(MigrationTo70, LineType16GetsItsDashes) {
  UpgradeRun run("ISO", 60);
  EXPECT_THAT(run.Values(kSegment), IsEmpty());
  run.Step(70);
  EXPECT_THAT(run.Values(kSegment), ElementsAre("1.0", "-1.0"));
}

TEST(MigrationTo70, DashesThatLineType16HasAlreadyStay) {
  UpgradeRun run("ISO", 60);
  const VyrAnnStandardXMLValue_var dash(
      new VyrAnnStandardXMLValue(VyrAnnStandardXMLValue::ValueFloat, "4.0", "", 0));
  run.Node(kSegment)->AddValue(dash.Get(), -1);
  run.Step(70);
  EXPECT_THAT(run.Values(kSegment), ElementsAre("4.0"));
}

TEST(MigrationTo70, AStandardWithoutLineType16GetsNone) {
  UpgradeRun run("ISO", 60);
  run.Delete("Root.LineTypes.LineType16");
  EXPECT_THAT(run.Step(70), IsEmpty());
  EXPECT_FALSE(run.Has("Root.LineTypes.LineType16"));
}

TEST(MigrationTo70, EveryToleranceStyleAppliesNoScale) {
  UpgradeRun run("ANSI", 60);
  run.AddStyle("Tolerance", "Own");
  run.Step(70);
  for (const char* style : {"Default", "Own"}) {
    const std::string path = std::string("Root.Styles.Tolerance.") + style + ".Text.ApplyScale";
    EXPECT_EQ(run.EnumValue(path), "YesNo:No");
  }
}

TEST(MigrationTo80, AlignmentsOfCumulatedDimensionsAreConverted) {
  struct Row {
    const char* before;
    const char* after;
  };
  for (const Row& row : {Row{"Left", "ReferenceLine"}, Row{"Right", "OppositeReferenceLine"},
                         Row{"Center", "Center"}}) {
    UpgradeRun run("ISO", 70);
    run.Change(std::string("Root.Styles.DimensionsSystem.Default.AlignCumulated:") + row.before);
    run.Change(std::string("Root.Styles.DimensionsSystem.Default.AlignStacked:") + row.before);
    const std::string stacked = run.EnumValue("Root.Styles.DimensionsSystem.Default.AlignStacked");
    EXPECT_THAT(run.Step(80), IsEmpty());
    EXPECT_EQ(run.EnumValue("Root.Styles.DimensionsSystem.Default.AlignCumulated"),
              std::string("DimSysAlign:") + row.after);
    EXPECT_EQ(run.EnumValue("Root.Styles.DimensionsSystem.Default.AlignStacked"), stacked);
  }
}

TEST(MigrationTo80, AnUnknownAlignmentIsReportedAndTakenAsCentred) {
  for (const char* unknown : {"Middle", "left", ""}) {
    UpgradeRun run("ISO", 70);
    run.Change(std::string("Root.Styles.DimensionsSystem.Default.AlignCumulated:") + unknown);
    EXPECT_THAT(run.Step(80), ElementsAre(Raised("Unknown value"))) << unknown;
    EXPECT_EQ(run.EnumValue("Root.Styles.DimensionsSystem.Default.AlignCumulated"),
              "DimSysAlign:Center");
  }
}

TEST(MigrationTo80, EveryDimensionSystemIsConvertedOnItsOwn) {
  UpgradeRun run("ANSI", 70);
  run.AddStyle("DimensionsSystem", "Own");
  run.Change("Root.Styles.DimensionsSystem.Own.AlignCumulated:Right");
  run.Step(80);
  EXPECT_EQ(run.Value("Root.Styles.DimensionsSystem.Default.AlignCumulated"), "Center");
  EXPECT_EQ(run.Value("Root.Styles.DimensionsSystem.Own.AlignCumulated"), "OppositeReferenceLine");
}

TEST(MigrationTo90, TheFirstSymbolsHaveTheFontsOfTheParentStandard) {
  for (const char* parent : kParents) {
    UpgradeRun run(parent, 80);
    run.Step(90);
    const auto names = run.Fields("Root.EngineeringSymbols", "Name");
    const auto fonts = run.Fields("Root.EngineeringSymbols", "Font");
    ASSERT_EQ(names.size(), 41U) << parent;
    EXPECT_EQ(names.front(), "<SUBSTITUTION>");
    EXPECT_EQ(names[4], "<DEGREE>");
    EXPECT_EQ(names[5], "<MICRO>");
    EXPECT_EQ(names.back(), "<Unequally>");
    for (std::size_t i = 0; i < names.size(); ++i) {
      const bool isOfSym1 =
          !IsIso(parent) || names[i] == "<NOACTUALSIZE>" || names[i] == "<TANGENTPLANE>";
      EXPECT_EQ(fonts[i], i == 0 ? "SSS4.font" : isOfSym1 ? "SYM1.font" : "SYM2.font") << names[i];
    }
  }
}

TEST(MigrationTo90, DetailCalloutsTakeTheColourOfTheirText) {
  UpgradeRun run("ISO", 80);
  run.AddStyle("DetailCallout", "Coloured");
  run.AddStyle("DetailCallout", "Without");
  run.Change("Root.Styles.DetailCallout.Coloured.Text.Font.Color:200 0 10");
  run.Delete("Root.Styles.DetailCallout.Without.Text");
  EXPECT_THAT(run.Step(90), IsEmpty());
  EXPECT_EQ(run.Value("Root.Styles.DetailCallout.Coloured.Color"), "200 0 10");
  EXPECT_EQ(run.Value("Root.Styles.DetailCallout.Without.Color"), "0 0 0");
  EXPECT_EQ(run.Node("Root.Styles.DetailCallout.Without.Color")->GetValues().front()->GetType(),
            VyrAnnStandardXMLValue::ValueColor);
}

TEST(MigrationTo90, TheDoubleFilledArrowHasTheSizeOfTheParentStandard) {
  for (const char* parent : {"ISO", "JIS", "ANSI", "ASME", "DIN"}) {
    UpgradeRun run(IsIso(parent) ? parent : "ANSI", 80);
    run.SetParent(parent);
    run.Step(90);
    const std::string arrow = "Root.DressUp.Symbols.DoubleFilledArrow";
    EXPECT_EQ(run.Value(arrow + ".Length"), IsIso(parent) ? "2" : "3.2146") << parent;
    EXPECT_EQ(run.Value(arrow + ".Angle"), IsIso(parent) ? "30" : "18") << parent;
  }
}

struct Blanked {
  const char* family;
  const char* node;
};

constexpr Blanked kBlanked[] = {
    {"DistanceLengthDimension", "Font"},
    {"AngleDimension", "Font"},
    {"RadiusDimension", "Font"},
    {"DiameterDimension", "Font"},
    {"ChamferDimension", "Font"},
    {"CoordinateDimension", "Font"},
    {"DatumFeature", "Font"},
    {"DatumTarget", "Font"},
    {"Text", "Text"},
    {"Table", "Text"},
    {"Tolerance", "Text"},
    {"Balloon", "Text"},
    {"RoughnessSymbol", "Text"},
    {"WeldingSymbol", "Text"},
};

TEST(MigrationTo100, BlankingBecomesAChoiceOfWhatIsBlankedInFourteenFamilies) {
  UpgradeRun run("JIS", 90);
  for (const Blanked& blanked : kBlanked) {
    run.AddStyle(blanked.family, "Own");
    run.Change(std::string("Root.Styles.") + blanked.family + ".Own." + blanked.node +
               ".Blanking:No");
  }
  EXPECT_THAT(run.Step(100), IsEmpty());
  for (const Blanked& blanked : kBlanked) {
    const std::string family = std::string("Root.Styles.") + blanked.family;
    const std::string path = std::string(".") + blanked.node + ".Blanking";
    EXPECT_EQ(run.EnumValue(family + ".Default" + path), "BlankProp:AreaFill") << family;
    EXPECT_EQ(run.EnumValue(family + ".Own" + path), "BlankProp:No") << family;
  }
}

TEST(MigrationTo100, AnUnknownBlankingIsReportedAndBlanksTheArea) {
  UpgradeRun run("ISO", 90);
  run.Change("Root.Styles.Balloon.Default.Text.Blanking:Perhaps");
  run.Delete("Root.Styles.Text.Default.Text.Blanking");
  EXPECT_THAT(run.Step(100), ElementsAre(Raised("Unknown old value"), Raised("Unknown old value")));
  EXPECT_EQ(run.EnumValue("Root.Styles.Balloon.Default.Text.Blanking"), "BlankProp:AreaFill");
  EXPECT_EQ(run.EnumValue("Root.Styles.Text.Default.Text.Blanking"), "BlankProp:AreaFill");
}

TEST(MigrationTo100, CoordinatesAreDisplayedInTheFormatOfTheParentStandard) {
  for (const char* parent : kParents) {
    UpgradeRun run(parent, 90);
    run.AddStyle("CoordinateDimension", "Own");
    run.Step(100);
    for (const char* style : {"Default", "Own"}) {
      const std::string path = std::string("Root.Styles.CoordinateDimension.") + style;
      EXPECT_FALSE(run.Has(path + ".DisplayUnit"));
      EXPECT_EQ(run.Value(path + ".ValueDisplayFormat.Name"),
                IsIso(parent) ? "NUM.DIMM" : "FEET-INC")
          << parent;
      EXPECT_EQ(run.EnumValue(path + ".ValueDisplayFormat.PrecisionMode"), "DimPrecision:Decimal");
    }
  }
}

TEST(MigrationTo100, LeadersOfRoughnessSymbolsFollowTheStandardInShippedOnesOnly) {
  for (const Origin& origin : AllOrigins()) {
    UpgradeRun run(origin, 90);
    run.Step(100);
    EXPECT_EQ(run.EnumValue("Root.Annotation.Roughness.LeaderAnchorAccordingToStandard"),
              origin.isShipped ? "YesNo:Yes" : "YesNo:No");
  }
}

TEST(MigrationTo100, OnlyTheOldSheetColourOfAShippedStandardIsReplaced) {
  struct Row {
    bool isShipped;
    const char* before;
    const char* view;
    const char* detail;
  };
  for (const Row& row :
       {Row{true, "51 51 102", "0 39 64", "0 39 64"}, Row{true, "51 51 103", "51 51 103", "1 2 3"},
        Row{false, "51 51 102", "51 51 102", "1 2 3"}}) {
    UpgradeRun run(Origin{"ISO", row.isShipped}, 90);
    SetViewColor(run, row.before);
    run.Change("Root.General.SheetColors.Detail.Color:1 2 3");
    run.Step(100);
    EXPECT_EQ(run.Value("Root.General.SheetColors.View.Color"), row.view);
    EXPECT_EQ(run.Value("Root.General.SheetColors.Detail.Color"), row.detail);
  }
}

TEST(MigrationTo100, TheCellsOfEveryTableBecomeThoseOfTheWholeTable) {
  UpgradeRun run("ISO", 90);
  run.AddStyle("Table", "Own");
  run.Change("Root.Styles.Table.Own.Cells.Width:77.0");
  run.Change("Root.Styles.Table.Own.VerticalMargin:4.0");
  const auto cells = run.Children("Root.Styles.Table.Own.Cells");
  EXPECT_THAT(run.Step(100), IsEmpty());
  auto expected = cells;
  expected.insert(expected.end(), {"HorizontalMargin", "VerticalMargin"});
  EXPECT_EQ(run.Children("Root.Styles.Table.Own.CellStyles.WholeTable"), expected);
  EXPECT_EQ(run.Value("Root.Styles.Table.Own.CellStyles.WholeTable.Width"), "77.0");
  EXPECT_EQ(run.Value("Root.Styles.Table.Own.CellStyles.WholeTable.VerticalMargin"), "4.0");
  for (const char* gone : {"Cells", "HorizontalMargin", "VerticalMargin"}) {
    EXPECT_FALSE(run.Has(std::string("Root.Styles.Table.Own.") + gone)) << gone;
  }
}

TEST(MigrationTo100, ATableWithoutCellsIsReportedAndTheNextOneServed) {
  UpgradeRun run("ISO", 90);
  run.AddStyle("Table", "Own");
  run.Delete("Root.Styles.Table.Default.Cells");
  EXPECT_THAT(run.Step(100),
              ElementsAre("ON POINTER : Failed to find Cells node! [VyrDrwParseStandard]"));
  EXPECT_FALSE(run.Has("Root.Styles.Table.Default.CellStyles"));
  EXPECT_TRUE(run.Has("Root.Styles.Table.Default.HorizontalMargin"));
  EXPECT_TRUE(run.Has("Root.Styles.Table.Own.CellStyles.WholeTable"));
}

TEST(MigrationTo100, AStyleThatLacksAMarginIsSkippedFromThereOnAndTheNextOneServed) {
  const auto report = ElementsAre("ON POINTER : NULL node? [VyrDrwParseStandard]");
  const std::string style = "Root.Styles.Table.Default.";
  for (const std::string gone : {"HorizontalMargin", "VerticalMargin"}) {
    SCOPED_TRACE(gone);
    UpgradeRun run("ISO", 90);
    run.AddStyle("Table", "Own");
    run.Delete(style + gone);
    EXPECT_THAT(run.Step(100), report);
    const bool isFirst = gone == "HorizontalMargin";
    EXPECT_EQ(run.Has(style + "VerticalMargin"), isFirst);
    EXPECT_FALSE(run.Has(style + "CellStyles.WholeTable.VerticalMargin"));
    EXPECT_EQ(run.Has(style + "CellStyles.WholeTable.HorizontalMargin"), !isFirst);
    EXPECT_FALSE(run.Has(style + "Cells"));
    EXPECT_EQ(run.Value("Root.Styles.Table.Own.CellStyles.WholeTable.HorizontalMargin"), "1.0");
    EXPECT_EQ(run.Value("Root.Styles.Table.Own.CellStyles.WholeTable.VerticalMargin"), "1.0");
  }
}

TEST(MigrationTo100, AStyleThatLacksBothMarginsIsReportedOnce) {
  UpgradeRun run("ISO", 90);
  for (const char* margin : {"HorizontalMargin", "VerticalMargin"}) {
    run.Delete(std::string("Root.Styles.Table.Default.") + margin);
  }
  EXPECT_THAT(run.Step(100), ElementsAre("ON POINTER : NULL node? [VyrDrwParseStandard]"));
}

TEST(MigrationTo100, AStandardWithoutTableStylesIsReported) {
  UpgradeRun run("ISO", 90);
  run.Delete("Root.Styles.Table");
  EXPECT_THAT(run.Step(100), ElementsAre(Raised("No Table styles node")));
  EXPECT_TRUE(run.Has("Root.Styles.BomStyle.Default"));
}

TEST(MigrationTo110, TheVersionIsStoredAsOneInt) {
  for (const char* parent : kParents) {
    UpgradeRun run(parent, 100);
    EXPECT_FALSE(run.Has("Root.Version"));
    EXPECT_THAT(run.Step(110), IsEmpty());
    ASSERT_THAT(run.Values("Root.Version"), ElementsAre("110"));
    EXPECT_THAT(run.Children("Root.Version"), IsEmpty());
    EXPECT_EQ(run.Node("Root.Version")->GetValues().front()->GetType(),
              VyrAnnStandardXMLValue::ValueInt);
  }
}

TEST(MigrationTo110, ArrowsOfCalloutsGetAThicknessAndAPosition) {
  for (const char* parent : kParents) {
    UpgradeRun run(parent, 100);
    run.AddStyle("SectionCallout", "Own");
    run.Step(110);
    for (const char* style :
         {"ProjectionCallout.Default", "SectionCallout.Default", "SectionCallout.Own"}) {
      const std::string arrows = std::string("Root.Styles.") + style + ".Arrows";
      EXPECT_EQ(run.Value(arrows + ".Position"), IsIso(parent) ? "50" : "0") << parent;
      EXPECT_EQ(run.Values(arrows + ".Thickness").size(), 1U);
      if (IsIso(parent)) {
        EXPECT_EQ(run.Value(arrows + ".Thickness"), "1");
      }
    }
    EXPECT_FALSE(run.Has("Root.Styles.DetailCallout.Default.Arrows.Position"));
  }
}

TEST(MigrationTo110, ACalloutWithoutArrowsIsReportedAndTheNextOneServed) {
  UpgradeRun run("ISO", 100);
  run.AddStyle("ProjectionCallout", "Own");
  run.Delete("Root.Styles.ProjectionCallout.Default.Arrows");
  EXPECT_THAT(run.Step(110), ElementsAre(kNullHandler));
  EXPECT_EQ(run.Value("Root.Styles.ProjectionCallout.Own.Arrows.Position"), "50");
}

TEST(MigrationTo110, OnlyShippedCalloutsAreReplaced) {
  for (const Origin& origin : AllOrigins()) {
    UpgradeRun run(origin, 100);
    EXPECT_THAT(run.Step(110), IsEmpty());
    const bool isShipped = origin.isShipped;
    for (const char* family : {"ProjectionCallout", "SectionCallout", "DetailCallout"}) {
      const std::string head = std::string("Root.Styles.") + family + ".Default.Arrows.Head";
      EXPECT_EQ(run.Value(head + ".Angle") == "22.5", isShipped) << family;
      EXPECT_EQ(run.Value(head + ".Type") == "Filled arrow", isShipped) << family;
    }
    EXPECT_EQ(
        run.Value("Root.Styles.ProjectionCallout.Default.Type") == "Lines, corners and arrows",
        !isShipped);
  }
}

TEST(MigrationTo110, TheFirstCalloutThatAnOwnerHasChangedEndsTheReplacement) {
  UpgradeRun run(Origin{"ISO", true}, 100);
  run.Change("Root.Styles.ProjectionCallout.Default.Arrows.Head.Angle:17.0");
  EXPECT_THAT(run.Step(110), ElementsAre(Raised("Arrows.Head.Angle")));
  EXPECT_EQ(run.Value("Root.Styles.ProjectionCallout.Default.Arrows.Head.Angle"), "17.0");
  EXPECT_EQ(run.Value("Root.Styles.DetailCallout.Default.Arrows.Head.Type"), "Closed arrow");
  EXPECT_EQ(run.Value("Root.Version"), "110");
}

}  // namespace
