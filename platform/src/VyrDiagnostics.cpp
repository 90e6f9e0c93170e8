#include "VyrDiagnostics.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <span>
#include <string>
#include <utility>

#include "VyrReportCount.h"
#include "VyrShownText.h"
#include "VyrUtf8.h"

namespace {

/// Shared, so that a sink which installs others is not destroyed while it runs. Null: the defaults.
using SharedSinks = std::shared_ptr<VyrDiagnosticSinks>;

SharedSinks& Sinks() {
  // Kept to the end of the process: static objects of a host may still report in their end.
  static auto& sinks = *new SharedSinks();
  return sinks;
}

std::atomic<bool> developmentStage{false};

thread_local std::size_t reportCount = 0;

/// The line without its line end.
template <class Text>
Text LineOf(Text text) {
  return text.subspan(0, text.size() - (!text.empty() && text.back() == '\n' ? 1 : 0));
}

/// Names of files stand in reports, and a hostile one must not forge lines of the log. A byte is
/// put for a byte, since a check may fail because there is no memory left.
void Clean(std::span<char> text) {
  const std::span<char> line = LineOf(text);
  const std::string_view shown(line.data(), line.size());
  for (VyrUnshown unshown = VyrFindUnshown(shown); unshown.at < shown.size();
       unshown = VyrFindUnshown(shown, unshown.at + unshown.size)) {
    std::fill_n(line.begin() + static_cast<std::ptrdiff_t>(unshown.at), unshown.size, '?');
  }
}

void WriteToStandardError(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stderr);
}

/// False when the host receives nothing of the kind itself.
bool Send(VyrDiagnosticSinks::Sink VyrDiagnosticSinks::*kind, std::string_view text) {
  const SharedSinks sinks = Sinks();
  const bool isHosts = sinks != nullptr && sinks.get()->*kind;
  if (isHosts) {
    (sinks.get()->*kind)(text);
  } else {
    WriteToStandardError(text);
  }
  return isHosts;
}

}  // namespace

VyrDiagnosticSinks VyrSetDiagnosticSinks(VyrDiagnosticSinks sinks) {
  SharedSinks shared = std::make_shared<VyrDiagnosticSinks>(std::move(sinks));
  std::swap(Sinks(), shared);
  if (shared == nullptr) return {};
  return shared.use_count() == 1 ? std::move(*shared) : *shared;
}

bool VyrDevelopmentStage() {
  return developmentStage.load(std::memory_order_relaxed);
}
void VyrSetDevelopmentStage(bool development) {
  developmentStage = development;
}

void VyrSysLogError(std::string_view text) {
  const std::span<const char> line = LineOf(std::span<const char>(text));
  if (VyrFindUnshown({line.data(), line.size()}).at >= line.size()) {
    Send(&VyrDiagnosticSinks::errorLog, text);
    return;
  }
  std::string cleaned(text);
  Clean(cleaned);
  Send(&VyrDiagnosticSinks::errorLog, cleaned);
}

void VyrSysLogAbend(std::string_view text) {
  // A host that receives abends decides for itself; a shipped application must never be taken down.
  if (!Send(&VyrDiagnosticSinks::abendLog, text) && VyrDevelopmentStage()) std::abort();
}

void VyrFatalError(std::string_view text) {
  if (!Send(&VyrDiagnosticSinks::abendLog, text)) std::abort();
}

void VyrTraceOutput(std::string_view text) {
  Send(&VyrDiagnosticSinks::trace, text);
}

std::size_t VyrReportCount() noexcept {
  return reportCount;
}

void VyrSourceUnit::Report(const char* kind, std::string_view message,
                           std::source_location where) const {
  ++reportCount;
  char text[287];
  // Never half a character: the report must stay readable as UTF-8. No memory is asked for here: a
  // check may fail because there is none left.
  const std::string_view limited = VyrCutUtf8(message, 40);
  const int length = std::snprintf(
      text, sizeof text, ">> ASSERTION FAILED %.32s: %.*s [File: %.128s:%4d].<<\n", kind,
      static_cast<int>(limited.size()), limited.data(), name_, static_cast<int>(where.line()));
  Clean({text, std::min<std::size_t>(std::max(length, 0), sizeof text - 1)});
  if (VyrDevelopmentStage()) {
    Send(&VyrDiagnosticSinks::print, text);
    VyrSysLogAbend(text);
  } else {
    Send(&VyrDiagnosticSinks::errorLog, text);
  }
}
