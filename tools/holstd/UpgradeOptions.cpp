#include "UpgradeOptions.h"

#include "Failure.h"
#include "Reports.h"
#include "VyrAnnStandardXMLParser.h"

VyrDrwParseStandardUpgradeOptions UpgradeOptions::ForLibrary() const {
  VyrDrwParseStandardUpgradeOptions options;
  options.OOTBStandard = isShipped ? 1 : 0;
  return options;
}

void AddUpgradeOptions(Arguments& command, UpgradeOptions& options) {
  const int current = VyrDrwParseStandard::GetCurrentVersion();
  command
      .AddOption("--to", options.target, "VERSION",
                 "Format version to stop at; default " + std::to_string(current))
      .Within(1, current);
  command.AddFlag("--shipped", options.isShipped,
                  "Treat as a shipped standard: old shipped values become the new ones");
}

VyrUnicodeString TextOf(VyrDrwParseStandard& converter, const std::string& file) {
  VyrUnicodeString text;
  const ReportRecorder recorder;
  converter.GetDocument().SaveInString(text);
  const VyrProblem problem = converter.GetDocument().GetProblem();
  if (problem.IsEmpty()) return text;
  throw Failure{kNotWritten, file, 0, std::string(problem.text.View())};
}
