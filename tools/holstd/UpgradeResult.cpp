#include "UpgradeResult.h"

#include <algorithm>
#include <vector>

#include "DefinedLiterals.h"
#include "Failure.h"
#include "Format.h"
#include "Objections.h"
#include "Reports.h"
#include "StandardItems.h"

namespace {

Failure Undecided(const std::string& file, const std::string& text) {
  return {kUndecided, file, 0, text};
}

/// An enumeration or a type of the owner's own that is called as one that a step adds: the step's
/// own stays empty then, since paths lead to the first of a name.
void CheckNames(const std::string& file, VyrAnnStandardXMLParser& document) {
  for (const char* top : {"Enum", "TypeDef"}) {
    const VyrAnnStandardXMLNode_var tree(document.GetNodeWithPath(top));
    const auto& nodes = tree->GetNodes();
    const auto empty = std::find_if(nodes.begin(), nodes.end(), [](const auto& node) {
      return node->GetNodeType() != VyrAnnStandardXMLNode::NodePlain && node->GetValues().empty();
    });
    if (empty == nodes.end()) continue;
    const std::string path = std::string(top) + "." + std::string((*empty)->GetNodeName().View());
    throw Undecided(file, "has " + Quoted(path) +
                              " already, which the upgrade would add; give yours another name, or "
                              "delete it where nothing uses it");
  }
}

void CheckVersion(const std::string& file, VyrAnnStandardXMLParser& document, int version) {
  const ReportRecorder recorder;
  const int dated = document.GetVersion();
  if (dated == version) return;
  throw Undecided(file, "would count as version " + std::to_string(dated) +
                            " after the upgrade to " + std::to_string(version) +
                            "; 'holstd diff' with a standard of its version shows what it lacks");
}

bool IsDefined(VyrAnnStandardXMLParser& document, const VyrAnnStandardXMLValue& value) {
  if (value.GetType() != VyrAnnStandardXMLValue::ValueEnum) return true;
  const VyrAnnStandardXMLNode_var enumerations(document.GetNodeWithPath("Enum"));
  const std::string path =
      std::string(value.GetValueName().View()) + "." + std::string(value.GetValue().View());
  return VyrAnnStandardXMLValue_var(enumerations->GetValueWithPath(path)).Get() != nullptr;
}

/// A parameter of an enumeration that a step has deleted, or changed.
void CheckLiterals(const std::string& file, VyrAnnStandardXMLParser& document) {
  if (HasDefinedLiterals(document)) return;
  const StandardItems items(document);
  std::vector<bool> isOfRoot(items.Count(), false);
  for (StandardItems::Index item = StandardItems::kRoot; item < items.Count(); ++item) {
    isOfRoot[item] = item == StandardItems::kRoot || isOfRoot[items[item].parent];
    const auto& values = items[item].node->GetValues();
    for (std::uint32_t i = 0; isOfRoot[item] && i < values.size(); ++i) {
      if (IsDefined(document, *values[i])) continue;
      const WrittenLiteral literal = {std::string(values[i]->GetValueName().View()),
                                      std::string(values[i]->GetValue().View()), true};
      throw Undecided(file, "after the upgrade, of " + items.PathOf({item, i}) + " " +
                                DefinedLiterals(document).ObjectionTo(literal) +
                                "; change or delete that value first");
    }
  }
}

}  // namespace

void CheckStatedOnce(const std::string& file, VyrAnnStandardXMLParser& document) {
  const VyrAnnStandardXMLNode_var root(document.GetNodeWithPath("Root"));
  const auto& nodes = root->GetNodes();
  const auto count = std::count_if(nodes.begin(), nodes.end(), [](const auto& node) {
    return node->GetNodeName() == "Version";
  });
  if (count <= 1) return;
  throw Undecided(file, "has 'Root.Version' " + std::to_string(count) +
                            " times, and the steps would miss the one that counts; delete all but "
                            "the one that is right");
}

bool HasDefinedLiterals(VyrAnnStandardXMLParser& document) {
  const ReportRecorder recorder;
  return document.Check() == 1;
}

void CheckResult(const std::string& file, VyrAnnStandardXMLParser& document, int version,
                 bool wasDefined) {
  CheckNames(file, document);
  CheckVersion(file, document, version);
  if (wasDefined) CheckLiterals(file, document);
}
