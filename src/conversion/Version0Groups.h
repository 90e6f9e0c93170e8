#pragma once

#include <array>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "VyrDrwParseParameter.h"
#include "VyrProblem.h"

class VyrAnnStandardXMLParser;

// The tolerances and numerical displays of a version-0 standard.

/// A section of groups and where it goes in a standard.
struct Version0Section {
  std::string_view section;
  const char* node;
  const char* instance;
};
std::span<const Version0Section, 2> Version0Sections();

using Parameters = std::vector<std::unique_ptr<VyrDrwParseParameter>>;

/// Begins and ends the text of a version-0 standard: declaration and document element.
void BeginVersion0(VyrUnicodeString& text);
void EndVersion0(VyrUnicodeString& text);

/// Appends an instance for each group of a section, in the order of the parameters. Those of other
/// sections and null are passed over.
void AddGroups(VyrUnicodeString& text, const Version0Section& section,
               std::span<const std::unique_ptr<VyrDrwParseParameter>> parameters);

/// Takes the parameters of groups out of a list that has others, too; none of one that has not.
Parameters TakeGroups(Parameters& parameters);

/// Composes, decodes and appends the groups to a document some at a time, and gives the parameters
/// back as it goes: a text has any number of groups, of which text, XML and document need many
/// times its size. False, with the problem, when they do not decode.
bool AppendGroups(Parameters groups, VyrAnnStandardXMLParser& document, VyrProblem& problem);
