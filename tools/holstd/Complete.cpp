#include <algorithm>
#include <functional>
#include <memory>
#include <string_view>

#include "CommandDescriptions.h"
#include "OpenStandard.h"
#include "PathSearch.h"
#include "ShellLine.h"
#include "Standard.h"
#include "StandardFiles.h"
#include "StandardItems.h"
#include "Subcommands.h"
#include "VyrAnnStdEngineeringSymbolsServices.h"
#include "VyrListValVyrUnicodeString.h"
#include "VyrShownText.h"
#include "VyrTrace.h"

// What a shell offers for the word that is being written: the scripts of bash and zsh hand over the
// line, so that they know nothing of commands and options themselves.

namespace {

using Command = CommandDescription;
using ArgumentDescriptions = std::vector<ArgumentDescription>;

struct Options {
  std::string line;
};

// Lines that ask the shell for names which it knows better; no word looks like them.
constexpr const char* kFiles = "\tfiles";
constexpr const char* kFolders = "\tfolders";

/// The line up to the word that is being written.
struct Line {
  const Command* tool = nullptr;
  const Command* command = nullptr;  ///< null while none is named
  std::vector<std::string> words;    ///< of the command, without its options
  std::string before;                ///< the word before the one being written
  std::string current;
};

class Offers {
 public:
  explicit Offers(const std::string& current) : current_(current) {}

  void Add(const std::string& word) {
    if (word.starts_with(current_)) lines_.push_back(word);
  }
  void Ask(const char* kind) { lines_.emplace_back(kind); }

  /// A line each. The shell puts what is chosen on its line, where nobody could write what is not
  /// shown as it is: such words are not offered.
  void Print(Session& session) const {
    for (const std::string& line : lines_) {
      const std::size_t from = line == kFiles || line == kFolders ? 1 : 0;
      if (VyrFindUnshown(line, from).at == std::string::npos) session.Print(line + "\n");
    }
  }

 private:
  std::string current_;
  std::vector<std::string> lines_;
};

/// The option of that name, among those of the command and of all commands; null when it is none.
const ArgumentDescription* FindOption(const Line& line, const std::string& name) {
  for (const Command* command : {line.command, line.tool}) {
    if (command == nullptr) continue;
    for (const ArgumentDescription& option : command->options) {
      if (std::find(option.names.begin(), option.names.end(), name) != option.names.end()) {
        return &option;
      }
    }
  }
  return nullptr;
}

bool TakesValue(const Line& line, const std::string& word) {
  const ArgumentDescription* option = FindOption(line, word);
  return option != nullptr && !option->value.empty();
}

/// Takes the word being written as the value that "=" joins to an option, if it is one.
void CutAtEquals(Line& line) {
  const std::size_t equals = line.current.find('=');
  if (!line.current.starts_with("--") || equals == std::string::npos) return;
  const std::string option = line.current.substr(0, equals);
  if (!TakesValue(line, option)) return;
  line.before = option;
  line.current.erase(0, equals + 1);
}

/// Reads the words of a shell's line; the first is the tool.
Line ReadLine(const std::vector<Command>& commands, std::vector<std::string> words) {
  Line line;
  line.tool = &commands.front();
  if (words.size() < 2) return line;
  line.current = words.back();
  words.pop_back();
  if (words.size() > 1) line.before = words.back();
  for (std::size_t i = 1; i < words.size(); ++i) {
    const std::string& word = words[i];
    if (word.size() > 1 && word.starts_with('-')) {
      if (TakesValue(line, word)) ++i;
    } else if (line.command != nullptr) {
      line.words.push_back(word);
    } else {
      const auto named = std::find_if(commands.begin() + 1, commands.end(),
                                      [&](const Command& command) { return command.name == word; });
      if (named != commands.end()) line.command = &*named;
    }
  }
  CutAtEquals(line);
  return line;
}

/// Names below what `path` leads to, each with the path before it; with a dot behind those that
/// have something below themselves.
void OfferChildren(const StandardItems& items, const std::string& path, Offers& offers) {
  const bool isWhole = IsCommandPath(path);
  const std::string top = isWhole ? "" : StandardItems::kTopNames[StandardItems::kRoot];
  const auto found = FindPlace(items, top + (isWhole || path.empty() ? "" : ".") + path);
  if (!found || found->value) return;
  const VyrAnnStandardXMLNode& node = *items[found->item].node;
  const std::string begin = path.empty() ? "" : path + ".";
  for (const VyrAnnStandardXMLNode_var& child : node.GetNodes()) {
    std::string name = begin + std::string(child->GetNodeName().View());
    if (child->GetNumOfNode() > 0) name += ".";
    offers.Add(name);
  }
  for (const VyrAnnStandardXMLValue_var& value : node.GetValues()) {
    const std::string_view called = value->GetValueName().View();
    if (!called.empty() && node.GetNodeType() != VyrAnnStandardXMLNode::NodePlain) {
      offers.Add(begin + std::string(called));
    }
  }
}

/// Node paths of the file that the line names. A file that cannot be read offers nothing.
void OfferPaths(const Line& line, Offers& offers) {
  if (line.words.empty() || line.words.front() == "-") return;
  Standard standard;
  try {
    standard = ReadStandard(line.words.front());
  } catch (const Failure&) {
    return;
  }
  const std::size_t dot = line.current.rfind('.');
  const std::string path = dot == std::string::npos ? "" : line.current.substr(0, dot);
  OfferChildren(StandardItems(standard.document), path, offers);
  if (!path.empty() || line.command->name == "get") return;
  for (const char* tree : StandardItems::kTopNames) offers.Add(std::string(tree) + ".");
}

void OfferStandards(Offers& offers) {
  for (const std::string& file : FindStandardFiles()) offers.Add(StandardName(file));
}

/// Symbols without their brackets, which a shell takes for something else.
void OfferSymbols(Offers& offers) {
  VyrListValVyrUnicodeString tags;
  VyrAnnStdEngineeringSymbolsServices::ListTags(tags);
  for (const VyrUnicodeString& tag : tags) {
    std::string_view name = tag.View();
    if (name.starts_with('<')) name.remove_prefix(1);
    if (name.ends_with('>')) name.remove_suffix(1);
    offers.Add(std::string(name));
  }
}

/// Object types that have styles in the file that the line names.
void OfferTypes(const Line& line, Offers& offers) {
  if (line.words.empty()) return;
  try {
    Standard standard = ReadStandard(line.words.front());
    const StandardItems items(standard.document);
    const auto styles = FindPlace(items, "Root.Styles");
    if (!styles || styles->value) return;
    for (const VyrAnnStandardXMLNode_var& type : items[styles->item].node->GetNodes()) {
      offers.Add(std::string(type->GetNodeName().View()));
    }
  } catch (const Failure&) {
    // A file that cannot be read offers nothing.
  }
}

void OfferFor(const std::string& value, const Line& line, Offers& offers) {
  struct Kind {
    std::string_view value;
    std::function<void()> offer;
  };
  const Kind kinds[] = {
      {"PATH", [&] { OfferPaths(line, offers); }},
      {"TAG", [&] { OfferSymbols(offers); }},
      {"TYPE", [&] { OfferTypes(line, offers); }},
      {"A", [&] { OfferStandards(offers), offers.Ask(kFiles); }},
      {"B", [&] { OfferStandards(offers), offers.Ask(kFiles); }},
      {"FOLDER", [&] { offers.Ask(kFolders); }},
      {"NAME", [&] { VyrTrace::ForEach([&](VyrTrace& trace) { offers.Add(trace.GetName()); }); }},
      {"N", [] {}},
      {"VERSION", [] {}},
      {"\"VERB COMMAND\"", [] {}},
  };
  const std::string name = value.substr(0, value.find(':'));  // less what the help adds
  for (const Kind& kind : kinds) {
    if (name == kind.value) return kind.offer();
  }
  // A choice of words is written as "WHEN:{auto,always,never}".
  const std::size_t open = value.find('{');
  if (open == std::string::npos) return offers.Ask(kFiles);
  std::string_view words = std::string_view(value).substr(open + 1);
  words = words.substr(0, words.find('}'));
  for (bool isLast = false; !isLast;) {
    const std::size_t comma = words.find(',');
    isLast = comma == std::string_view::npos;
    offers.Add(std::string(words.substr(0, comma)));
    if (!isLast) words.remove_prefix(comma + 1);
  }
}

void OfferOptions(const Line& line, Offers& offers) {
  for (const Command* command : {line.command, line.tool}) {
    if (command == nullptr) continue;
    for (const ArgumentDescription& option : command->options) {
      for (const std::string& name : option.names) offers.Add(name);
    }
  }
}

/// The word at a place of its own that is being written, if the command has one more.
const ArgumentDescription* WordAtPlace(const Line& line) {
  const ArgumentDescriptions& words = line.command->words;
  if (line.words.size() < words.size()) return &words[line.words.size()];
  const auto isRepeated = [](const ArgumentDescription& word) { return word.isRepeated; };
  return std::any_of(words.begin(), words.end(), isRepeated) ? &words.back() : nullptr;
}

void Offer(const Line& line, const std::vector<Command>& commands, Offers& offers) {
  if (TakesValue(line, line.before)) {
    OfferFor(FindOption(line, line.before)->value, line, offers);
  } else if (line.current.starts_with('-')) {
    OfferOptions(line, offers);
  } else if (line.command == nullptr) {
    for (std::size_t i = 1; i < commands.size(); ++i) offers.Add(commands[i].name);
  } else if (const ArgumentDescription* word = WordAtPlace(line)) {
    // A name leads to a standard wherever one is read.
    if (word->value == "FILE" && line.command->name != "restore") OfferStandards(offers);
    OfferFor(word->value, line, offers);
  }
}

}  // namespace

Action Complete::Register(Arguments& command) {
  auto options = std::make_shared<Options>();
  command.AddWord("LINE", options->line,
                  "The line as it is written in the shell, up to where it is to go on");
  command.AddExamples({"holstd complete 'holstd get ISO.xml Dimension.DIML'"});
  command.Hide();
  return [options, describe = command.WholeTool()](Session& session) {
    const std::vector<Command> commands = describe();
    const Line line = ReadLine(commands, WordsOfShellLine(options->line));
    Offers offers(line.current);
    Offer(line, commands, offers);
    offers.Print(session);
    return kDone;
  };
}
