#pragma once

#include <memory>

#include "HolStandardInfraExport.h"
#include "VyrDrwStdSheetFormat.h"
#include "VyrDrwStdSheetStyle.h"
#include "VyrResult.h"
#include "VyrUnicodeString.h"

struct SharedStandardDocument;

/// What a drawing asks of one standard: its version, its parent standard, its sheet formats and
/// sheet styles.
///
/// The standard that was opened last is kept for the whole process, so that it is not read again
/// as long as neither its path nor its modification time changes; one that could not be read is
/// kept as such, and reported when it is first opened. Every operation fails for a standard without
/// a document: one that is not found, cannot be read or has undefined enumeration values.
///
/// An object belongs to one thread at a time. Several threads may each have one of the same
/// standard: they share its document, and one operation waits for another's end, so
/// that a sink of diagnostics must not wait for another thread.
class HOLSTANDARDINFRA_EXPORT VyrAnnStandardServices {
 public:
  /// Opens the standard of that name, as `VyrDftStandardServices::FindStandardFileInEnv` finds it.
  /// Null and names that are not found give a services object without a document.
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
  /// The scale of that style, whatever else it holds: length on the sheet by length of the object,
  /// 0.5 for 1:2. A text that is no number leaves `scale` alone and still is `S_OK`. `E_FAIL`, with
  /// `scale` left alone, when there is no document, no sheet style or no scale in it.
  HRESULT GetSheetScale(double& scale);
  /// What the standard says in "Dimension.ParentStandard": "ISO", "JIS" or "ANSI", which an ASME
  /// standard says, too; empty when it does not say. `E_FAIL` without a document.
  HRESULT GetStandardParentName(VyrUnicodeString& name);
  /// The format version, 1 to the current one. `E_FAIL`, with what was found in `version`, when it
  /// is below 1; `E_FAIL`, with `version` left alone, without a document.
  HRESULT GetVersion(int& version);
  /// 1 when the format version is at least `version`, else 0: whether a drawing that needs what
  /// `version` has can be switched to this standard. 0 without a document.
  int IsSwitchable(int version);

  /// 1 when the document is, or was, the one that the process keeps; 0 when it is this object's.
  int IsShared() const { return shared_; }
  /// Gives back the document that the process keeps, for a host that is about to end or that wants
  /// the next standard read anew. Objects that use the document keep it. May be called from any
  /// thread.
  static void ReleaseCachedDocument();

 private:
  VyrAnnStandardServices() = default;

  std::shared_ptr<SharedStandardDocument> document_;
  int shared_ = 0;
};
