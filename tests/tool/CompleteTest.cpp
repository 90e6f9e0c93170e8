#include <cstdio>
#include <cstdlib>
#include <optional>

#include "ToolRun.h"

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;
using testing::StartsWith;

namespace {

const std::string kIso = HOL_STANDARDS "/ISO.xml";

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t from = 0; from < text.size();) {
    const std::size_t end = std::min(text.find('\n', from), text.size());
    lines.push_back(text.substr(from, end - from));
    from = end + 1;
  }
  return lines;
}

/// The words of a line as they are written in a shell, the last one unfinished.
std::string ShellLine(const std::vector<std::string>& words) {
  std::string line = "holstd";
  for (const std::string& word : words) line += " " + word;
  return line;
}

/// What is offered for the last of the words of a line that begins with "holstd".
std::vector<std::string> Offered(const std::vector<std::string>& words,
                                 const ToolSurroundings& with = {}) {
  const ToolRun run = RunTool({"complete", "--", ShellLine(words)}, with);
  EXPECT_EQ(run.status, 0) << run.err;
  return Lines(run.out);
}

std::vector<std::string> LinesOfShell(const std::string& shell, const std::string& script) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("script", script);
  std::FILE* const output = ::popen((shell + " " + file).c_str(), "r");
  std::string text;
  for (int c; (c = std::fgetc(output)) != EOF;) text += static_cast<char>(c);
  EXPECT_EQ(::pclose(output), 0);
  return Lines(text);
}

/// `text` as one word of a shell.
std::string Literally(const std::string& text) {
  std::string word = "'";
  for (const char c : text) word += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return word + "'";
}

/// The same by the script for bash, which completes the last of `words` as they are written; `last`
/// is what bash itself takes for the last word, when that is less.
std::vector<std::string> OfferedByBash(const std::vector<std::string>& words,
                                       std::optional<std::string> last = {}) {
  const std::string line = ShellLine(words);
  return LinesOfShell(
      "bash",
      "complete() { :; }; compopt() { :; }; . " HOL_COMPLETION "; COMP_WORDS=(x " +
          Literally(last.value_or(words.back())) + "); COMP_CWORD=1; COMP_LINE=" + Literally(line) +
          "; COMP_POINT=" + std::to_string(line.size()) + "; _holstd " + BuiltProgram("holstd") +
          "; [ ${#COMPREPLY[@]} = 0 ] || printf '%s\\n' \"${COMPREPLY[@]}\"");
}

const std::string kZshScript =
    std::string(HOL_COMPLETION).substr(0, std::string(HOL_COMPLETION).rfind('/')) + "/_holstd";

bool HasZsh() {
  return std::system("command -v zsh >/dev/null") == 0;
}

/// The same by the script for zsh.
std::vector<std::string> OfferedByZsh(const std::vector<std::string>& words) {
  std::string script =
      "compset() { :; }; _files() { print files; }\n"
      "compadd() { shift $(( $argv[(i)--] )); print -rl -- \"$@\"; }\n"
      "words=(" +
      BuiltProgram("holstd");
  for (const std::string& word : words) script += " " + Literally(word);
  script += "); CURRENT=" + std::to_string(words.size() + 1) +
            "; PREFIX=" + Literally(words.back()) + "; QIPREFIX=\nf() {\n. " + kZshScript +
            "\n:\n}\nf\n";
  return LinesOfShell("zsh -f", script);
}

}  // namespace

TEST(Complete, OffersTheCommandsAndNoneThatIsHidden) {
  EXPECT_THAT(Offered({""}), IsSupersetOf({"convert", "upgrade", "get", "diff", "standards"}));
  EXPECT_THAT(Offered({""}), Not(Contains("complete")));
  EXPECT_THAT(Offered({"s"}), ElementsAre("sheets", "styles", "symbols", "standards"));
  EXPECT_THAT(Offered({"-v", "inf"}), ElementsAre("info"));
}

TEST(Complete, OffersTheOptionsOfTheCommandAndOfAllCommands) {
  EXPECT_THAT(Offered({"upgrade", "old.xml", "--"}),
              IsSupersetOf({"--output", "--in-place", "--dry-run", "--quiet", "--color"}));
  EXPECT_THAT(Offered({"info", "--dr"}), IsEmpty());
  EXPECT_THAT(Offered({"--qu"}), ElementsAre("--quiet"));
}

TEST(Complete, OffersTheValuesOfAnOption) {
  EXPECT_THAT(Offered({"info", "--color", ""}), ElementsAre("auto", "always", "never"));
  EXPECT_THAT(Offered({"--color", "al"}), ElementsAre("always"));
  EXPECT_THAT(Offered({"--trace", "DftStdS"}), Contains("DftStdServs"));
  EXPECT_THAT(Offered({"upgrade", "-o", ""}), ElementsAre("\tfiles"));
  EXPECT_THAT(Offered({"upgrade", "-d", ""}), ElementsAre("\tfolders"));
  EXPECT_THAT(Offered({"upgrade", "--to", ""}), IsEmpty());
  EXPECT_THAT(Offered({"--color=al"}), ElementsAre("always"));
  EXPECT_THAT(Offered({"info", "--color="}), ElementsAre("auto", "always", "never"));
  EXPECT_THAT(Offered({"info", "--json=al"}), IsEmpty());
}

TEST(Complete, OffersFilesWhereAFileIsMeant) {
  EXPECT_THAT(Offered({"restore", ""}), ElementsAre("\tfiles"));
  EXPECT_THAT(Offered({"info", "a.xml", "b"}), ElementsAre("\tfiles"));
  const TemporaryFolder site;
  site.Write("ISH.xml", SampleStandard());
  // A name leads to a standard wherever one is read.
  EXPECT_THAT(
      Offered({"info", "ISH"}, {.environment = {{"VYR_STANDARD_PATH", site.Path().string()}}}),
      ElementsAre("ISH", "\tfiles"));
  EXPECT_THAT(
      Offered({"diff", "IS"}, {.environment = {{"VYR_STANDARD_PATH", site.Path().string()}}}),
      ElementsAre("ISH", "ISO", "\tfiles"));
  EXPECT_THAT(Offered({"diff", "ISO", "site.xml", ""}), IsEmpty());
}

TEST(Complete, OffersThePathsOfTheFileThatTheLineNames) {
  EXPECT_THAT(Offered({"get", kIso, "Dim"}), ElementsAre("Dimension."));
  EXPECT_THAT(Offered({"get", kIso, "Dimension.DIMLT"}), Contains("Dimension.DIMLTail"));
  EXPECT_THAT(Offered({"get", kIso, kIso, "Dimension.DIMLT"}), Contains("Dimension.DIMLTail"));
  EXPECT_THAT(Offered({"get", kIso, "Dimension.DIMLT"}), Each(StartsWith("Dimension.DIMLT")));
  EXPECT_THAT(Offered({"tree", kIso, "Enum.Yes"}), ElementsAre("Enum.YesNo"));
  EXPECT_THAT(Offered({"tree", kIso, "Root.Dimension.DIMLTai"}),
              ElementsAre("Root.Dimension.DIMLTail"));
  EXPECT_THAT(Offered({"tree", "--json", kIso, "Ro"}), ElementsAre("Root."));
  EXPECT_THAT(Offered({"get", kIso, "Ro"}), IsEmpty()) << "no name of the application's paths";
  EXPECT_THAT(Offered({"get", kIso, "Nothing.There"}), IsEmpty());
}

TEST(Complete, OffersThePathsOfAnEntryByItsPlace) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("a.xml", SampleStandard());
  EXPECT_THAT(Offered({"tree", file, "'Frames.FrameDef[2].T"}),
              ElementsAre("Frames.FrameDef[2].Type"));
}

TEST(Complete, ReadsTheWordsOfALineAsTheShellDoes) {
  const TemporaryFolder folder;
  folder.Write("my file.xml", SampleStandard());
  folder.Write("it's $5.xml", SampleStandard());
  folder.Write("$(touch ran).xml", SampleStandard());
  const ToolSurroundings with = {
      .environment = {{"HOME", folder.Path().string()}, {"NAME", "my file"}}};
  const std::string path = folder.Path();
  for (const std::string& file :
       {path + "/my\\ file.xml", "'" + path + "/my file.xml'", "\"" + path + "/my file.xml\"",
        path + "/\"my file\".xml", std::string("~/my\\ file.xml"), std::string("~/'my file.xml'"),
        std::string("\"$HOME/my file.xml\""), std::string("${HOME}/my\\ file.xml"),
        std::string("\"$HOME/$NAME.xml\""), std::string("~/\"it's \\$5.xml\""),
        std::string("~/'it'\\''s $5.xml'"), std::string("\"$HOME/$(touch ran).xml\""),
        std::string("--color=never ~/my\\ file.xml"), std::string("-v   ~/my\\ file.xml")}) {
    EXPECT_THAT(Offered({"get", file, "Dimension.DIMLT"}, with), ElementsAre("Dimension.DIMLTail"))
        << file;
  }
  for (const char* file : {"'~/my file.xml'", "\\~/my\\ file.xml", "'$HOME/my file.xml'",
                           "~/my file.xml", "$HOME/my\\ file.xml$", "${HOME"}) {
    EXPECT_THAT(Offered({"get", file, "Dimension.DIMLT"}, with), IsEmpty()) << file;
  }
  EXPECT_THAT(Offered({"get", "~/my\\ file.xml", "'Dimension.DIMLT"}, with),
              ElementsAre("Dimension.DIMLTail"));
}

TEST(Complete, OffersNothingForAFileThatCannotBeRead) {
  EXPECT_THAT(Offered({"get", "nosuchfile", ""}), IsEmpty());
  EXPECT_THAT(Offered({"get", "-", ""}), IsEmpty()) << "it must not wait for input";
}

TEST(Complete, OffersSymbolsAndObjectTypes) {
  EXPECT_THAT(Offered({"symbols", "DIAM"}), ElementsAre("DIAMETER"));
  EXPECT_THAT(Offered({"styles", kIso, "Te"}), Contains(StartsWith("Text")));
  EXPECT_THAT(Offered({"styles", kIso, ""}), Not(Contains(testing::EndsWith("."))));
}

TEST(Complete, ScriptForBashOffersTheSame) {
  EXPECT_THAT(OfferedByBash({"s"}), ElementsAre("sheets", "styles", "symbols", "standards"));
  EXPECT_THAT(OfferedByBash({"get", kIso, "Dimension.DIMLTai"}), ElementsAre("Dimension.DIMLTail"));
  EXPECT_THAT(OfferedByBash({"get", kIso, "Nothing.There"}), IsEmpty());
  EXPECT_THAT(OfferedByBash({"get", "'" + kIso + "'", "\"Dimension.DIMLTai"}),
              ElementsAre("Dimension.DIMLTail"));
  // The shell takes "=" for a word of its own.
  EXPECT_THAT(OfferedByBash({"--color=al"}, "al"), ElementsAre("always"));
  EXPECT_THAT(OfferedByBash({"--color="}, "="), ElementsAre("auto", "always", "never"));
  EXPECT_THAT(OfferedByBash({"--color=al"}), ElementsAre("--color=always"))
      << "unless it was told not to";
}

// What bash puts on the line is a word that means the name, and nothing that it would run.
TEST(Complete, ScriptForBashOffersNamesAsTheShellReadsThem) {
  const TemporaryFolder folder;
  const std::string name = "x'$(false)`false`\\!\" &<";
  const std::string file =
      folder.Write("a.xml", Document("<std:node name=\"x'$(false)`false`\\!&quot; &amp;&lt;\"/>"));
  for (const std::string quote : {"", "'", "\""}) {
    const auto offered = OfferedByBash({"tree", file, quote + "x"});
    ASSERT_EQ(offered.size(), 1u) << quote;
    EXPECT_THAT(LinesOfShell("bash", "printf '%s\\n' " + quote + offered[0] + quote),
                ElementsAre(name));
  }
}

TEST(Complete, ScriptForBashAsksTheShellForFiles) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("only one", "");
  EXPECT_THAT(OfferedByBash({"info", folder / "only"}), ElementsAre(file));
  EXPECT_THAT(OfferedByBash({"info", folder / "only\\ o"}), ElementsAre(file));
  EXPECT_THAT(OfferedByBash({"info", "'" + (folder / "only o")}), ElementsAre(file));
}

TEST(Complete, ScriptForZshOffersTheSame) {
  if (!HasZsh()) GTEST_SKIP() << "there is no zsh";
  EXPECT_EQ(std::system(("zsh -n " + kZshScript).c_str()), 0);
  EXPECT_THAT(OfferedByZsh({"s"}), ElementsAre("sheets", "styles", "symbols", "standards"));
  EXPECT_THAT(OfferedByZsh({"get", "'" + kIso + "'", "Dimension.DIMLTai"}),
              ElementsAre("Dimension.DIMLTail"));
  EXPECT_THAT(OfferedByZsh({"get", kIso, "Dimensi"}), ElementsAre("Dimension."));
  EXPECT_THAT(OfferedByZsh({"--color=al"}), ElementsAre("always"));
  EXPECT_THAT(OfferedByZsh({"info", ""}), ElementsAre("files"));
}
