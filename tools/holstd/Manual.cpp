#include <algorithm>
#include <array>
#include <memory>
#include <utility>

#include "CommandDescriptions.h"
#include "Format.h"
#include "Subcommands.h"
#include "VyrFiles.h"

// Manual pages, one of the tool and one of each subcommand, made of what the help is made of.

namespace {

struct Options {
  std::string folder;
};

/// Text as it stands in a page, where "-" is a hyphen unless it is marked, and a line that begins
/// with "." or "'" is a command.
std::string Escaped(const std::string& text) {
  std::string page;
  bool isLineBegin = true;
  for (const char c : text) {
    if (isLineBegin && (c == '.' || c == '\'')) page += "\\&";
    if (c == '-' || c == '\\') page += '\\';
    page += c == '\\' ? 'e' : c;
    isLineBegin = c == '\n';
  }
  return page;
}

std::string Bold(const std::string& text) {
  return "\\fB" + Escaped(text) + "\\fR";
}

std::string Italic(const std::string& text) {
  return "\\fI" + Escaped(text) + "\\fR";
}

/// What a value or a word is called, less the choice that the help adds.
std::string Called(const ArgumentDescription& argument) {
  return Italic(argument.value.substr(0, argument.value.find(':')));
}

/// "-o, --output FILE", or the name of a word.
std::string Heading(const ArgumentDescription& argument) {
  std::string heading;
  for (const std::string& name : argument.names) {
    heading += (heading.empty() ? "" : ", ") + Bold(name);
  }
  if (argument.value.empty()) return heading;
  return heading + (heading.empty() ? "" : " ") + Called(argument);
}

std::string Synopsis(const CommandDescription& command) {
  std::string line;
  for (const ArgumentDescription& word : command.words) {
    const std::string text = Called(word) + (word.isRepeated ? "..." : "");
    line += " " + (word.isRequired ? text : "[" + text + "]");
  }
  for (const ArgumentDescription& option : command.options) {
    if (option.isRequired) line += " " + Bold(option.names.front()) + " " + Called(option);
  }
  return line + " [" + Italic("OPTION") + "...]";
}

/// What else has to be given or left out, a sentence each.
std::string Conditions(const ArgumentDescription& argument) {
  std::string text;
  if (argument.isRequired && !argument.names.empty()) text += "It is always needed.\n";
  if (!argument.excludes.empty()) text += "Not together with " + Joined(argument.excludes) + ".\n";
  return Escaped(text);
}

void AddList(std::string& page, const char* title, const std::vector<ArgumentDescription>& list) {
  if (list.empty()) return;
  page += std::string(".SH ") + title + "\n";
  for (const ArgumentDescription& argument : list) {
    page +=
        ".TP\n" + Heading(argument) + "\n" + Escaped(argument.text) + ".\n" + Conditions(argument);
  }
}

/// The notes of the help: paragraphs that are laid out as they are.
void AddNotes(std::string& page, const std::string& notes) {
  page += ".SH NOTES\n.nf\n" + Escaped(notes) + (notes.ends_with('\n') ? "" : "\n") + ".fi\n";
}

/// What the tool heeds of the environment.
constexpr std::array<std::pair<const char*, const char*>, 4> kEnvironment = {{
    {"VYR_STANDARD_PATH",
     "Folders with standards, separated by ':', which are searched before that of the shipped "
     "standards. Of two standards of one name the first found counts."},
    {"NO_COLOR",
     "When it is set and not empty, there are no colours unless --color asks for them."},
    {"TERM", "On a terminal that it calls 'dumb' there are neither colours nor a progress bar."},
    {"TMPDIR",
     "The folder for a copy of what can be read once only, such as standard input; /tmp without."},
}};

void AddEnvironment(std::string& page) {
  page += ".SH ENVIRONMENT\n";
  for (const auto& [name, text] : kEnvironment) {
    page += std::string(".TP\n") + Bold(name) + "\n" + Escaped(text) + "\n";
  }
}

void AddSeeAlso(std::string& page, const std::vector<CommandDescription>& commands,
                const CommandDescription& self) {
  page += ".SH SEE ALSO\n";
  std::string line;
  for (const CommandDescription& command : commands) {
    if (&command == &self) continue;
    const bool isTool = &command == &commands.front();
    line +=
        (line.empty() ? "" : ",\n") + Bold(isTool ? "holstd" : "holstd-" + command.name) + "(1)";
  }
  page += line + "\n";
}

std::string Head(const std::string& name, const std::string& summary) {
  std::string title = name;
  std::transform(title.begin(), title.end(), title.begin(),
                 [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
  return ".TH " + Escaped(title) +
         " 1 \"\" \"holstd " HOLSTD_VERSION "\" \"Drafting standards\"\n" + ".SH NAME\n" +
         Escaped(name) + " \\- " + Escaped(summary) + "\n.SH SYNOPSIS\n";
}

std::string PageOfTool(const std::vector<CommandDescription>& commands) {
  const CommandDescription& tool = commands.front();
  std::string page = Head("holstd", tool.summary) + Bold("holstd") + " " + Italic("COMMAND") +
                     Synopsis(tool) + "\n.SH COMMANDS\n";
  for (std::size_t i = 1; i < commands.size(); ++i) {
    page += ".TP\n" + Bold(commands[i].name) + "\n" + Escaped(commands[i].summary) + ".\n";
  }
  AddList(page, "OPTIONS OF ALL COMMANDS", tool.options);
  AddEnvironment(page);
  AddNotes(page, tool.notes);
  AddSeeAlso(page, commands, tool);
  return page;
}

std::string PageOf(const CommandDescription& command,
                   const std::vector<CommandDescription>& commands) {
  std::string page = Head("holstd-" + command.name, command.summary) +
                     Bold("holstd " + command.name) + Synopsis(command) + "\n";
  AddList(page, "ARGUMENTS", command.words);
  AddList(page, "OPTIONS", command.options);
  AddNotes(page, command.notes);
  AddSeeAlso(page, commands, command);
  return page;
}

void Write(const std::string& folder, const std::string& name, const std::string& page) {
  const std::string path = folder + "/" + name + ".1";
  const std::string problem = VyrSaveFile(path, page);
  if (!problem.empty()) throw Failure{kNotWritten, path, 0, problem};
}

ExitStatus WritePages(const Options& options, const std::vector<CommandDescription>& commands) {
  Write(options.folder, "holstd", PageOfTool(commands));
  for (std::size_t i = 1; i < commands.size(); ++i) {
    Write(options.folder, "holstd-" + commands[i].name, PageOf(commands[i], commands));
  }
  return kDone;
}

}  // namespace

Action Manual::Register(Arguments& command) {
  auto options = std::make_shared<Options>();
  command.AddWord("FOLDER", options->folder, "Folder for the pages, which exists")
      .Required()
      .TakesPath();
  command.AddExamples({"holstd manual share/man/man1"});
  command.Hide();
  return [options, describe = command.WholeTool()](Session&) {
    return WritePages(*options, describe());
  };
}
