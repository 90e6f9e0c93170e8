#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <string>

#include "FailingMemory.h"
#include "HostSettings.h"
#include "ProcessApart.h"
#include "QuietDiagnostics.h"
#include "TemporaryFolder.h"
#include "TreeContent.h"
#include "VyrAnnStandardXMLParser.h"
#include "VyrBackups.h"
#include "VyrDftStdPersistence.h"
#include "VyrDiagnostics.h"
#include "VyrDrwParseStandard.h"
#include "VyrFiles.h"
#include "VyrStdServices.h"
#include "VyrXMLReader.h"

// Memory that runs out at any request: what was asked for is refused or done, and done right.

namespace {

/// Runs the piece of work that memory is to run out for.
using Runner = std::function<void(const std::function<void()>& work)>;
/// One try of an operation; "refused", "done", or what is wrong.
using Try = std::function<std::string(const Runner& run)>;

std::string AnswerOf(bool isDone, std::string_view problem) {
  if (isDone) return problem.empty() ? "done" : "done with a problem";
  return TellsOfMemory(problem) ? "refused" : "refused because it " + std::string(problem);
}

/// Lets each request fail that a work makes: all of the first ones, then one out of `sparse`
/// percent more. "sound" when each time it is refused or done, and refused more than once.
std::string AnswerToFailures(Failing failing, const Try& attempt, std::size_t sparse = 0) {
  VyrSetDiagnosticSinks(DroppingSinks());
  constexpr std::size_t firstOnes = 500;
  std::size_t refused = 0;
  for (std::size_t request = 1;; request += request < firstOnes ? 1 : 1 + request * sparse / 100) {
    bool hasFailed = false;
    bool hasThrown = false;
    const std::string answer = attempt([&](const std::function<void()>& work) {
      FailingMemory memory(failing, request);
      try {
        work();
      } catch (const std::bad_alloc&) {
        hasThrown = true;
      }
      hasFailed = memory.HasFailed();
    });
    const std::string at = "request " + std::to_string(request) + ": ";
    if (hasThrown) return at + "an exception leaves the library";
    if (!hasFailed) return answer == "done" && refused > 1 ? "sound" : at + answer + " at last";
    if (answer != "done" && answer != "refused") return at + answer;
    refused += answer == "refused" ? 1 : 0;
  }
}

/// The same in a process of its own: what is lost there when an exception passes is not counted.
std::string AnswerApart(Failing failing, const Try& attempt, std::size_t sparse = 0) {
  const ApartRun run = RunApart([&] { return AnswerToFailures(failing, attempt, sparse); });
  return run.hasEnded ? run.answer : run.end;
}

/// Every kind of markup, and text that is put together.
const std::string kDocument =
    "<?xml version='1.0' encoding='ISO-8859-1'?>\n"
    "<!DOCTYPE std:node [<!ENTITY e 'a text of an entity \xB1'><!ENTITY f '<std:intval "
    "name=\"N\">7</std:intval>'><!ENTITY % p '<!ENTITY g \"x\">'> %p;"
    "<!ATTLIST std:enumdef more CDATA 'a default that is longer than a few letters'>]>\n"
    "<std:node xmlns:std='http://schemas.hol-standard.example/drafting/std' name='drafting'>"
    "<!-- a comment that is longer than a few letters --><?target and what it is to do there?>"
    "<std:enumdef name='YesNo'><std:strval>Yes</std:strval><std:strval>No</std:strval>"
    "</std:enumdef><std:node name='General and more of it'><std:node name='A'>"
    "<std:strval><![CDATA[a section longer than a few]]>&e;&amp;&#x2300;&g;</std:strval></std:node>"
    "<std:node name='B'><std:enumval name='YesNo'>No</std:enumval></std:node>&f;"
    "<std:node name='C' xmlns:q='another namespace than that'><std:colorval>1,2,3</std:colorval>"
    "</std:node></std:node></std:node>";

std::string TryToRead(const Runner& run) {
  VyrXMLTree tree;
  VyrProblem problem;
  bool isRead = false;
  run([&] { isRead = VyrReadXML(kDocument, nullptr, tree, problem); });
  if (isRead) {
    VyrXMLTree whole;
    VyrProblem none;
    VyrReadXML(kDocument, nullptr, whole, none);
    if (ContentOf(tree) != ContentOf(whole)) return "another content: " + ContentOf(tree);
  }
  return AnswerOf(isRead, problem.text.View());
}

TEST(OutOfMemory, DocumentIsReadOrRefusedWhicheverRequestFails) {
  for (const Failing failing : {Failing::Once, Failing::Onward}) {
    EXPECT_EQ(AnswerApart(failing, TryToRead), "sound");
  }
}

TEST(OutOfMemory, FileIsReadOrRefused) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("file", kDocument);
  const Try attempt = [&](const Runner& run) -> std::string {
    std::string content = "old";
    std::string problem;
    run([&] { problem = VyrReadFile(path, content); });
    if (content != (problem.empty() ? kDocument : "old")) return "half a file";
    return AnswerOf(problem.empty(), problem);
  };
  for (const Failing failing : {Failing::Once, Failing::Onward}) {
    EXPECT_EQ(AnswerApart(failing, attempt), "sound");
  }
}

std::string SavedText(VyrAnnStandardXMLParser& document) {
  VyrUnicodeString text;
  document.SaveInString(text);
  return text.CString();
}

TEST(OutOfMemory, StandardIsDecodedOrRefused) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("STD.xml", kDocument);
  VyrAnnStandardXMLParser whole;
  ASSERT_EQ(whole.DecodeXML(path, 1), 0);
  const std::string text = SavedText(whole);
  const Try attempt = [&](const Runner& run) -> std::string {
    VyrAnnStandardXMLParser document;
    int result = -1;
    run([&] { result = document.DecodeXML(path, 1); });
    if (result == 0 && SavedText(document) != text) return "another content";
    return AnswerOf(result == 0, document.GetProblem().text.View());
  };
  for (const Failing failing : {Failing::Once, Failing::Onward}) {
    EXPECT_EQ(AnswerApart(failing, attempt), "sound");
  }
}

/// Whether `path` holds the right one of two contents, and nothing else is in its folder.
std::string FaultOfSave(const std::string& path, bool isSaved, const std::string& oldContent,
                        const std::string& newContent) {
  namespace fs = std::filesystem;
  const fs::path folder = fs::path(path).parent_path();
  const auto files = std::distance(fs::directory_iterator(folder), fs::directory_iterator());
  if (files != 1) return "another file is left";
  return ReadWholeFile(path) == (isSaved ? newContent : oldContent) ? "" : "another content";
}

TEST(OutOfMemory, StandardIsSavedOrTheOldFileKept) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("STD.xml", kDocument);
  VyrAnnStandardXMLParser document;
  ASSERT_EQ(document.DecodeXML(path, 1), 0);
  const std::string text = SavedText(document);
  const Try attempt = [&](const Runner& run) {
    folder.Write("STD.xml", kDocument);
    HRESULT result = E_UNEXPECTED;
    run([&] { result = document.SaveInFile(path); });
    const bool isSaved = VyrSucceeded(result);
    const std::string fault = FaultOfSave(path, isSaved, kDocument, text);
    return fault.empty() ? AnswerOf(isSaved, document.GetProblem().text.View()) : fault;
  };
  for (const Failing failing : {Failing::Once, Failing::Onward}) {
    EXPECT_EQ(AnswerApart(failing, attempt), "sound");
  }
}

TEST(OutOfMemory, BytesAreSavedOrTheOldFileKept) {
  const TemporaryFolder folder;
  const std::string path = folder / "a name longer than a few letters.xml";
  const Try attempt = [&](const Runner& run) {
    std::ofstream(path) << "old";
    std::string problem = "nothing was done";
    run([&] { problem = VyrSaveFile(path, kDocument, 1'000'000'000); });
    const std::string fault = FaultOfSave(path, problem.empty(), "old", kDocument);
    return fault.empty() ? AnswerOf(problem.empty(), problem) : fault;
  };
  for (const Failing failing : {Failing::Once, Failing::Onward}) {
    EXPECT_EQ(AnswerApart(failing, attempt), "sound");
  }
}

TEST(OutOfMemory, StandardIsCopiedOrTheOldFileKeptAndTheErrorLogTold) {
  const TemporaryFolder site;
  const TemporaryFolder folder;
  site.Write("MINE.xml", kDocument);
  const EnvironmentVariable path("VYR_STANDARD_PATH", site.Path().string());
  const std::string target = folder / "a name longer than a few letters.xml";
  const auto type = VyrDftStdPersistence::VyrDftStdType;
  for (const char* name : {"MINE", "a standard that is in none of the folders"}) {
    const bool isThere = std::string_view(name) == "MINE";
    const Try attempt = [&](const Runner& run) -> std::string {
      std::ofstream(target) << "old";
      bool isTold = false;
      VyrDiagnosticSinks sinks = DroppingSinks();
      sinks.errorLog = [&](std::string_view) { isTold = true; };
      VyrSetDiagnosticSinks(sinks);
      HRESULT result = E_UNEXPECTED;
      run([&] { result = VyrStdServices::CopyStandard(name, type, target.c_str()); });
      const std::string fault = FaultOfSave(target, result == S_OK, "old", kDocument);
      if (!fault.empty()) return fault;
      if (isTold != (result != S_OK)) return isTold ? "told of nothing" : "not told";
      if (!isThere && isTold) return "done";  // as it is refused anyway
      return result == S_OK ? "done" : "refused";
    };
    for (const Failing failing : {Failing::Once, Failing::Onward}) {
      const std::string answer = AnswerApart(failing, attempt);
      EXPECT_THAT(answer, testing::EndsWith(isThere ? "sound" : ": done at last"));
    }
  }
}

// --- Files that are changed in place -------------------------------------------------------------

using Contents = std::map<std::string, std::string>;

Contents ContentsOf(const std::filesystem::path& folder) {
  Contents contents;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    contents[entry.path().filename()] = ReadWholeFile(entry.path());
  }
  return contents;
}

/// A change of a file, and what is in its folder before and after it.
struct ChangeCase {
  const char* what;
  std::function<VyrFileChange(const std::string& path)> change;
  Contents before;
  VyrFileChange done;  ///< names without their folder
  Contents after;
};

std::string TryToChange(const Runner& run, const ChangeCase& test) {
  using Result = VyrFileChange::Result;
  const TemporaryFolder folder;
  for (const auto& [name, content] : test.before) folder.Write(name, content);
  const std::string path = folder / test.done.file;
  VyrFileChange change;
  change.result = Result::Unchanged;
  run([&] { change = test.change(path); });
  const bool isDone = change.result == Result::Done;
  if (!isDone && change.result != Result::Failed) return "another result: " + change.problem;
  if (ContentsOf(folder.Path()) != (isDone ? test.after : test.before)) return "other files";
  const auto full = [&](const std::string& name) { return name.empty() ? name : folder / name; };
  if (change.kept != (isDone ? full(test.done.kept) : "")) return "kept as " + change.kept;
  if (change.backup != (isDone ? full(test.done.backup) : "")) return "from " + change.backup;
  return AnswerOf(isDone, change.problem);
}

const std::string kFile = "a name longer than a few letters.xml";

VyrFileChange ReplaceByNew(const std::string& path) {
  return VyrReplaceFile(path, "new", VyrReplaced::Kept);
}

VyrFileChange RestoreIt(const std::string& path) {
  return VyrRestoreFile(path, VyrReplaced::Kept);
}

TEST(OutOfMemory, FileIsReplacedOrRestoredOrAllIsLeftAsItWas) {
  constexpr auto done = VyrFileChange::Result::Done;
  const ChangeCase cases[] = {
      {"replaced",
       ReplaceByNew,
       {{kFile, "old"}, {kFile + ".bak", "older"}},
       {done, kFile, "", kFile + ".bak.1", ""},
       {{kFile, "new"}, {kFile + ".bak", "older"}, {kFile + ".bak.1", "old"}}},
      {"restored",
       RestoreIt,
       {{kFile, "old"}, {kFile + ".bak", "older"}},
       {done, kFile, "", kFile + ".undone", kFile + ".bak"},
       {{kFile, "older"}, {kFile + ".undone", "old"}}},
      {"restored though deleted",
       RestoreIt,
       {{kFile + ".bak", "older"}},
       {done, kFile, "", "", kFile + ".bak"},
       {{kFile, "older"}}},
  };
  for (const ChangeCase& test : cases) {
    for (const Failing failing : {Failing::Once, Failing::Onward}) {
      EXPECT_EQ(AnswerApart(failing, [&](const Runner& run) { return TryToChange(run, test); }),
                "sound")
          << test.what;
    }
  }
}

// --- Reports -------------------------------------------------------------------------------------

TEST(OutOfMemory, FailedCheckIsReportedWithoutAnyMemory) {
  static constexpr VyrSourceUnit unit("VyrSomeUnitWithAName");
  static char reported[400];
  const VyrDiagnosticSinks::Sink copy = [](std::string_view text) {
    reported[text.copy(reported, sizeof reported - 1)] = '\0';
  };
  const VyrDiagnosticSinks before = VyrSetDiagnosticSinks({copy, copy, copy, copy});
  for (const char* message : {"a message of a length", "one with\na forged line"}) {
    bool hasFailed = true;
    {
      const FailingMemory memory(Failing::Onward, 1);
      unit.Raise(message);
      hasFailed = memory.HasFailed();
    }
    EXPECT_FALSE(hasFailed) << message;
    EXPECT_THAT(reported, testing::HasSubstr(std::string_view(message).substr(0, 8)));
  }
  EXPECT_THAT(reported, testing::HasSubstr("one with?a forged line"));
  VyrSetDiagnosticSinks(before);
}

// --- Upgrades ------------------------------------------------------------------------------------

/// Reads a standard, brings it to the current version and saves it in its place.
std::string TryToUpgrade(const Runner& run, const TemporaryFolder& folder, const std::string& old,
                         const std::string& current, bool isText) {
  const std::string path = folder.Write("STD.xml", old);
  VyrDrwParseStandard standard(path);
  VyrDrwParseStandardUpgradeOptions options;
  HRESULT result = E_UNEXPECTED;
  run([&] {
    if (isText) {
      standard.DecodeText();
    } else {
      standard.Decode();
    }
    result = standard.EncodeToFile(path.c_str(), -1, options);
  });
  const bool isSaved = VyrSucceeded(result);
  const std::string fault = FaultOfSave(path, isSaved, old, current);
  return fault.empty() ? AnswerOf(isSaved, standard.GetProblem().text.View()) : fault;
}

/// What an upgrade that lacks nothing makes of a standard.
std::string Upgraded(const std::string& old, bool isText) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("STD.xml", old);
  VyrDrwParseStandard standard(path);
  VyrDrwParseStandardUpgradeOptions options;
  if (isText) {
    standard.DecodeText();
  } else {
    standard.Decode();
  }
  EXPECT_EQ(standard.EncodeToFile(path.c_str(), -1, options), S_OK);
  return ReadWholeFile(path);
}

TEST(OutOfMemory, StandardIsUpgradedOrTheOldFileKept) {
  struct {
    const char* file;
    bool isText;
  } const cases[] = {{HOL_STANDARDS "/../tests/data/site-v150.xml", false},
                     {HOL_STANDARDS "/legacy/ISO.txt", true}};
  const std::size_t percent = kIsSanitized ? 60 : 10;
  for (const auto& test : cases) {
    const std::string old = ReadWholeFile(test.file);
    const std::string current = Upgraded(old, test.isText);
    const TemporaryFolder folder;
    const Try attempt = [&](const Runner& run) {
      return TryToUpgrade(run, folder, old, current, test.isText);
    };
    EXPECT_EQ(AnswerApart(Failing::Once, attempt, percent), "sound") << test.file;
  }
}

}  // namespace
