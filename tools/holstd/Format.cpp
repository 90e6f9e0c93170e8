#include "Format.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <utility>

#include "ValueMeaning.h"
#include "VyrShownText.h"

namespace {

using Node = VyrAnnStandardXMLNode;
using Value = VyrAnnStandardXMLValue;

const char* TypeWord(Value::Type type) {
  switch (type) {
    case Value::ValueInt:
      return "int";
    case Value::ValueFloat:
      return "float";
    case Value::ValueString:
      return "string";
    case Value::ValueEnum:
      return "enum";
    case Value::ValueColor:
      return "color";
  }
  return "unknown";
}

/// The escapes of JSON, which a reader takes for the character itself.
std::string JsonEscape(char32_t code) {
  const auto unit = [](char32_t utf16) {
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "\\u%04x", static_cast<unsigned int>(utf16));
    return std::string(text.data());
  };
  if (code < 0x10000) return unit(code);
  return unit(0xD800 + ((code - 0x10000) >> 10)) + unit(0xDC00 + (code & 0x3FF));
}

/// JSON whose strings hold nothing that a terminal would obey. The control characters of ASCII in
/// it are its own line ends: in strings they are escapes already.
std::string WithJsonEscapes(std::string json) {
  std::string escaped;
  std::size_t done = 0;
  for (VyrUnshown unshown = VyrFindUnshown(json); unshown.at < json.size();
       unshown = VyrFindUnshown(json, unshown.at + unshown.size)) {
    if (unshown.code < ' ') continue;
    escaped.append(json, done, unshown.at - done).append(JsonEscape(unshown.code));
    done = unshown.at + unshown.size;
  }
  return done == 0 ? std::move(json) : escaped.append(json, done, std::string::npos);
}

/// True for a byte of UTF-8 that continues a character.
bool IsInsideCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

bool IsTextual(Value::Type type) {
  return type == Value::ValueString || type == Value::ValueEnum;
}

}  // namespace

std::string Printable(std::string_view text) {
  return VyrShownText(text, std::string_view::npos);
}

std::string Quoted(std::string_view text) {
  return VyrQuoted(text);
}

std::string ShownPath(std::string path, bool isWhole) {
  std::size_t begin = path.size() > kMostOfPath ? path.size() - kMostOfPath : 0;
  if (begin == 0 && isWhole) return path;
  // A name that is begun is left out, unless it is the last one.
  const std::size_t dot = begin == 0 ? path.npos : path.find('.', begin);
  if (dot != path.npos && dot + 1 < path.size()) begin = dot + 1;
  while (begin < path.size() && IsInsideCharacter(path[begin])) ++begin;
  return "..." + path.substr(begin);
}

std::string ShownName(std::string_view name) {
  constexpr std::size_t most = 100;
  if (name.size() <= most) return std::string(name);
  std::size_t end = most;
  while (end > 0 && IsInsideCharacter(name[end])) --end;
  return std::string(name.substr(0, end)) + "...";
}

std::string Joined(const std::vector<std::string>& words) {
  std::string joined;
  for (const std::string& word : words) joined += (joined.empty() ? "" : ", ") + word;
  return joined;
}

std::string Counted(long count, std::string_view noun) {
  return std::to_string(count) + " " + std::string(noun) + (count == 1 ? "" : "s");
}

std::string NumberText(double number) {
  std::array<char, 32> text{};
  return {text.data(), std::to_chars(text.data(), text.data() + text.size(), number).ptr};
}

std::string JsonLine(const Json& json) {
  return WithJsonEscapes(json.dump(-1, ' ', false, Json::error_handler_t::replace));
}

std::string JsonText(const Json& json) {
  return WithJsonEscapes(json.dump(2, ' ', false, Json::error_handler_t::replace)) + "\n";
}

const char* KindWord(Node::Type type) {
  switch (type) {
    case Node::NodeTop:
      return "top";
    case Node::NodePlain:
      return "node";
    case Node::NodeTypeDef:
      return "typedef";
    case Node::NodeEnum:
      return "enum";
    case Node::NodeInstance:
      return "instance";
  }
  return "unknown";
}

const Value* WrappedValue(const Node& node) {
  const bool isWrapper = node.GetNodeType() == Node::NodePlain && node.GetNodes().empty() &&
                         node.GetValues().size() == 1;
  return isWrapper ? node.GetValues().front().Get() : nullptr;
}

std::string ValueText(const Value& value) {
  std::string text = TypeWord(value.GetType());
  if (value.GetType() == Value::ValueEnum) text += "." + Printable(value.GetValueName().View());
  const std::string content = Printable(value.GetValue().View());
  text += IsTextual(value.GetType()) ? " \"" + content + "\"" : " " + content;
  if (value.GetRangeVal() == 1) text += ", at least " + Printable(value.GetValueName().View());
  return text;
}

std::string NamedText(const Node& node, const Value& value) {
  const std::string_view name =
      node.GetNodeType() == Node::NodeEnum ? std::string_view() : OwnName(value);
  return (name.empty() ? "" : Printable(name) + " ") + ValueText(value);
}

void AddValueTo(Json& object, const Value& value) {
  object["type"] = TypeWord(value.GetType());
  if (value.GetType() == Value::ValueEnum) object["enumeration"] = value.GetValueName().View();
  object["value"] = value.GetValue().View();
  if (value.GetRangeVal() == 1) object["minimum"] = value.GetValueName().View();
}
