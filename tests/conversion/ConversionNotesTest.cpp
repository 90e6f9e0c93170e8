#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <set>
#include <string>

#include "LegacyText.h"
#include "TemporaryFolder.h"
#include "UpgradeRun.h"

// What a text standard says and the standard that is made of it does not.

namespace {

using Note = VyrDrwConversionNote;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kAllParents[] = {"ISO", "JIS", "ANSI", "ASME"};

/// General parameters, all of them with one value, of a parent standard.
Lines AllGeneral(const std::string& parent, const std::string& value) {
  Lines lines;
  for (int row = 2; row <= 118; ++row) {
    lines.push_back(ExpectedKeywords()[static_cast<std::size_t>(row)].keyword + " " + value);
  }
  lines = Replaced(lines, "ParentStandard",
                   "ParentStandard " + (parent == "ASME" ? std::string("ANSI") : parent));
  return Replaced(lines, "TXTDatumMode", parent == "ASME" ? "TXTDatumMode 1" : "TXTDatumMode 2");
}

/// A text standard, converted.
struct Converted {
  TemporaryFolder folder;
  VyrDrwParseStandard standard;

  explicit Converted(const Lines& lines, bool isShipped = false, int version = -1)
      : standard(folder.Write("STD.txt", Joined(lines))) {
    EXPECT_EQ(standard.DecodeText(), S_OK) << standard.GetProblem().text.CString();
    auto options = OptionsOf(isShipped);
    EXPECT_EQ(standard.Upgrade(version, options), S_OK);
  }

  /// What became of each parameter that did not arrive, as notes say it; "" where there is none.
  std::map<std::string, std::string> Notes() const {
    std::map<std::string, std::string> notes;
    for (const Note& note : standard.GetConversionNotes()) {
      EXPECT_TRUE(note.kind == Note::WithoutPlace || note.kind == Note::SetByFormat);
      EXPECT_EQ(note.kind == Note::WithoutPlace, note.became.IsEmpty());
      EXPECT_TRUE(notes.emplace(note.name.CString(), note.became.CString()).second)
          << note.name.CString();
    }
    return notes;
  }
  /// The same by looking for each value.
  std::map<std::string, std::string> Lost(const Lines& lines) {
    std::map<std::string, std::string> lost;
    for (const std::string& line : lines) {
      const std::string keyword = line.substr(0, line.find(' '));
      const VyrAnnStandardXMLNode_var node(
          standard.GetDocument().GetNodeWithPath("Root.Dimension." + keyword));
      if (!node) {
        lost[keyword] = "";
        continue;
      }
      const std::string became = node->GetValues().front()->GetValue().CString();
      if (became != line.substr(line.find(' ') + 1)) lost[keyword] = became;
    }
    return lost;
  }
};

TEST(ConversionNotes, TellExactlyTheParametersThatDoNotArrive) {
  for (const std::string parent : kAllParents) {
    const bool isAnsi = parent == "ANSI" || parent == "ASME";
    for (const std::string value : {"7", "0", "-3", "123456"}) {
      for (const bool isShipped : {false, true}) {
        SCOPED_TRACE(parent + " " + value + (isShipped ? " shipped" : ""));
        const Lines lines = AllGeneral(parent, value);
        Converted converted(lines, isShipped);
        std::map<std::string, std::string> expected = {{"CUMLDimLinTail", ""}};
        if (isAnsi) expected["SYMBCrossSide"] = "9.8995";
        if (!isAnsi || value != "0") {
          expected["CUMLTxtDecalY"] = isAnsi ? "0" : parent == "ISO" ? "5" : "0.5";
        }
        if (value == "0" && parent != "JIS") {
          expected["DIMLConstantLength"] = isAnsi ? "7.62" : "15";
        }
        EXPECT_EQ(converted.Notes(), expected);
        EXPECT_EQ(converted.Lost(lines), expected);
      }
    }
  }
}

TEST(ConversionNotes, EachParameterArrivesOrIsToldWhateverTheOthersSay) {
  const Lines lines = AllGeneral("ASME", "7");
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const std::string keyword = lines[i].substr(0, lines[i].find(' '));
    if (keyword == "ParentStandard" || keyword == "TXTDatumMode") continue;
    Lines changed = lines;
    changed[i] = keyword + " 0";
    Converted converted(changed);
    EXPECT_EQ(converted.Lost(changed), converted.Notes()) << keyword;
  }
}

TEST(ConversionNotes, EachParameterOfAGroupArrives) {
  for (const bool isShipped : {false, true}) {
    for (const Lines& group : {Tolerance("own"), Display("own")}) {
      const bool isTolerance = group.front() == "BEGIN_TOLERANCE";
      Converted converted(General() + group, isShipped);
      const VyrAnnStandardXMLNode_var list(converted.standard.GetDocument().GetNodeWithPath(
          isTolerance ? "Root.ToleranceFormats" : "Root.ValueFormats"));
      const VyrAnnStandardXMLNode& instance = *list->GetNodes().back();
      for (std::size_t i = 1; i + 1 < group.size(); ++i) {
        const std::string keyword = group[i].substr(0, group[i].find(' '));
        const VyrAnnStandardXMLValue_var field(
            instance.GetValueByName(i == 1 ? "Name" : keyword.c_str()));
        ASSERT_TRUE(field) << keyword;
        EXPECT_EQ(field->GetValue().View(), group[i].substr(group[i].find(' ') + 1)) << keyword;
      }
    }
  }
}

TEST(ConversionNotes, AreThoseOfTheVersionThatIsMade) {
  const Lines lines = AllGeneral("JIS", "7");
  struct {
    int version;
    std::map<std::string, std::string> notes;
  } const cases[] = {
      {1, {}},
      {2, {{"CUMLTxtDecalY", "0.5"}}},
      {50, {{"CUMLTxtDecalY", "0.5"}}},
      {60, {{"CUMLTxtDecalY", "0.5"}, {"CUMLDimLinTail", ""}}},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(Converted(lines, false, test.version).Notes(), test.notes) << test.version;
  }
}

TEST(ConversionNotes, SayWhereAndWhatTheTextHas) {
  Converted converted(Lines{""} + AllGeneral("ISO", "7"));
  for (const Note& note : converted.standard.GetConversionNotes()) {
    if (!(note.name == "CUMLDimLinTail")) continue;
    // Row 2 of the keywords stands on the second line; this is row 108.
    ASSERT_EQ(ExpectedKeywords()[108].keyword, "CUMLDimLinTail");
    EXPECT_EQ(note.line, 108);
    EXPECT_EQ(note.value, "7");
    return;
  }
  FAIL() << "no note";
}

TEST(ConversionNotes, ANumberThatIsWrittenOtherwiseIsKept) {
  for (const char* same : {"0", "0.0", "-0", "0e5", "+0.00"}) {
    const Converted converted(
        Replaced(AllGeneral("ANSI", "7"), "CUMLTxtDecalY", std::string("CUMLTxtDecalY ") + same));
    EXPECT_FALSE(converted.Notes().contains("CUMLTxtDecalY")) << same;
  }
}

TEST(ConversionNotes, TheParametersThatAreToldAreListedInTheDocument) {
  std::ifstream document(HOL_STANDARDS "/../docs/text-standards.md");
  std::set<std::string> listed;
  bool isInSection = false;
  for (std::string line; std::getline(document, line);) {
    if (line.starts_with("## ")) isInSection = line == "## What does not arrive";
    if (!isInSection || !line.starts_with("| `")) continue;
    listed.insert(line.substr(3, line.find('`', 3) - 3));
  }
  std::set<std::string> told;
  for (const std::string parent : kAllParents) {
    for (const char* value : {"7", "0"}) {
      for (const auto& [name, became] : Converted(AllGeneral(parent, value)).Notes()) {
        told.insert(name);
      }
    }
  }
  EXPECT_EQ(listed, told);
}

/// Kind, line and value of the notes of a text that was read.
std::vector<std::string> NotesOfText(const Lines& lines) {
  const DiagnosticsCapture ignored;
  const TemporaryFolder folder;
  VyrDrwParseStandard standard(folder.Write("STD.txt", Joined(lines)));
  EXPECT_EQ(standard.DecodeText(), S_OK) << standard.GetProblem().text.CString();
  std::vector<std::string> notes;
  for (const Note& note : standard.GetConversionNotes()) {
    notes.push_back(std::to_string(note.kind) + " " + std::to_string(note.line) + " " +
                    note.name.CString() + " " + note.value.CString());
  }
  return notes;
}

TEST(ConversionNotes, AGroupThatTakesTheNameOfAReadyMadeOneIsTold) {
  EXPECT_THAT(NotesOfText(General() + Tolerance("TOL_RES1")),
              ElementsAre("0 107 TolName TOL_RES1"));
  for (const std::string name : {"micron", "mm", "cm", "m", "km", "in", "ftinch", "grade"}) {
    EXPECT_THAT(NotesOfText(General() + Display(name)), ElementsAre("0 107 NDName " + name));
    EXPECT_THAT(NotesOfText(General() + Tolerance(name)), IsEmpty()) << "a tolerance may have it";
  }
  for (const std::string name : {"MM", "mm2", "TOL_RES1", "Name", "1.0"}) {
    EXPECT_THAT(NotesOfText(General() + Display(name)), IsEmpty()) << name;
  }
  EXPECT_THAT(NotesOfText(Display("mm") + General() + Display("in") + Tolerance("TOL_RES1")),
              ElementsAre("0 2 NDName mm", "0 144 NDName in", "0 181 TolName TOL_RES1"));
}

TEST(ConversionNotes, ADatumModeThatIsNotOneOfTheTwoToTheLetterIsTold) {
  const auto text = [](const char* mode) {
    return Replaced(Replaced(General(), "ParentStandard", "ParentStandard ANSI"), "TXTDatumMode",
                    std::string("TXTDatumMode ") + mode);
  };
  std::size_t line = 1;
  while (!General()[line - 1].starts_with("TXTDatumMode")) ++line;
  for (const std::string mode : {"0", "01", "+1", "3"}) {
    EXPECT_THAT(NotesOfText(text(mode.c_str())),
                ElementsAre("1 " + std::to_string(line) + " TXTDatumMode " + mode));
  }
  EXPECT_THAT(NotesOfText(text("1")), IsEmpty());
  EXPECT_THAT(NotesOfText(text("2")), IsEmpty());
  EXPECT_THAT(NotesOfText(Replaced(General(), "TXTDatumMode", "TXTDatumMode 5")), IsEmpty())
      << "only ANSI goes by it";
}

}  // namespace
