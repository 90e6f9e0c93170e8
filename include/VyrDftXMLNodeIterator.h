#pragma once

#include "HolStandardInfraExport.h"
#include "VyrXMLDOM.h"

/// Walks the children of a node of a document: elements and texts, blank ones too. Holds a
/// reference to the list of children, and so keeps the document. Used from one thread at a time.
class HOLSTANDARDINFRA_EXPORT VyrDftXMLNodeIterator {
 public:
  /// Which way to walk.
  enum Direction : int {
    Forward = 0,   ///< from the first child to the last
    Backward = 1,  ///< from the last child to the first
  };

  /// Starts at the first child, or at the last for `Backward`. A node whose children cannot be
  /// read is reported and has none.
  VyrDftXMLNodeIterator(VyrIDOMNode_var node, Direction direction);

  /// Forward: 1 when all children were visited. Backward: always 0; the caller counts.
  int IsDone() const;
  /// Moves on; refused, with a report, when done.
  void Next();
  /// The child at the present place, in a handle with a reference of its own; null when done, and,
  /// reported, past the first child of a backward walk.
  VyrIDOMNode_var CurrentItem() const;

 private:
  VyrIDOMNodeList_var children_;
  int count_ = 0;
  int index_ = 0;
  Direction direction_;
};
