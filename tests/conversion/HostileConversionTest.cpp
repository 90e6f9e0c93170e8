#include <algorithm>
#include <filesystem>
#include <functional>
#include <string>

#include "HostileText.h"
#include "LegacyText.h"
#include "LegacyTextReader.h"
#include "ProcessApart.h"
#include "QuietDiagnostics.h"
#include "TemporaryFolder.h"
#include "UpgradeRun.h"
#include "VyrUtf8.h"

// Text standards made to harm, and upgrades of standards beyond all measure.

namespace {

using testing::HasSubstr;

/// Bytes of memory that reading takes for each byte of a text standard, at most: of one that is
/// refused or skipped, and where a value is kept, which a text has several times.
constexpr std::size_t kTextFactor = 4;
constexpr std::size_t kValueFactor = 40;

/// "accepted", or the line and the text of the refusal; "unsound" when it is neither.
std::string AnswerTo(const std::string& text) {
  LegacyTextReader reader;
  const bool isRead = reader.Read(text);
  const std::vector<VyrProblem>& faults = reader.GetFaults();
  if (isRead) return faults.empty() && reader.GetFaultCount() == 0 ? "accepted" : "unsound";
  if (faults.empty() || faults.size() > LegacyTextReader::kMostFaults) return "unsound";
  const bool isSound = reader.GetFaultCount() >= faults.size() && reader.TakeParameters().empty() &&
                       std::all_of(faults.begin(), faults.end(), [](const VyrProblem& fault) {
                         return fault.line > 0 && !fault.IsEmpty() && fault.text.Find("\n") == -1 &&
                                fault.text.View().size() < 500 &&
                                VyrFindInvalidUtf8(fault.text.View()) == std::string_view::npos;
                       });
  const VyrProblem& first = faults.front();
  return isSound ? std::to_string(first.line) + ": " + first.text.CString() : "unsound";
}

struct Hostile {
  const char* name;
  std::function<std::string()> make;
  std::string answer;  // a part of it
  std::size_t factor = kTextFactor;
};

std::ostream& operator<<(std::ostream& out, const Hostile& hostile) {
  return out << hostile.name;
}

/// Number of the line after those of `General`.
const std::string kNext = "106: ";

std::string GeneralAnd(const std::string& more) {
  return Joined(General()) + more;
}

std::string Tolerances(std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += Joined(Tolerance("T" + std::to_string(i)));
  return text;
}

const Hostile kTexts[] = {
    {"empty lines", [] { return Repeated("\n", kMillion) + GeneralAnd(""); }, "accepted"},
    {"lines of comment",
     [] {
       return GeneralAnd("BEGIN_COMMENT_BLOCK\n" + Repeated("any text\n", kMillion) +
                         "END_COMMENT_BLOCK\n");
     },
     "accepted"},
    {"comment without end",
     [] { return GeneralAnd("BEGIN_COMMENT_BLOCK\n" + Repeated("any text\n", kMillion)); },
     kNext + "BEGIN_COMMENT_BLOCK is never ended"},
    {"groups", [] { return GeneralAnd(Tolerances(kMillion / 20)); }, "accepted", kValueFactor / 2},
    {"comment blocks",
     [] { return GeneralAnd(Repeated("BEGIN_COMMENT_BLOCK\nEND_COMMENT_BLOCK\n", kMillion / 2)); },
     "accepted"},
    {"a parameter again and again",
     [] { return GeneralAnd(Repeated("DIMLOverrun 1\n", kMillion)); },
     "107: DIMLOverrun is given twice"},
    {"a long value",
     [] { return Joined(General() + Tolerance("T" + std::string(kManyBytes, 'x'))); }, "accepted",
     kValueFactor},
    {"a long value of doubled quotes",
     [] { return Joined(General() + Tolerance("\"" + std::string(kManyBytes, '"') + "\"")); },
     "accepted", kValueFactor / 2},
    {"a long number",
     [] { return GeneralAnd("DIMLOverrun " + std::string(kManyBytes, '1') + "\n"); },
     kNext + "DIMLOverrun: '1"},
    {"a long fraction",
     [] { return GeneralAnd("DIMLOverrun 1." + std::string(kManyBytes, '1') + "\n"); }, "accepted"},
    {"a long whole number",
     [] {
       return Joined(
           Replaced(General(), "DIMLUnderline", "DIMLUnderline " + std::string(kManyBytes, '1')));
     },
     "2: DIMLUnderline: '1"},
    {"a long name", [] { return GeneralAnd(std::string(kManyBytes, 'x') + "\n"); },
     kNext + "'xxxx"},
    {"a long line of blanks", [] { return GeneralAnd(std::string(kManyBytes, ' ') + "\n"); },
     "accepted"},
    {"a line without end",
     [] { return GeneralAnd("DIMLOverrun \"" + std::string(kManyBytes, 'x')); },
     kNext + "DIMLOverrun: the value does not end"},
    {"zero bytes", [] { return std::string(kMillion, '\0'); }, "1: holds a zero byte"},
    {"a zero byte in a value", [] { return GeneralAnd(std::string("DIMLOverrun 1\0002\n", 16)); },
     kNext + "holds a zero byte"},
    {"a zero byte in a name", [] { return GeneralAnd(std::string("DIML\0Overrun 1\n", 15)); },
     kNext + "holds a zero byte"},
    {"a zero byte after a marker",
     [] { return GeneralAnd(std::string("BEGIN_TOLERANCE\0\n", 17)); },
     kNext + "holds a zero byte"},
};

class HostileText : public testing::TestWithParam<Hostile> {};
INSTANTIATE_TEST_SUITE_P(Texts, HostileText, testing::ValuesIn(kTexts));

TEST_P(HostileText, IsAnsweredInTimeAndMemoryInProportionToTheFile) {
  const std::string text = GetParam().make();
  const ApartRun run = RunApart([&] { return AnswerTo(text); });
  EXPECT_TRUE(IsInProportion(run, text.size(), GetParam().factor));
  EXPECT_THAT(run.answer, HasSubstr(GetParam().answer));
}

std::string Wide(const std::string& text, bool isBigEndian) {
  std::string wide;
  for (const char c : text) wide += isBigEndian ? std::string{'\0', c} : std::string{c, '\0'};
  return wide;
}

TEST(HostileTextFile, OtherEncodingsAreRefused) {
  const std::string utf8 = Joined(General() + Tolerance("\u5BF8"));
  EXPECT_EQ(AnswerTo(utf8), "accepted");
  EXPECT_EQ(AnswerTo("\xEF\xBB\xBF" + utf8), "accepted");
  struct {
    const char* name;
    std::string text;
    const char* answer;
  } const cases[] = {
      {"UTF-16, little end first, mark", "\xFF\xFE" + Wide(utf8, false),
       "1: is not valid UTF-8 at byte 1; save it as UTF-8"},
      {"UTF-16, big end first, mark", "\xFE\xFF" + Wide(utf8, true),
       "1: is not valid UTF-8 at byte 1; save it as UTF-8"},
      {"UTF-16, little end first", Wide(Joined(General()), false), "1: holds a zero byte"},
      {"UTF-16, big end first", Wide(Joined(General()), true), "1: holds a zero byte"},
      {"Latin-1", "ParentStandard ISO\nDIMLOverrun \xB1\n",
       "2: is not valid UTF-8 at byte 32; save it as UTF-8"},
      {"Shift_JIS", "ParentStandard ISO\n\x90\xA1\x96\x40\n",
       "2: is not valid UTF-8 at byte 20; save it as UTF-8"},
      {"Latin-1 after a mark", "\xEF\xBB\xBF\xB1", "1: is not valid UTF-8 at byte 4"},
      {"Latin-1 in a comment", "BEGIN_COMMENT_BLOCK\n\n\xE9\nEND_COMMENT_BLOCK\n",
       "3: is not valid UTF-8 at byte 22"},
  };
  for (const auto& test : cases)
    EXPECT_THAT(AnswerTo(test.text), HasSubstr(test.answer)) << test.name;
}

TEST(HostileTextFile, BinaryJunkIsRefused) {
  std::uint32_t state = 1;
  for (int i = 0; i < 200; ++i) {
    std::string junk;
    for (int byte = 0; byte < 500; ++byte) {
      state = state * 1664525u + 1013904223u;
      junk += static_cast<char>(state >> 24);
    }
    EXPECT_THAT(AnswerTo(junk), testing::Not(testing::AnyOf("accepted", "unsound"))) << i;
    EXPECT_THAT(AnswerTo(GeneralAnd(junk)), testing::Not(testing::AnyOf("accepted", "unsound")))
        << i;
  }
}

/// Whether the beginning of a shipped text standard lacks nothing: it goes past the last general
/// parameter, which is required, or to where its value has begun, and ends outside the sections.
bool IsComplete(std::string_view text) {
  bool isComplete = false;
  std::string end;  // of the section that is open
  while (!text.empty()) {
    const std::size_t size = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, size);
    text.remove_prefix(std::min(size + 1, text.size()));
    const std::string_view name = line.substr(0, line.find(' '));
    if (!end.empty()) {
      if (name == end) end.clear();
    } else if (name.starts_with("BEGIN_")) {
      end = "END_" + std::string(name.substr(6));
    } else if (isComplete && !name.empty()) {
      return false;  // a marker that is cut through
    } else if (name == "STDDimMaxLengthArcSymbol") {
      isComplete = line.back() >= '.' && line.back() <= '9';
    }
  }
  return isComplete && end.empty();
}

TEST(HostileTextFile, ShippedStandardCutAtAnyByteIsRefusedUnlessItLacksNothing) {
  const std::string whole = ReadWholeFile(HOL_STANDARDS "/legacy/ISO.txt");
  ASSERT_EQ(AnswerTo(whole), "accepted");
  const std::size_t step = kIsSanitized ? 17 : 1;
  std::size_t complete = 0;
  for (std::size_t size = 0; size <= whole.size(); size += step) {
    const std::string cut = whole.substr(0, size);
    const std::string answer = AnswerTo(cut);
    ASSERT_EQ(answer == "accepted", IsComplete(cut)) << size << ": " << answer;
    ASSERT_NE(answer, "unsound") << size;
    complete += IsComplete(cut) ? 1 : 0;
  }
  // Behind each of the 25 groups, before and after its line end, and in the last general parameter.
  EXPECT_GT(complete, 50u / step);
}

TEST(HostileTextFile, WhatCannotBeReadIsNotConverted) {
  const DiagnosticsCapture ignored;
  const TemporaryFolder folder;
  for (const std::string& path :
       {folder.Path().string(), folder / "none.txt", folder.Write("empty.txt", ""),
        folder.Write("xml.txt", "<?xml version='1.0'?>\n<a/>"),
        folder.Write("half.txt", Joined(General()).substr(0, 500))}) {
    VyrDrwParseStandard standard(path);
    EXPECT_EQ(standard.DecodeText(), E_FAIL) << path;
    EXPECT_FALSE(standard.GetProblem().IsEmpty()) << path;
    auto options = OptionsOf(false);
    const std::string out = folder / "out.xml";
    EXPECT_LT(standard.EncodeToFile(out.c_str(), -1, options), 0) << path;
    EXPECT_FALSE(std::filesystem::exists(out)) << path;
  }
}

/// Bytes of memory that a conversion takes for each byte of the text, at most.
constexpr std::size_t kConversionFactor = 10;

TEST(HostileConversion, TextOfAMillionLinesIsConvertedInTimeAndMemoryInProportionToTheFile) {
  const TemporaryFolder folder;
  std::string displays;
  for (std::size_t i = 0; i < kMillion / 200; ++i) {
    displays += Joined(Display("D" + std::to_string(i)));
  }
  for (const std::string& groups :
       {Tolerances(kMillion / 20), displays, Joined(Tolerance(std::string(kManyBytes, 'x')))}) {
    const std::string text = GeneralAnd(groups);
    const std::string path = folder.Write("STD.txt", text);
    const ApartRun run = RunApart([&] {
      VyrDrwParseStandard standard(path);
      if (standard.DecodeText() != S_OK) return std::string(standard.GetProblem().text.CString());
      auto options = OptionsOf(false);
      if (standard.Upgrade(-1, options) != S_OK) return std::string("upgrade");
      return std::string("converted");
    });
    EXPECT_EQ(run.answer, "converted") << run.end;
    EXPECT_TRUE(IsInProportion(run, text.size(), kConversionFactor));
  }
}

TEST(HostileConversion, GroupsThatAreComposedSomeAtATimeKeepTheirOrderAndTheirFields) {
  const TemporaryFolder folder;
  Lines lines = General();
  constexpr std::size_t count = 1000;  // of 19 and of 35 parameters
  for (std::size_t i = 0; i < count; ++i) {
    lines =
        std::move(lines) + Tolerance("T" + std::to_string(i)) + Display("D" + std::to_string(i));
  }
  VyrDrwParseStandard standard(folder.Write("STD.txt", Joined(lines)));
  ASSERT_EQ(standard.DecodeText(), S_OK);
  auto options = OptionsOf(false);
  ASSERT_EQ(standard.Upgrade(1, options), S_OK);
  struct {
    const char* path;
    const char* prefix;
    std::size_t readyMade;
    std::size_t fields;
  } const lists[] = {{"Root.ToleranceFormats", "T", 1, 19}, {"Root.ValueFormats", "D", 8, 35}};
  for (const auto& list : lists) {
    const VyrAnnStandardXMLNode_var node(standard.GetDocument().GetNodeWithPath(list.path));
    ASSERT_EQ(node->GetNodes().size(), list.readyMade + count);
    for (std::size_t i = 0; i < count; ++i) {
      const VyrAnnStandardXMLNode& group = *node->GetNodes()[list.readyMade + i];
      ASSERT_EQ(group.GetValues().size(), list.fields);
      ASSERT_EQ(group.GetValues().front()->GetValue().View(), list.prefix + std::to_string(i));
    }
  }
}

// --- Upgrades ------------------------------------------------------------------------------------

using Node = VyrAnnStandardXMLNode;
using Node_var = VyrAnnStandardXMLNode_var;

Node_var AddPlain(Node& parent, const std::string& name) {
  Node_var child(new Node(Node::NodePlain, name));
  parent.AddNode(child.Get(), -1);
  return child;
}

void AddLevels(Node& node) {
  Node_var inner = Node_var::Share(&node);
  for (std::size_t i = 0; i < kMillion; ++i) inner = AddPlain(*inner, "Level");
}
void AddSiblings(Node& node) {
  for (std::size_t i = 0; i < kMillion; ++i) AddPlain(node, "S" + std::to_string(i));
}
void AddSomeSiblings(Node& node) {
  for (std::size_t i = 0; i < kMillion / 20; ++i) AddPlain(node, "S" + std::to_string(i));
}
void AddSiblingsOfOneName(Node& node) {
  for (std::size_t i = 0; i < kMillion / 20; ++i) AddPlain(node, "Same");
}
void AddStyles(Node& node) {
  const Node_var model(node.GetDefaultNode());
  for (std::size_t i = 0; i < kMillion / 500; ++i) {
    const Node_var copy(model->Clone());
    copy->SetNodeName("S" + std::to_string(i));
    node.AddNode(copy.Get(), -1);
  }
}
void AddLiterals(Node& node) {
  for (std::size_t i = 0; i < kMillion; ++i) {
    const VyrAnnStandardXMLValue_var literal(new VyrAnnStandardXMLValue(
        VyrAnnStandardXMLValue::ValueString, "l" + std::to_string(i), {}, 0));
    node.AddValue(literal.Get(), -1);
  }
}

struct Growth {
  const char* name;
  const char* path;
  void (*grow)(Node&);
};

std::ostream& operator<<(std::ostream& out, const Growth& growth) {
  return out << growth.name;
}

const Growth kGrowths[] = {
    {"levels", "Root.General", AddLevels},
    {"siblings", "Root.General", AddSiblings},
    {"siblings at the top", "Root", AddSiblings},
    {"levels in a style", "Root.Styles.Table.Default", AddLevels},
    {"siblings in a style", "Root.Styles.Table.Default", AddSiblings},
    {"style families", "Root.Styles", AddSiblings},
    {"empty styles", "Root.Styles.Text", AddSomeSiblings},
    {"empty styles of one name", "Root.Styles.DimensionsSystem", AddSiblingsOfOneName},
    {"styles", "Root.Styles.Table", AddStyles},
    {"line types", "Root.LineTypes", AddSiblings},
    {"literals", "Enum.YesNo", AddLiterals},
    {"enumerations", "Enum", AddSiblings},
};

class HostileUpgrade : public testing::TestWithParam<Growth> {};
INSTANTIATE_TEST_SUITE_P(Growths, HostileUpgrade, testing::ValuesIn(kGrowths));

TEST_P(HostileUpgrade, RunsToTheCurrentVersionInTime) {
  UpgradeRun upgrade("ISO", 60);
  const Node_var node = upgrade.Node(GetParam().path);
  ASSERT_TRUE(node);
  GetParam().grow(*node);
  const ApartRun run = RunApart([&] {
    const QuietDiagnostics quiet;
    for (const int version : kVersions) {
      if (version > 60) UpgradeRun::Access::RunStep(upgrade.Standard(), version, false);
    }
    return std::to_string(upgrade.Document().GetVersion());
  });
  EXPECT_EQ(run.answer, std::to_string(kCurrentVersion)) << run.end;
}

}  // namespace
