#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "QuietDiagnostics.h"

/// Entry of a target: takes any bytes at all. Ends the process when a rule is broken.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// The input as text.
inline std::string_view InputText(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

/// Stops with the rule that was broken, so that whoever runs the target keeps the input.
inline void Require(bool holds, const char* rule) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", rule);
  std::abort();
}

/// Bad inputs are the rule here; their reports are not looked at.
inline void SilenceDiagnostics() {
  static const QuietDiagnostics quiet;
}

/// Cuts the first line off `text` and returns it.
inline std::string_view CutLine(std::string_view& text) {
  const std::size_t end = text.find('\n');
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  return line;
}
