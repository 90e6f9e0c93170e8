#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "UpgradeRun.h"

// The steps from version 110 to 220.

namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::Not;

constexpr const char* kSymbols = "Root.EngineeringSymbols";
constexpr const char* kOpenTypeText = "QN ISO 1 (OpenType)";
constexpr const char* kNullHandler = "ON POINTER : NULL handler [VyrDrwParseStandard]";

bool IsIso(const std::string& parent) {
  return parent == "ISO" || parent == "JIS";
}

std::string Raised(const std::string& message) {
  return ": " + message + " [VyrDrwParseStandard]";
}

std::vector<std::string> From(const std::vector<std::string>& list, std::size_t first) {
  return {list.begin() + static_cast<std::ptrdiff_t>(std::min(first, list.size())), list.end()};
}

/// The field of the entry whose name is `tag`.
std::string SymbolField(UpgradeRun& run, const std::string& tag, const char* field) {
  const auto names = run.Fields(kSymbols, "Name");
  const auto fields = run.Fields(kSymbols, field);
  const auto found = std::find(names.begin(), names.end(), tag);
  return found == names.end() ? "(no symbol)"
                              : fields[static_cast<std::size_t>(found - names.begin())];
}

struct Stamp {
  int before;
  int version;
};

constexpr Stamp kStamps[] = {{110, 120}, {120, 130}, {130, 140}, {140, 150}, {150, 160}, {160, 170},
                             {170, 180}, {180, 190}, {190, 200}, {200, 210}, {210, 220}};

class VersionStamp : public testing::TestWithParam<Stamp> {};

INSTANTIATE_TEST_SUITE_P(Steps, VersionStamp, testing::ValuesIn(kStamps), [](const auto& stamp) {
  return "To" + std::to_string(stamp.param.version);
});

TEST_P(VersionStamp, MovesFromTheVersionBeforeToTheStepsOwn) {
  UpgradeRun run("ISO", GetParam().before);
  EXPECT_EQ(run.Value("Root.Version"), std::to_string(GetParam().before));
  EXPECT_THAT(run.Step(GetParam().version), IsEmpty());
  EXPECT_THAT(run.Values("Root.Version"), ElementsAre(std::to_string(GetParam().version)));
}

TEST_P(VersionStamp, StaysAndIsReportedWhenItIsNotThatOfTheStepBefore) {
  // The step to 170 writes the version anew in any case.
  const std::string after = GetParam().version == 170 ? "170" : "125";
  UpgradeRun run("ISO", GetParam().before);
  UpgradeRun right("ISO", GetParam().before);
  run.Change("Root.Version:125");
  const auto reports = run.Step(GetParam().version);
  ASSERT_EQ(reports.size(), 1U);
  EXPECT_TRUE(reports.front().starts_with("BOOL IS FALSE: ")) << reports.front();
  EXPECT_EQ(run.Value("Root.Version"), after);
  // All other edits of the step are applied.
  right.Step(GetParam().version);
  run.Change("Root.Version:" + std::to_string(GetParam().version));
  EXPECT_EQ(SavedText(run.Document()), SavedText(right.Document()));
}

TEST_P(VersionStamp, ThatIsMissingIsReported) {
  UpgradeRun run("ANSI", GetParam().before);
  run.Delete("Root.Version");
  EXPECT_THAT(run.Step(GetParam().version), ElementsAre(kNullHandler));
  EXPECT_EQ(run.Value("Root.Version"), GetParam().version == 170 ? "170" : "(none)");
}

TEST_P(VersionStamp, OfAnotherFormIsReportedAndStays) {
  const std::string before = std::to_string(GetParam().before);
  // The step to 170 writes the version anew in any case.
  const bool isRenewed = GetParam().version == 170;
  const std::string after = isRenewed ? "170" : before;
  const auto isReported = ElementsAre(testing::StartsWith("BOOL IS FALSE"));

  UpgradeRun text("ISO", GetParam().before);
  text.Delete("Root.Version");
  text.AddValue("Root:Version:string:" + before + ":0");
  EXPECT_THAT(text.Step(GetParam().version), isReported);
  EXPECT_EQ(text.Value("Root.Version"), after);

  UpgradeRun parent("ISO", GetParam().before);
  parent.AddNode("Root.Version:Extra:0");
  EXPECT_THAT(parent.Step(GetParam().version), isReported);
  EXPECT_EQ(parent.Value("Root.Version"), after);

  UpgradeRun empty("ISO", GetParam().before);
  empty.Delete("Root.Version");
  empty.AddNode("Root:Version:0");
  EXPECT_THAT(empty.Step(GetParam().version), isReported);
  EXPECT_EQ(empty.Values("Root.Version").size(), isRenewed ? 1U : 0U);
}

TEST(MigrationTo120, ShippedStandardsGetACentredStyleOfViewTexts) {
  for (const Origin& origin : AllOrigins()) {
    UpgradeRun run(origin, 110);
    EXPECT_THAT(run.Step(120), IsEmpty());
    EXPECT_EQ(run.EnumValue("Root.Styles.Text.ViewText.Text.Justification"),
              origin.isShipped ? "TextJustification:Center" : "(none)");
    EXPECT_EQ(run.Value("Root.View.ViewName.TextStyleName"),
              origin.isShipped ? "ViewText" : "Default");
    EXPECT_EQ(run.EnumValue("Root.Styles.Text.Default.Text.Justification"),
              "TextJustification:Left");
  }
}

TEST(MigrationTo120, AStyleOfViewTextsThatIsThereIsReportedAndStays) {
  UpgradeRun run(Origin{"ISO", true}, 110);
  run.AddStyle("Text", "ViewText");
  run.Change("Root.Styles.Text.ViewText.Text.Justification:Right");
  EXPECT_THAT(run.Step(120), ElementsAre(Raised("there is already a ViewText style")));
  EXPECT_EQ(run.Value("Root.Styles.Text.ViewText.Text.Justification"), "Right");
  EXPECT_THAT(run.Children("Root.Styles.Text"), ElementsAre("Default", "ViewText"));
  EXPECT_EQ(run.Value("Root.Version"), "120");
}

TEST(MigrationTo120, AJustificationOfAnotherTypeIsReportedAndNotCentred) {
  UpgradeRun run(Origin{"ISO", true}, 110);
  run.Delete("Root.Styles.Text.Default.Text.Justification");
  run.AddValue("Root.Styles.Text.Default.Text:Justification:string:Left:0");
  EXPECT_THAT(run.Step(120), ElementsAre(testing::StartsWith("BOOL IS FALSE")));
  EXPECT_EQ(run.Value("Root.Styles.Text.ViewText.Text.Justification"), "Left");
}

TEST(MigrationTo120, NamesOfViewsFollowTheParentStandard) {
  for (const char* parent : kParents) {
    UpgradeRun run(parent, 110);
    run.Step(120);
    const std::string view = "Root.View.ViewName";
    const bool isIso = IsIso(parent);
    EXPECT_EQ(run.EnumValue(view + ".Alignment"),
              isIso ? "ViewTextAlignment:TopCenter" : "ViewTextAlignment:BottomCenter");
    EXPECT_EQ(run.Value(view + ".Scale.ScaleString"),
              isIso ? " (#SCALE_ATTR#)" : "#SCALE#: #SCALE_ATTR#");
    EXPECT_EQ(run.EnumValue(view + ".Scale.DisplayOnANewLine"), isIso ? "YesNo:No" : "YesNo:Yes");
    EXPECT_EQ(run.Value(view + ".Scale.FontSizeRatio"), isIso ? "100" : "50");
    EXPECT_EQ(run.EnumValue(view + ".Scale.ScaleSeparator"),
              isIso ? "ScaleSeparatorSymbol:Colon" : "ScaleSeparatorSymbol:Slash");
    EXPECT_EQ(run.EnumValue(view + ".Scale.Display"),
              "DisplayScaleMode:WhenDifferentFromSheetScale");
    EXPECT_EQ(run.EnumValue(view + ".Automatic"), "YesNo:Yes");
    EXPECT_EQ(run.EnumValue(view + ".Name.AddViewName"), "YesNo:Yes");
  }
}

TEST(MigrationTo120, AnUnknownParentStandardIsReportedAtEachOfItsFiveValues) {
  UpgradeRun run("ISO", 110);
  run.SetParent("DIN");
  const auto reports = run.Step(120);
  EXPECT_EQ(std::count(reports.begin(), reports.end(), Raised("Unknown parent standard!")), 5);
  for (const char* path : {"Alignment", "Scale.ScaleString", "Scale.DisplayOnANewLine",
                           "Scale.FontSizeRatio", "Scale.ScaleSeparator"}) {
    EXPECT_FALSE(run.Has(std::string("Root.View.ViewName.") + path)) << path;
  }
  EXPECT_TRUE(run.Has("Root.View.ViewName.Scale.Display"));
  EXPECT_EQ(run.Value("Root.Version"), "120");
}

TEST(MigrationTo130, AppendsSevenSymbolsAndNoReciprocityForAnsiAndAsme) {
  for (const char* parent : kParents) {
    UpgradeRun run(parent, 120);
    run.Step(130);
    std::vector<std::string> tags = {"<SpotFace>",      "<CF>",           "<Independency>",
                                     "<RIGHTTRIANGLE>", "<LEFTTRIANGLE>", "<Reciprocity>",
                                     "<ModifierA>"};
    std::vector<std::string> codes = {"61696", "61697", "9406", "9655", "9665", "9415", "9398"};
    if (!IsIso(parent)) {
      tags.erase(tags.begin() + 5);
      codes.erase(codes.begin() + 5);
    }
    EXPECT_EQ(From(run.Fields(kSymbols, "Name"), 41), tags) << parent;
    EXPECT_EQ(From(run.Fields(kSymbols, "Charcode"), 41), codes) << parent;
    EXPECT_THAT(From(run.Fields(kSymbols, "Font"), 41),
                Each(std::string(IsIso(parent) ? "SYM2.font" : "SYM1.font")));
  }
}

TEST(MigrationTo130, SymbolsOfAStandardInTheOpenTypeFontAreOfItsKindForIsoAndJisOnly) {
  struct Row {
    const char* parent;
    const char* textFont;
    const char* font;
  };
  for (const Row& row :
       {Row{"ISO", kOpenTypeText, "QNISO1.otf"}, Row{"JIS", kOpenTypeText, "QNISO1.otf"},
        Row{"ISO", "QN ISO 1", "SYM2.font"}, Row{"JIS", "", "SYM2.font"},
        Row{"ANSI", kOpenTypeText, "SYM1.font"}, Row{"ASME", kOpenTypeText, "SYM1.font"}}) {
    for (const int version : {130, 140}) {
      UpgradeRun run(row.parent, version - 10);
      const std::size_t before = run.Fields(kSymbols, "Font").size();
      run.Change(std::string("Root.Styles.Text.Default.Font.Name:") + row.textFont);
      run.Step(version);
      const auto added = From(run.Fields(kSymbols, "Font"), before);
      EXPECT_FALSE(added.empty());
      EXPECT_THAT(added, Each(std::string(row.font))) << row.parent << row.textFont;
    }
  }
}

TEST(MigrationTo130, AnUnknownParentStandardGetsNoSymbols) {
  for (const int version : {130, 140}) {
    UpgradeRun run("ISO", version - 10);
    run.SetParent("DIN");
    const auto before = run.Fields(kSymbols, "Name");
    EXPECT_THAT(run.Step(version), Contains(Raised("Unknown parent standard!")));
    EXPECT_EQ(run.Fields(kSymbols, "Name"), before);
  }
}

TEST(MigrationTo130, ADatumTargetWithADiameterIsSizedByIt) {
  struct Row {
    const char* diameter;
    const char* specifier;
  };
  for (const Row& row : {Row{"Yes", "Diameter"}, Row{"No", "None"}, Row{"Perhaps", "None"}}) {
    UpgradeRun run("ANSI", 120);
    run.Change(std::string("Root.Styles.DatumTarget.Default.Diameter:") + row.diameter);
    run.Step(130);
    EXPECT_EQ(run.EnumValue("Root.Styles.DatumTarget.Default.SizeSpecifier"),
              std::string("DatumTargetSizeSpecifier:") + row.specifier);
  }
}

TEST(MigrationTo140, AppendsFourteenSymbolsOfConsecutiveCodes) {
  for (const char* parent : kParents) {
    UpgradeRun run(parent, 130);
    const std::size_t before = run.Fields(kSymbols, "Name").size();
    run.Step(140);
    EXPECT_THAT(From(run.Fields(kSymbols, "Name"), before),
                ElementsAre("<LP>", "<LS>", "<GG>", "<GX>", "<GN>", "<CC>", "<CA>", "<CV>", "<SX>",
                            "<SN>", "<SA>", "<SM>", "<SD>", "<SR>"));
    std::vector<std::string> codes;
    for (int code = 61698; code <= 61711; ++code) codes.push_back(std::to_string(code));
    EXPECT_EQ(From(run.Fields(kSymbols, "Charcode"), before), codes);
  }
}

TEST(MigrationTo140, AConstantLengthOfZeroIsReplacedExceptForJis) {
  const std::map<std::string, std::string> lengths = {
      {"ISO", "15"}, {"JIS", "0"}, {"ANSI", "7.62"}, {"ASME", "7.62"}};
  for (const char* parent : kParents) {
    for (const char* before : {"0", "0.0", "3.5"}) {
      UpgradeRun run(parent, 130);
      run.Change(std::string("Root.Dimension.DIMLConstantLength:") + before);
      run.Step(140);
      EXPECT_EQ(run.Value("Root.Dimension.DIMLConstantLength"),
                std::string(before) == "0" ? lengths.at(parent) : before)
          << parent;
    }
  }
}

TEST(MigrationTo140, WeldingSymbolsFollowTheParentStandard) {
  for (const char* parent : {"ISO", "JIS", "ANSI", "ASME", "DIN"}) {
    UpgradeRun run(IsIso(parent) ? parent : "ANSI", 130);
    run.SetParent(parent);
    const std::size_t before = run.Values("Enum.WeldingSymbol").size();
    EXPECT_EQ(before, 22U);
    const auto reports = run.Step(140);
    const auto added = From(run.Values("Enum.WeldingSymbol"), before);
    if (std::string(parent) == "DIN") {
      // Once for the symbols, once for the length of tails, once for these literals.
      EXPECT_EQ(std::count(reports.begin(), reports.end(), Raised("Unknown parent standard!")), 3);
      EXPECT_THAT(added, IsEmpty());
    } else if (IsIso(parent)) {
      EXPECT_THAT(added,
                  ElementsAre("EdgeWelding", "SurfaceJointWelding", "InclinedJointEdgeWelding"));
    } else {
      EXPECT_THAT(added,
                  ElementsAre("StudWelding", "ScarfWelding", "EdgeWelding", "MeltThruWelding"));
    }
  }
}

constexpr const char* kColumns = "Root.Styles.BillOfMaterial.Default.Properties";

TEST(MigrationTo150, OnlyASiteGetsItsBillOfMaterialAnew) {
  for (const Origin& origin : AllOrigins()) {
    UpgradeRun run(origin, 140);
    run.Change("Root.Styles.BillOfMaterial.Default.NoValueSymbol:own");
    run.Step(150);
    EXPECT_EQ(run.Value("Root.Styles.BillOfMaterial.Default.NoValueSymbol"),
              origin.isShipped ? "own" : "-");
    EXPECT_EQ(run.EnumValue("Root.Styles.BillOfMaterial.Default.PhantomProducts"), "YesNo:No");
    if (origin.isShipped) {
      EXPECT_THAT(run.Fields(kColumns, "Name"),
                  ElementsAre("ItemNumber", "PLM_ExternalID", "V_description", "Quantity"));
      EXPECT_THAT(run.Fields(kColumns, "Width"), ElementsAre("30", "110", "60", "30"));
    } else {
      EXPECT_THAT(run.Fields(kColumns, "Name"),
                  ElementsAre("ItemNumber", "Quantity", "PLM_ExternalID", "V_description",
                              "Material", "V_Weight"));
      EXPECT_THAT(run.Fields(kColumns, "Width"), ElementsAre("30", "30", "110", "60", "60", "30"));
    }
  }
}

TEST(MigrationTo160, OnlyASiteGetsItsBillOfMaterialAndTheSubstitutionSymbolAnew) {
  for (const Origin& origin : AllOrigins()) {
    UpgradeRun run(origin, 150);
    run.Change("Root.EngineeringSymbols.EngineeringSymbol:Charcode:7");
    run.Change("Root.EngineeringSymbols.EngineeringSymbol:Icon16x16:old");
    run.Change("Root.EngineeringSymbols.EngineeringSymbol:Icon22x22:old");
    EXPECT_THAT(run.Step(160), IsEmpty());
    EXPECT_EQ(SymbolField(run, "<SUBSTITUTION>", "Charcode"), origin.isShipped ? "7" : "42");
    EXPECT_EQ(SymbolField(run, "<SUBSTITUTION>", "Font"), "SSS4.font");
    EXPECT_EQ(SymbolField(run, "<SUBSTITUTION>", "Icon16x16") == "old", origin.isShipped);
    EXPECT_EQ(SymbolField(run, "<SUBSTITUTION>", "Icon22x22") == "old", origin.isShipped);
    const auto names = run.Fields(kColumns, "Name");
    EXPECT_EQ(names.back(), origin.isShipped ? "Quantity" : "Weight");
    const std::string style = "Root.Styles.BillOfMaterial.Default.";
    EXPECT_EQ(run.EnumValue(style + "PhantomProducts"), "YesNo:No");
    EXPECT_EQ(run.EnumValue(style + "BOMInversion"), "YesNo:No");
    EXPECT_EQ(run.EnumValue(style + "DeletedProducts"), "BlankRemoveStrike:Blank");
    EXPECT_EQ(run.EnumValue(style + "FakeParts"), "YesNo:No");
    const auto children = run.Children("Root.Styles.BillOfMaterial.Default");
    EXPECT_EQ(std::count(children.begin(), children.end(), "FakeParts"), 1);
  }
}

TEST(MigrationTo160, TheSubstitutionSymbolOfTheOpenTypeFontIsOfItsKind) {
  for (const char* parent : kParents) {
    UpgradeRun run(parent, 150);
    run.Change(std::string("Root.Styles.Text.Default.Font.Name:") + kOpenTypeText);
    run.Step(160);
    EXPECT_EQ(SymbolField(run, "<SUBSTITUTION>", "Font"),
              IsIso(parent) ? "QNISO1.otf" : "SSS4.font");
  }
}

TEST(MigrationTo160, TheDisplayedFactorGoesToTheFirstToleranceFormat) {
  UpgradeRun run("ISO", 150);
  run.Step(160);
  const auto factors = run.Fields("Root.ToleranceFormats", "TolDispFact");
  EXPECT_EQ(factors.front(), "1.0");
  EXPECT_EQ(std::count(factors.begin(), factors.end(), "1.0"), 1);
}

TEST(MigrationTo170, TheColourOfDesignSheetsIsTheViewsOrTheShippedOne) {
  for (const Origin& origin : AllOrigins()) {
    UpgradeRun run(origin, 160);
    run.Change("Root.General.SheetColors.View.Color:9 8 7");
    run.Change("Root.General.SheetColors.View background.Color:6 5 4");
    run.Change("Root.General.SheetColors.Detail.Color:3 2 1");
    EXPECT_THAT(run.Step(170), IsEmpty());
    const std::string colors = "Root.General.SheetColors.";
    const bool isShipped = origin.isShipped;
    EXPECT_EQ(run.Value(colors + "3DDesign.Color"), isShipped ? "208 212 214" : "9 8 7");
    EXPECT_EQ(run.Value(colors + "View.Color"), "9 8 7");
    EXPECT_EQ(run.Value(colors + "View background.Color"), isShipped ? "130 130 130" : "6 5 4");
    EXPECT_EQ(run.Value(colors + "Detail.Color"), isShipped ? "255 255 255" : "3 2 1");
  }
}

TEST(MigrationTo170, ColouringsAndDottingsAreReplaced) {
  for (const Origin& origin : AllOrigins()) {
    UpgradeRun run(origin, 160);
    run.Step(170);
    EXPECT_THAT(
        run.Fields("Root.Patterns.coloring", "Name"),
        ElementsAre("Black", "Grey", "Light Grey", "Red", "Orange", "Yellow", "Light Green",
                    "Dark Green", "Light Blue", "Cyan", "Cobalt", "Deep Blue", "Rose", "Purple"));
    std::vector<std::string> positions;
    for (int i = 1; i <= 14; ++i) positions.push_back(std::to_string(i));
    EXPECT_EQ(run.Fields("Root.Patterns.coloring", "Position"), positions);
    EXPECT_THAT(run.Fields("Root.Patterns.coloring", "color"), Each(Not(std::string("(none)"))));
    EXPECT_THAT(run.Fields("Root.Patterns.dotting", "Name"), ElementsAre("Dot", "Dot ZigZag"));
    EXPECT_THAT(run.Fields("Root.Patterns.dotting", "pitch"), ElementsAre("5", "5"));
    EXPECT_THAT(run.Fields("Root.Patterns.dotting", "zigzag"), ElementsAre("0", "1"));
    EXPECT_THAT(run.Fields("Root.Patterns.dotting", "color"), ElementsAre("255", "255"));
    EXPECT_THAT(run.Fields("Root.Patterns.hatching", "Position"), Not(Contains("(none)")));
  }
}

TEST(MigrationTo170, OnlyNodesNamedHatchingsGetAPlace) {
  UpgradeRun run("ISO", 160);
  run.AddNode("Root.Patterns.hatching:Remark:0");
  run.Step(170);
  const auto positions = run.Fields("Root.Patterns.hatching", "Position");
  EXPECT_EQ(std::count(positions.begin(), positions.end(), "(none)"), 1);
  EXPECT_EQ(positions.back(), "(none)");
}

TEST(MigrationTo170, SymbolsOfIsoAndJisAreRebuiltAndOthersKept) {
  for (const char* parent : kParents) {
    UpgradeRun run(parent, 160);
    run.Change("Root.EngineeringSymbols.EngineeringSymbol:Name:<OWN>");
    run.Step(170);
    const auto names = run.Fields(kSymbols, "Name");
    if (IsIso(parent)) {
      EXPECT_EQ(names.size(), 64U);
      EXPECT_EQ(names.front(), "<SUBSTITUTION>");
      EXPECT_EQ(names[41], "<CHECKMARK>");
      EXPECT_EQ(names[42], "<BALLOTX>");
      EXPECT_EQ(names.back(), "<SR>");
      EXPECT_EQ(SymbolField(run, "<STRAIGHT>", "Charcode"), "9188");
      EXPECT_THAT(run.Fields(kSymbols, "Font"), Each(std::string("QNISO1.otf")));
    } else {
      EXPECT_EQ(names.size(), 61U);
      EXPECT_EQ(names.front(), "<OWN>");
    }
  }
}

TEST(MigrationTo170, CrossesOfAnsiAndAsmeGrowAndDatumTargetsStay) {
  for (const char* parent : kParents) {
    UpgradeRun run(parent, 160);
    const std::string side = run.Value("Root.Dimension.SYMBCrossSide");
    const std::string leader = run.Value("Root.Styles.DatumTarget.Default.Leader.Symbol");
    run.Step(170);
    EXPECT_EQ(run.Value("Root.Dimension.SYMBCrossSide"), IsIso(parent) ? side : "9.8995");
    EXPECT_EQ(run.Value("Root.Styles.DatumTarget.Default.Leader.Symbol"), leader);
  }
}

TEST(MigrationTo170, TheVersionStandsLastAmongTheNodes) {
  UpgradeRun run("ISO", 160);
  run.AddNode("Root:Own:0");
  run.Step(170);
  EXPECT_EQ(run.Children("Root").back(), "Version");
  EXPECT_EQ(run.Document().GetVersion(), 170);
}

/// The three uses of a symbol: "YNN" for tolerance values only.
std::string Uses(UpgradeRun& run, const std::string& tag) {
  std::string uses;
  for (const char* use : {"ToleranceValue", "DatumReference", "Notes"}) {
    const std::string answer = SymbolField(run, tag, use);
    uses += answer == "Yes" ? "Y" : answer == "No" ? "N" : "?";
  }
  return uses;
}

TEST(MigrationTo180, SymbolsOfShippedStandardsAreUsedWhereTheirTagSays) {
  struct Row {
    const char* tag;
    const char* forIso;
    const char* forAnsi;
  };
  for (const char* parent : kParents) {
    UpgradeRun run(Origin{parent, true}, 170);
    run.Step(180);
    for (const Row& row : {Row{"<DIAMETER>", "YYN", "YYN"}, Row{"<PROJTOLZONE>", "YYN", "YNN"},
                           Row{"<ARROW>", "NNN", "NNY"}, Row{"<OHM>", "NNN", "NNN"},
                           Row{"<RIGHTTRIANGLE>", "NNN", "NYN"}, Row{"<SQUARE>", "NNN", "NNN"},
                           Row{"<ENVELOPE>", "NNN", "NNN"}}) {
      EXPECT_EQ(Uses(run, row.tag), IsIso(parent) ? row.forIso : row.forAnsi) << parent << row.tag;
    }
    const std::vector<std::string> toleranceTags =
        IsIso(parent)
            ? std::vector<std::string>{"<DIAMETER>",    "<ModifierA>",     "<PROJTOLZONE>",
                                       "<MAXMATERIAL>", "<LEASTMATERIAL>", "<FREESTATE>",
                                       "<Reciprocity>"}
            : std::vector<std::string>{"<DIAMETER>",      "<PROJTOLZONE>", "<MAXMATERIAL>",
                                       "<LEASTMATERIAL>", "<FREESTATE>",   "<TANGENTPLANE>",
                                       "<Unequally>",     "<ST>"};
    for (const std::string& tag : toleranceTags) {
      EXPECT_EQ(SymbolField(run, tag, "ToleranceValue"), "Yes") << parent << tag;
    }
    if (IsIso(parent)) continue;
    // For these parents the lists are whole: no other tag may say yes.
    const std::map<std::string, std::vector<std::string>> lists = {
        {"ToleranceValue", toleranceTags},
        {"DatumReference", {"<DIAMETER>", "<MAXMATERIAL>", "<LEASTMATERIAL>", "<RIGHTTRIANGLE>"}},
        {"Notes", {"<ARROW>"}}};
    for (const auto& [use, tags] : lists) {
      const auto answers = run.Fields(kSymbols, use.c_str());
      EXPECT_EQ(std::count(answers.begin(), answers.end(), "Yes"),
                static_cast<std::ptrdiff_t>(tags.size()))
          << use;
      for (const std::string& tag : tags) EXPECT_EQ(SymbolField(run, tag, use.c_str()), "Yes");
    }
  }
}

TEST(MigrationTo180, SomeSymbolsOfASiteAreUsedEverywhere) {
  for (const char* parent : kParents) {
    UpgradeRun run(parent, 170);
    run.Step(180);
    for (const char* tag :
         {"<DIAMETER>", "<ENVELOPE>", "<FREESTATE>", "<LEASTMATERIAL>", "<MAXMATERIAL>",
          "<PROJTOLZONE>", "<NOACTUALSIZE>", "<TANGENTPLANE>", "<Unequally>", "<ST>", "<ARROW>"}) {
      EXPECT_EQ(Uses(run, tag), "YYY") << parent << tag;
    }
    if (IsIso(parent)) {
      EXPECT_EQ(Uses(run, "<Reciprocity>"), "YYY");
      EXPECT_NE(Uses(run, "<SQUARE>"), "YYY");
      EXPECT_NE(Uses(run, "<RIGHTTRIANGLE>"), "YYY");
      EXPECT_NE(Uses(run, "<SLOPE>"), "NNN") << "a rule of its own for a site";
    } else {
      EXPECT_EQ(Uses(run, "<SQUARE>"), "YYY");
      EXPECT_EQ(Uses(run, "<RIGHTTRIANGLE>"), "YYY");
      EXPECT_EQ(Uses(run, "<SLOPE>"), "NNN");
    }
    EXPECT_EQ(Uses(run, "<OHM>"), "NNN");
  }
}

TEST(MigrationTo180, OneTagTakesThePlaceOfItsFormerSpellingInAShippedStandardOfIsoAndJis) {
  for (const char* parent : kParents) {
    for (const bool isShipped : {false, true}) {
      UpgradeRun run(Origin{parent, isShipped}, 170);
      run.Change("Root.EngineeringSymbols.EngineeringSymbol:Name:<ORIENTCONSTRAINTONLY>");
      run.Step(180);
      // Texts of a site's drawings hold the tag as the site knows it.
      const bool isRenamed = isShipped && IsIso(parent);
      EXPECT_EQ(run.Fields(kSymbols, "Name").front(),
                isRenamed ? "<ORIENTATIONCONSTRAINTONLY>" : "<ORIENTCONSTRAINTONLY>");
    }
  }
}

TEST(MigrationTo180, SymbolsThatASiteUsesEverywhereAreSoUnderAnyParentStandard) {
  for (const char* parent : {"DIN", "iso", ""}) {
    SCOPED_TRACE(parent);
    UpgradeRun run("ASME", 170);
    run.SetParent(parent);
    run.Change("Root.EngineeringSymbols.EngineeringSymbol:Name:<Reciprocity>");
    // Said once, for all that goes by the parent standard.
    EXPECT_THAT(run.Step(180), ElementsAre(Raised("Unknown parent standard!")));
    for (const char* tag :
         {"<DIAMETER>", "<ENVELOPE>", "<FREESTATE>", "<LEASTMATERIAL>", "<MAXMATERIAL>",
          "<PROJTOLZONE>", "<NOACTUALSIZE>", "<TANGENTPLANE>", "<Unequally>", "<ST>", "<ARROW>"}) {
      EXPECT_EQ(Uses(run, tag), "YYY") << tag;
    }
    // These are told by tag and parent standard.
    for (const char* tag : {"<Reciprocity>", "<SQUARE>", "<RIGHTTRIANGLE>", "<SLOPE>", "<OHM>"}) {
      EXPECT_EQ(Uses(run, tag), "NNN") << tag;
    }
  }
}

TEST(MigrationTo180, AShippedStandardOfAnUnknownParentUsesNoSymbolAnywhere) {
  UpgradeRun run(Origin{"ASME", true}, 170);
  run.SetParent("DIN");
  run.Step(180);
  for (const char* tag : {"<DIAMETER>", "<MAXMATERIAL>", "<ARROW>", "<ST>"}) {
    EXPECT_EQ(Uses(run, tag), "NNN") << tag;
  }
}

TEST(MigrationTo180, AnEntryThatHoldsNothingButTheFormerTagGetsTheNewOne) {
  UpgradeRun run(Origin{"ISO", true}, 170);
  const auto entry = run.Node("Root.EngineeringSymbols.EngineeringSymbol");
  while (entry->GetNumOfValue() > 1) entry->DeleteValue(entry->GetNumOfValue() - 1);
  ASSERT_EQ(entry->GetValues().front()->GetValueName(), "Name");
  entry->GetValues().front()->SetValue("<ORIENTCONSTRAINTONLY>");
  run.Step(180);
  EXPECT_EQ(run.Fields(kSymbols, "Name").front(), "<ORIENTATIONCONSTRAINTONLY>");
}

TEST(MigrationTo180, OfSeveralEntriesOfTheFormerTagTheFirstIsRenamed) {
  UpgradeRun run(Origin{"ISO", true}, 170);
  const auto list = run.Node(kSymbols);
  for (const int i : {3, 5}) {
    const VyrAnnStandardXMLNode_var entry(list->GetNode(i));
    const VyrAnnStandardXMLValue_var name(entry->GetValueByName("Name"));
    name->SetValue("<ORIENTCONSTRAINTONLY>");
  }
  run.Step(180);
  const auto names = run.Fields(kSymbols, "Name");
  EXPECT_EQ(names[3], "<ORIENTATIONCONSTRAINTONLY>");
  EXPECT_EQ(names[5], "<ORIENTCONSTRAINTONLY>");
}

TEST(MigrationTo160, ASubstitutionSymbolThatHoldsNothingButItsNameKeepsIt) {
  UpgradeRun run("ISO", 150);
  const auto entry = run.Node("Root.EngineeringSymbols.EngineeringSymbol");
  while (entry->GetNumOfValue() > 1) entry->DeleteValue(entry->GetNumOfValue() - 1);
  run.Step(160);
  EXPECT_EQ(entry->GetValues().front()->GetValue(), "<SUBSTITUTION>");
}

TEST(MigrationTo100, StylesOfOneNameAndNamesWithASeparatorAreServedEach) {
  UpgradeRun run("ISO", 90);
  run.Change("Root.Styles.Text.Default.Text.Blanking:No");
  const VyrAnnStandardXMLNode_var family(run.Document().GetNodeWithPath("Root.Styles.Text"));
  for (const char* name : {"Default", "M:1"}) {
    const VyrAnnStandardXMLNode_var style(family->GetNodes().front()->Clone());
    style->SetNodeName(name);
    family->AddNode(style.Get(), -1);
  }
  run.Step(100);
  for (const VyrAnnStandardXMLNode_var& style : family->GetNodes()) {
    const VyrAnnStandardXMLNode_var blanking(style->GetNodeWithPath("Text.Blanking", 1));
    ASSERT_TRUE(blanking) << style->GetNodeName().CString();
    EXPECT_EQ(blanking->GetValues().front()->GetValue(), "No");
    EXPECT_EQ(blanking->GetValues().front()->GetValueName(), "BlankProp");
  }
}

TEST(MigrationTo180, NotesOfIsoAndJisTakeBetweenAndFromTo) {
  for (const char* parent : kParents) {
    for (const char* tag : {"<BETWEEN>", "<FROMTO>"}) {
      UpgradeRun run(Origin{parent, true}, 170);
      run.Change(std::string("Root.EngineeringSymbols.EngineeringSymbol:Name:") + tag);
      run.Step(180);
      EXPECT_EQ(Uses(run, tag), IsIso(parent) ? "NNY" : "NNN") << parent;
    }
  }
}

TEST(MigrationTo190, EveryFrameHasAPlace) {
  UpgradeRun run("ASME", 180);
  run.Step(190);
  const auto places = run.Fields("Root.Frames", "Pos");
  EXPECT_EQ(places.size(), 21U);
  EXPECT_THAT(places, Each(std::string("0")));
}

TEST(MigrationTo190, OnlyShippedIsoAndJisStandardsGetSymbolsOfProjectionMethods) {
  for (const Origin& origin : AllOrigins()) {
    UpgradeRun run(origin, 180);
    const std::size_t before = run.Fields(kSymbols, "Name").size();
    EXPECT_THAT(run.Step(190), IsEmpty());
    const auto added = From(run.Fields(kSymbols, "Name"), before);
    if (!origin.isShipped || !origin.IsIsoOrJis()) {
      EXPECT_THAT(added, IsEmpty());
      continue;
    }
    EXPECT_THAT(added, ElementsAre("<FIRSTANGLE>", "<THIRDANGLE>", "<FIRSTANGLECENTERLINES>",
                                   "<THIRDANGLECENTERLINES>"));
    EXPECT_THAT(From(run.Fields(kSymbols, "Charcode"), before),
                ElementsAre("61712", "61713", "61714", "61715"));
    EXPECT_THAT(From(run.Fields(kSymbols, "Font"), before), Each(std::string("QNISO1.otf")));
    for (const char* use : {"ToleranceValue", "DatumReference", "Notes"}) {
      EXPECT_THAT(From(run.Fields(kSymbols, use), before), Each(std::string()));
    }
  }
}

TEST(MigrationTo200, FeatureIndicatorsFollowTheParentStandard) {
  for (const char* parent : kParents) {
    UpgradeRun run(parent, 190);
    run.Step(200);
    const std::string node = "Root.Annotation.Tolerance.AuxiliaryFeatureIndicators";
    EXPECT_THAT(run.Children(node), ElementsAre("IntersectionPlane", "OrientationPlane",
                                                "CollectionPlane", "DirectionFeature"));
    for (const std::string& name : run.Children(node)) {
      EXPECT_EQ(run.EnumValue(node + "." + name), IsIso(parent) ? "YesNo:Yes" : "YesNo:No");
    }
  }
}

TEST(MigrationTo210, FillsTakeTheViewColourOrWhiteWithATrailingBlank) {
  for (const char* frame : {"Root.Styles.Text.Default.Text", "Root.Styles.Balloon.Default.Text"}) {
    const std::string path = std::string(frame) + ".FillColor";
    UpgradeRun run("ISO", 200);
    run.Change("Root.General.SheetColors.View.Color:1 22 333");
    run.Step(210);
    EXPECT_EQ(run.Value(path), "1 22 333");
    EXPECT_EQ(run.EnumValue(std::string(frame) + ".Fill"), "YesNo:No");
    UpgradeRun empty("ISO", 200);
    empty.Change("Root.General.SheetColors.View.Color:");
    empty.Step(210);
    EXPECT_EQ(empty.Value(path), "255 255 255 ");
    UpgradeRun without("ISO", 200);
    without.Delete("Root.General.SheetColors");
    without.Step(210);
    EXPECT_EQ(without.Value(path), "255 255 255 ");
  }
}

TEST(MigrationTo210, OnlyTextsGetMargins) {
  UpgradeRun run("ANSI", 200);
  run.Step(210);
  EXPECT_EQ(run.Value("Root.Styles.Text.Default.Text.HorizontalMargin"), "2.0");
  EXPECT_EQ(run.Value("Root.Styles.Text.Default.Text.VerticalMargin"), "2.0");
  EXPECT_FALSE(run.Has("Root.Styles.Balloon.Default.Text.HorizontalMargin"));
}

TEST(MigrationTo220, OnlyShippedStandardsGetTheLastSymbols) {
  for (const Origin& origin : AllOrigins()) {
    for (const char* textFont : {"", kOpenTypeText}) {
      UpgradeRun run(origin, 210);
      run.Change(std::string("Root.Styles.Text.Default.Font.Name:") + textFont);
      const std::size_t before = run.Fields(kSymbols, "Name").size();
      EXPECT_THAT(run.Step(220), IsEmpty());
      const auto added = From(run.Fields(kSymbols, "Name"), before);
      if (!origin.isShipped) {
        EXPECT_THAT(added, IsEmpty());
        continue;
      }
      const char* tags[] = {"<MinimaxFeat>",
                            "<LeastSquare>",
                            "<Circumscribed>",
                            "<Tangent>",
                            "<Inscribed>",
                            "<AD>",
                            "<GC>",
                            "<LG>",
                            "<LC>",
                            "<SQ>",
                            "<SUP>",
                            "<IdentInter>",
                            "<IdentFinalMach>",
                            "<IdentFinal>",
                            "<MobilityTrans>",
                            "<MobilityRot>",
                            "<Gravity>"};
      EXPECT_THAT(added, ElementsAreArray(tags));
      const bool isOpenType = *textFont != '\0';
      const std::string font = !origin.IsIsoOrJis() ? "SYM1.font"
                               : isOpenType         ? "QNISO1.otf"
                                                    : "SYM2.font";
      EXPECT_THAT(From(run.Fields(kSymbols, "Font"), before), Each(font));
      EXPECT_THAT(From(run.Fields(kSymbols, "ToleranceValue"), before),
                  Each(testing::AnyOf("Yes", "No")));
    }
  }
}

TEST(MigrationTo220, AnUnknownParentStandardIsReportedInShippedOnesOnly) {
  for (const bool isShipped : {false, true}) {
    UpgradeRun run(Origin{"ISO", isShipped}, 210);
    run.SetParent("DIN");
    const auto reports = run.Step(220);
    if (isShipped) {
      EXPECT_THAT(reports, ElementsAre(Raised("Unknown parent standard!")));
    } else {
      EXPECT_THAT(reports, IsEmpty());
    }
    EXPECT_EQ(run.Value("Root.Version"), "220");
  }
}

TEST(MigrationTo220, VectorPatternsAreDescribedAsTheyStand) {
  UpgradeRun run("JIS", 210);
  run.Step(220);
  EXPECT_THAT(run.Fields("Root.Patterns.vector", "Name"),
              ElementsAre("wall_1", "Grass_1", "Honeycomb_1"));
  EXPECT_THAT(
      run.Fields("Root.Patterns.vector", "description"),
      ElementsAre(
          "*wall_1; 0, 0, 0, 8, 8, 15.625, -.375; 0, -8, .375, 8, 8, 15.625, -.375; "
          "90, 0, 0, 8, 8, -8.375, 7.625; 90, -0.375, 0, 8, 8, -8.375, 7.625",
          "*Grass_1; 90 0 0 .707106781 .707106781 .1875 -1.226713563; 45 0 0 0 1 .1875 -.8125; "
          "135 0 0 0 1 .1875 -.8125",
          "*Honeycomb_1; 0 0 0 1.875 1.08253175 1.25 -2.5; 120 0 0 1.875 1.08253175 1.25 -2.5; "
          "60 0 0 1.875 1.08253175 -2.5 1.25"));
  EXPECT_EQ(run.Fields("Root.Patterns.vector", "scale")[1], "10.0");
}

}  // namespace
