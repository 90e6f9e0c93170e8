#pragma once

#include <sys/stat.h>

#include <string>

/// Gives a new file, all of whose content is written, what the file has that it is about to
/// replace: owner and group as far as the process may set them, permissions, the access control
/// list (of POSIX or of NFS version 4), and those of the extended attributes "user.*" that the
/// process may read and the file system takes. Nobody whom the old file kept out is let in: where
/// the owner cannot be kept the set-user-id bit goes, and where the group cannot be kept the
/// set-group-id bit goes and the new group gets what all others have.
///
/// `replaced` is a path that leads to that file, and `status` its status. False with
/// `errno` set when what could be kept is not, or a list cannot be read or set.
bool VyrTakeOverAttributes(int file, const std::string& replaced, const struct stat& status);
