#include "Nearest.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

namespace {

// The comparison takes the product of both lengths.
constexpr std::size_t kLongestCompared = 64;

/// Number of letters to add, drop or exchange to make `b` of `a`.
std::size_t Distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i + 1);
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t exchanged = diagonal + (a[i] == b[j] ? 0 : 1);
      diagonal = std::exchange(row[j + 1], std::min({exchanged, row[j] + 1, row[j + 1] + 1}));
    }
  }
  return row[b.size()];
}

}  // namespace

NearestName::NearestName(std::string_view written)
    : written_(written), least_(written.size() > kLongestCompared ? 0 : written.size() / 3 + 2) {}

void NearestName::Consider(std::string_view name) {
  if (name.empty() || name.size() > written_.size() + least_) return;
  const std::size_t distance = Distance(written_, name);
  if (distance >= least_) return;
  least_ = distance;
  nearest_ = name;
}
