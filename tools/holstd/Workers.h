#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include "Signals.h"

// Work that is shared among processes: what one of them does to itself harms no other.

/// What a job returns.
struct JobAnswer {
  std::string text;
  /// Signals wait until the answer has been given: who has written a file is not to end before it
  /// has told of it. May be null.
  std::unique_ptr<SignalsWait> untilGiven;
};

/// What a job left behind.
struct JobEnd {
  bool isWhole = false;  ///< false: its process died of it
  std::string cause;     ///< what the process died of, in one phrase
  std::string answer;    ///< what the job returned; empty unless it is whole
  std::string data;      ///< what it wrote to standard output
  std::string talk;      ///< what it wrote to standard error
};

/// Does jobs 0 to `count` - 1 in `processes` processes, each of which does one after the other, and
/// calls `take` for every job in the order of their numbers. A process that dies takes no other job
/// with it. `job` runs in those processes: it must not throw, and nobody but later jobs of the same
/// process sees what it changes. To be called before there are threads, with no output pending.
/// The processes hear the signals for which this one waits by `signals`. When one of these asks to
/// end, the processes end at once, but for one that lets signals wait at that moment, and `take` is
/// called for every job that has come to its end, as before in the order of their numbers; of the
/// others nothing is left; then `Interrupted` is thrown. Throws `Failure` when no process can be
/// made, and whatever `take` throws. All processes have ended then.
void DoInProcesses(std::size_t count, int processes, const SignalsWait& signals,
                   const std::function<JobAnswer(std::size_t job)>& job,
                   const std::function<void(std::size_t job, const JobEnd& end)>& take);
