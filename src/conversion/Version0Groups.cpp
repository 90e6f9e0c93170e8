#include "Version0Groups.h"

#include <algorithm>
#include <string>
#include <utility>

#include "StandardXMLFormat.h"
#include "Version0Lines.h"
#include "VyrAnnStandardXMLParser.h"
#include "VyrDftStdPersistence.h"
#include "VyrDrwParseStandard.h"

namespace {

constexpr std::array<Version0Section, 2> kSections = {{
    {"TOLERANCE", "ToleranceFormats", "ToleranceDisplay"},
    {"NUMERICAL_DISPLAY", "ValueFormats", "NumericalDisplay"},
}};

/// So many parameters are composed at a time, and the rest of a group that they begin.
constexpr std::size_t kParametersAtATime = 4096;

bool IsOfSameGroup(const std::unique_ptr<VyrDrwParseParameter>& a,
                   const std::unique_ptr<VyrDrwParseParameter>& b) {
  return a->GetSection() == b->GetSection() && a->GetDescription() == b->GetDescription();
}

bool AppendSlice(std::span<const std::unique_ptr<VyrDrwParseParameter>> parameters,
                 VyrAnnStandardXMLParser& document, VyrProblem& problem) {
  VyrUnicodeString text;
  BeginVersion0(text);
  for (const Version0Section& section : kSections) {
    BeginNode(text, 1, section.node);
    AddGroups(text, section, parameters);
    EndNode(text, 1);
  }
  EndVersion0(text);
  VyrAnnStandardXMLParser slice;
  if (slice.DecodeXML(text, 0) != 0) {
    problem = slice.GetProblem();
    return false;
  }
  for (const Version0Section& section : kSections) {
    const std::string path = std::string("Root.") + section.node;
    const VyrAnnStandardXMLNode_var from(slice.GetNodeWithPath(path));
    const VyrAnnStandardXMLNode_var list(document.GetNodeWithPath(path));
    for (const VyrAnnStandardXMLNode_var& group : from->GetNodes()) list->AddNode(group.Get(), -1);
  }
  return true;
}

}  // namespace

std::span<const Version0Section, 2> Version0Sections() {
  return kSections;
}

void BeginVersion0(VyrUnicodeString& text) {
  VyrDrwParseStandard::AddOutputLine(text, "<?xml version=\"1.0\" ?>", 1);
  const std::string root = std::string("<std:node name=\"") + VyrDftStdPersistence::VyrDftStdType +
                           "\" xmlns:std=\"" + kStandardNamespace + "\">";
  VyrDrwParseStandard::AddOutputLine(text, root.c_str(), 1);
}

void EndVersion0(VyrUnicodeString& text) {
  VyrDrwParseStandard::AddOutputLine(text, "</std:node>", 1);
}

void AddGroups(VyrUnicodeString& text, const Version0Section& section,
               std::span<const std::unique_ptr<VyrDrwParseParameter>> parameters) {
  const VyrDrwParseParameter* last = nullptr;
  for (const auto& parameter : parameters) {
    if (parameter == nullptr || parameter->GetSection().View() != section.section) continue;
    if (last == nullptr || !(parameter->GetDescription() == last->GetDescription())) {
      if (last != nullptr) EndInstance(text, 4);
      BeginInstance(text, 4, section.instance);
    }
    last = parameter.get();
    parameter->Write(text);
  }
  if (last != nullptr) EndInstance(text, 4);
}

Parameters TakeGroups(Parameters& parameters) {
  const auto isGeneral = [](const std::unique_ptr<VyrDrwParseParameter>& parameter) {
    return parameter == nullptr || parameter->GetSection().IsEmpty();
  };
  if (std::none_of(parameters.begin(), parameters.end(), isGeneral)) return {};
  Parameters general;
  Parameters groups;
  for (auto& parameter : parameters) {
    (isGeneral(parameter) ? general : groups).push_back(std::move(parameter));
  }
  parameters = std::move(general);
  return groups;
}

bool AppendGroups(Parameters groups, VyrAnnStandardXMLParser& document, VyrProblem& problem) {
  for (std::size_t begin = 0; begin < groups.size();) {
    std::size_t end = std::min(begin + kParametersAtATime, groups.size());
    while (end < groups.size() && IsOfSameGroup(groups[end - 1], groups[end])) ++end;
    if (!AppendSlice(std::span(groups).subspan(begin, end - begin), document, problem)) {
      return false;
    }
    for (; begin < end; ++begin) groups[begin].reset();
  }
  return true;
}
