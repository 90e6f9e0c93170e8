#pragma once

#include <unistd.h>

#include <cerrno>
#include <string>
#include <string_view>
#include <utility>

// Open files: that they are closed, and that signals and short answers cut nothing off.

/// Repeats a call of the operating system as long as signals break it off.
template <class Call>
auto VyrUninterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

/// An open file descriptor, closed with its object; -1: none.
class VyrDescriptor {
 public:
  explicit VyrDescriptor(int value = -1) : value_(value) {}
  VyrDescriptor(VyrDescriptor&& other) noexcept : value_(std::exchange(other.value_, -1)) {}
  VyrDescriptor& operator=(VyrDescriptor&& other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }
  ~VyrDescriptor() {
    if (value_ >= 0) ::close(value_);
  }
  int Get() const { return value_; }
  bool IsOpen() const { return value_ >= 0; }
  /// Closing may be the moment at which a file system reports a failed write. A signal does not
  /// keep it from being done.
  bool Close() { return ::close(std::exchange(value_, -1)) == 0 || errno == EINTR; }

 private:
  int value_;
};

/// Writes all of `content`; false with `errno` set.
bool VyrWriteAll(int file, std::string_view content);

/// Reads a file that nothing was read of yet. What went wrong, or nothing; then `content` is left
/// alone.
std::string VyrReadAll(int file, std::string& content);
