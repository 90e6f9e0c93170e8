#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "Arguments.h"
#include "DatedBack.h"
#include "DefinedLiterals.h"
#include "FileProblem.h"
#include "Format.h"
#include "ItemLines.h"
#include "PathSearch.h"
#include "Reports.h"
#include "SheetProblems.h"
#include "Standard.h"
#include "StandardFiles.h"
#include "StandardItems.h"
#include "Subcommands.h"
#include "UpgradeInputs.h"
#include "VyrAnnStandardServices.h"
#include "VyrDftStdPersistence.h"

namespace {

struct Options {
  std::vector<std::string> files;
  bool json = false;
};

/// What is wrong with a standard that could be read.
struct Findings {
  FileProblems content;    ///< enumerations and version
  FileProblems structure;  ///< what the application needs of every standard

  bool AreNone() const { return content.AreNone() && structure.AreNone(); }
};

/// What the checks look at.
struct Subject {
  const InputFile& file;
  Standard& standard;
  const StandardItems items{standard.document};
  const ItemLines lines{file, items};
};

/// The literal of `value` and its enumeration, as the application looks for them.
bool IsDefined(const VyrAnnStandardXMLNode& enumerations, const VyrAnnStandardXMLValue& value) {
  const std::string path =
      std::string(value.GetValueName().View()) + "." + std::string(value.GetValue().View());
  return VyrAnnStandardXMLValue_var(enumerations.GetValueWithPath(path)).Get() != nullptr;
}

std::string UndefinedText(const Subject& subject, const StandardPlace& place,
                          DefinedLiterals& defined) {
  const VyrAnnStandardXMLValue& value = *subject.items.ValueAt(place);
  const WrittenLiteral literal = {std::string(value.GetValueName().View()),
                                  std::string(value.GetValue().View()), true};
  const std::string objection = defined.ObjectionTo(literal);
  return subject.items.PathOf(place) + ": " +
         (objection.empty() ? Quoted(literal.literal) + " is no literal that can be found in " +
                                  Quoted(literal.enumeration) + "; its name would hold no dot"
                            : objection);
}

/// Where literals of the standard stand that no enumeration has, and their lines, in this order.
std::vector<std::pair<int, StandardPlace>> UndefinedLiterals(const Subject& subject) {
  const StandardItems& items = subject.items;
  const VyrAnnStandardXMLNode& enumerations = *items[StandardItems::kEnum].node;
  std::vector<std::pair<int, StandardPlace>> undefined;
  std::vector<bool> isOfRoot(items.Count(), false);
  for (StandardItems::Index item = StandardItems::kRoot; item < items.Count(); ++item) {
    isOfRoot[item] = item == StandardItems::kRoot || isOfRoot[items[item].parent];
    const auto& values = items[item].node->GetValues();
    for (std::uint32_t i = 0; isOfRoot[item] && i < values.size(); ++i) {
      if (values[i]->GetType() != VyrAnnStandardXMLValue::ValueEnum) continue;
      if (IsDefined(enumerations, *values[i])) continue;
      const StandardPlace place = {item, i};
      undefined.emplace_back(subject.lines.LineOf(place), place);
    }
  }
  std::stable_sort(undefined.begin(), undefined.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  return undefined;
}

FileProblems LiteralProblems(const Subject& subject) {
  FileProblems problems;
  DefinedLiterals defined(subject.standard.document);
  for (const auto& [line, place] : UndefinedLiterals(subject)) {
    const bool isTold = problems.HasRoom();
    problems.Add({line, isTold ? UndefinedText(subject, place, defined) : std::string()});
  }
  return problems;
}

int LineOf(const Subject& subject, const char* path) {
  const auto place = FindPlace(subject.items, path);
  return place ? subject.lines.LineOf(*place) : 0;
}

FileProblems ContentProblems(const Subject& subject) {
  FileProblems problems = LiteralProblems(subject);
  if (subject.standard.version < 0) {
    problems.AddAnyway(
        {LineOf(subject, "Root.Version"), VersionProblem(subject.standard.document)});
  }
  if (const auto newer = FindNewerContent(subject.standard)) {
    problems.AddAnyway({LineOf(subject, newer->node.CString()), DatedBackText(*newer)});
  }
  if (const auto lost = subject.lines.FirstEstranged()) {
    const std::string others =
        lost->count > 1 ? " and " + std::to_string(lost->count - 1) + " more" : "";
    problems.AddAnyway({lost->line, "the element " + Quoted(lost->name) + others +
                                        " is passed over, since it is not in the namespace of "
                                        "standards; it would have the prefix of the others"});
  }
  // What is passed over may well be the cause of what is missing further down.
  problems.SortTold();
  return problems;
}

bool HasReadableFormats(VyrAnnStandardServices& services) {
  VyrDrwStdSheetFormat* formats = nullptr;
  int count = 0;
  const HRESULT result = services.GetAvailableSheetFormats(&formats, count);
  const std::unique_ptr<VyrDrwStdSheetFormat[]> owner(formats);
  return VyrSucceeded(result);
}

/// For a standard without other problems.
FileProblems StructureProblems(const InputFile& file, int version) {
  const ReportRecorder recorder;
  auto services = VyrAnnStandardServices::OpenFile(file.Path());
  const bool listsFormats = version >= VyrDftStdPersistence::GetVersionFromRelease(14);
  const bool hasFormats = !listsFormats || HasReadableFormats(*services);
  const bool hasStyles = services->CheckXMLStructure() == S_OK;
  if (hasFormats && hasStyles) return {};
  services.reset();
  Standard standard = ReadStandard(file);
  const Subject subject{file, standard};
  FileProblems problems;
  if (!hasFormats) problems.Add(FormatProblems(subject.items, subject.lines));
  if (!hasStyles) problems.Add(StyleProblems(subject.items, subject.lines));
  return problems;
}

/// The version of a standard and what is wrong with it. Of the documents that this takes one is in
/// memory at a time.
std::pair<int, Findings> FindingsOf(const InputFile& file) {
  int version = 0;
  Findings findings;
  {
    Standard standard = ReadStandard(file);
    version = standard.version;
    findings.content = ContentProblems(Subject{file, standard});
  }
  if (findings.AreNone()) findings.structure = StructureProblems(file, version);
  return {version, std::move(findings)};
}

class Checker {
 public:
  Checker(Session& session, bool json) : session_(session), json_(json) {}

  ExitStatus CheckFile(const std::string& argument) {
    try {
      const InputFile input(FileOrStandard(argument).file);
      const auto [version, findings] = FindingsOf(input);
      Report(input.Name(), version, findings);
      return findings.AreNone() ? kDone : kNegativeAnswer;
    } catch (const Failure& failure) {
      Findings findings;
      findings.content.Add({failure.line, failure.text});
      if (json_) AddJson(argument, false, -1, findings);
      throw;
    }
  }

  void End() {
    if (json_) session_.Print(JsonText(list_));
  }

 private:
  using Paint = Session::Paint;

  void Report(const std::string& file, int version, const Findings& findings) {
    if (json_) return AddJson(file, true, version, findings);
    if (findings.AreNone()) {
      PrintLine(file, Paint::Good, "valid", ", version " + std::to_string(version));
    }
    Tell(file, findings.content, "content");
    Tell(file, findings.structure, "structure");
  }

  void Tell(const std::string& file, const FileProblems& problems, const char* kind) {
    if (problems.AreNone()) return;
    PrintLine(file, Paint::Bad, "not valid",
              ": " + Counted(static_cast<long>(problems.Count()), "problem") + " of " + kind);
    problems.ComplainOf(file, session_);
  }

  void AddJson(const std::string& file, bool isReadable, int version, const Findings& findings) {
    Json problems = Json::array();
    Json lines = Json::array();
    for (const auto* found : {&findings.content, &findings.structure}) {
      for (const FileProblem& problem : found->Told()) {
        problems.push_back(problem.text);
        lines.push_back(problem.line > 0 ? Json(problem.line) : Json());
      }
    }
    list_.push_back({{"file", file},
                     {"readable", isReadable},
                     {"valid", findings.AreNone()},
                     {"version", version < 0 ? Json() : Json(version)},
                     {"problems", problems},
                     {"lines", lines}});
    const std::size_t more = findings.content.More() + findings.structure.More();
    if (more > 0) list_.back()["more"] = more;
  }

  void PrintLine(const std::string& file, Paint paint, const char* verdict,
                 const std::string& rest) {
    session_.Print(Printable(file) + ": " + session_.Painted(paint, verdict) + Printable(rest) +
                   "\n");
  }

  Session& session_;
  bool json_;
  Json list_ = Json::array();
};

ExitStatus CheckFiles(const Options& options, Session& session) {
  Checker checker(session, options.json);
  const ExitStatus status = ForEachStandard(
      session, options.files, [&](const std::string& file) { return checker.CheckFile(file); });
  checker.End();
  return status;
}

}  // namespace

Action Check::Register(Arguments& command) {
  auto options = std::make_shared<Options>();
  command.AddFiles(options->files);
  command.AddJson(options->json);
  command.AddExamples(
      {"holstd check ISO.xml", "holstd check --json *.xml"},
      "A standard is valid when its enumeration values are defined, its version can be told "
      "and,\nfrom version 60 on, its sheet styles and sheet formats can be used.");
  return [options](Session& session) { return CheckFiles(*options, session); };
}
