#pragma once

#include <optional>
#include <string_view>

#include "VyrAnnStandardXMLValue.h"

// The command language that builds and edits a standard. A command is one line of fields
// separated by ":"; every field is cut out of the line, nothing is copied.

/// "Path:Name[:Pos]".
struct NodeCommand {
  std::string_view path;
  std::string_view name;
  std::string_view position;

  static NodeCommand Parse(std::string_view command);
};

/// "Path:Name:Type:Value[:Pos]".
struct ValueCommand {
  std::string_view path;
  std::string_view name;
  std::string_view type;
  std::string_view value;
  std::string_view position;

  static ValueCommand Parse(std::string_view command);
};

/// What a type field says of a value.
struct ValueTypeField {
  VyrAnnStandardXMLValue::Type type = VyrAnnStandardXMLValue::ValueString;
  /// The enumeration's name, or the lower bound of a bounded float.
  std::string_view qualifier;
  int rangeVal = 0;
  /// False for a word that is no type; the value is then a string all the same.
  bool isKnown = true;

  static ValueTypeField Parse(std::string_view field);
};

/// The index, for the lists of a node, that a position field asks for: -1 to append for an empty
/// field and for numbers below 1, else the 1-based number less 1. Text after the number means
/// nothing (generated commands end in ":0,"). Nothing when the field does not begin with a number
/// of 32 bits.
std::optional<int> ParsePosition(std::string_view field);
