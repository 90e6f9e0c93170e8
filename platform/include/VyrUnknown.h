#pragma once

#include <array>
#include <cstdint>

#include "VyrResult.h"

/// Identifies an interface across modules: 16 bytes, compared as a whole.
struct IID {
  std::uint32_t data1;                ///< bytes 0 to 3, as a number
  std::uint16_t data2;                ///< bytes 4 and 5, as a number
  std::uint16_t data3;                ///< bytes 6 and 7, as a number
  std::array<std::uint8_t, 8> data4;  ///< bytes 8 to 15

  /// Equal in every byte.
  friend constexpr bool operator==(const IID&, const IID&) = default;
};

/// Root of every interface of the object framework. Objects are reference-counted: whoever
/// receives an interface from an operation owns one reference and gives it back with `Release`.
/// References may be counted on any thread.
class IUnknown {
 public:
  /// Identifier of the interface.
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
