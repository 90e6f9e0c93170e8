#include <algorithm>
#include <memory>

#include "Arguments.h"
#include "InPlace.h"
#include "InputFile.h"
#include "Reports.h"
#include "Standard.h"
#include "Subcommands.h"
#include "UpgradeOptions.h"
#include "VyrDrwParseStandard.h"

namespace {

struct Options {
  std::string text;
  std::string output;
  UpgradeOptions upgrade;
  InPlaceOptions inPlace;
};

/// Reads the text; says so when the library had to guess between ANSI and ASME.
void Decode(VyrDrwParseStandard& converter, const std::string& file, const Session& session) {
  const ReportRecorder recorder;
  if (VyrFailed(converter.DecodeText())) {
    const VyrProblem& problem = converter.GetProblem();
    throw Failure{kInvalidInput, file, problem.line, std::string(problem.text.View())};
  }
  const auto isGuess = [](const std::string& report) {
    return report.starts_with("Invalid TXTDatumMode value!");
  };
  if (std::any_of(recorder.failedChecks.begin(), recorder.failedChecks.end(), isGuess)) {
    session.Warn(file, "TXTDatumMode is neither 1 (ASME) nor 2 (ANSI); taken as ANSI");
  }
}

ExitStatus ConvertFile(const Options& options, Session& session) {
  if (options.text != "-" && IsSameFile(options.text, options.output)) {
    throw Failure{kUndecided, options.output, 0,
                  "is the text itself, which the conversion would destroy; give another file "
                  "after -o"};
  }
  const InputFile input(options.text);
  VyrDrwParseStandard converter(input.Path());
  Decode(converter, options.text, session);
  VyrDrwParseStandardUpgradeOptions upgrade = options.upgrade.ForLibrary();
  if (VyrFailed(converter.Upgrade(options.upgrade.target, upgrade))) {
    const VyrUnicodeString& problem = converter.GetProblem().text;
    throw Failure{kInvalidInput, options.text, 0,
                  problem.IsEmpty() ? "cannot be converted" : std::string(problem.View())};
  }
  const VyrFileChange change =
      WriteResult(options.output, TextOf(converter, options.text), options.inPlace);
  session.Say(TalkOf(options.output, change,
                     "parent standard " + std::string(converter.GetParentStandard().View())));
  return kDone;
}

}  // namespace

Action Convert::Register(Arguments& command) {
  auto options = std::make_shared<Options>();
  command.AddWord("TEXTFILE", options->text, "Text, - for standard input").Required().TakesPath();
  command.AddOutput(options->output).Required();
  AddNoBackup(command, options->inPlace);
  AddUpgradeOptions(command, options->upgrade);
  command.AddExamples({"holstd convert standards/legacy/ISO.txt -o ISO.xml",
                       "holstd convert - -o ISO.xml < ISO.txt"},
                      kBackupNote);
  return [options](Session& session) { return ConvertFile(*options, session); };
}
