#include "VyrAnnStandardXMLParserDOMCodecUnit.h"

VyrTrace& XMLCodecTrace() {
  static VyrTrace trace("DftStdDOMCodec", "VyrAnnStandardXMLParserDOMCodec traces");
  return trace;
}

namespace {

// Made when the library loads, so that a host finds the channel by name before it is first used.
[[maybe_unused]] const VyrTrace& registeredTrace = XMLCodecTrace();

}  // namespace
