#include "VyrXMLTree.h"

#include "VyrXMLTreeBuilder.h"

VyrXMLTree::VyrXMLTree() {
  names_.emplace_back();
  items_.push_back({Kind::Document, 1, 0, kNone, 1, 0, 0});
}

VyrXMLTree::Index VyrXMLTree::GetDocumentElement() const {
  Index child = GetFirstChild(kDocument);
  while (child != kNone && GetKind(child) != Kind::Element) child = GetNextSibling(child);
  return child;
}

VyrXMLTreeBuilder::VyrXMLTreeBuilder(VyrXMLTree& tree, std::size_t documentSize,
                                     std::size_t mostText)
    : tree_(tree), mostText_(mostText) {
  // What standards come to: an item every 16 bytes, an attribute every 64, half of it text. Memory
  // that is reserved too much is never touched.
  tree.items_.reserve(documentSize / 16);
  tree.attributes_.reserve(documentSize / 64);
  tree.text_.reserve(documentSize / 2);
}

std::size_t VyrXMLTreeBuilder::NameKeyHash::operator()(const NameKey& key) const {
  // Mixed part by part: who writes a file has a say in how far apart its names are stored.
  std::uint64_t hash = 0;
  for (const char* part : {key.localName, key.prefix, key.namespaceURI}) {
    hash = (hash ^ reinterpret_cast<std::uintptr_t>(part)) * 0x9E3779B97F4A7C15u;
    hash ^= hash >> 29;
  }
  return hash;
}

std::uint32_t VyrXMLTreeBuilder::NameId(const NameKey& key) {
  const auto [entry, isNew] =
      nameIds_.try_emplace(key, static_cast<std::uint32_t>(tree_.names_.size()));
  if (isNew) {
    const auto text = [](const char* part) { return std::string(part == nullptr ? "" : part); };
    const std::string qualified =
        key.prefix == nullptr ? text(key.localName) : text(key.prefix) + ":" + key.localName;
    tree_.names_.push_back({StoreNamespace(key.namespaceURI), text(key.localName), qualified});
  }
  return entry->second;
}

std::string_view VyrXMLTreeBuilder::StoreNamespace(const char* name) {
  if (name == nullptr) return {};
  const auto [entry, isNew] = namespaces_.try_emplace(name);
  if (isNew) entry->second = tree_.namespaces_.emplace_back(name);
  return entry->second;
}

std::uint32_t VyrXMLTreeBuilder::StoreText(std::string_view text) {
  if (tree_.text_.size() + text.size() > mostText_) {
    fits_ = false;
    return 0;
  }
  const auto begin = static_cast<std::uint32_t>(tree_.text_.size());
  tree_.text_.append(text);
  return begin;
}

VyrXMLTree::Index VyrXMLTreeBuilder::AddItem(VyrXMLTree::Kind kind, std::uint32_t name, int line) {
  const VyrXMLTree::Index item = tree_.GetCount();
  if (item == VyrXMLTree::kNone - 1) fits_ = false;
  tree_.items_.push_back({kind, static_cast<std::uint32_t>(line), name, parent_, item + 1, 0, 0});
  return item;
}

void VyrXMLTreeBuilder::StartElement(const NameKey& name, int line) {
  parent_ = AddItem(VyrXMLTree::Kind::Element, NameId(name), line);
  tree_.items_[parent_].dataBegin = static_cast<std::uint32_t>(tree_.attributes_.size());
}

void VyrXMLTreeBuilder::AddAttribute(const NameKey& name, std::string_view value) {
  tree_.attributes_.push_back(
      {NameId(name), StoreText(value), static_cast<std::uint32_t>(value.size())});
  ++tree_.items_[parent_].dataSize;
}

void VyrXMLTreeBuilder::EndElement() {
  if (parent_ == VyrXMLTree::kDocument) return;
  tree_.items_[parent_].end = tree_.GetCount();
  parent_ = tree_.items_[parent_].parent;
}

void VyrXMLTreeBuilder::AddText(std::string_view text, int line) {
  VyrXMLTree::Item& last = tree_.items_.back();
  if (last.kind == VyrXMLTree::Kind::Text && last.parent == parent_ &&
      last.dataBegin + std::size_t{last.dataSize} == tree_.text_.size()) {
    StoreText(text);
    last.dataSize += static_cast<std::uint32_t>(text.size());
    return;
  }
  AddLeaf(VyrXMLTree::Kind::Text, text, line);
}

void VyrXMLTreeBuilder::AddLeaf(VyrXMLTree::Kind kind, std::string_view text, int line) {
  const VyrXMLTree::Index item = AddItem(kind, 0, line);
  tree_.items_[item].dataBegin = StoreText(text);
  tree_.items_[item].dataSize = static_cast<std::uint32_t>(text.size());
}

void VyrXMLTreeBuilder::AddProcessingInstruction(const NameKey& target, std::string_view text,
                                                 int line) {
  AddLeaf(VyrXMLTree::Kind::ProcessingInstruction, text, line);
  tree_.items_.back().name = NameId(target);
}

void VyrXMLTreeBuilder::EndDocument() {
  tree_.items_[VyrXMLTree::kDocument].end = tree_.GetCount();
}
