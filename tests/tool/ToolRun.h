#pragma once

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "BuiltProgram.h"
#include "TemporaryFolder.h"

/// What the tool left behind.
struct ToolRun {
  int status = -1;
  std::string out;
  std::string err;
};

/// What a run of the tool meets besides its arguments.
struct ToolSurroundings {
  std::string input = {};
  std::string inputFile = {};   ///< what standard input is instead of `input`
  bool isInputPipe = false;     ///< `input`, a small one, comes out of a pipe
  std::string outputFile = {};  ///< where standard output leads; empty: it is captured
  std::string talkFile = {};    ///< where standard error leads; empty: it is captured
  bool isReaderGone = false;    ///< standard output is a pipe that nobody reads
  bool isPipeIgnored = false;   ///< whoever started the tool ignores SIGPIPE
  std::vector<std::pair<std::string, std::string>> environment = {};
  rlim_t mostFileBytes = 0;  ///< of each file it writes; 0: no limit
  rlim_t mostMemory = 0;     ///< in bytes; 0: no limit
};

namespace tool_run {

/// Makes `file` what the descriptor stands for; in the child only.
inline void Redirect(const std::string& file, int flags, int descriptor) {
  const int opened = ::open(file.c_str(), flags, 0600);
  if (opened < 0 || ::dup2(opened, descriptor) < 0) ::_exit(126);
  ::close(opened);
}

inline void RedirectToClosedPipe() {
  int ends[2];
  if (::pipe(ends) != 0 || ::dup2(ends[1], STDOUT_FILENO) < 0) ::_exit(126);
  ::close(ends[0]);
  ::close(ends[1]);
}

/// The pipe holds all of `input`, and nobody writes to it any more.
inline void RedirectFromPipe(const std::string& input) {
  int ends[2];
  if (::pipe(ends) != 0 || ::dup2(ends[0], STDIN_FILENO) < 0) ::_exit(126);
  ::fcntl(ends[1], F_SETFL, O_NONBLOCK);
  const ssize_t written = ::write(ends[1], input.data(), input.size());
  if (written != static_cast<ssize_t>(input.size())) ::_exit(126);
  ::close(ends[0]);
  ::close(ends[1]);
}

/// A fault that a sanitizer finds must not look like a status of the tool.
inline void SetEnvironment(const ToolSurroundings& with) {
  ::unsetenv("NO_COLOR");
  for (const char* name : {"ASAN_OPTIONS", "UBSAN_OPTIONS"}) {
    const char* options = std::getenv(name);
    ::setenv(name, ((options == nullptr ? "" : options) + std::string(":exitcode=99")).c_str(), 1);
  }
  for (const auto& [name, value] : with.environment) ::setenv(name.c_str(), value.c_str(), 1);
}

template <class Resource>
void Limit(Resource resource, rlim_t most) {
  const rlimit limit = {most, most};
  if (most != 0 && ::setrlimit(resource, &limit) != 0) ::_exit(126);
}

[[noreturn]] inline void BecomeTool(const std::vector<std::string>& arguments,
                                    const TemporaryFolder& folder, const ToolSurroundings& with) {
  if (with.isInputPipe) {
    RedirectFromPipe(with.input);
  } else {
    Redirect(with.inputFile.empty() ? folder / "in" : with.inputFile, O_RDONLY, STDIN_FILENO);
  }
  if (with.isReaderGone) {
    RedirectToClosedPipe();
  } else if (with.outputFile.empty()) {
    Redirect(folder / "out", O_WRONLY | O_CREAT, STDOUT_FILENO);
  } else {
    Redirect(with.outputFile, O_WRONLY, STDOUT_FILENO);
  }
  if (with.talkFile.empty()) {
    Redirect(folder / "err", O_WRONLY | O_CREAT, STDERR_FILENO);
  } else {
    Redirect(with.talkFile, O_WRONLY, STDERR_FILENO);
  }
  SetEnvironment(with);
  std::signal(SIGPIPE, with.isPipeIgnored ? SIG_IGN : SIG_DFL);  // whatever started the tests
  Limit(RLIMIT_FSIZE, with.mostFileBytes);
  Limit(RLIMIT_AS, with.mostMemory);
  const std::string tool = BuiltProgram("holstd");
  std::vector<char*> argv = {const_cast<char*>(tool.c_str())};
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  ::execv(tool.c_str(), argv.data());
  ::_exit(127);
}

}  // namespace tool_run

/// Runs the tool to its end.
inline ToolRun RunTool(const std::vector<std::string>& arguments,
                       const ToolSurroundings& with = {}) {
  const TemporaryFolder folder;
  folder.Write("in", with.input);
  const pid_t child = ::fork();
  if (child == 0) tool_run::BecomeTool(arguments, folder, with);
  int status = 0;
  ::waitpid(child, &status, 0);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status),
          ReadWholeFile(folder / "out"), ReadWholeFile(folder / "err")};
}

inline nlohmann::json ParsedJson(const ToolRun& run) {
  return nlohmann::json::parse(run.out, nullptr, false);
}

/// The run failed with `status` and one message that holds every one of `parts`.
inline void ExpectFailure(const ToolRun& run, int status, const std::vector<std::string>& parts) {
  EXPECT_EQ(run.status, status) << run.err;
  EXPECT_EQ(run.err.rfind("holstd: ", 0), 0u) << run.err;
  EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
  for (const std::string& part : parts) EXPECT_THAT(run.err, testing::HasSubstr(part));
}

inline std::string LegacyText(const std::string& name) {
  return std::string(HOL_STANDARDS) + "/legacy/" + name + ".txt";
}

/// A standard document around `content`.
inline std::string Document(const std::string& content) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<std:node "
         "xmlns:std=\"http://schemas.hol-standard.example/drafting/std\" name=\"drafting\">\n" +
         content + "</std:node>\n";
}

/// A parameter's node with its value.
inline std::string Parameter(const std::string& name, const std::string& element,
                             const std::string& text) {
  return "<std:node name=\"" + name + "\"><std:" + element + ">" + text +
         "</std:" + element.substr(0, element.find(' ')) + "></std:node>\n";
}

/// One of every kind: an ASME standard of version 220 with 1 enumeration, 1 type, 11 nodes and 12
/// values.
inline std::string SampleStandard() {
  return Document(
      "<std:enumdef name=\"YesNo\"><std:strval>Yes</std:strval><std:strval>No</std:strval>"
      "</std:enumdef>\n"
      "<std:typedef name=\"FrameDef\"><std:strval name=\"Name\">XXX</std:strval>"
      "<std:intval name=\"Type\">1</std:intval></std:typedef>\n"
      "<std:node name=\"Dimension\">\n" +
      Parameter("ParentStandard", "strval", "ANSI") + Parameter("TXTDatumMode", "intval", "1") +
      Parameter("DIMLTail", "floatval minval=\"0.0\"", "2.0") +
      Parameter("Blanking", "enumval name=\"YesNo\"", "Yes") +
      "</std:node>\n"
      "<std:node name=\"Frames\">\n"
      "<std:typeval name=\"FrameDef\"><std:strval name=\"Name\">Box</std:strval>"
      "<std:intval name=\"Type\">21</std:intval></std:typeval>\n"
      "<std:typeval name=\"FrameDef\"><std:strval name=\"Name\">Circle</std:strval>"
      "<std:intval name=\"Type\">3</std:intval></std:typeval>\n"
      "</std:node>\n"
      "<std:node name=\"Sizes\"><std:floatval>2.5</std:floatval><std:floatval>3.5</std:floatval>"
      "</std:node>\n" +
      Parameter("Ink", "colorval", "255 0 0") + Parameter("Version", "intval", "220"));
}

/// A standard with what the application needs from version 60 on: two sheet formats, and a minimal
/// and a complete sheet style.
inline std::string WithSheets(std::string standard) {
  const auto literals = [](const std::string& name, const std::vector<std::string>& words) {
    std::string text = "<std:enumdef name=\"" + name + "\">";
    for (const std::string& word : words) text += "<std:strval>" + word + "</std:strval>";
    return text + "</std:enumdef>\n";
  };
  const auto format = [](const std::string& name, const std::string& width,
                         const std::string& height, const std::string& orientation) {
    return "<std:typeval name=\"Formats\"><std:strval name=\"Name\">" + name +
           "</std:strval><std:floatval name=\"Width\">" + width +
           "</std:floatval><std:floatval name=\"Height\">" + height +
           "</std:floatval><std:enumval name=\"FormatOrientationType\">" + orientation +
           "</std:enumval></std:typeval>\n";
  };
  const auto word = [](const std::string& name, const std::string& enumeration,
                       const std::string& text) {
    return Parameter(name, "enumval name=\"" + enumeration + "\"", text);
  };
  const std::string sheets =
      literals("FormatOrientationType",
               {"PortraitByDefault", "LandscapeByDefault", "PortraitOnly", "LandscapeOnly"}) +
      literals("ProjectionMethod", {"First angle", "Third angle"}) +
      literals("GenViewsPosMode", {"FixedCG", "FixedAxis"}) +
      literals("Orientation", {"Portrait", "Landscape"}) + literals("Shown", {"Yes", "No"}) +
      "<std:node name=\"SheetFormat\">\n" + format("A0 ISO", "1189", "841", "LandscapeByDefault") +
      format("Strip", "297.5", "210.0", "PortraitOnly") +
      "</std:node>\n<std:node name=\"Styles\"><std:node name=\"Sheet\">\n"
      "<std:node name=\"Default\">" +
      Parameter("GlobalScale", "floatval", "1.0") +
      word("ProjectionMethod", "ProjectionMethod", "First angle") +
      "</std:node>\n<std:node name=\"Large\">" + Parameter("GlobalScale", "floatval", "0.5") +
      word("ProjectionMethod", "ProjectionMethod", "Third angle") +
      word("GenViewsPosMode", "GenViewsPosMode", "FixedAxis") +
      Parameter("Format", "strval", "A0 ISO") + word("Orientation", "Orientation", "Landscape") +
      word("DisplayFormat", "Shown", "No") + "</std:node>\n</std:node></std:node>\n";
  return standard.insert(standard.rfind("</std:node>"), sheets);
}

/// `text` with the first occurrence of `part` replaced.
inline std::string Replaced(std::string text, const std::string& part, const std::string& by) {
  const std::size_t at = text.find(part);
  EXPECT_NE(at, std::string::npos) << part;
  return at == std::string::npos ? text : text.replace(at, part.size(), by);
}

/// 1-based line of the first occurrence of `part`.
inline int LineOf(const std::string& text, const std::string& part) {
  const std::size_t at = text.find(part);
  EXPECT_NE(at, std::string::npos) << part;
  return 1 + static_cast<int>(std::count(text.begin(), text.begin() + static_cast<long>(at), '\n'));
}
