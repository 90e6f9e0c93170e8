#include <memory>

#include "CodecTest.h"

namespace modeltest {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A codec that keeps what it was asked for and answers what the test wants.
class RecordingCodec final : public VyrAnnStandardXMLParserCodec {
 public:
  static inline int alive = 0;
  static inline std::vector<std::string> calls;
  static inline HRESULT result = S_OK;

  RecordingCodec() { ++alive; }
  ~RecordingCodec() override { --alive; }

  HRESULT Init(VyrAnnStandardXMLNode* typeDefTop, VyrAnnStandardXMLNode* enumTop,
               VyrAnnStandardXMLNode* rootTop) override {
    std::string call = "Init";
    for (const Node* top : {typeDefTop, enumTop, rootTop}) call += " " + Describe(*top);
    return Called(call);
  }
  HRESULT DecodeXMLString(VyrUnicodeView text) override {
    return Called("DecodeXMLString " + std::string(text));
  }
  HRESULT DecodeXMLFile(VyrUnicodeView path) override {
    return Called("DecodeXMLFile " + std::string(path));
  }
  HRESULT SaveInFile(VyrUnicodeView path) override {
    return Called("SaveInFile " + std::string(path));
  }
  HRESULT SaveInString(VyrUnicodeString& out) override {
    out = "saved";
    return Called("SaveInString");
  }

 private:
  static HRESULT Called(std::string call) {
    calls.push_back(std::move(call));
    return result;
  }
};

class RecordingFactory final : public VyrAnnStandardXMLParserCodecFactory {
 public:
  VyrAnnStandardXMLParserCodec* CreateCodec() override {
    ++asked;
    return makesCodecs ? new RecordingCodec() : nullptr;
  }
  int asked = 0;
  bool makesCodecs = true;
};

class CodecFactory : public ModelTest {
 protected:
  CodecFactory() {
    RecordingCodec::calls.clear();
    RecordingCodec::result = S_OK;
    Document::SetCodecFactory(&factory);
  }
  ~CodecFactory() override {
    Document::SetCodecFactory(nullptr);
    EXPECT_EQ(RecordingCodec::alive, 0);
  }
  static std::vector<std::string> TakeCalls() { return std::exchange(RecordingCodec::calls, {}); }

  RecordingFactory factory;
};

TEST_F(CodecFactory, CodecsAreBoundToTypeDefEnumAndRootInThisOrder) {
  const Document document;
  EXPECT_EQ(factory.asked, 1);
  EXPECT_THAT(TakeCalls(), ElementsAre("Init top TypeDef top Enum top Root"));
}

TEST_F(CodecFactory, LoadAndSaveGoToTheCodec) {
  Document document;
  TakeCalls();
  EXPECT_EQ(document.DecodeXML("path", 1), 0);
  EXPECT_EQ(document.DecodeXML("path", -2), 0);
  EXPECT_EQ(document.DecodeXML("text", 0), 0);
  EXPECT_EQ(document.SaveInFile("target"), S_OK);
  VyrUnicodeString out;
  document.SaveInString(out);
  EXPECT_EQ(out, "saved");
  EXPECT_THAT(TakeCalls(),
              ElementsAre("DecodeXMLFile path", "DecodeXMLFile path", "DecodeXMLString text",
                          "SaveInFile target", "SaveInString"));
  EXPECT_TRUE(document.GetProblem().IsEmpty()) << "this codec cannot say";
}

TEST_F(CodecFactory, AFailingCodecGivesOneFromDecodeAndItsResultFromSave) {
  Document document;
  for (const HRESULT result : {E_FAIL, E_UNEXPECTED, E_NOTIMPL}) {
    RecordingCodec::result = result;
    EXPECT_EQ(document.DecodeXML("text", 0), 1);
    EXPECT_EQ(document.DecodeXML("path", 1), 1);
    EXPECT_EQ(document.SaveInFile("target"), result);
    EXPECT_THAT(TakeReports(), IsEmpty());
    VyrUnicodeString out;
    document.SaveInString(out);
    EXPECT_THAT(TakeReports(), ElementsAre(Raised("Failed to save", kParserUnitName)));
  }
  RecordingCodec::result = S_FALSE;
  EXPECT_EQ(document.DecodeXML("text", 0), 0) << "no failure";
}

TEST_F(CodecFactory, ACodecThatCannotBeBoundIsReportedAndKept) {
  RecordingCodec::result = E_FAIL;
  Document document;
  EXPECT_THAT(TakeReports(), ElementsAre(Raised("Codec initialized failed!", kParserUnitName)));
  RecordingCodec::result = S_OK;
  TakeCalls();
  EXPECT_EQ(document.DecodeXML("text", 0), 0);
  EXPECT_THAT(TakeCalls(), ElementsAre("DecodeXMLString text"));
  EXPECT_EQ(document.AddNodeWithPath("Root:A", 0), 0);
}

TEST_F(CodecFactory, ADocumentWithoutACodecIsEditedButNotLoadedOrSaved) {
  factory.makesCodecs = false;
  Document document;
  EXPECT_THAT(TakeReports(), ElementsAre(NullPointer(kParserUnitName)));
  EXPECT_EQ(document.AddNodeWithPath("Root:A", 0), 0);
  EXPECT_EQ(document.DecodeXML("text", 0), 1);
  EXPECT_EQ(document.DecodeXML("path", 1), 1);
  EXPECT_EQ(document.SaveInFile("target"), E_UNEXPECTED);
  VyrUnicodeString out("old");
  document.SaveInString(out);
  EXPECT_EQ(out, "old");
  EXPECT_EQ(TakeReports(), std::vector<std::string>(4, NullPointer(kParserUnitName)));
  EXPECT_FALSE(document.GetProblem().IsEmpty());
  EXPECT_EQ(DescribeAt(document, "Root"), "top Root{plain A}");
}

TEST_F(CodecFactory, CodecTroubleOfADevelopmentStageRunGoesToTheAbendLog) {
  VyrSetDevelopmentStage(true);
  RecordingCodec::result = E_FAIL;
  Document document;
  VyrUnicodeString out;
  document.SaveInString(out);
  factory.makesCodecs = false;
  const Document without;
  EXPECT_THAT(CheckTexts(log.abends),
              ElementsAre(Raised("Codec initialized failed!", kParserUnitName),
                          Raised("Failed to save", kParserUnitName), NullPointer(kParserUnitName)));
  EXPECT_EQ(log.printed, log.abends);
  log.printed.clear();
  log.abends.clear();
}

TEST_F(CodecFactory, AReplacedFactoryServesLaterDocumentsOnly) {
  Document first;
  RecordingFactory other;
  Document::SetCodecFactory(&other);
  const Document second;
  EXPECT_EQ(factory.asked, 1);
  EXPECT_EQ(other.asked, 1);
  Document::SetCodecFactory(nullptr);
  Document third;
  TakeCalls();
  EXPECT_EQ(first.DecodeXML("text", 0), 0);
  EXPECT_THAT(TakeCalls(), ElementsAre("DecodeXMLString text"));
  EXPECT_EQ(third.DecodeXML(Standard("<std:node name='D'/>"), 0), 0);
  EXPECT_EQ(DescribeAt(third, "Root"), "top Root{plain D}");
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

TEST_F(CodecFactory, CopiesShareTheCodecWhichLivesAsLongAsAnyOfThem) {
  auto original = std::make_unique<Document>();
  auto copy = std::make_unique<Document>(*original);
  auto assigned = std::make_unique<Document>();
  EXPECT_EQ(RecordingCodec::alive, 2);
  *assigned = *copy;
  EXPECT_EQ(RecordingCodec::alive, 1) << "the codec of the document assigned to is gone";
  original.reset();
  copy.reset();
  EXPECT_EQ(RecordingCodec::alive, 1);
  TakeCalls();
  EXPECT_EQ(assigned->DecodeXML("text", 0), 0);
  EXPECT_THAT(TakeCalls(), ElementsAre("DecodeXMLString text"));
  assigned.reset();
  EXPECT_EQ(RecordingCodec::alive, 0);
}

TEST(DocumentCopies, OfADocumentThatIsGoneLoadAndSaveTheSharedTrees) {
  auto original = std::make_unique<Document>();
  Document copy(*original);
  EXPECT_EQ(original->DecodeXML(Standard("<std:node name='D'/>", " type='t'"), 0), 0);
  original.reset();
  EXPECT_EQ(copy.DecodeXML(Standard("<std:node name='E'/>", " type='u'"), 0), 0);
  EXPECT_EQ(DescribeAt(copy, "Root"), "top Root{plain D, plain E}");
  VyrUnicodeString out;
  copy.SaveInString(out);
  EXPECT_THAT(out.CString(), testing::HasSubstr("type=\"u\""));
}

TEST(DocumentCopies, TreesOutliveTheDocumentWhileTheyAreHeld) {
  auto document = std::make_unique<Document>();
  document->AddNodeWithPath("Root:A", 0);
  const Node_var root(document->GetNodeWithPath("Root"));
  document.reset();
  EXPECT_EQ(Describe(*root), "top Root{plain A}");
  EXPECT_EQ(CountReferences(*root), 1u);
}

}  // namespace
}  // namespace modeltest
