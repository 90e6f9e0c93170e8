#pragma once

#include <string>
#include <vector>

#include "StandardDifferences.h"

/// One difference between two moments of a document, in words of its own: nothing is borrowed.
struct SnapshotChange {
  StandardDifference::Kind kind;
  std::string path;    ///< as diff tells it
  std::string entry;   ///< name of the entry of a list that it lies in; empty without
  std::string before;  ///< the value with its type, the kind of a node, of what was moved the place
  std::string
      after;  ///< the same afterwards; empty of what was removed, as `before` of an addition
};

/// The content of a document at one moment, to tell what has changed since.
class StandardSnapshot {
 public:
  explicit StandardSnapshot(VyrAnnStandardXMLParser& document);

  /// What a later moment tells from this one, the enumerations and types first. What was added or
  /// removed is listed whole, node by node: nobody finds the values elsewhere.
  std::vector<SnapshotChange> ChangesTo(const StandardSnapshot& later) const;

 private:
  StandardItems items_;
};
