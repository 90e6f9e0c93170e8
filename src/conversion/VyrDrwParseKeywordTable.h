#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

/// A name of the old flat parameter set and what stands behind it.
struct VyrDrwParseKeyword {
  enum class Type : std::uint8_t {
    Marker,  ///< begins or ends a section of the text layout; has no value
    Int,
    Float,
    String,
    Word,  ///< a word of a fixed set: one of the four parent standards
  };

  const char* keyword;     ///< the parameter's name in XML standards and in reports
  const char* legacyName;  ///< its name in the old parameter set; empty when it has none
  int required;            ///< 1 when a standard must valuate it
  Type type;
};

inline constexpr int kKeywordCount = 177;

// The three sections of the table, by row.
inline constexpr int kParentStandardRow = 2;
inline constexpr int kLastGeneralRow = 118;
inline constexpr int kFirstToleranceRow = 119;
inline constexpr int kFirstDisplayRow = 140;
// The parameter that names a group of a section. A standard calls it "Name", as every type does.
inline constexpr int kToleranceNameRow = kFirstToleranceRow + 2;
inline constexpr int kDisplayNameRow = kFirstDisplayRow + 2;

/// All rows in their fixed order; rows are addressed by their place.
std::span<const VyrDrwParseKeyword, kKeywordCount> VyrDrwParseKeywordTable();

/// Row of a keyword, or of a legacy name; -1 for an empty or unknown one.
int FindKeywordRow(std::string_view keyword);
int FindLegacyNameRow(std::string_view legacyName);
