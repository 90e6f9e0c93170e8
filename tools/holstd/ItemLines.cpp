#include "ItemLines.h"

#include <algorithm>
#include <array>
#include <string_view>

using Tree = VyrXMLTree;
using Items = StandardItems;

ItemLines::ItemLines(const InputFile& file, const Items& items) {
  VyrIXMLDOMDocumentBuilder_var builder;
  if (VyrFailed(CreateVyrIXMLDOMDocumentBuilder(builder)) ||
      VyrFailed(builder->BuildFromFile(file.Path(), document_))) {
    return;
  }
  tree_ = &document_->GetTree();
  elements_.assign(Items::kTops, tree_->GetDocumentElement());
  for (Items::Index item = 0; item < elements_.size(); ++item) AddChildren(item);
  // The file has become another one since it was read.
  if (elements_.size() != items.Count()) elements_.clear();
}

ItemLines::Meaning ItemLines::MeaningOfName(std::string_view name) {
  constexpr std::array<std::string_view, 5> values = {"intval", "floatval", "strval", "enumval",
                                                      "colorval"};
  if (name == "enumdef") return Meaning::Enum;
  if (name == "typedef") return Meaning::TypeDef;
  if (name == "node" || name == "typeval") return Meaning::Node;
  const bool isValue = std::find(values.begin(), values.end(), name) != values.end();
  return isValue ? Meaning::Value : Meaning::Other;
}

ItemLines::Meaning ItemLines::MeaningOf(Tree::Index element) const {
  if (tree_->GetKind(element) != Tree::Kind::Element) return Meaning::Other;
  const Tree::Name& name = tree_->GetName(tree_->GetNameId(element));
  const Tree::Name& top = tree_->GetName(tree_->GetNameId(tree_->GetDocumentElement()));
  return name.namespaceURI == top.namespaceURI ? MeaningOfName(name.localName) : Meaning::Other;
}

bool ItemLines::IsBelow(Items::Index parent, Meaning meaning) const {
  switch (parent) {
    case Items::kEnum:
      return meaning == Meaning::Enum;
    case Items::kTypeDef:
      return meaning == Meaning::TypeDef;
    case Items::kRoot:
      return meaning == Meaning::Node;
    default:
      return meaning == Meaning::Node || meaning == Meaning::TypeDef;
  }
}

void ItemLines::AddChildren(Items::Index parent) {
  for (Tree::Index child = tree_->GetFirstChild(elements_[parent]); child != Tree::kNone;
       child = tree_->GetNextSibling(child)) {
    if (IsBelow(parent, MeaningOf(child))) elements_.push_back(child);
  }
}

int ItemLines::LineOf(const StandardPlace& place) const {
  if (place.item >= elements_.size() || place.item < Items::kTops) return 0;
  const Tree::Index element = elements_[place.item];
  if (!place.value) return tree_->GetLine(element);
  if (listedItem_ != place.item) {
    listedItem_ = place.item;
    listedValues_.clear();
    for (Tree::Index child = tree_->GetFirstChild(element); child != Tree::kNone;
         child = tree_->GetNextSibling(child)) {
      if (MeaningOf(child) == Meaning::Value) listedValues_.push_back(child);
    }
  }
  return *place.value < listedValues_.size() ? tree_->GetLine(listedValues_[*place.value]) : 0;
}

std::optional<ItemLines::Estranged> ItemLines::FirstEstranged() const {
  if (tree_ == nullptr) return std::nullopt;
  const std::string_view top =
      tree_->GetName(tree_->GetNameId(tree_->GetDocumentElement())).namespaceURI;
  std::optional<Estranged> first;
  for (Tree::Index item = tree_->GetDocumentElement(); item < tree_->GetCount();) {
    const bool isElement = tree_->GetKind(item) == Tree::Kind::Element;
    const Tree::Name* name = isElement ? &tree_->GetName(tree_->GetNameId(item)) : nullptr;
    if (name == nullptr || name->namespaceURI == top) {
      ++item;
      continue;
    }
    if (MeaningOfName(name->localName) != Meaning::Other) {
      if (!first) first = Estranged{tree_->GetLine(item), name->qualifiedName, 0};
      ++first->count;
    }
    item = tree_->GetEnd(item);  // what it holds is passed over with it
  }
  return first;
}
