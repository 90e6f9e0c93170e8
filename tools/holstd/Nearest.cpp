#include "Nearest.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "Format.h"

namespace {

// The comparison takes the product of both lengths.
constexpr std::size_t kLongestCompared = 64;
constexpr std::size_t kFew = 3;

// To add, drop or exchange a letter; one in the wrong case is hardly a mistake.
constexpr std::size_t kWrongLetter = 8;
constexpr std::size_t kWrongCase = 1;

char LowerCase(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

std::size_t Difference(char a, char b) {
  if (a == b) return 0;
  return LowerCase(a) == LowerCase(b) ? kWrongCase : kWrongLetter;
}

/// What is wrong with `a` when `b` is meant.
std::size_t Distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j * kWrongLetter;
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], (i + 1) * kWrongLetter);
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t exchanged = diagonal + Difference(a[i], b[j]);
      diagonal = std::exchange(
          row[j + 1], std::min({exchanged, row[j] + kWrongLetter, row[j + 1] + kWrongLetter}));
    }
  }
  return row[b.size()];
}

constexpr const char* kEmptyPath = "the path is empty";

/// Dots that do not stand between two names.
std::string ObjectionToDots(std::string_view path) {
  if (path.empty()) return kEmptyPath;
  if (path.find("..") != path.npos) return "two dots follow each other";
  if (path.starts_with('.')) return "the path begins with a dot";
  return path.ends_with('.') ? "the path ends with a dot" : "";
}

}  // namespace

NearestName::NearestName(std::string_view written)
    : written_(written),
      limit_(written.size() > kLongestCompared ? 0 : (written.size() / 3 + 2) * kWrongLetter),
      least_(limit_) {}

void NearestName::Consider(std::string_view name) {
  if (name.empty() || name.size() > written_.size() + limit_ / kWrongLetter) return;
  const std::size_t distance = Distance(written_, name);
  if (distance >= limit_) return;
  near_.emplace_back(distance, name);
  if (distance >= least_) return;
  least_ = distance;
  nearest_ = name;
}

std::vector<std::string> NearestName::GetFew() const {
  std::vector<std::pair<std::size_t, std::string>> sorted = near_;
  std::stable_sort(sorted.begin(), sorted.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<std::string> names;
  for (const auto& [distance, name] : sorted) {
    if (names.size() < kFew) names.push_back(name);
  }
  return names;
}

std::string PathCorrection::Message(const std::string& relation,
                                    const std::string& otherwise) const {
  const std::string meant = path.empty() ? "" : "did you mean " + Quoted(path) + "?";
  if (!dots.empty()) {
    const std::string right = dots == kEmptyPath ? otherwise : "one joins two names";
    return dots + "; " + (meant.empty() ? right : meant);
  }
  const std::string text =
      "there is no " + Quoted(name) + " " +
      (below.empty() ? std::string("in the standard") : relation + " " + Quoted(below)) + "; ";
  if (!meant.empty()) return text + meant;
  return text + (nearest.empty() ? otherwise : "the nearest name is " + Quoted(nearest));
}

PathCorrection CorrectPath(
    std::string_view path, const std::function<bool(const std::string& path)>& isThere,
    const std::function<void(const std::string& path, NearestName& nearest)>& considerBelow) {
  PathCorrection correction;
  correction.dots = ObjectionToDots(path);
  correction.isNeeded = !correction.dots.empty();
  bool isFirst = true;
  for (std::size_t begin = 0; begin < path.size();) {
    const std::size_t end = std::min(path.find('.', begin), path.size());
    const std::string_view name = path.substr(begin, end - begin);
    begin = end + 1;
    if (name.empty()) continue;
    const std::string dotted = correction.path.empty() ? "" : correction.path + ".";
    if (isThere(dotted + std::string(name))) {
      correction.path = dotted + std::string(name);
      continue;
    }
    NearestName nearest(name);
    considerBelow(correction.path, nearest);
    correction.isNeeded = true;
    if (std::exchange(isFirst, false)) {
      correction.below = correction.path;
      correction.name = name;
      correction.nearest = nearest.Get();
    }
    correction.path = nearest.Get().empty() ? "" : dotted + nearest.Get();
    if (correction.path.empty()) break;
  }
  return correction;
}
