// Runs a target on the files and folders that are named: what was found once stays mended, with
// any compiler.

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "FuzzTarget.h"

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> FilesOf(int argc, char** argv) {
  std::vector<fs::path> files;
  for (int i = 1; i < argc; ++i) {
    if (!fs::is_directory(argv[i])) files.emplace_back(argv[i]);
    if (!fs::is_directory(argv[i])) continue;
    for (const auto& entry : fs::directory_iterator(argv[i])) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<fs::path> files = FilesOf(argc, argv);
  for (const fs::path& file : files) {
    std::ifstream stream(file, std::ios::binary);
    const std::string input{std::istreambuf_iterator<char>(stream), {}};
    if (!stream) {
      std::fprintf(stderr, "%s cannot be read\n", file.c_str());
      return 2;
    }
    std::fprintf(stderr, "%s\n", file.c_str());
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
  }
  std::printf("%zu inputs replayed\n", files.size());
  return files.empty() ? 2 : 0;
}
