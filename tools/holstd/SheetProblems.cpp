#include "SheetProblems.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <span>

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

bool BeginsWithNumber(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
  if (text.starts_with('+')) text.remove_prefix(1);
  double number = 0;
  return std::from_chars(text.data(), text.data() + text.size(), number).ec == std::errc();
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

// Styles.

/// Collects what is wrong with one sheet style.
class StyleCheck {
 public:
  StyleCheck(const Node& style, const Node* formats) : style_(style), formats_(formats) {}

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
    const Node* format = FindFormat(*name);
    if (format == nullptr) {
      return Add("has the Format " + Quoted(*name) + ", which is none of the sheet formats" +
                 KnownFormats());
    }
    if (!ProblemsOfFormat(*format).empty()) {
      Add("has the Format " + Quoted(*name) + ", a sheet format that is not valid itself");
    }
  }

  const Node* FindFormat(const std::string& name) const {
    if (formats_ == nullptr) return nullptr;
    for (const auto& format : formats_->GetNodes()) {
      if (FirstValue(*format) == name) return format.Get();
    }
    return nullptr;
  }

  std::string KnownFormats() const {
    std::vector<std::string> names;
    if (formats_ != nullptr) {
      for (const auto& format : formats_->GetNodes()) {
        if (auto name = FirstValue(*format)) names.push_back(Quoted(*name));
      }
    }
    return names.empty() ? "; there are none" : "; there are " + Joined(names);
  }

  const Node& style_;
  const Node* formats_;
  std::vector<std::string> problems_;
};

/// Problems of every child of a node, each under the name that `title` gives the child.
template <class Title, class Check>
std::vector<FileProblem> ProblemsOfChildren(const StandardItems& items, const ItemLines& lines,
                                            StandardItems::Index parent, Title title, Check check) {
  std::vector<FileProblem> problems;
  for (StandardItems::Index i = 0; i < items.ChildCount(parent); ++i) {
    const StandardPlace place = {items[parent].firstChild + i, {}};
    const Node& child = *items[place.item].node;
    for (const std::string& text : check(child)) {
      problems.push_back({lines.LineOf(place), title(child, i) + " " + text});
    }
  }
  return problems;
}

/// The node that a path of commands leads to.
std::optional<StandardPlace> FindNode(const StandardItems& items, const char* path) {
  const auto place = FindPlace(items, path);
  return place && !place->value ? place : std::nullopt;
}

std::string FormatTitle(const Node& format, std::size_t index) {
  const auto name = FirstValue(format);
  return "the sheet format " + (name ? Quoted(*name) : "number " + std::to_string(index + 1));
}

std::string StyleTitle(const Node& style, std::size_t) {
  return "the sheet style " + Quoted(style.GetNodeName().View());
}

}  // namespace

std::vector<FileProblem> FormatProblems(const StandardItems& items, const ItemLines& lines) {
  const auto formats = FindNode(items, "Root.SheetFormat");
  if (!formats) {
    return {{0, "there is no node SheetFormat; it would hold the sheet formats"}};
  }
  const int line = lines.LineOf(*formats);
  if (items.ChildCount(formats->item) == 0) {
    return {{line, "SheetFormat holds no sheet format; it would hold at least one"}};
  }
  auto problems = ProblemsOfChildren(items, lines, formats->item, FormatTitle, ProblemsOfFormat);
  if (problems.empty()) {
    problems.push_back({line,
                        "the sheet formats cannot be read by the application; "
                        "each would be an instance of the type Formats"});
  }
  return problems;
}

std::vector<FileProblem> StyleProblems(const StandardItems& items, const ItemLines& lines) {
  const auto styles = FindNode(items, "Root.Styles.Sheet");
  if (!styles) {
    return {{0, "there is no node Sheet in Styles; it would hold the sheet styles"}};
  }
  const int line = lines.LineOf(*styles);
  if (items.ChildCount(styles->item) == 0) {
    return {{line, "Styles.Sheet holds no sheet style; it would hold at least one"}};
  }
  const auto formats = FindNode(items, "Root.SheetFormat");
  const Node* const known = formats ? items[formats->item].node : nullptr;
  auto problems =
      ProblemsOfChildren(items, lines, styles->item, StyleTitle,
                         [&](const Node& style) { return StyleCheck(style, known).Run(); });
  if (problems.empty()) {
    problems.push_back({line, "the sheet styles cannot be read by the application"});
  }
  return problems;
}
