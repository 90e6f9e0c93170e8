#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "ConversionTables.h"
#include "DiagnosticsCapture.h"
#include "ParseStandardAccess.h"
#include "VyrAnnStandardScript.h"

// Every row of every table, sent where its step sends it.

namespace {

using Access = VyrDrwParseStandardAccess;
using Command = VyrAnnStandardScript::Command;
using Document = VyrAnnStandardXMLParser;
using Verb = VyrAnnStandardScript::Verb;
using testing::ElementsAreArray;
using testing::IsEmpty;

/// Which upgrades a table is sent in.
enum class Sent { Always, ForShipped, ForSites };

/// A table, the version that a standard has before its step, and when the step sends it.
struct TableUse {
  const char* name;
  std::string_view table;
  int versionBefore;
  Sent sent = Sent::Always;
};

/// In the order in which the steps send them.
const std::vector<TableUse>& TableUses() {
  static const std::vector<TableUse> uses = {
      {"to 2", tables::to_002, 1},
      {"frames", tables::frames, 1},
      {"to 2, cumulated", tables::to_002_cumulated, 1},
      {"enumerations", tables::style_enums, 2},
      {"styles", tables::styles, 2},
      {"sheet", tables::style_sheet, 2},
      {"geometry", tables::style_geometry, 2},
      {"dimension 1", tables::style_dimension_1, 2},
      {"dimension 2", tables::style_dimension_2, 2},
      {"dimension 3", tables::style_dimension_3, 2},
      {"dimension 4", tables::style_dimension_4, 2},
      {"dimension 5", tables::style_dimension_5, 2},
      {"dimension 6", tables::style_dimension_6, 2},
      {"annotation", tables::style_annotation, 2},
      {"dressup", tables::style_dressup, 2},
      {"callout", tables::style_callout, 2},
      {"patterns", tables::patterns, 2},
      {"line types 1", tables::line_types_1, 2},
      {"line types 2", tables::line_types_2, 2},
      {"to 30", tables::to_030, 2},
      {"to 40", tables::to_040, 30},
      {"to 40, roughness style", tables::to_040_roughness_style, 30},
      {"to 40, layout", tables::to_040_layout, 30},
      {"to 40, dimension", tables::to_040_dimension, 30},
      {"to 50", tables::to_050, 40},
      {"to 60, enumerations", tables::to_060_enums, 50},
      {"sheet formats", tables::sheet_formats, 50},
      {"to 60", tables::to_060, 50},
      {"to 70", tables::to_070, 60},
      {"to 80", tables::to_080, 70},
      {"to 80, roughness", tables::to_080_roughness, 70},
      {"to 90", tables::to_090, 80},
      {"to 90, arrow", tables::to_090_arrow, 80},
      {"to 100", tables::to_100, 90},
      {"to 100, bill of material", tables::to_100_bill_of_material, 90},
      {"to 120", tables::to_120, 110},
      {"to 130", tables::to_130, 120},
      {"to 140", tables::to_140, 130},
      {"to 140, welding", tables::to_140_welding, 130},
      {"to 150", tables::to_150, 140},
      {"to 160", tables::to_160, 150},
      {"to 160, bill of material", tables::to_160_bill_of_material, 150, Sent::ForSites},
      {"to 170", tables::to_170, 160},
      {"to 170, shipped colors", tables::to_170_shipped_colors, 160, Sent::ForShipped},
      {"to 170, patterns", tables::to_170_patterns, 160},
      {"to 180", tables::to_180, 170},
      {"to 190", tables::to_190, 180},
      {"to 190, frame names", tables::to_190_frame_names, 180},
      {"to 200", tables::to_200, 190},
      {"to 210", tables::to_210, 200},
      {"to 210, margins", tables::to_210_margins, 200},
      {"to 210, welding", tables::to_210_welding, 200},
      {"to 220", tables::to_220, 210},
  };
  return uses;
}

struct Case {
  const char* parent;
  bool isShipped;
};

void PrintTo(const Case& test, std::ostream* out) {
  *out << test.parent << (test.isShipped ? " shipped" : " of a site");
}

class Tables : public testing::TestWithParam<Case> {
 protected:
  /// A standard at a version, by the chain itself.
  void Convert(VyrDrwParseStandard& standard, int version) const {
    VyrDrwParseStandardUpgradeOptions options;
    options.OOTBStandard = GetParam().isShipped ? 1 : 0;
    ASSERT_EQ(standard.DecodeText(), S_OK);
    ASSERT_EQ(standard.Upgrade(version, options), S_OK);
  }
  bool IsSent(const TableUse& use) const {
    return use.sent == Sent::Always || (use.sent == Sent::ForShipped) == GetParam().isShipped;
  }
  std::string LegacyPath() const {
    return std::string(HOL_STANDARDS "/legacy/") + GetParam().parent + ".txt";
  }
  /// Rows that are known to find nothing: what they name is not there, or is named wrongly, and a
  /// row is sent as it is written.
  std::vector<std::string> RowsThatFindNothing() const {
    std::vector<std::string> rows;
    const std::string_view parent = GetParam().parent;
    if (parent == "ANSI" || parent == "ASME") {
      rows.emplace_back("Root.Styles.DatumTarget.Default.Leader.Symbol.ArrowEndType:Cross");
    }
    // Only shipped standards have the text style of view names.
    if (!GetParam().isShipped) {
      rows.emplace_back("Root.Styles.Text.ViewText.Text:FrameName:string::0");
    }
    return rows;
  }
};

/// The enumeration that a row's type names; empty for any other row.
std::string EnumerationOf(const Command& command) {
  if (command.verb == Verb::Node || command.verb == Verb::Instance ||
      command.verb == Verb::EachNode || command.verb == Verb::Delete ||
      command.verb == Verb::Change) {
    return {};
  }
  constexpr std::string_view mark = ":enum.";
  const std::size_t at = command.text.find(mark);
  if (at == std::string_view::npos) return {};
  const std::string_view rest = command.text.substr(at + mark.size());
  return std::string(rest.substr(0, rest.find(':')));
}

/// The literal of such a row.
std::string LiteralOf(const Command& command) {
  const std::string mark = ":enum." + EnumerationOf(command) + ":";
  const std::string_view rest = command.text.substr(command.text.find(mark) + mark.size());
  return std::string(rest.substr(0, rest.find(':')));
}

bool IsDefined(Document& document, const Command& command) {
  const VyrAnnStandardXMLNode_var node(document.GetNodeWithPath("Enum." + EnumerationOf(command)));
  if (!node) return false;
  for (const auto& value : node->GetValues()) {
    if (value->GetValue() == LiteralOf(command)) return true;
  }
  return false;
}

TEST(ConversionTables, EveryOneParsesAndHoldsRows) {
  for (const TableUse& use : TableUses()) {
    const VyrAnnStandardScript script(use.table);
    EXPECT_TRUE(script.GetProblem().IsEmpty()) << use.name << ":" << script.GetProblem().line
                                               << ": " << script.GetProblem().text.CString();
    EXPECT_FALSE(script.GetCommands().empty()) << use.name;
  }
}

TEST_P(Tables, EveryRowFindsWhatItNamesAndUsesDefinedLiterals) {
  DiagnosticsCapture capture;
  std::vector<std::string> found;
  for (std::size_t i = 0; i < TableUses().size();) {
    const int version = TableUses()[i].versionBefore;
    VyrDrwParseStandard standard(LegacyPath());
    Convert(standard, version);
    Document& document = *Access::Document(standard);
    EXPECT_THAT(capture.errors, IsEmpty());
    for (; i < TableUses().size() && TableUses()[i].versionBefore == version; ++i) {
      const TableUse& use = TableUses()[i];
      if (!IsSent(use)) continue;
      const VyrAnnStandardScript script(use.table);
      for (const Command& command : script.GetCommands()) {
        if (!command.AppliesTo(GetParam().parent)) continue;
        const std::string row = std::string(use.name) + ":" + std::to_string(command.line) + ": " +
                                std::string(command.text);
        if (!EnumerationOf(command).empty()) {
          EXPECT_TRUE(IsDefined(document, command)) << row;
        }
        const int result = command.Run(document);
        EXPECT_NE(result, 2) << row;
        if (result == 1) found.emplace_back(command.text);
        EXPECT_THAT(capture.errors, IsEmpty()) << row;
        capture.Clear();
      }
    }
  }
  EXPECT_THAT(found, ElementsAreArray(RowsThatFindNothing()));
}

INSTANTIATE_TEST_SUITE_P(All, Tables,
                         testing::Values(Case{"ISO", false}, Case{"ISO", true}, Case{"JIS", false},
                                         Case{"JIS", true}, Case{"ANSI", false}, Case{"ANSI", true},
                                         Case{"ASME", false}, Case{"ASME", true}),
                         [](const auto& test) {
                           return std::string(test.param.parent) +
                                  (test.param.isShipped ? "Shipped" : "Site");
                         });

}  // namespace
