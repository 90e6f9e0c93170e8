#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "DiagnosticsCapture.h"
#include "ExpectedKeywords.h"
#include "LegacyText.h"
#include "ParseStandardAccess.h"
#include "TemporaryFolder.h"

namespace {

using Access = VyrDrwParseStandardAccess;
using Type = VyrDrwParseKeyword::Type;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

constexpr const char* kUnknownParent = ": Unknown parent standard!! [VyrDrwParseStandard]";
// A report keeps 40 characters of a message.
const std::string kInvalidDatumMode =
    ": " +
    std::string("Invalid TXTDatumMode value! Can't determine parent standard").substr(0, 40) +
    " [VyrDrwParseStandard]";
const auto kAlreadyThere =
    testing::AllOf(StartsWith("BOOL IS FALSE: "), testing::EndsWith("[VyrDrwParseStandard]"));

/// A standard file with the given content below its document element.
std::string StandardXML(const std::string& content) {
  return "<std:node name=\"drafting\" "
         "xmlns:std=\"http://schemas.hol-standard.example/drafting/std\">" +
         content + "</std:node>";
}

std::string Wrapped(const std::string& name, const std::string& element, const std::string& value) {
  return "<std:node name=\"" + name + "\"><std:" + element + ">" + value + "</std:" + element +
         "></std:node>";
}

/// A standard with the two values that tell the parent standard; null: the value is missing.
std::string WithParent(const char* parent, const char* datumMode) {
  std::string values;
  if (parent != nullptr) values += Wrapped("ParentStandard", "strval", parent);
  if (datumMode != nullptr) values += Wrapped("TXTDatumMode", "intval", datumMode);
  return StandardXML("<std:node name=\"Dimension\">" + values + "</std:node>");
}

void ExpectNothingRead(VyrDrwParseStandard& standard) {
  EXPECT_EQ(Access::Decoded(standard), 0);
  EXPECT_TRUE(Access::Parameters(standard).empty());
  EXPECT_EQ(standard.GetParentStandard(), "");
  EXPECT_EQ(standard.GetVersion(), 0);
  EXPECT_EQ(Access::Document(standard), nullptr);
}

TEST(ParseStandard, ParentStandardsAreBits) {
  static_assert(VyrDrwParseStandard::ANSI == 1 && VyrDrwParseStandard::ASME == 2 &&
                VyrDrwParseStandard::ISO == 4 && VyrDrwParseStandard::JIS == 8);
  EXPECT_EQ(VyrDrwParseStandard::GetCurrentVersion(), 220);
}

TEST(ParseStandard, ConstructionReadsNothing) {
  const DiagnosticsCapture capture;
  const TemporaryFolder folder;
  for (const std::string& path :
       {folder / "missing.xml", folder.Write("s.xml", WithParent("ISO", "1"))}) {
    VyrDrwParseStandard standard(path);
    ExpectNothingRead(standard);
  }
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST(ParseStandard, DestructionDestroysEveryParameter) {
  struct CountedParameter : VyrDrwParseParameter {
    explicit CountedParameter(int& destroyed)
        : VyrDrwParseParameter("P", Type::Int, "1"), destroyed_(destroyed) {}
    ~CountedParameter() override { ++destroyed_; }
    int& destroyed_;
  };
  int destroyed = 0;
  {
    VyrDrwParseStandard standard("s.xml");
    auto& parameters = Access::Parameters(standard);
    parameters.push_back(std::make_unique<CountedParameter>(destroyed));
    parameters.push_back(nullptr);
    parameters.push_back(std::make_unique<CountedParameter>(destroyed));
  }
  EXPECT_EQ(destroyed, 2);
}

TEST(Decode, EmptyFileNameDoesNothing) {
  const DiagnosticsCapture capture;
  VyrDrwParseStandard standard("");
  standard.Decode();
  ExpectNothingRead(standard);
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST(Decode, ReadsTheFileOnce) {
  const DiagnosticsCapture capture;
  const TemporaryFolder folder;
  VyrDrwParseStandard standard(folder.Write("s.xml", WithParent("JIS", nullptr)));
  standard.Decode();
  EXPECT_EQ(Access::Decoded(standard), 1);
  ASSERT_NE(Access::Document(standard), nullptr);
  const auto* document = Access::Document(standard).get();
  folder.Write("s.xml", WithParent("ISO", nullptr));
  standard.Decode();
  EXPECT_EQ(standard.GetParentStandard(), "JIS");
  EXPECT_EQ(Access::Document(standard).get(), document);
  EXPECT_TRUE(standard.GetProblem().IsEmpty());
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST(Decode, DocumentThatIsAlreadyThereIsReportedAndKept) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("s.xml", WithParent("JIS", nullptr));
  for (const bool development : {false, true}) {
    const DiagnosticsCapture capture(development);
    VyrDrwParseStandard standard(path);
    Access::Document(standard) = std::make_unique<VyrAnnStandardXMLParser>();
    const auto* document = Access::Document(standard).get();
    standard.Decode();
    EXPECT_THAT(CheckTexts(development ? capture.abends : capture.errors),
                ElementsAre(kAlreadyThere));
    EXPECT_EQ(capture.printed, capture.abends);
    EXPECT_EQ(Access::Document(standard).get(), document);
    EXPECT_EQ(Access::Decoded(standard), 0);
    EXPECT_EQ(standard.GetParentStandard(), "");
  }
}

TEST(Decode, VersionIsTheOneOfTheDocument) {
  struct {
    std::string content;
    int version;
  } const cases[] = {
      {"", 1},  // nothing that tells a release: that of release 9
      {"<std:node name=\"Annotation\"/>", 2},
      {"<std:node name=\"Annotation\"/><std:node name=\"Styles\"/>", 30},
      {Wrapped("Version", "intval", "110"), 110},
      {Wrapped("Version", "intval", "220"), 220},
  };
  const TemporaryFolder folder;
  for (const auto& test : cases) {
    VyrDrwParseStandard standard(folder.Write("s.xml", StandardXML(test.content)));
    standard.Decode();
    EXPECT_EQ(standard.GetVersion(), test.version) << test.content;
  }
}

TEST(Decode, ParentStandardIsToldByItsNameAndTheDatumMode) {
  struct {
    const char* parent;
    const char* datumMode;
    const char* expected;
    int id;
    bool datumModeIsReported;
  } const cases[] = {
      {"ISO", "1", "ISO", 4, false},
      {"ISO", "0", "ISO", 4, false},
      {"JIS", nullptr, "JIS", 8, false},
      {"ANSI", "1", "ASME", 2, false},
      {"ANSI", "2", "ANSI", 1, false},
      {"ANSI", "0", "ANSI", 1, true},
      {"ANSI", "", "ANSI", 1, true},
      {"ANSI", " 1", "ANSI", 1, true},
      {"ANSI", nullptr, "ANSI", 1, true},
      {"ASME", "2", "ASME", 2, false},
      {"ASME", nullptr, "ASME", 2, false},
      {"Iso", "1", "Iso", 0, false},
      {"ansi", "1", "ansi", 0, false},
      {"DIN", "1", "DIN", 0, false},
      {"", "1", "", 0, false},
      {nullptr, "1", "", 0, false},
  };
  const TemporaryFolder folder;
  for (const bool development : {false, true}) {
    for (const auto& test : cases) {
      SCOPED_TRACE(WithParent(test.parent, test.datumMode));
      DiagnosticsCapture capture(development);
      const auto& reports = development ? capture.abends : capture.errors;
      VyrDrwParseStandard standard(folder.Write("s.xml", WithParent(test.parent, test.datumMode)));
      standard.Decode();
      EXPECT_EQ(standard.GetParentStandard(), test.expected);
      EXPECT_EQ(CheckTexts(reports), test.datumModeIsReported
                                         ? std::vector<std::string>{kInvalidDatumMode}
                                         : std::vector<std::string>{});
      capture.Clear();
      EXPECT_EQ(standard.GetParentStandardId(), test.id);
      EXPECT_EQ(CheckTexts(reports), test.id == 0 ? std::vector<std::string>{kUnknownParent}
                                                  : std::vector<std::string>{});
    }
  }
}

TEST(Decode, FileThatCannotBeReadLeavesAnEmptyDocumentAndAProblem) {
  const TemporaryFolder folder;
  const std::string paths[] = {
      folder / "missing.xml",
      folder.Write("broken.xml", "<std:node"),
      folder.Write("other.xml", "<node/>"),
      // The fault stands after the values that tell the parent standard.
      folder.Write("half.xml", StandardXML("<std:node name=\"Dimension\">" +
                                           Wrapped("ParentStandard", "strval", "JIS") +
                                           "</std:node><std:strval/>")),
  };
  for (const std::string& path : paths) {
    SCOPED_TRACE(path);
    DiagnosticsCapture capture;
    VyrDrwParseStandard standard(path);
    standard.Decode();
    EXPECT_EQ(Access::Decoded(standard), 0);
    EXPECT_FALSE(standard.GetProblem().IsEmpty());
    ASSERT_NE(Access::Document(standard), nullptr);
    EXPECT_EQ(Access::Document(standard)->GetNodeWithPath("Root.Dimension"), nullptr);
    EXPECT_EQ(standard.GetParentStandard(), "");
    capture.Clear();
    EXPECT_EQ(standard.GetParentStandardId(), 0);
    EXPECT_THAT(CheckTexts(capture.errors), ElementsAre(kUnknownParent));
    const std::string output = folder / "out.xml";
    Access::EncodeToVersion(standard, -1, output);
    EXPECT_FALSE(std::filesystem::exists(output));
  }
}

TEST(Decode, FailedReadIsNotRepeatedAndEndsNoDevelopmentRun) {
  for (const bool development : {false, true}) {
    for (const char* name : {"missing.xml", "broken.xml", "other.xml"}) {
      SCOPED_TRACE(name);
      DiagnosticsCapture capture(development);
      const TemporaryFolder folder;
      folder.Write("broken.xml", "<std:node");
      folder.Write("other.xml", "<node/>");
      VyrDrwParseStandard standard(folder / name);
      standard.Decode();
      const VyrProblem problem = standard.GetProblem();
      const auto* document = Access::Document(standard).get();
      capture.Clear();
      folder.Write(name, WithParent("JIS", nullptr));
      standard.Decode();
      standard.Check();
      standard.Decode();
      EXPECT_THAT(capture.errors, IsEmpty());
      EXPECT_THAT(capture.printed, IsEmpty());
      EXPECT_THAT(capture.abends, IsEmpty());
      EXPECT_FALSE(problem.IsEmpty());
      EXPECT_EQ(standard.GetProblem().text, problem.text);
      EXPECT_EQ(Access::Document(standard).get(), document);
      EXPECT_EQ(Access::Decoded(standard), 0);
      EXPECT_EQ(standard.GetParentStandard(), "");
    }
  }
}

TEST(GetParentStandardId, UndecodedStandardHasNone) {
  const DiagnosticsCapture capture;
  EXPECT_EQ(VyrDrwParseStandard("s.xml").GetParentStandardId(), 0);
  EXPECT_THAT(CheckTexts(capture.errors), ElementsAre(kUnknownParent));
}

TEST(GetParameter, FirstOfSeveralWithTheNameIsFoundAndNullsAreSkipped) {
  VyrDrwParseStandard standard("s.xml");
  Access::Parameters(standard).push_back(nullptr);
  Access::Add(standard, "", Type::Int, "empty");
  Access::Add(standard, "A", Type::Int, "1");
  Access::Parameters(standard).push_back(nullptr);
  Access::Add(standard, "B", Type::Int, "2");
  Access::Add(standard, "A", Type::Int, "3");
  EXPECT_EQ(Access::ValueOf(standard, "A"), "1");
  EXPECT_EQ(Access::ValueOf(standard, "B"), "2");
  for (const char* name : {"", "a", "A ", "C"}) {
    EXPECT_EQ(Access::GetParameter(standard, name), nullptr) << name;
  }
}

/// What `Check` must write when the parameters of these rows are present.
std::vector<std::string> ExpectedReport(const std::vector<std::string>& present) {
  std::vector<std::string> lines;
  for (std::size_t row = 2; row <= 118; ++row) {
    const ExpectedKeyword& keyword = ExpectedKeywords()[row];
    if (keyword.required == 0) continue;
    if (std::find(present.begin(), present.end(), keyword.keyword) != present.end()) continue;
    lines.push_back("Error: Parameter " + keyword.keyword + " not valuated in Standard file\n");
  }
  lines.push_back("Result: " + std::to_string(lines.size()) +
                  " missing parameters in standard file\n");
  return lines;
}

TEST(Check, EmptyParameterListMisses105Parameters) {
  const TemporaryFolder folder;
  const TraceOn trace("VyrDftStandardOutput");
  ASSERT_TRUE(trace.IsFound());
  const DiagnosticsCapture capture;
  VyrDrwParseStandard standard(folder.Write("s.xml", WithParent("ISO", "1")));
  standard.Check();
  EXPECT_EQ(Access::Decoded(standard), 1) << "Check reads the file first";
  ASSERT_EQ(capture.traces.size(), 106u);
  EXPECT_EQ(capture.traces.front(),
            "Error: Parameter ParentStandard not valuated in Standard file\n");
  EXPECT_EQ(capture.traces[104],
            "Error: Parameter STDDimMaxLengthArcSymbol not valuated in Standard file\n");
  EXPECT_EQ(capture.traces.back(), "Result: 105 missing parameters in standard file\n");
  EXPECT_EQ(capture.traces, ExpectedReport({}));
}

TEST(Check, OnlyKeywordsOfTheListCountAsPresent) {
  const TraceOn trace("VyrDftStandardOutput");
  const DiagnosticsCapture capture;
  VyrDrwParseStandard standard("s.xml");
  Access::Decoded(standard) = 1;
  Access::Parameters(standard).push_back(nullptr);
  // The last five are unknown, a legacy name, empty, optional, and of a group.
  for (const char* name : {"DIMLTail", "TXTThickness", "DIMLTail", "Nonsense", "CUMLSign", "",
                           "DIMLOverrun", "TolName"}) {
    Access::Add(standard, name, Type::Int, "1");
  }
  standard.Check();
  EXPECT_EQ(capture.traces, ExpectedReport({"DIMLTail", "TXTThickness"}));
  EXPECT_EQ(capture.traces.back(), "Result: 103 missing parameters in standard file\n");
}

TEST(Check, CompleteTextStandardMissesNothing) {
  const TemporaryFolder folder;
  const TraceOn trace("VyrDftStandardOutput");
  const DiagnosticsCapture capture;
  VyrDrwParseStandard standard(folder.Write("s.txt", Joined(General())));
  ASSERT_EQ(standard.DecodeText(), S_OK);
  standard.Check();
  EXPECT_THAT(capture.traces, ElementsAre("Result: 0 missing parameters in standard file\n"));
}

TEST(Check, WritesNothingWhileTheChannelIsOff) {
  const DiagnosticsCapture capture;
  VyrDrwParseStandard("").Check();
  EXPECT_THAT(capture.traces, IsEmpty());
}

}  // namespace
