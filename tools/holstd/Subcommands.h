#pragma once

#include <CLI/CLI.hpp>
#include <functional>

#include "Session.h"

/// What a subcommand does once its arguments are read.
using Action = std::function<ExitStatus(Session& session)>;

// The subcommands, each in the source of its name. `Register` gives the command line its options
// and its help, and returns the action.
//
// To add one: a struct here, its source, and its row in the table of main.cpp.
struct Convert {
  static Action Register(CLI::App& command);
};
struct Upgrade {
  static Action Register(CLI::App& command);
};
struct Info {
  static Action Register(CLI::App& command);
};
struct Get {
  static Action Register(CLI::App& command);
};
struct Tree {
  static Action Register(CLI::App& command);
};
struct Edit {
  static Action Register(CLI::App& command);
};
struct Check {
  static Action Register(CLI::App& command);
};
struct Sheets {
  static Action Register(CLI::App& command);
};
struct Styles {
  static Action Register(CLI::App& command);
};
struct Symbols {
  static Action Register(CLI::App& command);
};
struct Standards {
  static Action Register(CLI::App& command);
};
