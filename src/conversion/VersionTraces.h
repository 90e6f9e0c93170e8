#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "VyrAnnStandardScript.h"
#include "VyrAnnStandardXMLParser.h"

// What the steps of the upgrade add, as their tables say it, and how much of that a document has.

/// A table of rows that add to what the version before had, and the version that its step leads to.
struct VersionTable {
  int version;
  const std::string_view* table;
};
/// All of them, the versions rising.
std::span<const VersionTable> VersionTables();

/// What a row adds to a document.
struct Addition {
  std::string path;        ///< of the node that it is added to
  std::string name;        ///< of a node, parameter or field, or the text of a literal
  bool isLiteral = false;  ///< of an enumeration

  std::string FullPath() const { return path + "." + name; }
  /// True of what an enumeration or a type consists of.
  bool IsDefinition() const { return !path.starts_with("Root"); }
};
/// What a row of one node, value or literal adds; nothing of the rows of other kinds.
std::optional<Addition> AdditionOf(const VyrAnnStandardScript::Command& command);

/// Looks in a document for what the steps add. Borrows the document.
class VersionTraces {
 public:
  /// `missing`: paths of nodes that the document would have; what they held is not looked for.
  VersionTraces(VyrAnnStandardXMLParser& document, std::string parent,
                std::vector<std::string> missing);

  struct Findings {
    bool isTold = false;  ///< the document has the places where it would have what came with it
    std::string found;    ///< path of something that did; empty when it is, if at all, the owner's
  };
  /// What the document has of what came with `version`.
  Findings Find(int version) const;

 private:
  struct Tally;

  std::optional<Addition> Resolved(const VyrAnnStandardScript::Command& command) const;
  void Count(const Addition& addition, Tally& definitions, Tally& parameters) const;
  bool IsMissing(const Addition& addition) const;

  VyrAnnStandardXMLParser& document_;
  std::string parent_;
  std::vector<std::string> missing_;
};
