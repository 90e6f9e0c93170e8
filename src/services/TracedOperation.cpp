#include "TracedOperation.h"

#include <cstdint>

void TracedOperation::Open(VyrTrace& channel, const char* operation,
                           const VyrUnicodeString& alias) {
  KeepObject();
  block_.emplace(channel, operation);
  TraceLine(channel, "%sAlias: '%s'\tAddress:(%#x)\n", alias.CString(),
            static_cast<unsigned int>(reinterpret_cast<std::uintptr_t>(&object_)));
}
