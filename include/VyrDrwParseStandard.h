#pragma once

#include <memory>
#include <vector>

#include "HolStandardInfraExport.h"
#include "VyrDrwParseStandardUpgradeOptions.h"
#include "VyrProblem.h"
#include "VyrResult.h"
#include "VyrUnicodeString.h"

class VyrAnnStandardXMLParser;
class VyrDrwParseParameter;

/// Reads one standard, tells its parent standard and its format version, and writes it converted
/// or upgraded.
///
/// Owns the document and the parameters that it reads. Used from one thread at a time.
class HOLSTANDARDINFRA_EXPORT VyrDrwParseStandard {
 public:
  // Parent standards as bits, so that sets of them can be or-ed.
  static constexpr int ANSI = 1;
  static constexpr int ASME = 2;
  static constexpr int ISO = 4;
  static constexpr int JIS = 8;

  /// Remembers the path of the standard's file; reads nothing.
  explicit VyrDrwParseStandard(const VyrUnicodeString& fileName);
  VyrDrwParseStandard(const VyrDrwParseStandard&) = delete;
  VyrDrwParseStandard& operator=(const VyrDrwParseStandard&) = delete;
  virtual ~VyrDrwParseStandard();

  /// Reads the file as an XML standard, once. When it cannot be read, `GetProblem` says why, the
  /// object counts as not decoded and its document is empty.
  void Decode();
  /// Reads the file as a text standard of the old generation, once: then decoded, of version 0 and
  /// without a document. `E_FAIL`, and nothing is kept, when the text is not valid; `GetProblem`
  /// says why. `E_UNEXPECTED`, reported, once the object has decoded a file or tried to by
  /// `Decode`.
  HRESULT DecodeText();
  /// Why the last read or write failed; empty when it did not.
  const VyrProblem& GetProblem() const { return problem_; }

  /// "ISO", "JIS", "ANSI", "ASME", or whatever the standard says; empty before it is read. An ASME
  /// standard calls itself "ANSI" and is told by its datum mode.
  VyrUnicodeString GetParentStandard() const { return parentStandard_; }
  /// The parent standard as one of the bits above; 0, reported, for any other name.
  int GetParentStandardId() const;
  /// Format version of what was read; 0 before, and for a text standard.
  int GetVersion() const { return version_; }
  static int GetCurrentVersion();

  /// Writes to the trace channel "VyrDftStandardOutput" one line per parameter that every standard
  /// must valuate and this one does not, and how many they are.
  void Check();

  /// Upgrades to the current version and saves into `outputDirectory` (null: the working
  /// directory) under the file's own name with the extension ".xml". `outputPath` receives the
  /// path, directory and name joined by a backslash, or empty when nothing was read.
  void Encode(const char* outputDirectory, VyrString& outputPath,
              VyrDrwParseStandardUpgradeOptions& options);
  /// Upgrades to `targetVersion` (-1: the current one) and saves exactly to `path`. Failures are
  /// negative, and leave the file as it was.
  HRESULT EncodeToFile(const char* path, int targetVersion,
                       VyrDrwParseStandardUpgradeOptions& options);

  /// Append a line to `text`, and a line break when `newLine` is not 0. Of the pieces, those that
  /// are null are left out.
  static void AddOutputLine(VyrUnicodeString& text, const VyrUnicodeString& line, int newLine);
  static void AddOutputLine(VyrUnicodeString& text, const char* a, const char* b, const char* c,
                            int newLine);
  static void AddOutputLine(VyrUnicodeString& text, const char* line, int newLine);
  /// The same, inserted at a character position. The form with one `const char*` does nothing when
  /// the position lies outside the text; the two others take such a position as the nearest end.
  static void InsertOutputLine(VyrUnicodeString& text, int position, const VyrUnicodeString& line,
                               int newLine);
  static void InsertOutputLine(VyrUnicodeString& text, int position, const char* a, const char* b,
                               const char* c, int newLine);
  static void InsertOutputLine(VyrUnicodeString& text, int position, const char* line, int newLine);

 private:
  friend struct VyrDrwParseStandardAccess;

  void DetermineParentStandard(VyrUnicodeView name, VyrUnicodeView datumMode);
  VyrDrwParseParameter* GetParameter(const VyrUnicodeString& name) const;

  void CreateOutput(const char* outputDirectory, VyrString& outputPath) const;
  void EncodeToVersion(int targetVersion, VyrDrwParseStandardUpgradeOptions& options,
                       const char* path);
  void UpgradeVersion(int targetVersion, VyrDrwParseStandardUpgradeOptions& options);
  bool BuildVersion0Document();

  VyrUnicodeString ComposeVersion0Text() const;
  void EncodeTypedefs(VyrUnicodeString& text) const;
  void EncodeAdditionalParameters(VyrUnicodeString& text) const;
  void EncodeMigratedParameters(VyrUnicodeString& text) const;
  void EncodeDescriptions(VyrUnicodeString& text) const;
  void EncodePredefinedDescriptions(VyrUnicodeString& text, int kind) const;
  void EncodeThicknessTable(VyrUnicodeString& text) const;

  int decoded_ = 0;
  VyrUnicodeString fileName_;
  std::vector<std::unique_ptr<VyrDrwParseParameter>> parameters_;
  VyrUnicodeString parentStandard_;
  int version_ = 0;
  std::unique_ptr<VyrAnnStandardXMLParser> document_;
  VyrProblem problem_;
};
