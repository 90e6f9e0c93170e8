#pragma once

#include <optional>

/// Colour of a graphic property. Components are those of the standard, 0 to 255 in the shipped
/// ones.
struct VyrVisColor {
  unsigned int red = 0;    ///< first component
  unsigned int green = 0;  ///< second component
  unsigned int blue = 0;   ///< third component

  /// Equal in every component.
  friend bool operator==(const VyrVisColor&, const VyrVisColor&) = default;
};

/// Graphic properties of one geometry type of an element. What is not set stays as it is where the
/// values are written.
struct VyrVisPropertiesValues {
  std::optional<unsigned int> width;       ///< row of the standard's thickness table, from 1
  std::optional<unsigned int> lineType;    ///< row of the line type table; 0 stands for row 8
  std::optional<unsigned int> symbolType;  ///< number of a point symbol, from 1
  std::optional<VyrVisColor> color;        ///< of the lines or the symbol

  /// Equal when the same values are set, to the same.
  friend bool operator==(const VyrVisPropertiesValues&, const VyrVisPropertiesValues&) = default;
};
