#include <filesystem>
#include <map>
#include <ostream>

#include "Sanitizers.h"
#include "ToolRun.h"

// Memory that runs out at any moment: every command gives its whole answer, or one refusal and
// nothing that is wrong.

namespace {

namespace fs = std::filesystem;

const unsigned long kSteps = kIsSanitized ? 3 : 12;

struct Command {
  const char* name;
  std::vector<std::string> arguments;  ///< "@" stands for the folder with the files
  bool isOfMany = false;               ///< each file is answered, or refused, for itself
};

std::ostream& operator<<(std::ostream& out, const Command& command) {
  return out << command.name;
}

const Command kCommands[] = {
    {"info", {"info", "@/a.xml"}},
    {"info --json", {"info", "--json", "@/a.xml"}, true},
    {"get", {"get", "@/a.xml", "Dimension.DIMLTail"}},
    {"get, misspelt", {"get", "@/a.xml", "S.zz"}},
    {"get, a name with a quote", {"get", "@/a.xml", "DIMLTail' or @name='Sizes"}},
    {"get --all --json", {"get", "@/a.xml", "Name", "--all", "--json"}},
    {"get --type", {"get", "@/a.xml", "Sizes", "--type"}},
    {"tree", {"tree", "@/a.xml"}},
    {"explain", {"explain", "@/a.xml", "Dimension.DIMLTail"}},
    {"diff", {"diff", "@/a.xml", "@/old.xml"}},
    {"diff, the same", {"diff", "@/a.xml", "@/a.xml"}},
    {"sheets", {"sheets", "@/a.xml"}},
    {"styles", {"styles", "@/a.xml"}},
    {"styles of a type", {"styles", "@/a.xml", "Sheet", "--json"}},
    {"check", {"check", "@/a.xml"}},
    {"symbols", {"symbols"}},
    {"standards", {"standards"}, true},
    {"complete", {"complete", "--", "holstd get @/a.xml Dimension.DIML"}},
    {"edit", {"edit", "@/a.xml", "-o", "@/b.xml", "-c", "change Root.Dimension.DIMLTail:3.0"}},
    {"edit --in-place",
     {"edit", "@/a.xml", "--in-place", "-c", "change Root.Dimension.DIMLTail:3.0"}},
    {"restore", {"restore", "@/kept.xml"}},
    {"upgrade", {"upgrade", "@/old.xml", "-o", "@/b.xml"}},
    {"upgrade --in-place", {"upgrade", "@/old.xml", "--in-place"}},
    {"upgrade --dry-run", {"upgrade", "@/old.xml", "--dry-run"}},
    {"upgrade --dry-run --json", {"upgrade", "@/old.xml", "--dry-run", "--json"}, true},
    {"upgrade of many", {"upgrade", "@/old.xml", "@/a.xml", "--dry-run", "-j", "1"}, true},
    {"convert", {"convert", "@/a.txt", "-o", "@/b.xml", "--to", "1"}},
};

using Files = std::map<std::string, std::string>;

/// A folder that is filled anew for every run, so that all runs have the same arguments.
class Scene {
 public:
  explicit Scene(const std::string& standard)
      : files_({{"a.xml", standard},
                {"old.xml", Replaced(standard, "<std:intval>220<", "<std:intval>210<")},
                {"kept.xml", SampleStandard()},
                {"kept.xml.bak", standard},
                {"a.txt", ReadWholeFile(LegacyText("ISO"))}}) {}

  struct End {
    ToolRun run;
    Files files;
  };

  End Run(const Command& command, const ToolSurroundings& with) const {
    for (const auto& entry : fs::directory_iterator(folder_.Path())) fs::remove_all(entry);
    for (const auto& [name, content] : files_) folder_.Write(name, content);
    std::vector<std::string> arguments = command.arguments;
    for (std::string& argument : arguments) {
      const std::size_t at = argument.find('@');
      const bool isFile = at != std::string::npos && argument.find("@/") == at;
      if (isFile) argument.replace(at, 1, folder_.Path().string());
    }
    End end = {RunTool(arguments, with), {}};
    for (const auto& entry : fs::directory_iterator(folder_.Path())) {
      end.files[entry.path().filename()] = ReadWholeFile(entry.path().string());
    }
    return end;
  }

  const Files& Before() const { return files_; }

 private:
  TemporaryFolder folder_;
  Files files_;
};

bool IsSame(const Scene::End& a, const Scene::End& b) {
  return a.run.status == b.run.status && a.run.out == b.run.out && a.run.err == b.run.err &&
         a.files == b.files;
}

/// Whether every line says that memory ran out.
bool IsRefusal(std::string talk, bool isOfMany) {
  constexpr std::string_view end =
      "needs more memory than there is; end other programs, or split the file";
  std::size_t lines = 0;
  for (std::size_t size; (size = talk.find('\n')) != std::string::npos; talk.erase(0, size + 1)) {
    const std::string line = talk.substr(0, size);
    const bool isOfBatch = isOfMany && line.find(" standards: ") != std::string::npos;
    if (!line.starts_with("holstd: ") && !isOfBatch) return false;
    if (!line.ends_with(end) && !isOfBatch) return false;
    lines += isOfBatch ? 0 : 1;
  }
  return talk.empty() && (isOfMany ? lines >= 1 : lines == 1);
}

/// The whole answer, or a refusal that leaves nothing wrong behind.
testing::AssertionResult IsWholeOrRefused(const Scene::End& end, const Scene::End& whole,
                                          const Scene& scene, bool isOfMany) {
  if (IsSame(end, whole)) return testing::AssertionSuccess();
  const bool isRefused = (end.run.status == 3 || end.run.status == 4) &&
                         IsRefusal(end.run.err, isOfMany) &&
                         (isOfMany || whole.run.out.starts_with(end.run.out));
  const bool isUnhurt = end.files == scene.Before() || end.files == whole.files;
  if (isRefused && isUnhurt) return testing::AssertionSuccess();
  testing::AssertionResult wrong = testing::AssertionFailure();
  wrong << "status " << end.run.status << ", " << end.run.out.size() << " bytes of output, "
        << end.run.err;
  for (const auto& [name, content] : end.files) wrong << name << " " << content.size() << "\n";
  return wrong;
}

class ShortMemory : public testing::TestWithParam<Command> {};

TEST_P(ShortMemory, WhicheverRequestFailsTheAnswerIsWholeOrARefusal) {
  const Command& command = GetParam();
  const Scene scene(WithSheets(SampleStandard()));
  const TemporaryFolder folder;
  ToolSurroundings with;
  with.environment = {{"LD_PRELOAD", HOL_FAILING_REQUESTS},
                      {"ASAN_OPTIONS", "verify_asan_link_order=0:detect_leaks=0:exitcode=99"},
                      {"HOL_REQUESTS_LOG", folder / "requests"}};
  const Scene::End whole = scene.Run(command, with);
  ASSERT_LE(whole.run.status, 1) << whole.run.err;
  const unsigned long requests = std::stoul(ReadWholeFile(folder / "requests"));
  ASSERT_GT(requests, 100u);
  with.environment.back() = {"HOL_FAILING_REQUEST", ""};
  std::size_t refused = 0;
  // Each of the last ones, and ever fewer of those before.
  for (unsigned long back = 1; back <= requests; back += 1 + back / kSteps) {
    with.environment[2].second = std::to_string(requests + 1 - back);
    const Scene::End end = scene.Run(command, with);
    EXPECT_TRUE(IsWholeOrRefused(end, whole, scene, command.isOfMany))
        << "request " << with.environment[2].second << " of " << requests;
    refused += IsSame(end, whole) ? 0 : 1;
  }
  EXPECT_GT(refused, 0u);
}

/// A standard of a megabyte and a half.
std::string LargeStandard() {
  std::string standard = WithSheets(SampleStandard());
  std::string parameters;
  for (int i = 0; i < 15'000; ++i) {
    parameters += Parameter("Parameter" + std::to_string(i), "floatval", "1.5");
  }
  return standard.insert(standard.rfind("</std:node>"), parameters);
}

constexpr rlim_t kMegabyte = rlim_t{1} << 20;

/// The least memory, in megabytes, with which the tool can be started at all.
rlim_t LeastToStart() {
  rlim_t least = 8;
  while (RunTool({"--version"}, {.mostMemory = least * kMegabyte}).status != 0) ++least;
  return least;
}

TEST_P(ShortMemory, WhateverTheLimitTheAnswerIsWholeOrARefusal) {
  if (kIsSanitized) GTEST_SKIP() << "a sanitizer needs more memory than any limit leaves";
  static const rlim_t leastToStart = LeastToStart();
  static const Scene scene(LargeStandard());
  const Command& command = GetParam();
  const Scene::End whole = scene.Run(command, {});
  ASSERT_LE(whole.run.status, 1) << whole.run.err;
  int enough = 0;
  for (rlim_t limit = leastToStart; enough < 2; limit += 3) {
    ASSERT_LT(limit, 1000u);
    const Scene::End end = scene.Run(command, {.mostMemory = limit * kMegabyte});
    EXPECT_TRUE(IsWholeOrRefused(end, whole, scene, command.isOfMany)) << limit << " MB";
    enough = IsSame(end, whole) ? enough + 1 : 0;
  }
}

INSTANTIATE_TEST_SUITE_P(Commands, ShortMemory, testing::ValuesIn(kCommands));

}  // namespace
