#pragma once

#include <string>
#include <string_view>

#include "VyrDrwParseKeywordTable.h"
#include "VyrUnicodeString.h"

// Lines of a version-0 standard. A level is three blanks of indentation.

/// A line at a level.
void AddLine(VyrUnicodeString& text, int level, std::string_view line);
/// "<std:node name="...">" and its end.
void BeginNode(VyrUnicodeString& text, int level, std::string_view name);
void EndNode(VyrUnicodeString& text, int level);
/// "<std:typeval name="...">" and its end.
void BeginInstance(VyrUnicodeString& text, int level, std::string_view name);
void EndInstance(VyrUnicodeString& text, int level);
/// A value element with its text; without a name attribute when `name` is empty.
void AddValueLine(VyrUnicodeString& text, int level, VyrDrwParseKeyword::Type type,
                  std::string_view name, std::string_view value);
/// A node that wraps one value.
void AddWrappedValue(VyrUnicodeString& text, int level, VyrDrwParseKeyword::Type type,
                     std::string_view name, std::string_view value);
