#pragma once

#include <string>

// Where a file lies: links that lead to it, and its folder.

/// Goes from a path along its symbolic links to the file that they lead to, whether it exists yet
/// or not. False with `errno` set when a link cannot be read or there are more than the operating
/// system follows, as when they go round in a circle.
bool VyrFollowLinks(std::string& path);

/// The folder of a file, "." for a name alone.
std::string VyrFolderOf(const std::string& path);

/// The last name of a path.
std::string VyrNameOf(const std::string& path);

/// Makes new names and vanished ones survive a power failure. Not every file system can; the
/// content is safe anyway.
void VyrSyncFolder(const std::string& folder);
