#include "Standard.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <vector>

#include "Failure.h"
#include "Format.h"
#include "StandardFiles.h"
#include "VyrDftStdPersistence.h"
#include "VyrDrwParseStandard.h"

namespace {

const char* const kVersionPath = "Root.Version";

/// The version that a document says it has when this tool is too old for it.
std::optional<std::string> NewerVersion(VyrAnnStandardXMLParser& document) {
  const VyrUnicodeString held = document.GetValueWithPath(kVersionPath);
  std::string_view text = held.View();
  text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
  if (text.starts_with('+')) text.remove_prefix(1);
  int version = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), version);
  const bool isTooLarge = error == std::errc::result_out_of_range && !text.starts_with('-');
  const bool isNewer = error == std::errc() && version > VyrDrwParseStandard::GetCurrentVersion();
  if (!isTooLarge && !isNewer) return std::nullopt;
  return std::string(text.data(), end);
}

void RefuseNewer(const std::string& file, VyrAnnStandardXMLParser& document) {
  const std::optional<std::string> version = NewerVersion(document);
  if (!version) return;
  throw Failure{
      kNewerFile, file, 0,
      "the standard has the format version " + *version + "; this tool knows versions up to " +
          std::to_string(VyrDrwParseStandard::GetCurrentVersion()) + ", so take a newer one"};
}

/// The parent standard, by the rule of the converter, which only reads files.
std::string ParentOf(VyrAnnStandardXMLParser& document) {
  const VyrUnicodeString name = document.GetValueWithPath("Root.Dimension.ParentStandard");
  const VyrUnicodeString datumMode = document.GetValueWithPath("Root.Dimension.TXTDatumMode");
  const bool isAsme = name.View() == "ANSI" && datumMode.View() == "1";
  return isAsme ? "ASME" : std::string(name.View());
}

/// What to do with a text of the old generation, which begins with a word; empty for other files.
std::string ForOldText(const std::string& path) {
  std::ifstream file(path);
  const int first = file.get();
  const bool isLetter = (first >= 'A' && first <= 'Z') || (first >= 'a' && first <= 'z');
  return isLetter ? "; if it is a text of the old generation, 'holstd convert' makes one of it"
                  : "";
}

}  // namespace

Standard ReadStandard(const InputFile& input) {
  const std::string& file = input.Name();
  Standard standard;
  standard.file = file;
  const int result = standard.document.DecodeXML(input.Path(), 1);
  // A newer format may have elements that this one refuses: the version tells more than they do.
  RefuseNewer(file, standard.document);
  if (result != 0) {
    const VyrProblem problem = standard.document.GetProblem();
    const std::string text =
        problem.IsEmpty() ? "is no XML standard" : std::string(problem.text.View());
    throw Failure{kInvalidInput, file, problem.line, text + ForOldText(input.Path())};
  }
  standard.parent = ParentOf(standard.document);
  standard.version = standard.document.GetVersion();
  return standard;
}

Standard ReadStandard(const std::string& file) {
  return ReadStandard(InputFile(FileOrStandard(file).file));
}

std::string VersionProblem(VyrAnnStandardXMLParser& document) {
  std::vector<std::string> known;
  for (int version = 0; version <= VyrDftStdPersistence::GetCurrentVersion(); ++version) {
    if (VyrDftStdPersistence::CheckExplicitVersionNumberIsValid(version) != 0) {
      known.push_back(std::to_string(version));
    }
  }
  const VyrUnicodeString held = document.GetValueWithPath(kVersionPath);
  return std::string("the format version cannot be told: ") + kVersionPath + " holds " +
         (held.IsEmpty() ? "nothing readable" : Quoted(held.View())) +
         "; it would hold one int among " + Joined(known);
}

bool IsSameFile(const std::string& a, const std::string& b) {
  std::error_code error;
  return std::filesystem::equivalent(a, b, error) && !error;
}
