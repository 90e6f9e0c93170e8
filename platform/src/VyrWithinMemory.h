#pragma once

#include <new>
#include <string>

#include "VyrProblem.h"
#include "VyrResult.h"

// What reads, decodes, converts, upgrades, saves, replaces and restores lets no exception out: work
// that memory runs out for is refused like work on a file that cannot be read. That holds for every
// exported operation of these that has a result or a problem to say so. What only gives an answer,
// such as a path, a value or a list of names, throws std::bad_alloc when there is no memory even
// for that. So does a path command: an upgrade is made of them, and must break off rather than go
// on without one.

inline constexpr const char* kVyrOutOfMemory =
    "needs more memory than there is; end other programs, or split the file";
/// The same in so few letters that a string holds them in itself.
inline constexpr const char* kVyrOutOfMemoryInShort = "out of memory";

/// Makes `text`, a string of any kind, say that memory ran out: in full if it has room for that.
template <class Text>
void VyrSayOutOfMemory(Text& text) noexcept {
  try {
    text = kVyrOutOfMemory;
  } catch (const std::bad_alloc&) {
    text = kVyrOutOfMemoryInShort;
  }
}

/// The same for a problem, which may be none the next time.
inline void VyrSayOutOfMemory(VyrProblem& problem) noexcept {
  problem.line = 0;
  problem.isLasting = false;
  VyrSayOutOfMemory(problem.text);
}

/// Tells the process's new handler that a request failed that was not made by `operator new`, so
/// that a host which counts on the handler hears of all.
inline void VyrNoteOutOfMemory() noexcept {
  try {
    if (const std::new_handler handler = std::get_new_handler()) handler();
  } catch (const std::bad_alloc&) {
    // What a handler does that can make no room.
  }
}

/// The same, and fails as `operator new` does.
[[noreturn]] inline void VyrThrowOutOfMemory() {
  VyrNoteOutOfMemory();
  throw std::bad_alloc();
}

/// What `work` returns or, when memory runs out, what `refuse` returns, which must not need any.
template <class Work, class Refuse>
auto VyrWithinMemory(Work work, Refuse refuse) -> decltype(work()) {
  try {
    return work();
  } catch (const std::bad_alloc&) {
    return refuse();
  }
}

/// The same for an operation with a result and a problem.
template <class Work>
HRESULT VyrWithinMemory(VyrProblem& problem, Work work) {
  return VyrWithinMemory(work, [&] {
    VyrSayOutOfMemory(problem);
    return E_FAIL;
  });
}

/// The same for an operation that returns what went wrong, or nothing.
template <class Work>
std::string VyrWithinMemory(Work work) {
  return VyrWithinMemory(work, [] {
    std::string problem;
    VyrSayOutOfMemory(problem);
    return problem;
  });
}
