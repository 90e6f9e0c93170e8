#include "Workers.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "Failure.h"
#include "Session.h"

namespace {

using Job = std::function<JobAnswer(std::size_t)>;
using Take = std::function<void(std::size_t, const JobEnd&)>;

/// An open descriptor, closed with its object.
class End {
 public:
  End() = default;
  explicit End(int descriptor) : descriptor_(descriptor) {}
  End(End&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  End& operator=(End&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  ~End() { Close(); }
  void Close() {
    if (descriptor_ >= 0) ::close(std::exchange(descriptor_, -1));
  }
  bool IsOpen() const { return descriptor_ >= 0; }
  int Get() const { return descriptor_; }

 private:
  int descriptor_ = -1;
};

/// Closed at both ends when none can be made.
struct Pipe {
  static Pipe Make() {
    std::array<int, 2> ends = {-1, -1};
    static_cast<void>(::pipe2(ends.data(), O_CLOEXEC));
    return {End(ends[0]), End(ends[1])};
  }
  End read;
  End write;
};

/// Reads what there is without waiting for more, and closes the end when no more will come.
void ReadAvailable(End& end, std::string& text) {
  std::array<char, 65536> block;
  while (end.IsOpen()) {
    const ssize_t got = ::read(end.Get(), block.data(), block.size());
    if (got > 0) {
      text.append(block.data(), static_cast<std::size_t>(got));
    } else if (got == 0 || (errno != EINTR && errno != EAGAIN)) {
      end.Close();
    } else if (errno == EAGAIN) {
      return;
    }
  }
}

// --- In a process of its own ---------------------------------------------------------------------

template <class Number>
std::string_view Bytes(const Number& number) {
  return {reinterpret_cast<const char*>(&number), sizeof number};
}

/// False when no more jobs will come.
bool ReadJob(int file, std::uint64_t& job) {
  for (;;) {
    const ssize_t got = ::read(file, &job, sizeof job);
    if (got >= 0 || errno != EINTR) return got == sizeof job;
  }
}

[[noreturn]] void Serve(const End& jobs, const End& answers, const Job& job) noexcept {
  std::uint64_t number = 0;
  while (ReadJob(jobs.Get(), number)) {
    const JobAnswer answer = job(static_cast<std::size_t>(number));
    std::fflush(nullptr);
    const std::uint64_t size = answer.text.size();
    if (WriteAll(answers.Get(), Bytes(size)) != 0) break;
    if (WriteAll(answers.Get(), answer.text) != 0) break;
  }
  // Whatever else there is belongs to the process that this one was made of.
  ::_exit(0);
}

// --- Seen from outside ---------------------------------------------------------------------------

/// A process that does jobs. It ends with this object, but first writes the file that it writes.
class Worker {
 public:
  Worker() = default;
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;
  ~Worker() {
    if (process_ < 0) return;
    for (End* end : ReadEnds()) end->Close();
    AskToEnd();
    Reap();
  }

  /// False when there can be no more processes; `errno` says why. `others` are those that exist.
  bool Start(const Job& job, const sigset_t& signals,
             const std::vector<std::unique_ptr<Worker>>& others) {
    for (const Pipe* pipe : {&jobs_, &answers_, &data_, &talk_}) {
      if (!pipe->read.IsOpen()) return false;
    }
    process_ = ::fork();
    if (process_ < 0) return false;
    if (process_ == 0) Become(job, signals, others);
    jobs_.read.Close();
    for (Pipe* pipe : {&answers_, &data_, &talk_}) {
      pipe->write.Close();
      ::fcntl(pipe->read.Get(), F_SETFL, O_NONBLOCK);
    }
    return true;
  }

  /// One that died in the meantime is found out when it is asked for its answer.
  void Give(std::size_t job) {
    job_ = job;
    const std::uint64_t number = job;
    static_cast<void>(WriteAll(jobs_.write.Get(), Bytes(number)));
  }

  void AskToEnd() {
    jobs_.write.Close();
    ::kill(process_, SIGTERM);
  }

  bool IsAlive() const { return process_ >= 0; }
  bool IsIdle() const { return IsAlive() && !job_; }
  std::array<End*, 3> ReadEnds() { return {&answers_.read, &data_.read, &talk_.read}; }

  struct Ended {
    std::optional<std::size_t> job;  ///< nothing when it died without one
    JobEnd end;
    int signal = 0;  ///< that it died of
  };
  /// What has ended since, the job or the process.
  std::optional<Ended> Listen() {
    ReadAvailable(answers_.read, answer_);
    // All that belongs to a job was written before its answer.
    ReadAvailable(data_.read, end_.data);
    ReadAvailable(talk_.read, end_.talk);
    const bool isDead = !answers_.read.IsOpen();
    if (!HasAnswer() && !isDead) return std::nullopt;
    Ended ended = {std::exchange(job_, std::nullopt), std::exchange(end_, {}), 0};
    ended.end.isWhole = HasAnswer();
    if (HasAnswer()) ended.end.answer = answer_.substr(sizeof(std::uint64_t));
    answer_.clear();
    if (isDead) ended.signal = Reap(ended.end.cause);
    return ended;
  }

 private:
  [[noreturn]] void Become(const Job& job, const sigset_t& signals,
                           const std::vector<std::unique_ptr<Worker>>& others) {
    // The others are to end when nobody can send them jobs any more.
    for (const auto& other : others) {
      other->jobs_.write.Close();
      for (End* end : other->ReadEnds()) end->Close();
    }
    jobs_.write.Close();
    const bool isHeard = ::dup2(data_.write.Get(), STDOUT_FILENO) >= 0 &&
                         ::dup2(talk_.write.Get(), STDERR_FILENO) >= 0;
    if (!isHeard) ::_exit(1);
    for (Pipe* pipe : {&data_, &talk_}) pipe->write.Close();
    for (End* end : ReadEnds()) end->Close();
    ::sigprocmask(SIG_SETMASK, &signals, nullptr);
    Serve(jobs_.read, answers_.write, job);
  }

  bool HasAnswer() const {
    std::uint64_t size = 0;
    if (answer_.size() < sizeof size) return false;
    std::memcpy(&size, answer_.data(), sizeof size);
    return answer_.size() == sizeof size + size;
  }

  /// Waits for the process to end, says what of, and returns the signal if it was one.
  int Reap(std::string& cause) {
    int status = 0;
    while (::waitpid(process_, &status, 0) < 0 && errno == EINTR) {
    }
    process_ = -1;
    const int signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    cause = signal == 0 ? "status " + std::to_string(WEXITSTATUS(status))
                        : "signal " + std::to_string(signal) + ", " + ::strsignal(signal);
    return signal;
  }
  void Reap() {
    std::string cause;
    Reap(cause);
  }

  pid_t process_ = -1;
  Pipe jobs_ = Pipe::Make();
  Pipe answers_ = Pipe::Make();
  Pipe data_ = Pipe::Make();
  Pipe talk_ = Pipe::Make();
  std::optional<std::size_t> job_;
  std::string answer_;
  JobEnd end_;
};

class Pool {
 public:
  Pool(std::size_t count, int processes, const SignalsWait& signals, const Job& job,
       const Take& take)
      : count_(count),
        most_(std::min(static_cast<std::size_t>(std::max(processes, 1)), count)),
        job_(job),
        take_(take),
        signals_(signals) {}

  void Run() {
    try {
      while (taken_ < count_) {
        HandOut();
        Wait();
        Collect();
        for (auto ended = ended_.find(taken_); ended != ended_.end(); ended = ended_.find(taken_)) {
          const auto node = ended_.extract(ended);
          take_(taken_++, node.mapped());
        }
      }
    } catch (const Interrupted&) {
      EndAll();
      for (const auto& [job, end] : ended_) take_(job, end);
      throw;
    }
  }

 private:
  /// Ends all processes, and keeps what they have to say before.
  void EndAll() {
    isEnding_ = true;
    std::erase_if(workers_, [](const auto& worker) { return !worker->IsAlive(); });
    for (const auto& worker : workers_) worker->AskToEnd();
    while (!workers_.empty()) {
      std::vector<pollfd> polled = Polled();
      static_cast<void>(::poll(polled.data(), polled.size(), -1));
      Collect();
    }
  }

  void HandOut() {
    // What is done out of turn is kept in memory; one slow job must not make it all of it.
    const std::size_t end = std::min(count_, taken_ + kMostAhead * most_);
    while (given_ < end) {
      Worker* worker = FindIdle();
      if (worker == nullptr) worker = StartOne();
      if (worker == nullptr) return;
      worker->Give(given_++);
    }
  }

  Worker* FindIdle() const {
    const auto found = std::find_if(workers_.begin(), workers_.end(),
                                    [](const auto& worker) { return worker->IsIdle(); });
    return found == workers_.end() ? nullptr : found->get();
  }

  /// Null when there are enough, or can be no more.
  Worker* StartOne() {
    if (workers_.size() >= most_) return nullptr;
    auto worker = std::make_unique<Worker>();
    if (worker->Start(job_, signals_.Before(), workers_)) {
      return workers_.emplace_back(std::move(worker)).get();
    }
    if (!workers_.empty()) return nullptr;
    throw Failure{kNotWritten, "", 0,
                  std::string("no process can be made for the work: ") + std::strerror(errno)};
  }

  /// Where something may come of a process.
  std::vector<pollfd> Polled() const {
    std::vector<pollfd> polled;
    for (const auto& worker : workers_) {
      for (const End* end : worker->ReadEnds()) polled.push_back({end->Get(), POLLIN, 0});
    }
    return polled;
  }

  /// Returns when something has come of a process. Throws `Interrupted`.
  void Wait() const {
    std::vector<pollfd> polled = Polled();
    polled.push_back({interruption_.Get(), POLLIN, 0});
    static_cast<void>(::poll(polled.data(), polled.size(), -1));
    signalfd_siginfo info{};
    if (::read(interruption_.Get(), &info, sizeof info) == sizeof info) {
      throw Interrupted{static_cast<int>(info.ssi_signo)};
    }
  }

  /// Keeps what has ended since. Throws `Interrupted`.
  void Collect() {
    bool isInterrupted = false;
    for (const auto& worker : workers_) {
      std::optional<Worker::Ended> ended = worker->Listen();
      if (!ended) continue;
      // A terminal sends it to all processes alike, and this one may hear of it last.
      if (ended->signal == SIGINT) isInterrupted = true;
      const bool isBrokenOff = !ended->end.isWhole && HasAskedToEnd(ended->signal);
      if (ended->job && !isBrokenOff) ended_.emplace(*ended->job, std::move(ended->end));
    }
    std::erase_if(workers_, [](const auto& worker) { return !worker->IsAlive(); });
    if (isInterrupted && !isEnding_) throw Interrupted{SIGINT};
  }

  /// True when a process that died of the signal was asked to end with all the others.
  bool HasAskedToEnd(int signal) const {
    if (signal == SIGINT) return true;
    const sigset_t signals = SignalsWait::Signals();
    return isEnding_ && signal != 0 && ::sigismember(&signals, signal) == 1;
  }

  static End OpenInterruption() {
    const sigset_t signals = SignalsWait::Signals();
    return End(::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
  }

  static constexpr std::size_t kMostAhead = 16;  ///< jobs of each process

  const std::size_t count_;
  const std::size_t most_;
  const Job& job_;
  const Take& take_;
  std::size_t given_ = 0;
  std::size_t taken_ = 0;
  std::map<std::size_t, JobEnd> ended_;  ///< out of turn
  bool isEnding_ = false;
  const SignalsWait& signals_;
  const End interruption_ = OpenInterruption();
  std::vector<std::unique_ptr<Worker>> workers_;
};

}  // namespace

void DoInProcesses(std::size_t count, int processes, const SignalsWait& signals, const Job& job,
                   const Take& take) {
  Pool(count, processes, signals, job, take).Run();
}
