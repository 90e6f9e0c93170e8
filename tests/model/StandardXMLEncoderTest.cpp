#include <sys/stat.h>

#include <functional>

#include "CodecTest.h"
#include "TemporaryFolder.h"

namespace modeltest {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

class Encoder : public CodecTest {
 protected:
  std::string Save() {
    VyrUnicodeString out;
    EXPECT_EQ(codec.SaveInString(out), S_OK);
    return out.CString();
  }
};

TEST_F(Encoder, EnumerationsComeBeforeTypesBeforeParametersAndValuesBeforeChildren) {
  EXPECT_EQ(Decode("<std:node name='D'><std:node name='a'/><std:intval>1</std:intval>"
                   "<std:typeval name='b'><std:typedef name='u'><std:strval/></std:typedef>"
                   "<std:floatval minval='0.5'>2.0</std:floatval></std:typeval>"
                   "<std:colorval name='c'>0 0 0</std:colorval></std:node>"
                   "<std:typedef name='T'><std:enumval name='YesNo'>Yes</std:enumval></std:typedef>"
                   "<std:enumdef name='YesNo'><std:strval>Yes</std:strval></std:enumdef>"
                   "<std:node name='E'/>"),
            S_OK);
  EXPECT_EQ(Save(), kDeclaration + "<std:node xmlns:std=\"" + kStandardNamespace +
                        "\" name=\"drafting\">\n"
                        "  <std:enumdef name=\"YesNo\">\n"
                        "    <std:strval>Yes</std:strval>\n"
                        "  </std:enumdef>\n"
                        "  <std:typedef name=\"T\">\n"
                        "    <std:enumval name=\"YesNo\">Yes</std:enumval>\n"
                        "  </std:typedef>\n"
                        "  <std:node name=\"D\">\n"
                        "    <std:intval>1</std:intval>\n"
                        "    <std:colorval name=\"c\">0 0 0</std:colorval>\n"
                        "    <std:node name=\"a\"/>\n"
                        "    <std:typeval name=\"b\">\n"
                        "      <std:floatval minval=\"0.5\">2.0</std:floatval>\n"
                        "      <std:typedef name=\"u\">\n"
                        "        <std:strval/>\n"
                        "      </std:typedef>\n"
                        "    </std:typeval>\n"
                        "  </std:node>\n"
                        "  <std:node name=\"E\"/>\n"
                        "</std:node>\n");
}

TEST_F(Encoder, TheDocumentElementHasItsAttributesOnlyAfterADecodeThatHadThem) {
  const auto firstTag = [&] {
    const std::string text = Save();
    return text.substr(kDeclaration.size(),
                       text.find('\n', kDeclaration.size()) - kDeclaration.size());
  };
  const std::string begin = std::string("<std:node xmlns:std=\"") + kStandardNamespace + "\"";
  EXPECT_EQ(firstTag(), begin + "/>");
  struct Row {
    const char* read;
    const char* written;
  };
  constexpr Row rows[] = {
      {" name='drafting'", " name=\"drafting\""},
      {" type='any &quot;text&quot;' name='other'",
       " name=\"other\" type=\"any &quot;text&quot;\""},
      {" type='寸法'", " type=\"寸法\""},
      {"", ""},
      {" name='' type=''", ""},
      {" std:name='x' std:type='y' else='z'", ""},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(codec.DecodeXMLString(Standard("", row.read)), S_OK);
    EXPECT_EQ(firstTag(), begin + row.written + "/>") << row.read;
  }
}

TEST_F(Encoder, AttributesOfARefusedDocumentElementAreNotKept) {
  EXPECT_EQ(codec.DecodeXMLString(Standard("", " name='kept'")), S_OK);
  EXPECT_EQ(codec.DecodeXMLString("<other name='lost'/>"), E_FAIL);
  EXPECT_EQ(TakeReports().size(), 1u);
  EXPECT_THAT(Save(), HasSubstr(" name=\"kept\""));
}

struct ValueRow {
  Value::Type type;
  const char* text;
  const char* name;
  int rangeVal;
  const char* line;
};
constexpr ValueRow kValueRows[] = {
    {Value::ValueInt, "1", "", 0, "<std:intval>1</std:intval>"},
    {Value::ValueFloat, "1.0", "N", 0, "<std:floatval name=\"N\">1.0</std:floatval>"},
    {Value::ValueFloat, "1.0", "0.5", 1, "<std:floatval minval=\"0.5\">1.0</std:floatval>"},
    {Value::ValueFloat, "1.0", "", 1, "<std:floatval>1.0</std:floatval>"},
    {Value::ValueFloat, "1.0", "0.5", 2, "<std:floatval name=\"0.5\">1.0</std:floatval>"},
    {Value::ValueString, "", "", 0, "<std:strval/>"},
    {Value::ValueString, " a ", "b c", 0, "<std:strval name=\"b c\"> a </std:strval>"},
    {Value::ValueString, "<a> & \"b\"", "\"<&>'", 0,
     "<std:strval name=\"&quot;&lt;&amp;&gt;'\">&lt;a&gt; &amp; \"b\"</std:strval>"},
    {Value::ValueEnum, "First angle", "Angle", 0,
     "<std:enumval name=\"Angle\">First angle</std:enumval>"},
    {Value::ValueColor, "255 255 255", "", 0, "<std:colorval>255 255 255</std:colorval>"},
};

TEST_F(Encoder, EachTypeOfValueHasItsElementAndItsNameOrBound) {
  for (const ValueRow& row : kValueRows) {
    const Node_var node = NewNode("D");
    node->AddValue(NewValue(row.type, row.text, row.name, row.rangeVal).Get(), -1);
    root->DeleteNodeWithPath("D");
    root->AddNode(node.Get(), -1);
    EXPECT_THAT(Save(), HasSubstr(std::string("\n    ") + row.line + "\n"));
  }
}

// Trees that cannot be written

struct Refusal {
  const char* what;
  std::string report;
  std::function<void(Node& typeDefs, Node& enums, Node& root)> build;
};

Node_var WithString(Node_var node, const char* name = "", const char* text = "x") {
  AddString(*node, name, text);
  return node;
}

std::vector<Refusal> Refusals() {
  const std::string invalid = Raised("Invalid node", kCodecUnitName);
  const std::string invalidType = Raised("Invalid type of node!", kCodecUnitName);
  const auto in = [](Node& top, const char* path, const Node_var& node) {
    AddChild(top, path)->AddNode(node.Get(), -1);
  };
  return {
      {"a top among the parameters", invalidType,
       [](Node&, Node&, Node& root) { AddChild(root, "T", Node::NodeTop); }},
      {"a top below them", invalidType,
       [=](Node&, Node&, Node& root) { in(root, "D", NewNode("T", Node::NodeTop)); }},
      {"a node of no type", invalidType,
       [=](Node&, Node&, Node& root) { in(root, "D", NewNode("T", static_cast<Node::Type>(9))); }},
      {"a value of no type", Raised("unknown type of value!", kCodecUnitName),
       [](Node&, Node&, Node& root) {
         AddChild(root, "D")->AddValue(NewValue(static_cast<Value::Type>(0), "x").Get(), -1);
       }},
      {"a control character in a node's name", Raised("Failed to create node!", kCodecUnitName),
       [](Node&, Node&, Node& root) { AddChild(root, "a\x01"); }},
      {"a name that is not UTF-8", Raised("Failed to create node!", kCodecUnitName),
       [](Node&, Node& enums, Node&) {
         enums.AddNode(WithString(NewNode("\xff", Node::NodeEnum)).Get(), -1);
       }},
      {"a control character in a value's name", Raised("Failed to create element", kCodecUnitName),
       [](Node&, Node&, Node& root) { AddString(*AddChild(root, "D"), "a\x1f", "x"); }},
      {"a control character in a text", Raised("Failed to create text", kCodecUnitName),
       [](Node&, Node&, Node& root) { AddString(*AddChild(root, "D"), "a", "x\x02"); }},
      {"a text that is not UTF-8", Raised("Failed to create text", kCodecUnitName),
       [](Node&, Node&, Node& root) { AddString(*AddChild(root, "D"), "a", "\xe5\xaf"); }},
      {"U+FFFF in a text", Raised("Failed to create text", kCodecUnitName),
       [](Node&, Node&, Node& root) { AddString(*AddChild(root, "D"), "a", "\xef\xbf\xbf"); }},
      {"a surrogate in a text", Raised("Failed to create text", kCodecUnitName),
       [](Node&, Node&, Node& root) { AddString(*AddChild(root, "D"), "a", "\xed\xa0\x80"); }},
      {"a zero in a text", Raised("Failed to create text", kCodecUnitName),
       [](Node&, Node&, Node& root) {
         AddChild(root, "D")->AddValue(
             NewValue(Value::ValueString, std::string_view("a\0b", 3)).Get(), -1);
       }},
      {"an instance directly below Root", invalid,
       [](Node&, Node&, Node& root) { AddChild(root, "I", Node::NodeInstance); }},
      {"an enumeration in Root", invalid,
       [](Node&, Node&, Node& root) {
         root.AddNode(WithString(NewNode("E", Node::NodeEnum)).Get(), -1);
       }},
      {"a type in Root", invalid,
       [](Node&, Node&, Node& root) {
         root.AddNode(WithString(NewNode("T", Node::NodeTypeDef)).Get(), -1);
       }},
      {"a parameter in Enum", invalid, [](Node&, Node& enums, Node&) { AddChild(enums, "D"); }},
      {"a parameter in TypeDef", invalid,
       [](Node& typeDefs, Node&, Node&) { AddChild(typeDefs, "D"); }},
      {"a type in Enum", invalid,
       [](Node&, Node& enums, Node&) {
         enums.AddNode(WithString(NewNode("T", Node::NodeTypeDef)).Get(), -1);
       }},
      {"an enumeration below a node", invalid,
       [=](Node&, Node&, Node& root) { in(root, "D", WithString(NewNode("E", Node::NodeEnum))); }},
      {"an empty enumeration", invalid,
       [](Node&, Node& enums, Node&) { AddChild(enums, "E", Node::NodeEnum); }},
      {"an empty type", invalid,
       [](Node& typeDefs, Node&, Node&) { AddChild(typeDefs, "T", Node::NodeTypeDef); }},
      {"an empty type below a node", invalid,
       [=](Node&, Node&, Node& root) { in(root, "D", NewNode("T", Node::NodeTypeDef)); }},
      {"a colour in a type", invalid,
       [](Node& typeDefs, Node&, Node&) {
         const Node_var type = WithString(AddChild(typeDefs, "T", Node::NodeTypeDef));
         type->AddValue(NewValue(Value::ValueColor, "0 0 0").Get(), -1);
       }},
      {"an int in an enumeration", invalid,
       [](Node&, Node& enums, Node&) {
         AddChild(enums, "E", Node::NodeEnum)->AddValue(NewValue(Value::ValueInt, "1").Get(), -1);
       }},
      {"a node in an enumeration", invalid,
       [](Node&, Node& enums, Node&) {
         AddChild(*WithString(AddChild(enums, "E", Node::NodeEnum)), "D");
       }},
      {"a node in a type", invalid,
       [](Node& typeDefs, Node&, Node&) {
         AddChild(*WithString(AddChild(typeDefs, "T", Node::NodeTypeDef)), "D");
       }},
  };
}

TEST_F(Encoder, WhatCouldNotBeReadBackIsRefusedAndTheOldFileStays) {
  for (const Refusal& row : Refusals()) {
    SCOPED_TRACE(row.what);
    const TemporaryFolder folder;
    const std::string path = folder.Write("standard.xml", "old");
    const Document document;
    Document copy(document);
    const Node_var top[3] = {copy.GetNodeWithPath("TypeDef"), copy.GetNodeWithPath("Enum"),
                             copy.GetNodeWithPath("Root")};
    row.build(*top[0], *top[1], *top[2]);
    EXPECT_EQ(copy.SaveInFile(path), E_UNEXPECTED);
    EXPECT_THAT(TakeReports(), ElementsAre(row.report));
    EXPECT_FALSE(copy.GetProblem().IsEmpty());
    EXPECT_EQ(ReadWholeFile(path), "old");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 1);
    VyrUnicodeString out("old");
    copy.SaveInString(out);
    EXPECT_EQ(out, "old");
    EXPECT_THAT(TakeReports(), ElementsAre(row.report, Raised("Failed to save", kParserUnitName)));
  }
}

TEST_F(Encoder, RefusalsOfADevelopmentStageRunGoToTheAbendLog) {
  for (const Refusal& row : Refusals()) {
    const Document document;
    Document copy(document);
    row.build(*Node_var(copy.GetNodeWithPath("TypeDef")), *Node_var(copy.GetNodeWithPath("Enum")),
              *Node_var(copy.GetNodeWithPath("Root")));
    VyrSetDevelopmentStage(true);
    VyrUnicodeString out;
    copy.SaveInString(out);
    VyrSetDevelopmentStage(false);
    EXPECT_THAT(CheckTexts(log.abends),
                ElementsAre(row.report, Raised("Failed to save", kParserUnitName)))
        << row.what;
    EXPECT_EQ(log.printed, log.abends);
    log.Clear();
  }
}

TEST_F(Encoder, ATopThatHoldsAValueIsRefused) {
  for (const Node_var& top : {root, enums, typeDefs}) {
    AddString(*top, "", "x");
    VyrUnicodeString out("old");
    EXPECT_EQ(codec.SaveInString(out), E_UNEXPECTED);
    EXPECT_EQ(out, "old");
    EXPECT_THAT(TakeReports(), ElementsAre(RefusedBy(kCodecUnitName)));
    EXPECT_THAT(codec.GetProblem().text.CString(), HasSubstr(top->GetNodeName().CString()));
    top->DeleteValue(0);
    EXPECT_EQ(codec.SaveInString(out), S_OK);
    EXPECT_TRUE(codec.GetProblem().IsEmpty());
  }
}

TEST_F(Encoder, ACodecWithoutTopsFailsAsUnexpected) {
  VyrAnnStandardXMLParserDOMCodec unbound;
  VyrUnicodeString out("old");
  const TemporaryFolder folder;
  EXPECT_EQ(unbound.SaveInString(out), E_UNEXPECTED);
  EXPECT_EQ(unbound.SaveInFile(folder / "new.xml"), E_UNEXPECTED);
  EXPECT_EQ(out, "old");
  EXPECT_FALSE(std::filesystem::exists(folder / "new.xml"));
  EXPECT_THAT(TakeReports(), ElementsAre(NullPointer(kCodecUnitName), NullPointer(kCodecUnitName)));
}

TEST_F(Encoder, AProblemNamesTheNodeToMend) {
  AddString(*AddChild(*AddChild(*root, "Dimension"), "Blanking"), "", "\x01");
  VyrUnicodeString out;
  EXPECT_EQ(codec.SaveInString(out), E_UNEXPECTED);
  EXPECT_THAT(codec.GetProblem().text.CString(), HasSubstr("Root.Dimension.Blanking"));
  EXPECT_EQ(TakeReports().size(), 1u);
}

// Files

TEST_F(Encoder, AFileHoldsTheSameBytesAsAString) {
  EXPECT_EQ(Decode("<std:node name='寸法'><std:intval>1</std:intval></std:node>"), S_OK);
  const TemporaryFolder folder;
  EXPECT_EQ(codec.SaveInFile(folder / "new.xml"), S_OK);
  EXPECT_EQ(ReadWholeFile(folder / "new.xml"), Save());
  AddChild(*root, "more");
  EXPECT_EQ(codec.SaveInFile(folder / "new.xml"), S_OK);
  EXPECT_EQ(ReadWholeFile(folder / "new.xml"), Save());
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 1);
}

TEST_F(Encoder, AFileThatCannotBeWrittenGivesANegativeResultAndAProblem) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder / "sub");
  for (const std::string& path :
       {std::string(), folder / "missing/new.xml", folder / "sub", folder / "sub" + "/"}) {
    EXPECT_LT(codec.SaveInFile(path), 0) << path;
    EXPECT_FALSE(codec.GetProblem().IsEmpty()) << path;
    EXPECT_THAT(TakeReports(), ElementsAre(RefusedBy(kCodecUnitName))) << path;
  }
  Document document;
  EXPECT_LT(document.SaveInFile(folder / "missing/new.xml"), 0);
  EXPECT_EQ(TakeReports().size(), 1u);
}

TEST_F(Encoder, SavesOpenAndCloseTheirTrace) {
  const TemporaryFolder folder;
  const TraceOn trace("DftStdDOMCodec");
  EXPECT_EQ(codec.SaveInFile(folder / "new.xml"), S_OK);
  EXPECT_THAT(TakeTraces(), ElementsAre("{ VyrAnnStandardXMLParserDOMCodec::SaveInFile\n",
                                        "} VyrAnnStandardXMLParserDOMCodec::SaveInFile\n"));
  Save();
  EXPECT_THAT(TakeTraces(), ElementsAre("{ VyrAnnStandardXMLParserDOMCodec::SaveInString\n",
                                        "} VyrAnnStandardXMLParserDOMCodec::SaveInString\n"));
  AddString(*root, "", "x");
  EXPECT_EQ(codec.SaveInFile(folder / "new.xml"), E_UNEXPECTED);
  EXPECT_EQ(TakeTraces().size(), 2u) << "a failing call closes its trace as well";
  EXPECT_EQ(TakeReports().size(), 1u);
}

}  // namespace
}  // namespace modeltest
