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
