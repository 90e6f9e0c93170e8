#pragma once

#include <optional>
#include <string>
#include <vector>

#include "InputFile.h"
#include "StandardItems.h"
#include "VyrXMLDOM.h"

/// Where the nodes and values of a standard stand in its file.
class ItemLines {
 public:
  /// `items` are those of the file.
  ItemLines(const InputFile& file, const StandardItems& items);

  /// 0 when it is not known, and for the trees themselves.
  int LineOf(const StandardPlace& place) const;

  /// An element that a reader of standards passes over, though its name is one that they have: it
  /// has lost the prefix, or the prefix its meaning.
  struct Estranged {
    int line;
    std::string name;  ///< as it is written
    long count;        ///< of all, without what they hold
  };
  /// The first one; nothing when there is none.
  std::optional<Estranged> FirstEstranged() const;

 private:
  enum class Meaning { Other, Enum, TypeDef, Node, Value };

  static Meaning MeaningOfName(std::string_view name);
  Meaning MeaningOf(VyrXMLTree::Index element) const;
  bool IsBelow(StandardItems::Index parent, Meaning meaning) const;
  void AddChildren(StandardItems::Index parent);

  VyrIDOMDocument_var document_;
  const VyrXMLTree* tree_ = nullptr;
  std::vector<VyrXMLTree::Index> elements_;  ///< of the items, in their order
  // Of the values that were asked for last, since those of one node follow each other.
  mutable StandardItems::Index listedItem_ = StandardItems::kNone;
  mutable std::vector<VyrXMLTree::Index> listedValues_;
};
