#pragma once

#include "HolStandardInfraExport.h"
#include "VyrIDftElementWithStyle.h"
#include "VyrIDftStyle.h"
#include "VyrIVisProperties.h"
#include "VyrResult.h"
#include "VyrUnicodeString.h"
#include "VyrVisPropertiesValues.h"

/// Brings drafting elements and the styles of their standard together. All operations are static
/// and without state; elements and styles are only borrowed. Used from one thread at a time for one
/// standard.
///
/// An element takes part by its interfaces: `VyrIDftElementWithStandard` to be given a style,
/// `VyrIDftElementWithStyle` to apply it, `VyrIVisProperties` to receive graphic properties.
class HOLSTANDARDINFRA_EXPORT VyrDftStyleToolbox {
 public:
  VyrDftStyleToolbox() = delete;

  /// Has `element` apply the style `name` of the objects of `type`, the current style of that type
  /// when `name` is empty; gives what the element answers. `E_FAIL` when the element takes no
  /// styles or `GetStyle` gives it none. `extra` goes to the style manager and means nothing to
  /// standards.
  static HRESULT ApplyStyle(IUnknown* element, const VyrUnicodeString& type,
                            const VyrUnicodeString& name, DftStyleApplyMode mode,
                            DftStyleApplyContext context, const VyrUnicodeString& extra);

  /// The same style from the element's standard, with a reference for the caller; `*style` must be
  /// null. `E_FAIL` for a null element, for an empty type, for a standard of format version 0,
  /// which has no styles, and, reported, for an element without a standard. Else what
  /// `VyrIDftStyleManager::GetStyle` answers.
  static HRESULT GetStyle(IUnknown* element, const VyrUnicodeString& type, VyrIDftStyle** style,
                          const VyrUnicodeString& name, const VyrUnicodeString& extra);

  /// The graphic values that a style holds at `path` (null or empty: in the style itself) for a
  /// `VyrVisGeometryType`. With `useDefaults` not 0 the style is not asked and may be null.
  ///
  /// - Lines: width from "Thickness" and line type from "LineType", else "Linetype". Both
  ///   are rows of the standard's tables. A width below 1 becomes 2, a line type below 1 becomes 1,
  ///   line type 8 becomes 0. Defaults: 2 and 1.
  /// - Points: symbol from "PointType". No default. The names, from number 1 on: "Cross", "Plus",
  ///   "Concentric", "Coincident", "Fullcircle", "Fullsquare", "Star", "Dot", "Smalldot".
  /// - Both: colour from "Color"; black by default and for all but three components of 0 or more.
  ///
  /// What the style does not hold stays as it is in `values`, but for the colour, which is always
  /// set. `E_FAIL`, with `values` untouched, for a null style that would be asked, another geometry
  /// type and the name of a symbol that does not exist.
  static HRESULT GetPropertiesValueFromStyle(VyrIDftStyle* style, const char* path,
                                             int geometryType, int useDefaults,
                                             VyrVisPropertiesValues& values);

  /// Gives an element those values for lines and for points, as far as it shows such geometry, and
  /// announces each change through `VyrHolVisuEventsToolbox`. Points are served even if lines
  /// failed. `E_FAIL` for null pointers and, reported, when one of the two failed.
  /// The two numbers and the context mean nothing here.
  static HRESULT SetGraphicProperties(VyrIDftStyle* style, const char* path,
                                      VyrIVisProperties* properties, int unused,
                                      unsigned int unusedToo, DftStyleApplyContext context,
                                      unsigned char useDefaults);
};
