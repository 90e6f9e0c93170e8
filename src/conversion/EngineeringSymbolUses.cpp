#include "EngineeringSymbolUses.h"

namespace {

enum Parents { Both, IsoOnly, AnsiOnly };

/// Uses after ISO 1101, ISO 2692, ISO 5459, ISO 10579 and ASME Y14.5. What is not here is a
/// characteristic, a size or a general text and modifies no tolerance frame.
struct Row {
  std::string_view tag;
  Parents parents;
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
    {"<DIAMETER>", Both, {true, true, true}},     {"<ENVELOPE>", Both, {true, true, true}},
    {"<FREESTATE>", Both, {true, true, true}},    {"<LEASTMATERIAL>", Both, {true, true, true}},
    {"<MAXMATERIAL>", Both, {true, true, true}},  {"<PROJTOLZONE>", Both, {true, true, true}},
    {"<NOACTUALSIZE>", Both, {true, true, true}}, {"<TANGENTPLANE>", Both, {true, true, true}},
    {"<Unequally>", Both, {true, true, true}},    {"<ST>", Both, {true, true, true}},
    {"<ARROW>", Both, {true, true, true}},        {"<Reciprocity>", IsoOnly, {true, true, true}},
    {"<SQUARE>", AnsiOnly, {true, true, true}},   {"<RIGHTTRIANGLE>", AnsiOnly, {true, true, true}},
    {"<SLOPE>", IsoOnly, {false, false, true}},   {"<CONICALTAPER>", IsoOnly, {false, false, true}},
};

template <std::size_t count>
void AddUses(const Row (&rows)[count], std::string_view tag, bool isIsoOrJis,
             EngineeringSymbolUses& uses) {
  for (const Row& row : rows) {
    const bool isForParent = row.parents == Both || (row.parents == IsoOnly) == isIsoOrJis;
    if (row.tag != tag || !isForParent) continue;
    uses.inToleranceValues |= row.uses.inToleranceValues;
    uses.inDatumReferences |= row.uses.inDatumReferences;
    uses.inNotes |= row.uses.inNotes;
  }
}

}  // namespace

EngineeringSymbolUses UsesOf(std::string_view tag, bool isIsoOrJis, bool isShipped) {
  EngineeringSymbolUses uses = {false, false, false};
  AddUses(kRows, tag, isIsoOrJis, uses);
  if (!isShipped) AddUses(kSiteRows, tag, isIsoOrJis, uses);
  return uses;
}
