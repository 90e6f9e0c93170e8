#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "HolStandardInfraExport.h"
#include "VyrAnnStandardXMLNode.h"
#include "VyrDrwConversionNote.h"
#include "VyrDrwParseStandardUpgradeOptions.h"
#include "VyrDrwUpgradeOmission.h"
#include "VyrProblem.h"
#include "VyrResult.h"
#include "VyrUnicodeString.h"

class VyrAnnStandardXMLParser;
class UpgradeOmissions;
class VyrDrwParseParameter;
struct EngineeringSymbol;
struct VyrDrwParseStandardBomProperty;

/// Reads one standard, tells its parent standard and its format version, and writes it converted
/// or upgraded.
///
/// The parent standard decides which practice the defaults of a new parameter follow: ISO and JIS
/// go together there, and so do ANSI and ASME. What is wrong with a file is kept for `GetProblem`,
/// and failed checks are reported.
///
/// Owns the document and the parameters that it reads. Used from one thread at a time.
class HOLSTANDARDINFRA_EXPORT VyrDrwParseStandard {
 public:
  // Parent standards as bits, so that sets of them can be or-ed.
  static constexpr int ANSI = 1;  ///< American practice of before ASME Y14.5
  static constexpr int ASME = 2;  ///< American practice of ASME Y14.5
  static constexpr int ISO = 4;   ///< international practice
  static constexpr int JIS = 8;   ///< Japanese practice

  /// Remembers the path of the standard's file; reads nothing.
  explicit VyrDrwParseStandard(const VyrUnicodeString& fileName);
  VyrDrwParseStandard(const VyrDrwParseStandard&) = delete;
  VyrDrwParseStandard& operator=(const VyrDrwParseStandard&) = delete;
  virtual ~VyrDrwParseStandard();

  /// Reads the file as an XML standard, once; the second time it does nothing, whatever the first
  /// time came to. When the file cannot be read, for want of memory too, `GetProblem` says why, the
  /// object counts as not decoded and its document is an empty one; there is none when not even
  /// that could be made.
  void Decode();
  /// Reads the file as a text standard of the old generation, once: then decoded, of version 0 and
  /// without a document. `E_FAIL`, and nothing is kept, when the text is not valid; `GetProblem`
  /// says why, and `GetTextFaults` what else is. `E_UNEXPECTED`, reported, once the object has
  /// decoded a file or tried to by `Decode`.
  HRESULT DecodeText();
  /// Why the last read or write failed; empty when it did not.
  const VyrProblem& GetProblem() const { return problem_; }

  /// The faults of the text that `DecodeText` has refused, the first 20 of them, of which the first
  /// is the problem; empty when it was not refused for what it says. They are in the order of the
  /// text, but what a section lacks comes after what is in it. Borrowed until the next read.
  const std::vector<VyrProblem>& GetTextFaults() const { return textFaults_; }
  /// How many faults the text has, those past the first 20 included.
  std::size_t GetNumOfTextFaults() const { return numOfTextFaults_; }
  /// What a text standard says and the standard made of it does not, or not where it is looked for:
  /// of the names of its groups and its datum mode after `DecodeText`, of its parameters, too,
  /// after an upgrade, of which they depend on the target. A number that is written otherwise but
  /// equal is told as little as one that is kept. Borrowed until the next read or upgrade.
  const std::vector<VyrDrwConversionNote>& GetConversionNotes() const { return notes_; }

  /// What the last upgrade did not do, or guessed, since the standard lacks a node or has it
  /// otherwise: the first 100 in the order of the steps. Failed checks report the same. Borrowed
  /// until the next upgrade.
  const std::vector<VyrDrwUpgradeOmission>& GetUpgradeOmissions() const;
  /// How many there are, those past the first 100 included.
  std::size_t GetNumOfUpgradeOmissions() const;

  /// "ISO", "JIS", "ANSI", "ASME", or whatever the standard says; empty before it is read. An ASME
  /// standard calls itself "ANSI" and is told by its datum mode ("TXTDatumMode" 1, where ANSI has
  /// 2), since the symbol of datum features is where ASME Y14.5 left the older practice.
  VyrUnicodeString GetParentStandard() const { return parentStandard_; }
  /// The parent standard as one of the bits above; 0, reported, for any other name.
  int GetParentStandardId() const;
  /// Format version of what was read; 0 before, and for a text standard.
  int GetVersion() const { return version_; }
  /// The format version that this release writes, the current one.
  static int GetCurrentVersion();

  /// Reads the file if that was not done, then writes to the trace channel "VyrDftStandardOutput"
  /// one line per parameter that every standard must valuate and this one does not, and how many
  /// they are.
  void Check();

  /// Upgrades to the current version and saves into `outputDirectory` (null: the working
  /// directory) under the file's own name with the extension ".xml". `outputPath` receives the
  /// path, directory and name joined by a backslash, or empty when nothing was read. When the
  /// upgrade cannot be begun, what was read is saved as it is. `GetProblem` says what failed.
  void Encode(const char* outputDirectory, VyrString& outputPath,
              VyrDrwParseStandardUpgradeOptions& options);
  /// Told of every step of an upgrade once it is done: the step's name, the version that the
  /// document now has, and the document, borrowed. The first is the composition of a document from
  /// a text standard.
  using StepObserver =
      std::function<void(const char* step, int version, VyrAnnStandardXMLParser& document)>;
  /// Upgrades what was read to `targetVersion` (-1: the current one) and saves nothing. Once only:
  /// the object keeps the version of what it read. A target between two versions runs the steps up
  /// to it, one below the version that was read none. `E_FAIL` when nothing was read,
  /// `E_UNEXPECTED` when the chain could not be begun; `GetProblem` says why. When memory runs out
  /// on the way, `E_FAIL`, and there is no document any more: half an upgrade cannot be saved.
  HRESULT Upgrade(int targetVersion, VyrDrwParseStandardUpgradeOptions& options,
                  const StepObserver& afterStep = {});
  /// The document that was read or composed, borrowed. Only after a successful read of an XML
  /// standard or an upgrade.
  VyrAnnStandardXMLParser& GetDocument() { return *document_; }
  /// Saves the document exactly to `path`. Failures are negative, and leave the file as it was:
  /// `E_UNEXPECTED`, reported, without a document, else what the codec answers.
  HRESULT SaveToFile(const char* path);
  /// `Upgrade`, then, unless that failed, `SaveToFile`; the result of the last one that was run.
  HRESULT EncodeToFile(const char* path, int targetVersion,
                       VyrDrwParseStandardUpgradeOptions& options);

  /// @{
  /// Appends a line to `text`, and a line break when `newLine` is not 0. Of the pieces, those that
  /// are null are left out.
  static void AddOutputLine(VyrUnicodeString& text, const VyrUnicodeString& line, int newLine);
  static void AddOutputLine(VyrUnicodeString& text, const char* a, const char* b, const char* c,
                            int newLine);
  static void AddOutputLine(VyrUnicodeString& text, const char* line, int newLine);
  /// @}

  /// @{
  /// The same, inserted at a character position, counted from 0 in UTF-16 code units. The form with
  /// one `const char*` does nothing when the position lies outside the text; the two others take
  /// such a position as the nearest end.
  static void InsertOutputLine(VyrUnicodeString& text, int position, const VyrUnicodeString& line,
                               int newLine);
  static void InsertOutputLine(VyrUnicodeString& text, int position, const char* a, const char* b,
                               const char* c, int newLine);
  static void InsertOutputLine(VyrUnicodeString& text, int position, const char* line, int newLine);
  /// @}

 private:
  friend struct VyrDrwParseStandardAccess;

  HRESULT RefuseForMemory();
  void DecodeXML();
  HRESULT DecodeParameters();
  void DetermineParentStandard(VyrUnicodeView name, VyrUnicodeView datumMode);
  VyrDrwParseParameter* GetParameter(const VyrUnicodeString& name) const;

  void CreateOutput(const char* outputDirectory, VyrString& outputPath) const;
  void EncodeToVersion(int targetVersion, VyrDrwParseStandardUpgradeOptions& options,
                       const char* path);
  bool UpgradeVersion(int targetVersion, VyrDrwParseStandardUpgradeOptions& options,
                      const StepObserver& afterStep);
  bool BuildVersion0Document();

  VyrUnicodeString ComposeVersion0Text() const;
  void EncodeTypedefs(VyrUnicodeString& text) const;
  void EncodeAdditionalParameters(VyrUnicodeString& text) const;
  void EncodeMigratedParameters(VyrUnicodeString& text) const;
  void EncodeDescriptions(VyrUnicodeString& text) const;
  void EncodePredefinedDescriptions(VyrUnicodeString& text, int kind) const;
  void EncodeThicknessTable(VyrUnicodeString& text) const;

  // Default content, a table each.
  void RunTable(VyrAnnStandardXMLParser& document, std::string_view table) const;
  void AppendFrames(VyrAnnStandardXMLParser& document) const;
  void AppendLinetypes1(VyrAnnStandardXMLParser& document) const;
  void AppendLinetypes2(VyrAnnStandardXMLParser& document) const;
  void AppendPatterns(VyrAnnStandardXMLParser& document) const;
  void AppendStyleEnums(VyrAnnStandardXMLParser& document) const;
  void AppendStyles(VyrAnnStandardXMLParser& document) const;
  void AppendStyleSheet(VyrAnnStandardXMLParser& document) const;
  void AppendStyleGeometry(VyrAnnStandardXMLParser& document) const;
  void AppendStyleDimension1(VyrAnnStandardXMLParser& document) const;
  void AppendStyleDimension2(VyrAnnStandardXMLParser& document) const;
  void AppendStyleDimension3(VyrAnnStandardXMLParser& document) const;
  void AppendStyleDimension4(VyrAnnStandardXMLParser& document) const;
  void AppendStyleDimension5(VyrAnnStandardXMLParser& document) const;
  void AppendStyleDimension6(VyrAnnStandardXMLParser& document) const;
  void AppendStyleAnnotation(VyrAnnStandardXMLParser& document) const;
  void AppendStyleDressup(VyrAnnStandardXMLParser& document) const;
  void AppendStyleCallout(VyrAnnStandardXMLParser& document) const;
  HRESULT AddSheetFormats(const VyrUnicodeString& parentStandard,
                          VyrAnnStandardXMLParser& document) const;

  // Edits of whole style families.
  int ChangeStyleValue(const char* stylePath, const char* valuePath, int standardsMask,
                       VyrAnnStandardXMLValue::Type type, const char* oldValue,
                       const char* newValue);
  void AddBomStyle(const char* name, const VyrDrwParseStandardBomProperty* properties, int count);

  // The steps of the upgrade, and what only one of them does.
  struct UpgradeStep;
  using Options = VyrDrwParseStandardUpgradeOptions;
  static std::span<const UpgradeStep> UpgradeSteps();
  bool IsIsoOrJis() const;
  bool IsAnsiOrAsme() const;
  void ReportUnknownParent() const;
  void StampVersion(const UpgradeStep& step);

  void UpgradeTo2(const UpgradeStep& step, Options& options);
  void UpgradeTo30(const UpgradeStep& step, Options& options);
  void UpgradeTo40(const UpgradeStep& step, Options& options);
  void RebuildRoughnessStyle();
  void ResetDatumFeatureLeader();
  void UpgradeTo50(const UpgradeStep& step, Options& options);
  void UpgradeTo60(const UpgradeStep& step, Options& options);
  void Migrate14To15(const UpgradeStep& step, Options& options);
  void Migrate15To16n201(const UpgradeStep& step, Options& options);
  void Migrate16To17n1X(const UpgradeStep& step, Options& options);
  void Migrate17To18n1X1(const UpgradeStep& step, Options& options);
  void ConvertBlanking();
  void RestructureTableStyles();
  void Migrate18To20n208(const UpgradeStep& step, Options& options);
  void ReplaceShippedCallouts();
  void Migrate20To21n209(const UpgradeStep& step, Options& options);
  void AddViewTextStyle();
  void AddViewNameSettings(const char* textStyle);
  void Migrate209To21n210(const UpgradeStep& step, Options& options);
  void Migrate210To21n211(const UpgradeStep& step, Options& options);
  void Migrate211To23n213(const UpgradeStep& step, Options& options);
  void Migrate213To23n214(const UpgradeStep& step, Options& options);
  void Migrate214To24n215(const UpgradeStep& step, Options& options);
  void NumberHatchings();
  void RenewVersionNode(const UpgradeStep& step);
  void Migrate215To24n216(const UpgradeStep& step, Options& options);
  void Migrate216To25n417(const UpgradeStep& step, Options& options);
  void Migrate417To27n419(const UpgradeStep& step, Options& options);
  void Migrate419To28n420(const UpgradeStep& step, Options& options);
  void Migrate420To29n421(const UpgradeStep& step, Options& options);

  // Engineering symbols of the steps.
  VyrAnnStandardXMLNode_var AppendSymbolEntry(const EngineeringSymbol& symbol,
                                              std::string_view font);
  const char* SymbolFont() const;
  void AppendFirstEngineeringSymbols();
  void AppendEngineeringSymbols(std::span<const char* const> tags, bool withUses);
  void ReplaceSubstitutionSymbol();
  void RebuildEngineeringSymbols();
  void FlagEngineeringSymbols(bool isShipped);
  void AppendProjectionSymbols();

  int decoded_ = 0;
  bool isDecodeTried_ = false;
  VyrUnicodeString fileName_;
  std::vector<std::unique_ptr<VyrDrwParseParameter>> parameters_;
  VyrUnicodeString parentStandard_;
  int version_ = 0;
  std::unique_ptr<VyrAnnStandardXMLParser> document_;
  VyrProblem problem_;
  std::vector<VyrProblem> textFaults_;
  std::size_t numOfTextFaults_ = 0;
  std::vector<VyrDrwConversionNote> notes_;
  std::unique_ptr<UpgradeOmissions> omissions_;
};
