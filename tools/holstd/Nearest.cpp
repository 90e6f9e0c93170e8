#include "Nearest.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "Format.h"
#include "PathNames.h"

namespace {

// The comparison takes the product of both lengths.
constexpr std::size_t kLongestCompared = 64;
constexpr std::size_t kFew = 3;
// Several times the names of a shipped standard.
constexpr std::size_t kMostCompared = 4096;
// Each wrong name is looked for in all that there is; who has more of them meant something else.
constexpr int kMostWrongNames = 8;

// To add, drop or exchange a letter; one in the wrong case is hardly a mistake.
constexpr std::size_t kWrongLetter = 8;
constexpr std::size_t kWrongCase = 1;

/// What is wrong with a name of that length from which none is near.
constexpr std::size_t LimitFor(std::size_t length) {
  return (length / 3 + 2) * kWrongLetter;
}
constexpr std::size_t kLongestName = kLongestCompared + LimitFor(kLongestCompared) / kWrongLetter;

char LowerCase(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

std::size_t Difference(char a, char b) {
  if (a == b) return 0;
  return LowerCase(a) == LowerCase(b) ? kWrongCase : kWrongLetter;
}

/// What is wrong with `a` when `b` is meant; `limit` when it is that much or more.
std::size_t Distance(std::string_view a, std::string_view b, std::size_t limit) {
  std::array<std::size_t, kLongestName + 1> row;
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j * kWrongLetter;
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], (i + 1) * kWrongLetter);
    std::size_t least = row[0];
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t exchanged = diagonal + Difference(a[i], b[j]);
      diagonal = std::exchange(
          row[j + 1], std::min({exchanged, row[j] + kWrongLetter, row[j + 1] + kWrongLetter}));
      least = std::min(least, row[j + 1]);
    }
    if (least >= limit) return limit;
  }
  return std::min(row[b.size()], limit);
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
    : written_(written.size() > kLongestCompared ? std::string_view() : written),
      limit_(written.size() > kLongestCompared ? 0 : LimitFor(written.size())) {}

void NearestName::Consider(std::string_view name) {
  const std::size_t longer = std::max(name.size(), written_.size());
  const std::size_t shorter = std::min(name.size(), written_.size());
  if (name.empty() || (longer - shorter) * kWrongLetter >= limit_) return;
  if (compared_.size() == kMostCompared || !compared_.emplace(name).second) return;
  const std::size_t distance = Distance(written_, name, limit_);
  if (distance >= limit_) return;
  const auto place =
      std::upper_bound(near_.begin(), near_.end(), distance,
                       [](std::size_t wanted, const auto& near) { return wanted < near.first; });
  near_.emplace(place, distance, name);
  if (near_.size() > kFew) near_.pop_back();
}

std::vector<std::string> NearestName::GetFew() const {
  std::vector<std::string> names;
  for (const auto& [distance, name] : near_) names.push_back(name);
  return names;
}

std::string PathCorrection::Message(const std::string& relation,
                                    const std::string& otherwise) const {
  const std::string meant = path.empty() ? "" : "did you mean " + Quoted(ShownPath(path)) + "?";
  if (!dots.empty()) {
    const std::string right = dots == kEmptyPath ? otherwise : "one joins two names";
    return dots + "; " + (meant.empty() ? right : meant);
  }
  const std::string text =
      "there is no " + Quoted(name) + " " +
      (below.empty() ? std::string("in the standard") : relation + " " + Quoted(ShownPath(below))) +
      "; ";
  if (!meant.empty()) return text + meant;
  return text + (nearest.empty() ? otherwise : "the nearest name is " + Quoted(nearest));
}

PathCorrection CorrectPath(std::string_view path,
                           const std::function<bool(std::string_view name)>& advance,
                           const std::function<void(NearestName& nearest)>& considerNext) {
  PathCorrection correction;
  correction.dots = ObjectionToDots(path);
  correction.isNeeded = !correction.dots.empty();
  int wrongNames = 0;
  for (std::size_t begin = 0; begin < path.size();) {
    const std::size_t end = begin + LengthOfName(path.substr(begin), ".", Cut::AroundBrackets);
    std::string name(path.substr(begin, end - begin));
    begin = end + 1;
    if (name.empty()) continue;
    if (!advance(name)) {
      NearestName nearest(name);
      considerNext(nearest);
      correction.isNeeded = true;
      if (wrongNames++ == 0) {
        correction.below = correction.path;
        correction.name = name;
        correction.nearest = nearest.Get();
      }
      name = nearest.Get();
      const bool isFound = !name.empty() && wrongNames <= kMostWrongNames && advance(name);
      if (!isFound) {
        correction.path.clear();
        break;
      }
    }
    if (!correction.path.empty()) correction.path += '.';
    correction.path += name;
  }
  return correction;
}
