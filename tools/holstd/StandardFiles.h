#pragma once

#include <optional>
#include <string>
#include <vector>

/// The files of all standards that the host's folders hold, in their order; of those of one name
/// the first one only.
std::vector<std::string> FindStandardFiles();
/// The file of a standard that came with the library, whatever standard of that name the folders
/// have first.
std::optional<std::string> FindShippedFile(const std::string& name);

/// Where an argument leads that may be a file or the name of a standard.
struct StandardFile {
  std::string file;         ///< what to read
  bool isNamed = false;     ///< the argument is the name of a standard
  std::string hidden = {};  ///< a shipped standard of that name that is another one; mostly empty
};
/// One mechanism for all commands: the argument itself when it is "-" or leads to something other
/// than a folder, else the file of the standard of that name. Throws `Failure`.
StandardFile FileOrStandard(const std::string& argument);
/// Throws `Failure` when the argument is a name: a standard is replaced by the name of its file
/// only, since a name may lead to one that is shipped.
void RefuseNameInPlace(const std::string& argument);
