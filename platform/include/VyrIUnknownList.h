#pragma once

#include "HolStandardInfraExport.h"
#include "VyrUnknown.h"
#include "VyrVar.h"

/// An ordered list of objects of any kind. Holds a reference to each.
class VyrIUnknownList : public IUnknown {
 public:
  static constexpr IID kIid = {0x6a1f0002, 0x21d4, 0x4b0e, {0x9c, 0x55, 1, 2, 3, 4, 5, 5}};

  virtual HRESULT Count(unsigned int* count) = 0;
  /// The object at a 0-based place, with a reference for the caller. `E_INVALIDARG` outside the
  /// list.
  virtual HRESULT Item(unsigned int index, IUnknown** object) = 0;
  /// Inserts before the object at a 0-based place; at the count, appends. `E_INVALIDARG` beyond it
  /// and for a null object.
  virtual HRESULT Add(unsigned int index, IUnknown* object) = 0;
  virtual HRESULT RemoveAll() = 0;

 protected:
  ~VyrIUnknownList() = default;
};
using VyrIUnknownList_var = VyrVar<VyrIUnknownList>;

/// A new empty list.
HOLSTANDARDINFRA_EXPORT VyrIUnknownList_var VyrMakeUnknownList();
