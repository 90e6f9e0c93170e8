#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <string>
#include <string_view>

#include "FuzzTarget.h"

/// A file in memory: the reader takes files, and a disk would only slow it down.
class MemoryFile {
 public:
  explicit MemoryFile(std::string_view content) : file_(::memfd_create("standard", 0)) {
    Require(file_ >= 0, "the system has memory files");
    while (!content.empty()) {
      const ssize_t written = ::write(file_, content.data(), content.size());
      Require(written > 0, "the memory file can be written");
      content.remove_prefix(static_cast<std::size_t>(written));
    }
  }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  ~MemoryFile() { ::close(file_); }
  std::string Path() const { return "/proc/self/fd/" + std::to_string(file_); }

 private:
  int file_;
};
