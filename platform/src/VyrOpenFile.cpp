#include "VyrOpenFile.h"

#include <sys/stat.h>

#include <algorithm>

#include "VyrFileProblem.h"
#include "VyrSystemText.h"

namespace {

// More is no standard; an endless file must not take all memory before it is refused.
constexpr std::size_t kMostBytesOfFile = (std::size_t{1} << 31) - 1;
constexpr const char* kTooLarge = "is larger than 2 GB; no standard is, name the right file";

std::string NotRead() {
  return "cannot be read: " + VyrSystemText(errno);
}

/// Reads to the end; what went wrong, or nothing.
std::string ReadToTheEnd(int file, std::size_t sizeHint, std::string& content) {
  constexpr std::size_t leastBlock = 65536;
  std::size_t size = 0;
  content.resize(sizeHint + 1);
  for (;;) {
    if (size > kMostBytesOfFile) return kTooLarge;
    if (size == content.size()) content.resize(size + std::max(size, leastBlock));
    const ssize_t got = VyrUninterrupted(
        [&] { return ::read(file, content.data() + size, content.size() - size); });
    if (got < 0) return NotRead();
    if (got == 0) break;
    size += static_cast<std::size_t>(got);
  }
  content.resize(size);
  return {};
}

}  // namespace

bool VyrWriteAll(int file, std::string_view content) {
  while (!content.empty()) {
    const ssize_t written =
        VyrUninterrupted([&] { return ::write(file, content.data(), content.size()); });
    if (written == 0) errno = EIO;  // else this would go on for ever
    if (written <= 0) return false;
    content.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

std::string VyrReadAll(int file, std::string& content) {
  struct stat status {};
  if (::fstat(file, &status) != 0) return NotRead();
  if (S_ISDIR(status.st_mode)) return VyrNoRegularFile(true);
  if (status.st_size > static_cast<off_t>(kMostBytesOfFile)) return kTooLarge;
  std::string read;
  const auto sizeHint = static_cast<std::size_t>(std::max<off_t>(status.st_size, 0));
  std::string problem = ReadToTheEnd(file, sizeHint, read);
  if (problem.empty()) content = std::move(read);
  return problem;
}
