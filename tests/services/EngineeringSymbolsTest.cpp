#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "DiagnosticsCapture.h"
#include "EngineeringSymbolTables.h"
#include "VyrAnnStdEngineeringSymbolsServices.h"

namespace {

using Services = VyrAnnStdEngineeringSymbolsServices;
using Context = Services::SymbolContext;
using Parent = Services::ParentStandard;
using testing::IsEmpty;

constexpr auto kStroke = static_cast<Context>(0);
constexpr auto kOpenType = static_cast<Context>(1);

/// Which of the two stroke tables lack a row: that of ISO and JIS, that of ANSI and ASME.
enum class Absent { None, Iso, Ansi, Both };

/// A row of the OpenType table and what differs in the other two.
struct Row {
  const char* tag;
  const char* code;
  Absent absent = Absent::None;
  const char* strokeCode = nullptr;
};

constexpr Row kRows[] = {
    {"<SUBSTITUTION>", "42"},
    {"<DIAMETER>", "8960"},
    {"<POSITION>", "8982"},
    {"<PLUSMINUS>", "177"},
    {"<DEGREE>", "176", Absent::Iso},
    {"<MICRO>", "181", Absent::Iso},
    {"<ANGULAR>", "8736"},
    {"<CIRCULAR>", "9711"},
    {"<CONCENTRIC>", "9022"},
    {"<CYLINDRIC>", "9005"},
    {"<PARALLEL>", "8741"},
    {"<PERPENDICULAR>", "8869"},
    {"<SYMMETRY>", "9007"},
    {"<TOTALRUNOUT>", "9008"},
    {"<STRAIGHT>", "9188", Absent::None, "9472"},
    {"<FLATNESS>", "9189", Absent::None, "61440"},
    {"<LINEPROFILE>", "8978"},
    {"<SURFPROFILE>", "8979"},
    {"<CIRCULARRUNOUT>", "8599"},
    {"<COUNTERSUNK>", "9013"},
    {"<COUNTERBORE>", "9012"},
    {"<DEPTH>", "8615"},
    {"<CENTERLINE>", "8452"},
    {"<OHM>", "8486"},
    {"<ENVELOPE>", "9402"},
    {"<FREESTATE>", "9403"},
    {"<LEASTMATERIAL>", "9409"},
    {"<MAXMATERIAL>", "9410"},
    {"<PROJTOLZONE>", "9413"},
    {"<NOACTUALSIZE>", "9416"},
    {"<TANGENTPLANE>", "9417"},
    {"<LOWEROREQUAL>", "8804"},
    {"<GREATEROREQUAL>", "8805"},
    {"<THREADPREFIX>", "77"},
    {"<SLOPE>", "9011"},
    {"<CONICALTAPER>", "9010"},
    {"<UPTRIANGLE>", "9651"},
    {"<SQUARE>", "9633"},
    {"<ST>", "61525"},
    {"<ARROW>", "61526"},
    {"<Unequally>", "9418"},
    {"<CHECKMARK>", "10003", Absent::Both},
    {"<BALLOTX>", "10007", Absent::Both},
    {"<SpotFace>", "61696"},
    {"<CF>", "61697"},
    {"<Independency>", "9406"},
    {"<RIGHTTRIANGLE>", "9655"},
    {"<LEFTTRIANGLE>", "9665"},
    {"<Reciprocity>", "9415", Absent::Ansi},
    {"<ModifierA>", "9398"},
    {"<LP>", "61698"},
    {"<LS>", "61699"},
    {"<GG>", "61700"},
    {"<GX>", "61701"},
    {"<GN>", "61702"},
    {"<CC>", "61703"},
    {"<CA>", "61704"},
    {"<CV>", "61705"},
    {"<SX>", "61706"},
    {"<SN>", "61707"},
    {"<SA>", "61708"},
    {"<SM>", "61709"},
    {"<SD>", "61710"},
    {"<SR>", "61711"},
};

struct Definition {
  std::string tag;
  std::string font;
  std::string code;
  bool operator==(const Definition&) const = default;
};

void PrintTo(const Definition& definition, std::ostream* out) {
  *out << definition.tag << " " << definition.font << " " << definition.code;
}

bool IsIn(std::string_view tag, std::initializer_list<std::string_view> tags) {
  return std::find(tags.begin(), tags.end(), tag) != tags.end();
}

std::vector<Definition> ExpectedOpenType() {
  std::vector<Definition> table;
  for (const Row& row : kRows) table.push_back({row.tag, "QNISO1.otf", row.code});
  return table;
}

std::vector<Definition> ExpectedIso() {
  std::vector<Definition> table;
  for (const Row& row : kRows) {
    const std::string tag = row.tag;
    if (tag == "<DEGREE>") table.push_back({"<DEGREE><MICRO>", "SYM2.fontSYM2.font", "176181"});
    if (row.absent == Absent::Iso || row.absent == Absent::Both) continue;
    const char* font = "SYM2.font";
    if (tag == "<SUBSTITUTION>") font = "SSS4.font";
    if (IsIn(tag, {"<NOACTUALSIZE>", "<TANGENTPLANE>"})) font = "SYM1.font";
    table.push_back({tag, font, row.strokeCode != nullptr ? row.strokeCode : row.code});
  }
  return table;
}

std::vector<Definition> ExpectedAnsi() {
  std::vector<Definition> table;
  for (const Row& row : kRows) {
    if (row.absent == Absent::Ansi || row.absent == Absent::Both) continue;
    const std::string tag = row.tag;
    table.push_back({tag, tag == "<SUBSTITUTION>" ? "SSS4.font" : "SYM1.font",
                     row.strokeCode != nullptr ? row.strokeCode : row.code});
  }
  return table;
}

std::vector<Definition> DefinitionsOf(const EngineeringSymbolTable& table) {
  std::vector<Definition> definitions;
  for (const EngineeringSymbol& symbol : table.GetSymbols()) {
    definitions.push_back(
        {std::string(symbol.tag), std::string(symbol.font), std::string(symbol.code)});
  }
  return definitions;
}

/// What the service answers.
struct Answer {
  HRESULT result = 0;
  VyrUnicodeString font = "old font";
  VyrUnicodeString code = "old code";
  VyrUnicodeString smallImage = "old small";
  VyrUnicodeString largeImage = "old large";
};

Answer Ask(const char* tag, int context, int parent, int unused = 0) {
  Answer answer;
  answer.result = Services::GetEngSymbolDefinitionAndImage(
      tag, static_cast<Context>(context), static_cast<Parent>(parent), answer.font, answer.code,
      answer.smallImage, answer.largeImage, unused);
  return answer;
}

void ExpectUntouched(const Answer& answer) {
  EXPECT_EQ(answer.font, "old font");
  EXPECT_EQ(answer.code, "old code");
  EXPECT_EQ(answer.smallImage, "old small");
  EXPECT_EQ(answer.largeImage, "old large");
}

// --- The tables ----------------------------------------------------------------------------------

TEST(EngineeringSymbolTables, HoldTheStatedRowsInOrder) {
  EXPECT_EQ(ExpectedOpenType().size(), 64u);
  EXPECT_EQ(ExpectedIso().size(), 61u);
  EXPECT_EQ(ExpectedAnsi().size(), 61u);
  EXPECT_EQ(DefinitionsOf(OpenTypeSymbols()), ExpectedOpenType());
  EXPECT_EQ(DefinitionsOf(IsoStrokeSymbols()), ExpectedIso());
  EXPECT_EQ(DefinitionsOf(AnsiSymbols()), ExpectedAnsi());
}

TEST(EngineeringSymbolTables, TheFifthIsoRowIsTheJoinedOne) {
  EXPECT_EQ(IsoStrokeSymbols().GetSymbols()[4].tag, "<DEGREE><MICRO>");
}

/// Bytes of base64 text without line breaks; empty when it is not valid. Bits that the padding
/// leaves over must be 0.
std::vector<std::uint8_t> DecodeBase64(std::string_view text) {
  constexpr std::string_view alphabet =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  if (text.empty() || text.size() % 4 != 0) return {};
  std::size_t padding = 0;
  while (padding < 2 && text[text.size() - 1 - padding] == '=') ++padding;
  std::vector<std::uint8_t> bytes;
  std::uint32_t bits = 0;
  int count = 0;
  for (const char c : text.substr(0, text.size() - padding)) {
    const std::size_t digit = alphabet.find(c);
    if (digit == std::string_view::npos) return {};
    bits = (bits << 6) | static_cast<std::uint32_t>(digit);
    count += 6;
    if (count < 8) continue;
    count -= 8;
    bytes.push_back(static_cast<std::uint8_t>(bits >> count));
    bits &= (1u << count) - 1u;
  }
  return bits == 0 ? bytes : std::vector<std::uint8_t>{};
}

/// A picture of `size` pixels square, whole bytes a row, shows something and nothing right of it.
void ExpectPicture(std::string_view text, std::size_t size, std::string_view tag) {
  const std::size_t bytesPerRow = (size + 7) / 8;
  const std::vector<std::uint8_t> bytes = DecodeBase64(text);
  ASSERT_EQ(bytes.size(), bytesPerRow * size) << tag;
  EXPECT_TRUE(std::any_of(bytes.begin(), bytes.end(), [](auto byte) { return byte != 0; })) << tag;
  const auto outside = static_cast<unsigned>((1u << (bytesPerRow * 8 - size)) - 1u);
  for (std::size_t row = 0; row < size; ++row) {
    EXPECT_EQ(bytes[row * bytesPerRow + bytesPerRow - 1] & outside, 0u) << tag << " row " << row;
  }
}

TEST(EngineeringSymbolPictures, AreBase64TextOfSquareBitmaps) {
  for (const auto* table : {&OpenTypeSymbols(), &IsoStrokeSymbols(), &AnsiSymbols()}) {
    for (const EngineeringSymbol& symbol : table->GetSymbols()) {
      if (table == &IsoStrokeSymbols() && symbol.tag == "<SpotFace>") continue;
      EXPECT_EQ(symbol.smallImage.size(), 44u) << symbol.tag;
      EXPECT_EQ(symbol.largeImage.size(), 88u) << symbol.tag;
      ExpectPicture(symbol.smallImage, 16, symbol.tag);
      ExpectPicture(symbol.largeImage, 22, symbol.tag);
    }
  }
}

TEST(EngineeringSymbolPictures, IsoSpotFaceHoldsTwoPicturesInEachText) {
  const EngineeringSymbol* symbol = IsoStrokeSymbols().Find("<SpotFace>");
  ASSERT_NE(symbol, nullptr);
  ASSERT_EQ(symbol->smallImage.size(), 88u);
  ASSERT_EQ(symbol->largeImage.size(), 176u);
  for (const std::size_t half : {0u, 1u}) {
    ExpectPicture(symbol->smallImage.substr(half * 44, 44), 16, "<SpotFace>");
    ExpectPicture(symbol->largeImage.substr(half * 88, 88), 22, "<SpotFace>");
  }
}

TEST(EngineeringSymbolPictures, NoTwoSymbolsOfATableLookTheSame) {
  for (const auto* table : {&OpenTypeSymbols(), &IsoStrokeSymbols(), &AnsiSymbols()}) {
    std::set<std::string_view> smallImages;
    std::set<std::string_view> largeImages;
    for (const EngineeringSymbol& symbol : table->GetSymbols()) {
      EXPECT_TRUE(smallImages.insert(symbol.smallImage).second) << symbol.tag;
      EXPECT_TRUE(largeImages.insert(symbol.largeImage).second) << symbol.tag;
    }
  }
}

// --- The answers ---------------------------------------------------------------------------------

struct TableOf {
  int context;
  int parent;
  std::vector<Definition> expected;
  const EngineeringSymbolTable& table;
};

std::vector<TableOf> AllTables() {
  return {
      {0, 0, ExpectedIso(), IsoStrokeSymbols()},     {0, 1, ExpectedIso(), IsoStrokeSymbols()},
      {1, 0, ExpectedOpenType(), OpenTypeSymbols()}, {1, 1, ExpectedOpenType(), OpenTypeSymbols()},
      {0, 2, ExpectedAnsi(), AnsiSymbols()},         {1, 2, ExpectedAnsi(), AnsiSymbols()},
  };
}

TEST(EngineeringSymbol, IsAnsweredFromTheTableOfItsContextAndParent) {
  for (const TableOf& table : AllTables()) {
    for (const Definition& definition : table.expected) {
      const Answer answer = Ask(definition.tag.c_str(), table.context, table.parent);
      EXPECT_EQ(answer.result, S_OK) << definition.tag;
      EXPECT_EQ(answer.font, VyrUnicodeString(definition.font)) << definition.tag;
      EXPECT_EQ(answer.code, VyrUnicodeString(definition.code)) << definition.tag;
      const EngineeringSymbol* symbol = table.table.Find(definition.tag);
      ASSERT_NE(symbol, nullptr);
      EXPECT_EQ(answer.smallImage.View(), symbol->smallImage) << definition.tag;
      EXPECT_EQ(answer.largeImage.View(), symbol->largeImage) << definition.tag;
    }
  }
}

TEST(EngineeringSymbol, OfTheOtherContextIsAnsweredWithFalse) {
  for (const int parent : {0, 1}) {
    struct {
      const char* tag;
      const char* code;
    } const onlyOpenType[] = {
        {"<DEGREE>", "176"}, {"<MICRO>", "181"}, {"<CHECKMARK>", "10003"}, {"<BALLOTX>", "10007"}};
    for (const auto& [tag, code] : onlyOpenType) {
      const Answer answer = Ask(tag, 0, parent);
      EXPECT_EQ(answer.result, S_FALSE) << tag;
      EXPECT_EQ(answer.font, "QNISO1.otf") << tag;
      EXPECT_EQ(answer.code, code) << tag;
      EXPECT_EQ(answer.smallImage.View(), OpenTypeSymbols().Find(tag)->smallImage);
      EXPECT_EQ(answer.largeImage.View(), OpenTypeSymbols().Find(tag)->largeImage);
    }
    const Answer joined = Ask("<DEGREE><MICRO>", 1, parent);
    EXPECT_EQ(joined.result, S_FALSE);
    EXPECT_EQ(joined.font, "SYM2.fontSYM2.font");
    EXPECT_EQ(joined.code, "176181");
  }
}

TEST(EngineeringSymbol, AnsiAndAsmeHaveNoTableToFallBackTo) {
  for (const int context : {0, 1}) {
    for (const char* tag : {"<CHECKMARK>", "<BALLOTX>", "<Reciprocity>", "<DEGREE><MICRO>"}) {
      const Answer answer = Ask(tag, context, 2);
      EXPECT_EQ(answer.result, E_FAIL) << tag;
      ExpectUntouched(answer);
    }
  }
}

TEST(EngineeringSymbol, EmptyTagIsInvalidAndUnknownTagsFail) {
  for (const int context : {0, 1}) {
    for (const int parent : {0, 1, 2}) {
      const Answer empty = Ask("", context, parent);
      EXPECT_EQ(static_cast<std::uint32_t>(empty.result), 0x80070057u);
      ExpectUntouched(empty);
      for (const char* tag : {"<diameter>", "<Diameter>", "<SPOTFACE>", "DIAMETER", "<DIAMETER",
                              " <DIAMETER>", "<DIAMETER> ", "<DIAMETER><DIAMETER>", "<", "<>"}) {
        const Answer unknown = Ask(tag, context, parent);
        EXPECT_EQ(static_cast<std::uint32_t>(unknown.result), 0x80004005u) << tag;
        ExpectUntouched(unknown);
      }
    }
  }
}

TEST(EngineeringSymbol, UndefinedContextsAndParentsFail) {
  for (const auto& [context, parent] : std::vector<std::pair<int, int>>{
           {2, 0}, {-1, 0}, {2, 1}, {2, 2}, {-1, 2}, {0, 3}, {1, 3}, {0, -1}, {0, 1000}}) {
    const Answer answer = Ask("<DIAMETER>", context, parent);
    EXPECT_EQ(answer.result, E_FAIL) << context << " " << parent;
    ExpectUntouched(answer);
    EXPECT_EQ(Ask("", context, parent).result, E_INVALIDARG);
  }
}

TEST(EngineeringSymbol, LastArgumentMeansNothing) {
  for (const int unused : {-1, 0, 1, 220}) {
    EXPECT_EQ(Ask("<DIAMETER>", 0, 0, unused).result, S_OK);
    EXPECT_EQ(Ask("<DIAMETER>", 0, 0, unused).code, "8960");
  }
}

TEST(EngineeringSymbol, NothingIsReported) {
  const DiagnosticsCapture capture;
  Ask("", 0, 0);
  Ask("<NO>", 0, 0);
  Ask("<DIAMETER>", 5, 5);
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST(EngineeringSymbol, EnumerationsHaveTheStatedValues) {
  EXPECT_EQ(kStroke, Services::StrokeFonts);
  EXPECT_EQ(kOpenType, Services::OpenTypeFonts);
  EXPECT_EQ(static_cast<int>(Services::ParentANSI), 2);
}

}  // namespace
