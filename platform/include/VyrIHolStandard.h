#pragma once

#include "VyrDftStandardValueType.h"
#include "VyrUnicodeString.h"
#include "VyrUnknown.h"
#include "VyrVar.h"

/// The earlier form of `VyrIDftStandard`, kept for callers built against it. Its operations mean
/// the same, but for `GetValueType`.
class VyrIHolStandard : public IUnknown {
 public:
  static constexpr IID kIid = {0x6a1f0002, 0x21d4, 0x4b0e, {0x9c, 0x55, 1, 2, 3, 4, 5, 2}};

  virtual HRESULT GetName(unsigned short** name) = 0;
  virtual HRESULT GetParentStandard(unsigned short** name) = 0;
  /// Always `E_INVALIDARG`, reported: callers of this form are to size arrays themselves.
  virtual HRESULT GetValueType(const char* path, VyrDftStandardValueType* type) = 0;
  virtual HRESULT GetValue(const char* path, int index, VyrUnicodeString& value) = 0;
  virtual HRESULT GetValue(const char* path, VyrUnicodeString** values, int* count) = 0;
  virtual HRESULT GetValue(const char* path, int index, double& value) = 0;
  virtual HRESULT GetValue(const char* path, double* values, int* count) = 0;
  virtual HRESULT GetValue(const char* path, int index, int& value) = 0;
  virtual HRESULT GetValue(const char* path, int* values, int* count) = 0;
  virtual HRESULT ReservedA() = 0;

 protected:
  ~VyrIHolStandard() = default;
};
using VyrIHolStandard_var = VyrVar<VyrIHolStandard>;
