#include "BranchLines.h"

#include <vector>

using Node = VyrAnnStandardXMLNode;
using Value = VyrAnnStandardXMLValue;

void ForEachLine(const Node& top, const std::function<void(const BranchLine& line)>& visit) {
  struct Work {
    const Node* node;
    std::size_t level;
  };
  std::vector<Work> work = {{&top, 0}};
  while (!work.empty()) {
    const auto [node, level] = work.back();
    work.pop_back();
    const Value* wrapped = WrappedValue(*node);
    visit({level, KindWord(node->GetNodeType()), node->GetNodeName().View(), wrapped});
    if (wrapped != nullptr) continue;
    for (const auto& value : node->GetValues()) visit(LineOfValue(*value, level + 1));
    const Node::Nodes& children = node->GetNodes();
    for (auto child = children.rbegin(); child != children.rend(); ++child) {
      work.push_back({child->Get(), level + 1});
    }
  }
}

BranchLine LineOfValue(const Value& value, std::size_t level) {
  // The bound of a float stands where other values have their name.
  const std::string_view name = value.GetRangeVal() == 1 ? "" : value.GetValueName().View();
  return {level, "value", name, &value};
}

Json AsJson(const BranchLine& line) {
  Json object = {{"level", line.level}, {"kind", line.kind}, {"name", line.name}};
  if (line.value != nullptr) AddValueTo(object, *line.value);
  return object;
}
