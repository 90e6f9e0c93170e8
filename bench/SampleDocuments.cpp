#include "SampleDocuments.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "VyrAnnStandardXMLParser.h"
#include "VyrDrwParseStandard.h"

namespace {

using Node = VyrAnnStandardXMLNode;

[[noreturn]] void Stop(const char* what) {
  std::fprintf(stderr, "hol_bench: %s\n", what);
  std::exit(3);
}

std::filesystem::path Folder() {
  static const std::filesystem::path folder = [] {
    auto path = std::filesystem::temp_directory_path() / "holstandard-bench";
    std::filesystem::create_directories(path);
    return path;
  }();
  return folder;
}

/// The document of the shipped ISO text standard, converted.
VyrAnnStandardXMLParser ConvertedIso() {
  const std::string path = Folder() / "ISO.xml";
  VyrDrwParseStandard standard(HOL_STANDARDS "/legacy/ISO.txt");
  VyrDrwParseStandardUpgradeOptions options;
  VyrAnnStandardXMLParser document;
  if (standard.DecodeText() < 0 || standard.EncodeToFile(path.c_str(), 1, options) < 0 ||
      document.DecodeXML(path, 1) != 0) {
    Stop("the shipped ISO standard cannot be converted");
  }
  return document;
}

/// A document with copies of its own branches added until it is at least `size` bytes long.
/// Branches of a copy bear their names with `suffix` and the number of the copy.
SampleDocument MakeSample(const char* name, VyrAnnStandardXMLParser document, std::size_t size,
                          const std::string& suffix = {}) {
  VyrUnicodeString text;
  document.SaveInString(text);
  const std::size_t onceSize = text.View().size();
  const VyrAnnStandardXMLNode_var root(document.GetNodeWithPath("Root"));
  const Node::Nodes branches = root->GetNodes();
  for (std::size_t total = onceSize, copy = 1; total < size; total += onceSize, ++copy) {
    const std::string number = std::to_string(copy);
    document.AddNodeWithPath("Root:Site" + number, 0);
    const VyrAnnStandardXMLNode_var parent(document.GetNodeWithPath("Root.Site" + number));
    for (const VyrAnnStandardXMLNode_var& branch : branches) {
      const VyrAnnStandardXMLNode_var clone(branch->Clone());
      if (!suffix.empty()) clone->SetNodeName(branch->GetNodeName() + (suffix + number));
      parent->AddNode(clone.Get(), -1);
    }
  }
  document.SaveInString(text);
  const std::string path = Folder() / (std::string(name) + ".xml");
  std::ofstream(path, std::ios::binary) << text.View();
  return {name, path, std::string(text.View())};
}

VyrAnnStandardXMLParser ShippedIso() {
  VyrAnnStandardXMLParser document;
  if (document.DecodeXML(HOL_STANDARDS "/ISO.xml", 1) != 0) {
    Stop("the shipped ISO standard cannot be read");
  }
  return document;
}

}  // namespace

const std::array<SampleDocument, 2>& SampleDocuments() {
  static const std::array<SampleDocument, 2> samples = {
      MakeSample("150KB", ConvertedIso(), 150'000), MakeSample("12MB", ConvertedIso(), 12'000'000)};
  return samples;
}

const std::array<SampleDocument, 2>& QueryDocuments() {
  static const std::array<SampleDocument, 2> samples = {
      MakeSample("ISO", ShippedIso(), 0),
      MakeSample("large", ShippedIso(), 12'000'000, " of site ")};
  return samples;
}
