// Any text, read as a text standard of the old generation: what is accepted is brought to the
// current version, is consistent there, and can be saved and read.

#include "FuzzTarget.h"
#include "MemoryFile.h"
#include "RoundTrip.h"
#include "VyrDrwParseStandard.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  SilenceDiagnostics();
  const MemoryFile file(InputText(data, size));
  VyrDrwParseStandard standard(file.Path());
  if (standard.DecodeText() < 0) {
    Require(!standard.GetProblem().IsEmpty(), "a refusal says why");
    const auto& faults = standard.GetTextFaults();
    Require(
        !faults.empty() && faults.size() <= 20 && standard.GetNumOfTextFaults() >= faults.size(),
        "the first faults are told, and how many there are");
    Require(faults.front().text == standard.GetProblem().text, "the first one is the problem");
    return 0;
  }
  VyrDrwParseStandardUpgradeOptions options;
  Require(standard.Upgrade(-1, options) >= 0, "a text standard that was read can be upgraded");
  VyrAnnStandardXMLParser& document = standard.GetDocument();
  Require(document.GetVersion() == VyrDrwParseStandard::GetCurrentVersion(),
          "an upgraded standard is of the current version");
  RequireSameAgain(document, Saved(document));
  return 0;
}
