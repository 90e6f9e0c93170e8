#pragma once

#include <string>

#include "Failure.h"

// A request for memory that fails may be answered anywhere in the library, as "not found", "none"
// or "the same". From then on the tool takes no answer for one: it tells that memory ran out.

inline constexpr const char* kNeedsMoreMemory =
    "needs more memory than there is; end other programs, or split the file";

/// To be called once, before anything else: notes the requests that fail.
void WatchMemory();

/// Whether a request has failed since the start, or since the last was told of.
bool IsMemoryShort() noexcept;
/// Throws `std::bad_alloc` if one has.
void RequireMemory();
/// What comes next, as another file, has its own chance.
void ForgetMemoryShortage() noexcept;

/// The file that is read from now on, as messages name it.
void NoteReading(const std::string& file);

/// `failure`, or that memory ran out if it did, whatever the failure took it for. Ends the
/// shortage.
Failure AsTold(Failure failure);

/// Tells that memory ran out, once for each file, without needing any; ends the shortage.
void ComplainOfMemory() noexcept;
