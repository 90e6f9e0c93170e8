#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "HolStandardInfraExport.h"
#include "VyrListValVyrUnicodeString.h"
#include "VyrResult.h"

/// The host's container of standard files: a list of folders in which a standard NAME is the file
/// NAME.xml, the first folder that has one deciding.
///
/// By default the folders are those of the environment variable "VYR_STANDARD_PATH" (separated by
/// ":"), then the folder of the shipped standards, which is found from where the library itself
/// lies: the first share/HolStandardInfra/standards beside it or up to three folders above. All
/// standards are of the type "drafting".
///
/// What fails on a file or a folder is told in one line of the error log that names it and says
/// why. All operations are static and, but for setting the folders, may be called from any thread.
class HOLSTANDARDINFRA_EXPORT VyrStdServices {
 public:
  VyrStdServices() = delete;

  /// Full paths of all standard files of a type: folder after folder, by name within one, without
  /// those that a folder before hides. A new list that the caller deletes; null when `type` is
  /// null. Folders that do not exist count as empty; one that cannot be read is reported.
  static VyrListValVyrUnicodeString* GetStandardFiles(const char* type);
  /// Copies a standard to the file `targetPath` with the time of its source, or leaves that file
  /// alone when it is the same already, so that the time tells whether a standard has changed.
  /// `E_INVALIDARG` for what is no standard name (see below) and for null or empty arguments,
  /// `E_FAIL` when there is no such standard or it cannot be copied; the target is then as it was.
  /// Only a regular file is replaced, never what a symbolic link leads to.
  static HRESULT CopyStandard(const char* name, const char* type, const char* targetPath);
  /// False for names that could lead out of a folder or that no text can hold: empty ones, ".",
  /// those with a separator, a control character or "..", and those that are no UTF-8.
  static bool IsStandardName(std::string_view name);

  /// The folders that are searched, in order, whether or not they exist.
  static std::vector<std::string> GetFolders();
  /// The folder of the standards that came with the library; empty when it has none.
  static std::string GetShippedFolder();
  /// Replaces the folders; an empty list restores the default, an empty name is no folder. Not
  /// synchronised: a host sets its folders before it uses the library.
  static void SetFolders(std::vector<std::string> folders);
};
