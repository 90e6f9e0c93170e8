#include <string>
#include <utility>

#include "ConversionTables.h"
#include "EngineeringSymbolSteps.h"
#include "UpgradeOmissions.h"
#include "UpgradeStep.h"
#include "VyrAnnStandardXMLParser.h"
#include "VyrDrwParseStandard.h"
#include "VyrDrwParseStandardBomProperty.h"
#include "VyrDrwParseStandardUnit.h"

// The steps from version 110 to 160.

namespace {

using Document = VyrAnnStandardXMLParser;
using Omission = VyrDrwUpgradeOmission;
using Node = VyrAnnStandardXMLNode;
using Value = VyrAnnStandardXMLValue;

/// A setting of view names that depends on the parent standard.
struct ViewNameSetting {
  const char* parent;
  const char* name;
  Value::Type type;
  const char* enumeration;
  const char* forAnsiAndAsme;
  const char* forIsoAndJis;
};

constexpr ViewNameSetting kAlignment = {"Root.View.ViewName", "Alignment",    Value::ValueEnum,
                                        "ViewTextAlignment",  "BottomCenter", "TopCenter"};
constexpr ViewNameSetting kScaleString = {"Root.View.ViewName.Scale", "ScaleString",
                                          Value::ValueString,         "",
                                          "#SCALE#: #SCALE_ATTR#",    " (#SCALE_ATTR#)"};
constexpr ViewNameSetting kNewLine = {
    "Root.View.ViewName.Scale", "DisplayOnANewLine", Value::ValueEnum, "YesNo", "Yes", "No"};
constexpr ViewNameSetting kFontSizeRatio = {
    "Root.View.ViewName.Scale", "FontSizeRatio", Value::ValueInt, "", "50", "100"};
constexpr ViewNameSetting kScaleSeparator = {
    "Root.View.ViewName.Scale", "ScaleSeparator", Value::ValueEnum,
    "ScaleSeparatorSymbol",     "Slash",          "Colon"};

constexpr VyrDrwParseStandardBomProperty kFirstColumns[] = {
    {"ItemNumber", "30", "1"},
    {"PLM_ExternalID", "110", "2"},
    {"V_description", "60", "3"},
    {"Quantity", "30", "4"},
};
constexpr VyrDrwParseStandardBomProperty kColumnsWithWeight[] = {
    {"ItemNumber", "30", "1"},    {"Quantity", "30", "2"}, {"PLM_ExternalID", "110", "3"},
    {"V_description", "60", "4"}, {"Material", "60", "5"}, {"V_Weight", "30", "6"},
};
constexpr VyrDrwParseStandardBomProperty kColumnsOfTo160[] = {
    {"ItemNumber", "30", "1"},    {"Quantity", "30", "2"}, {"PLM_ExternalID", "110", "3"},
    {"V_description", "60", "4"}, {"Material", "60", "5"}, {"Weight", "30", "6"},
};

}  // namespace

void VyrDrwParseStandard::Migrate20To21n209(const UpgradeStep& step, Options& options) {
  RunTable(*document_, tables::to_120);
  const bool isShipped = options.OOTBStandard != 0;
  if (isShipped) AddViewTextStyle();
  AddViewNameSettings(isShipped ? "ViewText" : "Default");
  AddBomStyle("BillOfMaterial", kFirstColumns, static_cast<int>(std::size(kFirstColumns)));
  StampVersion(step);
}

/// The text style of view names: the default one, centred.
void VyrDrwParseStandard::AddViewTextStyle() {
  constexpr const char* texts = "Root.Styles.Text";
  constexpr const char* viewText = "Root.Styles.Text.ViewText";
  const auto& unit = kParseStandardUnit;
  const auto omit = [this](Omission::Fault fault, Omission::Work work, const char* place,
                           const char* name) {
    omissions_->Add({fault, work, place, name, {}});
  };
  const VyrAnnStandardXMLNode_var family(document_->GetNodeWithPath(texts));
  if (!unit.CheckPointer(family.Get())) {
    return omit(Omission::Absent, Omission::ViewTextLeftOut, texts, "");
  }
  if (const VyrAnnStandardXMLNode_var present(family->GetNodeByName("ViewText")); present) {
    unit.Raise("there is already a ViewText style");
    return omit(Omission::Taken, Omission::ViewTextLeftOut, texts, "ViewText");
  }
  const VyrAnnStandardXMLNode_var byDefault(family->GetNodeByName("Default"));
  if (!unit.CheckPointer(byDefault.Get())) {
    return omit(Omission::Missing, Omission::ViewTextLeftOut, texts, "Default");
  }
  const VyrAnnStandardXMLNode_var style(byDefault->Clone());
  style->SetNodeName("ViewText");
  family->AddNode(style.Get(), -1);
  constexpr const char* path = "Text.Justification";
  const auto keep = [&](Omission::Fault fault) {
    omit(fault, Omission::ViewTextNotCentred, viewText, path);
  };
  const VyrAnnStandardXMLNode_var node(style->GetNodeWithPath(path, 1));
  if (!unit.CheckPointer(node.Get())) return keep(Omission::Missing);
  if (!unit.Check(node->GetNumOfValue() == 1)) return keep(Omission::OtherShape);
  Value& justification = *node->GetValues().front();
  const bool isJustification = justification.GetType() == Value::ValueEnum &&
                               justification.GetValueName() == "TextJustification";
  if (!unit.Check(isJustification, path)) return keep(Omission::OtherType);
  justification.SetValue("Center");
}

/// Built node by node: the scale text holds the separator of path commands.
void VyrDrwParseStandard::AddViewNameSettings(const char* textStyle) {
  const auto addByParent = [this](const ViewNameSetting& setting) {
    const int parent = GetParentStandardId();
    const bool isAnsi = parent == ANSI || parent == ASME;
    if (!isAnsi && parent != ISO && parent != JIS) {
      kParseStandardUnit.Raise("Unknown parent standard!");
      omissions_->Add(  // after the report of the identifier
          {Omission::UnknownParent, Omission::NameLeftOut, {}, setting.name, parentStandard_}, 2);
      return;
    }
    const VyrAnnStandardXMLNode_var node(document_->GetNodeWithPath(setting.parent));
    if (!kParseStandardUnit.CheckPointer(node.Get())) {
      omissions_->Add({Omission::Absent, Omission::NameLeftOut, setting.parent, setting.name, {}});
      return;
    }
    node->AddNodeWithValue(setting.name, setting.type,
                           isAnsi ? setting.forAnsiAndAsme : setting.forIsoAndJis,
                           setting.enumeration, -1);
  };
  document_->AddNodeWithPath("Root.View:ViewName:0", 0);
  document_->AddValueWithPath("Root.View.ViewName:Automatic:enum.YesNo:Yes:0", 1);
  document_->AddValueWithPath(
      std::string("Root.View.ViewName:TextStyleName:string:") + textStyle + ":0", 1);
  addByParent(kAlignment);
  document_->AddNodeWithPath("Root.View.ViewName:Name:0", 0);
  document_->AddValueWithPath("Root.View.ViewName.Name:AddViewName:enum.YesNo:Yes:0", 1);
  document_->AddNodeWithPath("Root.View.ViewName:Scale:0", 0);
  addByParent(kScaleString);
  addByParent(kNewLine);
  addByParent(kFontSizeRatio);
  document_->AddValueWithPath(
      "Root.View.ViewName.Scale:Display:enum.DisplayScaleMode:WhenDifferentFromSheetScale:0", 1);
  addByParent(kScaleSeparator);
}

void VyrDrwParseStandard::Migrate209To21n210(const UpgradeStep& step, Options&) {
  AppendEngineeringSymbols(SymbolsOf130(), false);
  RunTable(*document_, tables::to_130);
  const bool isDiameter =
      document_->GetValueWithPath("Root.Styles.DatumTarget.Default.Diameter") == "Yes";
  document_->AddValueWithPath(
      std::string("Root.Styles.DatumTarget.Default:SizeSpecifier:enum.DatumTargetSizeSpecifier:") +
          (isDiameter ? "Diameter" : "None") + ":0",
      1);
  StampVersion(step);
}

void VyrDrwParseStandard::Migrate210To21n211(const UpgradeStep& step, Options&) {
  constexpr const char* constantLength = "Root.Dimension.DIMLConstantLength";
  AppendEngineeringSymbols(SymbolsOf140(), false);
  if (document_->GetValueWithPath(constantLength) == "0") {
    ReportUnknownParent();
    const std::string_view parent = parentStandard_.View();
    const char* length = parent == "ISO"                        ? "15"
                         : parent == "ANSI" || parent == "ASME" ? "7.62"
                                                                : nullptr;
    if (length != nullptr) {
      document_->ChangeValueWithPath(std::string(constantLength) + ":" + length);
    }
  }
  RunTable(*document_, tables::to_140);
  ReportUnknownParent();
  RunTable(*document_, tables::to_140_welding);
  StampVersion(step);
}

void VyrDrwParseStandard::Migrate211To23n213(const UpgradeStep& step, Options& options) {
  if (options.OOTBStandard == 0) {
    document_->DeleteNodeWithPath("Root.Styles.BillOfMaterial");
    AddBomStyle("BillOfMaterial", kColumnsWithWeight,
                static_cast<int>(std::size(kColumnsWithWeight)));
  }
  RunTable(*document_, tables::to_150);
  StampVersion(step);
}

void VyrDrwParseStandard::Migrate213To23n214(const UpgradeStep& step, Options& options) {
  RunTable(*document_, tables::to_160);
  if (options.OOTBStandard == 0) {
    ReplaceSubstitutionSymbol();
    document_->DeleteNodeWithPath("Root.Styles.BillOfMaterial");
    AddBomStyle("BillOfMaterial", kColumnsOfTo160, static_cast<int>(std::size(kColumnsOfTo160)));
    RunTable(*document_, tables::to_160_bill_of_material);
  }
  StampVersion(step);
}
