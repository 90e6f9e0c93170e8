#pragma once

#include "HolStandardInfraExport.h"
#include "StdPath.h"
#include "VyrUnicodeString.h"

/// The XPath expression that finds a parameter in the document of a standard: a chain of names,
/// each found at any depth below the one before. The prefix "std" stands for the namespace of
/// standard files.
class HOLSTANDARDINFRA_EXPORT XPath {
 public:
  explicit XPath(const StdPath& path);
  XPath(const XPath&) = default;
  XPath& operator=(const XPath&) = default;
  virtual ~XPath() = default;

  VyrUnicodeString Path() const { return path_; }

 private:
  static VyrUnicodeString _BuildFromStdPath(const StdPath& path);

  VyrUnicodeString path_;
};
