#pragma once

#include <cstdint>

/// Result of a service, interface or version operation. Failures are negative and compare equal to
/// their hexadecimal spelling converted to 32 bits; `S_FALSE` is a success that is incomplete.
using HRESULT = std::int32_t;

inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT S_FALSE = 1;
inline constexpr HRESULT E_NOTIMPL = static_cast<HRESULT>(0x80004001u);
inline constexpr HRESULT E_NOINTERFACE = static_cast<HRESULT>(0x80004002u);
inline constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005u);
inline constexpr HRESULT E_UNEXPECTED = static_cast<HRESULT>(0x8000FFFFu);
inline constexpr HRESULT E_INVALIDARG = static_cast<HRESULT>(0x80070057u);

constexpr bool VyrSucceeded(HRESULT result) {
  return result >= 0;
}
constexpr bool VyrFailed(HRESULT result) {
  return result < 0;
}
