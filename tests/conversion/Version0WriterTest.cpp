#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "DiagnosticsCapture.h"
#include "HostileText.h"
#include "ParseStandardAccess.h"

namespace {

using Access = VyrDrwParseStandardAccess;
using Type = VyrDrwParseKeyword::Type;
using testing::IsEmpty;

// Text as it has to be, put together from the lines' levels and contents.

std::string Line(int level, const std::string& content) {
  return std::string(static_cast<std::size_t>(3 * level), ' ') + content + "\n";
}

std::string Element(int level, const std::string& element, const std::string& name,
                    const std::string& content) {
  return Line(level, "<std:" + element + " name=\"" + name + "\">") + content +
         Line(level, "</std:" + element + ">");
}
std::string Node(int level, const std::string& name, const std::string& content) {
  return Element(level, "node", name, content);
}

/// A value of the kind 'i', 'f' or 's'.
std::string Value(int level, char kind, const std::string& value, const std::string& name = "") {
  const std::string element = kind == 'i' ? "intval" : kind == 'f' ? "floatval" : "strval";
  const std::string attribute = name.empty() ? "" : " name=\"" + name + "\"";
  return Line(level, "<std:" + element + attribute + ">" + value + "</std:" + element + ">");
}

std::string Wrapped(int level, const std::string& name, char kind, const std::string& value) {
  return Node(level, name, Value(level + 1, kind, value));
}

using Values = std::map<std::string, std::string>;

/// Members from "kind name=value;...", with other values for those in `other`.
std::string Members(int level, const std::string& members, const Values& other = {}) {
  std::string text;
  std::istringstream list(members);
  for (std::string member; std::getline(list >> std::ws, member, ';');) {
    const std::size_t equals = member.find('=');
    const std::string name = member.substr(2, equals - 2);
    const auto changed = other.find(name);
    text += Value(level, member[0],
                  changed == other.end() ? member.substr(equals + 1) : changed->second, name);
  }
  return text;
}

constexpr const char* kToleranceType =
    "s Name=TOLXXX;i TolType=2;i TolSepar_1=0;i TolSepar_2=0;f TolSymbolH=1.0;i TolSepTo_1=0;"
    "i TolSepTo_2=0;i TolSepTo_3=0;i TolTrailing=2;i TolFractLine=1;i TolPtOnValue=8;"
    "i TolAnchorPt=2;f TolIntX=0.0;f TolIntY=0.6;f TolExtX=0.6;f TolExtY=0.0;i TolMergeSame=1;"
    "i TolShowNull=2;f TolScale=0.7";
constexpr const char* kDisplayType =
    "s Name=NUMXXX;i NDType=1;i NDUnit=1;i NDFact=1;i NDExise=1;i NDNulFac_1=1;i NDNulFac_2=2;"
    "i NDNulFac_3=1;s NDSepar_1= ;s NDSepar_2= ;s NDSepar_3= ;i NDNulOther=1;i NDAlignFrac=1;"
    "i NDTypFrac=2;i NDFinZer=1;i NDSepNum=11;i NDSep1000=0;f NDGlobFact=1.0;f NDFact_1=1.0;"
    "f NDFact_2=0.0;f NDFact_3=0.0;f NDValPos_1=0.0;f NDValPos_2=0.0;f NDValPos_3=0.0;"
    "f NDSepPos_1=0.0;f NDSepPos_2=0.0;f NDSepPos_3=0.0;f NDSepScl_1=1.0;f NDSepScl_2=0.0;"
    "f NDSepScl_3=0.0;f NDResScl=1.0;f NDRestX=0.5;f NDRestY=0.0;f NDOperY=0.5;i NDSepDen=2";
constexpr const char* kPredefinedTolerance =
    "s Name=TOL_RES1;i TolType=3;i TolSepar_1=0;i TolSepar_2=0;f TolSymbolH=1.0;i TolSepTo_1=0;"
    "i TolSepTo_2=16;i TolSepTo_3=0;i TolTrailing=2;i TolFractLine=1;i TolPtOnValue=9;"
    "i TolAnchorPt=3;f TolIntX=0.0;f TolIntY=0.0;f TolExtX=0.0;f TolExtY=0.0;i TolMergeSame=1;"
    "i TolShowNull=2;f TolScale=1.0";
constexpr const char* kPredefinedDisplay =
    "s Name=;i NDType=1;i NDUnit=1;f NDGlobFact=1.0;i NDNulFac_1=1;i NDNulFac_2=2;i NDNulFac_3=1;"
    "i NDExise=1;i NDSep1000=0;f NDFact_1=1.0;f NDFact_2=0.0;f NDFact_3=0.0;f NDValPos_1=0.0;"
    "f NDValPos_2=0.0;f NDValPos_3=0.0;s NDSepar_1=;s NDSepar_2=;s NDSepar_3=;f NDSepScl_1=1.0;"
    "f NDSepScl_2=0.0;f NDSepScl_3=0.0;f NDSepPos_1=0.0;f NDSepPos_2=0.0;f NDSepPos_3=0.0;"
    "f NDRestY=0.0;i NDFinZer=1;i NDSepNum=11;i NDTypFrac=2;i NDSepDen=2;f NDOperY=0.5;"
    "i NDNulOther=1;f NDResScl=1.0;i NDFact=1;f NDRestX=0.5";
constexpr const char* kThickness = "i Availability=0;i Pixel=1;f mm=0.13";

std::string Tolerance(const std::string& members) {
  return Element(4, "typeval", "ToleranceDisplay", members);
}
std::string Display(const std::string& members) {
  return Element(4, "typeval", "NumericalDisplay", members);
}

std::string PredefinedDisplays() {
  const Values displays[] = {
      {{"Name", "micron"}, {"NDGlobFact", "0.001"}},
      {{"Name", "mm"}, {"NDGlobFact", "1.0"}},
      {{"Name", "cm"}, {"NDGlobFact", "10.0"}},
      {{"Name", "m"}, {"NDGlobFact", "1000.0"}},
      {{"Name", "km"}, {"NDGlobFact", "1000000.0"}},
      {{"Name", "in"}, {"NDUnit", "2"}, {"NDGlobFact", "1"}},
      {{"Name", "ftinch"},
       {"NDUnit", "2"},
       {"NDFact_2", "12.0"},
       {"NDSepar_1", "\""},
       {"NDSepar_2", "'"},
       {"NDSepScl_2", "1.0"},
       {"NDNulOther", "2"},
       {"NDFact", "2"},
       {"NDRestX", "0.0"}},
      {{"Name", "grade"}, {"NDType", "2"}, {"NDUnit", "5"}},
  };
  std::string text;
  for (const Values& display : displays) text += Display(Members(5, kPredefinedDisplay, display));
  return text;
}

std::string General(const std::vector<std::string>& sizes) {
  std::string sizeValues;
  for (const std::string& size : sizes) sizeValues += Value(3, 'f', size);
  const std::string none = Value(3, 's', "");
  return Node(
      1, "General",
      Node(2, "AllowedToleranceFormats", Repeated(none, 50)) +
          Wrapped(2, "DefaultToleranceFormat", 's', "") +
          Node(2, "AllowedNumericalFormats", Repeated(none, 50)) +
          Wrapped(2, "DefaultNumericalFormatLength", 's', "NUM.DIMM") +
          Wrapped(2, "DefaultNumericalFormatAngle", 's', "NUM.ADMS") +
          Node(2, "AllowedTextFonts", Repeated(none, 100)) +
          Wrapped(2, "DefaultTextFont", 's', "") +
          Node(2, "AllowedTextFontSizes", sizeValues + Repeated(Value(3, 'f', "0.0"), 100)) +
          Wrapped(2, "DefaultTextFontSize", 'f', "3.5"));
}

std::string DressUp(const std::string& side, const std::string& angle) {
  const auto symbols = [&](const std::vector<const char*>& names, const std::string& content) {
    std::string text;
    for (const char* name : names) text += Node(3, name, content);
    return text;
  };
  const std::string length = Wrapped(4, "Length", 'f', side);
  const std::string arrow = length + Wrapped(4, "Angle", 'f', angle);
  const std::string circle = Wrapped(4, "Diameter", 'f', side);
  return Node(
      1, "DressUp",
      Node(2, "Symbols",
           symbols({"SimpleArrow", "FilledArrow", "ClosedArrow", "SymetricArrow"}, arrow) +
               symbols({"Circle", "FilledCircle", "SymetricCircle", "CrossCircle"}, circle) +
               symbols({"Slash", "Triangle", "FilledTriangle", "WhiteFilledSquare",
                        "BlackFilledSquare", "Plus", "Cross"},
                       length) +
               symbols({"DoubleArrow"}, arrow) + symbols({"WaveArrow"}, circle)));
}

const std::vector<std::string> kIsoSizes = {"2.5", "3.5", "5.0", "7.0", "10.0", "14.0", "20.0"};
const std::vector<std::string> kJisSizes = {"2.24", "2.5", "3.15", "3.5",  "4.5",  "5.0",
                                            "6.3",  "7.0", "9.0",  "10.0", "14.0", "20.0"};
const std::vector<std::string> kAnsiSizes = {"0.25", "0.35", "0.5", "0.7", "1.0",  "1.4",  "2.0",
                                             "2.5",  "3.5",  "5.0", "7.0", "10.0", "14.0", "20.0"};

int CountOf(const std::string& text, const std::string& part) {
  int count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

TEST(Version0, TypedefsHaveTheirMembersAndDefaults) {
  EXPECT_EQ(Access::Written(VyrDrwParseStandard("s"), Access::kTypedefs),
            Element(1, "typedef", "ToleranceDisplay", Members(2, kToleranceType)) +
                Element(1, "typedef", "NumericalDisplay", Members(2, kDisplayType)) +
                Element(1, "typedef", "VyrThickness", Members(2, kThickness)));
}

TEST(Version0, AdditionalParametersFollowTheParentStandard) {
  struct {
    const char* parent;
    std::vector<std::string> sizes;
    std::size_t allSizes;
  } const cases[] = {
      {"ISO", kIsoSizes, 107},   {"JIS", kJisSizes, 112}, {"ANSI", kAnsiSizes, 114},
      {"ASME", kAnsiSizes, 114}, {"", kIsoSizes, 107},    {"jis", kIsoSizes, 107},
  };
  for (const auto& test : cases) {
    VyrDrwParseStandard standard("s");
    Access::ParentStandard(standard) = test.parent;
    EXPECT_EQ(test.sizes.size() + 100, test.allSizes);
    EXPECT_EQ(Access::Written(standard, Access::kAdditionalParameters),
              "\n" + General(test.sizes) + "\n" + DressUp("2.0", "30.0"))
        << test.parent;
  }
}

TEST(Version0, SeventeenSymbolsTakeTheSizeOfTheSimpleArrow) {
  VyrDrwParseStandard standard("s");
  Access::Add(standard, "SYMBArrowAngle", Type::Float, "20.5");
  EXPECT_EQ(Access::Written(standard, Access::kAdditionalParameters),
            "\n" + General(kIsoSizes) + "\n" + DressUp("2.0", "20.5"));
  Access::Add(standard, "SYMBArrowSide", Type::Float, "4.25");
  Access::Add(standard, "SYMBArrowSide", Type::Float, "the first counts");
  const std::string text = Access::Written(standard, Access::kAdditionalParameters);
  EXPECT_EQ(text, "\n" + General(kIsoSizes) + "\n" + DressUp("4.25", "20.5"));
  EXPECT_EQ(CountOf(text, "\n" + std::string(9, ' ') + "<std:node "), 17);
}

TEST(Version0, DimensionIsWrittenOnlyWithParameters) {
  VyrDrwParseStandard standard("s");
  EXPECT_EQ(Access::Written(standard, Access::kMigratedParameters), "");
  Access::Parameters(standard).push_back(nullptr);
  EXPECT_EQ(Access::Written(standard, Access::kMigratedParameters),
            "\n" + Node(1, "Dimension", ""));
}

TEST(Version0, DimensionHoldsTheParametersOutsideSectionsInOrder) {
  VyrDrwParseStandard standard("s");
  Access::Add(standard, "ParentStandard", Type::Word, "ISO");
  Access::Add(standard, "TolType", Type::Int, "1", "T", "TOLERANCE");
  Access::Add(standard, "DIMLTail", Type::Float, "2.0");
  Access::Parameters(standard).push_back(nullptr);
  Access::Add(standard, "NDType", Type::Int, "1", "D", "NUMERICAL_DISPLAY");
  Access::Add(standard, "DIMTYPos", Type::Int, "1");
  EXPECT_EQ(Access::Written(standard, Access::kMigratedParameters),
            "\n" + Node(1, "Dimension",
                        Wrapped(2, "ParentStandard", 's', "ISO") +
                            Wrapped(2, "DIMLTail", 'f', "2.0") + Wrapped(2, "DIMTYPos", 'i', "1")));
}

TEST(Version0, PredefinedDescriptionsAreTheReadyMadeOnes) {
  const VyrDrwParseStandard standard("s");
  EXPECT_EQ(Access::WrittenPredefined(standard, 0), Tolerance(Members(5, kPredefinedTolerance)));
  const std::string displays = Access::WrittenPredefined(standard, 1);
  EXPECT_EQ(displays, PredefinedDisplays());
  EXPECT_EQ(CountOf(displays, "<std:typeval "), 8);
  EXPECT_EQ(CountOf(displays, "\n"), 8 * (34 + 2)) << "34 members between two lines each";
}

TEST(Version0, DescriptionsWithoutParametersHoldThePredefinedOnes) {
  EXPECT_EQ(Access::Written(VyrDrwParseStandard("s"), Access::kDescriptions),
            "\n" + Node(2, "ToleranceFormats", Tolerance(Members(5, kPredefinedTolerance))) + "\n" +
                Node(2, "ValueFormats", PredefinedDisplays()));
}

TEST(Version0, DescriptionsOpenAnInstanceWhereTheDescriptionChanges) {
  VyrDrwParseStandard standard("s");
  Access::Add(standard, "TolName", Type::String, "A", "A", "TOLERANCE");
  Access::Add(standard, "DIMLTail", Type::Float, "2.0");
  Access::Add(standard, "NDName", Type::String, "A", "A", "NUMERICAL_DISPLAY");
  Access::Parameters(standard).push_back(nullptr);
  Access::Add(standard, "TolType", Type::Int, "1", "A", "TOLERANCE");
  Access::Add(standard, "TolName", Type::String, "B", "B", "TOLERANCE");
  Access::Add(standard, "TolScale", Type::Float, "0.7", "A", "TOLERANCE");
  Access::Add(standard, "Other", Type::Int, "1", "A", "SECTION");
  Access::Add(standard, "NDType", Type::Int, "2", "A", "NUMERICAL_DISPLAY");
  EXPECT_EQ(
      Access::Written(standard, Access::kDescriptions),
      "\n" +
          Node(2, "ToleranceFormats",
               Tolerance(Members(5, kPredefinedTolerance)) +
                   Tolerance(Members(5, "s Name=A;i TolType=1")) +
                   Tolerance(Members(5, "s Name=B")) + Tolerance(Members(5, "f TolScale=0.7"))) +
          "\n" +
          Node(2, "ValueFormats",
               PredefinedDisplays() + Display(Members(5, "s Name=A;i NDType=2"))));
}

TEST(Version0, ThicknessTableHas8AvailableAnd47UnavailableThicknesses) {
  const char* const millimetres[] = {"0.13", "0.35", "0.70", "1.00",
                                     "1.40", "2.00", "2.30", "2.60"};
  std::string table;
  int pixel = 0;
  for (const char* thickness : millimetres) {
    const Values values = {
        {"Availability", "1"}, {"Pixel", std::to_string(++pixel)}, {"mm", thickness}};
    table += Element(1, "typeval", "VyrThickness", Members(2, kThickness, values));
  }
  table += Repeated(Element(1, "typeval", "VyrThickness", Members(2, kThickness)), 47);
  const std::string text = Access::Written(VyrDrwParseStandard("s"), Access::kThicknessTable);
  EXPECT_EQ(text, "\n" + Node(1, "LineThickness", table));
  EXPECT_EQ(CountOf(text, "<std:typeval "), 55);
}

TEST(Version0, SectionsStandInTheirOrderInsideTheRoot) {
  for (const bool hasParameters : {false, true}) {
    VyrDrwParseStandard standard("s");
    Access::ParentStandard(standard) = "JIS";
    if (hasParameters) Access::Add(standard, "DIMLTail", Type::Float, "2.0");
    std::string expected =
        "<?xml version=\"1.0\" ?>\n"
        "<std:node name=\"drafting\" "
        "xmlns:std=\"http://schemas.hol-standard.example/drafting/std\">\n";
    for (const Access::Writer section :
         {Access::kTypedefs, Access::kAdditionalParameters, Access::kMigratedParameters,
          Access::kDescriptions, Access::kThicknessTable}) {
      expected += Access::Written(standard, section);
    }
    EXPECT_EQ(Access::ComposedText(standard), expected + "</std:node>\n");
    EXPECT_EQ(CountOf(expected, "<std:node name=\"Dimension\">"), hasParameters ? 1 : 0);
  }
}

TEST(Version0, SectionsAreAppended) {
  const VyrDrwParseStandard standard("s");
  for (const Access::Writer section : {Access::kTypedefs, Access::kAdditionalParameters,
                                       Access::kDescriptions, Access::kThicknessTable}) {
    VyrUnicodeString text = "before";
    (standard.*section)(text);
    EXPECT_EQ(text, VyrUnicodeString("before" + Access::Written(standard, section)));
  }
}

TEST(Version0, MarkupInValuesAndNamesIsEscaped) {
  VyrDrwParseStandard standard("s");
  Access::Add(standard, "A<&>\"", Type::String, "a<b>&amp;c");
  EXPECT_EQ(
      Access::Written(standard, Access::kMigratedParameters),
      "\n" + Node(1, "Dimension", Wrapped(2, "A&lt;&amp;&gt;&quot;", 's', "a&lt;b&gt;&amp;amp;c")));
}

TEST(Version0, ValuesComeBackFromTheTextAsTheyWere) {
  const char* const values[] = {"<&>",  "\"",   "'",  "\"quoted\"", "]]>",   " ",
                                " mm ", "&lt;", "\t", "a\rb",       "é寸法", ""};
  for (const char* value : values) {
    SCOPED_TRACE(value);
    VyrDrwParseStandard standard("s");
    Access::Add(standard, "DIMLTail", Type::String, value);
    Access::Add(standard, "NDSepar_1", Type::String, value, "D", "NUMERICAL_DISPLAY");
    const DiagnosticsCapture capture;
    VyrAnnStandardXMLParser document;
    ASSERT_EQ(document.DecodeXML(Access::ComposedText(standard), 0), 0);
    EXPECT_EQ(document.GetValueWithPath("Root.Dimension.DIMLTail"), value);
    const VyrAnnStandardXMLNode_var formats(document.GetNodeWithPath("Root.ValueFormats"));
    ASSERT_TRUE(formats);
    ASSERT_EQ(formats->GetNumOfNode(), 8 + 1);
    EXPECT_EQ(formats->GetNodes().back()->GetValues().at(0)->GetValue(), value);
    EXPECT_THAT(capture.errors, IsEmpty());
  }
}

}  // namespace
