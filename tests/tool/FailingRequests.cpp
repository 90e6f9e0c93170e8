#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <new>
#include <string>

// Preloaded into the tool, makes one of its requests for memory fail. Counted are those of its main
// function: from when it has set a handler for them. The environment says which:
//   HOL_FAILING_REQUEST  its number, counted from 1
//   HOL_REQUESTS_LOG     file to which the number of the requests is written at the end

namespace {

unsigned long made = 0;
unsigned long failing = 0;

__attribute__((constructor)) void ReadEnvironment() {
  const char* request = std::getenv("HOL_FAILING_REQUEST");
  failing = request == nullptr ? 0 : std::strtoul(request, nullptr, 10);
}

__attribute__((destructor)) void WriteNumber() {
  const char* log = std::getenv("HOL_REQUESTS_LOG");
  const int file = log == nullptr ? -1 : ::open(log, O_WRONLY | O_CREAT | O_TRUNC, 0600);
  if (file < 0) return;
  const std::string number = std::to_string(made);
  if (::write(file, number.data(), number.size()) < 0) std::abort();
  ::close(file);
}

bool Fails() {
  if (std::get_new_handler() == nullptr) return false;
  return ++made == failing;
}

/// As the library does it: who has set a handler hears of the failure, and ends the request.
void* AllocateOrThrow(std::size_t size) {
  for (;;) {
    void* const memory = Fails() ? nullptr : std::malloc(size == 0 ? 1 : size);
    if (memory != nullptr) return memory;
    const std::new_handler handler = std::get_new_handler();
    if (handler == nullptr) throw std::bad_alloc();
    handler();
  }
}

void* AllocateOrNull(std::size_t size) noexcept {
  try {
    return AllocateOrThrow(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

}  // namespace

#include "ReplacedOperators.h"
