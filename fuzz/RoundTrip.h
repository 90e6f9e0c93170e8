#pragma once

#include <string_view>
#include <vector>

#include "FuzzTarget.h"
#include "TreeDifference.h"
#include "VyrAnnStandardXMLParser.h"

/// A document as the text of a file; empty, with a problem, when it holds what no file can say.
inline VyrUnicodeString Saved(VyrAnnStandardXMLParser& document) {
  VyrUnicodeString saved;
  document.SaveInString(saved);
  Require(saved.IsEmpty() != document.GetProblem().IsEmpty(), "what cannot be saved says why");
  return saved;
}

/// Takes away the one thing that a file drops: it says by a name that is not empty that a value has
/// a bound.
inline void DropBoundsWithoutName(const VyrAnnStandardXMLNode& top) {
  std::vector<const VyrAnnStandardXMLNode*> work = {&top};
  while (!work.empty()) {
    const VyrAnnStandardXMLNode& node = *work.back();
    work.pop_back();
    for (const VyrAnnStandardXMLValue_var& value : node.GetValues()) {
      const bool isBound = value->GetRangeVal() == 1 && !value->GetValueName().IsEmpty();
      value->SetRangeVal(isBound ? 1 : 0);
    }
    for (const VyrAnnStandardXMLNode_var& child : node.GetNodes()) work.push_back(child.Get());
  }
}

/// What was saved of a document is a standard that holds the same, and stays the same when it is
/// read and saved again.
inline void RequireSameAgain(VyrAnnStandardXMLParser& document, const VyrUnicodeString& saved) {
  VyrAnnStandardXMLParser again;
  Require(again.DecodeXML(saved, 0) == 0, "what was saved can be read");
  Require(Saved(again) == saved, "a standard that is read and saved stays the same");
  for (const char* path : {"Root", "Enum", "TypeDef"}) {
    const VyrAnnStandardXMLNode_var top(document.GetNodeWithPath(path));
    const VyrAnnStandardXMLNode_var read(again.GetNodeWithPath(path));
    DropBoundsWithoutName(*top);
    const std::string difference = FindDifference(*top, *read);
    Require(difference.empty(), difference.c_str());
  }
}

/// A text is read as a standard that is saved, read again and saved alike; or it is refused, with
/// the reason and one of its lines.
inline void RequireReadOrRefused(std::string_view text) {
  VyrAnnStandardXMLParser document;
  if (document.DecodeXML(text, 0) != 0) {
    const VyrProblem& problem = document.GetProblem();
    Require(!problem.IsEmpty(), "a refusal says why");
    // An encoding may have line ends of its own, but none takes less than a byte.
    const bool isLine =
        problem.line > 0 && static_cast<std::size_t>(problem.line) <= text.size() + 1;
    Require(isLine, "a refusal names a line that is there");
    return;
  }
  document.Check();
  document.GetVersion();
  const VyrUnicodeString saved = Saved(document);
  Require(!saved.IsEmpty(), "what was read can be saved");
  RequireSameAgain(document, saved);
}
