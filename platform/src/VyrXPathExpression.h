#pragma once

#include "VyrDOMNodes.h"
#include "VyrXPath.h"

/// An expression on a document, which it keeps.
VyrIXMLXPathExpression_var VyrMakeXPathExpression(VyrDOMDocument& document,
                                                  VyrUnicodeView expression);
