// Any XML, read as a standard: what was accepted is saved, read again and saved alike.

#include "FuzzTarget.h"
#include "RoundTrip.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  SilenceDiagnostics();
  RequireReadOrRefused(InputText(data, size));
  return 0;
}
