#pragma once

#include <string>

#include "Arguments.h"
#include "VyrDrwParseStandard.h"

/// How far a standard is brought up, and as whose.
struct UpgradeOptions {
  int target = -1;         ///< format version; -1: the current one
  bool isShipped = false;  ///< as one of the shipped standards, not as a site's

  VyrDrwParseStandardUpgradeOptions ForLibrary() const;
};

/// --to VERSION and --shipped.
void AddUpgradeOptions(Arguments& command, UpgradeOptions& options);

/// What a converter holds as XML. Throws `Failure`; `file` is what it speaks of.
VyrUnicodeString TextOf(VyrDrwParseStandard& converter, const std::string& file);
