#pragma once

#include <optional>

#include "HolStandardInfraExport.h"
#include "VyrUnicodeString.h"

class VyrAnnStandardXMLParser;

/// A standard that holds what only a later version has than the one it is dated with: somebody has
/// deleted the node that told its version, say. Steps of an upgrade that it has been through would
/// run again over what they have made, so it must not be upgraded as it is. A value of its own: it
/// holds nothing of the document.
struct VyrDrwNewerContent {
  /// Why the standard is dated too early.
  enum class Cause {
    Missing,  ///< `node` is not there, which tells later versions by being there
    Present,  ///< `node` is there, which tells later versions by being gone
    Stated,   ///< `node` holds the version itself, and another one
  };

  int version;             ///< that the document is dated with
  int contentVersion;      ///< the latest version of which it has what that version brought
  VyrUnicodeString found;  ///< path of something that came with `contentVersion`
  Cause cause;             ///< what `node` has to do with it
  VyrUnicodeString node;   ///< path of the first node that dates the document back
  /// The commands, a line each as a script has them, by which the document is dated with
  /// `contentVersion`. Nodes come back without what they held, but for what a standard cannot be
  /// read without.
  VyrUnicodeString commands;
};

/// Compares how `document` is dated with the enumerations, types and parameters that it has. They
/// are known from what the steps of the upgrade add; a standard's own ones mean nothing. Empty when
/// nothing speaks against the date, and when the document cannot be dated (`GetVersion` is -1). The
/// document is only read.
HOLSTANDARDINFRA_EXPORT std::optional<VyrDrwNewerContent> VyrFindNewerContent(
    VyrAnnStandardXMLParser& document);
