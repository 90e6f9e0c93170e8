#include <string>
#include <utility>

#include "ConversionTables.h"
#include "PathCommand.h"
#include "UpgradeOmissions.h"
#include "VyrAnnStandardScript.h"
#include "VyrAnnStandardXMLParser.h"
#include "VyrDrwParseStandard.h"
#include "VyrDrwParseStandardUnit.h"
#include "VyrReportCount.h"

// Default content that old standards never had. Each builder sends the rows of its table in order
// and reads nothing, so that one sent twice adds its content twice.

using Document = VyrAnnStandardXMLParser;

namespace {

using Omission = VyrDrwUpgradeOmission;
using Command = VyrAnnStandardScript::Command;
using Verb = VyrAnnStandardScript::Verb;

/// What was not done when a command of a table had something to report.
Omission OmissionBy(const Command& command) {
  const bool isChange = command.verb == Verb::Change || command.verb == Verb::EachChange ||
                        command.verb == Verb::Delete;
  const Omission::Fault fault = isChange ? Omission::OtherShape : Omission::FewerNodes;
  const Omission::Work work = isChange ? Omission::ValueKept : Omission::NameLeftOut;
  const NodeCommand fields = NodeCommand::Parse(command.text);  // all commands begin alike
  if (!command.IsForEach()) {
    return {fault, work, fields.path, isChange ? std::string_view() : fields.name, {}};
  }
  std::string below(fields.path.substr(fields.path.starts_with('.') ? 1 : 0));
  if (!isChange) below.append(below.empty() ? "" : ".").append(fields.name);
  return {fault, work, command.path, std::move(below), {}};
}

}  // namespace

void VyrDrwParseStandard::RunTable(Document& document, std::string_view table) const {
  const VyrAnnStandardScript script(table);
  for (const Command& command : script.GetCommands()) {
    // A row that finds nothing to act on is left behind; the standard may be one without it.
    if (!command.AppliesTo(parentStandard_.View())) continue;
    const std::size_t before = VyrReportCount();
    static_cast<void>(command.Run(document));
    const std::size_t reports = VyrReportCount() - before;
    if (reports != 0) omissions_->Add(OmissionBy(command), reports);
  }
}

void VyrDrwParseStandard::AppendFrames(Document& document) const {
  RunTable(document, tables::frames);
}

void VyrDrwParseStandard::AppendLinetypes1(Document& document) const {
  RunTable(document, tables::line_types_1);
}

void VyrDrwParseStandard::AppendLinetypes2(Document& document) const {
  RunTable(document, tables::line_types_2);
  std::string font = "Root.LineTypes:font:string:";
  font.append(tables::line_font).append(":0");
  document.AddValueWithPath(font, 1);
}

void VyrDrwParseStandard::AppendPatterns(Document& document) const {
  RunTable(document, tables::patterns);
}

void VyrDrwParseStandard::AppendStyleEnums(Document& document) const {
  RunTable(document, tables::style_enums);
}

void VyrDrwParseStandard::AppendStyles(Document& document) const {
  RunTable(document, tables::styles);
  AppendStyleSheet(document);
  AppendStyleGeometry(document);
  AppendStyleDimension1(document);
  AppendStyleDimension2(document);
  AppendStyleDimension3(document);
  AppendStyleDimension4(document);
  AppendStyleDimension5(document);
  AppendStyleDimension6(document);
  AppendStyleAnnotation(document);
  AppendStyleDressup(document);
  AppendStyleCallout(document);
}

void VyrDrwParseStandard::AppendStyleSheet(Document& document) const {
  RunTable(document, tables::style_sheet);
}
void VyrDrwParseStandard::AppendStyleGeometry(Document& document) const {
  RunTable(document, tables::style_geometry);
}
void VyrDrwParseStandard::AppendStyleDimension1(Document& document) const {
  RunTable(document, tables::style_dimension_1);
}
void VyrDrwParseStandard::AppendStyleDimension2(Document& document) const {
  RunTable(document, tables::style_dimension_2);
}
void VyrDrwParseStandard::AppendStyleDimension3(Document& document) const {
  RunTable(document, tables::style_dimension_3);
}
void VyrDrwParseStandard::AppendStyleDimension4(Document& document) const {
  RunTable(document, tables::style_dimension_4);
}
void VyrDrwParseStandard::AppendStyleDimension5(Document& document) const {
  RunTable(document, tables::style_dimension_5);
}
void VyrDrwParseStandard::AppendStyleDimension6(Document& document) const {
  RunTable(document, tables::style_dimension_6);
}
void VyrDrwParseStandard::AppendStyleAnnotation(Document& document) const {
  RunTable(document, tables::style_annotation);
}
void VyrDrwParseStandard::AppendStyleDressup(Document& document) const {
  RunTable(document, tables::style_dressup);
}
void VyrDrwParseStandard::AppendStyleCallout(Document& document) const {
  RunTable(document, tables::style_callout);
}
