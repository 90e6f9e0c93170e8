#include <memory>

#include "Arguments.h"
#include "Format.h"
#include "Standard.h"
#include "Subcommands.h"

namespace {

struct Options {
  std::string file;
  std::string path;
  bool json = false;
};

std::string NotFound(VyrAnnStandardXMLParser& document, const Options& options) {
  if (options.path.starts_with("Root.")) {
    return "there is no " + Quoted(options.path) + "; a path to get begins below Root, as in " +
           Quoted(options.path.substr(5));
  }
  return MissingName(document, "Root." + options.path);
}

VyrAnnStandardXMLValue_var FindValue(Standard& standard, const Options& options) {
  const std::string path = "Root." + options.path;
  const std::optional<Found> found = FindAt(standard.document, path);
  if (!found) throw Failure{kNegativeAnswer, options.file, 0, NotFound(standard.document, options)};
  if (found->value) return found->value;
  if (found->node->GetNumOfValue() > 0) return found->node->GetValues().front();
  throw Failure{kNegativeAnswer, options.file, 0,
                Quoted(options.path) + " has no value of its own but " +
                    Counted(found->node->GetNumOfNode(), "node") + "; name one of them, see " +
                    Quoted("holstd tree " + options.file + " " + options.path)};
}

ExitStatus PrintValue(const Options& options, Session& session) {
  Standard standard = ReadStandard(options.file);
  const VyrAnnStandardXMLValue_var value = FindValue(standard, options);
  if (!options.json) {
    session.Print(std::string(value->GetValue().View()) + "\n");
    return kDone;
  }
  Json object = {{"file", options.file}, {"path", options.path}};
  AddValueTo(object, *value);
  session.Print(object.dump(2) + "\n");
  return kDone;
}

}  // namespace

Action Get::Register(CLI::App& command) {
  auto options = std::make_shared<Options>();
  AddFile(command, options->file);
  command.add_option("PATH", options->path, "Names joined by dots, below the document element")
      ->required()
      ->type_name("");
  AddJson(command, options->json);
  AddExamples(command, {"holstd get ISO.xml Dimension.ParentStandard",
                        "holstd get ISO.xml ToleranceFormats.ToleranceDisplay.TolType",
                        "holstd get --json - General.DefaultTextFontSize < ISO.xml"});
  return [options](Session& session) { return PrintValue(*options, session); };
}
