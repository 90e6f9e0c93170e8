#include <string>
#include <utility>

#include "StyleWalk.h"
#include "UpgradeOmissions.h"
#include "VyrAnnStandardXMLParser.h"
#include "VyrDrwParseStandard.h"
#include "VyrDrwParseStandardBomProperty.h"
#include "VyrDrwParseStandardUnit.h"

// Edits of whole style families.

namespace {

using Node = VyrAnnStandardXMLNode;
using Omission = VyrDrwUpgradeOmission;

/// What keeps a value from being changed, as failed checks and omissions tell it.
Omission FaultOf(Omission::Fault fault, std::string place, const char* name,
                 VyrUnicodeView value = {}) {
  return {fault, Omission::ShippedCalloutsKept, std::move(place), name, value};
}

/// Sets the only value of a style's node at `path`, provided that it is of the type and holds the
/// old value.
bool ChangeOneStyle(const char* family, const Node& style, const char* path,
                    VyrAnnStandardXMLValue::Type type, const char* oldValue, const char* newValue,
                    UpgradeOmissions& omissions) {
  const auto refuse = [&](Omission::Fault fault, VyrUnicodeView value = {}) {
    omissions.Add(FaultOf(fault, PathOfStyle(family, style), path, value));
    return false;
  };
  const VyrAnnStandardXMLNode_var node(style.GetNodeWithPath(path, 1));
  if (!kParseStandardUnit.CheckPointer(node.Get(), path)) return refuse(Omission::Missing);
  const bool holdsOneValue = node->GetNumOfNode() == 0 && node->GetNumOfValue() == 1;
  if (!kParseStandardUnit.Check(holdsOneValue, path)) return refuse(Omission::OtherShape);
  VyrAnnStandardXMLValue& value = *node->GetValues().front();
  if (!kParseStandardUnit.Check(value.GetType() == type, path)) return refuse(Omission::OtherType);
  if (value.GetValue().View() != oldValue) {
    kParseStandardUnit.Raise(path);
    return refuse(Omission::OtherValue, value.GetValue());
  }
  value.SetValue(newValue);
  return true;
}

}  // namespace

int VyrDrwParseStandard::ChangeStyleValue(const char* stylePath, const char* valuePath,
                                          int standardsMask, VyrAnnStandardXMLValue::Type type,
                                          const char* oldValue, const char* newValue) {
  const auto& unit = kParseStandardUnit;
  if (!unit.CheckPointer(document_.get()) || !unit.CheckPointer(stylePath) ||
      !unit.CheckPointer(valuePath) || !unit.Check(standardsMask != 0, "no parent standard") ||
      !unit.CheckPointer(oldValue) || !unit.CheckPointer(newValue)) {
    return 0;
  }
  const int parent = GetParentStandardId();
  if (!unit.Check(parent != 0, "no parent standard")) {
    omissions_->Add(  // after the report of the identifier
        {Omission::UnknownParent, Omission::ShippedCalloutsKept, {}, {}, parentStandard_}, 2);
    return 0;
  }
  if ((parent & standardsMask) == 0) return 1;
  const VyrAnnStandardXMLNode_var family(document_->GetNodeWithPath(stylePath));
  if (!unit.CheckPointer(family.Get(), stylePath)) {
    omissions_->Add(FaultOf(Omission::Absent, stylePath, ""));
    return 0;
  }
  if (!unit.Check(family->GetNumOfNode() > 0, stylePath)) {
    omissions_->Add(FaultOf(Omission::Empty, stylePath, ""));
    return 0;
  }
  for (const VyrAnnStandardXMLNode_var& style : family->GetNodes()) {
    if (!ChangeOneStyle(stylePath, *style, valuePath, type, oldValue, newValue, *omissions_)) {
      return 0;
    }
  }
  return 1;
}

void VyrDrwParseStandard::AddBomStyle(const char* name,
                                      const VyrDrwParseStandardBomProperty* properties, int count) {
  if (!kParseStandardUnit.CheckPointer(document_.get()) || !kParseStandardUnit.CheckPointer(name)) {
    return;
  }
  const std::string style = std::string("Root.Styles.") + name;
  const std::string defaults = style + ".Default";
  document_->AddNodeWithPath(std::string("Root.Styles:") + name + ":0", 0);
  document_->AddNodeWithPath(style + ":Default:0", 0);
  for (const char* value :
       {":Type:enum.BomType:Summarized:0", ":NoValueSymbol:string:-:0",
        ":NoMaterialLabel:string:-:0", ":ItemNumberLabelType:enum.BomLabelType:Number:0",
        ":TableStyle:string:Default:0"}) {
    document_->AddValueWithPath(defaults + value, 1);
  }
  document_->AddNodeWithPath(defaults + ":Properties:0", 0);
  if (!kParseStandardUnit.CheckPointer(properties) ||
      !kParseStandardUnit.Check(count > 0, "a bill of material without columns")) {
    return;
  }
  const std::string column = defaults + ".Properties.BomProperties";
  for (int i = 0; i < count; ++i) {
    document_->AddNodeWithPath(defaults + ".Properties:BomProperties:0", 1);
    document_->AddValueWithPath(column + ":Name:string:" + properties[i].name + ":0", -1);
    document_->AddValueWithPath(column + ":Title:string:<Automatic Naming>:0", -1);
    document_->AddValueWithPath(column + ":Width:float:" + properties[i].width + ":0", -1);
    document_->AddValueWithPath(column + ":Index:int:" + properties[i].index + ":0", -1);
  }
}
