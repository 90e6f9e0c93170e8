#include "Reports.h"

#include <cstdio>
#include <string_view>
#include <utility>

#include "VyrDiagnostics.h"

namespace {

ReportRecorder* recorder = nullptr;
int unshown = 0;

void Show(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stderr);
}

/// The message of a report "... FAILED kind: message [File: unit: line]...".
std::string MessageOf(std::string_view report) {
  const std::size_t colon = report.find(": ");
  const std::size_t file = report.rfind(" [File: ");
  if (colon == std::string_view::npos || file == std::string_view::npos || file < colon + 2) {
    return std::string(report);
  }
  return std::string(report.substr(colon + 2, file - colon - 2));
}

void KeepOrShowTrace(std::string_view text) {
  if (recorder == nullptr || !text.starts_with("Enum undefined: ")) return Show(text);
  while (text.ends_with('\n')) text.remove_suffix(1);
  recorder->undefinedEnums.emplace_back(text);
}

}  // namespace

void ShowFailedChecks(bool show) {
  VyrDiagnosticSinks sinks;
  sinks.errorLog = [show](std::string_view text) {
    if (recorder != nullptr) recorder->failedChecks.push_back(MessageOf(text));
    if (show && unshown == 0) Show(text);
  };
  sinks.trace = KeepOrShowTrace;
  VyrSetDiagnosticSinks(std::move(sinks));
}

ReportRecorder::ReportRecorder() {
  recorder = this;
}
ReportRecorder::~ReportRecorder() {
  recorder = nullptr;
}

UnshownReports::UnshownReports() {
  ++unshown;
}
UnshownReports::~UnshownReports() {
  --unshown;
}
