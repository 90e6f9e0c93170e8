#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "FailingMemory.h"
#include "HostSettings.h"
#include "QuietDiagnostics.h"
#include "TemporaryFolder.h"
#include "VyrAnnStandardServices.h"
#include "VyrAnnStandardXMLParser.h"
#include "VyrDrwParseStandard.h"

// What is left when memory ran out, and whether the same may be asked again.

namespace {

const std::string kStandard =
    "<std:node xmlns:std='http://schemas.hol-standard.example/drafting/std' name='drafting'>"
    "<std:node name='Dimension'><std:node name='ParentStandard'><std:strval>JIS</std:strval>"
    "</std:node></std:node><std:node name='Version'><std:intval>210</std:intval></std:node>"
    "</std:node>";

/// Runs `work` again and again, each time with another of its requests failing; `check` is told
/// whether it threw, and `prepare` has all the memory that there is. Ends when no request fails any
/// more; the number of tries.
template <class Prepare, class Work, class Check>
std::size_t TryEachRequest(Prepare prepare, Work work, Check check) {
  for (std::size_t request = 1;; ++request) {
    prepare();
    bool hasFailed = false;
    bool hasThrown = false;
    {
      const FailingMemory memory(Failing::Once, request);
      try {
        work();
      } catch (const std::bad_alloc&) {
        hasThrown = true;
      }
      hasFailed = memory.HasFailed();
    }
    if (!hasFailed) return request;
    check(request, hasThrown);
  }
}

TEST(MemoryRanOut, WhileAStandardIsDecodedItsDocumentIsAnEmptyOne) {
  const QuietDiagnostics quiet;
  const TemporaryFolder folder;
  const std::string path = folder.Write("STD.xml", kStandard);
  VyrAnnStandardXMLParser empty;
  const int versionOfEmpty = empty.GetVersion();
  std::unique_ptr<VyrDrwParseStandard> standard;
  std::size_t withoutDocument = 0;
  const std::size_t tries = TryEachRequest(
      [&] { standard = std::make_unique<VyrDrwParseStandard>(path); }, [&] { standard->Decode(); },
      [&](std::size_t request, bool hasThrown) {
        EXPECT_FALSE(hasThrown) << request;
        if (standard->GetProblem().IsEmpty()) {
          EXPECT_EQ(standard->GetParentStandard(), "JIS") << request;
          return;
        }
        EXPECT_TRUE(TellsOfMemory(standard->GetProblem().text.View())) << request;
        EXPECT_FALSE(standard->GetProblem().isLasting) << request;
        EXPECT_EQ(standard->GetParentStandard(), "") << request;
        if (standard->GetVersion() == 0) {
          ++withoutDocument;  // not even an empty one could be made
          return;
        }
        EXPECT_EQ(standard->GetVersion(), versionOfEmpty) << request;
        const VyrAnnStandardXMLNode_var root(standard->GetDocument().GetNodeWithPath("Root"));
        ASSERT_TRUE(root) << request;
        EXPECT_EQ(root->GetNumOfNode(), 0) << request;
      });
  EXPECT_GT(tries, withoutDocument + 30);
}

TEST(MemoryRanOut, WhileAStandardIsOpenedItIsReadWhenItIsOpenedAgain) {
  const QuietDiagnostics quiet;
  const TemporaryFolder site;
  const TemporaryFolder work;
  site.Write("MINE.xml", kStandard);
  const EnvironmentVariable path("VYR_STANDARD_PATH", site.Path().string());
  const EnvironmentVariable output("WOB_ODT_OUT", work.Path().string());
  std::size_t failed = 0;
  TryEachRequest([] { VyrAnnStandardServices::ReleaseCachedDocument(); },
                 [] { const VyrAnnStandardServices services("MINE"); },
                 [&](std::size_t request, bool hasThrown) {
                   VyrAnnStandardServices again("MINE");
                   int version = 0;
                   EXPECT_EQ(again.GetVersion(version), S_OK) << request;
                   EXPECT_EQ(version, 210) << request;
                   failed += hasThrown ? 0 : 1;
                 });
  EXPECT_GT(failed, 50u);
  VyrAnnStandardServices::ReleaseCachedDocument();
}

}  // namespace
