#include <array>
#include <functional>
#include <sstream>

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
    const std::string note = folder_ / "cost";
    const ToolRun run = RunTool(words, {.environment = Counted(note)});
    EXPECT_THAT(run.status, testing::AnyOf(0, 1, 3)) << run.err;
    std::istringstream(ReadWholeFile(note)) >> cost.taken >> cost.peak;
    EXPECT_GT(cost.taken, 0);
    cost.output = static_cast<long>(run.out.size() + run.err.size());
    return cost;
  }

  /// What doubles with the file costs twice as much more each time; a square would cost four times.
  void ExpectLinear(const std::vector<std::string>& arguments, const std::vector<Shape>& shapes) {
    constexpr int count = 500;
    std::array<Cost, 3> costs;
    for (int i = 0; i < 3; ++i) costs[i] = CostOf(arguments, shapes, count << i);
    constexpr long blocks = 1 << 17;
    EXPECT_LE(costs[2].taken - costs[1].taken, 3 * (costs[1].taken - costs[0].taken) + blocks)
        << costs[0].taken << " " << costs[1].taken << " " << costs[2].taken;
    EXPECT_LE(costs[2].output, 20 * costs[2].file);
    EXPECT_LE(costs[2].output - costs[1].output, 3 * (costs[1].output - costs[0].output) + 4096);
  }

 private:
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
    EXPECT_LE(cost.peak, 20 * cost.file);
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
  EXPECT_LE(CostOf({"tree", "--json"}, {iso}, 0).peak - empty, 16 * file);
  EXPECT_LE(CostOf({"get", "Name", "--all", "--json"}, {iso}, 0).peak - empty, 16 * file);
}
