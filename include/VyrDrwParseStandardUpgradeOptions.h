#pragma once

#include <cstdint>

/// Options of an upgrade: one bit of a 32-bit word whose other bits belong to the host. A value
/// that the caller keeps; an upgrade only reads it.
struct VyrDrwParseStandardUpgradeOptions {
  /// Clears the bit. The host's bits are left to the host, who sets them before they mean anything.
  VyrDrwParseStandardUpgradeOptions()
      : OOTBStandard(0) {}  // NOLINT(cppcoreguidelines-pro-type-member-init)
  /// Copies the whole word.
  VyrDrwParseStandardUpgradeOptions(const VyrDrwParseStandardUpgradeOptions&) = default;
  /// Copies the whole word.
  VyrDrwParseStandardUpgradeOptions& operator=(const VyrDrwParseStandardUpgradeOptions&) = default;
  /// Takes over the bit alone; the host's bits stay.
  VyrDrwParseStandardUpgradeOptions& operator=(VyrDrwParseStandardUpgradeOptions&& other) noexcept {
    OOTBStandard = other.OOTBStandard;
    return *this;
  }
  ~VyrDrwParseStandardUpgradeOptions() = default;

  /// 1: the standard is one of the shipped ones, and the steps that look at it replace the old
  /// release's shipped values by the new release's. 0: they keep the standard's own values.
  std::uint32_t OOTBStandard : 1;
  std::uint32_t hostBits : 31;  ///< the host's; nothing here looks at them
};
