#pragma once

#include <cstddef>
#include <vector>

#include "HolStandardInfraExport.h"
#include "VyrAnnStandardXMLNode.h"
#include "VyrUnicodeString.h"

/// One difference between two trees of a standard. A value of its own: it holds nothing of the
/// trees.
struct VyrAnnStandardChange {
  /// What it takes to get from the one tree to the other.
  enum class Kind {
    Added,    ///< a node or a value that the tree before does not have
    Changed,  ///< a value of another type or text, or a node of another type
    Deleted,  ///< a node or a value that the tree after does not have
  };

  /// Most bytes of the path of a node that are told; of a longer one the outer names are left out,
  /// which "..." stands for.
  static constexpr std::size_t kMostOfPath = 512;

  Kind kind;  ///< which of these it is
  /// Names from the top down, joined by "."; of equal names below one node the second and later
  /// ones are counted ("Root.Frames.FrameDef[2]"). A value that a node holds directly has its name
  /// as the last part, or its text in quotes when it has none.
  VyrUnicodeString path;
  /// A value's type and text ("enum YesNo 'Yes'"), or the kind of a node ("node", "instance",
  /// "type", "enumeration"). Empty before an addition and after a deletion.
  VyrUnicodeString before;
  VyrUnicodeString after;  ///< the same in the tree after
};

/// What must be added to, changed in and deleted from `before` to make it `after`, in the order of
/// `after`; deletions come before what their node has gained. Children are matched by their names,
/// those of equal names by their order. A subtree that was added or deleted is listed whole, node
/// by node. Both trees may be of any depth and width, and are only read. Empty when they do not
/// differ; nothing fails.
HOLSTANDARDINFRA_EXPORT std::vector<VyrAnnStandardChange> VyrCompareStandards(
    const VyrAnnStandardXMLNode& before, const VyrAnnStandardXMLNode& after);
