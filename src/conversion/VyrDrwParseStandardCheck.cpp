#include <array>

#include "VyrDrwParseKeywordTable.h"
#include "VyrDrwParseParameter.h"
#include "VyrDrwParseStandard.h"
#include "VyrTrace.h"

namespace {

VyrTrace& Report() {
  static VyrTrace trace("VyrDftStandardOutput", "Parameters missing in a standard", 0, "STDERR",
                        1024);
  return trace;
}

// Made when the library loads, so that a host finds the channel by name before it is first used.
[[maybe_unused]] const VyrTrace& registeredReport = Report();

}  // namespace

void VyrDrwParseStandard::Check() {
  if (decoded_ == 0) Decode();
  std::array<bool, kKeywordCount> isPresent{};
  for (const auto& parameter : parameters_) {
    const int row = parameter == nullptr ? -1 : FindKeywordRow(parameter->GetName().View());
    if (row >= 0) isPresent[static_cast<std::size_t>(row)] = true;
  }
  int missing = 0;
  for (int row = kParentStandardRow; row <= kLastGeneralRow; ++row) {
    const VyrDrwParseKeyword& keyword = VyrDrwParseKeywordTable()[static_cast<std::size_t>(row)];
    if (isPresent[static_cast<std::size_t>(row)] || keyword.required == 0) continue;
    ++missing;
    Report().Print("%sError: Parameter %s not valuated in Standard file\n",
                   VyrTrace::Indentation().c_str(), keyword.keyword);
  }
  Report().Print("%sResult: %d missing parameters in standard file\n",
                 VyrTrace::Indentation().c_str(), missing);
}
