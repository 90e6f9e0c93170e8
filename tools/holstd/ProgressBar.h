#pragma once

#include <cstddef>
#include <string>

#include "Session.h"

/// How far a long batch has come, on the last line of the terminal that standard error is; nothing
/// anywhere else, for a short batch or for who wants to be told nothing.
class ProgressBar {
 public:
  ProgressBar(const Session& session, std::size_t count);
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;
  ~ProgressBar() { Hide(); }

  /// Makes room for a message.
  void Hide();
  /// Shows that `done` of all are done.
  void Show(std::size_t done);

 private:
  std::size_t count_;
  bool isWanted_;
  std::size_t shownWidth_ = 0;  ///< characters; 0 while it is hidden
};
