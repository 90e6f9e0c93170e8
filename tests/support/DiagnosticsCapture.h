#pragma once

#include <string>
#include <vector>

#include "VyrDiagnostics.h"
#include "VyrTrace.h"

/// Receives every diagnostic of the library while it lives, and sets the development stage.
class DiagnosticsCapture {
 public:
  explicit DiagnosticsCapture(bool developmentStage = false)
      : wasDevelopmentStage_(VyrDevelopmentStage()) {
    VyrSetDevelopmentStage(developmentStage);
    previous_ = VyrSetDiagnosticSinks({
        [this](std::string_view text) { printed.emplace_back(text); },
        [this](std::string_view text) { errors.emplace_back(text); },
        [this](std::string_view text) { abends.emplace_back(text); },
        [this](std::string_view text) { traces.emplace_back(text); },
    });
  }
  DiagnosticsCapture(const DiagnosticsCapture&) = delete;
  DiagnosticsCapture& operator=(const DiagnosticsCapture&) = delete;
  ~DiagnosticsCapture() {
    VyrSetDiagnosticSinks(std::move(previous_));
    VyrSetDevelopmentStage(wasDevelopmentStage_);
  }

  /// Forgets what has been received.
  void Clear() {
    printed.clear();
    errors.clear();
    abends.clear();
    traces.clear();
  }

  std::vector<std::string> printed;
  std::vector<std::string> errors;
  std::vector<std::string> abends;
  std::vector<std::string> traces;

 private:
  bool wasDevelopmentStage_;
  VyrDiagnosticSinks previous_;
};

/// A report of a failed check less its line number, as "kind: message [unit]".
inline std::string CheckText(const std::string& report) {
  const std::string begin = ">> ASSERTION FAILED ";
  const std::size_t file = report.find(" [File: ");
  if (report.rfind(begin, 0) != 0 || file == std::string::npos) return "no report: " + report;
  const std::size_t unit = file + std::string(" [File: ").size();
  return report.substr(begin.size(), file - begin.size()) + " [" +
         report.substr(unit, report.find(':', unit) - unit) + "]";
}

/// `CheckText` of every report.
inline std::vector<std::string> CheckTexts(const std::vector<std::string>& reports) {
  std::vector<std::string> texts;
  for (const std::string& report : reports) texts.push_back(CheckText(report));
  return texts;
}

/// A trace channel that is on while this object lives.
class TraceOn {
 public:
  explicit TraceOn(const char* name) : channel_(VyrTrace::Find(name)) {
    if (channel_ != nullptr) channel_->Switch(true);
  }
  TraceOn(const TraceOn&) = delete;
  TraceOn& operator=(const TraceOn&) = delete;
  ~TraceOn() {
    if (channel_ != nullptr) channel_->Switch(false);
  }
  bool IsFound() const { return channel_ != nullptr; }

 private:
  VyrTrace* channel_;
};
