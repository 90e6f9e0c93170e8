#pragma once

#include "HolStandardInfraExport.h"
#include "VyrListValVyrUnicodeString.h"
#include "VyrUnicodeString.h"

/// A dotted parameter path ("Dimension.ParentStandard") as its components.
///
/// The list always ends with one component more, an empty one, which `XPath` counts on: the path
/// above has the length 3. Two separators in a row leave an empty component between them; one at
/// the very end adds none.
class HOLSTANDARDINFRA_EXPORT StdPath {
 public:
  explicit StdPath(VyrUnicodeView path);
  StdPath(const StdPath&) = default;
  StdPath& operator=(const StdPath&) = default;
  virtual ~StdPath() = default;

  /// Number of components, the empty last one included.
  virtual unsigned int GetLength() const;
  /// Component at a 1-based place; empty outside the list.
  virtual VyrUnicodeString operator[](int i) const;

 private:
  VyrListValVyrUnicodeString components_;
};
