#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

/// A name of a path. Brackets after it may tell entries of one name apart: by their place from 1,
/// as `StandardItems::PathOf` writes it, or by their parameter "Name".
struct PathName {
  std::string_view text;      ///< as it is written
  std::string_view name;      ///< the text without brackets
  std::string_view entry;     ///< "Name" of the entry that the brackets mean; empty: a place
  std::uint32_t ordinal = 0;  ///< the place that the brackets mean

  explicit PathName(std::string_view written);
  /// One of which brackets are letters like others.
  static PathName Literal(std::string_view written);

  bool HasBrackets() const { return name.size() != text.size(); }
  bool HasPlace() const { return HasBrackets() && entry.empty(); }
  /// Whether it means what is called `called`, is the one at `place` of that name, and has that
  /// "Name".
  bool Means(std::string_view called, std::uint32_t place, std::string_view entryName,
             bool isFirstMeant) const {
    if (called == text && (!isFirstMeant || place <= 1)) return true;
    if (!HasBrackets() || called != name) return false;
    return HasPlace() ? place == ordinal : entryName == entry;
  }

 private:
  PathName() = default;
};

/// How a path is cut into names.
enum class Cut {
  AtEachDot,      ///< the names are literal
  AroundBrackets  ///< dots and colons within brackets belong to the name
};

/// Length of the first name of `text`, which ends before one of `separators` or with the text.
std::size_t LengthOfName(std::string_view text, std::string_view separators, Cut cut);
std::vector<PathName> NamesOf(std::string_view path, Cut cut);
