#include <algorithm>

#include "ToolRun.h"

using testing::HasSubstr;

// Entries and values beyond the first of their name, as commands lead to them.

namespace {

/// An entry of the frames.
std::string Frame(const std::string& name, const std::string& type) {
  return "<std:typeval name=\"FrameDef\"><std:strval name=\"Name\">" + name +
         "</std:strval><std:intval name=\"Type\">" + type + "</std:intval></std:typeval>\n";
}

/// Three frames, a list of plain nodes, and values without names.
std::string Frames() {
  const std::string row = "<std:node name=\"Row\">" + Parameter("Name", "strval", "upper") +
                          Parameter("Height", "intval", "1") + "</std:node>\n";
  return Document(
      "<std:enumdef name=\"Side\"><std:strval>Left</std:strval>"
      "<std:strval>Right</std:strval><std:strval>Right</std:strval></std:enumdef>\n"
      "<std:node name=\"Frames\">\n" +
      Frame("Box", "1") + Frame("Round one", "2") + Frame("v1.2: old", "3") +
      "</std:node>\n<std:node name=\"Rows\">" + row +
      Replaced(Replaced(row, "upper", "lower"), ">1<", ">2<") +
      "</std:node>\n<std:node name=\"Sizes\"><std:floatval>2.5</std:floatval>"
      "<std:floatval>3.5</std:floatval><std:floatval>5.0</std:floatval></std:node>\n" +
      Parameter("Version", "intval", "220"));
}

class EditEntries : public testing::Test {
 protected:
  ToolRun Run(const std::vector<std::string>& commands) {
    std::vector<std::string> arguments = {"edit", file, "-o", output};
    for (const std::string& command : commands) {
      arguments.push_back("-c");
      arguments.push_back(command);
    }
    return RunTool(arguments);
  }
  /// The lines of differences, as `diff` prints them.
  std::string Differences() const {
    const std::string text = RunTool({"diff", file, output}).out;
    return text.substr(text.find('\n') + 1);
  }
  /// Does one command, and tells what it did.
  std::string Done(const std::string& command) {
    const ToolRun run = Run({command});
    return run.status == 0 ? Differences() : run.err;
  }

  const TemporaryFolder folder;
  const std::string file = folder.Write("in.xml", Frames());
  const std::string output = folder / "out.xml";
};

}  // namespace

TEST_F(EditEntries, EveryVerbTakesAPlaceInBrackets) {
  EXPECT_EQ(Done("change Root.Frames.FrameDef[2]:Type:9"),
            "  ~ Root.Frames.FrameDef[2].Type (Round one)  2 -> 9\n");
  EXPECT_EQ(Done("value Root.Frames.FrameDef[2]:Scale:int:4"),
            "  + Root.Frames.FrameDef[2].Scale (Round one)  int 4\n");
  EXPECT_EQ(Done("field Root.Frames.FrameDef[2]:Scale:int:4"),
            "  + Root.Frames.FrameDef[2].Scale (Round one)  int 4\n");
  EXPECT_EQ(Done("delete Root.Frames.FrameDef[2]"),
            "  - Root.Frames.FrameDef[2] (Round one)  instance, 2 parameters\n");
  EXPECT_EQ(Done("delete Root.Frames.FrameDef[2].Type"),
            "  - Root.Frames.FrameDef[2].Type (Round one)  int 2\n");
  EXPECT_EQ(Done("change Root.Rows.Row[2].Height:7"),
            "  ~ Root.Rows.Row[2].Height (lower)  2 -> 7\n");
  EXPECT_EQ(Done("node Root.Rows.Row[2]:Cell"),
            "  + Root.Rows.Row[2].Cell (lower)  node, 0 parameters\n");
  EXPECT_EQ(Done("instance Root.Rows.Row[2]:Cell"),
            "  + Root.Rows.Row[2].Cell (lower)  instance, 0 parameters\n");
  EXPECT_EQ(Done("value Root.Rows.Row[2]:Width:int:7"),
            "  + Root.Rows.Row[2].Width (lower)  int 7\n");
  EXPECT_EQ(Done("delete Root.Rows.Row[2].Height"), "  - Root.Rows.Row[2].Height (lower)  int 2\n");
  EXPECT_EQ(Done("each-node Root.Rows.Row[2] :Cell"),
            "  + Root.Rows.Row[2].Name.Cell (lower)  node, 0 parameters\n"
            "  + Root.Rows.Row[2].Height.Cell (lower)  node, 0 parameters\n");
}

TEST_F(EditEntries, TheNameOfAnEntryInBracketsMeansIt) {
  EXPECT_EQ(Done("change Root.Frames.FrameDef[Round one]:Type:9"),
            "  ~ Root.Frames.FrameDef[2].Type (Round one)  2 -> 9\n");
  // Dots and colons inside the brackets belong to the name.
  EXPECT_EQ(Done("change Root.Frames.FrameDef[v1.2: old]:Type:9"),
            "  ~ Root.Frames.FrameDef[3].Type (v1.2: old)  3 -> 9\n");
  EXPECT_EQ(Done("delete Root.Frames.FrameDef[v1.2: old]"),
            "  - Root.Frames.FrameDef[3] (v1.2: old)  instance, 2 parameters\n");
  // Also where it is a parameter with a node of its own.
  EXPECT_EQ(Done("change Root.Rows.Row[lower].Height:7"),
            "  ~ Root.Rows.Row[2].Height (lower)  2 -> 7\n");
}

TEST_F(EditEntries, ANameFollowsWhatTheCommandsBeforeDid) {
  EXPECT_EQ(
      Run({"change Root.Frames.FrameDef[Box]:Name:Oval", "change Root.Frames.FrameDef[Oval]:Type:7",
           "instance Root.Frames:FrameDef", "field Root.Frames.FrameDef:Name:string:Box",
           "field Root.Frames.FrameDef[Box]:Type:int:8", "delete Root.Frames.FrameDef[2]",
           "change Root.Frames.FrameDef[2]:Type:6", "change Root.Frames.FrameDef[3]:Type:5"})
          .status,
      0);
  EXPECT_EQ(RunTool({"get", output, "Frames.FrameDef.Name", "--all"}).out,
            "Oval\nv1.2: old\nBox\n");
  EXPECT_EQ(RunTool({"get", output, "Frames.FrameDef.Type", "--all"}).out, "7\n6\n5\n");
}

TEST_F(EditEntries, PlacesAndNamesFollowManyChangesOfAWideList) {
  struct Entry {
    std::string list;
    std::string name;
  };
  std::vector<Entry> entries;
  std::string content;
  for (int i = 0; i < 100; ++i) {
    entries.push_back({i % 3 == 0 ? "Old" : "FrameDef", "n" + std::to_string(i)});
    content += Replaced(Replaced(Frame(entries[i].name, "1"), "FrameDef", entries[i].list),
                        "<std:intval name=\"Type\">1</std:intval>", "");
  }
  folder.Write("in.xml", Document("<std:node name=\"Frames\">" + content + "</std:node>" +
                                  Parameter("Version", "intval", "220")));
  // The last name of an entry's path, by place or by name.
  const auto path = [&](std::size_t at, bool isByName) {
    const auto place =
        std::count_if(entries.begin(), entries.begin() + static_cast<long>(at) + 1,
                      [&](const Entry& entry) { return entry.list == entries[at].list; });
    return "Root.Frames." + entries[at].list + "[" +
           (isByName ? entries[at].name : std::to_string(place)) + "]";
  };
  std::string script;
  std::size_t number = 1;
  for (int i = 0; i < 400; ++i) {
    number = number * 1103515245 % 2147483648 + 12345;
    const std::size_t at = number / 64 % entries.size();
    const bool isByName = number / 8192 % 2 == 0;
    const std::string name = "m" + std::to_string(i);
    if (i % 4 == 0) {
      script += "delete " + path(at, isByName) + "\n";
      entries.erase(entries.begin() + static_cast<long>(at));
    } else if (i % 4 == 1) {
      script += "change " + path(at, isByName) + ":" + name + "\n";
      entries[at].name = name;
    } else {
      const std::string list = i % 8 < 4 ? "Old" : "FrameDef";
      const bool isAtEnd = i % 4 == 2;
      const std::size_t place = isAtEnd ? entries.size() : at;
      script +=
          "instance Root.Frames:" + list + (isAtEnd ? "" : ":" + std::to_string(place + 1)) + "\n";
      entries.insert(entries.begin() + static_cast<long>(place), {list, name});
      script += "field " + path(place, false) + ":Name:string:" + name + "\n";
    }
  }
  const ToolRun run = RunTool({"edit", file, "-o", output, "-f", folder.Write("script", script)});
  EXPECT_EQ(run.status, 0) << run.err;
  for (const std::string list : {"Old", "FrameDef"}) {
    std::string names;
    for (const Entry& entry : entries) {
      if (entry.list == list) names += entry.name + "\n";
    }
    EXPECT_EQ(RunTool({"get", output, "Frames." + list + ".Name", "--all"}).out, names);
  }
}

TEST_F(EditEntries, ANameOfSeveralEntriesIsRefused) {
  const ToolRun run =
      Run({"change Root.Frames.FrameDef[3]:Name:Box", "change Root.Frames.FrameDef[Box]:Type:7"});
  ExpectFailure(run, 3,
                {"command 2: there are several 'FrameDef[Box]'", "'FrameDef[1]' or 'FrameDef[3]'"});
}

TEST_F(EditEntries, ValuesTakeTheirPlaceAndTheirNameAsTheyArePrinted) {
  EXPECT_EQ(Done("change Root.Sizes.[2]:4.0"), "  ~ Root.Sizes.[2]  3.5 -> 4.0\n");
  EXPECT_EQ(Done("delete Root.Sizes.[3]"), "  - Root.Sizes.[3]  float 5.0\n");
  EXPECT_EQ(Done("change Root.Frames.FrameDef.Type:9"),
            "  ~ Root.Frames.FrameDef.Type (Box)  1 -> 9\n");
  EXPECT_EQ(Done("change Root.Frames.FrameDef[3].Type:9"),
            "  ~ Root.Frames.FrameDef[3].Type (v1.2: old)  3 -> 9\n");
  EXPECT_EQ(Done("delete Enum.Side.Right[2]"), "  - Enum.Side.Right[2]  string \"Right\"\n");
}

TEST_F(EditEntries, ANameThatIsWrittenJustSoComesFirst) {
  folder.Write("in.xml", Replaced(Frames(), "</std:typeval>\n</std:node>",
                                  "</std:typeval>\n" + Parameter("FrameDef[2]", "intval", "5") +
                                      Parameter("FrameDef[Box]", "intval", "6") + "</std:node>"));
  EXPECT_EQ(Run({"change Root.Frames.FrameDef[2]:7", "change Root.Frames.FrameDef[Box]:8",
                 "change Root.Frames.FrameDef[3]:Type:9"})
                .status,
            0);
  EXPECT_EQ(RunTool({"tree", output, "Frames.FrameDef[2]"}).out, "node FrameDef[2]: int 7\n");
  EXPECT_EQ(RunTool({"tree", output, "Frames.FrameDef[Box]"}).out, "node FrameDef[Box]: int 8\n");
  EXPECT_EQ(RunTool({"get", output, "Frames.Type", "--all"}).out, "1\n2\n9\n");
}

TEST_F(EditEntries, EveryPathThatTreesAndDifferencesPrintIsReadBack) {
  EXPECT_EQ(Run({"each Root.Frames :Scale:int:4", "each Root.Rows :Scale:int:4"}).status, 0);
  const nlohmann::json report = ParsedJson(RunTool({"diff", "--json", file, output}));
  ASSERT_EQ(report["differences"].size(), 5u);
  for (const auto& difference : report["differences"]) {
    const std::string path = difference["path"];
    SCOPED_TRACE(path);
    EXPECT_EQ(RunTool({"edit", output, "-o", folder / "back.xml", "-c", "delete " + path}).status,
              0);
    EXPECT_EQ(ParsedJson(RunTool(
                  {"diff", "--json", folder / "back.xml", output}))["differences"][0]["path"],
              path);
    EXPECT_EQ(ParsedJson(RunTool({"explain", "--json", output, path}))[0]["path"], path);
    EXPECT_THAT(RunTool({"tree", output, path}).out, HasSubstr("int 4"));
  }
}

TEST_F(EditEntries, PlacesAndNamesFollowWhatCommandsBeforeHaveDone) {
  // What the list holds is told beside it, with the simplest means.
  std::vector<std::string> expected = {"Box", "Round one", "v1.2: old"};
  std::vector<std::string> commands;
  const auto append = [&](const std::string& name) {
    commands.push_back("instance Root.Frames:FrameDef");
    commands.push_back("field Root.Frames.FrameDef:Name:string:" + name);
    expected.push_back(name);
  };
  const auto erase = [&](std::size_t place) {
    commands.push_back("delete Root.Frames.FrameDef[" + std::to_string(place) + "]");
    expected.erase(expected.begin() + static_cast<long>(place) - 1);
  };
  const auto rename = [&](std::size_t place, const std::string& name) {
    commands.push_back("change Root.Frames.FrameDef[" + std::to_string(place) + "].Name:" + name);
    expected[place - 1] = name;
  };
  rename(2, "second");
  for (int i = 0; i < 20; ++i) append("f" + std::to_string(i));
  erase(3);
  erase(expected.size());
  rename(expected.size(), "end");
  erase(7);
  erase(7);
  commands.push_back("delete Root.Frames.FrameDef");
  expected.erase(expected.begin());
  rename(7, "seventh");
  commands.push_back("instance Root.Frames:FrameDef:3");
  commands.push_back("value Root.Frames.FrameDef[3]:Name:string:inserted");
  expected.insert(expected.begin() + 2, "inserted");
  rename(4, "fourth");
  commands.push_back("delete Root.Frames.FrameDef[seventh]");
  std::erase(expected, "seventh");
  append("last");
  rename(expected.size(), "very last");
  erase(1);
  commands.push_back("change Root.Frames.FrameDef[f12].Name:twelve");
  std::replace(expected.begin(), expected.end(), std::string("f12"), std::string("twelve"));

  const ToolRun run = Run(commands);
  ASSERT_EQ(run.status, 0) << run.err;
  std::string lines;
  for (const std::string& name : expected) lines += name + "\n";
  EXPECT_EQ(RunTool({"get", output, "Frames.FrameDef.Name", "--all"}).out, lines);
}
