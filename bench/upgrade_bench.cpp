#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "Ratios.h"
#include "VyrAnnStandardScript.h"
#include "VyrAnnStandardXMLParser.h"
#include "VyrDrwParseStandard.h"

// A text standard of the old generation brought to the current version, beside what reading and
// writing the result costs.

namespace {

constexpr const char* kTextStandard = HOL_STANDARDS "/legacy/ISO.txt";
constexpr int kCurrent = -1;
constexpr int kFirstXMLVersion = 1;

std::string Place(const char* name) {
  const auto folder = std::filesystem::temp_directory_path() / "holstandard-bench";
  std::filesystem::create_directories(folder);
  return folder / name;
}

bool Convert(const std::string& target, int version) {
  VyrDrwParseStandard standard(kTextStandard);
  VyrDrwParseStandardUpgradeOptions options;
  return standard.DecodeText() >= 0 && standard.EncodeToFile(target.c_str(), version, options) >= 0;
}

void ConvertTextToCurrent(benchmark::State& state, const std::string& target) {
  for (auto _ : state) {
    if (!Convert(target, kCurrent)) state.SkipWithError("not converted");
  }
}

void DecodeAndSave(benchmark::State& state, const std::string& path) {
  for (auto _ : state) {
    VyrAnnStandardXMLParser document;
    if (document.DecodeXML(path, 1) != 0 || document.SaveInFile(path + ".saved") < 0) {
      state.SkipWithError("not decoded and saved");
    }
  }
  ::unlink((path + ".saved").c_str());
}

/// The chain from version 1 to the current one, without reading or writing.
void ChainAlone(benchmark::State& state, const std::string& path) {
  for (auto _ : state) {
    VyrDrwParseStandard standard(path);
    standard.Decode();
    VyrDrwParseStandardUpgradeOptions options;
    const auto begin = std::chrono::steady_clock::now();
    if (standard.Upgrade(kCurrent, options) < 0) state.SkipWithError("not upgraded");
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    state.SetIterationTime(taken.count());
  }
}

void ParseByLibxml2(benchmark::State& state, const std::string& path) {
  for (auto _ : state) {
    xmlDoc* document = xmlReadFile(path.c_str(), nullptr, XML_PARSE_HUGE);
    if (document == nullptr) state.SkipWithError("not parsed");
    xmlFreeDoc(document);
  }
}

/// Path commands that the tables of the chain hold for ISO; what the code of the steps sends comes
/// on top, so that the rate told is a lower bound.
int CountCommands() {
  int count = 0;
  const auto folder = std::filesystem::path(HOL_STANDARDS).parent_path() / "src/conversion/tables";
  for (const auto& file : std::filesystem::directory_iterator(folder)) {
    const std::string name = file.path().filename();
    const bool isLeftOut = name == "line-font.txt" || name.find("shipped") != std::string::npos;
    if (isLeftOut) continue;
    std::ifstream stream(file.path());
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    const VyrAnnStandardScript script(text);
    for (const auto& command : script.GetCommands()) count += command.AppliesTo("ISO") ? 1 : 0;
  }
  return count;
}

[[maybe_unused]] const bool registered = [] {
  const std::string first = Place("ISO-1.xml");
  const std::string current = Place("ISO-current.xml");
  const std::string target = Place("ISO-target.xml");
  if (!Convert(first, kFirstXMLVersion) || !Convert(current, kCurrent)) {
    std::fprintf(stderr, "hol_bench: the shipped ISO standard cannot be converted\n");
    std::exit(3);
  }
  const auto add = [](const char* name, auto run) {
    return benchmark::RegisterBenchmark(name, run)->Unit(benchmark::kMillisecond);
  };
  add("text_to_current", [=](benchmark::State& state) {
    ConvertTextToCurrent(state, target);
  })->UseRealTime();
  add("decode_and_save_current", [=](benchmark::State& state) {
    DecodeAndSave(state, current);
  })->UseRealTime();
  add("chain_alone", [=](benchmark::State& state) { ChainAlone(state, first); })->UseManualTime();
  add("libxml2_parse_current", [=](benchmark::State& state) {
    ParseByLibxml2(state, current);
  })->UseRealTime();
  Ratios().push_back({"text standard to current / decode and save the result", "text_to_current",
                      "decode_and_save_current", 4.0});
  Ratios().push_back(
      {"chain alone / libxml2 parse of the result", "chain_alone", "libxml2_parse_current", 0});
  constexpr double promised = 500'000;  // path commands a second
  Ratios().push_back({"seconds for 500000 path commands of the chain", "chain_alone", "", 1.0,
                      1000.0 * CountCommands() / promised});
  return true;
}();

}  // namespace
