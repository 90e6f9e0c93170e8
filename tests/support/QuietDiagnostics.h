#pragma once

#include <string_view>
#include <utility>

#include "VyrDiagnostics.h"

/// Sinks that drop what they are given.
inline VyrDiagnosticSinks DroppingSinks() {
  const auto drop = [](std::string_view) {};
  return {drop, drop, drop, drop};
}

/// Drops every diagnostic of the library while it lives: for work whose reports nobody looks at and
/// that may make more of them than can be kept.
class QuietDiagnostics {
 public:
  QuietDiagnostics() : previous_(VyrSetDiagnosticSinks(DroppingSinks())) {}
  QuietDiagnostics(const QuietDiagnostics&) = delete;
  QuietDiagnostics& operator=(const QuietDiagnostics&) = delete;
  ~QuietDiagnostics() { VyrSetDiagnosticSinks(std::move(previous_)); }

 private:
  VyrDiagnosticSinks previous_;
};
