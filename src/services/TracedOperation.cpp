#include "TracedOperation.h"

#include <cstdint>

#include "VyrShownText.h"

void TracedOperation::Open(VyrTrace& channel, const char* operation,
                           const VyrUnicodeString& alias) {
  KeepObject();
  block_.emplace(channel, operation);
  TraceLine(channel, "%sAlias: '%s'\tAddress:(%#x)\n",
            VyrShownText(alias.View(), kMostShownInTrace).c_str(),
            static_cast<unsigned int>(reinterpret_cast<std::uintptr_t>(&object_)));
}
