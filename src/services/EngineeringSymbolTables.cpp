#include "EngineeringSymbolTables.h"

#include <algorithm>

#include "EngineeringSymbolPictures.h"

namespace {

constexpr std::string_view kOpenTypeFont = "QNISO1.otf";
constexpr std::string_view kAnsiFont = "SYM1.font";
constexpr std::string_view kIsoStrokeFont = "SYM2.font";
constexpr std::string_view kSubstitutionFont = "SSS4.font";

/// A tag whose row differs between the tables.
struct Difference {
  std::string_view tag;
  std::string_view strokeCode;  // empty: as in the OpenType font
  std::string_view isoFont;     // empty: the usual one
  std::string_view ansiFont;
  bool isInIsoTable = true;
  bool isInAnsiTable = true;
};

constexpr Difference kDifferences[] = {
    {"<SUBSTITUTION>", "", kSubstitutionFont, kSubstitutionFont},
    {"<DEGREE>", "", "", "", false, true},
    {"<MICRO>", "", "", "", false, true},
    {"<STRAIGHT>", "9472", "", ""},
    {"<FLATNESS>", "61440", "", ""},
    {"<NOACTUALSIZE>", "", kAnsiFont, ""},
    {"<TANGENTPLANE>", "", kAnsiFont, ""},
    {"<CHECKMARK>", "", "", "", false, false},
    {"<BALLOTX>", "", "", "", false, false},
    {"<Reciprocity>", "", "", "", true, false},
};

constexpr std::string_view kDegree = "<DEGREE>";
// One row instead of two, as it has always been: texts that carry either tag alone are answered
// from the OpenType table.
constexpr std::string_view kJoinedFonts = "SYM2.fontSYM2.font";

Difference DifferenceOf(std::string_view tag) {
  for (const Difference& difference : kDifferences) {
    if (difference.tag == tag) return difference;
  }
  return {tag, "", "", ""};
}

std::string_view Either(std::string_view special, std::string_view usual) {
  return special.empty() ? usual : special;
}

/// Calls `add` with every row of a text table: tag, code and both pictures, blank-separated.
template <class Add>
void ForEachPicture(std::string_view table, Add add) {
  const auto takeWord = [](std::string_view& line) {
    const std::size_t end = std::min(line.find(' '), line.size());
    const std::string_view word = line.substr(0, end);
    line.remove_prefix(std::min(end + 1, line.size()));
    return word;
  };
  while (!table.empty()) {
    const std::size_t end = std::min(table.find('\n'), table.size());
    std::string_view line = table.substr(0, end);
    table.remove_prefix(std::min(end + 1, table.size()));
    if (!line.starts_with('<')) continue;
    EngineeringSymbol symbol;
    symbol.tag = takeWord(line);
    symbol.code = takeWord(line);
    symbol.smallImage = takeWord(line);
    symbol.largeImage = takeWord(line);
    add(symbol);
  }
}

/// A table of pictures as it stands, without fonts.
EngineeringSymbolTable ReadPictures(std::string_view text) {
  EngineeringSymbolTable table;
  ForEachPicture(text, [&](const EngineeringSymbol& symbol) { table.Add(symbol); });
  return table;
}

EngineeringSymbolTable MakeOpenTypeTable() {
  EngineeringSymbolTable table;
  ForEachPicture(pictures::engineering_symbols, [&](EngineeringSymbol symbol) {
    symbol.font = kOpenTypeFont;
    table.Add(symbol);
  });
  return table;
}

EngineeringSymbolTable MakeIsoStrokeTable() {
  // Two rows of this table hold the texts of two symbols each.
  const EngineeringSymbolTable joined = ReadPictures(pictures::engineering_symbols_joined);
  EngineeringSymbolTable table;
  for (EngineeringSymbol symbol : OpenTypeSymbols().GetSymbols()) {
    const Difference difference = DifferenceOf(symbol.tag);
    symbol.font = Either(difference.isoFont, kIsoStrokeFont);
    symbol.code = Either(difference.strokeCode, symbol.code);
    if (symbol.tag == kDegree) {
      symbol = joined.GetSymbols()[0];
      symbol.font = kJoinedFonts;
    } else if (!difference.isInIsoTable) {
      continue;
    } else if (const EngineeringSymbol* special = joined.Find(symbol.tag)) {
      symbol.smallImage = special->smallImage;
      symbol.largeImage = special->largeImage;
    }
    table.Add(symbol);
  }
  return table;
}

EngineeringSymbolTable MakeAnsiTable() {
  EngineeringSymbolTable table;
  for (EngineeringSymbol symbol : OpenTypeSymbols().GetSymbols()) {
    const Difference difference = DifferenceOf(symbol.tag);
    if (!difference.isInAnsiTable) continue;
    symbol.font = Either(difference.ansiFont, kAnsiFont);
    symbol.code = Either(difference.strokeCode, symbol.code);
    table.Add(symbol);
  }
  return table;
}

}  // namespace

void EngineeringSymbolTable::Add(const EngineeringSymbol& symbol) {
  byTag_.try_emplace(symbol.tag, symbols_.size());
  symbols_.push_back(symbol);
}

const EngineeringSymbol* EngineeringSymbolTable::Find(std::string_view tag) const {
  const auto found = byTag_.find(tag);
  return found == byTag_.end() ? nullptr : &symbols_[found->second];
}

const EngineeringSymbolTable& OpenTypeSymbols() {
  static const EngineeringSymbolTable table = MakeOpenTypeTable();
  return table;
}

const EngineeringSymbolTable& IsoStrokeSymbols() {
  static const EngineeringSymbolTable table = MakeIsoStrokeTable();
  return table;
}

const EngineeringSymbolTable& AnsiSymbols() {
  static const EngineeringSymbolTable table = MakeAnsiTable();
  return table;
}

const EngineeringSymbolTable& FurtherSymbols() {
  static const EngineeringSymbolTable table = ReadPictures(pictures::engineering_symbols_further);
  return table;
}

std::span<const EngineeringSymbol> SubstitutionSymbols() {
  static const EngineeringSymbolTable table =
      ReadPictures(pictures::engineering_symbols_substitution);
  return table.GetSymbols();
}
