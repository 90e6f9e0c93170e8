#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string>

#include "DiagnosticsCapture.h"
#include "OnThreads.h"
#include "QuietDiagnostics.h"
#include "TemporaryFolder.h"
#include "VyrAnnStandardXMLParser.h"
#include "VyrDifTransientStandard.h"
#include "VyrDrwParseStandard.h"
#include "VyrFiles.h"

// Threads that use an object of their own each: nothing that they share behind it may be in the
// way. What each of them gets is compared with what one thread alone gets; that nothing is touched
// twice at a time is told by the sanitizer of threads.

namespace {

constexpr std::array kShipped = {"ISO", "JIS", "ANSI-ASME"};
constexpr std::array kTexts = {"ISO", "JIS", "ANSI", "ASME"};

std::string ShippedFile(int number) {
  return std::string(HOL_STANDARDS "/") + kShipped[number % kShipped.size()] + ".xml";
}

std::string Saved(VyrAnnStandardXMLParser& document) {
  VyrUnicodeString text;
  document.SaveInString(text);
  return std::string(text.View());
}

/// Reads a shipped standard, changes it in several ways, and saves it.
std::string Edited(int number) {
  VyrAnnStandardXMLParser document;
  EXPECT_EQ(document.DecodeXML(ShippedFile(number), 1), 0);
  // A node this wide keeps indexes.
  EXPECT_EQ(document.AddNodeWithPath("Root:Sites", 0), 0);
  for (int i = 0; i < 200; ++i) {
    const std::string name = "Site" + std::to_string(i);
    document.AddValueWithPath("Root.Sites:" + name + ":string:" + name, 1);
  }
  for (int i = 0; i < 200; i += 2) {
    document.DeleteNodeWithPath("Root.Sites.Site" + std::to_string(i));
  }
  EXPECT_EQ(document.ChangeValueWithPath("Root.Sites.Site151:changed"), 0);
  EXPECT_EQ(document.GetValueWithPath("Root.Sites.Site151").View(), "changed");
  EXPECT_NE(document.Check(), 0);
  EXPECT_EQ(document.GetVersion(), 220);
  return Saved(document);
}

std::string Converted(int number) {
  const std::string name = kTexts[static_cast<std::size_t>(number) % kTexts.size()];
  VyrDrwParseStandard standard(std::string(HOL_STANDARDS "/legacy/") + name + ".txt");
  EXPECT_EQ(standard.DecodeText(), S_OK);
  VyrDrwParseStandardUpgradeOptions options;
  EXPECT_EQ(standard.Upgrade(-1, options), S_OK);
  return Saved(standard.GetDocument());
}

/// What a standard answers to questions of each kind.
std::string Answers(VyrDifTransientStandard& standard) {
  std::string answers;
  for (int index = 1; index <= 3; ++index) {
    VyrUnicodeString text;
    double width = 0;
    EXPECT_EQ(standard.GetValue("SheetFormat.Name", index, text), S_OK);
    EXPECT_EQ(standard.GetValue("SheetFormat.Width", index, width), S_OK);
    answers += std::string(text.View()) + " " + std::to_string(width) + "\n";
  }
  int count = 0;
  VyrUnicodeString* found = nullptr;
  EXPECT_EQ(standard.GetValue("SheetFormat.Name", &found, &count), S_OK);
  const std::unique_ptr<VyrUnicodeString[]> names(found);
  for (int i = 0; i < count; ++i) answers += std::string(names[i].View()) + "\n";
  int version = 0;
  EXPECT_EQ(standard.GetValue("Version", 1, version), S_OK);
  // Not there, and a path that is no chain of names.
  EXPECT_TRUE(VyrFailed(standard.GetValue("Nothing.There", 1, version)));
  EXPECT_TRUE(VyrFailed(standard.GetValue("It's.\"There\"", 1, version)));
  return answers + std::to_string(version);
}

std::string AnswersOfFile(int number) {
  const VyrVar<VyrDifTransientStandard> standard(
      new VyrDifTransientStandard(ShippedFile(number), "Mine"));
  return Answers(*standard);
}

class OwnObjects : public testing::Test {
 protected:
  /// Every thread gets what one thread alone gets.
  template <class Work>
  void ExpectSame(const Work& work) {
    std::array<std::string, kThreads> results;
    OnThreads([&](int number) { results[number] = work(number); });
    for (int number = 0; number < kThreads; ++number) {
      EXPECT_FALSE(results[number].empty());
      EXPECT_TRUE(results[number] == work(number)) << "thread " << number;
    }
  }

 private:
  // Reports of several threads would else have to be collected under a lock.
  const QuietDiagnostics quiet_;
};

TEST_F(OwnObjects, DocumentsAreReadEditedAndSavedAtTheSameTime) {
  ExpectSame(Edited);
}

TEST_F(OwnObjects, StandardsAreConvertedAndUpgradedAtTheSameTime) {
  ExpectSame(Converted);
}

TEST_F(OwnObjects, StandardsAreAskedAtTheSameTime) {
  ExpectSame(AnswersOfFile);
}

TEST_F(OwnObjects, FilesThatAreNoStandardsAreRefusedAtTheSameTime) {
  ExpectSame([](int) {
    VyrAnnStandardXMLParser document;
    EXPECT_NE(document.DecodeXML("<a><b></a>", 0), 0);
    return std::string(document.GetProblem().text.View());
  });
}

TEST_F(OwnObjects, OneFileIsSavedByAllOfThemAndIsWhole) {
  const TemporaryFolder folder;
  const std::string path = (folder.Path() / "site.xml").string();
  std::array<std::string, kThreads> contents;
  for (int number = 0; number < kThreads; ++number) contents[number] = Edited(number);
  OnThreads([&](int number) {
    for (int i = 0; i < 10; ++i) {
      EXPECT_EQ(VyrSaveFile(path, contents[number]), "");
      std::string read;
      EXPECT_EQ(VyrReadFile(path, read), "");
      EXPECT_NE(std::find(contents.begin(), contents.end(), read), contents.end());
    }
  });
}

TEST_F(OwnObjects, OneThatIsHandedOnServesTheNextThread) {
  const VyrVar<VyrDifTransientStandard> standard(
      new VyrDifTransientStandard(ShippedFile(0), "Handed"));
  VyrAnnStandardXMLParser document;
  ASSERT_EQ(document.DecodeXML(ShippedFile(0), 1), 0);
  const std::string before = Answers(*standard);
  for (int i = 0; i < kThreads; ++i) {
    std::jthread([&] {
      EXPECT_EQ(Answers(*standard), before);
      EXPECT_EQ(document.AddValueWithPath(
                    "Root.Dimension:Thread" + std::to_string(i) + ":int:" + std::to_string(i), 1),
                0);
    });
  }
  EXPECT_EQ(document.GetValueWithPath("Root.Dimension.Thread3").View(), "3");
}

TEST_F(OwnObjects, TracesMayBeSwitchedMeanwhile) {
  VyrTrace* const channel = VyrTrace::Find("DftStdServs");
  ASSERT_NE(channel, nullptr);
  OnThreads([&](int number) {
    if (number == 0) {
      for (int i = 0; i < 100; ++i) channel->Switch(i % 2 == 0);
    } else {
      AnswersOfFile(number);
    }
  });
  channel->Switch(false);
}

}  // namespace
