#include "VyrXMLMarkupLimits.h"

#include <algorithm>

namespace {

std::string TooManyAttributes() {
  return "has more than " + std::to_string(kMostXMLAttributes) +
         " attributes on one element; a standard has far fewer";
}

std::string TooManyDeclarations() {
  return "has a document type declaration longer than " +
         std::to_string(kMostXMLDeclarations / 1024) + " KB; write the text of its entities out";
}

constexpr std::string_view kDoctype = "<!DOCTYPE";

class MarkupScan {
 public:
  explicit MarkupScan(std::string_view text) : text_(text) {}

  std::optional<VyrXMLExcess> Run() {
    for (place_ = text_.find('<'); place_ < text_.size(); place_ = text_.find('<', place_)) {
      if (SkipEnclosed()) continue;
      const std::size_t begin = place_;
      const bool isDoctype = StartsWith(kDoctype);
      const bool isWithin = isDoctype ? SkipDoctype() : SkipTag();
      if (isWithin) continue;
      return VyrXMLExcess{begin, isDoctype ? TooManyDeclarations() : TooManyAttributes()};
    }
    return std::nullopt;
  }

 private:
  bool StartsWith(std::string_view begin) const {
    return text_.compare(place_, begin.size(), begin) == 0;
  }

  void SkipPast(std::string_view end, std::size_t from) {
    const std::size_t found = text_.find(end, from);
    place_ = found == std::string_view::npos ? text_.size() : found + end.size();
  }

  /// Skips markup that holds anything up to its end.
  bool SkipEnclosed() {
    struct Enclosure {
      std::string_view begin;
      std::string_view end;
    };
    constexpr Enclosure enclosures[] = {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}};
    for (const Enclosure& enclosure : enclosures) {
      if (!StartsWith(enclosure.begin)) continue;
      SkipPast(enclosure.end, place_ + enclosure.begin.size());
      return true;
    }
    return false;
  }

  bool SkipQuoted() {
    const char quote = text_[place_];
    if (quote != '"' && quote != '\'') return false;
    SkipPast({&quote, 1}, place_ + 1);
    return true;
  }

  /// Skips a start or an end tag; false when it has too many attributes.
  bool SkipTag() {
    std::size_t attributes = 0;
    ++place_;
    while (place_ < text_.size() && text_[place_] != '>' && text_[place_] != '<') {
      if (SkipQuoted()) continue;
      if (text_[place_++] == '=' && ++attributes > kMostXMLAttributes) return false;
    }
    return true;
  }

  /// Skips the declaration with all that its brackets hold; false when it is too long.
  bool SkipDoctype() {
    const std::size_t begin = place_;
    bool isInBrackets = false;
    place_ += kDoctype.size();
    while (place_ < text_.size() && place_ - begin <= kMostXMLDeclarations) {
      if (SkipQuoted() || SkipEnclosed()) continue;
      const char c = text_[place_++];
      if (c == '[') isInBrackets = true;
      if (c == ']') isInBrackets = false;
      if (c == '>' && !isInBrackets) break;
    }
    return place_ - begin <= kMostXMLDeclarations;
  }

  std::string_view text_;
  std::size_t place_ = 0;
};

/// False for nearly all documents, at the cost of a search for "<": no tag that holds too many
/// attributes is shorter than this, and none holds a "<".
bool MayHoldExcess(std::string_view text) {
  constexpr std::size_t leastOfAttribute = std::string_view(" a=''").size();
  constexpr std::size_t leastOfTag = leastOfAttribute * kMostXMLAttributes;
  std::size_t place = text.find('<');
  while (place < text.size()) {
    if (text.compare(place, 3, kDoctype, 0, 3) == 0) return true;
    const std::size_t next = std::min(text.find('<', place + 1), text.size());
    if (next - place > leastOfTag) return true;
    place = next;
  }
  return false;
}

}  // namespace

std::optional<VyrXMLExcess> VyrFindXMLExcess(std::string_view text) {
  return MayHoldExcess(text) ? MarkupScan(text).Run() : std::nullopt;
}
