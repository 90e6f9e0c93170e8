#pragma once

/// A column of a bill of material.
struct VyrDrwParseStandardBomProperty {
  const char* name;
  const char* width;  // in millimetres, the text of a float
  const char* index;  // its place from 1, the text of an int
};
