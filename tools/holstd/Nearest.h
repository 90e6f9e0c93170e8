#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Finds the name that somebody may have meant who wrote another one.
class NearestName {
 public:
  explicit NearestName(std::string_view written);

  void Consider(std::string_view name);
  /// The nearest name that was considered; empty when none is near.
  const std::string& Get() const { return nearest_; }

 private:
  std::string written_;
  std::string nearest_;
  std::size_t least_;  ///< names as far away as this are not near
};
