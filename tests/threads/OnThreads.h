#pragma once

#include <latch>
#include <thread>
#include <vector>

constexpr int kThreads = 4;

/// Does `work(number)` on several threads that begin together, and waits for all of them.
template <class Work>
void OnThreads(const Work& work) {
  std::latch start(kThreads);
  std::vector<std::jthread> threads;
  for (int number = 0; number < kThreads; ++number) {
    threads.emplace_back([&start, &work, number] {
      start.arrive_and_wait();
      work(number);
    });
  }
}
