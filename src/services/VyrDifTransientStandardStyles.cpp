#include <array>
#include <ranges>
#include <string>
#include <utility>

#include "VyrDifDftStyle.h"
#include "VyrDifTransientStandard.h"
#include "VyrShownText.h"

// The styles of a standard, and the current style of each object type.

namespace {

constexpr std::array<const char*, 5> kStyleTypes = {"Text", "Table", "Balloon", "Arrow", "Sheet"};
constexpr const char* kDefaultStyle = "Default";

}  // namespace

HRESULT VyrDifTransientStandard::GetStylesNames(const char* type,
                                                VyrListValVyrUnicodeString* names) {
  TracedOperation traced = Traced("VyrDifTransientStandard::GetStylesNames");
  if (!kTransientStandardUnit.CheckPointer(names)) return E_INVALIDARG;
  traced.KeepObject();
  // Made first: the caller's type may be one of the names that go.
  const std::string path = std::string("Styles.") + (type == nullptr ? "" : type);
  names->clear();
  if (type == nullptr) return E_INVALIDARG;
  const VyrIDOMNode_var node = FindNode(path, 1);
  if (!node) return E_UNEXPECTED;
  TraceLine(transientStandardTrace, "%sStyles are:\n");
  for (const VyrIDOMNode_var& child : ChildrenOf(*node)) {
    if (NodeNameOf(*child).View() != "std:node") continue;
    VyrUnicodeString name = AttributeOf(*child, "name");
    TraceLine(transientStandardTrace, "%s\t'%s'\n",
              VyrShownText(name.View(), kMostShownInTrace).c_str());
    if (!name.IsEmpty()) names->push_back(std::move(name));
  }
  return S_OK;
}

HRESULT VyrDifTransientStandard::GetStylePath(char** first, char** second, char** standardName) {
  const TracedOperation traced = Traced("VyrDifTransientStandard::GetStylePath");
  if (!kTransientStandardUnit.CheckPointer(first) || !kTransientStandardUnit.CheckPointer(second) ||
      !kTransientStandardUnit.CheckPointer(standardName)) {
    return E_INVALIDARG;
  }
  *first = nullptr;
  *second = nullptr;
  *standardName = name_.NewNarrowCopy();
  return S_OK;
}

HRESULT VyrDifTransientStandard::MakeStyle(const VyrUnicodeString& name,
                                           const VyrUnicodeString& type, VyrIDftStyle_var& style) {
  auto standard = VyrQuery<VyrIDrwStandard>(AsUnknown());
  const VyrVar<VyrDifDftStyle> made(new VyrDifDftStyle);
  if (VyrFailed(made->Initialize(standard, name, type))) return E_FAIL;
  style = made;
  return S_OK;
}

HRESULT VyrDifTransientStandard::GetStyle(const unsigned short* name, const unsigned short* type,
                                          VyrIDftStyle** style) {
  const TracedOperation traced = Traced("VyrDifTransientStandard::GetStyle");
  const VyrUnicodeString styleName(name);
  const VyrUnicodeString objectType(type);
  if (style == nullptr || *style != nullptr || styleName.IsEmpty() || objectType.IsEmpty()) {
    return E_INVALIDARG;
  }
  VyrIDftStyle_var made;
  if (VyrFailed(MakeStyle(styleName, objectType, made))) return E_UNEXPECTED;
  *style = made.Detach();
  return S_OK;
}

HRESULT VyrDifTransientStandard::GetAvailableStyles(const unsigned short* type,
                                                    VyrIUnknownList** list,
                                                    const unsigned short* /*extra*/) {
  const TracedOperation traced = Traced("VyrDifTransientStandard::GetAvailableStyles");
  if (list == nullptr) return E_INVALIDARG;
  VyrIUnknownList_var styles = VyrMakeUnknownList();
  const HRESULT result = FillAvailableStyles(type, styles.Get());
  if (result == S_OK) *list = styles.Detach();
  return result;
}

HRESULT VyrDifTransientStandard::FillAvailableStyles(const VyrUnicodeString& type,
                                                     VyrIUnknownList* list) {
  TracedOperation traced = Traced("VyrDifTransientStandard::FillAvailableStyles");
  unsigned int next = 0;
  if (!kTransientStandardUnit.CheckPointer(list)) return E_INVALIDARG;
  traced.KeepObject();
  const auto keptList = VyrIUnknownList_var::Share(list);
  if (!kTransientStandardUnit.Check(VyrSucceeded(list->Count(&next)))) return E_UNEXPECTED;
  for (const char* const each : kStyleTypes | std::views::reverse) {
    if (!type.IsEmpty() && type.View() != each) continue;
    VyrListValVyrUnicodeString names;
    if (VyrFailed(GetStylesNames(each, &names))) continue;
    for (const VyrUnicodeString& name : names) {
      VyrIDftStyle_var style;
      if (VyrFailed(MakeStyle(name, each, style))) continue;
      if (VyrSucceeded(list->Add(next, style.Get()))) ++next;
    }
  }
  return S_OK;
}

HRESULT VyrDifTransientStandard::GetCurrentStyle(const unsigned short* type, unsigned short** name,
                                                 const unsigned short* /*extra*/) {
  const TracedOperation traced = Traced("VyrDifTransientStandard::GetCurrentStyle");
  const VyrUnicodeString objectType(type);
  if (name == nullptr || *name != nullptr || objectType.IsEmpty()) return E_INVALIDARG;
  VyrUnicodeString current;
  const HRESULT result = FindCurrentStyle(objectType, current);
  if (result == S_OK) *name = current.NewUtf16Copy();
  return result;
}

HRESULT VyrDifTransientStandard::FindCurrentStyle(const VyrUnicodeString& type,
                                                  VyrUnicodeString& name) {
  const TracedOperation traced = Traced("VyrDifTransientStandard::FindCurrentStyle");
  const VyrUnicodeString* const stored = currentStyles_.Find(type);
  if (stored == nullptr) {
    name = kDefaultStyle;
    return S_OK;
  }
  if (!kTransientStandardUnit.Check(!stored->IsEmpty(), "the current style has no name")) {
    return E_UNEXPECTED;
  }
  name = *stored;
  return S_OK;
}

HRESULT VyrDifTransientStandard::SetCurrentStyle(const unsigned short* type,
                                                 const unsigned short* name,
                                                 const unsigned short* /*extra*/) {
  const TracedOperation traced = Traced("VyrDifTransientStandard::SetCurrentStyle");
  const VyrUnicodeString objectType(type);
  const VyrUnicodeString styleName(name);
  if (objectType.IsEmpty() || styleName.IsEmpty()) return E_INVALIDARG;
  return StoreCurrentStyle(objectType, styleName);
}

HRESULT VyrDifTransientStandard::StoreCurrentStyle(const VyrUnicodeString& type,
                                                   const VyrUnicodeString& name) {
  const TracedOperation traced = Traced("VyrDifTransientStandard::StoreCurrentStyle");
  return currentStyles_.Set(type, name) ? S_OK : E_UNEXPECTED;
}
