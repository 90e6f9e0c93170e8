#pragma once

#include "VyrDftStandardValueType.h"
#include "VyrUnicodeString.h"
#include "VyrUnknown.h"
#include "VyrVar.h"

/// The earlier form of `VyrIDftStandard`, kept for callers built against it. Its operations mean
/// the same, their results included, but for `GetValueType`. Used from one thread at a time.
class VyrIHolStandard : public IUnknown {
 public:
  /// Identifier of the interface.
  static constexpr IID kIid = {0x6a1f0002, 0x21d4, 0x4b0e, {0x9c, 0x55, 1, 2, 3, 4, 5, 2}};

  /// The standard's name: zero-terminated UTF-16 that the caller frees with `delete[]`.
  virtual HRESULT GetName(unsigned short** name) = 0;
  /// The parent standard that the standard tells, handed out likewise.
  virtual HRESULT GetParentStandard(unsigned short** name) = 0;
  /// Always `E_INVALIDARG`, reported: callers of this form are to size arrays themselves.
  virtual HRESULT GetValueType(const char* path, VyrDftStandardValueType* type) = 0;
  /// Text of a string or an enumeration value.
  virtual HRESULT GetValue(const char* path, int index, VyrUnicodeString& value) = 0;
  /// Texts of all elements that the path finds: a new array of `*count` that the caller frees with
  /// `delete[]`.
  virtual HRESULT GetValue(const char* path, VyrUnicodeString** values, int* count) = 0;
  /// A number.
  virtual HRESULT GetValue(const char* path, int index, double& value) = 0;
  /// Numbers of all elements that the path finds, into the caller's array, which must be large
  /// enough; with null for `values` only their number is told.
  virtual HRESULT GetValue(const char* path, double* values, int* count) = 0;
  /// An integer.
  virtual HRESULT GetValue(const char* path, int index, int& value) = 0;
  /// Integers of all elements that the path finds, likewise; a colour is one for each component.
  virtual HRESULT GetValue(const char* path, int* values, int* count) = 0;
  /// A place that no standard answers: `E_NOTIMPL`, reported.
  virtual HRESULT ReservedA() = 0;

 protected:
  ~VyrIHolStandard() = default;
};
/// Counted reference to the interface.
using VyrIHolStandard_var = VyrVar<VyrIHolStandard>;
