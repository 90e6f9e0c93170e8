#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include <string>
#include <unordered_map>
#include <vector>

#include "Ratios.h"
#include "SampleDocuments.h"
#include "VyrAnnStandardXMLParser.h"
#include "VyrDftStandardServices.h"

// A standard as drafting objects see it: opened once, then asked for the same values over and over.

namespace {

using ValueType = VyrAnnStandardXMLValue::Type;

/// The paths of parameters of dimensions and of default styles that are of one of two types: what
/// a standard in use remembers.
std::vector<std::string> ParameterPaths(ValueType type, ValueType otherType) {
  VyrAnnStandardXMLParser document;
  document.DecodeXML(QueryDocuments().front().path, 1);
  std::vector<std::string> paths;
  const auto addParametersOf = [&](const std::string& group) {
    const VyrAnnStandardXMLNode_var parent(document.GetNodeWithPath("Root." + group));
    if (!parent) return;
    for (const VyrAnnStandardXMLNode_var& node : parent->GetNodes()) {
      if (node->GetNumOfValue() != 1) continue;
      const ValueType its = node->GetValues().front()->GetType();
      if (its != type && its != otherType) continue;
      paths.push_back(group + "." + node->GetNodeName().CString());
    }
  };
  addParametersOf("Dimension");
  const VyrAnnStandardXMLNode_var styles(document.GetNodeWithPath("Root.Styles"));
  for (const VyrAnnStandardXMLNode_var& style : styles->GetNodes()) {
    addParametersOf(std::string("Styles.") + style->GetNodeName().CString() + ".Default");
  }
  return paths;
}

/// Asks a standard again for what it was asked before, one of many values.
template <class Value>
void AskAgain(benchmark::State& state, const std::vector<std::string>& paths) {
  const VyrIDrwStandard_var standard =
      VyrDftStandardServices::GetStandardFromFile(QueryDocuments().front().path, "ISO");
  Value value{};
  for (const std::string& path : paths) {
    if (standard->GetValue(path.c_str(), 1, value) != S_OK) state.SkipWithError(path.c_str());
  }
  const char* const path = paths.front().c_str();
  for (auto _ : state) {
    standard->GetValue(path, 1, value);
    benchmark::DoNotOptimize(value);
  }
}

/// Finds the same in a table of as many, by path and index.
template <class Value>
void LookUp(benchmark::State& state, const std::vector<std::string>& paths) {
  std::unordered_map<std::string, Value> values;
  for (const std::string& path : paths) values[path + '\1'];
  const std::string key = paths.front() + '\1';
  for (auto _ : state) benchmark::DoNotOptimize(values.find(key));
}

/// Opens a standard and asks for a first value, for which it is indexed.
void Load(benchmark::State& state, const std::string& path) {
  for (auto _ : state) {
    VyrIDrwStandard_var standard = VyrDftStandardServices::GetStandardFromFile(path, "ISO");
    VyrUnicodeString text;
    if (standard->GetValue("Dimension.ParentStandard", 1, text) != S_OK)
      state.SkipWithError("no value");
    state.PauseTiming();  // libxml2's document is not freed in its time either
    standard = nullptr;
    state.ResumeTiming();
  }
}

void ParseByLibxml2(benchmark::State& state, const std::string& path) {
  for (auto _ : state) {
    xmlDoc* document = xmlReadFile(path.c_str(), nullptr, XML_PARSE_HUGE);
    if (document == nullptr) state.SkipWithError("not parsed");
    state.PauseTiming();
    xmlFreeDoc(document);
    state.ResumeTiming();
  }
}

template <class Value>
void RegisterRepeated(const std::string& type, const std::vector<std::string>& paths) {
  const auto add = [&](const std::string& name, auto run) {
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
      run(state, paths);
    })->Unit(benchmark::kNanosecond);
  };
  add("ask_again_" + type, AskAgain<Value>);
  add("unordered_map_find_" + type, LookUp<Value>);
  Ratios().push_back({"a " + type + " again / std::unordered_map find of its key",
                      "ask_again_" + type, "unordered_map_find_" + type, 3.0});
}

[[maybe_unused]] const bool registered = [] {
  using enum VyrAnnStandardXMLValue::Type;
  RegisterRepeated<int>("int", ParameterPaths(ValueInt, ValueInt));
  RegisterRepeated<double>("double", ParameterPaths(ValueFloat, ValueFloat));
  RegisterRepeated<VyrUnicodeString>("string", ParameterPaths(ValueString, ValueEnum));
  for (const SampleDocument& document : QueryDocuments()) {
    const auto add = [&](const std::string& what, auto run) {
      benchmark::RegisterBenchmark((what + document.name).c_str(),
                                   [=](benchmark::State& state) { run(state, document.path); })
          ->Unit(benchmark::kMillisecond)
          ->UseRealTime();
    };
    add("load_standard_", Load);
    add("libxml2_parse_", ParseByLibxml2);
    Ratios().push_back({"load and index " + document.name + " / libxml2 xmlReadFile",
                        "load_standard_" + document.name, "libxml2_parse_" + document.name, 1.5});
  }
  return true;
}();

}  // namespace
