#pragma once

#include "VyrDftStandardValueType.h"
#include "VyrListValVyrUnicodeString.h"
#include "VyrUnicodeString.h"
#include "VyrUnknown.h"
#include "VyrVar.h"

/// A drafting standard, as drawings and the standard services ask it. Operations of the same name
/// mean what `VyrIDftStandard` says, their results included. Used from one thread at a time.
class VyrIDrwStandard : public IUnknown {
 public:
  /// Identifier of the interface.
  static constexpr IID kIid = {0x6a1f0002, 0x21d4, 0x4b0e, {0x9c, 0x55, 1, 2, 3, 4, 5, 3}};

  /// The standard's name: zero-terminated UTF-16 that the caller frees with `delete[]`.
  virtual HRESULT GetName(unsigned short** name) = 0;
  /// The standard's name; always `S_OK`.
  virtual HRESULT GetName(VyrUnicodeString& name) = 0;
  /// The parent standard that the standard tells, handed out likewise; an empty text when it does
  /// not say.
  virtual HRESULT GetParentStandard(unsigned short** name) = 0;
  /// The parent standard that the standard tells; `E_UNEXPECTED`, reported, when it does not say.
  virtual HRESULT GetParentStandard(VyrUnicodeString& name) = 0;
  /// 1 when the path finds at least one element, else 0.
  virtual unsigned char HasNode(const char* path) = 0;
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
  /// Type of the values that the element at `path` holds, and how many they are (`count` may be
  /// null).
  virtual HRESULT GetValueType(const char* path, VyrDftStandardValueType* type, int* count) = 0;
  /// The 1-based row of the table of line widths whose width is nearest to `thicknessMm`
  /// millimetres, the first of two that are equally near; 0 when the table is empty.
  /// `E_INVALIDARG` for a negative thickness.
  virtual HRESULT GetLineThicknessIndex(double thicknessMm, int* index) = 0;
  /// @{
  /// Places that no standard answers: `E_NOTIMPL`, reported.
  virtual HRESULT ReservedB() = 0;
  virtual HRESULT ReservedC() = 0;
  virtual HRESULT ReservedD() = 0;
  /// @}
  /// Format version of the standard (0 to the current version); 0 when the file cannot be read.
  virtual int GetVersion() = 0;
  /// How annotations are placed; standards know one way only, 0. `E_INVALIDARG` for a null pointer.
  virtual HRESULT GetAnnotationMode(int* mode) = 0;
  /// @{
  /// Places that no standard answers: `E_NOTIMPL`, reported.
  virtual HRESULT ReservedE() = 0;
  virtual HRESULT ReservedF() = 0;
  virtual HRESULT ReservedG() = 0;
  virtual HRESULT ReservedH() = 0;
  virtual HRESULT ReservedI() = 0;
  virtual HRESULT ReservedJ() = 0;
  virtual HRESULT ReservedK() = 0;
  virtual HRESULT ReservedL() = 0;
  virtual HRESULT ReservedM() = 0;
  /// @}
  /// Names of the styles of an object type ("Text"), in document order. `E_UNEXPECTED` when the
  /// standard has no styles of that type, `E_INVALIDARG`, reported, for a null list.
  virtual HRESULT GetStylesNames(const char* type, VyrListValVyrUnicodeString* names) = 0;
  /// Nothing, twice, and the standard's name: a new narrow text that the caller frees with
  /// `delete[]`. `E_INVALIDARG`, reported, when a pointer is null.
  virtual HRESULT GetStylePath(char** first, char** second, char** standardName) = 0;

 protected:
  ~VyrIDrwStandard() = default;
};
/// Counted reference to the interface.
using VyrIDrwStandard_var = VyrVar<VyrIDrwStandard>;
