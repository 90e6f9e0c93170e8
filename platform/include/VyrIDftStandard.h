#pragma once

#include "VyrDftStandardValueType.h"
#include "VyrUnicodeString.h"
#include "VyrUnknown.h"
#include "VyrVar.h"

/// A drafting standard, as annotations and dimensions ask it for values.
///
/// A path names parameters from the outside in, joined by "." ("Dimension.ParentStandard"); each
/// name is found at any depth below the one before. Names are compared exactly. Where a path finds
/// several elements they count in document order, the first is 1. Numbers are in the units of the
/// standard; the shipped ones have millimetres and degrees. Results: `S_OK`; `E_INVALIDARG`
/// for a null pointer; `E_FAIL` when the path finds nothing at that index; `E_UNEXPECTED` when what
/// it finds is of another type or cannot be read. Outputs are left alone on failure, but for the
/// type and the count of `GetValueType`.
///
/// Used from one thread at a time. Answers are remembered: the standard in memory never changes.
class VyrIDftStandard : public IUnknown {
 public:
  /// Identifier of the interface.
  static constexpr IID kIid = {0x6a1f0002, 0x21d4, 0x4b0e, {0x9c, 0x55, 1, 2, 3, 4, 5, 1}};

  /// The standard's name: zero-terminated UTF-16 that the caller frees with `delete[]`.
  virtual HRESULT GetName(unsigned short** name) = 0;
  /// What the standard says in "Dimension.ParentStandard" ("ISO", "JIS", or "ANSI", which an ASME
  /// standard says, too), handed out likewise; an empty text when it does not say.
  virtual HRESULT GetParentStandard(unsigned short** name) = 0;
  /// Type of the values that the element at `path` holds, and how many they are (`count` may be
  /// null). `E_UNEXPECTED` when they are of several types, or of one that has no number.
  virtual HRESULT GetValueType(const char* path, VyrDftStandardValueType* type, int* count) = 0;
  /// Text of a string or an enumeration value.
  virtual HRESULT GetValue(const char* path, int index, VyrUnicodeString& value) = 0;
  /// Texts of all elements that the path finds. `*values` is a new array of `*count` that the
  /// caller frees with `delete[]`.
  virtual HRESULT GetValue(const char* path, VyrUnicodeString** values, int* count) = 0;
  /// A number.
  virtual HRESULT GetValue(const char* path, int index, double& value) = 0;
  /// Numbers of all elements that the path finds, into the caller's array. The array must be large
  /// enough, which is not checked; with null for `values` only their number is told, to size it by.
  virtual HRESULT GetValue(const char* path, double* values, int* count) = 0;
  /// An integer.
  virtual HRESULT GetValue(const char* path, int index, int& value) = 0;
  /// Integers of all elements that the path finds, likewise; a colour is one integer for each of
  /// its components.
  virtual HRESULT GetValue(const char* path, int* values, int* count) = 0;
  /// A place that no standard answers: `E_NOTIMPL`, reported.
  virtual HRESULT ReservedA() = 0;

 protected:
  ~VyrIDftStandard() = default;
};
/// Counted reference to the interface.
using VyrIDftStandard_var = VyrVar<VyrIDftStandard>;
