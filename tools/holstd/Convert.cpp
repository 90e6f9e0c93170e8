#include <memory>
#include <string>
#include <vector>

#include "Arguments.h"
#include "Format.h"
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

using Note = VyrDrwConversionNote;

/// Whether the file is a standard already, whatever it is called.
bool IsXMLStandard(const std::string& path) {
  const UnshownReports ignored;
  VyrDrwParseStandard standard(path);
  standard.Decode();
  return standard.GetProblem().IsEmpty();
}

/// A line for each fault of the text.
[[nodiscard]] ExitStatus Refuse(const VyrDrwParseStandard& converter, const InputFile& input,
                                const Session& session) {
  const std::vector<VyrProblem>& faults = converter.GetTextFaults();
  const auto complain = [&](const VyrProblem& problem) {
    session.Complain({kInvalidInput, input.Name(), problem.line, std::string(problem.text.View())});
  };
  if (!faults.empty() && IsXMLStandard(input.Path())) {
    session.Complain({kInvalidInput, input.Name(), 0,
                      "is an XML standard, and no text to be converted; holstd upgrade brings it "
                      "up to date"});
  } else if (faults.empty()) {
    complain(converter.GetProblem());
  } else {
    for (const VyrProblem& fault : faults) complain(fault);
    if (const std::size_t further = converter.GetNumOfTextFaults() - faults.size(); further != 0) {
      session.Complain(
          {kInvalidInput, input.Name(), 0,
           "has " + Counted(static_cast<long>(further), "further fault") + "; mend these first"});
    }
  }
  return kInvalidInput;
}

/// What the user has to know of a parameter that did not arrive.
std::string Described(const Note& note) {
  const std::string name(note.name.View());
  const std::string value = Quoted(note.value.View());
  switch (note.kind) {
    case Note::NameTaken:
      return "warning: " + name + " " + value +
             " is the name of one that every standard has, which is found instead of this one; "
             "give this one another name";
    case Note::DatumMode:
      return "warning: " + name + " " + value +
             " is neither '1' (ASME) nor '2' (ANSI); taken as ANSI";
    case Note::WithoutPlace:
      return name + " " + value + " is left out; the format has no place for it";
    default:
      return name + " " + value + " becomes " + Quoted(note.became.View()) +
             ", which the format sets itself; change it in the standard if it is to stay";
  }
}

/// Names and datum modes are told whatever is said: they make another standard of the text. What
/// the format does to parameters it does to every text.
void Tell(const VyrDrwParseStandard& converter, const std::string& file, const Session& session) {
  for (const Note& note : converter.GetConversionNotes()) {
    const bool isWarning = note.kind == Note::NameTaken || note.kind == Note::DatumMode;
    if (isWarning || !session.isQuiet) {
      session.Complain({kDone, file, note.line, Described(note)});
    }
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
  if (VyrFailed(converter.DecodeText())) return Refuse(converter, input, session);
  VyrDrwParseStandardUpgradeOptions upgrade = options.upgrade.ForLibrary();
  if (VyrFailed(converter.Upgrade(options.upgrade.target, upgrade))) {
    const VyrUnicodeString& problem = converter.GetProblem().text;
    throw Failure{kInvalidInput, options.text, 0,
                  problem.IsEmpty() ? "cannot be converted" : std::string(problem.View())};
  }
  const VyrFileChange change =
      WriteResult(options.output, TextOf(converter, options.text).View(), options.inPlace);
  Tell(converter, input.Name(), session);
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
