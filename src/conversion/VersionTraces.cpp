#include "VersionTraces.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "ConversionTables.h"

namespace {

using Command = VyrAnnStandardScript::Command;
using Node_var = VyrAnnStandardXMLNode_var;
using Value_var = VyrAnnStandardXMLValue_var;
using Verb = VyrAnnStandardScript::Verb;

// Parameters of steps that add them without a table.
constexpr std::string_view kOf110 =
    "each Root.Styles.ProjectionCallout .Arrows:Thickness:int:1\n"
    "each Root.Styles.ProjectionCallout .Arrows:Position:int:50\n"
    "each Root.Styles.SectionCallout .Arrows:Thickness:int:1\n"
    "each Root.Styles.SectionCallout .Arrows:Position:int:50\n";
constexpr std::string_view kOf120 = "node Root.View:ViewName\n";
constexpr std::string_view kOf130 =
    "value Root.Styles.DatumTarget.Default:SizeSpecifier:enum.DatumTargetSizeSpecifier:None\n";
constexpr std::string_view kOf180 =
    "each Root.EngineeringSymbols :ToleranceValue:string:No\n"
    "each Root.EngineeringSymbols :DatumReference:string:No\n"
    "each Root.EngineeringSymbols :Notes:string:No\n";

// Not those that build anew what the version before had as well: the style of roughness symbols
// (40), bills of material (160) and patterns (170).
constexpr std::array kTables = {
    VersionTable{2, &tables::to_002},
    VersionTable{30, &tables::style_enums},
    VersionTable{30, &tables::styles},
    VersionTable{30, &tables::style_sheet},
    VersionTable{30, &tables::patterns},
    VersionTable{30, &tables::to_030},
    VersionTable{40, &tables::to_040},
    VersionTable{40, &tables::to_040_layout},
    VersionTable{40, &tables::to_040_dimension},
    VersionTable{50, &tables::to_050},
    VersionTable{60, &tables::to_060_enums},
    VersionTable{60, &tables::sheet_formats},
    VersionTable{60, &tables::to_060},
    VersionTable{70, &tables::to_070},
    VersionTable{80, &tables::to_080},
    VersionTable{80, &tables::to_080_roughness},
    VersionTable{90, &tables::to_090},
    VersionTable{90, &tables::to_090_arrow},
    VersionTable{100, &tables::to_100},
    VersionTable{100, &tables::to_100_bill_of_material},
    VersionTable{110, &kOf110},
    VersionTable{120, &tables::to_120},
    VersionTable{120, &kOf120},
    VersionTable{130, &tables::to_130},
    VersionTable{130, &kOf130},
    VersionTable{140, &tables::to_140},
    VersionTable{140, &tables::to_140_welding},
    VersionTable{150, &tables::to_150},
    VersionTable{160, &tables::to_160},
    VersionTable{170, &tables::to_170},
    VersionTable{180, &tables::to_180},
    VersionTable{180, &kOf180},
    VersionTable{190, &tables::to_190},
    VersionTable{190, &tables::to_190_frame_names},
    VersionTable{200, &tables::to_200},
    VersionTable{210, &tables::to_210},
    VersionTable{210, &tables::to_210_margins},
    VersionTable{210, &tables::to_210_welding},
    VersionTable{220, &tables::to_220},
};

constexpr bool IsBefore(const VersionTable& a, const VersionTable& b) {
  return a.version < b.version;
}
static_assert(std::is_sorted(kTables.begin(), kTables.end(), IsBefore));

/// The fields of a command, which ":" separates.
std::vector<std::string_view> FieldsOf(std::string_view text) {
  std::vector<std::string_view> fields;
  for (std::size_t end = text.find(':'); end != std::string_view::npos; end = text.find(':')) {
    fields.push_back(text.substr(0, end));
    text.remove_prefix(end + 1);
  }
  fields.push_back(text);
  return fields;
}

/// What a command on a node or value of the path in its first field adds.
std::optional<Addition> AdditionOf(std::string_view text) {
  const std::vector<std::string_view> fields = FieldsOf(text);
  if (fields.size() < 2) return std::nullopt;
  const bool isLiteral = fields[1].empty();
  if (isLiteral && (fields.size() < 4 || !fields[0].starts_with("Enum."))) return std::nullopt;
  return Addition{std::string(fields[0]), std::string(fields[isLiteral ? 3 : 1]), isLiteral};
}

bool Has(const VyrAnnStandardXMLNode& node, const Addition& addition) {
  if (addition.isLiteral) return Value_var(node.GetValueWithPath(addition.name)).Get() != nullptr;
  return Node_var(node.GetNodeByName(addition.name)) ||
         Value_var(node.GetValueByName(addition.name));
}

}  // namespace

std::span<const VersionTable> VersionTables() {
  return kTables;
}

std::optional<Addition> AdditionOf(const Command& command) {
  if (command.verb != Verb::Node && command.verb != Verb::Value) return std::nullopt;
  return AdditionOf(command.text);
}

/// How many of some additions a document has.
struct VersionTraces::Tally {
  int all = 0;
  int found = 0;
  std::string first;  ///< path of the first that was found

  bool HasMost() const { return found * 2 > all; }
};

VersionTraces::VersionTraces(VyrAnnStandardXMLParser& document, std::string parent,
                             std::vector<std::string> missing)
    : document_(document), parent_(std::move(parent)), missing_(std::move(missing)) {}

/// The addition of a row; of one that serves every child of a node, that to the default child.
std::optional<Addition> VersionTraces::Resolved(const Command& command) const {
  if (command.verb != Verb::Each && command.verb != Verb::EachNode) return AdditionOf(command);
  const Node_var family(document_.GetNodeWithPath(command.path));
  if (!family || family->GetNodes().empty()) return std::nullopt;
  const Node_var style(family->GetDefaultNode());
  std::string text(command.path);
  text.append(".").append(style->GetNodeName().View()).append(command.text);
  return AdditionOf(text);
}

bool VersionTraces::IsMissing(const Addition& addition) const {
  const std::string path = addition.FullPath() + ".";
  return std::any_of(missing_.begin(), missing_.end(),
                     [&](const std::string& missing) { return path.starts_with(missing + "."); });
}

void VersionTraces::Count(const Addition& addition, Tally& definitions, Tally& parameters) const {
  const bool isDefinition = addition.IsDefinition();
  const Node_var node(document_.GetNodeWithPath(addition.path));
  // A style that the owner has no use for says nothing of the version.
  if (!isDefinition && (!node || IsMissing(addition))) return;
  Tally& tally = isDefinition ? definitions : parameters;
  ++tally.all;
  if (!node || !Has(*node, addition)) return;
  if (++tally.found == 1) tally.first = addition.FullPath();
}

VersionTraces::Findings VersionTraces::Find(int version) const {
  Tally definitions;
  Tally parameters;
  const auto [begin, end] =
      std::equal_range(kTables.begin(), kTables.end(), VersionTable{version, nullptr}, IsBefore);
  for (const auto* table = begin; table != end; ++table) {
    const VyrAnnStandardScript script(*table->table);
    for (const Command& command : script.GetCommands()) {
      if (!command.AppliesTo(parent_)) continue;
      if (const auto addition = Resolved(command)) Count(*addition, definitions, parameters);
    }
  }
  // An owner may have made an enumeration that a later version brings too, and even with the same
  // literals, but hardly what goes with it.
  if (definitions.all == 0) {
    return {parameters.all > 0, parameters.HasMost() ? parameters.first : ""};
  }
  const bool isOfVersion = definitions.HasMost() && (parameters.all == 0 || parameters.found > 0);
  return {true, isOfVersion ? definitions.first : ""};
}
