#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

/// A terminal whose screen the test reads.
class PseudoTerminal {
 public:
  PseudoTerminal() {
    if (::grantpt(screen_) != 0 || ::unlockpt(screen_) != 0) return;
    path_ = ::ptsname(screen_);
    // What was written is lost when nobody holds the terminal open.
    held_ = ::open(path_.c_str(), O_RDWR | O_NOCTTY);
  }
  PseudoTerminal(const PseudoTerminal&) = delete;
  PseudoTerminal& operator=(const PseudoTerminal&) = delete;
  ~PseudoTerminal() {
    ::close(held_);
    ::close(screen_);
  }
  bool IsOpen() const { return held_ >= 0; }
  const std::string& Path() const { return path_; }
  /// What was written to it since.
  std::string Read() const {
    // Without an end of its own an empty screen would be waited for.
    constexpr char end = '\1';
    static_cast<void>(::write(held_, &end, 1) == 1);
    std::string text;
    char block[1024];
    while (text.find(end) == std::string::npos) {
      const ssize_t got = ::read(screen_, block, sizeof block);
      if (got <= 0) break;
      text.append(block, static_cast<std::size_t>(got));
    }
    return text.substr(0, text.find(end));
  }

 private:
  int screen_ = ::posix_openpt(O_RDWR | O_NOCTTY);
  int held_ = -1;
  std::string path_;
};
