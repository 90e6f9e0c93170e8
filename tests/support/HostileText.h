#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "ProcessApart.h"

// Texts made to harm: as long as no honest one is.

inline const std::size_t kMillion = kIsSanitized ? 100'000 : 1'000'000;
inline const std::size_t kManyBytes = kIsSanitized ? 20'000'000 : 200'000'000;

inline std::string Repeated(std::string_view text, std::size_t count) {
  std::string repeated;
  repeated.reserve(text.size() * count);
  for (std::size_t i = 0; i < count; ++i) repeated += text;
  return repeated;
}

/// Texts one after the other, each made from its number.
inline std::string Numbered(std::size_t count,
                            const std::function<std::string(std::string)>& make) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += make(std::to_string(i));
  return text;
}
