#pragma once

#include <optional>
#include <string>
#include <vector>

/// The files of all standards that the host's folders hold, in their order; of those of one name
/// the first one only.
std::vector<std::string> FindStandardFiles();
/// The file of the standard of that name, as the folders have it.
std::optional<std::string> FindStandardFile(const std::string& name);
/// What to read where FILE may also be the name of a standard: the argument itself when it is "-"
/// or leads to something, else the file of the standard of that name. Throws `Failure`.
std::string FileOrStandard(const std::string& argument);
