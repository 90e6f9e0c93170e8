#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "VyrNameChain.h"

/// Prefixes that an expression may use, and their namespaces; of several for one prefix the last.
using VyrXPathNamespaces = std::vector<std::pair<std::string, std::string>>;

/// Reads an expression of the one form that paths into a standard are written in,
///
///     p:root//p:*[@name='A']/p:*[@name='B']...
///
/// with any number of steps and without blanks. False for everything else, whether it is another
/// valid expression or none; also for a prefix that is not declared. The chain borrows from both.
bool VyrReadNameChain(std::string_view expression, const VyrXPathNamespaces& namespaces,
                      VyrNameChain& chain);
