#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <string>

#include "FolderSnapshot.h"
#include "ProcessRun.h"
#include "SaveScene.h"
#include "TemporaryFolder.h"

// Reading a standard is broken off, cut short or fails half way. What is read is the whole file, or
// it is refused; nothing is ever made of a part, and least of all an empty standard.

namespace {

/// A process reads a standard from a folder in which reading suffers, and saves it into another.
class ReadingFaults : public testing::TestWithParam<const char*> {
 protected:
  ProcessRun Run(const std::string& faults) const {
    return RunProcess(SaveCommand(GetParam(), source_, target_), {from_.Path(), faults});
  }
  void ExpectRefused(const std::string& faults) const {
    EXPECT_EQ(Run(faults).status, kNotRead) << faults;
    EXPECT_EQ(ContentOf(target_), kOldContent) << faults;
  }
  void ExpectWhole(const std::string& faults) const {
    const ProcessRun run = Run(faults);
    EXPECT_EQ(run.status, kSaved) << faults << run.message;
    EXPECT_EQ(ContentOf(target_), kNewContent) << faults;
    EXPECT_THAT(run.calls, testing::Contains("read").Times(testing::Ge(2)));
  }

  const TemporaryFolder from_;
  const TemporaryFolder to_;
  const std::string source_ = from_.Write("source.xml", kNewContent);
  const std::string target_ = to_.Write("target.xml", kOldContent);
};

std::string Reader(const testing::TestParamInfo<const char*>& how) {
  return how.param;
}
INSTANTIATE_TEST_SUITE_P(By, ReadingFaults, testing::Values("document", "converter", "timed"),
                         Reader);

TEST_P(ReadingFaults, NothingIsDoneWithAFileThatFailsAtOnceOrHalfWay) {
  for (const int error : {EIO, EISDIR, ENOMEM, ESTALE}) {
    ExpectRefused("read:1:" + Error(error));
    ExpectRefused("read:1:short,read:2:" + Error(error));
    ExpectRefused("read:1:short,read:2:short,read:3:" + Error(error));
  }
}

TEST_P(ReadingFaults, FailureAtTheEndIsOneToo) {
  // The file has been read but for its end, of which nothing is known yet.
  ExpectRefused("read:2:" + Error(EIO));
}

TEST_P(ReadingFaults, NothingIsDoneWithAFileWhoseStatusCannotBeRead) {
  ExpectRefused("fstat:1:" + Error(EIO));
  ExpectRefused("open-read:1:" + Error(EIO));
  ExpectRefused("open-read:1:" + Error(EACCES));
}

TEST_P(ReadingFaults, FileIsReadWholeThoughSignalsBreakReadingOff) {
  ExpectWhole("read:1:" + Error(EINTR));
  ExpectWhole("read:1:" + Error(EINTR) + ",read:2:" + Error(EINTR) +
              ",read:3:short,read:4:" + Error(EINTR));
}

TEST_P(ReadingFaults, FileIsReadWholeThoughItComesInPieces) {
  ExpectWhole("read:1:short");
  ExpectWhole("read:1:short,read:2:short,read:3:short,read:4:short");
}

class ShrinkingFile : public ReadingFaults {};
INSTANTIATE_TEST_SUITE_P(By, ShrinkingFile, testing::Values("document", "converter"), Reader);

TEST_P(ShrinkingFile, IsNoStandard) {
  ExpectRefused("read:1:nothing");
  ExpectRefused("read:1:short,read:2:nothing");
  ExpectRefused("read:1:short,read:2:short,read:3:nothing");
}

#ifdef HOL_HAS_TOOL
TEST(ReadingFaultsOfTheTool, AreToldAndNothingIsSaved) {
  const TemporaryFolder from;
  const TemporaryFolder to;
  const std::string source = from.Write("source.xml", kNewContent);
  const std::string target = to.Write("target.xml", kOldContent);
  for (const std::string fault : {"read:1:", "read:1:short,read:2:"}) {
    const ProcessRun run =
        RunProcess({BuiltProgram("holstd"), "upgrade", source, "-o", target, "-q"},
                   {from.Path(), fault + Error(EIO)});
    EXPECT_EQ(run.status, kNotRead) << fault;
    EXPECT_THAT(run.message, testing::HasSubstr(source)) << fault;
    EXPECT_THAT(run.message, testing::HasSubstr(TextOf(EIO))) << fault;
    EXPECT_EQ(std::count(run.message.begin(), run.message.end(), '\n'), 1) << run.message;
    EXPECT_EQ(ContentOf(target), kOldContent);
  }
}
#endif

}  // namespace
