#include "HostileText.h"
#include "VyrXMLNameIndex.h"
#include "XMLTest.h"

namespace {

using Steps = std::vector<VyrNameChain::Step>;

constexpr const char* kUri = "u:std";

VyrNameChain::Step Below(const char* name, const char* uri = kUri) {
  return {uri, name, false};
}
VyrNameChain::Step Child(const char* name, const char* uri = kUri) {
  return {uri, name, true};
}

std::string ValueOf(const VyrXMLTree& tree, VyrXMLTree::Index item, std::string_view attribute) {
  for (const VyrXMLTree::Attribute& each : tree.GetAttributes(item)) {
    if (tree.GetName(each.name).qualifiedName == attribute) {
      return std::string(tree.GetValue(each));
    }
  }
  return "?";
}

/// What the attributes "i" of the elements found say, one after the other.
std::string Found(const std::string& xml, const Steps& steps) {
  const Parsed parsed = ParseText(xml);
  EXPECT_TRUE(IsAccepted(parsed));
  const VyrXMLNameIndex index(parsed.Tree());
  std::string found;
  for (const VyrXMLTree::Index item : index.Find({kUri, "r", steps})) {
    found += ValueOf(parsed.Tree(), item, "i");
  }
  return found;
}

/// A document element "s:r" around `content`.
std::string Root(const std::string& content) {
  return "<!--c--><s:r i='R' name='R' xmlns:s='u:std' xmlns:o='u:o'>" + content + "</s:r><?p d?>";
}

TEST(XMLNameIndex, ChainWithoutStepsFindsTheDocumentElement) {
  EXPECT_EQ(Found(Root("<s:a/>"), {}), "R");
}

TEST(XMLNameIndex, NothingIsFoundBelowAnotherDocumentElement) {
  const Parsed parsed = ParseText(Root("<s:x name='A'/>"));
  const VyrXMLNameIndex index(parsed.Tree());
  EXPECT_EQ(index.Find({kUri, "r", {Below("A")}}).size(), 1u);
  EXPECT_EQ(index.Find({kUri, "q", {}}).size(), 0u);
  EXPECT_EQ(index.Find({kUri, "q", {Below("A")}}).size(), 0u);
  EXPECT_EQ(index.Find({"u:o", "r", {Below("A")}}).size(), 0u);
  EXPECT_EQ(index.Find({"", "r", {Below("A")}}).size(), 0u);
}

TEST(XMLNameIndex, StepLooksAtAnyDepth) {
  const std::string xml = Root(
      "<s:x name='A' i='1'/><s:y><t><s:z name='A' i='2'/></t></s:y>"
      "<s:x name='B' i='3'><s:y name='A' i='4'/></s:x>");
  EXPECT_EQ(Found(xml, {Below("A")}), "124");
  EXPECT_EQ(Found(xml, {Below("B"), Below("A")}), "4");
  EXPECT_EQ(Found(xml, {Below("A"), Below("B")}), "");
}

TEST(XMLNameIndex, ChildStepLooksAtChildrenAlone) {
  const std::string xml = Root(
      "<s:x name='A' i='1'><s:x name='B' i='2'><s:x name='B' i='3'/></s:x></s:x>"
      "<t><s:x name='A' i='4'><t><s:x name='B' i='5'/></t></s:x></t><s:x name='B' i='6'/>");
  EXPECT_EQ(Found(xml, {Child("A")}), "1");
  EXPECT_EQ(Found(xml, {Child("B")}), "6");
  EXPECT_EQ(Found(xml, {Below("A"), Child("B")}), "2");
  EXPECT_EQ(Found(xml, {Below("B"), Child("B")}), "3");
  EXPECT_EQ(Found(xml, {Child("A"), Child("B"), Child("B")}), "3");
}

TEST(XMLNameIndex, ElementIsNotBelowItself) {
  EXPECT_EQ(Found(Root("<s:x name='A' i='1'/>"), {Below("A"), Below("A")}), "");
  EXPECT_EQ(Found(Root("<s:x name='A' i='1'/>"), {Below("R")}), "") << "nor the document element";
}

TEST(XMLNameIndex, NestedElementsOfOneNameAreFoundOnceAndInOrder) {
  const std::string xml = Root(
      "<s:x name='A' i='1'><s:x name='B' i='2'/><s:x name='A' i='3'><s:x name='B' i='4'/>"
      "<s:x name='A' i='5'/></s:x><s:x name='B' i='6'/></s:x><s:x name='B' i='7'/>");
  EXPECT_EQ(Found(xml, {Below("A")}), "135");
  EXPECT_EQ(Found(xml, {Below("A"), Below("A")}), "35");
  EXPECT_EQ(Found(xml, {Below("A"), Below("A"), Below("A")}), "5");
  EXPECT_EQ(Found(xml, {Below("A"), Below("B")}), "246");
  EXPECT_EQ(Found(xml, {Below("A"), Below("A"), Below("B")}), "4");
}

TEST(XMLNameIndex, ChildrenOfNestedElementsComeInDocumentOrder) {
  const std::string xml = Root(
      "<s:x name='A' i='1'><s:x name='B' i='2'/><s:x name='A' i='3'><s:x name='B' i='4'/></s:x>"
      "<s:x name='B' i='5'/></s:x>");
  EXPECT_EQ(Found(xml, {Below("A"), Child("B")}), "245");
  const std::string deeperFirst = Root(
      "<s:x name='A' i='1'><s:x name='A' i='2'><s:x name='B' i='3'/></s:x><s:x name='B' i='4'>"
      "<s:x name='B' i='5'/></s:x></s:x>");
  EXPECT_EQ(Found(deeperFirst, {Below("A"), Child("B")}), "34");
  EXPECT_EQ(Found(deeperFirst, {Below("A"), Child("B"), Below("B")}), "5");
}

TEST(XMLNameIndex, NamespaceCountsAndPrefixDoesNot) {
  const std::string xml = Root(
      "<s:x name='A' i='1'/><q:x xmlns:q='u:std' name='A' i='2'/><x xmlns='u:std' name='A' i='3'/>"
      "<o:x name='A' i='4'/><x name='A' i='5'/><s:x xmlns:s='u:o' name='A' i='6'/>");
  EXPECT_EQ(Found(xml, {Below("A")}), "123");
  EXPECT_EQ(Found(xml, {Below("A", "u:o")}), "46");
  EXPECT_EQ(Found(xml, {Below("A", "u:none")}), "");
}

TEST(XMLNameIndex, NameIsTheAttributeInNoNamespace) {
  const std::string xml = Root(
      "<s:x o:name='A' i='1'/><s:x s:name='A' i='2'/><s:x Name='A' i='3'/>"
      "<s:x o:name='B' name='A' i='4'/><s:name i='5'>A</s:name><name name='A' i='6'/><s:x i='7'/>");
  EXPECT_EQ(Found(xml, {Below("A")}), "4");
  EXPECT_EQ(Found(xml, {Below("B")}), "");
}

TEST(XMLNameIndex, NamesAreComparedByteByByte) {
  const std::string xml =
      "<!DOCTYPE r [<!ENTITY e 'B&#39;'>]>" +
      Root(
          "<s:x name='' i='1'/><s:x name=' ' i='2'/><s:x name='a' i='3'/><s:x name='A' i='4'/>"
          "<s:x name='\xC3\xA9' i='5'/><s:x name='&lt;&amp;&#x9;' i='6'/><s:x name='&e;' i='7'/>"
          "<s:x name='a.b' i='8'/><s:x name='say \"x\"' i='9'/><s:x i='0'/>");
  const std::pair<const char*, const char*> cases[] = {{"", "1"},          {" ", "2"},
                                                       {"a", "3"},         {"A", "4"},
                                                       {"\xC3\xA9", "5"},  {"<&\t", "6"},
                                                       {"B'", "7"},        {"a.b", "8"},
                                                       {"say \"x\"", "9"}, {"b", ""},
                                                       {"e\xCC\x81", ""},  {"\xFF", ""},
                                                       {"a ", ""},         {"&lt;&amp;&#x9;", ""}};
  for (const auto& [name, found] : cases) EXPECT_EQ(Found(xml, {Below(name)}), found) << name;
}

// A frequent name before a rare one, or after it: both are looked up from the rare one.
TEST(XMLNameIndex, RareNameBelowFrequentOnesIsFoundThroughAllOfThem) {
  const std::string crowd =
      Repeated("<s:x name='A' i='a'><s:x name='B' i='b'/><o:x name='B'/></s:x>", 500);
  const std::string xml = Root(
      crowd + "<s:x name='C' i='1'/><s:x name='B'><s:x name='C' i='2'/></s:x>" + crowd +
      "<s:x name='A'><s:x name='C' i='3'/><o:x name='B'><s:x name='C' i='0'/></o:x></s:x>"
      "<s:x name='A'><s:x name='B'><o:x name='C' i='9'/></s:x></s:x>" +
      "<s:x name='B'><s:x name='A'><s:x name='C' i='4'/></s:x></s:x>" +
      "<s:x name='A'><t><s:x name='B'><t><s:x name='C' i='5'><s:x name='C' i='6'><s:x name='D' "
      "i='7'/></s:x><s:x name='D' i='8'/></s:x></t></s:x></t></s:x>" +
      crowd);
  EXPECT_EQ(Found(xml, {Below("A"), Below("B"), Below("C")}), "56");
  EXPECT_EQ(Found(xml, {Below("B"), Below("A"), Below("C")}), "4");
  EXPECT_EQ(Found(xml, {Below("B"), Below("C")}), "2456");
  EXPECT_EQ(Found(xml, {Below("A"), Below("B"), Below("C"), Child("D")}), "78");
  EXPECT_EQ(Found(xml, {Below("A"), Below("B"), Below("C"), Below("D")}), "78");
  EXPECT_EQ(Found(xml, {Below("A"), Below("B"), Below("C"), Below("C"), Below("D")}), "7");
  EXPECT_EQ(Found(xml, {Below("A"), Below("A"), Below("C")}), "");
  EXPECT_EQ(Found(xml, {Below("A"), Below("B"), Below("C", "u:o")}), "9");
  EXPECT_EQ(Found(xml, {Below("A"), Below("B", "u:o"), Below("C")}), "0");
  EXPECT_EQ(Found(xml, {Below("A"), Child("B"), Below("C")}), "");
}

TEST(XMLNameIndex, ManyNamesAreToldApart) {
  constexpr int count = 20'000;
  std::string content;
  for (int i = 0; i < count; ++i) content += "<s:x name='P" + std::to_string(i) + "' i='.'/>";
  const Parsed parsed = ParseText(Root(content));
  const VyrXMLNameIndex index(parsed.Tree());
  const VyrXMLTree::Index first = parsed.Tree().GetDocumentElement() + 1;
  for (int i = 0; i < count; ++i) {
    const std::string name = "P" + std::to_string(i);
    EXPECT_THAT(index.Find({kUri, "r", {{kUri, name, false}}}),
                testing::ElementsAre(first + static_cast<VyrXMLTree::Index>(i)));
  }
  EXPECT_THAT(index.Find({kUri, "r", {Below("P20000")}}), testing::IsEmpty());
}

TEST(XMLNameIndex, DeepDocumentIsAnsweredWhole) {
  constexpr std::size_t depth = 100'000;
  const std::string xml =
      Root(Repeated("<s:x name='A'><s:x name='B'/>", depth) + Repeated("</s:x>", depth));
  const Parsed parsed = ParseText(xml);
  const VyrXMLNameIndex index(parsed.Tree());
  const auto count = [&](const Steps& steps) { return index.Find({kUri, "r", steps}).size(); };
  EXPECT_EQ(count({Below("A")}), depth);
  EXPECT_EQ(count({Below("A"), Below("A"), Below("A")}), depth - 2);
  EXPECT_EQ(count({Below("A"), Below("A"), Below("B")}), depth - 1);
  EXPECT_EQ(count({Below("A"), Child("B")}), depth);
  EXPECT_EQ(count({Below("B"), Below("A")}), 0u);
  EXPECT_EQ(count(Steps(300, Child("A"))), 1u);
}

}  // namespace
