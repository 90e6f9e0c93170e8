#pragma once

#include "FuzzTarget.h"
#include "VyrAnnStandardXMLParser.h"

/// A document as the text of a file; empty when it holds what no file can say.
inline VyrUnicodeString Saved(VyrAnnStandardXMLParser& document) {
  VyrUnicodeString saved;
  document.SaveInString(saved);
  return saved;
}

/// What was saved is a standard, and stays the same when it is read and saved again.
inline void RequireSameAgain(const VyrUnicodeString& saved) {
  VyrAnnStandardXMLParser again;
  Require(again.DecodeXML(saved, 0) == 0, "what was saved can be read");
  Require(Saved(again) == saved, "a standard that is read and saved stays the same");
}
