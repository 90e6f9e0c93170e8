#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>

#include "Arguments.h"
#include "DatedBack.h"
#include "Format.h"
#include "ItemLines.h"
#include "Objections.h"
#include "PathSearch.h"
#include "Reports.h"
#include "SheetProblems.h"
#include "Standard.h"
#include "StandardItems.h"
#include "Subcommands.h"
#include "VyrAnnStandardServices.h"
#include "VyrDftStdPersistence.h"

namespace {

struct Options {
  std::vector<std::string> files;
  bool json = false;
};

/// What is wrong with a standard that could be read.
struct Findings {
  std::vector<FileProblem> content;    ///< enumerations and version
  std::vector<FileProblem> structure;  ///< what the application needs of every standard

  bool AreNone() const { return content.empty() && structure.empty(); }
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

std::string UndefinedText(const Subject& subject, const StandardPlace& place) {
  const VyrAnnStandardXMLValue& value = *subject.items.ValueAt(place);
  const WrittenLiteral literal = {std::string(value.GetValueName().View()),
                                  std::string(value.GetValue().View()), true};
  const std::string objection = ObjectionToLiteral(subject.standard.document, literal);
  return subject.items.PathOf(place) + ": " +
         (objection.empty() ? Quoted(literal.literal) + " is no literal that can be found in " +
                                  Quoted(literal.enumeration) + "; its name would hold no dot"
                            : objection);
}

/// Literals of the standard that no enumeration has.
std::vector<FileProblem> LiteralProblems(const Subject& subject) {
  const StandardItems& items = subject.items;
  const VyrAnnStandardXMLNode& enumerations = *items[StandardItems::kEnum].node;
  std::vector<FileProblem> problems;
  std::vector<bool> isOfRoot(items.Count(), false);
  for (StandardItems::Index item = StandardItems::kRoot; item < items.Count(); ++item) {
    isOfRoot[item] = item == StandardItems::kRoot || isOfRoot[items[item].parent];
    const auto& values = items[item].node->GetValues();
    for (std::uint32_t i = 0; isOfRoot[item] && i < values.size(); ++i) {
      if (values[i]->GetType() != VyrAnnStandardXMLValue::ValueEnum) continue;
      if (IsDefined(enumerations, *values[i])) continue;
      const StandardPlace place = {item, i};
      problems.push_back({subject.lines.LineOf(place), UndefinedText(subject, place)});
    }
  }
  return problems;
}

int LineOf(const Subject& subject, const char* path) {
  const auto place = FindPlace(subject.items, path);
  return place ? subject.lines.LineOf(*place) : 0;
}

std::vector<FileProblem> ContentProblems(const Subject& subject) {
  std::vector<FileProblem> problems = LiteralProblems(subject);
  if (subject.standard.version < 0) {
    problems.push_back(
        {LineOf(subject, "Root.Version"), VersionProblem(subject.standard.document)});
  }
  if (const auto newer = FindNewerContent(subject.standard)) {
    problems.push_back({LineOf(subject, newer->node.CString()), DatedBackText(*newer)});
  }
  if (const auto lost = subject.lines.FirstEstranged()) {
    const std::string others =
        lost->count > 1 ? " and " + std::to_string(lost->count - 1) + " more" : "";
    problems.push_back({lost->line, "the element " + Quoted(lost->name) + others +
                                        " is passed over, since it is not in the namespace of "
                                        "standards; it would have the prefix of the others"});
  }
  // What is passed over may well be the cause of what is missing further down.
  std::stable_sort(problems.begin(), problems.end(),
                   [](const FileProblem& a, const FileProblem& b) { return a.line < b.line; });
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
std::vector<FileProblem> StructureProblems(const Subject& subject) {
  const ReportRecorder recorder;
  const auto services = VyrAnnStandardServices::OpenFile(subject.file.Path());
  std::vector<FileProblem> problems;
  const bool listsFormats =
      subject.standard.version >= VyrDftStdPersistence::GetVersionFromRelease(14);
  if (listsFormats && !HasReadableFormats(*services)) {
    problems = FormatProblems(subject.items, subject.lines);
  }
  if (services->CheckXMLStructure() != S_OK) {
    std::vector<FileProblem> more = StyleProblems(subject.items, subject.lines);
    std::move(more.begin(), more.end(), std::back_inserter(problems));
  }
  return problems;
}

class Checker {
 public:
  Checker(Session& session, bool json) : session_(session), json_(json) {}

  ExitStatus CheckFile(const std::string& file) {
    try {
      const InputFile input(file);
      Standard standard = ReadStandard(input);
      const Subject subject{input, standard};
      Findings findings{ContentProblems(subject), {}};
      if (findings.AreNone()) findings.structure = StructureProblems(subject);
      Report(file, standard.version, findings);
      return findings.AreNone() ? kDone : kNegativeAnswer;
    } catch (const Failure& failure) {
      if (json_) AddJson(file, false, -1, {{{failure.line, failure.text}}, {}});
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

  void Tell(const std::string& file, const std::vector<FileProblem>& problems, const char* kind) {
    if (problems.empty()) return;
    PrintLine(file, Paint::Bad, "not valid",
              ": " + Counted(static_cast<long>(problems.size()), "problem") + " of " + kind);
    for (const FileProblem& problem : problems) {
      session_.Complain({kNegativeAnswer, file, problem.line, problem.text});
    }
  }

  void AddJson(const std::string& file, bool isReadable, int version, const Findings& findings) {
    Json problems = Json::array();
    Json lines = Json::array();
    for (const auto* found : {&findings.content, &findings.structure}) {
      for (const FileProblem& problem : *found) {
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
  const ExitStatus status = ForEachFile(
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
