#include <string>

#include "VyrDrwParseStandard.h"

// Assembly of a text line by line.

namespace {

constexpr std::string_view kLineSeparator = "\n";

std::string Joined(const char* a, const char* b, const char* c, int newLine) {
  std::string line;
  for (const char* piece : {a, b, c}) line.append(VyrUnicodeView(piece));
  if (newLine != 0) line.append(kLineSeparator);
  return line;
}

}  // namespace

void VyrDrwParseStandard::AddOutputLine(VyrUnicodeString& text, const VyrUnicodeString& line,
                                        int newLine) {
  text.Append(line);
  if (newLine != 0) text.Append(kLineSeparator);
}

void VyrDrwParseStandard::AddOutputLine(VyrUnicodeString& text, const char* a, const char* b,
                                        const char* c, int newLine) {
  text.Append(Joined(a, b, c, newLine));
}

void VyrDrwParseStandard::AddOutputLine(VyrUnicodeString& text, const char* line, int newLine) {
  AddOutputLine(text, line, nullptr, nullptr, newLine);
}

// The first two forms take any position, the nearest end for one outside the text; callers that
// build a text backwards insert at 0 without asking for its length. Only the third refuses.

void VyrDrwParseStandard::InsertOutputLine(VyrUnicodeString& text, int position,
                                           const VyrUnicodeString& line, int newLine) {
  VyrUnicodeString inserted = line;
  if (newLine != 0) inserted.Append(kLineSeparator);
  if (!inserted.IsEmpty()) text.Insert(position, inserted);
}

void VyrDrwParseStandard::InsertOutputLine(VyrUnicodeString& text, int position, const char* a,
                                           const char* b, const char* c, int newLine) {
  text.Insert(position, Joined(a, b, c, newLine));
}

void VyrDrwParseStandard::InsertOutputLine(VyrUnicodeString& text, int position, const char* line,
                                           int newLine) {
  if (position < 0 || position > text.GetLength()) return;
  text.Insert(position, Joined(line, nullptr, nullptr, newLine));
}
