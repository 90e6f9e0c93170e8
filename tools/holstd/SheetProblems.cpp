#include "SheetProblems.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <span>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "Format.h"
#include "PathSearch.h"

namespace {

using Node = VyrAnnStandardXMLNode;
using Words = std::span<const std::string_view>;

constexpr std::array<std::string_view, 4> kOrientations = {
    "LandscapeByDefault", "PortraitByDefault", "PortraitOnly", "LandscapeOnly"};
constexpr std::array<std::string_view, 2> kSheetOrientations = {"Portrait", "Landscape"};
constexpr std::array<std::string_view, 2> kYesNo = {"Yes", "No"};
constexpr std::array<std::string_view, 2> kProjections = {"First angle", "Third angle"};
constexpr std::array<std::string_view, 2> kPositionings = {"FixedCG", "FixedAxis"};

struct WordField {
  const char* name;
  Words words;
};
constexpr WordField kProjection = {"ProjectionMethod", kProjections};
constexpr WordField kPositioning = {"GenViewsPosMode", kPositionings};
constexpr WordField kOrientation = {"Orientation", kSheetOrientations};
constexpr WordField kDisplay = {"DisplayFormat", kYesNo};

bool IsOneOf(Words words, std::string_view text) {
  return std::find(words.begin(), words.end(), text) != words.end();
}

std::string Choice(Words words) {
  std::string choice;
  for (const std::string_view word : words) {
    choice += choice.empty() ? "" : word == words.back() ? " or " : ", ";
    choice += Quoted(word);
  }
  return choice;
}

/// Not so "nan" and "inf", which no drawing can use.
bool BeginsWithNumber(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
  if (text.starts_with('+')) text.remove_prefix(1);
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && std::isfinite(number);
}

/// The node's own first value, or that of a field wrapped in a child.
std::optional<std::string> FirstValue(const Node& node) {
  if (node.GetValues().empty()) return std::nullopt;
  return std::string(node.GetValues().front()->GetValue().View());
}
std::optional<std::string> FieldText(const Node& style, const char* name) {
  const VyrAnnStandardXMLNode_var field(style.GetNodeByName(name));
  return field ? FirstValue(*field) : std::nullopt;
}

// Formats.

struct FormatField {
  const char* name;
  VyrAnnStandardXMLValue::Type type;
  const char* typeWord;
};
constexpr std::array<FormatField, 4> kFormatFields = {{
    {"Name", VyrAnnStandardXMLValue::ValueString, "string"},
    {"Width", VyrAnnStandardXMLValue::ValueFloat, "float"},
    {"Height", VyrAnnStandardXMLValue::ValueFloat, "float"},
    {"FormatOrientationType", VyrAnnStandardXMLValue::ValueEnum, "enum"},
}};

/// What is wrong with one field of a format; empty: nothing.
std::string FieldProblem(const FormatField& field, const VyrAnnStandardXMLValue& value) {
  const std::string_view text = value.GetValue().View();
  if (value.GetValueName().View() != field.name) {
    return "has a value " + Quoted(value.GetValueName().View()) + " where its " + field.name +
           " would be";
  }
  if (value.GetType() != field.type) {
    return std::string("has a ") + field.name + " that is no " + field.typeWord +
           "; it would be one";
  }
  if (field.type == VyrAnnStandardXMLValue::ValueFloat && !BeginsWithNumber(text)) {
    return std::string("has the ") + field.name + " " + Quoted(text) + "; it would be a number";
  }
  if (field.type == VyrAnnStandardXMLValue::ValueEnum && !IsOneOf(kOrientations, text)) {
    return std::string("has the ") + field.name + " " + Quoted(text) + "; it would be " +
           Choice(kOrientations);
  }
  return {};
}

std::vector<std::string> ProblemsOfFormat(const Node& format) {
  if (format.GetValues().size() != kFormatFields.size()) {
    return {"has " + Counted(format.GetNumOfValue(), "value") +
            "; it would have 4: Name, Width, Height, FormatOrientationType"};
  }
  std::vector<std::string> problems;
  for (std::size_t i = 0; i < kFormatFields.size(); ++i) {
    std::string problem = FieldProblem(kFormatFields[i], *format.GetValues()[i]);
    if (!problem.empty()) problems.push_back(std::move(problem));
  }
  return problems;
}

/// The sheet formats by their first value, which is how styles name them: of equal ones the first.
class KnownFormats {
 public:
  /// `holder` may be null.
  explicit KnownFormats(const Node* holder) {
    std::vector<std::string> names;
    for (std::size_t i = 0; holder != nullptr && i < holder->GetNodes().size(); ++i) {
      const Node& format = *holder->GetNodes()[i];
      if (format.GetValues().empty()) continue;
      const std::string_view name = format.GetValues().front()->GetValue().View();
      formats_.emplace(name, &format);
      if (++count_ <= kMostNamed) names.push_back(Quoted(name));
    }
    list_ = names.empty() ? "there are none" : "there are " + Joined(names);
    if (count_ > kMostNamed) list_ += " and " + std::to_string(count_ - kMostNamed) + " more";
  }

  /// Null when there is none of that name.
  const Node* Find(std::string_view name) const {
    const auto found = formats_.find(name);
    return found == formats_.end() ? nullptr : found->second;
  }
  /// What there is, as a message says it.
  const std::string& List() const { return list_; }

 private:
  static constexpr std::size_t kMostNamed = 12;

  std::unordered_map<std::string_view, const Node*> formats_;
  std::size_t count_ = 0;
  std::string list_;
};

// Styles.

/// Collects what is wrong with one sheet style.
class StyleCheck {
 public:
  StyleCheck(const Node& style, const KnownFormats& formats) : style_(style), formats_(formats) {}

  std::vector<std::string> Run() {
    CheckScale();
    CheckWord(kProjection, true);
    // A style says either nothing or all of the format and how it lies and shows.
    const bool isComplete = Has("Format") || Has(kOrientation.name) || Has(kDisplay.name);
    CheckWord(kPositioning, isComplete);
    CheckWord(kOrientation, isComplete);
    CheckWord(kDisplay, isComplete);
    if (isComplete) CheckFormat();
    return problems_;
  }

 private:
  bool Has(const char* name) const { return FieldText(style_, name).has_value(); }

  void Add(std::string problem) { problems_.push_back(std::move(problem)); }

  void CheckScale() {
    const auto text = FieldText(style_, "GlobalScale");
    if (!text) return Add("has no GlobalScale; it would have one, a number");
    if (!BeginsWithNumber(*text)) {
      Add("has the GlobalScale " + Quoted(*text) + "; it would be a number");
    }
  }

  void CheckWord(const WordField& field, bool isNeeded) {
    const auto text = FieldText(style_, field.name);
    if (!text && isNeeded) {
      Add(std::string("has no ") + field.name + "; it would be " + Choice(field.words));
    }
    if (text && !IsOneOf(field.words, *text)) {
      Add(std::string("has the ") + field.name + " " + Quoted(*text) + "; it would be " +
          Choice(field.words));
    }
  }

  void CheckFormat() {
    const auto name = FieldText(style_, "Format");
    if (!name) return Add("has no Format; it would name one of the sheet formats");
    const Node* format = formats_.Find(*name);
    if (format == nullptr) {
      return Add("has the Format " + Quoted(*name) + ", which is none of the sheet formats; " +
                 formats_.List());
    }
    if (!ProblemsOfFormat(*format).empty()) {
      Add("has the Format " + Quoted(*name) + ", a sheet format that is not valid itself");
    }
  }

  const Node& style_;
  const KnownFormats& formats_;
  std::vector<std::string> problems_;
};

/// Problems of every child of a node, each under the name that `title` gives the child.
template <class Title, class Check>
FileProblems ProblemsOfChildren(const StandardItems& items, const ItemLines& lines,
                                StandardItems::Index parent, Title title, Check check) {
  FileProblems problems;
  for (StandardItems::Index i = 0; i < items.ChildCount(parent); ++i) {
    const StandardPlace place = {items[parent].firstChild + i, {}};
    const Node& child = *items[place.item].node;
    for (const std::string& text : check(child)) {
      problems.Add({lines.LineOf(place), title(child, i) + " " + text});
    }
  }
  return problems;
}

/// The node that a path of commands leads to.
std::optional<StandardPlace> FindNode(const StandardItems& items, const char* path) {
  const auto place = FindPlace(items, path);
  return place && !place->value ? place : std::nullopt;
}

FileProblems OneProblem(int line, std::string text) {
  FileProblems problems;
  problems.Add({line, std::move(text)});
  return problems;
}

std::string FormatTitle(const Node& format, std::size_t index) {
  const auto name = FirstValue(format);
  return "the sheet format " + (name ? Quoted(*name) : "number " + std::to_string(index + 1));
}

std::string StyleTitle(const Node& style, std::size_t) {
  return "the sheet style " + Quoted(style.GetNodeName().View());
}

}  // namespace

FileProblems FormatProblems(const StandardItems& items, const ItemLines& lines) {
  const auto formats = FindNode(items, "Root.SheetFormat");
  if (!formats) {
    return OneProblem(0, "there is no node SheetFormat; it would hold the sheet formats");
  }
  const int line = lines.LineOf(*formats);
  if (items.ChildCount(formats->item) == 0) {
    return OneProblem(line, "SheetFormat holds no sheet format; it would hold at least one");
  }
  auto problems = ProblemsOfChildren(items, lines, formats->item, FormatTitle, ProblemsOfFormat);
  if (problems.AreNone()) {
    problems.Add({line,
                  "the sheet formats cannot be read by the application; "
                  "each would be an instance of the type Formats"});
  }
  return problems;
}

FileProblems StyleProblems(const StandardItems& items, const ItemLines& lines) {
  const auto styles = FindNode(items, "Root.Styles.Sheet");
  if (!styles) {
    return OneProblem(0, "there is no node Sheet in Styles; it would hold the sheet styles");
  }
  const int line = lines.LineOf(*styles);
  if (items.ChildCount(styles->item) == 0) {
    return OneProblem(line, "Styles.Sheet holds no sheet style; it would hold at least one");
  }
  const auto formats = FindNode(items, "Root.SheetFormat");
  const KnownFormats known(formats ? items[formats->item].node : nullptr);
  auto problems =
      ProblemsOfChildren(items, lines, styles->item, StyleTitle,
                         [&](const Node& style) { return StyleCheck(style, known).Run(); });
  if (problems.AreNone()) {
    problems.Add({line, "the sheet styles cannot be read by the application"});
  }
  return problems;
}
