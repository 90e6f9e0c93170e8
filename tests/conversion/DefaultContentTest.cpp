#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <regex>
#include <string>
#include <string_view>
#include <vector>

#include "ConversionTables.h"
#include "DiagnosticsCapture.h"
#include "ParseStandardAccess.h"
#include "VyrAnnStandardScript.h"
#include "VyrDrwParseStandardBomProperty.h"

namespace {

using Access = VyrDrwParseStandardAccess;
using Document = VyrAnnStandardXMLParser;
using Node = VyrAnnStandardXMLNode;
using Node_var = VyrAnnStandardXMLNode_var;
using Value = VyrAnnStandardXMLValue;
using Verb = VyrAnnStandardScript::Verb;
using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* kParents[] = {"ISO", "JIS", "ANSI", "ASME"};
constexpr const char* kOnPointer = "ON POINTER ";
constexpr const char* kBoolIsFalse = "BOOL IS FALSE";

// --- Shape of the tables -------------------------------------------------------------------------

struct BuilderTable {
  const char* name;
  std::string_view table;
  int nodes;
  int values;
  /// A row that standards of other parents than the four do not get.
  bool hasRowForKnownParentsOnly = false;
};

const std::vector<BuilderTable>& BuilderTables() {
  static const std::vector<BuilderTable> builders = {
      {"frames", tables::frames, 21, 96},
      {"line types 1", tables::line_types_1, 100, 219},
      // The line font, which is no row, makes it 53.
      {"line types 2", tables::line_types_2, 26, 52},
      {"patterns", tables::patterns, 56, 265},
      {"enumerations", tables::style_enums, 47, 247},
      {"styles", tables::styles, 1, 0},
      {"sheet", tables::style_sheet, 2, 2},
      {"geometry", tables::style_geometry, 10, 14},
      {"dimension 1", tables::style_dimension_1, 23, 80, true},
      {"dimension 2", tables::style_dimension_2, 22, 74, true},
      {"dimension 3", tables::style_dimension_3, 23, 82, true},
      {"dimension 4", tables::style_dimension_4, 22, 75, true},
      {"dimension 5", tables::style_dimension_5, 26, 80, true},
      {"dimension 6", tables::style_dimension_6, 4, 9},
      {"annotation", tables::style_annotation, 43, 168},
      {"dressup", tables::style_dressup, 14, 21},
      {"callout", tables::style_callout, 22, 69},
  };
  return builders;
}

struct Counts {
  int nodes = 0;
  int values = 0;
  int others = 0;
};

Counts CountFor(std::string_view table, const char* parent) {
  Counts counts;
  const VyrAnnStandardScript script(table);
  for (const VyrAnnStandardScript::Command& command : script.GetCommands()) {
    if (!command.AppliesTo(parent)) continue;
    if (command.verb == Verb::Node || command.verb == Verb::Instance) {
      ++counts.nodes;
    } else if (command.verb == Verb::Value || command.verb == Verb::Field) {
      ++counts.values;
    } else {
      ++counts.others;
    }
  }
  return counts;
}

TEST(DefaultContent, EveryBuilderSendsTheStatedNumberOfCommandsForEveryParent) {
  for (const BuilderTable& builder : BuilderTables()) {
    for (const char* parent : kParents) {
      const Counts counts = CountFor(builder.table, parent);
      EXPECT_EQ(counts.nodes, builder.nodes) << builder.name << " " << parent;
      EXPECT_EQ(counts.values, builder.values) << builder.name << " " << parent;
      EXPECT_EQ(counts.others, 0) << builder.name << " " << parent;
    }
  }
}

TEST(DefaultContent, UnknownParentGetsAllRowsButTheOffsetOfDimensionTexts) {
  for (const BuilderTable& builder : BuilderTables()) {
    const Counts counts = CountFor(builder.table, "DIN");
    EXPECT_EQ(counts.nodes, builder.nodes) << builder.name;
    EXPECT_EQ(counts.values, builder.values - (builder.hasRowForKnownParentsOnly ? 1 : 0))
        << builder.name;
  }
}

TEST(DefaultContent, TellingRowsStandAsTheyAreWritten) {
  struct {
    std::string_view table;
    const char* row;
  } const rows[] = {
      {tables::frames, "Root:Frames:8"},
      {tables::frames, "Root.Frames.FrameDef:Name:string:Rectangle:0"},
      {tables::frames, "Root.Frames.FrameDef:Type:int:1:0"},
      {tables::frames, "Root.Frames.FrameDef:Behavior:int:1:0"},
      {tables::frames, "Root.Frames.FrameDef:Length:float:20.0:0"},
      {tables::frames, "Root.Frames.FrameDef:Height:float:10.0:0"},
      {tables::line_types_1, "Root:LineTypes:0"},
      {tables::line_types_1, "Root.LineTypes.LineType1:Pattern:int:65535:0"},
      {tables::line_types_1, "Root.LineTypes.LineType1:Segment:float:0.0:0"},
      {tables::line_types_1, "Root.LineTypes:LineType2:0"},
      {tables::line_types_1, "Root.LineTypes.LineType2.Segment::float:1.0:0,"},
      {tables::line_types_1, "Root.LineTypes.LineType2.Segment::float:-1.0:0,"},
      {tables::patterns, "Root:Patterns:0"},
      {tables::patterns, "TypeDef.AngleValue:Angle:float:45:0"},
      {tables::patterns, "TypeDef.hatchings:nb hatch:int:1:0,"},
      {tables::patterns, "Root.Patterns.motif.motifs:File name:string:DrwPatternMotifwood1.bmp:0,"},
      {tables::style_enums, "Enum:YesNo:0"},
      {tables::style_enums, "Enum.YesNo::string:No:0"},
      {tables::styles, "Root:Styles:1"},
      {tables::style_sheet, "Root.Styles.Sheet.Default:GlobalScale:float.m.0.0:1.0:0"},
      {tables::style_geometry, "Root.Styles.ConstructionPoint.Default:Color:color:140 140 140:0"},
      {tables::style_dimension_3,
       "Root.Styles.RadiusDimension.Default.DimensionLine:TillCenter:enum.YesNo:No:0"},
      {tables::style_dimension_4,
       "Root.Styles.DiameterDimension.Default:OneSymbolDiameter:enum.YesNo:No:0"},
      {tables::style_dimension_5,
       "Root.Styles.ChamferDimension.Default.Chamfer.SecondaryValueDisplayFormat.DualValue:Name:"
       "string:NUM.DIMM:0"},
      {tables::style_dimension_6,
       "Root.Styles.CoordinateDimension.Default:AnchorPoint:enum.AnchorPoint:Top left:0"},
      {tables::style_annotation, "Root.Styles.Text.Default.Font:Name:string::0"},
      {tables::style_annotation,
       "Root.Styles.WeldingSymbol.Default.Leader:Symbol:enum.ArrowEndType:Automatic:0"},
      {tables::style_dressup, "Root.Styles.AreaFill.Default:Pattern:string:STD 5:0"},
      {tables::style_dressup, "Root.Styles.Arrow.Default:TailSymbol:enum.ArrowEndType:None:0"},
      {tables::style_callout,
       "Root.Styles.ProjectionCallout.Default:Type:enum.CalloutTypes:Lines, corners and arrows:0"},
  };
  for (const auto& [table, row] : rows) {
    const VyrAnnStandardScript script(table);
    EXPECT_TRUE(std::any_of(script.GetCommands().begin(), script.GetCommands().end(),
                            [row = row](const auto& command) { return command.text == row; }))
        << row;
  }
}

TEST(DefaultContent, RowsOfPatternsEndInAComma) {
  const VyrAnnStandardScript script(tables::patterns);
  for (const VyrAnnStandardScript::Command& command : script.GetCommands()) {
    const bool isExempt =
        command.text == "Root:Patterns:0" || command.text == "TypeDef.AngleValue:Angle:float:45:0";
    EXPECT_TRUE(isExempt || command.text.ends_with(":0,")) << command.text;
  }
}

// --- What the builders make ----------------------------------------------------------------------

std::string Text(const VyrUnicodeString& text) {
  return text.CString();
}

std::vector<std::string> NodeNames(const Node& node) {
  std::vector<std::string> names;
  for (const Node_var& child : node.GetNodes()) names.push_back(Text(child->GetNodeName()));
  return names;
}

std::vector<std::string> NodeNames(Document& document, const std::string& path) {
  const Node_var node(document.GetNodeWithPath(path));
  return node ? NodeNames(*node) : std::vector<std::string>{"no node " + path};
}

/// The values that a node holds directly, as "name=text".
std::vector<std::string> Fields(const Node& node) {
  std::vector<std::string> fields;
  for (const VyrAnnStandardXMLValue_var& value : node.GetValues()) {
    fields.push_back(Text(value->GetValueName()) + "=" + Text(value->GetValue()));
  }
  return fields;
}

std::string ValueAt(Document& document, const std::string& path) {
  return Text(document.GetValueWithPath(path));
}

/// Text of a field of an instance; "(none)" without it.
std::string Field(const Node& node, const char* name) {
  const VyrAnnStandardXMLValue_var value(node.GetValueByName(name));
  return value ? Text(value->GetValue()) : "(none)";
}

struct DefaultContent : testing::Test {
  VyrDrwParseStandard standard{"STD.xml"};
  Document document;
  DiagnosticsCapture capture;

  void Append(Access::Builder builder, const char* parent = "ISO") {
    Access::ParentStandard(standard) = parent;
    Access::Append(standard, builder, document);
  }
};

using DefaultFrames = DefaultContent;

TEST_F(DefaultFrames, AreTheStatedOnes) {
  for (int i = 0; i < 8; ++i) document.AddNodeWithPath("Root:Before:0", 0);
  Append(Access::kAppendFrames);
  EXPECT_EQ(NodeNames(document, "Root").at(7), "Frames") << "inserted at place 8";
  struct {
    const char* name;
    std::vector<std::string> sizes;
  } const expected[] = {
      {"Rectangle", {"Length=20.0", "Height=10.0"}},
      {"Square", {"Length=20.0"}},
      {"Circle", {"Radius=10.0"}},
      {"ScoredCircle", {"Radius=10.0"}},
      {"Diamond", {"Length=20.0"}},
      {"Triangle", {"Length=30.0", "Height=25.0"}},
      {"RightFlag", {"Length=20.0", "Height=10.0", "Offset=5.0"}},
      {"LeftFlag", {"Length=20.0", "Height=10.0", "Offset=5.0"}},
      {"BothFlag", {"Length=20.0", "Height=10.0", "Offset=5.0"}},
      {"Oblong", {"Length=20.0", "Height=10.0"}},
      {"Ellipse", {"Length=20.0", "Height=10.0"}},
      {"RightOblong", {"Length=20.0", "Height=10.0"}},
      {"LeftOblong", {"Length=20.0", "Height=10.0"}},
      {"Sticking", {"Radius=10.0"}},
      {"Set", {"Radius=10.0", "Offset=2.0"}},
      {"FixedSupport", {"Radius=20.0"}},
      {"Nota", {"Length=30.0", "Height=10.0"}},
      {"SymPart", {"Radius=10.0"}},
      {"SymSet", {"Radius=10.0", "Offset=2.0"}},
      {"ScoredRectangle", {"Length=20.0", "Height=15.0"}},
  };
  const Node_var frames(document.GetNodeWithPath("Root.Frames"));
  ASSERT_TRUE(frames);
  ASSERT_EQ(frames->GetNodes().size(), std::size(expected));
  for (std::size_t i = 0; i < std::size(expected); ++i) {
    const Node& frame = *frames->GetNodes()[i];
    EXPECT_EQ(frame.GetNodeName(), "FrameDef");
    EXPECT_EQ(frame.GetNodeType(), Node::NodeInstance);
    EXPECT_EQ(frame.GetNumOfNode(), 0);
    std::vector<std::string> fields = {std::string("Name=") + expected[i].name,
                                       "Type=" + std::to_string(i + 1), "Behavior=1"};
    fields.insert(fields.end(), expected[i].sizes.begin(), expected[i].sizes.end());
    EXPECT_THAT(Fields(frame), ElementsAreArray(fields));
  }
}

TEST_F(DefaultFrames, AddedTwiceStandTwice) {
  for (int i = 0; i < 8; ++i) document.AddNodeWithPath("Root:Before:0", 0);
  Append(Access::kAppendFrames);
  Append(Access::kAppendFrames);
  const auto names = NodeNames(document, "Root");
  EXPECT_EQ(std::count(names.begin(), names.end(), "Frames"), 2);
}

struct LineType {
  int type;
  int pattern;
  int ratio;
  std::vector<std::string> segments;
};

/// Line type `number` of 1 to 63.
LineType ExpectedLineType(int number) {
  static const std::vector<LineType> first = {
      {1, 65535, 1, {}},
      {1, 13107, 4, {"1.0", "-1.0"}},
      {1, 30583, 4, {"4.0", "-1.5"}},
      {1, 3135, 2, {"7.0", "-1.0", "1.0", "-1.0"}},
      {1, 22359, 8, {"7.0", "-1.0", "1.0", "-1.0"}},
      {1, 52428, 1, {"0.5", "-0.5"}},
      {1, 32763, 4, {"2.0", "-1.0", "10.0", "-1.0"}},
      {1, 65535, 1, {}},
      {2, 70, 1, {}},
      {2, 71, 1, {}},
      {2, 72, 1, {}},
      {2, 73, 1, {}},
      {2, 74, 1, {}},
      {2, 83, 1, {}},
      {2, 84, 1, {}},
      {1, 61455, 1, {}},
      {2, 213, 1, {}},
      {2, 67, 1, {}},
      {2, 66, 1, {}},
  };
  const auto index = static_cast<std::size_t>(number - 1);
  return index < first.size() ? first[index] : LineType{1, 65535, 1, {}};
}

using DefaultLineTypes = DefaultContent;

TEST_F(DefaultLineTypes, AreTheStatedOnes) {
  Append(Access::kAppendLinetypes1);
  EXPECT_THAT(NodeNames(document, "Root.LineTypes"), SizeIs(50));
  Append(Access::kAppendLinetypes2);
  std::vector<std::string> names;
  for (int i = 1; i <= 63; ++i) names.push_back("LineType" + std::to_string(i));
  names.push_back("font");
  EXPECT_THAT(NodeNames(document, "Root.LineTypes"), ElementsAreArray(names));
  for (int i = 1; i <= 63; ++i) {
    const LineType expected = ExpectedLineType(i);
    const std::string path = "Root.LineTypes.LineType" + std::to_string(i);
    EXPECT_THAT(NodeNames(document, path),
                ElementsAre("Availability", "Type", "Pattern", "Ratio", "Segment"));
    EXPECT_EQ(ValueAt(document, path + ".Availability"), "1") << path;
    EXPECT_EQ(ValueAt(document, path + ".Type"), std::to_string(expected.type)) << path;
    EXPECT_EQ(ValueAt(document, path + ".Pattern"), std::to_string(expected.pattern)) << path;
    EXPECT_EQ(ValueAt(document, path + ".Ratio"), std::to_string(expected.ratio)) << path;
    if (i == 1) {
      EXPECT_EQ(ValueAt(document, path + ".Segment"), "0.0");
      continue;
    }
    const Node_var segment(document.GetNodeWithPath(path + ".Segment"));
    ASSERT_TRUE(segment);
    EXPECT_EQ(segment->GetNumOfNode(), 0);
    std::vector<std::string> lengths;
    for (const std::string& length : expected.segments) lengths.push_back("=" + length);
    EXPECT_THAT(Fields(*segment), ElementsAreArray(lengths)) << path;
  }
}

using DefaultLineFont = DefaultContent;

std::vector<std::string> SplitLines(std::string_view text) {
  std::vector<std::string> lines;
  for (;;) {
    const std::size_t end = text.find('\n');
    lines.emplace_back(text.substr(0, end));
    if (end == std::string_view::npos) return lines;
    text.remove_prefix(end + 1);
  }
}

TEST_F(DefaultLineFont, IsOneStringOf285LinesInTheStandard) {
  Append(Access::kAppendLinetypes1);
  Append(Access::kAppendLinetypes2);
  const Node_var font(document.GetNodeWithPath("Root.LineTypes.font"));
  ASSERT_TRUE(font);
  ASSERT_EQ(font->GetNumOfValue(), 1);
  EXPECT_EQ(font->GetValues().front()->GetType(), Value::ValueString);
  const std::vector<std::string> lines = SplitLines(font->GetValues().front()->GetValue().View());
  EXPECT_THAT(lines, SizeIs(285));
  EXPECT_EQ(lines.front(), "60  60");
  for (const char* line :
       {"$ 0020  ;", "$ 0040      60  0  ;",
        "$ 0041  012 036  000 -12  128 000  000 006  036 000  128 000  000 006",
        "/                     LINE-BASED FAMILY", "/ PIPE", "/ \"X\" INTERRUPTIONS",
        "/ \"O\" INTERRUPTIONS", "/ CONTINUOUS + DASH UNDERNEATH",
        "/                     CONTINUOUS FAMILY",
        "/                     ***********************"}) {
    EXPECT_THAT(lines, Contains(line));
  }
}

TEST_F(DefaultLineFont, ConsistsOfCommentsAndOfWholeDefinitions) {
  const std::string number = "([0-9]{3}|-[0-9]{2})";
  const std::string pairs = number + " " + number + "(  " + number + " " + number + ")*";
  const std::regex first("\\$ [0-9]{4}  (;|    60  0  ;|" + pairs + "(  ;)?)");
  const std::regex next(std::string(15, ' ') + pairs + "(  ;)?");
  bool isOpen = false;
  const std::vector<std::string> lines = SplitLines(tables::line_font);
  for (std::size_t i = 1; i < lines.size(); ++i) {
    const std::string& line = lines[i];
    if (line.starts_with('/')) {
      EXPECT_FALSE(isOpen) << "a comment inside a definition, line " << i + 1;
      continue;
    }
    EXPECT_TRUE(std::regex_match(line, isOpen ? next : first)) << line;
    isOpen = !line.ends_with(';');
  }
  EXPECT_FALSE(isOpen);
}

TEST_F(DefaultLineFont, DefinesEveryCharacterOfTheLineTypesOnce) {
  std::vector<int> defined;
  for (const std::string& line : SplitLines(tables::line_font)) {
    if (line.starts_with('$')) defined.push_back(std::stoi(line.substr(2, 4)));
  }
  for (int i = 1; i <= 50; ++i) {
    const LineType lineType = ExpectedLineType(i);
    if (lineType.type != 2) continue;
    EXPECT_EQ(std::count(defined.begin(), defined.end(), lineType.pattern), 1);
  }
  std::sort(defined.begin(), defined.end());
  EXPECT_EQ(std::adjacent_find(defined.begin(), defined.end()), defined.end());
}

using DefaultPatterns = DefaultContent;

std::vector<std::string> InstanceNames(Document& document, const std::string& path,
                                       const char* type) {
  std::vector<std::string> names;
  const Node_var list(document.GetNodeWithPath(path));
  if (!list) return {"no list " + path};
  for (const Node_var& entry : list->GetNodes()) {
    EXPECT_EQ(entry->GetNodeName(), type);
    EXPECT_EQ(entry->GetNodeType(), Node::NodeInstance);
    names.push_back(Field(*entry, "Name"));
  }
  return names;
}

TEST_F(DefaultPatterns, AreTheStatedOnesInOrder) {
  Append(Access::kAppendPatterns);
  EXPECT_THAT(NodeNames(document, "TypeDef"),
              ElementsAre("AngleValue", "hatchings", "dottings", "colorings", "motifs"));
  EXPECT_THAT(NodeNames(document, "Root.Patterns"),
              ElementsAre("AngleList", "hatching", "dotting", "coloring", "motif"));
  EXPECT_THAT(NodeNames(document, "Root.Patterns.AngleList"),
              ElementsAre("AngleValue", "AngleValue", "AngleValue", "AngleValue"));
  EXPECT_THAT(
      InstanceNames(document, "Root.Patterns.hatching", "hatchings"),
      ElementsAre("STD 5", "STD 10", "STD 20", "STD 1", "STD 2", "STD 3", "STD 4", "STD 6", "STD 8",
                  "alu 30", "alu 45", "alu 60", "copper 30", "copper 45", "copper 60"));
  EXPECT_THAT(InstanceNames(document, "Root.Patterns.dotting", "dottings"),
              ElementsAre("dot1", "dot2", "dot3", "dot4", "dot5 green", "dot6 green", "dot7 green",
                          "dot8 green"));
  EXPECT_THAT(InstanceNames(document, "Root.Patterns.coloring", "colorings"),
              ElementsAre("white", "gray 25%", "gray 50%", "gray 75%", "black", "blue", "green",
                          "red", "color 1", "color 2", "color 3"));
  EXPECT_THAT(InstanceNames(document, "Root.Patterns.motif", "motifs"),
              ElementsAre("DrwPatternMotifQN1", "DrwPatternMotifBrick1", "DrwPatternMotifFloor1",
                          "DrwPatternMotifConcret1", "DrwPatternMotifOctagons1",
                          "DrwPatternMotifLath1", "DrwPatternMotifwood1"));
  const Node_var motifs(document.GetNodeWithPath("Root.Patterns.motif"));
  for (const Node_var& motif : motifs->GetNodes()) {
    EXPECT_EQ(Field(*motif, "File name"), Field(*motif, "Name") + ".bmp");
  }
}

TEST_F(DefaultPatterns, EveryEntryHasTheFieldsOfItsTypeAndALineFamilyPerHatch) {
  Append(Access::kAppendPatterns);
  const Node_var hatchings(document.GetNodeWithPath("Root.Patterns.hatching"));
  for (const Node_var& hatching : hatchings->GetNodes()) {
    const int families = std::stoi(Field(*hatching, "nb hatch"));
    for (const char* field : {"angle", "pitch", "offset", "lineType"}) {
      int found = 0;
      for (const auto& value : hatching->GetValues()) found += value->GetValueName() == field;
      EXPECT_EQ(found, families) << Field(*hatching, "Name") << " " << field;
    }
  }
  for (const char* list : {"hatching", "dotting", "coloring", "motif"}) {
    const Node_var type(document.GetNodeWithPath(std::string("TypeDef.") + list + "s"));
    const Node_var entries(document.GetNodeWithPath(std::string("Root.Patterns.") + list));
    ASSERT_TRUE(type);
    for (const Node_var& entry : entries->GetNodes()) {
      for (const auto& field : type->GetValues()) {
        const VyrAnnStandardXMLValue_var value(entry->GetValueByName(field->GetValueName()));
        ASSERT_TRUE(value) << list << " " << Text(field->GetValueName());
        EXPECT_EQ(value->GetType(), field->GetType()) << list << " " << Text(field->GetValueName());
      }
    }
  }
}

using DefaultEnumerations = DefaultContent;

TEST_F(DefaultEnumerations, AreTheStatedOnesInOrder) {
  Append(Access::kAppendStyleEnums);
  struct {
    const char* name;
    std::size_t literals;
  } const expected[] = {
      {"YesNo", 2},
      {"UpDown", 2},
      {"ThreadRep", 2},
      {"FormatOrientation", 2},
      {"ProjectionMethod", 2},
      {"FontStyle", 4},
      {"FontPitch", 2},
      {"StandardMaterial", 2},
      {"Frame", 41},
      {"AnchorPoint", 9},
      {"AnchorLine", 3},
      {"LineSpacingMode", 3},
      {"TextJustification", 3},
      {"TextOrientation", 2},
      {"Mirroring", 5},
      {"TextDisplay", 3},
      {"ArrowEndType", 19},
      {"WeldingSymbol", 22},
      {"SurfaceShape", 6},
      {"FinishingMethod", 7},
      {"AttachmentToCallout", 2},
      {"CalloutArrowHeadType", 4},
      {"CalloutTypes", 4},
      {"DetailCalloutTypes", 3},
      {"SymbolReversal", 5},
      {"FunnelMode", 2},
      {"FunnelSide", 3},
      {"ForeshortenedPosition", 2},
      {"ForeshortenedOrientation", 2},
      {"ValuePosition", 3},
      {"DimOrientationRef", 3},
      {"FakeDimMode", 3},
      {"DimLineMode", 4},
      {"DualValueMode", 4},
      {"DimPrecision", 2},
      {"ChamferMode", 4},
      {"ChamferDisplayType", 2},
      {"FrameElement", 3},
      {"FrameGroup", 4},
      {"DimScoring", 3},
      {"RoughnessMode", 8},
      {"RoughnessType", 3},
      {"RoughnessContact", 4},
      {"TextHAlignment", 3},
      {"TextVAlignment", 3},
      {"ToleranceType", 14},
      {"PointType", 9},
  };
  const Node_var tops(document.GetNodeWithPath("Enum"));
  ASSERT_EQ(tops->GetNodes().size(), std::size(expected));
  for (std::size_t i = 0; i < std::size(expected); ++i) {
    const Node& enumeration = *tops->GetNodes()[i];
    EXPECT_EQ(enumeration.GetNodeName(), expected[i].name);
    EXPECT_EQ(enumeration.GetNodeType(), Node::NodeEnum);
    EXPECT_THAT(enumeration.GetValues(), SizeIs(expected[i].literals)) << expected[i].name;
    std::vector<std::string> literals = Fields(enumeration);
    for (const std::string& literal : literals) EXPECT_TRUE(literal.starts_with("=")) << literal;
    std::sort(literals.begin(), literals.end());
    EXPECT_EQ(std::adjacent_find(literals.begin(), literals.end()), literals.end())
        << "a literal twice in " << expected[i].name;
  }
}

std::vector<std::string> Literals(Document& document, const std::string& enumeration) {
  std::vector<std::string> literals;
  const Node_var node(document.GetNodeWithPath("Enum." + enumeration));
  if (!node) return {"no enumeration " + enumeration};
  for (const auto& value : node->GetValues()) literals.push_back(Text(value->GetValue()));
  return literals;
}

TEST_F(DefaultEnumerations, HoldTheStatedLiteralsInOrder) {
  Append(Access::kAppendStyleEnums);
  EXPECT_THAT(Literals(document, "YesNo"), ElementsAre("No", "Yes"));
  EXPECT_THAT(Literals(document, "ProjectionMethod"), ElementsAre("First angle", "Third angle"));
  EXPECT_THAT(Literals(document, "ArrowEndType"),
              ElementsAre("Automatic", "None", "SimpleArrow", "FilledArrow", "ClosedArrow",
                          "SymetricArrow", "Circle", "FilledCircle", "SymetricCircle",
                          "CrossCircle", "Slash", "Triangle", "FilledTriangle", "WhiteFilledSquare",
                          "BlackFilledSquare", "Plus", "Cross", "DoubleArrow", "WaveArrow"));
  EXPECT_THAT(Literals(document, "CalloutTypes"),
              ElementsAre("Lines and arrows", "Lines, corners and arrows", "Corners ans arrows",
                          "Only one arrow"));
  EXPECT_THAT(Literals(document, "DimOrientationRef"),
              ElementsAre("Screen", "View", "Dimension line"));
}

TEST_F(DefaultEnumerations, FramesAreNoneThenEveryFrameThenEveryFixedFrame) {
  for (int i = 0; i < 8; ++i) document.AddNodeWithPath("Root:Before:0", 0);
  Append(Access::kAppendStyleEnums);
  Append(Access::kAppendFrames);
  std::vector<std::string> expected = {"None"};
  for (const char* suffix : {"", " (fixed)"}) {
    for (std::string name : InstanceNames(document, "Root.Frames", "FrameDef")) {
      if (name == "FixedSupport") name = "Fixed support";
      expected.push_back(name + suffix);
    }
  }
  EXPECT_THAT(Literals(document, "Frame"), ElementsAreArray(expected));
}

struct DefaultStyles : DefaultContent {
  /// Root has a place for the styles to be inserted at, as every standard has.
  DefaultStyles() { document.AddNodeWithPath("Root:General:0", 0); }
  void AppendFor(const char* parent) {
    Append(Access::kAppendStyleEnums, parent);
    Append(Access::kAppendStyles, parent);
  }
};

TEST_F(DefaultStyles, StandInTheStatedOrderEachWithOneDefault) {
  AppendFor("ISO");
  EXPECT_THAT(NodeNames(document, "Root"), ElementsAre("Styles", "General"));
  const std::vector<std::string> families = NodeNames(document, "Root.Styles");
  EXPECT_THAT(
      families,
      ElementsAre("Sheet", "ConstructionPoint", "ConstructionCurve", "Point", "Curve",
                  "DistanceLengthDimension", "AngleDimension", "RadiusDimension",
                  "DiameterDimension", "ChamferDimension", "CoordinateDimension", "Text", "Table",
                  "DatumFeature", "DatumTarget", "Tolerance", "Balloon", "RoughnessSymbol",
                  "WeldingSymbol", "AreaFill", "AxisLine", "CenterLine", "Thread", "Arrow",
                  "ProjectionCallout", "SectionCallout", "DetailCallout"));
  for (const std::string& family : families) {
    EXPECT_THAT(NodeNames(document, "Root.Styles." + family), ElementsAre("Default"));
  }
}

TEST_F(DefaultStyles, SheetHoldsABoundedScale) {
  AppendFor("ISO");
  EXPECT_THAT(NodeNames(document, "Root.Styles.Sheet.Default"),
              ElementsAre("GlobalScale", "ProjectionMethod"));
  const Node_var scale(document.GetNodeWithPath("Root.Styles.Sheet.Default.GlobalScale"));
  const Value& value = *scale->GetValues().front();
  EXPECT_EQ(value.GetType(), Value::ValueFloat);
  EXPECT_EQ(value.GetRangeVal(), 1);
  EXPECT_EQ(value.GetValueName(), "0.0");
}

TEST(DefaultStylesOfParents, FollowTheRulesOfTheirParent) {
  struct {
    const char* parent;
    const char* projection;
    const char* orientation;
    const char* offset;
    const char* symbol;
  } const cases[] = {
      {"ISO", "First angle", "Dimension line", "2.0", "SimpleArrow"},
      {"JIS", "Third angle", "Dimension line", "0.5", "SimpleArrow"},
      {"ANSI", "Third angle", "Screen", "0.0", "FilledArrow"},
      {"ASME", "Third angle", "Screen", "0.0", "FilledArrow"},
      {"DIN", "Third angle", "Dimension line", "", "SimpleArrow"},
  };
  for (const auto& test : cases) {
    const DiagnosticsCapture capture;
    VyrDrwParseStandard standard("STD.xml");
    Access::ParentStandard(standard) = test.parent;
    Document document;
    document.AddNodeWithPath("Root:General:0", 0);
    Access::Append(standard, Access::kAppendStyles, document);
    EXPECT_EQ(ValueAt(document, "Root.Styles.Sheet.Default.ProjectionMethod"), test.projection);
    for (const char* kind : {"DistanceLength", "Angle", "Radius", "Diameter", "Chamfer"}) {
      const std::string style = std::string("Root.Styles.") + kind + "Dimension.Default.";
      EXPECT_EQ(ValueAt(document, style + "Value.OrientationReference"), test.orientation)
          << style << test.parent;
      EXPECT_EQ(ValueAt(document, style + "Value.OffsetY"), test.offset) << style << test.parent;
      const Node_var offset(document.GetNodeWithPath(style + "Value.OffsetY"));
      EXPECT_EQ(offset.Get() == nullptr, std::string_view(test.offset).empty());
      for (const char* symbol : {"Symbols.Symbol1.Type", "Symbols.Symbol2.Type"}) {
        EXPECT_EQ(ValueAt(document, style + symbol), test.symbol) << style << test.parent;
      }
    }
    EXPECT_THAT(capture.errors, IsEmpty());
  }
}

TEST_F(DefaultStyles, ReferOnlyToDefinedLiterals) {
  for (const char* parent : kParents) {
    Document fresh;
    fresh.AddNodeWithPath("Root:General:0", 0);
    Access::ParentStandard(standard) = parent;
    Access::Append(standard, Access::kAppendStyleEnums, fresh);
    Access::Append(standard, Access::kAppendStyles, fresh);
    EXPECT_EQ(fresh.Check(), 1) << parent;
  }
  EXPECT_THAT(capture.errors, IsEmpty());
}

// --- Edits of style families ---------------------------------------------------------------------

struct StyleFamily : testing::Test {
  VyrDrwParseStandard standard{"STD.xml"};
  DiagnosticsCapture capture;

  StyleFamily() {
    Access::ParentStandard(standard) = "ISO";
    Access::Document(standard) = std::make_unique<Document>();
    Run("node Root:Styles\nnode Root.Styles:Callout\nnode Root.Styles:Empty");
    for (const char* style : {"Default", "Second", "Third"}) {
      const std::string path = std::string("Root.Styles.Callout.") + style;
      Run("node Root.Styles.Callout:" + std::string(style) + "\nnode " + path + ":Head\nvalue " +
          path + ".Head:Angle:float:30\nvalue " + path + ".Head:Count:int:1");
    }
  }
  Document& document() { return *Access::Document(standard); }
  void Run(const std::string& text) {
    const VyrAnnStandardScript script(text);
    ASSERT_TRUE(script.GetProblem().IsEmpty());
    for (const auto& command : script.GetCommands()) ASSERT_EQ(command.Run(document()), 0);
  }
  int Change(const char* style = "Root.Styles.Callout", const char* value = "Head.Angle",
             int mask = VyrDrwParseStandard::ISO, Value::Type type = Value::ValueFloat,
             const char* oldValue = "30", const char* newValue = "22.5") {
    return Access::ChangeStyleValue(standard, style, value, mask, type, oldValue, newValue);
  }
  std::vector<std::string> Angles() {
    std::vector<std::string> angles;
    for (const char* style : {"Default", "Second", "Third"}) {
      angles.push_back(
          ValueAt(document(), std::string("Root.Styles.Callout.") + style + ".Head.Angle"));
    }
    return angles;
  }
  /// The one report since the last look begins with `kind`.
  void ExpectReport(const std::string& kind) {
    const auto texts = CheckTexts(capture.errors);
    EXPECT_THAT(texts, ElementsAre(testing::StartsWith(kind + ":")));
    capture.Clear();
  }
};

using ChangeStyleValue = StyleFamily;

TEST_F(ChangeStyleValue, ChangesEveryStyleOfTheFamily) {
  EXPECT_EQ(Change(), 1);
  EXPECT_THAT(Angles(), ElementsAre("22.5", "22.5", "22.5"));
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST_F(ChangeStyleValue, AppliesToTheParentsOfTheMaskOnly) {
  using Standard = VyrDrwParseStandard;
  EXPECT_EQ(Change("Root.Styles.Callout", "Head.Angle", Standard::JIS), 1);
  EXPECT_EQ(Change("Root.No", "No", Standard::JIS | Standard::ANSI | Standard::ASME), 1);
  EXPECT_THAT(Angles(), ElementsAre("30", "30", "30"));
  EXPECT_EQ(Change("Root.Styles.Callout", "Head.Angle", Standard::JIS | Standard::ISO), 1);
  EXPECT_THAT(Angles(), ElementsAre("22.5", "22.5", "22.5"));
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST_F(ChangeStyleValue, MissingArgumentsAreRefused) {
  const auto type = Value::ValueFloat;
  const int iso = VyrDrwParseStandard::ISO;
  const char* const family = "Root.Styles.Callout";
  EXPECT_EQ(Change(nullptr), 0);
  ExpectReport(kOnPointer);
  EXPECT_EQ(Change(family, nullptr), 0);
  ExpectReport(kOnPointer);
  EXPECT_EQ(Change(family, "Head.Angle", 0), 0);
  ExpectReport(kBoolIsFalse);
  EXPECT_EQ(Change(family, "Head.Angle", iso, type, nullptr), 0);
  ExpectReport(kOnPointer);
  EXPECT_EQ(Change(family, "Head.Angle", iso, type, "30", nullptr), 0);
  ExpectReport(kOnPointer);
  EXPECT_THAT(Angles(), ElementsAre("30", "30", "30"));
  Access::Document(standard).reset();
  EXPECT_EQ(Change(), 0);
  ExpectReport(kOnPointer);
}

TEST_F(ChangeStyleValue, UnknownParentIsRefused) {
  Access::ParentStandard(standard) = "DIN";
  EXPECT_EQ(Change(), 0);
  EXPECT_THAT(CheckTexts(capture.errors), Contains(testing::StartsWith("BOOL IS FALSE:")));
  EXPECT_THAT(Angles(), ElementsAre("30", "30", "30"));
}

TEST_F(ChangeStyleValue, FamilyMustExistAndHaveStyles) {
  EXPECT_EQ(Change("Root.Styles.No"), 0);
  ExpectReport(kOnPointer);
  EXPECT_EQ(Change("Root.Styles.Empty"), 0);
  ExpectReport(kBoolIsFalse);
}

TEST_F(ChangeStyleValue, ValueMustBeTheOnlyOneOfItsNodeAndOfTheType) {
  EXPECT_EQ(Change("Root.Styles.Callout", "Head.No"), 0);
  ExpectReport(kOnPointer);
  EXPECT_EQ(Change("Root.Styles.Callout", "Head"), 0) << "a node with children";
  ExpectReport(kBoolIsFalse);
  EXPECT_EQ(Change("Root.Styles.Callout", "Head.Count"), 0) << "an int";
  ExpectReport(kBoolIsFalse);
  Run("field Root.Styles.Callout.Default.Head.Count:Other:int:2");
  EXPECT_EQ(Change("Root.Styles.Callout", "Head.Count", VyrDrwParseStandard::ISO, Value::ValueInt,
                   "1", "2"),
            0)
      << "two values";
  ExpectReport(kBoolIsFalse);
  Run("node Root.Styles.Callout.Default:Hollow");
  EXPECT_EQ(Change("Root.Styles.Callout", "Hollow"), 0) << "no value";
  ExpectReport(kBoolIsFalse);
  EXPECT_THAT(Angles(), ElementsAre("30", "30", "30"));
}

TEST_F(ChangeStyleValue, AnotherOldValueEndsTheOperationAndIsNamedByItsPath) {
  Run("change Root.Styles.Callout.Second.Head.Angle:45");
  EXPECT_EQ(Change(), 0);
  EXPECT_THAT(Angles(), ElementsAre("22.5", "45", "30")) << "the styles before stay changed";
  ASSERT_THAT(capture.errors, SizeIs(1));
  EXPECT_THAT(capture.errors.front(), testing::HasSubstr("Head.Angle"));
}

using AddBomStyle = StyleFamily;

const VyrDrwParseStandardBomProperty kColumns[] = {
    {"Quantity", "26.3", "1"}, {"PartNumber", "62.7", "2"}, {"Type", "32.4", "3"}};

TEST_F(AddBomStyle, AddsTheStyleAndItsColumnsInOrder) {
  Access::AddBomStyle(standard, "BomStyle", kColumns, 3);
  const std::string style = "Root.Styles.BomStyle.Default";
  EXPECT_THAT(NodeNames(document(), "Root.Styles.BomStyle"), ElementsAre("Default"));
  EXPECT_THAT(NodeNames(document(), style),
              ElementsAre("Type", "NoValueSymbol", "NoMaterialLabel", "ItemNumberLabelType",
                          "TableStyle", "Properties"));
  EXPECT_EQ(ValueAt(document(), style + ".Type"), "Summarized");
  EXPECT_EQ(ValueAt(document(), style + ".NoValueSymbol"), "-");
  EXPECT_EQ(ValueAt(document(), style + ".NoMaterialLabel"), "-");
  EXPECT_EQ(ValueAt(document(), style + ".ItemNumberLabelType"), "Number");
  EXPECT_EQ(ValueAt(document(), style + ".TableStyle"), "Default");
  const Node_var type(document().GetNodeWithPath(style + ".Type"));
  EXPECT_EQ(type->GetValues().front()->GetValueName(), "BomType");
  const Node_var label(document().GetNodeWithPath(style + ".ItemNumberLabelType"));
  EXPECT_EQ(label->GetValues().front()->GetValueName(), "BomLabelType");
  const Node_var properties(document().GetNodeWithPath(style + ".Properties"));
  ASSERT_EQ(properties->GetNumOfNode(), 3);
  for (std::size_t i = 0; i < 3; ++i) {
    const Node& column = *properties->GetNodes()[i];
    EXPECT_EQ(column.GetNodeName(), "BomProperties");
    EXPECT_EQ(column.GetNodeType(), Node::NodeInstance);
    EXPECT_THAT(Fields(column),
                ElementsAre(std::string("Name=") + kColumns[i].name, "Title=<Automatic Naming>",
                            std::string("Width=") + kColumns[i].width,
                            std::string("Index=") + kColumns[i].index));
    EXPECT_EQ(column.GetValues()[2]->GetType(), Value::ValueFloat);
    EXPECT_EQ(column.GetValues()[3]->GetType(), Value::ValueInt);
  }
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST_F(AddBomStyle, WithoutColumnsTheStyleStaysAsBuiltSoFar) {
  for (const int count : {0, -1}) {
    const std::string name = "Bom" + std::to_string(-count);
    Access::AddBomStyle(standard, name.c_str(), kColumns, count);
    ExpectReport(kBoolIsFalse);
    EXPECT_THAT(NodeNames(document(), "Root.Styles." + name + ".Default"), SizeIs(6));
    EXPECT_THAT(NodeNames(document(), "Root.Styles." + name + ".Default.Properties"), IsEmpty());
  }
  Access::AddBomStyle(standard, "BomNull", nullptr, 3);
  ExpectReport(kOnPointer);
  EXPECT_THAT(NodeNames(document(), "Root.Styles.BomNull.Default.Properties"), IsEmpty());
}

TEST_F(AddBomStyle, WithoutANameOrADocumentNothingIsAdded) {
  Access::AddBomStyle(standard, nullptr, kColumns, 3);
  ExpectReport(kOnPointer);
  EXPECT_THAT(NodeNames(document(), "Root.Styles"), ElementsAre("Callout", "Empty"));
  Access::Document(standard).reset();
  Access::AddBomStyle(standard, "BomStyle", kColumns, 3);
  ExpectReport(kOnPointer);
}

}  // namespace
