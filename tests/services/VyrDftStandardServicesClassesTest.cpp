#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <utility>

#include "DiagnosticsCapture.h"
#include "TemporaryFolder.h"
#include "VyrDftStandardServices.h"
#include "VyrDrwParseStandard.h"

namespace {

namespace fs = std::filesystem;
using Services = VyrDftStandardServices;
using Names = VyrListValVyrUnicodeString;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

/// The text of a standard with a parent standard and, when it is not 0, a version.
std::string StandardWith(const std::string& parent, const std::string& datumMode, int version) {
  const auto value = [](const std::string& name, const std::string& element,
                        const std::string& text) {
    return "<std:node name='" + name + "'><std:" + element + ">" + text + "</std:" + element +
           "></std:node>";
  };
  return "<std:node name='drafting' "
         "xmlns:std='http://schemas.hol-standard.example/drafting/std'>" +
         (version == 0 ? "" : value("Version", "intval", std::to_string(version))) +
         "<std:node name='Dimension'>" + value("ParentStandard", "strval", parent) +
         value("TXTDatumMode", "intval", datumMode) + "</std:node></std:node>";
}

/// One standard of every class, and what is none.
class FolderOfStandards : public testing::Test {
 protected:
  FolderOfStandards() {
    Write("iso.xml", "ISO", "1");
    Write("jis.xml", "JIS", "1");
    Write("ansi.xml", "ANSI", "2");
    Write("asme.xml", "ANSI", "1");
    Write("din.xml", "DIN", "1");
  }
  void Write(const std::string& name, const std::string& parent, const std::string& mode) const {
    folder_.Write(name, StandardWith(parent, mode, 220));
  }
  Names Files(const char* ext, bool skipAnsi = false, Names names = {}) const {
    Services::ListFilesInDirectory(folder_.Path().c_str(), ext, names, skipAnsi ? 1 : 0);
    return names;
  }

  const TemporaryFolder folder_;
};

// --- Class and version ---------------------------------------------------------------------------

TEST(StandardClass, IsTheParentStandardAsTheConverterTellsIt) {
  const TemporaryFolder folder;
  struct {
    const char* parent;
    const char* datumMode;
    const char* standardClass;
  } const cases[] = {{"ISO", "1", "ISO"},
                     {"JIS", "2", "JIS"},
                     {"ANSI", "2", "ANSI"},
                     {"ANSI", "1", "ASME"},
                     {"DIN", "1", "DIN"}};
  for (const auto& test : cases) {
    VyrUnicodeString file = folder.Write("s.xml", StandardWith(test.parent, test.datumMode, 170));
    VyrUnicodeString standardClass = "old";
    int version = -7;
    Services::GetStandardClassAndVersion(file, standardClass, version);
    EXPECT_EQ(standardClass, test.standardClass);
    EXPECT_EQ(version, 170);
  }
}

TEST(StandardClass, OfTheShippedStandards) {
  const std::pair<const char*, const char*> shipped[] = {
      {"ISO.xml", "ISO"}, {"JIS.xml", "JIS"}, {"ANSI-ASME.xml", "ASME"}};
  for (const auto& [name, expected] : shipped) {
    VyrUnicodeString file = std::string(HOL_STANDARDS "/") + name;
    VyrUnicodeString standardClass;
    int version = 0;
    Services::GetStandardClassAndVersion(file, standardClass, version);
    EXPECT_EQ(standardClass, expected);
    EXPECT_EQ(version, 220);
  }
}

TEST(StandardClass, FileThatCannotBeReadHasNoneAndTheReadersVersionAndIsReportedOnce) {
  const TemporaryFolder folder;
  const std::string paths[] = {folder / "missing.xml", folder.Path().string(),
                               folder.Write("empty.xml", ""), folder.Write("cut.xml", "<a>\n<b>\n"),
                               folder.Write("other.xml", "<html/>")};
  for (const std::string& path : paths) {
    VyrDrwParseStandard reader(path);
    {
      const DiagnosticsCapture quiet;
      reader.Decode();
    }
    DiagnosticsCapture capture;
    VyrUnicodeString file = path;
    VyrUnicodeString standardClass = "old";
    int version = -7;
    Services::GetStandardClassAndVersion(file, standardClass, version);
    EXPECT_EQ(standardClass, "") << path;
    EXPECT_EQ(version, reader.GetVersion()) << path;
    EXPECT_EQ(version, 1) << path << ": that of a document without content";
    std::erase_if(capture.errors, [](const std::string& error) {
      return CheckText(error) == ": Invalid standard [VyrAnnStandardXMLParserDOMCodec]";
    });
    EXPECT_THAT(capture.errors, ElementsAre(StartsWith("VyrDftStandardServices: " + path)));
  }
}

TEST(StandardClass, PipeAndNoNameAreNotRead) {
  const TemporaryFolder folder;
  const std::string pipe = folder / "pipe.xml";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  for (const auto& [path, expected] : {std::pair(pipe, 1), std::pair(std::string(), 0)}) {
    const DiagnosticsCapture capture;
    VyrUnicodeString file = path;
    VyrUnicodeString standardClass = "old";
    int version = -7;
    Services::GetStandardClassAndVersion(file, standardClass, version);
    EXPECT_EQ(standardClass, "") << path;
    EXPECT_EQ(version, expected) << path;
    EXPECT_THAT(capture.errors, ElementsAre(HasSubstr("cannot be opened as a regular file")));
  }
}

// --- Lists of files ------------------------------------------------------------------------------

TEST_F(FolderOfStandards, PipeKeepsNobodyWaitingAndNameForgesNoLineOfTheLog) {
  ASSERT_EQ(::mkfifo((folder_ / "a\nb.xml").c_str(), 0600), 0);
  const DiagnosticsCapture capture;
  Names iso, jis, asme;
  Services::ListXMLStdInDirectory(folder_.Path().c_str(), "xml", iso, jis, asme);
  EXPECT_EQ(iso, Names{"iso"});
  ASSERT_EQ(capture.errors.size(), 1u);
  EXPECT_THAT(capture.errors[0], HasSubstr("a?b.xml: cannot be opened as a regular file\n"));
}

TEST_F(FolderOfStandards, BaseNamesAreListedInTheOrderOfTheirBytes) {
  EXPECT_THAT(Files("xml"), ElementsAre("ansi", "asme", "din", "iso", "jis"));
  EXPECT_THAT(Files("txt"), IsEmpty());
}

TEST_F(FolderOfStandards, PatternMayStandAnywhereInANameAndIsCutFromItsEnd) {
  const TemporaryFolder folder;
  for (const char* name : {"a.xml.bak", "b.xmlx", ".xml", "xml", "c.XML", "dxml", "e.x.ml",
                           "f.xml\u00E9\u00E9\u00E9\u00E9", "g.xml.xml"}) {
    folder.Write(name, "");
  }
  fs::create_directory(folder / "folder.xml");
  Names names;
  Services::ListFilesInDirectory(folder.Path().c_str(), "xml", names, 0);
  EXPECT_THAT(names, ElementsAre("", "a.xml", "b.", "f.xml", "folder", "g.xml"));
}

TEST_F(FolderOfStandards, EmptyExtensionMeansEveryNameWithADot) {
  EXPECT_THAT(Files(""), ElementsAre("ansi.xm", "asme.xm", "din.xm", "iso.xm", "jis.xm"));
}

TEST_F(FolderOfStandards, NamesThatTheListHasAreNotAddedAgain) {
  folder_.Write("iso.xmlABCD", "");  // its base name is "iso.xml"
  folder_.Write("iso.xml.xml", "");  // and so is this one's
  EXPECT_THAT(Files("xml", false, {"jis", "x", "jis"}),
              ElementsAre("jis", "x", "jis", "ansi", "asme", "din", "iso", "iso.xml"));
}

TEST_F(FolderOfStandards, AnsiFilesAreLeftOutOnRequestButNotAsmeOnes) {
  EXPECT_THAT(Files("xml", true), ElementsAre("asme", "din", "iso", "jis"));
  EXPECT_THAT(Files("xml", true, {"ansi"}), ElementsAre("ansi", "asme", "din", "iso", "jis"));
}

TEST_F(FolderOfStandards, FileThatCannotBeReadIsNoAnsiFile) {
  folder_.Write("broken.xml", "<");
  fs::create_symlink("nowhere", folder_ / "gone.xml");
  const DiagnosticsCapture capture;
  EXPECT_THAT(Files("xml", true), ElementsAre("asme", "broken", "din", "gone", "iso", "jis"));
  EXPECT_THAT(capture.errors, ElementsAre(HasSubstr("broken.xml"), HasSubstr("gone.xml")));
}

TEST_F(FolderOfStandards, FileWhoseNameTheListHasIsNotRead) {
  folder_.Write("broken.xml", "<");
  const DiagnosticsCapture capture;
  Files("xml", true, {"broken"});
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST_F(FolderOfStandards, NameThatIsNoTextIsLeftOut) {
  folder_.Write("\xFF.xml", "");
  EXPECT_THAT(Files("xml"), ElementsAre("ansi", "asme", "din", "iso", "jis"));
}

TEST_F(FolderOfStandards, NothingHappensWithoutAFolderOrAnExtension) {
  const std::string missing = folder_ / "missing";
  const DiagnosticsCapture capture;
  for (const char* dir : {static_cast<const char*>(nullptr), "", missing.c_str()}) {
    Names names = {"old"};
    Services::ListFilesInDirectory(dir, "xml", names, 0);
    Services::ListXMLStdInDirectory(dir, "xml", names, names, names);
    EXPECT_THAT(names, ElementsAre("old"));
  }
  Names names = {"old"};
  Services::ListFilesInDirectory(folder_.Path().c_str(), nullptr, names, 0);
  Services::ListXMLStdInDirectory(folder_.Path().c_str(), nullptr, names, names, names);
  EXPECT_THAT(names, ElementsAre("old"));
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST_F(FolderOfStandards, StandardsAreListedByParentAndOthersLeftOut) {
  folder_.Write("broken.xml", "<");
  Write("iso2.xml", "ISO", "2");
  Names iso = {"old"};
  Names jis;
  Names asme;
  const DiagnosticsCapture capture;
  Services::ListXMLStdInDirectory(folder_.Path().c_str(), "xml", iso, jis, asme);
  EXPECT_THAT(iso, ElementsAre("old", "iso", "iso2"));
  EXPECT_THAT(jis, ElementsAre("jis"));
  EXPECT_THAT(asme, ElementsAre("asme"));
  EXPECT_THAT(capture.errors, ElementsAre(HasSubstr("broken.xml")));
}

TEST_F(FolderOfStandards, EachListIsCheckedForDuplicatesByItself) {
  Write("s.xmlABCD", "ISO", "1");  // base name "s.xml"
  Write("s.xml.xml", "JIS", "1");  // too
  Names iso = {"iso"};
  Names jis = {"iso"};
  Names asme = {"jis"};
  Services::ListXMLStdInDirectory(folder_.Path().c_str(), "xml", iso, jis, asme);
  EXPECT_THAT(iso, ElementsAre("iso", "s.xml"));
  EXPECT_THAT(jis, ElementsAre("iso", "jis", "s.xml"));
  EXPECT_THAT(asme, ElementsAre("jis", "asme"));
}

}  // namespace
