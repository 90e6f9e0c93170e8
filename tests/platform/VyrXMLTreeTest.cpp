#include "VyrXMLTree.h"
#include "XMLTest.h"

namespace {

using testing::ElementsAre;
using Tree = VyrXMLTree;

constexpr const char* kNamespace = "http://schemas.hol-standard.example/drafting/std";

TEST(XMLTree, ItemsStandInDocumentOrder) {
  const Parsed parsed = ParseText(
      "<?xml version='1.0'?><!-- a --><?target  data ?><r x='1' y=\"2\">t1<e/>t2<![CDATA[<c>]]>t3"
      "<!--in--><f><g/></f></r><!--z-->");
  ASSERT_TRUE(IsAccepted(parsed));
  EXPECT_THAT(
      Outline(parsed.Tree()),
      ElementsAre("comment  a ", "pi target data ", "<r x=1 y=2", " text t1", " <e", " text t2",
                  " cdata <c>", " text t3", " comment in", " <f", "  <g", "comment z"));
}

TEST(XMLTree, ExtentsParentsAndSiblingsAgree) {
  const Parsed parsed = ParseText("<a><b><c/><d>t</d></b><e/><!--x--></a><!--y-->");
  ASSERT_TRUE(IsAccepted(parsed));
  // document 0, a 1, b 2, c 3, d 4, t 5, e 6, x 7, y 8
  const Tree& tree = parsed.Tree();
  constexpr Tree::Index none = Tree::kNone;
  struct {
    Tree::Index parent, end, firstChild, nextSibling;
  } const expected[] = {{none, 9, 1, none}, {0, 8, 2, 8},       {1, 6, 3, 6},
                        {2, 4, none, 4},    {2, 6, 5, none},    {4, 6, none, none},
                        {1, 7, none, 7},    {1, 8, none, none}, {0, 9, none, none}};
  ASSERT_EQ(tree.GetCount(), std::size(expected));
  for (Tree::Index item = 0; item < tree.GetCount(); ++item) {
    EXPECT_EQ(tree.GetParent(item), expected[item].parent) << item;
    EXPECT_EQ(tree.GetEnd(item), expected[item].end) << item;
    EXPECT_EQ(tree.GetFirstChild(item), expected[item].firstChild) << item;
    EXPECT_EQ(tree.GetNextSibling(item), expected[item].nextSibling) << item;
  }
  EXPECT_EQ(tree.GetDocumentElement(), 1u);
}

TEST(XMLTree, DocumentElementIsFoundBehindComments) {
  const Parsed parsed = ParseText("<!--1--><?p?><!--2--><r/>");
  ASSERT_TRUE(IsAccepted(parsed));
  EXPECT_EQ(parsed.Tree().GetDocumentElement(), 4u);
  EXPECT_EQ(Tree().GetDocumentElement(), Tree::kNone);
}

TEST(XMLTree, EachItemTellsItsLine) {
  const Parsed parsed = ParseText(
      "<?xml version='1.0'?>\n\n<a>\r\n<b x='1'\n   y='2'/><c/>\n<!--\n--><d>\n\n</d></a>");
  ASSERT_TRUE(IsAccepted(parsed));
  const Tree& tree = parsed.Tree();
  std::vector<std::string> lines;
  for (Tree::Index item = 1; item < tree.GetCount(); ++item) {
    if (tree.GetKind(item) == Tree::Kind::Text) continue;
    const std::string name = tree.GetKind(item) == Tree::Kind::Element
                                 ? tree.GetName(tree.GetNameId(item)).localName
                                 : "comment";
    lines.push_back(name + " " + std::to_string(tree.GetLine(item)));
  }
  // Of markup that runs over several lines it is the last one.
  EXPECT_THAT(lines, ElementsAre("a 3", "b 5", "c 5", "comment 7", "d 7"));
}

TEST(XMLTree, LinesPastSixteenBitsAreExact) {
  constexpr int lines = 70000;
  const Parsed parsed = ParseText("<a>" + std::string(lines, '\n') + "<b/></a>");
  ASSERT_TRUE(IsAccepted(parsed));
  EXPECT_EQ(parsed.Tree().GetLine(3), lines + 1);
  const Parsed broken = ParseText("<a>" + std::string(lines, '\n') + "<b></a>");
  EXPECT_TRUE(IsRefused(broken));
  EXPECT_EQ(broken.problem.line, lines + 1);
}

TEST(XMLTree, NamesAreSharedAndCarryTheirNamespace) {
  const Parsed parsed = ParseText("<std:a xmlns:std='" + std::string(kNamespace) +
                                  "' std:k='1' k='2'><std:a/><a xmlns='" + kNamespace +
                                  "'/><a xmlns='other'/></std:a>");
  ASSERT_TRUE(IsAccepted(parsed));
  const Tree& tree = parsed.Tree();
  EXPECT_EQ(tree.GetNameId(1), tree.GetNameId(2));
  for (Tree::Index item = 1; item <= 3; ++item) {
    EXPECT_EQ(tree.GetName(tree.GetNameId(item)).namespaceURI, kNamespace);
    EXPECT_EQ(tree.GetName(tree.GetNameId(item)).localName, "a");
  }
  EXPECT_EQ(tree.GetName(tree.GetNameId(3)).qualifiedName, "a");
  EXPECT_EQ(tree.GetName(tree.GetNameId(4)).namespaceURI, "other");
  ASSERT_EQ(tree.GetAttributes(1).size(), 2u) << "declarations are no attributes";
  EXPECT_EQ(tree.GetName(tree.GetAttributes(1)[0].name).namespaceURI, kNamespace);
  EXPECT_EQ(tree.GetName(tree.GetAttributes(1)[1].name).namespaceURI, "")
      << "the default namespace is not for attributes";
}

TEST(XMLTree, ReferencesAreReplacedAndTextStaysOneItem) {
  struct {
    const char* xml;
    const char* text;
  } const cases[] = {
      {"<r>a&lt;&gt;&amp;&quot;&apos;b</r>", "a<>&\"'b"},
      {"<r>&#65;&#x42;&#x5BF8;&#x1F600;</r>", "AB\u5BF8\U0001F600"},
      {"<r>&#9;&#10;&#13;|</r>", "\t\n\r|"},
      {"<r>a\r\nb\rc</r>", "a\nb\nc"},
      {"<!DOCTYPE r [<!ENTITY e 'text'>]><r>1&e;2&e;3</r>", "1text2text3"},
      {"<!DOCTYPE r [<!ENTITY e '&#60;'><!ENTITY f '&lt;'>]><r>[&f;]</r>", "[<]"},
      {"<!DOCTYPE r [<!ENTITY i 'in'><!ENTITY o '(&i;&i;)'>]><r>&o;&o;</r>", "(inin)(inin)"},
      {"<!DOCTYPE r [<!ENTITY e ''>]><r>a&e;b</r>", "ab"},
      {"<!DOCTYPE r [<!ENTITY e 'first'><!ENTITY e 'second'>]><r>&e;</r>", "first"},
      {"<!DOCTYPE r [<!ENTITY % p \"<!ENTITY e 'inner'>\"> %p;]><r>&e;</r>", "inner"},
  };
  for (const auto& test : cases) {
    const Parsed parsed = ParseText(test.xml);
    ASSERT_TRUE(IsAccepted(parsed)) << test.xml;
    ASSERT_EQ(parsed.Tree().GetCount(), 3u) << test.xml;
    EXPECT_EQ(parsed.Tree().GetText(2), test.text) << test.xml;
  }
}

TEST(XMLTree, EntitiesMayHoldMarkup) {
  const Parsed parsed = ParseText("<!DOCTYPE r [<!ENTITY e '<n a=\"1\">x</n>y'>]><r>&e;|&e;</r>");
  ASSERT_TRUE(IsAccepted(parsed));
  EXPECT_THAT(Outline(parsed.Tree()), ElementsAre("<r", " <n a=1", "  text x", " text y|",
                                                  " <n a=1", "  text x", " text y"));
}

TEST(XMLTree, AttributeValuesAreNormalised) {
  const Parsed parsed = ParseText(
      "<!DOCTYPE r [<!ENTITY e 'in'><!ATTLIST r d CDATA 'default'>]>"
      "<r a=' x\ty\nz ' b='&#9;&#10;' c='&lt;&e;&#x5BF8;\"'/>");
  ASSERT_TRUE(IsAccepted(parsed));
  EXPECT_THAT(Outline(parsed.Tree()), ElementsAre("<r a= x y z  b=\t\n c=<in\u5BF8\" d=default"));
}

}  // namespace
