#pragma once

#include "VyrIDftStyle.h"
#include "VyrIUnknownList.h"
#include "VyrUnknown.h"
#include "VyrVar.h"

/// The styles of a standard, by object type ("Text", "Table", "Balloon", "Arrow", "Sheet") and
/// name. Texts are zero-terminated UTF-16; those handed out are freed by the caller with
/// `delete[]`. `extra` may be null and means nothing here. `E_INVALIDARG` for an empty type or
/// name, and for an output that is null or, but for a list, does not point to null. The current
/// styles are kept by the standard in memory, not in its file. Used from one thread at a time.
class VyrIDftStyleManager : public IUnknown {
 public:
  /// Identifier of the interface.
  static constexpr IID kIid = {0x6a1f0002, 0x21d4, 0x4b0e, {0x9c, 0x55, 1, 2, 3, 4, 5, 6}};

  /// A style object with a reference for the caller. Whether the standard has such a style is told
  /// by its queries alone. `E_UNEXPECTED` when no object can be made.
  virtual HRESULT GetStyle(const unsigned short* name, const unsigned short* type,
                           VyrIDftStyle** style) = 0;
  /// All styles of a type, or of every type when it is empty: then "Sheet" first and "Text" last. A
  /// new list of `VyrIDftStyle` objects, with a reference for the caller; empty for a type that the
  /// standard, or this interface, does not know.
  virtual HRESULT GetAvailableStyles(const unsigned short* type, VyrIUnknownList** list,
                                     const unsigned short* extra) = 0;
  /// A place that no standard answers: `E_NOTIMPL`, reported.
  virtual HRESULT ReservedN() = 0;
  /// Format version of the standard (0 to the current version). `E_INVALIDARG` for a null pointer.
  virtual HRESULT GetVersion(int* version) = 0;
  /// Name of the style that new objects of a type get; "Default" until another was set.
  virtual HRESULT GetCurrentStyle(const unsigned short* type, unsigned short** name,
                                  const unsigned short* extra) = 0;
  /// Makes `name` the style of new objects of a type. Whether the standard has the style is not
  /// looked at.
  virtual HRESULT SetCurrentStyle(const unsigned short* type, const unsigned short* name,
                                  const unsigned short* extra) = 0;
  /// A place that no standard answers: `E_NOTIMPL`, reported.
  virtual HRESULT ReservedO() = 0;

 protected:
  ~VyrIDftStyleManager() = default;
};
/// Counted reference to the interface.
using VyrIDftStyleManager_var = VyrVar<VyrIDftStyleManager>;
