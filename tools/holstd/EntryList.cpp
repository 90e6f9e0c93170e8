#include "EntryList.h"

#include "StandardItems.h"

std::string_view NameOfEntryIn(const VyrAnnStandardXMLNode& entry) {
  const VyrAnnStandardXMLValue* name = NameOfEntry(entry);
  return name == nullptr ? std::string_view() : name->GetValue().View();
}

EntryList::EntryList() : entries_(new Node()) {}

EntryList::Node_var EntryList::At(std::size_t place) const {
  return Node_var(entries_->GetNode(static_cast<int>(place)));
}

std::vector<EntryList::Node_var> EntryList::Called(std::string_view name) {
  if (!hasNames_) {
    hasNames_ = true;
    for (const Node_var& entry : entries_->GetNodes()) NoteName(*entry);
  }
  std::vector<Node_var> found;
  for (auto at = byName_.lower_bound({std::string(name), nullptr});
       at != byName_.end() && at->first == name && found.size() < 2; ++at) {
    found.push_back(Node_var::Share(at->second));
  }
  return found;
}

std::vector<std::size_t> EntryList::PlacesOfCalled(std::string_view name) const {
  std::vector<std::size_t> places;
  const Node::Nodes& entries = entries_->GetNodes();
  for (std::size_t i = 0; i < entries.size() && places.size() < 2; ++i) {
    if (NameOfEntryIn(*entries[i]) == name) places.push_back(i);
  }
  return places;
}

void EntryList::Insert(Node& entry, std::size_t place) {
  entries_->AddNode(&entry, place == Count() ? -1 : static_cast<int>(place));
  if (hasNames_) NoteName(entry);
}

void EntryList::Remove(std::string_view name) {
  const Node_var entry(entries_->GetNodeByName(name));
  if (!entry) return;
  ForgetName(*entry);
  entries_->DeleteNodeWithPath(name);
}

void EntryList::NoteName(Node& entry) {
  if (!hasNames_) return;
  ForgetName(entry);
  const std::string name(NameOfEntryIn(entry));
  names_.emplace(&entry, name);
  byName_.emplace(name, &entry);
}

void EntryList::ForgetName(const Node& entry) {
  const auto name = names_.find(&entry);
  if (name == names_.end()) return;
  byName_.erase({name->second, const_cast<Node*>(name->first)});
  names_.erase(name);
}

EntryLists::EntryLists(Node& holder) : holder_(Node_var::Share(&holder)) {
  std::unordered_map<std::string_view, Node*> firsts;
  for (const Node_var& child : holder.GetNodes()) {
    const std::string_view name = child->GetNodeName().View();
    const auto [first, isFirst] = firsts.try_emplace(name, child.Get());
    if (isFirst) continue;
    EntryList& list = lists_[std::string(name)];
    if (list.Count() == 0) list.Insert(*first->second, 0);
    list.Insert(*child, list.Count());
  }
}

EntryList* EntryLists::Find(std::string_view name) {
  const auto list = lists_.find(name);
  return list == lists_.end() ? nullptr : &list->second;
}

bool EntryLists::Added(std::string_view name, const Node_var& first, const Node_var& last,
                       std::optional<std::size_t> place) {
  if (!first) return true;  // the only one of its name
  const Node_var end(holder_->GetNode(-1));
  const bool isAtEnd = end.Get() != last.Get();
  EntryList* list = Find(name);
  if (list == nullptr) {
    const Node_var firstNow(holder_->GetNodeByName(name));
    const bool isBefore = firstNow.Get() != first.Get();
    if (!isBefore && !isAtEnd) return false;
    list = &lists_[std::string(name)];
    list->Insert(*first, 0);
    list->Insert(isBefore ? *firstNow : *end, isBefore ? 0 : 1);
    return true;
  }
  if (isAtEnd) {
    list->Insert(*end, list->Count());
    return true;
  }
  // Among other names it would have to be counted how many of its own are before it.
  const auto count = static_cast<std::size_t>(holder_->GetNumOfNode());
  if (!place || *place == 0 || *place > count || list->Count() + 1 != count) return false;
  list->Insert(*Node_var(holder_->GetNode(static_cast<int>(*place - 1))), *place - 1);
  return true;
}
