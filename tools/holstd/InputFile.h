#pragma once

#include <optional>
#include <string>
#include <string_view>

/// A new file in the temporary folder, for a copy of standard input; it disappears with this
/// object. Throws `Failure` when the copy cannot be made.
class TemporaryCopy {
 public:
  TemporaryCopy();
  TemporaryCopy(const TemporaryCopy&) = delete;
  TemporaryCopy& operator=(const TemporaryCopy&) = delete;
  ~TemporaryCopy();

  const std::string& Path() const { return path_; }
  void Append(std::string_view bytes);
  /// After the last byte: some file systems tell only now that they have no room.
  void Close();

 private:
  std::string folder_;
  std::string path_;
  int file_;
};

/// The file that an argument names. "-" is standard input, of which this object keeps a temporary
/// copy, so that a document reads the same wherever it comes from.
class InputFile {
 public:
  /// Throws `Failure`.
  explicit InputFile(const std::string& file);

  /// What to open; for messages use the argument instead.
  const std::string& Path() const { return copy_ ? copy_->Path() : file_; }

 private:
  std::string file_;
  std::optional<TemporaryCopy> copy_;
};
