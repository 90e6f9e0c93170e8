#pragma once

#include "HolStandardInfraExport.h"
#include "VyrResult.h"
#include "VyrUnicodeString.h"

/// How the content of a drafting standard is dated. Two numberings exist: the release of the
/// application that wrote a standard (1 to 21, then 210 to 216 and 417 to 421) and the format
/// version of the standard itself (0, 1, 2, then 30 to the current version), which a document
/// carries and the upgrade steps move on. All operations are static and keep no state but one flag:
/// they may be called from any thread.
class HOLSTANDARDINFRA_EXPORT VyrDftStdPersistence {
 public:
  VyrDftStdPersistence() = delete;

  static const char* const VyrDftStdType;           ///< type and root node name of a standard
  static const char* const VyrDftStdExtension;      ///< of standard files, without the dot
  static const char* const VyrDftStdNodeSeparator;  ///< between the names of a path

  // The nodes right below the root that callers ask for by name.
  static const char* const VyrDftStdNodeGeneral;    ///< "General": what concerns all objects
  static const char* const VyrDftStdNodeDress;      ///< "DressUp": threads and symbols of views
  static const char* const VyrDftStdNodeDimension;  ///< "Dimension": layout of dimensions
  static const char* const VyrDftStdNodeTolerance;  ///< "ToleranceFormats": layouts of tolerances
  static const char* const VyrDftStdNodeValue;      ///< "ValueFormats": layouts of numbers
  static const char* const VyrDftStdNodeThickness;  ///< "LineThickness": line widths in mm, by row
  static const char* const VyrDftStdNodeLinetypes;  ///< "LineTypes": dash patterns of lines, by row
  static const char* const VyrDftStdNodeStyles;     ///< "Styles": styles by object type and name

  /// What a reference node tells of a document without an explicit version.
  enum NodeStatus : int {
    NodeAdded = 0,    ///< the document is at least of the release when the node is present
    NodeRemoved = 1,  ///< the document is at least of the release when the node is absent
  };

  /// The current format version, which this release writes.
  static int GetCurrentVersion();
  /// The format version that a release wrote; -1 for a number that is no release (19 among them).
  /// The second argument means nothing.
  static int GetVersionFromRelease(int release, int = 0);
  /// 1 when a document may carry `version` in its version node (110 to the current version in steps
  /// of 10: before, documents carried none), else 0.
  static int CheckExplicitVersionNumberIsValid(int version);
  /// The node whose presence or absence tells the release, relative to the root. For a release
  /// outside 10 to 18 `E_FAIL`, reported, and the outputs are left alone: those before had no node
  /// to tell them by, those after carry their version.
  static HRESULT GetReferenceNodeForRelease(int release, VyrUnicodeString& nodePath,
                                            NodeStatus& status);
  /// The node that holds a document's explicit version, relative to the root: "Version".
  static VyrUnicodeString GetVersionNodePath();
};
