#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "VyrXMLTree.h"

/// Follows a chain of names by one walk over a document: what it takes grows with the document and
/// hardly with the chain, however often names repeat in both.
///
/// The steps are cut before each that looks at any depth. On the way down to an element such a
/// piece is best found where it first can be, as that leaves the most room to the next; and where
/// it can be is told from element to element, as when a text is searched for a word.
class VyrXMLNameWalk {
 public:
  using Index = VyrXMLTree::Index;

  /// The number of an element without a name.
  static constexpr std::uint32_t kUnnamed = ~std::uint32_t{0};

  /// Leads to the elements whose name has this number.
  struct Step {
    std::uint32_t number;
    /// Children of what the step before found, or what lies below it at any depth.
    bool isChild;
  };

  /// `numbers` has that of each item's name; both are borrowed.
  VyrXMLNameWalk(const VyrXMLTree& tree, std::span<const std::uint32_t> numbers)
      : tree_(tree), numbers_(numbers) {}

  /// The elements at the end of `steps` below the document element, in document order.
  std::vector<Index> Find(std::span<const Step> steps);

 private:
  static constexpr std::uint32_t kNowhere = ~std::uint32_t{0};

  /// A step, as elements take it.
  struct Trial {
    std::uint32_t number;
    std::uint32_t piece;  // the first step of its piece
    /// The step of the piece that an element may take instead: the ones before it have the names
    /// that the elements above have. `kNowhere` when there is none.
    std::uint32_t otherwise;
  };

  void AddPiece(std::span<const Step> steps);
  std::uint32_t Follow(std::uint32_t next, std::uint32_t number) const;

  const VyrXMLTree& tree_;
  std::span<const std::uint32_t> numbers_;
  std::vector<Trial> trials_;
  bool isRooted_ = false;    // the first piece looks at children of the document element alone
  std::uint32_t again_ = 0;  // the step that comes after the last one
};
