#include <climits>

#include "ModelTest.h"
#include "PathCommand.h"

namespace modeltest {
namespace {

TEST(PathCommand, NodeFieldsEndAtTheFirstTwoColons) {
  constexpr const char* rows[][4] = {
      // command, path, name, position
      {"Root:Dimension:0", "Root", "Dimension", "0"},
      {"Root:Dimension", "Root", "Dimension", ""},
      {"Root.Styles.Sheet:A0 ISO:0", "Root.Styles.Sheet", "A0 ISO", "0"},
      {"Root", "Root", "", ""},
      {"Root:", "Root", "", ""},
      {"Root::3", "Root", "", "3"},
      {"", "", "", ""},
      {":N", "", "N", ""},
      {"Root:N:1:2:3", "Root", "N", "1:2:3"},
      {"Root: N : 2", "Root", " N ", " 2"},
      {"Root:寸法:7", "Root", "寸法", "7"},
  };
  for (const auto& [command, path, name, position] : rows) {
    const NodeCommand parsed = NodeCommand::Parse(command);
    EXPECT_EQ(parsed.path, path) << command;
    EXPECT_EQ(parsed.name, name) << command;
    EXPECT_EQ(parsed.position, position) << command;
  }
}

TEST(PathCommand, ValueFieldsEndAtTheFirstFourColonsAndMissingOnesAreEmpty) {
  constexpr const char* rows[][6] = {
      // command, path, name, type, value, position
      {"Root.D:X:int:1:20", "Root.D", "X", "int", "1", "20"},
      {"Root.D:X:float.m.0.0:1.0:0,", "Root.D", "X", "float.m.0.0", "1.0", "0,"},
      {"Enum.Frame::string:Parallelogram:22,", "Enum.Frame", "", "string", "Parallelogram", "22,"},
      {"Root.E:ToleranceValue:string:", "Root.E", "ToleranceValue", "string", "", ""},
      {"Root.E:T:string", "Root.E", "T", "string", "", ""},
      {"Root.E:T", "Root.E", "T", "", "", ""},
      {"Root.E", "Root.E", "", "", "", ""},
      {"", "", "", "", "", ""},
      {"::::", "", "", "", "", ""},
      {"a:b:c:d:e:f:g", "a", "b", "c", "d", "e:f:g"},
  };
  for (const auto& [command, path, name, type, value, position] : rows) {
    const ValueCommand parsed = ValueCommand::Parse(command);
    EXPECT_EQ(parsed.path, path) << command;
    EXPECT_EQ(parsed.name, name) << command;
    EXPECT_EQ(parsed.type, type) << command;
    EXPECT_EQ(parsed.value, value) << command;
    EXPECT_EQ(parsed.position, position) << command;
  }
}

struct TypeRow {
  const char* field;
  Value::Type type;
  const char* qualifier;
  int rangeVal;
  bool isKnown;
};
constexpr TypeRow kTypes[] = {
    {"int", Value::ValueInt, "", 0, true},
    {"float", Value::ValueFloat, "", 0, true},
    {"string", Value::ValueString, "", 0, true},
    {"color", Value::ValueColor, "", 0, true},
    {"enum.YesNo", Value::ValueEnum, "YesNo", 0, true},
    {"enum.A.B", Value::ValueEnum, "A.B", 0, true},
    {"enum.", Value::ValueEnum, "", 0, true},
    {"float.m.0.5", Value::ValueFloat, "0.5", 1, true},
    {"float.m.0", Value::ValueFloat, "0", 1, true},
    {"float.m.-1.5", Value::ValueFloat, "-1.5", 1, true},
    {"float..0.5", Value::ValueFloat, "0.5", 1, true},
    {"float.m.", Value::ValueFloat, "", 1, true},
    // Any other text with a dot is a string without a word about it...
    {"float.m", Value::ValueString, "", 0, true},
    {"float.", Value::ValueString, "", 0, true},
    {"int.m.0", Value::ValueString, "", 0, true},
    {"Enum.YesNo", Value::ValueString, "", 0, true},
    {".", Value::ValueString, "", 0, true},
    // ... and any other text without one is wrong.
    {"integer", Value::ValueString, "", 0, false},
    {"enum", Value::ValueString, "", 0, false},
    {"Int", Value::ValueString, "", 0, false},
    {" int", Value::ValueString, "", 0, false},
    {"int ", Value::ValueString, "", 0, false},
    {"", Value::ValueString, "", 0, false},
};

TEST(PathCommand, TypeFieldsGiveTypeQualifierAndRangeFlag) {
  for (const TypeRow& row : kTypes) {
    const ValueTypeField parsed = ValueTypeField::Parse(row.field);
    EXPECT_EQ(parsed.type, row.type) << row.field;
    EXPECT_EQ(parsed.qualifier, row.qualifier) << row.field;
    EXPECT_EQ(parsed.rangeVal, row.rangeVal) << row.field;
    EXPECT_EQ(parsed.isKnown, row.isKnown) << row.field;
  }
}

TEST(PathCommand, PositionsAreReadAsScanfReadsAnIntegerAndBelowOneAppend) {
  constexpr int append = -1;
  constexpr std::pair<const char*, int> rows[] = {{"", append},
                                                  {"0", append},
                                                  {"0,", append},
                                                  {"-1", append},
                                                  {"-5,", append},
                                                  {"-2147483648", append},
                                                  {"1", 0},
                                                  {"3,", 2},
                                                  {"22,", 21},
                                                  {" 4", 3},
                                                  {"\t\n\v\f\r 4", 3},
                                                  {"+4", 3},
                                                  {" -4x", append},
                                                  {"20 last", 19},
                                                  {"007", 6},
                                                  {"1.9", 0},
                                                  {"2:3", 1},
                                                  {"0x10", append},
                                                  {"2147483647", INT_MAX - 1}};
  for (const auto& [field, index] : rows) {
    EXPECT_EQ(ParsePosition(field), std::optional<int>(index)) << "'" << field << "'";
  }
}

TEST(PathCommand, PositionsWithoutALeadingIntegerOf32BitsAreBad) {
  for (const char* field :
       {"abc", ",", ",0", "-", "+", "+-1", "-+1", "--1", "++1", "- 1", " ", "x1", ".5", ":1",
        "2147483648", "-2147483649", "99999999999999999999", "１"}) {
    EXPECT_EQ(ParsePosition(field), std::nullopt) << "'" << field << "'";
  }
}

}  // namespace
}  // namespace modeltest
