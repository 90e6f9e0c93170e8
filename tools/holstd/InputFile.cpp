#include "InputFile.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "Failure.h"
#include "Session.h"

namespace {

// The most that the library reads of a file. An endless input must not fill the disk either.
constexpr std::size_t kMostBytes = (std::size_t{1} << 31) - 1;

std::string TemporaryFolder() {
  const char* folder = std::getenv("TMPDIR");
  return folder == nullptr || *folder == '\0' ? "/tmp" : folder;
}

Failure NotCopied(const std::string& folder, int error) {
  return {kNotWritten, "-", 0,
          "cannot be copied into the temporary folder " + folder + ": " + std::strerror(error) +
              "; TMPDIR would name a folder with room to write"};
}

/// The next bytes of standard input; nothing at its end.
std::string_view ReadBlock(std::array<char, 65536>& block) {
  for (;;) {
    const ssize_t got = ::read(STDIN_FILENO, block.data(), block.size());
    if (got >= 0) return {block.data(), static_cast<std::size_t>(got)};
    if (errno == EINTR) continue;
    throw Failure{kInvalidInput, "-", 0, std::string("cannot be read: ") + std::strerror(errno)};
  }
}

void CopyStandardInput(TemporaryCopy& copy) {
  std::array<char, 65536> block;
  std::size_t left = kMostBytes;
  for (;;) {
    const std::string_view bytes = ReadBlock(block);
    if (bytes.empty()) break;
    if (bytes.size() > left) {
      throw Failure{kInvalidInput, "-", 0, "larger than 2 GB; no standard is"};
    }
    left -= bytes.size();
    copy.Append(bytes);
  }
  copy.Close();
}

}  // namespace

TemporaryCopy::TemporaryCopy()
    : folder_(TemporaryFolder()),
      path_(folder_ + "/holstd-XXXXXX"),
      file_(::mkstemp(path_.data())) {
  if (file_ < 0) throw NotCopied(folder_, errno);
}

TemporaryCopy::~TemporaryCopy() {
  if (file_ >= 0) ::close(file_);
  ::unlink(path_.c_str());
}

void TemporaryCopy::Append(std::string_view bytes) {
  if (const int error = WriteAll(file_, bytes); error != 0) throw NotCopied(folder_, error);
}

void TemporaryCopy::Close() {
  if (::close(std::exchange(file_, -1)) != 0) throw NotCopied(folder_, errno);
}

InputFile::InputFile(const std::string& file) : file_(file) {
  if (file == "-") CopyStandardInput(copy_.emplace());
}
