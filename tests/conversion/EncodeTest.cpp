#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <new>
#include <string>
#include <utility>

#include "DiagnosticsCapture.h"
#include "LegacyText.h"
#include "ParseStandardAccess.h"
#include "TemporaryFolder.h"

namespace {

using Access = VyrDrwParseStandardAccess;
using Options = VyrDrwParseStandardUpgradeOptions;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::StartsWith;

constexpr const char* kSavedFailed = "BOOL IS FALSE: Saved failed [VyrDrwParseStandard]";
constexpr const char* kNoDocument = "ON POINTER : NULL handler [VyrDrwParseStandard]";

Options OptionsOf(unsigned bit, unsigned hostBits) {
  Options options;
  options.OOTBStandard = bit & 1u;
  options.hostBits = hostBits & 0x7FFFFFFFu;
  return options;
}

TEST(UpgradeOptions, AreOneBitOfAWord) {
  static_assert(sizeof(Options) == 4);
}

TEST(UpgradeOptions, DefaultClearsTheBit) {
  for (const int byte : {0x00, 0xFF}) {
    alignas(Options) unsigned char memory[sizeof(Options)];
    std::memset(memory, byte, sizeof memory);
    EXPECT_EQ((new (memory) Options)->OOTBStandard, 0u);
  }
}

TEST(UpgradeOptions, CopyTakesTheWholeWordAndMoveAssignmentTheBitOnly) {
  for (const unsigned bit : {0u, 1u}) {
    const Options source = OptionsOf(bit, 0x12345678u);
    Options copied = OptionsOf(1u - bit, 0x7FFFFFFFu);
    copied = source;
    EXPECT_EQ(copied.OOTBStandard, bit);
    EXPECT_EQ(copied.hostBits, 0x12345678u);
    EXPECT_EQ(Options(source).hostBits, 0x12345678u);

    Options target = OptionsOf(1u - bit, 0x2AAAAAAAu);
    target = OptionsOf(bit, 0x12345678u);
    EXPECT_EQ(target.OOTBStandard, bit);
    EXPECT_EQ(target.hostBits, 0x2AAAAAAAu);
  }
}

TEST(CreateOutput, JoinsDirectoryAndCutFileNameByABackslash) {
  struct {
    const char* directory;
    const char* input;
    const char* expected;
  } const cases[] = {
      {nullptr, "ISO.xml", ".\\ISO.xml"},
      {nullptr, "/any/folder/ISO.xml", ".\\ISO.xml"},
      {nullptr, "C:\\any\\ISO.xml", ".\\ISO.xml"},
      {"out", "/any/ISO.xml", "out\\ISO.xml"},
      {"out", "/any/a.xml.bak", "out\\a.xml"},
      {"out", "a.xml.xml", "out\\a.xml"},
      {"out", "/folder.xml/ISO", "out\\ISO.xml"},
      {"out", "ISO.txt", "out\\ISO.txt.xml"},
      {"out", "ISO", "out\\ISO.xml"},
      {"out", "ISO.XML", "out\\ISO.XML.xml"},
      {"out", ".xml", "out\\.xml"},
      {"", "ISO.xml", "\\ISO.xml"},
      {"out/", "ISO.xml", "out/\\ISO.xml"},
  };
  for (const auto& test : cases) {
    VyrDrwParseStandard standard(test.input);
    Access::Decoded(standard) = 1;
    EXPECT_EQ(Access::CreateOutput(standard, test.directory), test.expected);
  }
}

TEST(CreateOutput, IsEmptyForAnUndecodedStandardAndAnEmptyName) {
  EXPECT_EQ(Access::CreateOutput(VyrDrwParseStandard("ISO.xml"), "out"), "");
  VyrDrwParseStandard unnamed("");
  Access::Decoded(unnamed) = 1;
  EXPECT_EQ(Access::CreateOutput(unnamed, "out"), "");
}

/// A decoded text standard in a folder of its own.
struct TextStandard {
  TemporaryFolder folder;
  VyrDrwParseStandard standard;

  TextStandard() : standard(folder.Write("STD.txt", Joined(General()))) {
    EXPECT_EQ(standard.DecodeText(), S_OK);
  }
};

TEST(Encode, SavesUnderTheStatedPathAndUpgradesToTheCurrentVersion) {
  const DiagnosticsCapture capture;
  TextStandard text;
  VyrString path("as before");
  Options options;
  text.standard.Encode(text.folder.Path().c_str(), path, options);
  EXPECT_EQ(path, VyrString(text.folder.Path().string() + "\\STD.txt.xml"));
  ASSERT_TRUE(std::filesystem::exists(text.folder / "STD.txt.xml"));
  VyrDrwParseStandard written(text.folder / "STD.txt.xml");
  written.Decode();
  EXPECT_EQ(written.GetVersion(), VyrDrwParseStandard::GetCurrentVersion());
}

TEST(Encode, UndecodedStandardIsNotSavedAndThePathIsEmpty) {
  const DiagnosticsCapture capture;
  const TemporaryFolder folder;
  VyrDrwParseStandard standard(folder / "STD.xml");
  VyrString path("as before");
  Options options;
  standard.Encode(folder.Path().c_str(), path, options);
  EXPECT_TRUE(path.IsEmpty());
  EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST(EncodeToVersion, UndecodedStandardDoesNothing) {
  const DiagnosticsCapture capture;
  const TemporaryFolder folder;
  VyrDrwParseStandard standard(folder / "STD.xml");
  Access::EncodeToVersion(standard, -1, folder / "out.xml");
  Options options;
  EXPECT_LT(standard.EncodeToFile((folder / "out.xml").c_str(), 1, options), 0);
  EXPECT_EQ(Access::Document(standard), nullptr);
  EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST(EncodeToVersion, TextStandardBecomesADocumentOfVersion1) {
  const DiagnosticsCapture capture;
  TextStandard text;
  Access::EncodeToVersion(text.standard, 1, text.folder / "out.xml");
  ASSERT_NE(Access::Document(text.standard), nullptr);
  EXPECT_EQ(text.standard.GetVersion(), 0) << "the source version stays";
  VyrDrwParseStandard written(text.folder / "out.xml");
  written.Decode();
  EXPECT_EQ(written.GetVersion(), 1);
  EXPECT_EQ(written.GetParentStandard(), "ISO");
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST(EncodeToVersion, DocumentBeforeTheFirstStepIsReportedAndSavedAsItIs) {
  for (const bool development : {false, true}) {
    const DiagnosticsCapture capture(development);
    TextStandard text;
    const std::string path = text.folder / "out.xml";
    Access::EncodeToVersion(text.standard, 1, path);
    const std::string first = ReadWholeFile(path);
    Access::EncodeToVersion(text.standard, -1, path);
    EXPECT_THAT(CheckTexts(development ? capture.abends : capture.errors),
                ElementsAre(testing::AllOf(StartsWith("BOOL IS FALSE: "),
                                           EndsWith("[VyrDrwParseStandard]"))));
    EXPECT_EQ(ReadWholeFile(path), first);
  }
}

TEST(EncodeToVersion, ATextThatCouldNotBeComposedWholeIsNotComposedLater) {
  const DiagnosticsCapture capture;
  TextStandard text;
  Access::Add(text.standard, "TolName", VyrDrwParseKeyword::Type::String, "no \x01 XML", "T",
              "TOLERANCE");
  Options options;
  EXPECT_EQ(text.standard.Upgrade(1, options), E_UNEXPECTED);
  const std::string problem = text.standard.GetProblem().text.CString();
  EXPECT_NE(problem, "");
  EXPECT_EQ(text.standard.EncodeToFile((text.folder / "out.xml").c_str(), 1, options), E_FAIL);
  EXPECT_EQ(text.standard.GetProblem().text.CString(), problem);
  EXPECT_FALSE(std::filesystem::exists(text.folder / "out.xml"));
}

TEST(EncodeToVersion, MissingDocumentIsReportedByTheUpgradeAndByTheSave) {
  for (const bool development : {false, true}) {
    const DiagnosticsCapture capture(development);
    const TemporaryFolder folder;
    VyrDrwParseStandard standard("STD.xml");
    Access::Decoded(standard) = 1;
    Access::Version(standard) = 220;
    Access::EncodeToVersion(standard, -1, folder / "out.xml");
    EXPECT_THAT(CheckTexts(development ? capture.abends : capture.errors),
                ElementsAre(kNoDocument, kNoDocument));
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
  }
}

TEST(EncodeToVersion, FailedSaveIsReported) {
  for (const bool development : {false, true}) {
    for (const std::string path : {"/no/such/folder/out.xml", ""}) {
      const DiagnosticsCapture capture(development);
      TextStandard text;
      Access::EncodeToVersion(text.standard, 1, path);
      const auto reports = CheckTexts(development ? capture.abends : capture.errors);
      ASSERT_FALSE(reports.empty());
      EXPECT_EQ(reports.back(), kSavedFailed);
      EXPECT_FALSE(text.standard.GetProblem().IsEmpty());
    }
  }
}

TEST(EncodeToFile, FailedSaveIsNegativeAndASavedOneIsNot) {
  const DiagnosticsCapture capture;
  TemporaryFolder folder;
  VyrDrwParseStandard standard(folder.Write(
      "STD.xml",
      "<std:node name=\"drafting\" xmlns:std=\"http://schemas.hol-standard.example/drafting/std\">"
      "<std:node name=\"Version\"><std:intval>220</std:intval></std:node></std:node>"));
  standard.Decode();
  Options options;
  EXPECT_LT(standard.EncodeToFile("/no/such/folder/out.xml", 220, options), 0);
  EXPECT_FALSE(standard.GetProblem().IsEmpty());
  EXPECT_EQ(standard.EncodeToFile((folder / "out.xml").c_str(), 220, options), S_OK);
  EXPECT_TRUE(standard.GetProblem().IsEmpty());
  EXPECT_LT(standard.SaveToFile("/no/such/folder/out.xml"), 0);
  EXPECT_FALSE(standard.GetProblem().IsEmpty());
  EXPECT_EQ(standard.SaveToFile((folder / "out.xml").c_str()), S_OK);
  EXPECT_TRUE(standard.GetProblem().IsEmpty());
  VyrDrwParseStandard written(folder / "out.xml");
  written.Decode();
  EXPECT_EQ(written.GetVersion(), 220);
}

}  // namespace
