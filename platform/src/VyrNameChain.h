#pragma once

#include <string_view>
#include <vector>

/// Asks for the elements that are reached from the document element by names: each step leads to
/// the elements of a namespace whose attribute "name", in no namespace, has that value. Borrows all
/// its texts.
struct VyrNameChain {
  struct Step {
    std::string_view namespaceURI;
    std::string_view name;
    /// Children of what the step before found, or what lies below it at any depth.
    bool isChild;
  };

  /// What the document element must be for anything to be found.
  std::string_view rootNamespaceURI;
  std::string_view rootName;
  std::vector<Step> steps;
};
