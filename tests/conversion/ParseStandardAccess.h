#pragma once

#include <memory>
#include <string>
#include <utility>

#include "UpgradeStep.h"
#include "VyrAnnStandardXMLParser.h"
#include "VyrDrwParseParameter.h"
#include "VyrDrwParseStandard.h"

/// Lets tests put a converter into any state and call its private steps.
struct VyrDrwParseStandardAccess {
  using Standard = VyrDrwParseStandard;
  using Writer = void (Standard::*)(VyrUnicodeString&) const;
  using Builder = void (Standard::*)(VyrAnnStandardXMLParser&) const;

  static auto& Parameters(Standard& standard) { return standard.parameters_; }
  static auto& Document(Standard& standard) { return standard.document_; }
  static int& Decoded(Standard& standard) { return standard.decoded_; }
  static int& Version(Standard& standard) { return standard.version_; }
  static VyrUnicodeString& ParentStandard(Standard& standard) { return standard.parentStandard_; }

  template <class... Fields>
  static void Add(Standard& standard, Fields... fields) {
    standard.parameters_.push_back(std::make_unique<VyrDrwParseParameter>(fields...));
  }
  static VyrDrwParseParameter* GetParameter(const Standard& standard, const char* name) {
    return standard.GetParameter(name);
  }
  /// Text of a parameter; "(none)" when the standard has no such parameter.
  static std::string ValueOf(const Standard& standard, const char* name) {
    const VyrDrwParseParameter* parameter = standard.GetParameter(name);
    return parameter == nullptr ? "(none)" : parameter->GetValue().CString();
  }
  static std::string CreateOutput(const Standard& standard, const char* directory) {
    VyrString path("as before");
    standard.CreateOutput(directory, path);
    return path.CString();
  }
  static void EncodeToVersion(Standard& standard, int version, const std::string& path) {
    VyrDrwParseStandardUpgradeOptions options;
    standard.EncodeToVersion(version, options, path.c_str());
  }

  static constexpr Writer kTypedefs = &Standard::EncodeTypedefs;
  static constexpr Writer kAdditionalParameters = &Standard::EncodeAdditionalParameters;
  static constexpr Writer kMigratedParameters = &Standard::EncodeMigratedParameters;
  static constexpr Writer kDescriptions = &Standard::EncodeDescriptions;
  static constexpr Writer kThicknessTable = &Standard::EncodeThicknessTable;

  static std::string Written(const Standard& standard, Writer writer) {
    VyrUnicodeString text;
    (standard.*writer)(text);
    return text.CString();
  }
  static std::string WrittenPredefined(const Standard& standard, int kind) {
    VyrUnicodeString text;
    standard.EncodePredefinedDescriptions(text, kind);
    return text.CString();
  }
  static std::string ComposedText(const Standard& standard) {
    return standard.ComposeVersion0Text().CString();
  }

  static constexpr Builder kAppendFrames = &Standard::AppendFrames;
  static constexpr Builder kAppendLinetypes1 = &Standard::AppendLinetypes1;
  static constexpr Builder kAppendLinetypes2 = &Standard::AppendLinetypes2;
  static constexpr Builder kAppendPatterns = &Standard::AppendPatterns;
  static constexpr Builder kAppendStyleEnums = &Standard::AppendStyleEnums;
  static constexpr Builder kAppendStyles = &Standard::AppendStyles;

  static void Append(const Standard& standard, Builder builder, VyrAnnStandardXMLParser& document) {
    (standard.*builder)(document);
  }
  static HRESULT AddSheetFormats(const Standard& standard, const char* parent,
                                 VyrAnnStandardXMLParser& document) {
    return standard.AddSheetFormats(parent, document);
  }
  static int ChangeStyleValue(Standard& standard, const char* stylePath, const char* valuePath,
                              int mask, VyrAnnStandardXMLValue::Type type, const char* oldValue,
                              const char* newValue) {
    return standard.ChangeStyleValue(stylePath, valuePath, mask, type, oldValue, newValue);
  }
  static void AddBomStyle(Standard& standard, const char* name,
                          const VyrDrwParseStandardBomProperty* properties, int count) {
    standard.AddBomStyle(name, properties, count);
  }

  /// Runs the one step that leads to `version`, whatever the version of the document is.
  static void RunStep(Standard& standard, int version, bool isShipped) {
    VyrDrwParseStandardUpgradeOptions options;
    options.OOTBStandard = isShipped ? 1 : 0;
    for (const Standard::UpgradeStep& step : Standard::UpgradeSteps()) {
      if (step.version == version) (standard.*step.operation)(step, options);
    }
  }
};
