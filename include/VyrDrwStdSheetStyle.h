#pragma once

#include "VyrDrwStdSheetFormat.h"
#include "VyrUnicodeString.h"

/// A sheet style of a standard: what a new sheet of a drawing begins with. A field whose flag is 0
/// was not given by the standard and has its default.
struct VyrDrwStdSheetStyle {
  VyrUnicodeString name;     ///< such as "A0 ISO" or "Default"
  double scale = 1;          ///< of the drawing to the object
  int projectionMethod = 0;  ///< 0 first angle, 1 third angle
  int genViewsPosMode = 0;   ///< of generated views: 0 fixed centre of gravity, 1 axis
  int hasGenViewsPosMode = 0;
  int orientation = 1;  ///< 0 portrait, 1 landscape
  unsigned char hasOrientation = 0;
  unsigned char displayFormat = 1;  ///< 1 when the frame of the format is shown
  unsigned char hasDisplayFormat = 0;
  VyrDrwStdSheetFormat format;  ///< the sheet format that the style names
  int hasFormat = 0;

  /// Styles are told apart by name alone: lists of them are searched by it.
  friend bool operator==(const VyrDrwStdSheetStyle& a, const VyrDrwStdSheetStyle& b) {
    return a.name == b.name;
  }
};
