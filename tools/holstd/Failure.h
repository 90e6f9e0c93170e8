#pragma once

#include <string>

/// What the tool tells the shell. Of several files the greatest status counts.
enum ExitStatus : int {
  kDone = 0,
  kNegativeAnswer = 1,  ///< not found, not valid
  kUsage = 2,
  kInvalidInput = 3,  ///< unreadable or not valid: a file, a script or a command
  kNotWritten = 4,
  kUndecided = 5,  ///< the user has to say what is meant
  kNewerFile = 6,  ///< of a format version that this tool does not know
};

/// Thrown where a subcommand cannot go on; becomes one message and the status.
struct Failure {
  ExitStatus status;
  std::string place;  ///< file, or whatever else the text speaks of; may be empty
  int line;           ///< 0 when no line is to blame
  std::string text;   ///< what is wrong, and what would be right
};
