#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <memory>

#include "Arguments.h"
#include "Format.h"
#include "Standard.h"
#include "Subcommands.h"
#include "VyrDrwParseStandard.h"
#include "VyrFiles.h"

namespace {

struct Options {
  std::string text;
  std::string output;
};

/// Standard input as a file, which is what the converter reads.
class InputFile {
 public:
  InputFile() {
    const std::string content = ReadStandardInput();
    path_ = (std::filesystem::temp_directory_path() / "holstd-XXXXXX").string();
    const int file = ::mkstemp(path_.data());
    if (file >= 0) ::close(file);
    const std::string problem = file < 0 ? "cannot be made" : VyrSaveFile(path_, content);
    if (!problem.empty()) throw Failure{kNotWritten, path_, 0, problem};
  }
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;
  ~InputFile() { ::unlink(path_.c_str()); }

  const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

ExitStatus ConvertFile(const Options& options, Session& session) {
  if (options.text != "-" && IsSameFile(options.text, options.output)) {
    throw Failure{kUndecided, options.output, 0,
                  "is the text itself, which the conversion would destroy; give another file "
                  "after -o"};
  }
  std::unique_ptr<InputFile> input;
  if (options.text == "-") input = std::make_unique<InputFile>();
  VyrDrwParseStandard converter(input ? input->Path() : options.text);
  if (VyrFailed(converter.DecodeText())) {
    const VyrProblem& problem = converter.GetProblem();
    throw Failure{kInvalidInput, options.text, problem.line, std::string(problem.text.View())};
  }
  VyrDrwParseStandardUpgradeOptions upgrade;
  if (VyrFailed(converter.EncodeToFile(options.output.c_str(), -1, upgrade))) {
    const VyrUnicodeString& problem = converter.GetProblem().text;
    throw Failure{kNotWritten, options.output, 0,
                  problem.IsEmpty() ? "cannot be written" : std::string(problem.View())};
  }
  session.Say(options.output + ": written, parent standard " +
              std::string(converter.GetParentStandard().View()));
  return kDone;
}

}  // namespace

Action Convert::Register(CLI::App& command) {
  auto options = std::make_shared<Options>();
  TakesPath(command.add_option("TEXTFILE", options->text, "Text, - for standard input")
                ->required()
                ->type_name(""));
  AddOutput(command, options->output)->required();
  AddExamples(command, {"holstd convert standards/legacy/ISO.txt -o ISO.xml",
                        "holstd convert - -o ISO.xml < ISO.txt"});
  return [options](Session& session) { return ConvertFile(*options, session); };
}
