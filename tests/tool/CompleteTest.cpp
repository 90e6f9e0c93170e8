#include <cstdio>

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

/// What is offered for the last of the words of a line that begins with "holstd".
std::vector<std::string> Offered(std::vector<std::string> words) {
  words.insert(words.begin(), {"complete", "--", "holstd"});
  const ToolRun run = RunTool(words);
  EXPECT_EQ(run.status, 0) << run.err;
  return Lines(run.out);
}

/// The same by the script for bash, which completes the last of `words` as a shell has them.
std::vector<std::string> OfferedByBash(const std::vector<std::string>& words) {
  std::string script =
      "complete() { :; }; compopt() { :; }; . " HOL_COMPLETION "; COMP_WORDS=(" HOL_TOOL;
  for (const std::string& word : words) script += " '" + word + "'";
  script += "); COMP_CWORD=" + std::to_string(words.size()) +
            "; _holstd; [ ${#COMPREPLY[@]} = 0 ] || printf '%s\\n' \"${COMPREPLY[@]}\"";
  const TemporaryFolder folder;
  const std::string file = folder.Write("script", script);
  std::FILE* const output = ::popen(("bash " + file).c_str(), "r");
  std::string text;
  for (int c; (c = std::fgetc(output)) != EOF;) text += static_cast<char>(c);
  EXPECT_EQ(::pclose(output), 0);
  return Lines(text);
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
}

TEST(Complete, OffersFilesWhereAFileIsMeant) {
  EXPECT_THAT(Offered({"info", ""}), ElementsAre("\tfiles"));
  EXPECT_THAT(Offered({"info", "a.xml", "b"}), ElementsAre("\tfiles"));
  EXPECT_THAT(Offered({"diff", "I"}), ElementsAre("ISO", "\tfiles"));
  EXPECT_THAT(Offered({"diff", "ISO", "site.xml", ""}), IsEmpty());
}

TEST(Complete, OffersThePathsOfTheFileThatTheLineNames) {
  EXPECT_THAT(Offered({"get", kIso, "Dim"}), ElementsAre("Dimension."));
  EXPECT_THAT(Offered({"get", kIso, "Dimension.DIMLT"}), Contains("Dimension.DIMLTail"));
  EXPECT_THAT(Offered({"get", kIso, "Dimension.DIMLT"}), Each(StartsWith("Dimension.DIMLT")));
  EXPECT_THAT(Offered({"tree", kIso, "Enum.Yes"}), ElementsAre("Enum.YesNo"));
  EXPECT_THAT(Offered({"tree", kIso, "Root.Dimension.DIMLTai"}),
              ElementsAre("Root.Dimension.DIMLTail"));
  EXPECT_THAT(Offered({"tree", "--json", kIso, "Ro"}), ElementsAre("Root."));
  EXPECT_THAT(Offered({"get", kIso, "Ro"}), IsEmpty()) << "no name of the application's paths";
  EXPECT_THAT(Offered({"get", kIso, "Nothing.There"}), IsEmpty());
}

TEST(Complete, OffersNothingForAFileThatCannotBeRead) {
  EXPECT_THAT(Offered({"get", "no such file", ""}), IsEmpty());
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
}

TEST(Complete, ScriptForBashAsksTheShellForFiles) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("only one", "");
  EXPECT_THAT(OfferedByBash({"info", folder / "only"}), ElementsAre(file));
}
