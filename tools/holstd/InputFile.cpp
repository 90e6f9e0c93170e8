#include "InputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "MemoryShortage.h"
#include "Session.h"

namespace {

// The most that the library reads of a file. An endless input must not fill the disk either.
constexpr std::size_t kMostBytes = (std::size_t{1} << 31) - 1;

std::string TemporaryFolder() {
  const char* folder = std::getenv("TMPDIR");
  return folder == nullptr || *folder == '\0' ? "/tmp" : folder;
}

Failure NotRead(const std::string& source) {
  return {kInvalidInput, source, 0, std::string("cannot be read: ") + std::strerror(errno)};
}

/// The next bytes of a file descriptor; nothing at its end.
std::string_view ReadBlock(int file, const std::string& source, std::array<char, 65536>& block) {
  for (;;) {
    const ssize_t got = ::read(file, block.data(), block.size());
    if (got >= 0) return {block.data(), static_cast<std::size_t>(got)};
    if (errno != EINTR) throw NotRead(source);
  }
}

void CopyAll(int file, const std::string& source, TemporaryCopy& copy) {
  std::array<char, 65536> block;
  std::size_t left = kMostBytes;
  for (;;) {
    const std::string_view bytes = ReadBlock(file, source, block);
    if (bytes.empty()) break;
    if (bytes.size() > left) {
      throw Failure{kInvalidInput, source, 0, "larger than 2 GB; no standard is"};
    }
    left -= bytes.size();
    copy.Append(bytes);
  }
  copy.Close();
}

/// A pipe, a terminal and the like: what was read of it is gone.
bool IsReadOnceOnly(const std::string& file) {
  struct stat status {};
  if (::stat(file.c_str(), &status) != 0) return false;
  return S_ISFIFO(status.st_mode) || S_ISCHR(status.st_mode);
}

void CopyFile(const std::string& file, TemporaryCopy& copy) {
  struct Opened {
    int descriptor;
    ~Opened() {
      if (descriptor >= 0) ::close(descriptor);
    }
  };
  const Opened opened{::open(file.c_str(), O_RDONLY | O_CLOEXEC)};
  if (opened.descriptor < 0) throw NotRead(file);
  CopyAll(opened.descriptor, file, copy);
}

}  // namespace

TemporaryCopy::TemporaryCopy(std::string source)
    : source_(std::move(source)),
      folder_(TemporaryFolder()),
      path_(folder_ + "/holstd-XXXXXX"),
      file_(::mkstemp(path_.data())) {
  if (file_ < 0) throw NotCopied(errno);
}

TemporaryCopy::~TemporaryCopy() {
  if (file_ >= 0) ::close(file_);
  ::unlink(path_.c_str());
}

void TemporaryCopy::Append(std::string_view bytes) {
  if (const int error = WriteAll(file_, bytes); error != 0) throw NotCopied(error);
}

void TemporaryCopy::Close() {
  if (::close(std::exchange(file_, -1)) != 0) throw NotCopied(errno);
}

Failure TemporaryCopy::NotCopied(int error) const {
  return {kNotWritten, source_, 0,
          "cannot be copied into the temporary folder " + folder_ + ": " + std::strerror(error) +
              "; TMPDIR would name a folder with room to write"};
}

InputFile::InputFile(const std::string& file) : file_(file) {
  NoteReading(file);
  if (file == "-") {
    CopyAll(STDIN_FILENO, file, copy_.emplace(file));
  } else if (IsReadOnceOnly(file)) {
    CopyFile(file, copy_.emplace(file));
  }
}
