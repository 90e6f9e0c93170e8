#include "VyrStdServices.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>
#include <optional>
#include <unordered_set>
#include <utility>

#include "VyrDiagnostics.h"
#include "VyrEnvironment.h"
#include "VyrFileProblem.h"
#include "VyrFiles.h"
#include "VyrShippedStandards.h"
#include "VyrSystemText.h"
#include "VyrUtf8.h"
#include "VyrWithinMemory.h"

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kDraftingType = "drafting";
constexpr std::string_view kExtension = ".xml";

/// What the host has set; empty: the default.
std::vector<std::string>& HostFolders() {
  // Kept to the end of the process: static objects of a host may open standards in their end.
  static auto& folders = *new std::vector<std::string>();
  return folders;
}

bool IsControlCharacter(char character) {
  return static_cast<unsigned char>(character) < 0x20 || character == 0x7F;
}

void Report(std::string_view what, std::string_view why) {
  std::string line = "VyrStdServices: ";
  line.append(what).append(" ").append(why);
  VyrSysLogError(line + "\n");
}

HRESULT Failed(std::string_view what, std::string_view why) {
  Report(what, why);
  return E_FAIL;
}

fs::path FullPath(const std::string& folder) {
  std::error_code error;
  const fs::path native = VyrNativePath(folder);
  const fs::path full = fs::absolute(native, error);
  return error ? native : full;
}

/// Name of the standard that a file of this name holds; empty when it is no standard's name.
std::string_view StandardNameOf(std::string_view fileName) {
  if (!fileName.ends_with(kExtension)) return {};
  const std::string_view name = fileName.substr(0, fileName.size() - kExtension.size());
  return VyrStdServices::IsStandardName(name) ? name : std::string_view();
}

/// Where a standard lies. An entry of its name decides whatever it is: a site's standard that is
/// broken must not silently give way to the shipped one.
struct Source {
  fs::path path;         ///< empty: in none of the folders
  std::string problems;  ///< folders that could not be searched, and why
};

Source FindSource(const std::string& name) {
  Source source;
  for (const std::string& folder : VyrStdServices::GetFolders()) {
    const fs::path path = FullPath(folder) / (name + std::string(kExtension));
    std::error_code error;
    const fs::file_status status = fs::symlink_status(path, error);
    if (fs::exists(status)) {
      source.path = path;
      break;
    }
    if (status.type() != fs::file_type::none || error == std::errc::filename_too_long) continue;
    source.problems += source.problems.empty() ? "" : ", ";
    source.problems += folder + " cannot be searched: " + VyrSystemText(error.value());
  }
  return source;
}

HRESULT NoSuchStandard(std::string_view name, const std::string& problems) {
  std::string why = "is in none of the standard folders";
  if (!problems.empty()) why += " (" + problems + ")";
  return Failed(name, why);
}

/// Content and time of a file.
struct Copy {
  std::string content;
  std::int64_t time = 0;
};

/// What went wrong, or nothing. A change during the reading shows in the older time and is fetched
/// by the next copy.
std::string ReadCopy(const std::string& path, Copy& copy) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  // Reading a pipe would keep the caller waiting.
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    return VyrNoRegularFile(fs::is_directory(status), false);
  }
  const std::optional<std::int64_t> time = VyrModificationTime(path);
  if (std::string problem = VyrReadFile(path, copy.content); !problem.empty()) return problem;
  if (!time) return "cannot be read: its time is unknown";
  copy.time = *time;
  return {};
}

/// Makes `target`, a native path, the same as `source`; what went wrong, or nothing.
std::string Update(const std::string& target, const Copy& source) {
  std::error_code error;
  const bool isLink = fs::is_symlink(fs::symlink_status(target, error));
  const fs::file_status status = fs::status(target, error);
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    return VyrNoRegularFile(fs::is_directory(status), false);
  }
  Copy old;
  const bool hasContent =
      fs::exists(status) && ReadCopy(target, old).empty() && old.content == source.content;
  if (hasContent && old.time == source.time) return {};
  if (isLink) return "is a symbolic link; what it leads to is not replaced";
  return hasContent ? VyrSetModificationTime(target, source.time)
                    : VyrSaveFile(target, source.content, source.time);
}

HRESULT CopyNamed(const char* name, std::string_view type, const char* targetPath) {
  if (!VyrStdServices::IsStandardName(name)) {
    Report("\"" + std::string(name) + "\"", "is no name of a standard");
    return E_INVALIDARG;
  }
  if (type != kDraftingType) {
    return Failed(name, "is not found: there are no standards of the type " + std::string(type));
  }
  const Source source = FindSource(name);
  if (source.path.empty()) return NoSuchStandard(name, source.problems);
  if (!source.problems.empty()) Report(name, "is taken from elsewhere: " + source.problems);
  Copy copy;
  if (const std::string problem = ReadCopy(source.path, copy); !problem.empty()) {
    return Failed(source.path.string(), problem);
  }
  const std::string problem = Update(VyrNativePath(targetPath), copy);
  return problem.empty() ? S_OK : Failed(targetPath, problem);
}

}  // namespace

VyrListValVyrUnicodeString* VyrStdServices::GetStandardFiles(const char* type) {
  if (type == nullptr) return nullptr;
  auto files = std::make_unique<VyrListValVyrUnicodeString>();
  if (type != kDraftingType) return files.release();
  std::unordered_set<std::string> known;
  for (const std::string& folder : GetFolders()) {
    const fs::path full = FullPath(folder);
    std::vector<std::string> entries;
    std::error_code error;
    errno = 0;
    const bool isRead = VyrListDirectory(full.string(), entries);
    if (const int reason = errno; !isRead && reason != ENOENT) {
      Report(folder, std::string("cannot be read: ") + VyrSystemText(reason));
    }
    for (const std::string& entry : entries) {
      const std::string_view name = StandardNameOf(entry);
      if (name.empty() || !known.emplace(name).second) continue;
      const fs::path file = full / entry;
      if (fs::is_regular_file(file, error)) files->emplace_back(file.string());
    }
  }
  return files.release();
}

HRESULT VyrStdServices::CopyStandard(const char* name, const char* type, const char* targetPath) {
  if (name == nullptr || type == nullptr || targetPath == nullptr || *targetPath == '\0') {
    return E_INVALIDARG;
  }
  return VyrWithinMemory([&] { return CopyNamed(name, type, targetPath); },
                         [] {
                           VyrSysLogError("VyrStdServices: out of memory, no standard is copied\n");
                           return E_FAIL;
                         });
}

bool VyrStdServices::IsStandardName(std::string_view name) {
  return !name.empty() && name != "." && name.find("..") == std::string_view::npos &&
         name.find_first_of("/\\") == std::string_view::npos &&
         std::none_of(name.begin(), name.end(), IsControlCharacter) &&
         VyrFindInvalidUtf8(name) == std::string_view::npos;
}

std::vector<std::string> VyrStdServices::GetFolders() {
  if (!HostFolders().empty()) return HostFolders();
  std::vector<std::string> folders;
  const std::string path = VyrGetEnv("VYR_STANDARD_PATH");
  for (std::size_t begin = 0; begin < path.size();) {
    const std::size_t end = std::min(path.find(':', begin), path.size());
    if (end > begin) folders.push_back(path.substr(begin, end - begin));
    begin = end + 1;
  }
  if (std::string shipped = GetShippedFolder(); !shipped.empty()) {
    folders.push_back(std::move(shipped));
  }
  return folders;
}

std::string VyrStdServices::GetShippedFolder() {
  return VyrShippedStandardsFolder();
}

void VyrStdServices::SetFolders(std::vector<std::string> folders) {
  std::erase(folders, std::string());
  HostFolders() = std::move(folders);
}
