#include <string>
#include <utility>

#include "ConversionTables.h"
#include "UpgradeStep.h"
#include "VyrAnnStandardScript.h"
#include "VyrAnnStandardXMLParser.h"
#include "VyrDrwParseStandard.h"
#include "VyrDrwParseStandardUnit.h"

// The steps from version 1 to 60.

namespace {

using Document = VyrAnnStandardXMLParser;

constexpr const char* kRoughness = "Root.Styles.RoughnessSymbol.Default.";

/// A value of the roughness style and where the rebuilt style holds it.
struct MovedValue {
  const char* oldPath;
  const char* newPath;
};

constexpr MovedValue kMovedRoughnessValues[] = {
    {"Type", "Values.Type"},
    {"Mode", "Values.Mode"},
    {"AnchorPoint", "Text.AnchorPoint"},
    {"Graphic.Color", "Graphic.Color"},
    {"Font.Name", "Font.Name"},
    {"Font.Bold", "Font.Bold"},
    {"Font.Italic", "Font.Italic"},
    {"Font.Size", "Font.Size"},
};

/// What an old contact text says of the line for requirements and of the sign for all surfaces.
struct ContactMeaning {
  std::string_view contact;
  const char* specificationLine;
  const char* allAround;
};

constexpr ContactMeaning kContacts[] = {
    {"With specifications", "Yes", "No"},
    {"With specifications (All surfaces)", "Yes", "Yes"},
    {"Without specifications", "No", "No"},
};
constexpr ContactMeaning kOtherContact = {"", "No", "Yes"};

ContactMeaning MeaningOf(std::string_view contact) {
  for (const ContactMeaning& meaning : kContacts) {
    if (meaning.contact == contact) return meaning;
  }
  return kOtherContact;
}

/// An empty text was no choice of the owner's, and most of these values cannot be empty.
void SetRoughnessValue(Document& document, const char* path, std::string_view text) {
  if (text.empty()) return;
  std::string command = std::string(kRoughness) + path + ":";
  document.ChangeValueWithPath(command.append(text));
}

/// Adds a float that holds what another parameter holds; zero when a site has deleted that.
void CopyFloat(Document& document, const char* from, const std::string& to) {
  const VyrUnicodeString value = document.GetValueWithPath(from);
  document.AddValueWithPath(to + ":float:" + (value.IsEmpty() ? "0.0" : value.CString()) + ":0", 1);
}

}  // namespace

void VyrDrwParseStandard::UpgradeTo2(const UpgradeStep&, Options&) {
  RunTable(*document_, tables::to_002);
  AppendFrames(*document_);
  RunTable(*document_, tables::to_002_cumulated);
}

void VyrDrwParseStandard::UpgradeTo30(const UpgradeStep&, Options&) {
  AppendStyleEnums(*document_);
  AppendStyles(*document_);
  AppendPatterns(*document_);
  AppendLinetypes1(*document_);
  AppendLinetypes2(*document_);
  RunTable(*document_, tables::to_030);
}

void VyrDrwParseStandard::UpgradeTo40(const UpgradeStep&, Options&) {
  RunTable(*document_, tables::to_040);
  RebuildRoughnessStyle();
  RunTable(*document_, tables::to_040_layout);
  CopyFloat(*document_, "Root.Dimension.TXTLeaderGap", "Root.Annotation.Roughness:LeaderGap");
  CopyFloat(*document_, "Root.Dimension.TXTLeaderVertSpace",
            "Root.Annotation.Roughness:LeaderVertSpace");
  RunTable(*document_, tables::to_040_dimension);
  ResetDatumFeatureLeader();
}

/// Saves what the owner set in the old style and writes it over the defaults of the new one.
void VyrDrwParseStandard::RebuildRoughnessStyle() {
  std::string saved[std::size(kMovedRoughnessValues)];
  for (std::size_t i = 0; i < std::size(kMovedRoughnessValues); ++i) {
    saved[i] =
        document_->GetValueWithPath(std::string(kRoughness) + kMovedRoughnessValues[i].oldPath)
            .View();
  }
  const ContactMeaning contact =
      MeaningOf(document_->GetValueWithPath(std::string(kRoughness) + "Contact").View());
  RunTable(*document_, tables::to_040_roughness_style);
  for (std::size_t i = 0; i < std::size(kMovedRoughnessValues); ++i) {
    SetRoughnessValue(*document_, kMovedRoughnessValues[i].newPath, saved[i]);
  }
  SetRoughnessValue(*document_, "Values.SpecificationLine", contact.specificationLine);
  SetRoughnessValue(*document_, "Values.AllAround", contact.allAround);
}

/// A leader end that is still the old default follows the standard from now on.
void VyrDrwParseStandard::ResetDatumFeatureLeader() {
  constexpr const char* path = "Root.Styles.DatumFeature.Default.Leader.Symbol";
  const std::string_view parent = parentStandard_.View();
  const bool isKnown = parent == "ANSI" || parent == "ASME" || parent == "ISO" || parent == "JIS";
  const std::string_view oldDefault = parent == "ANSI" ? "None" : "WhiteFilledSquare";
  if (isKnown && document_->GetValueWithPath(path).View() == oldDefault) {
    document_->ChangeValueWithPath(std::string(path) + ":Automatic");
  }
}

void VyrDrwParseStandard::UpgradeTo50(const UpgradeStep&, Options&) {
  const std::string_view parent = parentStandard_.View();
  if (parent != "ANSI" && parent != "ASME" && parent != "ISO" && parent != "JIS") {
    VyrSysLogAbend(
        ">>> FATAL ERROR in VyrDrwParseStandard::UpgradeVersion - Bad parent standard type.");
  }
  RunTable(*document_, tables::to_050);
}

void VyrDrwParseStandard::UpgradeTo60(const UpgradeStep&, Options&) {
  RunTable(*document_, tables::to_060_enums);
  static_cast<void>(AddSheetFormats(parentStandard_, *document_));
  RunTable(*document_, tables::to_060);
}

HRESULT VyrDrwParseStandard::AddSheetFormats(const VyrUnicodeString& parentStandard,
                                             Document& document) const {
  const std::string_view parent = parentStandard.View();
  if (parent != "ISO" && parent != "JIS" && parent != "ANSI" && parent != "ASME") return E_FAIL;
  // The formats of the parent asked for, which need not be that of this standard.
  const VyrAnnStandardScript script(tables::sheet_formats);
  for (const VyrAnnStandardScript::Command& command : script.GetCommands()) {
    if (command.AppliesTo(parent)) static_cast<void>(command.Run(document));
  }
  return S_OK;
}
