#pragma once

#include <functional>
#include <source_location>
#include <string_view>

#include "HolStandardInfraExport.h"

/// Where the library's diagnostics go. A host replaces what it wants to receive itself; an empty
/// member keeps the default. Every default writes to standard error.
struct VyrDiagnosticSinks {
  /// Receives one text, its line end included, on the thread that reports; `text` is borrowed for
  /// the call. It must not throw. It may call the library, ask the object that reports for more,
  /// give back its references to that, switch channels and install other sinks. It must not edit
  /// the trees that a document is about to check or write, nor destroy an object that is not
  /// counted while that reports.
  using Sink = std::function<void(std::string_view text)>;

  Sink print;     ///< failed checks in a development-stage run, before the abend log
  Sink errorLog;  ///< failed checks in an ordinary run
  Sink abendLog;  ///< conditions that end a development-stage run; the default aborts the process
                  ///< there, and for fatal errors in any run
  Sink trace;     ///< lines of the trace channels and of the enumeration check
};

/// Installs `sinks` and returns the ones that were installed before. Not synchronised: a host sets
/// its sinks before it uses the library.
HOLSTANDARDINFRA_EXPORT VyrDiagnosticSinks VyrSetDiagnosticSinks(VyrDiagnosticSinks sinks);

/// True in a run that wants failed checks to stop it. False unless the host says otherwise.
HOLSTANDARDINFRA_EXPORT bool VyrDevelopmentStage();
/// Says so, for the whole process; from any thread.
HOLSTANDARDINFRA_EXPORT void VyrSetDevelopmentStage(bool development);

/// Sends one line to the error log. What `VyrShownText` would escape, but for the line end, becomes
/// "?", each of its bytes.
HOLSTANDARDINFRA_EXPORT void VyrSysLogError(std::string_view text);
/// Sends `text` to the abend log; in a development-stage run, unless a host receives that itself,
/// the process is then aborted.
HOLSTANDARDINFRA_EXPORT void VyrSysLogAbend(std::string_view text);
/// For a caller's mistake that no run may survive: sends `text` to the abend log and, unless a host
/// receives that itself, aborts the process in every stage. May return.
HOLSTANDARDINFRA_EXPORT void VyrFatalError(std::string_view text);
/// Writes to the sink of the trace channels.
HOLSTANDARDINFRA_EXPORT void VyrTraceOutput(std::string_view text);

// Kinds of failed checks, as they stand in the report.
inline constexpr const char* kVyrBoolIsFalse = "BOOL IS FALSE";  ///< a condition does not hold
inline constexpr const char* kVyrOnPointer = "ON POINTER ";      ///< a pointer is null
inline constexpr const char* kVyrNoKind = "";                    ///< a failure without a condition

/// A source unit of the library, as its failed checks name it.
///
/// A report is one line, ">> ASSERTION FAILED kind: message [File: unit:line].<<", with the message
/// cut at 40 bytes. It goes to the error log; in a development-stage run it is printed and goes to
/// the abend log. A unit is a constant: threads share it.
class HOLSTANDARDINFRA_EXPORT VyrSourceUnit {
 public:
  /// `name` must outlive the process.
  explicit constexpr VyrSourceUnit(const char* name) : name_(name) {}

  /// Reports a failure that has no condition of its own.
  void Raise(std::string_view message,
             std::source_location where = std::source_location::current()) const {
    Report(kVyrNoKind, message, where);
  }
  /// Returns `condition`; reports "BOOL IS FALSE" with `message` when it does not hold.
  [[nodiscard]] bool Check(bool condition, std::string_view message = {},
                           std::source_location where = std::source_location::current()) const {
    if (!condition) [[unlikely]]
      Report(kVyrBoolIsFalse, message, where);
    return condition;
  }
  /// Returns whether `pointer` is not null; reports "ON POINTER " with `message` when it is.
  [[nodiscard]] bool CheckPointer(
      const void* pointer, std::string_view message = "NULL handler",
      std::source_location where = std::source_location::current()) const {
    if (pointer == nullptr) [[unlikely]]
      Report(kVyrOnPointer, message, where);
    return pointer != nullptr;
  }

 private:
  void Report(const char* kind, std::string_view message, std::source_location where) const;

  const char* name_;
};
