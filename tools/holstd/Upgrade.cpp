#include <unistd.h>

#include <algorithm>
#include <exception>
#include <filesystem>
#include <memory>
#include <new>
#include <optional>
#include <thread>
#include <utility>

#include "Arguments.h"
#include "Format.h"
#include "MemoryShortage.h"
#include "ProgressBar.h"
#include "Signals.h"
#include "Subcommands.h"
#include "TextTable.h"
#include "UpgradeFile.h"
#include "UpgradeInputs.h"
#include "Workers.h"

namespace {

struct Options {
  std::vector<std::string> files;
  std::string output;
  std::string folder;
  int jobs = std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
  UpgradeManner manner;
};

void CheckUsage(const Options& options) {
  const auto refuse = [](const char* text) { throw Failure{kUsage, "", 0, text}; };
  const bool isInPlace = options.manner.inPlace.isWanted;
  const int targets =
      (options.output.empty() ? 0 : 1) + (options.folder.empty() ? 0 : 1) + (isInPlace ? 1 : 0);
  if (targets > 1 || (targets == 0 && !options.manner.isDryRun)) {
    refuse(
        "upgrade writes to -o FILE, -d FOLDER or --in-place, one of the three; see holstd "
        "upgrade --help");
  }
  if (!options.output.empty() && NamesMany(options.files)) {
    refuse("several standards cannot go into one file; give -d FOLDER or --in-place");
  }
  const auto inputs = std::count(options.files.begin(), options.files.end(), "-");
  if (inputs > 1) refuse("standard input can be read once only; give '-' once");
  if (inputs > 0 && !options.manner.isDryRun && options.output.empty()) {
    refuse("standard input has no name to be saved under; give -o FILE");
  }
}

/// Where the result goes; empty for a dry run.
std::string TargetOf(const Options& options, const std::string& file) {
  if (options.manner.isDryRun) return {};
  if (options.manner.inPlace.isWanted) return file;
  if (!options.output.empty()) return options.output;
  return TargetIn(options.folder, file);
}

/// A standard as it comes back from the process that upgraded it.
std::string Packed(const Upgraded& upgraded) {
  return std::to_string(upgraded.status) + ' ' + JsonLine(upgraded.report);
}

Upgraded Unpacked(const std::string& answer) {
  return {static_cast<ExitStatus>(answer.front() - '0'), Json::parse(answer.substr(2))};
}

/// The answer of a process that has no memory for another one: so short that it needs none.
constexpr const char* kNoMemory = "3";

Failure Death(const UpgradeInput& input, const JobEnd& end) {
  return {kInvalidInput, input.file, 0,
          "internal error: the process that upgraded it died (" + end.cause + "); " +
              (input.target.empty() ? "nothing was written"
                                    : Quoted(input.target) + " is as it was, or written whole")};
}

struct Batch {
  std::vector<Upgraded> all;  ///< in the order of the inputs
  std::optional<Interrupted> interruption;
};

/// Upgrades several at a time, in processes of their own.
Batch UpgradeMany(const std::vector<UpgradeInput>& inputs, const Options& options,
                  const SignalsWait& signals, Session& session) {
  Batch batch;
  for (const UpgradeInput& input : inputs) batch.all.push_back(NotBegun(input.file));
  ProgressBar bar(session, inputs.size());
  std::size_t taken = 0;
  const auto upgrade = [&](std::size_t i) -> JobAnswer {
    try {
      Upgraded upgraded = UpgradeFile(inputs[i], options.manner, session);
      session.Flush();
      return {Packed(upgraded), std::move(upgraded.untilTold)};
    } catch (const OutputLost&) {
      return {};  // nobody listens any more
    } catch (const std::bad_alloc&) {
      ComplainOfMemory();
      return {kNoMemory, nullptr};
    }
  };
  const auto take = [&](std::size_t i, const JobEnd& end) {
    if (!end.data.empty() || !end.talk.empty() || !end.isWhole) bar.Hide();
    static_cast<void>(WriteAll(STDERR_FILENO, end.talk));
    session.Print(end.data);
    session.Flush();
    batch.all[i] = end.answer == kNoMemory ? NotUpgradedForMemory(inputs[i].file)
                   : end.answer.empty()
                       ? NotUpgraded(inputs[i].file, Death(inputs[i], end), session)
                       : Unpacked(end.answer);
    bar.Show(++taken);
  };
  session.Flush();
  try {
    DoInProcesses(inputs.size(), options.jobs, signals, upgrade, take);
  } catch (const Interrupted& interruption) {
    batch.interruption = interruption;
  }
  return batch;
}

std::string Cell(const Json& report, const char* member) {
  const auto found = report.find(member);
  if (found == report.end()) return {};
  return found->is_string() ? found->get<std::string>() : found->dump();
}

/// What became of every standard, a line each.
std::string TableOf(const std::vector<Upgraded>& all) {
  TextTable table({"FILE", "FROM", "TO", "RESULT"});
  for (const Upgraded& each : all) {
    const std::string backup = Cell(each.report, "backup");
    table.Add(
        {Cell(each.report, "file"), Cell(each.report, "from"), Cell(each.report, "to"),
         Cell(each.report, "result") + (backup.empty() ? "" : "; what it held is in " + backup)});
  }
  return table.Text();
}

ExitStatus WorstOf(const std::vector<Upgraded>& all) {
  ExitStatus worst = kDone;
  for (const Upgraded& each : all) worst = std::max(worst, each.status);
  return worst;
}

/// How many came to which result.
std::string CountsOf(const std::vector<Upgraded>& all) {
  std::string text = Counted(static_cast<long>(all.size()), "standard") + ":";
  const char* separator = " ";
  for (const char* result : {"written", "unchanged", "pending", "current", "failed", "not begun"}) {
    const auto count = std::count_if(all.begin(), all.end(), [&](const Upgraded& each) {
      return Cell(each.report, "result") == result;
    });
    if (count == 0) continue;
    text += separator + std::to_string(count) + " " + result;
    separator = ", ";
  }
  return text;
}

/// What became of all, as the JSON report or as a table.
void PrintReport(std::vector<Upgraded>& all, bool json, Session& session) {
  if (!json) return session.Print(TableOf(all));
  Json report = Json::array();
  for (Upgraded& each : all) report.push_back(std::move(each.report));
  session.Print(JsonText(report));
}

/// Throws `Interrupted` once all is told.
ExitStatus UpgradeBatch(const std::vector<UpgradeInput>& inputs, const Options& options,
                        Session& session) {
  const SignalsWait signals;
  Batch batch = UpgradeMany(inputs, options, signals, session);
  const std::string counts = CountsOf(batch.all);
  const ExitStatus status = WorstOf(batch.all);
  std::exception_ptr lost;
  try {
    PrintReport(batch.all, options.manner.json, session);
    session.Flush();
  } catch (const OutputLost&) {
    // What interrupts a pipeline ends the reader of the report as well.
    lost = std::current_exception();
  }
  if (batch.interruption) {
    session.Say("interrupted; " + counts);
    throw *batch.interruption;
  }
  if (lost || !options.manner.json) session.Say(counts);
  if (lost) std::rethrow_exception(lost);
  return status;
}

ExitStatus UpgradeOne(const UpgradeInput& input, const Options& options, Session& session) {
  std::vector<Upgraded> all;
  all.push_back(UpgradeFile(input, options.manner, session));
  const ExitStatus status = all.front().status;
  if (options.manner.json) PrintReport(all, true, session);
  session.Flush();
  return status;
}

ExitStatus UpgradeFiles(Options& options, Session& session) {
  CheckUsage(options);
  options.manner.isBatch = NamesMany(options.files);
  ExitStatus worst = kDone;
  std::vector<UpgradeInput> inputs;
  for (const std::string& file : FilesOf(options.files, session, worst)) {
    inputs.push_back({file, TargetOf(options, file)});
  }
  RefuseSameTargets(inputs);
  if (!options.manner.isBatch) return UpgradeOne(inputs.front(), options, session);
  if (!inputs.empty()) return std::max(worst, UpgradeBatch(inputs, options, session));
  if (options.manner.json) session.Print(JsonText(Json::array()));
  return worst;
}

}  // namespace

Action Upgrade::Register(Arguments& command) {
  auto options = std::make_shared<Options>();
  UpgradeManner& manner = options->manner;
  command.AddFiles(options->files);
  command.AddOutput(options->output);
  command.AddOption("-d,--directory", options->folder, "FOLDER", "Folder for the results")
      .TakesPath();
  AddInPlace(command, manner.inPlace, "Replace each FILE by the result");
  AddUpgradeOptions(command, manner.chain);
  command.AddFlag("--dry-run", manner.isDryRun,
                  "Write nothing; print what each step would add, change, move and delete");
  constexpr int mostJobs = 256;
  command
      .AddOption("-j,--jobs", options->jobs, "N",
                 "How many standards to upgrade at a time; default: one a processor")
      .Within(1, mostJobs);
  command.AddJson(manner.json);
  command.AddExamples(
      {"holstd upgrade old.xml -o new.xml", "holstd upgrade sites -d upgraded",
       "holstd upgrade sites/*.xml --in-place --jobs 4", "holstd upgrade old.xml --dry-run",
       "holstd upgrade old.xml -o new.xml --to 150"},
      std::string("One of --output, --directory, --in-place and --dry-run is needed.\n"
                  "A folder stands for the files in it whose names end in .xml, not for\n"
                  "those in folders below. Of several standards one that fails stops no\n"
                  "other. Of several and of folders a table tells what became of each, or\n"
                  "with --json a report. That, and what a dry run prints, is data: -q does\n"
                  "not leave it out.\n"
                  "With --dry-run the status is 1 when there is something to do.\n\n") +
          kBackupNote);
  return [options](Session& session) { return UpgradeFiles(*options, session); };
}
