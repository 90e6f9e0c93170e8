#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <iostream>
#include <iterator>
#include <thread>

#include "FolderSnapshot.h"
#include "ProcessRun.h"
#include "SaveScene.h"
#include "VyrFiles.h"

// Every file operation of a save fails in turn, in every way that it may, and the process is killed
// before and after it. Whatever happens, the target is the old file or the whole new one.

namespace {

namespace fs = std::filesystem;

// --- Figures -------------------------------------------------------------------------------------

struct Figures {
  std::atomic<int> operations = 0;
  std::atomic<int> faults = 0;
  std::atomic<int> refused = 0;
  std::atomic<int> overcome = 0;
  std::atomic<int> notUsedUp = 0;
  std::atomic<int> killedBefore = 0;
  std::atomic<int> killedAfter = 0;
} figures;

/// Says at the end what the documentation quotes.
class FiguresReport : public testing::Environment {
 public:
  void TearDown() override {
    if (figures.faults == 0) return;
    std::cout << "saving: " << figures.faults << " faults injected into " << figures.operations
              << " file operations: " << figures.refused
              << " saves refused with the old file kept, " << figures.overcome
              << " done all the same, " << figures.notUsedUp
              << " done but for a backup that was told to be left, "
              << figures.killedBefore + figures.killedAfter << " killed (" << figures.killedBefore
              << " left the old file, " << figures.killedAfter << " the whole new one)"
              << std::endl;
  }
};

const testing::Environment* const kReport = testing::AddGlobalTestEnvironment(new FiguresReport);

// --- What an operation may suffer ----------------------------------------------------------------

/// What may become of an operation. That a folder is not flushed after a rename is never fatal.
struct OperationFaults {
  std::string_view operation;
  std::vector<std::string> fatal;     ///< the save fails and says so
  std::vector<std::string> harmless;  ///< the save is done all the same
};

const std::vector<OperationFaults>& AllFaults() {
  static const std::vector<OperationFaults> faults = {
      {"stat", {Error(EIO), Error(EACCES), Error(ELOOP)}, {}},
      {"readlink", {Error(EIO), Error(EACCES)}, {}},
      {"access", {Error(EACCES), Error(EROFS), Error(EIO)}, {}},
      {"open",
       {Error(ENOSPC), Error(EACCES), Error(EROFS), Error(EMFILE), Error(EDQUOT), Error(EIO)},
       {Error(EINTR), Error(EEXIST)}},
      {"write",
       {Error(ENOSPC), Error(EIO), Error(EDQUOT), Error(EFBIG), "nothing"},
       {Error(EINTR), "short"}},
      {"fchown", {Error(EIO), Error(EDQUOT)}, {Error(EPERM), Error(EINVAL)}},
      {"fstat", {Error(EIO)}, {}},
      {"listxattr", {Error(EIO)}, {}},
      // An attribute that is not for this process to read or to set is not kept; a list must be.
      {"getxattr", {Error(EIO)}, {Error(EACCES), Error(EPERM), Error(EOPNOTSUPP)}},
      {"getxattr-list",
       {Error(EIO), Error(EACCES), Error(EPERM), Error(EINVAL), Error(EOPNOTSUPP)},
       {}},
      {"fsetxattr",
       {Error(ENOSPC), Error(EDQUOT), Error(EIO)},
       {Error(EPERM), Error(EINVAL), Error(EOPNOTSUPP)}},
      {"fsetxattr-list",
       {Error(ENOSPC), Error(EDQUOT), Error(EIO), Error(EACCES), Error(EPERM), Error(EINVAL),
        Error(EOPNOTSUPP)},
       {}},
      {"fremovexattr", {Error(EIO)}, {Error(ENODATA), Error(EOPNOTSUPP)}},
      {"fchmod", {Error(EIO), Error(EPERM), Error(EROFS)}, {}},
      {"futimens", {Error(EIO)}, {}},
      {"fsync", {Error(EIO), Error(ENOSPC), Error(EDQUOT)}, {Error(EINTR)}},
      {"close", {Late(EIO), Late(ENOSPC), Late(EDQUOT)}, {Late(EINTR)}},
      {"rename",
       {Error(EACCES), Error(EPERM), Error(EXDEV), Error(EBUSY), Error(ENOSPC), Error(EIO),
        Error(EROFS), Error(EISDIR)},
       {}},
      {"open-folder", {}, {Error(EACCES), Error(EMFILE), Error(EIO)}},
      // A file that may only be read is held, too; a server then refuses the lock.
      {"open-hold",
       {Error(EIO), Error(EMFILE)},
       {Error(EACCES), Error(EPERM), Error(EROFS), Error(ETXTBSY), Error(EINTR)}},
      // Taken by another for a moment, or by none because there are no locks at all.
      {"flock",
       {Error(EBADF), Error(ENOLCK), Error(EIO), Error(EINVAL)},
       {Error(EWOULDBLOCK), Error(EACCES), Error(EINTR), Error(ENOSYS), Error(EOPNOTSUPP)}},
      {"read", {Error(EIO), Error(ESTALE)}, {Error(EINTR), "short"}},
      {"opendir", {Error(EACCES), Error(EMFILE), Error(EIO)}, {}},
      // Where it is not known, hard links do the same.
      {"renameat2",
       {Error(EACCES), Error(EPERM), Error(ENOSPC), Error(EIO), Error(EROFS)},
       {Error(EINVAL), Error(ENOSYS)}},
      {"unlink", {Error(EACCES), Error(EROFS), Error(EIO)}, {Error(ENOENT)}},
  };
  return faults;
}

enum class Fate {
  Fails,
  IsDone,
  MayBeDone,  ///< it fails, or is done because the operation is repeated
  IsKilled,
  LeavesBackup  ///< it is done, but the backup could not be used up, which is told
};

struct Fault {
  std::string operation;
  int number;  ///< of the call of that operation
  std::string effect;
  Fate fate;

  std::string Text() const { return operation + ":" + std::to_string(number) + ":" + effect; }
  /// Why the save failed.
  int Error() const {
    const std::size_t digits = effect.find_first_of("0123456789");
    return digits == std::string::npos ? EIO : std::stoi(effect.substr(digits));
  }
};

enum class Thoroughness { EveryError, OneError };

bool IsOneOf(std::string_view call, std::initializer_list<std::string_view> calls) {
  return std::find(calls.begin(), calls.end(), call) != calls.end();
}

/// What comes of a fault of the call at `at` that its row says is fatal.
Fate FateOfFatal(const std::vector<std::string>& calls, std::size_t at) {
  const std::string& call = calls[at];
  const auto position = calls.begin() + static_cast<std::ptrdiff_t>(at);
  if (call == "unlink") return Fate::LeavesBackup;
  // Of several looks at the target the last one is the save's. Those before are its caller's, or of
  // one who holds the file that he is going to read, and looks again.
  const bool isHeldFirst = std::find(position, calls.end(), "read") != calls.end();
  if (isHeldFirst && IsOneOf(call, {"stat", "fstat"})) return Fate::MayBeDone;
  if (call == "stat" && std::find(position + 1, calls.end(), call) != calls.end()) {
    return Fate::IsDone;
  }
  // A new name that does not survive a power failure is still in its place.
  const auto last = std::find_if(std::make_reverse_iterator(position), calls.rend(), [](auto& one) {
    return IsOneOf(one, {"open", "rename", "renameat2", "unlink"});
  });
  const bool isOfFolder = last != calls.rend() && *last != "open";
  return isOfFolder && IsOneOf(call, {"fsync", "close"}) ? Fate::IsDone : Fate::Fails;
}

/// Every fault that can befall one of these operations.
std::vector<Fault> FaultsOf(const std::vector<std::string>& calls, Thoroughness thoroughness) {
  std::vector<Fault> faults;
  std::map<std::string, int> numbers;
  for (std::size_t at = 0; at < calls.size(); ++at) {
    const std::string& call = calls[at];
    const int number = ++numbers[call];
    const auto add = [&](const std::string& effect, Fate fate) {
      faults.push_back({call, number, effect, fate});
    };
    for (const char* effect : {"kill-before", "kill-after"}) add(effect, Fate::IsKilled);
    if (call == "write") add("kill-halfway", Fate::IsKilled);
    const auto known = std::find_if(AllFaults().begin(), AllFaults().end(),
                                    [&](const auto& row) { return row.operation == call; });
    if (known == AllFaults().end()) {
      ADD_FAILURE() << "a save calls " << call << "; say above what may become of it";
      continue;
    }
    const bool every = thoroughness == Thoroughness::EveryError;
    for (const std::string& effect : known->fatal) {
      add(effect, FateOfFatal(calls, at));
      if (!every) break;
    }
    for (const std::string& effect : known->harmless) {
      if (every || known->fatal.empty()) add(effect, Fate::IsDone);
    }
  }
  figures.operations += static_cast<int>(calls.size());
  return faults;
}

// --- What must hold afterwards -------------------------------------------------------------------

/// How the files begin that a killed save of `target` may leave.
std::string LeftoverOf(const std::string& target) {
  const fs::path path = target;
  std::string name = path.filename();
  std::replace(name.begin(), name.end(), '.', '_');
  return path.parent_path() / (name + ".");
}

/// Takes away what a killed save may leave: one file that nobody takes for a standard.
void TakeLeftover(FolderSnapshot& now, const std::string& target) {
  std::vector<std::string> added;
  for (const auto& [name, file] : now) {
    if (name.ends_with(".tmp")) added.push_back(name);
  }
  EXPECT_LE(added.size(), 1u);
  for (const std::string& name : added) {
    ASSERT_THAT(name, testing::StartsWith(LeftoverOf(target)));
    EXPECT_THAT(name.substr(LeftoverOf(target).size()),
                testing::MatchesRegex("[0-9]+-[0-9]+\\.tmp"));
    now.erase(name);
  }
}

/// Called with the path to save under and the faults of the folder; runs the process.
using Save = std::function<ProcessRun(const std::string& path, const Faults& faults)>;

/// The message has one line, which names the file and the reason.
void ExpectMessage(const ProcessRun& run, const std::string& path, const std::string& reason) {
  EXPECT_THAT(run.message, testing::HasSubstr(path + ": cannot be written: ")) << reason;
  EXPECT_THAT(run.message, testing::EndsWith(": " + reason + "\n"));
  EXPECT_EQ(std::count(run.message.begin(), run.message.end(), '\n'), 1) << run.message;
}

const std::string kOfTool = "holstd: ";

/// The tool looks at what it replaces, and fails for more reasons, as a change does.
bool IsOfTool(const ProcessRun& run) {
  return run.message.starts_with(kOfTool);
}

/// The same of a change that keeps what it replaces, which fails for more reasons.
void ExpectMessageOfChange(const ProcessRun& run, const std::string& path, int error) {
  EXPECT_THAT(run.message, testing::StartsWith((IsOfTool(run) ? kOfTool : "") + path));
  EXPECT_THAT(run.message, testing::HasSubstr(": " + TextOf(error)));
  EXPECT_EQ(std::count(run.message.begin(), run.message.end(), '\n'), 1) << run.message;
}

void ExpectKilledWell(const SaveScene& scene, const ProcessRun& run) {
  EXPECT_EQ(run.status, -SIGKILL) << run.message;
  FolderSnapshot now = scene.Now();
  TakeLeftover(now, scene.Target());
  EXPECT_THAT(scene.States(), testing::Contains(now));
  const bool isOld = now == scene.Before() || now[scene.Target()].content == kOldContent;
  ++(isOld ? figures.killedBefore : figures.killedAfter);
}

void ExpectSaved(const SaveScene& scene, const ProcessRun& run, const Fault& fault) {
  FolderSnapshot expected = scene.Saved();
  // A change fills the file first in which it keeps the old content.
  const std::string file =
      fault.number == 1 && !scene.KeptAs().empty() ? scene.KeptAs() : scene.Target();
  if (fault.fate == Fate::IsDone) {
    // Not allowed to give the file away, the process keeps at least the group.
    if (fault.operation == "fchown") {
      expected[file].owner = ::geteuid();
      if (::geteuid() == 0) expected[file].mode &= ~S_ISUID;
    }
    if (fault.operation == "getxattr" || fault.operation == "fsetxattr") {
      EXPECT_EQ(expected[file].attributes.erase("user.approved"), 1u);
    }
  }
  EXPECT_EQ(run.status, kSaved) << run.message;
  EXPECT_EQ(scene.Now(), expected);
  ++figures.overcome;
}

void ExpectRefused(const SaveScene& scene, const ProcessRun& run, const Fault& fault) {
  const bool leavesBackup = fault.fate == Fate::LeavesBackup;
  EXPECT_EQ(run.status, kNotSaved);
  EXPECT_EQ(scene.Now(), leavesBackup ? scene.SavedButNotUsedUp() : scene.Before());
  if (scene.HasBackups() || IsOfTool(run)) {
    ExpectMessageOfChange(run, scene.Path(), fault.Error());
  } else {
    ExpectMessage(run, scene.Path(), ReasonOf(fault.Error()));
  }
  ++(leavesBackup ? figures.notUsedUp : figures.refused);
}

void ExpectSurvived(SaveScene::Kind kind, const Save& save, const Fault& fault) {
  const testing::ScopedTrace trace(__FILE__, __LINE__, Name(kind) + (", " + fault.Text()));
  const SaveScene scene(kind);
  const ProcessRun run = save(scene.Path(), {scene.Folder(), fault.Text()});
  ++figures.faults;
  const bool isDone =
      fault.fate == Fate::IsDone || (fault.fate == Fate::MayBeDone && run.status == kSaved);
  if (fault.fate == Fate::IsKilled) {
    ExpectKilledWell(scene, run);
  } else if (isDone) {
    ExpectSaved(scene, run, fault);
  } else {
    ExpectRefused(scene, run, fault);
  }
}

/// Does `work` for every item, several at a time: what takes its time is waiting for processes.
template <class Item>
void ForEach(const std::vector<Item>& items, const std::function<void(const Item&)>& work) {
  std::atomic<std::size_t> next = 0;
  std::vector<std::jthread> workers;
  for (unsigned i = 0; i < std::clamp(std::thread::hardware_concurrency(), 1u, 8u); ++i) {
    workers.emplace_back([&] {
      for (std::size_t at = next++; at < items.size(); at = next++) work(items[at]);
    });
  }
}

/// The operations of a save that nothing disturbs.
std::vector<std::string> CallsOf(SaveScene::Kind kind, const Save& save) {
  const SaveScene scene(kind);
  const ProcessRun run = save(scene.Path(), {scene.Folder(), ""});
  EXPECT_EQ(run.status, kSaved) << run.message;
  EXPECT_EQ(scene.Now(), scene.Saved());
  return run.calls;
}

void ExpectEveryFaultSurvived(SaveScene::Kind kind, const Save& save, Thoroughness thoroughness) {
  const std::vector<std::string> calls = CallsOf(kind, save);
  ForEach<Fault>(FaultsOf(calls, thoroughness),
                 [&](const Fault& fault) { ExpectSurvived(kind, save, fault); });
}

Save SaveBy(const std::string& how, const std::string& source) {
  return [=](const std::string& path, const Faults& faults) {
    return RunProcess(SaveCommand(how, source, path), faults);
  };
}

const Save kSaveDocument = SaveBy("document", ShippedStandard("ISO.xml"));

// --- Tests ---------------------------------------------------------------------------------------

TEST(InjectedFaults, OperationsOfASaveAreSeenAndComeInTheOrderThatPowerFailuresAskFor) {
  std::vector<std::string> calls = CallsOf(SaveScene::OldFile, kSaveDocument);
  // Reading of status and attributes may come anywhere.
  std::erase_if(calls, [](const std::string& call) {
    return call.find("stat") != std::string::npos || call.find("xattr") != std::string::npos ||
           call == "readlink" || call == "access";
  });
  EXPECT_THAT(calls, testing::ElementsAre("open", "write", "fchown", "fchmod", "fsync", "close",
                                          "rename", "open-folder", "fsync", "close"));
}

TEST(InjectedFaults, DocumentOverAnOldFile) {
  ExpectEveryFaultSurvived(SaveScene::OldFile, kSaveDocument, Thoroughness::EveryError);
}

TEST(InjectedFaults, DocumentAsANewFile) {
  ExpectEveryFaultSurvived(SaveScene::NewFile, kSaveDocument, Thoroughness::EveryError);
}

TEST(InjectedFaults, DocumentThroughASymbolicLink) {
  ExpectEveryFaultSurvived(SaveScene::LinkToFile, kSaveDocument, Thoroughness::OneError);
}

TEST(InjectedFaults, DocumentThroughASymbolicLinkToNothing) {
  ExpectEveryFaultSurvived(SaveScene::LinkToNothing, kSaveDocument, Thoroughness::OneError);
}

TEST(InjectedFaults, ConverterOverAnOldFile) {
  ExpectEveryFaultSurvived(SaveScene::OldFile, SaveBy("converter", ShippedStandard("ISO.xml")),
                           Thoroughness::OneError);
}

TEST(InjectedFaults, UpgradedStandardOverAnOldFile) {
  ExpectEveryFaultSurvived(SaveScene::OldFile, SaveBy("upgrade", ShippedStandard("legacy/ISO.txt")),
                           Thoroughness::OneError);
}

TEST(InjectedFaults, FileWithATimeOfItsOwnOverAnOldFile) {
  ExpectEveryFaultSurvived(SaveScene::OldFile, SaveBy("timed", ShippedStandard("ISO.xml")),
                           Thoroughness::OneError);
}

#ifdef HOL_HAS_TOOL
TEST(InjectedFaults, ToolThatConvertsOverAnOldFile) {
  const Save save = [](const std::string& path, const Faults& faults) {
    return RunProcess({BuiltProgram("holstd"), "convert", ShippedStandard("legacy/ISO.txt"), "-o",
                       path, "--shipped", "-q", "--no-backup"},
                      faults);
  };
  ExpectEveryFaultSurvived(SaveScene::OldFile, save, Thoroughness::OneError);
}
#endif

const Save kReplace = SaveBy("replace", ShippedStandard("ISO.xml"));
const Save kRestore = SaveBy("restore", ShippedStandard("ISO.xml"));

TEST(InjectedFaults, FileWhoseContentIsKept) {
  ExpectEveryFaultSurvived(SaveScene::ReplacedFile, kReplace, Thoroughness::EveryError);
}

TEST(InjectedFaults, FileThatIsRestored) {
  ExpectEveryFaultSurvived(SaveScene::RestoredFile, kRestore, Thoroughness::OneError);
}

TEST(InjectedFaults, DeletedFileThatIsRestored) {
  ExpectEveryFaultSurvived(SaveScene::DeletedFile, kRestore, Thoroughness::OneError);
}

TEST(InjectedFaults, BackupIsOnTheDiskBeforeTheFileIsReplaced) {
  std::vector<std::string> calls = CallsOf(SaveScene::ReplacedFile, kReplace);
  std::erase_if(calls, [](const std::string& call) {
    return !IsOneOf(call, {"flock", "read", "write", "fsync", "rename", "renameat2"});
  });
  EXPECT_THAT(calls, testing::ElementsAre("flock", "read", "read", "write", "fsync", "renameat2",
                                          "fsync", "write", "fsync", "rename", "fsync"));
}

TEST(InjectedFaults, WhatAChangeReplacedIsKeptThoughItsRenameIsToldToHaveFailed) {
  struct {
    SaveScene::Kind kind;
    const Save& change;
  } const cases[] = {{SaveScene::ReplacedFile, kReplace}, {SaveScene::RestoredFile, kRestore}};
  for (const auto& test : cases) {
    const SaveScene scene(test.kind);
    const ProcessRun run = test.change(scene.Path(), {scene.Folder(), "rename:1:" + Late(EIO)});
    EXPECT_EQ(run.status, kNotSaved);
    EXPECT_EQ(scene.Now(), scene.SavedButNotUsedUp()) << Name(test.kind);
    ExpectMessageOfChange(run, scene.Path(), EIO);
    EXPECT_THAT(run.message, testing::EndsWith("what it held is in " +
                                               (scene.Folder() / scene.KeptAs()).string() + "\n"));
  }
}

TEST(InjectedFaults, LinksKeepWhatAFolderWithoutNewNamesOnlyCannot) {
  const std::string unknown = "renameat2:1:" + Error(EINVAL);
  for (const int error : {EPERM, EIO, ENOSPC}) {
    const SaveScene scene(SaveScene::ReplacedFile);
    const ProcessRun run =
        kReplace(scene.Path(), {scene.Folder(), unknown + ",link:1:" + Error(error)});
    EXPECT_EQ(run.status, kNotSaved);
    EXPECT_EQ(scene.Now(), scene.Before());
    ExpectMessageOfChange(run, scene.Path(), error);
  }
}

TEST(InjectedFaults, NamesThatAreTakenThoughTheyAreNotListedArePassedBy) {
  const std::string isTaken = ":" + Error(EEXIST);
  const SaveScene scene(SaveScene::ReplacedFile);
  const ProcessRun run =
      kReplace(scene.Path(), {scene.Folder(), "renameat2:1" + isTaken + ",renameat2:2" + isTaken});
  EXPECT_EQ(run.status, kSaved) << run.message;
  FolderSnapshot expected = scene.Saved();
  auto kept = expected.extract(scene.KeptAs());
  kept.key() = "target.xml.bak.3";
  expected.insert(std::move(kept));
  EXPECT_EQ(scene.Now(), expected);
}

TEST(InjectedFaults, WhatAKilledProcessLeftIsInNobodysWayAndStays) {
  int left = 0;
  for (const char* fault : {"open:1:kill-after", "write:1:kill-halfway", "rename:1:kill-before"}) {
    const SaveScene scene(SaveScene::OldFile);
    EXPECT_EQ(kSaveDocument(scene.Path(), {scene.Folder(), fault}).status, -SIGKILL);
    FolderSnapshot expected = scene.Now();
    left += static_cast<int>(expected.size() - scene.Before().size());
    expected[scene.Target()] = scene.Saved()[scene.Target()];
    EXPECT_EQ(kSaveDocument(scene.Path(), {}).status, kSaved);
    EXPECT_EQ(scene.Now(), expected);
  }
  EXPECT_EQ(left, 3);
}

TEST(InjectedFaults, HalfWrittenFileIsForItsWriterOnly) {
  for (const char* fault : {"open:1:kill-after", "write:1:kill-halfway", "write:1:kill-after"}) {
    const SaveScene scene(SaveScene::LinkToFile);  // 06754
    EXPECT_EQ(kSaveDocument(scene.Path(), {scene.Folder(), fault}).status, -SIGKILL);
    int left = 0;
    for (const auto& [name, file] : scene.Now()) {
      if (!name.ends_with(".tmp")) continue;
      EXPECT_EQ(file.mode & 07777, 0600u) << fault;
      ++left;
    }
    EXPECT_EQ(left, 1) << fault;
  }
}

/// So many names of a new file are taken.
std::string TakenNames(int count) {
  std::string faults;
  for (int i = 1; i <= count; ++i)
    faults += "open:" + std::to_string(i) + ":" + Error(EEXIST) + ",";
  return faults;
}

TEST(InjectedFaults, FilesThatHaveTheNamesOfNewOnesAreInNobodysWay) {
  for (const auto kind : {SaveScene::NewFile, SaveScene::OldFile}) {
    const SaveScene scene(kind);
    const ProcessRun run = kSaveDocument(scene.Path(), {scene.Folder(), TakenNames(99)});
    EXPECT_EQ(run.status, kSaved) << run.message;
    EXPECT_EQ(scene.Now(), scene.Saved());
    EXPECT_EQ(std::count(run.calls.begin(), run.calls.end(), "open"), 100);
  }
}

TEST(InjectedFaults, SaveThatFindsNoNameForANewFileIsRefusedAfterSomeTries) {
  for (const auto kind : {SaveScene::NewFile, SaveScene::OldFile}) {
    const SaveScene scene(kind);
    const ProcessRun run = kSaveDocument(scene.Path(), {scene.Folder(), TakenNames(1000)});
    EXPECT_EQ(run.status, kNotSaved);
    EXPECT_EQ(scene.Now(), scene.Before());
    ExpectMessage(run, scene.Path(), ReasonOf(EEXIST));
    EXPECT_LT(std::count(run.calls.begin(), run.calls.end(), "open"), 200);
  }
}

TEST(InjectedFaults, DiskThatFillsUpHalfWay) {
  for (const auto kind : {SaveScene::NewFile, SaveScene::OldFile}) {
    const SaveScene scene(kind);
    const ProcessRun run =
        kSaveDocument(scene.Path(), {scene.Folder(), "write:1:short,write:2:" + Error(ENOSPC)});
    EXPECT_EQ(run.status, kNotSaved);
    EXPECT_EQ(scene.Now(), scene.Before());
    ExpectMessage(run, scene.Path(), ReasonOf(ENOSPC));
    ++figures.faults;
    ++figures.refused;
  }
}

TEST(InjectedFaults, FileThatCannotBeTidiedAwayHidesNothing) {
  const SaveScene scene(SaveScene::OldFile);
  const ProcessRun run = kSaveDocument(
      scene.Path(), {scene.Folder(), "write:1:" + Error(ENOSPC) + ",unlink:1:" + Error(EROFS)});
  EXPECT_EQ(run.status, kNotSaved);
  ExpectMessage(run, scene.Path(), ReasonOf(ENOSPC));
  FolderSnapshot now = scene.Now();
  TakeLeftover(now, scene.Target());
  EXPECT_EQ(now, scene.Before());
}

TEST(InjectedFaults, RenameThatIsDoneButToldToHaveFailed) {
  const SaveScene scene(SaveScene::OldFile);
  const ProcessRun run = kSaveDocument(scene.Path(), {scene.Folder(), "rename:1:" + Late(EIO)});
  EXPECT_EQ(run.status, kNotSaved);
  ExpectMessage(run, scene.Path(), ReasonOf(EIO));
  EXPECT_EQ(scene.Now(), scene.Saved());
}

TEST(InjectedFaults, FileThatIsAnotherOneAtEachLookIsRefusedWhenPatienceEnds) {
  const SaveScene scene(SaveScene::ReplacedFile);
  const FolderSnapshot before = scene.Now();
  const Save replaceAtOnce = SaveBy("replace-at-once", ShippedStandard("ISO.xml"));
  const Faults oneLook = {scene.Folder(), "fstat:1:" + Error(EIO)};
  const ProcessRun refused = replaceAtOnce(scene.Path(), oneLook);
  EXPECT_EQ(refused.status, kNotSaved);
  EXPECT_EQ(refused.message, scene.Path() + ": is another file at each look; wait and try again\n");
  EXPECT_EQ(scene.Now(), before);
  // As long as there is patience it is looked at again.
  EXPECT_EQ(kReplace(scene.Path(), oneLook).status, kSaved);
}

TEST(InjectedFaults, OwnerAndGroupThatCannotBeKeptLetNobodyIn) {
  if (::geteuid() != 0) {
    GTEST_SKIP() << "only root can make a file of another owner, whom a save cannot keep";
  }
  const SaveScene scene(SaveScene::LinkToFile);  // 06754
  const ProcessRun run = kSaveDocument(
      scene.Path(), {scene.Folder(), "fchown:1:" + Error(EPERM) + ",fchown:2:" + Error(EPERM)});
  EXPECT_EQ(run.status, kSaved) << run.message;
  FolderSnapshot expected = scene.Saved();
  expected[scene.Target()].owner = ::geteuid();
  expected[scene.Target()].group = ::getegid();
  expected[scene.Target()].mode = S_IFREG | 0744;
  EXPECT_EQ(scene.Now(), expected);
}

TEST(InjectedFaults, FileSystemThatGivesAllFilesTheSamePermissions) {
  const SaveScene scene(SaveScene::OldFile);
  const std::string target = scene.Folder() / scene.Target();
  ASSERT_EQ(::removexattr(target.c_str(), kListName.data()) == 0 || errno == ENODATA ||
                errno == EOPNOTSUPP,
            true);
  ASSERT_EQ(::chmod(target.c_str(), 0600), 0);
  const ProcessRun run = kSaveDocument(scene.Path(), {scene.Folder(), "fchmod:1:" + Error(EPERM)});
  EXPECT_EQ(run.status, kSaved) << run.message;
  EXPECT_EQ(ReadWholeFile(target), kNewContent);
}

}  // namespace
