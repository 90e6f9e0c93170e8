#include "ToldValues.h"

#include <utility>

#include "Format.h"

namespace {

/// A number that nobody takes for an integer.
std::string RealText(double number) {
  const std::string text = NumberText(number);
  return text.find_first_of(".ein") == std::string::npos ? text + ".0" : text;
}

std::size_t CountWords(std::string_view text) {
  std::size_t count = 0;
  bool isInside = false;
  for (const char letter : text) {
    const bool isBlank = std::string_view(" \t\r\n").find(letter) != std::string_view::npos;
    if (!isBlank && !isInside) ++count;
    isInside = !isBlank;
  }
  return count;
}

}  // namespace

ToldValues::ToldValues(VyrIDrwStandard& standard, const PathMatches& matches, std::string path)
    : standard_(standard), matches_(matches), path_(std::move(path)) {}

std::optional<std::string> ToldValues::At(std::size_t index) {
  const std::string type = matches_.ValueAt(index).type;
  const int place = static_cast<int>(index) + 1;
  if (type == "string" || type == "enum") {
    VyrUnicodeString text;
    if (standard_.GetValue(path_.c_str(), place, text) == S_OK) return std::string(text.View());
  } else if (type == "float") {
    double number = 0;
    if (standard_.GetValue(path_.c_str(), place, number) == S_OK) return RealText(number);
  } else if (type == "int") {
    int number = 0;
    if (standard_.GetValue(path_.c_str(), place, number) == S_OK) return std::to_string(number);
  } else if (type == "color") {
    return ColorAt(index);
  }
  return std::nullopt;
}

// A color is told among the numbers of all elements only.
std::optional<std::string> ToldValues::ColorAt(std::size_t index) {
  AskForColors();
  if (begins_.empty()) return std::nullopt;
  std::string text;
  for (std::size_t i = begins_[index]; i < begins_[index + 1]; ++i) {
    text += (text.empty() ? "" : " ") + std::to_string(numbers_[i]);
  }
  return text;
}

void ToldValues::AskForColors() {
  if (std::exchange(hasAskedForColors_, true)) return;
  int count = 0;
  int* const onlyTheirNumber = nullptr;
  if (standard_.GetValue(path_.c_str(), onlyTheirNumber, &count) == S_OK) {
    numbers_.resize(static_cast<std::size_t>(count));
    standard_.GetValue(path_.c_str(), numbers_.data(), &count);
  }
  std::vector<std::size_t> begins = {0};
  for (std::size_t i = 0; i < matches_.Count(); ++i) {
    const FileValue value = matches_.ValueAt(i);
    begins.push_back(begins.back() + (value.type == "color" ? CountWords(value.text) : 1));
  }
  if (begins.back() == numbers_.size()) begins_ = std::move(begins);
}
