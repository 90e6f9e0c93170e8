#include <gtest/gtest.h>

#include <cstdio>

#include "VyrInstanceCounter.h"

/// Number of objects that tests did not give back; each kind is named on standard error.
static long CountLostObjects() {
  long lost = 0;
  VyrInstanceCounter::ForEach([&](const VyrInstanceCounter& counter) {
    if (counter.GetLive() == 0) return;
    std::fprintf(stderr, "%s: %ld objects are still alive\n", counter.GetName(), counter.GetLive());
    lost += counter.GetLive();
  });
  return lost;
}

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  const int result = RUN_ALL_TESTS();
  return CountLostObjects() != 0 ? 1 : result;
}
