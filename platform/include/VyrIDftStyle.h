#pragma once

#include "VyrDftStandardValueType.h"
#include "VyrUnicodeString.h"
#include "VyrUnknown.h"
#include "VyrVar.h"

class VyrIDftStyleManager;

/// A named style of one object type: the values that a standard gives to texts, tables and so on.
/// Paths begin below the style; results are those of `VyrIDftStandard`, and `E_FAIL` for a style
/// without a standard. Keeps its standard alive.
class VyrIDftStyle : public IUnknown {
 public:
  static constexpr IID kIid = {0x6a1f0002, 0x21d4, 0x4b0e, {0x9c, 0x55, 1, 2, 3, 4, 5, 4}};

  /// Zero-terminated UTF-16 that the caller frees with `delete[]`, as of the next operation.
  virtual HRESULT GetName(unsigned short** name) = 0;
  virtual HRESULT GetType(unsigned short** type) = 0;
  virtual HRESULT GetValue(const char* path, int index, int& value) = 0;
  virtual HRESULT GetValue(const char* path, int index, double& value) = 0;
  virtual HRESULT GetValue(const char* path, int index, VyrUnicodeString& value) = 0;
  virtual HRESULT GetValue(const char* path, int* values, int* count) = 0;
  virtual HRESULT GetValue(const char* path, double* values, int* count) = 0;
  virtual HRESULT GetValue(const char* path, VyrUnicodeString** values, int* count) = 0;
  virtual HRESULT GetValueType(const char* path, VyrDftStandardValueType* type, int* count) = 0;
  /// Unlike the queries above, looks in the whole standard and not below the style.
  virtual unsigned char HasNode(const char* path) = 0;
  /// Format version of the standard.
  virtual int GetStdVersion() = 0;
  /// The standard as the manager of its styles, with a reference for the caller. `manager` must
  /// point to null, else `E_INVALIDARG`.
  virtual HRESULT GetStyleManager(VyrIDftStyleManager** manager) = 0;

 protected:
  ~VyrIDftStyle() = default;
};
using VyrIDftStyle_var = VyrVar<VyrIDftStyle>;
