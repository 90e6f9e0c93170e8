#include "VyrDftStandardServices.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_set>
#include <utility>

#include "VyrDftStandardServicesUnit.h"
#include "VyrDftStdPersistence.h"
#include "VyrDifTransientStandard.h"
#include "VyrEnvironment.h"
#include "VyrFiles.h"
#include "VyrStdServices.h"

// Finding and opening standards.

namespace {

constexpr const char* kExtension = ".xml";

// Results of `FindStandardFileInEnv` that callers compare with.
constexpr int kFound = 0;
constexpr int kBadArgument = 1;
constexpr int kNotFound = 69;

struct ShippedStandard {
  const char* name;
  const char* fileName;
};
constexpr std::array<ShippedStandard, 3> kShippedStandards = {{
    {"ISO", "ISO"},
    {"JIS", "JIS"},
    {"ASME", "ANSI-ASME"},
}};

/// One handle for each of the shipped standards, in their order, empty until it is asked for.
using ShippedHandles = std::array<VyrIDrwStandard_var, kShippedStandards.size()>;

struct SharedHandles {
  std::mutex mutex;
  ShippedHandles handles;
};

SharedHandles& Shared() {
  // Kept to the end of the process, as the standards that it holds are not needed to end it.
  static auto& shared = *new SharedHandles();
  return shared;
}

std::string WorkingDirectory() {
  std::string directory = VyrGetEnv("WOB_ODT_OUT");
  return directory.empty() ? VyrGetEnv("VyrTemp") : directory;
}

/// Whether a path that ends in a backslash and `fileName` means a file of that name, in a folder
/// that exists. It may also mean a file beside the folder whose name holds the backslash.
bool LiesInItsDirectory(const std::string& path, const std::string& fileName) {
  const std::string native = VyrNativePath(path);
  const std::size_t separator = native.rfind('/');
  return separator != std::string::npos &&
         native.compare(separator + 1, native.npos, fileName) == 0;
}

VyrUnicodeString Without(std::string text, std::string_view part) {
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at)) {
    text.erase(at, part.size());
  }
  return text;
}

VyrIDrwStandard_var OpenShipped(const ShippedStandard& standard) {
  char* found = nullptr;
  const int result = VyrDftStandardServices::FindStandardFileInEnv(standard.fileName, &found);
  const std::unique_ptr<char[]> path(found);
  if (!kDftStandardServicesUnit.Check(result == kFound, "standard file not found")) return {};
  return VyrDftStandardServices::GetStandardFromFile(path.get(), standard.name);
}

}  // namespace

int VyrDftStandardServices::FindStandardFileInEnv(const char* name, char** pathname,
                                                  unsigned char) {
  if (name == nullptr || pathname == nullptr) return kBadArgument;
  if (*pathname != nullptr) {
    VyrFatalError("AssertionFailed:!*pathname");
    return kBadArgument;
  }
  const std::string fileName = std::string(name) + kExtension;
  const std::string directory = WorkingDirectory();
  const std::string path = directory + "\\" + fileName;
  const bool isName = VyrStdServices::IsStandardName(name);
  if (isName && (directory.empty() || !LiesInItsDirectory(path, fileName))) {
    VyrSysLogError("VyrDftStandardServices: " + path + " is in no working directory; WOB_ODT_OUT " +
                   "or VyrTemp must name a folder that exists\n");
    return kNotFound;
  }
  const HRESULT copied =
      VyrStdServices::CopyStandard(name, VyrDftStdPersistence::VyrDftStdType, path.c_str());
  if (!isName || !VyrIsReadableFile(path)) return kNotFound;
  // A copy of before serves where no new one can be made: a drawing must open without its server. A
  // link is no copy; somebody put it there.
  std::error_code error;
  if (VyrFailed(copied) && std::filesystem::is_symlink(VyrNativePath(path), error)) {
    return kNotFound;
  }
  *pathname = VyrUnicodeString(path).NewNarrowCopy();
  return kFound;
}

void VyrDftStandardServices::ListStandards(VyrListValVyrUnicodeString& names, unsigned char) {
  names.clear();
  const std::unique_ptr<VyrListValVyrUnicodeString> files(
      VyrStdServices::GetStandardFiles(VyrDftStdPersistence::VyrDftStdType));
  if (!kDftStandardServicesUnit.CheckPointer(files.get())) return;
  std::unordered_set<VyrUnicodeString> known;
  for (const VyrUnicodeString& file : *files) {
    // Everywhere in the path, not only at its end: callers compare with names made the same way.
    const VyrUnicodeString name = Without(std::string(file.View()), kExtension);
    if (known.insert(name).second) names.push_back(name);
  }
}

void VyrDftStandardServices::ListOOTBStandards(VyrListValVyrUnicodeString& names) {
  names = {"ANSI-ASME", "ISO", "JIS"};
}

VyrIDrwStandard_var VyrDftStandardServices::GetOOTBStandard(const VyrUnicodeString& name, int) {
  const auto standard = std::find_if(kShippedStandards.begin(), kShippedStandards.end(),
                                     [&](const auto& shipped) { return name == shipped.name; });
  if (standard == kShippedStandards.end()) return {};
  VyrIDrwStandard_var& handle = Shared().handles[standard - kShippedStandards.begin()];
  {
    const std::scoped_lock lock(Shared().mutex);
    if (handle) return handle;
  }
  // Without the lock, since it takes time and may report to the host.
  VyrIDrwStandard_var opened = OpenShipped(*standard);
  const std::scoped_lock lock(Shared().mutex);
  if (!handle) handle = opened;
  return handle;
}

void VyrDftStandardServices::ReleaseOOTBStandards() {
  ShippedHandles released;
  const std::scoped_lock lock(Shared().mutex);
  std::swap(released, Shared().handles);
}

VyrIDrwStandard_var VyrDftStandardServices::GetStandardFromFile(const VyrUnicodeString& fileName,
                                                                const VyrUnicodeString& name) {
  const VyrVar<VyrDifTransientStandard> object(new VyrDifTransientStandard(fileName, name));
  auto standard = VyrQuery<VyrIDrwStandard>(static_cast<VyrIDrwStandard*>(object.Get()));
  if (!kDftStandardServicesUnit.CheckPointer(standard.Get())) return {};
  return standard;
}
