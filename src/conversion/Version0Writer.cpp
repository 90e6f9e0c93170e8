#include <string_view>

#include "Version0Groups.h"
#include "Version0Lines.h"
#include "Version0Tables.h"
#include "VyrDftStdPersistence.h"
#include "VyrDrwParseParameter.h"
#include "VyrDrwParseStandard.h"

// Composes the XML text of a standard that has no version yet from the old parameter set.

namespace {

using enum VyrDrwParseKeyword::Type;

void AddBlankLine(VyrUnicodeString& text) {
  VyrDrwParseStandard::AddOutputLine(text, "", 1);
}

void AddType(VyrUnicodeString& text, std::string_view name,
             std::span<const Version0Member> members) {
  AddLine(text, 1, "<std:typedef name=\"" + std::string(name) + "\">");
  for (const Version0Member& member : members) {
    AddValueLine(text, 2, member.type, member.name, member.value);
  }
  AddLine(text, 1, "</std:typedef>");
}

void AddInstance(VyrUnicodeString& text, int level, const char* type,
                 std::span<const Version0Member> members,
                 std::span<const Version0Member> differing = {}) {
  BeginInstance(text, level, type);
  for (const Version0Member& member : members) {
    const char* value = member.value;
    for (const Version0Member& other : differing) {
      if (std::string_view(other.name) == member.name) value = other.value;
    }
    AddValueLine(text, level + 1, member.type, member.name, value);
  }
  EndInstance(text, level);
}

/// A node of `count` equal values without names.
void AddRoom(VyrUnicodeString& text, const char* name, VyrDrwParseKeyword::Type type,
             const char* value, int count, std::span<const char* const> before = {}) {
  BeginNode(text, 2, name);
  for (const char* first : before) AddValueLine(text, 3, type, {}, first);
  for (int i = 0; i < count; ++i) AddValueLine(text, 3, type, {}, value);
  EndNode(text, 2);
}

void AddGeneral(VyrUnicodeString& text, const char* parentStandard) {
  BeginNode(text, 1, "General");
  AddRoom(text, "AllowedToleranceFormats", String, "", kAllowedFormats);
  AddWrappedValue(text, 2, String, "DefaultToleranceFormat", "");
  AddRoom(text, "AllowedNumericalFormats", String, "", kAllowedFormats);
  AddWrappedValue(text, 2, String, "DefaultNumericalFormatLength", "NUM.DIMM");
  AddWrappedValue(text, 2, String, "DefaultNumericalFormatAngle", "NUM.ADMS");
  AddRoom(text, "AllowedTextFonts", String, "", kAllowedTextFonts);
  AddWrappedValue(text, 2, String, "DefaultTextFont", "");
  AddRoom(text, "AllowedTextFontSizes", Float, "0.0", kFurtherTextFontSizes,
          AllowedTextFontSizes(parentStandard));
  AddWrappedValue(text, 2, Float, "DefaultTextFontSize", "3.5");
  EndNode(text, 1);
}

/// The end symbols, all drawn in the size of the standard's simple arrow.
void AddDressUp(VyrUnicodeString& text, std::string_view side, std::string_view angle) {
  BeginNode(text, 1, "DressUp");
  BeginNode(text, 2, "Symbols");
  for (const DressUpSymbol& symbol : DressUpSymbols()) {
    BeginNode(text, 3, symbol.name);
    for (const char* dimension : symbol.dimensions) {
      if (dimension == nullptr) continue;
      const bool isAngle = std::string_view(dimension) == "Angle";
      AddWrappedValue(text, 4, Float, dimension, isAngle ? angle : side);
    }
    EndNode(text, 3);
  }
  EndNode(text, 2);
  EndNode(text, 1);
}

}  // namespace

VyrUnicodeString VyrDrwParseStandard::ComposeVersion0Text() const {
  VyrUnicodeString text;
  BeginVersion0(text);
  EncodeTypedefs(text);
  EncodeAdditionalParameters(text);
  EncodeMigratedParameters(text);
  EncodeDescriptions(text);
  EncodeThicknessTable(text);
  EndVersion0(text);
  return text;
}

void VyrDrwParseStandard::EncodeTypedefs(VyrUnicodeString& text) const {
  AddType(text, "ToleranceDisplay", ToleranceDisplayType());
  AddType(text, "NumericalDisplay", NumericalDisplayType());
  AddType(text, "VyrThickness", ThicknessType());
}

void VyrDrwParseStandard::EncodeAdditionalParameters(VyrUnicodeString& text) const {
  const auto valueOf = [this](const char* name, const char* byDefault) {
    const VyrDrwParseParameter* parameter = GetParameter(name);
    return parameter == nullptr ? VyrUnicodeString(byDefault) : parameter->GetValue();
  };
  AddBlankLine(text);
  AddGeneral(text, parentStandard_.CString());
  AddBlankLine(text);
  AddDressUp(text, valueOf("SYMBArrowSide", "2.0").View(),
             valueOf("SYMBArrowAngle", "30.0").View());
}

void VyrDrwParseStandard::EncodeMigratedParameters(VyrUnicodeString& text) const {
  if (parameters_.empty()) return;
  AddBlankLine(text);
  BeginNode(text, 1, "Dimension");
  for (const auto& parameter : parameters_) {
    if (parameter != nullptr && parameter->GetSection().IsEmpty()) parameter->Write(text);
  }
  EndNode(text, 1);
}

void VyrDrwParseStandard::EncodeDescriptions(VyrUnicodeString& text) const {
  int kind = 0;
  for (const Version0Section& section : Version0Sections()) {
    AddBlankLine(text);
    BeginNode(text, 2, section.node);
    EncodePredefinedDescriptions(text, kind++);
    AddGroups(text, section, parameters_);
    EndNode(text, 2);
  }
}

void VyrDrwParseStandard::EncodePredefinedDescriptions(VyrUnicodeString& text, int kind) const {
  if (kind == 0) {
    AddInstance(text, 4, Version0Sections()[0].instance, PredefinedTolerance());
    return;
  }
  for (const PredefinedDisplay& display : PredefinedDisplays()) {
    AddInstance(text, 4, Version0Sections()[1].instance, PredefinedDisplayMembers(),
                display.differing);
  }
}

void VyrDrwParseStandard::EncodeThicknessTable(VyrUnicodeString& text) const {
  AddBlankLine(text);
  BeginNode(text, 1, VyrDftStdPersistence::VyrDftStdNodeThickness);
  int pixel = 0;
  for (const char* millimetres : AvailableThicknesses()) {
    const std::string width = std::to_string(++pixel);
    const Version0Member available[] = {
        {Int, "Availability", "1"}, {Int, "Pixel", width.c_str()}, {Float, "mm", millimetres}};
    AddInstance(text, 1, "VyrThickness", ThicknessType(), available);
  }
  for (int i = 0; i < kUnavailableThicknesses; ++i) {
    AddInstance(text, 1, "VyrThickness", ThicknessType());
  }
  EndNode(text, 1);
}
