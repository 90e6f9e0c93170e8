#include "HostileText.h"
#include "VyrBaseUnknown.h"
#include "VyrXPath.h"
#include "XMLTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kUri = "http://schemas.hol-standard.example/drafting/std";

/// The nodes that an expression selects, as "name=value"; "std" is declared as the prefix.
HRESULT Select(VyrIDOMDocument& document, const std::string& expression,
               std::vector<std::string>& selected) {
  const auto factory = VyrQuery<VyrIXMLXPathFactory>(&document);
  VyrIXMLXPathExpression_var compiled;
  EXPECT_EQ(factory->CreateExpression(expression, compiled), S_OK);
  EXPECT_EQ(compiled->DeclareNamespace("std", kUri), S_OK);
  VyrIDOMNodeList_var nodes;
  const HRESULT result = compiled->Evaluate(nodes);
  EXPECT_EQ(static_cast<bool>(nodes), VyrSucceeded(result)) << expression;
  unsigned int length = 0;
  if (nodes) {
    EXPECT_EQ(nodes->GetLength(length), S_OK);
  }
  for (unsigned int i = 0; i < length; ++i) {
    VyrIDOMNode_var node;
    VyrUnicodeString name, value;
    EXPECT_EQ(nodes->Item(i, node), S_OK);
    node->GetNodeName(name);
    node->GetNodeValue(value);
    selected.push_back(name.CString() + ("=" + std::string(value.View())));
  }
  return result;
}

std::vector<std::string> Selected(const std::string& xml, const std::string& expression) {
  const Parsed parsed = ParseText(xml);
  EXPECT_TRUE(IsAccepted(parsed));
  std::vector<std::string> selected;
  EXPECT_EQ(Select(*parsed.document, expression, selected), S_OK) << expression;
  return selected;
}

const std::string kStandard =
    "<?p data?><std:node xmlns:std='" + std::string(kUri) +
    "' name='Root'><!--note--><std:node name='A'><std:string name='x'>1</std:string>"
    "<std:int name='y'>2</std:int></std:node><other name='A'/><std:node name='B' std:k='v'>"
    "<std:string name='x'>&lt;3</std:string><![CDATA[raw]]></std:node></std:node>";

TEST(XPath, SelectsEveryKindOfNode) {
  struct {
    const char* expression;
    std::vector<std::string> selected;
  } const cases[] = {
      {"/", {"#document="}},
      {"/*", {"std:node="}},
      {"*", {"std:node="}},
      {"std:node//std:*[@name='A']//std:*[@name='x']/text()", {"#text=1"}},
      {"//other", {"other="}},
      {"//node", {}},
      {"//*[@name='A']", {"std:node=", "other="}},
      {"//@name[.='x']", {"name=x", "name=x"}},
      {"//@std:k", {"std:k=v"}},
      {"//@k", {}},
      {"//text()", {"#text=1", "#text=2", "#text=<3", "#cdata-section=raw"}},
      {"//comment()", {"#comment=note"}},
      {"//processing-instruction()", {"p=data"}},
      {"//processing-instruction('q')", {}},
      {"//std:string[.='<3']/@name/..", {"std:string="}},
      {"//std:node[@name='B']/preceding-sibling::*", {"std:node=", "other="}},
      {"/*/*[last()]/@name", {"name=B"}},
      {"//std:int/ancestor::*", {"std:node=", "std:node="}},
      {"//*[local-name()='int']", {"std:int="}},
      {"//*[name()='std:int']", {"std:int="}},
      {"//*[namespace-uri()='']", {"other="}},
      {"//namespace::*", {}},
      {"//*[@name=\"it's\"]", {}},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(Selected(kStandard, test.expression), test.selected) << test.expression;
  }
}

TEST(XPath, NodesComeInDocumentOrderOnceEach) {
  const std::string xml = "<r a='1' b='2'><x i='1'><x i='2'/></x><y i='3'/><x i='4'/>t</r>";
  EXPECT_THAT(Selected(xml, "//x[2]/@i | //y/@i | //x/@i | /r/@b | /r/@a | //x/@i"),
              ElementsAre("a=1", "b=2", "i=1", "i=2", "i=3", "i=4"));
  EXPECT_THAT(Selected(xml, "//@i/ancestor::*"), ElementsAre("r=", "x=", "x=", "y=", "x="));
  EXPECT_THAT(Selected(xml, "/r/text() | /r | //y"), ElementsAre("r=", "y=", "#text=t"));
}

TEST(XPath, PrefixOfTheDocumentDoesNotMatter) {
  const std::string uri = kUri;
  const std::string cases[] = {
      "<std:a xmlns:std='" + uri + "'><std:b name='x'/></std:a>",
      "<q:a xmlns:q='" + uri + "'><q:b name='x'/></q:a>",
      "<a xmlns='" + uri + "'><b name='x'/></a>",
      "<a><q:b xmlns:q='" + uri + "' name='x'/></a>",
      "<std:a xmlns:std='other'><q:b xmlns:q='" + uri + "' name='x'/></std:a>",
      "<q:a xmlns:q='other'><q:b xmlns:q='" + uri + "' name='x'/></q:a>",
  };
  for (const std::string& xml : cases) {
    EXPECT_EQ(Selected(xml, "//std:*[@name='x']").size(), 1u) << xml;
  }
  EXPECT_THAT(Selected("<std:a xmlns:std='other' name='x'/>", "//std:*"), IsEmpty());
}

TEST(XPath, NamesAreTheOnesOfTheDocument) {
  EXPECT_THAT(Selected("<q:a xmlns:q='other'><q:b xmlns:q='third'/><b/></q:a>",
                       "//*[name()='q:a' or name()='q:b' or name()='b']"),
              ElementsAre("q:a=", "q:b=", "b="));
  EXPECT_THAT(Selected("<a xml:lang='ja'><b/></a>", "//b[lang('ja')] | //@xml:lang"),
              ElementsAre("xml:lang=ja", "b="));
}

TEST(XPath, InvalidExpressionFailsAndSoDoesOneThatSelectsNoNodes) {
  const std::string deep = Repeated("(", 100000) + "1" + Repeated(")", 100000);
  const std::string cases[] = {"",
                               "//",
                               "//*[",
                               "//*[@name='x]",
                               "//std:",
                               "]",
                               "//unknown:*",
                               "nofunction()",
                               "//a) | (//b",
                               "count(//*)",
                               "'text'",
                               "1 = 1",
                               "string(//*)",
                               "//*/1",
                               "$variable",
                               "//*[@name='it's']",
                               deep};
  const Parsed parsed = ParseText(kStandard);
  testing::internal::CaptureStderr();
  for (const std::string& expression : cases) {
    std::vector<std::string> selected;
    EXPECT_EQ(Select(*parsed.document, expression, selected), E_FAIL) << expression.substr(0, 40);
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << "the caller reports it";
}

TEST(XPath, FailureLeavesTheListAlone) {
  const Parsed parsed = ParseText("<a/>");
  const auto factory = VyrQuery<VyrIXMLXPathFactory>(parsed.document.Get());
  VyrIXMLXPathExpression_var good, bad;
  ASSERT_EQ(factory->CreateExpression("/a", good), S_OK);
  ASSERT_EQ(factory->CreateExpression("/a[", bad), S_OK);
  VyrIDOMNodeList_var nodes;
  ASSERT_EQ(good->Evaluate(nodes), S_OK);
  const VyrIDOMNodeList_var before = nodes;
  EXPECT_EQ(bad->Evaluate(nodes), E_FAIL);
  EXPECT_EQ(nodes, before);
}

TEST(XPath, PrefixMayBeDeclaredAnewButNotBeEmpty) {
  const Parsed parsed = ParseText("<a xmlns='u2'/>");
  const auto factory = VyrQuery<VyrIXMLXPathFactory>(parsed.document.Get());
  VyrIXMLXPathExpression_var expression;
  ASSERT_EQ(factory->CreateExpression("/p:a", expression), S_OK);
  EXPECT_EQ(expression->DeclareNamespace("", "u2"), E_INVALIDARG);
  VyrIDOMNodeList_var nodes;
  EXPECT_EQ(expression->Evaluate(nodes), E_FAIL) << "the prefix is not declared yet";
  for (const char* uri : {"u1", "u2"}) {
    EXPECT_EQ(expression->DeclareNamespace("p", uri), S_OK);
    unsigned int length = 9;
    ASSERT_EQ(expression->Evaluate(nodes), S_OK);
    EXPECT_EQ(nodes->GetLength(length), S_OK);
    EXPECT_EQ(length, uri == std::string("u2") ? 1u : 0u);
  }
}

TEST(XPath, SelectedNodesAndExpressionKeepTheDocumentAlive) {
  VyrIXMLXPathExpression_var expression;
  {
    const Parsed parsed = ParseText("<a><b/></a>");
    const auto factory = VyrQuery<VyrIXMLXPathFactory>(parsed.document.Get());
    ASSERT_EQ(factory->CreateExpression("//b", expression), S_OK);
  }
  VyrIDOMNodeList_var nodes;
  ASSERT_EQ(expression->Evaluate(nodes), S_OK);
  expression = nullptr;
  VyrIDOMNode_var node;
  ASSERT_EQ(nodes->Item(0, node), S_OK);
  nodes = nullptr;
  VyrIDOMNode_var parent;
  ASSERT_EQ(node->GetParentNode(parent), S_OK);
  VyrUnicodeString name;
  EXPECT_EQ(parent->GetNodeName(name), S_OK);
  EXPECT_EQ(name, "a");
}

TEST(XPath, DeepAndWideDocumentsAreEvaluatedWhole) {
  constexpr std::size_t count = 100000;
  const std::string deep = Repeated("<a i='1'><b/>", count) + "t" + Repeated("</a>", count);
  const std::string wide = "<r>" + Repeated("<a i='1'>t</a>", count) + "</r>";
  struct {
    const char* expression;
    std::size_t inDeep;
    std::size_t inWide;
  } const cases[] = {
      {"//a", count, count},          {"//a/@i", count, count},
      {"//a[@i='1']", count, count},  {"//a[@i='1']/text()", 1, count},
      {"//b[not(@i)]", count, 0},     {"//c", 0, 0},
      {"//a | /r", count, count + 1},
  };
  const Parsed deepDocument = ParseText(deep);
  const Parsed wideDocument = ParseText(wide);
  for (const auto& test : cases) {
    std::vector<std::string> inDeep, inWide;
    EXPECT_EQ(Select(*deepDocument.document, test.expression, inDeep), S_OK);
    EXPECT_EQ(Select(*wideDocument.document, test.expression, inWide), S_OK);
    EXPECT_EQ(inDeep.size(), test.inDeep) << test.expression;
    EXPECT_EQ(inWide.size(), test.inWide) << test.expression;
  }
}

TEST(XPath, ExpressionThatTakesTheSquareOfTheDocumentIsGivenUp) {
  std::string xml = "<n>";
  for (int i = 0; i < 20'000; ++i) xml += "<a/>";
  const Parsed parsed = ParseText(xml + "</n>");
  ASSERT_TRUE(IsAccepted(parsed));
  std::vector<std::string> selected;
  EXPECT_EQ(Select(*parsed.document, "//a[count(//a[not(b)]) > 0]", selected), E_FAIL);
  EXPECT_THAT(selected, IsEmpty());
  EXPECT_EQ(Select(*parsed.document, "//a[not(b)]", selected), S_OK);
  EXPECT_EQ(selected.size(), 20'000u);
}

}  // namespace
