#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Failure.h"

/// A new file in the temporary folder, for a copy of an input; it disappears with this object.
/// Throws `Failure` when the copy cannot be made.
class TemporaryCopy {
 public:
  /// `source` is what messages name: a file, "-" for standard input.
  explicit TemporaryCopy(std::string source);
  TemporaryCopy(const TemporaryCopy&) = delete;
  TemporaryCopy& operator=(const TemporaryCopy&) = delete;
  ~TemporaryCopy();

  const std::string& Path() const { return path_; }
  void Append(std::string_view bytes);
  /// After the last byte: some file systems tell only now that they have no room.
  void Close();

 private:
  Failure NotCopied(int error) const;

  std::string source_;
  std::string folder_;
  std::string path_;
  int file_;
};

/// The file that an argument names. Of what can be read once only, "-" for standard input or a
/// pipe, this object keeps a temporary copy, so that a document reads the same wherever it comes
/// from and as often as it is asked for.
class InputFile {
 public:
  /// Throws `Failure`.
  explicit InputFile(const std::string& file);

  /// The argument, for messages.
  const std::string& Name() const { return file_; }
  /// What to open.
  const std::string& Path() const { return copy_ ? copy_->Path() : file_; }

 private:
  std::string file_;
  std::optional<TemporaryCopy> copy_;
};
