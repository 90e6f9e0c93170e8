#include <sys/stat.h>

#include "ToolRun.h"

using testing::HasSubstr;

namespace {

/// A folder with the sample standard and a place for the result.
class Edit : public testing::Test {
 protected:
  ToolRun Run(const std::vector<std::string>& commands, const std::vector<std::string>& more = {}) {
    std::vector<std::string> arguments = {"edit", file, "-o", output};
    for (const std::string& command : commands) {
      arguments.push_back("-c");
      arguments.push_back(command);
    }
    arguments.insert(arguments.end(), more.begin(), more.end());
    return RunTool(arguments);
  }
  std::string Branch(const std::string& path) const { return RunTool({"tree", output, path}).out; }

  const TemporaryFolder folder;
  const std::string file = folder.Write("in.xml", SampleStandard());
  const std::string output = folder / "out.xml";
};

struct BadCommand {
  const char* command;
  const char* part;  ///< of the message
};

// What a command can have against it, and what is said to it.
constexpr BadCommand kBadCommands[] = {
    // The line.
    {"", "not one command"},
    {"# nothing", "not one command"},
    {"[ISO]", "not one command"},
    {"node Root:A\nnode Root:B", "not one command"},
    {"frobnicate Root:A", "'frobnicate' is no verb"},
    {"node", "no command"},
    {"each Root.Frames", "needs a path"},
    // The path.
    {"node root:A", "'root' is no tree"},
    {"node Styles:A", "begins with Root, Enum or TypeDef"},
    {"node Root.Dimensions:A", "did you mean 'Root.Dimension'?"},
    {"change Root.Frames.FrameDef[3]:Name:X", "of 'FrameDef' there are 2"},
    {"change Root.Frames.FrameDef[0]:Name:X", "of 'FrameDef' there are 2"},
    {"change Root.Frames.FrameDef[Cirle]:Name:X", "did you mean 'FrameDef[Circle]'?"},
    {"change Root.Frames.FrameDef[Gear.1:2]:Name:X",
     "of 'FrameDef' there are 2, none of that Name"},
    {"change Root.Frames.FrameDef[2].Nmae:X", "'Root.Frames.FrameDef[2].Name'?"},
    {"change Root.Sizes.[3]:1.0", "values without a name there are 2"},
    {"delete Root.Frames.FrameDef[3]", "of 'FrameDef' there are 2"},
    {"field Root.Frames.FrameDef[3]:A:int:1", "of 'FrameDef' there are 2"},
    {"each Root.Frames[2] :A:int:1", "of 'Frames' there is 1"},
    {"node Root.Frames.FrameDef.Name:X", "'Root.Frames.FrameDef.Name' is a value, not a node"},
    {"value Root.Frames.FrameDef[3]:A:int:1", "of 'FrameDef' there are 2"},
    {"change Root..Dimension.DIMLTail:1", "two dots follow each other; did you mean "},
    {"change Root.dimension.dimltail:1", "did you mean 'Root.Dimension.DIMLTail'?"},
    {"delete Enum.YesNoo.Yess", "did you mean 'Enum.YesNo.Yes'?"},
    {"instance Root.Dimension.Nothing:A", "'Nothing'"},
    {"value Root.Nothing:A:int:1", "'Nothing'"},
    {"field Root.Nothing.FrameDef:A:int:1", "'Nothing'"},
    {"field Root.Dimension.DIMLTail.X:A:int:1", "no entries yet"},
    {"field Root:A:int:1", "names no entry"},
    {"change Root.Dimension.Nothing:1", "'Nothing'"},
    {"delete Root.Dimension.Nothing", "'Nothing'"},
    {"delete Root", "is a tree"},
    {"each Root.Nothing :A:int:1", "'Nothing'"},
    {"each Root.Dimension.DIMLTail :A:int:1", "no child nodes"},
    {"each-node Root.Frames .Nothing:A", "'Nothing'"},
    // The fields.
    {"node Root", "no name"},
    {"node Root:", "no name"},
    {"node Root:A.B", "'A.B'"},
    {"value Root.Dimension", "PATH:NAME:TYPE:VALUE"},
    {"value Root.Dimension::int:1", "no name"},
    {"value Root.Dimension:A:integer:1", "'integer' is no type"},
    {"value Root.Dimension:A::1", "is no type"},
    {"value Root.Dimension:A:enumeration.YesNo:Yes", "enum.NAME"},
    {"value Root.Dimension:A:float.0:1", "float.UNIT.BOUND"},
    {"field Root.Frames.FrameDef:A:number:1", "'number' is no type"},
    {"each Root.Frames :A:integer:1", "'integer' is no type"},
    {"change Root.Dimension.DIMLTail", "the new text is missing"},
    {"change Root.Dimension:1", "4 child nodes"},
    {"change Root.Sizes:1", "2 values"},
    {"change Root.Frames.FrameDef:Width:1", "none of them called 'Width'"},
    {"value Enum:A:string:B", "holds nodes only"},
    // What is there already.
    {"value Root.Dimension:DIMLTail:float:1", "'change Root.Dimension.DIMLTail:TEXT'"},
    {"value Root.Dimension:DIMLTail:float:1:1", "'DIMLTail' in 'Root.Dimension' already"},
    {"node Root:Dimension", "put 'delete Root.Dimension' before it"},
    {"node Root:Dimension:1", "'Dimension' in 'Root' already"},
    {"node Root.Frames:FrameDef", "put 'delete Root.Frames.FrameDef' before it"},
    {"instance Root.Dimension:Blanking", "'Blanking' in 'Root.Dimension' already"},
    {"node Enum:YesNo", "'YesNo' in 'Enum' already"},
    {"node TypeDef:FrameDef", "'FrameDef' in 'TypeDef' already"},
    {"value TypeDef.FrameDef:Name:string:A", "'change TypeDef.FrameDef.Name:TEXT'"},
    {"value Root.Frames.FrameDef:Name:string:A", "'change Root.Frames.FrameDef.Name:TEXT'"},
    {"field Root.Frames.FrameDef:Type:int:1", "'Type' in 'Root.Frames.FrameDef' already"},
    {"each Root.Frames :Type:int:1", "'Type' in 'Root.Frames.FrameDef' already"},
    {"each-node Root .ParentStandard:A", "'ParentStandard'"},
    // The literal, of the whole result: a later command may define it.
    {"change Root.Dimension.Blanking:yes", "near is 'Yes'; it has 'Yes', 'No'"},
    {"change Root.Dimension.Blanking:Perhaps", "no literal of the enumeration 'YesNo'; it has"},
    {"value Root.Dimension:A:enum.YesNo:Noo", "near is 'No'; it has 'Yes', 'No'"},
    {"value Root.Dimension:A:enum.YesNoo:Yes", "from; did you mean 'YesNo'?"},
    {"value Root.Frames.FrameDef:Kind:enum.YesNo:Yes", "no enumeration 'Kind'"},
    {"field Root.Frames.FrameDef:YesNo:enum.YesNo:Yse", "near is 'Yes'"},
    {"each Root.Frames :YesNo:enum.YesNo:Nein", "'Nein' is no literal"},
    // The position; where a node was added to Root before, it has 6.
    {"node Root:A:x", "'x' is no number"},
    {"node Root:A:7", "there are 6 elements"},
    {"value Root.Dimension:A:int:1:abc", "'abc' is no number"},
    {"value Root.Dimension:A:int:1:5", "there are 4 elements"},
    {"value Enum.YesNo::string:Maybe:3", "there are 2 elements"},
    {"field Root.Frames.FrameDef:A:int:1:3", "there are 2 elements"},
    {"value Root.Dimension:A:int:1:99999999999", "is no number"},
    {"each Root.Frames :A:int:1:abc", "'abc' is no number"},
    // The result.
    {"node Enum:Empty", "needs at least one value"},
    {"node TypeDef:Empty", "needs at least one value"},
    {"value TypeDef.FrameDef:Ink:color:1 2 3", "cannot stand there"},
    {"change Root.Version:221", "the format version cannot be told"},
    {"value Root.Version:A:int:1", "the format version cannot be told"},
};

}  // namespace

TEST_F(Edit, EveryVerbDoesItsWork) {
  const ToolRun run = Run({
      "node Root:Site",
      "value Root.Site:Owner:string:Gearbox design office",
      "value Root.Site:Gap:float.mm.0.5:2.0:1",
      "instance Root.Frames:FrameDef",
      "field Root.Frames.FrameDef:Name:string:Mark",
      "change Root.Dimension.DIMLTail:12.5",
      "change Root.Frames.FrameDef:Name:Gearbox: mark",
      "delete Root.Ink",
      "delete Enum.YesNo.No",
      "value Enum.YesNo::string:Maybe:1",
      "each Root.Frames :Scale:float:1.0:0,",
      "each-node Root.Site :Note:0",
  });
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.err, HasSubstr(output + ": written, 12 commands done\n"));
  EXPECT_EQ(Branch("Site"),
            "node Site\n"
            "  node Gap\n    value: float 2.0, at least 0.5\n    node Note\n"
            "  node Owner\n    value: string \"Gearbox design office\"\n    node Note\n");
  EXPECT_EQ(Branch("Dimension.DIMLTail"), "node DIMLTail: float 12.5, at least 0.0\n");
  EXPECT_EQ(Branch("Enum.YesNo"),
            "enum YesNo\n  value: string \"Maybe\"\n  value: string \"Yes\"\n");
  // Three frames of one name: each is served.
  EXPECT_EQ(
      Branch("Frames"),
      "node Frames\n"
      "  instance FrameDef\n    value Name: string \"Gearbox: mark\"\n    value Type: int 21\n"
      "    value Scale: float 1.0\n"
      "  instance FrameDef\n    value Name: string \"Circle\"\n    value Type: int 3\n"
      "    value Scale: float 1.0\n"
      "  instance FrameDef\n    value Name: string \"Mark\"\n    value Scale: float 1.0\n");
  EXPECT_EQ(RunTool({"get", output, "Ink"}).status, 1);
  EXPECT_EQ(ReadWholeFile(file), SampleStandard());
}

TEST_F(Edit, ACommandThatCannotBeDoneSaysWhyAndNothingIsWritten) {
  for (const auto& [command, part] : kBadCommands) {
    SCOPED_TRACE(command);
    folder.Write("out.xml", "as it was");
    const ToolRun run = Run({"node Root:First", command, "node Root:Third"});
    ExpectFailure(run, 3, {part});
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(ReadWholeFile(output), "as it was");
    const ToolRun inPlace =
        RunTool({"edit", file, "--in-place", "-c", "node Root:First", "-c", command});
    ExpectFailure(inPlace, 3, {part});
    EXPECT_EQ(ReadWholeFile(file), SampleStandard());
  }
}

TEST_F(Edit, EntriesOfListsMayHaveOneName) {
  EXPECT_EQ(Run({"instance Root.Frames:FrameDef", "instance Root.Frames:FrameDef:1",
                 "value Enum.YesNo::string:Yes", "value Root.Frames.FrameDef::int:1",
                 "value Root.Frames.FrameDef::int:2"})
                .status,
            0);
  EXPECT_EQ(ParsedJson(RunTool({"explain", output, "Root.Frames.FrameDef", "--json"})).size(), 4u);
  // Nodes of which there are several already are a list, too.
  const std::string row = "<std:node name=\"Row\"></std:node>";
  folder.Write("in.xml", Document("<std:node name=\"Rows\">" + row + row + "</std:node>"));
  EXPECT_EQ(Run({"node Root.Rows:Row", "value Root.Rows.Row[3]:Height:int:1"}).status, 0);
  EXPECT_EQ(RunTool({"tree", output, "Rows.Row[3].Height"}).out, "node Height: int 1\n");
}

TEST_F(Edit, ALiteralMayBeDefinedByALaterCommand) {
  EXPECT_EQ(Run({"change Root.Dimension.Blanking:Maybe", "value Enum.YesNo::string:Maybe"}).status,
            0);
  EXPECT_EQ(Branch("Dimension.Blanking"), "node Blanking: enum.YesNo \"Maybe\"\n");
}

TEST_F(Edit, AValueWhoseEnumerationIsMissingCanBeChanged) {
  folder.Write("in.xml", Replaced(SampleStandard(), "<std:enumval name=\"YesNo\">",
                                  "<std:enumval name=\"Missing\">"));
  EXPECT_EQ(Run({"change Root.Dimension.Blanking:Perhaps"}).status, 0);
}

TEST_F(Edit, OfALongEnumerationTheNearestLiteralsAreToldAndHowToSeeAll) {
  std::string many;
  for (int i = 0; i < 20; ++i) many += "<std:strval>Frame" + std::to_string(i) + "</std:strval>";
  folder.Write("in.xml", Replaced(SampleStandard(), "<std:strval>No</std:strval>",
                                  "<std:strval>No</std:strval>" + many));
  ExpectFailure(Run({"change Root.Dimension.Blanking:frame7"}), 3,
                {"near are 'Frame7', ", "'holstd tree FILE Enum.YesNo' shows all 22"});
}

TEST_F(Edit, ABadCommandIsNamedByItsNumber) {
  ExpectFailure(Run({"node Root:A", "node Root.Nothing:B"}), 3, {"holstd: command 2: there"});
  ExpectFailure(Run({"node Root:A", "nodes Root:B"}), 3, {"holstd: command 2: 'nodes'"});
}

TEST_F(Edit, ABadCommandOfAScriptIsNamedByItsLine) {
  for (const auto& [command, part] : kBadCommands) {
    // Lines that are no commands at all are nothing in a script, and one can hold two lines.
    if (std::string(part) == "not one command") continue;
    SCOPED_TRACE(command);
    const std::string text = "# comment\n\nnode Root:First\r\n" + std::string(command) + "\n";
    const std::string script = folder.Write("script.txt", text);
    const ToolRun run = RunTool({"edit", file, "-o", output, "-f", script});
    // What is wrong with the whole result only is said of the standard.
    const bool isOfResult = run.err.find("commands leave") != std::string::npos ||
                            run.err.find("after the commands") != std::string::npos;
    ExpectFailure(run, 3, {isOfResult ? file + ": " : script + ":4: ", part});
    EXPECT_FALSE(std::filesystem::exists(output));
    if (isOfResult) continue;
    ExpectFailure(RunTool({"edit", file, "-o", output, "-f", "-"}, {.input = text}), 3,
                  {"standard input:4: ", part});
  }
}

TEST_F(Edit, AScriptMayComeFromStandardInputAndSoMayTheStandard) {
  const std::string text = "\xEF\xBB\xBFnode Root:Site\nvalue Root.Site:Owner:string:we\n";
  const std::string script = folder.Write("script.txt", text);
  const std::string expected = "node Site\n  node Owner: string \"we\"\n";
  EXPECT_EQ(RunTool({"edit", file, "-o", output, "-f", script}).status, 0);
  EXPECT_EQ(Branch("Site"), expected);
  EXPECT_EQ(RunTool({"edit", file, "-o", output, "-f", "-"}, {.input = text}).status, 0);
  EXPECT_EQ(Branch("Site"), expected);
  EXPECT_EQ(RunTool({"edit", "-", "-o", output, "-f", script}, {.input = SampleStandard()}).status,
            0);
  EXPECT_EQ(Branch("Site"), expected);
}

TEST_F(Edit, AScriptThatCannotBeReadIsStatus3) {
  const std::string invalid = folder.Write("script.txt", "node Root:A\nnode Root:\xFF\n");
  ExpectFailure(RunTool({"edit", file, "-o", output, "-f", invalid}), 3,
                {invalid + ":2: ", "UTF-8"});
  ExpectFailure(RunTool({"edit", file, "-o", output, "-f", folder / "missing.txt"}), 3,
                {"missing.txt"});
  EXPECT_FALSE(std::filesystem::exists(output));
}

TEST_F(Edit, CommandsAreLimitedByTheParentOfTheStandard) {
  const std::string script = folder.Write("script.txt",
                                          "[ISO JIS]\nnode Root:Metric\nnode Root.Nothing:X\n"
                                          "[ASME]\nnode Root:OfAsme\n[any]\nnode Root:OfAll\n");
  const ToolRun run = RunTool({"edit", file, "-o", output, "-f", script, "-v"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(RunTool({"tree", output, "Metric"}).status, 1);
  EXPECT_EQ(Branch("OfAsme"), "node OfAsme\n");
  EXPECT_EQ(Branch("OfAll"), "node OfAll\n");
  EXPECT_THAT(run.err, HasSubstr(script + ":2: left out"));
  EXPECT_THAT(run.err, HasSubstr(script + ":5: done: node Root:OfAsme\n"));
}

TEST_F(Edit, QuietSaysNothingAndVerboseEveryCommand) {
  EXPECT_EQ(Run({"node Root:A"}, {"-q"}).err, "");
  EXPECT_EQ(Run({"node Root:A"}, {"-q", "-v"}).err, "");
  const ToolRun run = Run({"node Root:A", "each Root.Frames :B:int:1"}, {"-v"});
  EXPECT_THAT(run.err, HasSubstr("command 1: done: node Root:A\n"));
  EXPECT_THAT(run.err, HasSubstr("command 2: done: each Root.Frames :B:int:1\n"));
}

TEST_F(Edit, TheInputAsOutputNeedsADecision) {
  std::filesystem::create_symlink(file, folder / "link.xml");
  std::filesystem::create_hard_link(file, folder / "other.xml");
  for (const std::string& same :
       {file, folder / "./in.xml", folder / "link.xml", folder / "other.xml"}) {
    ExpectFailure(RunTool({"edit", file, "-o", same, "-c", "node Root:A"}), 5, {"--in-place"});
    EXPECT_EQ(ReadWholeFile(file), SampleStandard());
  }
  const std::string script = folder.Write("script.txt", "node Root:A\n");
  ExpectFailure(RunTool({"edit", file, "-f", script, "-o", script}), 5, {"script"});
  EXPECT_EQ(ReadWholeFile(script), "node Root:A\n");
}

TEST_F(Edit, InPlaceKeepsPermissionsAndLinks) {
  std::filesystem::create_symlink(file, folder / "link.xml");
  ASSERT_EQ(::chmod(file.c_str(), 0640), 0);
  EXPECT_EQ(RunTool({"edit", folder / "link.xml", "--in-place", "-c", "node Root:A"}).status, 0);
  struct stat status {};
  ASSERT_EQ(::stat(file.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0640u);
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.xml"));
  EXPECT_EQ(RunTool({"tree", file, "Root.A"}).out, "node A\n");
}

TEST_F(Edit, InPlaceWithNothingToDoLeavesEveryByte) {
  const std::string script = folder.Write("script.txt", "[JIS]\nnode Root:A\n");
  EXPECT_EQ(RunTool({"edit", file, "--in-place", "-f", script}).status, 0);
  EXPECT_EQ(ReadWholeFile(file), SampleStandard());
}

TEST_F(Edit, AnOutputThatCannotBeWrittenIsStatus4) {
  for (const std::string& bad : {folder / "missing/out.xml", folder.Path().string()}) {
    ExpectFailure(RunTool({"edit", file, "-o", bad, "-c", "node Root:A"}), 4, {bad});
  }
  EXPECT_EQ(ReadWholeFile(file), SampleStandard());
}

TEST_F(Edit, ControlCharactersAreNotSaved) {
  folder.Write("out.xml", "as it was");
  ExpectFailure(Run({"value Root.Dimension:Note:string:a\x01"
                     "b"}),
                3, {"control character"});
  EXPECT_EQ(ReadWholeFile(output), "as it was");
}

TEST_F(Edit, AVersionThatCannotBeToldCanBeMended) {
  folder.Write("in.xml", WithSheets(Document(Parameter("Version", "intval", "abc"))));
  EXPECT_EQ(Run({"change Root.Version:220"}).status, 0);
  EXPECT_EQ(RunTool({"check", output}).out, output + ": valid, version 220\n");
}
