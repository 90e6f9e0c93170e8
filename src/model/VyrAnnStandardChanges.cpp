#include "VyrAnnStandardChanges.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "VyrUtf8.h"

namespace {

using Change = VyrAnnStandardChange;
using Node = VyrAnnStandardXMLNode;
using Value = VyrAnnStandardXMLValue;

const char* KindOf(const Node& node) {
  switch (node.GetNodeType()) {
    case Node::NodeTop:
      return "top";
    case Node::NodePlain:
      return "node";
    case Node::NodeTypeDef:
      return "type";
    case Node::NodeEnum:
      return "enumeration";
    case Node::NodeInstance:
      return "instance";
  }
  return "node";
}

std::string Quoted(const VyrUnicodeString& text) {
  return "'" + std::string(text.View()) + "'";
}

/// A value as a reader tells it. `isWrapped`: its name is a qualifier, not its own name.
std::string Described(const Value& value, bool isWrapped) {
  const std::string text = Quoted(value.GetValue());
  const std::string qualifier = isWrapped ? std::string(value.GetValueName().View()) : "";
  switch (value.GetType()) {
    case Value::ValueInt:
      return "int " + text;
    case Value::ValueFloat:
      return (value.GetRangeVal() == 1
                  ? "float from " + std::string(value.GetValueName().View()) + " "
                  : "float ") +
             text;
    case Value::ValueString:
      return "string " + text;
    case Value::ValueEnum:
      return "enum " + (qualifier.empty() ? "" : qualifier + " ") + text;
    case Value::ValueColor:
      return "color " + text;
  }
  return text;
}

bool IsWrapper(const Node& node) {
  return node.GetNodeType() == Node::NodePlain && node.GetNodes().empty() &&
         node.GetNumOfValue() == 1;
}

/// Numbers the items of equal keys of one list: "name", "name[2]", "name[3]".
class Counter {
 public:
  std::string Numbered(std::string_view key) {
    const int count = ++counts_[std::string(key)];
    return count == 1 ? std::string(key) : std::string(key) + "[" + std::to_string(count) + "]";
  }

 private:
  std::unordered_map<std::string, int> counts_;
};

std::string KeyOf(const Node& node) {
  return std::string(node.GetNodeName().View());
}

/// A value without a name is known by its text: a literal that is inserted moves all after it.
std::string KeyOf(const Value& value) {
  return value.GetValueName().IsEmpty() ? Quoted(value.GetValue())
                                        : std::string(value.GetValueName().View());
}

class Comparison {
 public:
  void Compare(const Node& before, const Node& after) {
    work_.push_back({&before, &after, KeyOf(after), 0});
    while (!work_.empty()) {
      const Pair pair = std::move(work_.back());
      work_.pop_back();
      path_.resize(pair.parentSize);
      path_.append(pair.step);
      CompareNode(pair);
    }
  }
  std::vector<Change> TakeChanges() { return std::move(changes_); }

 private:
  /// Two nodes to compare; one of them is null in a subtree that was added or deleted.
  struct Pair {
    const Node* before;
    const Node* after;
    std::string step;        // what its path has behind that of the node above
    std::size_t parentSize;  // of the path of the node above
  };

  /// Of the node that is compared, or of its value of that key. Each level of a deep tree may have
  /// a change: whole paths would come to the square of the tree.
  std::string PathOf(const std::string& key) const {
    const std::string_view path = path_;
    const std::size_t outside = path.size() - std::min(path.size(), Change::kMostOfPath);
    std::string shown = outside == 0 ? "" : "...";
    shown.append(path.substr(VyrCutUtf8(path, outside).size()));
    if (!key.empty()) shown.append(".").append(key);
    return shown;
  }

  /// Of the node that is compared, or of its value of that key.
  void Report(const std::string& key, const std::string& before, const std::string& after) {
    if (before == after) return;
    const Change::Kind kind = before.empty()  ? Change::Kind::Added
                              : after.empty() ? Change::Kind::Deleted
                                              : Change::Kind::Changed;
    changes_.push_back({kind, PathOf(key), before, after});
  }

  void CompareNode(const Pair& pair) {
    const auto wrapped = [](const Node* node) { return node != nullptr && IsWrapper(*node); };
    const auto described = [&](const Node* node) -> std::string {
      if (node == nullptr) return "";
      return wrapped(node) ? Described(*node->GetValues().front(), true) : KindOf(*node);
    };
    Report("", described(pair.before), described(pair.after));
    if (!wrapped(pair.before) || !wrapped(pair.after)) {
      CompareValues(wrapped(pair.before) ? nullptr : pair.before,
                    wrapped(pair.after) ? nullptr : pair.after);
    }
    PushChildren(pair);
  }

  void CompareValues(const Node* before, const Node* after) {
    std::unordered_map<std::string, std::string> old;
    const auto forEach = [](const Node* node, auto visit) {
      Counter names;
      for (std::size_t i = 0; node != nullptr && i < node->GetValues().size(); ++i) {
        const Value& value = *node->GetValues()[i];
        visit(names.Numbered(KeyOf(value)), Described(value, false));
      }
    };
    forEach(before, [&](const std::string& key, const std::string& text) { old[key] = text; });
    std::unordered_map<std::string, bool> kept;
    forEach(after, [&](const std::string& key, const std::string&) { kept[key] = true; });
    forEach(before, [&](const std::string& key, const std::string& text) {
      if (!kept.contains(key)) Report(key, text, "");
    });
    forEach(after, [&](const std::string& key, const std::string& text) {
      const auto found = old.find(key);
      Report(key, found == old.end() ? "" : found->second, text);
    });
  }

  /// Deleted children first, then those of the new tree, all to be taken off the end of the list.
  void PushChildren(const Pair& pair) {
    std::vector<Pair> children;
    std::unordered_map<std::string, const Node*> old;
    std::unordered_map<std::string, bool> kept;
    const auto forEach = [](const Node* node, auto visit) {
      Counter names;
      for (std::size_t i = 0; node != nullptr && i < node->GetNodes().size(); ++i) {
        visit(names.Numbered(KeyOf(*node->GetNodes()[i])), node->GetNodes()[i].Get());
      }
    };
    forEach(pair.before, [&](const std::string& key, const Node* node) { old[key] = node; });
    forEach(pair.after, [&](const std::string& key, const Node*) { kept[key] = true; });
    forEach(pair.before, [&](const std::string& key, const Node* node) {
      if (!kept.contains(key)) children.push_back({node, nullptr, "." + key, path_.size()});
    });
    forEach(pair.after, [&](const std::string& key, const Node* node) {
      const auto found = old.find(key);
      const Node* const counterpart = found == old.end() ? nullptr : found->second;
      children.push_back({counterpart, node, "." + key, path_.size()});
    });
    work_.insert(work_.end(), std::make_move_iterator(children.rbegin()),
                 std::make_move_iterator(children.rend()));
  }

  std::string path_;  // of the node that is compared: made once, since a tree may be deep
  std::vector<Pair> work_;
  std::vector<Change> changes_;
};

}  // namespace

std::vector<VyrAnnStandardChange> VyrCompareStandards(const VyrAnnStandardXMLNode& before,
                                                      const VyrAnnStandardXMLNode& after) {
  Comparison comparison;
  comparison.Compare(before, after);
  return comparison.TakeChanges();
}
