#include "EngineeringSymbolUses.h"

namespace {

/// Sets of practices. What a site gets anywhere does not ask for a parent that is known.
constexpr unsigned IsoOnly = static_cast<unsigned>(SymbolPractice::IsoAndJis);
constexpr unsigned AnsiOnly = static_cast<unsigned>(SymbolPractice::AnsiAndAsme);
constexpr unsigned Both = IsoOnly | AnsiOnly;
constexpr unsigned Any = Both | static_cast<unsigned>(SymbolPractice::Unknown);

/// Uses after ISO 1101, ISO 2692, ISO 5459, ISO 10579 and ASME Y14.5. What is not here is a
/// characteristic, a size or a general text and modifies no tolerance frame.
struct Row {
  std::string_view tag;
  unsigned practices;
  EngineeringSymbolUses uses;
};

constexpr Row kRows[] = {
    {"<DIAMETER>", Both, {true, true, false}},
    {"<MAXMATERIAL>", Both, {true, true, false}},
    {"<LEASTMATERIAL>", Both, {true, true, false}},
    {"<FREESTATE>", Both, {true, false, false}},
    {"<TANGENTPLANE>", Both, {true, false, false}},
    {"<PROJTOLZONE>", IsoOnly, {true, true, false}},
    {"<PROJTOLZONE>", AnsiOnly, {true, false, false}},
    {"<ModifierA>", IsoOnly, {true, false, false}},
    {"<Reciprocity>", IsoOnly, {true, false, false}},
    {"<MinimaxFeat>", IsoOnly, {true, false, false}},
    {"<LeastSquare>", IsoOnly, {true, false, false}},
    {"<Circumscribed>", IsoOnly, {true, false, false}},
    {"<Tangent>", IsoOnly, {true, false, false}},
    {"<Inscribed>", IsoOnly, {true, false, false}},
    {kOrientationTag, IsoOnly, {false, true, false}},
    {kFormerOrientationTag, IsoOnly, {false, true, false}},
    {"<BETWEEN>", IsoOnly, {false, false, true}},
    {"<FROMTO>", IsoOnly, {false, false, true}},
    {"<Unequally>", AnsiOnly, {true, false, false}},
    {"<ST>", AnsiOnly, {true, false, false}},
    {"<RIGHTTRIANGLE>", AnsiOnly, {false, true, false}},
    {"<ARROW>", AnsiOnly, {false, false, true}},
};

/// What a standard of a site gets beyond that.
constexpr Row kSiteRows[] = {
    {"<DIAMETER>", Any, {true, true, true}},     {"<ENVELOPE>", Any, {true, true, true}},
    {"<FREESTATE>", Any, {true, true, true}},    {"<LEASTMATERIAL>", Any, {true, true, true}},
    {"<MAXMATERIAL>", Any, {true, true, true}},  {"<PROJTOLZONE>", Any, {true, true, true}},
    {"<NOACTUALSIZE>", Any, {true, true, true}}, {"<TANGENTPLANE>", Any, {true, true, true}},
    {"<Unequally>", Any, {true, true, true}},    {"<ST>", Any, {true, true, true}},
    {"<ARROW>", Any, {true, true, true}},        {"<Reciprocity>", IsoOnly, {true, true, true}},
    {"<SQUARE>", AnsiOnly, {true, true, true}},  {"<RIGHTTRIANGLE>", AnsiOnly, {true, true, true}},
    {"<SLOPE>", IsoOnly, {false, false, true}},  {"<CONICALTAPER>", IsoOnly, {false, false, true}},
};

template <std::size_t count>
void AddUses(const Row (&rows)[count], std::string_view tag, SymbolPractice practice,
             EngineeringSymbolUses& uses) {
  for (const Row& row : rows) {
    if (row.tag != tag || (row.practices & static_cast<unsigned>(practice)) == 0) continue;
    uses.inToleranceValues |= row.uses.inToleranceValues;
    uses.inDatumReferences |= row.uses.inDatumReferences;
    uses.inNotes |= row.uses.inNotes;
  }
}

}  // namespace

EngineeringSymbolUses UsesOf(std::string_view tag, SymbolPractice practice, bool isShipped) {
  EngineeringSymbolUses uses = {false, false, false};
  AddUses(kRows, tag, practice, uses);
  if (!isShipped) AddUses(kSiteRows, tag, practice, uses);
  return uses;
}
