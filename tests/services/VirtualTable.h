#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <vector>

/// The place of a virtual operation in the table of its class. A pointer to one holds its offset
/// there in bytes, and 1 to be told from the address of an operation that is not virtual.
template <class Function, class Class>
std::size_t SlotOf(Function Class::*operation) {
  struct Representation {
    std::intptr_t pointer;
    std::ptrdiff_t adjustment;
  };
  const auto pointer = std::bit_cast<Representation>(operation).pointer;
  return static_cast<std::size_t>(pointer - 1) / sizeof(void*);
}

/// `count` places in a row.
inline std::vector<std::size_t> SlotsFrom(std::size_t first, std::size_t count) {
  std::vector<std::size_t> slots(count);
  std::iota(slots.begin(), slots.end(), first);
  return slots;
}
