#include <algorithm>
#include <filesystem>
#include <limits>
#include <memory>
#include <optional>
#include <set>
#include <utility>

#include "Arguments.h"
#include "FileProblem.h"
#include "Format.h"
#include "GetAnswers.h"
#include "HeldValues.h"
#include "NumberTexts.h"
#include "OpenStandard.h"
#include "PathMatches.h"
#include "PathSearch.h"
#include "Reports.h"
#include "StandardFiles.h"
#include "Subcommands.h"
#include "ToldValues.h"
#include "UpgradeInputs.h"

namespace {

using Options = GetOptions;
using Answers = GetAnswers;

/// What is asked for, and where the answers come from and go to.
struct Query {
  const Options& options;
  const std::string& file;
  OpenStandard& standard;
  const PathMatches& matches;
  Session& session;
  Answers& answers;
};

Failure Negative(const Query& query, const std::string& text) {
  return {kNegativeAnswer, query.file, 0, text};
}

/// Says which name of a path that finds nothing is the first that leads nowhere.
std::string NotFound(const std::string& path, OpenStandard& standard) {
  const bool hasTree = path.starts_with("Root.") && !path.starts_with("Root..");
  const std::string inner = hasTree ? path.substr(5) : path;
  if (hasTree) {
    return "there is no " + Quoted(path) + "; a path to get begins below Root, as in " +
           Quoted(inner);
  }
  if (path.find('\'') != std::string::npos) {
    return "there is no " + Quoted(path) + "; no query finds a name with an apostrophe";
  }
  PathCorrection correction = CorrectQuery(StandardItems(standard.Read().document), path);
  if (!correction.isNeeded) return "there is no " + Quoted(path);
  // The file may have names that its reader passes over, and the other way round.
  if (standard.Told().HasNode(correction.path.c_str()) == 0) correction.path.clear();
  return correction.Message("below", "'holstd tree' shows what there is");
}

/// What a message calls one of the values that the path finds.
std::string Subject(const Query& query, std::size_t index) {
  const std::string path = Quoted(query.options.path);
  return query.matches.Count() == 1 ? path : "value " + std::to_string(index + 1) + " of " + path;
}

/// Says why an element that the path finds has nothing to tell.
std::string NotTold(const Query& query, std::size_t index) {
  const std::string& path = query.options.path;
  const FileValue value = query.matches.ValueAt(index);
  if (value.type.empty()) {
    const auto nodes = static_cast<long>(query.matches.ContentTypes(index).size());
    return Quoted(path) + " has no value of its own but " + Counted(nodes, "node") +
           "; name one of them, see " + Quoted("holstd tree " + query.file + " " + path);
  }
  if (value.text.empty()) return Quoted(path) + " is empty, so that there is nothing to tell";
  const std::string refused =
      Subject(query, index) + " holds " + Quoted(value.text) + ", which cannot be told as ";
  if (value.type == "color" && !IsNoNumber(value.type, value.text)) {
    return refused + "a color; all that the path finds would be colors or ints";
  }
  const std::string form = NumberForm(value.type);
  return refused + "the " + value.type + " it is meant to be" +
         (form.empty() ? "" : "; it would be " + form);
}

void AddType(Json& object, const FileValue& value) {
  object["type"] = value.type;
  if (value.type == "enum") object["enumeration"] = value.label;
}

void AddValue(Json& object, const FileValue& value, const std::string& told) {
  AddType(object, value);
  object["value"] = told;
  if (IsNoNumber(value.type, value.text)) object["inFile"] = value.text;
  if (value.type == "float" && !value.label.empty()) object["minimum"] = value.label;
}

/// What is warned of a value that is told, but not as the file has it; empty: nothing.
std::string WarningOf(const Query& query, std::size_t index, const FileValue& value,
                      const std::string& told) {
  if (!IsNoNumber(value.type, value.text)) return {};
  return NoNumberWarning(Subject(query, index), value.type, value.text, told);
}

ExitStatus PrintOne(const Query& query) {
  const Options& options = query.options;
  const std::size_t index = IndexAmong(query.matches.Count(), options, query.file);
  const auto told = ToldValues(query.standard.Told(), query.matches, options.path).At(index);
  if (!told) throw Negative(query, NotTold(query, index));
  const FileValue value = query.matches.ValueAt(index);
  if (options.json) {
    Json members = Json::object();
    AddValue(members, value, *told);
    query.answers.Add(query.file, members);
  } else {
    query.answers.PrintLine(query.file, Printable(*told));
  }
  const std::string warning = WarningOf(query, index, value, *told);
  if (!warning.empty()) query.session.Warn(query.file, warning);
  return kDone;
}

/// The values as they are printed, one after the other, and what is to be said of some.
class AllValues {
 public:
  explicit AllValues(const Query& query) : query_(query) {}

  void Add(std::size_t index, const std::optional<std::string>& told) {
    const FileValue value = query_.matches.ValueAt(index);
    if (told) {
      ++told_;
      Print(value, *told);
      const std::string warning = WarningOf(query_, index, value, *told);
      if (!warning.empty()) warnings_.Add({0, warning});
    } else if (!value.text.empty()) {
      refusals_.Add({0, NotTold(query_, index)});
    }
  }

  ExitStatus End() {
    if (told_ == 0 && refusals_.AreNone()) throw Negative(query_, NotTold(query_, 0));
    if (told_ > 0 && query_.options.json) query_.answers.AddList(query_.file, std::move(list_));
    warnings_.WarnOf(query_.file, query_.session);
    // What could be told was; that something is missing must not pass for a whole answer.
    refusals_.ComplainOf(query_.file, query_.session);
    return refusals_.AreNone() ? kDone : kNegativeAnswer;
  }

 private:
  void Print(const FileValue& value, const std::string& told) {
    if (query_.options.json) {
      AddValue(list_.emplace_back(Json::object()), value, told);
    } else {
      query_.answers.PrintLine(query_.file, Printable(told));
    }
  }

  const Query& query_;
  Json list_ = Json::array();
  std::size_t told_ = 0;
  FileProblems warnings_;
  FileProblems refusals_;
};

ExitStatus PrintAll(const Query& query) {
  ToldValues values(query.standard.Told(), query.matches, query.options.path);
  AllValues all(query);
  for (std::size_t i = 0; i < query.matches.Count(); ++i) all.Add(i, values.At(i));
  return all.End();
}

/// The type of the values, and how many they are.
struct ToldType {
  FileValue value;
  std::size_t count = 0;
};

const char* TypeWord(VyrDftStandardValueType type) {
  switch (type) {
    case VyrDftIntValue:
      return "int";
    case VyrDftFloatValue:
      return "float";
    case VyrDftStringValue:
      return "string";
    case VyrDftEnumValue:
      return "enum";
    case VyrDftCompoundValue:
      return "compound";
    case VyrDftUnknownValue:
      break;
  }
  return "unknown";
}

/// Of colors, and of values that the path finds without a node around them, the standard tells no
/// type but by the queries that it answers.
ToldType TypeFromValues(const Query& query) {
  const FileValue first = query.matches.ValueAt(0);
  std::set<std::string> types;
  std::size_t count = query.matches.Count();
  if (first.isDirect) {
    for (std::size_t i = 0; i < count; ++i) types.insert(query.matches.ValueAt(i).type);
    types.erase("");
  } else {
    const std::vector<std::string> content = query.matches.ContentTypes(0);
    types.insert(content.begin(), content.end());
    count = content.size();
  }
  if (types.size() > 1) {
    throw Negative(query, "the values of " + Quoted(query.options.path) +
                              " are of mixed types: " + Joined({types.begin(), types.end()}));
  }
  const bool isTold =
      ToldValues(query.standard.Told(), query.matches, query.options.path).At(0).has_value();
  if (!isTold) throw Negative(query, NotTold(query, 0));
  return {first, count};
}

ToldType TypeOf(const Query& query) {
  VyrDftStandardValueType type{};
  int count = 0;
  if (query.standard.Told().GetValueType(query.options.path.c_str(), &type, &count) != S_OK) {
    return TypeFromValues(query);
  }
  FileValue value = query.matches.ValueAt(0);
  value.type = TypeWord(type);
  return {value, static_cast<std::size_t>(count)};
}

ExitStatus PrintType(const Query& query) {
  const auto [value, count] = TypeOf(query);
  const std::string label = value.type == "enum" ? " " + Printable(value.label) : "";
  if (!query.options.json) {
    query.answers.PrintLine(query.file, value.type + label + " " + std::to_string(count));
    return kDone;
  }
  Json members = Json::object();
  AddType(members, value);
  members["count"] = count;
  query.answers.Add(query.file, members);
  return kDone;
}

ExitStatus PrintValuesOf(const std::string& file, const Options& options, Session& session,
                         Answers& answers) {
  OpenStandard standard(file);
  standard.ForgetRead();
  const UnshownReports unshown;
  std::optional<PathMatches> matches(std::in_place, standard.Input(), options.path);
  if (matches->Count() == 0) {
    matches.reset();  // the standard is read once more, to tell what there is
    const bool hasPlaces = WithoutPlaces(options.path) != options.path;
    if (hasPlaces) return PrintHeldValues(options, standard.Read(), answers);
    throw Failure{kNegativeAnswer, file, 0, NotFound(options.path, standard)};
  }
  const Query query = {options, file, standard, *matches, session, answers};
  return (options.type ? PrintType : options.all ? PrintAll : PrintOne)(query);
}

ExitStatus PrintValues(const Options& options, Session& session) {
  Answers answers(options, session);
  const ExitStatus status =
      ForEachStandard(session, options.files, [&](const std::string& argument) {
        return PrintValuesOf(FileOrStandard(argument).file, options, session, answers);
      });
  if (options.json) answers.EndJson();
  return status;
}

/// The name of a standard leads to it also where a folder is called so: a query is no reason to
/// look at what happens to lie in the working folder.
void PreferNames(std::vector<std::string>& arguments) {
  for (std::string& argument : arguments) {
    std::error_code error;
    if (!std::filesystem::is_directory(argument, error)) continue;
    const StandardFile found = FileOrStandard(argument);
    if (found.isNamed) argument = found.file;
  }
}

}  // namespace

Action Get::Register(Arguments& command) {
  auto options = std::make_shared<Options>();
  command.AddFilesAndPath(options->files, options->path,
                          "Names joined by dots, each at any depth below the last");
  Argument index =
      command.AddOption("--index", options->index, "N", "Print the N-th value instead of the first")
          .Within(1, std::numeric_limits<long>::max());
  Argument all = command.AddFlag("--all", options->all, "Print all values, one a line");
  const Argument type =
      command.AddFlag("--type", options->type, "Print the type of the values and their number");
  index.Excludes(all).Excludes(type);
  all.Excludes(type);
  command.AddJson(options->json);
  command.AddExamples(
      {"holstd get ISO.xml Dimension.ParentStandard",
       "holstd get ISO.xml General.AllowedTextFontSizes --type",
       "holstd get ISO.xml SheetFormat.Name --all",
       "holstd get ISO.xml ToleranceFormats.ToleranceDisplay.Name --index 3",
       "holstd get ISO.xml 'SheetFormat.Formats[A1 ISO].Width'",
       "holstd get --json - Dimension.DIMLTail < ISO.xml",
       "holstd get site/*.xml ISO Dimension.DIMLTail"},
      "Answers what the application is told. A path finds every element of its last name,\n"
      "in the order of the file: nodes, and values that carry the name themselves. Of a "
      "node\nthe first value is told, and the type is that of all values of the first "
      "node.\nA line break inside a value is shown as \\n, and what a terminal would obey as "
      "an\nescape of that kind; --json has the text as it is.\nThe last argument is the path. Of "
      "several files, or of a folder, each line has its\nfile before it, as in ISO.xml:2.0.\n"
      "Brackets mean an entry by its place or its Name, as 'holstd tree' and 'holstd explain'\n"
      "have it. The application cannot ask so: what is told is what the file holds there.");
  return [options](Session& session) {
    PreferNames(options->files);
    return PrintValues(*options, session);
  };
}
