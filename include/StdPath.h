#pragma once

#include "HolStandardInfraExport.h"
#include "VyrListValVyrUnicodeString.h"
#include "VyrUnicodeString.h"

/// A dotted parameter path ("Dimension.ParentStandard") as its components.
///
/// The list always ends with one component more, an empty one, which `XPath` counts on: the path
/// above has the length 3. Two separators in a row leave an empty component between them; one at
/// the very end adds none. A value without state of its own beside the list: threads may share one.
class HOLSTANDARDINFRA_EXPORT StdPath {
 public:
  /// Cuts `path` at every "."; an empty path has the empty last component alone. Nothing fails.
  explicit StdPath(VyrUnicodeView path);
  /// @{
  /// Copies the components.
  StdPath(const StdPath&) = default;
  StdPath& operator=(const StdPath&) = default;
  /// @}
  virtual ~StdPath() = default;

  /// Number of components, the empty last one included: 1 or more.
  virtual unsigned int GetLength() const;
  /// Component at a 1-based place; empty outside the list.
  virtual VyrUnicodeString operator[](int i) const;

 private:
  VyrListValVyrUnicodeString components_;
};
