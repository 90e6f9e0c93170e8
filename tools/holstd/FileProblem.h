#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "Session.h"

/// What is wrong in a file, and what would be right.
struct FileProblem {
  int line = 0;  ///< 0 when no line is to blame
  std::string text;
};

/// What is wrong in a file, as its reader is told: the first hundred in full. Who has more of them
/// has one cause for most, and is told their number.
class FileProblems {
 public:
  static constexpr std::size_t kMostTold = 100;

  /// Adds a problem, in full while there is room.
  void Add(FileProblem problem) {
    if (HasRoom()) {
      told_.push_back(std::move(problem));
    } else {
      ++more_;
    }
  }
  /// Adds a problem that is told whatever else is.
  void AddAnyway(FileProblem problem) { told_.push_back(std::move(problem)); }
  /// Adds the problems of another kind, each as it is.
  void Add(FileProblems others);
  /// In the order of their lines.
  void SortTold();

  bool HasRoom() const { return told_.size() < kMostTold; }
  bool AreNone() const { return Count() == 0; }
  std::size_t Count() const { return told_.size() + more_; }
  const std::vector<FileProblem>& Told() const { return told_; }
  /// Number of those that are not told.
  std::size_t More() const { return more_; }

  /// A message for each, and one for those that are not told.
  void ComplainOf(const std::string& file, const Session& session) const;
  /// The same as warnings, of values that are taken all the same; without lines.
  void WarnOf(const std::string& file, const Session& session) const;

 private:
  std::vector<FileProblem> told_;
  std::size_t more_ = 0;
};
