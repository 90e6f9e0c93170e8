#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "VyrDftStandardServices.h"
#include "VyrDftStandardServicesUnit.h"

// Sheet formats of an open standard.

namespace {

struct Orientation {
  VyrFormatOrientationsType value;
  const char* name;
};

/// In the order in which the names are listed, which is not that of the values.
constexpr std::array<Orientation, 4> kOrientations = {{
    {PortraitByDefault, "PortraitByDefault"},
    {LandscapeByDefault, "LandscapeByDefault"},
    {PortraitOnly, "PortraitOnly"},
    {LandscapeOnly, "LandscapeOnly"},
}};

}  // namespace

HRESULT VyrDftStandardServices::GetEnumNames(VyrListValVyrUnicodeString& names) {
  names.clear();
  for (const Orientation& orientation : kOrientations) names.emplace_back(orientation.name);
  return S_OK;
}

HRESULT VyrDftStandardServices::GetEnumFromName(const VyrUnicodeString& name,
                                                VyrFormatOrientationsType& orientation) {
  for (const Orientation& known : kOrientations) {
    if (name.View() != known.name) continue;
    orientation = known.value;
    return S_OK;
  }
  return E_FAIL;
}

HRESULT VyrDftStandardServices::GetNameFromEnum(VyrFormatOrientationsType orientation,
                                                VyrUnicodeString& name) {
  for (const Orientation& known : kOrientations) {
    if (orientation != known.value) continue;
    name = known.name;
    return S_OK;
  }
  return E_FAIL;
}

HRESULT VyrDftStandardServices::GetFormatData(VyrIDftStandard& standard, int index,
                                              VyrDrwStdSheetFormat& format) {
  // What a query reports may make the host let go of the standard before the next one.
  const auto kept = VyrIDftStandard_var::Share(&standard);
  VyrDrwStdSheetFormat read;
  VyrUnicodeString word;
  HRESULT result = standard.GetValue("SheetFormat.Name", index, read.name);
  if (VyrSucceeded(result)) result = standard.GetValue("SheetFormat.Width", index, read.width);
  if (VyrSucceeded(result)) result = standard.GetValue("SheetFormat.Height", index, read.height);
  if (VyrSucceeded(result)) {
    result = standard.GetValue("SheetFormat.FormatOrientationType", index, word);
  }
  VyrFormatOrientationsType orientation = LandscapeByDefault;
  if (VyrSucceeded(result)) result = GetEnumFromName(word, orientation);
  if (VyrFailed(result)) return result;
  read.orientation = orientation;
  format = std::move(read);
  return S_OK;
}

HRESULT VyrDftStandardServices::GetSheetFormats(VyrIDftStandard* standard,
                                                VyrDrwStdSheetFormat** formats, int& count) {
  if (!kDftStandardServicesUnit.CheckPointer(standard) ||
      !kDftStandardServicesUnit.CheckPointer(formats) ||
      !kDftStandardServicesUnit.Check(*formats == nullptr, "formats are already there")) {
    return E_INVALIDARG;
  }
  const auto kept = VyrIDftStandard_var::Share(standard);
  VyrDftStandardValueType type = VyrDftUnknownValue;
  int found = 0;
  const HRESULT result = standard->GetValueType("SheetFormat", &type, &found);
  if (VyrFailed(result)) return result;
  if (!kDftStandardServicesUnit.Check(found >= 0, "negative number of formats")) {
    return E_UNEXPECTED;
  }
  // Grown as formats are read: the number comes from the standard, which may be a host's.
  std::vector<VyrDrwStdSheetFormat> read;
  for (int i = 0; i < found; ++i) {
    if (VyrSucceeded(GetFormatData(*standard, i + 1, read.emplace_back()))) continue;
    kDftStandardServicesUnit.Raise("Bad imbedded standard structure");
    return E_FAIL;
  }
  *formats = new VyrDrwStdSheetFormat[read.size()];
  std::move(read.begin(), read.end(), *formats);
  count = found;
  return S_OK;
}
