#include "Omissions.h"

#include <array>
#include <string_view>

#include "Format.h"

namespace {

using Omission = VyrDrwUpgradeOmission;

/// Words for what the library tells as data. "@" stands for the place, "#" for the name, "%" for
/// the value.
template <class Kind>
struct Words {
  Kind kind;
  std::string_view text;
};

constexpr std::array<Words<Omission::Fault>, 10> kFaults = {{
    {Omission::Missing, "@ has no #"},
    {Omission::Absent, "there is no @"},
    {Omission::Empty, "@ holds no style"},
    {Omission::Taken, "@ has a # of its own"},
    {Omission::FewerNodes, "@ does not hold all that it has in this version"},
    {Omission::OtherShape, "# of @ is not one value"},
    {Omission::OtherType, "# of @ is of another type than in this version"},
    {Omission::OtherValue, "# of @ is %, not as this version has it"},
    {Omission::UnknownParent, "the parent standard % is none of ISO, JIS, ANSI, ASME"},
    {Omission::Unforeseen, "a node is missing or not as it is in this version"},
}};

constexpr std::array<Words<Omission::Work>, 16> kWorks = {{
    {Omission::BlankingKept, "its blanking was not converted"},
    {Omission::BlankingAssumed, "it was made 'AreaFill'"},
    {Omission::AlignmentAssumed, "it was made 'Center'"},
    {Omission::TablesKept, "no table style was given cell styles"},
    {Omission::CellsKept, "its cells and margins were not moved to 'CellStyles.WholeTable'"},
    {Omission::MarginsKept,
     "neither this margin nor those after it were moved to "
     "'CellStyles.WholeTable'"},
    {Omission::ArrowsKept, "the thickness and the position of its arrows were not added"},
    {Omission::ShippedCalloutsKept, "from here on no old shipped value of callouts was replaced"},
    {Omission::ViewTextLeftOut, "the text style 'ViewText' of view names was not made"},
    {Omission::ViewTextNotCentred, "names of views are not centred"},
    {Omission::NameLeftOut, "# was not added"},
    {Omission::ValueKept, "it was not changed"},
    {Omission::SymbolsLeftOut, "engineering symbols were not added"},
    {Omission::ParentContentKept, "what depends on it was left as it is"},
    {Omission::VersionKept, "the version was not raised"},
    {Omission::PlaceKept, "it was left as it is; -v shows what the library reports"},
}};

template <class Kind, std::size_t Count>
std::string_view TextOf(const std::array<Words<Kind>, Count>& words, Kind kind) {
  for (const Words<Kind>& word : words) {
    if (word.kind == kind) return word.text;
  }
  return words.back().text;
}

/// A style as "Table 'Default'", a symbol by its tag, any other node by its path.
std::string Place(std::string_view path) {
  constexpr std::string_view root = "Root.";
  constexpr std::string_view symbols = "EngineeringSymbols.";
  constexpr std::string_view styles = "Styles.";
  if (path == "Root") return "the standard";
  if (path.starts_with(root)) path.remove_prefix(root.size());
  if (path.starts_with(symbols)) {
    return "the engineering symbol " + Quoted(path.substr(symbols.size()));
  }
  const std::size_t name = path.find('.', styles.size());
  if (!path.starts_with(styles) || name == std::string_view::npos) return Quoted(path);
  return std::string(path.substr(styles.size(), name - styles.size())) + " " +
         Quoted(path.substr(name + 1));
}

std::string Filled(std::string_view text, const Omission& omission) {
  std::string filled;
  for (const char letter : text) {
    if (letter == '@') {
      filled += Place(omission.place.View());
    } else if (letter == '#') {
      filled += Quoted(omission.name.View());
    } else if (letter == '%') {
      filled += Quoted(omission.value.View());
    } else {
      filled += letter;
    }
  }
  return filled;
}

std::string Described(const Omission& omission) {
  // Of a node that is sought by its whole path, that is told.
  const bool isWhole = omission.fault == Omission::OtherShape && omission.name.IsEmpty();
  const std::string_view fault =
      isWhole ? std::string_view("@ is not one value") : TextOf(kFaults, omission.fault);
  return Filled(fault, omission) + ", so " + Filled(TextOf(kWorks, omission.work), omission);
}

}  // namespace

std::size_t WarnOfOmissions(const VyrDrwParseStandard& converter, std::size_t from, int version,
                            const std::string& file, const Session& session) {
  const auto& omissions = converter.GetUpgradeOmissions();
  for (std::size_t i = from; i < omissions.size(); ++i) {
    session.Warn(file,
                 "in the step to " + std::to_string(version) + ": " + Described(omissions[i]));
  }
  return omissions.size();
}

void WarnOfFurtherOmissions(const VyrDrwParseStandard& converter, const std::string& file,
                            const Session& session) {
  const std::size_t kept = converter.GetUpgradeOmissions().size();
  const std::size_t further = converter.GetNumOfUpgradeOmissions() - kept;
  if (further == 0) return;
  session.Warn(file, Counted(static_cast<long>(further), "further thing") +
                         " could not be done for the like reasons");
}
