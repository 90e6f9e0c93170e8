#pragma once

#include <cerrno>
#include <string>

// What is told of a file that cannot be opened or written, and what would be right where that is
// known: one wording for everything that reads, saves and keeps files.

/// What something is that is there and no regular file. Where nobody named it, `isNamed` false,
/// another name is no advice.
std::string VyrNoRegularFile(bool isFolder, bool isNamed = true);

/// `what`, the meaning of `error` and what to do about it, for files that are looked for.
std::string VyrNotOpened(const char* what = "cannot be opened: ", int error = errno);

/// The same for files that are made, changed or renamed.
std::string VyrNotWritten(const char* what = "cannot be written: ", int error = errno);
