#pragma once

#include <string>

/// The folder of the shipped standards, found from where the module that holds this code lies;
/// empty when there is none.
std::string VyrShippedStandardsFolder();

/// The same for a module in `moduleFolder`: the first "share/HolStandardInfra/standards" in it or
/// in one of the three folders above it. Build trees and installed ones are laid out so.
std::string VyrShippedStandardsFolderFrom(const std::string& moduleFolder);
