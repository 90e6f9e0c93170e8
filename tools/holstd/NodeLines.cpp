#include "NodeLines.h"

using Tree = VyrXMLTree;

NodeLines::NodeLines(const InputFile& file) {
  VyrIXMLDOMDocumentBuilder_var builder;
  const bool isRead = VyrSucceeded(CreateVyrIXMLDOMDocumentBuilder(builder)) &&
                      VyrSucceeded(builder->BuildFromFile(file.Path(), document_));
  if (isRead) tree_ = &document_->GetTree();
}

int NodeLines::LineOf(const std::vector<std::string_view>& path) const {
  return Line(Find(path));
}

int NodeLines::LineOfChild(const std::vector<std::string_view>& path, std::size_t index) const {
  return Line(ChildOf(Find(path), index));
}

Tree::Index NodeLines::Find(const std::vector<std::string_view>& path) const {
  Tree::Index item = tree_ == nullptr ? Tree::kNone : tree_->GetDocumentElement();
  for (const std::string_view name : path) {
    Tree::Index child = ChildOf(item, 0);
    while (child != Tree::kNone && !(IsNode(child) && NameOf(child) == name)) {
      child = tree_->GetNextSibling(child);
    }
    item = child;
  }
  return item;
}

Tree::Index NodeLines::ChildOf(Tree::Index parent, std::size_t index) const {
  if (parent == Tree::kNone) return Tree::kNone;
  Tree::Index child = tree_->GetFirstChild(parent);
  for (; child != Tree::kNone; child = tree_->GetNextSibling(child)) {
    if (IsNode(child) && index-- == 0) break;
  }
  return child;
}

bool NodeLines::IsNode(Tree::Index item) const {
  if (tree_->GetKind(item) != Tree::Kind::Element) return false;
  const Tree::Name& name = tree_->GetName(tree_->GetNameId(item));
  const Tree::Name& top = tree_->GetName(tree_->GetNameId(tree_->GetDocumentElement()));
  return name.namespaceURI == top.namespaceURI &&
         (name.localName == "node" || name.localName == "typeval");
}

std::string_view NodeLines::NameOf(Tree::Index item) const {
  for (const Tree::Attribute& attribute : tree_->GetAttributes(item)) {
    if (tree_->GetName(attribute.name).qualifiedName == "name") return tree_->GetValue(attribute);
  }
  return {};
}

int NodeLines::Line(Tree::Index item) const {
  return item == Tree::kNone ? 0 : tree_->GetLine(item);
}
