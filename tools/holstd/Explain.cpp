#include <algorithm>
#include <memory>
#include <optional>
#include <span>
#include <utility>

#include "Arguments.h"
#include "Format.h"
#include "InputFile.h"
#include "ItemLines.h"
#include "PathSearch.h"
#include "ShippedStandard.h"
#include "Standard.h"
#include "StandardDifferences.h"
#include "StandardFiles.h"
#include "StandardItems.h"
#include "Subcommands.h"
#include "ValueMeaning.h"

namespace {

using Node = VyrAnnStandardXMLNode;
using Value = VyrAnnStandardXMLValue;

struct Options {
  std::string file;
  std::string path;
  bool json = false;
};

/// Of all that a path finds, and of the literals that a value may take, the first are told and the
/// others counted.
constexpr std::size_t kMostTold = 100;

/// What the shipped standard has at the place.
struct Default {
  StandardPlace place;
  bool differs = false;
};

/// All that answers are made of.
struct Sources {
  const Options& options;
  const StandardItems& items;
  const ShippedStandard& shipped;

  const Node& NodeAt(const StandardPlace& place) const { return *items[place.item].node; }
};

/// The definition of the enumeration that a value takes its literal from; null without one.
const Node* EnumerationOf(const Sources& from, const Value* value) {
  if (value == nullptr || value->GetType() != Value::ValueEnum) return nullptr;
  const StandardItems::Item& top = from.items[StandardItems::kEnum];
  return VyrAnnStandardXMLNode_var(top.node->GetNodeByName(value->GetValueName())).Get();
}

/// The first `most` of them.
std::vector<std::string> LiteralsOf(const Node& enumeration, std::size_t most) {
  std::vector<std::string> literals;
  for (const VyrAnnStandardXMLValue_var& literal : enumeration.GetValues()) {
    if (literals.size() < most) literals.emplace_back(literal->GetValue().View());
  }
  return literals;
}

/// Of the enumeration of a value, which any number of values may have, what is told of it.
struct ToldLiterals {
  std::vector<std::string> first;
  std::size_t more;

  explicit ToldLiterals(const Node& enumeration)
      : first(LiteralsOf(enumeration, kMostTold)),
        more(enumeration.GetValues().size() - first.size()) {}

  std::string Text() const {
    return Joined(first) + (more == 0 ? "" : ", and " + std::to_string(more) + " more");
  }
};

bool HasLiteral(const Node& enumeration, const Value& value) {
  for (const VyrAnnStandardXMLValue_var& literal : enumeration.GetValues()) {
    if (literal->GetValue() == value.GetValue()) return true;
  }
  return false;
}

bool Differs(const Sources& from, const StandardPlace& place, const StandardPlace& other) {
  if (!place.value) {
    return !FindDifferences(from.shipped.Items(), other.item, from.items, place.item).empty();
  }
  const Value& a = *from.items.ValueAt(place);
  const Value& b = *from.shipped.Items().ValueAt(other);
  // A literal is its text, whatever name it carries.
  return from.NodeAt(place).GetNodeType() == Node::NodeEnum ? !(a.GetValue() == b.GetValue())
                                                            : !IsSameValue(a, b);
}

std::optional<Default> DefaultOf(const Sources& from, const StandardPlace& place) {
  if (from.shipped.Name().empty()) return std::nullopt;
  const auto other = from.shipped.CounterpartOf(from.items, place);
  if (!other) return std::nullopt;
  return Default{*other, Differs(from, place, *other)};
}

std::string WhyNoDefault(const Sources& from) {
  return from.shipped.Name().empty() ? from.shipped.Problem()
                                     : from.shipped.Name() + " has nothing there";
}

class TextAnswer {
 public:
  explicit TextAnswer(const Sources& from) : from_(from) {}

  /// `line` is 0 when it is not known.
  std::string Text(const StandardPlace& place, int line) {
    text_ = Printable(from_.items.PathOf(place));
    const std::string entry = from_.items.EntryOf(place.item);
    text_ += (entry.empty() ? "" : " (" + Printable(entry) + ")") + "\n";
    const Value* value = from_.items.ValueAt(place);
    if (value != nullptr) {
      AddValueLines(*value);
    } else {
      AddNodeLines(from_.NodeAt(place));
    }
    AddDefault(place);
    if (line > 0) {
      const std::string file = from_.options.file == "-" ? "standard input" : from_.options.file;
      Add("stands in", Printable(file) + ":" + std::to_string(line));
    }
    return text_;
  }

 private:
  void Add(const char* label, const std::string& text) {
    constexpr std::size_t width = 13;
    const std::string_view word = label;
    text_ += "  " + std::string(word) + std::string(width - word.size(), ' ') + text + "\n";
  }

  void AddValueLines(const Value& value) {
    Json members = Json::object();
    AddValueTo(members, value);
    Add("type", members["type"].get<std::string>());
    Add("value", Printable(value.GetValue().View()));
    if (members.contains("minimum")) Add("at least", Printable(value.GetValueName().View()));
    if (value.GetType() != Value::ValueEnum) return;
    const std::string name = Printable(value.GetValueName().View());
    const Node* enumeration = EnumerationOf(from_, &value);
    if (enumeration == nullptr) return Add("enumeration", name + ", which is not defined");
    Add("enumeration", name + ": " + Printable(ToldLiterals(*enumeration).Text()) +
                           (HasLiteral(*enumeration, value) ? "" : "; the value is none of them"));
  }

  void AddNodeLines(const Node& node) {
    Add("type", KindWord(node.GetNodeType()));
    Add("holds",
        Counted(node.GetNumOfNode(), "node") + ", " + Counted(node.GetNumOfValue(), "value"));
    if (node.GetNodeType() == Node::NodeEnum) {
      return Add("literals", Printable(Joined(LiteralsOf(node, node.GetValues().size()))));
    }
    std::vector<std::string> values;
    for (const auto& value : node.GetValues()) values.push_back(NamedText(node, *value));
    if (!values.empty()) Add("values", Joined(values));
  }

  void AddDefault(const StandardPlace& place) {
    const auto found = DefaultOf(from_, place);
    if (!found) return Add("default", "none; " + WhyNoDefault(from_));
    const Value* value = from_.shipped.Items().ValueAt(found->place);
    const std::string in = "in " + from_.shipped.Name();
    Add("default", (value == nullptr ? in : ValueText(*value) + " " + in) +
                       (found->differs ? "; this one differs" : "; the same"));
  }

  const Sources& from_;
  std::string text_;
};

Json ValueJson(const Node& node, const Value& value) {
  Json object = Json::object();
  if (node.GetNodeType() != Node::NodeEnum) object["name"] = OwnName(value);
  AddValueTo(object, value);
  return object;
}

void AddContentTo(Json& object, const Sources& from, const StandardPlace& place) {
  const Value* value = from.items.ValueAt(place);
  const Node& node = from.NodeAt(place);
  object["kind"] = place.value ? "value" : KindWord(node.GetNodeType());
  if (value == nullptr) {
    object["nodes"] = node.GetNumOfNode();
    object["values"] = Json::array();
    for (const auto& each : node.GetValues()) object["values"].push_back(ValueJson(node, *each));
    return;
  }
  AddValueTo(object, *value);
  if (value->GetType() != Value::ValueEnum) return;
  const Node* enumeration = EnumerationOf(from, value);
  object["literals"] = Json();
  if (enumeration != nullptr) {
    const ToldLiterals literals(*enumeration);
    object["literals"] = literals.first;
    if (literals.more > 0) object["moreLiterals"] = literals.more;
  }
  object["defined"] = enumeration != nullptr && HasLiteral(*enumeration, *value);
}

Json AsJson(const Sources& from, const StandardPlace& place, int line) {
  Json object = {{"file", from.options.file}, {"path", from.items.PathOf(place)}};
  const std::string entry = from.items.EntryOf(place.item);
  if (!entry.empty()) object["entry"] = entry;
  AddContentTo(object, from, place);
  object["line"] = line > 0 ? Json(line) : Json();
  const auto found = DefaultOf(from, place);
  if (!found) {
    object["default"] = Json();
    object["noDefault"] = WhyNoDefault(from);
    return object;
  }
  Json& shipped = object["default"] = {{"standard", from.shipped.Name()}};
  if (const Value* value = from.shipped.Items().ValueAt(found->place)) AddValueTo(shipped, *value);
  shipped["differs"] = found->differs;
  return object;
}

/// What tells the lines of all places is in memory no longer than they are looked up.
std::vector<int> LinesOf(const InputFile& input, const StandardItems& items,
                         std::span<const StandardPlace> places) {
  const ItemLines lines(input, items);
  std::vector<int> found;
  for (const StandardPlace& place : places) found.push_back(lines.LineOf(place));
  return found;
}

ExitStatus PrintExplanations(const Options& options, Session& session) {
  const InputFile input(options.file);
  Standard standard = ReadStandard(input);
  const StandardItems items(standard.document);
  const std::vector<StandardPlace> places = FindPlaces(items, options.path);
  if (places.empty()) {
    throw Failure{kNegativeAnswer, options.file, 0, MissingPlace(items, options.path)};
  }
  const std::size_t told = std::min(places.size(), kMostTold);
  const std::vector<int> lines = LinesOf(input, items, {places.data(), told});
  const ShippedStandard shipped(standard.parent);
  const Sources from = {options, items, shipped};
  for (std::size_t i = 0; i < told; ++i) {
    if (options.json) {
      session.Print((i == 0 ? "[\n  " : ",\n  ") + JsonLine(AsJson(from, places[i], lines[i])));
    } else {
      session.Print((i == 0 ? "" : "\n") + TextAnswer(from).Text(places[i], lines[i]));
    }
  }
  const std::size_t more = places.size() - told;
  if (options.json) {
    session.Print((more == 0 ? "" : ",\n  " + JsonLine({{"more", more}})) + "\n]\n");
  } else if (more > 0) {
    session.Print("\nand " + Counted(static_cast<long>(more), "place") +
                  " more; a longer path finds fewer\n");
  }
  return kDone;
}

}  // namespace

Action Explain::Register(Arguments& command) {
  auto options = std::make_shared<Options>();
  command.AddFile(options->file);
  command
      .AddWord("PATH", options->path,
               "What to explain: names joined by dots, each at any depth below the last, or a "
               "path that begins with Root, Enum or TypeDef")
      .Required();
  command.AddJson(options->json);
  command.AddExamples(
      {"holstd explain site.xml Dimension.DIMLTail",
       "holstd explain site.xml 'Root.Frames.FrameDef[2].Type'",
       "holstd explain site.xml Enum.YesNo --json"},
      "The default is what the shipped standard of the same parent standard has at the "
      "same\npath, in the entry of the same Name where there are several. A value differs "
      "from it\nas 'holstd diff' compares: 1 and 1.0 are the same float.");
  return [options](Session& session) {
    options->file = FileOrStandard(options->file).file;
    return PrintExplanations(*options, session);
  };
}
