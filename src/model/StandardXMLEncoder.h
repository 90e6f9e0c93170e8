#pragma once

#include <string>
#include <vector>

#include "StandardTops.h"
#include "VyrProblem.h"
#include "VyrResult.h"
#include "VyrXMLWriter.h"

/// Writes the trees of a document as a standard XML text: the enumerations, the compound types,
/// then the parameters, each node with its values before its child nodes. Refuses what could not
/// be read back.
class StandardXMLEncoder {
 public:
  /// `documentName` and `documentType` become attributes of the document element unless empty. On
  /// failure `out` is left alone.
  HRESULT Encode(const StandardTops& tops, const VyrUnicodeString& documentName,
                 const VyrUnicodeString& documentType, std::string& out);

  const VyrProblem& GetProblem() const { return problem_; }

 private:
  /// A node whose element is open, and how many of its children are written.
  struct OpenNode {
    const VyrAnnStandardXMLNode* node;
    std::size_t nextChild;
  };

  bool WriteDocumentAttribute(std::string_view name, const VyrUnicodeString& value);
  bool WriteTop(const VyrAnnStandardXMLNode& top, VyrAnnStandardXMLNode::Type contentType);
  bool WriteTree(const VyrAnnStandardXMLNode& node);
  bool StartNode(const VyrAnnStandardXMLNode& node, VyrAnnStandardXMLNode::Type parent);
  bool WriteValue(const VyrAnnStandardXMLNode& node, const VyrAnnStandardXMLValue& value);
  bool Refuse(const char* message, const std::string& problem);
  std::string Path() const;

  VyrXMLWriter writer_;
  std::vector<OpenNode> open_;
  VyrProblem problem_;
};
