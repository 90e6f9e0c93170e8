#include <array>
#include <memory>
#include <optional>

#include "Arguments.h"
#include "Format.h"
#include "Nearest.h"
#include "Subcommands.h"
#include "TextTable.h"
#include "VyrAnnStdEngineeringSymbolsServices.h"

namespace {

using Services = VyrAnnStdEngineeringSymbolsServices;

struct Options {
  std::string tag;
  bool json = false;
};

/// Where symbols differ. The fonts make no difference for ANSI and ASME.
struct Place {
  const char* heading;
  const char* title;
  const char* fonts;
  std::vector<std::string> parents;
  Services::SymbolContext context;
  Services::ParentStandard parent;
};

const std::array<Place, 3>& Places() {
  static const std::array<Place, 3> places = {{
      {"OPENTYPE",
       "OpenType fonts, ISO and JIS",
       "OpenType",
       {"ISO", "JIS"},
       Services::OpenTypeFonts,
       Services::ParentISO},
      {"STROKE",
       "stroke fonts, ISO and JIS",
       "stroke",
       {"ISO", "JIS"},
       Services::StrokeFonts,
       Services::ParentISO},
      {"ANSI, ASME",
       "all fonts, ANSI and ASME",
       "all",
       {"ANSI", "ASME"},
       Services::StrokeFonts,
       Services::ParentANSI},
  }};
  return places;
}

struct Symbol {
  VyrUnicodeString font;
  VyrUnicodeString code;
  VyrUnicodeString smallImage;
  VyrUnicodeString largeImage;
  bool isBorrowed = false;  ///< known with other fonts only
};

std::optional<Symbol> SymbolAt(const VyrUnicodeString& tag, const Place& place) {
  Symbol symbol;
  const HRESULT result = Services::GetEngSymbolDefinitionAndImage(
      tag, place.context, place.parent, symbol.font, symbol.code, symbol.smallImage,
      symbol.largeImage, 0);
  if (VyrFailed(result)) return std::nullopt;
  symbol.isBorrowed = result == S_FALSE;
  return symbol;
}

/// The tag that is meant, with or without its angle brackets. Throws `Failure`.
VyrUnicodeString FindTag(const VyrListValVyrUnicodeString& tags, const std::string& written) {
  const std::string bracketed = written.starts_with('<') ? written : "<" + written + ">";
  NearestName nearest(bracketed);
  for (const VyrUnicodeString& tag : tags) {
    if (tag.View() == bracketed) return tag;
    nearest.Consider(tag.View());
  }
  throw Failure{kNegativeAnswer, "", 0,
                "there is no engineering symbol " + Quoted(written) + "; " +
                    (nearest.Get().empty() ? "'holstd symbols' lists all"
                                           : "the nearest is " + Quoted(nearest.Get()))};
}

Json PlaceJson(const Symbol& symbol, const Place& place) {
  return {{"fonts", place.fonts},
          {"parents", place.parents},
          {"font", symbol.font.View()},
          {"code", symbol.code.View()},
          {"borrowed", symbol.isBorrowed}};
}

Json SymbolJson(const VyrUnicodeString& tag, bool hasImages) {
  Json object = {{"tag", tag.View()}, {"symbols", Json::array()}};
  for (const Place& place : Places()) {
    const auto symbol = SymbolAt(tag, place);
    if (!symbol) continue;
    Json& entry = object["symbols"].emplace_back(PlaceJson(*symbol, place));
    if (!hasImages) continue;
    entry["smallImage"] = symbol->smallImage.View();
    entry["largeImage"] = symbol->largeImage.View();
  }
  return object;
}

std::string DetailText(const VyrUnicodeString& tag) {
  std::string text = Printable(tag.View()) + "\n";
  for (const Place& place : Places()) {
    text += std::string("\n  ") + place.title;
    const auto symbol = SymbolAt(tag, place);
    if (!symbol) {
      text += ": none\n";
      continue;
    }
    text += symbol->isBorrowed ? " (as with the other fonts)\n" : "\n";
    const auto add = [&](const char* label, const VyrUnicodeString& value) {
      text += std::string("    ") + label + Printable(value.View()) + "\n";
    };
    add("font         ", symbol->font);
    add("code         ", symbol->code);
    add("small image  ", symbol->smallImage);
    add("large image  ", symbol->largeImage);
  }
  return text;
}

std::string ListText(const VyrListValVyrUnicodeString& tags) {
  TextTable table({"TAG", Places()[0].heading, Places()[1].heading, Places()[2].heading});
  for (const VyrUnicodeString& tag : tags) {
    std::vector<std::string> cells = {std::string(tag.View())};
    for (const Place& place : Places()) {
      const auto symbol = SymbolAt(tag, place);
      cells.push_back(symbol ? std::string((symbol->font + " " + symbol->code.View()).View()) : "");
    }
    table.Add(cells);
  }
  return table.Text();
}

Json ListJson(const VyrListValVyrUnicodeString& tags) {
  Json list = Json::array();
  for (const VyrUnicodeString& tag : tags) list.push_back(SymbolJson(tag, false));
  return list;
}

ExitStatus PrintSymbols(const Options& options, bool isOne, Session& session) {
  VyrListValVyrUnicodeString tags;
  Services::ListTags(tags);
  if (!isOne) {
    session.Print(options.json ? JsonText(ListJson(tags)) : ListText(tags));
    return kDone;
  }
  const VyrUnicodeString tag = FindTag(tags, options.tag);
  session.Print(options.json ? JsonText(SymbolJson(tag, true)) : DetailText(tag));
  return kDone;
}

}  // namespace

Action Symbols::Register(Arguments& command) {
  auto options = std::make_shared<Options>();
  const Argument tag = command.AddWord(
      "TAG", options->tag, "Tell all of one symbol; the angle brackets may be left out");
  command.AddJson(options->json);
  command.AddExamples(
      {"holstd symbols DIAMETER", "holstd symbols", "holstd symbols '<DIAMETER>' --json"},
      "A symbol is a character code in a font; which one depends on the fonts of the text "
      "and on\nthe parent standard. Images are base64 texts of monochrome bitmaps.");
  return
      [options, tag](Session& session) { return PrintSymbols(*options, tag.IsGiven(), session); };
}
