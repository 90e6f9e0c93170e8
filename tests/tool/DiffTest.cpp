#include <filesystem>
#include <map>
#include <random>
#include <set>

#include "ToolRun.h"

using nlohmann::json;
using testing::HasSubstr;

namespace {

/// Two standards as files.
class Diff : public testing::Test {
 protected:
  ToolRun Run(const std::string& before, const std::string& after,
              const std::vector<std::string>& more = {}) {
    std::vector<std::string> arguments = {"diff", folder.Write("a.xml", before),
                                          folder.Write("b.xml", after)};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return RunTool(arguments);
  }

  json Differences(const std::string& before, const std::string& after) {
    const ToolRun run = Run(before, after, {"--json"});
    const json report = ParsedJson(run);
    EXPECT_EQ(run.err, "");
    EXPECT_TRUE(report.is_object()) << run.out;
    if (!report.is_object()) return {};
    EXPECT_EQ(run.status, report["differences"].empty() ? 0 : 1);
    return report["differences"];
  }

  /// The lines below the summary.
  std::string Lines(const std::string& before, const std::string& after) {
    const std::string text = Run(before, after).out;
    return text.substr(text.find('\n') + 1);
  }

  /// What `command` makes of the sample.
  std::string Edited(const std::string& command) {
    const std::string output = folder / "edited.xml";
    const ToolRun run = RunTool(
        {"edit", folder.Write("sample.xml", SampleStandard()), "-o", output, "-c", command});
    EXPECT_EQ(run.status, 0) << run.err;
    return ReadWholeFile(output);
  }

  const TemporaryFolder folder;
};

/// What the other way round tells of the same difference.
json Exchanged(json difference) {
  if (difference["difference"] == "added" || difference["difference"] == "removed") {
    difference["difference"] = difference["difference"] == "added" ? "removed" : "added";
    return difference;
  }
  const auto exchange = [&](const char* before, const char* after, const json& fallback) {
    const json a = difference.value(before, json());
    const json b = difference.value(after, fallback.is_null() ? json() : a);
    difference.erase(before);
    difference.erase(after);
    if (!b.is_null() && b != "") difference[before] = b;
    if (a != b) difference[after] = a.is_null() ? json("") : a;
  };
  exchange("path", "newPath", true);
  exchange("entry", "newEntry", true);
  if (difference.contains("old")) std::swap(difference["old"], difference["new"]);
  if (difference.contains("place")) std::swap(difference["place"], difference["newPlace"]);
  return difference;
}

std::multiset<std::string> AsSet(const json& differences, bool isExchanged) {
  std::multiset<std::string> set;
  for (const json& each : differences) set.insert((isExchanged ? Exchanged(each) : each).dump());
  return set;
}

std::string Entry(const std::string& name, const std::string& type) {
  return "<std:typeval name=\"E\">" +
         (name.empty() ? "" : "<std:strval name=\"Name\">" + name + "</std:strval>") +
         "<std:intval name=\"Type\">" + type + "</std:intval></std:typeval>\n";
}

/// Entries by name and type.
std::string ListOf(const std::vector<std::pair<std::string, std::string>>& entries) {
  std::string text = "<std:node name=\"L\">";
  for (const auto& [name, type] : entries) text += Entry(name, type);
  return Document(text + "</std:node>");
}

std::string Entries(const std::vector<std::string>& names) {
  std::string text = "<std:node name=\"List\">\n";
  for (const std::string& name : names) text += Entry(name, "1");
  return Document(text + "</std:node>\n");
}

/// A standard of few names, so that much of it occurs twice and in two standards alike.
std::string RandomStandard(unsigned seed) {
  std::mt19937 random(seed);
  const auto pick = [&](unsigned count) { return static_cast<unsigned>(random() % count); };
  const auto letter = [&](unsigned count) {
    return std::string(1, static_cast<char>('A' + pick(count)));
  };
  std::string text = "<std:enumdef name=\"Y\">";
  for (unsigned i = 0, count = 1 + pick(4); i < count; ++i) {
    text += "<std:strval>" + letter(5) + "</std:strval>";
  }
  text += "</std:enumdef>\n";
  for (unsigned i = 0, count = 1 + pick(3); i < count; ++i) {
    text += "<std:node name=\"" + letter(3) + "\">\n";
    for (unsigned j = pick(6); j > 0; --j) text += Entry(letter(4), std::to_string(pick(2)));
    for (unsigned j = pick(3); j > 0; --j) text += Entry("", std::to_string(pick(3)));
    for (unsigned j = pick(4); j > 0; --j) {
      text += Parameter(letter(4), pick(2) == 0 ? "intval" : "floatval", std::to_string(pick(2)));
    }
    for (unsigned j = pick(3); j > 0; --j) {
      text += "<std:node name=\"N\">" + Parameter("Name", "strval", letter(3)) +
              Parameter("V", "intval", std::to_string(pick(2))) + "</std:node>";
    }
    for (unsigned j = pick(4); j > 0; --j) {
      text += "<std:floatval>" + std::to_string(pick(3)) + "</std:floatval>";
    }
    text += "</std:node>\n";
  }
  return Document(text);
}

std::string Deep(int depth, const std::string& inside) {
  std::string text;
  for (int i = 0; i < depth; ++i) text += "<std:node name=\"n\">";
  text += inside;
  for (int i = 0; i < depth; ++i) text += "</std:node>";
  return Document(text);
}

struct EditCase {
  const char* command;
  const char* line;
};

// A command, and all that it changes.
constexpr EditCase kEdits[] = {
    {"node Root:Site", "  + Root.Site  node, 0 parameters\n"},
    {"node Root:Site:1", "  + Root.Site  node, 0 parameters\n"},
    {"instance Root.Frames:FrameDef", "  + Root.Frames.FrameDef[3]  instance, 0 parameters\n"},
    {"node Root.Dimension.DIMLTail:Note", "  + Root.Dimension.DIMLTail.Note  node, 0 parameters\n"},
    {"instance Root.Frames:FrameDef:1", "  + Root.Frames.FrameDef  instance, 0 parameters\n"},
    {"instance Root.Frames:FrameDef", "  + Root.Frames.FrameDef[3]  instance, 0 parameters\n"},
    {"value Root.Dimension:Gap:float.mm.0.5:2.0",
     "  + Root.Dimension.Gap  float 2.0, at least 0.5\n"},
    {"value Root.Dimension:Blank:enum.YesNo:No:1", "  + Root.Dimension.Blank  enum.YesNo \"No\"\n"},
    {"value Root.Frames.FrameDef:Scale:float:1.0",
     "  + Root.Frames.FrameDef.Scale (Box)  float 1.0\n"},
    {"value Enum.YesNo::string:Maybe:1", "  + Enum.YesNo.Maybe  string \"Maybe\"\n"},
    {"value TypeDef.FrameDef:Ink:int:1:1", "  + TypeDef.FrameDef.Ink  int 1\n"},
    {"field Root.Frames.FrameDef:Scale:float:1.0:1",
     "  + Root.Frames.FrameDef[2].Scale (Circle)  float 1.0\n"},
    {"change Root.Dimension.DIMLTail:12.5", "  ~ Root.Dimension.DIMLTail  2.0 -> 12.5\n"},
    {"change Root.Dimension.Blanking:No", "  ~ Root.Dimension.Blanking  \"Yes\" -> \"No\"\n"},
    {"change Root.Frames.FrameDef:Type:22", "  ~ Root.Frames.FrameDef.Type (Box)  21 -> 22\n"},
    {"change Root.Frames.FrameDef:Name:Square",
     "  ~ Root.Frames.FrameDef.Name (Box)  \"Box\" -> \"Square\"\n"},
    {"change Root.Ink:0 0 0", "  ~ Root.Ink  255 0 0 -> 0 0 0\n"},
    {"change Enum.YesNo.No:Never", "  ~ Enum.YesNo.No  \"No\" -> \"Never\"\n"},
    {"change TypeDef.FrameDef:Type:2", "  ~ TypeDef.FrameDef.Type  1 -> 2\n"},
    {"delete Root.Ink", "  - Root.Ink  color 255 0 0\n"},
    {"delete Root.Dimension", "  - Root.Dimension  node, 4 parameters\n"},
    {"delete Root.Frames.FrameDef", "  - Root.Frames.FrameDef (Box)  instance, 2 parameters\n"},
    {"delete Root.Frames.FrameDef.Name", "  - Root.Frames.FrameDef.Name (Box)  string \"Box\"\n"},
    {"delete Enum.YesNo.No", "  - Enum.YesNo.No  string \"No\"\n"},
    {"delete TypeDef.FrameDef", "  - TypeDef.FrameDef  typedef, 2 parameters\n"},
    // A change to another way to write the same is none.
    {"change Root.Dimension.DIMLTail:2", ""},
    {"change Root.Dimension.TXTDatumMode:01", ""},
};

}  // namespace

TEST_F(Diff, AThingDoesNotDifferFromItself) {
  for (const std::string& text : {SampleStandard(), WithSheets(SampleStandard()), Document("")}) {
    const ToolRun run = Run(text, text);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_THAT(run.out, testing::EndsWith(": 0 added, 0 removed, 0 changed, 0 moved\n"));
    EXPECT_EQ(std::count(run.out.begin(), run.out.end(), '\n'), 1);
    EXPECT_EQ(Differences(text, text), json::array());
  }
}

TEST_F(Diff, EachEditCommandShowsAsJustThat) {
  for (const auto& [command, line] : kEdits) {
    EXPECT_EQ(Lines(SampleStandard(), Edited(command)), line) << command;
  }
}

TEST_F(Diff, TheSummaryComesFirstAndCounts) {
  const std::string after =
      Replaced(Replaced(SampleStandard(), "\"Ink\"", "\"Pen\""), ">2.0<", ">3.0<");
  const ToolRun run = Run(SampleStandard(), after);
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out.substr(0, run.out.find('\n')), folder / "a.xml" + " -> " + (folder / "b.xml") +
                                                       ": 1 added, 1 removed, 1 changed, 0 moved");
  const json report = ParsedJson(Run(SampleStandard(), after, {"--json"}));
  EXPECT_EQ(report["summary"], json({{"added", 1}, {"removed", 1}, {"changed", 1}, {"moved", 0}}));
}

TEST_F(Diff, TheOtherWayRoundExchangesAddedAndRemovedOldAndNew) {
  std::size_t seen = 0;
  for (unsigned seed = 0; seed < 40; ++seed) {
    const std::string a = RandomStandard(seed);
    const std::string b = RandomStandard(seed + 1);
    const json there = Differences(a, b);
    const json back = Differences(b, a);
    EXPECT_EQ(AsSet(there, false), AsSet(back, true)) << a << b << there.dump(2) << back.dump(2);
    EXPECT_TRUE(Differences(a, a).empty());
    seen += there.size();
  }
  EXPECT_GT(seen, 200u);
}

TEST_F(Diff, ValuesAreComparedByTypeAndMeaning) {
  struct Case {
    const char* element;
    const char* before;
    const char* after;
    bool isSame;
  };
  constexpr Case cases[] = {
      {"floatval", "1.0", "1", true},
      {"floatval", "0.5", "5e-1", true},
      {"floatval", " 2.50 ", "+2.5", true},
      {"floatval", "0", "-0.0", true},
      {"floatval", "1.0", "1.01", false},
      {"floatval", "abc", "abc", true},
      {"floatval", "1,0", "1.0", false},
      {"intval", "7", "007", true},
      {"intval", "7", "-7", false},
      {"intval", "9999999999999999999", "99999999999999999990", false},
      {"colorval", "255 0 0", " 255  0 0", true},
      {"colorval", "255 0 0", "255 0", false},
      {"strval", "1.0", "1", false},
      {"strval", "a", " a", false},
      {"strval", "a", "A", false},
  };
  for (const Case& each : cases) {
    const std::string a = Document(Parameter("P", each.element, each.before));
    const std::string b = Document(Parameter("P", each.element, each.after));
    EXPECT_EQ(Differences(a, b).empty(), each.isSame)
        << each.element << ": " << each.before << ", " << each.after;
  }
}

TEST_F(Diff, AnotherTypeIsAChangeThatShowsBothTypes) {
  const std::string a = Document(Parameter("P", "floatval", "1"));
  EXPECT_EQ(Lines(a, Document(Parameter("P", "intval", "1"))), "  ~ Root.P  float 1 -> int 1\n");
  EXPECT_EQ(Lines(a, Document(Parameter("P", "floatval minval=\"0\"", "1"))),
            "  ~ Root.P  float 1 -> float 1, at least 0\n");
  EXPECT_EQ(Lines(Document(Parameter("P", "enumval name=\"A\"", "x")),
                  Document(Parameter("P", "enumval name=\"B\"", "x"))),
            "  ~ Root.P  enum.A \"x\" -> enum.B \"x\"\n");
  EXPECT_EQ(Lines(Document(Parameter("P", "floatval minval=\"0\"", "1")),
                  Document(Parameter("P", "floatval minval=\"0.0\"", "1"))),
            "");
  const json changed = Differences(a, Document(Parameter("P", "intval", "2")))[0];
  EXPECT_EQ(changed["old"], json({{"type", "float"}, {"value", "1"}}));
  EXPECT_EQ(changed["new"], json({{"type", "int"}, {"value", "2"}}));
}

TEST_F(Diff, AnotherNameOfAValueIsAChangeThatShowsBothNames) {
  const auto value = [](const std::string& element, const std::string& text) {
    return Document(Parameter("X", element, text));
  };
  EXPECT_EQ(Lines(value("strval", "a"), value("strval name=\"L\"", "a")),
            "  ~ Root.X  string \"a\" -> L string \"a\"\n");
  EXPECT_EQ(Lines(value("strval name=\"L\"", "a"), value("strval name=\"M\"", "b")),
            "  ~ Root.X  L string \"a\" -> M string \"b\"\n");
  const json changed = Differences(value("strval", "a"), value("strval name=\"L\"", "a"))[0];
  EXPECT_EQ(changed["old"], json({{"name", ""}, {"type", "string"}, {"value", "a"}}));
  EXPECT_EQ(changed["new"], json({{"name", "L"}, {"type", "string"}, {"value", "a"}}));
}

TEST_F(Diff, AGroupAndAnInstanceOfOneNameAreTwoThings) {
  EXPECT_EQ(Lines(Document("<std:node name=\"L\"><std:node name=\"X\"/></std:node>"),
                  Document("<std:node name=\"L\"><std:typeval name=\"X\"/></std:node>")),
            "  - Root.L.X  node, 0 parameters\n  + Root.L.X  instance, 0 parameters\n");
}

TEST_F(Diff, TheOrderOfParametersAndBlanksSayNothing) {
  const std::string a = Parameter("A", "intval", "1");
  const std::string b = Parameter("B", "intval", "2");
  EXPECT_EQ(Lines(Document(a + b), Document("\n\n   " + b + "  \n" + a)), "");
}

TEST_F(Diff, TheFewestMovedEntriesAreTold) {
  const std::vector<std::string> order = {"A", "B", "C", "D", "E"};
  EXPECT_EQ(Lines(Entries(order), Entries({"E", "A", "B", "C", "D"})),
            "  > Root.List.E[5] (E)  from place 5 to 1\n");
  EXPECT_EQ(Lines(Entries(order), Entries({"B", "C", "D", "E", "A"})),
            "  > Root.List.E (A)  from place 1 to 5\n");
  EXPECT_EQ(Lines(Entries(order), Entries({"A", "C", "D", "B", "E"})),
            "  > Root.List.E[2] (B)  from place 2 to 4\n");
  // Turned over, one stays and the others move around it.
  EXPECT_EQ(Differences(Entries(order), Entries({"E", "D", "C", "B", "A"})).size(), 4u);
  // What is only pushed along by others was not moved.
  EXPECT_EQ(Lines(Entries(order), Entries({"A", "X", "B", "C", "D", "E"})),
            "  + Root.List.E[2] (X)  instance, 2 parameters\n");
  EXPECT_EQ(Lines(Entries(order), Entries({"B", "D", "E"})),
            "  - Root.List.E (A)  instance, 2 parameters\n"
            "  - Root.List.E[3] (C)  instance, 2 parameters\n");
}

TEST_F(Diff, TheFewestMovedAreAllButALongestThatKeepsItsOrder) {
  std::mt19937 random(1);
  for (int round = 0; round < 12; ++round) {
    std::vector<std::string> order = {"A", "B", "C", "D", "E", "F", "G"};
    const std::string before = Entries(order);
    std::shuffle(order.begin(), order.end(), random);
    std::size_t longest = 0;
    for (unsigned chosen = 0; chosen < 1u << order.size(); ++chosen) {
      std::vector<std::string> kept;
      for (std::size_t i = 0; i < order.size(); ++i) {
        if ((chosen >> i & 1) != 0) kept.push_back(order[i]);
      }
      if (std::is_sorted(kept.begin(), kept.end())) longest = std::max(longest, kept.size());
    }
    const json moved = Differences(before, Entries(order));
    EXPECT_EQ(moved.size(), order.size() - longest);
    for (const json& each : moved) EXPECT_EQ(each["difference"], "moved");
  }
}

TEST_F(Diff, TheOrderOfLiteralsAndOfTheFieldsOfAnEntryCounts) {
  EXPECT_EQ(Differences(SampleStandard(),
                        Replaced(SampleStandard(),
                                 "<std:strval>Yes</std:strval><std:strval>No</std:strval>",
                                 "<std:strval>No</std:strval><std:strval>Yes</std:strval>"))
                .size(),
            1u);
  const json moved = Differences(
      SampleStandard(),
      Replaced(
          SampleStandard(),
          "<std:strval name=\"Name\">Box</std:strval><std:intval name=\"Type\">21</std:intval>",
          "<std:intval name=\"Type\">21</std:intval><std:strval name=\"Name\">Box</std:strval>"));
  ASSERT_EQ(moved.size(), 1u);
  EXPECT_EQ(moved[0]["difference"], "moved");
}

TEST_F(Diff, EntriesAreKnownByTheirNameWhereverTheyStand) {
  const std::string list = "<std:node name=\"L\">";
  const std::string a = Document(list + Entry("A", "1") + Entry("B", "2") + "</std:node>");
  const std::string b =
      Document(list + Entry("C", "3") + Entry("A", "1") + Entry("B", "9") + "</std:node>");
  EXPECT_EQ(Lines(a, b),
            "  + Root.L.E (C)  instance, 2 parameters\n  ~ Root.L.E[2].Type (B)  2 -> 9\n");
  const json changed = Differences(a, b)[1];
  EXPECT_EQ(changed["path"], "Root.L.E[2].Type");
  EXPECT_EQ(changed["newPath"], "Root.L.E[3].Type");
  EXPECT_EQ(changed["entry"], "B");
}

TEST_F(Diff, EntriesOfOneNameTwiceAreMatchedOneByOne) {
  const std::string twice = ListOf({{"A", "1"}, {"A", "2"}, {"B", "3"}});
  EXPECT_EQ(Lines(twice, ListOf({{"A", "2"}, {"B", "3"}})),
            "  - Root.L.E (A)  instance, 2 parameters\n");
  EXPECT_EQ(Lines(twice, ListOf({{"A", "1"}, {"A", "5"}, {"B", "3"}})),
            "  ~ Root.L.E[2].Type (A)  2 -> 5\n");
}

TEST_F(Diff, OfEntriesOfOneNameThoseThatAreAlikeAreMatchedWhereverTheOthersWent) {
  const json differences =
      Differences(ListOf({{"X", "9"}, {"A", "1"}, {"A", "2"}, {"A", "3"}, {"Y", "9"}}),
                  ListOf({{"Y", "9"}, {"A", "2"}, {"A", "3"}, {"X", "9"}}));
  std::map<std::string, std::vector<std::string>> paths;
  for (const json& each : differences) paths[each["difference"]].push_back(each["path"]);
  EXPECT_EQ(paths["removed"], std::vector<std::string>{"Root.L.E[2]"});
  EXPECT_EQ(paths["moved"], (std::vector<std::string>{"Root.L.E[5]", "Root.L.E"}));
  EXPECT_EQ(differences.size(), 3u);
}

TEST_F(Diff, NodesOfOneNameAreEntriesTooAndKnownByTheirName) {
  const auto node = [](const std::string& name, const std::string& value) {
    return "<std:node name=\"N\">" + Parameter("Name", "strval", name) +
           Parameter("V", "intval", value) + "</std:node>";
  };
  EXPECT_EQ(
      Lines(Document(node("p", "1") + node("q", "2")), Document(node("q", "3") + node("p", "1"))),
      "  > Root.N[2] (q)  from place 2 to 1\n  ~ Root.N[2].V (q)  2 -> 3\n");
  // Where one of them is left alone, it is the one of its name still.
  const std::string both = Document(node("a", "1") + node("b", "2"));
  EXPECT_EQ(Lines(both, Document(node("b", "2"))), "  - Root.N (a)  node, 2 parameters\n");
  EXPECT_EQ(Lines(both, Document(node("a", "1"))), "  - Root.N[2] (b)  node, 2 parameters\n");
  EXPECT_EQ(Lines(Document(node("b", "3")), both),
            "  + Root.N (a)  node, 2 parameters\n  ~ Root.N.V  3 -> 2\n");
  // Alone on both sides it is no entry, and its name a value like any other.
  EXPECT_EQ(Lines(Document(node("a", "1")), Document(node("b", "1"))),
            "  ~ Root.N.Name  \"a\" -> \"b\"\n");
}

TEST_F(Diff, EntriesWithoutNameAreMatchedByPlaceWithWhatIsEqualAtBothEndsFirst) {
  const auto list = [](const std::vector<std::string>& types) {
    std::vector<std::pair<std::string, std::string>> entries;
    for (const std::string& type : types) entries.emplace_back("", type);
    return ListOf(entries);
  };
  EXPECT_EQ(Lines(list({"1", "2", "3"}), list({"1", "9", "3"})), "  ~ Root.L.E[2].Type  2 -> 9\n");
  EXPECT_EQ(Lines(list({"1", "2", "3"}), list({"2", "3"})),
            "  - Root.L.E  instance, 1 parameter\n");
  EXPECT_EQ(Lines(list({"1", "2"}), list({"2", "1"})),
            "  ~ Root.L.E.Type  1 -> 2\n  ~ Root.L.E[2].Type  2 -> 1\n");
}

TEST_F(Diff, ValuesWithoutNameAreCountedInTheirNode) {
  EXPECT_EQ(Lines(SampleStandard(), Replaced(SampleStandard(), ">3.5<", ">5.0<")),
            "  ~ Root.Sizes.[2]  3.5 -> 5.0\n");
  EXPECT_EQ(
      Lines(SampleStandard(), Replaced(SampleStandard(), "<std:floatval>2.5</std:floatval>", "")),
      "  - Root.Sizes.[1]  float 2.5\n");
}

TEST_F(Diff, NodesOfOneNameTwiceAreCounted) {
  const auto twice = [](const std::string& a, const std::string& b) {
    return Document(Parameter("P", "intval", a) + Parameter("P", "intval", b));
  };
  EXPECT_EQ(Lines(twice("1", "2"), twice("1", "3")), "  ~ Root.P[2]  2 -> 3\n");
  EXPECT_EQ(Lines(twice("1", "2"), Document(Parameter("P", "intval", "2"))), "  - Root.P  int 1\n");
}

TEST_F(Diff, JsonHasAllThatWasAddedOrRemoved) {
  const std::string site = "<std:node name=\"Site\"><std:node name=\"Low\">" +
                           Parameter("Gap", "intval", "1") + "</std:node></std:node>";
  const std::string with =
      Replaced(SampleStandard(), "<std:node name=\"Sizes\">", site + "<std:node name=\"Sizes\">");
  const json added = Differences(SampleStandard(), with);
  ASSERT_EQ(added.size(), 1u);
  EXPECT_EQ(added[0]["path"], "Root.Site");
  EXPECT_EQ(added[0]["parameters"], 1);
  EXPECT_EQ(
      added[0]["content"],
      json::array(
          {{{"level", 0}, {"kind", "node"}, {"name", "Site"}},
           {{"level", 1}, {"kind", "node"}, {"name", "Low"}},
           {{"level", 2}, {"kind", "node"}, {"name", "Gap"}, {"type", "int"}, {"value", "1"}}}));
  EXPECT_EQ(Differences(with, SampleStandard())[0]["content"], added[0]["content"]);
}

TEST_F(Diff, AStandardMayBeNamedOrComeFromStandardInput) {
  EXPECT_EQ(RunTool({"diff", "ISO", "-"},
                    {.input = ReadWholeFile(std::string(HOL_STANDARDS) + "/ISO.xml")})
                .status,
            0);
  EXPECT_EQ(RunTool({"diff", "ANSI-ASME", "JIS"}).status, 1);
}

TEST_F(Diff, ANameThatLeadsToTheStandardOfASiteIsSaidToDoSo) {
  const std::string iso = folder.Write("ISO.xml", SampleStandard());
  const std::string own = folder.Write("House.xml", SampleStandard());
  const ToolSurroundings site = {.input = SampleStandard(),
                                 .environment = {{"VYR_STANDARD_PATH", folder.Path().string()}}};
  const ToolRun run = RunTool({"diff", "ISO", "-"}, site);
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.out, testing::StartsWith("ISO (" + iso + ") -> -: "));
  EXPECT_THAT(run.err, testing::StartsWith("holstd: ISO: warning: is " + iso + ", which hides"));
  const ToolRun back = RunTool({"diff", "-", "ISO", "--json"}, site);
  EXPECT_EQ(back.status, 0);
  EXPECT_FALSE(ParsedJson(back).contains("beforeFile"));
  EXPECT_EQ(ParsedJson(back)["afterFile"], iso);
  // One that hides nothing is what the name can mean only, and so is a shipped one.
  EXPECT_EQ(RunTool({"diff", "House", "-"}, site).err, "");
  EXPECT_EQ(RunTool({"diff", "JIS", "-"}, site).err, "");
  EXPECT_EQ(RunTool({"diff", iso, own}, site).err, "");
  folder.Write("ISO.xml", ReadWholeFile(std::string(HOL_STANDARDS) + "/ISO.xml"));
  EXPECT_EQ(RunTool({"diff", "ISO", "-"}, site).err, "") << "a copy of the shipped one";
}

TEST_F(Diff, AFolderOfTheNameOfAStandardIsNotMeant) {
  const std::string before = std::filesystem::current_path();
  std::filesystem::create_directory(folder / "JIS");
  std::filesystem::current_path(folder.Path());
  EXPECT_EQ(RunTool({"diff", "JIS", "JIS"}).status, 0);
  std::filesystem::create_directory(folder / "Other");
  ExpectFailure(RunTool({"diff", "JIS", "Other"}), 3, {"Other: ", "folder"});
  folder.Write("ISO", SampleStandard());
  EXPECT_EQ(RunTool({"diff", "ISO", "-"}, {.input = SampleStandard()}).status, 0)
      << "a file of the name comes first";
  std::filesystem::current_path(before);
}

TEST_F(Diff, WhatCannotBeReadIsStatus3) {
  const std::string good = folder.Write("good.xml", SampleStandard());
  const std::string bad = folder.Write("bad.xml", "<nothing");
  ExpectFailure(RunTool({"diff", good, bad}), 3, {bad});
  ExpectFailure(RunTool({"diff", bad, good}), 3, {bad});
  ExpectFailure(RunTool({"diff", good, "ISQ"}), 3, {"ISQ: ", "ANSI-ASME, ISO, JIS"});
  ExpectFailure(RunTool({"diff", good, folder / "missing.xml"}), 3, {"missing.xml"});
  ExpectFailure(RunTool({"diff", "-", "-"}), 2, {"once"});
  ExpectFailure(RunTool({"diff", good}), 2, {"B"});
}

TEST_F(Diff, ADeepStandardIsCompared) {
  constexpr int depth = 100000;
  const std::string one = Deep(depth, Parameter("P", "intval", "1"));
  EXPECT_EQ(Run(one, one).status, 0);
  const json changed = Differences(one, Deep(depth, Parameter("P", "intval", "2")));
  ASSERT_EQ(changed.size(), 1u);
  // 500 bytes at most, and whole names: "n." 249 times, and "P".
  std::string path = "...";
  for (int i = 0; i < 249; ++i) path += "n.";
  EXPECT_EQ(changed[0]["path"], path + "P");
  const std::string top = Document("");
  EXPECT_EQ(Lines(top, one), "  + Root.n  node, 1 parameter\n");
  EXPECT_EQ(Differences(top, one)[0]["content"].size(), depth + 1u);
}

TEST_F(Diff, NothingATerminalWouldObeyIsPrinted) {
  EXPECT_EQ(
      Lines(Document(Parameter("P", "strval", "a")), Document(Parameter("P", "strval", "a\tb\n"))),
      "  ~ Root.P  \"a\" -> \"a\\tb\\n\"\n");
}
