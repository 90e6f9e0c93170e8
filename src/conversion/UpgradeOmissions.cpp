#include "UpgradeOmissions.h"

#include <utility>

#include "VyrReportCount.h"

void UpgradeOmissions::Clear() {
  omissions_.clear();
  count_ = 0;
}

void UpgradeOmissions::BeginStep() {
  explained_ = VyrReportCount();
}

void UpgradeOmissions::EndStep() {
  if (VyrReportCount() > explained_) Add({});
}

void UpgradeOmissions::Add(Omission omission, std::size_t reports) {
  explained_ += reports;
  if (!omissions_.empty() && omissions_.back() == omission) return;
  ++count_;
  if (omissions_.size() < kMost) omissions_.push_back(std::move(omission));
}
