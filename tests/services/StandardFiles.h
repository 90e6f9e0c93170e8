#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "DiagnosticsCapture.h"
#include "TemporaryFolder.h"
#include "VyrAnnStandardServices.h"
#include "VyrInstanceCounter.h"
#include "VyrStdServices.h"

/// XML texts of small standards.
namespace standardfile {

using Fields = std::initializer_list<std::pair<const char*, const char*>>;

/// A node that wraps one value, as parameters are held.
inline std::string Parameter(const std::string& name, const std::string& value) {
  return "<std:node name='" + name + "'>" + value + "</std:node>";
}
inline std::string Text(const std::string& text) {
  return "<std:strval>" + text + "</std:strval>";
}
inline std::string Node(const std::string& name, const std::string& content) {
  return "<std:node name='" + name + "'>" + content + "</std:node>\n";
}
inline std::string Version(const std::string& version) {
  return Node("Version", "<std:intval>" + version + "</std:intval>");
}
/// A sheet format; its fields are named, though only their order counts.
inline std::string Format(Fields fields) {
  std::string text = "<std:typeval name='Formats'>";
  for (const auto& [name, value] : fields) {
    text += std::string("<std:strval name='") + name + "'>" + value + "</std:strval>";
  }
  return text + "</std:typeval>\n";
}
inline std::string Format(const char* name, const char* width, const char* height,
                          const char* orientation) {
  return Format({{"Name", name},
                 {"Width", width},
                 {"Height", height},
                 {"FormatOrientationType", orientation}});
}
inline std::string Formats(const std::string& formats) {
  return Node("SheetFormat", formats);
}
inline std::string Style(const std::string& name, Fields fields) {
  std::string content;
  for (const auto& [field, value] : fields) content += Parameter(field, Text(value));
  return Node(name, content);
}
inline std::string Styles(const std::string& styles) {
  return Node("Styles", Node("Sheet", styles));
}
inline std::string Standard(const std::string& content) {
  return "<std:node xmlns:std='http://schemas.hol-standard.example/drafting/std' "
         "name='drafting'>\n" +
         content + "</std:node>\n";
}

}  // namespace standardfile

/// A container with standards of the test and a folder that they are copied to. Every report and
/// trace line must be asked for, one left over is a failure.
class StandardFilesTest : public testing::Test {
 protected:
  static constexpr const char* kServicesUnitName = "VyrAnnStandardServices";

  StandardFilesTest() {
    VyrStdServices::SetFolders({container.Path().string()});
    const char* const before = std::getenv("WOB_ODT_OUT");
    hadCopies_ = before != nullptr;
    if (hadCopies_) copiesBefore_ = before;
    ::setenv("WOB_ODT_OUT", copies.Path().c_str(), 1);
  }
  ~StandardFilesTest() override {
    VyrAnnStandardServices::ReleaseCachedDocument();
    VyrStdServices::SetFolders({});
    if (hadCopies_) {
      ::setenv("WOB_ODT_OUT", copiesBefore_.c_str(), 1);
    } else {
      ::unsetenv("WOB_ODT_OUT");
    }
  }
  void TearDown() override {
    EXPECT_THAT(log.errors, testing::IsEmpty());
    EXPECT_THAT(log.traces, testing::IsEmpty());
    EXPECT_THAT(log.printed, testing::IsEmpty());
    EXPECT_THAT(log.abends, testing::IsEmpty());
  }

  /// Writes the standard `name`, as modified some nanoseconds after a fixed moment.
  void Write(const std::string& name, const std::string& content, long long nanoseconds = 0) {
    container.Write(name + ".xml", standardfile::Standard(content));
    Touch(name, nanoseconds);
  }
  void Touch(const std::string& name, long long nanoseconds) {
    using std::chrono::file_clock;
    const std::chrono::sys_time<std::chrono::nanoseconds> day =
        std::chrono::sys_days(std::chrono::year(2020) / 2 / 2);
    std::filesystem::last_write_time(
        container.Path() / (name + ".xml"),
        file_clock::from_sys(day + std::chrono::nanoseconds(nanoseconds)));
  }
  /// Where the standard `name` is read from, written as the services name it.
  std::string CopyOf(const std::string& name) const {
    return copies.Path().string() + "\\" + name + ".xml";
  }
  std::vector<std::string> TakeReports() { return CheckTexts(std::exchange(log.errors, {})); }
  std::vector<std::string> TakeErrors() { return std::exchange(log.errors, {}); }
  std::vector<std::string> TakeTraces() { return std::exchange(log.traces, {}); }
  /// The report of a failed check of the services.
  static std::string Raised(const std::string& message) {
    return ": " + message.substr(0, 40) + " [" + kServicesUnitName + "]";
  }

  TemporaryFolder container;
  TemporaryFolder copies;
  DiagnosticsCapture log;

 private:
  bool hadCopies_ = false;
  std::string copiesBefore_;
};
