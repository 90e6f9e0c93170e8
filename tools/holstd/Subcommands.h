#pragma once

#include <functional>

#include "Arguments.h"
#include "Session.h"

/// What a subcommand does once its arguments are read.
using Action = std::function<ExitStatus(Session& session)>;

// The subcommands, each in the source of its name. `Register` gives the command line its options
// and its help, and returns the action.
//
// To add one: a struct here, its source, and its row in the table of main.cpp.
struct Convert {
  static Action Register(Arguments& command);
};
struct Upgrade {
  static Action Register(Arguments& command);
};
struct Restore {
  static Action Register(Arguments& command);
};
struct Info {
  static Action Register(Arguments& command);
};
struct Get {
  static Action Register(Arguments& command);
};
struct Tree {
  static Action Register(Arguments& command);
};
struct Edit {
  static Action Register(Arguments& command);
};
struct Diff {
  static Action Register(Arguments& command);
};
struct Explain {
  static Action Register(Arguments& command);
};
struct Check {
  static Action Register(Arguments& command);
};
struct Sheets {
  static Action Register(Arguments& command);
};
struct Styles {
  static Action Register(Arguments& command);
};
struct Symbols {
  static Action Register(Arguments& command);
};
struct Standards {
  static Action Register(Arguments& command);
};
// For scripts.
struct Manual {
  static Action Register(Arguments& command);
};
struct Complete {
  static Action Register(Arguments& command);
};
