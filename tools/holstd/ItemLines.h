#pragma once

#include <vector>

#include "InputFile.h"
#include "StandardDifferences.h"
#include "StandardItems.h"
#include "VyrXMLDOM.h"

/// Where the nodes and values of a standard stand in its file.
class ItemLines {
 public:
  /// `items` are those of the file.
  ItemLines(const InputFile& file, const StandardItems& items);

  /// 0 when it is not known, and for the trees themselves.
  int LineOf(const StandardPlace& place) const;

 private:
  enum class Meaning { Other, Enum, TypeDef, Node, Value };

  Meaning MeaningOf(VyrXMLTree::Index element) const;
  bool IsBelow(StandardItems::Index parent, Meaning meaning) const;
  void AddChildren(StandardItems::Index parent);

  VyrIDOMDocument_var document_;
  const VyrXMLTree* tree_ = nullptr;
  std::vector<VyrXMLTree::Index> elements_;  ///< of the items, in their order
};
