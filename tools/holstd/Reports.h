#pragma once

#include <string>
#include <vector>

/// Takes over what the library reports. Its failed checks are shown on request only, since the
/// tool has a message of its own for what went wrong; its traces always are.
void ShowFailedChecks(bool show);

/// Keeps what the library reports while this object lives. One at a time.
class ReportRecorder {
 public:
  ReportRecorder();
  ReportRecorder(const ReportRecorder&) = delete;
  ReportRecorder& operator=(const ReportRecorder&) = delete;
  ~ReportRecorder();

  /// Messages of the checks that failed.
  std::vector<std::string> failedChecks;
  /// Lines of the enumeration check, which are kept instead of shown.
  std::vector<std::string> undefinedEnums;
};

/// Keeps failed checks to itself while it lives, whatever was asked for: those of a question whose
/// failure is an answer.
class UnshownReports {
 public:
  UnshownReports();
  UnshownReports(const UnshownReports&) = delete;
  UnshownReports& operator=(const UnshownReports&) = delete;
  ~UnshownReports();
};
