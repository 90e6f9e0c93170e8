#pragma once

#include "VyrIDftStandard.h"
#include "VyrUnknown.h"
#include "VyrVar.h"

/// Implemented by a drafting element that follows a standard: usually that of its drawing.
class VyrIDftElementWithStandard : public IUnknown {
 public:
  static constexpr IID kIid = {0x6a1f0002, 0x21d4, 0x4b0e, {0x9c, 0x55, 1, 2, 3, 4, 5, 7}};

  /// The element's standard with a reference for the caller. Fails when it has none.
  virtual HRESULT GetStandard(VyrIDftStandard** standard) = 0;

 protected:
  ~VyrIDftElementWithStandard() = default;
};
using VyrIDftElementWithStandard_var = VyrVar<VyrIDftElementWithStandard>;
