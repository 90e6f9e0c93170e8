#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>

#include "Arguments.h"
#include "Format.h"
#include "MemoryShortage.h"
#include "OpenStandard.h"
#include "Standard.h"
#include "StandardFiles.h"
#include "Subcommands.h"
#include "TextTable.h"
#include "VyrEnvironment.h"
#include "VyrStdServices.h"

namespace {

struct Options {
  bool json = false;
};

/// A standard that the host's folders hold.
struct Entry {
  std::string file;
  std::string parent;   ///< empty: the standard does not say
  int version = -1;     ///< -1: it cannot be told
  std::string problem;  ///< why it cannot be read
};

/// Also tells of folders that cannot be searched.
ExitStatus CheckFolders(const Session& session) {
  ExitStatus worst = kDone;
  for (const std::string& folder : VyrStdServices::GetFolders()) {
    std::vector<std::string> entries;
    errno = 0;
    if (VyrListDirectory(folder, entries) || errno == ENOENT) continue;
    worst = kInvalidInput;
    session.Complain(
        {worst, folder, 0, std::string("cannot be searched: ") + std::strerror(errno)});
  }
  return worst;
}

ExitStatus ReadEntry(Entry& entry, const Session& session) {
  try {
    const Standard standard = ReadStandard(entry.file);
    entry.parent = standard.parent;
    entry.version = standard.version;
    return kDone;
  } catch (const Failure& problem) {
    const Failure failure = AsTold(problem);
    entry.problem = failure.text;
    return session.Refuse(failure);
  }
}

Json AsJson(const std::vector<Entry>& entries) {
  Json list = Json::array();
  for (const Entry& entry : entries) {
    list.push_back({{"name", StandardName(entry.file)},
                    {"parentStandard", entry.parent.empty() ? Json() : Json(entry.parent)},
                    {"version", entry.version < 0 ? Json() : Json(entry.version)},
                    {"file", entry.file},
                    {"readable", entry.problem.empty()},
                    {"problem", entry.problem.empty() ? Json() : Json(entry.problem)}});
  }
  return list;
}

std::string AsText(const std::vector<Entry>& entries) {
  TextTable table({"NAME", "PARENT", "VERSION", "FILE"});
  for (const Entry& entry : entries) {
    const std::string version = !entry.problem.empty() ? "not readable"
                                : entry.version < 0    ? ""
                                                       : std::to_string(entry.version);
    table.Add({StandardName(entry.file), entry.parent, version, entry.file});
  }
  return table.Text();
}

ExitStatus PrintStandards(const Options& options, Session& session) {
  ExitStatus worst = CheckFolders(session);
  std::vector<Entry> entries;
  for (const std::string& file : FindStandardFiles()) {
    Entry& entry = entries.emplace_back();
    entry.file = file;
    worst = std::max(worst, ReadEntry(entry, session));
  }
  if (entries.empty()) {
    throw Failure{std::max(worst, kNegativeAnswer), "", 0,
                  "there are no standards in the folders " + Joined(VyrStdServices::GetFolders()) +
                      "; VYR_STANDARD_PATH would name folders that hold some"};
  }
  session.Print(options.json ? JsonText(AsJson(entries)) : AsText(entries));
  return worst;
}

}  // namespace

Action Standards::Register(Arguments& command) {
  auto options = std::make_shared<Options>();
  command.AddJson(options->json);
  command.AddExamples(
      {"holstd standards --json", "VYR_STANDARD_PATH=/site/standards holstd standards"},
      "The folders are those of VYR_STANDARD_PATH, separated by ':', then that of the "
      "shipped\nstandards. Of two standards of one name the first found counts, and is "
      "listed alone.");
  return [options](Session& session) { return PrintStandards(*options, session); };
}
