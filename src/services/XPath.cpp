#include "XPath.h"

XPath::XPath(const StdPath& path) : path_(_BuildFromStdPath(path)) {}

VyrUnicodeString XPath::_BuildFromStdPath(const StdPath& path) {
  VyrUnicodeString expression = "std:node";
  // The thickness table alone is taken as a child of the root: styles have fields of that name.
  if (path.GetLength() == 2 && path[1] == "LineThickness" && path[2].IsEmpty()) {
    expression.Append("/std:*[@name='LineThickness']");
    return expression;
  }
  const int last = static_cast<int>(path.GetLength());
  for (int i = 1; i < last; ++i) {
    // A quote inside a name is not escaped, as callers of older releases count on: such a name is
    // read as a part of the expression.
    expression.Append("//std:*[@name='");
    expression.Append(path[i]);
    expression.Append("']");
  }
  return expression;
}
