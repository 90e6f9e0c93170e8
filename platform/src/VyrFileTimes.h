#pragma once

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>

/// The times of access and of modification, as the operating system takes them.
using VyrFileTimes = std::array<timespec, 2>;

inline constexpr std::int64_t kVyrNanosecondsOfSecond = 1'000'000'000;

/// Sets the time of modification, in nanoseconds since the beginning of 1970; that of access is
/// left alone.
inline VyrFileTimes VyrTimesOf(std::int64_t nanoseconds) {
  std::int64_t seconds = nanoseconds / kVyrNanosecondsOfSecond;
  std::int64_t rest = nanoseconds % kVyrNanosecondsOfSecond;
  if (rest < 0) {
    rest += kVyrNanosecondsOfSecond;
    --seconds;
  }
  return {{{0, UTIME_OMIT}, {static_cast<time_t>(seconds), static_cast<long>(rest)}}};
}

/// The same number of a file there is.
inline std::int64_t VyrModificationTimeOf(const struct stat& status) {
  // Some file systems keep any 64 bits; what nanoseconds cannot count is the last that they can.
  constexpr std::int64_t mostSeconds =
      std::numeric_limits<std::int64_t>::max() / kVyrNanosecondsOfSecond - 1;
  const auto seconds = std::clamp<std::int64_t>(status.st_mtim.tv_sec, -mostSeconds, mostSeconds);
  return seconds * kVyrNanosecondsOfSecond + status.st_mtim.tv_nsec;
}
