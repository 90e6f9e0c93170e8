#include "VyrShippedStandards.h"

#include <dlfcn.h>

#include <filesystem>

namespace {

namespace fs = std::filesystem;

constexpr const char* kBelowPrefix = "share/HolStandardInfra/standards";
// "lib/TRIPLET" is two folders below the prefix, "build/lib" or "build/bin" one.
constexpr int kMostFoldersAbove = 3;

fs::path ModuleFolder() {
  Dl_info module{};
  std::error_code error;
  fs::path file;
  if (::dladdr(reinterpret_cast<const void*>(&VyrShippedStandardsFolder), &module) != 0) {
    file = fs::canonical(module.dli_fname, error);
  }
  // A program that the shell found along PATH is known by a name that leads nowhere.
  if (file.empty()) file = fs::read_symlink("/proc/self/exe", error);
  return file.parent_path();
}

}  // namespace

std::string VyrShippedStandardsFolderFrom(const std::string& moduleFolder) {
  fs::path folder = moduleFolder;
  std::error_code error;
  for (int above = 0; above <= kMostFoldersAbove; ++above) {
    const fs::path standards = folder / kBelowPrefix;
    if (fs::is_directory(standards, error)) return standards;
    folder = folder.parent_path();
  }
  return {};
}

std::string VyrShippedStandardsFolder() {
  // Once: the name of a module may be relative to the folder in which the process was started.
  static const auto& module = *new fs::path(ModuleFolder());
  return VyrShippedStandardsFolderFrom(module);
}
