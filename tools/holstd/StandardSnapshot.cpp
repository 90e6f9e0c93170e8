#include "StandardSnapshot.h"

#include <iterator>

namespace {

constexpr std::array<const char*, 3> kTops = {"Enum", "TypeDef", "Root"};

}  // namespace

StandardSnapshot::StandardSnapshot(VyrAnnStandardXMLParser& document) {
  for (std::size_t i = 0; i < kTops.size(); ++i) {
    const VyrAnnStandardXMLNode_var top(document.GetNodeWithPath(kTops[i]));
    tops_[i] = VyrAnnStandardXMLNode_var(top->Clone());
  }
}

std::vector<VyrAnnStandardChange> StandardSnapshot::ChangesIn(
    VyrAnnStandardXMLParser& document) const {
  std::vector<VyrAnnStandardChange> changes;
  for (std::size_t i = 0; i < kTops.size(); ++i) {
    const VyrAnnStandardXMLNode_var top(document.GetNodeWithPath(kTops[i]));
    std::vector<VyrAnnStandardChange> part = VyrCompareStandards(*tops_[i], *top);
    std::move(part.begin(), part.end(), std::back_inserter(changes));
  }
  return changes;
}
