// Any XML standard, upgraded to any version: the first line of the input is the target version,
// with a "+" before it for a shipped standard; the rest is the standard.

#include <array>
#include <charconv>
#include <set>
#include <string>
#include <string_view>

#include "FuzzTarget.h"
#include "MemoryFile.h"
#include "RoundTrip.h"
#include "VyrDrwParseStandard.h"

namespace {

int TargetVersion(std::string_view line) {
  int version = -1;
  std::from_chars(line.data(), line.data() + line.size(), version);
  return version;
}

/// The versions that a standard passes on its way, each of them when it has at most the one before.
/// What has 3 to 29 counts as one of 30.
constexpr std::array kVersions = {1,   2,   30,  40,  50,  60,  70,  80,  90,  100, 110,
                                  120, 130, 140, 150, 160, 170, 180, 190, 200, 210, 220};
/// From here on a standard says its version; before, it is dated by what it holds.
constexpr int kFirstWritten = 110;

int ExpectedVersion(int before, int target) {
  int expected = before;
  for (std::size_t i = 1; i < kVersions.size(); ++i) {
    const bool isWanted = target == -1 || target >= kVersions[i];
    if (before <= kVersions[i - 1] && isWanted) expected = kVersions[i];
  }
  return expected;
}

/// A version may be written in other ways ("+210", "210 mm"); it is read, but no step replaces it.
bool IsVersionPlain(VyrDrwParseStandard& standard) {
  const VyrUnicodeString text = standard.GetDocument().GetValueWithPath("Root.Version");
  return text.IsEmpty() || text == std::to_string(standard.GetVersion());
}

void RequireVersion(int version, int before, int target) {
  const int expected = ExpectedVersion(before, target);
  if (expected >= kFirstWritten) {
    Require(version == expected, "an upgraded standard has the version that was asked for");
  } else {
    Require(version >= before, "no upgrade makes a standard older");
    Require(version <= expected, "an upgrade goes no further than was asked for");
  }
}

/// A standard that says to be old may hold already what a step adds: the step defines it a second
/// time, and the second definition stays empty, which no file can say.
bool HasDefinitionTwice(VyrAnnStandardXMLParser& document) {
  for (const char* top : {"Enum", "TypeDef"}) {
    std::set<std::string_view> names;
    const VyrAnnStandardXMLNode_var definitions(document.GetNodeWithPath(top));
    for (const VyrAnnStandardXMLNode_var& definition : definitions->GetNodes()) {
      if (!names.insert(definition->GetNodeName().View()).second) return true;
    }
  }
  return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  SilenceDiagnostics();
  std::string_view text = InputText(data, size);
  std::string_view line = CutLine(text);
  VyrDrwParseStandardUpgradeOptions options;
  options.OOTBStandard = line.starts_with('+') ? 1 : 0;
  if (line.starts_with('+')) line.remove_prefix(1);
  const MemoryFile file(text);
  VyrDrwParseStandard standard(file.Path());
  standard.Decode();
  const int before = standard.GetVersion();
  const int target = TargetVersion(line);
  const bool isVersionPlain = IsVersionPlain(standard);
  if (standard.Upgrade(target, options) < 0) {
    Require(!standard.GetProblem().IsEmpty(), "a refusal says why");
    return 0;
  }
  VyrAnnStandardXMLParser& document = standard.GetDocument();
  if (isVersionPlain) RequireVersion(document.GetVersion(), before, target);
  const VyrUnicodeString saved = Saved(document);
  if (saved.IsEmpty()) {
    Require(HasDefinitionTwice(document), "what was read and upgraded can be saved");
    return 0;
  }
  RequireSameAgain(document, saved);
  return 0;
}
