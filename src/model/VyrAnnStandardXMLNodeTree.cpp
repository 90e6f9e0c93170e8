#include <string>
#include <vector>

#include "VyrAnnStandardXMLNode.h"

// Walks over a whole tree. Each keeps its own list of work: a standard may be deeper than the
// stack.

namespace {

/// A node on the way down, and how far its children have been visited.
struct Visit {
  const VyrAnnStandardXMLNode* node;
  std::size_t nextChild;
  std::size_t contextSize;
};

}  // namespace

int VyrAnnStandardXMLNode::Check(VyrAnnStandardXMLNode* enumTop, VyrUnicodeView context) const {
  if (enumTop == nullptr) return 0;
  // Who receives the lines may let go of the trees.
  const auto self = VyrAnnStandardXMLNode_var::Share(const_cast<VyrAnnStandardXMLNode*>(this));
  const auto enums = VyrAnnStandardXMLNode_var::Share(enumTop);
  int errors = 0;
  std::string path(context);
  std::vector<Visit> visits;
  const auto enter = [&](const VyrAnnStandardXMLNode& node) {
    visits.push_back({&node, 0, path.size()});
    path.append(".").append(node.name_.View());
  };
  enter(*this);
  while (!visits.empty()) {
    Visit& visit = visits.back();
    if (visit.nextChild < visit.node->GetNodes().size()) {
      enter(*visit.node->GetNodes()[visit.nextChild++]);
      continue;
    }
    for (const auto& value : visit.node->GetValues()) errors += value->Check(enumTop, path);
    path.resize(visit.contextSize);
    visits.pop_back();
  }
  return errors;
}

VyrAnnStandardXMLNode* VyrAnnStandardXMLNode::Clone() const {
  const auto cloneAlone = [](const VyrAnnStandardXMLNode& node) {
    auto* copy = new VyrAnnStandardXMLNode(node.type_, node.name_);
    copy->values_.reserve(node.GetValues().size());
    for (const auto& value : node.GetValues()) copy->values_.emplace_back(value->Clone());
    copy->nodes_.reserve(node.GetNodes().size());
    return copy;
  };
  struct Pair {
    const VyrAnnStandardXMLNode* source;
    VyrAnnStandardXMLNode* copy;
  };
  VyrAnnStandardXMLNode* top = cloneAlone(*this);
  std::vector<Pair> work = {{this, top}};
  while (!work.empty()) {
    const Pair pair = work.back();
    work.pop_back();
    for (const auto& child : pair.source->GetNodes()) {
      VyrAnnStandardXMLNode* copy = cloneAlone(*child);
      pair.copy->nodes_.emplace_back(copy);
      work.push_back({child.Get(), copy});
    }
  }
  return top;
}
