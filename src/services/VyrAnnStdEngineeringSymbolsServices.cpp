#include "VyrAnnStdEngineeringSymbolsServices.h"

#include <string_view>
#include <unordered_set>

#include "EngineeringSymbolTables.h"

namespace {

using Services = VyrAnnStdEngineeringSymbolsServices;

/// The table of a context and a parent, and the one to fall back to; null where there is none.
struct Tables {
  const EngineeringSymbolTable* primary = nullptr;
  const EngineeringSymbolTable* fallback = nullptr;
};

Tables TablesFor(Services::SymbolContext context, Services::ParentStandard parent) {
  const bool isKnownContext =
      context == Services::StrokeFonts || context == Services::OpenTypeFonts;
  if (!isKnownContext) return {};
  switch (parent) {
    case Services::ParentANSI:
      return {&AnsiSymbols(), nullptr};
    case Services::ParentISO:
    case Services::ParentJIS:
      if (context == Services::OpenTypeFonts) return {&OpenTypeSymbols(), &IsoStrokeSymbols()};
      return {&IsoStrokeSymbols(), &OpenTypeSymbols()};
  }
  return {};
}

}  // namespace

HRESULT VyrAnnStdEngineeringSymbolsServices::GetEngSymbolDefinitionAndImage(
    const VyrUnicodeString& tag, SymbolContext context, ParentStandard parent,
    VyrUnicodeString& font, VyrUnicodeString& code, VyrUnicodeString& smallImage,
    VyrUnicodeString& largeImage, int) {
  if (tag.IsEmpty()) return E_INVALIDARG;
  const Tables tables = TablesFor(context, parent);
  HRESULT result = S_OK;
  for (const EngineeringSymbolTable* table : {tables.primary, tables.fallback}) {
    const EngineeringSymbol* symbol = table == nullptr ? nullptr : table->Find(tag.View());
    if (symbol != nullptr) {
      font = symbol->font;
      code = symbol->code;
      smallImage = symbol->smallImage;
      largeImage = symbol->largeImage;
      return result;
    }
    result = S_FALSE;
  }
  return E_FAIL;
}

void VyrAnnStdEngineeringSymbolsServices::ListTags(VyrListValVyrUnicodeString& tags) {
  tags.clear();
  std::unordered_set<std::string_view> known;
  for (const auto* table : {&OpenTypeSymbols(), &IsoStrokeSymbols(), &AnsiSymbols()}) {
    for (const EngineeringSymbol& symbol : table->GetSymbols()) {
      if (known.insert(symbol.tag).second) tags.emplace_back(symbol.tag);
    }
  }
}
