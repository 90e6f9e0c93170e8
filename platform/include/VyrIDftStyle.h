#pragma once

#include "VyrDftStandardValueType.h"
#include "VyrUnicodeString.h"
#include "VyrUnknown.h"
#include "VyrVar.h"

class VyrIDftStyleManager;

/// A named style of one object type: the values that a standard gives to texts, tables and so on.
/// Paths begin below the style; results are those of `VyrIDftStandard`, and `E_FAIL` for a style
/// without a standard. Keeps its standard alive, and is used from one thread at a time together
/// with it.
class VyrIDftStyle : public IUnknown {
 public:
  /// Identifier of the interface.
  static constexpr IID kIid = {0x6a1f0002, 0x21d4, 0x4b0e, {0x9c, 0x55, 1, 2, 3, 4, 5, 4}};

  /// The style's name ("Default"): zero-terminated UTF-16 that the caller frees with `delete[]`.
  /// `E_INVALIDARG` for a null pointer.
  virtual HRESULT GetName(unsigned short** name) = 0;
  /// The object type that the style is for ("Text"), handed out likewise.
  virtual HRESULT GetType(unsigned short** type) = 0;
  /// An integer of the style, the `index`-th that the path finds, from 1.
  virtual HRESULT GetValue(const char* path, int index, int& value) = 0;
  /// A number of the style, likewise.
  virtual HRESULT GetValue(const char* path, int index, double& value) = 0;
  /// Text of a string or an enumeration value of the style, likewise.
  virtual HRESULT GetValue(const char* path, int index, VyrUnicodeString& value) = 0;
  /// All integers that the path finds, into the caller's array, which must be large enough; a
  /// colour is one integer for each of its components. With null for `values` only their number is
  /// told.
  virtual HRESULT GetValue(const char* path, int* values, int* count) = 0;
  /// All numbers that the path finds, likewise.
  virtual HRESULT GetValue(const char* path, double* values, int* count) = 0;
  /// All texts that the path finds. `*values` is a new array of `*count` that the caller frees with
  /// `delete[]`.
  virtual HRESULT GetValue(const char* path, VyrUnicodeString** values, int* count) = 0;
  /// Type of the values that the element at `path` holds, and how many they are (`count` may be
  /// null).
  virtual HRESULT GetValueType(const char* path, VyrDftStandardValueType* type, int* count) = 0;
  /// 1 when the path finds at least one element, else 0, as without a standard. Unlike the queries
  /// above, it looks in the whole standard and not below the style.
  virtual unsigned char HasNode(const char* path) = 0;
  /// Format version of the standard (0 to the current version); -1 without one.
  virtual int GetStdVersion() = 0;
  /// The standard as the manager of its styles, with a reference for the caller. `manager` must
  /// point to null, else `E_INVALIDARG`. `E_UNEXPECTED`, reported, without a standard and when it
  /// is no manager.
  virtual HRESULT GetStyleManager(VyrIDftStyleManager** manager) = 0;

 protected:
  ~VyrIDftStyle() = default;
};
/// Counted reference to the interface.
using VyrIDftStyle_var = VyrVar<VyrIDftStyle>;
