#include <random>

#include "VyrBaseUnknown.h"
#include "VyrXPath.h"
#include "VyrXPathMirror.h"
#include "XMLTest.h"

// However an expression is evaluated, the answer is the one that the general way of evaluating
// gives: thousands of documents and expressions at random, asked both ways.

namespace {

using Tree = VyrXMLTree;

const VyrXPathNamespaces kNamespaces = {{"std", "u:old"}, {"std", "u:std"},   {"p", "u:std"},
                                        {"o", "u:o"},     {"n", "u:nowhere"}, {"e", ""},
                                        {"xml", "u:std"}};

/// Names as elements bear them; the first ones most often.
const std::vector<std::string> kNames = {"A",         "B",       "C",
                                         "",          "A.B",     "it's",
                                         "say \"x\"", " blank ", "\xC3\xA9\xE6\xBC\xA2",
                                         "<&>]",      "a\tb\n",  "A']//std:*[@name='B",
                                         "]",         "std:*"};

class Random {
 public:
  explicit Random(unsigned int seed) : engine_(seed) {}

  int Below(int limit) { return std::uniform_int_distribution<>(0, limit - 1)(engine_); }
  bool OneIn(int chances) { return Below(chances) == 0; }
  template <class Values>
  const auto& Of(const Values& values) {
    return values[static_cast<std::size_t>(Below(static_cast<int>(std::size(values))))];
  }
  const std::string& Name() {
    const int count = static_cast<int>(kNames.size());
    return kNames[static_cast<std::size_t>(Below(1 + Below(count)))];
  }

 private:
  std::mt19937 engine_;
};

std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    const bool isPlain = std::string_view("<>&'\"\t\n").find(c) == std::string_view::npos;
    escaped += isPlain ? std::string(1, c) : "&#" + std::to_string(static_cast<int>(c)) + ";";
  }
  return escaped;
}

/// A document whose elements are numbered by their attributes "i".
class DocumentMaker {
 public:
  DocumentMaker(Random& random, int count) : random_(random), left_(count) {}

  std::string Make() {
    static constexpr const char* roots[] = {"std:node", "std:node", "std:node",
                                            "q:node",   "o:node",   "std:other"};
    const std::string root = random_.Of(roots);
    text_ = "<!DOCTYPE x [<!ENTITY e 'A'>]><!--c--><" + root +
            " xmlns:std='u:std' xmlns:q='u:std' xmlns:o='u:o' i='0' name='A'" +
            (random_.OneIn(2) ? " xmlns='u:std'>" : ">");
    while (left_ > 0) AddElement(0);
    return text_ + "</" + root + ">";
  }

 private:
  void AddElement(int depth) {
    static constexpr const char* tags[] = {"std:node", "std:node", "std:node", "std:x",
                                           "q:x",      "o:x",      "x"};
    const std::string tag = random_.Of(tags);
    --left_;
    text_ += "<" + tag + " i='" + std::to_string(++number_) + "'";
    AddAttributes();
    text_ += ">";
    while (left_ > 0 && depth < 12 && !random_.OneIn(2)) AddElement(depth + 1);
    static constexpr const char* rest[] = {"", "", "text", "\n  ", "<!--c-->", "<?t d?>"};
    text_ += std::string(random_.Of(rest)) + "</" + tag + ">";
  }

  void AddAttributes() {
    if (!random_.OneIn(5)) {
      text_ += " name='" + (random_.OneIn(8) ? "&e;" : Escaped(random_.Name())) + "'";
    }
    if (random_.OneIn(8)) text_ += " o:name='" + Escaped(random_.Name()) + "'";
    if (random_.OneIn(20)) text_ += " xmlns:std='u:o'";
    if (random_.OneIn(20)) text_ += " xmlns:o='u:std'";
    if (random_.OneIn(20)) text_ += random_.OneIn(2) ? " xmlns='u:o'" : " xmlns=''";
  }

  Random& random_;
  int left_;
  int number_ = 0;
  std::string text_;
};

std::string RandomChain(Random& random) {
  static constexpr const char* prefixes[] = {"std", "std", "std", "std", "std",    "std",
                                             "std", "std", "p",   "p",   "p",      "o",
                                             "o",   "n",   "e",   "xml", "unknown"};
  std::string chain = random.OneIn(10) ? std::string(random.Of(prefixes)) + ":node" : "std:node";
  for (int steps = random.Below(5); steps > 0; --steps) {
    const char* const quote = random.OneIn(3) ? "\"" : "'";
    chain += random.OneIn(4) ? "/" : "//";
    chain += std::string(random.Of(prefixes)) + ":*[@name=" + quote + random.Name() + quote + "]";
  }
  return chain;
}

/// A chain with a character lost, doubled, or put in.
std::string DamagedChain(Random& random) {
  static constexpr std::string_view characters("/:*[]@='\" ().|A\x01\x1F\t\xFF\0", 20);
  std::string chain = RandomChain(random);
  const auto place = static_cast<std::size_t>(random.Below(static_cast<int>(chain.size())));
  if (random.OneIn(2)) return chain.erase(place, 1);
  return chain.insert(place, 1, random.Of(characters));
}

std::string OtherExpression(Random& random) {
  static constexpr const char* const cases[] = {
      "//std:*[@name='A']",
      "/std:node//std:*[@name='A']",
      "std:node//std:*[@name='A']/@i",
      "std:node//std:*[@name='A']/text()",
      "std:node//std:*[@name='A'][1]",
      "std:node//std:node[@name='A']",
      "std:node//*[@name='A']",
      "std:node//std:*[@o:name='A']",
      "std:node // std:*[ @name = 'A' ]",
      "std:node//std:*[@name='A'] | std:node//o:*",
      "std:node//std:*[@name='A' or @name='B']",
      "std:node//std:*[@name='A']//..",
      "*//std:*[@name='A']/following-sibling::std:*[@name='B']",
      "count(std:node)",
      "std:node//std:*[@name=it]",
      "std:node//std:*[@name='it's']",
      "std:node//std:*[@name='A']/",
      "std:node//std:*[@name='A'",
      "std:node//$a",
      ""};
  return random.Of(cases);
}

std::string RandomExpression(Random& random) {
  const int kind = random.Below(10);
  return kind < 7 ? RandomChain(random) : kind < 9 ? DamagedChain(random) : OtherExpression(random);
}

using Nodes = std::vector<std::string>;

std::string Described(const Tree& tree, const VyrDOMPlace& place) {
  for (std::uint32_t i = 0; const Tree::Attribute& each : tree.GetAttributes(place.item)) {
    const std::string value(tree.GetValue(each));
    const std::string& name = tree.GetName(each.name).qualifiedName;
    if (i++ == place.attribute) return name + "=" + value;
    if (place.attribute == VyrDOMPlace::kNoAttribute && name == "i") return value;
  }
  return "?";
}

std::string Described(VyrIDOMNode& node) {
  VyrUnicodeString name, value;
  if (const auto element = VyrQuery<VyrIDOMElement>(&node)) {
    EXPECT_EQ(element->GetAttribute("i", value), S_OK);
    return value.CString();
  }
  node.GetNodeName(name);
  node.GetNodeValue(value);
  return name.CString() + ("=" + std::string(value.View()));
}

/// What the object answers that applications ask. False when it refuses the expression.
bool Answer(VyrIDOMDocument& document, const std::string& expression, Nodes& nodes) {
  VyrIXMLXPathExpression_var created;
  VyrQuery<VyrIXMLXPathFactory>(&document)->CreateExpression(expression, created);
  for (const auto& [prefix, uri] : kNamespaces) created->DeclareNamespace(prefix, uri);
  VyrIDOMNodeList_var list;
  if (VyrFailed(created->Evaluate(list))) return false;
  VyrIDOMNode_var node;
  for (unsigned int i = 0; list->Item(i, node) == S_OK; ++i) nodes.push_back(Described(*node));
  return true;
}

/// What the general way of evaluating answers.
bool GeneralAnswer(const Tree& tree, VyrXPathMirror& mirror, const std::string& expression,
                   Nodes& nodes) {
  std::vector<VyrDOMPlace> places;
  if (!mirror.Evaluate(expression, kNamespaces, places)) return false;
  for (const VyrDOMPlace& place : places) {
    const bool isText = tree.GetKind(place.item) == Tree::Kind::Text;
    const bool isDocument = tree.GetKind(place.item) == Tree::Kind::Document;
    nodes.push_back(isText       ? "#text=" + std::string(tree.GetText(place.item))
                    : isDocument ? "#document="
                                 : Described(tree, place));
  }
  return true;
}

struct Tally {
  int chains = 0;
  int chainsThatFind = 0;
  int refused = 0;
};

void CompareOneDocument(Random& random, int elementCount, Tally& tally) {
  const std::string xml = DocumentMaker(random, elementCount).Make();
  const Parsed parsed = ParseText(xml);
  ASSERT_TRUE(IsAccepted(parsed)) << xml;
  VyrXPathMirror mirror(parsed.Tree());
  for (int i = 0; i < 20; ++i) {
    const std::string expression = RandomExpression(random);
    Nodes answer, general;
    const bool isAnswered = Answer(*parsed.document, expression, answer);
    ASSERT_EQ(isAnswered, GeneralAnswer(parsed.Tree(), mirror, expression, general))
        << expression << "\n"
        << xml;
    ASSERT_EQ(answer, general) << expression << "\n" << xml;
    VyrNameChain chain;
    const bool isChain = VyrReadNameChain(expression, kNamespaces, chain);
    tally.chains += isChain && !chain.steps.empty() ? 1 : 0;
    tally.chainsThatFind += isChain && !chain.steps.empty() && !answer.empty() ? 1 : 0;
    tally.refused += isAnswered ? 0 : 1;
  }
}

TEST(XPathExpression, AnswersLikeTheGeneralWayInSmallDocuments) {
  Random random(1);
  Tally tally;
  for (int i = 0; i < 2000; ++i) {
    CompareOneDocument(random, 1 + random.Below(40), tally);
    ASSERT_FALSE(HasFatalFailure());
  }
  EXPECT_GT(tally.chains, 10'000);
  EXPECT_GT(tally.chainsThatFind, 1'000);
  EXPECT_GT(tally.refused, 2'000);
}

TEST(XPathExpression, AnswersLikeTheGeneralWayInLargerDocuments) {
  Random random(2);
  Tally tally;
  for (int i = 0; i < 60; ++i) {
    CompareOneDocument(random, 500 + random.Below(1500), tally);
    ASSERT_FALSE(HasFatalFailure());
  }
  EXPECT_GT(tally.chainsThatFind, 100);
}

TEST(XPathExpression, ZeroByteIsNoPartOfADeclaration) {
  const Parsed parsed = ParseText("<a xmlns='u'/>");
  VyrIXMLXPathExpression_var expression;
  VyrQuery<VyrIXMLXPathFactory>(parsed.document.Get())->CreateExpression("p:a", expression);
  EXPECT_EQ(expression->DeclareNamespace(std::string_view("p\0x", 3), "u"), E_INVALIDARG);
  EXPECT_EQ(expression->DeclareNamespace("p", std::string_view("u\0x", 3)), E_INVALIDARG);
  VyrIDOMNodeList_var nodes;
  EXPECT_EQ(expression->Evaluate(nodes), E_FAIL) << "the prefix is not declared";
}

}  // namespace
