#include <iterator>
#include <memory>
#include <utility>

#include "Arguments.h"
#include "Format.h"
#include "Reports.h"
#include "SheetProblems.h"
#include "Standard.h"
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

std::vector<FileProblem> ContentProblems(Standard& standard) {
  ReportRecorder recorder;
  standard.document.Check();
  std::vector<FileProblem> problems;
  for (std::string& text : recorder.undefinedEnums) problems.push_back({0, std::move(text)});
  if (standard.version < 0) problems.push_back({0, VersionProblem(standard.document)});
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
std::vector<FileProblem> StructureProblems(Standard& standard, const InputFile& file) {
  const ReportRecorder recorder;
  const auto services = VyrAnnStandardServices::OpenFile(file.Path());
  std::vector<FileProblem> problems;
  const bool listsFormats = standard.version >= VyrDftStdPersistence::GetVersionFromRelease(14);
  if (listsFormats && !HasReadableFormats(*services)) problems = FormatProblems(standard, file);
  if (services->CheckXMLStructure() != S_OK) {
    std::vector<FileProblem> more = StyleProblems(standard, file);
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
      Findings findings{ContentProblems(standard), {}};
      if (findings.AreNone()) findings.structure = StructureProblems(standard, input);
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
    for (const auto& problem : findings.content) {
      PrintLine(file, Paint::Bad, "not valid", ": " + problem.text);
    }
    if (findings.structure.empty()) return;
    PrintLine(
        file, Paint::Bad, "not valid",
        ": " + Counted(static_cast<long>(findings.structure.size()), "problem") + " of structure");
    for (const auto& problem : findings.structure) {
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
