#include <memory>

#include "Arguments.h"
#include "Format.h"
#include "Reports.h"
#include "Standard.h"
#include "Subcommands.h"

namespace {

struct Options {
  std::vector<std::string> files;
  bool json = false;
};

/// What is wrong with a standard that could be read.
std::vector<std::string> ProblemsOf(Standard& standard) {
  ReportRecorder recorder;
  standard.document.Check();
  std::vector<std::string> problems = std::move(recorder.undefinedEnums);
  if (standard.version < 0) problems.push_back(VersionProblem(standard.document));
  return problems;
}

class Checker {
 public:
  Checker(Session& session, bool json) : session_(session), json_(json) {}

  ExitStatus CheckFile(const std::string& file) {
    try {
      Standard standard = ReadStandard(file);
      const std::vector<std::string> problems = ProblemsOf(standard);
      Report(file, true, standard.version, problems);
      return problems.empty() ? kDone : kNegativeAnswer;
    } catch (const Failure& failure) {
      Report(file, false, -1, {failure.text});
      throw;
    }
  }

  void End() {
    if (json_) session_.Print(JsonText(list_));
  }

 private:
  using Paint = Session::Paint;

  void Report(const std::string& file, bool isReadable, int version,
              const std::vector<std::string>& problems) {
    if (json_) {
      list_.push_back({{"file", file},
                       {"readable", isReadable},
                       {"valid", problems.empty()},
                       {"version", version < 0 ? Json() : Json(version)},
                       {"problems", problems}});
    } else if (problems.empty()) {
      PrintLine(file, Paint::Good, "valid", ", version " + std::to_string(version));
    } else if (isReadable) {
      for (const auto& problem : problems) PrintLine(file, Paint::Bad, "not valid", ": " + problem);
    }
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

Action Check::Register(CLI::App& command) {
  auto options = std::make_shared<Options>();
  AddFiles(command, options->files);
  AddJson(command, options->json);
  AddExamples(command, {"holstd check ISO.xml", "holstd check --json *.xml"});
  return [options](Session& session) { return CheckFiles(*options, session); };
}
