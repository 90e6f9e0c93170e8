#pragma once

#include <filesystem>
#include <string>

/// A program that was built with the tests and stands beside them: with the library under
/// sanitizers where that of these tests is.
inline std::string BuiltProgram(const std::string& name) {
  return std::filesystem::read_symlink("/proc/self/exe").parent_path() / name;
}
