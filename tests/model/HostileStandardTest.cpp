#include <functional>
#include <random>

#include "CodecTest.h"
#include "ProcessApart.h"
#include "TemporaryFolder.h"
#include "VyrUtf8.h"

// Standards deeper, wider and longer than any that was drafted, and files that are none.

namespace {

using namespace modeltest;
using testing::HasSubstr;

constexpr std::size_t kMillion = kIsSanitized ? 100'000 : 1'000'000;

/// Bytes of memory that reading a standard takes for each byte of the file, at most.
constexpr std::size_t kDecodeFactor = 20;

std::string Repeated(const std::string& text, std::size_t count) {
  std::string repeated;
  repeated.reserve(text.size() * count);
  for (std::size_t i = 0; i < count; ++i) repeated += text;
  return repeated;
}

std::string Numbered(std::size_t count, const std::function<std::string(std::string)>& make) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += make(std::to_string(i));
  return text;
}

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
  VyrSetDiagnosticSinks({[](std::string_view) {}, [](std::string_view) {}, [](std::string_view) {},
                         [&](std::string_view line) {
                           longest = std::max(longest, line.size());
                           ++count;
                         }});
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
  AddString(*node, "Name", "\x01");
  VyrUnicodeString out;
  EXPECT_EQ(codec.SaveInString(out), E_UNEXPECTED);
  EXPECT_LT(codec.GetProblem().text.View().size(), 500u);
  EXPECT_THAT(codec.GetProblem().text.CString(), HasSubstr("control character"));
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

// --- Deletion from a wide node -------------------------------------------------------------------

Node_var WideNode(std::size_t count) {
  Node_var node = NewNode("Wide");
  for (std::size_t i = 0; i < count; ++i) AddChild(*node, "n" + std::to_string(i));
  return node;
}

/// Deletes the children `first`, `first + step`, ... (modulo the number of names, which has no
/// common divisor with the step) and tells how many are left.
std::string DeleteEach(Node& node, std::size_t names, std::size_t first, std::size_t step) {
  for (std::size_t i = 0, child = first; i < names; ++i, child = (child + step) % names) {
    if (node.DeleteNodeWithPath("n" + std::to_string(child)) != 0) return "not found";
  }
  return std::to_string(node.GetNumOfNode());
}

std::string DeleteAll(Node& node, std::size_t first, std::size_t step) {
  return DeleteEach(node, static_cast<std::size_t>(node.GetNumOfNode()), first, step);
}

TEST(WideNodeDeletion, TakesTheSameForEachChildInAnyOrder) {
  for (const std::size_t step : {std::size_t{1}, kMillion - 1, std::size_t{314'159}}) {
    const ApartRun run = RunApart([&] {
      const Node_var node = WideNode(kMillion);
      return DeleteAll(*node, step == 1 ? 0 : kMillion - 1, step);
    });
    EXPECT_EQ(run.answer, "0") << "step " << step << ": " << run.end;
  }
}

TEST(WideNodeDeletion, OfChildrenOfOneNameTakesTheFirstEachTime) {
  const ApartRun run = RunApart([&] {
    const Node_var node = NewNode("Wide");
    for (std::size_t i = 0; i < kMillion; ++i)
      AddString(*AddChild(*node, "n"), "Place", std::to_string(i));
    for (std::size_t i = 0; i < kMillion; ++i) {
      const Node_var first(node->GetNodeByName("n"));
      if (!first || first->GetValues()[0]->GetValue() != std::to_string(i)) return "not the first";
      if (node->DeleteNodeWithPath("n") != 0) return "not found";
    }
    return "done";
  });
  EXPECT_EQ(run.answer, "done") << run.end;
}

TEST(WideNodeDeletion, OfTheFirstOfTwoOfANameIsAsFastAndFindsTheSecond) {
  constexpr std::size_t names = kMillion / 2;
  for (const std::size_t step : {std::size_t{1}, names - 1, std::size_t{314'159}}) {
    const ApartRun run = RunApart([&] {
      const Node_var node = WideNode(names);
      const Node_var second = WideNode(names);
      for (const Node_var& child : second->GetNodes()) node->AddNode(child.Get(), -1);
      std::string left = DeleteEach(*node, names, names - 1, step);
      for (std::size_t i = 0; i < names; ++i) {
        const Node_var found(node->GetNodeByName("n" + std::to_string(i)));
        if (found.Get() != second->GetNodes()[i].Get()) return std::string("not the second");
      }
      return left + " " + DeleteAll(*node, 0, step);
    });
    EXPECT_EQ(run.answer, std::to_string(names) + " 0") << "step " << step << ": " << run.end;
  }
}

TEST(WideNodeDeletion, OfChildrenThatSomebodyHoldsIsAsFast) {
  const ApartRun run = RunApart([&] {
    const Node_var node = WideNode(kMillion);
    const Node::Nodes held = node->GetNodes();
    return DeleteAll(*node, kMillion - 1, kMillion - 1) + " " + std::to_string(held.size());
  });
  EXPECT_EQ(run.answer, "0 " + std::to_string(kMillion)) << run.end;
}

TEST(WideNodeDeletion, OfChildrenThatAnotherNodeHoldsInAnotherOrderIsAsFast) {
  const ApartRun run = RunApart([&] {
    const Node_var node = WideNode(kMillion);
    const Node_var other = NewNode("Other");
    for (std::size_t i = kMillion; i-- > 0;) other->AddNode(node->GetNodes()[i].Get(), -1);
    const std::string left = DeleteAll(*node, 0, 1);
    return left + " " + DeleteAll(*other, 0, 1);
  });
  EXPECT_EQ(run.answer, "0 0") << run.end;
}

TEST(WideNodeDeletion, AndAddingTheSameChildAgainIsAsFast) {
  const ApartRun run = RunApart([&] {
    const Node_var node = WideNode(kMillion);
    for (std::size_t i = 0; i < kMillion; ++i) {
      const std::string name = "n" + std::to_string(i);
      const Node_var child(node->GetNodeByName(name));
      if (node->DeleteNodeWithPath(name) != 0) return "not found";
      node->AddNode(child.Get(), -1);
    }
    return node->GetNodes().front()->GetNodeName() == "n0" ? "as before" : "in another order";
  });
  EXPECT_EQ(run.answer, "as before") << run.end;
}

TEST(WideNodeDeletion, AndAskingForTheFirstAndTheLastInTurnIsAsFast) {
  const ApartRun run = RunApart([&] {
    const Node_var node = WideNode(kMillion);
    const std::string last = "n" + std::to_string(kMillion - 1);
    for (std::size_t i = 0; i + 1 < kMillion; ++i) {
      if (node->DeleteNodeWithPath("n" + std::to_string(i)) != 0) return "not found";
      const Node_var first(node->GetNode(0));
      if (first->GetNodeName() != "n" + std::to_string(i + 1)) return "not the first";
      if (Node_var(node->GetDefaultNode()).Get() != first.Get()) return "not the default";
      if (Node_var(node->GetNode(-1))->GetNodeName() != last) return "not the last";
    }
    return "done";
  });
  EXPECT_EQ(run.answer, "done") << run.end;
}

TEST(WideNodeDeletion, NearTheEndAndLookingAtTheListInTurnIsAsFast) {
  const ApartRun run = RunApart([&] {
    const Node_var node = WideNode(kMillion);
    const std::string last = "n" + std::to_string(kMillion - 1);
    for (std::size_t left = kMillion - 1; left > 0; --left) {
      if (node->DeleteNodeWithPath("n" + std::to_string(left - 1)) != 0) return "not found";
      if (node->GetNodes().size() != left) return "a hole is seen";
      if (left % 2 == 0) continue;
      const Node_var added = NewNode("added");
      node->AddNode(added.Get(), static_cast<int>(left) - 1);
      if (Node_var(node->GetNode(-1))->GetNodeName() != last) return "not before the last";
      if (node->DeleteNodeWithPath("added") != 0) return "not added";
    }
    return "done";
  });
  EXPECT_EQ(run.answer, "done") << run.end;
}

TEST(WideNodeDeletion, OfACloneIsAsFast) {
  const ApartRun run = RunApart([&] {
    const Node_var copy(WideNode(kMillion)->Clone());
    return DeleteAll(*copy, 0, 1);
  });
  EXPECT_EQ(run.answer, "0") << run.end;
}

TEST(WideNodeDeletion, TakesTheFirstPlaceOfAChildThatStandsThereTwice) {
  const Node_var node = WideNode(100);
  const Node_var twice = NewNode("twice");
  node->AddNode(twice.Get(), 10);
  node->AddNode(twice.Get(), -1);
  EXPECT_EQ(node->DeleteNodeWithPath("twice"), 0);
  EXPECT_EQ(node->GetNodes()[10]->GetNodeName(), "n10");
  EXPECT_EQ(node->GetNodes().back().Get(), twice.Get());
}

TEST(WideNodeDeletion, TakesTheFirstPlaceHoweverTheChildCameThereTwice) {
  const Node_var node = WideNode(100);
  const Node_var other = WideNode(100);
  // Last seen in another list, borrowed from this one, and after other deletions.
  const Node_var child(node->GetNode(20));
  other->AddNode(child.Get(), 90);
  node->AddNode(node->GetNodes()[20].Get(), -1);
  EXPECT_EQ(node->DeleteNodeWithPath("n70"), 0);
  EXPECT_EQ(other->DeleteNodeWithPath("n20"), 0);
  EXPECT_EQ(node->DeleteNodeWithPath("n20"), 0);
  EXPECT_EQ(node->GetNodes()[20]->GetNodeName(), "n21");
  EXPECT_EQ(node->GetNodes().back().Get(), child.Get());
  // Taken out, it comes again once only, and then a second time.
  EXPECT_EQ(node->DeleteNodeWithPath("n20"), 0);
  EXPECT_EQ(node->GetNodes().back()->GetNodeName(), "n99");
  node->AddNode(child.Get(), -1);
  node->AddNode(child.Get(), 5);
  EXPECT_EQ(node->DeleteNodeWithPath("n20"), 0);
  EXPECT_EQ(node->GetNodes()[5]->GetNodeName(), "n5");
  EXPECT_EQ(node->GetNodes().back().Get(), child.Get());
}

/// The names of the children by every way to ask for them.
void ExpectNames(const Node& node, const std::vector<std::string>& names) {
  ASSERT_EQ(node.GetNumOfNode(), static_cast<int>(names.size()));
  ASSERT_EQ(node.GetNodes().size(), names.size());
  for (std::size_t i = 0; i < names.size(); ++i) {
    ASSERT_EQ(node.GetNodes()[i]->GetNodeName(), names[i].c_str()) << i;
  }
}

/// Edits and asks at random; `nameOf` gives the names of new children, of which `names` are there.
template <class NameOf>
void ExpectAsPlainLists(NameOf nameOf) {
  std::mt19937 random(1);
  const auto below = [&](std::size_t bound) { return random() % bound; };
  const Node_var node = NewNode("Wide");
  std::vector<std::string> names;
  std::size_t next = 0;  // whoever goes through the list in order has come here
  for (int i = 0; i < 20000; ++i) {
    const std::string name = nameOf(names, below);
    const std::string known = names.empty() ? name : names[below(names.size())];
    const auto found = std::find(names.begin(), names.end(), known);
    const std::size_t action = below(names.size() < 150 ? 10 : 18);
    if (action == 0) {
      const std::size_t place = below(names.size() + 1);
      const bool isInside = place < names.size();
      node->AddNode(NewNode(name).Get(), isInside ? static_cast<int>(place) : -1);
      names.insert(names.begin() + static_cast<std::ptrdiff_t>(place), name);
    } else if (action < 6) {
      AddChild(*node, name);
      names.push_back(name);
    } else if (action == 6) {
      const bool isThere = std::find(names.begin(), names.end(), name) != names.end();
      ASSERT_EQ(static_cast<bool>(Node_var(node->GetNodeByName(name))), isThere);
    } else if (action < 9 && !names.empty()) {
      next = next + 1 < names.size() ? next + 1 : 0;
      const Node_var first(node->GetNodeByName(names[next]));
      ASSERT_TRUE(first);
      EXPECT_EQ(first->GetNodeName(), names[next].c_str());
    } else if (action == 9 && i % 50 == 0) {
      ExpectNames(*Node_var(node->Clone()), names);
      ExpectNames(*node, names);
    } else {
      ASSERT_EQ(node->DeleteNodeWithPath(known), found == names.end() ? 1 : 0);
      if (found != names.end()) names.erase(found);
    }
    ASSERT_EQ(node->GetNumOfNode(), static_cast<int>(names.size()));
  }
  ExpectNames(*node, names);
}

TEST(WideNodeDeletion, MixedWithEverythingElseLeavesTheListAsPlainOnesWould) {
  ExpectAsPlainLists(
      [](const auto&, const auto& below) { return "n" + std::to_string(below(120)); });
}

TEST(WideNodeDeletion, MixedWithEverythingElseDoesSoForNamesOfWhichHardlyAnyIsThereTwice) {
  int count = 0;
  ExpectAsPlainLists([&](const auto& names, const auto& below) {
    const bool isRepeated = below(300) == 0 && !names.empty();
    return isRepeated ? names[below(names.size())] : "n" + std::to_string(count++);
  });
}

}  // namespace
