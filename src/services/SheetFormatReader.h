#pragma once

#include <array>

#include "VyrAnnStandardXMLNode.h"
#include "VyrDrwStdSheetFormat.h"

/// Reads sheet formats from the children of a standard's node "Root.SheetFormat", which are
/// instances of the compound type "Formats".
class SheetFormatReader {
 public:
  SheetFormatReader();

  /// False for a node that is no sheet format; `format` is then left alone. Reports a width, height
  /// or orientation that cannot be read, but not a wrong number of values.
  bool Read(const VyrAnnStandardXMLNode& node, VyrDrwStdSheetFormat& format) const;

 private:
  struct Orientation {
    VyrFormatOrientationsType code;
    VyrUnicodeString word;
  };

  const Orientation* FindOrientation(std::string_view word) const;

  std::array<Orientation, 4> orientations_;
};
