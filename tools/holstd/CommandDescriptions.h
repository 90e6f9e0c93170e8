#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

/// An argument of a command, as the manual and the completion tell it.
struct ArgumentDescription {
  std::vector<std::string> names;  ///< "-o", "--output"; none for a word at a place of its own
  std::string value;               ///< what the help calls the value or the word; empty for a flag
  std::string text;
  bool isRequired = false;
  bool isRepeated = false;
  std::vector<std::string> excludes;  ///< names of what it does not go with
};

struct CommandDescription {
  std::string name;
  std::string summary;
  std::vector<ArgumentDescription> words;
  std::vector<ArgumentDescription> options;
  std::string notes;  ///< what follows the options in the help
};

/// The whole command line: what it says of itself, first that of the tool, then its subcommands in
/// the order of the help. Hidden ones are left out.
std::vector<CommandDescription> DescribeCommands(const CLI::App& tool);
