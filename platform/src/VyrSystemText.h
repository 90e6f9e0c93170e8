#pragma once

#include <string.h>

#include <string>

/// What an error number of the operating system means, in the language of all other messages,
/// whatever the locale of the host; on any thread.
inline std::string VyrSystemText(int error) {
  const char* text = ::strerrordesc_np(error);
  return text == nullptr ? "error " + std::to_string(error) : text;
}
