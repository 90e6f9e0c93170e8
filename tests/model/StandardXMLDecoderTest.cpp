#include "CodecTest.h"
#include "StandardXMLDecoder.h"
#include "TemporaryFolder.h"
#include "VyrXMLDOM.h"

namespace modeltest {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kOnlyText = "Invalid node where there should be only text";
constexpr const char* kLiteralName = "Strval in enum have a name but it's not the name of the enum";

class Decoder : public CodecTest {};

struct Accepted {
  const char* content;
  const char* tops;
};
constexpr Accepted kAccepted[] = {
    {"", "top Enum\ntop TypeDef\ntop Root"},
    {"<std:enumdef "
     "name='YesNo'><std:strval>Yes</std:strval><std:strval>No</std:strval></std:enumdef>",
     "top Enum{enum YesNo(string =Yes, string =No)}\ntop TypeDef\ntop Root"},
    {"<std:enumdef name='E'><std:strval name='E'>A</std:strval></std:enumdef>",
     "top Enum{enum E(string E=A)}\ntop TypeDef\ntop Root"},
    {"<std:typedef name='T'><std:strval name='N'>XXX</std:strval><std:intval "
     "name='I'>1</std:intval>"
     "<std:floatval name='F'>1.0</std:floatval><std:enumval "
     "name='YesNo'>Yes</std:enumval></std:typedef>",
     "top Enum\ntop TypeDef{typedef T(string N=XXX, int I=1, float F=1.0, enum YesNo=Yes)}\ntop "
     "Root"},
    {"<std:node name='D'><std:node name='a'><std:intval>1</std:intval></std:node>"
     "<std:typeval name='b'><std:strval name='Name'>A0 ISO</std:strval></std:typeval></std:node>",
     "top Enum\ntop TypeDef\n"
     "top Root{plain D{plain a(int =1), instance b(string Name=A0 ISO)}}"},
    // Instances hold nodes, instances and definitions as nodes do.
    {"<std:node name='D'><std:typeval name='i'><std:node name='n'/><std:typeval name='v'/>"
     "<std:typedef name='t'><std:intval name='f'>0</std:intval></std:typedef></std:typeval>"
     "<std:typedef name='u'><std:strval name='g'/></std:typedef></std:node>",
     "top Enum\ntop TypeDef\ntop Root{plain D{instance i{plain n, instance v, "
     "typedef t(int f=0)}, typedef u(string g=)}}"},
    // A colour stands in a node and in an instance.
    {"<std:node name='D'><std:colorval>255 0 0</std:colorval>"
     "<std:typeval name='i'><std:colorval name='c'>0 0 0</std:colorval></std:typeval></std:node>",
     "top Enum\ntop TypeDef\n"
     "top Root{plain D(color =255 0 0){instance i(color c=0 0 0)}}"},
    // A lower bound is the name of a float with the range flag.
    {"<std:node name='D'><std:floatval minval='0.5'>2.0</std:floatval>"
     "<std:floatval minval='0' name='lost'>1</std:floatval><std:floatval minval=''>1</std:floatval>"
     "</std:node>",
     "top Enum\ntop TypeDef\ntop Root{plain D(float 0.5>=2.0, float 0>=1, float >=1)}"},
    // Kinds of elements may be mixed; each goes to its own top in its order.
    {"<std:node name='1'/><std:typedef name='2'><std:intval/></std:typedef><std:enumdef name='3'>"
     "<std:strval/></std:enumdef><std:node name='4'/><std:enumdef "
     "name='5'><std:strval/></std:enumdef>",
     "top Enum{enum 3(string =), enum 5(string =)}\n"
     "top TypeDef{typedef 2(int =)}\ntop Root{plain 1, plain 4}"},
    // Names: absent, in another namespace, blank, Japanese, of references.
    {"<std:node/><std:node std:name='x'/><std:node name='A0 ISO'/><std:node name='寸法'/>"
     "<std:node name='a&amp;&#x42;&#10;'/>",
     "top Enum\ntop TypeDef\ntop Root{plain , plain , plain A0 ISO, plain 寸法, plain a&B\n}"},
    // What is no element means nothing in a node.
    {" text <!-- comment --><?pi data?><![CDATA[<std:x/>]]><std:node name='D'> text "
     "<!-- c --><?pi d?><![CDATA[c]]><std:intval>1</std:intval> more </std:node>",
     "top Enum\ntop TypeDef\ntop Root{plain D(int =1)}"},
    {"<std:enumdef name='E'> t <!-- c --><std:strval>A</std:strval><?pi d?></std:enumdef>"
     "<std:typedef name='T'> t <!-- c --><std:intval>1</std:intval><![CDATA[x]]></std:typedef>",
     "top Enum{enum E(string =A)}\ntop TypeDef{typedef T(int =1)}\ntop Root"},
    // Values keep their text as it is; CDATA sections and references are joined to it.
    {"<std:node name='D'><std:strval> a  b </std:strval><std:strval>a<![CDATA[<b>]]>&lt;c&#33;"
     "</std:strval><std:strval><![CDATA[1]]><![CDATA[2]]></std:strval><std:strval></std:strval>"
     "<std:strval>\n</std:strval></std:node>",
     "top Enum\ntop TypeDef\n"
     "top Root{plain D(string = a  b , string =a<b><c!, string =12, string =, string =\n)}"},
    // Text is not checked against the type.
    {"<std:node name='D'><std:intval>many</std:intval></std:node>",
     "top Enum\ntop TypeDef\ntop Root{plain D(int =many)}"},
    // Elements of other namespaces are skipped everywhere, with all they hold.
    {"<o:x xmlns:o='other'><std:strval/></o:x><x/><o:node xmlns:o='other'/>"
     "<std:node name='D'><o:x xmlns:o='other'/><node/><std:intval>1</std:intval></std:node>"
     "<std:enumdef name='E'><x/><std:strval>A</std:strval></std:enumdef>"
     "<std:typedef name='T'><colorval/><std:intval>1</std:intval></std:typedef>",
     "top Enum{enum E(string =A)}\ntop TypeDef{typedef T(int =1)}\ntop Root{plain D(int =1)}"},
};

TEST_F(Decoder, ContentOfTheFormatIsBuiltIntoTheThreeTops) {
  for (const Accepted& row : kAccepted) {
    Document document;
    EXPECT_EQ(document.DecodeXML(Standard(row.content), 0), 0) << row.content;
    EXPECT_EQ(Describe(document), row.tops) << row.content;
    EXPECT_TRUE(document.GetProblem().IsEmpty());
  }
}

TEST_F(Decoder, ThePrefixOfTheNamespaceIsFree) {
  const std::string uri = kStandardNamespace;
  EXPECT_EQ(codec.DecodeXMLString("<node xmlns='" + uri + "'><node name='a'/><s:node xmlns:s='" +
                                  uri + "' name='b'/></node>"),
            S_OK);
  EXPECT_EQ(Describe(*root), "top Root{plain a, plain b}");
}

TEST_F(Decoder, NodesAreBuiltBreadthFirstButKeepTheirOrder) {
  const TraceOn trace("DftStdDOMCodec");
  EXPECT_EQ(Decode("<std:node name='D'><std:node name='B'><std:node name='C'/></std:node>"
                   "<std:node name='E'/></std:node>"),
            S_OK);
  EXPECT_EQ(Describe(*root), "top Root{plain D{plain B{plain C}, plain E}}");
  std::vector<std::string> built;
  for (const std::string& line : TakeTraces()) {
    if (const std::size_t name = line.rfind(" ("); line.starts_with("  Building node ")) {
      built.push_back(line.substr(name - 1, 1));
    }
  }
  EXPECT_THAT(built, ElementsAre("D", "B", "E", "C"));
}

struct Refused {
  const char* content;
  const char* assertion;
  const char* tops = "top Enum\ntop TypeDef\ntop Root";  // what stays
};
constexpr Refused kRefused[] = {
    {"<std:strval>x</std:strval>", "Invalid node"},
    {"<std:typeval name='i'/>", "Invalid node"},
    {"<std:colorval/>", "Invalid node"},
    {"<std:unknown/>", "Invalid node"},
    {"<std:Node/>", "Invalid node"},
    {"<std:node name='a'/><std:intval/><std:node name='b'/>", "Invalid node",
     "top Enum\ntop TypeDef\ntop Root{plain a}"},
    {"<std:node name='a'/><std:node name='D'><std:node "
     "name='x'><std:unknown/></std:node></std:node>",
     "Invalid node", "top Enum\ntop TypeDef\ntop Root{plain a}"},
    {"<std:node name='D'><std:enumdef name='E'><std:strval/></std:enumdef></std:node>",
     "Invalid node"},
    {"<std:node name='D'><std:typedef name='T'/></std:node>", "Typedef node empty!"},
    {"<std:enumdef name='E'/>", "Enumdef node empty!"},
    {"<std:enumdef name='E'> <!-- none --><x/></std:enumdef>", "Enumdef node empty!"},
    {"<std:typedef name='T'/>", "Typedef node empty!"},
    {"<std:typedef name='T'>text<x/></std:typedef>", "Typedef node empty!"},
    {"<std:enumdef name='E'><std:strval/><std:intval>1</std:intval></std:enumdef>", "Invalid node"},
    {"<std:enumdef name='E'><std:enumval>1</std:enumval></std:enumdef>", "Invalid node"},
    {"<std:enumdef name='E'><std:node/></std:enumdef>", "Invalid node"},
    {"<std:typedef name='T'><std:intval/><std:colorval>0 0 0</std:colorval></std:typedef>",
     "Invalid node"},
    {"<std:typedef name='T'><std:intval/><std:node/></std:typedef>", "Invalid node"},
    {"<std:typedef name='T'><std:intval/><std:typedef "
     "name='U'><std:intval/></std:typedef></std:typedef>",
     "Invalid node"},
};

TEST_F(Decoder, InvalidContentIsReportedAndWhatWasAppendedBeforeStays) {
  for (const bool development : {false, true}) {
    VyrSetDevelopmentStage(development);
    for (const Refused& row : kRefused) {
      SCOPED_TRACE(row.content);
      Document document;
      EXPECT_EQ(document.DecodeXML(Standard(row.content), 0), 1);
      EXPECT_EQ(Describe(document), row.tops);
      EXPECT_FALSE(document.GetProblem().IsEmpty());
      EXPECT_EQ(document.GetProblem().line, 1);
      const auto& reports = development ? log.abends : log.errors;
      EXPECT_THAT(CheckTexts(reports), ElementsAre(Raised(row.assertion, kCodecUnitName)));
      EXPECT_EQ(log.printed, log.abends);
      log.Clear();
    }
  }
}

TEST_F(Decoder, InvalidElementsFailWithEFailAndSoDoEmptyDefinitions) {
  for (const Refused& row : kRefused) EXPECT_EQ(Decode(row.content), E_FAIL) << row.content;
  EXPECT_EQ(TakeReports().size(), std::size(kRefused));
}

TEST_F(Decoder, ADocumentElementThatIsNoStandardIsRefused) {
  const std::string uri = kStandardNamespace;
  for (const std::string& document :
       {std::string("<std:node xmlns:std='http://elsewhere.example/std'/>"),
        std::string("<node name='drafting'/>"), "<std:typedef xmlns:std='" + uri + "'/>",
        "<std:typeval xmlns:std='" + uri + "'/>", "<std:Node xmlns:std='" + uri + "'/>",
        "<node xmlns:std='" + uri + "'/>", "<std:node xmlns:std='" + uri + "/'/>"}) {
    EXPECT_EQ(codec.DecodeXMLString(document), E_FAIL) << document;
    EXPECT_THAT(TakeReports(), ElementsAre(Raised("Invalid standard", kCodecUnitName))) << document;
    EXPECT_FALSE(codec.GetProblem().IsEmpty());
  }
}

TEST_F(Decoder, WhatIsNotWellFormedCannotBeBuilt) {
  for (const char* document : {"", "text", "<a>", "<std:node/>", "<a/><b/>", "<a b='1' b='2'/>",
                               "<a>\x01</a>", "<a>\xff</a>"}) {
    EXPECT_EQ(codec.DecodeXMLString(document), E_FAIL) << document;
    EXPECT_FALSE(codec.GetProblem().IsEmpty()) << document;
  }
  EXPECT_EQ(codec.DecodeXMLFile("/missing/standard.xml"), E_FAIL);
  EXPECT_EQ(codec.DecodeXMLFile(""), E_FAIL);
  EXPECT_EQ(DescribeTops(), "top Enum\ntop TypeDef\ntop Root");
}

TEST_F(Decoder, ALiteralOfAnotherNameIsReportedAndKept) {
  EXPECT_EQ(Decode("<std:enumdef name='E'><std:strval name='F'>A</std:strval>"
                   "<std:strval>B</std:strval><std:strval name='E'>C</std:strval></std:enumdef>"),
            S_OK);
  EXPECT_THAT(TakeReports(), ElementsAre(Raised(kLiteralName, kCodecUnitName)));
  EXPECT_EQ(Describe(*enums), "top Enum{enum E(string F=A, string =B, string E=C)}");
}

TEST_F(Decoder, ChildrenOfAValueThatAreNoTextAreReportedAndSkipped) {
  struct Row {
    const char* content;
    std::vector<const char*> assertions;
    const char* text;
  };
  const Row rows[] = {
      {"a<!-- c -->b", {"Unknown node type!"}, "ab"},
      {"a<?pi data?>b", {kOnlyText}, "ab"},
      {"a<std:strval>inner</std:strval>b", {kOnlyText}, "ab"},
      {"a<std:other>inner<deep/></std:other>b", {kOnlyText}, "ab"},
      {"<!--1--><std:x/>a<!--2-->", {"Unknown node type!", kOnlyText, "Unknown node type!"}, "a"},
      {"a<other>of another namespace</other>b", {}, "ab"},
      {"<!--1-->", {"Unknown node type!"}, ""},
      {"<![CDATA[a]]><std:x/><![CDATA[ ]]>b", {kOnlyText}, "a b"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Decode(std::string("<std:node><std:strval>") + row.content +
                     "</std:strval><std:intval>next</std:intval></std:node>"),
              S_OK);
    std::vector<std::string> expected;
    for (const char* assertion : row.assertions) {
      expected.push_back(Raised(assertion, kCodecUnitName));
    }
    EXPECT_EQ(TakeReports(), expected) << row.content;
    EXPECT_EQ(Describe(*root->GetNodes().back()),
              std::string("plain (string =") + row.text + ", int =next)");
  }
}

TEST_F(Decoder, AnElementOfAnotherNamespaceInAValueIsWarnedOfAlone) {
  const TraceOn trace("DftStdDOMCodec");
  EXPECT_EQ(Decode("<std:node><std:strval>a<o:x xmlns:o=\"no address\"/></std:strval></std:node>"),
            S_OK);
  EXPECT_THAT(log.traces, testing::Contains(testing::HasSubstr(
                              "Warning! The element <no address>x is not in standard namespace.")));
  log.traces.clear();
}

TEST_F(Decoder, ALiteralIsNamedByItsNameAttributeAlone) {
  struct Row {
    const char* attributes;
    bool isReported;
  };
  for (const Row& row :
       {Row{"", false}, Row{"name=\"E\"", false}, Row{"name=\"\"", true}, Row{"name=\"F\"", true},
        Row{"minval=\"q\"", false}, Row{"name=\"F\" minval=\"E\"", true}}) {
    EXPECT_EQ(Decode(std::string("<std:enumdef name=\"E\"><std:strval ") + row.attributes +
                     ">x</std:strval></std:enumdef>"),
              S_OK);
    EXPECT_EQ(TakeReports().size(), row.isReported ? 1u : 0u) << row.attributes;
  }
}

TEST_F(Decoder, ReportsOfADevelopmentStageRunArePrintedAndTheDecodeGoesOn) {
  VyrSetDevelopmentStage(true);
  EXPECT_EQ(Decode("<std:node><std:strval>a<!-- c -->b</std:strval></std:node>"), S_OK);
  EXPECT_THAT(CheckTexts(log.abends), ElementsAre(Raised("Unknown node type!", kCodecUnitName)));
  EXPECT_EQ(log.printed, log.abends);
  EXPECT_EQ(Describe(*root), "top Root{plain (string =ab)}");
  log.printed.clear();
  log.abends.clear();
}

TEST_F(Decoder, DecodingTwiceAppends) {
  Document document;
  const std::string text = Standard(
      "<std:enumdef name='E'><std:strval>A</std:strval></std:enumdef>"
      "<std:node name='D'/>");
  EXPECT_EQ(document.DecodeXML(text, 0), 0);
  EXPECT_EQ(document.DecodeXML(text, 0), 0);
  EXPECT_EQ(Describe(document),
            "top Enum{enum E(string =A), enum E(string =A)}\ntop TypeDef\n"
            "top Root{plain D, plain D}");
}

TEST_F(Decoder, AProblemNamesTheLineAndIsForgottenByTheNextDecode) {
  EXPECT_EQ(Decode("\n\n<std:node name='D'>\n<std:unknown/>\n</std:node>"), E_FAIL);
  EXPECT_EQ(codec.GetProblem().line, 4);
  EXPECT_THAT(codec.GetProblem().text.CString(), HasSubstr("std:unknown"));
  EXPECT_THAT(codec.GetProblem().text.CString(), HasSubstr("'D'"));
  EXPECT_EQ(Decode("\n<std:enumdef name='Frame'/>"), E_FAIL);
  EXPECT_EQ(codec.GetProblem().line, 2);
  EXPECT_THAT(codec.GetProblem().text.CString(), HasSubstr("'Frame'"));
  EXPECT_EQ(TakeReports().size(), 2u);
  EXPECT_EQ(Decode(""), S_OK);
  EXPECT_TRUE(codec.GetProblem().IsEmpty());
}

TEST_F(Decoder, AFileIsDecodedLikeAText) {
  const TemporaryFolder folder;
  const std::string text = Standard("<std:node name='寸法'><std:intval>1</std:intval></std:node>");
  const std::string path = folder.Write("standard.xml", text);
  Document document;
  EXPECT_EQ(document.DecodeXML(path, 1), 0);
  EXPECT_EQ(document.DecodeXML(path, -1), 0) << "any number but 0 names a file";
  EXPECT_EQ(DescribeAt(document, "Root"), "top Root{plain 寸法(int =1), plain 寸法(int =1)}");
  EXPECT_EQ(document.DecodeXML(path, 0), 1) << "a path is no XML text";
  EXPECT_EQ(document.DecodeXML(text, 1), 1) << "an XML text is no path";
}

TEST_F(Decoder, ACodecWithoutTopsFailsAsUnexpected) {
  VyrAnnStandardXMLParserDOMCodec unbound;
  EXPECT_EQ(unbound.DecodeXMLString(Standard("")), E_UNEXPECTED);
  EXPECT_EQ(unbound.DecodeXMLFile("/missing.xml"), E_UNEXPECTED);
  EXPECT_EQ(unbound.Init(nullptr, enums.Get(), root.Get()), E_UNEXPECTED);
  EXPECT_EQ(unbound.Init(typeDefs.Get(), nullptr, root.Get()), E_UNEXPECTED);
  EXPECT_EQ(unbound.Init(typeDefs.Get(), enums.Get(), nullptr), E_UNEXPECTED);
  EXPECT_EQ(TakeReports(), std::vector<std::string>(5, NullPointer(kCodecUnitName)));
}

// Trace lines

class DecoderTrace : public Decoder {
 protected:
  const TraceOn trace{"DftStdDOMCodec"};

  const std::string uri = kStandardNamespace;
  const std::string top = "/<" + uri + ">node drafting";

  /// The lines that a decode of a string begins with.
  static std::vector<std::string> Begin() {
    return {"{ VyrAnnStandardXMLParserDOMCodec::DecodeXMLString\n",
            "  VyrIXMLDOMDocumentBuilder supported options:\n",
            "    VyrDoValidation\n",
            "    VyrEnableNameSpaces\n",
            "  VyrDoValidation option found\n",
            "  VyrEnableNameSpaces option found\n"};
  }
  static std::string End() { return "} VyrAnnStandardXMLParserDOMCodec::DecodeXMLString\n"; }

  /// Expects the lines of a string's decode after the document element was found right.
  void ExpectLines(std::vector<std::string> lines) {
    std::vector<std::string> expected = Begin();
    expected.push_back("  Root node is OK, it's <" + uri + ">node\n");
    for (std::string& line : lines) expected.push_back("  " + std::move(line) + "\n");
    expected.push_back(End());
    EXPECT_EQ(TakeTraces(), expected);
  }
};

TEST_F(DecoderTrace, TheChannelHasItsNameAndTitle) {
  EXPECT_TRUE(trace.IsFound());
  EXPECT_STREQ(VyrTrace::Find("DftStdDOMCodec")->GetTitle(),
               "VyrAnnStandardXMLParserDOMCodec traces");
}

TEST_F(DecoderTrace, EachPartBuiltIsALineWithItsLocation) {
  EXPECT_EQ(Decode("<std:enumdef name='YesNo'><std:strval>Yes</std:strval><std:strval>No"
                   "</std:strval></std:enumdef>"
                   "<std:typedef name='T'><std:intval name='A'>1</std:intval></std:typedef>"
                   "<std:node name='D'><std:typeval name='B'/><std:intval>1</std:intval>"
                   "<std:typedef name='N'><std:intval/></std:typedef></std:node>"),
            S_OK);
  ExpectLines({
      "Building enumdef " + top + "/<" + uri + ">enumdef YesNo (2 values)",
      "Building typedef " + top + "/<" + uri + ">typedef T (1 values)",
      "Building typedef " + top + "/<" + uri + ">node D/<" + uri + ">typedef N (1 values)",
      "Building node " + top + "/<" + uri + ">node D (1 value, 2 subnodes)",
      "Building node " + top + "/<" + uri + ">node D/<" + uri + ">typeval B (0 value, 0 subnodes)",
  });
}

TEST_F(DecoderTrace, ARefusedElementIsNamedWithItsParent) {
  EXPECT_EQ(Decode("<std:strval name='s'>x</std:strval>"), E_FAIL);
  ExpectLines({"ERROR: invalid node " + top + "/<" + uri + ">strval s under root " + top});
  EXPECT_EQ(Decode("<std:node name='D'><std:bad/></std:node>"), E_FAIL);
  const std::string node = top + "/<" + uri + ">node D";
  ExpectLines({"ERROR: invalid node " + node + "/<" + uri + ">bad  under " + node});
  EXPECT_EQ(Decode("<std:enumdef name='E'><std:intval/></std:enumdef>"), E_FAIL);
  const std::string enumeration = top + "/<" + uri + ">enumdef E";
  ExpectLines(
      {"ERROR: invalid node " + enumeration + "/<" + uri + ">intval  under " + enumeration});
  EXPECT_EQ(Decode("<std:typedef name='T'><std:colorval name='c'/></std:typedef>"), E_FAIL);
  const std::string type = top + "/<" + uri + ">typedef T";
  ExpectLines({"ERROR: invalid node " + type + "/<" + uri + ">colorval c under " + type});
  EXPECT_EQ(TakeReports(), std::vector<std::string>(4, Raised("Invalid node", kCodecUnitName)));
}

TEST_F(DecoderTrace, ADocumentElementThatIsNoStandardIsNamed) {
  EXPECT_EQ(codec.DecodeXMLString("<x:node xmlns:x='other'/>"), E_FAIL);
  std::vector<std::string> expected = Begin();
  expected.push_back("  Root node is not correct, it's <other>node\n");
  expected.push_back(End());
  EXPECT_EQ(TakeTraces(), expected);
  EXPECT_EQ(TakeReports().size(), 1u);
}

TEST_F(DecoderTrace, ADocumentThatCannotBeBuiltIsALine) {
  EXPECT_EQ(codec.DecodeXMLString("<a>"), E_FAIL);
  std::vector<std::string> expected = Begin();
  expected.push_back("  BuildDocument failed\n");
  expected.push_back(End());
  EXPECT_EQ(TakeTraces(), expected);
}

TEST_F(DecoderTrace, AnElementOfAnotherNamespaceIsAWarningWithFileAndLine) {
  const TemporaryFolder folder;
  const std::string path = folder.Write(
      "s.xml", Standard("\n<x xmlns='other'/>\n\n<std:node name='D'>\n<y/></std:node>\n"
                        "<std:enumdef name='E'>\n<z/><std:strval/></std:enumdef>"));
  EXPECT_EQ(codec.DecodeXMLFile(path), S_OK);
  const auto warning = [&](const std::string& element, const std::string& line) {
    return "  Warning! The element " + element +
           " is not in standard namespace. It will be ignored. (file " + path + ":" + line + ")\n";
  };
  std::vector<std::string> lines;
  for (const std::string& line : TakeTraces()) {
    if (line.starts_with("  Warning!")) lines.push_back(line);
    if (line.starts_with("{ ")) {
      EXPECT_EQ(line, "{ VyrAnnStandardXMLParserDOMCodec::DecodeXMLFile\n");
    }
  }
  EXPECT_THAT(lines,
              ElementsAre(warning("<other>x", "2"), warning("<>y", "5"), warning("<>z", "7")));
}

TEST_F(DecoderTrace, LinesAreIndentedByTheBlocksAroundThem) {
  {
    const VyrTraceBlock outer(*VyrTrace::Find("DftStdDOMCodec"), "outer");
    EXPECT_EQ(Decode("<std:node name='D'/>"), S_OK);
  }
  EXPECT_THAT(TakeTraces(), testing::Contains("    Building node " + top + "/<" + uri +
                                              ">node D (0 value, 0 subnodes)\n"));
}

TEST_F(Decoder, AChannelThatIsOffSaysNothing) {
  EXPECT_EQ(Decode("<x/><std:node name='D'/>"), S_OK);
  EXPECT_THAT(TakeTraces(), IsEmpty());
}

// Document builders that a host may bring

/// A builder whose options and failures the test sets; it builds with the platform's own.
class HostBuilder final : public VyrImplements<VyrIXMLDOMDocumentBuilder> {
 public:
  static inline std::vector<std::string_view> options;
  static inline std::string_view refusedOption;
  static inline std::vector<std::string> settings;
  static inline bool makesDocument;
  static inline HRESULT creation;
  static inline bool makesBuilder;
  static inline VyrIXMLDOMDocumentBuilder_var platform;

  static HRESULT Create(VyrIXMLDOMDocumentBuilder_var& builder) {
    if (makesBuilder) builder = VyrIXMLDOMDocumentBuilder_var(new HostBuilder());
    return creation;
  }

  std::span<const std::string_view> GetOptions() override { return options; }
  HRESULT SetOption(std::string_view option, std::string_view value) override {
    settings.push_back(std::string(option) + "=" + std::string(value));
    return option == refusedOption ? E_FAIL : S_OK;
  }
  HRESULT BuildFromFile(VyrUnicodeView path, VyrIDOMDocument_var& document) override {
    return platform->BuildFromFile(path, document);
  }
  HRESULT BuildFromString(VyrUnicodeView text, VyrIDOMDocument_var& document) override {
    return makesDocument ? platform->BuildFromString(text, document) : S_OK;
  }
  const VyrProblem& GetProblem() override { return platform->GetProblem(); }
};

class HostBuilders : public Decoder {
 protected:
  void SetUp() override {
    ASSERT_EQ(CreateVyrIXMLDOMDocumentBuilder(HostBuilder::platform), S_OK);
    HostBuilder::options = {kVyrDoValidation, "Other", kVyrEnableNameSpaces};
    HostBuilder::refusedOption = {};
    HostBuilder::settings.clear();
    HostBuilder::makesDocument = true;
    HostBuilder::creation = S_OK;
    HostBuilder::makesBuilder = true;
    VyrSetDOMDocumentBuilderFactory(&HostBuilder::Create);
  }
  void TearDown() override {
    VyrSetDOMDocumentBuilderFactory(nullptr);
    HostBuilder::platform = nullptr;
    Decoder::TearDown();
  }
};

TEST_F(HostBuilders, AreSetNotToValidateAndToKnowNamespaces) {
  EXPECT_EQ(Decode("<std:node name='D'/>"), S_OK);
  EXPECT_THAT(HostBuilder::settings,
              ElementsAre("VyrDoValidation=false", "VyrEnableNameSpaces=true"));
  EXPECT_EQ(Describe(*root), "top Root{plain D}");
}

TEST_F(HostBuilders, ThatListOptionsHaveThemTraced) {
  const TraceOn trace("DftStdDOMCodec");
  EXPECT_EQ(Decode(""), S_OK);
  const std::vector<std::string> lines = TakeTraces();
  ASSERT_GE(lines.size(), 5u);
  EXPECT_EQ(std::vector(lines.begin() + 1, lines.begin() + 5),
            (std::vector<std::string>{"  VyrIXMLDOMDocumentBuilder supported options:\n",
                                      "    VyrDoValidation\n", "    Other\n",
                                      "    VyrEnableNameSpaces\n"}));
}

TEST_F(HostBuilders, WithoutValidationAreAssumedNotToValidate) {
  HostBuilder::options = {kVyrEnableNameSpaces};
  const TraceOn trace("DftStdDOMCodec");
  EXPECT_EQ(Decode("<std:node name='D'/>"), S_OK);
  EXPECT_THAT(HostBuilder::settings, ElementsAre("VyrEnableNameSpaces=true"));
  EXPECT_THAT(TakeTraces(), testing::Contains("  Warning: VyrDoValidation is not supported; "
                                              "we assume that parser is not validating\n"));
}

TEST_F(HostBuilders, WithoutNamespacesAreRefused) {
  HostBuilder::options = {kVyrDoValidation};
  EXPECT_EQ(Decode(""), E_FAIL);
  EXPECT_THAT(TakeReports(), ElementsAre(Raised("Namespaces not supported!", kCodecUnitName)));
  EXPECT_FALSE(codec.GetProblem().IsEmpty());
}

TEST_F(HostBuilders, ThatRefuseAnOptionTheyListAreUnexpected) {
  for (const std::string_view option : {kVyrDoValidation, kVyrEnableNameSpaces}) {
    HostBuilder::refusedOption = option;
    EXPECT_EQ(Decode(""), E_UNEXPECTED) << option;
    EXPECT_FALSE(codec.GetProblem().IsEmpty());
    EXPECT_THAT(TakeReports(), ElementsAre(RefusedBy(kCodecUnitName)));
  }
}

TEST_F(HostBuilders, ThatCannotBeMadeAreUnexpected) {
  HostBuilder::makesBuilder = false;
  EXPECT_EQ(Decode(""), E_UNEXPECTED);
  EXPECT_THAT(TakeReports(), ElementsAre(NullPointer(kCodecUnitName)));
  HostBuilder::creation = E_FAIL;
  EXPECT_EQ(Decode(""), E_UNEXPECTED);
  EXPECT_THAT(TakeReports(), ElementsAre(RefusedBy(kCodecUnitName)));
}

TEST_F(HostBuilders, ThatGiveNoDocumentAreUnexpected) {
  HostBuilder::makesDocument = false;
  EXPECT_EQ(Decode(""), E_UNEXPECTED);
  EXPECT_THAT(TakeReports(), ElementsAre(NullPointer(kCodecUnitName)));
  EXPECT_THAT(codec.GetProblem().text.CString(), HasSubstr("gives no reason"));
}

TEST(DecoderOfATree, WithoutAnElementSaysWhatIsMissing) {
  DiagnosticsCapture capture;
  const VyrXMLTree tree;
  StandardXMLDecoder decoder(tree, "a text");
  const Node_var top = NewNode("Root", Node::NodeTop);
  EXPECT_EQ(decoder.Decode({*top, *top, *top}), E_UNEXPECTED);
  EXPECT_EQ(capture.errors.size(), 1u);
  EXPECT_EQ(decoder.GetProblem().line, 1);
  EXPECT_EQ(decoder.GetProblem().text,
            "holds no element; a standard begins with a std:node element");
}

}  // namespace
}  // namespace modeltest
