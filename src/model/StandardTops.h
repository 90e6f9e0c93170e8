#pragma once

#include "VyrAnnStandardXMLNode.h"

/// The three trees of a document, borrowed.
struct StandardTops {
  VyrAnnStandardXMLNode& typeDefTop;
  VyrAnnStandardXMLNode& enumTop;
  VyrAnnStandardXMLNode& rootTop;
};
