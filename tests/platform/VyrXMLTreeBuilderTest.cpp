#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "VyrXMLReader.h"
#include "VyrXMLTreeBuilder.h"

namespace {

TEST(XMLTreeBuilder, EndsNothingWhenNoElementIsOpen) {
  VyrXMLTree tree;
  VyrXMLTreeBuilder builder(tree, 0);
  builder.EndElement();
  builder.StartElement({"n", nullptr, nullptr}, 1);
  builder.EndElement();
  builder.EndElement();
  builder.EndDocument();
  EXPECT_EQ(tree.GetCount(), 2u);
  EXPECT_EQ(tree.GetParent(1), VyrXMLTree::kDocument);
  EXPECT_EQ(tree.GetDocumentElement(), 1u);
}

TEST(XMLTreeBuilder, NamesOfOneNamespaceShareItsText) {
  VyrXMLTree tree;
  VyrProblem problem;
  ASSERT_TRUE(VyrReadXML("<a xmlns='u'><b/><c d=''/></a>", nullptr, tree, problem));
  const VyrXMLTree moved = std::move(tree);
  const auto uri = [&](VyrXMLTree::Index item) {
    return moved.GetName(moved.GetNameId(item)).namespaceURI;
  };
  EXPECT_EQ(uri(1), "u");
  EXPECT_EQ(static_cast<const void*>(uri(1).data()), uri(2).data());
  EXPECT_EQ(static_cast<const void*>(uri(1).data()), uri(3).data());
}

TEST(XMLTreeBuilder, TellsWhenTextOfAnyKindOutgrowsTheTree) {
  using Builder = VyrXMLTreeBuilder;
  static constexpr Builder::NameKey name = {"n", nullptr, nullptr};
  const std::function<void(Builder&, std::string_view)> kinds[] = {
      [](Builder& builder, std::string_view text) { builder.AddText(text, 1); },
      [](Builder& builder, std::string_view text) { builder.AddAttribute(name, text); },
      [](Builder& builder, std::string_view text) {
        builder.AddLeaf(VyrXMLTree::Kind::Comment, text, 1);
      },
      [](Builder& builder, std::string_view text) {
        builder.AddProcessingInstruction(name, text, 1);
      },
  };
  for (const auto& add : kinds) {
    for (const std::size_t size : {9u, 10u, 11u}) {
      VyrXMLTree tree;
      Builder builder(tree, 0, 10);
      builder.StartElement(name, 1);
      add(builder, std::string(size, 'x'));
      EXPECT_EQ(builder.FitsInTree(), size <= 10);
    }
  }
}

}  // namespace
