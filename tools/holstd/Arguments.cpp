#include "Arguments.h"

#include <CLI/CLI.hpp>
#include <limits>
#include <utility>

#include "VyrFiles.h"

namespace {

std::string CheckOutput(const std::string& output) {
  return output == "-" ? "the result is written to a file, not to standard output; name one" : "";
}

std::string MakeNative(std::string& path) {
  if (path.empty()) return "a file name cannot be empty";
  path = VyrNativePath(path);
  return {};
}

constexpr const char* kFilesText =
    "XML standards, folders of such, names as 'holstd standards' lists them, - for standard input";

template <class Value>
Argument Add(CLI::App& command, const char* name, Value& value, const char* type,
             const std::string& description) {
  return Argument(command.add_option(name, value, description)->type_name(type));
}

}  // namespace

Argument& Argument::Required() {
  option_->required();
  return *this;
}

Argument& Argument::TakesPath() {
  option_->transform(CLI::Validator(MakeNative, ""));
  return *this;
}

Argument& Argument::Within(long least, long most) {
  CLI::Range range(least, most);
  range.description("");  // it would stand in the help like a part of a program
  option_->check(range);
  const bool isOpen = most == std::numeric_limits<long>::max();
  option_->description(option_->get_description() + ", " +
                       (isOpen ? std::to_string(least) + " or more"
                               : "from " + std::to_string(least) + " to " + std::to_string(most)));
  return *this;
}

Argument& Argument::Excludes(const Argument& other) {
  option_->excludes(other.option_);
  return *this;
}

bool Argument::IsGiven() const {
  return option_->count() > 0;
}

Argument Arguments::AddFile(std::string& file) {
  return AddWord("FILE", file,
                 "XML standard, the name of one as 'holstd standards' lists it, or - for standard "
                 "input")
      .Required()
      .TakesPath();
}

Argument Arguments::AddFiles(std::vector<std::string>& files) {
  return AddWords("FILE", files, kFilesText).Required().TakesPath();
}

// The library gives all words to the first that takes many; the last is handed on from there,
// before the library looks whether the path is missing.
void Arguments::AddFilesAndPath(std::vector<std::string>& files, std::string& path,
                                const std::string& description) {
  const auto take = [&files, &command = command_](std::vector<std::string> words) {
    if (words.size() > 1) {
      command.get_option("PATH")->add_result(words.back());
      words.pop_back();
    }
    for (std::string& word : words) {
      const std::string problem = MakeNative(word);
      if (!problem.empty()) throw CLI::ValidationError("FILE", problem);
    }
    files = std::move(words);
  };
  const std::function<void(const std::vector<std::string>&)> taking = take;
  command_.add_option_function("FILE", taking, kFilesText)->type_name("")->required();
  AddWord("PATH", path, description).Required();
}

Argument Arguments::AddOutput(std::string& output) {
  Argument option = AddOption("-o,--output", output, "FILE", "File to write the result to");
  option.option_->check(CLI::Validator(CheckOutput, ""));
  return option.TakesPath();
}

Argument Arguments::AddJson(bool& json) {
  return AddFlag("--json", json, "Print JSON");
}

Argument Arguments::AddWord(const char* name, std::string& word, const std::string& description) {
  return Add(command_, name, word, "", description);
}

Argument Arguments::AddWord(const char* name, std::optional<std::string>& word,
                            const std::string& description) {
  return Add(command_, name, word, "", description);
}

Argument Arguments::AddWords(const char* name, std::vector<std::string>& words,
                             const std::string& description) {
  return Add(command_, name, words, "", description);
}

Argument Arguments::AddOption(const char* name, std::string& text, const char* value,
                              const std::string& description) {
  return Add(command_, name, text, value, description);
}

Argument Arguments::AddOption(const char* name, int& number, const char* value,
                              const std::string& description) {
  return Add(command_, name, number, value, description);
}

Argument Arguments::AddOption(const char* name, long& number, const char* value,
                              const std::string& description) {
  return Add(command_, name, number, value, description);
}

Argument Arguments::AddOptions(const char* name, std::vector<std::string>& texts, const char* value,
                               const std::string& description) {
  Argument options = Add(command_, name, texts, value, description);
  options.option_->allow_extra_args(false);
  return options;
}

Argument Arguments::AddFlag(const char* name, bool& flag, const std::string& description) {
  return Argument(command_.add_flag(name, flag, description));
}

void Arguments::AddExamples(const std::vector<std::string>& lines, const std::string& note) {
  std::string text = "Examples:\n";
  for (const std::string& line : lines) text += "  " + line + "\n";
  if (!note.empty()) text += "\n" + note + "\n";
  command_.footer(text + "\nOptions of all commands: holstd --help");
}

void Arguments::Hide() {
  command_.group("");
}

std::function<std::vector<CommandDescription>()> Arguments::WholeTool() const {
  return [tool = command_.get_parent()] { return DescribeCommands(*tool); };
}
