#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "DiagnosticsCapture.h"
#include "EachChild.h"
#include "ParseStandardAccess.h"
#include "TemporaryFolder.h"
#include "VyrAnnStandardScript.h"

namespace {

using Access = VyrDrwParseStandardAccess;
using Document = VyrAnnStandardXMLParser;
using Node = VyrAnnStandardXMLNode;
using Node_var = VyrAnnStandardXMLNode_var;
using Options = VyrDrwParseStandardUpgradeOptions;
using Value = VyrAnnStandardXMLValue;
using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

constexpr const char* kParents[] = {"ISO", "JIS", "ANSI", "ASME"};
constexpr const char* kFatalError =
    ">>> FATAL ERROR in VyrDrwParseStandard::UpgradeVersion - Bad parent standard type.";

std::string Text(const VyrUnicodeString& text) {
  return text.CString();
}

std::string ValueAt(Document& document, const std::string& path) {
  const Node_var node(document.GetNodeWithPath(path));
  return node ? Text(document.GetValueWithPath(path)) : "(no node)";
}

std::vector<std::string> NodeNames(Document& document, const std::string& path) {
  const Node_var node(document.GetNodeWithPath(path));
  if (!node) return {"(no node)"};
  std::vector<std::string> names;
  for (const Node_var& child : node->GetNodes()) names.push_back(Text(child->GetNodeName()));
  return names;
}

/// Texts of the values that a node holds directly.
std::vector<std::string> ValuesAt(Document& document, const std::string& path) {
  const Node_var node(document.GetNodeWithPath(path));
  if (!node) return {"(no node)"};
  std::vector<std::string> values;
  for (const auto& value : node->GetValues()) values.push_back(Text(value->GetValue()));
  return values;
}

void Send(Document& document, const std::string& text) {
  const VyrAnnStandardScript script(text);
  ASSERT_TRUE(script.GetProblem().IsEmpty()) << script.GetProblem().text.CString();
  for (const auto& command : script.GetCommands()) {
    ASSERT_EQ(command.Run(document), 0) << command.text;
  }
}

std::string LegacyPath(const std::string& parent) {
  return std::string(HOL_STANDARDS "/legacy/") + parent + ".txt";
}

/// A shipped text standard, upgraded to a version.
struct Upgraded {
  VyrDrwParseStandard standard;

  Upgraded(const std::string& parent, int version) : standard(LegacyPath(parent)) {
    EXPECT_EQ(standard.DecodeText(), S_OK);
    Options options;
    EXPECT_EQ(standard.Upgrade(version, options), S_OK);
  }
  Document& document() { return *Access::Document(standard); }
  /// Runs the steps from the version that the document now has to `target`.
  void Continue(int from, int target) {
    Access::Version(standard) = from;
    Options options;
    EXPECT_EQ(standard.Upgrade(target, options), S_OK);
  }
};

// --- Gates ---------------------------------------------------------------------------------------

struct Gate {
  const char* step;  // empty: a step of the driver itself, whose name is free
  int sourceBelow;
  int targetAtLeast;
};

constexpr Gate kGates[] = {
    {"", 2, 2},
    {"", 3, 30},
    {"", 31, 40},
    {"", 41, 50},
    {"", 51, 60},
    {"Migrate14To15", 61, 70},
    {"Migrate15To16n201", 71, 80},
    {"Migrate16To17n1X", 81, 90},
    {"Migrate17To18n1X1", 91, 100},
    {"Migrate18To20n208", 101, 110},
    {"Migrate20To21n209", 111, 120},
    {"Migrate209To21n210", 121, 130},
    {"Migrate210To21n211", 131, 140},
    {"Migrate211To23n213", 141, 150},
    {"Migrate213To23n214", 151, 160},
    {"Migrate214To24n215", 161, 170},
    {"Migrate215To24n216", 171, 180},
    {"Migrate216To25n417", 181, 190},
    {"Migrate417To27n419", 191, 200},
    {"Migrate419To28n420", 201, 210},
    {"Migrate420To29n421", 211, 220},
};

std::vector<int> ExpectedSteps(int source, int target) {
  std::vector<int> versions;
  for (const Gate& gate : kGates) {
    if (source < gate.sourceBelow && (target == -1 || target >= gate.targetAtLeast)) {
      versions.push_back(gate.targetAtLeast);
    }
  }
  return versions;
}

/// Versions of the steps that run on an empty document of that source version.
std::vector<int> StepsRun(int source, int target) {
  VyrDrwParseStandard standard("STD.xml");
  Access::Decoded(standard) = 1;
  Access::Version(standard) = source;
  Access::ParentStandard(standard) = "ISO";
  Access::Document(standard) = std::make_unique<Document>();
  std::vector<int> versions;
  Options options;
  EXPECT_EQ(standard.Upgrade(target, options,
                             [&](const char*, int version, Document& document) {
                               EXPECT_EQ(&document, Access::Document(standard).get());
                               versions.push_back(version);
                             }),
            S_OK);
  return versions;
}

TEST(UpgradeGates, SourceAndTargetDecideWhichStepsRun) {
  const DiagnosticsCapture capture;
  const std::vector<int> targets = {-1, 0, 1, 2, 25, 29, 30, 60, 95, 100, 110, 215, 219, 220, 1000};
  std::vector<int> sources = {1, 29, 215, 1000};
  for (const Gate& gate : kGates) {
    sources.insert(sources.end(), {gate.sourceBelow - 1, gate.sourceBelow, gate.targetAtLeast});
  }
  for (const int source : sources) {
    for (const int target : targets) {
      EXPECT_THAT(StepsRun(source, target), ElementsAreArray(ExpectedSteps(source, target)))
          << source << " to " << target;
    }
  }
}

TEST(UpgradeGates, EveryTargetEndsTheChainAtTheLastStepNotAboveIt) {
  const DiagnosticsCapture capture;
  for (const Gate& gate : kGates) {
    for (const int target : {gate.targetAtLeast - 1, gate.targetAtLeast, gate.targetAtLeast + 1}) {
      EXPECT_THAT(StepsRun(41, target), ElementsAreArray(ExpectedSteps(41, target))) << target;
    }
  }
}

TEST(UpgradeGates, AgreeWithThePlainExamples) {
  const DiagnosticsCapture capture;
  EXPECT_THAT(StepsRun(210, 220), ElementsAre(220));
  EXPECT_THAT(StepsRun(60, 100), ElementsAre(70, 80, 90, 100));
  EXPECT_THAT(StepsRun(201, 215), ElementsAre());
  EXPECT_THAT(StepsRun(200, 215), ElementsAre(210));
  for (const int source : {3, 17, 29, 30}) EXPECT_THAT(StepsRun(source, 40), ElementsAre(40));
  EXPECT_THAT(StepsRun(220, -1), IsEmpty());
}

TEST(UpgradeGates, TextStandardRunsTheBuildAndEveryStepUpToTheTarget) {
  for (const int target : {-1, 0, 1, 2, 25, 30, 215, 220}) {
    const DiagnosticsCapture capture;
    VyrDrwParseStandard standard(LegacyPath("ISO"));
    ASSERT_EQ(standard.DecodeText(), S_OK);
    std::vector<int> versions;
    std::vector<std::string> names;
    Options options;
    standard.Upgrade(target, options, [&](const char* name, int version, Document&) {
      versions.push_back(version);
      names.emplace_back(name);
    });
    std::vector<int> expected = {1};
    for (const int version : ExpectedSteps(0, target)) expected.push_back(version);
    EXPECT_THAT(versions, ElementsAreArray(expected)) << target;
    for (std::size_t i = 1; i < names.size(); ++i) {
      const std::string_view name = kGates[i - 1].step;
      if (!name.empty()) {
        EXPECT_EQ(names[i], name);
      }
    }
    EXPECT_THAT(capture.errors, IsEmpty());
  }
}

TEST(UpgradeDriver, WritesNoVersionBefore110) {
  const DiagnosticsCapture capture;
  Upgraded iso("ISO", 100);
  EXPECT_EQ(ValueAt(iso.document(), "Root.Version"), "(no node)");
  iso.Continue(100, 110);
  EXPECT_EQ(ValueAt(iso.document(), "Root.Version"), "110");
  EXPECT_EQ(iso.standard.GetVersion(), 100) << "the source version is the reader's";
}

TEST(UpgradeDriver, SecondRunLeavesTheVersionAndReportsEveryStampThatDoesNotFit) {
  DiagnosticsCapture capture;
  Upgraded iso("ISO", 220);
  EXPECT_THAT(capture.errors, IsEmpty());
  iso.Continue(120, 220);
  EXPECT_THAT(CheckTexts(capture.errors), Contains(StartsWith("BOOL IS FALSE:")));
  EXPECT_EQ(ValueAt(iso.document(), "Root.Version"), "220");
}

TEST(UpgradeDriver, UndecodedStandardIsLeftAlone) {
  const DiagnosticsCapture capture;
  const TemporaryFolder folder;
  VyrDrwParseStandard standard(folder.Write("STD.xml", "<no standard"));
  standard.Decode();
  int steps = 0;
  Options options;
  EXPECT_LT(standard.Upgrade(-1, options, [&](auto...) { ++steps; }), 0);
  EXPECT_EQ(steps, 0);
  Access::EncodeToVersion(standard, -1, folder / "out.xml");
  EXPECT_FALSE(std::filesystem::exists(folder / "out.xml"));
}

// --- Helpers of the steps ------------------------------------------------------------------------

struct EachChild : testing::Test {
  Document document;
  DiagnosticsCapture capture;

  EachChild() {
    Send(document,
         "node Root:Family\nnode Root.Family:A ISO\nnode Root.Family.A ISO:Text\n"
         "node Root.Family:B\nnode Root.Family.B:Text\nnode Root:Empty\n"
         "value Root.Family.B.Text:Old:int:1");
  }
};

TEST_F(EachChild, AddsAValueBelowOrDirectlyUnderEveryChild) {
  EXPECT_EQ(AddValueToEachChild(document, "Root.Family", ".Text:Gap:float:1.5:0", 1), S_OK);
  EXPECT_EQ(AddValueToEachChild(document, "Root.Family", ":Unit:string:mm:0", 1), S_OK);
  for (const char* child : {"Root.Family.A ISO", "Root.Family.B"}) {
    EXPECT_EQ(ValueAt(document, std::string(child) + ".Text.Gap"), "1.5");
    EXPECT_EQ(ValueAt(document, std::string(child) + ".Unit"), "mm");
  }
}

TEST_F(EachChild, AddsANodeBelowOrDirectlyUnderEveryChild) {
  EXPECT_EQ(AddNodeToEachChild(document, "Root.Family", ":Leader:0", 0), S_OK);
  EXPECT_EQ(AddNodeToEachChild(document, "Root.Family", ".Leader:End:0", 1), S_OK);
  for (const char* child : {"Root.Family.A ISO", "Root.Family.B"}) {
    EXPECT_THAT(NodeNames(document, child), ElementsAre("Text", "Leader"));
    const Node_var leader(document.GetNodeWithPath(std::string(child) + ".Leader"));
    EXPECT_EQ(leader->GetNodeType(), Node::NodePlain);
    const Node_var end(document.GetNodeWithPath(std::string(child) + ".Leader.End"));
    ASSERT_TRUE(end);
    EXPECT_EQ(end->GetNodeType(), Node::NodeInstance) << "the position is that of the command";
  }
}

TEST_F(EachChild, PositionOfTheCommandHolds) {
  EXPECT_EQ(AddValueToEachChild(document, "Root.Family", ":First:int:1:1", 1), S_OK);
  EXPECT_THAT(NodeNames(document, "Root.Family.B"), ElementsAre("First", "Text"));
}

TEST_F(EachChild, FailsWithoutTheNodeOrWithoutChildrenAndChangesNothing) {
  for (const char* path : {"Root.Empty", "Root.No", "No.Family", "Root.Family.No"}) {
    EXPECT_EQ(AddValueToEachChild(document, path, ":Unit:string:mm:0", 1), E_FAIL) << path;
    EXPECT_EQ(AddNodeToEachChild(document, path, ":Leader:0", 0), E_FAIL) << path;
  }
  EXPECT_THAT(NodeNames(document, "Root.Empty"), IsEmpty());
  EXPECT_THAT(NodeNames(document, "Root"), ElementsAre("Family", "Empty"));
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST(Justification, IsConvertedByTheTableAndAnUnknownOneIsReported) {
  struct {
    const char* old;
    const char* converted;
    bool isReported;
  } const cases[] = {{"Left", "ReferenceLine", false},
                     {"Right", "OppositeReferenceLine", false},
                     {"Center", "Center", false},
                     {"left", "Center", true},
                     {"Justified", "Center", true}};
  for (const auto& test : cases) {
    DiagnosticsCapture capture;
    Upgraded iso("ISO", 70);
    Send(iso.document(),
         std::string("change Root.Styles.DimensionsSystem.Default.AlignCumulated:") + test.old +
             "\nchange Root.Styles.DimensionsSystem.Default.AlignStacked:" + test.old);
    iso.Continue(70, 80);
    EXPECT_EQ(ValueAt(iso.document(), "Root.Styles.DimensionsSystem.Default.AlignCumulated"),
              test.converted);
    EXPECT_EQ(ValueAt(iso.document(), "Root.Styles.DimensionsSystem.Default.AlignStacked"),
              test.old);
    if (test.isReported) {
      EXPECT_THAT(CheckTexts(capture.errors), ElementsAre(": Unknown value [VyrDrwParseStandard]"));
    } else {
      EXPECT_THAT(capture.errors, IsEmpty());
    }
  }
}

struct Format {
  std::string name;
  const char* width;
  const char* height;
};

std::vector<Format> ExpectedFormats(const std::string& parent) {
  if (parent == "ANSI" || parent == "ASME") {
    return {{"A ANSI", "279.40", "215.90"},
            {"B ANSI", "431.80", "279.40"},
            {"C ANSI", "558.80", "431.80"},
            {"D ANSI", "863.60", "558.80"},
            {"E ANSI", "1117.60", "863.60"},
            {"F ANSI", "1016.00", "711.20"},
            {"J U.S.Standard", "1219.20", "863.60"},
            {"Letter", "279.40", "215.90"},
            {"Legal", "355.60", "215.90"}};
  }
  return {{"A0 " + parent, "1189", "841"}, {"A1 " + parent, "841", "594"},
          {"A2 " + parent, "594", "420"},  {"A3 " + parent, "420", "297"},
          {"A4 " + parent, "297", "210"},  {"B4 " + parent, "354", "250"},
          {"B5 " + parent, "257", "182"},  {"C5 " + parent, "229", "162"}};
}

TEST(SheetFormats, AreThoseOfTheParentAskedFor) {
  for (const std::string parent : kParents) {
    const DiagnosticsCapture capture;
    VyrDrwParseStandard standard("STD.xml");
    Access::ParentStandard(standard) = parent == "ISO" ? "ANSI" : "ISO";
    Document document;
    EXPECT_EQ(Access::AddSheetFormats(standard, parent.c_str(), document), S_OK);
    EXPECT_THAT(ValuesAt(document, "TypeDef.Formats"),
                ElementsAre("XXX", "0", "0", "LandscapeByDefault"));
    const std::vector<Format> expected = ExpectedFormats(parent);
    const Node_var formats(document.GetNodeWithPath("Root.SheetFormat"));
    ASSERT_TRUE(formats);
    ASSERT_EQ(formats->GetNodes().size(), expected.size()) << parent;
    for (std::size_t i = 0; i < expected.size(); ++i) {
      const Node& format = *formats->GetNodes()[i];
      EXPECT_EQ(format.GetNodeName(), "Formats");
      EXPECT_EQ(format.GetNodeType(), Node::NodeInstance);
      std::vector<std::string> fields;
      for (const auto& value : format.GetValues()) {
        fields.push_back(Text(value->GetValueName()) + "=" + Text(value->GetValue()));
      }
      EXPECT_THAT(fields,
                  ElementsAre("Name=" + expected[i].name, std::string("Width=") + expected[i].width,
                              std::string("Height=") + expected[i].height,
                              "FormatOrientationType=LandscapeByDefault"));
    }
  }
}

TEST(SheetFormats, OfAnUnknownParentFailAndAddNothing) {
  for (const char* parent : {"", "DIN", "iso", "ANSI-ASME"}) {
    VyrDrwParseStandard standard("STD.xml");
    Access::ParentStandard(standard) = parent;
    Document document;
    EXPECT_EQ(Access::AddSheetFormats(standard, parent, document), E_FAIL);
    EXPECT_THAT(NodeNames(document, "Root"), IsEmpty());
    EXPECT_THAT(NodeNames(document, "TypeDef"), IsEmpty());
  }
}

// --- The driver's own steps ----------------------------------------------------------------------

class DriverStep : public testing::TestWithParam<const char*> {
 protected:
  std::string Parent() const { return GetParam(); }
  bool IsAnsiOrAsme() const { return Parent() == "ANSI" || Parent() == "ASME"; }

  DiagnosticsCapture capture_;
};

TEST_P(DriverStep, To2AddsFramesAnnotationAndView) {
  Upgraded standard(Parent(), 1);
  Document& document = standard.document();
  const std::string oldShift = ValueAt(document, "Root.Dimension.CUMLTxtDecalY");
  standard.Continue(1, 2);
  EXPECT_EQ(NodeNames(document, "Root").at(3), "Annotation");
  EXPECT_EQ(NodeNames(document, "Root").at(6), "View");
  EXPECT_EQ(NodeNames(document, "Root").at(7), "Frames");
  const Node_var type(document.GetNodeWithPath("TypeDef.FrameDef"));
  std::vector<std::string> fields;
  for (const auto& value : type->GetValues()) {
    fields.push_back(std::to_string(value->GetType()) + " " + Text(value->GetValueName()) + "=" +
                     Text(value->GetValue()));
  }
  EXPECT_THAT(fields, ElementsAre("3 Name=XXX", "1 Type=0", "1 Behavior=0", "2 Length=0.0",
                                  "2 Height=0.0", "2 Radius=0.0", "2 Offset=0.0",
                                  "2 VerticalMargin=0.0", "2 HorizontalMargin=0.0"));
  EXPECT_EQ(ValueAt(document, "Root.Annotation.Text.LeaderGap"), IsAnsiOrAsme() ? "2.0" : "0.0");
  EXPECT_EQ(ValueAt(document, "Root.Annotation.Text.LeaderVertSpace"), "0.0");
  EXPECT_EQ(ValueAt(document, "Root.View.Generation.ThicknessIndex"), "2");
  EXPECT_THAT(NodeNames(document, "Root.Frames"), SizeIs(20));
  const std::string shift = ValueAt(document, "Root.Dimension.CUMLTxtDecalY");
  EXPECT_EQ(shift, Parent() == "JIS" ? "0.5" : IsAnsiOrAsme() ? "0" : oldShift);
}

TEST_P(DriverStep, To30AddsEnumerationsStylesPatternsAndLineTypes) {
  Upgraded standard(Parent(), 2);
  Document& document = standard.document();
  EXPECT_EQ(ValueAt(document, "Root.Styles"), "(no node)");
  const std::string oldShift = ValueAt(document, "Root.Dimension.CUMLTxtDecalY");
  standard.Continue(2, 30);
  EXPECT_EQ(NodeNames(document, "Root").front(), "Styles");
  EXPECT_THAT(NodeNames(document, "Root.Styles"), SizeIs(27));
  EXPECT_THAT(NodeNames(document, "Root.Patterns"), SizeIs(5));
  EXPECT_THAT(NodeNames(document, "Root.LineTypes"), SizeIs(63 + 1)) << "and the font";
  EXPECT_THAT(NodeNames(document, "Enum"), SizeIs(testing::Ge(47u)));
  EXPECT_EQ(NodeNames(document, "Root.DressUp").front(), "Thread");
  EXPECT_EQ(ValueAt(document, "Root.DressUp.Thread.ThreadRepresentation"),
            Parent() == "ISO" ? "Arc circle" : "Circle");
  EXPECT_EQ(ValueAt(document, "Root.Dimension.CUMLTxtDecalY"), Parent() == "ISO" ? "5" : oldShift);
  EXPECT_EQ(ValueAt(document, "Root.View.Generation.MaterialCutPattern"), "Material");
  EXPECT_EQ(document.Check(), 1);
  EXPECT_THAT(capture_.errors, IsEmpty());
}

TEST_P(DriverStep, To40ExtendsEnumerations) {
  Upgraded standard(Parent(), 30);
  Document& document = standard.document();
  const std::vector<std::string> before = ValuesAt(document, "Enum.Frame");
  standard.Continue(30, 40);
  std::vector<std::string> frames = before;
  frames.insert(frames.begin() + 21, "Parallelogram");
  frames.emplace_back("Parallelogram (fixed)");
  EXPECT_THAT(ValuesAt(document, "Enum.Frame"), ElementsAreArray(frames));
  EXPECT_EQ(ValuesAt(document, "Enum.AnchorLine").back(), "Symbol");
  EXPECT_EQ(ValueAt(document, "Enum.RoughnessContact"), "(no node)");
  EXPECT_EQ(NodeNames(document, "Enum").at(42), "AuthorizedMode");
  EXPECT_THAT(ValuesAt(document, "Enum.AuthorizedMode"),
              ElementsAre("Authorized", "Not Authorized"));
}

TEST_P(DriverStep, To40AddsLayoutsAndTheParallelogram) {
  Upgraded standard(Parent(), 30);
  Document& document = standard.document();
  Send(document,
       "change Root.Dimension.TXTLeaderGap:1.25\n"
       "change Root.Dimension.TXTLeaderVertSpace:0.75");
  standard.Continue(30, 40);
  const char* authorized = IsAnsiOrAsme() ? "Authorized" : "Not Authorized";
  const std::string roughness = "Root.Annotation.Roughness.";
  EXPECT_EQ(ValueAt(document, roughness + "CutOff"), authorized);
  EXPECT_EQ(ValueAt(document, roughness + "OtherRequirement"), authorized);
  EXPECT_EQ(ValueAt(document, roughness + "Min"), "Authorized");
  EXPECT_EQ(ValueAt(document, roughness + "Max"), "Authorized");
  EXPECT_EQ(ValueAt(document, roughness + "LeaderGap"), "1.25");
  EXPECT_EQ(ValueAt(document, roughness + "LeaderVertSpace"), "0.75");
  EXPECT_EQ(ValueAt(document, "Root.General.StandardUpdateMigration"), "Yes");
  for (const char* family : {"Text", "Table", "Balloon", "Tolerance"}) {
    EXPECT_EQ(ValueAt(document, std::string("Root.Styles.") + family + ".Default.Text.Blanking"),
              "Yes");
  }
  EXPECT_EQ(NodeNames(document, "Root.Styles.Text.Default.Text").at(4), "Blanking");
  EXPECT_THAT(NodeNames(document, "Root.Dimension.IntersectionPoint"),
              ElementsAre("INTPTPrintPoint", "INTPTPointStyle", "INTPTShowLine", "INTPTPrintLine",
                          "INTPTLineStyle"));
  EXPECT_EQ(ValueAt(document, "Root.Dimension.IntersectionPoint.INTPTPointStyle"), "Default");
  EXPECT_EQ(ValueAt(document, "Root.Dimension.IntersectionPoint.INTPTPrintLine"), "No");
  EXPECT_EQ(NodeNames(document, "Root.Dimension").at(19), "DIMTolMultiAuto");
  EXPECT_EQ(ValueAt(document, "Root.Dimension.DIMTolMultiAuto"), "1");
  const Node_var frame(document.GetNodeWithPath("Root.Frames"));
  ASSERT_EQ(frame->GetNumOfNode(), 21);
  std::vector<std::string> fields;
  for (const auto& value : frame->GetNodes().back()->GetValues()) {
    fields.push_back(Text(value->GetValueName()) + "=" + Text(value->GetValue()));
  }
  EXPECT_THAT(fields, ElementsAre("Name=Parallelogram", "Type=21", "Behavior=1", "Length=15.0",
                                  "Offset=5.0", "Height=15.0"));
  EXPECT_EQ(document.Check(), 1);
}

TEST_P(DriverStep, To40AddsTheCurvilinearLengthSymbolOfTheParent) {
  struct {
    const char* name;
    Value::Type type;
    const char* ansi;
    const char* jis;
    const char* iso;
  } const rows[] = {
      {"STDDimDisplayArcSymbol", Value::ValueInt, "1", "2", "2"},
      {"STDDimHeightArcSymbol", Value::ValueFloat, "1.270", "1.0", "1.0"},
      {"STDDimOffsetArcSymbol", Value::ValueFloat, "1.270", "0.4", "1.0"},
      {"STDDimUnderlineModeArcSymbol", Value::ValueInt, "0", "0", "0"},
      {"STDDimLengthArcSymbol", Value::ValueFloat, "3.048", "5.0", "3.0"},
      {"STDDimMinLengthArcSymbol", Value::ValueFloat, "6.096", "5.0", "3.0"},
      {"STDDimMaxLengthArcSymbol", Value::ValueFloat, "8.890", "15.0", "10.0"},
  };
  Upgraded standard(Parent(), 40);
  const Node_var symbol(
      standard.document().GetNodeWithPath("Root.Dimension.CurvilinearLengthSymbol"));
  ASSERT_TRUE(symbol);
  ASSERT_EQ(symbol->GetNodes().size(), std::size(rows));
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    const Node& node = *symbol->GetNodes()[i];
    EXPECT_EQ(node.GetNodeName(), rows[i].name);
    const Value& value = *node.GetValues().front();
    EXPECT_EQ(value.GetType(), rows[i].type);
    EXPECT_EQ(value.GetValue(), IsAnsiOrAsme()      ? rows[i].ansi
                                : Parent() == "JIS" ? rows[i].jis
                                                    : rows[i].iso);
  }
}

TEST_P(DriverStep, To40ResetsTheDatumFeatureLeaderThatIsTheOldDefault) {
  const std::string path = "Root.Styles.DatumFeature.Default.Leader.Symbol";
  const std::string oldDefault = Parent() == "ANSI" ? "None" : "WhiteFilledSquare";
  for (const char* symbol : {"None", "WhiteFilledSquare", "SimpleArrow"}) {
    Upgraded standard(Parent(), 30);
    EXPECT_NE(ValueAt(standard.document(), path), "(no node)");
    Send(standard.document(), "change " + path + ":" + symbol);
    standard.Continue(30, 40);
    EXPECT_EQ(ValueAt(standard.document(), path), symbol == oldDefault ? "Automatic" : symbol);
  }
}

TEST_P(DriverStep, To50AddsWhatItSaysAndDropsTheOldDefaults) {
  Upgraded standard(Parent(), 40);
  Document& document = standard.document();
  // A style of the owner's own gets the same as the default one.
  Send(document,
       "node Root.Styles.DatumTarget:Own\nnode Root.Styles.DatumTarget.Own:Graphic\n"
       "node Root.Styles.Sheet:Own");
  standard.Continue(40, 50);
  EXPECT_THAT(ValuesAt(document, "Enum.GenViewsPosMode"), ElementsAre("FixedCG", "FixedAxis"));
  for (const char* style : {"Default", "Own"}) {
    EXPECT_EQ(ValueAt(document, std::string("Root.Styles.Sheet.") + style + ".GenViewsPosMode"),
              "FixedCG");
    const std::string target = std::string("Root.Styles.DatumTarget.") + style;
    EXPECT_EQ(ValueAt(document, target + ".Leader.Symbol"),
              Parent() == "ANSI" ? "None" : "WhiteFilledSquare");
    EXPECT_EQ(ValueAt(document, target + ".Graphic.Linetype"), "1");
    EXPECT_EQ(ValueAt(document, target + ".Graphic.Thickness"), "1");
  }
  EXPECT_EQ(ValueAt(document, "Root.Styles.CoordinateDimension.Default.Leader.Symbol"),
            Parent() == "ANSI" ? "None" : "WhiteFilledSquare");
  EXPECT_EQ(ValueAt(document, "Root.Styles.DatumFeature.Default.Graphic.Linetype"), "1");
  EXPECT_EQ(ValueAt(document, "Root.Styles.DatumFeature.Default.Graphic.Thickness"), "1");
  for (const char* family : {"DistanceLength", "Radius", "Diameter", "Angle", "Chamfer"}) {
    const std::string font = std::string("Root.Styles.") + family + "Dimension.Default.Font.";
    EXPECT_EQ(ValueAt(document, font + "Ratio"), "100.0");
    EXPECT_EQ(ValueAt(document, font + "Spacing"), "20.0");
  }
  EXPECT_EQ(ValuesAt(document, "Enum.FinishingMethod").back(), "UnspecifiedU");
  for (const char* name :
       {"DefaultToleranceFormat", "DefaultNumericalFormatLength", "DefaultNumericalFormatAngle",
        "DefaultTextFont", "DefaultTextFontSize"}) {
    EXPECT_THAT(NodeNames(document, "Root.General"), Not(Contains(name)));
  }
  EXPECT_EQ(document.Check(), 1);
  EXPECT_THAT(capture_.abends, IsEmpty());
}

TEST_P(DriverStep, To60AddsFormatsColoursAndToleranceLists) {
  Upgraded standard(Parent(), 50);
  Document& document = standard.document();
  EXPECT_NE(ValueAt(document, "Root.Dimension.CUMLDimLinTail"), "(no node)");
  standard.Continue(50, 60);
  EXPECT_THAT(
      ValuesAt(document, "Enum.FormatOrientationType"),
      ElementsAre("PortraitByDefault", "LandscapeByDefault", "PortraitOnly", "LandscapeOnly"));
  EXPECT_THAT(ValuesAt(document, "Enum.SheetOrientation"), ElementsAre("Portrait", "Landscape"));
  EXPECT_THAT(NodeNames(document, "Root.SheetFormat"), SizeIs(ExpectedFormats(Parent()).size()));
  EXPECT_THAT(NodeNames(document, "Root.General.SheetColors"),
              ElementsAre("View", "View background", "Detail", "Detail background"));
  for (const std::string kind : {"View", "Detail"}) {
    const std::string colors = "Root.General.SheetColors." + kind;
    EXPECT_EQ(ValueAt(document, colors + ".Color"), "255 255 255");
    EXPECT_EQ(ValueAt(document, colors + " background.Color"), "207 207 230");
    EXPECT_EQ(ValueAt(document, colors + ".Graduated"), "No");
    EXPECT_EQ(ValueAt(document, colors + " background.Graduated"), "No");
  }
  const std::string lists = "Root.General.ToleranceValue.";
  EXPECT_THAT(
      ValuesAt(document, lists + "NumericalToleranceValues"),
      ElementsAre("+-0.05", "+-0.10", "+-0.15", "+-0.20", "+-0.25", "+-0.50", "", "+-0.10"));
  EXPECT_THAT(ValuesAt(document, lists + "AlphanumericalToleranceValues"),
              ElementsAre("H6", "H7", "H8", "H9", "JS", "f7", "g6", "h6", "h7", "js", "", "H8"));
  EXPECT_THAT(ValuesAt(document, lists + "BiAlphanumericalToleranceValues"),
              ElementsAre("H7/f7", "H8/f7", "H7/p6", "P7/h6", "", "H8/f7"));
  EXPECT_THAT(ValuesAt(document, lists + "MultipleToleranceValues"),
              ElementsAre("H6()", "H7()", "H8()", "H9()", "JS()", "f7()", "g6()", "h6()", "h7()",
                          "js()", "", "H8()"));
  EXPECT_EQ(ValueAt(document, "Root.Dimension.CUMLDimLinTail"), "(no node)");
  EXPECT_EQ(document.Check(), 1);
}

TEST_P(DriverStep, To60AddsStyleValues) {
  Upgraded standard(Parent(), 60);
  const auto style = [&](const std::string& path) {
    return ValueAt(standard.document(), "Root.Styles." + path);
  };
  EXPECT_THAT(ValuesAt(standard.document(), "Enum.OffsetMode"),
              ElementsAre("Constant", "Semi", "Free"));
  EXPECT_EQ(style("DimensionsSystem.Default.OffsetMode"), "Constant");
  EXPECT_EQ(style("DimensionsSystem.Default.OffsetLinear"), "10.0");
  EXPECT_EQ(style("DimensionsSystem.Default.OffsetRadial"), "15.0");
  EXPECT_EQ(style("DimensionsSystem.Default.AlignCumulated"), "Center");
  EXPECT_EQ(style("DimensionsSystem.Default.AlignStacked"), "Center");
  EXPECT_EQ(style("DimensionsSystem.Default.AlignAddFunnel"), "Yes");
  for (const char* family :
       {"DistanceLengthDimension", "AngleDimension", "RadiusDimension", "DiameterDimension",
        "ChamferDimension", "CoordinateDimension", "DatumFeature", "DatumTarget"}) {
    EXPECT_EQ(style(std::string(family) + ".Default.Font.ApplyScale"), "No") << family;
  }
  EXPECT_EQ(style("CoordinateDimension.Default.DisplayUnit"), "Yes");
  EXPECT_EQ(style("Tolerance.Default.Text.Mirroring"), "No flip");
  for (const char* line : {"Underline", "Strikethrough", "Overline"}) {
    EXPECT_EQ(style(std::string("CoordinateDimension.Default.Font.") + line), "No");
  }
  EXPECT_EQ(style("DiameterDimension.Default.DimensionLine.TillCenter"),
            IsAnsiOrAsme() ? "No" : "Yes");
  EXPECT_EQ(style("RadiusDimension.Default.DimensionLine.ExtensionFromStandard"), "No");
  EXPECT_EQ(style("DiameterDimension.Default.DimensionLine.ExtensionFromStandard"), "Yes");
  EXPECT_EQ(style("WeldingSymbol.Default.Text.LineSpacing"), "0.0");
  EXPECT_EQ(style("WeldingSymbol.Default.Text.LineSpacingMode"), "Bottom to top");
}

INSTANTIATE_TEST_SUITE_P(All, DriverStep, testing::ValuesIn(kParents),
                         [](const auto& test) { return std::string(test.param); });

TEST(RoughnessRebuild, DerivesTwoValuesFromTheContact) {
  struct {
    const char* contact;
    const char* specificationLine;
    const char* allAround;
  } const rows[] = {{"With specifications", "Yes", "No"},
                    {"With specifications (All surfaces)", "Yes", "Yes"},
                    {"Without specifications", "No", "No"},
                    {"Without specifications (All surfaces)", "No", "Yes"},
                    {"anything else", "No", "Yes"},
                    {"", "No", "Yes"}};
  const DiagnosticsCapture capture;
  for (const auto& row : rows) {
    Upgraded iso("ISO", 30);
    Send(iso.document(),
         std::string("change Root.Styles.RoughnessSymbol.Default.Contact:") + row.contact);
    iso.Continue(30, 40);
    const std::string values = "Root.Styles.RoughnessSymbol.Default.Values.";
    EXPECT_EQ(ValueAt(iso.document(), values + "SpecificationLine"), row.specificationLine)
        << row.contact;
    EXPECT_EQ(ValueAt(iso.document(), values + "AllAround"), row.allAround) << row.contact;
  }
}

TEST(RoughnessRebuild, KeepsTheOwnersValuesAtTheirNewPlaces) {
  const DiagnosticsCapture capture;
  struct {
    const char* oldPath;
    const char* newPath;
    const char* text;
  } const moved[] = {{"Type", "Values.Type", "Removal required"},
                     {"Mode", "Values.Mode", "Crossed"},
                     {"AnchorPoint", "Text.AnchorPoint", "Top right"},
                     {"Graphic.Color", "Graphic.Color", "1 2 3"},
                     {"Font.Name", "Font.Name", "Site font"},
                     {"Font.Bold", "Font.Bold", "Yes"},
                     {"Font.Italic", "Font.Italic", "Yes"},
                     {"Font.Size", "Font.Size", "7.5"}};
  const std::string style = "Root.Styles.RoughnessSymbol.Default.";
  Upgraded iso("ISO", 30);
  for (const auto& row : moved) {
    Send(iso.document(), "change " + style + row.oldPath + ":" + row.text);
  }
  iso.Continue(30, 40);
  for (const auto& row : moved) {
    EXPECT_EQ(ValueAt(iso.document(), style + row.newPath), row.text);
  }
  EXPECT_EQ(iso.document().Check(), 1);
}

TEST(RoughnessRebuild, NewStyleHasTheStatedShape) {
  const DiagnosticsCapture capture;
  Upgraded iso("ISO", 40);
  Document& document = iso.document();
  EXPECT_EQ(NodeNames(document, "Root.Styles").at(17), "RoughnessSymbol");
  EXPECT_THAT(NodeNames(document, "Root.Styles.RoughnessSymbol"), ElementsAre("Default"));
  const std::string style = "Root.Styles.RoughnessSymbol.Default";
  EXPECT_THAT(NodeNames(document, style),
              ElementsAre("Values", "Text", "Graphic", "Font", "Leader"));
  EXPECT_THAT(NodeNames(document, style + ".Values"),
              ElementsAre("Type", "Mode", "SpecificationLine", "AllAround", "FirstRequirement",
                          "SecondRequirement", "OtherRequirement", "ProductionMethod",
                          "MachiningAllowance", "CutOff", "Max", "Min"));
  for (const char* text : {"FirstRequirement", "SecondRequirement", "OtherRequirement",
                           "ProductionMethod", "MachiningAllowance", "CutOff", "Max", "Min"}) {
    EXPECT_EQ(ValueAt(document, style + ".Values." + text), "") << text;
  }
  EXPECT_THAT(NodeNames(document, style + ".Text"),
              ElementsAre("AnchorPoint", "AnchorLine", "Blanking"));
  EXPECT_EQ(ValueAt(document, style + ".Text.AnchorLine"), "Symbol");
  EXPECT_EQ(ValueAt(document, style + ".Text.Blanking"), "Yes");
  EXPECT_EQ(ValueAt(document, style + ".Graphic.Linetype"), "1");
  EXPECT_EQ(ValueAt(document, style + ".Graphic.Thickness"), "1");
  EXPECT_EQ(ValueAt(document, style + ".Font.Ratio"), "100.0");
  EXPECT_EQ(ValueAt(document, style + ".Font.Spacing"), "0.0");
  EXPECT_EQ(ValueAt(document, style + ".Leader.Symbol"), "Automatic");
  EXPECT_EQ(ValueAt(document, style + ".Leader.Delta"), "5.0");
  EXPECT_EQ(ValueAt(document, style + ".Leader.AnchorPoint"), "1");
}

TEST(UnknownParent, IsAFatalErrorAtTheDatumTargetsAndTheStepGoesOn) {
  DiagnosticsCapture capture;
  Upgraded standard("ISO", 40);
  EXPECT_THAT(capture.abends, IsEmpty());
  Access::ParentStandard(standard.standard) = "DIN";
  standard.Continue(40, 50);
  EXPECT_THAT(capture.abends, ElementsAre(StartsWith(kFatalError)));
  for (const char* family : {"DatumTarget", "CoordinateDimension"}) {
    EXPECT_EQ(ValueAt(standard.document(),
                      std::string("Root.Styles.") + family + ".Default.Leader.Symbol"),
              "WhiteFilledSquare");
  }
  EXPECT_EQ(ValueAt(standard.document(), "Root.General.DefaultTextFont"), "(no node)");
}

TEST(UnknownParent, TakesTheLastBranchElsewhereAndKeepsItsDatumFeatureLeader) {
  const DiagnosticsCapture capture;
  Upgraded standard("ISO", 30);
  Document& document = standard.document();
  Access::ParentStandard(standard.standard) = "DIN";
  const std::string leader = "Root.Styles.DatumFeature.Default.Leader.Symbol";
  Send(document, "change " + leader + ":WhiteFilledSquare");
  standard.Continue(30, 40);
  EXPECT_EQ(ValueAt(document, leader), "WhiteFilledSquare");
  EXPECT_EQ(ValueAt(document, "Root.Annotation.Roughness.CutOff"), "Not Authorized");
  EXPECT_EQ(ValueAt(document, "Root.Dimension.CurvilinearLengthSymbol.STDDimMaxLengthArcSymbol"),
            "10.0");
  standard.Continue(50, 60);
  EXPECT_EQ(ValueAt(document, "Root.SheetFormat"), "(no node)");
  EXPECT_EQ(ValueAt(document, "Root.Styles.DiameterDimension.Default.DimensionLine.TillCenter"),
            "Yes");
}

}  // namespace
