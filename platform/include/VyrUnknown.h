#pragma once

#include <array>
#include <cstdint>

#include "VyrResult.h"

/// Identifies an interface across modules: 16 bytes, compared as a whole.
struct IID {
  std::uint32_t data1;
  std::uint16_t data2;
  std::uint16_t data3;
  std::array<std::uint8_t, 8> data4;

  friend constexpr bool operator==(const IID&, const IID&) = default;
};

/// Root of every interface of the object framework. Objects are reference-counted: whoever
/// receives an interface from an operation owns one reference and gives it back with `Release`.
class IUnknown {
 public:
  static constexpr IID kIid = {0x00000000, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

  /// Asks for the interface `iid`. On `S_OK` `*object` holds a counted reference; otherwise
  /// `E_NOINTERFACE` and null, or `E_INVALIDARG` when `object` is null.
  virtual HRESULT QueryInterface(const IID& iid, void** object) = 0;
  /// Adds a reference and returns the new count.
  virtual unsigned long AddRef() = 0;
  /// Gives a reference back, destroying the object with its last one, and returns what is left.
  virtual unsigned long Release() = 0;

 protected:
  ~IUnknown() = default;
};
