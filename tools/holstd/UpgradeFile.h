#pragma once

#include <memory>

#include "Format.h"
#include "InPlace.h"
#include "Session.h"
#include "Signals.h"
#include "UpgradeInputs.h"
#include "UpgradeOptions.h"

/// How standards are upgraded, all of a run alike.
struct UpgradeManner {
  UpgradeOptions chain;
  InPlaceOptions inPlace;
  bool isDryRun = false;
  bool json = false;     ///< the caller prints the report: nothing else is printed
  bool isBatch = false;  ///< the caller tells what became of every file
};

/// What became of a standard.
struct Upgraded {
  ExitStatus status = kDone;
  Json report;  ///< as the JSON report has it
  /// Once something is written, signals wait until the caller has told of it.
  std::unique_ptr<SignalsWait> untilTold = {};
};

/// Upgrades a standard. What goes wrong is told, and is in the report.
Upgraded UpgradeFile(const UpgradeInput& input, const UpgradeManner& manner, Session& session);

/// A standard that nothing could be done with; told and reported.
Upgraded NotUpgraded(const std::string& file, const Failure& failure, const Session& session);
/// A standard for which there was no memory; reported only.
Upgraded NotUpgradedForMemory(const std::string& file);
/// A standard that an interruption came before; nothing is told.
Upgraded NotBegun(const std::string& file);
