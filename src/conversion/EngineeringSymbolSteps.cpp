#include "EngineeringSymbolSteps.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "EngineeringSymbolTables.h"
#include "EngineeringSymbolUses.h"
#include "InstanceFields.h"
#include "UpgradeOmissions.h"
#include "VyrAnnStandardXMLParser.h"
#include "VyrDrwParseStandard.h"
#include "VyrDrwParseStandardUnit.h"

// The engineering symbols that the steps of the upgrade add to a standard.

namespace {

using Node = VyrAnnStandardXMLNode;
using Omission = VyrDrwUpgradeOmission;
using Value = VyrAnnStandardXMLValue;

constexpr const char* kAnsiFont = "SYM1.font";
constexpr const char* kIsoStrokeFont = "SYM2.font";
constexpr const char* kOpenTypeFont = "QNISO1.otf";
/// A standard whose texts are written in this font takes its symbols from the font of its kind.
constexpr std::string_view kOpenTypeTextFont = "QN ISO 1 (OpenType)";

constexpr std::string_view kLastFirstSymbol = "<Unequally>";
constexpr std::string_view kReciprocity = "<Reciprocity>";  // no symbol of ANSI and ASME

constexpr const char* kSymbolsOf130[] = {"<SpotFace>",      "<CF>",           "<Independency>",
                                         "<RIGHTTRIANGLE>", "<LEFTTRIANGLE>", "<Reciprocity>",
                                         "<ModifierA>"};
constexpr const char* kSymbolsOf140[] = {"<LP>", "<LS>", "<GG>", "<GX>", "<GN>", "<CC>", "<CA>",
                                         "<CV>", "<SX>", "<SN>", "<SA>", "<SM>", "<SD>", "<SR>"};
constexpr const char* kSymbolsOf180[] = {"<BETWEEN>", "<FROMTO>", "<ORIENTATIONCONSTRAINTONLY>"};
constexpr const char* kProjectionSymbols[] = {"<FIRSTANGLE>", "<THIRDANGLE>",
                                              "<FIRSTANGLECENTERLINES>", "<THIRDANGLECENTERLINES>"};
constexpr const char* kSymbolsOf220[] = {"<MinimaxFeat>",
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

/// A symbol by its tag, wherever it is described; codes and pictures of the tables come first.
const EngineeringSymbol* Described(std::string_view tag) {
  const EngineeringSymbol* symbol = OpenTypeSymbols().Find(tag);
  return symbol != nullptr ? symbol : FurtherSymbols().Find(tag);
}

std::string_view TagOf(const Node& entry) {
  const VyrAnnStandardXMLValue_var name(entry.GetValueByName("Name"));
  return name ? name->GetValue().View() : std::string_view();
}

/// Sets a field by its name. A command would take the only field that an entry has for the one
/// that is meant, and store the name with the text.
void SetField(const Node& entry, const char* field, std::string_view text,
              UpgradeOmissions& omissions) {
  const VyrAnnStandardXMLValue_var value(entry.GetValueByName(field));
  if (kParseStandardUnit.CheckPointer(value.Get(), field)) {
    value->SetValue(text);
    return;
  }
  std::string place = "Root.EngineeringSymbols.";
  place.append(TagOf(entry));
  omissions.Add({Omission::Missing, Omission::ValueKept, std::move(place), field, {}});
}

SymbolPractice PracticeOf(bool isIsoOrJis, bool isAnsiOrAsme) {
  if (isIsoOrJis) return SymbolPractice::IsoAndJis;
  return isAnsiOrAsme ? SymbolPractice::AnsiAndAsme : SymbolPractice::Unknown;
}

void AddUses(Node& entry, EngineeringSymbolUses uses) {
  const auto answer = [](bool isUsed) { return isUsed ? "Yes" : "No"; };
  AddField(entry, Value::ValueString, "ToleranceValue", answer(uses.inToleranceValues));
  AddField(entry, Value::ValueString, "DatumReference", answer(uses.inDatumReferences));
  AddField(entry, Value::ValueString, "Notes", answer(uses.inNotes));
}

}  // namespace

std::span<const char* const> SymbolsOf130() {
  return kSymbolsOf130;
}
std::span<const char* const> SymbolsOf140() {
  return kSymbolsOf140;
}
std::span<const char* const> SymbolsOf220() {
  return kSymbolsOf220;
}

/// Appends an entry and returns it; null when the standard has no list of symbols.
VyrAnnStandardXMLNode_var VyrDrwParseStandard::AppendSymbolEntry(const EngineeringSymbol& symbol,
                                                                 std::string_view font) {
  const VyrAnnStandardXMLNode_var list(document_->GetNodeWithPath("Root.EngineeringSymbols"));
  if (!list) return {};
  VyrAnnStandardXMLNode_var entry(new Node(Node::NodeInstance, "EngineeringSymbol"));
  list->AddNode(entry.Get(), -1);
  AddField(*entry, Value::ValueString, "Name", symbol.tag);
  AddField(*entry, Value::ValueInt, "Position", std::to_string(list->GetNumOfNode()));
  AddField(*entry, Value::ValueString, "Font", font);
  AddField(*entry, Value::ValueInt, "Charcode", symbol.code);
  AddField(*entry, Value::ValueString, "Icon16x16", symbol.smallImage);
  AddField(*entry, Value::ValueString, "Icon22x22", symbol.largeImage);
  return entry;
}

/// The font of the symbols that a step appends; null, reported, for an unknown parent standard.
const char* VyrDrwParseStandard::SymbolFont() const {
  if (IsAnsiOrAsme()) return kAnsiFont;
  if (!IsIsoOrJis()) {
    kParseStandardUnit.Raise("Unknown parent standard!");
    omissions_->Add({Omission::UnknownParent, Omission::SymbolsLeftOut, {}, {}, parentStandard_});
    return nullptr;
  }
  const VyrUnicodeString textFont =
      document_->GetValueWithPath("Root.Styles.Text.Default.Font.Name");
  return textFont.View() == kOpenTypeTextFont ? kOpenTypeFont : kIsoStrokeFont;
}

void VyrDrwParseStandard::AppendFirstEngineeringSymbols() {
  const EngineeringSymbolTable& table = IsIsoOrJis() ? IsoStrokeSymbols() : AnsiSymbols();
  for (const EngineeringSymbol& symbol : OpenTypeSymbols().GetSymbols()) {
    // The degree and the micro sign share a row of the stroke fonts; a standard lists them apart.
    const EngineeringSymbol* own = table.Find(symbol.tag);
    AppendSymbolEntry(own != nullptr ? *own : symbol, own != nullptr ? own->font : kIsoStrokeFont);
    if (symbol.tag == kLastFirstSymbol) break;
  }
}

void VyrDrwParseStandard::AppendEngineeringSymbols(std::span<const char* const> tags,
                                                   bool withUses) {
  const char* font = SymbolFont();
  if (font == nullptr) return;
  const SymbolPractice practice = PracticeOf(IsIsoOrJis(), IsAnsiOrAsme());
  for (const char* tag : tags) {
    if (tag == kReciprocity && IsAnsiOrAsme()) continue;
    const VyrAnnStandardXMLNode_var entry = AppendSymbolEntry(*Described(tag), font);
    if (withUses && entry) AddUses(*entry, UsesOf(tag, practice, true));
  }
}

void VyrDrwParseStandard::ReplaceSubstitutionSymbol() {
  const char* font = SymbolFont();
  if (font == nullptr) return;
  const VyrAnnStandardXMLNode_var entry(
      document_->GetNodeWithPath("Root.EngineeringSymbols.EngineeringSymbol"));
  if (!entry) return;
  const EngineeringSymbol& symbol = SubstitutionSymbols()[IsIsoOrJis() ? 0 : 1];
  SetField(*entry, "Charcode", symbol.code, *omissions_);
  SetField(*entry, "Icon16x16", symbol.smallImage, *omissions_);
  SetField(*entry, "Icon22x22", symbol.largeImage, *omissions_);
  if (font == std::string_view(kOpenTypeFont)) SetField(*entry, "Font", font, *omissions_);
}

void VyrDrwParseStandard::RebuildEngineeringSymbols() {
  document_->DeleteNodeWithPath("Root.EngineeringSymbols");
  document_->AddNodeWithPath("Root:EngineeringSymbols:0", 0);
  for (const EngineeringSymbol& symbol : OpenTypeSymbols().GetSymbols()) {
    AppendSymbolEntry(symbol, symbol.font);
  }
}

void VyrDrwParseStandard::FlagEngineeringSymbols(bool isShipped) {
  const VyrAnnStandardXMLNode_var list(document_->GetNodeWithPath("Root.EngineeringSymbols"));
  if (!list) return;
  const auto holds = [&](std::string_view tag) {
    return std::any_of(list->GetNodes().begin(), list->GetNodes().end(),
                       [=](const auto& entry) { return TagOf(*entry) == tag; });
  };
  const SymbolPractice practice = PracticeOf(IsIsoOrJis(), IsAnsiOrAsme());
  // Texts of a site's drawings may hold the former tag, so only a shipped entry is renamed.
  bool isRenaming = isShipped && IsIsoOrJis() && !holds(kOrientationTag);
  for (const VyrAnnStandardXMLNode_var& entry : list->GetNodes()) {
    if (isRenaming && TagOf(*entry) == kFormerOrientationTag) {
      SetField(*entry, "Name", kOrientationTag, *omissions_);
      isRenaming = false;
    }
    AddUses(*entry, UsesOf(TagOf(*entry), practice, isShipped));
  }
  if (!isShipped || !IsIsoOrJis()) return;
  for (const char* tag : kSymbolsOf180) {
    if (!holds(tag)) AppendEngineeringSymbols(std::span(&tag, 1), true);
  }
}

void VyrDrwParseStandard::AppendProjectionSymbols() {
  for (const char* tag : kProjectionSymbols) {
    const VyrAnnStandardXMLNode_var entry = AppendSymbolEntry(*Described(tag), kOpenTypeFont);
    if (!entry) return;
    // They belong to title blocks, not to any of the three places.
    for (const char* use : {"ToleranceValue", "DatumReference", "Notes"}) {
      AddField(*entry, Value::ValueString, use, "");
    }
  }
}
