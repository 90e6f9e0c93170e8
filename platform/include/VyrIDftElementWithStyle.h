#pragma once

#include "VyrIDftStyle.h"
#include "VyrUnknown.h"
#include "VyrVar.h"

/// Which of its values an element takes from a style. The library passes it on as it is.
enum DftStyleApplyMode : int {
  DftStyleApplyAll = 0,        ///< all of them
  DftStyleApplyUnsetOnly = 1,  ///< what its user set by hand stays
};

/// On what occasion an element takes a style. The library passes it on as it is.
enum DftStyleApplyContext : int {
  DftStyleOnCreation = 0,        ///< it is new
  DftStyleOnModification = 1,    ///< its user chose another style
  DftStyleOnStandardChange = 2,  ///< its drawing got another standard
};

/// Implemented by a drafting element that looks as a style says. Called on the thread that uses the
/// element.
class VyrIDftElementWithStyle : public IUnknown {
 public:
  /// Identifier of the interface.
  static constexpr IID kIid = {0x6a1f0002, 0x21d4, 0x4b0e, {0x9c, 0x55, 1, 2, 3, 4, 5, 8}};

  /// Takes over the values of `style`, which is only borrowed. The result is the element's own;
  /// negative when it could not.
  virtual HRESULT ApplyStyle(VyrIDftStyle* style, DftStyleApplyMode mode,
                             DftStyleApplyContext context) = 0;

 protected:
  ~VyrIDftElementWithStyle() = default;
};
/// Counted reference to the interface.
using VyrIDftElementWithStyle_var = VyrVar<VyrIDftElementWithStyle>;
