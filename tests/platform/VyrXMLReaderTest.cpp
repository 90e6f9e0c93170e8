#include "HostileText.h"
#include "TemporaryFolder.h"
#include "VyrUtf8.h"
#include "VyrXMLReader.h"
#include "XMLTest.h"

namespace {

using testing::HasSubstr;

// --- Encodings -----------------------------------------------------------------------------------

std::string Utf16(std::u16string_view text, bool bigEndian) {
  std::string bytes;
  for (const char16_t unit : text) {
    const char high = static_cast<char>(unit >> 8);
    const char low = static_cast<char>(unit & 0xFF);
    bytes += bigEndian ? high : low;
    bytes += bigEndian ? low : high;
  }
  return bytes;
}

TEST(XMLReader, FileIsReadInTheEncodingThatItDeclares) {
  const std::u16string_view wide =
      u"\uFEFF<?xml version='1.0' encoding='UTF-16'?><r>\u5BF8\U0001F600</r>";
  struct {
    const char* name;
    std::string bytes;
    const char* text;
  } const cases[] = {
      {"none", "<r>\u5BF8</r>", "\u5BF8"},
      {"utf-8 with mark", "\xEF\xBB\xBF<r>\u5BF8</r>", "\u5BF8"},
      {"utf-8", "<?xml version='1.0' encoding='utf-8'?><r>\u5BF8</r>", "\u5BF8"},
      {"utf-16 little end first", Utf16(wide, false), "\u5BF8\U0001F600"},
      {"utf-16 big end first", Utf16(wide, true), "\u5BF8\U0001F600"},
      {"utf-16 without declaration", Utf16(u"\uFEFF<r>\u5BF8</r>", true), "\u5BF8"},
      {"latin", "<?xml version='1.0' encoding='ISO-8859-1'?><r>\xE9\xB1</r>", "\u00E9\u00B1"},
      {"japanese", "<?xml version='1.0' encoding='Shift_JIS'?><r>\x90\xA1\x96\x40</r>",
       "\u5BF8\u6CD5"},
      {"instruction of like name", "<?xml-stylesheet encoding='ISO-8859-1'?><r>\u5BF8</r>",
       "\u5BF8"},
      {"declaration over several lines", "<?xml\nversion='1.0'\tencoding='ISO-8859-1'?><r>\xE9</r>",
       "\u00E9"},
  };
  const TemporaryFolder folder;
  for (const auto& test : cases) {
    EXPECT_EQ(TextOf(ParseFile(folder.Write(test.name, test.bytes))), test.text) << test.name;
  }
}

TEST(XMLReader, DocumentMayEndAtAnyPlaceOfTheReadersBlocks) {
  for (std::size_t size = 1; size < 10000; size += size < 300 || size % 4000 > 3900 ? 1 : 97) {
    std::u16string wide = u"\uFEFF<r>\u5BF8</r>";
    wide.append(size, u'\n');
    VyrXMLTree tree;
    VyrProblem problem;
    EXPECT_TRUE(VyrReadXML(Utf16(wide, false), nullptr, tree, problem)) << size;
    EXPECT_TRUE(IsAccepted(ParseText("<r>\u5BF8</r>" + std::string(size, '\n')))) << size;
    EXPECT_TRUE(IsAccepted(ParseText("<r>" + std::string(size, 'x') + "</r>"))) << size;
  }
}

TEST(XMLReader, TextIsUtf8WhateverItDeclares) {
  // Long enough for a reader that converts piece by piece to change its mind half way.
  const std::string text = Repeated("\u5BF8\u00E9 ", 20000);
  for (const std::string encoding : {"UTF-8", "ISO-8859-1", "Shift_JIS", "UTF-16", "US-ASCII",
                                     "windows-1252", "no-such-encoding"}) {
    const std::string xml = "<?xml version='1.0' encoding='" + encoding + "'?><r>" + text + "</r>";
    EXPECT_TRUE(TextOf(ParseText(xml)) == text) << encoding;
  }
}

TEST(XMLReader, BytesThatAreNotOfTheEncodingAreRefused) {
  const TemporaryFolder folder;
  struct {
    const char* name;
    std::string bytes;
  } const cases[] = {
      {"not utf-8", "<r>\xE9</r>"},
      {"not ascii", "<?xml version='1.0' encoding='US-ASCII'?><r>\xE9</r>"},
      {"no shift-jis", "<?xml version='1.0' encoding='Shift_JIS'?><r>\x85\x85\x20</r>"},
      {"no such encoding", "<?xml version='1.0' encoding='x-no-such'?><r>\xE9</r>"},
      {"unpaired surrogate", Utf16(u"\uFEFF<r>", false) + "\x3D\xD8" + Utf16(u"x</r>", false)},
      {"half a unit", Utf16(u"\uFEFF<r/>", false) + "x"},
  };
  for (const auto& test : cases) {
    EXPECT_TRUE(IsRefused(ParseFile(folder.Write(test.name, test.bytes)))) << test.name;
  }
}

TEST(XMLReader, IllFormedUtf8IsRefusedWhereverItStands) {
  const char* const sequences[] = {"\x80",         "\xC0\x80",         "\xC1\x81",
                                   "\xC3",         "\xE0\x80\xAF",     "\xE0\x81\x81",
                                   "\xED\xA0\x80", "\xF0\x80\x81\x81", "\xF4\x90\x80\x80",
                                   "\xFF",         "\xEF\xBF\xBE",     "\xF8\x88\x80\x80\x80"};
  const char* const places[][2] = {{"<r>", "</r>"},
                                   {"<r>\u5BF8", "\u5BF8</r>"},
                                   {"<r a='", "'/>"},
                                   {"<r><!--", "--></r>"},
                                   {"<r><![CDATA[", "]]></r>"},
                                   {"<r><?p ", "?></r>"},
                                   {"<r", "/>"},
                                   {"<!DOCTYPE r [<!ENTITY e '", "'>]><r>&e;</r>"},
                                   {"<r/><!--", "-->"}};
  const TemporaryFolder folder;
  for (const std::string sequence : sequences) {
    for (const auto& [before, after] : places) {
      const std::string xml = before + sequence + after;
      EXPECT_TRUE(IsRefused(ParseText(xml))) << before << testing::PrintToString(sequence);
      EXPECT_TRUE(IsRefused(ParseFile(folder.Write("f", xml)))) << before;
    }
  }
}

// --- Problems ------------------------------------------------------------------------------------

TEST(XMLReader, ProblemNamesTheLineOfTheFault) {
  struct {
    const char* xml;
    int line;
  } const cases[] = {
      {"", 1},
      {" ", 1},
      {"text", 1},
      {"\n\n<a>\n<b>\n</a>", 5},
      {"<a>\n<b x='1' x='2'/></a>", 2},
      {"<a>\n\n&unknown;</a>", 3},
      {"<a>\n<p:b/></a>", 2},
      {"<a>\n<b p:x='1'/></a>", 2},
      {"<a/>\n<b/>", 2},
      {"<a/>\ntext", 2},
      {"<a>\n&#1;</a>", 2},
      {"<a>\n&#xD800;</a>", 2},
      {"<a>\n\x01</a>", 2},
      {"<a>\n<b <</a>", 2},
      {"<a b=1/>", 1},
      {"<a>]]></a>", 1},
      {"<!DOCTYPE a [<!ENTITY e '&e;'>]>\n<a>&e;</a>", 2},
      {"<!DOCTYPE a [<!ENTITY e '<b>'>]>\n<a>&e;</a>", 2},
      {"<?xml version='1.0'?>\n<?xml version='1.0'?><a/>", 2},
  };
  for (const auto& test : cases) {
    const Parsed parsed = ParseText(test.xml);
    EXPECT_TRUE(IsRefused(parsed)) << test.xml;
    EXPECT_EQ(parsed.problem.line, test.line) << test.xml;
    EXPECT_EQ(parsed.problem.text.Find("\n"), -1) << "one line, as messages are";
  }
}

TEST(XMLReader, ProblemOfTheLastParseOnlyIsKept) {
  const VyrIXMLDOMDocumentBuilder_var builder = NewBuilder();
  VyrIDOMDocument_var document;
  EXPECT_EQ(builder->BuildFromString("<a>", document), E_FAIL);
  EXPECT_FALSE(builder->GetProblem().IsEmpty());
  EXPECT_TRUE(builder->GetProblem().isLasting);
  EXPECT_EQ(builder->BuildFromString("<a/>", document), S_OK);
  EXPECT_TRUE(builder->GetProblem().IsEmpty());
  const VyrIDOMDocument_var first = document;
  EXPECT_EQ(builder->BuildFromFile("/nonexistent/file.xml", document), E_FAIL);
  EXPECT_THAT(builder->GetProblem().text.CString(), HasSubstr("cannot be opened"));
  EXPECT_FALSE(builder->GetProblem().isLasting) << "the file may be there the next time";
  EXPECT_EQ(document, first) << "a failure leaves the handle as it was";
}

TEST(XMLReader, DocumentCutAtAnyByteIsRefused) {
  const std::string whole =
      "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE r [<!ENTITY e 'x'>]>\n"
      "<!-- c --><?pi data?>\n<n:r xmlns:n='u' n:a=\"v&#65;&e;\">text &amp; \u5BF8\n"
      "<![CDATA[<raw>]]><e/>&e;</n:r>";
  const TemporaryFolder folder;
  ASSERT_TRUE(IsAccepted(ParseText(whole)));
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const std::string cut = whole.substr(0, size);
    EXPECT_TRUE(IsRefused(ParseText(cut))) << cut;
    EXPECT_TRUE(IsRefused(ParseFile(folder.Write("cut.xml", cut)))) << cut;
  }
}

TEST(XMLReader, ZeroByteIsRefusedAtAnyPlace) {
  const std::string whole = "<?xml version='1.0'?><r a='v'>t<!--c--><![CDATA[d]]><?p q?></r>\n";
  for (std::size_t place = 0; place <= whole.size(); ++place) {
    std::string xml = whole;
    xml.insert(place, 1, '\0');
    EXPECT_TRUE(IsRefused(ParseText(xml))) << place;
  }
  EXPECT_TRUE(IsRefused(ParseText(std::string_view("<a/>\0<b/>", 9))));
  const TemporaryFolder folder;
  EXPECT_TRUE(IsRefused(
      ParseFile(folder.Write("zero", Utf16(std::u16string_view(u"\uFEFF<a/>\0<b/>", 10), false)))));
}

TEST(XMLReader, NothingIsPrintedWhateverIsMet) {
  const TemporaryFolder folder;
  testing::internal::CaptureStderr();
  ParseFile(folder.Write("a", Utf16(u"\uFEFF<r>", false) + "\x3D\xD8" + Utf16(u"x</r>", false)));
  ParseFile(folder.Write("b", "<?xml version='1.0' encoding='Shift_JIS'?><r>\x85\x85\x20</r>"));
  ParseText("<a xmlns='relative'><b></a>");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(XMLReader, BinaryInputIsRefused) {
  std::string bytes;
  std::uint32_t state = 1;
  for (int i = 0; i < 4096; ++i) {
    state = state * 1664525u + 1013904223u;
    bytes += static_cast<char>(state >> 24);
  }
  const TemporaryFolder folder;
  for (const std::string start : {"",
                                  "\x7F"
                                  "ELF",
                                  "PK\x03\x04", "<", "<r>", "\xFF\xFE", "\xFE\xFF"}) {
    EXPECT_TRUE(IsRefused(ParseText(start + bytes)));
    EXPECT_TRUE(IsRefused(ParseFile(folder.Write("binary", start + bytes))));
  }
}

// --- Hostile input -------------------------------------------------------------------------------

TEST(XMLReader, DepthIsNotLimitedByAStack) {
  constexpr std::size_t depth = 200000;
  const std::string open = Repeated("<a>", depth);
  const Parsed parsed = ParseText(open + Repeated("</a>", depth));
  ASSERT_TRUE(IsAccepted(parsed));
  EXPECT_EQ(parsed.Tree().GetCount(), depth + 1);
  EXPECT_EQ(parsed.Tree().GetParent(depth), depth - 1);
  EXPECT_EQ(parsed.Tree().GetEnd(1), depth + 1);
  EXPECT_TRUE(IsRefused(ParseText(open)));
  EXPECT_TRUE(IsRefused(ParseText(open + "</b>")));
}

TEST(XMLReader, LongTextAndLongNamesAreRead) {
  const std::string text = Repeated("0123456789abcdef", 20 << 16);  // 20 MB
  EXPECT_TRUE(TextOf(ParseText("<r>" + text + "</r>")) == text);
  EXPECT_TRUE(TextOf(ParseText("<r><![CDATA[" + text + "]]></r>")) == text);
  const Parsed inAttribute = ParseText("<r a='" + text + "'/>");
  ASSERT_TRUE(IsAccepted(inAttribute));
  EXPECT_TRUE(inAttribute.Tree().GetValue(inAttribute.Tree().GetAttributes(1)[0]) == text);
  const std::string name = text.substr(10, 100 << 10);
  const Parsed named = ParseText("<" + name + " " + name + "=''/>");
  ASSERT_TRUE(IsAccepted(named));
  EXPECT_TRUE(named.Tree().GetName(named.Tree().GetNameId(1)).localName == name);
}

/// Declarations of entities e0 to e9, each ten times the one before, in the given reference form.
std::string NestedEntities(std::string_view innermost) {
  std::string declarations = "<!ENTITY e0 '" + std::string(innermost) + "'>";
  for (int level = 1; level < 10; ++level) {
    declarations += "<!ENTITY e" + std::to_string(level) + " '" +
                    Repeated("&e" + std::to_string(level - 1) + ";", 10) + "'>";
  }
  return "<!DOCTYPE r [" + declarations + "]>";
}

std::string EmptyDefaults(int count) {
  std::string defaults;
  for (int i = 0; i < count; ++i) defaults += "b" + std::to_string(i) + " CDATA '' ";
  return defaults;
}

std::string NestedParameterEntities() {
  std::string declarations = "<!ENTITY % e0 ' '>";
  for (int level = 1; level < 10; ++level) {
    declarations += "<!ENTITY % e" + std::to_string(level) + " '" +
                    Repeated("&#37;e" + std::to_string(level - 1) + ";", 10) + "'>";
  }
  return "<!DOCTYPE r [" + declarations + "%e9;]><r/>";
}

TEST(XMLReader, EntityBombsAreRefused) {
  const std::string large = "<!DOCTYPE r [<!ENTITY e '" + std::string(30000, 'x') + "'>]>";
  const std::string empty =
      "<!DOCTYPE r [<!ENTITY e ''><!ENTITY f '" + Repeated("&e;", 10000) + "'>]>";
  struct {
    const char* name;
    std::string xml;
  } const bombs[] = {
      {"nested, in content", NestedEntities("text") + "<r>&e9;</r>"},
      {"nested, in an attribute", NestedEntities("text") + "<r a='&e9;'/>"},
      {"nested, of elements", NestedEntities("<a/>") + "<r>&e9;</r>"},
      {"nested, of nothing", NestedEntities("") + "<r>&e9;</r>"},
      {"nested, in a default value",
       NestedEntities("text").erase(NestedEntities("text").size() - 2) +
           "<!ATTLIST r a CDATA '&e9;'>]><r/>"},
      {"quadratic, in content", large + "<r>" + Repeated("&e;", 100000) + "</r>"},
      {"quadratic, in an attribute", large + "<r a='" + Repeated("&e;", 100000) + "'/>"},
      {"quadratic, in many attributes", large + "<r>" + Repeated("<a b='&e;'/>", 50000) + "</r>"},
      {"quadratic, of nothing", empty + "<r>" + Repeated("&f;", 10000) + "</r>"},
      {"quadratic, by default values", "<!DOCTYPE r [<!ATTLIST a b CDATA '" +
                                           std::string(30000, 'x') + "'>]><r>" +
                                           Repeated("<a/>", 50000) + "</r>"},
      {"quadratic, by empty default values", "<!DOCTYPE r [<!ATTLIST a " + EmptyDefaults(250) +
                                                 ">]><r>" + Repeated("<a/>", 20000) + "</r>"},
      {"recursive", "<!DOCTYPE r [<!ENTITY a '&b;'><!ENTITY b '&a;'>]><r>&a;</r>"},
      {"recursive, in an attribute",
       "<!DOCTYPE r [<!ENTITY a '&b;'><!ENTITY b '&a;'>]><r a='&a;'/>"},
      {"of parameters", "<!DOCTYPE r [<!ENTITY % a '" + std::string(10000, ' ') + "'>" +
                            Repeated("%a; ", 5000) + "]><r/>"},
      {"of parameters, nested", NestedParameterEntities()},
  };
  for (const auto& bomb : bombs) {
    const Parsed parsed = ParseText(bomb.xml);
    EXPECT_TRUE(IsRefused(parsed)) << bomb.name;
    EXPECT_THAT(parsed.problem.text.CString(),
                testing::AnyOf(HasSubstr("out of proportion"), HasSubstr("reference loop")))
        << bomb.name;
  }
}

TEST(XMLReader, EntitiesInProportionToTheFileAreNoBomb) {
  const std::string thousand(1000, 'x');
  const Parsed parsed =
      ParseText("<!DOCTYPE r [<!ENTITY e '" + thousand + "'>]><r>" + Repeated("&e;", 500) + "</r>");
  ASSERT_TRUE(IsAccepted(parsed));
  EXPECT_TRUE(TextOf(parsed) == Repeated(thousand, 500));
  EXPECT_TRUE(IsAccepted(ParseText("<!DOCTYPE r [<!ATTLIST a b CDATA 'default'>]><r>" +
                                   Repeated("<a/>", 50000) + "</r>")));
}

TEST(XMLReader, NoOtherFileIsEverRead) {
  const TemporaryFolder folder;
  const std::string secret = folder.Write("secret.txt", "SECRET");
  const std::string declarations = folder.Write("other.dtd", "<!ENTITY e 'SECRET'>");
  const std::string cases[] = {
      "<!DOCTYPE r [<!ENTITY e SYSTEM '" + secret + "'>]><r>&e;</r>",
      "<!DOCTYPE r [<!ENTITY e SYSTEM 'file://" + secret + "'>]><r>&e;</r>",
      "<!DOCTYPE r [<!ENTITY e PUBLIC 'x' '" + secret + "'>]><r>&e;</r>",
      "<!DOCTYPE r [<!ENTITY e SYSTEM '" + secret + "'>]><r a='&e;'/>",
      "<!DOCTYPE r [<!ENTITY e SYSTEM '" + secret + "'><!ENTITY f '&e;'>]><r>&f;</r>",
      "<!DOCTYPE r [<!ENTITY e SYSTEM 'secret.txt'>]><r>&e;</r>",
      "<!DOCTYPE r [<!ENTITY % p SYSTEM '" + declarations + "'> %p;]><r>&e;</r>",
      "<!DOCTYPE r SYSTEM '" + declarations + "'><r>&e;</r>",
      "<!DOCTYPE r PUBLIC 'x' '" + declarations + "' [<!ENTITY f '&e;'>]><r>&f;</r>",
      "<!DOCTYPE r [<!ENTITY e SYSTEM 'http://127.0.0.1:9/x'>]><r>&e;</r>",
  };
  for (const std::string& xml : cases) {
    EXPECT_TRUE(IsRefused(ParseText(xml))) << xml;
    EXPECT_TRUE(IsRefused(ParseFile(folder.Write("document.xml", xml)))) << xml;
  }
  // What is declared outside but never used is no harm, and is not looked at either.
  EXPECT_EQ(TextOf(ParseText("<!DOCTYPE r SYSTEM '" + declarations + "'><r>own</r>")), "own");
  EXPECT_EQ(TextOf(ParseText("<!DOCTYPE r SYSTEM '/nonexistent.dtd'><r>own</r>")), "own");
  EXPECT_EQ(TextOf(ParseText("<!DOCTYPE r [<!ENTITY e SYSTEM '" + secret + "'>]><r>own</r>")),
            "own");
}

TEST(XMLReader, ExternalEntityIsNamedInTheProblem) {
  const Parsed parsed =
      ParseText("<!DOCTYPE r [<!ENTITY logo SYSTEM 'logo.xml'>]>\n<r>\n&logo;</r>");
  EXPECT_EQ(parsed.problem.line, 3);
  EXPECT_THAT(parsed.problem.text.CString(), HasSubstr("'logo'"));
}

// --- Messages ------------------------------------------------------------------------------------

TEST(XMLReader, MessageOfALongNameIsNeverCutInsideACharacter) {
  const std::string name = "a" + Repeated("\u00E9", 40000);
  VyrXMLTree tree;
  VyrProblem problem;
  EXPECT_FALSE(VyrReadXML("<" + name + "></b>", nullptr, tree, problem));
  EXPECT_FALSE(problem.IsEmpty());
  EXPECT_EQ(VyrFindInvalidUtf8(problem.text.View()), std::string_view::npos);
}

TEST(XMLReader, NamespaceNeedsNoWellFormedAddress) {
  EXPECT_TRUE(IsAccepted(ParseText("<o:x xmlns:o='no address'><y xmlns='../relative'/></o:x>")));
}

}  // namespace
