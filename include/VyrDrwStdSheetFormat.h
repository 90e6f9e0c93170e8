#pragma once

#include "VyrUnicodeString.h"

/// How a sheet format may lie. ISO 5457 lays A0 to A3 with the long side across and A4 upright;
/// what a standard allows it says for each format.
enum VyrFormatOrientationsType : int {
  LandscapeByDefault = 0,  ///< the long side across unless the user turns the sheet
  PortraitByDefault = 1,   ///< the short side across unless the user turns the sheet
  PortraitOnly = 2,        ///< the short side across, always
  LandscapeOnly = 3,       ///< the long side across, always
};

/// A sheet format of a standard. Most of the shipped ones are sheets of ISO 5457, JIS Z 8311 or
/// ASME Y14.1.
struct VyrDrwStdSheetFormat {
  VyrUnicodeString name;  ///< such as "A0 ISO"
  double width = 0;       ///< in the standard's unit of length, millimetres in the shipped ones
  double height = 0;      ///< in the same unit
  int orientation = LandscapeByDefault;  ///< a `VyrFormatOrientationsType`
  int reserved = 0;                      ///< always 0
};
