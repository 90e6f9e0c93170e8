#include "Signals.h"

#include <initializer_list>

sigset_t SignalsWait::Signals() {
  sigset_t signals;
  ::sigemptyset(&signals);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) ::sigaddset(&signals, signal);
  return signals;
}

SignalsWait::SignalsWait() {
  const sigset_t signals = Signals();
  ::sigprocmask(SIG_BLOCK, &signals, &before_);
}

SignalsWait::~SignalsWait() {
  ::sigprocmask(SIG_SETMASK, &before_, nullptr);
}
