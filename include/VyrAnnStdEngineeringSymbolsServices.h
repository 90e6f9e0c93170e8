#pragma once

#include "HolStandardInfraExport.h"
#include "VyrListValVyrUnicodeString.h"
#include "VyrResult.h"
#include "VyrUnicodeString.h"

/// The engineering symbols that texts of annotations carry as tags ("<DIAMETER>"): which font draws
/// one, by which code, and how menus picture it. Most are the symbols of dimensioning (ISO 129-1)
/// and of geometrical tolerancing (ISO 1101, ASME Y14.5). All operations are static and may be
/// called from any thread.
class HOLSTANDARDINFRA_EXPORT VyrAnnStdEngineeringSymbolsServices {
 public:
  VyrAnnStdEngineeringSymbolsServices() = delete;

  /// The fonts that the text around a symbol is drawn in.
  enum SymbolContext : int {
    StrokeFonts = 0,    ///< the application's own fonts, drawn by strokes
    OpenTypeFonts = 1,  ///< OpenType fonts
  };
  /// The parent standard of the text, as far as symbols differ.
  enum ParentStandard : int {
    ParentISO = 0,   ///< ISO
    ParentJIS = 1,   ///< JIS, whose symbols are those of ISO
    ParentANSI = 2,  ///< ANSI and ASME
  };

  /// What stands for a tag: the font's file name, the character code as decimal text, and two
  /// monochrome pictures of 16x16 and 22x22 pixels as base64 text (whole bytes a row, from the top,
  /// the leftmost pixel in the highest bit, 1 is ink).
  ///
  /// `S_OK` when the tag is one of the context and the parent, `S_FALSE` when it is only one of the
  /// other context, `E_FAIL` when it is none, `E_INVALIDARG` for an empty tag. ANSI and ASME have
  /// the same fonts in both contexts, so that `S_FALSE` is an answer of ISO and JIS only. `E_FAIL`
  /// for a context or a parent that does not exist. On failure the outputs are left alone. Tags are
  /// compared exactly, their angle brackets included. The last argument means nothing.
  static HRESULT GetEngSymbolDefinitionAndImage(const VyrUnicodeString& tag, SymbolContext context,
                                                ParentStandard parent, VyrUnicodeString& font,
                                                VyrUnicodeString& code,
                                                VyrUnicodeString& smallImage,
                                                VyrUnicodeString& largeImage, int unused);
  /// The tags of all symbols, each once, in the order of the tables: those with OpenType fonts,
  /// then those that only others have. What the list held before goes.
  static void ListTags(VyrListValVyrUnicodeString& tags);
};
