#pragma once

#include <string>
#include <string_view>

#include "Arguments.h"
#include "VyrBackups.h"

/// Whether a standard is replaced by its result, and whether what a result replaces is kept.
struct InPlaceOptions {
  bool isWanted = false;
  bool hasNoBackup = false;
};

/// --in-place and --no-backup.
void AddInPlace(Arguments& command, InPlaceOptions& options, const std::string& description);
/// --no-backup alone.
void AddNoBackup(Arguments& command, InPlaceOptions& options);

/// Replaces a file by `text`, keeping what it held as a backup. Throws `Failure`.
VyrFileChange ReplaceInPlace(const std::string& file, std::string_view text,
                             const InPlaceOptions& options);
/// The same of a target that need not be there. A pipe or a device, of which nothing can be kept,
/// is written to.
VyrFileChange WriteResult(const std::string& target, std::string_view text,
                          const InPlaceOptions& options);

/// What else to say when what a file holds could not be kept; empty for all other results.
std::string AdviceOnKeeping(VyrFileChange::Result result);

/// What to say of it; `done` is what led to it.
std::string TalkOf(const std::string& file, const VyrFileChange& change, const std::string& done);

/// What the helps say of backups.
extern const char* const kBackupNote;
