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

void* Allocate(std::size_t size) noexcept {
  return Fails() ? nullptr : std::malloc(size == 0 ? 1 : size);
}

void* AllocateOrThrow(std::size_t size) {
  void* const memory = Allocate(size);
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

void* operator new(std::size_t size) {
  return AllocateOrThrow(size);
}
void* operator new[](std::size_t size) {
  return AllocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
