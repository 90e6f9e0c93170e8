#include <arpa/inet.h>
#include <libxml/parser.h>
#include <netinet/in.h>
#include <sys/inotify.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <functional>
#include <utility>

#include "HostileText.h"
#include "ProcessApart.h"
#include "TemporaryFolder.h"
#include "VyrUtf8.h"
#include "VyrXMLReader.h"
#include "XMLTest.h"

// Files made to harm: refused with a message that helps, or read, in time and memory that are in
// proportion to the file.

namespace {

using testing::AllOf;
using testing::HasSubstr;

/// "accepted", or the line and the text of the refusal; "unsound" when it is neither.
std::string AnswerTo(std::string_view document) {
  VyrXMLTree tree;
  VyrProblem problem;
  const bool isRead = VyrReadXML(document, nullptr, tree, problem);
  if (isRead) return problem.IsEmpty() ? "accepted" : "unsound";
  const bool isSound = !problem.IsEmpty() && problem.line > 0 && problem.text.Find("\n") == -1;
  return isSound ? std::to_string(problem.line) + ": " + problem.text.CString() : "unsound";
}

TEST(HostileXMLFile, MemoryOutOfProportionIsSeen) {
  if (kIsSanitized) GTEST_SKIP() << "memory is not counted under sanitizers";
  const ApartRun run = RunApart([] {
    std::string much(100'000'000, 'm');
    return std::to_string(much.find('n') == std::string::npos);
  });
  EXPECT_EQ(run.answer, "1") << run.end;
  EXPECT_GE(run.memory, 100'000'000u);
  EXPECT_FALSE(IsInProportion(run, 1000, 50));
  EXPECT_TRUE(IsInProportion(run, 100'000'000, 1));
}

/// Bytes of memory that reading takes for each byte of a file, at most: of one that is mostly text,
/// and where a few bytes make an item of the tree. An array that grows is there twice for a moment.
constexpr std::size_t kFactorOfText = 6;
constexpr std::size_t kFactorOfItems = 30;

struct Hostile {
  const char* name;
  std::function<std::string()> make;
  const char* answer;  // a part of it
  std::size_t factor = kFactorOfText;
};

std::ostream& operator<<(std::ostream& out, const Hostile& hostile) {
  return out << hostile.name;
}

class HostileXML : public testing::TestWithParam<Hostile> {};

TEST_P(HostileXML, IsAnsweredInTimeAndMemoryInProportionToTheFile) {
  const std::string document = GetParam().make();
  const ApartRun run = RunApart([&] { return AnswerTo(document); });
  EXPECT_TRUE(IsInProportion(run, document.size(), GetParam().factor));
  EXPECT_THAT(run.answer, HasSubstr(GetParam().answer));
}

constexpr const char* kAccepted = "accepted";
constexpr const char* kManyAttributes = "1: has more than 256 attributes on one element";
constexpr const char* kManyNames = "1: has more than 65536 different element and attribute names";
constexpr const char* kNestedNamespaces =
    "1: has more than 256 namespace declarations inside each other";
constexpr const char* kLongDeclaration = "1: has a document type declaration longer than 64 KB";
constexpr const char* kOutOfProportion = "expands out of proportion to the file";

const Hostile kCounts[] = {
    {"levels", [] { return Repeated("<a>", kMillion) + Repeated("</a>", kMillion); }, kAccepted,
     kFactorOfItems},
    {"levels without end", [] { return Repeated("<a>", kMillion); },
     "the text breaks off there; take a complete copy of it", 2 * kFactorOfItems},
    {"levels ended by another name", [] { return Repeated("<a>", kMillion) + "</b>"; },
     "close every element with an end tag of its own name", 2 * kFactorOfItems},
    {"siblings", [] { return "<r>" + Repeated("<a/>", kMillion) + "</r>"; }, kAccepted,
     kFactorOfItems},
    {"siblings with attributes", [] { return "<r>" + Repeated("<a b=''/>", kMillion) + "</r>"; },
     kAccepted, kFactorOfItems / 2},
    {"attributes",
     [] { return "<r" + Numbered(kMillion, [](auto n) { return " a" + n + "=''"; }) + "/>"; },
     kManyAttributes},
    {"attributes without end",
     [] { return "<r" + Numbered(kMillion, [](auto n) { return " a" + n + "=''"; }); },
     kManyAttributes},
    {"attributes of many elements",
     [] {
       const std::string element =
           "<e" + Numbered(256, [](auto n) { return " a" + n + "=''"; }) + "/>";
       return "<r>" + Repeated(element, kMillion / 256) + "</r>";
     },
     kAccepted},
    {"namespaces of one element",
     [] {
       return "<r" + Numbered(kMillion, [](auto n) { return " xmlns:p" + n + "='u'"; }) + "/>";
     },
     kManyAttributes},
    {"namespaces inside each other",
     [] {
       return Numbered(kMillion, [](auto n) { return "<a xmlns:p" + n + "='u'>"; }) +
              Repeated("</a>", kMillion);
     },
     kNestedNamespaces},
    {"one namespace declared again and again",
     [] { return Repeated("<a xmlns='u'>", kMillion) + Repeated("</a>", kMillion); },
     kNestedNamespaces},
    {"siblings below all namespaces that are allowed",
     [] {
       return Numbered(256, [](auto n) { return "<a xmlns:p" + n + "='u'>"; }) +
              Repeated("<b/>", kMillion) + Repeated("</a>", 256);
     },
     kAccepted, kFactorOfItems},
    {"namespaces of siblings",
     [] {
       return "<r>" +
              Numbered(kMillion, [](auto n) { return "<a xmlns:p" + n + "='u" + n + "'/>"; }) +
              "</r>";
     },
     kManyNames},
    {"different element names",
     [] { return "<r>" + Numbered(kMillion, [](auto n) { return "<a" + n + "/>"; }) + "</r>"; },
     kManyNames},
    {"different attribute names",
     [] {
       return "<r>" + Numbered(kMillion, [](auto n) { return "<a b" + n + "=''/>"; }) + "</r>";
     },
     kManyNames},
    {"different targets of instructions",
     [] { return "<r>" + Numbered(kMillion, [](auto n) { return "<?p" + n + "?>"; }) + "</r>"; },
     kManyNames},
    {"lines", [] { return "<r>" + std::string(kMillion, '\n') + "</r>"; }, kAccepted},
    {"sections and comments",
     [] { return "<r>" + Repeated("<![CDATA[]]><!---->", kMillion / 4) + "</r>"; }, kAccepted},
};
INSTANTIATE_TEST_SUITE_P(Counts, HostileXML, testing::ValuesIn(kCounts));

std::string Long(char c) {
  return std::string(kManyBytes, c);
}
std::string Megabyte(char c = 'n') {
  return std::string(std::size_t{1} << 20, c);
}

const Hostile kSizes[] = {
    {"text", [] { return "<r>" + Long('x') + "</r>"; }, kAccepted},
    {"text without end", [] { return "<r>" + Long('x'); }, "breaks off"},
    {"text of wide characters", [] { return "<r>" + Repeated("\u5BF8", kManyBytes / 3) + "</r>"; },
     kAccepted},
    {"text of references", [] { return "<r>" + Repeated("&amp;", kManyBytes / 20) + "</r>"; },
     kAccepted},
    {"section", [] { return "<r><![CDATA[" + Long('<') + "]]></r>"; }, kAccepted},
    {"comment", [] { return "<r><!--" + Long('=') + "--></r>"; }, kAccepted},
    {"instruction", [] { return "<r><?p " + Long('=') + "?></r>"; }, kAccepted},
    {"attribute", [] { return "<r a='" + Long('=') + "'/>"; }, kAccepted},
    {"attribute without end", [] { return "<r a='" + Long('='); }, "breaks off"},
    {"blanks in a tag", [] { return "<r " + Long(' ') + "/>"; }, kAccepted},
    {"no markup at all", [] { return Long('x'); }, "1: not well-formed XML"},
    {"element name", [] { return "<r>" + Repeated("<" + Megabyte() + "/>", 20) + "</r>"; },
     kAccepted},
    {"attribute name", [] { return "<r " + Megabyte() + "=''/>"; }, kAccepted},
    {"prefix", [] { return "<" + Megabyte() + ":r xmlns:" + Megabyte() + "='u'/>"; }, kAccepted},
    {"name of a namespace",
     [] {
       return "<r xmlns='" + Megabyte() + "'>" +
              Numbered(50000, [](auto n) { return "<a" + n + "/>"; }) + "</r>";
     },
     "1: has a namespace name longer than 4 KB"},
    {"names of namespaces as long as allowed",
     [] {
       return "<r xmlns='" + std::string(4096, 'u') + "'>" +
              Numbered(50000, [](auto n) { return "<a" + n + "/>"; }) + "</r>";
     },
     kAccepted},
    {"target", [] { return "<r><?" + Megabyte() + "?></r>"; }, kAccepted},
    {"name of an unknown entity", [] { return "<r>&" + Megabyte() + ";</r>"; },
     "1: not well-formed"},
    {"name of an encoding",
     [] { return "<?xml version='1.0' encoding='" + Megabyte() + "'?><r/>"; },
     "1: declares the encoding 'nnnn"},
};
INSTANTIATE_TEST_SUITE_P(Sizes, HostileXML, testing::ValuesIn(kSizes));

std::string Declared(const std::string& declarations, const std::string& content) {
  return "<!DOCTYPE r [" + declarations + "]><r>" + content + "</r>";
}

/// Entities, each ten times the one before: the last of `levels` is `10^levels` times the first.
std::string Nested(int levels, const std::string& first, const char* declare = "<!ENTITY ",
                   const char* reference = "&") {
  std::string declarations = declare + ("e0 '" + first) + "'>";
  for (int level = 1; level <= levels; ++level) {
    const std::string inner = reference + ("e" + std::to_string(level - 1)) + ";";
    declarations += declare + ("e" + std::to_string(level)) + " '" + Repeated(inner, 10) + "'>";
  }
  return declarations;
}

/// Elements inside each other, each with `declarations`, and `content` in the innermost.
std::string Inside(std::size_t levels, const std::string& declarations,
                   const std::string& content = "") {
  return Repeated("<a" + declarations + ">", levels) + content + Repeated("</a>", levels);
}

/// A document with nothing in it but the text of an entity.
std::string InEntity(const std::string& text) {
  return Declared("<!ENTITY e \"" + text + "\">", "&e;");
}

const Hostile kEntities[] = {
    {"bomb in a text", [] { return Declared(Nested(9, "x"), "&e9;"); }, kOutOfProportion},
    {"bomb in an attribute", [] { return Declared(Nested(9, "x"), "<a b='&e9;'/>"); },
     kOutOfProportion},
    {"bomb of nothing", [] { return Declared(Nested(9, ""), "&e9;"); }, kOutOfProportion},
    {"bomb of elements", [] { return Declared(Nested(9, "<a/>"), "&e9;"); }, kOutOfProportion},
    {"bomb in a default",
     [] { return Declared(Nested(9, "x") + "<!ATTLIST r a CDATA '&e9;'>", ""); }, kOutOfProportion},
    {"bomb of parameters",
     [] { return Declared(Nested(9, " ", "<!ENTITY % ", "&#37;") + "%e9;", ""); },
     kOutOfProportion},
    {"bomb of parameters that declare",
     [] { return Declared(Nested(9, "<!ENTITY f \"x\">", "<!ENTITY % ", "&#37;") + "%e9;", ""); },
     "1: not well-formed XML"},
    {"one entity again and again",
     [] {
       return Declared("<!ENTITY e '" + std::string(30000, 'x') + "'>", Repeated("&e;", kMillion));
     },
     kOutOfProportion},
    {"entity that refers to itself", [] { return Declared("<!ENTITY e '&e;'>", "&e;"); },
     "1: not well-formed XML"},
    {"entities that refer to each other",
     [] { return Declared("<!ENTITY a '&b;'><!ENTITY b '&a;'>", "<c d='&a;'/>"); },
     "1: not well-formed XML"},
    {"elements in entities, as many as are allowed",
     [] {
       const std::string elements = Repeated("<a/>", 7000);
       return Declared("<!ENTITY e '" + elements + "'>",
                       Repeated("&e;", 37) + std::string(kManyBytes / 100, ' ') +
                           Repeated("&e;", kManyBytes / 100 / elements.size()));
     },
     kAccepted, kFactorOfItems},
    {"short references", [] { return Declared("<!ENTITY e ''>", Repeated("&e;", kMillion)); },
     kAccepted},
    {"all characters of a character set",
     [] {
       // As long as the sets that are pasted into documents, which have some thousand names.
       return Declared(Numbered(2000, [](auto n) { return "<!ENTITY name" + n + " '&#x100;'>\n"; }),
                       Numbered(2000, [](auto n) { return "&name" + n + ";"; }));
     },
     kAccepted},
    {"literals, as many as are allowed",
     [] {
       return Declared(
           "<!ATTLIST r a (x" + Numbered(9000, [](auto n) { return "|" + n; }) + ") #IMPLIED>", "");
     },
     kAccepted},
    {"long name of a namespace in an entity",
     [] { return InEntity(Inside(1, " xmlns:p='" + std::string(4097, 'u') + "'")); },
     "1: has a namespace name longer than 4 KB"},
    {"long names of namespaces inside each other in an entity",
     [] { return InEntity(Inside(4, " xmlns:p='" + std::string(4097, 'u') + "'")); },
     "1: has a namespace name longer than 4 KB"},
    {"namespaces inside each other in an entity",
     [] { return InEntity(Inside(600, " xmlns='u'")); }, kNestedNamespaces},
    {"namespaces inside each other around and in an entity",
     [] {
       return Declared("<!ENTITY e \"" + Inside(200, " xmlns='u'") + "\">",
                       Inside(200, " xmlns='u'", "&e;"));
     },
     kNestedNamespaces},
    {"names in an entity",
     [] {
       return Declared("<!ENTITY e \"<a>" +
                           Numbered(2000, [](auto n) { return "<b c" + n + "=''>"; }) +
                           Repeated("</b>", 2000) + "</a>\">",
                       Numbered(65000, [](auto n) { return "<a" + n + "/>"; }) + "&e;");
     },
     kManyNames},
    {"defaults in an entity",
     [] {
       return Declared("<!ATTLIST a b CDATA '" + std::string(30000, 'x') + "'><!ENTITY e \"" +
                           Inside(1000, "") + "\">",
                       "&e;");
     },
     kOutOfProportion},
    {"attributes in an entity",
     [] {
       return Declared(
           "<!ENTITY e '<a" + Numbered(257, [](auto n) { return " a" + n + "=\"\""; }) + "/>'>",
           Repeated("&e;", 100));
     },
     "entity 'e' has more than 256 attributes on one element"},
    {"defaults",
     [] {
       return Declared(
           "<!ATTLIST a" + Numbered(257, [](auto n) { return " b" + n + " CDATA ''"; }) + ">",
           Repeated("<a/>", 1000));
     },
     "1: default value of attribute 'b256' is one of more than 256"},
    {"defaults of many elements",
     [] {
       return Declared(
           "<!ATTLIST a" + Numbered(256, [](auto n) { return " b" + n + " CDATA ''"; }) + ">",
           Repeated("<a/>", kMillion));
     },
     kOutOfProportion},
    {"declared entities",
     [] {
       return Declared(Numbered(kMillion, [](auto n) { return "<!ENTITY e" + n + " ''>"; }), "");
     },
     kLongDeclaration},
    {"declared literals",
     [] {
       return Declared(
           "<!ATTLIST r a (x" + Numbered(kMillion, [](auto n) { return "|t" + n; }) + ") #IMPLIED>",
           "");
     },
     kLongDeclaration},
    {"declared literals that never end",
     [] {
       return "<!DOCTYPE r [<!ATTLIST r a (x" + Numbered(kMillion, [](auto n) { return "|t" + n; });
     },
     kLongDeclaration},
    {"literals out of parameters",
     [] {
       // Each parameter's text is joined into the next one's, so that all literals differ.
       std::string declarations = "<!ENTITY % d0 '|t'>";
       for (int level = 1; level <= 5; ++level) {
         const std::string inner = "&#37;d" + std::to_string(level - 1) + ";";
         declarations += "<!ENTITY % d" + std::to_string(level) + " \"<!ENTITY &#37; x" +
                         std::to_string(level) + " '" + Repeated(inner, 10) + "'>\">%d" +
                         std::to_string(level) + ";";
       }
       return Declared(declarations, "");
     },
     "1: not well-formed XML"},
    {"content of an element",
     [] {
       return Declared(
           "<!ELEMENT r " + std::string(10000, '(') + "a" + std::string(10000, ')') + ">", "");
     },
     "1: not well-formed XML"},
};
INSTANTIATE_TEST_SUITE_P(Entities, HostileXML, testing::ValuesIn(kEntities));

TEST(HostileXMLFile, EveryRefusalSaysWhereWhatAndWhatWouldBeRight) {
  struct {
    std::string document;
    const char* answer;
  } const cases[] = {
      {"", "1: empty; a standard begins with a std:node element"},
      {"<a>\n<b>\n</a>",
       "3: not well-formed XML: Opening and ending tag mismatch: b line 2 and a; close every "
       "element with an end tag of its own name"},
      {"<a>\n<b",
       "2: not well-formed XML: Couldn't find end of Start Tag b line 2; the text breaks off "
       "there; "
       "take a complete copy of it"},
      {"<a>\n&b;</a>",
       "2: not well-formed XML: Entity 'b' not defined; write the character itself, or declare the "
       "entity"},
      {"<a>\n&</a>",
       "2: not well-formed XML: no name; write '&' as &amp; and '<' as &lt; in a text"},
      {"<a>\n<? b?></a>", "2: not well-formed XML: no target name; mend the markup there"},
      {"<a>\n&#0;</a>",
       "2: not well-formed XML: invalid xmlChar value 0; leave the character out, no XML text may "
       "hold it"},
      {"<a>\n<b c='' c=''/></a>",
       "2: not well-formed XML: Attribute c redefined; give an attribute once"},
      {"<a>\n<b c=1/></a>",
       "2: not well-formed XML: AttValue: \" or ' expected; put the value between quotes"},
      {"<a/>\n<b/>",
       "2: not well-formed XML: Extra content at the end of the document; nothing may follow the "
       "document element"},
      {"<a>\n<p:b/></a>",
       "2: not well-formed XML: Namespace prefix p on b is not defined; declare the prefix with "
       "xmlns on an element around it"},
      {"<a>\n\xE9</a>",
       "2: is not valid UTF-8 at byte 5; declare the encoding that it is written in, or save it as "
       "UTF-8"},
      {"\xEF\xBB\xBF<a>\n\xE9</a>",
       "2: is not valid UTF-8 at byte 8; declare the encoding that it is written in, or save it as "
       "UTF-8"},
      {"<?xml version='1.0' encoding='Shift_JIS'?>\n<a>\x85\x85</a>",
       "2: is not valid Shift_JIS at byte 47; declare the encoding that it is written in, or save "
       "it as UTF-8"},
      {"<?xml version='1.0' encoding='x-none'?><a/>",
       "1: declares the encoding 'x-none', which is not known; save it as UTF-8"},
      {"<?xml version='1.0' encoding='UTF-16'?><a/>",
       "1: declares the encoding 'UTF-16' but is not written in it; declare the right one, or save "
       "it as UTF-8"},
      {std::string("<a>\n\0</a>", 9),
       "2: holds a zero byte; a standard is XML text, in UTF-8 or as it declares"},
      {"<!DOCTYPE a [<!ENTITY b SYSTEM 'c'>]>\n<a>&b;</a>",
       "2: entity 'b' lies outside the file; a standard must be complete in itself"},
      {"<!DOCTYPE a [<!ENTITY b SYSTEM 'c'><!ENTITY b 'd'>]>\n<a>&b;</a>",
       "1: entity 'b' lies outside the file; a standard must be complete in itself"},
  };
  for (const auto& test : cases) EXPECT_EQ(AnswerTo(test.document), test.answer);
}

TEST(HostileXMLFile, MessageIsOneShortLineWhateverTheFileHolds) {
  const std::string name = Repeated("\u00E9\u5BF8", 1000);
  for (const std::string& document :
       {"<" + name + "></b>", "<a>&" + name + ";</a>", "<a><" + name + ":b/></a>",
        "<a " + name + "='' " + name + "=''/>",
        "<!DOCTYPE a [<!ENTITY " + name + " SYSTEM 'c'>]><a>&" + name + ";</a>",
        "<?xml version='1.0' encoding='" + std::string(900, 'x') + "'?><a/>"}) {
    const std::string answer = AnswerTo(document);
    EXPECT_NE(answer, "accepted") << document.substr(0, 20);
    EXPECT_LT(answer.size(), 400u) << document.substr(0, 20);
    EXPECT_EQ(VyrFindInvalidUtf8(answer), std::string_view::npos);
  }
}

// --- Encodings -----------------------------------------------------------------------------------

std::string Wide(std::u32string_view text, int size, bool isBigEndian) {
  std::string bytes;
  for (const char32_t c : text) {
    for (int i = 0; i < size; ++i) {
      bytes += static_cast<char>(c >> 8 * (isBigEndian ? size - 1 - i : i) & 0xFF);
    }
  }
  return bytes;
}

TEST(HostileXMLFile, EncodingIsToldByMarkThenByDeclarationThenByTheFirstCharacters) {
  struct {
    const char* name;
    std::string document;
    const char* text;
  } const cases[] = {
      {"UTF-8", "<r>\u5BF8</r>", "\u5BF8"},
      {"UTF-8 with mark", "\xEF\xBB\xBF<r>\u5BF8</r>", "\u5BF8"},
      {"mark before declaration",
       "\xEF\xBB\xBF<?xml version='1.0' encoding='ISO-8859-1'?><r>\u5BF8</r>", "\u5BF8"},
      {"UTF-16, little end first, mark", Wide(U"\uFEFF<r>\u5BF8</r>", 2, false), "\u5BF8"},
      {"UTF-16, big end first, mark", Wide(U"\uFEFF<r>\u5BF8</r>", 2, true), "\u5BF8"},
      {"UTF-16, little end first, declared",
       Wide(U"<?xml version='1.0' encoding='UTF-16'?><r>\u5BF8</r>", 2, false), "\u5BF8"},
      {"UTF-16, big end first, no mark, not declared", Wide(U"<r>\u5BF8</r>", 2, true), "\u5BF8"},
      {"UTF-16, mark, declares another",
       Wide(U"\uFEFF<?xml version='1.0' encoding='UTF-8'?><r>\u5BF8</r>", 2, false), "\u5BF8"},
      {"UTF-32, little end first, mark", Wide(U"\uFEFF<r>\u5BF8</r>", 4, false), "\u5BF8"},
      {"UTF-32, big end first", Wide(U"<r>\u5BF8</r>", 4, true), "\u5BF8"},
      {"Latin-1", "<?xml version=\"1.0\" encoding = \"iso-8859-1\" ?><r>\xB1</r>", "\u00B1"},
      {"Shift_JIS", "<?xml version='1.0' encoding='Shift_JIS'?><r>\x90\xA1\x96\x40</r>",
       "\u5BF8\u6CD5"},
      // "\x5C" and "\x7C" are second halves here; "<" and quotes never are.
      {"Shift_JIS, halves like markup",
       "<?xml version='1.0' encoding='Shift_JIS'?><r a='\x83\x5C\x83\x7C'>\x83\x5C</r>", "\u30BD"},
      // As Windows writes it: "\\" and "~" are themselves, and circled digits exist.
      {"Shift_JIS of Windows", "<?xml version='1.0' encoding='Shift_JIS'?><r>C:\\a~b\x87\x40</r>",
       "C:\\a~b\u2460"},
      {"x-sjis", "<?xml version='1.0' encoding='X-SJIS'?><r>\\~\x87\x40</r>", "\\~\u2460"},
      {"SJIS", "<?xml version='1.0' encoding='sjis'?><r>\\~\x87\x40</r>", "\\~\u2460"},
      {"MS_Kanji", "<?xml version='1.0' encoding='MS_Kanji'?><r>\\~\x87\x40</r>", "\\~\u2460"},
      // The code page's own: the euro sign, which neither standard has.
      {"GB2312 of Windows", "<?xml version='1.0' encoding='gb2312'?><r>\xB3\xDF\xA2\xE3</r>",
       "\u5C3A\u20AC"},
      // A syllable that the standard leaves out.
      {"EUC-KR of Windows", "<?xml version='1.0' encoding='euc-kr'?><r>\xB0\xA1\x81\x41</r>",
       "\uAC00\uAC02"},
      {"ks_c_5601-1987", "<?xml version='1.0' encoding='ks_c_5601-1987'?><r>\x81\x41</r>",
       "\uAC02"},
      {"EUC-JP", "<?xml version='1.0' encoding='EUC-JP'?><r>\xC0\xA3</r>", "\u5BF8"},
      {"ISO-2022-JP, whose characters look like markup",
       "<?xml version='1.0' encoding='ISO-2022-JP'?><r>\x1B$B@#\x1B(B</r>", "\u5BF8"},
  };
  for (const auto& test : cases) {
    VyrXMLTree tree;
    VyrProblem problem;
    ASSERT_TRUE(VyrReadXML(test.document, nullptr, tree, problem))
        << test.name << ": " << problem.text.CString();
    EXPECT_EQ(tree.GetText(tree.GetCount() - 1), test.text) << test.name;
  }
}

TEST(HostileXMLFile, BytesOfAnotherEncodingAreRefusedNotGuessed) {
  const std::string latin = "<r>\n\xE9t\xE9</r>";
  const std::string japanese = "<r>\n\x90\xA1\x96\x40</r>";
  const std::string utf8 = "?><r>\n\u5BF8</r>";
  EXPECT_THAT(AnswerTo(latin), AllOf(HasSubstr("2: "), HasSubstr("not valid UTF-8 at byte 5")));
  EXPECT_THAT(AnswerTo(japanese), AllOf(HasSubstr("2: "), HasSubstr("not valid UTF-8 at byte 5")));
  EXPECT_THAT(AnswerTo("<?xml version='1.0' encoding='US-ASCII'" + utf8),
              HasSubstr("2: is not valid US-ASCII at byte 46"));
  EXPECT_THAT(AnswerTo("<?xml version='1.0' encoding='UTF-32'" + utf8),
              HasSubstr("1: declares the encoding 'UTF-32' but is not written in it"));
  // A name of an encoding is never an option of the converter.
  EXPECT_THAT(AnswerTo("<?xml version='1.0' encoding='ASCII//IGNORE'" + utf8),
              HasSubstr("which is not known"));
  const std::string half = Wide(U"\uFEFF<r/>", 2, false) + "\n";
  EXPECT_THAT(AnswerTo(half), HasSubstr("1: is not valid UTF-16LE at byte 11"));
  const std::string lone =
      Wide(U"\uFEFF<r>\n", 2, true) + std::string("\xD8\x3D\x00x", 4) + Wide(U"</r>", 2, true);
  EXPECT_THAT(AnswerTo(lone), HasSubstr("2: is not valid UTF-16BE at byte 11"));
}

TEST(HostileXMLFile, ConversionTakesMemoryInProportionToo) {
  const std::string declaration = "<?xml version='1.0' encoding='Shift_JIS'?>";
  // One byte here is three in UTF-8, which the parser copies.
  const std::string document = declaration + "<r>" + std::string(kManyBytes / 10, '\xB1') + "</r>";
  const ApartRun run = RunApart([&] { return AnswerTo(document); });
  EXPECT_TRUE(IsInProportion(run, document.size(), 3 * kFactorOfText));
  EXPECT_EQ(run.answer, kAccepted);
}

// --- Limits --------------------------------------------------------------------------------------

TEST(XMLNamespaces, AreCountedPerOpenElementInAnEntityToo) {
  const auto declared = [](std::size_t count) {
    return Numbered(count, [](auto n) { return " xmlns:p" + n + "='u'"; });
  };
  struct {
    const char* name;
    std::function<std::string(std::size_t)> make;
  } const cases[] = {
      {"inside each other",
       [](std::size_t count) { return "<r>" + Inside(count, " xmlns='u'") + "</r>"; }},
      {"on one element",
       [&](std::size_t count) {
         return "<r" + declared(1) + "><a" + declared(count - 1) + "/></r>";
       }},
      {"in an entity", [](std::size_t count) { return InEntity(Inside(count, " xmlns='u'")); }},
      {"around and in an entity",
       [](std::size_t count) {
         return Declared("<!ENTITY e \"" + Inside(100, " xmlns='u'") + "\">",
                         Inside(count - 100, " xmlns='u'", "&e;"));
       }},
      {"in an entity that an entity refers to",
       [](std::size_t count) {
         return Declared("<!ENTITY e \"" + Inside(100, " xmlns='u'") + "\"><!ENTITY f \"" +
                             Inside(count - 100, " xmlns='u'", "&e;") + "\">",
                         "&f;");
       }},
      {"after others that are closed",
       [](std::size_t count) {
         return "<r><a xmlns='u'><b/></a>" + Repeated("<b xmlns='u'/>", 300) +
                Inside(200, " xmlns='u'") + Inside(count, " xmlns='u'") + "</r>";
       }},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(AnswerTo(test.make(256)), kAccepted) << test.name;
    EXPECT_THAT(AnswerTo(test.make(257)), HasSubstr(kNestedNamespaces)) << test.name;
  }
}

// --- Nothing outside the file --------------------------------------------------------------------

int loadedEntities = 0;

xmlParserInput* CountLoad(const char*, const char*, xmlParserCtxt*) {
  ++loadedEntities;
  return nullptr;
}

/// Documents that refer to something outside in every way that XML knows.
std::vector<std::string> DocumentsThatReferTo(const std::string& address) {
  const std::string system = " SYSTEM '" + address + "'";
  return {
      "<!DOCTYPE r [<!ENTITY e" + system + ">]><r>&e;</r>",
      "<!DOCTYPE r [<!ENTITY e" + system + ">]><r a='&e;'/>",
      "<!DOCTYPE r [<!ENTITY e" + system + "><!ENTITY f '&e;'>]><r>&f;</r>",
      "<!DOCTYPE r [<!ENTITY e PUBLIC 'p' '" + address + "'>]><r>&e;</r>",
      "<!DOCTYPE r [<!ENTITY % p" + system + "> %p;]><r/>",
      "<!DOCTYPE r [<!ENTITY % p \"<!ENTITY &#37; q" + system + "> &#37;q;\"> %p;]><r/>",
      "<!DOCTYPE r" + system + "><r/>",
      "<!DOCTYPE r" + system + "><r>&e;</r>",
      "<!DOCTYPE r PUBLIC 'p' '" + address + "' [<!ENTITY e 'x'>]><r>&e;</r>",
      "<!DOCTYPE r [<!NOTATION n" + system + "><!ENTITY e" + system +
          " NDATA n><!ATTLIST r a ENTITY 'e'>]><r/>",
      "<?xml-stylesheet href='" + address + "'?><r/>",
      "<r xmlns:xi='http://www.w3.org/2001/XInclude'><xi:include href='" + address + "'/></r>",
      "<r xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xsi:schemaLocation='u " + address +
          "' xml:base='" + address + "'/>",
  };
}

TEST(HostileXMLFile, ParserIsNeverAskedForAnythingOutside) {
  const xmlExternalEntityLoader loader = xmlGetExternalEntityLoader();
  xmlSetExternalEntityLoader(CountLoad);
  loadedEntities = 0;
  for (const std::string& document : DocumentsThatReferTo("other.xml")) {
    EXPECT_NE(AnswerTo(document), "unsound") << document;
  }
  EXPECT_EQ(loadedEntities, 0);
  const std::string control = "<!DOCTYPE r [<!ENTITY e SYSTEM 'other.xml'>]><r>&e;</r>";
  constexpr int options = XML_PARSE_NOENT | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;
  xmlFreeDoc(
      xmlReadMemory(control.data(), static_cast<int>(control.size()), nullptr, nullptr, options));
  EXPECT_EQ(loadedEntities, 1) << "the loader does not count";
  xmlSetExternalEntityLoader(loader);
}

TEST(HostileXMLFile, NoFileIsEverOpened) {
  const TemporaryFolder folder;
  const std::string secret = folder.Write("secret", "<!ENTITY e 'x'>");
  const int watch = ::inotify_init1(IN_NONBLOCK);
  ASSERT_GE(::inotify_add_watch(watch, secret.c_str(), IN_OPEN | IN_ACCESS), 0);
  std::array<char, 4096> events;
  for (const std::string& address : {secret, "file://" + secret}) {
    for (const std::string& document : DocumentsThatReferTo(address)) AnswerTo(document);
  }
  EXPECT_EQ(::read(watch, events.data(), events.size()), -1) << "the file was opened";
  EXPECT_EQ(ReadWholeFile(secret), "<!ENTITY e 'x'>");
  EXPECT_GT(::read(watch, events.data(), events.size()), 0) << "the watch does not see";
  ::close(watch);
}

TEST(HostileXMLFile, NoFileIsWaitedFor) {
  const TemporaryFolder folder;
  const std::string pipe = folder / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  const ApartRun run = RunApart([&] {
    ::alarm(600);
    for (const std::string& document : DocumentsThatReferTo(pipe)) AnswerTo(document);
    return std::string("done");
  });
  EXPECT_EQ(run.answer, "done") << run.end;
  const ApartRun control = RunApart([&] {
    ::alarm(1);
    ReadWholeFile(pipe);
    return std::string("done");
  });
  EXPECT_FALSE(control.hasEnded) << "the pipe keeps nobody waiting";
  EXPECT_EQ(control.end, ::strsignal(SIGALRM));
}

TEST(HostileXMLFile, NoConnectionIsEverMade) {
  const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* const any = reinterpret_cast<sockaddr*>(&address);
  ASSERT_EQ(::bind(listener, any, size), 0);
  ASSERT_EQ(::listen(listener, 8), 0);
  ASSERT_EQ(::getsockname(listener, any, &size), 0);
  const std::string host = "127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + "/x";
  for (const char* scheme : {"http://", "ftp://", "https://"}) {
    for (const std::string& document : DocumentsThatReferTo(scheme + host)) AnswerTo(document);
  }
  EXPECT_EQ(::accept(listener, nullptr, nullptr), -1) << "a connection was made";
  const int caller = ::socket(AF_INET, SOCK_STREAM, 0);
  EXPECT_EQ(::connect(caller, any, size), 0);
  const int accepted = ::accept(listener, nullptr, nullptr);
  EXPECT_GE(accepted, 0) << "the listener does not hear";
  ::close(accepted);
  ::close(caller);
  ::close(listener);
}

// --- Truncation ----------------------------------------------------------------------------------

/// Sizes to cut a file to: all of them, or those near its ends and some between.
std::vector<std::size_t> Cuts(std::size_t whole) {
  const bool atEveryByte = std::getenv("HOL_TRUNCATE_AT_EVERY_BYTE") != nullptr;
  const std::size_t dense = kIsSanitized ? 256 : 4096;
  const std::size_t step = kIsSanitized ? 1999 : 97;
  std::vector<std::size_t> cuts;
  for (std::size_t size = 0; size < whole; ++size) {
    const bool isDense = size < dense || size + dense >= whole;
    if (atEveryByte || isDense || size % step == 0) cuts.push_back(size);
  }
  return cuts;
}

std::string FaultOfCut(std::string_view cut, std::size_t size) {
  const std::string answer = AnswerTo(cut);
  const bool isRefused = answer != "accepted" && answer != "unsound";
  return isRefused ? "" : "cut to " + std::to_string(size) + " bytes: " + answer;
}

/// The first cut that is not refused as it should be, of every `stride`th one.
std::string FaultsOf(const std::string& whole, const std::vector<std::size_t>& cuts,
                     std::size_t first, std::size_t stride) {
  for (std::size_t i = first; i < cuts.size(); i += stride) {
    const std::string fault = FaultOfCut(std::string_view(whole).substr(0, cuts[i]), cuts[i]);
    if (!fault.empty()) return fault;
  }
  return "none";
}

/// The start tags of the elements that are open behind the first `size` bytes of a shipped
/// standard, in which nothing but tags holds "<" and ">".
std::vector<std::string_view> OpenTags(std::string_view file, std::size_t size) {
  std::vector<std::string_view> open;
  for (std::size_t end = 0;;) {
    const std::size_t begin = file.find('<', end);
    if (begin >= size) return open;
    end = file.find('>', begin) + 1;
    const std::string_view tag = file.substr(begin, end - begin);
    if (tag.starts_with("</")) {
      open.pop_back();
    } else if (!tag.ends_with("/>") && !tag.starts_with("<?")) {
      open.push_back(tag);
    }
  }
}

/// The first cut between two bytes of a standard that is not refused as it should be. What is
/// complete before is left out, all but the start tags of open elements: it takes nearly all the
/// time and says nothing about the cut.
std::string FaultsOfCutsWithin(std::string_view whole, std::size_t begin, std::size_t end) {
  std::string document;
  for (const std::string_view tag : OpenTags(whole, begin)) document += tag;
  if (AnswerTo(document + std::string(whole.substr(begin))) != kAccepted) return "not abridged";
  const std::size_t step = kIsSanitized ? 29 : 1;
  for (std::size_t size = begin; size < end; size += step) {
    const std::string rest(whole.substr(begin, size - begin));
    const std::string fault = FaultOfCut(document + rest, size);
    if (!fault.empty()) return fault;
  }
  return "none";
}

TEST(HostileXMLFile, ShippedStandardCutAtEveryByteIsRefused) {
  const std::string file = ReadWholeFile(HOL_STANDARDS "/ISO.xml");
  // Only the line end after the last element is not missed.
  const std::string whole = file.substr(0, file.size() - 1);
  constexpr std::size_t window = 2048;
  std::size_t begin = 0;
  while (begin < whole.size()) {
    // A piece begins behind a tag.
    const std::size_t end = std::min(whole.find('>', begin + window), whole.size() - 1) + 1;
    ASSERT_EQ(FaultsOfCutsWithin(whole, begin, end), "none");
    begin = end;
  }
}

TEST(HostileXMLFile, ShippedStandardCutAtAnyByteIsRefusedAsAWhole) {
  const std::string file = ReadWholeFile(HOL_STANDARDS "/ISO.xml");
  ASSERT_TRUE(file.ends_with(">\n"));
  // Only the line end after the last element is not missed.
  const std::string whole = file.substr(0, file.size() - 1);
  ASSERT_EQ(AnswerTo(whole), kAccepted);
  const std::vector<std::size_t> cuts = Cuts(whole.size());
  ASSERT_GT(cuts.size(), 500u);
  constexpr unsigned enoughSeconds = 7200;
  ProcessApart even([&] { return FaultsOf(whole, cuts, 0, 2); }, enoughSeconds);
  ProcessApart odd([&] { return FaultsOf(whole, cuts, 1, 2); }, enoughSeconds);
  for (ProcessApart* half : {&even, &odd}) {
    const ApartRun run = half->Wait();
    EXPECT_EQ(run.hasEnded ? run.answer : run.end, "none");
  }
}

}  // namespace
