#pragma once

#include "VyrUnknown.h"
#include "VyrVar.h"
#include "VyrVisPropertiesValues.h"

/// Kinds of geometry that an element may show, each with graphic properties of its own.
enum VyrVisGeometryType : int {
  VyrVisLines = 3,   ///< thickness, line type and colour
  VyrVisPoints = 4,  ///< symbol and colour
};

/// Kinds of properties.
enum VyrVisPropertyType : int {
  VyrVisAllProperties = 12,  ///< all that `VyrVisPropertiesValues` holds
};

/// Implemented by an element that is shown: its graphic properties by geometry type. Called on the
/// thread that uses the element.
class VyrIVisProperties : public IUnknown {
 public:
  /// Identifier of the interface.
  static constexpr IID kIid = {0x6a1f0002, 0x21d4, 0x4b0e, {0x9c, 0x55, 1, 2, 3, 4, 5, 9}};

  /// `S_OK` when the element shows geometry of that type, `S_FALSE` when it does not.
  virtual HRESULT IsPropertyOnGeometryType(VyrVisPropertyType property,
                                           VyrVisGeometryType geometry) = 0;
  /// The properties that the element has for that geometry. Negative, and `values` is then of no
  /// use, when it cannot tell.
  virtual HRESULT GetPropertiesAtt(VyrVisPropertyType property, VyrVisGeometryType geometry,
                                   VyrVisPropertiesValues& values) = 0;
  /// Gives the element these properties for that geometry; what is not set in `values` stays. The
  /// element may keep less than it is given. Negative when it refuses.
  virtual HRESULT SetPropertiesAtt(VyrVisPropertyType property, VyrVisGeometryType geometry,
                                   const VyrVisPropertiesValues& values) = 0;

 protected:
  ~VyrIVisProperties() = default;
};
/// Counted reference to the interface.
using VyrIVisProperties_var = VyrVar<VyrIVisProperties>;
