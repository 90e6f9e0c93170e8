#include "Arguments.h"

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

}  // namespace

CLI::Option* TakesPath(CLI::Option* option) {
  return option->transform(CLI::Validator(MakeNative, ""));
}

CLI::Option* AddFile(CLI::App& command, std::string& file) {
  return TakesPath(command.add_option("FILE", file, "XML standard, - for standard input")
                       ->required()
                       ->type_name(""));
}

CLI::Option* AddFiles(CLI::App& command, std::vector<std::string>& files) {
  return TakesPath(command.add_option("FILE", files, "XML standards, - for standard input")
                       ->required()
                       ->type_name(""));
}

CLI::Option* AddOutput(CLI::App& command, std::string& output) {
  return TakesPath(command.add_option("-o,--output", output, "File to write the result to")
                       ->type_name("FILE")
                       ->check(CLI::Validator(CheckOutput, "")));
}

CLI::Option* AddJson(CLI::App& command, bool& json) {
  return command.add_flag("--json", json, "Print JSON");
}

void AddExamples(CLI::App& command, const std::vector<std::string>& lines,
                 const std::string& note) {
  std::string text = "Examples:\n";
  for (const std::string& line : lines) text += "  " + line + "\n";
  if (!note.empty()) text += "\n" + note + "\n";
  command.footer(text + "\nOptions of all commands: holstd --help");
}
