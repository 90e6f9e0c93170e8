#include <memory>
#include <span>

#include "Arguments.h"
#include "Format.h"
#include "NumberTexts.h"
#include "OpenStandard.h"
#include "PathMatches.h"
#include "Reports.h"
#include "SheetProblems.h"
#include "StandardFiles.h"
#include "Subcommands.h"
#include "TextTable.h"
#include "VyrAnnStandardServices.h"
#include "VyrBaseUnknown.h"
#include "VyrDftStandardServices.h"
#include "VyrDftStdPersistence.h"

namespace {

using Format = VyrDrwStdSheetFormat;
using Style = VyrDrwStdSheetStyle;

struct Options {
  std::string file;
  bool json = false;
};

/// Records that the library has handed out.
template <class Record>
struct Records {
  std::unique_ptr<Record[]> array;
  int count = 0;
  FileProblems problems;  ///< why there are none

  std::span<const Record> All() const { return {array.get(), static_cast<std::size_t>(count)}; }
};

bool HasChildren(OpenStandard& standard, const char* path) {
  const VyrAnnStandardXMLNode_var node(standard.Read().document.GetNodeWithPath(path));
  return node && node->GetNumOfNode() != 0;
}

/// `read` hands out a new array and its size; `explain` says why it could not.
template <class Record, class Read, class Explain>
Records<Record> ReadRecords(Read read, Explain explain) {
  Records<Record> records;
  Record* array = nullptr;
  int count = 0;
  if (VyrFailed(read(&array, count))) {
    records.problems = explain();
    return records;
  }
  records.array.reset(array);
  records.count = count;
  return records;
}

Records<Format> ReadFormats(OpenStandard& standard) {
  const auto told = VyrQuery<VyrIDftStandard>(&standard.Told());
  return ReadRecords<Format>(
      [&](Format** formats, int& count) {
        return VyrDftStandardServices::GetSheetFormats(told.Get(), formats, count);
      },
      [&] {
        const StandardItems items(standard.Read().document);
        return FormatProblems(items, ItemLines(standard.Input(), items));
      });
}

FileProblems ExplainStyles(OpenStandard& standard, const ReportRecorder& reports) {
  const int version = standard.Read().version;
  const StandardItems items(standard.Read().document);
  FileProblems problems;
  if (version < 0) {
    problems.Add({0, VersionProblem(standard.Read().document)});
  } else if (version < VyrDftStdPersistence::GetVersionFromRelease(11)) {
    problems.Add({0, "the application reads no sheet styles of version " + std::to_string(version) +
                         "; 'holstd upgrade' gives the standard a current one"});
  } else if (reports.undefinedEnums.empty()) {
    problems = StyleProblems(items, ItemLines(standard.Input(), items));
  } else {
    problems.Add({0,
                  "the sheet styles cannot be read, since the standard has undefined enumeration "
                  "values; see 'holstd check'"});
  }
  return problems;
}

Records<Style> ReadStyles(OpenStandard& standard) {
  const ReportRecorder reports;
  return ReadRecords<Style>(
      [&](Style** styles, int& count) {
        const auto services = VyrAnnStandardServices::OpenFile(standard.Input().Path());
        return services->GetAvailableSheetStyles(styles, count);
      },
      [&] { return ExplainStyles(standard, reports); });
}

/// Texts that the file has in the place of numbers of sheets, by the order of formats and styles:
/// empty where a text is a number, or is not there any more since somebody writes the file.
struct NoNumbers {
  std::vector<std::string> widths;
  std::vector<std::string> heights;
  std::vector<std::string> scales;
  FileProblems warnings;

  void Look(std::vector<std::string>& texts, const std::string& subject, std::string_view text,
            double told) {
    const bool isNone = !text.empty() && IsNoNumber("float", text);
    texts.emplace_back(isNone ? text : std::string_view());
    if (isNone) warnings.Add({0, NoNumberWarning(subject, "float", text, NumberText(told))});
  }
};

std::string TextAt(const PathMatches& matches, std::size_t index) {
  return index < matches.Count() ? matches.ValueAt(index).text : std::string();
}

/// Formats are told by queries, and so their texts are found by the same ones.
void LookAtFormats(const OpenStandard& standard, const Records<Format>& formats, NoNumbers& none) {
  if (formats.count == 0) return;
  const PathMatches widths(standard.Input(), "SheetFormat.Width");
  const PathMatches heights(widths, "SheetFormat.Height");
  for (std::size_t i = 0; i < formats.All().size(); ++i) {
    const Format& format = formats.All()[i];
    const std::string of = " of " + Quoted(format.name.View());
    none.Look(none.widths, "'SheetFormat.Width'" + of, TextAt(widths, i), format.width);
    none.Look(none.heights, "'SheetFormat.Height'" + of, TextAt(heights, i), format.height);
  }
}

/// The scale of the style at an index, as the file has it.
std::string ScaleText(const VyrAnnStandardXMLNode* holder, std::size_t index) {
  if (holder == nullptr || index >= holder->GetNodes().size()) return {};
  const VyrAnnStandardXMLNode_var scale(holder->GetNodes()[index]->GetNodeByName("GlobalScale"));
  if (!scale || scale->GetValues().empty()) return {};
  return std::string(scale->GetValues().front()->GetValue().View());
}

void LookAtStyles(Standard& standard, const Records<Style>& styles, NoNumbers& none) {
  const VyrAnnStandardXMLNode_var holder(standard.document.GetNodeWithPath("Root.Styles.Sheet"));
  for (std::size_t i = 0; i < styles.All().size(); ++i) {
    const Style& style = styles.All()[i];
    const std::string path = "Root.Styles.Sheet." + std::string(style.name.View()) + ".GlobalScale";
    none.Look(none.scales, Quoted(path), ScaleText(holder.Get(), i), style.scale);
  }
}

std::string OrientationWord(const Format& format) {
  VyrUnicodeString word;
  VyrDftStandardServices::GetNameFromEnum(
      static_cast<VyrFormatOrientationsType>(format.orientation), word);
  return std::string(word.View());
}

/// The words of a style's fields; empty for a field that the standard does not give.
const char* ProjectionWord(const Style& style) {
  return style.projectionMethod == 0 ? "First angle" : "Third angle";
}
const char* PositioningWord(const Style& style) {
  if (style.hasGenViewsPosMode == 0) return "";
  return style.genViewsPosMode == 0 ? "FixedCG" : "FixedAxis";
}
const char* OrientationWord(const Style& style) {
  if (style.hasOrientation == 0) return "";
  return style.orientation == 0 ? "Portrait" : "Landscape";
}
const char* DisplayWord(const Style& style) {
  if (style.hasDisplayFormat == 0) return "";
  return style.displayFormat == 0 ? "No" : "Yes";
}
std::string FormatName(const Style& style) {
  return style.hasFormat == 0 ? "" : std::string(style.format.name.View());
}

Json TextOrNull(const std::string& text) {
  return text.empty() ? Json() : Json(text);
}

void AddInFile(Json& object, const char* field, const std::string& text) {
  if (!text.empty()) object[field] = text;
}

Json AsJson(const std::string& file, const Records<Format>& formats, const Records<Style>& styles,
            const NoNumbers& none) {
  Json object = {{"file", file}, {"formats", Json::array()}, {"styles", Json::array()}};
  for (std::size_t i = 0; i < formats.All().size(); ++i) {
    const Format& format = formats.All()[i];
    object["formats"].push_back({{"name", format.name.View()},
                                 {"width", format.width},
                                 {"height", format.height},
                                 {"orientation", OrientationWord(format)}});
    AddInFile(object["formats"].back(), "widthInFile", none.widths[i]);
    AddInFile(object["formats"].back(), "heightInFile", none.heights[i]);
  }
  for (std::size_t i = 0; i < styles.All().size(); ++i) {
    const Style& style = styles.All()[i];
    object["styles"].push_back({{"name", style.name.View()},
                                {"scale", style.scale},
                                {"projection", ProjectionWord(style)},
                                {"positioning", TextOrNull(PositioningWord(style))},
                                {"format", TextOrNull(FormatName(style))},
                                {"orientation", TextOrNull(OrientationWord(style))},
                                {"display", TextOrNull(DisplayWord(style))}});
    AddInFile(object["styles"].back(), "scaleInFile", none.scales[i]);
  }
  return object;
}

std::string AsText(const Records<Format>& formats, const Records<Style>& styles) {
  TextTable formatTable({"FORMAT", "SIZE", "ORIENTATION"});
  for (const Format& format : formats.All()) {
    formatTable.Add({std::string(format.name.View()),
                     NumberText(format.width) + " x " + NumberText(format.height),
                     OrientationWord(format)});
  }
  TextTable styleTable(
      {"STYLE", "SCALE", "PROJECTION", "POSITIONING", "FORMAT", "ORIENTATION", "DISPLAY"});
  for (const Style& style : styles.All()) {
    styleTable.Add({std::string(style.name.View()), NumberText(style.scale), ProjectionWord(style),
                    PositioningWord(style), FormatName(style), OrientationWord(style),
                    DisplayWord(style)});
  }
  std::string text = formats.count > 0 ? formatTable.Text() : "";
  if (formats.count > 0 && styles.count > 0) text += "\n";
  return text + (styles.count > 0 ? styleTable.Text() : "");
}

ExitStatus PrintSheets(const Options& options, Session& session) {
  OpenStandard standard(options.file);
  const bool hasFormats = HasChildren(standard, "Root.SheetFormat");
  const bool hasStyles = HasChildren(standard, "Root.Styles.Sheet");
  // Each of them is told by a document of its own; one is in memory at a time.
  standard.ForgetRead();
  const Records<Format> formats = hasFormats ? ReadFormats(standard) : Records<Format>();
  standard.ForgetAll();
  const Records<Style> styles = hasStyles ? ReadStyles(standard) : Records<Style>();
  bool isWhole = true;
  for (const auto* problems : {&formats.problems, &styles.problems}) {
    problems->ComplainOf(options.file, session);
    isWhole = isWhole && problems->AreNone();
  }
  if (isWhole && formats.count == 0 && styles.count == 0) {
    throw Failure{kNegativeAnswer, options.file, 0,
                  "the standard has neither sheet formats nor sheet styles; 'holstd upgrade' adds "
                  "both"};
  }
  NoNumbers none;
  LookAtFormats(standard, formats, none);
  LookAtStyles(standard.Read(), styles, none);
  session.Print(options.json ? JsonText(AsJson(options.file, formats, styles, none))
                             : AsText(formats, styles));
  none.warnings.WarnOf(options.file, session);
  return isWhole ? kDone : kNegativeAnswer;
}

}  // namespace

Action Sheets::Register(Arguments& command) {
  auto options = std::make_shared<Options>();
  command.AddFile(options->file);
  command.AddJson(options->json);
  command.AddExamples(
      {"holstd sheets ISO.xml", "holstd sheets --json ISO.xml",
       "holstd convert ISO.txt -o ISO.xml && holstd sheets ISO.xml"},
      "Lengths are in the standard's unit, millimetres in the shipped ones. '-' stands for "
      "what\nthe standard does not say.");
  return [options](Session& session) {
    options->file = FileOrStandard(options->file).file;
    return PrintSheets(*options, session);
  };
}
