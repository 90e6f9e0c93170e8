#include <sys/stat.h>

#include <chrono>
#include <csignal>
#include <iterator>
#include <set>
#include <sstream>
#include <thread>

#include "PseudoTerminal.h"
#include "ToolRun.h"

using testing::HasSubstr;
using testing::Not;

namespace {

namespace fs = std::filesystem;

/// Old standards in a folder. All are made of one, so that a test need not
/// convert each.
class UpgradeBatch : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    const TemporaryFolder made;
    const std::string file = made / "old.xml";
    ASSERT_EQ(RunTool({"convert", LegacyText("ISO"), "-o", file, "--to", "200"}).status, 0);
    Old() = ReadWholeFile(file);
  }
  static std::string& Old() {
    static std::string text;
    return text;
  }
  /// An old standard that no other is the same as.
  static std::string OldWith(const std::string& owner) {
    std::string text = Old();
    return text.insert(text.rfind("</std:node>"), Parameter("Owner", "strval", owner));
  }

  std::string WriteOld(const std::string& name) const { return folder.Write(name, OldWith(name)); }
  /// "in/0.xml" and so on.
  std::string WriteMany(int count) const {
    fs::create_directory(folder / "in");
    for (int i = 0; i < count; ++i) WriteOld("in/" + std::to_string(i) + ".xml");
    return folder / "in";
  }
  /// A small current standard.
  std::string WriteCurrent(int number) const {
    return folder.Write(std::to_string(number) + ".xml", SampleStandard());
  }
  static int VersionOf(const std::string& file) {
    return ParsedJson(RunTool({"info", file, "--json"}))[0]["version"];
  }
  std::set<std::string> NamesIn(const std::string& name) const {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder / name)) {
      names.insert(entry.path().filename());
    }
    return names;
  }

  const TemporaryFolder folder;
};

/// The tool while it runs.
class RunningTool {
 public:
  explicit RunningTool(const std::vector<std::string>& arguments, bool isReaderGone = false)
      : process_(::fork()) {
    if (process_ == 0) {
      tool_run::BecomeTool(arguments, folder_,
                           {.inputFile = "/dev/null",
                            .isReaderGone = isReaderGone,
                            .environment = {{"TMPDIR", folder_.Path()}}});
    }
  }
  pid_t Process() const { return process_; }
  /// The processes that it has made.
  std::vector<pid_t> Children() const {
    const std::string process = std::to_string(process_);
    std::istringstream text(ReadWholeFile("/proc/" + process + "/task/" + process + "/children"));
    return {std::istream_iterator<pid_t>(text), {}};
  }
  ToolRun End() const {
    int status = 0;
    ::waitpid(process_, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status),
            ReadWholeFile(folder_ / "out"), ReadWholeFile(folder_ / "err")};
  }

 private:
  const TemporaryFolder folder_;
  const pid_t process_;
};

/// A pipe in a file's place: who reads it waits as long as this object lives.
class HeldPipe {
 public:
  explicit HeldPipe(std::string path) : path_(std::move(path)) {
    EXPECT_EQ(::mkfifo(path_.c_str(), 0600), 0);
  }
  HeldPipe(HeldPipe&& other) noexcept
      : path_(std::exchange(other.path_, "")), end_(std::exchange(other.end_, -1)) {}
  HeldPipe& operator=(HeldPipe&&) = delete;
  ~HeldPipe() {
    if (end_ >= 0) ::close(end_);
    if (!path_.empty()) fs::remove(path_);
  }
  const std::string& Path() const { return path_; }
  /// False when nobody has come to read it after a long time.
  bool AwaitReader() {
    for (int i = 0; i < 6000 && end_ < 0; ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
      end_ = ::open(path_.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    }
    return end_ >= 0;
  }

 private:
  std::string path_;
  int end_ = -1;
};

/// False when it has not come to be after a long time.
bool AwaitFile(const std::string& file) {
  for (int i = 0; i < 60000 && !fs::exists(file); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return fs::exists(file);
}

bool IsGone(pid_t process) {
  return ::kill(process, 0) != 0 && errno == ESRCH;
}

}  // namespace

TEST_F(UpgradeBatch, AFolderStandsForTheStandardsInIt) {
  WriteMany(3);
  fs::create_directory(folder / "in/below");
  WriteOld("in/below/deep.xml");
  fs::create_directory(folder / "in/folder.xml");
  for (const char* name : {"a.xml.bak", "a.xml.bak.1", "a.xml.undone", "a_xml.12-1.tmp", "a.txt",
                           ".hidden.xml", "a.XML"}) {
    WriteOld(std::string("in/") + name);
  }
  const ToolRun run = RunTool({"upgrade", folder / "in", "-d", folder / "out"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(NamesIn("out"), (std::set<std::string>{"0.xml", "1.xml", "2.xml"}));
  for (const char* name : {"out/0.xml", "out/1.xml", "out/2.xml"}) {
    EXPECT_EQ(VersionOf(folder / name), 220);
  }
}

TEST_F(UpgradeBatch, ALinkInAFolderIsLeftOutAndTold) {
  WriteMany(2);
  const std::string other = WriteOld("other.xml");
  fs::create_symlink("../other.xml", folder / "in/link.xml");
  const ToolRun run = RunTool({"upgrade", folder / "in", "--in-place", "-q"});
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.err, HasSubstr("link.xml: warning: left out"));
  EXPECT_EQ(VersionOf(other), 200);
}

TEST_F(UpgradeBatch, EveryNumberOfJobsGivesTheSameAsFileByFile) {
  WriteMany(7);
  folder.Write("in/3.xml", "<std:node");
  std::vector<ToolRun> runs;
  for (const char* jobs : {"1", "2", "7", "20"}) {
    const std::string out = folder / (std::string("out") + jobs);
    runs.push_back(RunTool({"upgrade", folder / "in", "-d", out, "--jobs", jobs}));
    EXPECT_EQ(runs.back().status, 3);
    EXPECT_EQ(runs.back().out, runs.front().out);
    EXPECT_EQ(runs.back().err, runs.front().err);
    for (int i = 0; i < 7; ++i) {
      if (i == 3) continue;
      const std::string name = std::to_string(i) + ".xml";
      ASSERT_EQ(RunTool({"upgrade", folder / ("in/" + name), "-o", folder / "one.xml"}).status, 0);
      EXPECT_EQ(ReadWholeFile(out + "/" + name), ReadWholeFile(folder / "one.xml"));
    }
  }
}

TEST_F(UpgradeBatch, MessagesComeInTheOrderOfTheFiles) {
  std::vector<std::string> arguments = {"upgrade", "-d", folder / "out", "--jobs", "4"};
  for (int i = 0; i < 12; ++i) {
    const std::string name = std::to_string(i) + ".xml";
    arguments.push_back(i % 3 == 0 ? folder.Write(name, "<bad") : WriteOld(name));
  }
  const ToolRun run = RunTool(arguments);
  EXPECT_EQ(run.status, 3);
  std::size_t at = 0;
  for (const char* name : {"/0.xml:1: ", "/3.xml:1: ", "/6.xml:1: ", "/9.xml:1: "}) {
    const std::size_t next = run.err.find(name, at);
    ASSERT_NE(next, std::string::npos) << name << "\n" << run.err;
    at = next;
  }
}

TEST_F(UpgradeBatch, TheTableTellsWhatBecameOfEachAndTheStatusIsTheGravest) {
  const std::string old = WriteOld("a.xml");
  const std::string current = folder.Write("b.xml", ReadWholeFile(HOL_STANDARDS "/ISO.xml"));
  const std::string bad = folder.Write("c.xml", "");
  const std::string newer = folder.Write("d.xml", Document(Parameter("Version", "intval", "230")));
  const ToolRun run = RunTool({"upgrade", old, current, bad, newer, "--in-place"});
  EXPECT_EQ(run.status, 6);
  const auto row = [&](const std::string& file, const std::string& rest) {
    const std::size_t width = current.size();
    EXPECT_THAT(run.out, HasSubstr(file + std::string(width - file.size(), ' ') + rest + "\n"));
  };
  row("FILE", "  FROM  TO   RESULT");
  row(old, "  200   220  written; what it held is in " + old + ".bak");
  row(current, "  220   220  unchanged");
  row(bad, "  -     -    failed");
  row(newer, "  -     -    failed");
  EXPECT_THAT(run.err, HasSubstr("4 standards: 1 written, 1 unchanged, 2 failed\n"));
  const ToolRun quiet = RunTool({"upgrade", old, current, "--in-place", "-q"});
  EXPECT_THAT(quiet.out, HasSubstr("FILE")) << "a table is data, not talk";
  EXPECT_EQ(quiet.err, "");
}

TEST_F(UpgradeBatch, WhetherThereIsATableGoesByWhatWasNamed) {
  const std::string file = WriteMany(1) + "/0.xml";
  const std::string other = WriteOld("other.xml");
  const std::vector<std::pair<std::vector<std::string>, bool>> cases = {
      {{file}, false}, {{folder / "in"}, true}, {{file, other}, true}};
  for (const auto& [named, hasTable] : cases) {
    for (const auto& where :
         std::vector<std::vector<std::string>>{{"-d", folder / "out"}, {"--dry-run"}}) {
      std::vector<std::string> arguments = {"upgrade"};
      arguments.insert(arguments.end(), named.begin(), named.end());
      arguments.insert(arguments.end(), where.begin(), where.end());
      SCOPED_TRACE(testing::PrintToString(arguments));
      const ToolRun run = RunTool(arguments);
      EXPECT_EQ(run.out.find("FROM  TO") != std::string::npos, hasTable);
      EXPECT_EQ(
          run.err.find(named.size() == 1 ? "1 standard: " : "2 standards: ") != std::string::npos,
          hasTable);
    }
  }
}

TEST_F(UpgradeBatch, TheReportHasAnEntryForEveryFileInTheirOrder) {
  const std::string old = WriteOld("a.xml");
  const std::string current = folder.Write("b.xml", ReadWholeFile(HOL_STANDARDS "/ISO.xml"));
  const std::string bad = folder.Write("c.xml", "<bad");
  const ToolRun run =
      RunTool({"upgrade", old, bad, current, "--in-place", "--json", "--jobs", "3"});
  EXPECT_EQ(run.status, 3);
  const auto json = ParsedJson(run);
  ASSERT_EQ(json.size(), 3u) << run.out;
  EXPECT_EQ(json[0]["file"], old);
  EXPECT_EQ(json[0]["result"], "written");
  EXPECT_EQ(json[0]["status"], 0);
  EXPECT_EQ(json[0]["from"], 200);
  EXPECT_EQ(json[0]["to"], 220);
  EXPECT_EQ(json[0]["output"], old);
  EXPECT_EQ(json[0]["backup"], old + ".bak");
  EXPECT_GT(json[0]["steps"].size(), 1u);
  EXPECT_EQ(json[1]["file"], bad);
  EXPECT_EQ(json[1]["result"], "failed");
  EXPECT_EQ(json[1]["status"], 3);
  EXPECT_EQ(json[1]["error"]["file"], bad);
  EXPECT_EQ(json[1]["error"]["line"], 1);
  EXPECT_NE(json[1]["error"]["text"], "");
  EXPECT_FALSE(json[1].contains("output"));
  EXPECT_EQ(json[2]["result"], "unchanged");
  EXPECT_FALSE(json[2].contains("backup"));
}

TEST_F(UpgradeBatch, DryRunWritesNothingAndTellsOfEach) {
  WriteMany(3);
  const std::string current = folder.Write("b.xml", ReadWholeFile(HOL_STANDARDS "/ISO.xml"));
  const ToolRun run = RunTool({"upgrade", folder / "in", current, "--dry-run", "--jobs", "2"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, HasSubstr("in/2.xml: "));
  EXPECT_THAT(run.out, HasSubstr("  ~ Root.Version  int 200 -> int 210\n"));
  EXPECT_THAT(run.err, HasSubstr("4 standards: 3 pending, 1 current\n"));
  for (int i = 0; i < 3; ++i) {
    const std::string name = std::to_string(i) + ".xml";
    EXPECT_EQ(ReadWholeFile(folder / ("in/" + name)), OldWith("in/" + name));
  }
  EXPECT_EQ(NamesIn("in").size(), 3u);
  EXPECT_EQ(RunTool({"upgrade", current, current, "--dry-run"}).status, 0);
}

TEST_F(UpgradeBatch, ResultsThatWouldBeOneFileAreRefusedBeforeAnythingIsWritten) {
  const std::string file = WriteOld("a.xml");
  fs::create_directory(folder / "sub");
  const std::string other = WriteOld("sub/a.xml");
  fs::create_symlink("a.xml", folder / "link.xml");
  fs::create_directory(folder / "out");
  fs::create_symlink("out", folder / "same");
  const std::vector<std::vector<std::string>> cases = {
      {"upgrade", file, other, "-d", folder / "out"},
      {"upgrade", file, file, "--in-place"},
      {"upgrade", file, folder / "sub/../a.xml", "--in-place"},
      {"upgrade", file, folder / "link.xml", "--in-place"},
      {"upgrade", folder.Path().string(), file, "--in-place", "-q"},
  };
  for (const auto& arguments : cases) {
    SCOPED_TRACE(testing::PrintToString(arguments));
    const ToolRun run = RunTool(arguments);
    EXPECT_EQ(run.status, 5);
    EXPECT_THAT(run.err, HasSubstr(".xml: would hold the results of both "));
    EXPECT_EQ(ReadWholeFile(file), OldWith("a.xml"));
    EXPECT_EQ(ReadWholeFile(other), OldWith("sub/a.xml"));
    EXPECT_TRUE(fs::is_empty(folder / "out"));
  }
}

TEST_F(UpgradeBatch, WhatItDoesNotUnderstandIsUsage) {
  const std::string in = WriteMany(2);
  const std::string file = in + "/0.xml";
  const std::vector<std::vector<std::string>> cases = {
      {"upgrade", in, "-o", folder / "new.xml"},
      {"upgrade", in, "-d", "out", "--jobs", "0"},
      {"upgrade", in, "-d", "out", "--jobs", "-1"},
      {"upgrade", in, "-d", "out", "--jobs", "two"},
      {"upgrade", in, "-d", "out", "--jobs", "100000"},
      {"upgrade", in, "--in-place", "-d", "out"},
      {"upgrade", "-", "-", "--dry-run"},
  };
  for (const auto& arguments : cases) {
    ExpectFailure(RunTool(arguments), 2, {});
    EXPECT_EQ(ReadWholeFile(file), OldWith("in/0.xml"));
  }
}

TEST_F(UpgradeBatch, AFolderWithoutStandardsIsToldAndStopsNoOther) {
  fs::create_directory(folder / "empty");
  const std::string file = WriteOld("a.xml");
  ExpectFailure(RunTool({"upgrade", folder / "empty", "--in-place"}), 1,
                {"empty: holds no standard"});
  EXPECT_EQ(RunTool({"upgrade", folder / "empty", file, "--in-place"}).status, 1);
  EXPECT_EQ(VersionOf(file), 220);
  EXPECT_EQ(RunTool({"upgrade", folder / "missing", file, "--in-place"}).status, 3);
}

TEST_F(UpgradeBatch, InPlaceKeepsABackupOfEach) {
  const std::string in = WriteMany(4);
  EXPECT_EQ(RunTool({"upgrade", in, "--in-place", "--jobs", "4"}).status, 0);
  EXPECT_EQ(NamesIn("in").size(), 8u);
  EXPECT_EQ(RunTool({"upgrade", in, "--in-place", "--jobs", "4"}).status, 0);
  EXPECT_EQ(NamesIn("in").size(), 8u);
  for (int i = 0; i < 4; ++i) {
    const std::string name = "in/" + std::to_string(i) + ".xml";
    EXPECT_EQ(RunTool({"restore", folder / name}).status, 0);
    EXPECT_EQ(ReadWholeFile(folder / name), OldWith(name));
  }
}

TEST_F(UpgradeBatch, AProcessThatDiesIsAFailureOfItsFileAndTheOthersGoOn) {
  const std::string first = WriteOld("a.xml");
  const std::string last = WriteOld("c.xml");
  HeldPipe pipe(folder / "b.xml");
  const RunningTool tool(
      {"upgrade", first, pipe.Path(), last, "-d", folder / "out", "--jobs", "1", "--json"});
  ASSERT_TRUE(pipe.AwaitReader());
  ASSERT_EQ(tool.Children().size(), 1u);
  ::kill(tool.Children().front(), SIGKILL);
  const ToolRun run = tool.End();
  ExpectFailure({run.status, "", run.err.substr(run.err.find("holstd: "))}, 3,
                {"b.xml: internal error", "signal 9"});
  const auto json = ParsedJson(run);
  ASSERT_EQ(json.size(), 3u) << run.out;
  EXPECT_EQ(json[0]["result"], "written");
  EXPECT_EQ(json[1]["result"], "failed");
  EXPECT_EQ(json[2]["result"], "written");
  EXPECT_EQ(NamesIn("out"), (std::set<std::string>{"a.xml", "c.xml"}));
}

TEST_F(UpgradeBatch, ASignalEndsAllProcessesAndLeavesNothingHalfWritten) {
  for (const int signal : {SIGINT, SIGTERM}) {
    SCOPED_TRACE(signal);
    const std::string first = WriteOld("a.xml");
    std::vector<HeldPipe> pipes;
    for (const char* name : {"b.xml", "c.xml", "d.xml"}) pipes.emplace_back(folder / name);
    const RunningTool tool({"upgrade", first, pipes[0].Path(), pipes[1].Path(), pipes[2].Path(),
                            "-d", folder / "out", "--jobs", "3"});
    for (HeldPipe& pipe : pipes) ASSERT_TRUE(pipe.AwaitReader());
    const std::vector<pid_t> children = tool.Children();
    EXPECT_EQ(children.size(), 3u);
    ::kill(tool.Process(), signal);
    EXPECT_EQ(tool.End().status, -signal);
    for (const pid_t child : children) EXPECT_TRUE(IsGone(child));
    EXPECT_EQ(NamesIn("out"), (std::set<std::string>{"a.xml"}));
    EXPECT_EQ(VersionOf(folder / "out/a.xml"), 220);
  }
}

TEST_F(UpgradeBatch, AnInterruptedOneTellsWhatBecameOfEach) {
  // The first is still being read while the others are done, and so is one when the signal comes.
  const int count = 9;
  for (const int done : {1, 4, 8}) {
    for (const bool json : {false, true}) {
      SCOPED_TRACE(std::to_string(done) + (json ? " json" : ""));
      const TemporaryFolder made;
      HeldPipe pipe(made / "0.xml");
      std::vector<std::string> arguments = {"upgrade", "-d", made / "out",
                                            "--jobs",  "3",  pipe.Path()};
      for (int i = 1; i < count; ++i) {
        arguments.push_back(made.Write(std::to_string(i) + ".xml", OldWith("")));
      }
      if (json) arguments.push_back("--json");
      const RunningTool tool(arguments);
      ASSERT_TRUE(pipe.AwaitReader());
      ASSERT_TRUE(AwaitFile(made / ("out/" + std::to_string(done) + ".xml")));
      ::kill(tool.Process(), SIGTERM);
      const ToolRun run = tool.End();
      EXPECT_EQ(run.status, -SIGTERM);
      int written = 0;
      for (int i = 0; i < count; ++i) {
        const std::string name = std::to_string(i) + ".xml";
        const bool isWritten = fs::exists(made / ("out/" + name));
        written += isWritten ? 1 : 0;
        if (json) {
          const auto report = ParsedJson(run);
          ASSERT_EQ(report.size(), static_cast<std::size_t>(count)) << run.out;
          EXPECT_EQ(report[i]["result"], isWritten ? "written" : "not begun") << name;
          EXPECT_EQ(report[i]["status"], isWritten ? 0 : 4) << name;
        } else {
          const std::string row = isWritten ? "  200   220  written\n" : "  -     -    not begun\n";
          EXPECT_THAT(run.out, HasSubstr(name + row));
        }
      }
      EXPECT_GE(written, 1);
      EXPECT_EQ(run.err, "interrupted; 9 standards: " + std::to_string(written) + " written, " +
                             std::to_string(count - written) + " not begun\n");
    }
  }
}

TEST_F(UpgradeBatch, AnInterruptedPipelineTellsTheCountsAndEndsByTheSignal) {
  const std::string first = WriteOld("a.xml");
  HeldPipe pipe(folder / "b.xml");
  const RunningTool tool({"upgrade", first, pipe.Path(), "-d", folder / "out", "--jobs", "1"},
                         true);
  ASSERT_TRUE(pipe.AwaitReader());
  ::kill(tool.Process(), SIGINT);
  const ToolRun run = tool.End();
  EXPECT_EQ(run.status, -SIGINT);
  EXPECT_EQ(run.err, "interrupted; 2 standards: 1 written, 1 not begun\n");
}

TEST_F(UpgradeBatch, AReportThatNobodyReadsDoesNotHideTheCounts) {
  for (const char* form : {"--quiet", "--json"}) {
    const ToolRun run =
        RunTool({"upgrade", WriteMany(3), "-d", folder / form, form}, {.isReaderGone = true});
    EXPECT_EQ(run.status, -SIGPIPE);
    const bool isTold = run.err.find("3 standards: 3 written") != std::string::npos;
    EXPECT_EQ(isTold, form == std::string_view("--json")) << run.err;
  }
}

TEST_F(UpgradeBatch, ThePipeThatNobodyReadsEndsIt) {
  const std::string in = WriteMany(5);
  const ToolRun run = RunTool({"upgrade", in, "--dry-run", "--jobs", "2"}, {.isReaderGone = true});
  EXPECT_EQ(run.status, -SIGPIPE);
  EXPECT_EQ(run.err.find("standard output"), std::string::npos);
}

TEST_F(UpgradeBatch, ABarIsShownOnATerminalForALongBatchOnly) {
  struct {
    int files;
    std::vector<std::string> options;
    std::string terminal;
    bool hasBar;
  } const cases[] = {
      {20, {}, "xterm", true},
      {19, {}, "xterm", false},
      {20, {"-q"}, "xterm", false},
      {20, {}, "dumb", false},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(testing::PrintToString(test.files) + " " + test.terminal);
    const PseudoTerminal terminal;
    ASSERT_TRUE(terminal.IsOpen());
    std::vector<std::string> arguments = {"upgrade", "-d", folder / "out"};
    for (int i = 0; i < test.files; ++i) arguments.push_back(WriteCurrent(i));
    arguments.insert(arguments.end(), test.options.begin(), test.options.end());
    EXPECT_EQ(
        RunTool(arguments, {.talkFile = terminal.Path(), .environment = {{"TERM", test.terminal}}})
            .status,
        0);
    const std::string screen = terminal.Read();
    const bool hasBar = screen.find("] 20 of 20\r") != std::string::npos;
    EXPECT_EQ(hasBar, test.hasBar) << screen;
    EXPECT_EQ(screen.find("[#") != std::string::npos, test.hasBar);
  }
}

TEST_F(UpgradeBatch, NoBarWhereThereIsNoTerminal) {
  std::vector<std::string> arguments = {"upgrade", "-d", folder / "out"};
  for (int i = 0; i < 25; ++i) arguments.push_back(WriteCurrent(i));
  const ToolRun run = RunTool(arguments, {.environment = {{"TERM", "xterm"}}});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "25 standards: 25 written\n");
}

TEST_F(UpgradeBatch, APipeIsNotReplacedAndNobodyWaitsForIt) {
  ASSERT_EQ(::mkfifo((folder / "pipe.xml").c_str(), 0600), 0);
  ExpectFailure(RunTool({"upgrade", folder / "pipe.xml", "--in-place"}), 4, {"not a regular file"});
}
