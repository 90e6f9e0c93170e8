#include "CodecTest.h"
#include "RandomTree.h"

// Properties of encode and decode together.

namespace modeltest {
namespace {

class RoundTrip : public ModelTest {
 protected:
  static std::string Save(Document& document) {
    VyrUnicodeString out;
    document.SaveInString(out);
    return out.CString();
  }
  static void ExpectSameTrees(Document& a, Document& b) {
    for (const char* top : {"Enum", "TypeDef", "Root"}) {
      EXPECT_EQ(
          FindDifference(*Node_var(a.GetNodeWithPath(top)), *Node_var(b.GetNodeWithPath(top))), "");
    }
  }
};

TEST_F(RoundTrip, OfRandomTreesKeepsEveryFieldAndEveryByte) {
  std::size_t bytes = 0;
  for (std::uint32_t seed = 1; seed <= 300; ++seed) {
    SCOPED_TRACE(seed);
    Choices choices(seed);
    Document written;
    FillRandomly(choices, written);
    const std::string first = Save(written);
    Document read;
    ASSERT_EQ(read.DecodeXML(first, 0), 0) << read.GetProblem().text.CString();
    ExpectSameTrees(written, read);
    EXPECT_EQ(Save(read), first);
    bytes += first.size();
  }
  EXPECT_GT(bytes, 300u * 1000u) << "the trees are worth the test";
}

TEST_F(RoundTrip, OfAnyCharacterXmlCanHoldKeepsItInNamesAndTexts) {
  std::string all = "\t\n\r";
  for (char c = 0x20; c < 0x7f; ++c) all += c;
  all +=
      "\x7f\xc2\x80\xc2\x85\xe2\x80\xa8\xed\x9f\xbf\xee\x80\x80\xef\xbf\xbd\xf0\x90\x80\x80"
      "\xf4\x8f\xbf\xbf]]>\r\n\r";
  Document written;
  const Node_var node = AddChild(*Node_var(written.GetNodeWithPath("Root")), all);
  AddString(*node, all, all);
  node->AddValue(NewValue(Value::ValueFloat, all, all, 1).Get(), -1);
  Document read;
  ASSERT_EQ(read.DecodeXML(Save(written), 0), 0) << read.GetProblem().text.CString();
  ExpectSameTrees(written, read);
}

TEST_F(RoundTrip, OfADocumentKeepsOrderExceptThatValuesMoveBeforeChildren) {
  Document document;
  const std::string source = Standard(
      "<std:node name='D'><std:node name='b'/><std:intval name='2'/><std:node name='a'/>"
      "<std:intval name='1'/></std:node><std:node name='C'/>",
      " name='drafting' type='free text'");
  ASSERT_EQ(document.DecodeXML(source, 0), 0);
  const std::string saved = Save(document);
  std::size_t last = 0;
  for (const char* part : {"name=\"drafting\" type=\"free text\"", "name=\"D\"", "name=\"2\"",
                           "name=\"1\"", "name=\"b\"", "name=\"a\"", "name=\"C\""}) {
    const std::size_t place = saved.find(part);
    ASSERT_NE(place, std::string::npos) << part;
    EXPECT_GT(place, last) << part;
    last = place;
  }
}

TEST_F(RoundTrip, OfATreeDeeperThanTheStackWorks) {
  constexpr int depth = 200'000;
  Document written;
  Node_var node(written.GetNodeWithPath("Root"));
  for (int level = 0; level < depth; ++level) {
    node = AddChild(*node, level % 1000 == 0 ? "level " + std::to_string(level) : "d",
                    level % 2 == 0 ? Node::NodePlain : Node::NodeInstance);
    if (level % 1000 == 1) AddString(*node, "n", "text");
  }
  node->AddValue(NewValue(Value::ValueEnum, "No", "Missing").Get(), -1);
  const std::string text = Save(written);
  Document read;
  ASSERT_EQ(read.DecodeXML(text, 0), 0) << read.GetProblem().text.CString();
  ExpectSameTrees(written, read);
  EXPECT_EQ(Save(read), text);
  EXPECT_EQ(read.Check(), 0);
  EXPECT_EQ(TakeTraces().size(), 1u);
}

TEST_F(RoundTrip, OfAMillionChildrenWorks) {
  constexpr int width = 1'000'000;
  Document written;
  const Node_var root(written.GetNodeWithPath("Root"));
  for (int i = 0; i < width; ++i) AddChild(*root, "n" + std::to_string(i % 1000));
  const std::string text = Save(written);
  Document read;
  ASSERT_EQ(read.DecodeXML(text, 0), 0) << read.GetProblem().text.CString();
  ExpectSameTrees(written, read);
  EXPECT_EQ(read.Check(), 1);
}

}  // namespace
}  // namespace modeltest
