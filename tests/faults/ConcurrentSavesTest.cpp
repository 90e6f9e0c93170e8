#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <iostream>
#include <memory>
#include <set>

#include "FolderSnapshot.h"
#include "ProcessRun.h"
#include "SaveScene.h"
#include "VyrFiles.h"

// Several processes save the same file at once, and somebody reads it all the while.

namespace {

/// The shipped standard with a mark of its own and a length of its own.
std::string Version(int number) {
  const std::string first = "<std:strval";
  std::string content = kNewContent;
  const std::size_t begin = content.find('>', content.find(first)) + 1;
  content.insert(begin, std::string(static_cast<std::size_t>(number) + 1, 'v'));
  return content;
}

void ExpectOneVersionWhole(int writers, int times) {
  const TemporaryFolder sources;
  const TemporaryFolder folder;
  const std::string path = folder.Write("target.xml", kOldContent);
  ASSERT_EQ(::chmod(path.c_str(), 0640), 0);
  std::set<std::string> versions;
  std::vector<std::unique_ptr<Process>> processes;
  for (int i = 0; i < writers; ++i) {
    versions.insert(Version(i));
    const std::string source = sources.Write(std::to_string(i) + ".xml", Version(i));
    processes.push_back(std::make_unique<Process>(
        SaveCommand("document", source, path, {"--times", std::to_string(times)})));
  }
  ASSERT_EQ(versions.size(), static_cast<std::size_t>(writers));
  int reads = 0;
  std::set<std::string> seen;
  const auto hasEnded = [](const auto& process) { return process->HasEnded(); };
  while (!std::all_of(processes.begin(), processes.end(), hasEnded)) {
    std::string content;
    ASSERT_EQ(VyrReadFile(path, content), "");
    ASSERT_TRUE(content == kOldContent || versions.contains(content)) << "read " << reads;
    seen.insert(std::move(content));
    ++reads;
  }
  for (const auto& process : processes) {
    const ProcessRun run = process->Wait();
    EXPECT_EQ(run.status, kSaved) << run.message;
  }
  const FolderSnapshot now = SnapshotOf(folder.Path());
  ASSERT_EQ(now.size(), 1u) << testing::PrintToString(now);
  EXPECT_TRUE(versions.contains(now.at("target.xml").content));
  EXPECT_EQ(now.at("target.xml").mode & 07777, 0640u);
  std::cout << "saving: " << writers << " processes saved one file " << writers * times
            << " times, " << reads << " reads saw " << seen.size()
            << " different versions, each of them whole" << std::endl;
}

TEST(ConcurrentSaves, OfTwoProcessesLeaveOneOfTheTwoWhole) {
  ExpectOneVersionWhole(2, 60);
}

TEST(ConcurrentSaves, OfEightProcessesLeaveOneOfTheEightWhole) {
  ExpectOneVersionWhole(8, 15);
}

}  // namespace
