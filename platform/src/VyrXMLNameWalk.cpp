#include "VyrXMLNameWalk.h"

#include "VyrSteps.h"

std::vector<VyrXMLNameWalk::Index> VyrXMLNameWalk::Find(std::span<const Step> steps) {
  isRooted_ = steps.front().isChild;
  while (!steps.empty()) {
    std::size_t size = 1;
    while (size < steps.size() && steps[size].isChild) ++size;
    AddPiece(steps.first(size));
    steps = steps.subspan(size);
  }
  /// An open element, and the step that its children may take.
  struct Open {
    Index end;
    std::uint32_t next;
  };
  const Index root = tree_.GetDocumentElement();
  std::vector<Open> open = {{tree_.GetEnd(root), 0}};
  std::vector<Index> found;
  for (Index item = root + 1; item < tree_.GetEnd(root); ++item) {
    VyrSteps::Count();
    if (tree_.GetKind(item) != VyrXMLTree::Kind::Element) continue;
    while (open.back().end <= item) open.pop_back();
    std::uint32_t next = Follow(open.back().next, numbers_[item]);
    if (next == trials_.size()) {
      found.push_back(item);
      next = again_;
    }
    open.push_back({tree_.GetEnd(item), next});
  }
  return found;
}

/// Adds the next piece, and where its steps lead otherwise: to a step before which the same names
/// stand, and which has another name itself, so that few such ways follow each other.
void VyrXMLNameWalk::AddPiece(std::span<const Step> steps) {
  const auto piece = static_cast<std::uint32_t>(trials_.size());
  const bool isRooted = piece == 0 && isRooted_;
  again_ = isRooted ? kNowhere : piece;
  for (const Step& step : steps) {
    const std::uint32_t same = again_;  // the same names stand before it
    const auto place = static_cast<std::uint32_t>(trials_.size());
    if (place == piece || isRooted) {
      trials_.push_back({step.number, piece, kNowhere});
      continue;
    }
    const bool isOther = trials_[same].number != step.number;
    trials_.push_back({step.number, piece, isOther ? same : trials_[same].otherwise});
    again_ = Follow(same, step.number);
  }
}

/// The step behind the one that an element of this number takes.
std::uint32_t VyrXMLNameWalk::Follow(std::uint32_t next, std::uint32_t number) const {
  if (next == kNowhere) return kNowhere;
  const std::uint32_t piece = trials_[next].piece;
  while (next != kNowhere && trials_[next].number != number) {
    VyrSteps::Count();
    next = trials_[next].otherwise;
  }
  if (next != kNowhere) return next + 1;
  return piece == 0 && isRooted_ ? kNowhere : piece;
}
