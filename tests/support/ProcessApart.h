#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <malloc.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <functional>
#include <string>
#include <utility>

#include "Sanitizers.h"

/// What a piece of work in a process of its own came to.
struct ApartRun {
  bool hasEnded = false;         ///< by itself, not by a limit or a crash
  std::string answer;            ///< what the work returned
  std::size_t memory = 0;        ///< bytes of memory that it added at its peak
  std::string end = "no child";  ///< how the process ended, for messages
};

namespace process_apart {

/// The peak of the process's memory, in bytes.
inline std::size_t Peak() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.rfind("VmHWM:", 0) == 0) return std::stoul(line.substr(6)) * 1024;
  }
  return 0;
}

inline void ForgetPeak() {
  std::ofstream("/proc/self/clear_refs") << "5";
}

/// Status of a child on a system that does not tell its memory: a rule that sees nothing holds for
/// everything.
inline constexpr int kNothingIsMeasured = 77;

[[noreturn]] inline void RunInChild(const std::function<std::string()>& work, unsigned seconds,
                                    int answerTo) {
  const rlimit time = {seconds, seconds};
  ::setrlimit(RLIMIT_CPU, &time);
  const rlimit noCore = {0, 0};
  ::setrlimit(RLIMIT_CORE, &noCore);
  ::alarm(100 * seconds);  // for what sleeps; a busy machine makes an honest work sleep too
  ForgetPeak();
  const std::size_t before = Peak();
  if (before == 0) ::_exit(kNothingIsMeasured);
  std::string answer = work();
  answer = std::to_string(Peak() - before) + " " + answer;
  std::size_t written = 0;
  while (written < answer.size()) {
    const ssize_t got = ::write(answerTo, answer.data() + written, answer.size() - written);
    if (got <= 0) ::_exit(1);
    written += static_cast<std::size_t>(got);
  }
  ::_exit(0);
}

}  // namespace process_apart

/// Seconds of processor time that no work of a test needs unless its time grows with the square of
/// its input, and that such work would exceed many times.
inline const unsigned kEnoughSeconds = kIsSanitized ? 600 : 60;

/// A process of its own that does `work`. One that takes more processor time than `seconds` is
/// ended by the system.
class ProcessApart {
 public:
  explicit ProcessApart(const std::function<std::string()>& work,
                        unsigned seconds = kEnoughSeconds) {
    int ends[2];
    if (::pipe(ends) != 0) return;
    std::fflush(nullptr);
    // Else the child would be given memory that this process has freed, and seem to need less.
    ::malloc_trim(0);
    child_ = ::fork();
    if (child_ == 0) {
      ::close(ends[0]);
      process_apart::RunInChild(work, seconds, ends[1]);
    }
    ::close(ends[1]);
    answerFrom_ = ends[0];
  }
  ProcessApart(const ProcessApart&) = delete;
  ProcessApart& operator=(const ProcessApart&) = delete;

  /// To be called once.
  ApartRun Wait() {
    ApartRun run;
    if (child_ < 0) return run;
    std::string answer;
    char block[4096];
    for (ssize_t got = 0; (got = ::read(answerFrom_, block, sizeof block)) > 0;) {
      answer.append(block, static_cast<std::size_t>(got));
    }
    ::close(answerFrom_);
    int status = 0;
    if (::waitpid(child_, &status, 0) != child_) return run;
    run.hasEnded = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    run.end = WIFSIGNALED(status) ? ::strsignal(WTERMSIG(status))
                                  : "status " + std::to_string(WEXITSTATUS(status));
    if (WIFEXITED(status) && WEXITSTATUS(status) == process_apart::kNothingIsMeasured) {
      run.end = "the system does not tell the peak of memory (VmHWM in /proc/self/status)";
    }
    const std::size_t blank = answer.find(' ');
    if (!run.hasEnded || blank == std::string::npos) return run;
    run.memory = std::stoul(answer.substr(0, blank));
    run.answer = answer.substr(blank + 1);
    return run;
  }

 private:
  pid_t child_ = -1;
  int answerFrom_ = -1;
};

inline ApartRun RunApart(const std::function<std::string()>& work) {
  return ProcessApart(work).Wait();
}

/// Whether work on an input of `size` bytes ended by itself and took memory in proportion: `factor`
/// bytes for each byte, and some megabytes whatever the size. Sanitizers add memory of their own
/// to each allocation and keep what is freed; under them only the end counts.
inline testing::AssertionResult IsInProportion(const ApartRun& run, std::size_t size,
                                               std::size_t factor) {
  if (!run.hasEnded) return testing::AssertionFailure() << run.end;
  if (kIsSanitized) return testing::AssertionSuccess();
  constexpr std::size_t whateverTheSize = std::size_t{32} << 20;
  const std::size_t most = factor * size + whateverTheSize;
  if (run.memory <= most) return testing::AssertionSuccess();
  return testing::AssertionFailure() << run.memory << " bytes of memory for " << size
                                     << " bytes of input; " << most << " would be in proportion";
}
