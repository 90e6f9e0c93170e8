#pragma once

#include <optional>

#include "VyrTrace.h"
#include "VyrUnicodeString.h"

/// A trace block around an operation of an object, which also names the object. While the channel
/// is off it costs one branch, so that the quickest queries can have one.
class TracedOperation {
 public:
  /// `operation` must outlive the block.
  TracedOperation(VyrTrace& channel, const char* operation, const VyrUnicodeString& alias,
                  const void* object) {
    if (channel.IsOn()) [[unlikely]]
      Open(channel, operation, alias, object);
  }

 private:
  void Open(VyrTrace& channel, const char* operation, const VyrUnicodeString& alias,
            const void* object);

  std::optional<VyrTraceBlock> block_;
};

/// Traces one line inside the open blocks. `format` takes the indentation first.
template <class... Arguments>
void TraceLine(VyrTrace& channel, const char* format, Arguments... arguments) {
  if (channel.IsOn()) [[unlikely]]
    channel.Print(format, VyrTrace::Indentation().c_str(), arguments...);
}
