#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "HolStandardInfraExport.h"
#include "VyrUnicodeView.h"

// Files of the host. Every operation here reads a path as `VyrNativePath` does. A result text is
// empty on success, otherwise it says in one phrase what went wrong.

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
/// content. Permissions are kept, and a symbolic link stays one and its target is replaced.
/// With a `modificationTime` (as `VyrModificationTime` gives it) the new content is never seen with
/// another one; a pipe or a device, which is written through, has no use for it.
HOLSTANDARDINFRA_EXPORT std::string VyrSaveFile(
    VyrUnicodeView path, std::string_view content,
    std::optional<std::int64_t> modificationTime = std::nullopt);

/// When the content was last changed: nanoseconds since the beginning of 1970, UTC; nothing when
/// there is no such file or its status cannot be read. Symbolic links are followed.
HOLSTANDARDINFRA_EXPORT std::optional<std::int64_t> VyrModificationTime(VyrUnicodeView path);

/// Sets that time. The file system may keep it less exactly.
HOLSTANDARDINFRA_EXPORT std::string VyrSetModificationTime(VyrUnicodeView path,
                                                           std::int64_t nanoseconds);

/// Whether the path leads to a regular file, which keeps no reader waiting, that can be opened.
HOLSTANDARDINFRA_EXPORT bool VyrIsReadableFile(VyrUnicodeView path);
