#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "Failure.h"

/// Zero when all of `text` was written to a file descriptor, else the system's error number.
int WriteAll(int file, std::string_view text);

/// Standard output takes no more: nothing that follows can be told either.
struct OutputLost {
  int error;  ///< the system's number; EPIPE: whoever read it has gone
};

/// One run of the tool: its options for every subcommand, and where it writes. Data goes to
/// standard output, in blocks, and throws `OutputLost`; talk goes to standard error.
class Session {
 public:
  // Set from the command line.
  bool isQuiet = false;
  bool isVerbose = false;
  std::string color = "auto";
  std::vector<std::string> traces;

  /// Puts the options into effect; call it once they are read.
  void Begin();

  void Print(std::string_view data);
  void Flush();

  /// Talk of what was done, a line each. What is printed or said after memory ran out could be
  /// wrong: these throw `std::bad_alloc` then.
  void Say(std::string_view text) const;
  /// The same, for those who want every step.
  void SayInDetail(std::string_view text) const;
  void Complain(const Failure& failure) const;
  /// Complains of what ends the work on a file, also when there is no memory left, and returns the
  /// status that it ends with.
  ExitStatus Refuse(const Failure& failure) const noexcept;
  /// Of an input that is taken all the same, but perhaps not as it was meant.
  void Warn(const std::string& file, const std::string& text) const;

  /// Of what comes next, as another file, nothing is told yet.
  void BeginAnswer() const noexcept;
  /// Throws `std::bad_alloc` if memory has run out, and with it perhaps a part of the answer. Not
  /// if the last that was told is what was done, or why it was not, which stays so.
  void RequireWholeAnswer() const;

  enum class Paint { Good, Bad, Faint };
  /// `text` as the terminal shows it in that colour; as it is when there are no colours.
  std::string Painted(Paint paint, std::string_view text) const;

 private:
  void SwitchTraces() const;

  bool hasColors_ = false;
  mutable bool isDone_ = false;  ///< what was told last is what was done
  std::string pending_;
};

/// Calls `visit` for every file, whatever happens to the others, and returns the worst status.
/// Standard input can be one of them only.
ExitStatus ForEachFile(Session& session, const std::vector<std::string>& files,
                       const std::function<ExitStatus(const std::string& file)>& visit);
