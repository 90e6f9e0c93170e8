#pragma once

#include "VyrUnicodeString.h"

/// Something that a text standard says and that is not so, or not found, in the XML standard that
/// was made of it.
struct VyrDrwConversionNote {
  /// What became of it.
  enum Kind : int {
    NameTaken,     ///< a group has the name of a ready-made one, which comes first and is found
    DatumMode,     ///< "TXTDatumMode" is neither "1" nor "2": the standard was taken as ANSI
    WithoutPlace,  ///< the version that was made has no such parameter
    SetByFormat,   ///< the version that was made sets the parameter itself
  };

  Kind kind = NameTaken;    ///< what became of it
  int line = 0;             ///< 1-based line of the text
  VyrUnicodeString name;    ///< the parameter's keyword; of a group, that of its name
  VyrUnicodeString value;   ///< what the text says; of a group, its name
  VyrUnicodeString became;  ///< what the standard has, of `SetByFormat`; else empty
};
