#pragma once

#include "PathCommand.h"
#include "VyrAnnStandardXMLNode.h"

// What the path commands do to the node that their path leads to.

/// What a command came to.
enum CommandResult : int { kDone = 0, kNotFound = 1, kBadPosition = 2 };

/// Adds the node of a command to its target.
CommandResult PutNode(VyrAnnStandardXMLNode& target, const NodeCommand& command,
                      VyrAnnStandardXMLNode::Type type);

/// The type that a command gives to its value; a word that is no type is reported.
ValueTypeField ParseValueType(const ValueCommand& command);

/// Adds the value of a command to its target, wrapped in a node where that is wanted and possible.
CommandResult PutValue(VyrAnnStandardXMLNode& target, const ValueCommand& command,
                       const ValueTypeField& type, bool mayWrap);

/// Changes the value that `path` leads to from a node: that of a node, or one that is found by its
/// text.
CommandResult ChangeBelow(const VyrAnnStandardXMLNode& holder, std::string_view path,
                          std::string_view text);
