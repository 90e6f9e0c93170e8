#include <string>
#include <utility>

#include "ConversionTables.h"
#include "StyleWalk.h"
#include "UpgradeOmissions.h"
#include "UpgradeStep.h"
#include "VyrAnnStandardXMLParser.h"
#include "VyrDrwParseStandard.h"
#include "VyrDrwParseStandardBomProperty.h"
#include "VyrDrwParseStandardUnit.h"

// The steps from version 60 to 110. From here on a document carries its version.

namespace {

using Document = VyrAnnStandardXMLParser;
using Node = VyrAnnStandardXMLNode;
using Omission = VyrDrwUpgradeOmission;
using Value = VyrAnnStandardXMLValue;
using Standard = VyrDrwParseStandard;

constexpr const char* kLineType16Segment = "Root.LineTypes.LineType16.Segment";
/// Dashes of a line type that was drawn solid: a dash and a gap, in millimetres.
constexpr const char* kLineType16Dashes[] = {"1.0", "-1.0"};

/// A style family and the node of its styles that holds the blanking.
struct BlankedFamily {
  const char* family;
  const char* node;
};

constexpr BlankedFamily kBlankedFamilies[] = {
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

constexpr VyrDrwParseStandardBomProperty kBomStyleColumns[] = {
    {"Quantity", "26.3", "1"},     {"PartNumber", "62.7", "2"}, {"Type", "32.4", "3"},
    {"Nomenclature", "59.7", "4"}, {"Revision", "38.4", "5"},
};

/// The path of a style, by its family's name.
std::string StylePath(const char* family, const Node& style) {
  return PathOfStyle(std::string("Root.Styles.") + family, style);
}

/// The blanking of a style by its old value; null, reported, for another than there were.
const char* BlankingFrom(std::string_view oldValue) {
  if (oldValue == "No") return "No";
  if (oldValue == "Yes") return "AreaFill";
  kParseStandardUnit.Raise("Unknown old value");
  return nullptr;
}

/// That a style's blanking was none of those that there were, or is not there.
Omission OmissionOfBlanking(const BlankedFamily& blanked, const Node& style, bool hasNode,
                            VyrUnicodeView oldValue) {
  const std::string place = StylePath(blanked.family, style);
  if (!hasNode) return {Omission::Missing, Omission::BlankingKept, place, blanked.node, {}};
  return {oldValue.empty() ? Omission::Missing : Omission::OtherValue, Omission::BlankingAssumed,
          place, std::string(blanked.node) + ".Blanking", oldValue};
}

/// How a coordinate dimension shows its value, instead of a mere switch for the unit.
void AddValueDisplayFormat(Node& style, const char* name) {
  style.DeleteNodeWithPath("DisplayUnit");
  const VyrAnnStandardXMLNode_var format(new Node(Node::NodePlain, "ValueDisplayFormat"));
  format->AddNodeWithValue("Name", Value::ValueString, name, {}, -1);
  format->AddNodeWithValue("DisplayedFactorNumber", Value::ValueInt, "1", {}, -1);
  format->AddNodeWithValue("PrecisionMode", Value::ValueEnum, "Decimal", "DimPrecision", -1);
  format->AddNodeWithValue("Precision", Value::ValueFloat, "0.01", {}, -1);
  style.AddNode(format.Get(), -1);
}

/// Moves a value that a style holds under a node of its own below the style's "WholeTable". False,
/// reported, when the style has none.
bool MoveToWholeTable(Node& style, Node& wholeTable, const char* name,
                      UpgradeOmissions& omissions) {
  const VyrAnnStandardXMLNode_var value(style.GetNodeByName(name));
  if (!kParseStandardUnit.CheckPointer(value.Get(), "NULL node?")) {
    omissions.Add({Omission::Missing, Omission::MarginsKept, StylePath("Table", style), name, {}});
    return false;
  }
  const VyrAnnStandardXMLNode_var moved(value->Clone());
  wholeTable.AddNode(moved.Get(), -1);
  style.DeleteNodeWithPath(name);
  return true;
}

/// The alignment of dimensions in a system, by the word that justified their text; null, reported,
/// for another word.
const char* ConvertJustification(std::string_view justification) {
  if (justification == "Left") return "ReferenceLine";
  if (justification == "Right") return "OppositeReferenceLine";
  if (justification == "Center") return "Center";
  kParseStandardUnit.Raise("Unknown value");
  return nullptr;
}

}  // namespace

void VyrDrwParseStandard::Migrate14To15(const UpgradeStep&, Options&) {
  RunTable(*document_, tables::to_070);
  if (IsIsoOrJis()) {
    for (const char* family : {"CoordinateDimension", "DatumTarget"}) {
      const std::string path = std::string("Root.Styles.") + family + ".Default.Leader.Symbol";
      if (document_->GetValueWithPath(path) == "WhiteFilledSquare") {
        document_->ChangeValueWithPath(path + ":Automatic");
      }
    }
  }
  const VyrAnnStandardXMLNode_var segment(document_->GetNodeWithPath(kLineType16Segment));
  if (!segment || segment->GetNumOfValue() != 0) return;
  for (const char* length : kLineType16Dashes) {
    const VyrAnnStandardXMLValue_var dash(new Value(Value::ValueFloat, length, {}, 0));
    segment->AddValue(dash.Get(), -1);
  }
}

void VyrDrwParseStandard::Migrate15To16n201(const UpgradeStep&, Options&) {
  RunTable(*document_, tables::to_080);
  // The alignment of stacked dimensions keeps its old type: applications of this release and later
  // read it so.
  for (const VyrAnnStandardXMLNode_var& style : StylesOf(*document_, "DimensionsSystem")) {
    const VyrUnicodeString oldValue = ValueBelow(*style, "AlignCumulated");
    const char* alignment = ConvertJustification(oldValue.View());
    if (alignment == nullptr) {
      alignment = "Center";
      omissions_->Add({oldValue.IsEmpty() ? Omission::Missing : Omission::OtherValue,
                       Omission::AlignmentAssumed, StylePath("DimensionsSystem", *style),
                       "AlignCumulated", oldValue});
    }
    style->DeleteNodeWithPath("AlignCumulated");
    style->AddNodeWithValue("AlignCumulated", Value::ValueEnum, alignment, "DimSysAlign", -1);
  }
  RunTable(*document_, tables::to_080_roughness);
}

void VyrDrwParseStandard::Migrate16To17n1X(const UpgradeStep&, Options&) {
  RunTable(*document_, tables::to_090);
  AppendFirstEngineeringSymbols();
  RunTable(*document_, tables::to_090_arrow);
  for (const VyrAnnStandardXMLNode_var& style : StylesOf(*document_, "DetailCallout")) {
    const VyrUnicodeString color = ValueBelow(*style, "Text.Font.Color");
    style->AddNodeWithValue("Color", Value::ValueColor, color.IsEmpty() ? "0 0 0" : color.CString(),
                            {}, -1);
  }
}

void VyrDrwParseStandard::Migrate17To18n1X1(const UpgradeStep&, Options& options) {
  RunTable(*document_, tables::to_100);
  ConvertBlanking();
  for (const VyrAnnStandardXMLNode_var& style : StylesOf(*document_, "CoordinateDimension")) {
    AddValueDisplayFormat(*style, IsIsoOrJis() ? "NUM.DIMM" : "FEET-INC");
  }
  document_->AddValueWithPath(
      std::string("Root.Annotation.Roughness:LeaderAnchorAccordingToStandard:enum.YesNo:") +
          (options.OOTBStandard != 0 ? "Yes" : "No") + ":0",
      1);
  RunTable(*document_, tables::to_100_bill_of_material);
  AddBomStyle("BomStyle", kBomStyleColumns, static_cast<int>(std::size(kBomStyleColumns)));
  RestructureTableStyles();
  const bool hasOldColor =
      document_->GetValueWithPath("Root.General.SheetColors.View.Color") == "51 51 102";
  if (options.OOTBStandard != 0 && hasOldColor) {
    document_->ChangeValueWithPath("Root.General.SheetColors.View.Color:0 39 64");
    document_->ChangeValueWithPath("Root.General.SheetColors.Detail.Color:0 39 64");
  }
}

/// Blanking was a yes or no and becomes a choice of what is blanked.
void VyrDrwParseStandard::ConvertBlanking() {
  for (const BlankedFamily& blanked : kBlankedFamilies) {
    for (const VyrAnnStandardXMLNode_var& style : StylesOf(*document_, blanked.family)) {
      const VyrAnnStandardXMLNode_var node(style->GetNodeByName(blanked.node));
      const VyrUnicodeString oldValue = node ? ValueBelow(*node, "Blanking") : VyrUnicodeString();
      const char* newValue = BlankingFrom(oldValue.View());
      if (newValue == nullptr) {
        newValue = "AreaFill";
        omissions_->Add(
            OmissionOfBlanking(blanked, *style, static_cast<bool>(node), oldValue.View()));
      }
      if (!node) continue;
      node->DeleteNodeWithPath("Blanking");
      node->AddNodeWithValue("Blanking", Value::ValueEnum, newValue, "BlankProp", -1);
    }
  }
}

/// The cells of a table style become the cells of the whole table, beside which cells of other
/// kinds find room.
void VyrDrwParseStandard::RestructureTableStyles() {
  const auto& unit = kParseStandardUnit;
  const VyrAnnStandardXMLNode_var family(document_->GetNodeWithPath("Root.Styles.Table"));
  if (!family) {
    unit.Raise("No Table styles node");
    omissions_->Add({Omission::Absent, Omission::TablesKept, "Root.Styles.Table", {}, {}});
    return;
  }
  for (const VyrAnnStandardXMLNode_var& style : family->GetNodes()) {
    const VyrAnnStandardXMLNode_var cells(style->GetNodeByName("Cells"));
    const auto omit = [&](const char* name) {
      omissions_->Add(
          {Omission::Missing, Omission::CellsKept, StylePath("Table", *style), name, {}});
    };
    if (!unit.CheckPointer(cells.Get(), "Failed to find Cells node!")) {
      omit("Cells");
      continue;
    }
    const VyrAnnStandardXMLNode_var cellStyles(new Node(Node::NodePlain, "CellStyles"));
    style->AddNode(cellStyles.Get(), -1);
    const VyrAnnStandardXMLNode_var wholeTable(cells->Clone());
    if (!unit.CheckPointer(wholeTable.Get(), "New failed?")) continue;
    wholeTable->SetNodeName("WholeTable");
    cellStyles->AddNode(wholeTable.Get(), -1);
    const VyrAnnStandardXMLNode_var created(style->GetNodeWithPath("CellStyles.WholeTable", 1));
    if (!unit.CheckPointer(created.Get(), "Creation of .CellStyles.WholeTable failed!")) {
      omit("CellStyles.WholeTable");  // its own node of the name comes first
      continue;
    }
    style->DeleteNodeWithPath("Cells");
    // A style that lacks the first margin keeps the second one where it is.
    static_cast<void>(MoveToWholeTable(*style, *created, "HorizontalMargin", *omissions_) &&
                      MoveToWholeTable(*style, *created, "VerticalMargin", *omissions_));
  }
}

namespace {

/// What a callout's arrows get, by parent standard.
struct CalloutArrow {
  const char* node;
  Value::Type type;
  const char* forIsoAndJis;
  const char* forOthers;
};

/// A value that the shipped standards change with this release, and what it was before.
struct ShippedCallout {
  const char* style;
  const char* value;
  int parents;
  Value::Type type;
  const char* oldValue;
  const char* newValue;
};

constexpr int kIsoAndJis = Standard::ISO | Standard::JIS;
constexpr int kAnsiAndAsme = Standard::ANSI | Standard::ASME;
constexpr int kAll = kIsoAndJis | kAnsiAndAsme;
constexpr const char* kProjection = "Root.Styles.ProjectionCallout";
constexpr const char* kSection = "Root.Styles.SectionCallout";
constexpr const char* kDetail = "Root.Styles.DetailCallout";

// "ans" is how the enumeration spells it, and stored standards with it.
constexpr ShippedCallout kShippedCallouts[] = {
    {kProjection, "Type", kIsoAndJis, Value::ValueEnum, "Lines, corners and arrows",
     "Only one arrow"},
    {kProjection, "Type", kAnsiAndAsme, Value::ValueEnum, "Lines, corners and arrows",
     "Corners ans arrows"},
    {kProjection, "Profile.Thickness", kIsoAndJis, Value::ValueInt, "2", "1"},
    {kSection, "Profile.Thickness", kIsoAndJis, Value::ValueInt, "2", "1"},
    {kSection, "Corners.Thickness", kAll, Value::ValueInt, "1", "2"},
    {kProjection, "Arrows.Head.Angle", kAll, Value::ValueFloat, "30.0", "22.5"},
    {kSection, "Arrows.Head.Angle", kAll, Value::ValueFloat, "30.0", "22.5"},
    {kProjection, "Arrows.Head.Type", kAll, Value::ValueEnum, "Simple arrow", "Filled arrow"},
    {kSection, "Arrows.Head.Type", kAll, Value::ValueEnum, "Simple arrow", "Filled arrow"},
    {kProjection, "Corners.Length", kIsoAndJis, Value::ValueFloat, "5.0", "0.001"},
    {kProjection, "Arrows.Head.Length", kAll, Value::ValueFloat, "5.0", "7.0"},
    {kSection, "Arrows.Head.Length", kAll, Value::ValueFloat, "5.0", "7.0"},
    {kProjection, "Arrows.Attachment", kIsoAndJis, Value::ValueEnum, "Tail", "Head"},
    {kSection, "Arrows.Attachment", kIsoAndJis, Value::ValueEnum, "Tail", "Head"},
    {kProjection, "Arrows.Tail", kIsoAndJis, Value::ValueFloat, "10.0", "7.0"},
    {kSection, "Arrows.Tail", kIsoAndJis, Value::ValueFloat, "10.0", "7.0"},
    {kDetail, "Arrows.Head.Angle", kAll, Value::ValueFloat, "30.0", "22.5"},
    {kDetail, "Arrows.Head.Type", kAll, Value::ValueEnum, "Closed arrow", "Filled arrow"},
};

constexpr CalloutArrow kCalloutArrows[] = {
    {"Thickness", Value::ValueInt, "1", "2"},
    {"Position", Value::ValueInt, "50", "0"},
};

}  // namespace

void VyrDrwParseStandard::Migrate18To20n208(const UpgradeStep& step, Options& options) {
  const VyrAnnStandardXMLNode_var root(document_->GetNodeWithPath("Root"));
  if (!kParseStandardUnit.CheckPointer(root.Get())) return;
  root->AddNodeWithValue("Version", Value::ValueInt, std::to_string(step.version), {}, -1);
  for (const char* family : {"ProjectionCallout", "SectionCallout"}) {
    for (const VyrAnnStandardXMLNode_var& style : StylesOf(*document_, family)) {
      const VyrAnnStandardXMLNode_var arrows(style->GetNodeByName("Arrows"));
      if (!kParseStandardUnit.CheckPointer(arrows.Get())) {
        omissions_->Add(
            {Omission::Missing, Omission::ArrowsKept, StylePath(family, *style), "Arrows", {}});
        continue;
      }
      for (const CalloutArrow& arrow : kCalloutArrows) {
        arrows->AddNodeWithValue(arrow.node, arrow.type,
                                 IsIsoOrJis() ? arrow.forIsoAndJis : arrow.forOthers, {}, -1);
      }
    }
  }
  if (options.OOTBStandard != 0) ReplaceShippedCallouts();
}

void VyrDrwParseStandard::ReplaceShippedCallouts() {
  for (const ShippedCallout& change : kShippedCallouts) {
    if (ChangeStyleValue(change.style, change.value, change.parents, change.type, change.oldValue,
                         change.newValue) == 0) {
      return;
    }
  }
}
