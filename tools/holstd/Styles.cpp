#include <algorithm>
#include <memory>
#include <optional>
#include <set>

#include "Arguments.h"
#include "Format.h"
#include "OpenStandard.h"
#include "Reports.h"
#include "StandardFiles.h"
#include "Subcommands.h"
#include "TextTable.h"

namespace {

struct Options {
  std::string file;
  std::optional<std::string> type;
  bool json = false;
};

/// The styles of an object type, as the application is told them.
struct TypeStyles {
  std::string type;
  std::vector<std::string> names;
};

/// The object types in the order of the file. Throws `Failure` when there is none.
std::vector<std::string> TypesOf(Standard& standard) {
  const VyrAnnStandardXMLNode_var styles(standard.document.GetNodeWithPath("Root.Styles"));
  std::vector<std::string> types;
  std::set<std::string> known;
  if (styles) {
    for (const auto& child : styles->GetNodes()) {
      std::string type(child->GetNodeName().View());
      if (!type.empty() && known.insert(type).second) types.push_back(std::move(type));
    }
  }
  if (!types.empty()) return types;
  throw Failure{kNegativeAnswer, standard.file, 0,
                "the standard has no styles; 'holstd upgrade' adds them"};
}

std::vector<std::string> NamesOf(VyrIDrwStandard& standard, const std::string& type) {
  VyrListValVyrUnicodeString names;
  standard.GetStylesNames(type.c_str(), &names);
  std::vector<std::string> texts;
  for (const VyrUnicodeString& name : names) texts.emplace_back(name.View());
  return texts;
}

/// The application takes the first node below the styles that is called like the type, whatever
/// it is: its answer may be none of the styles that the standard means.
void WarnOfOtherNode(OpenStandard& standard, const TypeStyles& told, const Session& session) {
  const VyrAnnStandardXMLNode_var meant(
      standard.Read().document.GetNodeWithPath("Root.Styles." + told.type));
  std::vector<std::string> names;
  if (meant) {
    for (const auto& style : meant->GetNodes()) {
      const bool isStyle = style->GetNodeType() == VyrAnnStandardXMLNode::NodePlain;
      if (isStyle && !style->GetNodeName().IsEmpty())
        names.emplace_back(style->GetNodeName().View());
    }
  }
  if (names == told.names) return;
  session.Warn(standard.Read().file,
               "of the type " + Quoted(told.type) +
                   " the application is told the names in an earlier node of that name; its own "
                   "styles are " +
                   (names.empty() ? "none" : Joined(names)));
}

std::vector<std::string> ChosenTypes(Standard& standard, const std::optional<std::string>& type) {
  std::vector<std::string> types = TypesOf(standard);
  if (!type) return types;
  if (std::find(types.begin(), types.end(), *type) != types.end()) return {*type};
  throw Failure{kNegativeAnswer, standard.file, 0,
                "there are no styles of " + Quoted(*type) + ", but of " + Joined(types)};
}

std::string AsText(const std::vector<TypeStyles>& styles, bool isOneType) {
  TextTable table({"TYPE", "STYLES"});
  std::string lines;
  for (const TypeStyles& entry : styles) {
    table.Add({entry.type, Joined(entry.names)});
    for (const std::string& name : entry.names) lines += Printable(name) + "\n";
  }
  return isOneType ? lines : table.Text();
}

Json AsJson(const std::vector<TypeStyles>& styles) {
  Json list = Json::array();
  for (const TypeStyles& entry : styles) {
    list.push_back({{"type", entry.type}, {"styles", entry.names}});
  }
  return list;
}

ExitStatus PrintStyles(const Options& options, Session& session) {
  OpenStandard standard(options.file);
  const UnshownReports unshown;
  std::vector<TypeStyles> styles;
  for (const std::string& type : ChosenTypes(standard.Read(), options.type)) {
    styles.push_back({type, NamesOf(standard.Told(), type)});
    WarnOfOtherNode(standard, styles.back(), session);
  }
  const bool isOneType = options.type.has_value();
  if (isOneType && styles.front().names.empty()) {
    throw Failure{kNegativeAnswer, options.file, 0,
                  Quoted(*options.type) + " has no style; an object of it would have 'Default'"};
  }
  session.Print(options.json ? JsonText(AsJson(styles)) : AsText(styles, isOneType));
  return kDone;
}

}  // namespace

Action Styles::Register(Arguments& command) {
  auto options = std::make_shared<Options>();
  command.AddFile(options->file);
  command.AddWord("TYPE", options->type, "Only the styles of this object type, one a line");
  command.AddJson(options->json);
  command.AddExamples(
      {"holstd styles ISO.xml", "holstd styles ISO.xml Text", "holstd styles --json ISO.xml"});
  return [options](Session& session) {
    options->file = FileOrStandard(options->file).file;
    return PrintStyles(*options, session);
  };
}
