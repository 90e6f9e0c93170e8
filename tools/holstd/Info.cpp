#include <memory>

#include "Arguments.h"
#include "Format.h"
#include "OpenStandard.h"
#include "Standard.h"
#include "Subcommands.h"
#include "UpgradeInputs.h"

namespace {

struct Options {
  std::vector<std::string> files;
  bool json = false;
};

struct Counts {
  long nodes = 0;
  long values = 0;
};

Counts CountBelow(const VyrAnnStandardXMLNode& top) {
  Counts counts;
  std::vector<const VyrAnnStandardXMLNode*> work = {&top};
  while (!work.empty()) {
    const VyrAnnStandardXMLNode& node = *work.back();
    work.pop_back();
    counts.nodes += node.GetNumOfNode();
    counts.values += node.GetNumOfValue();
    for (const auto& child : node.GetNodes()) work.push_back(child.Get());
  }
  return counts;
}

int ChildCount(VyrAnnStandardXMLParser& document, const char* top) {
  return VyrAnnStandardXMLNode_var(document.GetNodeWithPath(top))->GetNumOfNode();
}

Json InfoOf(Standard& standard) {
  VyrAnnStandardXMLParser& document = standard.document;
  const Counts counts = CountBelow(*VyrAnnStandardXMLNode_var(document.GetNodeWithPath("Root")));
  Json info;
  info["file"] = standard.file;
  info["name"] = StandardName(standard.file);
  info["parentStandard"] = standard.parent.empty() ? Json() : Json(standard.parent);
  info["version"] = standard.version < 0 ? Json() : Json(standard.version);
  info["enumerations"] = ChildCount(document, "Enum");
  info["types"] = ChildCount(document, "TypeDef");
  info["nodes"] = counts.nodes;
  info["values"] = counts.values;
  return info;
}

/// "parentStandard" as "parent standard".
std::string Label(const std::string& key) {
  std::string label;
  for (const char letter : key) {
    const bool isCapital = letter >= 'A' && letter <= 'Z';
    if (isCapital) label += ' ';
    label += isCapital ? static_cast<char>(letter - 'A' + 'a') : letter;
  }
  return label;
}

std::string AsText(const Json& info) {
  constexpr std::size_t width = 17;
  std::string text;
  for (const auto& [key, value] : info.items()) {
    std::string label = Label(key);
    label.resize(width, ' ');
    text += label;
    text += value.is_null()     ? "unknown"
            : value.is_string() ? Printable(value.get<std::string>())
                                : JsonLine(value);
    text += '\n';
  }
  return text;
}

ExitStatus PrintInfo(const Options& options, Session& session) {
  Json list = Json::array();
  const ExitStatus status = ForEachStandard(session, options.files, [&](const std::string& file) {
    Standard standard = ReadStandard(file);
    list.push_back(InfoOf(standard));
    if (!options.json) session.Print((list.size() > 1 ? "\n" : "") + AsText(list.back()));
    return kDone;
  });
  if (options.json) session.Print(JsonText(list));
  return status;
}

}  // namespace

Action Info::Register(Arguments& command) {
  auto options = std::make_shared<Options>();
  command.AddFiles(options->files);
  command.AddJson(options->json);
  command.AddExamples({"holstd info ISO.xml", "holstd info --json *.xml"});
  return [options](Session& session) { return PrintInfo(*options, session); };
}
