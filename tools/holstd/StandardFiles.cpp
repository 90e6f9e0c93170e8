#include "StandardFiles.h"

#include <algorithm>
#include <filesystem>
#include <memory>

#include "Failure.h"
#include "Format.h"
#include "OpenStandard.h"
#include "Reports.h"
#include "VyrDftStdPersistence.h"
#include "VyrFiles.h"
#include "VyrListValVyrUnicodeString.h"
#include "VyrStdServices.h"

namespace {

/// The file of the standard of that name, as the folders have it.
std::optional<std::string> FindStandardFile(const std::string& name) {
  for (const std::string& file : FindStandardFiles()) {
    if (StandardName(file) == name) return file;
  }
  return std::nullopt;
}

/// True also when one cannot be read: what reads it next tells so.
bool HaveSameContent(const std::string& a, const std::string& b) {
  std::string contentOfA;
  std::string contentOfB;
  return IsSameFile(a, b) || !VyrReadFile(a, contentOfA).empty() ||
         !VyrReadFile(b, contentOfB).empty() || contentOfA == contentOfB;
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
  const std::string folder = VyrStdServices::GetShippedFolder();
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
    const bool isOther = shipped && !HaveSameContent(*file, *shipped);
    return {*file, true, isOther ? *shipped : std::string()};
  }
  // A path was meant as one: reading it tells what is wrong with it.
  if (isThere || argument.find('/') != std::string::npos) return {argument};
  std::vector<std::string> names;
  for (const std::string& file : FindStandardFiles()) names.push_back(StandardName(file));
  throw Failure{kInvalidInput, argument, 0,
                "there is no such file, and no standard of that name" +
                    (names.empty() ? std::string() : "; there are " + Joined(names))};
}

void RefuseNameInPlace(const std::string& argument) {
  const StandardFile source = FileOrStandard(argument);
  if (!source.isNamed) return;
  throw Failure{kUndecided, argument, 0,
                "is the name of a standard; to replace its file give that, " + source.file};
}
