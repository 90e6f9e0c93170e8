#pragma once

#include "HolStandardInfraExport.h"
#include "StdPath.h"
#include "VyrUnicodeString.h"

/// The XPath expression that finds a parameter in the document of a standard: a chain of names,
/// each found at any depth below the one before. The prefix "std" stands for the namespace of
/// standard files. A value: threads may share one.
class HOLSTANDARDINFRA_EXPORT XPath {
 public:
  /// Builds the expression of `path`, "std:node" alone for an empty one. "LineThickness" alone
  /// means the thickness table, which is taken right below the root, since styles have fields of
  /// that name. A quote in a name is not escaped.
  explicit XPath(const StdPath& path);
  /// @{
  /// Copies the expression.
  XPath(const XPath&) = default;
  XPath& operator=(const XPath&) = default;
  /// @}
  virtual ~XPath() = default;

  /// The expression, such as "std:node//std:*[@name='Dimension']//std:*[@name='ParentStandard']".
  VyrUnicodeString Path() const { return path_; }

 private:
  static VyrUnicodeString _BuildFromStdPath(const StdPath& path);

  VyrUnicodeString path_;
};
