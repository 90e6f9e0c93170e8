#include "Session.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <new>

#include "Format.h"
#include "MemoryShortage.h"
#include "Reports.h"
#include "VyrShownText.h"
#include "VyrTrace.h"

namespace {

constexpr std::size_t kBlock = 65536;

/// A line of talk. When standard error is gone there is nobody left to tell.
void WriteLine(std::string line) {
  line += '\n';
  static_cast<void>(WriteAll(STDERR_FILENO, line));
}

/// A file's name, or a sentence that quotes what may be as long as a file.
std::string Shown(std::string_view text) {
  return VyrShownEnds(text, kMostShownInTrace);
}

bool TerminalHasColors() {
  const char* noColor = std::getenv("NO_COLOR");
  if (noColor != nullptr && *noColor != '\0') return false;
  const char* terminal = std::getenv("TERM");
  const bool isDumb = terminal == nullptr || std::string_view(terminal) == "dumb";
  return !isDumb && ::isatty(STDOUT_FILENO) != 0;
}

std::string KnownTraces() {
  std::vector<std::string> names;
  VyrTrace::ForEach([&](const VyrTrace& channel) { names.emplace_back(channel.GetName()); });
  std::sort(names.begin(), names.end());
  return Joined(names);
}

}  // namespace

int WriteAll(int file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(file, text.data(), text.size());
    if (written < 0 && errno != EINTR) return errno;
    if (written > 0) text.remove_prefix(static_cast<std::size_t>(written));
  }
  return 0;
}

void Session::Begin() {
  hasColors_ = color == "always" || (color == "auto" && TerminalHasColors());
  SwitchTraces();
  ShowFailedChecks(isVerbose || !traces.empty());
}

void Session::SwitchTraces() const {
  for (const std::string& name : traces) {
    VyrTrace* channel = VyrTrace::Find(name);
    if (channel == nullptr) {
      throw Failure{
          kUsage, "", 0,
          "--trace: " + Quoted(name) + " is no trace channel; there are " + KnownTraces()};
    }
    channel->Switch(true);
  }
}

void Session::Print(std::string_view data) {
  RequireMemory();
  isDone_ = false;
  pending_ += data;
  if (pending_.size() >= kBlock) Flush();
}

void Session::Flush() {
  const int error = WriteAll(STDOUT_FILENO, pending_);
  pending_.clear();
  if (error != 0) throw OutputLost{error};
}

void Session::Say(std::string_view text) const {
  RequireMemory();
  if (!isQuiet) WriteLine(Shown(text));
  isDone_ = true;
}

void Session::SayInDetail(std::string_view text) const {
  RequireMemory();
  if (isVerbose && !isQuiet) WriteLine(Shown(text));
}

void Session::Complain(const Failure& failure) const {
  RequireMemory();
  std::string line = "holstd: ";
  if (!failure.place.empty()) {
    line += failure.place == "-" ? "standard input" : Shown(failure.place);
    if (failure.line > 0) line += ":" + std::to_string(failure.line);
    line += ": ";
  }
  WriteLine(line + Shown(failure.text));
}

void Session::BeginAnswer() const noexcept {
  ForgetMemoryShortage();
  isDone_ = false;
}

void Session::RequireWholeAnswer() const {
  if (!isDone_) RequireMemory();
}

ExitStatus Session::Refuse(const Failure& failure) const noexcept {
  const ExitStatus status = failure.status == kNotWritten ? kNotWritten : kInvalidInput;
  try {
    Complain(failure);
    isDone_ = true;
    return failure.status;
  } catch (const std::bad_alloc&) {
    ComplainOfMemory();
    return status;
  }
}

void Session::Warn(const std::string& file, const std::string& text) const {
  Complain({kDone, file, 0, "warning: " + text});
}

std::string Session::Painted(Paint paint, std::string_view text) const {
  if (!hasColors_) return std::string(text);
  const char* code = paint == Paint::Good ? "32" : paint == Paint::Bad ? "31" : "2";
  return std::string("\033[") + code + "m" + std::string(text) + "\033[0m";
}

ExitStatus ForEachFile(Session& session, const std::vector<std::string>& files,
                       const std::function<ExitStatus(const std::string& file)>& visit) {
  if (std::count(files.begin(), files.end(), "-") > 1) {
    throw Failure{kUsage, "", 0, "standard input can be read once only; give '-' once"};
  }
  ExitStatus worst = kDone;
  for (const std::string& file : files) {
    session.BeginAnswer();
    try {
      const ExitStatus status = visit(file);
      session.RequireWholeAnswer();
      worst = std::max(worst, status);
    } catch (const Failure& failure) {
      worst = std::max(worst, session.Refuse(failure));
    } catch (const std::bad_alloc&) {
      ComplainOfMemory();
      worst = std::max(worst, kInvalidInput);
    }
  }
  return worst;
}
