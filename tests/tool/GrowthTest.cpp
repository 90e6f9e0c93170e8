#include <array>
#include <functional>
#include <sstream>

#include "Sanitizers.h"
#include "ToolRun.h"

namespace {

using Shape = std::function<std::string(int count)>;

std::string Repeated(int count, const std::function<std::string(const std::string&)>& part) {
  std::string text;
  for (int i = 0; i < count; ++i) text += part(std::to_string(i)) + "\n";
  return text;
}

std::string Node(const std::string& name, const std::string& content) {
  return "<std:node name=\"" + name + "\">\n" + content + "</std:node>\n";
}

std::string Enumeration(const std::string& name, const std::string& literals) {
  return "<std:enumdef name=\"" + name + "\">\n" + literals + "</std:enumdef>\n";
}

/// Levels of one name, with a parameter in each.
std::string Levels(int count, const std::string& parameter) {
  std::string text;
  for (int i = 0; i < count; ++i) text += "<std:node name=\"a\">" + parameter;
  for (int i = 0; i < count; ++i) text += "</std:node>";
  return Document(text + "\n" + Parameter("Version", "intval", "220"));
}

std::string DeepNumbers(int count) {
  return Levels(count, Parameter("p", "intval", "1"));
}
std::string OtherDeepNumbers(int count) {
  return Levels(count, Parameter("p", "intval", "2"));
}
std::string DeepUndefined(int count) {
  return Levels(count, Parameter("p", "enumval name=\"E\"", "L"));
}

std::string EqualNames(int count) {
  return Document(Node("a", Repeated(count, [](const std::string& number) {
                         return Parameter("s", "intval", number);
                       })));
}

std::string DifferentNames(int count) {
  return Document(Node("a", Repeated(count, [](const std::string& number) {
                         return Parameter("s" + number, "intval", number);
                       })));
}

std::string Literals(int count, const std::string& begin) {
  return Repeated(count, [&](const std::string& number) {
    return "<std:strval>" + begin + number + "</std:strval>";
  });
}

std::string ValuesOf(int count, const std::string& enumeration, const std::string& begin) {
  return Node("a", Repeated(count, [&](const std::string& number) {
                return Parameter("v", "enumval name=\"" + enumeration + "\"", begin + number);
              }));
}

std::string HugeEnumeration(int count) {
  return Document(Enumeration("E", Literals(count, "L")) + ValuesOf(count, "E", "L"));
}
std::string WrongLiterals(int count) {
  return Document(Enumeration("E", Literals(count, "L")) + ValuesOf(count, "E", "M"));
}

std::string WrongEnumerations(int count) {
  const std::string known = Repeated(count, [](const std::string& number) {
    return Enumeration("E" + number, "<std:strval>L</std:strval>");
  });
  return Document(known + Node("a", Repeated(count, [](const std::string& number) {
                                 return Parameter("v", "enumval name=\"F" + number + "\"", "L");
                               })));
}

/// Sheet styles with formats that are not there.
std::string WrongFormats(int count) {
  const std::string formats = Repeated(count, [](const std::string& number) {
    return "<std:typeval name=\"Formats\"><std:strval name=\"Name\">F" + number +
           "</std:strval></std:typeval>";
  });
  const std::string styles = Repeated(count, [](const std::string& number) {
    return Node("s" + number, Parameter("Format", "strval", "G" + number));
  });
  return Document(Node("SheetFormat", formats) + Node("Styles", Node("Sheet", styles)) +
                  Parameter("Version", "intval", "220"));
}

/// What a run took and wrote.
struct Cost {
  long file = 0;    ///< what it read, in bytes
  long taken = 0;   ///< of the heap, in all
  long peak = 0;    ///< of the heap, at a time
  long output = 0;  ///< on both of its streams
};

/// The surroundings of a run whose memory is counted into `note`. What this process was given, its
/// children have, too.
std::vector<std::pair<std::string, std::string>> Counted(const std::string& note) {
  const auto given = [](const char* name) {
    const char* text = std::getenv(name);
    return text == nullptr ? std::string() : ":" + std::string(text);
  };
  return {{"LD_PRELOAD", HOL_COUNTED_MEMORY + given("LD_PRELOAD")},
          {"ASAN_OPTIONS", "exitcode=99:verify_asan_link_order=0" + given("ASAN_OPTIONS")},
          {"HOL_MEMORY_COUNT", note}};
}

class Growth : public testing::Test {
 protected:
  void SetUp() override {
    if (kIsSanitized) GTEST_SKIP() << "memory is not counted under sanitizers";
  }

  Cost CostOf(const std::vector<std::string>& arguments, const std::vector<Shape>& shapes,
              int count) {
    Cost cost;
    std::vector<std::string> files;
    for (const Shape& shape : shapes) {
      files.push_back(folder_.Write(std::to_string(files.size()) + ".xml", shape(count)));
      cost.file += static_cast<long>(ReadWholeFile(files.back()).size());
    }
    std::vector<std::string> words = arguments;
    words.insert(words.begin() + 1, files.begin(), files.end());
    EXPECT_THAT(Run(words, cost), testing::AnyOf(0, 1, 3));
    return cost;
  }

  std::string Path(const std::string& name) const { return folder_ / name; }
  std::string File(const std::string& name, const std::string& text) {
    return folder_.Write(name, text);
  }

  /// Of a script of as many lines as `script` has for `count`, which all can be done.
  Cost CostOfScript(const Shape& shape, const Shape& script, int count) {
    Cost cost;
    const std::string file = folder_.Write("in.xml", shape(count));
    const std::string commands = folder_.Write("script", script(count));
    cost.file = static_cast<long>(ReadWholeFile(file).size() + ReadWholeFile(commands).size());
    EXPECT_EQ(Run({"edit", file, "-o", folder_ / "out.xml", "-f", commands, "--no-backup"}, cost),
              0);
    return cost;
  }

  static void ExpectNoSquare(const std::array<Cost, 3>& costs) {
    constexpr long blocks = 1 << 17;
    EXPECT_LE(costs[2].taken - costs[1].taken, 3 * (costs[1].taken - costs[0].taken) + blocks)
        << costs[0].taken << " " << costs[1].taken << " " << costs[2].taken;
  }

  /// What doubles with the file costs twice as much more each time; a square would cost four times.
  void ExpectLinear(const std::vector<std::string>& arguments, const std::vector<Shape>& shapes) {
    constexpr int count = 500;
    std::array<Cost, 3> costs;
    for (int i = 0; i < 3; ++i) costs[i] = CostOf(arguments, shapes, count << i);
    ExpectNoSquare(costs);
    EXPECT_LE(costs[2].output, 20 * costs[2].file);
    EXPECT_LE(costs[2].output - costs[1].output, 3 * (costs[1].output - costs[0].output) + 4096);
  }

 private:
  /// The status of a run, which goes into `cost`.
  int Run(const std::vector<std::string>& words, Cost& cost) {
    const std::string note = folder_ / "cost";
    const ToolRun run = RunTool(words, {.environment = Counted(note)});
    EXPECT_LE(run.status, 3) << run.err;
    std::istringstream(ReadWholeFile(note)) >> cost.taken >> cost.peak;
    EXPECT_GT(cost.taken, 0);
    cost.output = static_cast<long>(run.out.size() + run.err.size());
    return run.status;
  }

  TemporaryFolder folder_;
};

std::string PathOfLevels(int count) {
  std::string path;
  for (int i = 0; i < count; ++i) path += "a.";
  return path;
}

}  // namespace

TEST_F(Growth, ANameThatLeadsNowhereIsToldInTimeAsTheFileIsLong) {
  for (const Shape& shape : {Shape(DeepNumbers), Shape(EqualNames), Shape(DifferentNames)}) {
    for (const char* command : {"get", "explain", "tree"}) {
      SCOPED_TRACE(command);
      ExpectLinear({command, "a.zb"}, {shape});
    }
    // A search that meets an element once for each that is above it would keep them all. These are
    // small elements, beside which what is kept of them looks large.
    const Cost cost = CostOf({"get", "a.zb"}, {shape}, 1000);
    const long empty = CostOf({"info"}, {[](int) { return Document(""); }}, 0).peak;
    EXPECT_LE(cost.peak - empty, 20 * cost.file);
  }
}

TEST_F(Growth, APathOfManyNamesIsFollowedOnce) {
  for (const char* command : {"tree", "explain"}) {
    SCOPED_TRACE(command);
    std::array<Cost, 3> costs;
    for (int i = 0; i < 3; ++i) {
      const int levels = 500 << i;
      costs[i] = CostOf({command, "Root." + PathOfLevels(levels) + "zb"}, {DeepNumbers}, levels);
    }
    EXPECT_LE(costs[2].taken - costs[1].taken, 3 * (costs[1].taken - costs[0].taken) + (1 << 17))
        << costs[0].taken << " " << costs[1].taken << " " << costs[2].taken;
  }
}

TEST_F(Growth, AQueryOfManyNamesFindsAndMissesAsAShortOneDoes) {
  const std::string file = File("deep.xml", DeepNumbers(3000));
  const ToolRun found = RunTool({"get", file, PathOfLevels(1000) + "p", "--all"});
  EXPECT_EQ(found.status, 0) << found.err;
  // One for each level that has as many above it.
  EXPECT_EQ(std::count(found.out.begin(), found.out.end(), '\n'), 3000 - 1000 + 1);
  std::string nodes = PathOfLevels(800);
  nodes.pop_back();
  ExpectFailure(RunTool({"get", file, nodes}), 1, {"has no value of its own but 2 nodes"});
  ExpectFailure(RunTool({"get", file, PathOfLevels(800) + "zb"}), 1, {"there is no 'zb' below"});
}

TEST_F(Growth, ProblemsAreToldInTimeAsTheFileIsLong) {
  for (const Shape& shape : {Shape(WrongLiterals), Shape(WrongEnumerations), Shape(WrongFormats),
                             Shape(DeepUndefined)}) {
    ExpectLinear({"check"}, {shape});
    ExpectLinear({"check", "--json"}, {shape});
  }
  ExpectLinear({"sheets"}, {WrongFormats});
}

TEST_F(Growth, WhatIsToldOfManyPlacesIsInProportion) {
  ExpectLinear({"explain", "p"}, {DeepNumbers});
  ExpectLinear({"explain", "a", "--json"}, {DeepNumbers});
  ExpectLinear({"explain", "s"}, {EqualNames});
  ExpectLinear({"explain", "v"}, {HugeEnumeration});
  ExpectLinear({"explain", "v", "--json"}, {HugeEnumeration});
  ExpectLinear({"diff"}, {DeepNumbers, OtherDeepNumbers});
  ExpectLinear({"diff", "--json"}, {DeepNumbers, OtherDeepNumbers});
}

TEST_F(Growth, AScriptTakesTimeAsItHasLines) {
  const Shape entries = [](int count) {
    return Document(
        Node("L", Repeated(count, [](const std::string& number) {
               return "<std:typeval name=\"s\"><std:strval name=\"Name\">N" + number +
                      "</std:strval><std:intval name=\"W\">1</std:intval></std:typeval>";
             })));
  };
  // Each names entries by place or by name, when lists have changed that were asked before.
  const std::vector<std::function<std::string(const std::string&)>> commands = {
      [](const std::string& i) {
        return "change Root.L.s[N" + i + "]:Name:M" + i + "\nchange Root.L.s[M" + i + "]:W:2";
      },
      [](const std::string& i) { return "delete Root.L.s[N" + i + "]"; },
      [](const std::string& i) {
        return "instance Root.L:s:1\nfield Root.L.s[1]:Name:string:M" + i +
               "\nchange Root.L.s[2]:Name:P" + i;
      },
      [](const std::string& i) {
        return "instance Root.L:s\nfield Root.L.s:Name:string:M" + i + "\nfield Root.L.s[M" + i +
               "]:W:int:2\ndelete Root.L.s[2]";
      },
      [](const std::string& i) { return "node Root.L:t" + i + "\nchange Root.L.s[2]:W:" + i; },
  };
  for (const auto& command : commands) {
    SCOPED_TRACE(command("0"));
    const Shape script = [&](int count) { return Repeated(count, command); };
    std::array<Cost, 3> costs;
    for (int i = 0; i < 3; ++i) costs[i] = CostOfScript(entries, script, 500 << i);
    ExpectNoSquare(costs);
  }
}

TEST_F(Growth, OneDocumentIsInMemoryAtATime) {
  constexpr int count = 2000;
  const long empty = CostOf({"info"}, {[](int) { return Document(""); }}, 0).peak;
  const long read = CostOf({"info"}, {DifferentNames}, count).peak - empty;
  const auto ratio = [&](const std::vector<std::string>& arguments) {
    return static_cast<double>(CostOf(arguments, {DifferentNames}, count).peak - empty) /
           static_cast<double>(read);
  };
  EXPECT_LT(ratio({"sheets"}), 1.5);
  EXPECT_LT(ratio({"edit", "-o", Path("out.xml"), "-c", "change Root.a.s7:8"}), 1.7);
}

TEST_F(Growth, MemoryIsInProportionToTheFile) {
  const std::string shipped = ReadWholeFile(std::string(HOL_STANDARDS) + "/ISO.xml");
  const auto file = static_cast<long>(shipped.size());
  const Shape iso = [&](int) { return shipped; };
  const std::vector<std::vector<std::string>> commands = {{"check"},
                                                          {"info"},
                                                          {"tree"},
                                                          {"get", "Name"},
                                                          {"get", "Nam"},
                                                          {"explain", "Dimension.DIMLTail"},
                                                          {"sheets"},
                                                          {"styles"},
                                                          {"explain", "Dimension.DIMLTale"},
                                                          {"upgrade", "--dry-run"}};
  // What the tool has before it reads anything.
  const long empty = CostOf({"info"}, {[](int) { return Document(""); }}, 0).peak;
  for (const std::vector<std::string>& command : commands) {
    EXPECT_LE(CostOf(command, {iso}, 0).peak - empty, 10 * file) << command.front();
  }
  EXPECT_LE(CostOf({"diff"}, {iso, iso}, 0).peak - empty, 10 * 2 * file);
  const Cost edited =
      CostOf({"edit", "-o", Path("out.xml"), "-c", "change Root.Dimension.DIMLTail:2"}, {iso}, 0);
  EXPECT_LE(edited.peak - empty, 10 * file);
  EXPECT_LE(CostOf({"tree", "--json"}, {iso}, 0).peak - empty, 16 * file);
  EXPECT_LE(CostOf({"get", "Name", "--all", "--json"}, {iso}, 0).peak - empty, 16 * file);
}
