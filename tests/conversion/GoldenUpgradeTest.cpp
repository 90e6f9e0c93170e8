#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>
#include <vector>

#include "UpgradeRun.h"

// What a step adds to, changes in and deletes from a shipped standard, as tests/golden lists it.

namespace {

using testing::IsEmpty;

struct GoldenStep {
  const char* parent;
  int before;
  int version;
};

void PrintTo(const GoldenStep& step, std::ostream* out) {
  *out << step.parent << " to " << step.version;
}

class GoldenUpgrade : public testing::TestWithParam<GoldenStep> {};

std::vector<GoldenStep> Steps() {
  std::vector<GoldenStep> steps;
  for (const char* parent : {"ISO", "ANSI"}) {
    for (std::size_t i = 1; i < std::size(kVersions); ++i) {
      // The uses of symbols are shown by tests of their own.
      if (kVersions[i] == 180) continue;
      steps.push_back({parent, kVersions[i - 1], kVersions[i]});
    }
  }
  return steps;
}

std::string StepName(const testing::TestParamInfo<GoldenStep>& info) {
  return std::string(info.param.parent) + std::to_string(info.param.version);
}

INSTANTIATE_TEST_SUITE_P(Steps, GoldenUpgrade, testing::ValuesIn(Steps()), StepName);

/// Inside of the default content: literals, fields and what styles, line types and patterns hold.
bool IsInsideDefaultContent(const std::string& line) {
  static const std::regex inside(
      R"(. (Enum\.\w+\.|TypeDef\.\w+\.|Root\.Styles\.\w+\.Default\.|Root\.LineTypes\.font |)"
      R"(Root\.LineTypes\.LineType\d+\.|Root\.Patterns\.\w+\.).*)");
  // A text of many lines stands in one change.
  return std::regex_match(line.substr(0, line.find('\n')), inside);
}

/// Pictures, and what only the tables of symbols and patterns say, are no matter of a step.
bool IsData(const std::string& line, int version) {
  const bool isSymbol = line.find(" Root.EngineeringSymbols.EngineeringSymbol") == 1;
  const auto has = [&](const char* text) { return line.find(text) != std::string::npos; };
  if (isSymbol && (has(".Icon16x16") || has(".Icon22x22"))) return true;
  if (version == 30 && IsInsideDefaultContent(line)) return true;
  if (version == 170 && line.find(" Root.Patterns.") == 1) return true;
  return version == 220 && isSymbol &&
         (has(".Charcode") || has(".ToleranceValue") || has(".DatumReference") || has(".Notes"));
}

std::vector<std::string> ReadGolden(const GoldenStep& step) {
  const std::string number = std::to_string(step.version);
  const std::string name = "to-" + std::string(3 - number.size(), '0') + number + ".txt";
  std::ifstream file(std::filesystem::path(HOL_STANDARDS).parent_path() / "tests/golden" /
                     step.parent / name);
  EXPECT_TRUE(file) << name;
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

std::vector<std::string> Without(std::vector<std::string> lines, std::vector<std::string> others) {
  std::sort(lines.begin(), lines.end());
  std::sort(others.begin(), others.end());
  std::vector<std::string> rest;
  std::set_difference(lines.begin(), lines.end(), others.begin(), others.end(),
                      std::back_inserter(rest));
  return rest;
}

TEST_P(GoldenUpgrade, AStepAddsChangesAndDeletesExactlyWhatItsGoldenDocumentLists) {
  const GoldenStep step = GetParam();
  UpgradeRun run({step.parent, true}, step.before);
  const auto before = CopyOf(run.Document());
  EXPECT_THAT(run.Step(step.version), IsEmpty());
  std::vector<std::string> lines = ChangeLines(*before, run.Document());
  std::erase_if(lines, [&](const std::string& line) { return IsData(line, step.version); });
  const std::vector<std::string> golden = ReadGolden(step);
  EXPECT_THAT(Without(golden, lines), IsEmpty()) << "not done";
  EXPECT_THAT(Without(lines, golden), IsEmpty()) << "not listed";
}

}  // namespace
