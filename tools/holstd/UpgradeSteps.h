#pragma once

#include <string>
#include <vector>

#include "Format.h"
#include "Session.h"
#include "StandardSnapshot.h"

/// What one step of an upgrade did.
struct UpgradeStep {
  std::string name;
  int version;                          ///< that it leads to
  std::vector<SnapshotChange> changes;  ///< empty where nobody has looked
};

/// With the changes only where somebody has looked.
Json AsJson(const UpgradeStep& step, bool hasChanges);

/// Tells the steps with their changes. They are what a dry run is asked for, and so data; of an
/// upgrade they are talk.
void TellSteps(const std::string& file, const std::vector<UpgradeStep>& steps, bool isDryRun,
               Session& session);
