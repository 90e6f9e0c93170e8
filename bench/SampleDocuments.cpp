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

/// The ISO standard with copies of its own branches added until it is at least `size` bytes long.
SampleDocument MakeSample(const char* name, std::size_t size) {
  VyrAnnStandardXMLParser document = ConvertedIso();
  VyrUnicodeString text;
  document.SaveInString(text);
  const std::size_t onceSize = text.View().size();
  const VyrAnnStandardXMLNode_var root(document.GetNodeWithPath("Root"));
  const Node::Nodes branches = root->GetNodes();
  for (std::size_t total = onceSize, copy = 1; total < size; total += onceSize, ++copy) {
    const std::string group = "Site" + std::to_string(copy);
    document.AddNodeWithPath("Root:" + group, 0);
    const VyrAnnStandardXMLNode_var parent(document.GetNodeWithPath("Root." + group));
    for (const VyrAnnStandardXMLNode_var& branch : branches) {
      const VyrAnnStandardXMLNode_var clone(branch->Clone());
      parent->AddNode(clone.Get(), -1);
    }
  }
  document.SaveInString(text);
  const std::string path = Folder() / (std::string(name) + ".xml");
  std::ofstream(path, std::ios::binary) << text.View();
  return {name, path, std::string(text.View())};
}

}  // namespace

const std::array<SampleDocument, 2>& SampleDocuments() {
  static const std::array<SampleDocument, 2> samples = {MakeSample("150KB", 150'000),
                                                        MakeSample("12MB", 12'000'000)};
  return samples;
}
