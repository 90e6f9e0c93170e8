#include <algorithm>
#include <array>
#include <filesystem>
#include <regex>
#include <string>
#include <vector>

#include "TemporaryFolder.h"
#include "UpgradeRun.h"

// Standards that a site has made its own: what is theirs outlives every upgrade.

namespace {

using testing::IsEmpty;

struct PathAndText {
  const char* path;
  const char* text;
};

struct Site {
  const char* file;
  int version;
  /// What the site has, and what it must be at the end.
  std::vector<PathAndText> kept;
  /// Fields of list entries of the site's own: a list, a field of each entry, and the text.
  std::vector<std::array<const char*, 3>> entries;
  std::vector<const char*> deleted;
  /// Steps are stated to replace these; nothing else may change or go.
  std::vector<const char*> replaced;
  std::vector<std::string> reports;
};

void PrintTo(const Site& site, std::ostream* out) {
  *out << site.file;
}

constexpr const char* kPatterns = R"(Root\.Patterns\.(coloring|dotting).*)";
constexpr const char* kBillOfMaterial = R"(Root\.Styles\.BillOfMaterial(\..*)?)";
constexpr const char* kFirstSymbol =
    R"(Root\.EngineeringSymbols\.EngineeringSymbol\.(Charcode|Icon16x16|Icon22x22))";
constexpr const char* kCrossSide = R"(Root\.Dimension\.SYMBCrossSide)";

std::vector<Site> Sites() {
  return {
      {"site-v2.xml",
       2,
       {
           {"Root.Dimension.DIMLOverrun", "3.3"},
           {"Root.Dimension.DIMLConstantLength", "12.5"},
           {"Root.Dimension.CUMLTxtDecalY", "0.75"},
           {"Root.View.Generation.ThicknessIndex", "3"},
           {"Root.Annotation.Text.LeaderGap", "1.25"},
           {"Root.Société.Nom", "Ateliers Lefèvre & 山田製作所"},
           {"Root.Société.Teinte", "藍色"},
       },
       {{"Root.Frames", "Name", "社内枠"}, {"Root.Frames", "Length", "42.0"}},
       {"Root.Annotation.Text.LeaderVertSpace", "Root.Dimension.TXTLeaderVertSpace",
        "Root.Dimension.CUMLDimLinTail"},
       {R"(Root\.General\.Default(ToleranceFormat|NumericalFormat.*|TextFont))"},
       {}},
      {"site-v60.xml",
       60,
       {
           {"Root.Dimension.DIMLOverrun", "3.3"},
           {"Root.General.SheetColors.View.Color", "51 51 102"},
           {"Root.General.SheetColors.3DDesign.Color", "51 51 102"},
           {"Root.Styles.Text.Default.Text.FillColor", "51 51 102"},
           {"Root.Styles.Text.Default.Font.Name", "ＭＳ ゴシック"},
           {"Root.Styles.Text.注記.Font.Size", "7.0"},
           {"Root.Styles.Text.注記.Text.Frame", "Cartouche étoilé"},
           {"Root.Styles.Text.注記.Text.Blanking", "No"},
           {"Root.Styles.Text.注記.Font.Kerning", "No"},
           {"Root.Styles.Text.Été à l'œuvre.Text.Justification", "Right"},
           {"Root.Styles.Balloon.風船.Leader.Symbol", "自社矢印"},
           {"Root.Styles.DimensionsSystem.段.AlignCumulated", "OppositeReferenceLine"},
           {"Root.Styles.DimensionsSystem.段.AlignStacked", "Right"},
           {"Root.Styles.CoordinateDimension.座標.Font.Size", "2.5"},
           {"Root.Styles.CoordinateDimension.座標.ValueDisplayFormat.Name", "NUM.DIMM"},
           {"Root.Styles.CoordinateDimension.座標.Leader.Symbol", "WhiteFilledSquare"},
           {"Root.Styles.DatumTarget.Default.Leader.Symbol", "FilledArrow"},
           {"Root.Styles.DatumTarget.Default.SizeSpecifier", "Diameter"},
           {"Root.Styles.RoughnessSymbol.Default.Values.FirstRequirement", "Ra 3,2"},
           {"Root.Styles.Table.Nomenclature générale.CellStyles.WholeTable.Width", "45.0"},
           {"Root.Styles.Table.Nomenclature générale.CellStyles.WholeTable.HorizontalMargin",
            "2.5"},
           {"Root.Styles.ProjectionCallout.矢視.Arrows.Head.Angle", "18.0"},
           {"Root.Styles.ProjectionCallout.矢視.Arrows.Position", "50"},
           {"Root.LineTypes.LineType16.Segment", "3.0"},
       },
       {{"Root.Patterns.hatching", "Name", "斜線 45"},
        {"Root.Patterns.hatching", "pitch", "3.7"},
        {"Root.SheetFormat", "Name", "A1 allongé"},
        {"Root.SheetFormat", "Width", "1051"}},
       {"Root.Styles.Thread", "Root.Styles.DetailCallout", "Root.Styles.ChamferDimension",
        "Root.Patterns.motif", "Root.LineTypes.LineType62",
        "Root.Styles.SectionCallout.Default.Arrows"},
       {kPatterns, R"(Root\.Dimension\.DIMLConstantLength)",
        R"(Root\.Styles\.CoordinateDimension\.Default\.Leader\.Symbol)",
        R"(Root\.Styles\.CoordinateDimension\.[^.]*\.DisplayUnit)",
        R"(Root\.Styles\.DimensionsSystem\.[^.]*\.AlignCumulated)",
        R"(Root\.Styles\.(Text|Table|Tolerance|Balloon|RoughnessSymbol)\.[^.]*\.Text\.Blanking)",
        R"(Root\.Styles\.Table\.[^.]*\.(Cells(\..*)?|HorizontalMargin|VerticalMargin))"},
       {"ON POINTER : NULL handler [VyrDrwParseStandard]"}},
      {"site-v100.xml",
       100,
       {
           {"Root.Dimension.DIMLConstantLength", "9.5"},
           {"Root.Styles.Text.Default.Text.Blanking", "AreaFillandGeometry"},
           {"Root.Styles.Text.表題.Text.Blanking", "図枠のみ"},
           {"Root.Styles.Text.表題.Font.Name", "游明朝"},
           {"Root.Styles.Text.Default.Text.FillColor", "255 255 255 "},
           {"Root.Styles.Balloon.Repère.Text.Frame", "Ellipse"},
           {"Root.Styles.BomStyle.Default.NoValueSymbol", "n/a"},
           {"Root.Styles.BomStyle.部品表.TableStyle", "表題"},
           {"Root.Styles.CoordinateDimension.Default.ValueDisplayFormat.Name", "NUM.DIMM"},
           {"Root.Styles.AreaFill.Bois d'ébène.Pattern", "木目"},
       },
       {{"Root.EngineeringSymbols", "Name", "<会社記号>"},
        {"Root.EngineeringSymbols", "Font", "Société.otf"},
        {"Root.EngineeringSymbols", "Charcode", "63000"},
        {"Root.Patterns.hatching", "Name", "木目"},
        {"Root.Patterns.hatching", "pitch", "1.9"}},
       {"Root.Styles.WeldingSymbol", "Root.Styles.DatumTarget"},
       {kPatterns, kFirstSymbol, kCrossSide},
       {}},
      {"site-v150.xml",
       150,
       {
           {"Root.Dimension.DIMLOverrun", "2.7"},
           {"Root.General.SheetColors.View.Color", "250 250 240"},
           {"Root.General.SheetColors.3DDesign.Color", "250 250 240"},
           {"Root.Styles.Text.Default.Text.FillColor", "250 250 240"},
           {"Root.View.ViewName.Scale.ScaleString", " 尺度: #SCALE#"},
           {"Root.View.ViewName.Alignment", "TopCenter"},
           {"Root.Styles.DatumTarget.Default.Movable", "Yes"},
           {"Root.Styles.DatumTarget.Default.SizeSpecifier", "Square"},
           {"Root.Styles.Text.ViewText.Text.Justification", "Right"},
           {"Root.Styles.Text.ViewText.Text.FrameName", ""},
           {"Root.Styles.Text.見出し.Font.Size", "10.0"},
           {"Root.Styles.Arrow.Flèche épaisse.Graphic.Thickness", "4"},
       },
       {{"Root.EngineeringSymbols", "Name", "<QUALITÉ>"},
        {"Root.EngineeringSymbols", "Font", "Société.otf"},
        {"Root.EngineeringSymbols", "Charcode", "63001"}},
       {"Root.Styles.Balloon", "Root.Styles.AreaFill", "Root.Patterns.hatching",
        "Root.Annotation.BlankBackground.AroundLeader"},
       {kPatterns, kBillOfMaterial, kFirstSymbol, kCrossSide, R"(Root\.Version)"},
       {}},
  };
}

std::string PathOf(const Site& site) {
  return (std::filesystem::path(HOL_STANDARDS).parent_path() / "tests/data" / site.file).string();
}

/// A site's standard upgraded, and what was reported on the way.
struct Upgraded {
  explicit Upgraded(const Site& site, int target = -1) : standard(PathOf(site)) {
    const DiagnosticsCapture capture;
    standard.Decode();
    auto options = OptionsOf(false);
    EXPECT_GE(standard.Upgrade(target, options), 0);
    reports = CheckTexts(capture.errors);
  }
  VyrAnnStandardXMLParser& Document() { return *VyrDrwParseStandardAccess::Document(standard); }

  VyrDrwParseStandard standard;
  std::vector<std::string> reports;
};

class SiteStandards : public testing::TestWithParam<Site> {};

INSTANTIATE_TEST_SUITE_P(Versions, SiteStandards, testing::ValuesIn(Sites()), [](const auto& site) {
  return "From" + std::to_string(site.param.version);
});

TEST_P(SiteStandards, AreDatedWithTheVersionTheyWereMadeAt) {
  VyrAnnStandardXMLParser document;
  ASSERT_EQ(document.DecodeXML(PathOf(GetParam()), 1), 0);
  EXPECT_EQ(document.GetVersion(), GetParam().version);
  EXPECT_EQ(document.Check(), 1);
}

TEST_P(SiteStandards, KeepTheirOwnValuesAndStyles) {
  Upgraded upgraded(GetParam());
  for (const PathAndText& kept : GetParam().kept) {
    const VyrAnnStandardXMLNode_var node(upgraded.Document().GetNodeWithPath(kept.path));
    ASSERT_TRUE(node) << kept.path;
    EXPECT_EQ(upgraded.Document().GetValueWithPath(kept.path), VyrUnicodeString(kept.text))
        << kept.path;
  }
}

TEST_P(SiteStandards, KeepTheEntriesOfTheirOwnInLists) {
  Upgraded upgraded(GetParam());
  for (const auto& [path, field, text] : GetParam().entries) {
    const VyrAnnStandardXMLNode_var list(upgraded.Document().GetNodeWithPath(path));
    ASSERT_TRUE(list) << path;
    int found = 0;
    for (const auto& entry : list->GetNodes()) {
      const VyrAnnStandardXMLValue_var value(entry->GetValueByName(field));
      if (value && value->GetValue() == VyrUnicodeString(text)) ++found;
    }
    EXPECT_EQ(found, 1) << path << " " << text;
  }
}

TEST_P(SiteStandards, DoNotGetBackWhatTheyHaveDeleted) {
  Upgraded upgraded(GetParam());
  for (const char* path : GetParam().deleted) {
    EXPECT_FALSE(VyrAnnStandardXMLNode_var(upgraded.Document().GetNodeWithPath(path))) << path;
  }
}

TEST_P(SiteStandards, LoseAndChangeNothingButWhatAStepIsStatedToReplace) {
  VyrAnnStandardXMLParser before;
  ASSERT_EQ(before.DecodeXML(PathOf(GetParam()), 1), 0);
  Upgraded upgraded(GetParam());
  std::vector<std::string> unexpected;
  for (const std::string& line : ChangeLines(before, upgraded.Document())) {
    if (line.starts_with("+ ")) continue;
    const bool isStated = std::any_of(
        GetParam().replaced.begin(), GetParam().replaced.end(), [&](const char* pattern) {
          return std::regex_match(line, std::regex("[~-] " + std::string(pattern) + "( \\w+ .*)?"));
        });
    if (!isStated) unexpected.push_back(line);
  }
  EXPECT_THAT(unexpected, IsEmpty());
}

TEST_P(SiteStandards, UpgradeWithoutAFailedCheckWhereNothingNeededIsGone) {
  EXPECT_EQ(Upgraded(GetParam()).reports, GetParam().reports);
}

TEST_P(SiteStandards, AreConsistentAndCurrentInTheEnd) {
  Upgraded upgraded(GetParam());
  EXPECT_EQ(upgraded.Document().Check(), 1);
  EXPECT_EQ(upgraded.Document().GetVersion(), kCurrentVersion);
}

TEST_P(SiteStandards, BecomeTheSameWithAStopAtAnyVersion) {
  const TemporaryFolder folder;
  const std::string straight = SavedText(Upgraded(GetParam()).Document());
  for (const int version : kVersions) {
    if (version < GetParam().version) continue;
    Upgraded halfway(GetParam(), version);
    const std::string path = folder / "halfway.xml";
    ASSERT_GE(halfway.standard.SaveToFile(path.c_str()), 0);
    VyrDrwParseStandard read(path);
    const DiagnosticsCapture capture;
    read.Decode();
    ASSERT_EQ(read.GetVersion(), version);
    auto options = OptionsOf(false);
    ASSERT_GE(read.Upgrade(-1, options), 0);
    EXPECT_EQ(SavedText(*VyrDrwParseStandardAccess::Document(read)), straight) << version;
  }
}

}  // namespace
