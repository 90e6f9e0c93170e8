#pragma once

#include <string_view>

/// Where a symbol may be inserted.
struct EngineeringSymbolUses {
  bool inToleranceValues;
  bool inDatumReferences;
  bool inNotes;
};

inline constexpr std::string_view kOrientationTag = "<ORIENTATIONCONSTRAINTONLY>";
/// The same symbol as it was once called.
inline constexpr std::string_view kFormerOrientationTag = "<ORIENTCONSTRAINTONLY>";

/// The uses of a symbol under ISO and JIS or under ANSI and ASME. A standard of a site gets more
/// than a shipped one, since nobody knows where the site has used its symbols.
EngineeringSymbolUses UsesOf(std::string_view tag, bool isIsoOrJis, bool isShipped);
