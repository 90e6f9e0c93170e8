#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "VyrAnnStandardXMLNode.h"
#include "VyrAnnStandardXMLValue.h"

// How the tool writes what a standard holds.

using Json = nlohmann::ordered_json;

/// `text` on one line and without anything that a terminal would obey, see VyrShownText.h.
std::string Printable(std::string_view text);
/// `text` between single quotes, as messages name things; of a long one its beginning and its end.
std::string Quoted(std::string_view text);
/// What is shown of a path, in bytes.
inline constexpr std::size_t kMostOfPath = 500;
/// A path that is short enough to be shown: of a longer one the inner end behind "...", since what
/// a line is about stands there, and a standard may be as deep as its file is long. `isWhole` tells
/// that nothing has been left out of `path`.
std::string ShownPath(std::string path, bool isWhole = true);
/// A name that goes with a path: of a long one its beginning.
std::string ShownName(std::string_view name);
/// "a, b, c"
std::string Joined(const std::vector<std::string>& words);
/// "1 node", "2 nodes"
std::string Counted(long count, std::string_view noun);
/// A number in its shortest form that reads as the same one.
std::string NumberText(double number);

/// JSON text, all in one line or indented. What is not UTF-8 in a string becomes U+FFFD; what is
/// not shown as it is becomes an escape, and so stays what it was for the reader.
std::string JsonLine(const Json& json);
std::string JsonText(const Json& json);

/// "node", "instance", "typedef", "enum"; "top" for the three trees of a document.
const char* KindWord(VyrAnnStandardXMLNode::Type type);

/// The only value of a node that carries its parameter's name; null for any other node.
const VyrAnnStandardXMLValue* WrappedValue(const VyrAnnStandardXMLNode& node);

/// Type, text and qualifier of a value, as a line of a tree has them.
std::string ValueText(const VyrAnnStandardXMLValue& value);

/// The same of a value that a node holds directly, with the name that it has there.
std::string NamedText(const VyrAnnStandardXMLNode& node, const VyrAnnStandardXMLValue& value);

/// A value as the members "type", for a literal "enumeration", "value" and, for a bounded float,
/// "minimum".
void AddValueTo(Json& object, const VyrAnnStandardXMLValue& value);
