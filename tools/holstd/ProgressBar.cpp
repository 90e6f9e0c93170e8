#include "ProgressBar.h"

#include <unistd.h>

#include <cstdlib>

namespace {

constexpr std::size_t kLongBatch = 20;
constexpr std::size_t kWidth = 30;

/// Whether what is written to standard error can be written over.
bool CanBeDrawn() {
  const char* terminal = std::getenv("TERM");
  const bool isDumb = terminal == nullptr || std::string_view(terminal) == "dumb";
  return !isDumb && ::isatty(STDERR_FILENO) != 0;
}

}  // namespace

ProgressBar::ProgressBar(const Session& session, std::size_t count)
    : count_(count), isWanted_(count >= kLongBatch && !session.isQuiet && CanBeDrawn()) {}

void ProgressBar::Hide() {
  if (shownWidth_ == 0) return;
  static_cast<void>(WriteAll(STDERR_FILENO, "\r" + std::string(shownWidth_, ' ') + "\r"));
  shownWidth_ = 0;
}

void ProgressBar::Show(std::size_t done) {
  if (!isWanted_) return;
  const std::size_t filled = kWidth * done / count_;
  const std::string text = "[" + std::string(filled, '#') + std::string(kWidth - filled, '.') +
                           "] " + std::to_string(done) + " of " + std::to_string(count_);
  static_cast<void>(WriteAll(STDERR_FILENO, "\r" + text));
  shownWidth_ = text.size();
}
