// Any XML, read as a standard: what was accepted is saved, read again and saved alike.

#include "FuzzTarget.h"
#include "VyrAnnStandardXMLParser.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  SilenceDiagnostics();
  VyrAnnStandardXMLParser document;
  if (document.DecodeXML(InputText(data, size), 0) != 0) {
    Require(!document.GetProblem().IsEmpty(), "a refusal says why");
    return 0;
  }
  document.Check();
  document.GetVersion();
  VyrUnicodeString saved;
  document.SaveInString(saved);
  Require(!saved.IsEmpty(), "what was read can be saved");
  VyrAnnStandardXMLParser again;
  Require(again.DecodeXML(saved, 0) == 0, "what was saved can be read");
  VyrUnicodeString savedAgain;
  again.SaveInString(savedAgain);
  Require(saved == savedAgain, "a standard that is read and saved stays the same");
  return 0;
}
