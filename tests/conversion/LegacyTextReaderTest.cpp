#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "DiagnosticsCapture.h"
#include "LegacyText.h"
#include "ParseStandardAccess.h"
#include "TemporaryFolder.h"

namespace {

using Access = VyrDrwParseStandardAccess;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

/// A text standard in a file, read.
struct ReadText {
  TemporaryFolder folder;
  VyrDrwParseStandard standard;
  HRESULT result;

  explicit ReadText(const std::string& text)
      : standard(folder.Write("STD.txt", text)), result(standard.DecodeText()) {}
  std::string operator[](const char* name) const { return Access::ValueOf(standard, name); }
};

TEST(TextReader, ValidTextIsDecodedAsVersion0WithoutADocument) {
  const DiagnosticsCapture capture;
  ReadText text(Joined(General()));
  EXPECT_EQ(text.result, S_OK);
  EXPECT_TRUE(text.standard.GetProblem().IsEmpty());
  EXPECT_EQ(Access::Decoded(text.standard), 1);
  EXPECT_EQ(text.standard.GetVersion(), 0);
  EXPECT_EQ(Access::Document(text.standard), nullptr);
  EXPECT_EQ(text.standard.GetParentStandardId(), VyrDrwParseStandard::ISO);
  EXPECT_EQ(Access::Parameters(text.standard).size(), 105u);
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST(TextReader, GoodTextsAreRead) {
  const Lines comment = {"BEGIN_COMMENT_BLOCK",
                         "Nonsense \"1",
                         "BEGIN_TOLERANCE",
                         "END_TOLERANCE",
                         "BEGIN_COMMENT_BLOCK",
                         "DIMLOverrun 9.9",
                         "",
                         "END_COMMENT_BLOCK"};
  const Lines overrun = {"DIMLOverrun 2.5"};
  const Lines parent = {General().front()};
  const Lines rest = Without(General(), "ParentStandard");
  struct {
    const char* what;
    std::string text;
    const char* keyword;
    const char* value;
  } const cases[] = {
      {"keyword", Joined(General() + overrun), "DIMLOverrun", "2.5"},
      {"optional parameter left out", Joined(General()), "DIMLOverrun", "(none)"},
      {"legacy name", Joined(Replaced(General(), "TXTThickness", "STDTxThickText 3")),
       "TXTThickness", "3"},
      {"blanks and tabs around", Joined(General() + Lines{"\t DIMLOverrun \t  2.5 \t "}),
       "DIMLOverrun", "2.5"},
      {"quoted number", Joined(General() + Lines{"DIMLOverrun \"2.5\""}), "DIMLOverrun", "2.5"},
      {"quoted word", Joined(Replaced(General(), "ParentStandard", "ParentStandard \"JIS\"")),
       "ParentStandard", "JIS"},
      {"CRLF", Joined(General() + overrun, "\r\n"), "DIMLOverrun", "2.5"},
      {"no last line end", Joined(General()) + "DIMLOverrun 2.5", "DIMLOverrun", "2.5"},
      {"byte order mark", "\xEF\xBB\xBF" + Joined(General() + overrun), "ParentStandard", "ISO"},
      {"empty lines", "\n \n\t\n" + Joined(General(), "\n\n") + "\n\nDIMLOverrun 2.5\n\n",
       "DIMLOverrun", "2.5"},
      {"comment first", Joined(comment + General() + overrun), "DIMLOverrun", "2.5"},
      {"comment between", Joined(parent + comment + rest + overrun), "DIMLOverrun", "2.5"},
      {"comment last", Joined(General() + overrun + comment), "DIMLOverrun", "2.5"},
      {"comment of any language",
       Joined(General() + overrun +
              Lines{"BEGIN_COMMENT_BLOCK", "Größe é 寸法", "END_COMMENT_BLOCK"}),
       "DIMLOverrun", "2.5"},
      {"two comments in a row", Joined(comment + comment + General()), "DIMLOverrun", "(none)"},
      {"negative", Joined(General() + Lines{"DIMLOverrun -2.5"}), "DIMLOverrun", "-2.5"},
      {"positive", Joined(General() + Lines{"DIMLOverrun +2.5"}), "DIMLOverrun", "+2.5"},
      {"exponent", Joined(General() + Lines{"DIMLOverrun 1e-3"}), "DIMLOverrun", "1e-3"},
      {"negative int", Joined(General() + Lines{"CHFMeasureMode -1"}), "CHFMeasureMode", "-1"},
      {"group first", Joined(Tolerance("T") + General()), "ParentStandard", "ISO"},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.what);
    const ReadText text(test.text);
    EXPECT_EQ(text.result, S_OK) << text.standard.GetProblem().text.CString();
    EXPECT_EQ(text[test.keyword], test.value);
  }
}

TEST(TextReader, EveryParameterIsKnownByItsLegacyName) {
  Lines lines;
  for (const ExpectedKeyword& row : ExpectedKeywords()) {
    const std::string& name = row.legacyName.empty() ? row.keyword : row.legacyName;
    if (row.kind == 's') {
      lines.push_back(name + " text");
    } else if (row.kind == '-') {
      const bool ends = name.starts_with("END_");
      if (!ends) lines.push_back(name);
      if (name == "BEGIN_COMMENT_BLOCK") lines.push_back("END_COMMENT_BLOCK");
      if (name == "BEGIN_NUMERICAL_DISPLAY") lines.insert(lines.end() - 1, "END_TOLERANCE");
    } else {
      lines.push_back(name + (row.kind == 'w' ? " ISO" : " 7"));
    }
  }
  lines.push_back("END_NUMERICAL_DISPLAY");
  const ReadText text(Joined(lines));
  ASSERT_EQ(text.result, S_OK) << text.standard.GetProblem().text.CString();
  for (const ExpectedKeyword& row : ExpectedKeywords()) {
    if (row.kind == '-' || row.kind == 'w') continue;
    EXPECT_EQ(text[row.keyword.c_str()], row.kind == 's' ? "text" : "7") << row.keyword;
  }
}

TEST(TextReader, QuotesHoldEmptyValuesAndBlanksAtTheEnds) {
  struct {
    const char* written;
    const char* value;
  } const cases[] = {
      {"mm", "mm"},         {"two words", "two words"},
      {"\"\"", ""},         {"\" \"", " "},
      {"\"\t\"", "\t"},     {"\" mm \"", " mm "},
      {"\"\"\"\"", "\""},   {"\"a\"\"b\"", "a\"b"},
      {"\"\"\"a\"", "\"a"}, {"\"a\"\"\"", "a\""},
      {"5\"", "5\""},       {"a\"b\"", "a\"b\""},
      {"'", "'"},           {"<&>", "<&>"},
      {"é½", "é½"},
  };
  for (const auto& test : cases) {
    const ReadText text(Joined(
        General() + Replaced(Display("D"), "NDSepar_1", std::string("NDSepar_1 ") + test.written)));
    EXPECT_EQ(text.result, S_OK) << text.standard.GetProblem().text.CString();
    EXPECT_EQ(text["NDSepar_1"], test.value) << test.written;
  }
}

TEST(TextReader, ParametersKeepTheOrderOfTheFileAndNameTheirGroup) {
  ReadText text(Joined(Tolerance("A") + General() + Display("A") + Tolerance("B")));
  ASSERT_EQ(text.result, S_OK) << text.standard.GetProblem().text.CString();
  struct {
    std::size_t count;
    const char* section;
    const char* description;
  } const groups[] = {{19, "TOLERANCE", "A"},
                      {105, "", ""},
                      {35, "NUMERICAL_DISPLAY", "A"},
                      {19, "TOLERANCE", "B"}};
  const auto& parameters = Access::Parameters(text.standard);
  ASSERT_EQ(parameters.size(), 19u + 105 + 35 + 19);
  std::size_t i = 0;
  for (const auto& group : groups) {
    for (const std::size_t end = i + group.count; i < end; ++i) {
      EXPECT_EQ(parameters[i]->GetSection(), group.section) << i;
      EXPECT_EQ(parameters[i]->GetDescription(), group.description) << i;
    }
  }
  EXPECT_EQ(parameters[0]->GetName(), "TolName");
  EXPECT_EQ(parameters[18]->GetName(), "TolScale");
  EXPECT_EQ(parameters[19]->GetName(), "ParentStandard");
  EXPECT_EQ(parameters[124]->GetName(), "NDName");
}

TEST(TextReader, GroupMayBeNamedByAnyOfItsLines) {
  Lines group = Tolerance("late");
  std::swap(group[1], group[group.size() - 2]);
  ReadText text(Joined(General() + group));
  ASSERT_EQ(text.result, S_OK);
  EXPECT_EQ(Access::Parameters(text.standard)[105]->GetDescription(), "late");
}

TEST(TextReader, ParentStandardFollowsTheRuleOfXMLStandards) {
  constexpr auto kUnit = "[VyrDrwParseStandard]";
  struct {
    const char* parent;
    const char* datumMode;
    const char* expected;
    bool isReported;
  } const cases[] = {
      {"ISO", "1", "ISO", false},   {"JIS", "0", "JIS", false},  {"ANSI", "1", "ASME", false},
      {"ANSI", "2", "ANSI", false}, {"ANSI", "0", "ANSI", true}, {"ASME", "2", "ASME", false},
  };
  for (const auto& test : cases) {
    const DiagnosticsCapture capture;
    const Lines lines = Replaced(
        Replaced(General(), "ParentStandard", std::string("ParentStandard ") + test.parent),
        "TXTDatumMode", std::string("TXTDatumMode ") + test.datumMode);
    const ReadText text(Joined(lines));
    EXPECT_EQ(text.standard.GetParentStandard(), test.expected);
    ASSERT_EQ(capture.errors.size(), test.isReported ? 1u : 0u);
    if (!test.isReported) continue;
    EXPECT_THAT(CheckText(capture.errors[0]), StartsWith(": Invalid TXTDatumMode value!"));
    EXPECT_THAT(CheckText(capture.errors[0]), testing::EndsWith(kUnit));
  }
}

/// A bad text: the general parameters on lines 1 to 105, then `lines`.
struct BadText {
  const char* what;
  Lines lines;
  int line;
  const char* expected;  // part of the problem's text
};

void ExpectRefused(const std::string& content, int line, const std::string& expected) {
  const DiagnosticsCapture capture;
  ReadText text(content);
  EXPECT_EQ(text.result, E_FAIL);
  EXPECT_EQ(text.standard.GetProblem().line, line);
  EXPECT_THAT(text.standard.GetProblem().text.CString(), HasSubstr(expected));
  EXPECT_FALSE(text.standard.GetProblem().IsEmpty());
  EXPECT_EQ(Access::Decoded(text.standard), 0);
  EXPECT_TRUE(Access::Parameters(text.standard).empty());
  EXPECT_EQ(Access::Document(text.standard), nullptr);
  EXPECT_EQ(text.standard.GetParentStandard(), "");
  const std::string output = text.folder / "out.xml";
  VyrDrwParseStandardUpgradeOptions options;
  EXPECT_LT(text.standard.EncodeToFile(output.c_str(), 1, options), 0);
  EXPECT_FALSE(std::filesystem::exists(output));
  EXPECT_THAT(capture.errors, IsEmpty()) << "a bad input is no failed check";
}

void ExpectRefused(const std::vector<BadText>& cases) {
  for (const BadText& test : cases) {
    SCOPED_TRACE(test.what);
    ExpectRefused(Joined(General() + test.lines), test.line, test.expected);
  }
}

TEST(TextReader, BadNamesAreRefused) {
  const std::string tail = "line 13";
  ASSERT_EQ(General()[12], "DIMLTail 1");
  ExpectRefused({
      {"unknown name",
       {"", "Nonsense 1"},
       107,
       "'Nonsense' is no parameter of a drafting standard; correct the name, or take the line out"},
      {"other case", {"dimloverrun 1.0"}, 106, "'dimloverrun'"},
      {"twice", {"DIMLTail 1.0"}, 106, tail.c_str()},
      {"twice, the same value", {"", "DIMLTail 1"}, 107, "twice"},
      {"twice through its legacy name",
       {"STDTxThickText 1"},
       106,
       "STDTxThickText is given twice; keep this one or that of line"},
      {"twice in a group", {"BEGIN_TOLERANCE", "TolType 1", "TolType 1"}, 108, "line 107"},
      {"twice in a group through its legacy name",
       {"BEGIN_NUMERICAL_DISPLAY", "NDName D", "FNMVAL D"},
       108,
       "line 107"},
      {"of a tolerance", {"TolType 1"}, 106, "BEGIN_TOLERANCE"},
      {"of a numerical display", {"FTYFOR 1"}, 106, "BEGIN_NUMERICAL_DISPLAY"},
      {"of the general part", {"BEGIN_TOLERANCE", "DIMLOverrun 1"}, 107, "outside the sections"},
      {"of the other section", {"BEGIN_TOLERANCE", "NDType 1"}, 107, "BEGIN_NUMERICAL_DISPLAY"},
  });
}

TEST(TextReader, ValuesOfTheWrongTypeAreRefused) {
  const std::string integers[] = {"1.5", "one", "1 2", "99999999999", "\"\"", "\" 1\"",
                                  "0x1", "1,0", "-",   "+-1",         "--1",  "1e3"};
  for (const std::string& value : integers) {
    SCOPED_TRACE(value);
    ExpectRefused(Joined(General() + Lines{"CHFMeasureMode " + value}), 106, "a whole number");
  }
  const std::string floats[] = {"two",  "2,0", "1e", "1e999", "nan", "inf",    "0x10", "2.0 mm",
                                "\"\"", "+",   "-",  "+-1",   "1-1", "\" 1\"", "..",   "1.2.3"};
  for (const std::string& value : floats) {
    SCOPED_TRACE(value);
    ExpectRefused(Joined(General() + Lines{"DIMLOverrun " + value}), 106, "a decimal number");
  }
  for (const std::string value : {"DIN", "iso", "ISO JIS", "\"\"", "1"}) {
    SCOPED_TRACE(value);
    ExpectRefused(Joined(Replaced(General(), "ParentStandard", "ParentStandard " + value)), 1,
                  "one of ISO, JIS, ANSI, ASME");
  }
  ExpectRefused({{"in a group", {"BEGIN_TOLERANCE", "TolScale big"}, 107, "a decimal number"},
                 {"in a group", {"BEGIN_TOLERANCE", "TolType 1.0"}, 107, "a whole number"}});
}

TEST(TextReader, MissingAndUnterminatedValuesAreRefused) {
  ExpectRefused({
      {"no value", {"DIMLOverrun"}, 106, "DIMLOverrun has no value"},
      {"blanks only", {"DIMLOverrun \t "}, 106, "no value"},
      {"no value in a group", {"BEGIN_NUMERICAL_DISPLAY", "NDSepar_1"}, 107, "no value"},
      {"quotes not closed", {"BEGIN_TOLERANCE", "TolName \"T"}, 107, "closing double quote"},
      {"one quote", {"BEGIN_TOLERANCE", "TolName \""}, 107, "closing double quote"},
      {"doubled at the end", {"BEGIN_TOLERANCE", "TolName \"T\"\""}, 107, "closing double quote"},
      {"text after the quotes", {"BEGIN_TOLERANCE", "TolName \"T\" x"}, 107, "double quote"},
  });
}

TEST(TextReader, BadSectionsAreRefused) {
  ExpectRefused({
      {"tolerance not ended", {"BEGIN_TOLERANCE", "TolName T"}, 106, "END_TOLERANCE"},
      {"display not ended", {"BEGIN_NUMERICAL_DISPLAY"}, 106, "END_NUMERICAL_DISPLAY"},
      {"comment not ended", {"", "BEGIN_COMMENT_BLOCK", "x"}, 107, "END_COMMENT_BLOCK"},
      {"nested in itself", {"BEGIN_TOLERANCE", "BEGIN_TOLERANCE"}, 107, "line 106"},
      {"nested in the other",
       {"BEGIN_TOLERANCE", "", "BEGIN_NUMERICAL_DISPLAY"},
       108,
       "END_TOLERANCE was expected"},
      {"comment in a section",
       {"BEGIN_TOLERANCE", "BEGIN_COMMENT_BLOCK"},
       107,
       "END_TOLERANCE was expected"},
      {"tolerance not begun",
       {"END_TOLERANCE"},
       106,
       "END_TOLERANCE without BEGIN_TOLERANCE; put that before what the section holds, or take the "
       "line out"},
      {"display not begun", {"END_NUMERICAL_DISPLAY"}, 106, "BEGIN_NUMERICAL_DISPLAY"},
      {"comment not begun", {"END_COMMENT_BLOCK"}, 106, "BEGIN_COMMENT_BLOCK"},
      {"ended as the other",
       {"BEGIN_TOLERANCE", "END_NUMERICAL_DISPLAY"},
       107,
       "END_TOLERANCE was expected"},
      {"comment end in a section",
       {"BEGIN_TOLERANCE", "END_COMMENT_BLOCK"},
       107,
       "END_TOLERANCE was expected"},
      {"marker with a value", {"BEGIN_TOLERANCE T"}, 106, "stands alone"},
      {"end marker with a value", {"BEGIN_TOLERANCE", "END_TOLERANCE T"}, 107, "stands alone"},
  });
}

TEST(TextReader, BadGroupsAreRefused) {
  ExpectRefused({
      {"no name", Without(Tolerance("T"), "TolName"), 106, "TolName"},
      {"empty name", Tolerance("\"\""), 106, "TolName"},
      {"display without a name", Without(Display("D"), "NDName"), 106, "NDName"},
      {"empty section", {"BEGIN_TOLERANCE", "END_TOLERANCE"}, 106, "TolName"},
      {"name given twice", Tolerance("T") + Tolerance("U") + Tolerance("T"), 106 + 2 * 21,
       "TolName 'T' is given twice; name this section or that of line 106 otherwise"},
      {"display given twice", Display("D") + Display("D"), 106 + 37, "line 106"},
  });
}

TEST(TextReader, EachRequiredGeneralParameterIsMissed) {
  ASSERT_EQ(General().size(), 105u);
  for (const std::string& line : General()) {
    const std::string keyword = line.substr(0, line.find(' '));
    SCOPED_TRACE(keyword);
    ExpectRefused(Joined(Without(General(), keyword)), 104, keyword + " is missing");
  }
}

TEST(TextReader, EachParameterOfAGroupIsRequired) {
  for (const Lines& group : {Tolerance("G"), Display("G")}) {
    for (std::size_t i = 2; i + 1 < group.size(); ++i) {
      const std::string keyword = group[i].substr(0, group[i].find(' '));
      SCOPED_TRACE(keyword);
      ExpectRefused(Joined(General() + Without(group, keyword)), 106, keyword + " is missing");
    }
  }
}

TEST(TextReader, WhatIsNoTextIsRefused) {
  const std::string nul(1, '\0');
  const std::string general = Joined(General());
  struct {
    const char* what;
    std::string text;
    int line;
    const char* expected;
  } const cases[] = {
      {"empty file", "", 1, "holds no parameter"},
      {"blank file", "\n\n", 2, "holds no parameter"},
      {"comment only", "BEGIN_COMMENT_BLOCK\nEND_COMMENT_BLOCK\n", 2, "holds no parameter"},
      {"invalid UTF-8", general + "\nDIMLOverrun \xC3(\n", 107, "UTF-8"},
      {"invalid UTF-8 in a comment", "BEGIN_COMMENT_BLOCK\n\xFC\nEND_COMMENT_BLOCK\n" + general, 2,
       "UTF-8"},
      {"cut character at the end", general + "DIMLOverrun \xE2\x82", 106, "UTF-8"},
      {"surrogate", general + "DIMLOverrun \xED\xA0\x80\n", 106, "UTF-8"},
      {"control character", general + "DIMLOverrun 1\x01\n", 106, "control character"},
      {"zero byte", general + "DIMLOverrun 1" + nul + "\n", 106, "zero byte"},
      {"zero byte in a string",
       general + Joined(Replaced(Tolerance("T"), "TolName", "TolName \"a" + nul + "b\"")), 107,
       "zero byte"},
      {"image", "\x89PNG\r\n\x1A\n" + nul + nul, 1, "UTF-8"},
      {"program",
       "\x7F"
       "ELF\x02\x01\x01" +
           nul + nul + "\n",
       1, "zero byte"},
      {"UTF-16", "\xFF\xFEP" + nul + "a" + nul, 1, "UTF-8"},
      {"XML", "\n<?xml version=\"1.0\"?>\n<std:node/>\n", 2, "is XML, and no text standard"},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.what);
    ExpectRefused(test.text, test.line, test.expected);
  }
}

/// "LINE: TEXT" of every fault that is told.
std::vector<std::string> FaultsOf(const std::string& content) {
  ReadText text(content);
  std::vector<std::string> faults;
  for (const VyrProblem& fault : text.standard.GetTextFaults()) {
    faults.push_back(std::to_string(fault.line) + ": " + fault.text.CString());
  }
  EXPECT_EQ(text.standard.GetNumOfTextFaults(), faults.size());
  return faults;
}

TEST(TextReader, AllFaultsAreToldInTheOrderOfTheText) {
  const Lines lines = Without(Replaced(General(), "DIMLTail", "DIMLTail wide"), "DIMLTextGap") +
                      Lines{"Nonsense 1", "DIMLOverrun"} +
                      Without(Replaced(Tolerance("T"), "TolType", "TolType 1.5"), "TolScale") +
                      Tolerance("T") + Lines{"END_NUMERICAL_DISPLAY"};
  ASSERT_EQ(General()[12], "DIMLTail 1");
  EXPECT_THAT(
      FaultsOf(Joined(lines)),
      ElementsAre(
          "13: DIMLTail: 'wide' is not valid; expected is a decimal number, such as 2.0",
          StartsWith("105: 'Nonsense' is no parameter"),
          StartsWith("106: DIMLOverrun has no value"),
          StartsWith("109: TolType: '1.5' is not valid"),
          "107: TolName 'T': the required parameter TolScale is missing",
          StartsWith("127: TolName 'T' is given twice; name this section or that of line 107"),
          StartsWith("148: END_NUMERICAL_DISPLAY without"),
          "148: the required parameter DIMLTextGap is missing"));
}

TEST(TextReader, TwentyFaultsAreToldAndTheOthersCounted) {
  for (const std::size_t count : {19, 20, 21, 1000}) {
    Lines lines = General();
    lines.insert(lines.end(), count, "Nonsense 1");
    ReadText text(Joined(lines));
    EXPECT_EQ(text.result, E_FAIL);
    EXPECT_EQ(text.standard.GetTextFaults().size(), std::min<std::size_t>(count, 20));
    EXPECT_EQ(text.standard.GetNumOfTextFaults(), count);
    EXPECT_EQ(text.standard.GetProblem().line, 106);
  }
}

TEST(TextReader, AMistakeIsToldOnceAndNotInAllThatItLeadsTo) {
  Lines strayed = Tolerance("T");
  strayed.insert(strayed.begin() + 5, {"DIMLOverrun 1", "HLFExtOverrun 1", "SYMBReverseMode 1"});
  Lines withoutBegin = Tolerance("T");
  withoutBegin.erase(withoutBegin.begin());
  Lines withoutEnd = Tolerance("T");
  withoutEnd.pop_back();
  Lines marked = Display("D");
  marked.front() += " D";
  Lines returned = Tolerance("T");
  returned.front() += "\r\r";
  Lines unreadable = Display("D");
  unreadable.front() += " \xB1";
  unreadable.back() += " \xB1";
  Lines withComment = Tolerance("T");
  withComment.insert(withComment.begin() + 5,
                     {"BEGIN_COMMENT_BLOCK", "any text", "END_COMMENT_BLOCK"});
  struct {
    const char* what;
    Lines lines;
    std::vector<std::string> faults;  // what each begins with
  } const cases[] = {
      {"a value of the wrong type is not missing, too",
       Replaced(General(), "DIMLTail", "DIMLTail x"),
       {"13: DIMLTail: 'x'"}},
      {"nor one in a group",
       General() + Replaced(Tolerance("T"), "TolScale", "TolScale x"),
       {"125: TolScale"}},
      {"nor the name of a group",
       General() + Replaced(Tolerance("T"), "TolName", "TolName \"T"),
       {"107: TolName: the value does not end"}},
      {"nor a value that is no UTF-8",
       Replaced(General(), "DIMLTail", "DIMLTail \xB1"),
       {"13: is not valid UTF-8"}},
      {"nor one with a control character",
       Replaced(General(), "DIMLTail", "DIMLTail \x01"),
       {"13: holds a control character"}},
      {"lines in the wrong section", General() + strayed, {"111: DIMLOverrun cannot stand here"}},
      {"a section that is not begun",
       General() + withoutBegin,
       {"106: TolName cannot stand here", "125: END_TOLERANCE without BEGIN_TOLERANCE"}},
      {"a section that is not ended",
       General() + withoutEnd + Display("D"),
       {"126: BEGIN_NUMERICAL_DISPLAY inside the section of line 106"}},
      {"a comment in a section",
       General() + withComment,
       {"111: BEGIN_COMMENT_BLOCK inside the section of line 106"}},
      {"a section begun twice",
       General() + Lines{"BEGIN_TOLERANCE"} + Tolerance("T"),
       {"107: BEGIN_TOLERANCE inside"}},
      {"a marker that is no UTF-8",
       General() + unreadable,
       {"106: is not valid UTF-8", "142: is not valid UTF-8"}},
      {"a carriage return in a line",
       Replaced(General(), "DIMLTail", "DIMLTail 1\rx"),
       {"13: holds a carriage return (CR) that ends no line; lines end in LF or CR LF"}},
      {"one before a line end", General() + returned, {"106: holds a carriage return"}},
      {"a marker with a value", General() + marked, {"106: BEGIN_NUMERICAL_DISPLAY stands alone"}},
      {"a comment without an end",
       Lines{"BEGIN_COMMENT_BLOCK"} + General(),
       {"1: BEGIN_COMMENT_BLOCK is never ended"}},
      {"a whole group twice",
       General() + Tolerance("T") + Tolerance("T"),
       {"127: TolName 'T' is given twice"}},
      {"lines that end in CR", {Joined(General(), "\r")}, {"1: holds a carriage return"}},
      {"such behind a comment",
       {Joined(Lines{"BEGIN_COMMENT_BLOCK", "x", "END_COMMENT_BLOCK"} + General(), "\r")},
       {"1: holds a carriage return"}},
      {"such of XML", {"<?xml?>\r<a/>\r"}, {"1: is XML"}},
      {"no text at all", Lines{"<std:node>"} + Lines{"<a/>"}, {"1: is XML"}},
      {"zero bytes",
       {std::string(3, '\0'), "x", std::string(3, '\0')},
       {"1: holds a zero byte, as text in UTF-16 does; save it as UTF-8"}},
      {"nothing at all", {}, {"1: holds no parameter of a drafting standard"}},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.what);
    const std::vector<std::string> faults = FaultsOf(Joined(test.lines));
    EXPECT_EQ(faults.size(), test.faults.size()) << testing::PrintToString(faults);
    for (std::size_t i = 0; i < std::min(faults.size(), test.faults.size()); ++i) {
      EXPECT_THAT(faults[i], StartsWith(test.faults[i]));
    }
  }
}

TEST(TextReader, AValueIsRefusedUnderTheNameThatTheTextHas) {
  EXPECT_THAT(FaultsOf(Joined(Replaced(General(), "TXTThickness", "STDTxThickText thin"))),
              ElementsAre(StartsWith("66: STDTxThickText: 'thin' is not valid")));
  EXPECT_THAT(FaultsOf(Joined(General() + Replaced(Display("D"), "NDFact", "FNBFAC"))),
              ElementsAre(StartsWith("110: FNBFAC has no value")));
}

TEST(TextReader, CommentsMayHoldCarriageReturns) {
  const ReadText text(
      Joined(Lines{"BEGIN_COMMENT_BLOCK", "a\rb\rc", "END_COMMENT_BLOCK"} + General()));
  EXPECT_EQ(text.result, S_OK) << text.standard.GetProblem().text.CString();
}

TEST(TextReader, NumbersThatCannotBeHeldAreCalledSo) {
  struct {
    const char* line;
    const char* fault;
  } const cases[] = {
      {"CHFMeasureMode 3000000000", "'3000000000' is too large; a whole number is one from "},
      {"CHFMeasureMode -3000000000", "'-3000000000' is too small; a whole number is one from "},
      {"DIMLOverrun 1e999", "'1e999' is too large, or too near to 0"},
      {"DIMLOverrun 1e-999", "'1e-999' is too large, or too near to 0"},
  };
  for (const auto& test : cases) {
    EXPECT_THAT(FaultsOf(Joined(General() + Lines{test.line})), ElementsAre(HasSubstr(test.fault)));
  }
  for (const char* line : {"CHFMeasureMode 2147483647", "CHFMeasureMode -2147483648"}) {
    EXPECT_THAT(FaultsOf(Joined(General() + Lines{line})), IsEmpty()) << line;
  }
}

TEST(TextReader, CharactersThatDoNotShowAreNamed) {
  struct {
    const char* what;
    std::string line;  // in place of that of DIMLTail
    const char* fault;
  } const cases[] = {
      {"mark before a name",
       "\xEF\xBB\xBF"
       "DIMLTail 1",
       "13: 'DIMLTail' has a byte order mark (U+FEFF) in it, which does not show; take that out"},
      {"in a name", "DIML\xE2\x80\x8BTail 1", "13: 'DIMLTail' has a zero width space (U+200B)"},
      {"between name and value",
       "DIMLTail\xC2\xA0"
       "1",
       "13: 'DIMLTail 1' has a no-break space (U+00A0) in it, which is no blank; write a blank"},
      {"before a value",
       "DIMLTail \xC2\xA0"
       "1",
       "13: DIMLTail: the value has a no-break space (U+00A0) in it"},
      {"behind a value", "DIMLTail 1\xEF\xBB\xBF",
       "13: DIMLTail: the value has a byte order mark (U+FEFF) in it"},
      {"alone on a line", "DIMLTail 1\n\xC2\xA0", "14: has a no-break space (U+00A0)"},
      {"before a comment",
       "DIMLTail 1\n\xEF\xBB\xBF"
       "BEGIN_COMMENT_BLOCK\n1 2 3\nEND_COMMENT_BLOCK",
       "14: 'BEGIN_COMMENT_BLOCK' has a byte order mark (U+FEFF)"},
      {"before the end of one",
       "DIMLTail 1\nBEGIN_COMMENT_BLOCK\n\xC2\xA0"
       "1 2\n\xE2\x80\x8E"
       "END_COMMENT_BLOCK",
       "16: 'END_COMMENT_BLOCK' has a left-to-right mark (U+200E)"},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.what);
    EXPECT_THAT(FaultsOf(Joined(Replaced(General(), "DIMLTail", test.line))),
                ElementsAre(StartsWith(test.fault)));
  }
}

TEST(TextReader, TextsMayHoldCharactersThatDoNotShow) {
  const ReadText text(
      Joined(General() + Replaced(Display("D"), "NDSepar_1", "NDSepar_1 \"\xC2\xA0\"")));
  ASSERT_EQ(text.result, S_OK) << text.standard.GetProblem().text.CString();
  EXPECT_EQ(text["NDSepar_1"], "\xC2\xA0") << "what separates thousands in many countries";
}

TEST(TextReader, FaultsOfAReadAreForgottenByTheNextOne) {
  const TemporaryFolder folder;
  VyrDrwParseStandard standard(folder.Write("STD.txt", "Nonsense 1\n"));
  EXPECT_EQ(standard.DecodeText(), E_FAIL);
  EXPECT_FALSE(standard.GetTextFaults().empty());
  std::filesystem::remove(folder / "STD.txt");
  EXPECT_EQ(standard.DecodeText(), E_FAIL);
  EXPECT_THAT(standard.GetTextFaults(), IsEmpty());
  EXPECT_EQ(standard.GetNumOfTextFaults(), 0u);
  EXPECT_FALSE(standard.GetProblem().IsEmpty()) << "a file that is gone is no fault of its text";
}

TEST(TextReader, FileThatCannotBeReadIsAProblemWithoutALine) {
  const TemporaryFolder folder;
  for (const std::string& path : {folder / "missing.txt", folder.Path().string(), std::string()}) {
    VyrDrwParseStandard standard(path);
    EXPECT_EQ(standard.DecodeText(), E_FAIL) << path;
    EXPECT_FALSE(standard.GetProblem().IsEmpty());
    EXPECT_EQ(standard.GetProblem().line, 0);
    EXPECT_EQ(Access::Decoded(standard), 0);
  }
}

TEST(TextReader, MendedFileIsReadAfterARefusal) {
  const TemporaryFolder folder;
  VyrDrwParseStandard standard(folder.Write("STD.txt", "Nonsense 1\n"));
  EXPECT_EQ(standard.DecodeText(), E_FAIL);
  folder.Write("STD.txt", Joined(General()));
  EXPECT_EQ(standard.DecodeText(), S_OK);
  EXPECT_TRUE(standard.GetProblem().IsEmpty());
  EXPECT_EQ(standard.GetParentStandard(), "ISO");
}

TEST(TextReader, SecondReadIsReportedAndKeepsTheFirst) {
  for (const bool development : {false, true}) {
    const DiagnosticsCapture capture(development);
    ReadText text(Joined(General()));
    EXPECT_EQ(text.standard.DecodeText(), E_UNEXPECTED);
    EXPECT_THAT(CheckTexts(development ? capture.abends : capture.errors),
                ElementsAre(StartsWith("BOOL IS FALSE: ")));
    EXPECT_EQ(Access::Parameters(text.standard).size(), 105u);
    text.standard.Decode();
    EXPECT_EQ(Access::Document(text.standard), nullptr) << "a decoded standard is not read as XML";
    EXPECT_EQ(text.standard.GetVersion(), 0);
  }
}

}  // namespace
