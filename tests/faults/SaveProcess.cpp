#include <fcntl.h>
#include <grp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "VyrAnnStandardXMLParser.h"
#include "VyrBackups.h"
#include "VyrDiagnostics.h"
#include "VyrDrwParseStandard.h"
#include "VyrDrwParseStandardUpgradeOptions.h"
#include "VyrFiles.h"

// A process that saves a standard, for tests that break or kill it while it does:
//   hol_save_process [OPTION...] HOW SOURCE TARGET
// HOW is "document" (a document reads SOURCE and saves itself), "converter" (the converter does),
// "upgrade" (the converter makes a shipped standard of an old-generation text), "timed" (the bytes
// of SOURCE, with a modification time of their own), "replace" (the bytes of SOURCE, TARGET's are
// kept as a backup), "replace-at-once" (the same without patience) or "restore" (the newest backup
// of TARGET; SOURCE is not looked at). Options:
//   --user ID        reads as who it is, saves as this user, alone in the group of the same number
//   --group ID       is a member of this group as well
//   --most-bytes N   no file may grow beyond this
//   --times N        saves so many times
// Exit status: 0 saved, 3 SOURCE cannot be read, 4 not saved, then with the line "TARGET: why" on
// standard error, or "BACKUP: why" when it is a backup that is wrong; 2 for anything else.

namespace {

enum ExitStatus { kSaved = 0, kUsage = 2, kNotRead = 3, kNotSaved = 4 };

struct Options {
  std::string how;
  std::string source;
  std::string target;
  long user = -1;
  std::vector<gid_t> groups;
  long mostBytes = -1;
  long times = 1;
};

bool ReadOptions(int argc, char** argv, Options& options) {
  int i = 1;
  for (; i + 1 < argc && std::string_view(argv[i]).starts_with("--"); i += 2) {
    const std::string_view name = argv[i];
    const long number = std::atol(argv[i + 1]);
    if (name == "--user") options.user = number;
    if (name == "--group") options.groups.push_back(static_cast<gid_t>(number));
    if (name == "--most-bytes") options.mostBytes = number;
    if (name == "--times") options.times = number;
  }
  if (i + 3 != argc) return false;
  options.how = argv[i];
  options.source = argv[i + 1];
  options.target = argv[i + 2];
  return true;
}

bool Restrict(const Options& options) {
  if (options.mostBytes >= 0) {
    const auto most = static_cast<rlim_t>(options.mostBytes);
    const rlimit limit = {most, most};
    std::signal(SIGXFSZ, SIG_IGN);
    if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) return false;
  }
  if (options.user < 0) return true;
  const auto id = static_cast<uid_t>(options.user);
  // The last call lets the leak check look into this process all the same.
  return ::setgroups(options.groups.size(), options.groups.data()) == 0 &&
         ::setresgid(id, id, id) == 0 && ::setresuid(id, id, id) == 0 &&
         ::prctl(PR_SET_DUMPABLE, 1) == 0;
}

ExitStatus Outcome(const Options& options, std::string_view problem) {
  if (problem.empty()) return kSaved;
  std::fprintf(stderr, "%s: %.*s\n", options.target.c_str(), static_cast<int>(problem.size()),
               problem.data());
  return kNotSaved;
}

ExitStatus Outcome(const Options& options, HRESULT result, const VyrProblem& problem) {
  if (VyrFailed(result) != !problem.IsEmpty()) return kUsage;
  return Outcome(options, problem.text.View());
}

ExitStatus SaveDocument(const Options& options) {
  VyrAnnStandardXMLParser document;
  if (document.DecodeXML(options.source, 1) != 0) return kNotRead;
  if (!Restrict(options)) return kUsage;
  ExitStatus status = kSaved;
  for (long i = 0; i < options.times && status == kSaved; ++i) {
    const HRESULT result = document.SaveInFile(options.target);
    status = Outcome(options, result, document.GetProblem());
  }
  return status;
}

ExitStatus SaveByConverter(const Options& options) {
  VyrDrwParseStandard converter(options.source);
  converter.Decode();
  if (!converter.GetProblem().IsEmpty()) return kNotRead;
  if (!Restrict(options)) return kUsage;
  const HRESULT result = converter.SaveToFile(options.target.c_str());
  return Outcome(options, result, converter.GetProblem());
}

ExitStatus SaveUpgraded(const Options& options) {
  VyrDrwParseStandard converter(options.source);
  if (VyrFailed(converter.DecodeText())) return kNotRead;
  if (!Restrict(options)) return kUsage;
  VyrDrwParseStandardUpgradeOptions shipped;
  shipped.OOTBStandard = 1;
  const HRESULT result = converter.EncodeToFile(options.target.c_str(), -1, shipped);
  return Outcome(options, result, converter.GetProblem());
}

ExitStatus SaveTimed(const Options& options) {
  constexpr std::int64_t time = 1'000'000'000'000'000'000;
  std::string content;
  if (!VyrReadFile(options.source, content).empty()) return kNotRead;
  if (!Restrict(options)) return kUsage;
  return Outcome(options, VyrSaveFile(options.target, content, time));
}

ExitStatus Outcome(const VyrFileChange& change) {
  if (change.result == VyrFileChange::Result::Done) return kSaved;
  if (change.problem.empty()) return kUsage;
  std::fprintf(stderr, "%s: %s\n", change.file.c_str(), change.problem.c_str());
  return kNotSaved;
}

ExitStatus Replace(const Options& options, std::chrono::milliseconds patience) {
  std::string content;
  if (!VyrReadFile(options.source, content).empty()) return kNotRead;
  if (!Restrict(options)) return kUsage;
  return Outcome(VyrReplaceFile(options.target, content, VyrReplaced::Kept, patience));
}

ExitStatus Restore(const Options& options) {
  if (!Restrict(options)) return kUsage;
  return Outcome(VyrRestoreFile(options.target, VyrReplaced::Kept));
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  if (!ReadOptions(argc, argv, options)) return kUsage;
  const auto silence = [](std::string_view) {};
  VyrSetDiagnosticSinks({silence, silence, silence, silence});
  if (options.how == "document") return SaveDocument(options);
  if (options.how == "converter") return SaveByConverter(options);
  if (options.how == "upgrade") return SaveUpgraded(options);
  if (options.how == "timed") return SaveTimed(options);
  if (options.how == "replace") return Replace(options, kVyrPatience);
  if (options.how == "replace-at-once") return Replace(options, std::chrono::milliseconds(0));
  if (options.how == "restore") return Restore(options);
  return kUsage;
}
