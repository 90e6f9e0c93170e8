#include <fcntl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <exception>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "Failure.h"
#include "Format.h"
#include "MemoryShortage.h"
#include "Session.h"
#include "Signals.h"
#include "Subcommands.h"
#include "VyrDrwParseStandard.h"
#include "VyrUtf8.h"

namespace {

struct Row {
  const char* name;
  const char* summary;
  Action (*registerOn)(Arguments& command);
};

constexpr std::array<Row, 16> kSubcommands = {{
    {"convert", "Makes an XML standard of an old-generation text", &Convert::Register},
    {"upgrade", "Brings XML standards of any older version up to date", &Upgrade::Register},
    {"info", "Tells what standards are: parent, format version, counts", &Info::Register},
    {"get", "Prints the values at a path", &Get::Register},
    {"tree", "Prints what a standard holds, a line for each node or value", &Tree::Register},
    {"edit", "Changes a standard by path commands", &Edit::Register},
    {"restore", "Brings back what a result has replaced", &Restore::Register},
    {"diff", "Tells what two standards differ in", &Diff::Register},
    {"explain", "Tells all about what is at a path: type, default, place", &Explain::Register},
    {"sheets", "Prints the sheet formats and sheet styles of a standard", &Sheets::Register},
    {"styles", "Prints the styles of a standard by object type", &Styles::Register},
    {"check", "Checks that standards are valid", &Check::Register},
    {"symbols", "Prints the engineering symbols that texts may hold", &Symbols::Register},
    {"standards", "Prints the standards that there are", &Standards::Register},
    {"manual", "Writes the manual pages", &Manual::Register},
    {"complete", "Prints what may stand at a place of the command line", &Complete::Register},
}};

const char* const kFooter =
    "Exit status: 0 done, 1 a negative answer (not found, not valid), 2 usage, 3 unreadable or\n"
    "invalid input, 4 could not write, 5 a decision is needed, 6 the file is newer than this tool\n"
    "\n"
    "Examples:\n"
    "  holstd convert standards/legacy/ISO.txt -o ISO.xml\n"
    "  holstd upgrade old.xml -o new.xml\n"
    "  holstd get ISO.xml Dimension.ParentStandard\n"
    "  holstd sheets ISO.xml\n"
    "  holstd edit ISO.xml -o site.xml -c 'change Root.Dimension.DIMLTail:12.5'\n"
    "  holstd COMMAND --help";

void AddOptionsOfAllCommands(CLI::App& app, Session& session) {
  app.add_flag("-q,--quiet", session.isQuiet, "Say nothing but what went wrong");
  app.add_flag("-v,--verbose", session.isVerbose, "Say every step, and what the library reports");
  app.add_option("--trace", session.traces, "Show a trace channel of the library; may be repeated")
      ->type_name("NAME")
      ->allow_extra_args(false);
  app.add_option("--color", session.color, "Colours: auto (on a terminal), always or never")
      ->type_name("WHEN")
      ->check(CLI::IsMember({"auto", "always", "never"}));
  app.set_version_flag("--version", std::string("holstd " HOLSTD_VERSION ", standard format ") +
                                        std::to_string(VyrDrwParseStandard::GetCurrentVersion()));
}

void RefuseInvalidText(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    if (VyrFindInvalidUtf8(argv[i]) == std::string::npos) continue;
    throw Failure{kUsage, "", 0,
                  "argument " + std::to_string(i) + " is not UTF-8 text; arguments would be"};
  }
}

/// What is wrong with the command line, in one sentence.
std::string UsageProblem(const CLI::App& app, const CLI::ParseError& error) {
  const std::vector<std::string> rest = app.remaining();
  if (!app.get_subcommands().empty() || rest.empty()) return error.what();
  std::vector<std::string> names;
  const auto isShown = [](const CLI::App* command) { return !command->get_group().empty(); };
  for (const CLI::App* command : app.get_subcommands(isShown)) names.push_back(command->get_name());
  return Quoted(rest.front()) + " is no command; there are " + Joined(names);
}

/// How to see the help of the command that was named, if one was.
std::string HelpFor(const CLI::App& app) {
  const std::vector<CLI::App*> named = app.get_subcommands();
  return "holstd " + (named.empty() ? "" : named.front()->get_name() + " ") + "--help";
}

/// Reads the command line and runs the subcommand it names.
ExitStatus Run(int argc, char** argv, Session& session) {
  RefuseInvalidText(argc, argv);
  CLI::App app("Works with drafting standards.", "holstd");
  app.require_subcommand(1)->footer(kFooter);
  AddOptionsOfAllCommands(app, session);
  std::vector<std::pair<CLI::App*, Action>> actions;
  for (const Row& row : kSubcommands) {
    CLI::App* command = app.add_subcommand(row.name, row.summary)->fallthrough();
    Arguments arguments(*command);
    actions.emplace_back(command, row.registerOn(arguments));
  }
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    session.Print(app.help());
    return kDone;
  } catch (const CLI::CallForVersion& version) {
    session.Print(std::string(version.what()) + "\n");
    return kDone;
  } catch (const CLI::ParseError& error) {
    throw Failure{kUsage, "", 0, UsageProblem(app, error) + "; see " + HelpFor(app)};
  }
  session.Begin();
  for (const auto& [command, action] : actions) {
    if (!command->parsed()) continue;
    const ExitStatus status = action(session);
    session.RequireWholeAnswer();
    return status;
  }
  return kUsage;
}

/// Runs to the end or to the message that says why not.
ExitStatus RunAndComplain(int argc, char** argv, Session& session) {
  try {
    return Run(argc, argv, session);
  } catch (const Failure& failure) {
    return session.Refuse(failure);
  } catch (const std::bad_alloc&) {
    ComplainOfMemory();
    return kInvalidInput;
  } catch (const std::exception& exception) {
    return session.Refuse(
        {kInvalidInput, "", 0, std::string("internal error: ") + exception.what()});
  }
}

/// A descriptor of the standard three that is closed would be that of the next file opened, and
/// take what is written to it. The other way round, what is written to it or read of it fails.
void OccupyClosedStreams() {
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (::fcntl(descriptor, F_GETFD) >= 0) continue;
    static_cast<void>(::open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY));
  }
}

/// Whoever started the tool is to see what ended it.
void EndBy(int signal) {
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

}  // namespace

int main(int argc, char** argv) {
  OccupyClosedStreams();
  // A reader that goes away is heard of by the write that fails, so that whatever was begun is
  // ended in order. A limit on file sizes is told like a full disk.
  const auto pipeHandler = std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  WatchMemory();
  Session session;
  try {
    const ExitStatus status = RunAndComplain(argc, argv, session);
    session.Flush();
    return status;
  } catch (const Interrupted& interrupted) {
    EndBy(interrupted.signal);
    return kNotWritten;
  } catch (const OutputLost& lost) {
    // The reader has seen enough, as with any filter, unless somebody wants to be told instead.
    if (lost.error == EPIPE && pipeHandler != SIG_IGN) EndBy(SIGPIPE);
    return session.Refuse({kNotWritten, "standard output", 0,
                           std::string("cannot be written: ") + std::strerror(lost.error)});
  }
}
