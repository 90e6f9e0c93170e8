#pragma once

#include <array>
#include <span>

#include "VyrDftStdPersistence.h"
#include "VyrDiagnostics.h"

// The releases and the format versions that they wrote. The gaps are part of the contract with
// stored documents: there was no release 19, and 21 and 210 are two releases.

inline constexpr int kCurrentVersion = 220;

struct ReleaseVersion {
  int first;
  int last;
  int version;
};

inline constexpr std::array<ReleaseVersion, 23> kReleaseVersions = {{
    {1, 8, 0},
    {9, 9, 1},
    {10, 10, 2},
    {11, 11, 30},
    {12, 12, 40},
    {13, 13, 50},
    {14, 14, 60},
    {15, 15, 70},
    {16, 16, 80},
    {17, 17, 90},
    {18, 18, 100},
    {20, 20, 110},
    {21, 21, 120},
    {210, 210, 130},
    {211, 212, 140},
    {213, 213, 150},
    {214, 214, 160},
    {215, 215, 170},
    {216, 216, 180},
    {417, 418, 190},
    {419, 419, 200},
    {420, 420, 210},
    {421, 421, kCurrentVersion},
}};

/// Versions that a document may carry explicitly.
inline constexpr std::array<int, 12> kExplicitVersions = {110, 120, 130, 140, 150, 160,
                                                          170, 180, 190, 200, 210, 220};

/// Checks the table of explicit versions itself and reports to `unit` each one that no release
/// can have written, and the current version when it is missing.
void CheckExplicitVersions(std::span<const int> versions, const VyrSourceUnit& unit);

struct ReferenceNode {
  int release;
  const char* path;
  VyrDftStdPersistence::NodeStatus status;
};

/// What first appeared, or disappeared, with a release.
inline constexpr std::array<ReferenceNode, 9> kReferenceNodes = {{
    {10, "Annotation", VyrDftStdPersistence::NodeAdded},
    {11, "Styles", VyrDftStdPersistence::NodeAdded},
    {12, "Dimension.CurvilinearLengthSymbol", VyrDftStdPersistence::NodeAdded},
    {13, "General.DefaultToleranceFormat", VyrDftStdPersistence::NodeRemoved},
    {14, "Styles.DimensionsSystem", VyrDftStdPersistence::NodeAdded},
    {15, "ViewsSet", VyrDftStdPersistence::NodeAdded},
    {16, "Annotation.Roughness.ExtensionLine.GapToSurf", VyrDftStdPersistence::NodeAdded},
    {17, "EngineeringSymbols", VyrDftStdPersistence::NodeAdded},
    {18, "Annotation.BlankBackground", VyrDftStdPersistence::NodeAdded},
}};
