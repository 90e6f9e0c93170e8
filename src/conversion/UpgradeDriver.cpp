#include <array>
#include <string>
#include <utility>

#include "ConversionNotes.h"
#include "UpgradeOmissions.h"
#include "UpgradeStep.h"
#include "Version0Groups.h"
#include "VyrAnnStandardXMLParser.h"
#include "VyrDrwParseParameter.h"
#include "VyrDrwParseStandard.h"
#include "VyrDrwParseStandardUnit.h"
#include "VyrFiles.h"
#include "VyrWithinMemory.h"

// Brings what was read to a format version and saves it.

namespace {

using Omission = VyrDrwUpgradeOmission;

/// Versions below this have no document yet: it is composed from the parameters.
constexpr int kFirstDocumentVersion = 1;
/// As a target: the version that this release writes.
constexpr int kLatestVersion = -1;

}  // namespace

void VyrDrwParseStandard::Encode(const char* outputDirectory, VyrString& outputPath,
                                 VyrDrwParseStandardUpgradeOptions& options) {
  static_cast<void>(VyrWithinMemory(problem_, [&] {
    outputPath = VyrString();
    CreateOutput(outputDirectory, outputPath);
    EncodeToVersion(kLatestVersion, options, outputPath.CString());
    return S_OK;
  }));
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
  if (decoded_ == 0) return;
  // Whatever the upgrade could not do, what was read is saved.
  static_cast<void>(Upgrade(targetVersion, options));
  const VyrProblem problem = problem_;
  if (VyrSucceeded(SaveToFile(path))) problem_ = problem;
}

HRESULT VyrDrwParseStandard::EncodeToFile(const char* path, int targetVersion,
                                          VyrDrwParseStandardUpgradeOptions& options) {
  const HRESULT result = Upgrade(targetVersion, options);
  return VyrFailed(result) ? result : SaveToFile(path);
}

HRESULT VyrDrwParseStandard::Upgrade(int targetVersion, VyrDrwParseStandardUpgradeOptions& options,
                                     const StepObserver& afterStep) {
  if (decoded_ == 0) {
    return VyrWithinMemory(problem_, [this] {
      if (problem_.IsEmpty()) problem_ = {0, "no standard was read; there is nothing to write"};
      return E_FAIL;
    });
  }
  problem_ = {};
  omissions_->Clear();
  const auto upgrade = [&] {
    if (UpgradeVersion(targetVersion, options, afterStep)) {
      const VyrAnnStandardXMLNode_var dimension(document_->GetNodeWithPath("Root.Dimension"));
      AddNotesOnParameters(parameters_, dimension.Get(), notes_);
      return S_OK;
    }
    if (problem_.IsEmpty()) {
      problem_ = {0, "the version that the upgrade starts from cannot be told"};
    }
    return E_UNEXPECTED;
  };
  return VyrWithinMemory(upgrade, [this] { return RefuseForMemory(); });
}

HRESULT VyrDrwParseStandard::SaveToFile(const char* path) {
  // What could not be saved for want of memory may be, later.
  return VyrWithinMemory(problem_, [&] {
    if (!kParseStandardUnit.CheckPointer(document_.get())) return E_UNEXPECTED;
    const HRESULT result = document_->SaveInFile(path);
    problem_ = kParseStandardUnit.Check(VyrSucceeded(result), "Saved failed")
                   ? VyrProblem{}
                   : document_->GetProblem();
    return result;
  });
}

/// False when the chain could not be begun.
bool VyrDrwParseStandard::UpgradeVersion(int targetVersion,
                                         VyrDrwParseStandardUpgradeOptions& options,
                                         const StepObserver& afterStep) {
  if (version_ < kFirstDocumentVersion) {
    if (!BuildVersion0Document()) return false;
    if (afterStep) afterStep("BuildDocument", kFirstDocumentVersion, *document_);
  }
  if (!kParseStandardUnit.CheckPointer(document_.get())) return false;
  for (const UpgradeStep& step : UpgradeSteps()) {
    // Two independent gates: a target between two versions runs all steps up to it.
    const bool isWanted = targetVersion == kLatestVersion || targetVersion >= step.version;
    if (version_ >= step.sourceBelow || !isWanted) continue;
    omissions_->BeginStep();
    (this->*step.operation)(step, options);
    omissions_->EndStep();
    if (afterStep) afterStep(step.name, step.version, *document_);
  }
  return true;
}

bool VyrDrwParseStandard::IsIsoOrJis() const {
  return parentStandard_ == "ISO" || parentStandard_ == "JIS";
}

bool VyrDrwParseStandard::IsAnsiOrAsme() const {
  return parentStandard_ == "ANSI" || parentStandard_ == "ASME";
}

/// Said wherever a step from 120 on makes a choice that depends on the parent standard.
void VyrDrwParseStandard::ReportUnknownParent() const {
  if (IsIsoOrJis() || IsAnsiOrAsme()) return;
  kParseStandardUnit.Raise("Unknown parent standard!");
  omissions_->Add({Omission::UnknownParent, Omission::ParentContentKept, {}, {}, parentStandard_});
}

std::span<const VyrDrwParseStandard::UpgradeStep> VyrDrwParseStandard::UpgradeSteps() {
  using Standard = VyrDrwParseStandard;
  // A standard whose version is 3 to 29 counts as past the step to 30: none was ever released, and
  // sites have marked their own files so.
  static constexpr std::array<UpgradeStep, 21> steps = {{
      {"UpgradeTo2", 2, 2, &Standard::UpgradeTo2},
      {"UpgradeTo30", 3, 30, &Standard::UpgradeTo30},
      {"UpgradeTo40", 31, 40, &Standard::UpgradeTo40},
      {"UpgradeTo50", 41, 50, &Standard::UpgradeTo50},
      {"UpgradeTo60", 51, 60, &Standard::UpgradeTo60},
      {"Migrate14To15", 61, 70, &Standard::Migrate14To15},
      {"Migrate15To16n201", 71, 80, &Standard::Migrate15To16n201},
      {"Migrate16To17n1X", 81, 90, &Standard::Migrate16To17n1X},
      {"Migrate17To18n1X1", 91, 100, &Standard::Migrate17To18n1X1},
      {"Migrate18To20n208", 101, 110, &Standard::Migrate18To20n208},
      {"Migrate20To21n209", 111, 120, &Standard::Migrate20To21n209},
      {"Migrate209To21n210", 121, 130, &Standard::Migrate209To21n210},
      {"Migrate210To21n211", 131, 140, &Standard::Migrate210To21n211},
      {"Migrate211To23n213", 141, 150, &Standard::Migrate211To23n213},
      {"Migrate213To23n214", 151, 160, &Standard::Migrate213To23n214},
      {"Migrate214To24n215", 161, 170, &Standard::Migrate214To24n215},
      {"Migrate215To24n216", 171, 180, &Standard::Migrate215To24n216},
      {"Migrate216To25n417", 181, 190, &Standard::Migrate216To25n417},
      {"Migrate417To27n419", 191, 200, &Standard::Migrate417To27n419},
      {"Migrate419To28n420", 201, 210, &Standard::Migrate419To28n420},
      {"Migrate420To29n421", 211, 220, &Standard::Migrate420To29n421},
  }};
  static_assert(
      [] {
        for (std::size_t i = 1; i < steps.size(); ++i) {
          if (steps[i].sourceBelow != steps[i - 1].version + 1) return false;
        }
        return true;
      }(),
      "the versions of the steps rise without a gap");
  return steps;
}

bool VyrDrwParseStandard::BuildVersion0Document() {
  if (!kParseStandardUnit.Check(document_ == nullptr, "a document is already there")) return false;
  document_ = std::make_unique<VyrAnnStandardXMLParser>();
  Parameters groups = TakeGroups(parameters_);
  if (document_->DecodeXML(ComposeVersion0Text(), 0) != 0) {
    problem_ = document_->GetProblem();
  } else if (AppendGroups(std::move(groups), *document_, problem_)) {
    return true;
  }
  // Half a standard must never be saved, nor composed of the parameters that are left.
  document_.reset();
  parameters_.clear();
  decoded_ = 0;
  return false;
}
