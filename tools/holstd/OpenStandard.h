#pragma once

#include <optional>
#include <string>

#include "InputFile.h"
#include "Standard.h"
#include "VyrIDrwStandard.h"

/// The name of a standard in a file: the file's own without folder and ".xml".
std::string StandardName(const std::string& file);

/// An XML standard that was read and is also open the way the application opens it.
class OpenStandard {
 public:
  /// `file` is read as by `ReadStandard`. Throws `Failure`.
  explicit OpenStandard(const std::string& file);

  /// The file, to be read once more.
  const InputFile& Input() const { return input_; }
  /// What the tool reads of it; read again when it has been forgotten. Throws `Failure`.
  Standard& Read();
  /// For who needs it no more, or seldom: it takes as much memory as what answers.
  void ForgetRead() { standard_.reset(); }
  /// And this for who will not ask what is told either.
  void ForgetAll() {
    ForgetRead();
    told_ = {};
  }
  /// Answers what the application is told.
  VyrIDrwStandard& Told() const { return *told_; }

 private:
  InputFile input_;
  std::optional<Standard> standard_;
  VyrIDrwStandard_var told_;
};
