#pragma once

#include <cstddef>
#include <string_view>

#include "VyrWithinMemory.h"

/// Which requests for memory fail.
enum class Failing {
  Once,   ///< one: a request for more than there is in one piece
  Onward  ///< one and all after it, but those made while an exception gives memory back
};

/// Lets `operator new` fail from the `request`-th request on while it lives; requests count from 1.
/// One object at a time, and one thread.
class FailingMemory {
 public:
  FailingMemory(Failing failing, std::size_t request);
  FailingMemory(const FailingMemory&) = delete;
  FailingMemory& operator=(const FailingMemory&) = delete;
  ~FailingMemory();

  /// Whether a request failed.
  bool HasFailed() const;
};

/// Whether a refusal says that memory ran out, in full or in short.
inline bool TellsOfMemory(std::string_view problem) {
  return problem == kVyrOutOfMemory || problem == kVyrOutOfMemoryInShort;
}
