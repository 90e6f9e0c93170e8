#pragma once

#include "VyrUnicodeString.h"

/// How a sheet format may lie.
enum VyrFormatOrientationsType : int {
  LandscapeByDefault = 0,
  PortraitByDefault = 1,
  PortraitOnly = 2,
  LandscapeOnly = 3,
};

/// A sheet format of a standard, such as "A0 ISO" (ISO 5457 and its like).
struct VyrDrwStdSheetFormat {
  VyrUnicodeString name;
  double width = 0;  ///< in the standard's unit of length, millimetres in the shipped ones
  double height = 0;
  int orientation = LandscapeByDefault;  ///< a `VyrFormatOrientationsType`
  int reserved = 0;                      ///< always 0
};
