#include "SheetFormatReader.h"

#include <algorithm>

#include "NumberText.h"
#include "VyrAnnStandardServicesUnit.h"
#include "VyrDftStandardServices.h"

namespace {

// The fields of the compound type, which are taken by position whatever they are called.
enum Field { Name, Width, Height, FormatOrientationType, kFieldCount };

}  // namespace

SheetFormatReader::SheetFormatReader()
    : orientations_{{{LandscapeByDefault, "LandscapeByDefault"},
                     {PortraitByDefault, "PortraitByDefault"},
                     {LandscapeOnly, "LandscapeOnly"},
                     {PortraitOnly, "PortraitOnly"}}} {
  bool areKnown = true;
  for (auto& [code, word] : orientations_) {
    if (VyrFailed(VyrDftStandardServices::GetNameFromEnum(code, word))) areKnown = false;
  }
  if (!areKnown) kStandardServicesUnit.Raise("Reference orientations retrieving failed");
}

const SheetFormatReader::Orientation* SheetFormatReader::FindOrientation(
    std::string_view word) const {
  const auto found = std::find_if(
      orientations_.begin(), orientations_.end(),
      [word](const Orientation& orientation) { return orientation.word.View() == word; });
  return found == orientations_.end() ? nullptr : &*found;
}

bool SheetFormatReader::Read(const VyrAnnStandardXMLNode& node,
                             VyrDrwStdSheetFormat& format) const {
  const VyrAnnStandardXMLNode::Values& fields = node.GetValues();
  if (fields.size() != kFieldCount) return false;
  const auto width = ReadReal(fields[Width]->GetValue().View());
  const auto height = ReadReal(fields[Height]->GetValue().View());
  const Orientation* const orientation =
      FindOrientation(fields[FormatOrientationType]->GetValue().View());
  if (!width || !height || orientation == nullptr) {
    kStandardServicesUnit.Raise("Bad xml structure");
    return false;
  }
  format = {fields[Name]->GetValue(), *width, *height, orientation->code};
  return true;
}
