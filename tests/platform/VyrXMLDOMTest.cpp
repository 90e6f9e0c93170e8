#include "VyrBaseUnknown.h"
#include "VyrXMLDOM.h"
#include "XMLTest.h"

namespace {

using Type = VyrDOMNodeType;

/// What a node says of itself.
struct Facts {
  Type type;
  std::string name, localName, uri, value;
  friend bool operator==(const Facts&, const Facts&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Facts& facts) {
    return out << static_cast<int>(facts.type) << '|' << facts.name << '|' << facts.localName << '|'
               << facts.uri << '|' << facts.value;
  }
};

Facts FactsOf(VyrIDOMNode& node) {
  Facts facts{};
  VyrUnicodeString name, localName, uri, value;
  EXPECT_EQ(node.GetNodeType(facts.type), S_OK);
  EXPECT_EQ(node.GetNodeName(name), S_OK);
  EXPECT_EQ(node.GetLocalName(localName), S_OK);
  EXPECT_EQ(node.GetNamespaceURI(uri), S_OK);
  EXPECT_EQ(node.GetNodeValue(value), S_OK);
  return {facts.type, name.CString(), localName.CString(), uri.CString(), value.CString()};
}

std::vector<VyrIDOMNode_var> NodesOf(VyrIDOMNodeList& list) {
  unsigned int length = 99;
  EXPECT_EQ(list.GetLength(length), S_OK);
  std::vector<VyrIDOMNode_var> nodes(length);
  for (unsigned int i = 0; i < length; ++i) EXPECT_EQ(list.Item(i, nodes[i]), S_OK);
  return nodes;
}

std::vector<VyrIDOMNode_var> ChildrenOf(VyrIDOMNode& node) {
  VyrIDOMNodeList_var list;
  EXPECT_EQ(node.GetChildNodes(list), S_OK);
  return NodesOf(*list);
}

class DOM : public testing::Test {
 protected:
  DOM()
      : parsed_(ParseText("<!--c--><?p data?><s:r xmlns:s='uri' s:a='1' b='&lt;2'>text"
                          "<![CDATA[cd]]><e/></s:r>")) {
    EXPECT_TRUE(IsAccepted(parsed_));
    EXPECT_EQ(parsed_.document->GetDocumentElement(root_), S_OK);
  }

  VyrIDOMDocument& Document() { return *parsed_.document; }

  Parsed parsed_;
  VyrIDOMElement_var root_;
};

TEST_F(DOM, EveryKindOfNodeHasItsTypeNamesAndValue) {
  EXPECT_EQ(FactsOf(Document()), (Facts{Type::Document, "#document", "#document", "", ""}));
  const auto top = ChildrenOf(Document());
  ASSERT_EQ(top.size(), 3u);
  EXPECT_EQ(FactsOf(*top[0]), (Facts{Type::Comment, "#comment", "#comment", "", "c"}));
  EXPECT_EQ(FactsOf(*top[1]), (Facts{Type::ProcessingInstruction, "p", "p", "", "data"}));
  EXPECT_EQ(FactsOf(*top[2]), (Facts{Type::Element, "s:r", "r", "uri", ""}));
  const auto children = ChildrenOf(*top[2]);
  ASSERT_EQ(children.size(), 3u);
  EXPECT_EQ(FactsOf(*children[0]), (Facts{Type::Text, "#text", "#text", "", "text"}));
  EXPECT_EQ(FactsOf(*children[1]),
            (Facts{Type::CData, "#cdata-section", "#cdata-section", "", "cd"}));
  EXPECT_EQ(FactsOf(*children[2]), (Facts{Type::Element, "e", "e", "", ""}));
}

TEST_F(DOM, DocumentElementAnswersAsElementAndAsNode) {
  EXPECT_EQ(FactsOf(*root_), (Facts{Type::Element, "s:r", "r", "uri", ""}));
  VyrUnicodeString name;
  EXPECT_EQ(root_->GetTagName(name), S_OK);
  EXPECT_EQ(name, "s:r");
  const auto node = VyrQuery<VyrIDOMNode>(root_.Get());
  ASSERT_TRUE(node);
  EXPECT_TRUE(VyrQuery<VyrIDOMElement>(node.Get()));
  EXPECT_FALSE(VyrQuery<VyrIDOMAttr>(node.Get()));
  EXPECT_FALSE(VyrQuery<VyrIDOMDocument>(node.Get()));
}

TEST_F(DOM, OnlyElementsAnswerAsElements) {
  EXPECT_FALSE(VyrQuery<VyrIDOMElement>(&Document()));
  EXPECT_TRUE(VyrQuery<VyrIDOMNode>(&Document()));
  for (const auto& child : ChildrenOf(*root_)) {
    EXPECT_EQ(static_cast<bool>(VyrQuery<VyrIDOMElement>(child.Get())),
              FactsOf(*child).type == Type::Element);
    EXPECT_TRUE(VyrQuery<VyrIDOMNode>(child.Get()));
  }
}

TEST_F(DOM, AttributeIsFoundByItsQualifiedNameAndIsEmptyWhenMissing) {
  struct {
    const char* name;
    const char* value;
  } const cases[] = {{"s:a", "1"}, {"b", "<2"}, {"a", ""}, {"B", ""}, {"", ""}, {"xmlns:s", ""}};
  for (const auto& test : cases) {
    VyrUnicodeString value = "before";
    EXPECT_EQ(root_->GetAttribute(test.name, value), S_OK);
    EXPECT_EQ(value, test.value) << test.name;
  }
}

TEST_F(DOM, AttributeMapHoldsTheAttributesWithoutDeclarations) {
  VyrIDOMNamedNodeMap_var map;
  ASSERT_EQ(root_->GetAttributes(map), S_OK);
  unsigned int length = 0;
  EXPECT_EQ(map->GetLength(length), S_OK);
  ASSERT_EQ(length, 2u);
  VyrIDOMNode_var node;
  EXPECT_EQ(map->Item(0, node), S_OK);
  EXPECT_EQ(FactsOf(*node), (Facts{Type::Attribute, "s:a", "a", "uri", "1"}));
  EXPECT_EQ(map->GetNamedItem("b", node), S_OK);
  EXPECT_EQ(FactsOf(*node), (Facts{Type::Attribute, "b", "b", "", "<2"}));
  const VyrIDOMNode_var kept = node;
  EXPECT_EQ(map->Item(2, node), E_INVALIDARG);
  EXPECT_EQ(map->Item(~0u, node), E_INVALIDARG);
  EXPECT_EQ(map->GetNamedItem("a", node), E_INVALIDARG);
  EXPECT_EQ(map->GetNamedItem("xmlns:s", node), E_INVALIDARG);
  EXPECT_EQ(node, kept);
}

TEST_F(DOM, AttributeStandsAloneInTheTree) {
  VyrIDOMNamedNodeMap_var map;
  VyrIDOMNode_var node;
  ASSERT_EQ(root_->GetAttributes(map), S_OK);
  ASSERT_EQ(map->Item(1, node), S_OK);
  const auto attribute = VyrQuery<VyrIDOMAttr>(node.Get());
  ASSERT_TRUE(attribute);
  VyrUnicodeString text;
  EXPECT_EQ(attribute->GetName(text), S_OK);
  EXPECT_EQ(text, "b");
  EXPECT_EQ(attribute->GetValue(text), S_OK);
  EXPECT_EQ(text, "<2");
  VyrIDOMNode_var parent = node;
  EXPECT_EQ(node->GetParentNode(parent), S_OK);
  EXPECT_EQ(parent, nullptr);
  EXPECT_TRUE(ChildrenOf(*node).empty());
  EXPECT_EQ(node->GetAttributes(map), S_OK);
  EXPECT_EQ(map, nullptr);
}

TEST_F(DOM, OnlyElementsHaveAnAttributeMap) {
  VyrIDOMNamedNodeMap_var map;
  for (const auto& child : ChildrenOf(*root_)) {
    EXPECT_EQ(child->GetAttributes(map), S_OK);
    EXPECT_EQ(static_cast<bool>(map), FactsOf(*child).type == Type::Element);
  }
  EXPECT_EQ(Document().GetAttributes(map), S_OK);
  EXPECT_EQ(map, nullptr);
}

TEST_F(DOM, ParentLeadsUpToTheDocumentWhichHasNone) {
  for (const auto& child : ChildrenOf(*root_)) {
    VyrIDOMNode_var node = child;
    ASSERT_EQ(child->GetParentNode(node), S_OK);
    EXPECT_EQ(FactsOf(*node).name, "s:r");
    ASSERT_EQ(VyrIDOMNode_var(node)->GetParentNode(node), S_OK);
    EXPECT_EQ(FactsOf(*node).type, Type::Document);
    ASSERT_EQ(VyrIDOMNode_var(node)->GetParentNode(node), S_OK);
    EXPECT_EQ(node, nullptr);
  }
}

TEST_F(DOM, ListRefusesAnIndexAtItsLengthAndLeavesTheHandle) {
  VyrIDOMNodeList_var list;
  ASSERT_EQ(root_->GetChildNodes(list), S_OK);
  VyrIDOMNode_var node = VyrIDOMNode_var::Share(root_.Get());
  EXPECT_EQ(list->Item(3, node), E_INVALIDARG);
  EXPECT_EQ(list->Item(~0u, node), E_INVALIDARG);
  EXPECT_EQ(node.Get(), root_.Get());
  EXPECT_TRUE(ChildrenOf(*ChildrenOf(*root_)[0]).empty());
  EXPECT_TRUE(ChildrenOf(*ChildrenOf(*root_)[2]).empty());
}

TEST_F(DOM, AnyNodeKeepsItsDocumentAlive) {
  VyrIDOMNode_var text = ChildrenOf(*root_)[0];
  VyrIDOMNamedNodeMap_var map;
  VyrIDOMNodeList_var list;
  ASSERT_EQ(root_->GetAttributes(map), S_OK);
  ASSERT_EQ(root_->GetChildNodes(list), S_OK);
  const VyrIDOMDocument* const document = parsed_.document.Get();
  root_ = nullptr;
  parsed_.document = nullptr;
  VyrIDOMNode_var attribute;
  EXPECT_EQ(map->Item(0, attribute), S_OK);
  map = nullptr;
  EXPECT_EQ(FactsOf(*attribute).value, "1");
  attribute = nullptr;
  EXPECT_EQ(NodesOf(*list).size(), 3u);
  list = nullptr;
  EXPECT_EQ(FactsOf(*text).value, "text");
  VyrIDOMDocument_var owner;
  EXPECT_EQ(text->GetOwnerDocument(owner), S_OK);
  EXPECT_EQ(owner.Get(), document);
  text = nullptr;
  EXPECT_EQ(owner->GetDocumentElement(root_), S_OK);
}

TEST(DOMBuilder, KnowsItsTwoOptionsAndRefusesTheRest) {
  const VyrIXMLDOMDocumentBuilder_var builder = NewBuilder();
  EXPECT_THAT(builder->GetOptions(),
              testing::UnorderedElementsAre("VyrDoValidation", "VyrEnableNameSpaces"));
  struct {
    const char* option;
    const char* value;
    HRESULT result;
  } const cases[] = {
      {"VyrDoValidation", "false", S_OK},
      {"VyrDoValidation", "true", E_FAIL},
      {"VyrEnableNameSpaces", "true", S_OK},
      {"VyrEnableNameSpaces", "false", E_FAIL},
      {"VyrEnableNameSpaces", "TRUE", E_FAIL},
      {"VyrEnableNameSpaces", "", E_FAIL},
      {"", "true", E_FAIL},
      {"vyrDoValidation", "false", E_FAIL},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(builder->SetOption(test.option, test.value), test.result)
        << test.option << '=' << test.value;
  }
}

HRESULT MakeNoBuilder(VyrIXMLDOMDocumentBuilder_var&) {
  return E_NOTIMPL;
}

TEST(DOMBuilder, HostMayInstallItsOwn) {
  VyrSetDOMDocumentBuilderFactory(MakeNoBuilder);
  VyrIXMLDOMDocumentBuilder_var builder;
  EXPECT_EQ(CreateVyrIXMLDOMDocumentBuilder(builder), E_NOTIMPL);
  VyrSetDOMDocumentBuilderFactory(nullptr);
  EXPECT_EQ(CreateVyrIXMLDOMDocumentBuilder(builder), S_OK);
  EXPECT_TRUE(builder);
}

TEST(DOMChildList, ChildrenMayBeAskedForInAnyOrder) {
  const Parsed parsed = ParseText("<r><a/>t<b><x/></b><!--c--><d/></r>");
  VyrIDOMElement_var root;
  ASSERT_EQ(parsed.document->GetDocumentElement(root), S_OK);
  const std::vector<std::string> names = {"a", "#text", "b", "#comment", "d"};
  const std::vector<std::vector<unsigned int>> orders = {
      {0, 1, 2, 3, 4}, {4, 3, 2, 1, 0}, {3, 0, 4, 2, 2, 1}, {5, 4, 5, 0}, {2, 7, 2, 3}};
  for (const auto& order : orders) {
    for (const bool isLengthAskedFirst : {false, true}) {
      VyrIDOMNodeList_var children;
      ASSERT_EQ(root->GetChildNodes(children), S_OK);
      unsigned int length = 0;
      if (isLengthAskedFirst) {
        ASSERT_EQ(children->GetLength(length), S_OK);
      }
      for (const unsigned int index : order) {
        VyrIDOMNode_var child;
        VyrUnicodeString name;
        const bool exists = index < names.size();
        ASSERT_EQ(children->Item(index, child), exists ? S_OK : E_INVALIDARG);
        ASSERT_EQ(static_cast<bool>(child), exists);
        if (!exists) continue;
        EXPECT_EQ(child->GetNodeName(name), S_OK);
        EXPECT_EQ(name.View(), names[index]);
      }
      EXPECT_EQ(children->GetLength(length), S_OK);
      EXPECT_EQ(length, names.size());
    }
  }
}

}  // namespace
