#include "VyrDftStdPersistence.h"

#include <algorithm>
#include <array>
#include <atomic>

#include "ReleaseTable.h"
#include "VyrDiagnostics.h"

namespace {

constexpr VyrSourceUnit kUnit("VyrDftStdPersistence");

}  // namespace

const char* const VyrDftStdPersistence::VyrDftStdType = "drafting";
const char* const VyrDftStdPersistence::VyrDftStdExtension = "xml";
const char* const VyrDftStdPersistence::VyrDftStdNodeSeparator = ".";
const char* const VyrDftStdPersistence::VyrDftStdNodeGeneral = "General";
const char* const VyrDftStdPersistence::VyrDftStdNodeDress = "DressUp";
const char* const VyrDftStdPersistence::VyrDftStdNodeDimension = "Dimension";
const char* const VyrDftStdPersistence::VyrDftStdNodeTolerance = "ToleranceFormats";
const char* const VyrDftStdPersistence::VyrDftStdNodeValue = "ValueFormats";
const char* const VyrDftStdPersistence::VyrDftStdNodeThickness = "LineThickness";
const char* const VyrDftStdPersistence::VyrDftStdNodeLinetypes = "LineTypes";
const char* const VyrDftStdPersistence::VyrDftStdNodeStyles = "Styles";

int VyrDftStdPersistence::GetCurrentVersion() {
  return kCurrentVersion;
}

int VyrDftStdPersistence::GetVersionFromRelease(int release, int) {
  const auto* const range = std::find_if(
      kReleaseVersions.begin(), kReleaseVersions.end(),
      [=](const ReleaseVersion& row) { return row.first <= release && release <= row.last; });
  return range == kReleaseVersions.end() ? -1 : range->version;
}

int VyrDftStdPersistence::CheckExplicitVersionNumberIsValid(int version) {
  // Set before the check: what that reports may bring the host back here.
  static std::atomic_flag tableIsChecked;
  if (!tableIsChecked.test_and_set()) CheckExplicitVersions(kExplicitVersions, kUnit);
  return std::find(kExplicitVersions.begin(), kExplicitVersions.end(), version) !=
                 kExplicitVersions.end()
             ? 1
             : 0;
}

HRESULT VyrDftStdPersistence::GetReferenceNodeForRelease(int release, VyrUnicodeString& nodePath,
                                                         NodeStatus& status) {
  const auto* const row =
      std::find_if(kReferenceNodes.begin(), kReferenceNodes.end(),
                   [=](const ReferenceNode& node) { return node.release == release; });
  if (row == kReferenceNodes.end()) {
    kUnit.Raise("Invalid input value!");
    return E_FAIL;
  }
  nodePath = row->path;
  status = row->status;
  return S_OK;
}

VyrUnicodeString VyrDftStdPersistence::GetVersionNodePath() {
  return "Version";
}

void CheckExplicitVersions(std::span<const int> versions, const VyrSourceUnit& unit) {
  const int firstExplicit = VyrDftStdPersistence::GetVersionFromRelease(20);
  bool isCurrentFound = false;
  for (const int version : versions) {
    if (version == kCurrentVersion) {
      isCurrentFound = true;
    } else if (version < firstExplicit) {
      unit.Raise("Accepted version is < R20 version?!");
    } else if (version > kCurrentVersion) {
      unit.Raise("Accepted version is > current version?!");
    }
  }
  if (!unit.Check(isCurrentFound, "Current version not found?!")) return;
}
