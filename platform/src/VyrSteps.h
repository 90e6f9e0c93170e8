#pragma once

#include <cstdint>

/// Counts the steps of work that are the same on every machine, one for each item that is looked at
/// or moved. In development builds only, where tests show how the work grows; in other builds
/// counting costs nothing.
class VyrSteps {
 public:
#ifdef HOL_DEVELOPMENT_BUILD
  static void Count(std::uint64_t steps = 1) {
    count_ += steps;
  }
  /// Steps that this thread has taken since it started.
  static std::uint64_t GetCount() {
    return count_;
  }

 private:
  static inline thread_local std::uint64_t count_ = 0;
#else
  static void Count(std::uint64_t = 1) {}
#endif
};
