#include "VyrDftXMLNodeIterator.h"

#include "VyrDiagnostics.h"

namespace {

constexpr VyrSourceUnit kUnit("VyrDftXMLNodeIterator");

int CountOf(const VyrIDOMNodeList_var& children) {
  unsigned int length = 0;
  if (!kUnit.CheckPointer(children.Get()) ||
      !kUnit.Check(VyrSucceeded(children->GetLength(length)), "number of children not readable")) {
    return 0;
  }
  return static_cast<int>(length);
}

}  // namespace

VyrDftXMLNodeIterator::VyrDftXMLNodeIterator(VyrIDOMNode_var node, Direction direction)
    : direction_(direction) {
  if (kUnit.CheckPointer(node.Get()) &&
      kUnit.Check(VyrSucceeded(node->GetChildNodes(children_)), "children cannot be read")) {
    count_ = CountOf(children_);
  }
  index_ = direction_ == Backward ? count_ - 1 : 0;
}

int VyrDftXMLNodeIterator::IsDone() const {
  // Callers bound a backward walk by counting; some of them walk on from one that would be "done".
  if (direction_ == Backward) return 0;
  return static_cast<unsigned int>(index_) >= static_cast<unsigned int>(count_) ? 1 : 0;
}

void VyrDftXMLNodeIterator::Next() {
  if (!kUnit.Check(IsDone() == 0, "walk is already done")) return;
  index_ += direction_ == Backward ? -1 : 1;
}

VyrIDOMNode_var VyrDftXMLNodeIterator::CurrentItem() const {
  if (!kUnit.CheckPointer(children_.Get())) return {};
  if (IsDone() != 0) return {};
  VyrIDOMNode_var item;
  const HRESULT result = children_->Item(static_cast<unsigned int>(index_), item);
  if (!kUnit.Check(VyrSucceeded(result) && item, "child cannot be read")) return {};
  return item;
}
