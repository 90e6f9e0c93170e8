#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "VyrXMLDOM.h"

/// A parsed document, or the problem that stood in the way.
struct Parsed {
  HRESULT result = E_UNEXPECTED;
  VyrIDOMDocument_var document;
  VyrProblem problem;

  const VyrXMLTree& Tree() const { return document->GetTree(); }
};

inline VyrIXMLDOMDocumentBuilder_var NewBuilder() {
  VyrIXMLDOMDocumentBuilder_var builder;
  EXPECT_EQ(CreateVyrIXMLDOMDocumentBuilder(builder), S_OK);
  return builder;
}

/// Parses UTF-8 text; `xml` may hold zero bytes.
inline Parsed ParseText(std::string_view xml) {
  const VyrIXMLDOMDocumentBuilder_var builder = NewBuilder();
  Parsed parsed;
  parsed.result = builder->BuildFromString(xml, parsed.document);
  parsed.problem = builder->GetProblem();
  return parsed;
}

inline Parsed ParseFile(const std::string& path) {
  const VyrIXMLDOMDocumentBuilder_var builder = NewBuilder();
  Parsed parsed;
  parsed.result = builder->BuildFromFile(path, parsed.document);
  parsed.problem = builder->GetProblem();
  return parsed;
}

/// Whether a parse gave what every parse must: a document and no problem, or no document and a
/// problem that names its line.
inline testing::AssertionResult IsSound(const Parsed& parsed) {
  const bool isDocument = parsed.result == S_OK && parsed.document && parsed.problem.IsEmpty();
  const bool isProblem = parsed.result == E_FAIL && !parsed.document && !parsed.problem.IsEmpty() &&
                         parsed.problem.line > 0;
  if (isDocument || isProblem) return testing::AssertionSuccess();
  return testing::AssertionFailure() << "result " << parsed.result << ", line "
                                     << parsed.problem.line << ": " << parsed.problem.text.View();
}

inline testing::AssertionResult IsRefused(const Parsed& parsed) {
  if (parsed.result == S_OK) return testing::AssertionFailure() << "was accepted";
  return IsSound(parsed);
}

inline testing::AssertionResult IsAccepted(const Parsed& parsed) {
  if (parsed.result == S_OK) return IsSound(parsed);
  return testing::AssertionFailure()
         << "line " << parsed.problem.line << ": " << parsed.problem.text.View();
}

/// A document in one line per item: depth, kind and name or text, attributes.
inline std::vector<std::string> Outline(const VyrXMLTree& tree) {
  std::vector<std::string> lines;
  for (VyrXMLTree::Index item = 1; item < tree.GetCount(); ++item) {
    std::string line;
    for (auto up = tree.GetParent(item); up != VyrXMLTree::kDocument; up = tree.GetParent(up)) {
      line += ' ';
    }
    const std::string text(tree.GetText(item));
    switch (tree.GetKind(item)) {
      case VyrXMLTree::Kind::Element:
        line += "<" + tree.GetName(tree.GetNameId(item)).qualifiedName;
        for (const VyrXMLTree::Attribute& attribute : tree.GetAttributes(item)) {
          line += " " + tree.GetName(attribute.name).qualifiedName + "=";
          line += tree.GetValue(attribute);
        }
        break;
      case VyrXMLTree::Kind::Text:
        line += "text " + text;
        break;
      case VyrXMLTree::Kind::CData:
        line += "cdata " + text;
        break;
      case VyrXMLTree::Kind::Comment:
        line += "comment " + text;
        break;
      default:
        line += "pi " + tree.GetName(tree.GetNameId(item)).qualifiedName + " " + text;
    }
    lines.push_back(line);
  }
  return lines;
}

/// All the text of a document, in order.
inline std::string TextOf(const Parsed& parsed) {
  if (!IsAccepted(parsed)) return "not a document: " + std::string(parsed.problem.text.View());
  std::string text;
  for (VyrXMLTree::Index item = 1; item < parsed.Tree().GetCount(); ++item) {
    const auto kind = parsed.Tree().GetKind(item);
    if (kind == VyrXMLTree::Kind::Text || kind == VyrXMLTree::Kind::CData) {
      text += parsed.Tree().GetText(item);
    }
  }
  return text;
}
