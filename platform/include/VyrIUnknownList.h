#pragma once

#include "HolStandardInfraExport.h"
#include "VyrUnknown.h"
#include "VyrVar.h"

/// An ordered list of objects of any kind. Holds a reference to each. Used from one thread at a
/// time.
class VyrIUnknownList : public IUnknown {
 public:
  /// Identifier of the interface.
  static constexpr IID kIid = {0x6a1f0002, 0x21d4, 0x4b0e, {0x9c, 0x55, 1, 2, 3, 4, 5, 5}};

  /// Number of objects. `E_INVALIDARG` for a null pointer.
  virtual HRESULT Count(unsigned int* count) = 0;
  /// The object at a 0-based place, with a reference for the caller. `E_INVALIDARG` outside the
  /// list and for a null pointer.
  virtual HRESULT Item(unsigned int index, IUnknown** object) = 0;
  /// Inserts before the object at a 0-based place; at the count, appends. `E_INVALIDARG` beyond it
  /// and for a null object. The list takes a reference of its own.
  virtual HRESULT Add(unsigned int index, IUnknown* object) = 0;
  /// Empties the list and gives its references back; always `S_OK`.
  virtual HRESULT RemoveAll() = 0;

 protected:
  ~VyrIUnknownList() = default;
};
/// Counted reference to the interface.
using VyrIUnknownList_var = VyrVar<VyrIUnknownList>;

/// A new empty list, never null.
HOLSTANDARDINFRA_EXPORT VyrIUnknownList_var VyrMakeUnknownList();
