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

/// Whose practice a standard follows, as a bit.
enum class SymbolPractice : unsigned { IsoAndJis = 1, AnsiAndAsme = 2, Unknown = 4 };

/// The uses of a symbol under a practice. A standard of a site gets more than a shipped one, since
/// nobody knows where the site has used its symbols.
EngineeringSymbolUses UsesOf(std::string_view tag, SymbolPractice practice, bool isShipped);
