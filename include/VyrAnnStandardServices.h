#pragma once

#include <memory>

#include "HolStandardInfraExport.h"
#include "VyrDrwStdSheetFormat.h"
#include "VyrDrwStdSheetStyle.h"
#include "VyrResult.h"
#include "VyrUnicodeString.h"

class VyrAnnStandardXMLParser;

/// What a drawing asks of one standard: its version, its parent standard, its sheet formats and
/// sheet styles.
///
/// The standard that was opened last is kept for the whole process, so that it is not read again
/// as long as neither its path nor its modification time changes; one that could not be read is
/// kept as such, and reported when it is first opened. Every operation fails for a standard without
/// a document: one that is not found, cannot be read or has undefined enumeration values.
///
/// Objects may be made and deleted on any thread; those of one standard share its document and are
/// used from one thread at a time.
class HOLSTANDARDINFRA_EXPORT VyrAnnStandardServices {
 public:
  /// Opens the standard of that name, as `VyrDftStandardServices::FindStandardFileInEnv` finds it.
  explicit VyrAnnStandardServices(const char* standardName);
  /// Opens exactly that file, read anew and not kept for others. Never null; a services object
  /// without a document when the file cannot be read.
  static std::unique_ptr<VyrAnnStandardServices> OpenFile(VyrUnicodeView path);
  VyrAnnStandardServices(const VyrAnnStandardServices&) = delete;
  VyrAnnStandardServices& operator=(const VyrAnnStandardServices&) = delete;
  virtual ~VyrAnnStandardServices();

  /// `S_OK` for a standard of sound structure; `S_FALSE` when an enumeration value is undefined,
  /// the version cannot be told, or a standard of release 14 or later has no readable sheet
  /// styles. What is wrong is reported. `E_FAIL` without a document.
  HRESULT CheckXMLStructure();
  /// All sheet formats, or `E_FAIL` when there is none, one of them cannot be read (reported), or
  /// the standard is older than release 14. `*formats` is a new array of `count` that the caller
  /// frees with `delete[]`, left alone on failure. `count` tells how many there are, good or not.
  HRESULT GetAvailableSheetFormats(VyrDrwStdSheetFormat** formats, int& count);
  /// All sheet styles, in the same way, of a standard of release 11 or later. The last of them
  /// tells whether the result is `S_OK` or, for a minimal style, `S_FALSE`.
  HRESULT GetAvailableSheetStyles(VyrDrwStdSheetStyle** styles, int& count);
  /// The sheet style "Default", else the first one. `S_OK` when the standard gives all its fields,
  /// `S_FALSE` when it gives the scale, the projection method and at most the position of views,
  /// as standards made from old text standards do. Anything else is `E_FAIL`, reported, with
  /// `style` left alone; so is a standard older than release 11, unreported.
  HRESULT GetDefaultSheetStyle(VyrDrwStdSheetStyle& style);
  /// The scale of that style, whatever else it holds. A text that is no number leaves `scale`
  /// alone and still is `S_OK`.
  HRESULT GetSheetScale(double& scale);
  /// "ISO", "JIS", "ANSI" or "ASME"; empty when the standard does not say.
  HRESULT GetStandardParentName(VyrUnicodeString& name);
  /// The format version. `E_FAIL`, with what was found in `version`, when it is below 1.
  HRESULT GetVersion(int& version);
  /// 1 when the format version is at least `version`, else 0.
  int IsSwitchable(int version);

  /// 1 when the document is, or was, the one that the process keeps; 0 when it is this object's.
  int IsShared() const { return shared_; }
  /// Gives back the document that the process keeps, for a host that is about to end or that wants
  /// the next standard read anew. Objects that use the document keep it.
  static void ReleaseCachedDocument();

 private:
  VyrAnnStandardServices() = default;

  std::shared_ptr<VyrAnnStandardXMLParser> parser_;
  int shared_ = 0;
};
