#pragma once

#include <cstdint>

/// Result of a service, interface or version operation. Failures are negative and compare equal to
/// their hexadecimal spelling converted to 32 bits; `S_FALSE` is a success that is incomplete.
using HRESULT = std::int32_t;

/// Done.
inline constexpr HRESULT S_OK = 0;
/// Done, or answered, but not all of it, or with "no"; the operation says which.
inline constexpr HRESULT S_FALSE = 1;
/// A place in an interface that nobody answers.
inline constexpr HRESULT E_NOTIMPL = static_cast<HRESULT>(0x80004001u);
/// The object does not have the interface that it was asked for.
inline constexpr HRESULT E_NOINTERFACE = static_cast<HRESULT>(0x80004002u);
/// It could not be done, or there is no such thing.
inline constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005u);
/// Something is not as it has to be: a value of another type, an object in no state for the call.
inline constexpr HRESULT E_UNEXPECTED = static_cast<HRESULT>(0x8000FFFFu);
/// An argument that makes no sense: null, empty, out of range.
inline constexpr HRESULT E_INVALIDARG = static_cast<HRESULT>(0x80070057u);

/// True for `S_OK`, `S_FALSE` and every other result that is not negative.
constexpr bool VyrSucceeded(HRESULT result) {
  return result >= 0;
}
/// True for every negative result.
constexpr bool VyrFailed(HRESULT result) {
  return result < 0;
}
