#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "CommandPaths.h"
#include "VyrAnnStandardScript.h"
#include "VyrAnnStandardXMLParser.h"

/// Why a command cannot be done, and what would be right; empty when nothing speaks against it.
/// Objects also to what the command language lets pass and nobody means: a misspelt type that
/// makes a string, a node without a name, a change without effect. Not for the each-verbs.
std::string ObjectionTo(CommandPaths& paths, VyrAnnStandardScript::Verb verb,
                        std::string_view text);

/// True when the path of a `change` leads to something, whether or not that can be changed.
bool ChangesSomething(CommandPaths& paths, std::string_view text);

/// A literal that a command writes, and the enumeration that must have it.
struct WrittenLiteral {
  std::string enumeration;
  std::string literal;
  bool isNew;  ///< no value took its literals from that enumeration at this place before
};
/// What a command that nothing speaks against is about to write below "Root"; nothing when that is
/// no literal.
std::optional<WrittenLiteral> LiteralWritten(CommandPaths& paths, VyrAnnStandardScript::Verb verb,
                                             std::string_view text);
