#include "VyrHolVisuEventsToolbox.h"

#include <utility>

namespace {

VyrHolVisuEventsToolbox::ModifyListener& Listener() {
  static VyrHolVisuEventsToolbox::ModifyListener listener;
  return listener;
}

}  // namespace

HRESULT VyrHolVisuEventsToolbox::DispatchModifyVisProperties(VyrIVisProperties* element,
                                                             VyrVisPropertyType property,
                                                             VyrVisGeometryType geometry,
                                                             const VyrVisPropertiesValues& values) {
  if (element == nullptr) return E_INVALIDARG;
  // A listener may install another one, which must not end the one that runs.
  const ModifyListener listener = Listener();
  return listener ? listener(element, property, geometry, values) : S_OK;
}

VyrHolVisuEventsToolbox::ModifyListener VyrHolVisuEventsToolbox::SetModifyListener(
    ModifyListener listener) {
  return std::exchange(Listener(), std::move(listener));
}
