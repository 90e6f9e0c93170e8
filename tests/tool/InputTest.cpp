#include <sys/stat.h>

#include <fstream>
#include <thread>

#include "Sanitizers.h"
#include "ToolRun.h"

using testing::HasSubstr;
using testing::MatchesRegex;

// What every subcommand does with what it reads: from a file and from standard input alike.

namespace {

/// A standard whose Note is "ä€" or, where the encoding has no euro sign, "ä".
std::string Noted(const std::string& encoding, const std::string& note) {
  return WithSheets("<?xml version=\"1.0\" encoding=\"" + encoding +
                    "\"?>\n<std:node "
                    "xmlns:std=\"http://schemas.hol-standard.example/drafting/std\">" +
                    Parameter("Note", "strval", note) + Parameter("Version", "intval", "220") +
                    "</std:node>");
}

/// ASCII, "ä" as its byte E4 and "€" as its byte 80, in UTF-16 after a byte order mark.
std::string AsUtf16(const std::string& text, bool isBigEndian) {
  std::string utf16;
  const auto add = [&](unsigned unit) {
    const char high = static_cast<char>(unit >> 8);
    const char low = static_cast<char>(unit & 0xFF);
    utf16 += isBigEndian ? high : low;
    utf16 += isBigEndian ? low : high;
  };
  add(0xFEFF);
  for (const char c : text) add(c == '\x80' ? 0x20ACu : static_cast<unsigned char>(c));
  return utf16;
}

/// The subcommands that read an XML standard, less what each writes to.
std::vector<std::vector<std::string>> ReadersOf(const std::string& file,
                                                const std::string& output) {
  return {{"info", file},
          {"info", file, "--json"},
          {"get", file, "Note"},
          {"get", file, "Note", "--json"},
          {"tree", file},
          {"tree", file, "--json"},
          {"explain", file, "Note"},
          {"explain", file, "Note", "--json"},
          {"check", file},
          {"check", file, "--json"},
          {"sheets", file},
          {"sheets", file, "--json"},
          {"styles", file},
          {"styles", file, "--json"},
          {"edit", file, "-c", "node Root:A", "-o", output}};
}

std::string EntityBomb() {
  std::string text = "<!DOCTYPE b [<!ENTITY e0 \"0123456789\">\n";
  for (int i = 1; i < 12; ++i) {
    text += "<!ENTITY e" + std::to_string(i) + " \"";
    for (int j = 0; j < 10; ++j) text += "&e" + std::to_string(i - 1) + ";";
    text += "\">\n";
  }
  return text + "]>\n<b>&e11;</b>\n";
}

}  // namespace

TEST(Input, TheDeclaredEncodingCountsForFilesAndForStandardInput) {
  const std::string umlaut = "\xC3\xA4";
  const std::string both = "\xC3\xA4\xE2\x82\xAC";
  const std::vector<std::pair<std::string, std::string>> cases = {
      {Noted("UTF-8", both), both},
      {Noted("ISO-8859-1", "\xE4"), umlaut},
      {AsUtf16(Noted("UTF-16", "\xE4\x80"), false), both},
      {AsUtf16(Noted("UTF-16", "\xE4\x80"), true), both},
  };
  const TemporaryFolder folder;
  for (const auto& [text, note] : cases) {
    const std::string file = folder.Write("a.xml", text);
    const auto ofFile = ReadersOf(file, folder / "a-edited.xml");
    const auto ofInput = ReadersOf("-", folder / "b-edited.xml");
    for (std::size_t i = 0; i < ofFile.size(); ++i) {
      SCOPED_TRACE(testing::PrintToString(ofFile[i]));
      const ToolRun fromFile = RunTool(ofFile[i]);
      const ToolRun fromInput = RunTool(ofInput[i], {.input = text});
      EXPECT_EQ(fromFile.status, 0) << fromFile.err;
      EXPECT_EQ(fromInput.status, 0) << fromInput.err;
      if (ofFile[i][0] == "get") {
        EXPECT_THAT(fromFile.out, HasSubstr(note));
        EXPECT_THAT(fromInput.out, HasSubstr(note));
      }
      if (ofFile[i][0] == "tree" || ofFile[i][0] == "styles") {
        EXPECT_EQ(fromFile.out, fromInput.out);
      }
    }
    EXPECT_THAT(ReadWholeFile(folder / "b-edited.xml"), HasSubstr(">" + note + "<"));
    EXPECT_EQ(ReadWholeFile(folder / "a-edited.xml"), ReadWholeFile(folder / "b-edited.xml"));
  }
}

TEST(Input, HostileAndBrokenDocumentsAreRefusedWithTheirLine) {
  const std::string whole = SampleStandard();
  const std::vector<std::pair<const char*, std::string>> cases = {
      {"entity bomb", EntityBomb()},
      {"external entity",
       "<!DOCTYPE b [<!ENTITY e SYSTEM \"file:///etc/hostname\">]>\n<b>&e;</b>\n"},
      {"binary", std::string("\x7F"
                             "ELF\x02\x01\x01\x00\x00\xFF\xFE\n\x00",
                             13)},
      {"zero bytes", std::string(1000, '\0')},
      {"empty", ""},
      {"blank", "\n\n"},
      {"truncated in a tag", whole.substr(0, whole.rfind('<') + 4)},
      {"truncated in a text", whole.substr(0, whole.find("255"))},
      {"truncated in the declaration", whole.substr(0, 20)},
  };
  const TemporaryFolder folder;
  for (const auto& [name, text] : cases) {
    const std::string file = folder.Write("a.xml", text);
    for (const std::string& source : {file, std::string("-")}) {
      const std::string place = source == "-" ? "standard input" : file;
      for (const bool json : {false, true}) {
        SCOPED_TRACE(name + (" from " + place));
        const ToolRun run = json ? RunTool({"check", source, "--json"}, {.input = text})
                                 : RunTool({"get", source, "Note"}, {.input = text});
        ExpectFailure(run, 3, {});
        EXPECT_THAT(run.err, MatchesRegex("holstd: " + place + ":[0-9]+: [^\n]+\n"));
        if (json) {
          EXPECT_EQ(ParsedJson(run)[0]["problems"].size(), 1u) << run.out;
        } else {
          EXPECT_EQ(run.out, "");
        }
      }
    }
  }
}

TEST(Input, AMessageCutInsideACharacterIsStillJson) {
  for (const std::string character : {"\xC3\xA4", "\xE2\x82\xAC", "\xF0\x9F\x93\x90"}) {
    // Whatever the place of the cut, one of the shifts puts it inside a character.
    for (std::size_t shift = 0; shift < character.size(); ++shift) {
      std::string name(shift, 'a');
      while (name.size() < 100000) name += character;
      const std::string text = Document("<std:" + name + "></std:node>");
      const ToolRun run = RunTool({"check", "-", "--json"}, {.input = text});
      ExpectFailure(run, 3, {"standard input:3: "});
      const nlohmann::json list = ParsedJson(run);
      ASSERT_EQ(list.size(), 1u) << run.out;
      EXPECT_EQ(list[0]["readable"], false);
      EXPECT_EQ(list[0]["problems"].size(), 1u);
    }
  }
}

TEST(Input, APipeWithANameIsReadLikeStandardInput) {
  const TemporaryFolder folder;
  const TemporaryFolder temporary;
  const std::string text = WithSheets(SampleStandard());
  const std::string pipe = folder / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  for (const auto& arguments : std::vector<std::vector<std::string>>{
           {"get", pipe, "Version"}, {"sheets", pipe}, {"styles", pipe}, {"check", pipe}}) {
    std::thread writer([&] { std::ofstream(pipe) << text; });
    const ToolRun run =
        RunTool(arguments, {.environment = {{"TMPDIR", temporary.Path().string()}}});
    writer.join();
    EXPECT_EQ(run.status, 0) << arguments.front() << run.err;
    EXPECT_TRUE(std::filesystem::is_empty(temporary.Path()));
  }
}

TEST(Input, TheTemporaryCopyOfStandardInputDisappears) {
  const TemporaryFolder folder;
  const TemporaryFolder temporary;
  std::vector<std::vector<std::string>> commands = ReadersOf("-", folder / "a.xml");
  commands.push_back({"convert", "-", "-o", folder / "a.xml"});
  commands.push_back({"edit", folder / "a.xml", "-f", "-", "-o", folder / "b.xml"});
  for (const std::string& text :
       {SampleStandard(), ReadWholeFile(LegacyText("ISO")), std::string("not valid\n")}) {
    for (const auto& arguments : commands) {
      RunTool(arguments, {.input = text, .environment = {{"TMPDIR", temporary.Path().string()}}});
      EXPECT_TRUE(std::filesystem::is_empty(temporary.Path()));
    }
  }
}

TEST(Input, ATemporaryFolderThatCannotBeUsedIsStatus4) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("file", "");
  for (const std::string& temporary : {std::string("/nonexistent"), file}) {
    ToolSurroundings with = {.input = ReadWholeFile(LegacyText("ISO")),
                             .environment = {{"TMPDIR", temporary}}};
    ExpectFailure(RunTool({"convert", "-", "-o", folder / "a.xml"}, with), 4,
                  {"standard input: ", temporary, "TMPDIR"});
    with.input = SampleStandard();
    ExpectFailure(RunTool({"info", "-"}, with), 4, {"standard input: ", temporary, "TMPDIR"});
  }
  EXPECT_FALSE(std::filesystem::exists(folder / "a.xml"));
}

TEST(Input, ACopyThatCannotBeFinishedIsStatus4AndIsRemoved) {
  const TemporaryFolder temporary;
  const ToolRun run =
      RunTool({"info", "-"}, {.input = std::string(100000, ' '),
                              .environment = {{"TMPDIR", temporary.Path().string()}},
                              .mostFileBytes = 4096});
  ExpectFailure(run, 4, {"standard input: ", temporary.Path().string(), "TMPDIR"});
  EXPECT_TRUE(std::filesystem::is_empty(temporary.Path()));
}

TEST(Input, AnEndlessInputIsRefusedAndItsCopyRemoved) {
  const TemporaryFolder temporary;
  if (std::filesystem::space(temporary.Path()).available < std::uintmax_t{3} << 30) {
    GTEST_SKIP() << "needs 2 GB of temporary files";
  }
  const ToolRun run =
      RunTool({"info", "-"},
              {.inputFile = "/dev/zero", .environment = {{"TMPDIR", temporary.Path().string()}}});
  ExpectFailure(run, 3, {"holstd: standard input: larger than 2 GB; "});
  EXPECT_TRUE(std::filesystem::is_empty(temporary.Path()));
}

TEST(Input, LargerThanTheMemoryThatThereIsIsOneMessage) {
  if (kIsSanitized) {
    GTEST_SKIP() << "the sanitizer needs more memory than the test allows, and has its own end";
  }
  const TemporaryFolder folder;
  const std::string file = folder.Write("a.xml", "");
  std::filesystem::resize_file(file, std::uintmax_t{1} << 30);
  constexpr rlim_t mostMemory = rlim_t{1} << 29;
  for (const auto& arguments : std::vector<std::vector<std::string>>{
           {"info", file}, {"check", file, "--json"}, {"convert", file, "-o", folder / "b.xml"}}) {
    ExpectFailure(RunTool(arguments, {.mostMemory = mostMemory}), 3,
                  {file + ": needs more memory than there is; "});
  }
}
