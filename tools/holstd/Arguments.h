#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "CommandDescriptions.h"

namespace CLI {
class Option;
}  // namespace CLI

/// An argument of a subcommand: a word at a place of its own, an option, or a flag.
class Argument {
 public:
  explicit Argument(CLI::Option* option) : option_(option) {}

  Argument& Required();
  /// It is the path of a file, taken as the operating system writes it.
  Argument& TakesPath();
  /// A whole number between the two, which the help says; a `most` as large as can be is no limit.
  Argument& Within(long least, long most);
  /// Not together with the other one.
  Argument& Excludes(const Argument& other);

  bool IsGiven() const;

 private:
  friend class Arguments;

  CLI::Option* option_;
};

/// The arguments of a subcommand, as its source declares them: what the command line, the help, the
/// manual pages and the completion are made of. The variables given here take the values when the
/// command line is read, and must live until then.
///
/// The library for command lines is large; it is seen by this class, by the table of subcommands
/// and by the manual alone.
class Arguments {
 public:
  explicit Arguments(CLI::App& command) : command_(command) {}

  /// FILE, an XML standard or the name of one.
  Argument AddFile(std::string& file);
  /// FILE..., the same and folders.
  Argument AddFiles(std::vector<std::string>& files);
  /// FILE... PATH: the last word is the path.
  void AddFilesAndPath(std::vector<std::string>& files, std::string& path,
                       const std::string& description);
  /// -o FILE
  Argument AddOutput(std::string& output);
  /// --json
  Argument AddJson(bool& json);

  /// A word at a place of its own. `name` is in capitals, as the help writes it.
  Argument AddWord(const char* name, std::string& word, const std::string& description);
  /// The same; nothing when it is not there.
  Argument AddWord(const char* name, std::optional<std::string>& word,
                   const std::string& description);
  /// The same, as often as it is there.
  Argument AddWords(const char* name, std::vector<std::string>& words,
                    const std::string& description);
  /// An option with a value, which the help calls `value`. `name` is "-x,--long" or "--long".
  Argument AddOption(const char* name, std::string& text, const char* value,
                     const std::string& description);
  Argument AddOption(const char* name, int& number, const char* value,
                     const std::string& description);
  Argument AddOption(const char* name, long& number, const char* value,
                     const std::string& description);
  /// One that may be given several times, with one value each.
  Argument AddOptions(const char* name, std::vector<std::string>& texts, const char* value,
                      const std::string& description);
  Argument AddFlag(const char* name, bool& flag, const std::string& description);

  /// Examples, a line each, and a note after the options of the help.
  void AddExamples(const std::vector<std::string>& lines, const std::string& note = {});

  /// The help does not list the subcommand: it is for scripts.
  void Hide();
  /// Tells of all commands of the tool, once all are declared.
  std::function<std::vector<CommandDescription>()> WholeTool() const;

 private:
  CLI::App& command_;
};
