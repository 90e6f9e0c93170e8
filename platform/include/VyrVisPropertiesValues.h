#pragma once

#include <optional>

/// Colour of a graphic property. Components are those of the standard, 0 to 255 in the shipped
/// ones.
struct VyrVisColor {
  unsigned int red = 0;
  unsigned int green = 0;
  unsigned int blue = 0;

  friend bool operator==(const VyrVisColor&, const VyrVisColor&) = default;
};

/// Graphic properties of one geometry type of an element. What is not set stays as it is where the
/// values are written.
struct VyrVisPropertiesValues {
  std::optional<unsigned int> width;       ///< row of the standard's thickness table
  std::optional<unsigned int> lineType;    ///< row of the line type table; 0 stands for row 8
  std::optional<unsigned int> symbolType;  ///< number of a point symbol, from 1
  std::optional<VyrVisColor> color;

  friend bool operator==(const VyrVisPropertiesValues&, const VyrVisPropertiesValues&) = default;
};
