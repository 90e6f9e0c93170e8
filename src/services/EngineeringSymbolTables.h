#pragma once

#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

/// A symbol as one table has it. All texts live as long as the process.
struct EngineeringSymbol {
  std::string_view tag;
  std::string_view font;
  std::string_view code;
  std::string_view smallImage;
  std::string_view largeImage;
};

/// A table of symbols in its fixed order.
class EngineeringSymbolTable {
 public:
  void Add(const EngineeringSymbol& symbol);
  std::span<const EngineeringSymbol> GetSymbols() const { return symbols_; }
  /// The first symbol of that tag; null when there is none.
  const EngineeringSymbol* Find(std::string_view tag) const;

 private:
  std::vector<EngineeringSymbol> symbols_;
  std::unordered_map<std::string_view, std::size_t> byTag_;
};

/// Symbols in the OpenType font.
const EngineeringSymbolTable& OpenTypeSymbols();
/// Symbols in the stroke fonts of ISO and JIS.
const EngineeringSymbolTable& IsoStrokeSymbols();
/// Symbols of ANSI and ASME.
const EngineeringSymbolTable& AnsiSymbols();
/// Pictures and codes of symbols that only standards themselves hold, not the tables above; the
/// font is left open.
const EngineeringSymbolTable& FurtherSymbols();
/// The symbol of a substituted value as sites get it anew: that of ISO and JIS, then that of ANSI
/// and ASME; the font is left open.
std::span<const EngineeringSymbol> SubstitutionSymbols();
