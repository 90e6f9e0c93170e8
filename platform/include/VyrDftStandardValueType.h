#pragma once

/// Type of a value of a standard, as a query finds it. The numbers are those of the drafting
/// modeler; the ones that are missing here belong to types no standard holds.
enum VyrDftStandardValueType : int {
  VyrDftUnknownValue = 0,   ///< none of the types below; colours are asked for as integers
  VyrDftIntValue = 3,       ///< an integer
  VyrDftFloatValue = 4,     ///< a number, such as a length in millimetres
  VyrDftStringValue = 6,    ///< a text
  VyrDftEnumValue = 7,      ///< a literal of an enumeration, asked for as a text
  VyrDftCompoundValue = 8,  ///< an instance of a compound type
};
