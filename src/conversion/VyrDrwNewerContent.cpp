#include "VyrDrwNewerContent.h"

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "ConversionTables.h"
#include "ReleaseTable.h"
#include "VersionTraces.h"

// Whether a standard is dated too early, and the commands that mend it.

namespace {

using Cause = VyrDrwNewerContent::Cause;
using Command = VyrAnnStandardScript::Command;
using Document = VyrAnnStandardXMLParser;
using Persistence = VyrDftStdPersistence;
using Verb = VyrAnnStandardScript::Verb;

const std::string kVersionPath = "Root.Version";

std::string PathOf(const ReferenceNode& reference) {
  return std::string("Root.") + reference.path;
}

bool HasNode(Document& document, std::string_view path) {
  return VyrAnnStandardXMLNode_var(document.GetNodeWithPath(path)).Get() != nullptr;
}

/// True when the document shows itself to be older than the release.
bool IsOlder(Document& document, const ReferenceNode& reference) {
  const bool isThere = HasNode(document, PathOf(reference));
  return isThere != (reference.status == Persistence::NodeAdded);
}

/// What a document of `version` would differ in, of the nodes that tell versions.
std::vector<const ReferenceNode*> Misleading(Document& document, int version) {
  std::vector<const ReferenceNode*> misleading;
  for (const ReferenceNode& reference : kReferenceNodes) {
    const bool isTold = Persistence::GetVersionFromRelease(reference.release) <= version;
    if (isTold && IsOlder(document, reference)) misleading.push_back(&reference);
  }
  return misleading;
}

/// The commands that give a document what the steps up to a version would have given it.
class Remedy {
 public:
  Remedy(Document& document, const std::string& parent, int version)
      : document_(document), parent_(parent) {
    for (const auto& [tableVersion, table] : VersionTables()) {
      if (tableVersion <= version) Learn(*table);
    }
  }

  void Append(std::string_view command) { text_.append(command).append("\n"); }

  /// Adds a node with those that it stands in.
  void Add(const std::string& path) {
    for (std::size_t dot = path.find('.'); dot != std::string::npos;) {
      dot = path.find('.', dot + 1);
      AddOne(path.substr(0, dot));
    }
    // No application opens a standard that has styles and none of a sheet.
    if (path == "Root.Styles") AddAll(tables::style_sheet);
  }

  std::string TakeText() { return std::move(text_); }

 private:
  /// A command that adds one thing, without its position: others may stand there by now.
  static std::string CommandOf(const Command& row) {
    const int fields = row.verb == Verb::Node ? 2 : 4;
    std::size_t end = row.text.find(':');
    for (int i = 1; i < fields && end != std::string_view::npos; ++i) {
      end = row.text.find(':', end + 1);
    }
    return (row.verb == Verb::Node ? "node " : "value ") + std::string(row.text.substr(0, end));
  }

  void Learn(std::string_view table) {
    const VyrAnnStandardScript script(table);
    for (const Command& row : script.GetCommands()) {
      if (!row.AppliesTo(parent_)) continue;
      const auto addition = AdditionOf(row);
      if (!addition || addition->IsDefinition()) continue;
      commands_.emplace(addition->FullPath(), CommandOf(row));
    }
  }

  void AddOne(const std::string& path) {
    if (HasNode(document_, path) || !added_.insert(path).second) return;
    const auto row = commands_.find(path);
    const std::size_t dot = path.rfind('.');
    Append(row != commands_.end() ? row->second
                                  : "node " + path.substr(0, dot) + ":" + path.substr(dot + 1));
  }

  void AddAll(std::string_view table) {
    const VyrAnnStandardScript script(table);
    for (const Command& row : script.GetCommands()) {
      const auto addition = row.AppliesTo(parent_) ? AdditionOf(row) : std::nullopt;
      if (addition) AddOne(addition->FullPath());
    }
  }

  Document& document_;
  const std::string& parent_;
  std::unordered_map<std::string, std::string> commands_;  // by the path of what they add
  std::unordered_set<std::string> added_;
  std::string text_;
};

/// Fills in why the document is dated too early, and what helps.
void Explain(Document& document, const std::string& parent, VyrDrwNewerContent& newer) {
  Remedy remedy(document, parent, newer.contentVersion);
  const std::string version = std::to_string(newer.contentVersion);
  if (HasNode(document, kVersionPath)) {
    newer.cause = Cause::Stated;
    newer.node = kVersionPath;
    remedy.Append("change " + kVersionPath + ":" + version);
  } else if (Persistence::CheckExplicitVersionNumberIsValid(newer.contentVersion) != 0) {
    newer.cause = Cause::Missing;
    newer.node = kVersionPath;
    remedy.Append("value Root:Version:int:" + version);
  } else {
    const auto misleading = Misleading(document, newer.contentVersion);
    const ReferenceNode& first = *misleading.front();
    newer.cause = first.status == Persistence::NodeAdded ? Cause::Missing : Cause::Present;
    newer.node = PathOf(first);
    for (const ReferenceNode* reference : misleading) {
      if (reference->status == Persistence::NodeAdded) {
        remedy.Add(PathOf(*reference));
      } else {
        remedy.Append("delete " + PathOf(*reference));
      }
    }
  }
  newer.commands = remedy.TakeText();
}

}  // namespace

std::optional<VyrDrwNewerContent> VyrFindNewerContent(Document& document) {
  const int version = document.GetVersion();
  if (version < 0) return std::nullopt;
  const std::string parent(document.GetValueWithPath("Root.Dimension.ParentStandard").View());
  std::vector<std::string> missing;
  for (const ReferenceNode* reference : Misleading(document, kCurrentVersion)) {
    if (reference->status == Persistence::NodeAdded) missing.push_back(PathOf(*reference));
  }
  const VersionTraces traces(document, parent, std::move(missing));
  VyrDrwNewerContent newer = {version, version, {}, Cause::Missing, {}, {}};
  int looked = version;
  for (const VersionTable& table : VersionTables()) {
    if (table.version <= looked) continue;
    looked = table.version;
    const VersionTraces::Findings findings = traces.Find(looked);
    // A standard has been through one step after the other. What only a later one brings would be
    // the owner's own.
    if (findings.isTold && findings.found.empty()) break;
    if (findings.found.empty()) continue;
    newer.contentVersion = looked;
    newer.found = findings.found;
  }
  if (newer.contentVersion == version) return std::nullopt;
  Explain(document, parent, newer);
  return newer;
}
