#include "MemoryShortage.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <exception>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

#include "Format.h"
#include "Session.h"

namespace {

bool isShort = false;

/// The name of the file that is read, in memory that is always there; longer names are cut.
std::array<char, 1024> reading = {};
/// Whether it is told that memory ran out for that file. What comes after may find the same.
bool isToldOfReading = false;

// The end of an answer takes memory too: JSON is taken apart on a list of its own, in a destructor,
// from which no exception can come. It is not touched, and so takes none, before it is needed.
constexpr std::size_t kReserve = std::size_t{4} << 20;

struct Freed {
  void operator()(void* memory) const { std::free(memory); }
};
std::unique_ptr<void, Freed> reserve;

/// The request that fails first is made again, with the reserve to be had.
void NoteFailedRequest() {
  isShort = true;
  if (reserve == nullptr) throw std::bad_alloc();
  reserve.reset();
}

/// A destructor that has no memory, not even of the reserve.
void EndWithoutMemory() {
  if (!isShort) std::abort();
  ComplainOfMemory();
  ::_exit(kInvalidInput);
}

}  // namespace

void WatchMemory() {
  reserve.reset(std::malloc(kReserve));
  std::set_new_handler(NoteFailedRequest);
  std::set_terminate(EndWithoutMemory);
}

bool IsMemoryShort() noexcept {
  return isShort;
}

void RequireMemory() {
  if (isShort) throw std::bad_alloc();
}

void ForgetMemoryShortage() noexcept {
  isShort = false;
  if (reserve == nullptr) reserve.reset(std::malloc(kReserve));
}

void NoteReading(const std::string& file) {
  isToldOfReading = false;
  const std::string shown = file == "-" ? "standard input" : Printable(file);
  const std::size_t size = std::min(shown.size(), reading.size() - 1);
  *std::copy_n(shown.begin(), size, reading.begin()) = '\0';
}

Failure AsTold(Failure failure) {
  if (!isShort) return failure;
  ForgetMemoryShortage();
  failure.line = 0;
  failure.text = kNeedsMoreMemory;
  if (failure.status != kNotWritten) failure.status = kInvalidInput;
  return failure;
}

void ComplainOfMemory() noexcept {
  ForgetMemoryShortage();
  if (std::exchange(isToldOfReading, true)) return;
  const std::string_view parts[] = {"holstd: ", reading.data(), reading.front() == '\0' ? "" : ": ",
                                    kNeedsMoreMemory, "\n"};
  for (const std::string_view part : parts) static_cast<void>(WriteAll(STDERR_FILENO, part));
}
