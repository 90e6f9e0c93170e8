#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "TemporaryFolder.h"
#include "ToolRun.h"

using testing::HasSubstr;

namespace {

/// A standard that lacks what a step of the upgrade counts on, and what its owner is told.
struct Damaged {
  std::string version;                ///< that it is damaged at
  std::vector<std::string> commands;  ///< that damage it
  std::string step;                   ///< the version of the step that meets the damage
  std::string text;
  bool isShipped = false;
};

const std::string kSection = "Root.Styles.SectionCallout.Default";
const std::string kShippedKept = "so from here on no old shipped value of callouts was replaced";
const std::string kViewTextLeftOut = "so the text style 'ViewText' of view names was not made";

/// A place of the conversion that reports each.
std::vector<Damaged> DamagesByStep() {
  return {
      {"1",
       {"delete Root.General"},
       "2",
       "the standard does not hold all that it has in this version, so 'Frames' was not added"},
      {"2",
       {"node Root.Dimension.CUMLTxtDecalY:Extra"},
       "30",
       "'Dimension.CUMLTxtDecalY' is not one value, so it was not changed"},
      {"60",
       {"node Root.Styles.DatumTarget.Default.Leader.Symbol:Extra"},
       "70",
       "a node is missing or not as it is in this version, so it was left as it is; -v shows what "
       "the library reports"},
      {"150",
       {"delete Root.EngineeringSymbols.EngineeringSymbol.Charcode"},
       "160",
       "the engineering symbol '<SUBSTITUTION>' has no 'Charcode', so it was not changed"},
      {"30",
       {"delete Root.Styles.Text.Default.Text", "node Root.Styles.Text.Default:Text"},
       "40",
       "'Styles.Text' does not hold all that it has in this version, so 'Text.Blanking' was not "
       "added"},
      {"70",
       {"delete Root.Styles.DimensionsSystem.Default.AlignCumulated"},
       "80",
       "DimensionsSystem 'Default' has no 'AlignCumulated', so it was made 'Center'"},
      {"90",
       {"value Enum.YesNo::string:Sometimes",
        "change Root.Styles.Text.Default.Text.Blanking:Sometimes"},
       "100",
       "'Text.Blanking' of Text 'Default' is 'Sometimes', not as this version has it, so it was "
       "made 'AreaFill'"},
      {"90",
       {"delete Root.Styles.Text.Default.Text.Blanking"},
       "100",
       "Text 'Default' has no 'Text.Blanking', so it was made 'AreaFill'"},
      {"90",
       {"delete Root.Styles.Balloon.Default.Text"},
       "100",
       "Balloon 'Default' has no 'Text', so its blanking was not converted"},
      {"90",
       {"delete Root.Styles.Table"},
       "100",
       "there is no 'Styles.Table', so no table style was given cell styles"},
      {"90",
       {"delete Root.Styles.Table.Default.Cells"},
       "100",
       "Table 'Default' has no 'Cells', so its cells and margins were not moved to "
       "'CellStyles.WholeTable'"},
      {"90",
       {"node Root.Styles.Table.Default:CellStyles"},
       "100",
       "Table 'Default' has no 'CellStyles.WholeTable', so its cells and margins were not moved"},
      {"90",
       {"delete Root.Styles.Table.Default.HorizontalMargin"},
       "100",
       "Table 'Default' has no 'HorizontalMargin', so neither this margin nor those after it"},
      {"90",
       {"delete Root.Styles.Table.Default.VerticalMargin"},
       "100",
       "Table 'Default' has no 'VerticalMargin', so neither this margin nor those after it"},
      {"100",
       {"delete " + kSection + ".Arrows"},
       "110",
       "SectionCallout 'Default' has no 'Arrows', so the thickness and the position of its arrows "
       "were not added"},
      {"100",
       {"delete Root.Styles.ProjectionCallout"},
       "110",
       "there is no 'Styles.ProjectionCallout', " + kShippedKept,
       true},
      {"100",
       {"delete Root.Styles.ProjectionCallout", "node Root.Styles:ProjectionCallout"},
       "110",
       "'Styles.ProjectionCallout' holds no style, " + kShippedKept,
       true},
      {"100",
       {"delete " + kSection + ".Profile.Thickness"},
       "110",
       "SectionCallout 'Default' has no 'Profile.Thickness', " + kShippedKept,
       true},
      {"100",
       {"delete " + kSection + ".Profile.Thickness", "node " + kSection + ".Profile:Thickness"},
       "110",
       "'Profile.Thickness' of SectionCallout 'Default' is not one value, " + kShippedKept,
       true},
      {"100",
       {"delete " + kSection + ".Profile.Thickness",
        "value " + kSection + ".Profile:Thickness:string:2"},
       "110",
       "'Profile.Thickness' of SectionCallout 'Default' is of another type than in this version, " +
           kShippedKept,
       true},
      {"100",
       {"change " + kSection + ".Profile.Thickness:3"},
       "110",
       "'Profile.Thickness' of SectionCallout 'Default' is '3', not as this version has it, " +
           kShippedKept,
       true},
      {"110",
       {"delete Root.Styles.Text"},
       "120",
       "there is no 'Styles.Text', " + kViewTextLeftOut,
       true},
      {"110",
       {"node Root.Styles.Text:ViewText"},
       "120",
       "'Styles.Text' has a 'ViewText' of its own, " + kViewTextLeftOut,
       true},
      {"110",
       {"delete Root.Styles.Text.Default"},
       "120",
       "'Styles.Text' has no 'Default', " + kViewTextLeftOut,
       true},
      {"110",
       {"delete Root.Styles.Text.Default.Text.Justification"},
       "120",
       "Text 'ViewText' has no 'Text.Justification', so names of views are not centred",
       true},
      {"110",
       {"delete Root.Styles.Text.Default.Text.Justification",
        "node Root.Styles.Text.Default.Text:Justification"},
       "120",
       "'Text.Justification' of Text 'ViewText' is not one value, so names of views are not "
       "centred",
       true},
      {"110",
       {"delete Root.Styles.Text.Default.Text.Justification",
        "value Root.Styles.Text.Default.Text:Justification:string:Left"},
       "120",
       "'Text.Justification' of Text 'ViewText' is of another type than in this version, so names "
       "of views are not centred",
       true},
      {"110",
       {"delete Root.View"},
       "120",
       "there is no 'View.ViewName', so 'Alignment' was not added"},
      {"110",
       {"delete Root.View"},
       "120",
       "there is no 'View.ViewName.Scale', so 'ScaleString' was not added"},
  };
}

/// Parts of the library's names and of its reports, which mean nothing to the tool's user.
const std::vector<std::string>& WordsOfTheLibrary() {
  static const std::vector<std::string> words = {
      "Migrate", "UpgradeTo",       "Append",    "Vyr",         "::",      "NULL",
      "handler", "insertion index", "ASSERTION", "Unknown old", "failed?", "Failed to"};
  return words;
}

std::vector<std::string> Commands(const std::vector<std::string>& commands) {
  std::vector<std::string> arguments;
  for (const std::string& command : commands) {
    arguments.insert(arguments.end(), {"-c", command});
  }
  return arguments;
}

class Omissions : public testing::Test {
 protected:
  /// The standard with the damage, made once for each version.
  std::string Made(const Damaged& damaged) {
    const std::string whole = folder_ / (damaged.version + ".xml");
    if (ReadWholeFile(whole).empty()) {
      EXPECT_EQ(
          RunTool({"convert", LegacyText("ISO"), "-o", whole, "--to", damaged.version}).status, 0);
    }
    const std::string file = folder_ / "damaged.xml";
    std::vector<std::string> arguments = {"edit", whole, "-o", file, "--no-backup"};
    const std::vector<std::string> commands = Commands(damaged.commands);
    arguments.insert(arguments.end(), commands.begin(), commands.end());
    const ToolRun run = RunTool(arguments);
    EXPECT_EQ(run.status, 0) << run.err;
    return file;
  }

  ToolRun Upgraded(const Damaged& damaged, std::vector<std::string> options = {}) {
    std::vector<std::string> arguments = {
        "upgrade", Made(damaged), "-o", folder_ / "new.xml", "--no-backup", "--to", damaged.step};
    if (damaged.isShipped) arguments.emplace_back("--shipped");
    arguments.insert(arguments.end(), options.begin(), options.end());
    return RunTool(arguments);
  }

  TemporaryFolder folder_;
};

}  // namespace

TEST_F(Omissions, WhatAStepCannotDoIsToldInWords) {
  for (const Damaged& damaged : DamagesByStep()) {
    SCOPED_TRACE(damaged.text);
    const ToolRun run = Upgraded(damaged);
    EXPECT_THAT(run.err, HasSubstr("damaged.xml: warning: in the step to " + damaged.step + ": " +
                                   damaged.text));
    for (const std::string& word : WordsOfTheLibrary()) {
      EXPECT_EQ(run.err.find(word), std::string::npos) << word << " in " << run.err;
    }
  }
}

TEST_F(Omissions, TheLibrarysOwnReportIsThereForThoseWhoWantIt) {
  const Damaged damaged = {"100", {"delete " + kSection + ".Arrows"}, "110", ""};
  const std::string report = ">> ASSERTION FAILED ON POINTER : NULL handler [File: ";
  EXPECT_EQ(Upgraded(damaged).err.find(report), std::string::npos);
  EXPECT_THAT(Upgraded(damaged, {"-v"}).err, HasSubstr(report));
}

TEST_F(Omissions, OfVeryManyAHundredAreTold) {
  Damaged damaged = {"90", {"delete Root.Styles.Table.Default.Cells"}, "100", ""};
  for (int i = 1; i < 150; ++i) {
    damaged.commands.push_back("node Root.Styles.Table:T" + std::to_string(i));
  }
  const ToolRun run = Upgraded(damaged);
  // Each of the 149 is without a text and without cells, and the first of all without cells.
  EXPECT_NE(run.err.find("Table 'T100' has no 'Text'"), std::string::npos);
  EXPECT_EQ(run.err.find("Table 'T101' has no 'Text'"), std::string::npos);
  EXPECT_NE(run.err.find("199 further things could not be done"), std::string::npos);
}
