#include "VyrAnnStandardScript.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "EachChild.h"
#include "VyrAnnStandardXMLParser.h"

namespace {

using Verb = VyrAnnStandardScript::Verb;

constexpr std::string_view kBlanks = " \t";

constexpr std::array<std::pair<std::string_view, Verb>, 9> kVerbs = {{
    {"node", Verb::Node},
    {"instance", Verb::Instance},
    {"value", Verb::Value},
    {"field", Verb::Field},
    {"change", Verb::Change},
    {"delete", Verb::Delete},
    {"each", Verb::Each},
    {"each-node", Verb::EachNode},
    {"each-change", Verb::EachChange},
}};

constexpr std::array<std::string_view, 4> kParents = {"ISO", "JIS", "ANSI", "ASME"};

/// Calls `visit` with every word; stops and returns false when it does.
template <class Visit>
bool ForEachWord(std::string_view text, Visit visit) {
  for (;;) {
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    if (text.empty()) return true;
    const std::string_view word = text.substr(0, text.find_first_of(kBlanks));
    if (!visit(word)) return false;
    text.remove_prefix(word.size());
  }
}

/// Splits "Path Suffix" before the blank that stands in front of the suffix's "." or ":"; a path
/// may hold blanks itself.
bool SplitEach(std::string_view text, std::string_view& path, std::string_view& suffix) {
  for (std::size_t i = 1; i + 1 < text.size(); ++i) {
    const bool isBlank = kBlanks.find(text[i]) != std::string_view::npos;
    if (!isBlank || (text[i + 1] != '.' && text[i + 1] != ':')) continue;
    path = text.substr(0, text.find_last_not_of(kBlanks, i) + 1);
    suffix = text.substr(i + 1);
    return true;
  }
  return false;
}

int ResultOfEach(HRESULT result) {
  if (result == S_OK) return 0;
  return result == E_INVALIDARG ? 3 : 1;
}

}  // namespace

bool VyrAnnStandardScript::Command::AppliesTo(std::string_view parentStandard) const {
  if (parents.empty()) return true;
  const bool isNamed =
      !ForEachWord(parents, [&](std::string_view word) { return word != parentStandard; });
  return isNamed != isForOthers;
}

int VyrAnnStandardScript::Command::Run(VyrAnnStandardXMLParser& document) const {
  switch (verb) {
    case Verb::Node:
      return document.AddNodeWithPath(text, 0);
    case Verb::Instance:
      return document.AddNodeWithPath(text, 1);
    case Verb::Value:
      return document.AddValueWithPath(text, 1);
    case Verb::Field:
      return document.AddValueWithPath(text, -1);
    case Verb::Change:
      return document.ChangeValueWithPath(text);
    case Verb::Delete:
      return document.DeleteNodeWithPath(text);
    case Verb::Each:
      return ResultOfEach(AddValueToEachChild(document, path, text, 1));
    case Verb::EachNode:
      return ResultOfEach(AddNodeToEachChild(document, path, text, 0));
    case Verb::EachChange:
      return ResultOfEach(ChangeValueOfEachChild(document, path, text));
  }
  return 1;
}

VyrAnnStandardScript::VyrAnnStandardScript(VyrUnicodeView script) {
  std::string_view rest = script;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    std::string_view line = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    ++line_;
    if (!ReadLine(line)) return;
  }
}

bool VyrAnnStandardScript::Fail(std::string text) {
  commands_.clear();
  problem_ = {line_, std::move(text)};
  return false;
}

bool VyrAnnStandardScript::ReadLine(std::string_view line) {
  line.remove_prefix(std::min(line.find_first_not_of(kBlanks), line.size()));
  if (line.empty() || line.starts_with('#')) return true;
  return line.starts_with('[') ? ReadParents(line) : ReadCommand(line);
}

bool VyrAnnStandardScript::ReadParents(std::string_view line) {
  line = line.substr(0, line.find_last_not_of(kBlanks) + 1);
  if (!line.ends_with(']')) return Fail("'" + std::string(line) + "' does not end with ]");
  std::string_view parents = line.substr(1, line.size() - 2);
  if (parents == "any") {
    parents_ = {};
    return true;
  }
  constexpr std::string_view otherThan = "not ";
  isForOthers_ = parents.starts_with(otherThan);
  if (isForOthers_) parents.remove_prefix(otherThan.size());
  const bool areKnown = ForEachWord(parents, [](std::string_view word) {
    return std::find(kParents.begin(), kParents.end(), word) != kParents.end();
  });
  if (!areKnown || parents.find_first_not_of(kBlanks) == std::string_view::npos) {
    return Fail("[" + std::string(parents) + "] is not valid; expected is [any], or [...] or " +
                "[not ...] with parents among ISO, JIS, ANSI, ASME");
  }
  parents_ = parents;
  return true;
}

bool VyrAnnStandardScript::ReadCommand(std::string_view line) {
  const std::string_view word = line.substr(0, line.find_first_of(kBlanks));
  const auto* const verb = std::find_if(kVerbs.begin(), kVerbs.end(),
                                        [=](const auto& entry) { return entry.first == word; });
  if (verb == kVerbs.end()) {
    return Fail("'" + std::string(word) + "' is no verb; expected is one of node, instance, " +
                "value, field, change, delete, each, each-node, each-change");
  }
  std::string_view text = line.substr(word.size());
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  if (text.empty()) return Fail("'" + std::string(word) + "' has no command");
  Command command = {line_, verb->second, parents_, isForOthers_, {}, text};
  if (command.IsForEach() && !SplitEach(text, command.path, command.text)) {
    return Fail("'" + std::string(word) + "' needs a path, a blank, and what to do to each " +
                "child, beginning with \".\" or \":\"");
  }
  commands_.push_back(command);
  return true;
}
