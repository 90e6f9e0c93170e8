#pragma once

#include <vector>

#include "HolStandardInfraExport.h"
#include "VyrDrwStdSheetStyle.h"

/// An ordered list of sheet styles. Positions are 1-based.
///
/// A position outside the list is reported, and answered with a style of defaults that belongs to
/// no list; what is written into that one is lost. The list owns copies of its styles. Used from
/// one thread at a time.
class HOLSTANDARDINFRA_EXPORT VyrListValVyrDrwStdSheetStyle {
 public:
  /// What becomes of the memory of a list that is emptied.
  enum MemoryHandling : int {
    FreeMemory = 0,  ///< it is given back
    KeepMemory = 1,  ///< it is kept, for a list that is about to be filled again
  };

  /// An empty list.
  VyrListValVyrDrwStdSheetStyle() = default;
  /// An empty list with room for `capacity` styles; a capacity below 1 means nothing.
  explicit VyrListValVyrDrwStdSheetStyle(int capacity);

  /// Number of styles.
  int Size() const { return static_cast<int>(styles_.size()); }
  /// @{
  /// The style at a position, borrowed until the list gains or loses a style.
  VyrDrwStdSheetStyle& operator[](int position);
  const VyrDrwStdSheetStyle& operator[](int position) const;
  /// @}
  /// Adds a copy of a style at the end.
  void Append(const VyrDrwStdSheetStyle& style) { styles_.push_back(style); }
  /// Empties the list.
  void RemoveAll(MemoryHandling handling = FreeMemory);

  /// Equal when the sizes match and, in order, the styles are equal, which is to say their names.
  friend bool operator==(const VyrListValVyrDrwStdSheetStyle& a,
                         const VyrListValVyrDrwStdSheetStyle& b) = default;

 private:
  bool Has(int position) const;

  std::vector<VyrDrwStdSheetStyle> styles_;
};
