#include "StandardFiles.h"

#include <algorithm>
#include <filesystem>
#include <memory>

#include "Failure.h"
#include "Format.h"
#include "OpenStandard.h"
#include "Reports.h"
#include "VyrDftStdPersistence.h"
#include "VyrEnvironment.h"
#include "VyrListValVyrUnicodeString.h"
#include "VyrStdServices.h"

namespace {

/// Folders of the site come first in the list, that of the shipped standards last. Empty when there
/// is none.
std::string ShippedFolder() {
  std::size_t ofSite = 0;
  const std::string path = VyrGetEnv("VYR_STANDARD_PATH");
  for (std::size_t begin = 0; begin < path.size();) {
    const std::size_t end = std::min(path.find(':', begin), path.size());
    if (end > begin) ++ofSite;
    begin = end + 1;
  }
  const std::vector<std::string> folders = VyrStdServices::GetFolders();
  return folders.size() > ofSite ? folders.back() : std::string();
}

/// The file of the standard of that name, as the folders have it.
std::optional<std::string> FindStandardFile(const std::string& name) {
  for (const std::string& file : FindStandardFiles()) {
    if (StandardName(file) == name) return file;
  }
  return std::nullopt;
}

}  // namespace

std::vector<std::string> FindStandardFiles() {
  const UnshownReports unshown;
  const std::unique_ptr<VyrListValVyrUnicodeString> found(
      VyrStdServices::GetStandardFiles(VyrDftStdPersistence::VyrDftStdType));
  std::vector<std::string> files;
  if (found) {
    for (const VyrUnicodeString& file : *found) files.emplace_back(file.View());
  }
  return files;
}

std::optional<std::string> FindShippedFile(const std::string& name) {
  const std::string folder = ShippedFolder();
  if (folder.empty()) return std::nullopt;
  std::string file = folder + "/" + name + ".xml";
  std::error_code error;
  if (!std::filesystem::exists(file, error)) return std::nullopt;
  return file;
}

StandardFile FileOrStandard(const std::string& argument) {
  std::error_code error;
  const auto status = std::filesystem::symlink_status(argument, error);
  const bool isThere = status.type() != std::filesystem::file_type::not_found;
  if (argument == "-") return {argument};
  // No standard is a folder: one of that name in the working folder means nothing.
  if (isThere && !std::filesystem::is_directory(argument, error)) return {argument};
  if (const auto file = FindStandardFile(argument)) {
    const auto shipped = FindShippedFile(argument);
    return {*file, true, shipped && !IsSameFile(*file, *shipped)};
  }
  // A path was meant as one: reading it tells what is wrong with it.
  if (isThere || argument.find('/') != std::string::npos) return {argument};
  std::vector<std::string> names;
  for (const std::string& file : FindStandardFiles()) names.push_back(StandardName(file));
  throw Failure{kInvalidInput, argument, 0,
                "there is no such file, and no standard of that name" +
                    (names.empty() ? std::string() : "; there are " + Joined(names))};
}
