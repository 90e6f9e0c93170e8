#include <array>
#include <cmath>
#include <utility>

#include "VyrDifTransientStandard.h"
#include "VyrShownText.h"

// The types of values, and the thickness table.

namespace {

struct ValueTypeName {
  std::string_view element;
  VyrDftStandardValueType type;
};

constexpr std::array<ValueTypeName, 5> kValueTypes = {{
    {"std:intval", VyrDftIntValue},
    {"std:floatval", VyrDftFloatValue},
    {"std:strval", VyrDftStringValue},
    {"std:enumval", VyrDftEnumValue},
    {"std:typeval", VyrDftCompoundValue},
}};

VyrDftStandardValueType TypeOf(std::string_view element) {
  for (const ValueTypeName& row : kValueTypes) {
    if (row.element == element) return row.type;
  }
  return VyrDftUnknownValue;
}

/// The name that all nodes share; nodes that cannot tell theirs are passed over. False when two
/// names differ.
bool FindCommonName(const StandardNodes& nodes, VyrUnicodeString& common) {
  bool isCommon = true;
  TraceLine(transientStandardTrace, "%sTypes are:\n");
  for (const VyrIDOMNode_var& node : nodes) {
    VyrUnicodeString name = NodeNameOf(*node);
    if (name.IsEmpty()) continue;
    TraceLine(transientStandardTrace, "%s\t'%s'\n",
              VyrShownText(name.View(), kMostShownInTrace).c_str());
    if (common.IsEmpty())
      common = std::move(name);
    else if (!(name == common))
      isCommon = false;
  }
  return isCommon;
}

/// No row of the table is looked at whose thickness is as far away as this from what is asked for.
constexpr double kFarAway = static_cast<double>(1e25F);

}  // namespace

HRESULT VyrDifTransientStandard::GetValueType(const char* path, VyrDftStandardValueType*) {
  const TracedOperation traced = Traced("VyrDifTransientStandard::GetValueType");
  // This form has never answered, and callers of it count on sizing their arrays themselves.
  return GetValueType(path, nullptr, nullptr);
}

HRESULT VyrDifTransientStandard::GetValueType(const char* path, VyrDftStandardValueType* type,
                                              int* count) {
  TracedOperation traced = Traced("VyrDifTransientStandard::GetValueType");
  if (!kTransientStandardUnit.CheckPointer(type)) return E_INVALIDARG;
  if (count != nullptr) *count = 0;
  if (path == nullptr) return E_INVALIDARG;
  traced.KeepObject();
  const VyrIDOMNode_var node = FindNode(path, 1);
  if (!node) {
    TraceLine(transientStandardTrace, "%sNo matching node found!\n");
    return E_FAIL;
  }
  const StandardNodes children = ChildrenOf(*node);
  VyrUnicodeString name;
  if (!FindCommonName(children, name)) {
    kTransientStandardUnit.Raise("All Nodes have not the same type");
    return E_UNEXPECTED;
  }
  *type = TypeOf(name.View());
  if (*type == VyrDftUnknownValue) {
    kTransientStandardUnit.Raise("Unknown standard value type!");
    return E_UNEXPECTED;
  }
  if (count != nullptr) *count = static_cast<int>(children.size());
  return S_OK;
}

HRESULT VyrDifTransientStandard::GetLineThicknessIndex(double thicknessMm, int* index) {
  TracedOperation traced = Traced("VyrDifTransientStandard::GetLineThicknessIndex");
  if (!(thicknessMm >= 0) || index == nullptr) return E_INVALIDARG;
  if (!thicknesses_) traced.KeepObject();
  std::vector<double> read;
  if (!thicknesses_ && ReadThicknesses(read)) thicknesses_ = std::move(read);
  const std::vector<double>& thicknesses = thicknesses_ ? *thicknesses_ : read;
  *index = 0;
  double best = kFarAway;
  for (std::size_t i = 0; i < thicknesses.size(); ++i) {
    const double distance = std::abs(thicknesses[i] - thicknessMm);
    if (distance >= best) continue;
    best = distance;
    *index = static_cast<int>(i) + 1;
  }
  return S_OK;
}

/// Reads the table up to the first row that cannot be read. True when that row lies past the last
/// one; a row that is wrong, or a search that failed, is to be reported each time.
bool VyrDifTransientStandard::ReadThicknesses(std::vector<double>& thicknesses) {
  constexpr const char* path = "LineThickness.mm";
  for (int row = 1;; ++row) {
    double thickness = 0;
    if (GetValue(path, row, thickness) != S_OK) break;
    thicknesses.push_back(thickness);
  }
  const MatchedNodes rows = FindNodes(path);
  return rows != nullptr && rows->size() == thicknesses.size();
}
