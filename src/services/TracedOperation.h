#pragma once

#include <optional>

#include "VyrBaseUnknown.h"
#include "VyrTrace.h"
#include "VyrUnicodeString.h"

/// An operation of an object: a trace block around it, which also names the object. While the
/// channel is off it costs one branch, so that the quickest queries can have one.
///
/// What receives a trace line or a report is the host's, and may ask the object for more or let go
/// of it. So nothing that the object may replace meanwhile is borrowed across one, and an operation
/// that goes on after one keeps the object alive.
class TracedOperation {
 public:
  /// `operation` must outlive the block. An operation that is traced keeps its object.
  TracedOperation(VyrTrace& channel, const char* operation, const VyrUnicodeString& alias,
                  VyrBaseUnknown& object)
      : object_(object) {
    if (channel.IsOn()) [[unlikely]]
      Open(channel, operation, alias);
  }

  /// Keeps the object to the end of the operation: before the first report that something of the
  /// object is used after.
  void KeepObject() {
    if (!kept_) kept_ = VyrVar<VyrBaseUnknown>::Share(&object_);
  }

 private:
  void Open(VyrTrace& channel, const char* operation, const VyrUnicodeString& alias);

  VyrBaseUnknown& object_;
  VyrVar<VyrBaseUnknown> kept_;
  std::optional<VyrTraceBlock> block_;
};

/// Traces one line inside the open blocks. `format` takes the indentation first.
template <class... Arguments>
void TraceLine(VyrTrace& channel, const char* format, Arguments... arguments) {
  if (channel.IsOn()) [[unlikely]]
    channel.Print(format, VyrTrace::Indentation().c_str(), arguments...);
}
