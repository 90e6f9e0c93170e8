#pragma once

#include <array>
#include <vector>

#include "VyrAnnStandardChanges.h"
#include "VyrAnnStandardXMLParser.h"

/// The content of a document at one moment, to tell what has changed since.
class StandardSnapshot {
 public:
  explicit StandardSnapshot(VyrAnnStandardXMLParser& document);

  /// What the document holds now against this moment, the enumerations and types first.
  std::vector<VyrAnnStandardChange> ChangesIn(VyrAnnStandardXMLParser& document) const;

 private:
  std::array<VyrAnnStandardXMLNode_var, 3> tops_;
};
