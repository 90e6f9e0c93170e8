#pragma once

/// Type of a value of a standard, as a query finds it. The numbers are those of the drafting
/// modeler; the ones that are missing here belong to types no standard holds.
enum VyrDftStandardValueType : int {
  VyrDftUnknownValue = 0,  ///< none of the types below; colours are asked for as integers
  VyrDftIntValue = 3,
  VyrDftFloatValue = 4,
  VyrDftStringValue = 6,
  VyrDftEnumValue = 7,
  VyrDftCompoundValue = 8,  ///< an instance of a compound type
};
