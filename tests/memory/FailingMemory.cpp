#include "FailingMemory.h"

#include <cstdlib>
#include <exception>
#include <new>

namespace {

bool isOn = false;
bool hasFailed = false;
Failing howItFails = Failing::Once;
std::size_t requestsLeft = 0;

bool Fails() {
  if (!isOn) return false;
  if (requestsLeft > 1) {
    --requestsLeft;
    return false;
  }
  if (hasFailed && (howItFails == Failing::Once || std::uncaught_exceptions() > 0)) return false;
  hasFailed = true;
  return true;
}

void* AllocateOrNull(std::size_t size) noexcept {
  return Fails() ? nullptr : std::malloc(size == 0 ? 1 : size);
}

void* AllocateOrThrow(std::size_t size) {
  void* const memory = AllocateOrNull(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

FailingMemory::FailingMemory(Failing failing, std::size_t request) {
  howItFails = failing;
  requestsLeft = request;
  hasFailed = false;
  isOn = true;
}

FailingMemory::~FailingMemory() {
  isOn = false;
}

bool FailingMemory::HasFailed() const {
  return hasFailed;
}

#include "ReplacedOperators.h"
