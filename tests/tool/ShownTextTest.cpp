#include <sys/stat.h>

#include <functional>
#include <set>

#include "ToolRun.h"

// Whatever a file, its name, an argument or the environment holds: nothing of it reaches a terminal
// that the terminal would obey or that nobody would see.

namespace {

using testing::HasSubstr;

struct Range {
  char32_t first;
  char32_t last;
};

/// The code points that are never shown as they are, by the Unicode standard: controls (Cc), what
/// has an effect on the order of the letters (Bidi_Control), ends of lines and paragraphs (Zl, Zp),
/// interlinear annotations, and what shows as nothing (Default_Ignorable_Code_Point).
const std::vector<Range> kUnshown = {
    {0x00, 0x1F},     {0x7F, 0x9F},       {0xAD, 0xAD},       {0x34F, 0x34F},     {0x61C, 0x61C},
    {0x115F, 0x1160}, {0x17B4, 0x17B5},   {0x180B, 0x180F},   {0x200B, 0x200F},   {0x2028, 0x202E},
    {0x2060, 0x206F}, {0x3164, 0x3164},   {0xFE00, 0xFE0F},   {0xFEFF, 0xFEFF},   {0xFFA0, 0xFFA0},
    {0xFFF0, 0xFFFB}, {0x1BCA0, 0x1BCA3}, {0x1D173, 0x1D17A}, {0xE0000, 0xE0FFF},
};

std::string Utf8(char32_t code) {
  const auto byte = [](char32_t bits) { return static_cast<char>(bits); };
  const auto tail = [&](int shift) { return byte(0x80 | (code >> shift & 0x3F)); };
  if (code < 0x80) return {byte(code)};
  if (code < 0x800) return {byte(0xC0 | code >> 6), tail(0)};
  if (code < 0x10000) return {byte(0xE0 | code >> 12), tail(6), tail(0)};
  return {byte(0xF0 | code >> 18), tail(12), tail(6), tail(0)};
}

/// All of them that `isWanted`, a letter before each.
std::string AllUnshown(const std::function<bool(char32_t)>& isWanted) {
  std::string all;
  for (const Range& range : kUnshown) {
    for (char32_t code = range.first; code <= range.last; ++code) {
      if (isWanted(code)) all += "x" + Utf8(code);
    }
  }
  return all;
}

/// What a name or a text of an XML file can hold.
std::string AllOfXml() {
  return AllUnshown(
      [](char32_t code) { return code >= 0x20 || code == '\t' || code == '\n' || code == '\r'; });
}

/// `text` as XML has it in names and texts alike.
std::string Referenced(const std::string& text) {
  std::string xml;
  for (const char c : text) {
    xml += c == '\t' ? "&#9;" : c == '\n' ? "&#10;" : c == '\r' ? "&#13;" : std::string(1, c);
  }
  return xml;
}

/// A few of each kind, short enough for the name of a file.
const std::string kSome =
    "a\x01\t\r\x1B[31m\x7F\u0085\u009B2J\u00AD\u061C\u200B\u200E\u2028\u2029\u202E\u2066\uFEFF"
    "\U000E0041z";

/// The first byte of `text` that must not be shown, `npos` when there is none.
std::size_t FirstUnshown(const std::string& text) {
  static const std::set<std::string> unshown = [] {
    std::set<std::string> all;
    for (const Range& range : kUnshown) {
      for (char32_t code = range.first; code <= range.last; ++code) all.insert(Utf8(code));
    }
    all.erase("\n");
    return all;
  }();
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] >= ' ' && text[at] <= '~') continue;
    for (std::size_t size = 1; size <= 4; ++size) {
      if (unshown.contains(text.substr(at, size))) return at;
    }
  }
  return std::string::npos;
}

void ExpectShown(const std::string& text, const std::string& where) {
  const std::size_t at = FirstUnshown(text);
  EXPECT_EQ(at, std::string::npos)
      << where << ": ..." << text.substr(at - std::min<std::size_t>(at, 40), 40);
}

/// A standard whose every name, value, enumeration and style is hostile.
std::string HostileStandard(const std::string& text) {
  const std::string evil = Referenced(text);
  std::string standard = WithSheets(SampleStandard());
  standard = Replaced(standard, "<std:enumdef name=\"YesNo\">",
                      "<std:enumdef name=\"" + evil + "\"><std:strval>" + evil +
                          "</std:strval></std:enumdef>\n<std:enumdef name=\"YesNo\">");
  standard = Replaced(standard, "<std:typedef name=\"FrameDef\">",
                      "<std:typedef name=\"" + evil + "\"><std:strval name=\"" + evil + "\">" +
                          evil + "</std:strval></std:typedef>\n<std:typedef name=\"FrameDef\">");
  standard = Replaced(standard, ">Box<", ">" + evil + "<");
  standard = Replaced(standard, ">A0 ISO</std:strval><std:floatval",
                      ">" + evil + "</std:strval><std:floatval");
  standard = Replaced(standard, "<std:node name=\"Large\">", "<std:node name=\"" + evil + "\">");
  const std::string own =
      "<std:node name=\"" + evil + "\"><std:node name=\"" + evil + "\"><std:strval>" + evil +
      "</std:strval></std:node>" + "<std:typeval name=\"" + evil + "\"><std:strval name=\"" + evil +
      "\">" + evil + "</std:strval><std:strval name=\"Name\">" + evil +
      "</std:strval></std:typeval></std:node>\n" + Parameter("Evil", "strval", evil) +
      Parameter("Undefined", "enumval name=\"" + evil + "\"", "no " + evil);
  standard.insert(standard.rfind("</std:node>"), own);
  const std::string styles = "<std:node name=\"Styles\"><std:node name=\"Sheet\">";
  return Replaced(standard, styles,
                  "<std:node name=\"Styles\"><std:node name=\"" + evil + "\"><std:node name=\"" +
                      evil + "\"/></std:node><std:node name=\"Sheet\">");
}

/// Every way to have a standard told, of the file `file`; `path` leads to a value.
std::vector<std::vector<std::string>> Tellers(const std::string& file, const std::string& other,
                                              const std::string& path) {
  std::vector<std::vector<std::string>> tellers = {
      {"info", file},
      {"get", file, "Evil"},
      {"get", file, "Evil", "--all"},
      {"get", file, path},
      {"get", file, path, "--all"},
      {"get", file, "Undefined"},
      {"get", file, "Undefined", "--type"},
      {"get", file, path + "nothing"},
      {"tree", file},
      {"tree", file, path},
      {"tree", file, path + "nothing"},
      {"diff", file, other},
      {"diff", other, file},
      {"explain", file, path},
      {"explain", file, "Undefined"},
      {"sheets", file},
      {"styles", file},
      {"styles", file, path},
      {"styles", file, path + "nothing"},
      {"check", file},
      {"symbols", path},
      {"upgrade", "--dry-run", file},
  };
  const std::size_t plain = tellers.size();
  for (std::size_t i = 0; i < plain; ++i) {
    std::vector<std::string> asJson = tellers[i];
    asJson.push_back("--json");
    tellers.push_back(std::move(asJson));
  }
  return tellers;
}

std::string Joined(const std::vector<std::string>& arguments) {
  std::string line;
  for (const std::string& argument : arguments) line += argument.substr(0, 40) + " ";
  return line;
}

/// Runs it with all that it can say, and expects nothing of it to be obeyed.
ToolRun ExpectNothingObeyed(std::vector<std::string> arguments, const ToolSurroundings& with = {}) {
  for (const char* trace : {"DftStdDOMCodec", "DftStdServs", "DifCptWithStd", "DifFeatContStd"}) {
    arguments.insert(arguments.end(), {"--trace", trace});
  }
  arguments.push_back("-v");
  ToolRun run = RunTool(arguments, with);
  const std::string where = Joined(arguments);
  EXPECT_GE(run.status, 0) << where;
  ExpectShown(run.out, where);
  // Some lines of traces have columns of their own.
  std::string talk = run.err;
  for (const std::string column : {"\tAddress:(", "\t'"}) {
    for (std::size_t at; (at = talk.find(column)) != std::string::npos;) talk.erase(at, 1);
  }
  ExpectShown(talk, where);
  return run;
}

TEST(ShownText, WhatAFileHoldsIsObeyedByNoTerminal) {
  const TemporaryFolder folder;
  const std::string evil = AllOfXml();
  const std::string file = folder.Write("hostile.xml", HostileStandard(evil));
  const std::string other = folder.Write("other.xml", WithSheets(SampleStandard()));
  for (const auto& teller : Tellers(file, other, evil)) {
    const ToolRun run = ExpectNothingObeyed(teller);
    if (teller.back() == "--json" && !run.out.empty()) {
      EXPECT_FALSE(ParsedJson(run).is_discarded()) << Joined(teller);
    }
  }
}

TEST(ShownText, JsonHoldsTheExactText) {
  const TemporaryFolder folder;
  const std::string evil = AllOfXml();
  const std::string file = folder.Write("hostile.xml", HostileStandard(evil));
  EXPECT_EQ(ParsedJson(RunTool({"get", "--json", file, "Evil"}))["value"], evil);
  const nlohmann::json tree = ParsedJson(RunTool({"tree", "--json", file}));
  EXPECT_TRUE(std::any_of(tree.begin(), tree.end(), [&](const nlohmann::json& line) {
    return line["name"] == evil && line.contains("value") && line["value"] == evil;
  }));
}

TEST(ShownText, IsAlwaysEscapedInTheSameWay) {
  const TemporaryFolder folder;
  const std::string file = folder.Write(
      "hostile.xml",
      Replaced(SampleStandard(), "Box", "a&#10;b&#9;c&#13;d\u009Be\u202Ef\u2028g\U000E0001h"));
  const std::string shown = "a\\nb\\tc\\x0Dd\\u009Be\\u202Ef\\u2028g\\U000E0001h";
  EXPECT_EQ(RunTool({"get", file, "Frames.FrameDef.Name"}).out, shown + "\n");
  EXPECT_THAT(RunTool({"get", file, "Frames.FrameDef.Name", "--all"}).out, HasSubstr(shown + "\n"));
  EXPECT_THAT(RunTool({"tree", file}).out, HasSubstr("\"" + shown + "\""));
  EXPECT_THAT(RunTool({"explain", file, "Frames.FrameDef.Name"}).out, HasSubstr(shown));
  EXPECT_THAT(RunTool({"get", "--json", file, "Frames.FrameDef.Name"}).out,
              HasSubstr("a\\nb\\tc\\rd\\u009be\\u202ef\\u2028g\\udb40\\udc01h"));
}

TEST(ShownText, NamesOfFilesAreObeyedByNoTerminal) {
  const TemporaryFolder folder;
  const std::string nested = folder / (kSome + "\nfolder");
  ASSERT_EQ(::mkdir(nested.c_str(), 0700), 0);
  const auto write = [&](const std::string& name, const std::string& text) {
    const std::string file = nested + "/" + name;
    std::FILE* opened = std::fopen(file.c_str(), "w");
    std::fwrite(text.data(), 1, text.size(), opened);
    std::fclose(opened);
    return file;
  };
  const std::string good = write(kSome + ".xml", WithSheets(SampleStandard()));
  const std::string bad = write(kSome + "-bad.xml", "<a>");
  const std::string text = write(kSome + ".txt", "ParentStandard ISO\n" + kSome + " 1\n");
  const std::string script = write(kSome + ".script", "change nothing " + kSome + "\n");
  const std::string missing = nested + "/" + kSome + ".nothing";
  std::vector<std::vector<std::string>> all;
  for (const std::string& file : {good, bad, missing, nested}) {
    for (auto& teller : Tellers(file, good, kSome)) all.push_back(std::move(teller));
    all.push_back({"edit", file, "-o", missing + ".out", "-f", script});
    all.push_back({"edit", file, "-o", missing + "/out", "-c", "node Root:" + kSome});
    all.push_back({"edit", file, "--in-place", "-c", "node Root:New"});
    all.push_back({"restore", file});
    all.push_back({"upgrade", file, "-o", missing + ".out"});
    all.push_back({"upgrade", file, "-o", file});
    all.push_back({"upgrade", file, good, "-d", nested + "/up"});
    all.push_back({"convert", file, "-o", missing + ".out"});
  }
  all.push_back({"convert", text, "-o", missing + ".out"});
  all.push_back({"convert", LegacyText("ISO"), "-o", missing + "/out"});
  all.push_back({"standards"});
  all.push_back({"standards", "--json"});
  all.push_back({"complete", "holstd get " + good});
  const ToolSurroundings with = {.environment = {{"VYR_STANDARD_PATH", nested}}};
  for (const auto& arguments : all) ExpectNothingObeyed(arguments, with);
}

TEST(ShownText, ArgumentsAndEnvironmentAreObeyedByNoTerminal) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("a.xml", SampleStandard());
  for (const std::vector<std::string>& arguments :
       std::vector<std::vector<std::string>>{{kSome},
                                             {"--" + kSome},
                                             {"info", file, "--" + kSome},
                                             {"info", file, "--trace", kSome},
                                             {"info", file, "--color", kSome},
                                             {"get", file, "Ink", "--index", kSome},
                                             {"upgrade", file, "-o", "x", "--to", kSome},
                                             {"upgrade", file, "--dry-run", "--jobs", kSome},
                                             {"edit", file, "-o", folder / "x", "-c", kSome},
                                             {"manual", kSome},
                                             {"symbols", kSome},
                                             {"standards", kSome}}) {
    ExpectNothingObeyed(arguments);
  }
  for (const std::string& value : {kSome, kSome + "\x9B\xFF"}) {
    const ToolSurroundings with = {.input = SampleStandard(),
                                   .environment = {{"TMPDIR", value},
                                                   {"VYR_STANDARD_PATH", value},
                                                   {"HOME", value},
                                                   {"TERM", value},
                                                   {"LANG", value},
                                                   {"NO_COLOR", value}}};
    ExpectNothingObeyed({"info", "-"}, with);
    ExpectNothingObeyed({"standards"}, with);
    ExpectNothingObeyed({"diff", "ISO", "-"}, with);
    ExpectNothingObeyed({"complete", "holstd get ~/a.xml "}, with);
  }
}

TEST(ShownText, CompletionOffersNoNameThatCannotBeWritten) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("a.xml", HostileStandard("Eva\u009B2J\u202E\u200B\n"));
  for (const std::string& line : {"holstd get " + file + " ", "holstd tree " + file + " Enum.",
                                  "holstd styles " + file + " "}) {
    const ToolRun run = RunTool({"complete", line});
    ExpectShown(Replaced(run.out + "\t", "\t", ""), line);
    EXPECT_EQ(run.out.find("Eva"), std::string::npos) << run.out;
    EXPECT_NE(run.out, "") << line;
  }
}

TEST(ShownText, AMessageQuotesNoMoreThanItsReaderCanRead) {
  const TemporaryFolder folder;
  const std::string longText(80000, 'x');
  const std::string file =
      folder.Write("a.xml", Replaced(WithSheets(SampleStandard()), ">1189<", ">" + longText + "<"));
  const std::string named = folder.Write(
      "b.xml", Replaced(SampleStandard(), "name=\"Ink\"", "name=\"" + longText + "\""));
  for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
           {longText},
           {"info", longText},
           {"info", file, "--trace", longText},
           {"get", file, longText},
           {"get", file, "Formats." + longText},
           {"get", named, longText, "--index", "2"},
           {"tree", file, longText},
           {"styles", file, longText},
           {"symbols", longText},
           {"check", file},
           {"sheets", file},
           {"edit", file, "-o", folder / "x", "-c", longText},
           {"edit", file, "-o", folder / "x", "-c", "change Root." + longText + ":1"},
           {"edit", file, "-o", folder / "x", "-c", "change Root.Dimension.Blanking:" + longText},
           {"convert", file, "-o", longText},
           {"upgrade", file, "-o", "x", "--to", longText}}) {
    const ToolRun run = RunTool(arguments);
    EXPECT_NE(run.status, 0) << Joined(arguments);
    EXPECT_LT(run.err.size(), 9000u) << Joined(arguments) << run.err.substr(0, 300);
    EXPECT_NE(run.err, "") << Joined(arguments);
  }
  const ToolRun run = RunTool({"get", file, "begin" + longText + "end"});
  ExpectFailure(run, 1, {"there is no 'beginxxx", "...xxx", "xxxend'"});
  EXPECT_LT(run.err.size(), 600u);
}

}  // namespace
