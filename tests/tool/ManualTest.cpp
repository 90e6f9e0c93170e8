#include "ToolRun.h"

using testing::HasSubstr;
using testing::StartsWith;

namespace {

/// A page as it reads: without the marks of fonts and hyphens.
std::string Plain(std::string page) {
  for (const std::string mark : {R"(\fB)", R"(\fI)", R"(\fR)", R"(\&)"}) {
    for (std::size_t at; (at = page.find(mark)) != std::string::npos;) page.erase(at, mark.size());
  }
  for (std::size_t at; (at = page.find("\\-")) != std::string::npos;) page.erase(at, 1);
  return page;
}

class Manual : public testing::Test {
 protected:
  Manual() {
    const ToolRun run = RunTool({"manual", folder_.Path().string()});
    EXPECT_EQ(run.status, 0) << run.err;
  }
  std::string Page(const std::string& name) const { return ReadWholeFile(folder_ / (name + ".1")); }

  const TemporaryFolder folder_;
};

/// Names of the subcommands, as the help lists them.
std::vector<std::string> Commands() {
  std::string help = RunTool({"--help"}).out;
  help.erase(0, help.find("Subcommands:\n") + 13);
  std::vector<std::string> names;
  for (std::size_t from = 0; help.compare(from, 2, "  ") == 0;) {
    const std::size_t end = help.find(' ', from + 2);
    names.push_back(help.substr(from + 2, end - from - 2));
    from = help.find('\n', from) + 1;
  }
  return names;
}

/// The names that a help gives options and words.
std::vector<std::string> Options(const std::string& help) {
  std::vector<std::string> names;
  for (std::size_t at = help.find("\n  -"); at != std::string::npos;
       at = help.find("\n  -", at + 1)) {
    const std::size_t begin = at + 3;
    names.push_back(help.substr(begin, help.find_first_of(" ,\n", begin) - begin));
  }
  return names;
}

}  // namespace

TEST_F(Manual, HasAPageOfTheToolAndOneOfEachCommand) {
  EXPECT_THAT(Page("holstd"), StartsWith(".TH HOLSTD 1 "));
  const std::vector<std::string> commands = Commands();
  EXPECT_GE(commands.size(), 14u);
  for (const std::string& command : commands) {
    EXPECT_THAT(Plain(Page("holstd-" + command)), HasSubstr("holstd-" + command + " - "));
    EXPECT_THAT(Plain(Page("holstd")), HasSubstr("\n.TP\n" + command + "\n"));
  }
}

TEST_F(Manual, TellsEveryOptionOfTheHelpAndItsNotes) {
  for (const std::string& command : Commands()) {
    const std::string help = RunTool({command, "--help"}).out;
    const std::string page = Plain(Page("holstd-" + command));
    const std::vector<std::string> options = Options(help);
    EXPECT_FALSE(options.empty());
    for (const std::string& option : options) {
      EXPECT_THAT(page, HasSubstr("\n.TP\n" + option)) << command;
    }
    const std::string notes = help.substr(help.find("Examples:\n"));
    EXPECT_THAT(page, HasSubstr(notes.substr(0, notes.find('\n', 20)))) << command;
  }
}

TEST_F(Manual, TellsWhatAnOptionRefuses) {
  const std::string synopsis = ".SH SYNOPSIS\n";
  EXPECT_THAT(Plain(Page("holstd-convert")),
              HasSubstr(synopsis + "holstd convert TEXTFILE -o FILE [OPTION...]\n"));
  EXPECT_THAT(Plain(Page("holstd-get")),
              HasSubstr("\n--all\nPrint all values, one a line.\nNot together with --index, "
                        "--type.\n"));
  EXPECT_THAT(Plain(Page("holstd-get")), HasSubstr("\n--index N\n"));
  EXPECT_THAT(
      Plain(Page("holstd-convert")),
      HasSubstr("\n--to VERSION\nFormat version to stop at; default 220, from 1 to 220.\n"));
}

TEST_F(Manual, AndTheHelpSayARangeInWords) {
  for (const std::string& command : Commands()) {
    for (const std::string& text :
         {RunTool({command, "--help"}).out, Plain(Page("holstd-" + command))}) {
      EXPECT_THAT(text, testing::Not(testing::ContainsRegex("INT|in \\[[0-9]|[A-Z]:[A-Z]")))
          << command;
    }
  }
  EXPECT_THAT(RunTool({"get", "--help"}).out, HasSubstr("1 or more"));
}

TEST_F(Manual, TellsWhatOfTheEnvironmentCounts) {
  const std::string page = Plain(Page("holstd"));
  for (const char* name : {"VYR_STANDARD_PATH", "NO_COLOR", "TERM", "TMPDIR"}) {
    EXPECT_GT(page.find(std::string("\n.TP\n") + name + "\n"), page.find(".SH ENVIRONMENT\n"));
    EXPECT_THAT(page, HasSubstr(std::string("\n.TP\n") + name + "\n"));
  }
}

TEST_F(Manual, LeavesNoLineThatATypesetterTakesForACommandOfItsOwn) {
  for (const std::string& command : Commands()) {
    const std::string page = Page("holstd-" + command);
    for (std::size_t at = page.find("\n."); at != std::string::npos;
         at = page.find("\n.", at + 1)) {
      const std::string name = page.substr(at + 2, 2);
      EXPECT_TRUE(name == "SH" || name == "TP" || name == "nf" || name == "fi") << page.substr(at);
    }
    EXPECT_EQ(page.find("\n'"), std::string::npos);
  }
}

TEST(ManualFolder, ThatIsNotThereIsRefused) {
  ExpectFailure(RunTool({"manual", "/no/such/folder"}), 4, {"/no/such/folder/holstd.1"});
}
