#include "VyrListValVyrDrwStdSheetStyle.h"

#include <algorithm>

#include "VyrDiagnostics.h"

namespace {

constexpr VyrSourceUnit kUnit("VyrListValVyrDrwStdSheetStyle");

/// Fresh for every caller that is refused, so that none sees what another wrote into it.
VyrDrwStdSheetStyle& NoStyle() {
  thread_local VyrDrwStdSheetStyle style;
  style = {};
  return style;
}

}  // namespace

VyrListValVyrDrwStdSheetStyle::VyrListValVyrDrwStdSheetStyle(int capacity) {
  // A hint only: an absurd one must not take the memory of the process.
  constexpr int most = 4096;
  if (capacity > 0) styles_.reserve(static_cast<std::size_t>(std::min(capacity, most)));
}

bool VyrListValVyrDrwStdSheetStyle::Has(int position) const {
  return kUnit.Check(position >= 1 && position <= Size(), "no sheet style at this position");
}

VyrDrwStdSheetStyle& VyrListValVyrDrwStdSheetStyle::operator[](int position) {
  return Has(position) ? styles_[static_cast<std::size_t>(position) - 1] : NoStyle();
}

const VyrDrwStdSheetStyle& VyrListValVyrDrwStdSheetStyle::operator[](int position) const {
  return Has(position) ? styles_[static_cast<std::size_t>(position) - 1] : NoStyle();
}

void VyrListValVyrDrwStdSheetStyle::RemoveAll(MemoryHandling handling) {
  styles_.clear();
  if (handling == FreeMemory) styles_.shrink_to_fit();
}
