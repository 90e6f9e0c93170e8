#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "HolStandardInfraExport.h"
#include "VyrUnicodeView.h"

// Files that are replaced without losing what they held. That is kept beside FILE, under the name
// by which the caller calls it, as FILE.bak, FILE.bak.1, FILE.bak.2 and so on: the highest number
// is the newest, and a new one comes after the highest that exists, whatever is missing below it.
// No file is ever replaced by a backup. A backup has the content, the times and, as far as the
// process may give them, the owner and the permissions of FILE, and nobody may read it who may not
// read FILE. It is on the disk before FILE is touched.
//
// Of a symbolic link it is the file that it leads to which is replaced; its backups stand beside
// the link.
//
// Processes that replace or restore a file at the same time do so one after the other, where the
// file system has locks, so that each keeps what the one before it wrote. One that has locks but
// refuses this one, as a server does without its lock service, is a failure. A process that is
// killed leaves FILE whole and nothing lost; it may leave a backup more and a file "*.tmp", which
// is nobody's.

/// What became of a file that was to be replaced or restored.
struct VyrFileChange {
  /// How it ended.
  enum class Result {
    Done,       ///< as it was asked
    Unchanged,  ///< it holds that content already: nothing was written and nothing is kept
    NoBackup,   ///< there is none to restore
    BadBackup,  ///< the newest backup cannot be read or is not a regular file: nothing was changed
    NotKept,    ///< what the file holds could not be kept: nothing was changed
    NoName,     ///< the same, for want of a name: it would be too long, or is the highest number
    Failed,  ///< the file could not be written, or another process holds it or its backup for too
             ///< long, or memory ran out: it is as it was, and so are the backups, unless `kept`
             ///< names one
    NotUsedUp,  ///< it is restored, but its backup could not be removed
  };
  Result result = Result::Done;  ///< how it ended
  std::string file;              ///< what `problem` speaks of
  std::string problem;           ///< what went wrong, in one phrase; empty when Done or Unchanged
  /// The file that holds what was replaced; empty when there is none. After a failure: the file
  /// system reports that it could not rename the new file, but the old one is in its place no more.
  std::string kept;
  std::string backup;  ///< the backup that was restored
};

/// What is done with the content that is replaced.
enum class VyrReplaced { Kept, Dropped };

/// How long to wait for another process that is saving the same file.
constexpr std::chrono::milliseconds kVyrPatience{10'000};

/// Replaces the content of a regular file as `VyrSaveFile` does and keeps what it held as its
/// newest backup. Where there was no file there is nothing to keep. Like `VyrRestoreFile` it throws
/// nothing; without memory even for the name of the file, `file` is empty.
HOLSTANDARDINFRA_EXPORT VyrFileChange
VyrReplaceFile(VyrUnicodeView path, std::string_view content, VyrReplaced replaced,
               std::chrono::milliseconds patience = kVyrPatience);

/// Gives a file the content and the time of its newest backup, which is then used up, so that
/// restoring again goes one further back. What the file held is kept as FILE.undone, FILE.undone.1
/// and so on. The file keeps its permissions; one that was deleted gets those of the backup.
HOLSTANDARDINFRA_EXPORT VyrFileChange VyrRestoreFile(
    VyrUnicodeView path, VyrReplaced replaced, std::chrono::milliseconds patience = kVyrPatience);
