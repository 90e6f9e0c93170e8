#pragma once

#include "VyrDrwStdSheetFormat.h"
#include "VyrUnicodeString.h"

/// A sheet style of a standard: what a new sheet of a drawing begins with. A field whose flag is 0
/// was not given by the standard and has its default.
struct VyrDrwStdSheetStyle {
  VyrUnicodeString name;     ///< such as "A0 ISO" or "Default"
  double scale = 1;          ///< of the drawing to the object: 0.5 is 1:2
  int projectionMethod = 0;  ///< 0 first angle, as ISO has it; 1 third angle, as ASME and JIS
  int genViewsPosMode = 0;   ///< what keeps its place in a generated view: 0 its centre of gravity,
                             ///< 1 its axes
  int hasGenViewsPosMode = 0;          ///< 1 when the standard gives `genViewsPosMode`
  int orientation = 1;                 ///< 0 portrait, 1 landscape
  unsigned char hasOrientation = 0;    ///< 1 when the standard gives `orientation`
  unsigned char displayFormat = 1;     ///< 1 when the frame of the format is shown
  unsigned char hasDisplayFormat = 0;  ///< 1 when the standard gives `displayFormat`
  VyrDrwStdSheetFormat format;         ///< the sheet format that the style names
  int hasFormat = 0;                   ///< 1 when the style names a format that the standard has

  /// Styles are told apart by name alone: lists of them are searched by it.
  friend bool operator==(const VyrDrwStdSheetStyle& a, const VyrDrwStdSheetStyle& b) {
    return a.name == b.name;
  }
};
