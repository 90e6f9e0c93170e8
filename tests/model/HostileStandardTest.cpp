#include <functional>

#include "CodecTest.h"
#include "HostileText.h"
#include "ProcessApart.h"
#include "QuietDiagnostics.h"
#include "TemporaryFolder.h"
#include "VyrUtf8.h"

// Standards deeper, wider and longer than any that was drafted, and files that are none.

namespace {

using namespace modeltest;
using testing::HasSubstr;

/// Bytes of memory that reading a standard takes for each byte of the file, at most.
constexpr std::size_t kDecodeFactor = 20;

/// The shortest form of a standard: what takes the most memory for a byte of the file.
std::string Terse(const std::string& content) {
  return std::string("<node xmlns='") + kStandardNamespace + "'>" + content + "</node>";
}

struct Shape {
  const char* name;
  std::function<std::string()> make;
  std::size_t factor = kDecodeFactor;
};

std::ostream& operator<<(std::ostream& out, const Shape& shape) {
  return out << shape.name;
}

const Shape kShapes[] = {
    {"levels",
     [] {
       return Terse(Repeated("<node name='a'>", kMillion) + "<intval>1</intval>" +
                    Repeated("</node>", kMillion));
     }},
    {"levels with a value each",
     [] {
       return Terse(Repeated("<node name='a'><intval/>", kMillion) + Repeated("</node>", kMillion));
     }},
    {"instances inside each other",
     [] {
       return Terse("<node>" + Repeated("<typeval>", kMillion) + Repeated("</typeval>", kMillion) +
                    "</node>");
     }},
    {"siblings", [] { return Terse("<node>" + Repeated("<node/>", kMillion) + "</node>"); },
     2 * kDecodeFactor},
    {"siblings of different names",
     [] {
       return Terse("<node>" +
                    Numbered(kMillion, [](auto n) { return "<node name='n" + n + "'/>"; }) +
                    "</node>");
     }},
    {"siblings at the top", [] { return Terse(Repeated("<node/>", kMillion)); }, 2 * kDecodeFactor},
    {"values", [] { return Terse("<node>" + Repeated("<intval/>", kMillion) + "</node>"); }},
    {"parameters",
     [] { return Terse("<node>" + Repeated("<node><intval/></node>", kMillion) + "</node>"); }},
    {"literals and values that name them",
     [] {
       return Terse(
           "<enumdef name='E'>" +
           Numbered(kMillion, [](auto n) { return "<strval>l" + n + "</strval>"; }) +
           "</enumdef><node>" +
           Numbered(kMillion, [](auto n) { return "<enumval name='E'>l" + n + "</enumval>"; }) +
           "</node>");
     }},
    {"enumerations and values of them",
     [] {
       return Terse(
           Numbered(
               kMillion,
               [](auto n) { return "<enumdef name='e" + n + "'><strval>x</strval></enumdef>"; }) +
           "<node>" +
           Numbered(kMillion, [](auto n) { return "<enumval name='e" + n + "'>x</enumval>"; }) +
           "</node>");
     }},
    {"fields", [] { return Terse("<typedef>" + Repeated("<intval/>", kMillion) + "</typedef>"); }},
    {"a long value",
     [] { return Terse("<node><strval>" + std::string(kMillion * 50, 'x') + "</strval></node>"); }},
    {"a value of many sections",
     [] {
       return Terse("<node><strval>" + Repeated("<![CDATA[x]]>y", kMillion) + "</strval></node>");
     }},
    {"long names",
     [] { return Terse(Repeated("<node name='" + std::string(1 << 20, 'n') + "'/>", 10)); }},
    {"nodes out of entities",
     [] {
       return "<!DOCTYPE node [<!ENTITY e '" + Repeated("<node/>", 4000) + "'>]>" +
              Terse("<node>" + Repeated("&e;", 37) + "</node>");
     }},
};

class HostileStandard : public testing::TestWithParam<Shape> {};
INSTANTIATE_TEST_SUITE_P(Shapes, HostileStandard, testing::ValuesIn(kShapes));

TEST_P(HostileStandard, IsDecodedInTimeAndMemoryInProportionToTheFile) {
  const std::string text = GetParam().make();
  const ApartRun run = RunApart([&] {
    Document document;
    const bool isRead = document.DecodeXML(text, 0) == 0;
    return std::string(isRead ? "read" : document.GetProblem().text.CString());
  });
  EXPECT_TRUE(IsInProportion(run, text.size(), GetParam().factor));
  EXPECT_EQ(run.answer, "read");
}

/// What each operation on a whole tree makes of a document, on one line.
std::string AnswersOf(const std::string& text) {
  Document document;
  if (document.DecodeXML(text, 0) != 0) return document.GetProblem().text.CString();
  if (document.Check() != 1) return "check";
  VyrUnicodeString written;
  document.SaveInString(written);
  Document again;
  if (again.DecodeXML(written.View(), 0) != 0) return "encode or decode";
  for (const char* top : {"Root", "Enum", "TypeDef"}) {
    const Node_var first(document.GetNodeWithPath(top));
    const Node_var second(again.GetNodeWithPath(top));
    const Node_var copy(first->Clone());
    if (!FindDifference(*first, *second).empty()) return "encode, then decode";
    if (!FindDifference(*first, *copy).empty()) return "clone";
  }
  return "sound";
}

TEST_P(HostileStandard, IsCheckedEncodedClonedAndDestroyedInTime) {
  const std::string text = GetParam().make();
  const ApartRun run = RunApart([&] { return AnswersOf(text); });
  EXPECT_EQ(run.answer, "sound") << run.end;
}

// --- What lines and messages show ----------------------------------------------------------------

/// The longest line that is traced while `work` runs, and how many there are.
std::string LongestTraceOf(const std::function<void()>& work) {
  std::size_t longest = 0;
  std::size_t count = 0;
  VyrDiagnosticSinks sinks = DroppingSinks();
  sinks.trace = [&](std::string_view line) {
    longest = std::max(longest, line.size());
    ++count;
  };
  VyrSetDiagnosticSinks(std::move(sinks));
  work();
  return std::to_string(count) + " " + (longest < 10000 ? "short" : "long");
}

TEST(HostileTraces, LineOfADeepElementShowsItsInnerLevels) {
  const std::size_t levels = kMillion / 20;
  const std::string text =
      Terse(Repeated("<node name='level'>", levels) + Repeated("</node>", levels));
  const ApartRun run = RunApart([&] {
    const TraceOn on("DftStdDOMCodec");
    return LongestTraceOf([&] { Document().DecodeXML(text, 0); });
  });
  // Five lines of the document besides one for each node, and two that open and close the call.
  EXPECT_EQ(run.answer, std::to_string(levels + 8) + " short") << run.end;

  const DiagnosticsCapture log;
  const TraceOn on("DftStdDOMCodec");
  Document().DecodeXML(Terse(Repeated("<node name='level'>", 1000) + "<node name='last'/>" +
                             Repeated("</node>", 1000)),
                       0);
  const auto line = std::find_if(
      log.traces.begin(), log.traces.end(),
      [](const std::string& trace) { return trace.find(" last (0 value") != std::string::npos; });
  ASSERT_NE(line, log.traces.end());
  EXPECT_THAT(*line, HasSubstr("Building node .../"));
}

TEST(HostileTraces, LineOfALongNameIsShort) {
  const std::string text = Terse("<node name='" + std::string(1 << 20, 'n') + "'>" +
                                 Repeated("<node/>", 1000) + "</node>");
  const ApartRun run = RunApart([&] {
    const TraceOn on("DftStdDOMCodec");
    return LongestTraceOf([&] { Document().DecodeXML(text, 0); });
  });
  EXPECT_THAT(run.answer, HasSubstr("short")) << run.end;
}

TEST(HostileTraces, UndefinedLiteralsOfADeepTreeAreReportedOnShortLines) {
  const std::size_t levels = kMillion / 10;
  const std::string text =
      Terse(Repeated("<node name='level'><enumval name='E'>x</enumval>", levels) +
            Repeated("</node>", levels));
  const ApartRun run = RunApart([&] {
    Document document;
    document.DecodeXML(text, 0);
    return LongestTraceOf([&] { document.Check(); });
  });
  EXPECT_EQ(run.answer, std::to_string(levels) + " short") << run.end;
}

/// The problem of a standard that is refused.
VyrProblem ProblemOf(const std::string& text) {
  const DiagnosticsCapture ignored;
  Document document;
  EXPECT_EQ(document.DecodeXML(text, 0), 1);
  return document.GetProblem();
}

TEST(HostileMessages, SayTheLineAndWhatWouldBeRight) {
  struct {
    std::string content;
    int line;
    const char* text;
  } const cases[] = {
      {"\n<std:strval/>", 2,
       "<std:strval> cannot stand in <std:node> 'drafting'; expected is std:enumdef, std:typedef "
       "or "
       "std:node"},
      {"<std:node name='A'>\n\n<std:enumdef/></std:node>", 3,
       "<std:enumdef> cannot stand in <std:node> 'A'; expected is std:node, std:typeval, "
       "std:typedef or a value"},
      {"<std:enumdef name='E'>\n<std:intval/></std:enumdef>", 2,
       "<std:intval> cannot stand in <std:enumdef> 'E'; expected is std:strval"},
      {"<std:typedef name='T'>\n<std:colorval/></std:typedef>", 2,
       "<std:colorval> cannot stand in <std:typedef> 'T'; expected is std:strval, std:intval, "
       "std:floatval or std:enumval"},
      {"\n<std:enumdef name='E'></std:enumdef>", 2,
       "enumeration 'E' is empty; it needs at least one std:strval"},
      {"\n<std:typedef name='T'/>", 2, "type 'T' is empty; it needs at least one field"},
  };
  for (const auto& test : cases) {
    const VyrProblem problem = ProblemOf(Standard(test.content));
    EXPECT_EQ(problem.line, test.line) << test.content;
    EXPECT_EQ(problem.text, test.text);
  }
}

TEST(HostileMessages, AreOneShortLineWhateverTheNames) {
  const std::string name = Repeated("\u5BF8&#10;", 100000);
  for (const std::string& content :
       {"<std:node name='" + name + "'><std:x/></std:node>", "<std:enumdef name='" + name + "'/>",
        "<std:typedef name='" + name + "'/>", "<std:" + std::string(1 << 20, 'n') + "/>"}) {
    const VyrProblem problem = ProblemOf(Standard(content));
    EXPECT_FALSE(problem.IsEmpty());
    EXPECT_LT(problem.text.View().size(), 500u);
    EXPECT_EQ(problem.text.Find("\n"), -1);
    EXPECT_EQ(VyrFindInvalidUtf8(problem.text.View()), std::string_view::npos);
  }
}

TEST_F(CodecTest, RefusalToWriteADeepNodeIsOneShortLine) {
  Node_var node = root;
  for (int level = 0; level < 1000; ++level) node = AddChild(*node, "level");
  node = AddChild(*node, "fault\n");
  AddString(*node, "Name", "\x01");
  VyrUnicodeString out;
  EXPECT_EQ(codec.SaveInString(out), E_UNEXPECTED);
  EXPECT_LT(codec.GetProblem().text.View().size(), 500u);
  EXPECT_THAT(codec.GetProblem().text.CString(),
              testing::AllOf(testing::StartsWith("...level."),
                             HasSubstr(".level.fault\\n: value 'Name' holds a control character")));
  TakeReports();
}

TEST_F(CodecTest, RefusalToWriteANodeShowsItsWholePathIfThatIsShort) {
  AddString(*AddChild(*AddChild(*root, "Dimension"), "Tail"), "Name", "\x01");
  VyrUnicodeString out;
  EXPECT_EQ(codec.SaveInString(out), E_UNEXPECTED);
  EXPECT_THAT(codec.GetProblem().text.CString(),
              testing::StartsWith("Root.Dimension.Tail: value 'Name' "));
  TakeReports();
}

// --- What cannot be read is no standard ----------------------------------------------------------

TEST(UnreadableStandard, IsNeverReadAsAnEmptyOne) {
  const DiagnosticsCapture ignored;
  const TemporaryFolder folder;
  const std::string standard = ReadWholeFile(HOL_STANDARDS "/ISO.xml");
  std::string wide = "\xFF\xFE";
  for (const char c : standard) wide += {c, '\0'};
  struct {
    const char* name;
    std::string content;
    int line;  // -1: whatever
  } const cases[] = {
      {"empty", "", 1},
      {"blank", " \n\n", -1},
      {"text", "DIMLOverrun 2.0\n", 1},
      {"zero bytes", std::string(1000, '\0'), 1},
      {"half", standard.substr(0, standard.size() / 2), -1},
      {"half of wide characters", wide.substr(0, wide.size() / 2), -1},
      {"without its last byte of wide characters", wide.substr(0, wide.size() - 1), -1},
      {"other root", "<standard/>", 1},
      {"no namespace", "<node name='drafting'/>", 1},
      {"two standards", standard + standard, -1},
      {"something before it", "x" + standard, 1},
  };
  for (const auto& test : cases) {
    Document document;
    EXPECT_EQ(document.DecodeXML(folder.Write("standard.xml", test.content), 1), 1) << test.name;
    const VyrProblem problem = document.GetProblem();
    EXPECT_FALSE(problem.IsEmpty()) << test.name;
    EXPECT_GT(problem.line, 0) << test.name;
    if (test.line >= 0) {
      EXPECT_EQ(problem.line, test.line) << test.name;
    }
  }
  for (const std::string& path : {folder.Path().string(), folder / "none.xml", std::string()}) {
    Document document;
    EXPECT_EQ(document.DecodeXML(path, 1), 1) << path;
    EXPECT_FALSE(document.GetProblem().IsEmpty()) << path;
  }
  Document document;
  EXPECT_EQ(document.DecodeXML(folder.Write("standard.xml", wide), 1), 0);
  EXPECT_FALSE(document.GetValueWithPath("Root.Dimension.ParentStandard").IsEmpty());
}

}  // namespace
