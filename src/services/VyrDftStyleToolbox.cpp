#include "VyrDftStyleToolbox.h"

#include <memory>
#include <utility>

#include "StyleGraphics.h"
#include "VyrBaseUnknown.h"
#include "VyrDiagnostics.h"
#include "VyrHolVisuEventsToolbox.h"
#include "VyrIDftElementWithStandard.h"
#include "VyrIDftStyleManager.h"

namespace {

constexpr VyrSourceUnit kUnit("VyrDftStyleToolbox");

using Utf16Text = std::unique_ptr<unsigned short[]>;

Utf16Text Utf16(const VyrUnicodeString& text) {
  return Utf16Text(text.NewUtf16Copy());
}

VyrIDftStandard_var StandardOf(IUnknown* element) {
  const auto withStandard = VyrQuery<VyrIDftElementWithStandard>(element);
  if (!withStandard) return {};
  VyrIDftStandard* found = nullptr;
  const HRESULT result = withStandard->GetStandard(&found);
  VyrIDftStandard_var standard(found);
  if (VyrFailed(result)) return {};
  return standard;
}

/// The manager of the styles of the element's standard; null, which is reported, without one.
VyrIDftStyleManager_var StyleManagerOf(IUnknown* element) {
  const VyrIDftStandard_var standard = StandardOf(element);
  if (!kUnit.CheckPointer(standard.Get(), "KO: No Standard Found")) return {};
  auto manager = VyrQuery<VyrIDftStyleManager>(standard.Get());
  if (!kUnit.CheckPointer(manager.Get(), "KO: Standard is not VyrIDftStyleManager")) return {};
  return manager;
}

bool HasStyles(VyrIDftStyleManager& manager) {
  int version = 0;
  return VyrSucceeded(manager.GetVersion(&version)) && version > 0;
}

/// Name of the current style of a type; null when the manager cannot tell.
Utf16Text CurrentStyle(VyrIDftStyleManager& manager, const Utf16Text& type,
                       const VyrUnicodeString& extra) {
  unsigned short* found = nullptr;
  const HRESULT result = manager.GetCurrentStyle(type.get(), &found, Utf16(extra).get());
  Utf16Text name(found);
  if (VyrFailed(result)) return nullptr;
  return name;
}

/// Gives the element what the style says for one type of geometry, if it shows any.
HRESULT SetGraphicPropertiesOf(VyrVisGeometryType geometry, VyrIDftStyle* style, const char* path,
                               VyrIVisProperties& properties, bool useDefaults) {
  const HRESULT shown = properties.IsPropertyOnGeometryType(VyrVisAllProperties, geometry);
  if (VyrFailed(shown)) return E_UNEXPECTED;
  if (shown != S_OK) return S_OK;
  VyrVisPropertiesValues values;
  if (VyrFailed(properties.GetPropertiesAtt(VyrVisAllProperties, geometry, values)) ||
      VyrFailed(ReadStyleGraphics(style, path, geometry, useDefaults, values)) ||
      VyrFailed(properties.SetPropertiesAtt(VyrVisAllProperties, geometry, values))) {
    return E_UNEXPECTED;
  }
  // The element may keep less than it is given: views are told what it has, not what it was sent.
  VyrVisPropertiesValues kept;
  if (VyrFailed(properties.GetPropertiesAtt(VyrVisAllProperties, geometry, kept))) {
    return E_UNEXPECTED;
  }
  const HRESULT dispatched = VyrHolVisuEventsToolbox::DispatchModifyVisProperties(
      &properties, VyrVisAllProperties, geometry, kept);
  const bool isTold =
      kUnit.Check(VyrSucceeded(dispatched), "Failed to dispatch the visualization event");
  return isTold ? S_OK : E_UNEXPECTED;
}

}  // namespace

HRESULT VyrDftStyleToolbox::ApplyStyle(IUnknown* element, const VyrUnicodeString& type,
                                       const VyrUnicodeString& name, DftStyleApplyMode mode,
                                       DftStyleApplyContext context,
                                       const VyrUnicodeString& extra) {
  const auto withStyle = VyrQuery<VyrIDftElementWithStyle>(element);
  if (!withStyle) return E_FAIL;
  VyrIDftStyle* found = nullptr;
  const HRESULT result = GetStyle(element, type, &found, name, extra);
  const VyrIDftStyle_var style(found);
  if (VyrFailed(result) || !style) return E_FAIL;
  return withStyle->ApplyStyle(style.Get(), mode, context);
}

HRESULT VyrDftStyleToolbox::GetStyle(IUnknown* element, const VyrUnicodeString& type,
                                     VyrIDftStyle** style, const VyrUnicodeString& name,
                                     const VyrUnicodeString& extra) {
  if (element == nullptr || type.IsEmpty()) return E_FAIL;
  const VyrIDftStyleManager_var manager = StyleManagerOf(element);
  if (!manager || !HasStyles(*manager)) return E_FAIL;
  const Utf16Text styleType = Utf16(type);
  const Utf16Text styleName =
      name.IsEmpty() ? CurrentStyle(*manager, styleType, extra) : Utf16(name);
  if (!styleName) return E_FAIL;
  return manager->GetStyle(styleName.get(), styleType.get(), style);
}

HRESULT VyrDftStyleToolbox::GetPropertiesValueFromStyle(VyrIDftStyle* style, const char* path,
                                                        int geometryType, int useDefaults,
                                                        VyrVisPropertiesValues& values) {
  return ReadStyleGraphics(style, path, geometryType, useDefaults != 0, values);
}

HRESULT VyrDftStyleToolbox::SetGraphicProperties(VyrIDftStyle* style, const char* path,
                                                 VyrIVisProperties* properties, int /*unused*/,
                                                 unsigned int /*unusedToo*/,
                                                 DftStyleApplyContext /*context*/,
                                                 unsigned char useDefaults) {
  if (style == nullptr || properties == nullptr) return E_FAIL;
  // What hears of the lines may let go of both before the points are served.
  const auto held =
      std::pair(VyrIDftStyle_var::Share(style), VyrIVisProperties_var::Share(properties));
  bool isDone = true;
  for (const VyrVisGeometryType geometry : {VyrVisLines, VyrVisPoints}) {
    isDone &=
        VyrSucceeded(SetGraphicPropertiesOf(geometry, style, path, *properties, useDefaults != 0));
  }
  return kUnit.Check(isDone, "Failed to set graphic properties!") ? S_OK : E_FAIL;
}
