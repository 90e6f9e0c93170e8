#pragma once

#include "VyrIDftStandard.h"
#include "VyrUnknown.h"
#include "VyrVar.h"

/// Implemented by a drafting element that follows a standard: usually that of its drawing. Called
/// on the thread that uses the element.
class VyrIDftElementWithStandard : public IUnknown {
 public:
  /// Identifier of the interface.
  static constexpr IID kIid = {0x6a1f0002, 0x21d4, 0x4b0e, {0x9c, 0x55, 1, 2, 3, 4, 5, 7}};

  /// The element's standard with a reference for the caller. Negative when it has none.
  virtual HRESULT GetStandard(VyrIDftStandard** standard) = 0;

 protected:
  ~VyrIDftElementWithStandard() = default;
};
/// Counted reference to the interface.
using VyrIDftElementWithStandard_var = VyrVar<VyrIDftElementWithStandard>;
