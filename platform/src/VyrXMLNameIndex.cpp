#include "VyrXMLNameIndex.h"

#include <algorithm>
#include <functional>

#include "VyrSteps.h"
#include "VyrXMLNameWalk.h"

namespace {

constexpr std::uint32_t kFree = ~std::uint32_t{0};
constexpr std::size_t kFewestSlots = 64;
// So many candidates are looked at faster than a better way to them is found.
constexpr std::size_t kFewCandidates = 64;
// So many steps are looked at ahead for a rare name: no path of a standard is as long.
constexpr std::size_t kStepsAhead = 16;
// The elements that a search may look at, for each item of the document.
constexpr std::size_t kMostWorkOfItem = 8;

std::uint32_t HashOf(std::uint32_t namespaceId, std::string_view name) {
  const std::size_t hash = std::hash<std::string_view>()(name);
  return static_cast<std::uint32_t>(hash ^ (hash >> 32)) + namespaceId * 0x9E3779B9u;
}

}  // namespace

class VyrXMLNameIndex::Builder {
 public:
  explicit Builder(VyrXMLNameIndex& index) : index_(index), tree_(index.tree_) {
    ReadNames();
    index_.slots_.assign(kFewestSlots, kFree);
    CollectOccurrences();
    FillGroups();
    SortByParent();
  }

 private:
  struct Occurrence {
    Index item;
    std::uint32_t group;
  };

  void ReadNames() {
    index_.names_.reserve(tree_.GetNameCount());
    for (std::uint32_t id = 0; id < tree_.GetNameCount(); ++id) {
      const VyrXMLTree::Name& name = tree_.GetName(id);
      const auto next = static_cast<std::uint32_t>(index_.namespaces_.size());
      const auto entry = index_.namespaces_.try_emplace(name.namespaceURI, next).first;
      index_.names_.push_back(
          {entry->second, name.namespaceURI.empty() && name.qualifiedName == "name"});
    }
  }

  void CollectOccurrences() {
    const Index root = tree_.GetDocumentElement();
    Index open = root;
    std::uint32_t depth = 0;
    occurrences_.reserve(tree_.GetCount() / 2);
    index_.groupOf_.assign(tree_.GetCount(), VyrXMLNameWalk::kUnnamed);
    for (Index item = root + 1; item < tree_.GetEnd(root); ++item) {
      if (tree_.GetKind(item) != VyrXMLTree::Kind::Element) continue;
      for (; open != tree_.GetParent(item); open = tree_.GetParent(open)) --depth;
      open = item;
      index_.deepest_ = std::max(index_.deepest_, ++depth);
      const VyrXMLTree::Attribute* name = index_.NameAttribute(item);
      if (name != nullptr) Count(item, tree_.GetValue(*name));
    }
  }

  void Count(Index item, std::string_view name) {
    const std::uint32_t number = GroupOf(index_.names_[tree_.GetNameId(item)].namespaceId, name);
    Group& group = index_.groups_[number];
    if (tree_.GetParent(item) < lastParents_[number]) group.byParent = 0;
    lastParents_[number] = tree_.GetParent(item);
    ++group.count;
    index_.groupOf_[item] = number;
    occurrences_.push_back({item, number});
  }

  std::uint32_t GroupOf(std::uint32_t namespaceId, std::string_view name) {
    const std::uint32_t hash = HashOf(namespaceId, name);
    std::uint32_t& slot = index_.slots_[index_.Slot(hash, namespaceId, name)];
    if (slot != kFree) return slot;
    const auto number = static_cast<std::uint32_t>(index_.groups_.size());
    slot = number;
    index_.groups_.push_back({name, hash, namespaceId, 0, 0, kSameOrder});
    lastParents_.push_back(0);
    if (index_.groups_.size() * 2 > index_.slots_.size()) Grow();
    return number;
  }

  void Grow() {
    index_.slots_.assign(index_.slots_.size() * 2, kFree);
    for (std::uint32_t number = 0; number < index_.groups_.size(); ++number) {
      const Group& group = index_.groups_[number];
      index_.slots_[index_.Slot(group.hash, group.namespaceId, group.name)] = number;
    }
  }

  void FillGroups() {
    std::uint32_t begin = 0;
    for (Group& group : index_.groups_) {
      group.begin = begin;
      begin += group.count;
      group.count = 0;
    }
    index_.items_.resize(begin);
    for (const auto& [item, number] : occurrences_) {
      Group& group = index_.groups_[number];
      index_.items_[group.begin + group.count++] = item;
    }
  }

  void SortByParent() {
    std::vector<Index>& sorted = index_.itemsByParent_;
    for (Group& group : index_.groups_) {
      if (group.byParent == kSameOrder) continue;
      group.byParent = static_cast<std::uint32_t>(sorted.size());
      const Items items = index_.InDocumentOrder(group);
      sorted.insert(sorted.end(), items.begin(), items.end());
      std::stable_sort(sorted.begin() + group.byParent, sorted.end(), [this](Index a, Index b) {
        return tree_.GetParent(a) < tree_.GetParent(b);
      });
    }
    sorted.shrink_to_fit();
  }

  VyrXMLNameIndex& index_;
  const VyrXMLTree& tree_;
  std::vector<Occurrence> occurrences_;
  std::vector<Index> lastParents_;  // by group, of the element added last
};

VyrXMLNameIndex::VyrXMLNameIndex(const VyrXMLTree& tree) : tree_(tree) {
  Builder build(*this);
}

const VyrXMLTree::Attribute* VyrXMLNameIndex::NameAttribute(Index element) const {
  for (const VyrXMLTree::Attribute& attribute : tree_.GetAttributes(element)) {
    if (names_[attribute.name].isNameAttribute) return &attribute;
  }
  return nullptr;
}

std::size_t VyrXMLNameIndex::Slot(std::uint32_t hash, std::uint32_t namespaceId,
                                  std::string_view name) const {
  const std::size_t mask = slots_.size() - 1;
  std::size_t slot = hash & mask;
  for (; slots_[slot] != kFree; slot = (slot + 1) & mask) {
    const Group& group = groups_[slots_[slot]];
    if (group.hash == hash && group.namespaceId == namespaceId && group.name == name) break;
  }
  return slot;
}

const VyrXMLNameIndex::Group* VyrXMLNameIndex::FindGroup(std::uint32_t namespaceId,
                                                         std::string_view name) const {
  const std::uint32_t number = slots_[Slot(HashOf(namespaceId, name), namespaceId, name)];
  return number == kFree ? nullptr : &groups_[number];
}

VyrXMLNameIndex::Items VyrXMLNameIndex::InDocumentOrder(const Group& group) const {
  return Items(items_).subspan(group.begin, group.count);
}

VyrXMLNameIndex::Items VyrXMLNameIndex::ByParent(const Group& group) const {
  if (group.byParent == kSameOrder) return InDocumentOrder(group);
  return Items(itemsByParent_).subspan(group.byParent, group.count);
}

VyrXMLNameIndex::Items VyrXMLNameIndex::Below(Index element, const Group& group) const {
  const Items items = InDocumentOrder(group);
  const auto begin = std::upper_bound(items.begin(), items.end(), element);
  return {begin, std::lower_bound(begin, items.end(), tree_.GetEnd(element))};
}

std::vector<VyrXMLNameIndex::Index> VyrXMLNameIndex::Find(const VyrNameChain& chain) const {
  const Index root = tree_.GetDocumentElement();
  const VyrXMLTree::Name& name = tree_.GetName(tree_.GetNameId(root));
  std::vector<Leg> path;
  if (name.localName != chain.rootName || name.namespaceURI != chain.rootNamespaceURI ||
      !Prepare(chain.steps, path)) {
    return {};
  }
  std::vector<Index> contexts = {root};
  std::vector<Index> found;
  std::size_t work = 0;
  for (std::span<const Leg> legs = path; !legs.empty() && !contexts.empty();) {
    const bool mayTakeMore = contexts.size() == 1 && !legs.front().isChild;
    const std::size_t taken = mayTakeMore ? FarthestLegToTake(contexts.front(), legs) : 1;
    if (taken > 1) {
      work += Below(contexts.front(), *legs[taken - 1].group).size() * deepest_;
      AddDescendantsThrough(contexts.front(), legs.first(taken), found);
    } else if (legs.front().isChild) {
      AddChildren(contexts, legs.front(), found);
    } else {
      AddDescendants(contexts, legs.front(), found);
    }
    legs = legs.subspan(taken);
    work += contexts.size() + found.size();
    VyrSteps::Count(contexts.size() + found.size());
    // One walk over the document costs less than what it comes to where names repeat on and on.
    if (work > kMostWorkOfItem * tree_.GetCount()) {
      return VyrXMLNameWalk(tree_, groupOf_)
          .Find(std::vector<VyrXMLNameWalk::Step>(path.begin(), path.end()));
    }
    contexts.swap(found);
    found.clear();
  }
  return contexts;
}

/// False when a step leads nowhere in all of the document.
bool VyrXMLNameIndex::Prepare(std::span<const VyrNameChain::Step> steps,
                              std::vector<Leg>& legs) const {
  legs.reserve(steps.size());
  const char* knownURI = nullptr;
  std::uint32_t namespaceId = 0;
  for (const VyrNameChain::Step& step : steps) {
    if (step.namespaceURI.data() != knownURI) {
      const auto entry = namespaces_.find(step.namespaceURI);
      if (entry == namespaces_.end()) return false;
      knownURI = step.namespaceURI.data();
      namespaceId = entry->second;
    }
    const Group* group = FindGroup(namespaceId, step.name);
    if (group == nullptr) return false;
    legs.push_back({{static_cast<std::uint32_t>(group - groups_.data()), step.isChild}, group});
  }
  return true;
}

/// How many legs to take at once from one element. One is the rule. But where the next name is a
/// frequent one and a later one is rare, it costs less to start at the rare elements and to look up
/// from each whether the names between are above it.
std::size_t VyrXMLNameIndex::FarthestLegToTake(Index from, std::span<const Leg> legs) const {
  if (legs.size() == 1) return 1;
  std::size_t taken = 1;
  std::size_t least = Below(from, *legs.front().group).size();
  if (least <= kFewCandidates) return taken;
  const std::size_t end = std::min(legs.size(), kStepsAhead);
  for (std::size_t i = 1; i < end && !legs[i].isChild; ++i) {
    const std::size_t cost = Below(from, *legs[i].group).size() * deepest_;
    if (cost >= least) continue;
    least = cost;
    taken = i + 1;
  }
  return taken;
}

/// `contexts` are in document order.
void VyrXMLNameIndex::AddDescendants(Items contexts, const Leg& leg,
                                     std::vector<Index>& found) const {
  const Items items = InDocumentOrder(*leg.group);
  auto begin = items.begin();
  Index covered = 0;
  for (const Index context : contexts) {
    if (context < covered) continue;  // inside the one before
    covered = tree_.GetEnd(context);
    begin = std::upper_bound(begin, items.end(), context);
    const auto end = std::lower_bound(begin, items.end(), covered);
    found.insert(found.end(), begin, end);
    begin = end;
  }
}

/// All legs look at any depth; what the last of them finds is added.
void VyrXMLNameIndex::AddDescendantsThrough(Index context, std::span<const Leg> legs,
                                            std::vector<Index>& found) const {
  for (const Index item : Below(context, *legs.back().group)) {
    if (IsReachedThrough(legs.first(legs.size() - 1), context, item)) found.push_back(item);
  }
}

/// The nearest ancestor that has a name leaves the most room for the names before it, so a walk up
/// that takes each name where it first can finds the chain if there is one.
bool VyrXMLNameIndex::IsReachedThrough(std::span<const Leg> legs, Index context, Index item) const {
  for (Index up = tree_.GetParent(item); up != context && !legs.empty(); up = tree_.GetParent(up)) {
    VyrSteps::Count();
    if (groupOf_[up] == legs.back().number) legs = legs.first(legs.size() - 1);
  }
  return legs.empty();
}

void VyrXMLNameIndex::AddChildren(Items contexts, const Leg& leg, std::vector<Index>& found) const {
  const Items items = ByParent(*leg.group);
  auto next = items.begin();
  for (const Index context : contexts) {
    next = std::lower_bound(next, items.end(), context, [this](Index item, Index parent) {
      return tree_.GetParent(item) < parent;
    });
    for (; next != items.end() && tree_.GetParent(*next) == context; ++next) found.push_back(*next);
  }
  // Children of an element come before and after those of another one inside it.
  if (!std::is_sorted(found.begin(), found.end())) std::sort(found.begin(), found.end());
}
