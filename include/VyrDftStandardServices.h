#pragma once

#include "HolStandardInfraExport.h"
#include "VyrDrwStdSheetFormat.h"
#include "VyrIDftStandard.h"
#include "VyrIDrwStandard.h"
#include "VyrListValVyrUnicodeString.h"
#include "VyrResult.h"
#include "VyrUnicodeString.h"

/// Finds standards, opens them, classifies them, and reads their sheet formats. All operations are
/// static; the only state is one handle for each of the shipped standards ISO, JIS and ASME.
/// Threads may ask for these at the same time, but use one standard at a time only. What fails on a
/// file is told in the error log.
class HOLSTANDARDINFRA_EXPORT VyrDftStandardServices {
 public:
  VyrDftStandardServices() = delete;

  /// Copies a standard into the working directory (the environment variable "WOB_ODT_OUT", else
  /// "VyrTemp") and hands out the path of the copy, directory and name joined by a backslash: a
  /// new text that the caller frees with `delete[]`. 0 when the copy can be read, be it one of
  /// before that could not be renewed; 69 when not, and for what `VyrStdServices` does not take for
  /// the name of a standard; 1 for a null argument. `*pathname` must be null, anything else is
  /// fatal, and 1 where the host lives on. `unused` means nothing.
  static int FindStandardFileInEnv(const char* name, char** pathname, unsigned char unused = 0);
  /// The files of all standards that the host knows, full paths without ".xml", each once. What the
  /// list held before goes, here and in the next operation.
  static void ListStandards(VyrListValVyrUnicodeString& names, unsigned char unused = 0);
  /// "ANSI-ASME", "ISO" and "JIS": the standards shipped with the library.
  static void ListOOTBStandards(VyrListValVyrUnicodeString& names);
  /// Appends the base names of the entries of a folder whose names contain "." and `ext`, but none
  /// that the list has. The base name lacks as many characters at its end. With `skipAnsi`, files
  /// of ANSI standards, which do not include ASME, are left out. Nothing when an argument is null
  /// or the folder cannot be read.
  static void ListFilesInDirectory(const char* dir, const char* ext,
                                   VyrListValVyrUnicodeString& names, unsigned char skipAnsi);
  /// The same, by parent standard; files of others, ANSI among them, are left out.
  static void ListXMLStdInDirectory(const char* dir, const char* ext,
                                    VyrListValVyrUnicodeString& iso,
                                    VyrListValVyrUnicodeString& jis,
                                    VyrListValVyrUnicodeString& asme);

  /// The shipped standard "ISO", "JIS" or "ASME", opened when first asked for and kept. Null for
  /// any other name, and, reported, when it is not found. `unused` means nothing.
  static VyrIDrwStandard_var GetOOTBStandard(const VyrUnicodeString& name, int unused = 0);
  /// Gives back the shipped standards that are kept, for a host that is about to end or that wants
  /// them read anew.
  static void ReleaseOOTBStandards();
  /// Opens a file as a standard of that name. Queries of a standard whose file cannot be read,
  /// which is reported, find nothing. Never null.
  static VyrIDrwStandard_var GetStandardFromFile(const VyrUnicodeString& fileName,
                                                 const VyrUnicodeString& name);
  /// Parent standard ("ISO", "JIS", "ANSI", "ASME", or what else the file says) and format version
  /// of a file, as `VyrDrwParseStandard` tells them: empty and 1, reported, when it cannot be read;
  /// empty and 0 without a name. `fileName` is left as it is.
  static void GetStandardClassAndVersion(VyrUnicodeString& fileName,
                                         VyrUnicodeString& standardClass, int& version);

  /// The last name of a dotted path; empty for a path without a dot or with one at its end.
  static VyrUnicodeString GetAttributeSingleName(VyrUnicodeString path);
  /// What comes before the last dot; empty for a path without one. A dot at the end counts only
  /// when there is no other.
  static VyrUnicodeString GetFatherNode(VyrUnicodeString path);

  /// Row (0 to 176) of a keyword, the name that XML standards have for a parameter, in the table of
  /// the old parameter set; -1 for an empty or unknown one.
  static int GetIndexFromKeyword(const VyrUnicodeString& keyword);
  /// Row of a legacy name, the one that the old parameter set has; -1 likewise.
  static int GetIndexFromParam(const VyrUnicodeString& parameter);
  /// The keyword of a legacy name; empty when there is no such row.
  static VyrUnicodeString GetKeywordFromParam(const VyrUnicodeString& parameter);
  /// The legacy name of a keyword; empty when there is no such row, or none in it.
  static VyrUnicodeString GetParamFromKeyword(const VyrUnicodeString& keyword);

  /// The orientation that a standard writes as `name` ("LandscapeByDefault" and so on). `E_FAIL`
  /// for an unknown word; `orientation` is then left alone.
  static HRESULT GetEnumFromName(const VyrUnicodeString& name,
                                 VyrFormatOrientationsType& orientation);
  /// The word that a standard writes for an orientation. `E_FAIL` for an unknown number; `name` is
  /// then left alone.
  static HRESULT GetNameFromEnum(VyrFormatOrientationsType orientation, VyrUnicodeString& name);

  /// The sheet format at a 1-based index. Fails as the query of the first field that cannot be read
  /// does (`E_FAIL` past the last format), and with `E_FAIL` for an unknown orientation; `format`
  /// is then left alone.
  static HRESULT GetFormatData(VyrIDftStandard& standard, int index, VyrDrwStdSheetFormat& format);
  /// All sheet formats of a standard: a new array of `count` that the caller frees with `delete[]`.
  /// All of them or none: on failure both outputs are left alone. `E_INVALIDARG`, reported, for a
  /// null argument and when `*formats` is not null; `E_FAIL`, reported, when a format cannot be
  /// read; else what the standard answers when it is asked for their number, a failure when it has
  /// none.
  static HRESULT GetSheetFormats(VyrIDftStandard* standard, VyrDrwStdSheetFormat** formats,
                                 int& count);

 private:
  friend struct VyrDftStandardServicesAccess;

  static HRESULT GetEnumNames(VyrListValVyrUnicodeString& names);
};
