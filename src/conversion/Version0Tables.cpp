#include "Version0Tables.h"

#include <algorithm>
#include <string_view>

namespace {

using enum VyrDrwParseKeyword::Type;

constexpr Version0Member kToleranceDisplayType[] = {
    {String, "Name", "TOLXXX"}, {Int, "TolType", "2"},        {Int, "TolSepar_1", "0"},
    {Int, "TolSepar_2", "0"},   {Float, "TolSymbolH", "1.0"}, {Int, "TolSepTo_1", "0"},
    {Int, "TolSepTo_2", "0"},   {Int, "TolSepTo_3", "0"},     {Int, "TolTrailing", "2"},
    {Int, "TolFractLine", "1"}, {Int, "TolPtOnValue", "8"},   {Int, "TolAnchorPt", "2"},
    {Float, "TolIntX", "0.0"},  {Float, "TolIntY", "0.6"},    {Float, "TolExtX", "0.6"},
    {Float, "TolExtY", "0.0"},  {Int, "TolMergeSame", "1"},   {Int, "TolShowNull", "2"},
    {Float, "TolScale", "0.7"},
};

constexpr Version0Member kNumericalDisplayType[] = {
    {String, "Name", "NUMXXX"},   {Int, "NDType", "1"},         {Int, "NDUnit", "1"},
    {Int, "NDFact", "1"},         {Int, "NDExise", "1"},        {Int, "NDNulFac_1", "1"},
    {Int, "NDNulFac_2", "2"},     {Int, "NDNulFac_3", "1"},     {String, "NDSepar_1", " "},
    {String, "NDSepar_2", " "},   {String, "NDSepar_3", " "},   {Int, "NDNulOther", "1"},
    {Int, "NDAlignFrac", "1"},    {Int, "NDTypFrac", "2"},      {Int, "NDFinZer", "1"},
    {Int, "NDSepNum", "11"},      {Int, "NDSep1000", "0"},      {Float, "NDGlobFact", "1.0"},
    {Float, "NDFact_1", "1.0"},   {Float, "NDFact_2", "0.0"},   {Float, "NDFact_3", "0.0"},
    {Float, "NDValPos_1", "0.0"}, {Float, "NDValPos_2", "0.0"}, {Float, "NDValPos_3", "0.0"},
    {Float, "NDSepPos_1", "0.0"}, {Float, "NDSepPos_2", "0.0"}, {Float, "NDSepPos_3", "0.0"},
    {Float, "NDSepScl_1", "1.0"}, {Float, "NDSepScl_2", "0.0"}, {Float, "NDSepScl_3", "0.0"},
    {Float, "NDResScl", "1.0"},   {Float, "NDRestX", "0.5"},    {Float, "NDRestY", "0.0"},
    {Float, "NDOperY", "0.5"},    {Int, "NDSepDen", "2"},
};

constexpr Version0Member kThicknessType[] = {
    {Int, "Availability", "0"},
    {Int, "Pixel", "1"},
    {Float, "mm", "0.13"},
};

constexpr Version0Member kPredefinedTolerance[] = {
    {String, "Name", "TOL_RES1"}, {Int, "TolType", "3"},        {Int, "TolSepar_1", "0"},
    {Int, "TolSepar_2", "0"},     {Float, "TolSymbolH", "1.0"}, {Int, "TolSepTo_1", "0"},
    {Int, "TolSepTo_2", "16"},    {Int, "TolSepTo_3", "0"},     {Int, "TolTrailing", "2"},
    {Int, "TolFractLine", "1"},   {Int, "TolPtOnValue", "9"},   {Int, "TolAnchorPt", "3"},
    {Float, "TolIntX", "0.0"},    {Float, "TolIntY", "0.0"},    {Float, "TolExtX", "0.0"},
    {Float, "TolExtY", "0.0"},    {Int, "TolMergeSame", "1"},   {Int, "TolShowNull", "2"},
    {Float, "TolScale", "1.0"},
};

constexpr Version0Member kPredefinedDisplayMembers[] = {
    {String, "Name", ""},         {Int, "NDType", "1"},         {Int, "NDUnit", "1"},
    {Float, "NDGlobFact", "1.0"}, {Int, "NDNulFac_1", "1"},     {Int, "NDNulFac_2", "2"},
    {Int, "NDNulFac_3", "1"},     {Int, "NDExise", "1"},        {Int, "NDSep1000", "0"},
    {Float, "NDFact_1", "1.0"},   {Float, "NDFact_2", "0.0"},   {Float, "NDFact_3", "0.0"},
    {Float, "NDValPos_1", "0.0"}, {Float, "NDValPos_2", "0.0"}, {Float, "NDValPos_3", "0.0"},
    {String, "NDSepar_1", ""},    {String, "NDSepar_2", ""},    {String, "NDSepar_3", ""},
    {Float, "NDSepScl_1", "1.0"}, {Float, "NDSepScl_2", "0.0"}, {Float, "NDSepScl_3", "0.0"},
    {Float, "NDSepPos_1", "0.0"}, {Float, "NDSepPos_2", "0.0"}, {Float, "NDSepPos_3", "0.0"},
    {Float, "NDRestY", "0.0"},    {Int, "NDFinZer", "1"},       {Int, "NDSepNum", "11"},
    {Int, "NDTypFrac", "2"},      {Int, "NDSepDen", "2"},       {Float, "NDOperY", "0.5"},
    {Int, "NDNulOther", "1"},     {Float, "NDResScl", "1.0"},   {Int, "NDFact", "1"},
    {Float, "NDRestX", "0.5"},
};

constexpr Version0Member kMicron[] = {{String, "Name", "micron"}, {Float, "NDGlobFact", "0.001"}};
constexpr Version0Member kMillimetre[] = {{String, "Name", "mm"}, {Float, "NDGlobFact", "1.0"}};
constexpr Version0Member kCentimetre[] = {{String, "Name", "cm"}, {Float, "NDGlobFact", "10.0"}};
constexpr Version0Member kMetre[] = {{String, "Name", "m"}, {Float, "NDGlobFact", "1000.0"}};
constexpr Version0Member kKilometre[] = {{String, "Name", "km"},
                                         {Float, "NDGlobFact", "1000000.0"}};
constexpr Version0Member kInch[] = {
    {String, "Name", "in"}, {Int, "NDUnit", "2"}, {Float, "NDGlobFact", "1"}};
constexpr Version0Member kFeetAndInches[] = {
    {String, "Name", "ftinch"},  {Int, "NDUnit", "2"},       {Float, "NDFact_2", "12.0"},
    {String, "NDSepar_1", "\""}, {String, "NDSepar_2", "'"}, {Float, "NDSepScl_2", "1.0"},
    {Int, "NDNulOther", "2"},    {Int, "NDFact", "2"},       {Float, "NDRestX", "0.0"},
};
constexpr Version0Member kGrade[] = {
    {String, "Name", "grade"}, {Int, "NDType", "2"}, {Int, "NDUnit", "5"}};

constexpr PredefinedDisplay kPredefinedDisplays[] = {
    {kMicron},    {kMillimetre}, {kCentimetre},    {kMetre},
    {kKilometre}, {kInch},       {kFeetAndInches}, {kGrade},
};

constexpr const char* kIsoSizes[] = {"2.5", "3.5", "5.0", "7.0", "10.0", "14.0", "20.0"};
constexpr const char* kJisSizes[] = {"2.24", "2.5", "3.15", "3.5",  "4.5",  "5.0",
                                     "6.3",  "7.0", "9.0",  "10.0", "14.0", "20.0"};
constexpr const char* kAnsiSizes[] = {"0.25", "0.35", "0.5", "0.7", "1.0",  "1.4",  "2.0",
                                      "2.5",  "3.5",  "5.0", "7.0", "10.0", "14.0", "20.0"};

constexpr DressUpSymbol kDressUpSymbols[] = {
    {"SimpleArrow", {"Length", "Angle"}},
    {"FilledArrow", {"Length", "Angle"}},
    {"ClosedArrow", {"Length", "Angle"}},
    {"SymetricArrow", {"Length", "Angle"}},
    {"Circle", {"Diameter", nullptr}},
    {"FilledCircle", {"Diameter", nullptr}},
    {"SymetricCircle", {"Diameter", nullptr}},
    {"CrossCircle", {"Diameter", nullptr}},
    {"Slash", {"Length", nullptr}},
    {"Triangle", {"Length", nullptr}},
    {"FilledTriangle", {"Length", nullptr}},
    {"WhiteFilledSquare", {"Length", nullptr}},
    {"BlackFilledSquare", {"Length", nullptr}},
    {"Plus", {"Length", nullptr}},
    {"Cross", {"Length", nullptr}},
    {"DoubleArrow", {"Length", "Angle"}},
    {"WaveArrow", {"Diameter", nullptr}},
};

constexpr const char* kAvailableThicknesses[] = {"0.13", "0.35", "0.70", "1.00",
                                                 "1.40", "2.00", "2.30", "2.60"};

}  // namespace

std::span<const Version0Member> ToleranceDisplayType() {
  return kToleranceDisplayType;
}
std::span<const Version0Member> NumericalDisplayType() {
  return kNumericalDisplayType;
}
std::span<const Version0Member> ThicknessType() {
  return kThicknessType;
}
std::span<const Version0Member> PredefinedTolerance() {
  return kPredefinedTolerance;
}
std::span<const Version0Member> PredefinedDisplayMembers() {
  return kPredefinedDisplayMembers;
}
std::span<const PredefinedDisplay> PredefinedDisplays() {
  return kPredefinedDisplays;
}
bool IsPredefined(std::string_view section, std::string_view name) {
  const auto isNamed = [=](std::span<const Version0Member> members) {
    return std::any_of(members.begin(), members.end(), [=](const Version0Member& member) {
      return member.name == std::string_view("Name") && member.value == name;
    });
  };
  if (section == "TOLERANCE") return isNamed(kPredefinedTolerance);
  return std::any_of(std::begin(kPredefinedDisplays), std::end(kPredefinedDisplays),
                     [&](const PredefinedDisplay& display) { return isNamed(display.differing); });
}

std::span<const DressUpSymbol> DressUpSymbols() {
  return kDressUpSymbols;
}
std::span<const char* const> AvailableThicknesses() {
  return kAvailableThicknesses;
}

std::span<const char* const> AllowedTextFontSizes(const char* parentStandard) {
  const std::string_view parent = parentStandard;
  if (parent == "JIS") return kJisSizes;
  if (parent == "ANSI" || parent == "ASME") return kAnsiSizes;
  return kIsoSizes;
}
