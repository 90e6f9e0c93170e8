#include <random>

#include "VyrXMLWriter.h"
#include "XMLTest.h"

namespace {

constexpr std::size_t kNone = std::string_view::npos;
const std::string kHead = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

TEST(XMLWriter, ElementsAreIndentedByTwoBlanksPerLevelAndTextStaysOnItsLine) {
  VyrXMLWriter writer;
  writer.StartElement("std:node");
  EXPECT_TRUE(writer.AddAttribute("xmlns:std", "uri"));
  EXPECT_TRUE(writer.AddAttribute("name", "Root"));
  writer.StartElement("std:node");
  writer.StartElement("std:float");
  EXPECT_TRUE(writer.AddText("2.0"));
  writer.EndElement();
  writer.StartElement("empty");
  writer.EndElement();
  writer.EndElement();
  writer.StartElement("empty");
  EXPECT_TRUE(writer.AddAttribute("a", ""));
  EXPECT_TRUE(writer.AddText(""));
  writer.EndElement();
  writer.EndElement();
  EXPECT_EQ(writer.TakeText(), kHead +
                                   "<std:node xmlns:std=\"uri\" name=\"Root\">\n"
                                   "  <std:node>\n"
                                   "    <std:float>2.0</std:float>\n"
                                   "    <empty/>\n"
                                   "  </std:node>\n"
                                   "  <empty a=\"\"/>\n"
                                   "</std:node>\n");
}

TEST(XMLWriter, TextMayComeInPieces) {
  VyrXMLWriter writer;
  writer.StartElement("a");
  for (const char* piece : {"1<", "", "&2", " "}) EXPECT_TRUE(writer.AddText(piece));
  writer.EndElement();
  EXPECT_EQ(writer.TakeText(), kHead + "<a>1&lt;&amp;2 </a>\n");
}

TEST(XMLWriter, CharactersWithAMeaningAreEscaped) {
  struct {
    const char* text;
    const char* inContent;
    const char* inAttribute;
  } const cases[] = {
      {"a<b>&c", "a&lt;b&gt;&amp;c", "a&lt;b&gt;&amp;c"},
      {"say \"it's\"", "say \"it's\"", "say &quot;it's&quot;"},
      {"]]>", "]]&gt;", "]]&gt;"},
      {"a\tb\nc\rd", "a\tb\nc&#13;d", "a&#9;b&#10;c&#13;d"},
      {"&amp;", "&amp;amp;", "&amp;amp;"},
      {"\u5BF8\U0001F600\x7F", "\u5BF8\U0001F600\x7F", "\u5BF8\U0001F600\x7F"},
      {"", "", ""},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(VyrXMLWriter::Escape(test.text), test.inContent);
    EXPECT_EQ(VyrXMLWriter::EscapeAttribute(test.text), test.inAttribute);
  }
}

TEST(XMLWriter, UnwritableCharacterIsFoundAndNothingIsWritten) {
  struct {
    std::string text;
    std::size_t place;
  } const cases[] = {
      {std::string("a\0", 2), 1},
      {"\x01", 0},
      {"ab\x1F", 2},
      {"a\x0B\x0C", 1},
      {"\u5BF8\x08", 3},
      {"\xFF", 0},
      {"a\xC3", 1},
      {"\xED\xA0\x80", 0},
      {"\uFFFE", 0},
      {"ok\uFFFF", 2},
      {"\xFF\x01", 0},
      {"\uFFFE\x01", 0},
      {"\x01\xFF", 0},
      {"x\uFFFF\uFFFE\xFF", 1},
      {"\xC0\x80", 0},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(VyrXMLWriter::FindUnwritable(test.text), test.place)
        << testing::PrintToString(test.text);
    VyrXMLWriter writer;
    writer.StartElement("a");
    EXPECT_FALSE(writer.AddAttribute("b", test.text));
    EXPECT_FALSE(writer.AddText(test.text));
    writer.EndElement();
    EXPECT_EQ(writer.TakeText(), kHead + "<a/>\n");
  }
  for (const char* text :
       {"", "plain", "\t\n\r", "\x7F", "\u0080", "\uFFFD", "\uE000", "\U0010FFFF"}) {
    EXPECT_EQ(VyrXMLWriter::FindUnwritable(text), kNone) << text;
  }
}

/// A text of characters that XML can hold, many of them awkward.
std::string RandomText(std::mt19937& random) {
  const char* const characters[] = {"<",      ">",      "&",      "\"",         "'",      "]]>",
                                    "\t",     "\n",     "\r",     "\r\n",       " ",      "  ",
                                    "a",      "&#13;",  "&lt;",   "\x7F",       "\u0085", "\u00E9",
                                    "\u2028", "\u5BF8", "\uFFFD", "\U0001F600", "<!--",   "%"};
  std::string text;
  for (std::size_t left = random() % 12; left > 0; --left) {
    text += characters[random() % std::size(characters)];
  }
  return text;
}

TEST(XMLWriter, WhatIsWrittenIsReadBackAsItWas) {
  std::mt19937 random(20);  // a fixed seed: a failure can be repeated
  for (int i = 0; i < 2000; ++i) {
    const std::string attribute = RandomText(random);
    const std::string text = RandomText(random);
    VyrXMLWriter writer;
    writer.StartElement("a");
    EXPECT_TRUE(writer.AddAttribute("b", attribute));
    EXPECT_TRUE(writer.AddText(text));
    writer.EndElement();
    const std::string xml = writer.TakeText();
    const Parsed parsed = ParseText(xml);
    ASSERT_TRUE(IsAccepted(parsed)) << xml;
    EXPECT_EQ(TextOf(parsed), text) << xml;
    ASSERT_EQ(parsed.Tree().GetAttributes(1).size(), 1u);
    EXPECT_EQ(parsed.Tree().GetValue(parsed.Tree().GetAttributes(1)[0]), attribute) << xml;
  }
}

/// A tree of random elements; the same seed gives the same tree.
std::string RandomDocument(unsigned seed) {
  std::mt19937 random(seed);
  VyrXMLWriter writer;
  int open = 0;
  for (int step = 0; step < 200; ++step) {
    if (open > 1 && random() % 3 == 0) {
      writer.EndElement();
      --open;
      continue;
    }
    writer.StartElement(random() % 2 == 0 ? "node" : "value");
    ++open;
    EXPECT_TRUE(writer.AddAttribute("name", RandomText(random)));
    if (open == 1 || random() % 2 == 0) continue;
    EXPECT_TRUE(writer.AddText(RandomText(random)));
    writer.EndElement();
    --open;
  }
  for (; open > 0; --open) writer.EndElement();
  return writer.TakeText();
}

TEST(XMLWriter, SameCallsGiveTheSameBytes) {
  for (unsigned seed = 0; seed < 20; ++seed) {
    const std::string xml = RandomDocument(seed);
    EXPECT_EQ(xml, RandomDocument(seed));
    EXPECT_TRUE(IsAccepted(ParseText(xml)));
    EXPECT_EQ(xml.back(), '\n');
  }
  EXPECT_NE(RandomDocument(1), RandomDocument(2));
}

TEST(XMLWriter, DeepElementsGetNoFurtherIndentation) {
  constexpr std::size_t depth = 100000;
  VyrXMLWriter writer;
  for (std::size_t i = 0; i < depth; ++i) writer.StartElement("a");
  for (std::size_t i = 0; i < depth; ++i) writer.EndElement();
  const std::string xml = writer.TakeText();
  ASSERT_TRUE(IsAccepted(ParseText(xml)));
  std::size_t level = 0;
  for (std::size_t line = kHead.size(); level < depth; ++level) {
    const std::size_t blanks = xml.find('<', line) - line;
    ASSERT_EQ(blanks, 2 * std::min(level, VyrXMLWriter::kIndentedLevels)) << level;
    line = xml.find('\n', line) + 1;
  }
}

TEST(XMLWriter, TextIsHandedOverOnce) {
  VyrXMLWriter writer;
  writer.StartElement("a");
  writer.EndElement();
  EXPECT_EQ(writer.TakeText(), kHead + "<a/>\n");
  EXPECT_EQ(writer.TakeText().find('<'), kNone);
}

}  // namespace
