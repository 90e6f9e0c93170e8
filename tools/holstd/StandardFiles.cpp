#include "StandardFiles.h"

#include <filesystem>
#include <memory>

#include "Failure.h"
#include "Format.h"
#include "OpenStandard.h"
#include "Reports.h"
#include "VyrDftStdPersistence.h"
#include "VyrListValVyrUnicodeString.h"
#include "VyrStdServices.h"

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

std::optional<std::string> FindStandardFile(const std::string& name) {
  for (const std::string& file : FindStandardFiles()) {
    if (StandardName(file) == name) return file;
  }
  return std::nullopt;
}

std::string FileOrStandard(const std::string& argument) {
  std::error_code error;
  const auto status = std::filesystem::symlink_status(argument, error);
  if (argument == "-" || status.type() != std::filesystem::file_type::not_found) return argument;
  if (auto file = FindStandardFile(argument)) return *file;
  // A path was meant as one: reading it tells what is wrong with it.
  if (argument.find('/') != std::string::npos) return argument;
  std::vector<std::string> names;
  for (const std::string& file : FindStandardFiles()) names.push_back(StandardName(file));
  throw Failure{kInvalidInput, argument, 0,
                "there is no such file, and no standard of that name" +
                    (names.empty() ? std::string() : "; there are " + Joined(names))};
}
