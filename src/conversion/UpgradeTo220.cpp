#include <string>
#include <utility>

#include "ConversionTables.h"
#include "EngineeringSymbolSteps.h"
#include "InstanceFields.h"
#include "UpgradeOmissions.h"
#include "UpgradeStep.h"
#include "VyrAnnStandardXMLParser.h"
#include "VyrDrwParseStandard.h"
#include "VyrDrwParseStandardUnit.h"

// The steps from version 160 to 220.

namespace {

using Node = VyrAnnStandardXMLNode;
using Omission = VyrDrwUpgradeOmission;
using Value = VyrAnnStandardXMLValue;

constexpr const char* kViewColor = "Root.General.SheetColors.View.Color";

}  // namespace

void VyrDrwParseStandard::Migrate214To24n215(const UpgradeStep& step, Options& options) {
  RunTable(*document_, tables::to_170);
  if (options.OOTBStandard != 0) {
    RunTable(*document_, tables::to_170_shipped_colors);
  } else {
    const VyrUnicodeString viewColor = document_->GetValueWithPath(kViewColor);
    document_->AddValueWithPath(std::string("Root.General.SheetColors.3DDesign:Color:color:") +
                                    (viewColor.IsEmpty() ? "255 255 255" : viewColor.CString()) +
                                    ":0",
                                1);
  }
  RunTable(*document_, tables::to_170_patterns);
  ReportUnknownParent();
  if (IsIsoOrJis()) RebuildEngineeringSymbols();
  NumberHatchings();
  StampVersion(step);
  RenewVersionNode(step);
}

/// Gives every hatching its place in lists of patterns.
void VyrDrwParseStandard::NumberHatchings() {
  const VyrAnnStandardXMLNode_var family(document_->GetNodeWithPath("Root.Patterns.hatching"));
  if (!family) return;
  int place = 0;
  for (const VyrAnnStandardXMLNode_var& hatching : family->GetNodes()) {
    if (!(hatching->GetNodeName() == "hatchings")) continue;
    AddField(*hatching, Value::ValueInt, "Position", std::to_string(++place));
  }
}

/// The version node is made anew, and so stands behind all others from this version on.
void VyrDrwParseStandard::RenewVersionNode(const UpgradeStep& step) {
  document_->DeleteNodeWithPath("Root.Version");
  document_->AddValueWithPath("Root:Version:int:" + std::to_string(step.version) + ":0", 1);
}

void VyrDrwParseStandard::Migrate215To24n216(const UpgradeStep& step, Options& options) {
  RunTable(*document_, tables::to_180);
  ReportUnknownParent();
  FlagEngineeringSymbols(options.OOTBStandard != 0);
  StampVersion(step);
}

void VyrDrwParseStandard::Migrate216To25n417(const UpgradeStep& step, Options& options) {
  RunTable(*document_, tables::to_190);
  document_->AddValueWithPathForAllOccurence("Root.Frames.FrameDef:Pos:int:0:0", 1);
  RunTable(*document_, tables::to_190_frame_names);
  if (options.OOTBStandard != 0) {
    ReportUnknownParent();
    if (IsIsoOrJis()) AppendProjectionSymbols();
  }
  StampVersion(step);
}

void VyrDrwParseStandard::Migrate417To27n419(const UpgradeStep& step, Options&) {
  RunTable(*document_, tables::to_200);
  StampVersion(step);
}

void VyrDrwParseStandard::Migrate419To28n420(const UpgradeStep& step, Options&) {
  RunTable(*document_, tables::to_210);
  // The blank at the end has always been part of this default, and stored standards have it.
  const VyrUnicodeString viewColor = document_->GetValueWithPath(kViewColor);
  const std::string color = viewColor.IsEmpty() ? "255 255 255 " : viewColor.CString();
  for (const char* frame : {"Root.Styles.Text.Default.Text", "Root.Styles.Balloon.Default.Text"}) {
    document_->AddValueWithPath(std::string(frame) + ":Fill:enum.YesNo:No:0", 1);
    document_->AddValueWithPath(std::string(frame) + ":FillColor:color:" + color + ":0", 1);
  }
  RunTable(*document_, tables::to_210_margins);
  RunTable(*document_, tables::to_210_welding);
  StampVersion(step);
}

void VyrDrwParseStandard::Migrate420To29n421(const UpgradeStep& step, Options& options) {
  RunTable(*document_, tables::to_220);
  if (options.OOTBStandard != 0) AppendEngineeringSymbols(SymbolsOf220(), true);
  StampVersion(step);
}

/// Moves the version that the document carries on from the step's source to the step's own.
void VyrDrwParseStandard::StampVersion(const UpgradeStep& step) {
  const auto& unit = kParseStandardUnit;
  const auto keep = [this](Omission::Fault fault, VyrUnicodeView found = {}) {
    omissions_->Add({fault, Omission::VersionKept, "Root", "Version", found});
  };
  const VyrAnnStandardXMLNode_var node(document_->GetNodeWithPath("Root.Version"));
  if (!unit.CheckPointer(node.Get())) return keep(Omission::Missing);
  if (!unit.Check(node->GetNumOfNode() == 0 && node->GetNumOfValue() == 1,
                  "Version must hold one value")) {
    return keep(Omission::OtherShape);
  }
  Value& value = *node->GetValues().front();
  if (!unit.Check(value.GetType() == Value::ValueInt, "Version must be an int")) {
    return keep(Omission::OtherType);
  }
  if (!unit.Check(value.GetValue() == std::to_string(step.VersionBefore()),
                  "Version is not that of the step before")) {
    return keep(Omission::OtherValue, value.GetValue());
  }
  value.SetValue(std::to_string(step.version));
}
