#pragma once

#include <atomic>
#include <functional>

#include "HolStandardInfraExport.h"

/// Number of live objects of one kind. Kept in development builds only, where a host's test run
/// can show that every reference was given back; in other builds counting costs nothing. Counters
/// are made once per class, live as long as the process and may be used from any thread.
class HOLSTANDARDINFRA_EXPORT VyrInstanceCounter {
 public:
  /// `name` must outlive the process: the name of the class that is counted.
  explicit VyrInstanceCounter(const char* name);
  VyrInstanceCounter(const VyrInstanceCounter&) = delete;
  VyrInstanceCounter& operator=(const VyrInstanceCounter&) = delete;

  /// Counts one object more.
  void Increment() { live_.fetch_add(1, std::memory_order_relaxed); }
  /// Counts one object less.
  void Decrement() { live_.fetch_sub(1, std::memory_order_relaxed); }
  /// Number of objects that live at this moment.
  long GetLive() const { return live_.load(std::memory_order_relaxed); }
  /// The name of the class that is counted.
  const char* GetName() const { return name_; }

  /// Calls `visit` for every counter of the process, the latest first.
  static void ForEach(const std::function<void(const VyrInstanceCounter&)>& visit);

 private:
  const char* name_;
  std::atomic<long> live_{0};
  VyrInstanceCounter* next_;
};

/// Base of a class whose live instances are counted under `Counted::kClassName`.
template <class Counted>
class VyrCountedInstance {
#ifdef HOL_DEVELOPMENT_BUILD
 protected:
  VyrCountedInstance() {
    Counter().Increment();
  }
  VyrCountedInstance(const VyrCountedInstance&) {
    Counter().Increment();
  }
  VyrCountedInstance& operator=(const VyrCountedInstance&) = default;
  ~VyrCountedInstance() {
    Counter().Decrement();
  }

 private:
  static VyrInstanceCounter& Counter() {
    static VyrInstanceCounter counter(Counted::kClassName);
    return counter;
  }
#endif
};
