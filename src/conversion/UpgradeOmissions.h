#pragma once

#include <cstddef>
#include <vector>

#include "VyrDrwUpgradeOmission.h"

/// What an upgrade leaves undone, beside the failed checks that report it. Every failed check of a
/// step belongs to an omission; what nobody has noted becomes one itself at the step's end.
class UpgradeOmissions {
 public:
  using Omission = VyrDrwUpgradeOmission;
  /// Most that are kept. A standard may have as many styles as it likes.
  static constexpr std::size_t kMost = 100;

  void Clear();
  /// To be called before a step, and after it.
  void BeginStep();
  void EndStep();

  /// Notes an omission, which `reports` failed checks have told of.
  void Add(Omission omission, std::size_t reports = 1);

  const std::vector<Omission>& Get() const { return omissions_; }
  std::size_t GetCount() const { return count_; }

 private:
  std::vector<Omission> omissions_;
  std::size_t count_ = 0;
  std::size_t explained_ = 0;  ///< failed checks of this thread that are accounted for
};
