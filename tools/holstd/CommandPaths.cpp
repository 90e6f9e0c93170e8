#include "CommandPaths.h"

#include <algorithm>

#include "Format.h"
#include "PathSearch.h"
#include "StandardItems.h"

namespace {

using Node = VyrAnnStandardXMLNode;
using Node_var = VyrAnnStandardXMLNode_var;
using Verb = VyrAnnStandardScript::Verb;

bool HasBrackets(std::string_view path) {
  return path.find('[') != std::string_view::npos;
}

std::string_view TopOf(std::string_view path) {
  return path.substr(0, path.find('.'));
}

/// A path cut before its last name.
struct Ends {
  std::string_view holder;  ///< empty when there is one name only
  std::string_view last;
};

Ends EndsOf(std::string_view path) {
  std::size_t begin = 0;
  for (std::size_t at = 0;;) {
    at += LengthOfName(path.substr(at), ".", Cut::AroundBrackets);
    if (at >= path.size()) break;
    begin = ++at;
  }
  return {path.substr(0, begin == 0 ? 0 : begin - 1), path.substr(begin)};
}

/// What `command` does in `document`, as the language has it.
int RunIn(VyrAnnStandardXMLParser& document, Verb verb, std::string_view command) {
  return VyrAnnStandardScript::Command{0, verb, {}, false, {}, command}.Run(document);
}

std::string_view NameOfEntryIn(const Node& node) {
  const VyrAnnStandardXMLValue* name = NameOfEntry(node);
  return name == nullptr ? std::string_view() : name->GetValue().View();
}

/// The value of a node that a name means as values are printed.
std::optional<std::size_t> FindValue(const Node& node, const PathName& wanted) {
  std::optional<std::size_t> byPlace;
  std::uint32_t ordinal = 0;
  for (std::size_t i = 0; i < node.GetValues().size(); ++i) {
    const std::string_view key = KeyOfValue(node, *node.GetValues()[i]);
    if (!key.empty() && key == wanted.text) return i;
    if (key != wanted.name) continue;
    if (++ordinal == wanted.ordinal && wanted.HasPlace()) byPlace = i;
  }
  return byPlace;
}

}  // namespace

bool CommandPaths::CutPath(std::string_view& command, std::string_view& path) {
  std::size_t end = std::min(command.find(':'), command.size());
  if (HasBrackets(command.substr(0, end)) && !NodeAt(command.substr(0, end))) {
    end = 0;
    while (end < command.size() && command[end] != ':') {
      end += command[end] == '.' ? 1 : 0;
      end += LengthOfName(command.substr(end), ".:", Cut::AroundBrackets);
    }
  }
  path = command.substr(0, end);
  const bool goesOn = end < command.size();
  command.remove_prefix(goesOn ? end + 1 : end);
  return goesOn;
}

CommandPaths::Node_var CommandPaths::NodeAt(std::string_view path) {
  several_.clear();
  Node_var node(document_.GetNodeWithPath(path));
  if (node || !HasBrackets(path)) return node;
  for (const PathName& name : NamesOf(path, Cut::AroundBrackets)) {
    node = node ? ChildOf(*node, name) : Node_var(document_.GetNodeWithPath(name.text));
    if (!node) break;
  }
  return node;
}

CommandPaths::Node_var CommandPaths::ChildOf(Node& holder, const PathName& name) {
  if (Node_var literal(holder.GetNodeByName(name.text)); literal) return literal;
  if (!name.HasBrackets()) return {};
  if (!name.HasPlace()) return EntryCalled(holder, name);
  if (name.ordinal == 1) return Node_var(holder.GetNodeByName(name.name));
  const std::vector<Node_var>& all = EntriesOf(holder, name.name).all;
  const bool isThere = name.ordinal > 0 && name.ordinal <= all.size();
  return isThere ? all[name.ordinal - 1] : Node_var();
}

CommandPaths::Entries& CommandPaths::EntriesOf(Node& holder, std::string_view name) {
  const auto [at, isNew] = lists_.try_emplace({&holder, std::string(name)});
  if (!isNew) return at->second;
  at->second.holder = Node_var::Share(&holder);
  for (const Node_var& child : holder.GetNodes()) {
    if (child->GetNodeName().View() != name) continue;
    at->second.all.push_back(child);
    at->second.byName.emplace(NameOfEntryIn(*child), child);
  }
  return at->second;
}

/// Null also when several are called so: which one is meant is not to be guessed.
CommandPaths::Node_var CommandPaths::EntryCalled(Node& holder, const PathName& name) {
  const std::string called(name.entry);
  if (written_.contains(called)) {
    lists_.clear();
    written_.clear();
  }
  const Entries& entries = EntriesOf(holder, name.name);
  std::vector<Node_var> found;
  const auto [begin, end] = entries.byName.equal_range(called);
  for (auto entry = begin; entry != end && found.size() < 2; ++entry) {
    if (NameOfEntryIn(*entry->second) == called) found.push_back(entry->second);
  }
  if (found.size() < 2) return found.empty() ? Node_var() : found.front();
  std::vector<std::string> places;
  for (std::size_t i = 0; i < entries.all.size() && places.size() < 2; ++i) {
    if (entries.all[i] != found[0] && entries.all[i] != found[1]) continue;
    places.push_back(Quoted(std::string(name.name) + "[" + std::to_string(i + 1) + "]"));
  }
  several_ = "there are several " + Quoted(name.text) + "; give the place of one, as in " +
             places.front() + " or " + places.back();
  return {};
}

CommandPaths::Value_var CommandPaths::ValueAt(std::string_view path) {
  const Ends ends = EndsOf(path);
  const Node_var holder = NodeAt(ends.holder);
  if (!holder || IsParameter(*holder)) return {};
  const auto value = FindValue(*holder, PathName(ends.last));
  return value ? holder->GetValues()[*value] : Value_var();
}

CommandPaths::Node_var CommandPaths::EntryToFill(std::string_view path) {
  const Ends ends = EndsOf(path);
  const Node_var list = NodeAt(ends.holder);
  if (!list || ends.holder.empty() || list->GetNodes().empty()) return {};
  const PathName last(ends.last);
  if (!last.HasBrackets() || Node_var(list->GetNodeByName(last.text))) {
    return Node_var(list->GetNode(-1));
  }
  return ChildOf(*list, last);
}

std::string CommandPaths::Missing(std::string_view path) {
  NodeAt(path);
  return several_.empty() ? MissingBranch(StandardItems(document_), std::string(path)) : several_;
}

int CommandPaths::Run(Verb verb, std::string_view command) {
  if (verb == Verb::Delete) return Delete(command);
  if (verb == Verb::Change) return Change(command);
  std::string_view rest = command;
  std::string_view path;
  CutPath(rest, path);
  NoteTexts(rest);
  if (!HasBrackets(path)) {
    const int result = RunIn(document_, verb, command);
    if (const Node_var target = lists_.empty() ? Node_var() : NodeAt(path)) Forget(*target);
    return result;
  }
  const Node_var target = verb == Verb::Field ? EntryToFill(path) : NodeAt(path);
  if (!target) return 1;
  const int result = RunAt(TopOf(path), *target, verb, command.substr(path.size()));
  Forget(*target);
  return result;
}

int CommandPaths::RunAt(std::string_view top, Node& node, Verb verb, std::string_view rest) {
  // To the language the node is the only one of a document of its own.
  VyrAnnStandardXMLParser view;
  const Node_var holder(view.GetNodeWithPath(top));
  holder->AddNode(&node, -1);
  const std::string name(node.GetNodeName().View());
  const int result = RunIn(view, verb, std::string(top) + "." + name + std::string(rest));
  holder->DeleteNodeWithPath(name);
  return result;
}

int CommandPaths::Change(std::string_view command) {
  std::string_view text = command;
  std::string_view path;
  CutPath(text, path);
  NoteTexts(text);
  if (RunIn(document_, Verb::Change, command) == 0) return 0;
  const std::string_view rest = command.substr(path.size());
  if (const Node_var node = NodeAt(path)) return RunAt(TopOf(path), *node, Verb::Change, rest);
  const Ends ends = EndsOf(path);
  const Node_var holder = HasBrackets(path) ? NodeAt(ends.holder) : Node_var();
  const std::string below = "." + std::string(ends.last) + std::string(rest);
  if (holder && RunAt(TopOf(path), *holder, Verb::Change, below) == 0) return 0;
  const Value_var value = ValueAt(path);
  if (!value) return 1;
  value->SetValue(text);
  return 0;
}

int CommandPaths::Delete(std::string_view path) {
  const Ends ends = EndsOf(path);
  const Node_var holder = NodeAt(ends.holder);
  if (RunIn(document_, Verb::Delete, path) == 0) {
    if (holder) Forget(*holder);
    return 0;
  }
  if (!holder || !HasBrackets(path)) return 1;
  const PathName last(ends.last);
  const Node_var entry = ChildOf(*holder, last);
  std::string name(entry ? entry->GetNodeName().View() : last.text);
  Forget(*holder);
  if (entry && Node_var(holder->GetNodeByName(name)).Get() != entry.Get()) {
    // The language deletes the first of a name: this one gets a name of its own for that.
    do name += '\n';
    while (Node_var(holder->GetNodeByName(name)));
    entry->SetNodeName(name);
  }
  if (holder->DeleteNodeWithPath(name) == 0) return 0;
  const auto value = FindValue(*holder, last);
  return value && holder->DeleteValue(static_cast<int>(*value)) == 1 ? 0 : 1;
}

void CommandPaths::Forget(const Node& holder) {
  for (auto list = lists_.lower_bound({&holder, ""});
       list != lists_.end() && list->first.first == &holder;) {
    list = lists_.erase(list);
  }
}

/// Any text that a command writes may be the new "Name" of an entry.
void CommandPaths::NoteTexts(std::string_view command) {
  if (lists_.empty()) return;
  for (;;) {
    written_.emplace(command);
    const std::size_t colon = command.find(':');
    if (colon == std::string_view::npos) break;
    written_.emplace(command.substr(0, colon));
    command.remove_prefix(colon + 1);
  }
}
