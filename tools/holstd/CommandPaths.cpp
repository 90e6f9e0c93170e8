#include "CommandPaths.h"

#include <algorithm>
#include <charconv>

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

/// The place, from 1, that the last field of a command names; nothing when it names none.
std::optional<std::size_t> PlaceAtEndOf(std::string_view command) {
  std::string_view digits = command.substr(command.rfind(':') + 1);
  digits.remove_prefix(std::min(digits.find_first_not_of(" \t+"), digits.size()));
  std::size_t place = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), place);
  return error == std::errc() ? std::optional(place) : std::nullopt;
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
  EntryList* const list = ListsOf(holder).Find(name.name);
  const bool isThere = list != nullptr && name.ordinal > 0 && name.ordinal <= list->Count();
  return isThere ? list->At(name.ordinal - 1) : Node_var();
}

EntryLists& CommandPaths::ListsOf(Node& holder) {
  return lists_.try_emplace(&holder, holder).first->second;
}

/// Null also when nobody has asked for the lists of the holder yet.
EntryList* CommandPaths::ListIn(const Node& holder, std::string_view name) {
  const auto lists = lists_.find(&holder);
  return lists == lists_.end() ? nullptr : lists->second.Find(name);
}

bool CommandPaths::HasSeveral(Node& holder, std::string_view name) {
  const EntryList* const list = ListsOf(holder).Find(name);
  return list != nullptr && list->Count() > 1;
}

/// Null also when several are called so: which one is meant is not to be guessed.
CommandPaths::Node_var CommandPaths::EntryCalled(Node& holder, const PathName& name) {
  EntryList* const list = ListsOf(holder).Find(name.name);
  if (list == nullptr) {
    Node_var only(holder.GetNodeByName(name.name));
    return only && NameOfEntryIn(*only) == name.entry ? only : Node_var();
  }
  const std::vector<Node_var> found = list->Called(name.entry);
  if (found.size() < 2) return found.empty() ? Node_var() : found.front();
  std::vector<std::string> places;
  for (const std::size_t place : list->PlacesOfCalled(name.entry)) {
    places.push_back(Quoted(std::string(name.name) + "[" + std::to_string(place + 1) + "]"));
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
  if (!list || ends.holder.empty() || list->GetNumOfNode() == 0) return {};
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
  std::string_view rest = command;
  std::string_view path = command;
  if (verb != Verb::Delete) CutPath(rest, path);
  const std::vector<Entry> entries = EntriesOn(verb, path);
  const int result = RunAlone(verb, path, command);
  for (const auto& [holder, entry] : entries) {
    EntryList* const list = ListIn(*holder, entry->GetNodeName().View());
    if (list != nullptr) list->NoteName(*entry);
  }
  return result;
}

/// The entries of which a command at a path may change the "Name": the one at the path, and those
/// that hold the field, or its only value, which the path leads to.
std::vector<CommandPaths::Entry> CommandPaths::EntriesOn(Verb verb, std::string_view path) {
  std::vector<Entry> entries;
  if (lists_.empty() && !HasBrackets(path)) return entries;
  Node_var entry = verb == Verb::Field ? EntryToFill(path) : NodeAt(path);
  for (int level = 0; level < 3 && !path.empty(); ++level) {
    path = EndsOf(path).holder;
    const Node_var holder = NodeAt(path);
    const bool isToGo = verb == Verb::Delete && level == 0;
    if (holder && entry && !isToGo) entries.push_back({holder, entry});
    entry = holder;
  }
  return entries;
}

int CommandPaths::RunAlone(Verb verb, std::string_view path, std::string_view command) {
  switch (verb) {
    case Verb::Delete:
      return Delete(path);
    case Verb::Change:
      return Change(command);
    case Verb::Node:
    case Verb::Instance:
    case Verb::Value:
      return Add(verb, path, command);
    default:
      break;
  }
  if (!HasBrackets(path)) return RunIn(document_, verb, command);
  const Node_var target = EntryToFill(path);
  return target ? RunAt(TopOf(path), *target, verb, command.substr(path.size())) : 1;
}

/// Does a command that adds to the node at `path`, and has its lists know of a new child.
int CommandPaths::Add(Verb verb, std::string_view path, std::string_view command) {
  const Node_var target = lists_.empty() && !HasBrackets(path) ? Node_var() : NodeAt(path);
  const auto run = [&] {
    if (!HasBrackets(path)) return RunIn(document_, verb, command);
    return target ? RunAt(TopOf(path), *target, verb, command.substr(path.size())) : 1;
  };
  const auto lists = target ? lists_.find(target.Get()) : lists_.end();
  if (lists == lists_.end()) return run();
  const std::string_view added = command.substr(std::min(command.size(), path.size() + 1));
  const std::string_view name = added.substr(0, added.find(':'));
  const int count = target->GetNumOfNode();
  const Node_var first(target->GetNodeByName(name));
  const Node_var last(count == 0 ? nullptr : target->GetNode(-1));
  const int result = run();
  const bool isAdded = target->GetNumOfNode() != count;
  if (isAdded && !lists->second.Added(name, first, last, PlaceAtEndOf(added))) lists_.erase(lists);
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
  const int count = holder ? holder->GetNumOfNode() : 0;
  const bool isFirst = holder && Node_var(holder->GetNodeByName(ends.last));
  if (RunIn(document_, Verb::Delete, path) == 0) {
    EntryList* const list = isFirst ? ListIn(*holder, ends.last) : nullptr;
    if (list != nullptr) list->Remove(ends.last);
    // The language may have cut the path within brackets, and have deleted something else.
    if (HasBrackets(path) && !(isFirst && holder->GetNumOfNode() == count - 1)) lists_.clear();
    return 0;
  }
  if (!holder || !HasBrackets(path)) return 1;
  const PathName last(ends.last);
  const Node_var entry = ChildOf(*holder, last);
  std::string name(entry ? entry->GetNodeName().View() : last.text);
  EntryList* const list = entry ? ListIn(*holder, name) : nullptr;
  if (entry && Node_var(holder->GetNodeByName(name)).Get() != entry.Get()) {
    // The language deletes the first of a name: this one gets a name of its own for that.
    do name += '\n';
    while (Node_var(holder->GetNodeByName(name)));
    entry->SetNodeName(name);
  }
  if (holder->DeleteNodeWithPath(name) == 0) {
    if (list != nullptr) list->Remove(name);
    return 0;
  }
  const auto value = FindValue(*holder, last);
  return value && holder->DeleteValue(static_cast<int>(*value)) == 1 ? 0 : 1;
}
