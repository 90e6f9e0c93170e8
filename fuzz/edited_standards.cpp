// Shipped standards in their full size with edits anywhere in the file: the parser works piece by
// piece, and what it does at the end of a piece no small file shows. The first line of the input is
// the name of the standard, each other line an edit: the place, how many bytes go there, and the
// text that comes instead, as in "70000 0 ]]>".

#include <charconv>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

#include "FuzzTarget.h"
#include "RoundTrip.h"

namespace {

std::string ShippedStandard(const std::string& name) {
  std::ifstream file(HOL_STANDARDS "/" + name + ".xml", std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// The standard of that name; that of any other name is ISO.
const std::string& StandardOf(std::string_view name) {
  static const std::map<std::string, std::string, std::less<>> standards = {
      {"ISO", ShippedStandard("ISO")},
      {"JIS", ShippedStandard("JIS")},
      {"ANSI-ASME", ShippedStandard("ANSI-ASME")},
  };
  const auto found = standards.find(name);
  const std::string& standard = found == standards.end() ? standards.at("ISO") : found->second;
  Require(!standard.empty(), "the shipped standards are there");
  return standard;
}

/// Cuts a number and the blank after it off `line`; 0 when there is none.
std::size_t CutNumber(std::string_view& line) {
  std::size_t number = 0;
  const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), number);
  line.remove_prefix(static_cast<std::size_t>(end - line.data()));
  if (line.starts_with(' ')) line.remove_prefix(1);
  return error == std::errc() ? number : 0;
}

/// Places beyond the end are counted from the begin again.
void Apply(std::string_view edit, std::string& text) {
  const std::size_t place = CutNumber(edit) % (text.size() + 1);
  const std::size_t size = CutNumber(edit);
  text.replace(place, size, edit);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  SilenceDiagnostics();
  std::string_view edits = InputText(data, size);
  std::string text = StandardOf(CutLine(edits));
  while (!edits.empty()) Apply(CutLine(edits), text);
  RequireReadOrRefused(text);
  return 0;
}
