#pragma once

#include <cstdlib>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "VyrStdServices.h"

/// A variable of the environment that has another value, or none, while this object lives.
class EnvironmentVariable {
 public:
  EnvironmentVariable(const char* name, const std::optional<std::string>& value) : name_(name) {
    if (const char* before = std::getenv(name)) before_ = before;
    Set(value);
  }
  EnvironmentVariable(const EnvironmentVariable&) = delete;
  EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;
  ~EnvironmentVariable() { Set(before_); }

  void Set(const std::optional<std::string>& value) const {
    if (value) {
      ::setenv(name_, value->c_str(), 1);
    } else {
      ::unsetenv(name_);
    }
  }

 private:
  const char* name_;
  std::optional<std::string> before_;
};

/// The folders of standards while this object lives; then those of the object around it, or the
/// default ones.
class StandardFolders {
 public:
  explicit StandardFolders(const std::vector<std::string>& folders)
      : before_(std::exchange(current_, folders)) {
    VyrStdServices::SetFolders(folders);
  }
  StandardFolders(const StandardFolders&) = delete;
  StandardFolders& operator=(const StandardFolders&) = delete;
  ~StandardFolders() {
    current_ = before_;
    VyrStdServices::SetFolders(before_);
  }

 private:
  inline static std::vector<std::string> current_;
  std::vector<std::string> before_;
};
