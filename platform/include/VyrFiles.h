#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "HolStandardInfraExport.h"
#include "VyrUnicodeView.h"

/// @file
/// Files of the host. Every operation here reads a path as `VyrNativePath` does. A result text is
/// empty on success, otherwise it says in one phrase what went wrong. All may be called from any
/// thread.

/// The path as the operating system writes it. Some results of the library join directory and file
/// by a single backslash; such a path is read with "\" as the separator when no file of the
/// literal name exists and the folder does.
HOLSTANDARDINFRA_EXPORT std::string VyrNativePath(VyrUnicodeView path);

/// Splits at the last separator ("/" or "\"). A path without one has an empty directory.
HOLSTANDARDINFRA_EXPORT void VyrSplitPath(VyrUnicodeView path, std::string& directory,
                                          std::string& fileName);

/// Reads a whole file. On failure `content` is left alone.
HOLSTANDARDINFRA_EXPORT std::string VyrReadFile(VyrUnicodeView path, std::string& content);

/// Replaces the content of a file, or makes the file: written beside it, flushed to the disk, then
/// renamed over it, so that whatever happens the path holds either the old or the whole new
/// content, even when several processes save it at once. A failure leaves the old content and no
/// other file; so the folder, too, must be one that can be written.
///
/// A symbolic link stays one and its target is replaced; another hard link keeps the old content.
/// Kept are permissions; the access control list, of POSIX ("system.posix_acl_access") or of NFS
/// version 4 ("system.nfs4_acl"), without which nothing is saved; the extended attributes "user.*"
/// that the process may read and the file system takes; owner and group as far as the process may
/// set them. Nobody whom the old file kept out is let in: an owner or group that could not be kept
/// loses its set-id bit, and a new group gets what all others have.
/// Security labels are those that the folder gives to new files.
///
/// A process that is killed while it saves leaves a file "NAME.PROCESS-NUMBER.tmp" beside the old
/// one, where NAME is its name with "_" for each ".". It is no standard and nobody takes it for
/// one. Later saves leave it alone, for it may be the file of another process that saves at this
/// moment; whoever tidies the folder may delete it.
///
/// With a `modificationTime` (as `VyrModificationTime` gives it) the new content is never seen with
/// another one; a pipe or a device, which is written through, has no use for it.
HOLSTANDARDINFRA_EXPORT std::string VyrSaveFile(
    VyrUnicodeView path, std::string_view content,
    std::optional<std::int64_t> modificationTime = std::nullopt);

/// When the content was last changed: nanoseconds since the beginning of 1970, UTC; nothing when
/// there is no such file or its status cannot be read. Symbolic links are followed.
HOLSTANDARDINFRA_EXPORT std::optional<std::int64_t> VyrModificationTime(VyrUnicodeView path);

/// Sets that time: nanoseconds since the beginning of 1970, UTC. The file system may keep it less
/// exactly.
HOLSTANDARDINFRA_EXPORT std::string VyrSetModificationTime(VyrUnicodeView path,
                                                           std::int64_t nanoseconds);

/// Whether the path leads to a regular file, which keeps no reader waiting, that can be opened.
HOLSTANDARDINFRA_EXPORT bool VyrIsReadableFile(VyrUnicodeView path);
