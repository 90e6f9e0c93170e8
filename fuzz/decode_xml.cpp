// Any XML, read as a standard: what was accepted is saved, read again and saved alike.

#include "FuzzTarget.h"
#include "RoundTrip.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  SilenceDiagnostics();
  VyrAnnStandardXMLParser document;
  if (document.DecodeXML(InputText(data, size), 0) != 0) {
    Require(!document.GetProblem().IsEmpty(), "a refusal says why");
    return 0;
  }
  document.Check();
  document.GetVersion();
  const VyrUnicodeString saved = Saved(document);
  Require(!saved.IsEmpty(), "what was read can be saved");
  RequireSameAgain(document, saved);
  return 0;
}
