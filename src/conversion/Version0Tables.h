#pragma once

#include <array>
#include <span>
#include <string_view>

#include "VyrDrwParseKeywordTable.h"

// Literal content of a version-0 standard.

/// A member of a compound type with its default, or of an instance with its value.
struct Version0Member {
  VyrDrwParseKeyword::Type type;
  const char* name;
  const char* value;
};

/// Members of the three compound types, with their defaults.
std::span<const Version0Member> ToleranceDisplayType();
std::span<const Version0Member> NumericalDisplayType();
std::span<const Version0Member> ThicknessType();

/// The ready-made tolerance display.
std::span<const Version0Member> PredefinedTolerance();

/// A ready-made numerical display: the members of all of them, in the order in which they are
/// written, and what differs in each.
std::span<const Version0Member> PredefinedDisplayMembers();
struct PredefinedDisplay {
  std::span<const Version0Member> differing;  // the display's name among them
};
std::span<const PredefinedDisplay> PredefinedDisplays();

/// Whether every standard has a ready-made group of that name, by section as parameters know it
/// ("TOLERANCE", "NUMERICAL_DISPLAY").
bool IsPredefined(std::string_view section, std::string_view name);

/// Text sizes that annotations may have, in millimetres; those of ISO for an unknown parent.
std::span<const char* const> AllowedTextFontSizes(const char* parentStandard);

/// An end symbol of "DressUp" and its dimensions.
struct DressUpSymbol {
  const char* name;
  std::array<const char*, 2> dimensions;  // the second may be null
};
std::span<const DressUpSymbol> DressUpSymbols();

/// Thickness in millimetres of the available line thicknesses; the n-th is n pixels wide.
std::span<const char* const> AvailableThicknesses();
inline constexpr int kUnavailableThicknesses = 47;

// Room for what a site allows: empty entries, to be filled by it.
inline constexpr int kAllowedFormats = 50;
inline constexpr int kAllowedTextFonts = 100;
inline constexpr int kFurtherTextFontSizes = 100;
