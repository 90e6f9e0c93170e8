#pragma once

#include <functional>

#include "HolStandardInfraExport.h"
#include "VyrIVisProperties.h"
#include "VyrResult.h"

/// Announces changes of what is shown, so that the host's views are drawn anew. All operations are
/// static; an announcement is made on the thread that changes the element.
class HOLSTANDARDINFRA_EXPORT VyrHolVisuEventsToolbox {
 public:
  VyrHolVisuEventsToolbox() = delete;

  /// Tells the host that the graphic properties of an element now have `values`, and gives what its
  /// listener answers. `E_INVALIDARG` for a null element.
  static HRESULT DispatchModifyVisProperties(VyrIVisProperties* element,
                                             VyrVisPropertyType property,
                                             VyrVisGeometryType geometry,
                                             const VyrVisPropertiesValues& values);

  /// A host's listener. The element and its values are borrowed for the call; the result is that of
  /// the dispatch, negative when the change could not be passed on.
  using ModifyListener =
      std::function<HRESULT(VyrIVisProperties* element, VyrVisPropertyType property,
                            VyrVisGeometryType geometry, const VyrVisPropertiesValues& values)>;
  /// Installs the host's listener and returns the one before. Without one a change is dispatched
  /// to nobody, successfully. Not synchronised: a host sets it before it uses the library.
  static ModifyListener SetModifyListener(ModifyListener listener);
};
