#include <string>

#include "VyrAnnStandardXMLParser.h"
#include "VyrDrwParseParameter.h"
#include "VyrDrwParseStandard.h"
#include "VyrDrwParseStandardUnit.h"
#include "VyrFiles.h"

// Brings what was read to a format version and saves it.

namespace {

/// Versions below this have no document yet: it is composed from the parameters.
constexpr int kFirstDocumentVersion = 1;
/// As a target: the version that this release writes.
constexpr int kLatestVersion = -1;

}  // namespace

void VyrDrwParseStandard::Encode(const char* outputDirectory, VyrString& outputPath,
                                 VyrDrwParseStandardUpgradeOptions& options) {
  outputPath = VyrString();
  CreateOutput(outputDirectory, outputPath);
  EncodeToVersion(kLatestVersion, options, outputPath.CString());
}

void VyrDrwParseStandard::CreateOutput(const char* outputDirectory, VyrString& outputPath) const {
  outputPath = VyrString();
  if (decoded_ == 0 || fileName_.IsEmpty()) return;
  std::string directory;
  std::string name;
  VyrSplitPath(fileName_, directory, name);
  name = name.substr(0, name.find(".xml"));
  outputPath =
      std::string(outputDirectory == nullptr ? "." : outputDirectory) + "\\" + name + ".xml";
}

void VyrDrwParseStandard::EncodeToVersion(int targetVersion,
                                          VyrDrwParseStandardUpgradeOptions& options,
                                          const char* path) {
  static_cast<void>(EncodeToFile(path, targetVersion, options));
}

HRESULT VyrDrwParseStandard::EncodeToFile(const char* path, int targetVersion,
                                          VyrDrwParseStandardUpgradeOptions& options) {
  if (decoded_ == 0) {
    if (problem_.IsEmpty()) problem_ = {0, "no standard was read; there is nothing to write"};
    return E_FAIL;
  }
  problem_ = {};
  UpgradeVersion(targetVersion, options);
  if (!kParseStandardUnit.CheckPointer(document_.get())) return E_UNEXPECTED;
  const HRESULT result = document_->SaveInFile(path);
  if (!kParseStandardUnit.Check(VyrSucceeded(result), "Saved failed")) {
    problem_ = document_->GetProblem();
  }
  return result;
}

void VyrDrwParseStandard::UpgradeVersion(int, VyrDrwParseStandardUpgradeOptions&) {
  if (version_ < kFirstDocumentVersion && !BuildVersion0Document()) return;
  if (!kParseStandardUnit.CheckPointer(document_.get())) return;
}

bool VyrDrwParseStandard::BuildVersion0Document() {
  if (!kParseStandardUnit.Check(document_ == nullptr, "a document is already there")) return false;
  document_ = std::make_unique<VyrAnnStandardXMLParser>();
  if (document_->DecodeXML(ComposeVersion0Text(), 0) == 0) return true;
  // Half a standard must never be saved.
  problem_ = document_->GetProblem();
  document_.reset();
  return false;
}
