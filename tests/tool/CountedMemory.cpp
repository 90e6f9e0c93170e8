#include <dlfcn.h>
#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>

// Preloaded into a process, counts the bytes that it takes off the heap. When the process ends, the
// file that the environment names as HOL_MEMORY_COUNT gets "TOTAL PEAK": all that was ever taken,
// which grows as the work does, and the most that was held at a time.

namespace {

using Malloc = void* (*)(std::size_t);
using Realloc = void* (*)(void*, std::size_t);
using Free = void (*)(void*);

std::atomic<long> total{0};
std::atomic<long> held{0};
std::atomic<long> peak{0};

template <class Function>
Function Next(const char* name) {
  return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

void* Taken(void* block) {
  if (block == nullptr) return nullptr;
  const auto size = static_cast<long>(::malloc_usable_size(block));
  total += size;
  const long now = held += size;
  long before = peak;
  while (now > before && !peak.compare_exchange_weak(before, now)) {
  }
  return block;
}

void Released(void* block) {
  if (block != nullptr) held -= static_cast<long>(::malloc_usable_size(block));
}

__attribute__((destructor)) void Tell() {
  const char* file = std::getenv("HOL_MEMORY_COUNT");
  const int opened = file == nullptr ? -1 : ::open(file, O_WRONLY | O_CREAT | O_TRUNC, 0600);
  if (opened < 0) return;
  char text[64];
  const int size = std::snprintf(text, sizeof text, "%ld %ld\n", total.load(), peak.load());
  static_cast<void>(!::write(opened, text, static_cast<std::size_t>(size)));
  ::close(opened);
}

}  // namespace

extern "C" void* malloc(std::size_t size) {
  static const auto next = Next<Malloc>("malloc");
  return Taken(next(size));
}

// The linker itself asks for zeroed memory while it looks for a name: it gets what malloc hands
// out.
extern "C" void* calloc(std::size_t count, std::size_t size) {
  std::size_t bytes = 0;
  if (__builtin_mul_overflow(count, size, &bytes)) return nullptr;
  void* const block = malloc(bytes);
  return block == nullptr ? nullptr : std::memset(block, 0, bytes);
}

extern "C" void* realloc(void* block, std::size_t size) {
  static const auto next = Next<Realloc>("realloc");
  const long before = block == nullptr ? 0 : static_cast<long>(::malloc_usable_size(block));
  void* const moved = next(block, size);
  if (moved == nullptr) return nullptr;
  held -= before;
  return Taken(moved);
}

extern "C" void free(void* block) {
  static const auto next = Next<Free>("free");
  Released(block);
  next(block);
}
