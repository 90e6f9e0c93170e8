#include <algorithm>
#include <array>
#include <memory>
#include <utility>

#include "Arguments.h"
#include "BranchLines.h"
#include "Format.h"
#include "Standard.h"
#include "StandardDifferences.h"
#include "StandardFiles.h"
#include "Subcommands.h"
#include "ValueMeaning.h"

namespace {

using Difference = StandardDifference;
using Kind = StandardDifference::Kind;
using Value = VyrAnnStandardXMLValue;

struct Options {
  std::string before;
  std::string after;
  bool json = false;
};

/// One of the two standards.
struct Side {
  std::string argument;  ///< as the user wrote it
  StandardFile source;
  Standard standard;
  StandardItems items;

  explicit Side(const std::string& written)
      : argument(written),
        source(FileOrStandard(written)),
        standard(ReadStandard(source.file)),
        items(standard.document) {}

  /// With the file that a name has led to.
  std::string Title() const {
    return Printable(argument) + (source.isNamed ? " (" + Printable(source.file) + ")" : "");
  }
  /// From 1, where it stands among its parent's nodes or values.
  std::size_t Position(const StandardPlace& place) const {
    const StandardItems::Item& item = items[place.item];
    return 1 + (place.value ? *place.value : place.item - items[item.parent].firstChild);
  }
};

struct KindName {
  const char* word;
  char sign;
};

constexpr std::array<Kind, 4> kKinds = {Kind::Added, Kind::Removed, Kind::Changed, Kind::Moved};

KindName NameOf(Kind kind) {
  switch (kind) {
    case Kind::Added:
      return {"added", '+'};
    case Kind::Removed:
      return {"removed", '-'};
    case Kind::Changed:
      return {"changed", '~'};
    case Kind::Moved:
      return {"moved", '>'};
  }
  return {"", ' '};
}

/// The text of a value without its type.
std::string BareText(const Value& value) {
  const std::string text = Printable(value.GetValue().View());
  const bool isTextual =
      value.GetType() == Value::ValueString || value.GetType() == Value::ValueEnum;
  return isTextual ? "\"" + text + "\"" : text;
}

class Printer {
 public:
  Printer(Session& session, const Side& before, const Side& after,
          const std::vector<Difference>& differences)
      : session_(session), before_(before), after_(after), differences_(differences) {}

  void PrintText() {
    std::string summary = before_.Title() + " -> " + after_.Title() + ": ";
    for (const Kind kind : kKinds) {
      if (kind != kKinds.front()) summary += ", ";
      summary += std::to_string(Count(kind)) + " " + NameOf(kind).word;
    }
    session_.Print(summary + "\n");
    for (const Difference& difference : differences_) session_.Print(LineOf(difference) + "\n");
  }

  void PrintJson() {
    Json summary = Json::object();
    for (const Kind kind : kKinds) summary[NameOf(kind).word] = Count(kind);
    session_.Print("{\n  \"before\": " + JsonLine(before_.argument) +
                   ",\n  \"after\": " + JsonLine(after_.argument) +
                   FileMember("beforeFile", before_) + FileMember("afterFile", after_) +
                   ",\n  \"summary\": " + JsonLine(summary) + ",\n  \"differences\": [");
    bool isFirst = true;
    for (const Difference& difference : differences_) {
      session_.Print(std::exchange(isFirst, false) ? "\n    " : ",\n    ");
      PrintJson(difference);
    }
    session_.Print(isFirst ? "]\n}\n" : "\n  ]\n}\n");
  }

 private:
  /// The file that a name has led to, as a member of the report.
  static std::string FileMember(const std::string& name, const Side& side) {
    if (!side.source.isNamed) return {};
    return ",\n  \"" + name + "\": " + JsonLine(side.source.file);
  }

  long Count(Kind kind) const {
    return std::count_if(differences_.begin(), differences_.end(),
                         [=](const Difference& difference) { return difference.kind == kind; });
  }

  /// The side that tells of a difference, and the place there.
  const Side& Teller(const Difference& difference) const {
    return difference.before.IsNone() ? after_ : before_;
  }
  static const StandardPlace& PlaceOf(const Difference& difference) {
    return difference.before.IsNone() ? difference.after : difference.before;
  }

  std::string LineOf(const Difference& difference) const {
    const Side& side = Teller(difference);
    const StandardPlace& place = PlaceOf(difference);
    std::string path = Printable(side.items.PathOf(place));
    const std::string entry = side.items.EntryOf(place.item);
    if (!entry.empty()) path += " (" + Printable(entry) + ")";
    const std::string line = std::string("  ") + NameOf(difference.kind).sign + " " + path;
    switch (difference.kind) {
      case Kind::Added:
        return session_.Painted(Session::Paint::Good, line) + "  " + Content(side, place);
      case Kind::Removed:
        return session_.Painted(Session::Paint::Bad, line) + "  " + Content(side, place);
      case Kind::Changed:
        return line + "  " + Change(difference);
      case Kind::Moved:
        break;
    }
    return line + "  from place " + std::to_string(before_.Position(difference.before)) + " to " +
           std::to_string(after_.Position(difference.after));
  }

  static std::string Content(const Side& side, const StandardPlace& place) {
    if (const Value* value = side.items.ValueAt(place)) return ValueText(*value);
    const StandardItems::Item& item = side.items[place.item];
    return std::string(KindWord(item.node->GetNodeType())) + ", " +
           Counted(item.values, "parameter");
  }

  /// True when what differs is, or is also, the name of the value. That of a literal is its type.
  bool IsRelabelled(const Difference& difference) const {
    const Value& a = *before_.items.ValueAt(difference.before);
    const Value& b = *after_.items.ValueAt(difference.after);
    const auto nodeType = before_.items[difference.before.item].node->GetNodeType();
    return nodeType != VyrAnnStandardXMLNode::NodeEnum && a.GetType() != Value::ValueEnum &&
           b.GetType() != Value::ValueEnum && OwnName(a) != OwnName(b);
  }

  std::string Change(const Difference& difference) const {
    const Value& a = *before_.items.ValueAt(difference.before);
    const Value& b = *after_.items.ValueAt(difference.after);
    if (IsRelabelled(difference)) {
      return NamedText(*before_.items[difference.before.item].node, a) + " -> " +
             NamedText(*after_.items[difference.after.item].node, b);
    }
    return IsSameType(a, b) ? BareText(a) + " -> " + BareText(b)
                            : ValueText(a) + " -> " + ValueText(b);
  }

  void PrintJson(const Difference& difference) {
    const Side& side = Teller(difference);
    const StandardPlace& place = PlaceOf(difference);
    Json object = {{"difference", NameOf(difference.kind).word},
                   {"path", side.items.PathOf(place)}};
    AddEntry(object, "entry", side, place);
    if (!difference.before.IsNone() && !difference.after.IsNone()) {
      AddNewNames(object, difference);
      AddBoth(object, difference);
      return session_.Print(JsonLine(object));
    }
    const VyrAnnStandardXMLNode& node = *side.items[place.item].node;
    object["kind"] = place.value ? "value" : KindWord(node.GetNodeType());
    object["parameters"] = place.value ? 1 : side.items[place.item].values;
    if (const Value* value = side.items.ValueAt(place)) {
      AddValueTo(object, *value);
      return session_.Print(JsonLine(object));
    }
    PrintWithContent(object, node);
  }

  static void AddEntry(Json& object, const char* member, const Side& side,
                       const StandardPlace& place) {
    const std::string entry = side.items.EntryOf(place.item);
    if (!entry.empty()) object[member] = entry;
  }

  /// Where the other standard calls it differently.
  void AddNewNames(Json& object, const Difference& difference) const {
    const std::string path = after_.items.PathOf(difference.after);
    if (object["path"] != path) object["newPath"] = path;
    const std::string entry = after_.items.EntryOf(difference.after.item);
    if (object.value("entry", "") != entry) object["newEntry"] = entry;
  }

  void AddBoth(Json& object, const Difference& difference) const {
    if (difference.kind == Kind::Moved) {
      object["place"] = before_.Position(difference.before);
      object["newPlace"] = after_.Position(difference.after);
      return;
    }
    if (IsRelabelled(difference)) {
      object["old"]["name"] = OwnName(*before_.items.ValueAt(difference.before));
      object["new"]["name"] = OwnName(*after_.items.ValueAt(difference.after));
    }
    AddValueTo(object["old"], *before_.items.ValueAt(difference.before));
    AddValueTo(object["new"], *after_.items.ValueAt(difference.after));
  }

  /// Written as it is walked: a branch may be as large as a standard.
  void PrintWithContent(const Json& object, const VyrAnnStandardXMLNode& node) {
    std::string head = JsonLine(object);
    head.pop_back();
    session_.Print(head + ",\"content\":[");
    bool isFirst = true;
    ForEachLine(node, [&](const BranchLine& line) {
      session_.Print((std::exchange(isFirst, false) ? "" : ",") + JsonLine(AsJson(line)));
    });
    session_.Print("]}");
  }

  Session& session_;
  const Side& before_;
  const Side& after_;
  const std::vector<Difference>& differences_;
};

ExitStatus PrintDifferences(const Options& options, Session& session) {
  if (options.before == "-" && options.after == "-") {
    throw Failure{kUsage, "", 0, "standard input can be read once only; give '-' once"};
  }
  const Side before(options.before);
  const Side after(options.after);
  for (const Side* side : {&before, &after}) {
    if (side->source.hidden.empty()) continue;
    session.Warn(side->argument, "is " + side->source.file +
                                     ", which hides the shipped standard of that name; to mean "
                                     "that one, give " +
                                     side->source.hidden);
  }
  const std::vector<Difference> differences = FindDifferences(before.items, after.items);
  Printer printer(session, before, after, differences);
  options.json ? printer.PrintJson() : printer.PrintText();
  return differences.empty() ? kDone : kNegativeAnswer;
}

void AddSide(Arguments& command, const char* name, std::string& argument) {
  command
      .AddWord(name, argument,
               "XML standard, - for standard input, or the name of a standard, as 'holstd "
               "standards' lists it")
      .Required()
      .TakesPath();
}

}  // namespace

Action Diff::Register(Arguments& command) {
  auto options = std::make_shared<Options>();
  AddSide(command, "A", options->before);
  AddSide(command, "B", options->after);
  command.AddJson(options->json);
  command.AddExamples(
      {"holstd diff ISO site.xml", "holstd diff --json old.xml new.xml",
       "ssh office cat site.xml | holstd diff ISO -"},
      "Status 0: nothing differs; 1: something does.\n"
      "Values are compared by what they mean: 1, 1.0 and 1e0 are the same float, 7 and 07 the\n"
      "same int, and a float is not an int. Texts and literals are compared letter by letter. The\n"
      "order of parameters means nothing; that of the entries of a list, of the values of an "
      "entry\n"
      "and of literals does, and the fewest that explain the new order are told as moved. An "
      "entry\n"
      "is known by its parameter Name, without one by its place; one whose Name alone differs, at\n"
      "the same place, is the same entry. Of equal names the second and later ones are counted:\n"
      "Root.Frames.FrameDef[2]. Paths are those of A, of what was added those of B.");
  return [options](Session& session) { return PrintDifferences(*options, session); };
}
