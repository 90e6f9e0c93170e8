#include "VyrInstanceCounter.h"

namespace {

std::atomic<VyrInstanceCounter*> firstCounter{nullptr};

}  // namespace

VyrInstanceCounter::VyrInstanceCounter(const char* name) : name_(name), next_(firstCounter.load()) {
  while (!firstCounter.compare_exchange_weak(next_, this)) {
  }
}

void VyrInstanceCounter::ForEach(const std::function<void(const VyrInstanceCounter&)>& visit) {
  for (VyrInstanceCounter* counter = firstCounter.load(); counter != nullptr;
       counter = counter->next_) {
    visit(*counter);
  }
}
