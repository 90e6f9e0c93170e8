#pragma once

#include <string>

#include "VyrAnnStandardXMLParser.h"

// Steps do what they can do and leave what they cannot. Whether the whole is what was asked for is
// looked at here, before anything is written.

/// Throws `Failure` for a standard that states its version more than once.
void CheckStatedOnce(const std::string& file, VyrAnnStandardXMLParser& document);

/// True when every literal of the standard is one of an enumeration.
bool HasDefinedLiterals(VyrAnnStandardXMLParser& document);

/// Throws `Failure` for what an application cannot use: `document` is a result that would be of
/// `version`. `wasDefined`: whether `HasDefinedLiterals` was true before.
void CheckResult(const std::string& file, VyrAnnStandardXMLParser& document, int version,
                 bool wasDefined);
