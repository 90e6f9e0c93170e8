#pragma once

#include "VyrDrwParseStandard.h"

/// A step of the upgrade: brings a document of the version before it to its own version.
struct VyrDrwParseStandard::UpgradeStep {
  const char* name;
  /// The step runs for standards of a version below this; the one above the version before it.
  int sourceBelow;
  /// The version that a standard has after the step; it runs for this target and later ones.
  int version;
  void (VyrDrwParseStandard::*operation)(const UpgradeStep& step,
                                         VyrDrwParseStandardUpgradeOptions& options);

  int VersionBefore() const { return sourceBelow - 1; }
};
