#pragma once

#include <csignal>

/// Thrown when a signal, as ctrl-C sends one, asks the tool to end.
struct Interrupted {
  int signal;
};

/// Signals that ask the tool to end wait as long as this object lives: a file that is being written
/// is written to its end.
class SignalsWait {
 public:
  SignalsWait();
  SignalsWait(const SignalsWait&) = delete;
  SignalsWait& operator=(const SignalsWait&) = delete;
  ~SignalsWait();

  /// The signals that wait.
  static sigset_t Signals();
  /// The mask that was in effect before, for a new process.
  const sigset_t& Before() const { return before_; }

 private:
  sigset_t before_;
};
