#pragma once

#include <functional>

#include "HolStandardInfraExport.h"
#include "VyrIVisProperties.h"
#include "VyrResult.h"

/// Announces changes of what is shown, so that the host's views are drawn anew.
class HOLSTANDARDINFRA_EXPORT VyrHolVisuEventsToolbox {
 public:
  VyrHolVisuEventsToolbox() = delete;

  /// Tells the host that the graphic properties of an element now have `values`, and gives what its
  /// listener answers. `E_INVALIDARG` for a null element.
  static HRESULT DispatchModifyVisProperties(VyrIVisProperties* element,
                                             VyrVisPropertyType property,
                                             VyrVisGeometryType geometry,
                                             const VyrVisPropertiesValues& values);

  using ModifyListener =
      std::function<HRESULT(VyrIVisProperties* element, VyrVisPropertyType property,
                            VyrVisGeometryType geometry, const VyrVisPropertiesValues& values)>;
  /// Installs the host's listener and returns the one before. Without one a change is dispatched
  /// to nobody, successfully. Not synchronised: a host sets it before it uses the library.
  static ModifyListener SetModifyListener(ModifyListener listener);
};
