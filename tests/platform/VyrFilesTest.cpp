#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <set>
#include <string>
#include <thread>

#include "TemporaryFolder.h"
#include "VyrFiles.h"

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

std::vector<std::string> NamesIn(const fs::path& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) names.push_back(entry.path().filename());
  return names;
}

mode_t ModeOf(const std::string& path) {
  struct stat status {};
  EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
  return status.st_mode;
}

// --- Paths ---------------------------------------------------------------------------------------

TEST(Files, PathWithBackslashesIsReadWithSeparatorsWhenTheFolderExists) {
  const TemporaryFolder folder;
  const std::string root = folder.Path();
  folder.Write("there.xml", "");
  fs::create_directory(folder / "sub");
  struct {
    std::string path;
    std::string native;
  } const cases[] = {
      {root + "/there.xml", root + "/there.xml"},
      {root + "\\there.xml", root + "/there.xml"},
      {root + "\\new.xml", root + "/new.xml"},
      {root + "/sub\\new.xml", root + "/sub/new.xml"},
      {root + "\\sub\\new.xml", root + "/sub/new.xml"},
      {root + "/none\\new.xml", root + "/none\\new.xml"},
      {root + "/there.xml\\new.xml", root + "/there.xml\\new.xml"},
      {"new.xml", "new.xml"},
      {".\\new.xml", "./new.xml"},
      {"", ""},
  };
  for (const auto& test : cases) EXPECT_EQ(VyrNativePath(test.path), test.native);
}

TEST(Files, LiteralNameWithABackslashComesFirst) {
  const TemporaryFolder folder;
  fs::create_directory(folder / "sub");
  folder.Write("sub/file", "in the folder");
  const std::string literal = folder.Write("sub\\file", "with the name");
  std::string content;
  EXPECT_EQ(VyrNativePath(literal), literal);
  EXPECT_EQ(VyrReadFile(literal, content), "");
  EXPECT_EQ(content, "with the name");
  fs::remove(literal);
  EXPECT_EQ(VyrReadFile(literal, content), "");
  EXPECT_EQ(content, "in the folder");
}

TEST(Files, PathIsSplitAtItsLastSeparator) {
  struct {
    const char* path;
    const char* directory;
    const char* name;
  } const cases[] = {
      {"/a/b/c.xml", "/a/b", "c.xml"},
      {"a\\b.xml", "a", "b.xml"},
      {"/a/b\\c.xml", "/a/b", "c.xml"},
      {"a\\b/c.xml", "a\\b", "c.xml"},
      {"c.xml", "", "c.xml"},
      {"a/", "a", ""},
      {"", "", ""},
      {"/c.xml", "", "c.xml"},
      {"..", "", ".."},
  };
  for (const auto& test : cases) {
    std::string directory = "old";
    std::string name = "old";
    VyrSplitPath(test.path, directory, name);
    EXPECT_EQ(directory, test.directory) << test.path;
    EXPECT_EQ(name, test.name) << test.path;
  }
  std::string both = "/folder/with/a/long/name/file.xml";
  std::string name;
  VyrSplitPath(both, both, name);
  EXPECT_EQ(both, "/folder/with/a/long/name");
  EXPECT_EQ(name, "file.xml");
}

// --- Reading -------------------------------------------------------------------------------------

TEST(Files, WholeContentIsRead) {
  const TemporaryFolder folder;
  const std::string contents[] = {"", "x", std::string("a\0b\r\n", 5), std::string(300000, 'y')};
  for (const std::string& content : contents) {
    std::string read = "old";
    EXPECT_EQ(VyrReadFile(folder.Write("file", content), read), "");
    EXPECT_TRUE(read == content);
  }
  std::string read = "old";
  EXPECT_EQ(VyrReadFile("/dev/null", read), "");
  EXPECT_EQ(read, "");
}

TEST(Files, FileThatCannotBeReadIsToldApartAndLeavesTheContent) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("file", "x");
  fs::create_symlink("nowhere", folder / "dangling");
  const std::string paths[] = {"",
                               folder / "missing",
                               folder / "missing/file",
                               file + "/inside",
                               folder.Path(),
                               folder / "dangling",
                               folder / std::string(5000, 'n')};
  for (const std::string& path : paths) {
    std::string content = "old";
    EXPECT_NE(VyrReadFile(path, content), "") << path;
    EXPECT_EQ(content, "old");
  }
  std::string content;
  EXPECT_EQ(VyrReadFile(folder.Path().string(), content),
            "is a folder, not a file; name a file in it");
  EXPECT_EQ(VyrReadFile(folder / "missing", content),
            "cannot be opened: No such file or directory; look at the spelling of its name and "
            "folder");
  EXPECT_EQ(VyrReadFile(file + "/inside", content),
            "cannot be opened: Not a directory; look at the spelling of its folder");
}

void IgnoreSignal(int) {}

TEST(Files, SignalDoesNotEndAReading) {
  const TemporaryFolder folder;
  const std::string pipe = folder / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  struct sigaction ignore {};
  ignore.sa_handler = IgnoreSignal;  // without SA_RESTART: what waits is broken off
  struct sigaction old {};
  ASSERT_EQ(::sigaction(SIGUSR1, &ignore, &old), 0);
  const pid_t child = ::fork();
  if (child == 0) {
    const auto signalAFewTimes = [] {
      for (int i = 0; i < 20; ++i) {
        ::usleep(5000);
        ::kill(::getppid(), SIGUSR1);
      }
    };
    signalAFewTimes();  // while the reader waits for the pipe to be opened here
    const int file = ::open(pipe.c_str(), O_WRONLY);
    signalAFewTimes();  // while it waits for a text
    ::_exit(::write(file, "text", 4) == 4 ? 0 : 1);
  }
  std::string content;
  EXPECT_EQ(VyrReadFile(pipe, content), "");
  EXPECT_EQ(content, "text");
  int status = 0;
  EXPECT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  ::sigaction(SIGUSR1, &old, nullptr);
}

TEST(Files, PipeIsReadToItsEnd) {
  const TemporaryFolder folder;
  const std::string pipe = folder / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  const std::string sent(200000, 'p');
  std::thread writer([&] { std::ofstream(pipe) << sent; });
  std::string content;
  EXPECT_EQ(VyrReadFile(pipe, content), "");
  writer.join();
  EXPECT_TRUE(content == sent);
}

// --- Saving --------------------------------------------------------------------------------------

TEST(Files, NewFileHasTheContentAndTheUsualPermissions) {
  const TemporaryFolder folder;
  const mode_t mask = ::umask(027);
  for (const std::string& content :
       {std::string(), std::string("a\0b", 3), std::string(300000, 'z')}) {
    const std::string path = folder / "new.xml";
    EXPECT_EQ(VyrSaveFile(path, content), "");
    EXPECT_TRUE(ReadWholeFile(path) == content);
    EXPECT_EQ(ModeOf(path) & 0777, 0640u);
    EXPECT_THAT(NamesIn(folder.Path()), ElementsAre("new.xml"));
    fs::remove(path);
  }
  ::umask(mask);
}

TEST(Files, BackslashPathIsSavedInItsFolder) {
  const TemporaryFolder folder;
  EXPECT_EQ(VyrSaveFile(folder.Path().string() + "\\out.xml", "x"), "");
  EXPECT_THAT(NamesIn(folder.Path()), ElementsAre("out.xml"));
}

TEST(Files, NameWithoutAFolderIsSavedInTheCurrentOne) {
  const TemporaryFolder folder;
  const fs::path before = fs::current_path();
  fs::current_path(folder.Path());
  EXPECT_EQ(VyrSaveFile("plain.xml", "1"), "");
  EXPECT_EQ(VyrSaveFile("plain.xml", "2"), "");
  fs::current_path(before);
  EXPECT_EQ(ReadWholeFile(folder / "plain.xml"), "2");
}

TEST(Files, OverwritingReplacesTheFileAndKeepsItsPermissions) {
  const TemporaryFolder folder;
  for (const mode_t mode : {0600u, 0644u, 0664u, 0777u, 0640u}) {
    const std::string path = folder.Write("file.xml", "the old content, longer than the new");
    ASSERT_EQ(::chmod(path.c_str(), mode), 0);
    const std::ifstream reader(path);  // someone who reads meanwhile
    EXPECT_EQ(VyrSaveFile(path, "new"), "");
    EXPECT_EQ(ReadWholeFile(path), "new");
    EXPECT_EQ(ModeOf(path) & 07777, mode);
    const std::string seen{std::istreambuf_iterator<char>(reader.rdbuf()), {}};
    EXPECT_EQ(seen, "the old content, longer than the new");
    EXPECT_THAT(NamesIn(folder.Path()), ElementsAre("file.xml"));
  }
}

TEST(Files, OwnerOfAReplacedFileIsKeptWhereThatIsAllowed) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("file.xml", "old");
  const uid_t owner = ::geteuid() == 0 ? 12345 : ::geteuid();
  ASSERT_EQ(::chown(path.c_str(), owner, static_cast<gid_t>(-1)), 0);
  EXPECT_EQ(VyrSaveFile(path, "new"), "");
  struct stat status {};
  ASSERT_EQ(::stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, owner);
}

TEST(Files, FileLargerThanAnyStandardIsRefusedWithoutReadingIt) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("sparse.xml", "");
  ASSERT_EQ(::truncate(path.c_str(), off_t{1} << 40), 0);
  std::string content = "left alone";
  EXPECT_EQ(VyrReadFile(path, content), "is larger than 2 GB; no standard is, name the right file");
  EXPECT_EQ(content, "left alone");
}

TEST(Files, DescriptorOfAPipeIsWrittenThrough) {
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  EXPECT_EQ(VyrSaveFile("/dev/fd/" + std::to_string(ends[1]), "sent"), "");
  char received[8] = {};
  EXPECT_EQ(::read(ends[0], received, sizeof received), 4);
  EXPECT_STREQ(received, "sent");
  ::close(ends[0]);
  ::close(ends[1]);
}

TEST(Files, HardLinkedTwinKeepsTheOldContent) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("file.xml", "old");
  fs::create_hard_link(path, folder / "twin.xml");
  EXPECT_EQ(VyrSaveFile(path, "new"), "");
  EXPECT_EQ(ReadWholeFile(folder / "twin.xml"), "old");
}

TEST(Files, SymbolicLinkStaysAndItsTargetIsReplaced) {
  const TemporaryFolder folder;
  fs::create_directory(folder / "sub");
  const std::string target = folder.Write("sub/target.xml", "old");
  fs::create_symlink("sub/target.xml", folder / "relative");
  fs::create_symlink(target, folder / "absolute");
  fs::create_symlink("relative", folder / "chain");
  fs::create_directory_symlink("sub", folder / "folder");
  int number = 0;
  for (const char* name : {"relative", "absolute", "chain", "folder/target.xml"}) {
    const std::string content = std::to_string(++number);
    EXPECT_EQ(VyrSaveFile(folder / name, content), "") << name;
    EXPECT_EQ(ReadWholeFile(target), content) << name;
  }
  for (const char* name : {"relative", "absolute", "chain", "folder"}) {
    EXPECT_TRUE(S_ISLNK(ModeOf(folder / name))) << name;
  }
  EXPECT_THAT(NamesIn(folder / "sub"), ElementsAre("target.xml"));
  EXPECT_THAT(NamesIn(folder.Path()),
              UnorderedElementsAre("sub", "relative", "absolute", "chain", "folder"));
}

TEST(Files, SymbolicLinkToAMissingFileMakesThatFile) {
  const TemporaryFolder folder;
  fs::create_symlink("new.xml", folder / "link");
  EXPECT_EQ(VyrSaveFile(folder / "link", "x"), "");
  EXPECT_TRUE(S_ISLNK(ModeOf(folder / "link")));
  EXPECT_EQ(ReadWholeFile(folder / "new.xml"), "x");
}

TEST(Files, FailedSaveLeavesEverythingAsItWas) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("file", "old");
  fs::create_directory(folder / "folder");
  fs::create_symlink("loop", folder / "loop");
  fs::create_symlink("missing/new.xml", folder / "link to no folder");
  fs::create_symlink("folder", folder / "link to folder");
  const std::set<std::string> before = [&] {
    const auto names = NamesIn(folder.Path());
    return std::set<std::string>(names.begin(), names.end());
  }();
  const std::string paths[] = {"",
                               folder / "missing/new.xml",
                               folder / "missing\\new.xml/x",
                               folder / "folder",
                               folder / "folder/",
                               folder / "new/",
                               file + "/inside",
                               folder / "loop",
                               folder / "link to no folder",
                               folder / "link to folder",
                               folder / std::string(300, 'n')};
  for (const std::string& path : paths) {
    EXPECT_NE(VyrSaveFile(path, "new"), "") << path;
    const auto names = NamesIn(folder.Path());
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()), before) << path;
    EXPECT_THAT(NamesIn(folder / "folder"), testing::IsEmpty()) << path;
    EXPECT_EQ(ReadWholeFile(file), "old");
  }
}

TEST(Files, RefusedSaveSaysWhatWouldBeRight) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("file", "old");
  fs::create_symlink("loop", folder / "loop");
  const struct {
    std::string path;
    const char* problem;
  } cases[] = {
      {folder / "missing/new.xml",
       "cannot be written: no file can be made in its folder: No such file or directory; make its "
       "folder or look at the spelling of that"},
      {file + "/inside", "cannot be written: Not a directory; look at the spelling of its folder"},
      {folder / "loop",
       "cannot be written: Too many levels of symbolic links; its symbolic links lead to each "
       "other, name the file itself"},
      {folder / std::string(300, 'n'),
       "cannot be written: File name too long; choose a shorter name"},
      {folder.Path(), "is a folder, not a file; name a file in it"},
  };
  for (const auto& test : cases) EXPECT_EQ(VyrSaveFile(test.path, "new"), test.problem);
}

TEST(Files, AsManySymbolicLinksAreFollowedAsTheSystemFollows) {
  const TemporaryFolder folder;
  constexpr int most = 40;
  for (const std::string end : {"file", "new"}) {
    if (end == "file") folder.Write(end, "old");
    const auto link = [&](int number) { return end + "-" + std::to_string(number); };
    for (int i = 1; i <= most + 1; ++i) {
      fs::create_symlink(i == 1 ? end : link(i - 1), folder / link(i));
    }
    EXPECT_EQ(VyrSaveFile(folder / link(most), "new"), "") << end;
    EXPECT_EQ(ReadWholeFile(folder / end), "new");
    EXPECT_NE(VyrSaveFile(folder / link(most + 1), "newer"), "") << end;
    EXPECT_EQ(ReadWholeFile(folder / end), "new");
  }
}

/// Lets no file of this process grow beyond `size`, as a full disk would.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t size) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limited = {size, before_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limited);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;
  ~FileSizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }

 private:
  void (*handler_)(int);
  rlimit before_{};
};

TEST(Files, WriteThatFailsHalfWayLeavesTheOldContentAndNoOtherFile) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("file.xml", "old");
  std::string problem, newProblem;
  {
    const FileSizeLimit limit(10000);
    problem = VyrSaveFile(file, std::string(20000, 'x'));
    newProblem = VyrSaveFile(folder / "new.xml", std::string(20000, 'x'));
  }
  EXPECT_THAT(problem, testing::StartsWith("cannot be written"));
  EXPECT_THAT(newProblem, testing::StartsWith("cannot be written"));
  EXPECT_EQ(ReadWholeFile(file), "old");
  EXPECT_THAT(NamesIn(folder.Path()), ElementsAre("file.xml"));
}

TEST(Files, LongestNameThatTheSystemAllowsIsSaved) {
  const TemporaryFolder folder;
  for (const std::string& name : {std::string(255, 'n'), std::string(240, 'n')}) {
    EXPECT_EQ(VyrSaveFile(folder / name, "1"), "") << name.size();
    EXPECT_EQ(VyrSaveFile(folder / name, "2"), "") << name.size();
    EXPECT_EQ(ReadWholeFile(folder / name), "2");
  }
  EXPECT_EQ(NamesIn(folder.Path()).size(), 2u);
}

TEST(Files, PipeIsWrittenThroughAndStaysAPipe) {
  const TemporaryFolder folder;
  const std::string pipe = folder / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  const std::string sent(200000, 'p');
  std::string received;
  std::thread reader([&] { received = ReadWholeFile(pipe); });
  EXPECT_EQ(VyrSaveFile(pipe, sent), "");
  reader.join();
  EXPECT_TRUE(received == sent);
  EXPECT_TRUE(S_ISFIFO(ModeOf(pipe)));
  EXPECT_THAT(NamesIn(folder.Path()), ElementsAre("pipe"));
}

TEST(Files, DeviceIsWrittenThroughAndStaysADevice) {
  EXPECT_EQ(VyrSaveFile("/dev/null", "x"), "");
  EXPECT_TRUE(S_ISCHR(ModeOf("/dev/null")));
  EXPECT_THAT(VyrSaveFile("/dev/full", "x"), testing::StartsWith("cannot be written"));
  EXPECT_TRUE(S_ISCHR(ModeOf("/dev/full")));
}

// --- Status --------------------------------------------------------------------------------------

constexpr std::int64_t kSecond = 1'000'000'000;

TEST(Files, ModificationTimeIsToldInNanoseconds) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("file", "x");
  const std::int64_t times[] = {0, 1, -1, -kSecond, 1'234'567'890 * kSecond + 123'456'789};
  for (const std::int64_t time : times) {
    EXPECT_EQ(VyrSetModificationTime(file, time), "");
    EXPECT_EQ(VyrModificationTime(file), time);
    EXPECT_EQ(VyrModificationTime(folder.Path().string() + "\\file"), time);
  }
  const timespec both[2] = {{0, UTIME_OMIT}, {5, 6}};
  ASSERT_EQ(::utimensat(AT_FDCWD, file.c_str(), both, 0), 0);
  EXPECT_EQ(VyrModificationTime(file), 5 * kSecond + 6);
}

TEST(Files, SettingTheModificationTimeKeepsContentAndTimeOfAccess) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("file", "x");
  const timespec before[2] = {{7, 8}, {9, 10}};
  ASSERT_EQ(::utimensat(AT_FDCWD, file.c_str(), before, 0), 0);
  EXPECT_EQ(VyrSetModificationTime(file, kSecond), "");
  struct stat status {};
  ASSERT_EQ(::stat(file.c_str(), &status), 0);
  EXPECT_EQ(status.st_atim.tv_sec, 7);
  EXPECT_EQ(status.st_atim.tv_nsec, 8);
  EXPECT_EQ(ReadWholeFile(file), "x");
}

TEST(Files, MissingFileHasNoModificationTime) {
  const TemporaryFolder folder;
  for (const std::string& path : {std::string(), folder / "missing", folder / "missing/file"}) {
    EXPECT_EQ(VyrModificationTime(path), std::nullopt) << path;
    EXPECT_THAT(VyrSetModificationTime(path, 0), testing::StartsWith("cannot be given its time"));
  }
}

TEST(Files, SavedFileHasTheTimeThatIsAskedFor) {
  const TemporaryFolder folder;
  const std::int64_t time = 77 * kSecond + 5;
  EXPECT_EQ(VyrSaveFile(folder / "file", "new", time), "");
  EXPECT_EQ(VyrModificationTime(folder / "file"), time);
  EXPECT_EQ(VyrSaveFile(folder / "file", "again", time + 1), "");
  EXPECT_EQ(VyrModificationTime(folder / "file"), time + 1);
  EXPECT_EQ(VyrSaveFile(folder / "file", "now"), "");
  EXPECT_GT(VyrModificationTime(folder / "file"), time + 1);
  EXPECT_EQ(VyrSaveFile("/dev/null", "x", time), "");
}

TEST(Files, ReadableFileIsARegularOneThatCanBeOpened) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("file", "");
  fs::create_symlink("file", folder / "link");
  fs::create_symlink("missing", folder / "dangling");
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  for (const std::string& path : {file, folder / "link", folder.Path().string() + "\\file"}) {
    EXPECT_TRUE(VyrIsReadableFile(path)) << path;
  }
  for (const std::string& path :
       {std::string(), folder.Path().string(), folder / "dangling", folder / "pipe",
        std::string("/dev/null"), folder / "missing", file + "/inside"}) {
    EXPECT_FALSE(VyrIsReadableFile(path)) << path;
  }
}

}  // namespace
