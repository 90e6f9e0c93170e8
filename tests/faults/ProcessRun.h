#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "BuiltProgram.h"
#include "TemporaryFolder.h"

/// What a process left behind.
struct ProcessRun {
  int status = -1;      ///< its exit status; less than 0: the signal that ended it, negated
  std::string message;  ///< what it said on standard error
  std::vector<std::string> calls;  ///< its operations on files of the watched folder
};

/// The file operations that are to fail, and where; see FaultyFiles.cpp.
struct Faults {
  std::string folder = {};  ///< empty: the process is left in peace
  std::string list = {};    ///< empty: the operations are only written down
};

/// How a list of faults writes an error, and one that is told though the call was done.
inline std::string Error(int number) {
  return std::to_string(number);
}
inline std::string Late(int number) {
  return "late-" + std::to_string(number);
}

namespace process_run {

/// Pointers for the operating system, with the null that closes them.
inline std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

inline std::vector<std::string> Environment(const Faults& faults, const std::string& log) {
  std::vector<std::string> environment;
  // What a sanitizer finds must not look like a status of the process.
  std::string addressSanitizer = "ASAN_OPTIONS=exitcode=99:verify_asan_link_order=0";
  // What this process was given, such as another order of folders, its children have, too.
  constexpr std::string_view preload = "LD_PRELOAD=";
  std::string preloaded = "LD_PRELOAD=" HOL_FAULTY_FILES;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    const std::string_view text = *variable;
    constexpr std::string_view options = "ASAN_OPTIONS=";
    if (text.starts_with(options)) {
      addressSanitizer.append(":").append(text.substr(options.size()));
    } else if (text.starts_with(preload) && !faults.folder.empty()) {
      preloaded.append(":").append(text.substr(preload.size()));
    } else {
      environment.emplace_back(text);
    }
  }
  environment.push_back(addressSanitizer);
  if (faults.folder.empty()) return environment;
  environment.push_back(preloaded);
  environment.push_back("HOL_FAULT_FOLDER=" + faults.folder);
  environment.push_back("HOL_FAULTS=" + faults.list);
  environment.push_back("HOL_FAULT_LOG=" + log);
  return environment;
}

}  // namespace process_run

/// A process that was started; its standard error and its operations are read when it has ended.
class Process {
 public:
  explicit Process(std::vector<std::string> command, const Faults& faults = {}) {
    std::vector<std::string> environment = process_run::Environment(faults, notes_ / "calls");
    const std::vector<char*> arguments = process_run::Pointers(command);
    const std::vector<char*> variables = process_run::Pointers(environment);
    const std::string errors = notes_ / "errors";
    // Cheaper than a fork, which would copy the tables of a large memory.
    posix_spawn_file_actions_t files;
    ::posix_spawn_file_actions_init(&files);
    ::posix_spawn_file_actions_addopen(&files, STDERR_FILENO, errors.c_str(), O_WRONLY | O_CREAT,
                                       0600);
    ::posix_spawn_file_actions_adddup2(&files, STDERR_FILENO, STDOUT_FILENO);
    const int error =
        ::posix_spawn(&id_, arguments[0], &files, nullptr, arguments.data(), variables.data());
    ::posix_spawn_file_actions_destroy(&files);
    EXPECT_EQ(error, 0) << arguments[0];
    hasEnded_ = error != 0;
  }
  Process(Process&&) = delete;
  ~Process() { Wait(); }

  bool HasEnded() {
    if (!hasEnded_) hasEnded_ = ::waitpid(id_, &status_, WNOHANG) == id_;
    return hasEnded_;
  }

  ProcessRun Wait() {
    if (!hasEnded_) hasEnded_ = ::waitpid(id_, &status_, 0) == id_;
    ProcessRun run;
    run.status = WIFEXITED(status_) ? WEXITSTATUS(status_) : -WTERMSIG(status_);
    run.message = ReadWholeFile(notes_ / "errors");
    std::istringstream calls(ReadWholeFile(notes_ / "calls"));
    for (std::string call; std::getline(calls, call);) run.calls.push_back(call);
    return run;
  }

 private:
  const TemporaryFolder notes_;
  pid_t id_ = -1;
  int status_ = -1;
  bool hasEnded_ = false;
};

/// Runs a process to its end.
inline ProcessRun RunProcess(std::vector<std::string> command, const Faults& faults = {}) {
  return Process(std::move(command), faults).Wait();
}

/// How a process that saves is called; see SaveProcess.cpp.
inline std::vector<std::string> SaveCommand(const std::string& how, const std::string& source,
                                            const std::string& target,
                                            const std::vector<std::string>& options = {}) {
  std::vector<std::string> command = {BuiltProgram("hol_save_process")};
  command.insert(command.end(), options.begin(), options.end());
  command.insert(command.end(), {how, source, target});
  return command;
}

/// Exit statuses of a process that saves, and of the tool.
inline constexpr int kSaved = 0;
inline constexpr int kNotRead = 3;
inline constexpr int kNotSaved = 4;

/// What an error means, in English whatever the locale.
inline std::string TextOf(int error) {
  return ::strerrordesc_np(error);
}

/// Why a save failed, as its message ends: in the words of the operating system, and with what
/// would be right where that is known.
inline std::string ReasonOf(int error) {
  constexpr std::string_view ask = "; ask for permission to write there or choose another place";
  constexpr std::string_view makeRoom = "; make room there or choose another place";
  std::string reason = TextOf(error);
  if (error == EACCES || error == EPERM || error == EROFS) reason += ask;
  if (error == ENOSPC || error == EDQUOT) reason += makeRoom;
  if (error == ENOENT) reason += "; make its folder or look at the spelling of that";
  if (error == ENOTDIR) reason += "; look at the spelling of its folder";
  if (error == ELOOP) reason += "; its symbolic links lead to each other, name the file itself";
  if (error == ENAMETOOLONG) reason += "; choose a shorter name";
  if (error == EFBIG) reason += "; raise the limit on the size of files or choose another place";
  return reason;
}

inline std::string ShippedStandard(const std::string& name) {
  return HOL_STANDARDS "/" + name;
}
