#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "InputFile.h"
#include "VyrAnnStandardXMLParser.h"

/// An XML standard that was read.
struct Standard {
  std::string file;  ///< also where a name has led to it; "-" for standard input
  VyrAnnStandardXMLParser document;
  std::string parent;  ///< parent standard; empty when the standard does not say
  int version = 0;     ///< format version; -1 when it cannot be told
};

/// Reads an XML standard: of a file, of the standard of that name, or for "-" from standard input.
/// Throws `Failure`.
Standard ReadStandard(const std::string& file);
Standard ReadStandard(const InputFile& input);

/// Says why the version of a document cannot be told, and what would be right.
std::string VersionProblem(VyrAnnStandardXMLParser& document);

/// True when both paths lead to the same file.
bool IsSameFile(const std::string& a, const std::string& b);
